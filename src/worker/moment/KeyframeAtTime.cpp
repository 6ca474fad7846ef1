// One frame for one moment, from the 20 seconds around it: the window in front if it nearly fits the target, else a
// window in motion, else what the value space says about the next three seconds. No slicing, no merging.

#include "OrvantaWorker.h"

#include <algorithm>

#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "parser/DataParser.h"
#include "parser/walk/ComputationClock.h"
#include "valuespace/ValueSpace.h"
#include "worker/zones/RequestChecks.h"

namespace OrvantaNS {

namespace {

// How far around the moment the recording is read, seconds: a step of the parser's meta pass to either side.
constexpr double kReachSeconds = 10.0;
// What the value space is asked about, seconds from the moment on: the longest that a slice runs from its probe.
constexpr double kValueSeconds = 3.0;
// How far from the moment a window may have been in motion, seconds.
constexpr double kAnimationSeconds = 0.2;

// A quarter larger than the target still counts as fitting it. The product needs 64 bits at the ends of the range.
bool nearlyFits(std::int32_t extent, std::int32_t target) { return extent <= std::int64_t{5} * target / 4; }

} // namespace

OrvantaWorker::KeyframeList OrvantaWorker::calcOrvantaKeyframeAtTime(const Params& params, long long time) const {
    auto result = std::make_shared<std::vector<OV_TIME_RECT>>();
    checkRequest(params, RefusalOutput::silent);
    OV_DATA_STORE store;
    const ComputationClock clock(params.timeScale());
    store.clipStart = DataParser::convertTime(params.clipStart());
    store.clipStop = DataParser::convertTime(params.clipStop());
    createLiveZoneAtTime(params, store, time);
    DataParser parser;
    parseObjectData(params, store, parser);
    applyOrvantaKeyframeMode(params, store, time);
    if (store.keyframes.empty()) {
        // A guard: each mode appends one.
        throw OrvantaException("No keyframe was generated, this is bad, really bad!", OVERR_NO_KEYFRAMES);
    }
    result->push_back(store.keyframes.front());
    return result;
}

void OrvantaWorker::createLiveZoneAtTime(const Params& params, OV_DATA_STORE& store, long long time) const {
    const double moment = DataParser::convertTime(time);
    OV_LIVE_ZONE zone;
    zone.start = std::max(store.clipStart, moment - kReachSeconds);
    zone.stop = std::min(store.clipStop, moment + kReachSeconds);
    zone.rect = params.recordingRegions().at(0).rect; // whatever region holds at the moment
    store.liveZones.push_back(zone);
}

void OrvantaWorker::applyOrvantaKeyframeMode(const Params& params, OV_DATA_STORE& store, long long time) const {
    store.firstActiveObject = 0;
    store.nextObject = 0;
    const double moment = DataParser::convertTime(time);
    const Rectangle region = params.recordingRegions().at(0).rect;
    const Rectangle bound = localRegion(region);
    int padWidth = params.targetWidth();
    int padHeight = params.targetHeight();

    const Rectangle window = getSnapWindowAtTime(moment, store);
    if (nearlyFits(width(window), params.targetWidth()) && nearlyFits(height(window), params.targetHeight()) &&
        window.right > window.left && window.bottom > window.top) {
        Rectangle frame = window;
        calculatePadding(padWidth, padHeight, bound, frame);
        padToAspectRatio(frame, padWidth, padHeight, window, bound);
        store.keyframes.push_back({time, frame});
        return;
    }

    Rectangle frame = getAnimWindowAtTime(moment, store);
    if (!isEmpty(frame)) {
        calculatePadding(padWidth, padHeight, bound, frame);
        padToAspectRatio(frame, padWidth, padHeight, kNoWindow, bound);
        store.keyframes.push_back({time, frame});
        return;
    }

    VS_VALUE_MAP map;
    if (!store.valueObjects.empty()) {
        map = detectKeyframe(store, moment);
    }
    if (!map.spaces.empty()) {
        frame = map.spaces.front().first;
    } else if (!isEmpty(window)) {
        frame = window;
    } else {
        frame = region; // where it stands on the screen: the framing brings it back on to the local region
    }
    calculatePadding(padWidth, padHeight, bound, frame);
    snapToValue(frame, padWidth, padHeight, window, map, bound);
    padToAspectRatio(frame, padWidth, padHeight, window, bound);
    store.keyframes.push_back({time, frame});
}

VS_VALUE_MAP OrvantaWorker::detectKeyframe(OV_DATA_STORE& store, double time) const {
    ValueSpace space(&store);
    const double end = std::min(time + kValueSeconds, store.liveZones.at(0).stop);
    loadObjects(store, {time, end}, space);
    recalcValueInterval(store, {time, end}, space);
    VS_VALUE_MAP map = space.summarize((end - time) * g_ValueMatrix[Reserved16].value);
    // The densest rectangle leads here, and not the highest tier.
    sortByDensity(map.spaces);
    return map;
}

Rectangle OrvantaWorker::getSnapWindowAtTime(double time, OV_DATA_STORE& store) const {
    for (const OV_VALUE_OBJECT& object : store.windowObjects) {
        if (object.type == ActiveWindow && object.start <= time && time <= object.stop) {
            return object.rect;
        }
    }
    return {};
}

Rectangle OrvantaWorker::getAnimWindowAtTime(double time, OV_DATA_STORE& store) const {
    const double from = time - kAnimationSeconds;
    const double to = time + kAnimationSeconds;
    for (const OV_VALUE_OBJECT& object : store.windowObjects) {
        if (object.type == ForeAnimate && std::min(object.stop, to) - std::max(object.start, from) > 0.0) {
            return object.rect;
        }
    }
    return {};
}

} // namespace OrvantaNS
