// The blocks: each leaves both slices of a valid entry standing and fixes the camera move between them.
#include <cstddef>

#include "OrvantaWorker.h"
#include "worker/merging/MergeEntry.h"
#include "worker/merging/SliceTests.h"

namespace OrvantaNS {

namespace {

void setCameraIfNone(OV_FOCUS_SLICE& slice, OV_MERGE_STRATEGY mode) {
    if (slice.mergeType == OV_MERGE_NONE) {
        slice.mergeType = mode;
    }
}

// Fixes the transition between the pair. Neither map nor breakdown changes, and the next slice stays free to merge with
// what follows it.
void fixTransition(const OrvantaWorker& worker, OV_DATA_STORE& store, OrvantaWorker::MergeQueue& queue,
                   const MERGE_ENTRY& entry) {
    OV_FOCUS_SLICE& first = store.slices[entry.firstSlice];
    OV_FOCUS_SLICE& next = store.slices[entry.nextSlice];
    first.keyframe = true;
    next.keyframe = true;
    --store.mergesRemaining;
    // Only the blanks between the two are absorbed.
    worker.combineSlices(store, entry.firstSlice, entry.nextSlice - 1);
    first.blocked = true;
    // Every older proposal that names either is out of date now, whether or not there were blanks to absorb.
    ++first.mergeId;
    ++next.mergeId;
    worker.retestBlock(store, queue, entry.firstSlice, entry.nextSlice);
}

} // namespace

void OrvantaWorker::doTightPanTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    store.slices[entry.firstSlice].mergeType = OV_MERGE_TIGHT;
    store.slices[entry.nextSlice].mergeType = OV_MERGE_TIGHT;
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doTightGrowWide(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    store.slices[entry.firstSlice].mergeType = OV_MERGE_TIGHT;
    store.slices[entry.nextSlice].mergeType = OV_MERGE_WIDE;
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doWideShrinkTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    store.slices[entry.firstSlice].mergeType = OV_MERGE_WIDE;
    store.slices[entry.nextSlice].mergeType = OV_MERGE_TIGHT;
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doReturnWindow(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    setCameraIfNone(store.slices[entry.firstSlice], OV_MERGE_LOOSE);
    setCameraIfNone(store.slices[entry.nextSlice], OV_MERGE_WIDE);
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doGoFullScreen(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    setCameraIfNone(store.slices[entry.firstSlice], OV_MERGE_LOOSE);
    store.slices[entry.nextSlice].mergeType = OV_MERGE_FULL_SCREEN;
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doGoOffWindow(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    fixTransition(*this, store, queue, entry);
}

void OrvantaWorker::doTightLooseTight(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    const std::uint32_t lastIndex = findNextTargetSlice(store, entry.nextSlice);
    OV_FOCUS_SLICE& first = store.slices[entry.firstSlice];
    OV_FOCUS_SLICE& middle = store.slices[entry.nextSlice];
    OV_FOCUS_SLICE& last = store.slices[lastIndex];
    combineSlices(store, entry.firstSlice, entry.nextSlice - 1);
    combineSlices(store, entry.nextSlice, lastIndex - 1);
    if (sliceLength(middle) < keyframeFloor(store)) {
        const double boundary = last.start - store.fadeSeconds - kRestSeconds;
        middle.start = boundary;
        first.stop = boundary;
    }
    first.keyframe = true;
    middle.keyframe = true;
    last.keyframe = true;
    middle.mergeType = isFullScreen(middle.breakdown) ? OV_MERGE_FULL_SCREEN : OV_MERGE_LOOSE;
    // The middle shows both close shots. By index: without a last slice of its own, the middle's own list grows here.
    for (const OV_FOCUS_SLICE* source : {&first, &last}) {
        const std::size_t count = source->map.tier4Rects.size();
        for (std::size_t i = 0; i < count; ++i) {
            const Rectangle rect = source->map.tier4Rects[i];
            middle.map.tier4Rects.push_back(rect);
        }
    }
    ++first.mergeId;
    ++middle.mergeId;
    ++last.mergeId;
    first.blocked = true;
    middle.blocked = true;
    const std::uint32_t previous = findPreviousTargetSlice(store, entry.firstSlice);
    if (previous != entry.firstSlice) {
        createMergeEntry(store, queue, previous);
    }
    createMergeEntry(store, queue, lastIndex);
    store.mergesRemaining -= 2;
}

} // namespace OrvantaNS
