// Keyframes as a table for people, as CSV and as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine.h"
#include "json_writer.h"

namespace OrvantaNS::command {

enum class Format : std::uint8_t { Table, Csv, Json };

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

std::string keyframeText(const KeyframeReport& report, Format format);

/// One keyframe as a row of a JSON array.
void writeKeyframe(JsonWriter& json, const ReasonedKeyframe& keyframe, const Recording& recording, bool hasReason);

/// The fields of the request that every JSON answer starts with.
void writeRequest(JsonWriter& json, const Recording& recording, EngineChoice engine);

} // namespace OrvantaNS::command
