#include "asking/Engine.h"

#include <array>
#include <memory>

#include <fmt/format.h>

#include "OrvantaDirector.h"
#include "OrvantaVotingAlgorithm.h"
#include "frame/Geometry.h"
#include "reading/InputError.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/ProgressBar.h"
#include "terminal/StandardOutputGuard.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

std::unique_ptr<Orvanta> makeEngine(const EngineSetup& engine) {
    switch (engine.choice) {
    case EngineChoice::Voting:
        return std::make_unique<OrvantaVotingAlgorithm>();
    case EngineChoice::Director:
        return std::make_unique<OrvantaDirector>(engine.director);
    case EngineChoice::Value:
        break;
    }
    return std::make_unique<OrvantaWorker>();
}

/// The one entry of an answer.
OV_TIME_RECT onlyFrame(const std::shared_ptr<std::vector<OV_TIME_RECT>>& answer, std::string_view question) {
    if (answer == nullptr || answer->empty()) {
        throw NoAnswer(fmt::format("the voting engine has no answer to {}; ask the value engine", question));
    }
    return answer->front();
}

/// The region whose pixels everything is told in. Throws `InputError` when there is none to work on.
Rectangle firstRegion(const Recording& recording) {
    constexpr std::int32_t kSmallestArea = 64 * 64; // Pixels: what the engines want at least.
    if (recording.params.recordingRegions().empty()) {
        throw InputError({recording.name, 0, 0, {}, 0},
                         "there is no recording region, and no engine works without one");
    }
    const Rectangle region = recording.params.recordingRegions().front().rect;
    if (isEmpty(region) || area(region) < kSmallestArea) {
        throw InputError(
            {recording.name, 0, 0, {}, 0},
            fmt::format("the first recording region is {}x{}, too small to work on", width(region), height(region)));
    }
    return region;
}

/// Keeps what a clip shows of an answer for the whole recording.
std::vector<ReasonedKeyframe> cutToClip(const std::vector<ReasonedKeyframe>& keyframes, const Params& params) {
    std::vector<ReasonedKeyframe> kept;
    for (ReasonedKeyframe keyframe : keyframes) {
        if (keyframe.frame.time >= params.clipStop()) {
            break;
        }
        if (keyframe.frame.time <= params.clipStart()) {
            kept.clear(); // The one before it has had its time.
            keyframe.frame.time = params.clipStart();
        }
        kept.push_back(keyframe);
    }
    return kept;
}

} // namespace

void completeRequest(Recording& recording, const RequestOptions& options, Question question) {
    const std::string name = printableName(recording.name);
    Params& params = recording.params;
    const Rectangle region = firstRegion(recording);
    if (options.size) {
        const FrameSize size = resolveSize(*options.size, region, options.engine);
        params.setTargetWidth(size.width).setTargetHeight(size.height);
    } else if (recording.form != RecordingForm::Dump) {
        throw OptionError("--size is required: WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16");
    }
    checkSize({params.targetWidth(), params.targetHeight()}, region, options.engine, question, recording.name);
    if (question == Question::Window && params.foreWindows().empty()) {
        throw InputError({recording.name, 0, 0, {}, 0}, "there is no window in it to frame");
    }
    const bool isLarger = params.targetWidth() > width(region) || params.targetHeight() > height(region);
    if (isLarger && question != Question::Nothing) {
        tellNote(fmt::format("{}: the size {}x{} is larger than the recording's {}x{} in one dimension; pixels are "
                             "enlarged, and frames may reach beyond the recording",
                             name, params.targetWidth(), params.targetHeight(), width(region), height(region)));
    }
    params.setFadeDuration(resolveDuration(options.fadeSeconds, recording, "--fade"));
    const Clip clip = resolveClip(options.clip, recording);
    if (clip.isCut) {
        tellNote(fmt::format("{}: the clip is cut to the recording's end at {}", name,
                             formatTime(recording.toSeconds(clip.stop))));
    }
    params.setClipInterval(clip.start, clip.stop);
}

std::string_view reasonName(std::int32_t mode) {
    constexpr std::array<std::string_view, 7> kNames{"",       "tight",      "wide",       "loose",
                                                     "forced", "off-window", "full screen"};
    if (mode == kNothingCloser) {
        return "nothing closer";
    }
    return mode >= 0 && static_cast<std::size_t>(mode) < kNames.size() ? kNames[static_cast<std::size_t>(mode)] : "";
}

std::string_view reasonOf(const ReasonedKeyframe& keyframe) {
    return keyframe.text.empty() ? reasonName(keyframe.mode) : std::string_view(keyframe.text);
}

std::vector<ReasonedKeyframe> reasonedKeyframes(const OV_DATA_STORE& store) {
    std::vector<ReasonedKeyframe> keyframes;
    for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
        ReasonedKeyframe keyframe{store.keyframes[i], OV_MERGE_NONE, std::nullopt, {}};
        if (i < store.keyframeSlices.size() && store.keyframeSlices[i] < store.slices.size()) {
            keyframe.slice = store.keyframeSlices[i];
            keyframe.mode = store.slices[store.keyframeSlices[i]].mergeType;
        }
        keyframes.push_back(keyframe);
    }
    return keyframes;
}

std::vector<ReasonedKeyframe> askKeyframes(const Params& params, const EngineSetup& engine) {
    if (engine == EngineChoice::Director) {
        std::vector<ReasonedKeyframe> keyframes;
        for (const DirectorShot& shot : askPlan(params, engine.director).shots) {
            keyframes.push_back({shot.keyframe, OV_MERGE_NONE, std::nullopt, shot.text});
        }
        return keyframes;
    }
    if (engine == EngineChoice::Value) {
        // The store tells which shot made each keyframe; the plain question keeps only the frames.
        OV_DATA_STORE store;
        runStages(params, store, {});
        return reasonedKeyframes(store);
    }
    const StandardOutputGuard guard;
    // No bar: this engine reports every tick that anybody voted at, millions a second of recording on a fine clock, and
    // is done long before they are told.
    const auto frames = OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr);
    std::vector<ReasonedKeyframe> keyframes;
    for (const OV_TIME_RECT& frame : *frames) {
        keyframes.push_back({frame, OV_MERGE_NONE, std::nullopt, {}});
    }
    // It never asks whether to stop either, so a cancelled run ends here.
    throwIfInterrupted();
    return keyframes;
}

KeyframeAnswer answerKeyframes(const Recording& recording, const EngineSetup& engine) {
    const Params& params = recording.params;
    KeyframeAnswer answer;
    try {
        answer.keyframes = askKeyframes(params, engine);
    } catch (const OrvantaException& failure) {
        if (failure.errorCode() != OVERR_NO_KEYFRAMES) {
            throw;
        }
    }
    const bool isClipped = params.clipStart() > recording.start || params.clipStop() < recording.stop;
    if (engine == EngineChoice::Voting && isClipped) {
        answer.keyframes = cutToClip(answer.keyframes, params);
    }
    return answer.keyframes.empty() ? wholeRecordingAnswer(recording) : answer;
}

KeyframeAnswer wholeRecordingAnswer(const Recording& recording) {
    constexpr double kShortestBesideFades =
        8.0; // Seconds: with two fades, the shortest clip in which a move has its time.
    const Params& params = recording.params;
    const Rectangle& region = params.recordingRegions().at(0).rect;
    const double length = recording.toSeconds(params.clipStop()) - recording.toSeconds(params.clipStart());
    const double least = 2.0 * recording.toSeconds(params.fadeDuration()) + kShortestBesideFades;
    KeyframeAnswer answer;
    answer.keyframes.push_back(
        {{params.clipStart(), {0, width(region), 0, height(region)}}, kNothingCloser, std::nullopt, {}});
    answer.remark =
        fmt::format("{}: {}, so the whole recording stays on show", printableName(recording.name),
                    length < least ? fmt::format("the clip of {} is shorter than two fades and 8 s ({})",
                                                 formatTime(length), formatTime(least))
                                   : fmt::format("nothing in the clip asks for a closer look at the size {}x{}",
                                                 params.targetWidth(), params.targetHeight()));
    return answer;
}

DirectorPlan askPlan(const Params& params, const DirectorControls& controls) {
    ProgressBar bar(progressScreen());
    try {
        DirectorPlan plan = OrvantaDirector(controls).plan(params, &bar);
        throwIfInterrupted();
        return plan;
    } catch (const OrvantaException& failure) {
        if (failure.errorCode() == OVERR_USER_CANCELLED) {
            throw Interrupted();
        }
        throw;
    }
}

void runStages(const Params& params, OV_DATA_STORE& store, const OrvantaWorker::StageObserver& observer) {
    const StandardOutputGuard guard;
    ProgressBar bar(progressScreen());
    try {
        OrvantaWorker().runPipeline(params, &bar, store, observer);
    } catch (const OrvantaException& failure) {
        if (failure.errorCode() == OVERR_USER_CANCELLED) {
            throw Interrupted();
        }
        throw;
    }
    store.progress = nullptr; // The bar ends here; the store lives on.
    throwIfInterrupted();
}

OV_TIME_RECT askFrameAt(const Params& params, const EngineSetup& engine, long long time) {
    const StandardOutputGuard guard;
    return onlyFrame(makeEngine(engine)->calcOrvantaKeyframeAtTime(params, time), "--at");
}

OV_TIME_RECT askFrameAtWindow(const Params& params, const EngineSetup& engine) {
    const StandardOutputGuard guard;
    return onlyFrame(makeEngine(engine)->calcKeyframeAtWindow(params), "--window");
}

} // namespace OrvantaNS::command
