#include "reading/WishesFile.h"

#include <cmath>

#include <fmt/format.h>

#include "reading/JsonFields.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

long long ticksOf(const JsonFields& fields, std::string_view name, double scale) {
    constexpr double kBeyond = 9.2e18; // A little below the 64-bit end.
    const double ticks = fields.number(name) * scale;
    if (!(std::fabs(ticks) < kBeyond)) {
        fields.fail(name, "the time lies beyond what can be counted in ticks");
    }
    return std::llround(ticks);
}

CameraStretch stretchOf(const JsonFields& fields, const CameraSetup& setup) {
    const CameraStretch stretch{
        fields.has("from") ? ticksOf(fields, "from", setup.timeScale) : setup.clipStart,
        fields.has("to") ? ticksOf(fields, "to", setup.timeScale) : setup.clipStop,
    };
    if (stretch.stop <= stretch.start) {
        fields.fail({}, "must end after it begins");
    }
    return stretch;
}

double zoomOf(const JsonFields& fields, std::string_view name) {
    const double zoom = fields.number(name);
    if (!(zoom > 0.0)) {
        fields.fail(name, "must be above 0");
    }
    return zoom;
}

} // namespace

CameraWishes wishesOf(const nlohmann::json& document, const std::string& name, const CameraSetup& setup) {
    CameraWishes wishes;
    if (document.is_null()) {
        return wishes;
    }
    const JsonFields fields(document, name);
    if (!fields.has("format") || !fields.isText("format") || fields.text("format") != kWishesFormat) {
        fields.fail("format", fmt::format("these are no wishes; \"format\" must be \"{}\"", kWishesFormat));
    }
    if (const long long version = fields.integer("version"); version != kWishesVersion) {
        fields.fail("version",
                    fmt::format("version {} is not known to this orvanta, which reads {}", version, kWishesVersion));
    }
    fields.refuseOthers({"format", "version", "pins", "whole", "keepOut", "leastZoom", "greatestZoom", "leastRest"});
    for (const JsonFields& pin : fields.objects("pins")) {
        pin.refuseOthers({"from", "to", "left", "top", "width", "height"});
        wishes.pins.push_back({stretchOf(pin, setup), pin.rectangle()});
    }
    for (const JsonFields& whole : fields.objects("whole")) {
        whole.refuseOthers({"from", "to"});
        wishes.whole.push_back(stretchOf(whole, setup));
    }
    for (const JsonFields& keptOut : fields.objects("keepOut")) {
        keptOut.refuseOthers({"from", "to"});
        wishes.keepOut.push_back(stretchOf(keptOut, setup));
    }
    if (fields.has("leastZoom")) {
        wishes.leastZoom = zoomOf(fields, "leastZoom");
    }
    if (fields.has("greatestZoom")) {
        wishes.greatestZoom = zoomOf(fields, "greatestZoom");
    }
    if (wishes.leastZoom && wishes.greatestZoom && *wishes.leastZoom > *wishes.greatestZoom) {
        fields.fail("leastZoom", "must not be above greatestZoom");
    }
    if (fields.has("leastRest")) {
        wishes.leastRest = ticksOf(fields, "leastRest", setup.timeScale);
        if (*wishes.leastRest < 0) {
            fields.fail("leastRest", "must be 0 or more");
        }
    }
    return wishes;
}

CameraWishes readWishesFile(const std::string& path, const CameraSetup& setup) {
    return wishesOf(readJsonFile(path), path == "-" ? "standard input" : printable(path, std::string::npos), setup);
}

} // namespace OrvantaNS::command
