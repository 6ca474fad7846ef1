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
    EngineSetup engine;
};

/// Writes size, fade and clip into the recording's request, with a note on a clip that had to be cut. Throws `OptionError`,
/// also for a size that the engine would refuse, and `InputError` for a recording without a region to work on.
void completeRequest(Recording& recording, const RequestOptions& options, Question question = Question::Timeline);

/// A keyframe, and why the camera stands there.
struct ReasonedKeyframe {
    OV_TIME_RECT frame;
    /// Camera mode of the shot that made it, an `OV_MERGE_STRATEGY`; 0 where there is no shot.
    std::int32_t mode = OV_MERGE_NONE;
    /// Index of that shot among the slices; nothing where there is none.
    std::optional<std::uint32_t> slice;
    /// What the shot is for, in words; empty where the camera mode tells it.
    std::string text{};
};

/// The mode of a keyframe that no engine made: the whole recording, because nothing asks for a closer look.
constexpr std::int32_t kNothingCloser = -1;

/// "tight", "wide", "loose", "forced", "off-window", "full screen" or "nothing closer"; empty for no camera mode.
std::string_view reasonName(std::int32_t mode);

/// Why the camera stands there, in words; empty where there is no shot.
std::string_view reasonOf(const ReasonedKeyframe& keyframe);

/// The keyframes of a store, each with the shot that made it.
std::vector<ReasonedKeyframe> reasonedKeyframes(const OV_DATA_STORE& store);

/// The keyframes of the clip. The value engine and the director draw a progress bar on a terminal. Throws
/// `OrvantaException` and `Interrupted`.
std::vector<ReasonedKeyframe> askKeyframes(const Params& params, const EngineSetup& engine);

/// The director's plan with its reasons. Draws a progress bar on a terminal. Throws `OrvantaException` and `Interrupted`.
DirectorPlan askPlan(const Params& params, const DirectorControls& controls);

/// What the camera does over a clip.
struct KeyframeAnswer {
    std::vector<ReasonedKeyframe> keyframes; ///< At least one.
    /// Why the only keyframe is the whole recording, a sentence that begins with the recording's name; empty when an engine
    /// made the keyframes.
    std::string remark;
};

/// `askKeyframes` as a user wants it. Where the engine finds no keyframe the whole recording stays on show, and one keyframe
/// says so. The voting engine's answer, which is for the whole recording, is cut to the clip: the last keyframe before the
/// start stands at the start. Throws as `askKeyframes`, but for that one failure.
KeyframeAnswer answerKeyframes(const Recording& recording, const EngineSetup& engine);

/// The answer when there is no keyframe.
KeyframeAnswer wholeRecordingAnswer(const Recording& recording);

/// The value engine's run, stage by stage. Throws `OrvantaException` and `Interrupted`.
void runStages(const Params& params, OV_DATA_STORE& store, const OrvantaWorker::StageObserver& observer);

/// The keyframe that holds at a moment, ticks. Throws `OrvantaException`.
OV_TIME_RECT askFrameAt(const Params& params, const EngineSetup& engine, long long time);

/// The frame for the first window. Throws `OrvantaException`, and `NoAnswer` for the voting engine.
OV_TIME_RECT askFrameAtWindow(const Params& params, const EngineSetup& engine);

} // namespace OrvantaNS::command
