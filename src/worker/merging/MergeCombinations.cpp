// The second pass of merging looks at the frames that the camera would really show, in ones, twos and threes from left
// to right, and removes moves that a viewer would see as pointless. Nothing is proposed any more, and revisions rise in
// `combineSlices` alone.
#include <cstddef>

#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "worker/merging/SliceTests.h"
#include "worker/merging/ValueMapMerging.h"

namespace OrvantaNS {

namespace {

// Percent of each of two frames that must be common for the move between them to be pointless.
constexpr std::int64_t kNearPercent = 70;

// The same for the frames before and after an excursion: what the viewer comes back to must be what was left.
constexpr std::int64_t kReturnPercent = 90;

// Seconds beyond the keyframe floor that an excursion may last and still be dropped.
constexpr double kExcursionSeconds = 5.0;

// Seconds beyond the keyframe floor from which on an unclassified stretch stands by itself.
constexpr double kLooseStretchSeconds = 3.0;

// Work on one slice: the frames of three shots, steps.
constexpr std::uint64_t kStepsPerShot = 32;

// True when the common part makes up the given share of both frames. An empty frame asks for nothing.
bool shareFrame(const Rectangle& a, const Rectangle& b, std::int64_t percent) {
    const std::int64_t common = area(intersection(a, b));
    return common >= area(a) * percent / 100 && common >= area(b) * percent / 100;
}

} // namespace

void OrvantaWorker::processMergeCombos(const Params& params, OV_DATA_STORE& store) const {
    // The shots that stand so far, the latest at the back.
    std::vector<std::uint32_t> kept;
    for (std::uint32_t i = 0; i < store.slices.size(); ++i) {
        countSteps(store, kStepsPerShot);
        if (store.slices[i].blank || store.slices[i].mergeId == kDeadMergeId) {
            continue;
        }
        if (!kept.empty() && mergeNear(params, store, kept.back(), i)) {
            continue;
        }
        if (kept.size() >= 2) {
            const std::uint32_t first = kept[kept.size() - 2];
            const std::uint32_t middle = kept.back();
            if (mergeInOutIn(params, store, first, middle, i)) {
                kept.pop_back();
                continue;
            }
            if (mergeTightLooseTight(store, first, middle, i)) {
                // What stands before takes no part in a later pattern.
                kept.assign(1, i);
                continue;
            }
        }
        kept.push_back(i);
    }
}

bool OrvantaWorker::mergeNear(const Params& params, OV_DATA_STORE& store, unsigned int first, unsigned int next) const {
    if (!shareFrame(getSliceGeometry(params, store, first), getSliceGeometry(params, store, next), kNearPercent)) {
        return false;
    }
    doBestMerge(store, first, next);
    return true;
}

bool OrvantaWorker::mergeInOutIn(const Params& params, OV_DATA_STORE& store, unsigned int first, unsigned int middle,
                                 unsigned int next) const {
    const SLICE_BREAKDOWN& excursion = store.slices[middle].breakdown;
    if (!excursion.noWindow && !isWindowed(excursion)) {
        return false;
    }
    if (getLengthPlusBlanks(store, middle) > keyframeFloor(store) + kExcursionSeconds) {
        return false;
    }
    if (!shareFrame(getSliceGeometry(params, store, first), getSliceGeometry(params, store, next), kReturnPercent)) {
        return false;
    }
    doBestMerge(store, first, next);
    store.slices[middle].mergeId = kDeadMergeId;
    return true;
}

bool OrvantaWorker::mergeTightLooseTight(OV_DATA_STORE& store, unsigned int first, unsigned int middle,
                                         unsigned int next) const {
    OV_FOCUS_SLICE& before = store.slices[first];
    OV_FOCUS_SLICE& between = store.slices[middle];
    OV_FOCUS_SLICE& after = store.slices[next];
    if (!before.breakdown.tight || !after.breakdown.tight || between.breakdown.tight || isWindowed(between.breakdown) ||
        !(getLengthPlusBlanks(store, middle) < keyframeFloor(store) + kLooseStretchSeconds)) {
        return false;
    }
    combineSlices(store, first, middle - 1);
    combineSlices(store, middle, next - 1);
    if (sliceLength(between) < keyframeFloor(store)) {
        // The close shot before it gives up the time that the middle one lacks.
        const double boundary = after.start - store.fadeSeconds - kRestSeconds;
        between.start = boundary;
        before.stop = boundary;
    }
    before.keyframe = true;
    between.keyframe = true;
    after.keyframe = true;
    between.mergeType = isFullScreen(between.breakdown) ? OV_MERGE_FULL_SCREEN : OV_MERGE_LOOSE;
    // The frame that shows both close shots.
    between.breakdown.tier4Rect = boundingUnion(before.breakdown.tier4Rect, after.breakdown.tier4Rect);
    return true;
}

Rectangle OrvantaWorker::getSliceGeometry(const Params& params, OV_DATA_STORE& store, unsigned int slice) const {
    switch (store.slices[slice].mergeType) {
    case OV_MERGE_NONE:
    case OV_MERGE_FULL_SCREEN:
        return createFullScreenKeyframe(params, store, slice);
    case OV_MERGE_TIGHT:
        return createTightKeyframe(params, store, slice);
    case OV_MERGE_WIDE:
        return createWideKeyframe(params, store, slice);
    case OV_MERGE_LOOSE:
    case OV_MERGE_FORCED:
    case OV_MERGE_OFF_WINDOW:
        return createOffWindowKeyframe(params, store, slice);
    default:
        return {};
    }
}

void OrvantaWorker::doBestMerge(OV_DATA_STORE& store, unsigned int first, unsigned int next) const {
    OV_FOCUS_SLICE& a = store.slices[first];
    OV_FOCUS_SLICE& b = store.slices[next];
    const Rectangle hot = a.breakdown.tier4Rect.noZeroBound(b.breakdown.tier4Rect);
    // The flags of the breakdown stay, so that the camera mode may go against them: the frames follow the mode, the
    // later rules of this pass the flags.
    if (isTightInWindow(a.breakdown) || isTightInWindow(b.breakdown)) {
        if (isTightInWindow(b.breakdown)) {
            a.breakdown.windowRect = b.breakdown.windowRect;
        }
        a.breakdown.tier4Rect = hot;
        a.mergeType = OV_MERGE_TIGHT;
        mergeIntoFirst(*this, store, a.map, b.map);
    } else if (isWindowed(a.breakdown) && isWindowed(b.breakdown)) {
        a.breakdown.windowRect = boundingUnion(a.breakdown.windowRect, b.breakdown.windowRect);
        a.breakdown.tier4Rect = hot;
        a.mergeType = OV_MERGE_WIDE;
        mergeIntoFirst(*this, store, a.map, b.map);
    } else if (a.mergeType == OV_MERGE_FULL_SCREEN) {
        a.breakdown.windowRect = boundingUnion(a.breakdown.windowRect, b.breakdown.windowRect);
    } else {
        a.breakdown.tier4Rect = hot;
        a.mergeType = OV_MERGE_LOOSE;
        mergeIntoFirst(*this, store, a.map, b.map);
    }
    b.mergeId = kDeadMergeId;
    a.stop = b.stop;
}

} // namespace OrvantaNS
