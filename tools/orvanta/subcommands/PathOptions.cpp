#include "subcommands/PathOptions.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "asking/Planning.h"
#include "asking/TimeOption.h"
#include "reading/WishesFile.h"
#include "terminal/Messages.h"
#include "terminal/Terminal.h"
#include "terminal/TextFormat.h"
#include "writing/MltProject.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

/// Nothing for an option that was left out.
std::optional<double> zoomOf(const std::string& text, std::string_view option) {
    if (text.empty()) {
        return std::nullopt;
    }
    const auto zoom = parseDecimal(text);
    if (!zoom || !(*zoom > 0.0) || !std::isfinite(*zoom)) {
        throw OptionError(fmt::format("{} {}: expected a number above 0, in output pixels per recording pixel", option,
                                      printable(text)));
    }
    return zoom;
}

std::optional<long long> positiveInteger(std::string_view text) {
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size() && number > 0;
    return whole ? std::optional(number) : std::nullopt;
}

} // namespace

void EasingArgument::addTo(CLI::App& app) {
    std::vector<std::string> names;
    for (const std::string_view name : CameraEasing::names()) {
        names.emplace_back(name);
    }
    app.add_option("--easing", text,
                   fmt::format("How a move spreads over its time: {} (default {}), or X1,Y1,X2,Y2 as in CSS",
                               listed(names), names.front()))
        ->type_name("EASING");
}

std::optional<CameraEasing> EasingArgument::value() const {
    return text.empty() ? std::nullopt : std::optional(parseEasing(text));
}

void WishesArguments::addTo(CLI::App& app) {
    app.add_option("--wishes", file, "Wishes that are laid over the engine's answer, in JSON")->type_name("FILE");
    app.add_option("--pin", pins, "Show this rectangle of the recording in a stretch; may be repeated")
        ->type_name("START:STOP@WIDTHxHEIGHT+LEFT+TOP")
        ->expected(1)
        ->take_all();
    app.add_option("--whole", whole, "Show the whole recording in a stretch; may be repeated")
        ->type_name("START:STOP")
        ->expected(1)
        ->take_all();
    app.add_option("--keep-out", keepOut, "No move in a stretch; may be repeated")
        ->type_name("START:STOP")
        ->expected(1)
        ->take_all();
    app.add_option("--least-zoom", leastZoom, "Frames no further than this, in output pixels per recording pixel")
        ->type_name("Z");
    app.add_option("--greatest-zoom", greatestZoom, "Frames no closer than this")->type_name("Z");
    app.add_option("--least-rest", leastRest, "Time from the end of a move to the start of the next, at least")
        ->type_name("SECONDS");
}

CameraWishes WishesArguments::value(const CameraSetup& setup) const {
    CameraWishes wishes;
    if (!file.empty()) {
        wishes = readWishesFile(file, setup);
    }
    for (const std::string& pin : pins) {
        wishes.pins.push_back(parsePin(pin, setup));
    }
    for (const std::string& stretch : whole) {
        wishes.whole.push_back(parseStretch(stretch, "--whole", setup));
    }
    for (const std::string& stretch : keepOut) {
        wishes.keepOut.push_back(parseStretch(stretch, "--keep-out", setup));
    }
    if (const auto zoom = zoomOf(leastZoom, "--least-zoom")) {
        wishes.leastZoom = zoom;
    }
    if (const auto zoom = zoomOf(greatestZoom, "--greatest-zoom")) {
        wishes.greatestZoom = zoom;
    }
    if (!leastRest.empty()) {
        constexpr double kBeyond = 9.2e18; // Ticks: a little below the 64-bit end.
        const auto seconds = parseDecimal(leastRest);
        if (!seconds || !(*seconds * setup.timeScale < kBeyond)) {
            throw OptionError(fmt::format("--least-rest {}: expected a number of seconds", printable(leastRest)));
        }
        wishes.leastRest = std::llround(*seconds * setup.timeScale);
    }
    return wishes;
}

void WishesArguments::layOver(CameraPlan& plan) const {
    const CameraWishes wishes = value(plan.setup);
    if (!wishes.empty()) {
        layWishes(plan, wishes);
    }
}

void PathOutputArguments::addTo(CLI::App& app) {
    std::vector<std::string> names;
    for (const PathFormat& known : pathFormats()) {
        names.emplace_back(known.name);
    }
    app.add_option(
           "--format", format,
           fmt::format("{} (default: by the ending of -o, else table on a terminal and csv elsewhere)", listed(names)))
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names));
    app.add_option(
           "--sample", sample,
           "The frame at every picture of this rate, moves included, instead of keyframes; for mlt the project's rate "
           "(default 30)")
        ->type_name("RATE");
    app.add_flag("--even", even, "Whole even pixels of exactly the output's shape, as encoders want them");
    output.addTo(app);
}

const PathFormat& PathOutputArguments::value() const {
    if (format.empty()) {
        if (const PathFormat* const byEnding = pathFormatOfFile(output.path)) {
            return *byEnding;
        }
        if (!endingOf(output.path).empty()) {
            std::vector<std::string> names;
            for (const PathFormat& known : pathFormats()) {
                names.emplace_back(known.name);
            }
            throw unknownEnding(output.path, names);
        }
    }
    const bool terminal = isStandardOutput(output.path) && outputIsTerminal() && sample.empty() && !even;
    return *pathFormatNamed(!format.empty() ? format : terminal ? "table" : "csv");
}

PathOutputOptions PathOutputArguments::options() const {
    const PathFormat& chosen = value();
    PathOutputOptions options;
    if (!sample.empty()) {
        if (!chosen.takesSample) {
            throw OptionError(fmt::format("--sample: the format {} has no samples", chosen.name));
        }
        options.sample = parsePictureRate(sample, "--sample");
    }
    if (even && !chosen.takesEven) {
        throw OptionError(fmt::format("--even: only for the format csv, not for {}", chosen.name));
    }
    options.even = even;
    options.video = mltVideoName(video, output.path);
    return options;
}

void PathOutputArguments::write(const CameraPlan& plan) const {
    const PathFormat& chosen = value();
    const PathOutputOptions asked = options();
    writeOutput(output.path, chosen.text(plan, asked));
    if (chosen.advice != nullptr) {
        tellNote(chosen.advice(plan, asked, output.path));
    }
}

PictureRate parsePictureRate(std::string_view text, std::string_view option) {
    constexpr double kFastest = 1e6; // Pictures a second.
    const std::size_t slash = text.find('/');
    PictureRate rate;
    bool understood = false;
    if (slash != std::string_view::npos) {
        const auto pictures = positiveInteger(text.substr(0, slash));
        const auto seconds = positiveInteger(text.substr(slash + 1));
        understood = pictures && seconds;
        rate = {pictures.value_or(1), seconds.value_or(1)};
    } else if (const auto decimal = parseDecimal(text); decimal && *decimal <= kFastest) {
        // Decimals as they stand, to a millionth.
        constexpr long long kParts = 1000000;
        rate = {std::llround(*decimal * static_cast<double>(kParts)), kParts};
        understood = rate.pictures > 0;
        if (understood && rate.pictures % kParts == 0) {
            rate = {rate.pictures / kParts, 1};
        }
    }
    if (!understood || rate.perSecond() > kFastest) {
        throw OptionError(
            fmt::format("{} {}: expected pictures a second, such as 30 or 30000/1001", option, printable(text)));
    }
    return rate;
}

} // namespace OrvantaNS::command
