#include "asking/Engine.h"

#include <array>
#include <memory>

#include <fmt/format.h>

#include "OrvantaVotingAlgorithm.h"
#include "terminal/Interrupt.h"
#include "terminal/ProgressBar.h"
#include "terminal/StandardOutputGuard.h"

namespace OrvantaNS::command {

namespace {

std::unique_ptr<Orvanta> makeEngine(EngineChoice engine) {
    if (engine == EngineChoice::Voting) {
        return std::make_unique<OrvantaVotingAlgorithm>();
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

} // namespace

void completeRequest(Recording& recording, const RequestOptions& options) {
    Params& params = recording.params;
    if (options.size) {
        const Rectangle region =
            params.recordingRegions().empty() ? Rectangle{} : params.recordingRegions().front().rect;
        const FrameSize size = resolveSize(*options.size, region, options.engine);
        params.setTargetWidth(size.width).setTargetHeight(size.height);
    } else if (recording.form != RecordingForm::Dump) {
        throw OptionError("--size is required: WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16");
    }
    params.setFadeDuration(resolveDuration(options.fadeSeconds, recording, "--fade"));
    const Clip clip = resolveClip(options.clip, recording);
    params.setClipInterval(clip.start, clip.stop);
}

std::string_view reasonName(std::int32_t mode) {
    constexpr std::array<std::string_view, 7> kNames{"",       "tight",      "wide",       "loose",
                                                     "forced", "off-window", "full screen"};
    return mode >= 0 && static_cast<std::size_t>(mode) < kNames.size() ? kNames[static_cast<std::size_t>(mode)] : "";
}

std::vector<ReasonedKeyframe> reasonedKeyframes(const OV_DATA_STORE& store) {
    std::vector<ReasonedKeyframe> keyframes;
    for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
        ReasonedKeyframe keyframe{store.keyframes[i], OV_MERGE_NONE, std::nullopt};
        if (i < store.keyframeSlices.size() && store.keyframeSlices[i] < store.slices.size()) {
            keyframe.slice = store.keyframeSlices[i];
            keyframe.mode = store.slices[store.keyframeSlices[i]].mergeType;
        }
        keyframes.push_back(keyframe);
    }
    return keyframes;
}

std::vector<ReasonedKeyframe> askKeyframes(const Params& params, EngineChoice engine) {
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
        keyframes.push_back({frame, OV_MERGE_NONE, std::nullopt});
    }
    // It never asks whether to stop either, so a cancelled run ends here.
    throwIfInterrupted();
    return keyframes;
}

void runStages(const Params& params, OV_DATA_STORE& store, const OrvantaWorker::StageObserver& observer) {
    const StandardOutputGuard guard;
    ProgressBar bar(progressTerminal());
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

OV_TIME_RECT askFrameAt(const Params& params, EngineChoice engine, long long time) {
    const StandardOutputGuard guard;
    return onlyFrame(makeEngine(engine)->calcOrvantaKeyframeAtTime(params, time), "--at");
}

OV_TIME_RECT askFrameAtWindow(const Params& params, EngineChoice engine) {
    const StandardOutputGuard guard;
    return onlyFrame(makeEngine(engine)->calcKeyframeAtWindow(params), "--window");
}

} // namespace OrvantaNS::command
