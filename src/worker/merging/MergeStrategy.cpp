// What should happen between a slice and its next target, and how urgently. Nothing here moves a slice: the answer goes
// into the entry, and is carried out later if it is still valid when it surfaces.
#include "OrvantaWorker.h"
#include "worker/merging/MergeEntry.h"
#include "worker/merging/SliceTests.h"

namespace OrvantaNS {

namespace {

// Beyond the fade, seconds: a slice of at least this length deserves a camera move of its own.
constexpr double kLongSliceSeconds = 6.0;

// Seconds: a slice below this may be swallowed by a neighbour that it would not fit with. The fade does not matter to
// it: such a slice is a glance, however fast the camera is.
constexpr double kShortSliceSeconds = 5.0;

// Pixels: an edge that moves by less makes no pan.
constexpr int kPanPixels = 128;

// A shot that is too short to stand comes before everything else.
constexpr std::int32_t kForcedPriority = 1000;

// Fixed transitions do not depend on lengths. Those within a window go before the merges of long slices (at most 180),
// the others behind most merges.
constexpr std::int32_t kWindowBlockPriority = 300;
constexpr std::int32_t kOutsideBlockPriority = 100;

// Base priorities of the merges: the better the shared shot, the sooner.
constexpr int kTightBase = 900;
constexpr int kHalfTightBase = 450;
constexpr int kShortTightBase = 225;
constexpr int kOffWindowBase = 600;
constexpr int kFullScreenBase = 400;
constexpr int kWideBase = 400;
constexpr int kHalfWideBase = 200;
constexpr int kShortWideBase = 100;
constexpr int kLooseBase = 100;

// However long a pair is, its merge keeps this share of the base priority.
constexpr double kLengthFactorFloor = 0.2;

// The pair of an entry with what all rules about it ask for.
struct Pair {
    const SLICE_BREAKDOWN& first;
    const SLICE_BREAKDOWN& next;
    Rectangle hot; // Bounds of both hot rectangles.
    bool fits;     // A close shot can show both.

    Pair(const OV_DATA_STORE& store, const MERGE_ENTRY& entry)
        : first(store.slices[entry.firstSlice].breakdown), next(store.slices[entry.nextSlice].breakdown),
          hot(first.tier4Rect.noZeroBound(next.tier4Rect)), fits(fitsTarget(store, hot)) {}
};

double longSlice(const OV_DATA_STORE& store) { return store.fadeSeconds + kLongSliceSeconds; }

bool setStrategy(MERGE_ENTRY& entry, OV_MERGE_STRATEGY strategy, std::int32_t priority) {
    entry.strategy = strategy;
    entry.priority = priority;
    return true;
}

bool proposeBlock(const OrvantaWorker& worker, OV_DATA_STORE& store, MERGE_ENTRY& entry, const Pair& pair,
                  double firstLength) {
    if (firstLength < longSlice(store) && worker.getLengthPlusBlanks(store, entry.nextSlice) < longSlice(store)) {
        return false;
    }
    const bool apartInWindow = worker.doWindowsMerge(store, entry) && !pair.fits;
    const bool firstWindowed = isWindowed(pair.first);
    const bool nextWindowed = isWindowed(pair.next);
    if (isTightInWindow(pair.first) && isTightInWindow(pair.next) && apartInWindow &&
        worker.detectMotion(pair.hot, pair.first.tier4Rect, kPanPixels)) {
        return setStrategy(entry, OV_MERGE_TIGHT_PAN_TIGHT, kWindowBlockPriority);
    }
    if (isTightInWindow(pair.first) && nextWindowed && apartInWindow) {
        return setStrategy(entry, OV_MERGE_TIGHT_GROW_WIDE, kWindowBlockPriority);
    }
    if (firstWindowed && isTightInWindow(pair.next) && apartInWindow) {
        return setStrategy(entry, OV_MERGE_WIDE_SHRINK_TIGHT, kWindowBlockPriority);
    }
    if (!firstWindowed && nextWindowed) {
        return setStrategy(entry, OV_MERGE_RETURN_WINDOW, kOutsideBlockPriority);
    }
    if (isFullScreen(pair.next) && !isFullScreen(pair.first)) {
        return setStrategy(entry, OV_MERGE_GO_FULL_SCREEN, kOutsideBlockPriority);
    }
    if (firstWindowed && !nextWindowed && !isFullScreen(pair.next)) {
        return setStrategy(entry, OV_MERGE_GO_OFF_WINDOW, kOutsideBlockPriority);
    }
    return false;
}

void proposeTight(const OrvantaWorker& worker, OV_DATA_STORE& store, MERGE_ENTRY& entry, const Pair& pair,
                  bool& decided) {
    const bool firstTight = isTightInWindow(pair.first);
    const bool nextTight = isTightInWindow(pair.next);
    if (firstTight && nextTight && worker.doWindowsMerge(store, entry) && pair.fits) {
        worker.testPriority(store, entry, OV_MERGE_TIGHT, kTightBase);
        decided = true;
    } else if (pair.first.tight && nextTight && contains(pair.next.windowRect, pair.first.tier4Rect) && pair.fits) {
        // The first needs no window of its own: its hot rectangle lies in the next one's.
        worker.testPriority(store, entry, OV_MERGE_TIGHT, kTightBase);
        decided = true;
    } else if ((firstTight || nextTight) && pair.fits) {
        worker.testPriority(store, entry, OV_MERGE_TIGHT, kHalfTightBase);
        decided = true;
    } else if (decided) {
        return;
    } else if (firstTight && worker.getLengthPlusBlanks(store, entry.nextSlice) < kShortSliceSeconds) {
        worker.testPriority(store, entry, OV_MERGE_TIGHT, kShortTightBase);
    } else if (nextTight && worker.getLengthPlusBlanks(store, entry.firstSlice) < kShortSliceSeconds) {
        worker.testPriority(store, entry, OV_MERGE_TIGHT, kShortTightBase);
    }
}

void proposeWide(const OrvantaWorker& worker, OV_DATA_STORE& store, MERGE_ENTRY& entry, const Pair& pair,
                 bool& decided) {
    const bool firstWindowed = isWindowed(pair.first);
    const bool nextWindowed = isWindowed(pair.next);
    if (firstWindowed && nextWindowed && worker.doWindowsMerge(store, entry)) {
        worker.testPriority(store, entry, OV_MERGE_WIDE, kWideBase);
        decided = true;
    } else if (decided) {
        return;
    } else if ((nextWindowed && contains(pair.next.windowRect, pair.first.tier4Rect)) ||
               (firstWindowed && contains(pair.first.windowRect, pair.next.tier4Rect))) {
        worker.testPriority(store, entry, OV_MERGE_WIDE, kHalfWideBase);
        decided = true;
    } else if (firstWindowed && worker.getLengthPlusBlanks(store, entry.nextSlice) < kShortSliceSeconds) {
        worker.testPriority(store, entry, OV_MERGE_WIDE, kShortWideBase);
    } else if (nextWindowed && worker.getLengthPlusBlanks(store, entry.firstSlice) < kShortSliceSeconds) {
        worker.testPriority(store, entry, OV_MERGE_WIDE, kShortWideBase);
    }
}

void proposeOffWindow(const OrvantaWorker& worker, OV_DATA_STORE& store, MERGE_ENTRY& entry, const Pair& pair,
                      bool& decided) {
    if (pair.fits && !pair.first.inWindow && !pair.next.inWindow) {
        worker.testPriority(store, entry, OV_MERGE_OFF_WINDOW, kOffWindowBase);
        decided = true;
    }
}

void proposeFullScreen(const OrvantaWorker& worker, OV_DATA_STORE& store, MERGE_ENTRY& entry, const Pair& pair,
                       bool& decided) {
    if ((isFullScreen(pair.next) && worker.getLengthPlusBlanks(store, entry.firstSlice) < kShortSliceSeconds) ||
        (isFullScreen(pair.first) && worker.getLengthPlusBlanks(store, entry.nextSlice) < kShortSliceSeconds)) {
        worker.testPriority(store, entry, OV_MERGE_FULL_SCREEN, kFullScreenBase);
        decided = true;
    }
}

} // namespace

void OrvantaWorker::determineMergeStrategy(OV_DATA_STORE& store, MERGE_ENTRY& entry) const {
    // A breakdown that an executor wrote is never computed again.
    for (const std::uint32_t slice : {entry.firstSlice, entry.nextSlice}) {
        if (!store.slices[slice].breakdown.identified) {
            store.slices[slice].breakdown = identifySlice(store, slice);
        }
    }
    const double firstLength = getLengthPlusBlanks(store, entry.firstSlice);
    if (store.slices[entry.firstSlice].keyframe && keyframeFloor(store) > firstLength) {
        setStrategy(entry, OV_MERGE_FORCED, kForcedPriority);
        return;
    }
    // Behind the forced merge: a fixed transition does not save a shot that is too short to be seen.
    if (store.slices[entry.firstSlice].blocked) {
        return;
    }
    const Pair pair(store, entry);
    bool decided = proposeBlock(*this, store, entry, pair, firstLength);
    proposeTight(*this, store, entry, pair, decided);
    proposeWide(*this, store, entry, pair, decided);
    proposeOffWindow(*this, store, entry, pair, decided);
    proposeFullScreen(*this, store, entry, pair, decided);
    if (!decided) {
        const double nextLength = getLengthPlusBlanks(store, entry.nextSlice);
        if (firstLength < longSlice(store) && nextLength < longSlice(store)) {
            testPriority(store, entry, OV_MERGE_LOOSE, kLooseBase);
        } else {
            // Overwrites what the short-slice rules have proposed, even at a higher priority: a long slice stays.
            setStrategy(entry, OV_MERGE_GO_OFF_WINDOW, kOutsideBlockPriority);
        }
    }
}

bool OrvantaWorker::determineBlockStrategy(OV_DATA_STORE& store, MERGE_ENTRY& entry) const {
    return proposeBlock(*this, store, entry, Pair(store, entry), getLengthPlusBlanks(store, entry.firstSlice));
}

void OrvantaWorker::detectTightMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const {
    proposeTight(*this, store, entry, Pair(store, entry), decided);
}

void OrvantaWorker::detectWideMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const {
    proposeWide(*this, store, entry, Pair(store, entry), decided);
}

void OrvantaWorker::detectOffWindowMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const {
    proposeOffWindow(*this, store, entry, Pair(store, entry), decided);
}

void OrvantaWorker::detectFullScreenMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry, bool& decided) const {
    proposeFullScreen(*this, store, entry, Pair(store, entry), decided);
}

int OrvantaWorker::calculateMergePriority(OV_DATA_STORE& store, MERGE_ENTRY& entry, int base) const {
    const OV_FOCUS_SLICE& first = store.slices[entry.firstSlice];
    const OV_FOCUS_SLICE& next = store.slices[entry.nextSlice];
    // The length of a long slice, from which on length no longer counts. It is added up in this order, which is not the
    // order of `longSlice`, and may differ from it in the last bit.
    const double scale = store.fadeSeconds + 5.0 + 1.0;
    const double span = 1.0 - (next.stop - first.start) / scale;
    const double firstShare = 1.0 - sliceLength(first) / scale;
    const double nextShare = 1.0 - sliceLength(next) / scale;
    double factor = (nextShare > 0.0 ? 0.25 * nextShare : 0.0) +
                    ((firstShare > 0.0 ? 0.25 * firstShare : 0.0) + (span > 0.0 ? 0.5 * span : 0.0));
    if (!(factor > kLengthFactorFloor)) {
        factor = kLengthFactorFloor;
    }
    return truncateToInt32(base * factor);
}

void OrvantaWorker::testPriority(OV_DATA_STORE& store, MERGE_ENTRY& entry, OV_MERGE_STRATEGY strategy, int base) const {
    const int priority = calculateMergePriority(store, entry, base);
    if (priority > entry.priority) {
        setStrategy(entry, strategy, priority);
    }
}

} // namespace OrvantaNS
