// The frame of merging: the best-first pass over a queue of proposals, then the pattern and the cleanup pass.
//
// The queue is never searched or updated. Each slice counts its revisions in `mergeId`, each proposal remembers the two
// revisions that it was made from, and a proposal that surfaces out of date is thrown away.
#include <algorithm>
#include <cstddef>
#include <iostream>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "frame/Prefetch.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "worker/merging/MergeEntry.h"
#include "worker/merging/SliceTests.h"

namespace OrvantaNS {

namespace {

// Work on one proposal, steps: what two slices are, and what is to happen between them.
constexpr std::uint64_t kStepsPerProposal = 16;

// Proposals come by priority, so their slices lie anywhere in hours of them. The proposal after the next one is mostly a
// child of the queue's root: the memory of both children's slices is asked for that early, ...
void prefetchSlices(const OV_DATA_STORE& store, const MERGE_ENTRY& entry) {
    const auto& slices = store.slices;
    for (const std::uint32_t slice : {entry.firstSlice, entry.nextSlice}) {
        prefetch(&slices[slice].map);
        prefetch(&slices[slice].mergeId);
        prefetch(&slices[slice].blocked);
    }
}

// ... and that of the next one's maps once they are there.
void prefetchMaps(const OV_DATA_STORE& store, const MERGE_ENTRY& entry) {
    for (const std::uint32_t slice : {entry.firstSlice, entry.nextSlice}) {
        prefetch(store.slices[slice].map.spaces.data());
    }
}

} // namespace

void OrvantaWorker::mergeSlices(const Params& params, OV_DATA_STORE& store, double) const {
    if (store.slices.empty()) {
        throw OrvantaException("Need String! somehow we have no slices!", OVERR_MERGE_FAILED);
    }
    // The first camera position is a fixed point of merging.
    store.slices[0].keyframe = true;
    forceLastKeyframe(store);

    MergeQueue queue;
    for (std::uint32_t i = 0; i < store.slices.size(); ++i) {
        countSteps(store, kStepsPerProposal);
        if (!store.slices[i].blank) {
            createMergeEntry(store, queue, i);
        }
    }
    store.mergesRemaining = static_cast<std::int32_t>(queue.size());
    store.mergesTotal = store.mergesRemaining;
    while (!queue.empty()) {
        MERGE_ENTRY entry = popMergeEntry(queue);
        for (std::size_t child = 1; child < std::min<std::size_t>(queue.size(), 3); ++child) {
            prefetchSlices(store, queue[child]);
        }
        processMerge(store, queue, entry);
        if (!queue.empty()) {
            prefetchMaps(store, queue.front());
        }
        // Retests add proposals that the total does not count, so more executors may fire than it says.
        const double remaining = std::max(store.mergesRemaining, 0);
        DataParser::setProgress(store, (store.clipStop - store.clipStart) * (1.0 - remaining / store.mergesTotal),
                                OV_STAGE_MERGE);
    }

    processMergeCombos(params, store);
    mergeCleanupPass(store);
}

void OrvantaWorker::forceLastKeyframe(OV_DATA_STORE& store) const {
    // Where one search has found no target, a later one, which starts further left, finds none either.
    bool mayFindTarget = true;
    while (store.slices.size() >= 2 && sliceLength(store.slices.back()) < keyframeFloor(store)) {
        const auto last = static_cast<std::uint32_t>(store.slices.size() - 1);
        std::uint32_t absorber = mayFindTarget ? findPreviousTargetSlice(store, last) : last;
        if (absorber == last) {
            // Only blanks before it: the nearest one takes over its time.
            mayFindTarget = false;
            absorber = last - 1;
        }
        combineSlices(store, absorber, last);
        store.slices.erase(store.slices.begin() + static_cast<std::ptrdiff_t>(absorber) + 1, store.slices.end());
    }
}

unsigned int OrvantaWorker::createMergeEntry(OV_DATA_STORE& store, MergeQueue& queue, unsigned int slice) const {
    const std::uint32_t next = findNextTargetSlice(store, slice);
    if (next == slice) {
        return slice;
    }
    MERGE_ENTRY entry;
    entry.firstSlice = slice;
    entry.nextSlice = next;
    entry.firstMergeId = store.slices[slice].mergeId;
    entry.nextMergeId = store.slices[next].mergeId;
    determineMergeStrategy(store, entry);
    if (entry.strategy != OV_MERGE_NONE) {
        pushMergeEntry(queue, entry);
    }
    return next;
}

void OrvantaWorker::processMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    const std::int32_t firstId = store.slices[entry.firstSlice].mergeId;
    const std::int32_t nextId = store.slices[entry.nextSlice].mergeId;
    if (firstId == kDeadMergeId || nextId == kDeadMergeId || firstId > entry.firstMergeId ||
        nextId > entry.nextMergeId) {
        return;
    }
    switch (entry.strategy) {
    case OV_MERGE_TIGHT:
        return doTightMerge(store, queue, entry);
    case OV_MERGE_WIDE:
        return doWideMerge(store, queue, entry);
    case OV_MERGE_LOOSE:
        return doLooseMerge(store, queue, entry);
    case OV_MERGE_FORCED:
        return doForcedMerge(store, queue, entry);
    case OV_MERGE_OFF_WINDOW:
        return doOffWindowMerge(store, queue, entry);
    case OV_MERGE_FULL_SCREEN:
        return doFullScreenMerge(store, queue, entry);
    case OV_MERGE_TIGHT_PAN_TIGHT:
        return doTightPanTight(store, queue, entry);
    case OV_MERGE_TIGHT_GROW_WIDE:
        return doTightGrowWide(store, queue, entry);
    case OV_MERGE_WIDE_SHRINK_TIGHT:
        return doWideShrinkTight(store, queue, entry);
    case OV_MERGE_RETURN_WINDOW:
        return doReturnWindow(store, queue, entry);
    case OV_MERGE_GO_FULL_SCREEN:
        return doGoFullScreen(store, queue, entry);
    case OV_MERGE_GO_OFF_WINDOW:
        return doGoOffWindow(store, queue, entry);
    default:
        // A guard: only entries with a strategy are ever queued.
        std::cout << "IMPOSSIBLE MERGE" << std::endl;
        throw OrvantaException("Need String! Impossible to process merge", OVERR_MERGE_FAILED);
    }
}

void OrvantaWorker::combineSlices(OV_DATA_STORE& store, unsigned int first, unsigned int last) const {
    if (first >= last) {
        return;
    }
    countSteps(store, last - first);
    for (std::size_t i = std::size_t{first} + 1; i <= last; ++i) {
        OV_FOCUS_SLICE& absorbed = store.slices[i];
        if (absorbed.mergeId == kDeadMergeId) {
            continue;
        }
        store.slices[first].stop = absorbed.stop;
        absorbed.mergeId = kDeadMergeId;
        ++store.slices[first].mergeId;
    }
}

void OrvantaWorker::retestMerge(OV_DATA_STORE& store, MergeQueue& queue, unsigned int slice) const {
    const std::uint32_t previous = findPreviousTargetSlice(store, slice);
    if (previous != slice) {
        createMergeEntry(store, queue, previous);
    }
    createMergeEntry(store, queue, slice);
}

void OrvantaWorker::retestBlock(OV_DATA_STORE& store, MergeQueue& queue, unsigned int first, unsigned int next) const {
    const std::uint32_t previous = findPreviousTargetSlice(store, first);
    if (previous != first) {
        createMergeEntry(store, queue, previous);
    }
    createMergeEntry(store, queue, next);
}

} // namespace OrvantaNS
