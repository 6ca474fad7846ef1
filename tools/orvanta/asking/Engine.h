// Fills a request from a recording and the options, and asks an engine.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OrvantaWorker.h"
#include "asking/EngineChoice.h"
#include "asking/SizeOption.h"
#include "asking/TimeOption.h"
#include "frame/DataStore.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// An engine that has no answer to a question; the message is complete but for the program's name.
class NoAnswer : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What a request needs beside the recording.
struct RequestOptions {
    std::optional<SizeOption> size; ///< A dump has a size of its own.
    double fadeSeconds = 1.0;
    ClipOption clip;
    EngineChoice engine = EngineChoice::Value;
};

/// Writes size, fade and clip into the recording's request. Throws `OptionError`.
void completeRequest(Recording& recording, const RequestOptions& options);

/// A keyframe, and why the camera stands there.
struct ReasonedKeyframe {
    OV_TIME_RECT frame;
    /// Camera mode of the shot that made it, an `OV_MERGE_STRATEGY`; 0 where there is no shot.
    std::int32_t mode = OV_MERGE_NONE;
    /// Index of that shot among the slices; nothing where there is none.
    std::optional<std::uint32_t> slice;
};

/// "tight", "wide", "loose", "forced", "off-window" or "full screen"; empty for no camera mode.
std::string_view reasonName(std::int32_t mode);

/// The keyframes of a store, each with the shot that made it.
std::vector<ReasonedKeyframe> reasonedKeyframes(const OV_DATA_STORE& store);

/// The keyframes of the clip. The value engine draws a progress bar on a terminal. Throws `OrvantaException` and `Interrupted`.
std::vector<ReasonedKeyframe> askKeyframes(const Params& params, EngineChoice engine);

/// The value engine's run, stage by stage. Throws `OrvantaException` and `Interrupted`.
void runStages(const Params& params, OV_DATA_STORE& store, const OrvantaWorker::StageObserver& observer);

/// The keyframe that holds at a moment, ticks. Throws `OrvantaException`.
OV_TIME_RECT askFrameAt(const Params& params, EngineChoice engine, long long time);

/// The frame for the first window. Throws `OrvantaException`, and `NoAnswer` for the voting engine.
OV_TIME_RECT askFrameAtWindow(const Params& params, EngineChoice engine);

} // namespace OrvantaNS::command
