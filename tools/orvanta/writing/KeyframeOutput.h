// Keyframes as a table for people, as CSV and as JSON.
#pragma once

#include <string>
#include <vector>

#include "asking/Engine.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

/// What a keyframe list is an answer to.
struct KeyframeReport {
    const Recording& recording;
    EngineChoice engine = EngineChoice::Value;
    std::vector<ReasonedKeyframe> keyframes;
    bool hasReasons = false; ///< The frames come from shots, which have a camera mode.
};

/// Output pixels per recording pixel: 1 shows the recording pixel for pixel, 0.5 at half its size. 0 for a frame
/// without width.
double zoomOf(const OV_TIME_RECT& keyframe, const Params& params);

std::string keyframeTable(const KeyframeReport& report);
std::string keyframeCsv(const KeyframeReport& report);
std::string keyframeJson(const KeyframeReport& report);

/// One keyframe as an entry of a JSON list.
Json keyframeEntry(const ReasonedKeyframe& keyframe, const Recording& recording, bool hasReason);

/// A JSON document with the fields of the request, which every answer starts with.
Json requestDocument(const Recording& recording, EngineChoice engine);

} // namespace OrvantaNS::command
