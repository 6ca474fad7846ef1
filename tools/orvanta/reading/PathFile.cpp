#include "reading/PathFile.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include <fmt/format.h>

#include "frame/TimeModel.h"
#include "reading/InputError.h"
#include "reading/JsonFields.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

constexpr std::int32_t kMostPixels = std::numeric_limits<std::int32_t>::max();

/// Width and height, each at least 1.
struct Size {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

Size sizeOf(const JsonFields& fields) {
    return {static_cast<std::int32_t>(fields.integer("width", 1, kMostPixels)),
            static_cast<std::int32_t>(fields.integer("height", 1, kMostPixels))};
}

void requireFormat(const JsonFields& fields) {
    if (!fields.has("format") || !fields.isText("format") || fields.text("format") != kPathFormat) {
        fields.fail("format", fmt::format("this is no camera path; \"format\" must be \"{}\"", kPathFormat));
    }
    if (const long long version = fields.integer("version"); version != kPathVersion) {
        fields.fail("version",
                    fmt::format("version {} is not known to this orvanta, which reads {}", version, kPathVersion));
    }
}

CameraEasing easingOf(const JsonFields& fields) {
    if (!fields.has("easing")) {
        return {};
    }
    if (fields.isText("easing")) {
        const std::string name = fields.text("easing");
        const auto easing = CameraEasing::named(name);
        if (!easing) {
            fields.fail("easing", fmt::format("no easing has the name \"{}\"; there are {}", printable(name),
                                              fmt::join(CameraEasing::names(), ", ")));
        }
        return *easing;
    }
    const JsonFields points = fields.object("easing");
    try {
        return {points.number("x1"), points.number("y1"), points.number("x2"), points.number("y2")};
    } catch (const std::invalid_argument& error) {
        fields.fail("easing", error.what());
    }
}

/// The tick of a keyframe. Whoever edits a path by hand may give seconds alone.
long long tickOf(const JsonFields& fields, double scale) {
    if (!fields.has("seconds")) {
        return fields.integer("tick");
    }
    const double seconds = fields.number("seconds");
    if (!fields.has("tick")) {
        constexpr double kBeyond = 9.2e18; // A little below the 64-bit end.
        if (!(std::fabs(seconds * scale) < kBeyond)) {
            fields.fail("seconds", "the time lies beyond what can be counted in ticks");
        }
        return std::llround(seconds * scale);
    }
    const long long tick = fields.integer("tick");
    // Half a tick, and what a double of that size rounds off.
    const double told = ticksToSeconds(tick, scale);
    const double tolerance = 0.5 / scale + std::fabs(told) * 1e-12;
    if (!(std::fabs(told - seconds) <= tolerance)) {
        fields.fail({}, fmt::format("tick {} is {} s, not {} s; change both, or leave one out", tick, told, seconds));
    }
    return tick;
}

PlannedKeyframe keyframeOf(const JsonFields& fields, double scale) {
    PlannedKeyframe keyframe;
    keyframe.frame.time = tickOf(fields, scale);
    keyframe.frame.rect = fields.rectangle();
    if (fields.has("reason")) {
        keyframe.reason = fields.text("reason");
    }
    return keyframe;
}

} // namespace

CameraPlan pathOf(const nlohmann::json& document, const std::string& name) {
    const JsonFields fields(document, name);
    requireFormat(fields);
    CameraPlan plan;
    CameraSetup& setup = plan.setup;
    if (fields.has("recording")) {
        plan.recording = fields.text("recording");
    }
    if (fields.has("engine")) {
        plan.engine = fields.text("engine");
    }
    setup.timeScale = fields.number("ticksPerSecond");
    if (!(setup.timeScale > 0.0)) {
        fields.fail("ticksPerSecond", "must be above 0");
    }
    if (fields.has("videoOffsetTicks")) {
        plan.videoOffset = fields.integer("videoOffsetTicks");
    }
    const Size region = sizeOf(fields.object("region"));
    setup.region = {0, region.width, 0, region.height};
    const Size target = sizeOf(fields.object("target"));
    setup.targetWidth = target.width;
    setup.targetHeight = target.height;
    setup.fadeDuration = fields.integer("fadeTicks", 0, std::numeric_limits<long long>::max());
    setup.easing = easingOf(fields);
    const JsonFields clip = fields.object("clip");
    setup.clipStart = clip.integer("startTick");
    setup.clipStop = clip.integer("stopTick");
    if (setup.clipStop < setup.clipStart) {
        fields.fail("clip", "stops before it starts");
    }
    if (!fields.has("keyframes")) {
        fields.fail({}, "the field \"keyframes\" is missing");
    }
    for (const JsonFields& keyframe : fields.objects("keyframes")) {
        plan.keyframes.push_back(keyframeOf(keyframe, setup.timeScale));
    }
    return plan;
}

CameraPlan readPathFile(const std::string& path) {
    return pathOf(readJsonFile(path), path == "-" ? "standard input" : printable(path, std::string::npos));
}

} // namespace OrvantaNS::command
