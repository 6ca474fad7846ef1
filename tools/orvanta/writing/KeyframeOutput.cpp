#include "writing/KeyframeOutput.h"

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

double zoomOf(const OV_TIME_RECT& keyframe, const Params& params) {
    const std::int32_t frameWidth = width(keyframe.rect);
    return frameWidth > 0 ? static_cast<double>(params.targetWidth()) / frameWidth : 0.0;
}

std::string keyframeTable(const KeyframeReport& report) {
    std::string text = fmt::format("{:>10}  {:>12}  {:>11}  {:>5}{}\n", "time", "position", "size", "zoom",
                                   report.hasReasons ? "  reason" : "");
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text +=
            fmt::format("{:>10}  {:>12}  {:>11}  {:>5.2f}", formatTime(report.recording.toSeconds(keyframe.frame.time)),
                        fmt::format("{}, {}", rect.left, rect.top), fmt::format("{}x{}", width(rect), height(rect)),
                        zoomOf(keyframe.frame, report.recording.params));
        text += report.hasReasons ? fmt::format("  {}\n", reasonOf(keyframe)) : "\n";
    }
    return text;
}

std::string keyframeCsv(const KeyframeReport& report) {
    std::string text = "tick,seconds,left,top,width,height,zoom,reason\n";
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text +=
            fmt::format("{},{},{},{},{},{},{:.6g},{}\n", keyframe.frame.time,
                        report.recording.toSeconds(keyframe.frame.time), rect.left, rect.top, width(rect), height(rect),
                        zoomOf(keyframe.frame, report.recording.params), report.hasReasons ? reasonOf(keyframe) : "");
    }
    return text;
}

std::string keyframeJson(const KeyframeReport& report) {
    Json document = requestDocument(report.recording, report.engine);
    Json& keyframes = document["keyframes"] = Json::array();
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        keyframes.push_back(keyframeEntry(keyframe, report.recording, report.hasReasons));
    }
    return jsonText(document);
}

Json keyframeEntry(const ReasonedKeyframe& keyframe, const Recording& recording, bool hasReason) {
    const Rectangle& rect = keyframe.frame.rect;
    return {{"tick", keyframe.frame.time},
            {"seconds", recording.toSeconds(keyframe.frame.time)},
            {"left", rect.left},
            {"top", rect.top},
            {"width", width(rect)},
            {"height", height(rect)},
            {"zoom", zoomOf(keyframe.frame, recording.params)},
            {"reason", hasReason ? textOrNull(reasonOf(keyframe)) : Json()}};
}

Json requestDocument(const Recording& recording, EngineChoice engine) {
    const Params& params = recording.params;
    return {{"recording", recording.name},
            {"engine", engineName(engine)},
            {"ticksPerSecond", params.timeScale()},
            {"target", {{"width", params.targetWidth()}, {"height", params.targetHeight()}}},
            {"fadeTicks", params.fadeDuration()},
            {"clip", {{"startTick", params.clipStart()}, {"stopTick", params.clipStop()}}}};
}

} // namespace OrvantaNS::command
