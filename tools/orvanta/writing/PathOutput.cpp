#include "writing/PathOutput.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "frame/Geometry.h"
#include "reading/PathFile.h"
#include "terminal/TextFormat.h"
#include "writing/ToolVersion.h"

namespace OrvantaNS::command {

namespace {

/// More samples than that are a slip: half a year at 60 a second would be more.
constexpr double kMostSamples = 1e7;

/// A size and the low edge that goes with it, even, in one dimension.
std::int64_t evenLow(double low, double size, std::int64_t evenSize, std::int64_t limit) {
    const double wanted = low + (size - static_cast<double>(evenSize)) / 2.0;
    const auto nearest = 2 * static_cast<std::int64_t>(std::ceil(wanted / 2.0 - 0.5)); // The lower one of two.
    if (evenSize > limit) {
        return nearest;
    }
    return std::clamp<std::int64_t>(nearest, 0, (limit - evenSize) / 2 * 2);
}

Json sizeJson(std::int64_t width, std::int64_t height) { return {{"width", width}, {"height", height}}; }

/// The fields that paths and samples begin with.
Json headOf(const CameraPlan& plan, std::string_view format) {
    const CameraSetup& setup = plan.setup;
    const CameraEasing& easing = setup.easing;
    Json easingPoints{{"x1", easing.x1()}, {"y1", easing.y1()}, {"x2", easing.x2()}, {"y2", easing.y2()}};
    if (!easing.name().empty()) {
        easingPoints["name"] = easing.name();
    }
    return {{"format", format},
            {"version", kPathVersion},
            {"tool", fmt::format("orvanta {}", toolVersion())},
            {"recording", textOrNull(plan.recording)},
            {"engine", textOrNull(plan.engine)},
            {"ticksPerSecond", setup.timeScale},
            {"videoOffsetTicks", plan.videoOffset ? Json(*plan.videoOffset) : Json()},
            {"region", sizeJson(width(setup.region), height(setup.region))},
            {"target", sizeJson(setup.targetWidth, setup.targetHeight)},
            {"fadeTicks", setup.fadeDuration},
            {"easing", easingPoints},
            {"clip", {{"startTick", setup.clipStart}, {"stopTick", setup.clipStop}}}};
}

/// A cell of CSV: quoted where it holds what would end it.
std::string csvCell(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + '"';
}

std::string keyframeLine(const CameraPlan& plan, const PlannedKeyframe& keyframe, const Rectangle& rect) {
    const long long tick = keyframe.frame.time;
    return fmt::format("{},{},{},{},{},{},{:.6g},{},{}\n", tick, plan.toSeconds(tick), rect.left, rect.top, width(rect),
                       height(rect), plan.zoomOf(width(rect)), csvCell(keyframe.reason), plan.toVideoSeconds(tick));
}

} // namespace

std::string pathTable(const CameraPlan& plan) {
    const bool hasReasons = std::any_of(plan.keyframes.begin(), plan.keyframes.end(),
                                        [](const PlannedKeyframe& keyframe) { return !keyframe.reason.empty(); });
    std::string text = fmt::format("{:>10}  {:>12}  {:>11}  {:>5}{}\n", "time", "position", "size", "zoom",
                                   hasReasons ? "  reason" : "");
    for (const PlannedKeyframe& keyframe : plan.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text += fmt::format("{:>10}  {:>12}  {:>11}  {:>5.2f}{}\n", formatTime(plan.toSeconds(keyframe.frame.time)),
                            fmt::format("{}, {}", rect.left, rect.top), fmt::format("{}x{}", width(rect), height(rect)),
                            plan.zoomOf(width(rect)),
                            hasReasons ? "  " + printable(keyframe.reason, std::string::npos) : "");
    }
    return text;
}

std::string pathCsv(const CameraPlan& plan, bool even) {
    std::string text = "tick,seconds,left,top,width,height,zoom,reason,videoSeconds\n";
    for (const PlannedKeyframe& keyframe : plan.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text +=
            keyframeLine(plan, keyframe, even ? evenFrame(CameraPath({}, plan.setup).frameOf(rect), plan.setup) : rect);
    }
    return text;
}

Json pathDocument(const CameraPlan& plan) {
    Json document = headOf(plan, kPathFormat);
    Json& keyframes = document["keyframes"] = Json::array();
    for (const PlannedKeyframe& keyframe : plan.keyframes) {
        const long long tick = keyframe.frame.time;
        const Rectangle& rect = keyframe.frame.rect;
        keyframes.push_back({{"tick", tick},
                             {"seconds", plan.toSeconds(tick)},
                             {"videoSeconds", plan.videoOffset ? Json(plan.toVideoSeconds(tick)) : Json()},
                             {"left", rect.left},
                             {"top", rect.top},
                             {"width", width(rect)},
                             {"height", height(rect)},
                             {"zoom", plan.zoomOf(width(rect))},
                             {"reason", textOrNull(keyframe.reason)}});
    }
    return document;
}

std::string pathJson(const CameraPlan& plan) { return jsonText(pathDocument(plan)); }

std::vector<PathSample> samplesOf(const CameraPlan& plan, const PictureRate& rate) {
    const double offset = plan.toSeconds(plan.videoOffset.value_or(0));
    const double clipStart = plan.toVideoSeconds(plan.setup.clipStart);
    const double start = plan.videoOffset ? std::max(clipStart, 0.0) : clipStart;
    const double stop = plan.toVideoSeconds(plan.setup.clipStop);
    const double perSecond = rate.perSecond();
    // What lies on an end but for the rounding of a double lies on it.
    constexpr double kRounding = 1e-9;
    const double first = std::ceil(start * perSecond - kRounding) + 0.0; // Never -0.
    const double last = std::floor(stop * perSecond + kRounding);
    if (!(last - first < kMostSamples)) {
        throw OptionError(fmt::format("--sample {}: gives {:.0f} frames; at most ten million are written", perSecond,
                                      last - first + 1.0));
    }
    const CameraPath path = plan.path();
    std::vector<PathSample> samples;
    const long long count = last >= first ? static_cast<long long>(last - first) + 1 : 0;
    samples.reserve(static_cast<std::size_t>(count));
    for (long long i = 0; i < count; ++i) {
        const double picture = first + static_cast<double>(i);
        const double videoSeconds = picture * static_cast<double>(rate.seconds) / static_cast<double>(rate.pictures);
        const double seconds = videoSeconds + offset;
        samples.push_back({seconds, videoSeconds, path.frameAtSeconds(seconds)});
    }
    return samples;
}

std::string samplesCsv(const CameraPlan& plan, const PictureRate& rate, bool even) {
    std::string text = "seconds,left,top,width,height,zoom,videoSeconds\n";
    for (const PathSample& sample : samplesOf(plan, rate)) {
        const CameraFrame& frame = sample.frame;
        if (even) {
            const Rectangle rect = evenFrame(frame, plan.setup);
            text += fmt::format("{},{},{},{},{},{:.6g},{}\n", sample.seconds, rect.left, rect.top, width(rect),
                                height(rect), plan.zoomOf(width(rect)), sample.videoSeconds);
        } else {
            text += fmt::format("{},{},{},{},{},{:.6g},{}\n", sample.seconds, frame.left, frame.top, frame.width,
                                frame.height, plan.zoomOf(frame.width), sample.videoSeconds);
        }
    }
    return text;
}

std::string samplesJson(const CameraPlan& plan, const PictureRate& rate) {
    Json document = headOf(plan, kSamplesFormat);
    document["picturesPerSecond"] = rate.perSecond();
    Json& frames = document["frames"] = Json::array();
    for (const PathSample& sample : samplesOf(plan, rate)) {
        const CameraFrame& frame = sample.frame;
        frames.push_back({{"seconds", sample.seconds},
                          {"videoSeconds", plan.videoOffset ? Json(sample.videoSeconds) : Json()},
                          {"left", frame.left},
                          {"top", frame.top},
                          {"width", frame.width},
                          {"height", frame.height},
                          {"zoom", plan.zoomOf(frame.width)},
                          {"overhangs", frame.overhangs}});
    }
    return jsonText(document);
}

Rectangle evenFrame(const CameraFrame& frame, const CameraSetup& setup) {
    // Sides of the exact shape are multiples of the shape in lowest terms; of those one side is odd, so only every second
    // multiple is even on both.
    const std::int64_t divisor = std::gcd(setup.targetWidth, setup.targetHeight);
    const std::int64_t stepX = 2 * (setup.targetWidth / divisor);
    const std::int64_t stepY = 2 * (setup.targetHeight / divisor);
    const std::int64_t regionWidth = width(setup.region);
    const std::int64_t regionHeight = height(setup.region);
    std::int64_t steps = std::max<std::int64_t>(1, std::llround(frame.width / static_cast<double>(stepX)));
    if (!frame.overhangs) {
        steps = std::max<std::int64_t>(1, std::min({steps, regionWidth / stepX, regionHeight / stepY}));
    }
    const std::int64_t evenWidth = steps * stepX;
    const std::int64_t evenHeight = steps * stepY;
    const std::int64_t left = evenLow(frame.left, frame.width, evenWidth, regionWidth);
    const std::int64_t top = evenLow(frame.top, frame.height, evenHeight, regionHeight);
    return {static_cast<std::int32_t>(left), static_cast<std::int32_t>(left + evenWidth),
            static_cast<std::int32_t>(top), static_cast<std::int32_t>(top + evenHeight)};
}

} // namespace OrvantaNS::command
