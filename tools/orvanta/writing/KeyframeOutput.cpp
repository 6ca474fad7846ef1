#include "writing/KeyframeOutput.h"

#include "asking/Planning.h"
#include "frame/Geometry.h"
#include "writing/PathOutput.h"

namespace OrvantaNS::command {

double zoomOf(const OV_TIME_RECT& keyframe, const Params& params) {
    const std::int32_t frameWidth = width(keyframe.rect);
    return frameWidth > 0 ? static_cast<double>(params.targetWidth()) / frameWidth : 0.0;
}

namespace {

CameraPlan planOf(const KeyframeReport& report) {
    CameraPlan plan = planOf(report.recording, report.engine, report.keyframes);
    if (!report.hasReasons) {
        for (PlannedKeyframe& keyframe : plan.keyframes) {
            keyframe.reason.clear();
        }
    }
    return plan;
}

} // namespace

std::string keyframeTable(const KeyframeReport& report) { return pathTable(planOf(report)); }

std::string keyframeCsv(const KeyframeReport& report) { return pathCsv(planOf(report)); }

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
