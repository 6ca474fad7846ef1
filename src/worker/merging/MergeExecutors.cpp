// The merges: each folds the next slice of a valid entry into the first, and writes what the two have become.
#include <iostream>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "worker/merging/MergeEntry.h"
#include "worker/merging/SliceTests.h"
#include "worker/merging/ValueMapMerging.h"

namespace OrvantaNS {

namespace {

// A pair as it stood before its merge. The breakdowns are copies, since the first slice's is about to be rewritten.
struct MergePair {
    OV_FOCUS_SLICE& firstSlice;
    const OV_FOCUS_SLICE& nextSlice;
    const SLICE_BREAKDOWN first;
    const SLICE_BREAKDOWN next;
    const Rectangle hot; // Bounds of both hot rectangles.

    MergePair(OV_DATA_STORE& store, const MERGE_ENTRY& entry)
        : firstSlice(store.slices[entry.firstSlice]), nextSlice(store.slices[entry.nextSlice]),
          first(firstSlice.breakdown), next(nextSlice.breakdown), hot(first.tier4Rect.noZeroBound(next.tier4Rect)) {}
};

// What the merged slice shows. Its map is written to the first slice at once.
struct Content {
    Rectangle windowRect;
    Rectangle tier4Rect;
};

// One camera position for both.
Content takeBoth(const OrvantaWorker& worker, OV_DATA_STORE& store, const MergePair& pair, const Rectangle& window) {
    mergeIntoFirst(worker, store, pair.firstSlice.map, pair.nextSlice.map);
    return {window, pair.hot};
}

// What the next slice showed is given up: a short slice swallowed by its neighbour.
Content takeFirst(const MergePair& pair) { return {pair.first.windowRect, pair.first.tier4Rect}; }

// What the first slice showed is given up.
Content takeNext(const MergePair& pair) {
    pair.firstSlice.map = pair.nextSlice.map;
    return {pair.next.windowRect, pair.next.tier4Rect};
}

// The flags that a merge leaves, and the camera mode that goes with them.
struct Verdict {
    bool tight;
    bool inWindow;
    bool window;
    bool noWindow;
    OV_MERGE_STRATEGY mergeType;
};

// Writes the merged slice and asks for fresh proposals around it.
void finishMerge(const OrvantaWorker& worker, OV_DATA_STORE& store, OrvantaWorker::MergeQueue& queue,
                 const MERGE_ENTRY& entry, const MergePair& pair, const Content& content, const Verdict& verdict) {
    SLICE_BREAKDOWN& breakdown = pair.firstSlice.breakdown;
    breakdown.tight = verdict.tight;
    breakdown.inWindow = verdict.inWindow;
    breakdown.window = verdict.window;
    breakdown.noWindow = verdict.noWindow;
    breakdown.identified = true;
    breakdown.windowRect = content.windowRect;
    breakdown.tier4Rect = content.tier4Rect;
    // The proposals come before the flag of the next slice is taken over: a slice that has just swallowed a blocked one
    // is still proposed with its next target this one time.
    worker.retestMerge(store, queue, entry.firstSlice);
    pair.firstSlice.mergeType = verdict.mergeType;
    pair.firstSlice.blocked = pair.firstSlice.blocked || pair.nextSlice.blocked;
    --store.mergesRemaining;
}

// A guard: an entry is stale before its executor could see that its reason has gone.
[[noreturn]] void failMerge(const char* line) {
    std::cout << line << std::endl;
    throw OrvantaException("Need String! Impossible to process merge", OVERR_MERGE_FAILED);
}

} // namespace

void OrvantaWorker::doTightMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    const MergePair pair(store, entry);
    Content content;
    if (fitsTarget(store, pair.hot) && isTightInWindow(pair.first) && isTightInWindow(pair.next) &&
        doWindowsMerge(store, entry)) {
        content = takeBoth(*this, store, pair, largerWindow(pair.first, pair.next));
    } else if (isTightInWindow(pair.first)) {
        content = takeFirst(pair);
    } else if (isTightInWindow(pair.next)) {
        content = takeNext(pair);
    } else {
        failMerge("REALLY BAD TIGHT MERGE");
    }
    finishMerge(*this, store, queue, entry, pair, content, {true, true, true, false, OV_MERGE_TIGHT});
}

void OrvantaWorker::doWideMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    const MergePair pair(store, entry);
    Content content;
    if (isWindowed(pair.first) && isWindowed(pair.next) && doWindowsMerge(store, entry)) {
        content = takeBoth(*this, store, pair, largerWindow(pair.first, pair.next));
    } else if (isWindowed(pair.first)) {
        content = takeFirst(pair);
    } else if (isWindowed(pair.next)) {
        content = takeNext(pair);
    } else {
        failMerge("REALLY BAD WIDE MERGE");
    }
    finishMerge(*this, store, queue, entry, pair, content, {false, true, true, false, OV_MERGE_WIDE});
}

void OrvantaWorker::doLooseMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    const MergePair pair(store, entry);
    const Content content = takeBoth(*this, store, pair, largerWindow(pair.first, pair.next));
    // In a window, yet without one: from here on the slice joins neither close nor window nor off-window merges on its
    // own account.
    finishMerge(*this, store, queue, entry, pair, content, {false, true, false, false, OV_MERGE_LOOSE});
}

void OrvantaWorker::doForcedMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    OV_FOCUS_SLICE& first = store.slices[entry.firstSlice];
    const OV_FOCUS_SLICE& next = store.slices[entry.nextSlice];
    if (next.start - first.start > keyframeFloor(store)) {
        countSteps(store, entry.nextSlice - entry.firstSlice);
        // The blanks alone make room: they are cut back, and the first slice is stretched to exactly the floor.
        const double limit = first.start + store.fadeSeconds + kRestSeconds;
        for (std::uint32_t i = entry.firstSlice + 1; i < entry.nextSlice; ++i) {
            OV_FOCUS_SLICE& between = store.slices[i];
            if (!between.blank || between.mergeId == kDeadMergeId) {
                continue;
            }
            if (between.stop > limit) {
                between.start = limit;
                break;
            }
            between.mergeId = kDeadMergeId;
        }
        first.stop = limit;
        createMergeEntry(store, queue, entry.firstSlice);
        return;
    }
    const double firstLength = getLengthPlusBlanks(store, entry.firstSlice);
    const double nextLength = getLengthPlusBlanks(store, entry.nextSlice);
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    // The longer side gives the content, whole: a mixture would show neither.
    if (nextLength > firstLength) {
        first.map = next.map;
        first.breakdown = next.breakdown;
    }
    // The first slice is still a keyframe: while it stays below the floor, the fresh proposal is a forced one again.
    retestMerge(store, queue, entry.firstSlice);
    first.mergeType = OV_MERGE_FORCED;
    first.blocked = first.blocked || next.blocked;
    --store.mergesRemaining;
}

void OrvantaWorker::doOffWindowMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    const MergePair pair(store, entry);
    if (!fitsTarget(store, pair.hot)) {
        failMerge("REALLY BAD OFF_WINDOW MERGE");
    }
    const Content content = takeBoth(*this, store, pair, largerWindow(pair.first, pair.next));
    finishMerge(*this, store, queue, entry, pair, content, {true, false, false, false, OV_MERGE_OFF_WINDOW});
}

void OrvantaWorker::doFullScreenMerge(OV_DATA_STORE& store, MergeQueue& queue, MERGE_ENTRY& entry) const {
    combineSlices(store, entry.firstSlice, entry.nextSlice);
    const MergePair pair(store, entry);
    if (!isFullScreen(pair.first) && !isFullScreen(pair.next)) {
        failMerge("REALLY BAD FULL SCREEN MERGE");
    }
    const Content content =
        takeBoth(*this, store, pair, isFullScreen(pair.first) ? pair.first.windowRect : pair.next.windowRect);
    finishMerge(*this, store, queue, entry, pair, content, {false, false, false, true, OV_MERGE_FULL_SCREEN});
}

} // namespace OrvantaNS
