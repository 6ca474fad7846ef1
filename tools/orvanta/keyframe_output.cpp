#include "keyframe_output.h"

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "text_format.h"

namespace OrvantaNS::command {

namespace {

std::string engineName(EngineChoice engine) { return engine == EngineChoice::Voting ? "voting" : "value"; }

std::string table(const KeyframeReport& report) {
    std::string text = fmt::format("{:>10}  {:>12}  {:>11}  {:>5}{}\n", "time", "position", "size", "zoom",
                                   report.hasReasons ? "  reason" : "");
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text +=
            fmt::format("{:>10}  {:>12}  {:>11}  {:>5.2f}", formatTime(report.recording.toSeconds(keyframe.frame.time)),
                        fmt::format("{}, {}", rect.left, rect.top), fmt::format("{}x{}", width(rect), height(rect)),
                        zoomOf(keyframe.frame, report.recording.params));
        text += report.hasReasons ? fmt::format("  {}\n", reasonName(keyframe.mode)) : "\n";
    }
    return text;
}

std::string csv(const KeyframeReport& report) {
    std::string text = "tick,seconds,left,top,width,height,zoom,reason\n";
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        const Rectangle& rect = keyframe.frame.rect;
        text += fmt::format("{},{},{},{},{},{},{:.6g},{}\n", keyframe.frame.time,
                            report.recording.toSeconds(keyframe.frame.time), rect.left, rect.top, width(rect),
                            height(rect), zoomOf(keyframe.frame, report.recording.params),
                            report.hasReasons ? reasonName(keyframe.mode) : "");
    }
    return text;
}

std::string json(const KeyframeReport& report) {
    JsonWriter json;
    json.openObject();
    writeRequest(json, report.recording, report.engine);
    json.key("keyframes");
    json.openArray();
    for (const ReasonedKeyframe& keyframe : report.keyframes) {
        writeKeyframe(json, keyframe, report.recording, report.hasReasons);
    }
    json.closeArray();
    json.closeObject();
    return json.text();
}

} // namespace

double zoomOf(const OV_TIME_RECT& keyframe, const Params& params) {
    const std::int32_t frameWidth = width(keyframe.rect);
    return frameWidth > 0 ? static_cast<double>(params.targetWidth()) / frameWidth : 0.0;
}

std::string keyframeText(const KeyframeReport& report, Format format) {
    switch (format) {
    case Format::Table:
        return table(report);
    case Format::Csv:
        return csv(report);
    case Format::Json:
        break;
    }
    return json(report);
}

void writeKeyframe(JsonWriter& json, const ReasonedKeyframe& keyframe, const Recording& recording, bool hasReason) {
    const Rectangle& rect = keyframe.frame.rect;
    json.openRow();
    json.field("tick", keyframe.frame.time);
    json.field("seconds", recording.toSeconds(keyframe.frame.time));
    json.field("left", rect.left);
    json.field("top", rect.top);
    json.field("width", width(rect));
    json.field("height", height(rect));
    json.field("zoom", zoomOf(keyframe.frame, recording.params));
    json.key("reason");
    if (hasReason && !reasonName(keyframe.mode).empty()) {
        json.value(reasonName(keyframe.mode));
    } else {
        json.null();
    }
    json.closeObject();
}

void writeRequest(JsonWriter& json, const Recording& recording, EngineChoice engine) {
    const Params& params = recording.params;
    json.field("recording", recording.name);
    json.field("engine", engineName(engine));
    json.field("ticksPerSecond", params.timeScale());
    json.key("target");
    json.openRow();
    json.field("width", params.targetWidth());
    json.field("height", params.targetHeight());
    json.closeObject();
    json.field("fadeTicks", params.fadeDuration());
    json.key("clip");
    json.openRow();
    json.field("startTick", params.clipStart());
    json.field("stopTick", params.clipStop());
    json.closeObject();
}

} // namespace OrvantaNS::command
