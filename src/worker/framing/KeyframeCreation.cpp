// Turns shots into keyframes: one frame for each, timed so that the move has begun when the viewer's eye gets there,
// and none that repeats the one before it. Frames are in local pixels, times in seconds until a keyframe is written.

#include "OrvantaWorker.h"

#include <algorithm>

#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "parser/cursor/StrokePauses.h"

namespace OrvantaNS {

namespace {

// Seconds between the end of one animated move and the start of the next: what a viewer needs to take a picture in.
constexpr double kViewSeconds = 1.0;
// What the first slice must last beyond its own delay and view, seconds, when others follow: a camera position before
// the first real move is only worth it when it stays.
constexpr double kFirstAmongOthersSeconds = 6.0;
// The earliest and the latest that a move starts before its slice, seconds.
constexpr double kLongestLeadSeconds = 3.0;
constexpr double kShortestLeadSeconds = 0.3;

// Work on one frame, steps.
constexpr std::uint64_t kStepsPerFrame = 16;

Rectangle firstLocalRegion(const Params& params) { return localRegion(params.recordingRegions().at(0).rect); }

// Frames `rect` with no regard to a window or to value.
Rectangle frameOf(const OrvantaWorker& worker, const Params& params, Rectangle rect) {
    const Rectangle bound = firstLocalRegion(params);
    int padWidth = params.targetWidth();
    int padHeight = params.targetHeight();
    worker.calculatePadding(padWidth, padHeight, bound, rect);
    worker.padToAspectRatio(rect, padWidth, padHeight, kNoWindow, bound);
    return rect;
}

// Frames `rect` with its padding spent on the window's edges and on the value beside it first.
Rectangle snappedFrameOf(const OrvantaWorker& worker, const Params& params, Rectangle rect, const Rectangle& window,
                         const VS_VALUE_MAP& map) {
    const Rectangle bound = firstLocalRegion(params);
    int padWidth = params.targetWidth();
    int padHeight = params.targetHeight();
    worker.calculatePadding(padWidth, padHeight, bound, rect);
    worker.snapToValue(rect, padWidth, padHeight, window, map, bound);
    worker.padToAspectRatio(rect, padWidth, padHeight, window, bound);
    return rect;
}

void appendKeyframe(OV_DATA_STORE& store, std::uint32_t slice, const Rectangle& frame) {
    store.keyframes.push_back({DataParser::revertTime(store.slices[slice].start), frame});
    store.keyframeSlices.push_back(slice);
}

// Moves the start of a slice to where the viewer's eye will be ready. The cursor's way to the slice began at `pause`.
void setOffEarly(OV_DATA_STORE& store, std::uint32_t slice, double pause) {
    const double start = store.slices[slice].start;
    // Keeps the move off the one before it, whatever became of that slice.
    const double floor = slice < 2 ? start : store.slices[slice - 1].start + store.fadeSeconds + kViewSeconds;
    const double candidate = std::min(std::max(start - kLongestLeadSeconds, pause), start - kShortestLeadSeconds);
    const double time = std::max(floor, candidate);
    if (time < start) {
        store.slices[slice].start = time;
    }
}

// The video starts with the whole recording on show, so the first slice gets a keyframe only if there is room for the
// move and if it shows something else.
void createFirstKeyframe(const OrvantaWorker& worker, const Params& params, OV_DATA_STORE& store) {
    OV_FOCUS_SLICE& slice = store.slices.front();
    const double length = slice.stop - slice.start;
    const double needed = 2.0 * store.fadeSeconds + 2.0 * kViewSeconds;
    if (!(length > needed)) {
        return;
    }
    if (store.slices.size() > 1 && !(length > needed + kFirstAmongOthersSeconds)) {
        return; // dead slices count as others
    }
    slice.start += store.fadeSeconds + kViewSeconds;
    Rectangle frame;
    switch (slice.mergeType) {
    case OV_MERGE_NONE:
    case OV_MERGE_FULL_SCREEN:
        return;
    case OV_MERGE_TIGHT:
        frame = worker.createTightKeyframe(params, store, 0);
        break;
    case OV_MERGE_WIDE:
        frame = worker.createWideKeyframe(params, store, 0);
        break;
    default:
        frame = worker.createOffWindowKeyframe(params, store, 0);
        break;
    }
    if (isEmpty(frame) || area(frame) == area(firstLocalRegion(params))) {
        return;
    }
    appendKeyframe(store, 0, frame);
}

} // namespace

void OrvantaWorker::createKeyframeLoop(const Params& params, OV_DATA_STORE& store, DataParser& parser, double) const {
    if (store.slices.empty()) {
        return;
    }
    createFirstKeyframe(*this, params, store);
    const StrokePauses pauses(parser, &store);
    for (std::uint32_t i = 1; i < store.slices.size(); ++i) {
        countSteps(store, kStepsPerFrame);
        const OV_FOCUS_SLICE& slice = store.slices[i];
        if (slice.mergeId == -1 || slice.blank) {
            continue;
        }
        Rectangle frame;
        switch (slice.mergeType) {
        case OV_MERGE_NONE:
            continue;
        case OV_MERGE_TIGHT:
            frame = createTightKeyframe(params, store, i);
            break;
        case OV_MERGE_WIDE:
            frame = createWideKeyframe(params, store, i);
            break;
        case OV_MERGE_FULL_SCREEN:
            frame = createFullScreenKeyframe(params, store, i);
            break;
        default:
            frame = createOffWindowKeyframe(params, store, i);
            break;
        }
        setOffEarly(store, i, pauses.lastBefore(slice.start));
        if (store.keyframes.empty() || store.keyframes.back().rect != frame) {
            appendKeyframe(store, i, frame);
        }
    }
}

Rectangle OrvantaWorker::createTightKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const {
    const OV_FOCUS_SLICE& s = store.slices[slice];
    return snappedFrameOf(*this, params, s.breakdown.tier4Rect, s.breakdown.windowRect, s.map);
}

Rectangle OrvantaWorker::createWideKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const {
    return frameOf(*this, params, store.slices[slice].breakdown.windowRect);
}

Rectangle OrvantaWorker::createOffWindowKeyframe(const Params& params, OV_DATA_STORE& store, unsigned int slice) const {
    const OV_FOCUS_SLICE& s = store.slices[slice];
    const Rectangle rect = isEmpty(s.breakdown.tier4Rect) ? firstLocalRegion(params) : s.breakdown.tier4Rect;
    return snappedFrameOf(*this, params, rect, kNoWindow, s.map);
}

Rectangle OrvantaWorker::createFullScreenKeyframe(const Params& params, OV_DATA_STORE&, unsigned int) const {
    return frameOf(*this, params, firstLocalRegion(params));
}

void OrvantaWorker::adjustZoomTime(OV_DATA_STORE& store, DataParser& parser, unsigned int slice) const {
    setOffEarly(store, slice, parser.findLastMousePause(store.slices[slice].start));
}

} // namespace OrvantaNS
