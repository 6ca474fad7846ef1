// The working record of one computation.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaRecords.h"
#include "ProgressReporter.h"
#include "frame/FocusSlice.h"
#include "frame/ValueMap.h"
#include "frame/ValueObject.h"

namespace OrvantaNS {

class WindowTimes;

/// One stretch of the timeline during which the recording shows one region.
struct OV_LIVE_ZONE {
    Rectangle rect;     ///< The region that is shown, screen pixels.
    double start = 0.0; ///< First moment, seconds.
    double stop = 0.0;  ///< Last moment, seconds.
};

/// The three stages that report progress.
enum OV_PROGRESS_STAGE : std::int32_t {
    OV_STAGE_PARSE = 0, ///< Live zones and data parsing: 0 to 20 percent.
    OV_STAGE_SLICE = 1, ///< Time slicing: 20 to 80 percent.
    OV_STAGE_MERGE = 2, ///< Merging: 80 to 100 percent.
};

/// Elementary steps, of some nanoseconds each, after which the reporter is asked whether to stop: far more than lie
/// between two reports on what people record, and few enough to end well within a third of a second.
inline constexpr std::int64_t kStepsBetweenQuestions = 8000000;

/// Made for one call, filled stage by stage, dropped when the call ends. Records refer to each other by index
/// into these arrays, never by pointer.
struct OV_DATA_STORE {
    std::vector<OV_LIVE_ZONE> liveZones;        ///< Never empty once `parseLiveZones` has returned.
    std::vector<OV_VALUE_OBJECT> valueObjects;  ///< Sorted by `start` after `parseObjectData`; none moves from then on.
    std::vector<OV_TIME_RECT> keyframes;        ///< The result: ticks and local pixels.
    std::vector<OV_FOCUS_SLICE> slices;         ///< Filled by `sliceTime`, worked on by merging.
    std::vector<OV_VALUE_OBJECT> windowObjects; ///< Copies of the window objects, in `valueObjects` order.
    /// When the entries of `windowObjects` stand. Set by `runPipeline` once the windows are known, null outside it. Not
    /// owned.
    const WindowTimes* windowTimes = nullptr;
    std::uint32_t scrollLocation = 0;     ///< Where in `cursorLocations` the rectangle search of wheel runs goes on.
    std::uint32_t firstActiveObject = 0;  ///< Oldest object that may still be in the value space.
    std::uint32_t nextObject = 0;         ///< Newest object loaded into the value space; the next to test.
    double fadeSeconds = 0.0;             ///< Length of the animated move between keyframes, seconds.
    std::uint32_t currentZone = 0;        ///< Index of the live zone in work.
    ProgressReporter* progress = nullptr; ///< The caller's reporter, not owned; may be null.
    double clipStart = 0.0;               ///< Start of the part of the recording to process, seconds.
    double clipStop = 0.0;                ///< Its end, seconds.
    std::int32_t targetWidth = 0;         ///< Width of the output frame, pixels.
    std::int32_t targetHeight = 0;        ///< Height of the output frame, pixels.
    std::int32_t mergesRemaining = 0;     ///< Merge progress: lowered by every executor that fires; may go below 0.
    std::int32_t mergesTotal = 0;         ///< Number of merge proposals when the queue pass began.
    /// Work that may be done until the reporter is asked once more whether to stop, in steps.
    std::int64_t stepsToQuestion = kStepsBetweenQuestions - 1;
    VS_VALUE_MAP mergeStack;  ///< Scratch of merging, kept for its memory.
    VS_VALUE_MAP mergeLayers; ///< The same.
    /// For each entry of `keyframes`, the index in `slices` of the shot that made it.
    std::vector<std::uint32_t> keyframeSlices;
};

} // namespace OrvantaNS
