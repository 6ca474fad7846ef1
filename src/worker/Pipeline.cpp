// The whole computation from one request to one keyframe list: what is done in which order, and nothing else.

#include "OrvantaWorker.h"

#include "frame/DataStore.h"
#include "frame/InForce.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "parser/walk/ComputationClock.h"
#include "worker/slicing/WindowTimes.h"
#include "worker/zones/RequestChecks.h"

namespace OrvantaNS {

namespace {

// Merging and keyframe creation take a double that they do not read.
constexpr double kUnread = 0.0;

} // namespace

OrvantaWorker::OrvantaWorker() = default;

OrvantaWorker::~OrvantaWorker() = default;

OrvantaWorker::KeyframeList OrvantaWorker::calcOrvantaKeyframes(const Params& params,
                                                                ProgressReporter* reporter) const {
    auto result = std::make_shared<std::vector<OV_TIME_RECT>>();
    OV_DATA_STORE store;
    runPipeline(params, reporter, store, {});
    *result = store.keyframes;
    return result;
}

void OrvantaWorker::runPipeline(const Params& params, ProgressReporter* reporter, OV_DATA_STORE& store,
                                const StageObserver& observer) const {
    const auto complete = [&](OV_PIPELINE_STAGE stage) {
        if (observer) {
            observer(stage, store);
        }
    };

    checkRequest(params, RefusalOutput::printed);

    // From here on all conversions of this thread work for this request.
    const ComputationClock clock(params.timeScale());
    store.progress = reporter;
    store.fadeSeconds = DataParser::convertTime(params.fadeDuration());
    store.clipStart = DataParser::convertTime(params.clipStart());
    store.clipStop = DataParser::convertTime(params.clipStop());
    store.targetWidth = params.targetWidth();
    store.targetHeight = params.targetHeight();
    DataParser::setProgress(store, store.clipStart, OV_STAGE_PARSE);

    parseLiveZones(params, store);
    complete(OV_PIPELINE_ZONES);
    DataParser parser; // lives to the end: keyframe creation reads its strokes
    parseObjectData(params, store, parser);
    const WindowTimes windowTimes(store.windowObjects);
    countSteps(store, store.windowObjects.size());
    const InForce<const WindowTimes*> inForce(store.windowTimes, &windowTimes);
    complete(OV_PIPELINE_OBJECTS);
    sliceTime(store);
    complete(OV_PIPELINE_SLICES);
    mergeSlices(params, store, kUnread);
    complete(OV_PIPELINE_SHOTS);
    createKeyframeLoop(params, store, parser, kUnread);
    complete(OV_PIPELINE_KEYFRAMES);

    if (store.keyframes.empty()) {
        throw OrvantaException("No keyframes were created!", OVERR_NO_KEYFRAMES);
    }
}

} // namespace OrvantaNS
