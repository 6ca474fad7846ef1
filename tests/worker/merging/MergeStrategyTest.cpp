#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "Slices.h"
#include "worker/merging/SliceTests.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::entryOf;
using testing::slice;
using testing::sliceStore;

const OrvantaWorker worker;

// Two windows that neither contain each other, and places in and out of them. The fade is 1 s, so that a slice of 7 s
// is long; a close shot takes 800 by 500 pixels.
constexpr Rectangle kWindow = box(0, 0, 1600, 1000);
constexpr Rectangle kOtherWindow = box(1700, 0, 1600, 1000);
constexpr Rectangle kHot = box(0, 0, 300, 200);
constexpr Rectangle kHotNear = box(200, 100, 300, 200);   // With kHot: 500 by 300.
constexpr Rectangle kHotFar = box(1200, 700, 300, 200);   // With kHot: 1500 by 900.
constexpr Rectangle kHotOutside = box(0, 1100, 300, 200); // In neither window.
constexpr Rectangle kHotOther = box(2000, 700, 300, 200); // In the other window.
constexpr Rectangle kScreen = box(0, 0, 3400, 1400);

struct Answer {
    std::int32_t strategy;
    std::int32_t priority;

    friend bool operator==(const Answer&, const Answer&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Answer& a) {
        return out << "strategy " << a.strategy << " at " << a.priority;
    }
};

// A pair end to end from 0 s, of these lengths.
OV_DATA_STORE pairOf(const SLICE_BREAKDOWN& first, double firstLength, const SLICE_BREAKDOWN& next, double nextLength) {
    return sliceStore({slice(0.0, firstLength, first), slice(firstLength, firstLength + nextLength, next)});
}

Answer determine(OV_DATA_STORE& store, unsigned first = 0, unsigned next = 1) {
    MERGE_ENTRY entry = entryOf(store, first, next);
    worker.determineMergeStrategy(store, entry);
    return {entry.strategy, entry.priority};
}

Answer determine(const SLICE_BREAKDOWN& first, double firstLength, const SLICE_BREAKDOWN& next, double nextLength) {
    OV_DATA_STORE store = pairOf(first, firstLength, next, nextLength);
    return determine(store);
}

// ---- calculateMergePriority ----

int priorityOf(OV_DATA_STORE& store, int base) {
    MERGE_ENTRY entry = entryOf(store, 0, 1);
    return worker.calculateMergePriority(store, entry, base);
}

TEST(CalculateMergePriorityTest, TwoSlicesOfTwoSeconds) {
    // D = 7: 0.25 x 5/7 + 0.25 x 5/7 + 0.5 x 3/7 = 4/7; 900 x 4/7 = 514.28.
    OV_DATA_STORE store = pairOf({}, 2.0, {}, 2.0);
    EXPECT_EQ(priorityOf(store, 900), 514);
    EXPECT_EQ(priorityOf(store, 600), 342);
    EXPECT_EQ(priorityOf(store, 100), 57);
}

TEST(CalculateMergePriorityTest, OtherFades_MoveTheScale) {
    OV_DATA_STORE store = pairOf({}, 2.0, {}, 2.0);
    store.fadeSeconds = 0.5; // D = 6.5: 0.25 x 9/13 twice, 0.5 x 5/13, which is 7/13.
    EXPECT_EQ(priorityOf(store, 1000), 538);
    store.fadeSeconds = 2.0; // D = 8: 0.25 x 3/4 twice, 0.5 x 1/2.
    EXPECT_EQ(priorityOf(store, 1000), 625);
    store.fadeSeconds = 0.0; // D = 6: 0.25 x 2/3 twice, 0.5 x 1/3.
    EXPECT_EQ(priorityOf(store, 900), 450);
}

TEST(CalculateMergePriorityTest, LongSlices_GetTheFloor) {
    OV_DATA_STORE store = pairOf({}, 7.0, {}, 7.0);
    EXPECT_EQ(priorityOf(store, 900), 180);
    EXPECT_EQ(priorityOf(store, 600), 120);
    EXPECT_EQ(priorityOf(store, 400), 80);
    EXPECT_EQ(priorityOf(store, 225), 45);
    EXPECT_EQ(priorityOf(store, 100), 20);
    store = pairOf({}, 7000.0, {}, 7000.0);
    EXPECT_EQ(priorityOf(store, 900), 180);
}

TEST(CalculateMergePriorityTest, EachTermCountsAboveZeroOnly) {
    // First 1.4 s, next 14 s: 0.25 x 0.8 = 0.2, the floor itself.
    OV_DATA_STORE store = pairOf({}, 1.4, {}, 14.0);
    EXPECT_EQ(priorityOf(store, 1000), 200);
    // First 0.7 s, next 14 s: 0.25 x 0.9 = 0.225.
    store = pairOf({}, 0.7, {}, 14.0);
    EXPECT_EQ(priorityOf(store, 1000), 225);
    // The other way round.
    store = pairOf({}, 14.0, {}, 0.7);
    EXPECT_EQ(priorityOf(store, 1000), 225);
    // 3.5 s and 3.5 s: the span is worth 0, the slices 0.25 x 0.5 each.
    store = pairOf({}, 3.5, {}, 3.5);
    EXPECT_EQ(priorityOf(store, 1000), 250);
}

TEST(CalculateMergePriorityTest, BlanksCountForTheSpanOnly) {
    // 1.75 s, 1.75 s of blank, 1.75 s: 0.25 x 0.75 twice, 0.5 x 0.25.
    OV_DATA_STORE store = sliceStore({slice(10, 11.75), slice(13.5, 15.25)});
    EXPECT_EQ(priorityOf(store, 1000), 500);
}

TEST(CalculateMergePriorityTest, NoScale_GivesTheFloor) {
    OV_DATA_STORE store = pairOf({}, 2.0, {}, 2.0);
    store.fadeSeconds = -6.0; // D is 0: every term is minus infinity.
    EXPECT_EQ(priorityOf(store, 900), 180);
    store = pairOf({}, 0.0, {}, 0.0);
    store.fadeSeconds = -6.0; // 0 / 0: no term is a number.
    EXPECT_EQ(priorityOf(store, 900), 180);
}

TEST(CalculateMergePriorityTest, PriorityThatDoesNotFit_IsTheLowestValue) {
    OV_DATA_STORE store = pairOf({}, 2.0, {}, 2.0);
    store.fadeSeconds = -6.0 - 1e-9;
    EXPECT_EQ(priorityOf(store, 900), std::numeric_limits<std::int32_t>::lowest());
}

// ---- testPriority ----

TEST(TestPriorityTest, OnlyAStrictlyGreaterPriorityReplaces) {
    OV_DATA_STORE store = pairOf({}, 7.0, {}, 7.0);
    MERGE_ENTRY entry = entryOf(store, 0, 1, 11);
    entry.priority = 179;
    worker.testPriority(store, entry, OV_MERGE_TIGHT, 900);
    EXPECT_EQ(entry.strategy, 1);
    EXPECT_EQ(entry.priority, 180);
    worker.testPriority(store, entry, OV_MERGE_WIDE, 900);
    EXPECT_EQ(entry.strategy, 1);
    worker.testPriority(store, entry, OV_MERGE_WIDE, 800);
    EXPECT_EQ(entry.strategy, 1);
    EXPECT_EQ(entry.priority, 180);
}

// ---- determineBlockStrategy ----

constexpr Answer kNothing = {0, -1};

Answer block(const SLICE_BREAKDOWN& first, double firstLength, const SLICE_BREAKDOWN& next, double nextLength) {
    OV_DATA_STORE store = pairOf(first, firstLength, next, nextLength);
    MERGE_ENTRY entry = entryOf(store, 0, 1);
    const bool set = worker.determineBlockStrategy(store, entry);
    EXPECT_EQ(set, entry.strategy != 0);
    return {entry.strategy, entry.priority};
}

Answer longBlock(const SLICE_BREAKDOWN& first, const SLICE_BREAKDOWN& next) { return block(first, 10.0, next, 10.0); }

TEST(DetermineBlockStrategyTest, EachRow) {
    const SLICE_BREAKDOWN tight = breakdown("TIW", kWindow, kHot);
    const SLICE_BREAKDOWN tightFar = breakdown("TIW", kWindow, kHotFar);
    const SLICE_BREAKDOWN wide = breakdown("IW", kWindow, kWindow);
    const SLICE_BREAKDOWN off = breakdown("TW", kWindow, kHotOutside);
    const SLICE_BREAKDOWN loose = breakdown("", {}, kHotOutside);
    const SLICE_BREAKDOWN full = breakdown("N", kScreen, kHotOutside);
    EXPECT_EQ(longBlock(tight, tightFar), (Answer{7, 300}));
    EXPECT_EQ(longBlock(tight, wide), (Answer{8, 300}));
    EXPECT_EQ(longBlock(wide, tight), (Answer{9, 300}));
    EXPECT_EQ(longBlock(loose, wide), (Answer{10, 100}));
    EXPECT_EQ(longBlock(off, tight), (Answer{10, 100}));
    EXPECT_EQ(longBlock(tight, full), (Answer{11, 100}));
    EXPECT_EQ(longBlock(loose, full), (Answer{11, 100}));
    EXPECT_EQ(longBlock(wide, loose), (Answer{12, 100}));
    EXPECT_EQ(longBlock(tight, off), (Answer{12, 100}));
}

TEST(DetermineBlockStrategyTest, NoRow_LeavesTheEntry) {
    const SLICE_BREAKDOWN loose = breakdown("", {}, kHot);
    const SLICE_BREAKDOWN full = breakdown("N", kScreen, kHotOutside);
    EXPECT_EQ(longBlock(loose, loose), kNothing);
    EXPECT_EQ(longBlock(full, full), kNothing);
    EXPECT_EQ(longBlock(full, loose), kNothing);
    // Two wide shots of one window, and two tight ones that fit.
    EXPECT_EQ(longBlock(breakdown("IW", kWindow, kWindow), breakdown("IW", kWindow, kWindow)), kNothing);
    EXPECT_EQ(longBlock(breakdown("TIW", kWindow, kHot), breakdown("TIW", kWindow, kHotNear)), kNothing);
}

TEST(DetermineBlockStrategyTest, DifferentWindows_BarTheFirstThreeRows) {
    EXPECT_EQ(longBlock(breakdown("TIW", kWindow, kHot), breakdown("TIW", kOtherWindow, kHotOther)), kNothing);
    EXPECT_EQ(longBlock(breakdown("TIW", kWindow, kHot), breakdown("IW", kOtherWindow, kOtherWindow)), kNothing);
    EXPECT_EQ(longBlock(breakdown("IW", kWindow, kWindow), breakdown("TIW", kOtherWindow, kHotOther)), kNothing);
}

TEST(DetermineBlockStrategyTest, PairThatFits_BarsTheFirstThreeRows) {
    EXPECT_EQ(longBlock(breakdown("TIW", kWindow, kHot), breakdown("IW", kWindow, kHotNear)), kNothing);
    EXPECT_EQ(longBlock(breakdown("IW", kWindow, kHotNear), breakdown("TIW", kWindow, kHot)), kNothing);
}

// The bounds of the two stand 127, then 128 pixels to the right of the first, and fit no more in either case.
TEST(DetermineBlockStrategyTest, PanOfLessThan128Pixels_GrowsWideInstead) {
    const SLICE_BREAKDOWN first = breakdown("TIW", kWindow, box(0, 0, 700, 400));
    EXPECT_EQ(longBlock(first, breakdown("TIW", kWindow, box(127, 0, 700, 400))), (Answer{8, 300}));
    EXPECT_EQ(longBlock(first, breakdown("TIW", kWindow, box(128, 0, 700, 400))), (Answer{7, 300}));
}

// The wide slice's hot rectangle lies within 10 pixels of the tight one's.
TEST(DetermineBlockStrategyTest, TightBesideWide_NeedsNoDistance) {
    const SLICE_BREAKDOWN tight = breakdown("TIW", kWindow, box(10, 10, 795, 495));
    const SLICE_BREAKDOWN wide = breakdown("IW", kWindow, box(0, 0, 810, 505));
    EXPECT_EQ(longBlock(tight, wide), (Answer{8, 300}));
    EXPECT_EQ(longBlock(wide, tight), (Answer{9, 300}));
}

TEST(DetermineBlockStrategyTest, EarlierRowWins) {
    // Windowed and full screen at once: rows 4 and 5, then 2 and 5, 6 and 5.
    EXPECT_EQ(longBlock(breakdown("", {}, kHot), breakdown("IWN", kScreen, kHotFar)), (Answer{10, 100}));
    EXPECT_EQ(longBlock(breakdown("TIW", kWindow, kHot), breakdown("IWN", kScreen, kHotFar)), (Answer{8, 300}));
    EXPECT_EQ(longBlock(breakdown("IW", kWindow, kHot), breakdown("N", kScreen, kHotFar)), (Answer{11, 100}));
    // The first full screen as well as windowed: row 5 asks for a first that is not.
    EXPECT_EQ(longBlock(breakdown("IWN", kScreen, kHot), breakdown("N", kScreen, kHotFar)), kNothing);
}

TEST(DetermineBlockStrategyTest, FullScreenFlagWithoutAWindow_IsNotFullScreen) {
    EXPECT_EQ(longBlock(breakdown("", {}, kHot), breakdown("N", {}, kHotFar)), kNothing);
    EXPECT_EQ(longBlock(breakdown("IW", kWindow, kHot), breakdown("N", {}, kHotFar)), (Answer{12, 100}));
}

TEST(DetermineBlockStrategyTest, OneLongSlice_IsEnough) {
    const SLICE_BREAKDOWN loose = breakdown("", {}, kHot);
    const SLICE_BREAKDOWN wide = breakdown("IW", kWindow, kWindow);
    EXPECT_EQ(block(loose, 6.999, wide, 6.999), kNothing);
    EXPECT_EQ(block(loose, 7.0, wide, 1.0), (Answer{10, 100}));
    EXPECT_EQ(block(loose, 1.0, wide, 7.0), (Answer{10, 100}));
}

TEST(DetermineBlockStrategyTest, BlanksMakeASliceLong) {
    OV_DATA_STORE store = sliceStore({slice(0, 3, breakdown("", {}, kHot)), blank(3, 7),
                                      slice(7, 9, breakdown("IW", kWindow, kWindow)), blank(9, 30)});
    MERGE_ENTRY entry = entryOf(store, 0, 2);
    EXPECT_TRUE(worker.determineBlockStrategy(store, entry));
    // Blanks behind a slice without a next target do not count.
    store.slices[2].start = 6.5;
    entry = entryOf(store, 0, 2);
    EXPECT_FALSE(worker.determineBlockStrategy(store, entry));
}

// At a fade of 0.012 s the sums in the two orders, fade + 6 and fade + 1 + 5, are neighbouring doubles: the lower one is
// the limit.
TEST(DetermineBlockStrategyTest, LongSliceAtOtherFades_IsTheFadeAndSixSeconds) {
    const auto blocks = [](double fade, double firstLength, double nextLength) {
        OV_DATA_STORE store = sliceStore({slice(-firstLength, 0.0, breakdown("", {}, kHot)),
                                          slice(0.0, nextLength, breakdown("IW", kWindow, kWindow))});
        store.fadeSeconds = fade;
        MERGE_ENTRY entry = entryOf(store, 0, 1);
        return worker.determineBlockStrategy(store, entry);
    };
    EXPECT_TRUE(blocks(0.5, 6.5, 1.0));
    EXPECT_TRUE(blocks(0.5, 1.0, 6.5));
    EXPECT_FALSE(blocks(0.5, 6.499, 6.499));
    EXPECT_TRUE(blocks(3.0, 9.0, 1.0));
    EXPECT_FALSE(blocks(3.0, 8.999, 8.999));
    const double limit = 0.012 + 6.0;
    ASSERT_LT(limit, 0.012 + 1.0 + 5.0);
    EXPECT_TRUE(blocks(0.012, limit, 1.0));
    EXPECT_TRUE(blocks(0.012, 1.0, limit));
    EXPECT_FALSE(blocks(0.012, std::nextafter(limit, 0.0), std::nextafter(limit, 0.0)));
}

// ---- the four merges: what each proposes by itself, and whether it decides ----

using Detector = void (OrvantaWorker::*)(OV_DATA_STORE&, MERGE_ENTRY&, bool&) const;

struct Verdict {
    std::int32_t strategy;
    std::int32_t priority;
    bool decided;

    friend bool operator==(const Verdict&, const Verdict&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Verdict& v) {
        return out << "strategy " << v.strategy << " at " << v.priority << (v.decided ? ", decided" : "");
    }
};

Verdict detect(Detector detector, const SLICE_BREAKDOWN& first, double firstLength, const SLICE_BREAKDOWN& next,
               double nextLength, bool decided = false) {
    OV_DATA_STORE store = pairOf(first, firstLength, next, nextLength);
    MERGE_ENTRY entry = entryOf(store, 0, 1);
    (worker.*detector)(store, entry, decided);
    return {entry.strategy, entry.priority, decided};
}

constexpr Verdict kUndecided = {0, -1, false};

// Two slices of 2 s take 4/7 of the base: 514, 257, 128; 228, 114, 57.
TEST(DetectTightMergeTest, BothTightInOneWindow_Full) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    EXPECT_EQ(detect(tight, breakdown("TIW", kWindow, kHot), 2, breakdown("TIW", kWindow, kHotNear), 2),
              (Verdict{1, 514, true}));
    EXPECT_EQ(detect(tight, breakdown("TIW", kWindow, kHot), 9, breakdown("TIW", kWindow, kHotNear), 9),
              (Verdict{1, 180, true}));
}

TEST(DetectTightMergeTest, FirstLiesInTheNextWindow_Full) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    // Without any window, and with one that is not shared.
    EXPECT_EQ(detect(tight, breakdown("T", {}, kHot), 2, breakdown("TIW", kWindow, kHotNear), 2),
              (Verdict{1, 514, true}));
    EXPECT_EQ(detect(tight, breakdown("TW", kOtherWindow, kHot), 2, breakdown("TIW", kWindow, kHotNear), 2),
              (Verdict{1, 514, true}));
    // Out of it by a pixel, and not tight: half. (The edge is at 0.)
    EXPECT_EQ(detect(tight, breakdown("T", {}, box(-1, 0, 300, 200)), 2, breakdown("TIW", kWindow, kHotNear), 2),
              (Verdict{1, 257, true}));
    EXPECT_EQ(detect(tight, breakdown("", {}, kHot), 2, breakdown("TIW", kWindow, kHotNear), 2),
              (Verdict{1, 257, true}));
    // The other way round the rule does not hold.
    EXPECT_EQ(detect(tight, breakdown("TIW", kWindow, kHot), 2, breakdown("T", {}, kHotNear), 2),
              (Verdict{1, 257, true}));
}

TEST(DetectTightMergeTest, OneTightAndBothFit_Half) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    EXPECT_EQ(detect(tight, breakdown("TIW", kWindow, kHot), 2, breakdown("", {}, {}), 2), (Verdict{1, 257, true}));
    // Long, in different windows, close enough to share a shot: 1500 to 1800 across the gap.
    EXPECT_EQ(detect(tight, breakdown("TIW", kWindow, box(1500, 0, 100, 100)), 9,
                     breakdown("TIW", kOtherWindow, box(1700, 0, 100, 100)), 9),
              (Verdict{1, 90, true}));
}

TEST(DetectTightMergeTest, ShortNeighbourOfATightSlice_WeakAndUndecided) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    const SLICE_BREAKDOWN close = breakdown("TIW", kWindow, kHot);
    const SLICE_BREAKDOWN far = breakdown("", {}, kHotOutside);
    EXPECT_EQ(detect(tight, close, 2, far, 2), (Verdict{1, 128, false}));
    EXPECT_EQ(detect(tight, far, 2, close, 2), (Verdict{1, 128, false}));
    // 5 s is no longer short: the neighbour's length counts, not the tight slice's own.
    EXPECT_EQ(detect(tight, close, 2, far, 5.0), kUndecided);
    EXPECT_EQ(detect(tight, far, 5.0, close, 2), kUndecided);
    EXPECT_EQ(detect(tight, close, 9, far, 4.999).strategy, 1);
    EXPECT_EQ(detect(tight, far, 4.999, close, 9).strategy, 1);
    EXPECT_EQ(detect(tight, far, 2, far, 2), kUndecided);
}

TEST(DetectTightMergeTest, DecidedAlready_BarsTheWeakTierOnly) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    const SLICE_BREAKDOWN close = breakdown("TIW", kWindow, kHot);
    EXPECT_EQ(detect(tight, close, 2, breakdown("", {}, kHotOutside), 2, true), (Verdict{0, -1, true}));
    EXPECT_EQ(detect(tight, close, 2, breakdown("", {}, {}), 2, true), (Verdict{1, 257, true}));
    EXPECT_EQ(detect(tight, close, 2, breakdown("TIW", kWindow, kHotNear), 2, true), (Verdict{1, 514, true}));
}

TEST(DetectWideMergeTest, BothWindowedInOneWindow_Full) {
    const auto wide = &OrvantaWorker::detectWideMerge;
    EXPECT_EQ(detect(wide, breakdown("IW", kWindow, kWindow), 2, breakdown("TIW", kWindow, kHot), 2),
              (Verdict{2, 228, true}));
    EXPECT_EQ(detect(wide, breakdown("IW", kWindow, kWindow), 2, breakdown("IW", kWindow, kWindow), 2, true),
              (Verdict{2, 228, true}));
}

TEST(DetectWideMergeTest, HotRectangleInTheOthersWindow_Half) {
    const auto wide = &OrvantaWorker::detectWideMerge;
    EXPECT_EQ(detect(wide, breakdown("T", {}, kHot), 2, breakdown("IW", kWindow, kWindow), 2), (Verdict{2, 114, true}));
    EXPECT_EQ(detect(wide, breakdown("IW", kWindow, kWindow), 2, breakdown("T", {}, kHot), 2), (Verdict{2, 114, true}));
    // Windowed both, in windows that cannot share, but the one's content lies in the other's window.
    EXPECT_EQ(detect(wide, breakdown("IW", kWindow, kWindow), 2, breakdown("TIW", kOtherWindow, kHot), 2),
              (Verdict{2, 114, true}));
    EXPECT_EQ(detect(wide, breakdown("IW", kWindow, kWindow), 2, breakdown("T", {}, kHot), 2, true),
              (Verdict{0, -1, true}));
    // The hot rectangle must lie in the window of a windowed slice.
    EXPECT_EQ(detect(wide, breakdown("W", kWindow, kHotOutside), 9, breakdown("T", {}, kHot), 9), kUndecided);
}

TEST(DetectWideMergeTest, ShortNeighbourOfAWindowedSlice_WeakAndUndecided) {
    const auto wide = &OrvantaWorker::detectWideMerge;
    const SLICE_BREAKDOWN window = breakdown("IW", kWindow, kWindow);
    const SLICE_BREAKDOWN outside = breakdown("T", {}, kHotOutside);
    EXPECT_EQ(detect(wide, window, 2, outside, 2), (Verdict{2, 57, false}));
    EXPECT_EQ(detect(wide, outside, 2, window, 2), (Verdict{2, 57, false}));
    EXPECT_EQ(detect(wide, window, 2, outside, 5.0), kUndecided);
    EXPECT_EQ(detect(wide, outside, 5.0, window, 2), kUndecided);
    EXPECT_EQ(detect(wide, window, 2, outside, 2, true), (Verdict{0, -1, true}));
    EXPECT_EQ(detect(wide, outside, 2, outside, 2), kUndecided);
}

TEST(DetectOffWindowMergeTest, BothOutsideAndFit) {
    const auto off = &OrvantaWorker::detectOffWindowMerge;
    const SLICE_BREAKDOWN a = breakdown("TW", kWindow, box(0, 1100, 300, 200));
    const SLICE_BREAKDOWN b = breakdown("T", {}, box(400, 1100, 400, 200));
    EXPECT_EQ(detect(off, a, 2, b, 2), (Verdict{5, 342, true})); // 800 wide.
    EXPECT_EQ(detect(off, a, 2, breakdown("T", {}, box(400, 1100, 401, 200)), 2), kUndecided);
    EXPECT_EQ(detect(off, a, 2, b, 2, true), (Verdict{5, 342, true}));
    EXPECT_EQ(detect(off, breakdown("TI", kWindow, a.tier4Rect), 2, b, 2), kUndecided);
    EXPECT_EQ(detect(off, b, 2, breakdown("TI", kWindow, a.tier4Rect), 2), kUndecided);
    // One without a hot rectangle: the other's fits by itself. Two without: nothing fits.
    EXPECT_EQ(detect(off, a, 2, breakdown("", {}, {}), 2), (Verdict{5, 342, true}));
    EXPECT_EQ(detect(off, breakdown("", {}, {}), 2, breakdown("", {}, {}), 2), kUndecided);
}

TEST(DetectFullScreenMergeTest, ShortBesideFullScreen) {
    const auto detector = &OrvantaWorker::detectFullScreenMerge;
    const SLICE_BREAKDOWN full = breakdown("N", kScreen, kHot);
    const SLICE_BREAKDOWN loose = breakdown("", {}, kHotFar);
    EXPECT_EQ(detect(detector, full, 2, loose, 2), (Verdict{6, 228, true}));
    EXPECT_EQ(detect(detector, loose, 2, full, 2), (Verdict{6, 228, true}));
    EXPECT_EQ(detect(detector, full, 9, loose, 4.999).strategy, 6);
    EXPECT_EQ(detect(detector, loose, 4.999, full, 9).strategy, 6);
    EXPECT_EQ(detect(detector, full, 2, loose, 5.0), kUndecided);
    EXPECT_EQ(detect(detector, loose, 5.0, full, 2), kUndecided);
    EXPECT_EQ(detect(detector, full, 9, full, 9), kUndecided);
    EXPECT_EQ(detect(detector, full, 9, full, 2).strategy, 6);
    EXPECT_EQ(detect(detector, breakdown("N", {}, kHot), 2, loose, 2), kUndecided);
    EXPECT_EQ(detect(detector, full, 2, loose, 2, true), (Verdict{6, 228, true}));
}

// Slices without length have the factor 1/4 + (1/4 + 1/2): a proposal shows its base.
TEST(MergeBasesTest, SlicesWithoutLength_TakeTheWholeBase) {
    const auto tight = &OrvantaWorker::detectTightMerge;
    const auto wide = &OrvantaWorker::detectWideMerge;
    const SLICE_BREAKDOWN close = breakdown("TIW", kWindow, kHot);
    const SLICE_BREAKDOWN window = breakdown("IW", kWindow, kWindow);
    const SLICE_BREAKDOWN outside = breakdown("", {}, kHotOutside);
    EXPECT_EQ(detect(tight, close, 0, breakdown("TIW", kWindow, kHotNear), 0), (Verdict{1, 900, true}));
    EXPECT_EQ(detect(tight, breakdown("T", {}, kHot), 0, close, 0), (Verdict{1, 900, true}));
    EXPECT_EQ(detect(tight, close, 0, breakdown(""), 0), (Verdict{1, 450, true}));
    EXPECT_EQ(detect(tight, close, 0, outside, 0), (Verdict{1, 225, false}));
    EXPECT_EQ(detect(tight, outside, 0, close, 0), (Verdict{1, 225, false}));
    EXPECT_EQ(detect(wide, window, 0, close, 0), (Verdict{2, 400, true}));
    EXPECT_EQ(detect(wide, window, 0, breakdown("T", {}, kHot), 0), (Verdict{2, 200, true}));
    EXPECT_EQ(detect(wide, window, 0, outside, 0), (Verdict{2, 100, false}));
    EXPECT_EQ(detect(wide, outside, 0, window, 0), (Verdict{2, 100, false}));
    EXPECT_EQ(
        detect(&OrvantaWorker::detectOffWindowMerge, breakdown("T", {}, kHot), 0, breakdown("T", {}, kHotNear), 0),
        (Verdict{5, 600, true}));
    EXPECT_EQ(detect(&OrvantaWorker::detectFullScreenMerge, breakdown("N", kScreen, kHot), 0, outside, 0),
              (Verdict{6, 400, true}));
    EXPECT_EQ(determine(outside, 0, breakdown("", {}, kHotFar), 0), (Answer{3, 100}));
}

// ---- determineMergeStrategy ----

TEST(DetermineMergeStrategyTest, UnclassifiedSlices_AreClassifiedOnce) {
    OV_DATA_STORE store = sliceStore({slice(0, 2), slice(2, 4)});
    store.windowObjects = {{ActiveWindow, 0.0, 60.0, kWindow, 0.0}};
    store.slices[0].map.spaces = {{kHot, 8.0}};
    store.slices[1].map.spaces = {{kHotNear, 8.0}};
    EXPECT_EQ(determine(store), (Answer{1, 514}));
    EXPECT_EQ(testing::flagsOf(store.slices[0].breakdown), "TIW");
    EXPECT_EQ(testing::flagsOf(store.slices[1].breakdown), "TIW");
    EXPECT_EQ(store.slices[1].mergeType, 1);
    // A breakdown that somebody has written stays.
    store.slices[0].breakdown = breakdown("", {}, kHotFar);
    store.slices[0].mergeType = 4;
    determine(store);
    EXPECT_EQ(testing::flagsOf(store.slices[0].breakdown), "");
    EXPECT_EQ(store.slices[0].mergeType, 4);
}

TEST(DetermineMergeStrategyTest, KeyframeBelowTheFloor_IsForced) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), 1.999, breakdown("TIW", kWindow, kHotNear), 2.0);
    EXPECT_EQ(determine(store).strategy, 1);
    store.slices[0].keyframe = true;
    EXPECT_EQ(determine(store), (Answer{4, 1000}));
    // A blocked slice is forced all the same.
    store.slices[0].blocked = true;
    EXPECT_EQ(determine(store), (Answer{4, 1000}));
    // Exactly at the floor it is not, and the blanks count.
    store.slices[0].stop = 1.0;
    store.slices[1].start = 2.0;
    EXPECT_EQ(determine(store), kNothing);
    store.slices[0].blocked = false;
    EXPECT_EQ(determine(store).strategy, 1);
}

TEST(DetermineMergeStrategyTest, KeyframeFloorAtOtherFades_IsTheFadeAndASecond) {
    const auto forced = [](double fade, double length) {
        OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), length, breakdown("TIW", kWindow, kHotNear), 2.0);
        store.fadeSeconds = fade;
        store.slices[0].keyframe = true;
        return determine(store).strategy == 4;
    };
    EXPECT_TRUE(forced(0.5, 1.499));
    EXPECT_FALSE(forced(0.5, 1.5));
    EXPECT_TRUE(forced(3.0, 3.999));
    EXPECT_FALSE(forced(3.0, 4.0));
}

// Two loose shots that share no frame: short ones merge, a long one stays apart.
TEST(DetermineMergeStrategyTest, UndecidedPairAtOtherFades_IsLongFromTheFadeAndSixSeconds) {
    const auto strategyOf = [](double fade, double firstLength, double nextLength) {
        OV_DATA_STORE store = sliceStore({slice(-firstLength, 0.0, breakdown("", {}, kHotOutside)),
                                          slice(0.0, nextLength, breakdown("", {}, kHotFar))});
        store.fadeSeconds = fade;
        return determine(store).strategy;
    };
    EXPECT_EQ(strategyOf(0.5, 6.499, 6.499), 3);
    EXPECT_EQ(strategyOf(0.5, 6.5, 1.0), 12);
    EXPECT_EQ(strategyOf(0.5, 1.0, 6.5), 12);
    const double limit = 0.012 + 6.0;
    EXPECT_EQ(strategyOf(0.012, std::nextafter(limit, 0.0), std::nextafter(limit, 0.0)), 3);
    EXPECT_EQ(strategyOf(0.012, limit, 1.0), 12);
    EXPECT_EQ(strategyOf(0.012, 1.0, limit), 12);
}

TEST(DetermineMergeStrategyTest, KeyframeOfTheNextSlice_DoesNotForce) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), 1.0, breakdown("TIW", kWindow, kHotNear), 1.0);
    store.slices[1].keyframe = true;
    EXPECT_EQ(determine(store).strategy, 1);
}

TEST(DetermineMergeStrategyTest, BlockedFirstSlice_GetsNothing) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), 3.0, breakdown("TIW", kWindow, kHotNear), 3.0);
    store.slices[0].blocked = true;
    EXPECT_EQ(determine(store), kNothing);
    store.slices[0].blocked = false;
    store.slices[1].blocked = true;
    EXPECT_EQ(determine(store).strategy, 1);
}

TEST(DetermineMergeStrategyTest, BlocksOfLongSlices) {
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 10, breakdown("TIW", kWindow, kHotFar), 10), (Answer{7, 300}));
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 10, breakdown("IW", kWindow, kWindow), 10), (Answer{8, 300}));
    EXPECT_EQ(determine(breakdown("IW", kWindow, kWindow), 10, breakdown("TIW", kWindow, kHot), 10), (Answer{9, 300}));
    EXPECT_EQ(determine(breakdown("", {}, kHotOutside), 10, breakdown("IW", kWindow, kWindow), 10), (Answer{10, 100}));
    EXPECT_EQ(determine(breakdown("", {}, kHotOutside), 10, breakdown("N", kScreen, kHotFar), 10), (Answer{11, 100}));
    EXPECT_EQ(determine(breakdown("IW", kWindow, kWindow), 10, breakdown("", {}, kHotOutside), 10), (Answer{12, 100}));
}

// Both rows of the block table and the wide merge apply: 400 x 0.2 = 80 is below 300. A pair with a very short slice,
// 0.25 x 6/7 x 400 = 85, still is.
TEST(DetermineMergeStrategyTest, BlockStandsAgainstAWeakerMerge) {
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 10, breakdown("IW", kWindow, kWindow), 1), (Answer{8, 300}));
}

// The return to the window is worth 100. The length factor is at its floor: a tight merge of a first slice out of the
// window comes to 450 x 0.2 = 90 and loses, of one in it to 900 x 0.2 = 180 and wins.
TEST(DetermineMergeStrategyTest, MergeOfMoreWorth_ReplacesABlock) {
    const SLICE_BREAKDOWN close = breakdown("TIW", kWindow, box(0, 900, 300, 100));
    EXPECT_EQ(determine(breakdown("T", {}, box(0, 1000, 300, 100)), 10, close, 2), (Answer{10, 100}));
    EXPECT_EQ(determine(breakdown("T", {}, box(0, 800, 300, 100)), 10, close, 2), (Answer{1, 180}));
}

TEST(DetermineMergeStrategyTest, MergesOfShortSlices) {
    const SLICE_BREAKDOWN loose = breakdown("T", {}, kHotOutside);
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 2, breakdown("TIW", kWindow, kHotNear), 2), (Answer{1, 514}));
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 2, breakdown("TIW", kWindow, kHotFar), 2), (Answer{2, 228}));
    EXPECT_EQ(determine(loose, 2, loose, 2), (Answer{5, 342}));
    EXPECT_EQ(determine(loose, 2, breakdown("N", kScreen, kHotFar), 2), (Answer{6, 228}));
    EXPECT_EQ(determine(loose, 2, breakdown("T", {}, kHotFar), 2), (Answer{3, 57}));
    EXPECT_EQ(determine(loose, 6.9, breakdown("T", {}, kHotFar), 6.9), (Answer{3, 20}));
}

// Wide and full screen both come to 228: the wide merge is asked first and keeps the entry.
TEST(DetermineMergeStrategyTest, EqualPriorities_EarlierMergeKeepsTheEntry) {
    EXPECT_EQ(determine(breakdown("IW", kWindow, kWindow), 2, breakdown("IWN", kScreen, kScreen), 2), (Answer{2, 228}));
    // Weak wide and loose both come to 57.
    EXPECT_EQ(determine(breakdown("IW", kWindow, kWindow), 2, breakdown("T", {}, kHotOutside), 2), (Answer{2, 57}));
}

TEST(DetermineMergeStrategyTest, WeakTightMergeOfShortSlices_BeatsTheLooseOne) {
    EXPECT_EQ(determine(breakdown("TIW", kWindow, kHot), 2, breakdown("T", {}, kHotOutside), 2), (Answer{1, 128}));
}

// Two windows that cannot share; the first slice is tight and 0.2 s long, with blanks up to 7 s, the next 0.2 s. The
// weak tight merge is worth 225 x (0.25 x 6.8/7 x 2) = 109, more than the block that overwrites it.
TEST(DetermineMergeStrategyTest, LongUndecidedPair_OverwritesAWeakProposalOfMoreWorth) {
    OV_DATA_STORE store = sliceStore({slice(0.0, 0.2, breakdown("TIW", kWindow, kHot)), blank(0.2, 7.0),
                                      slice(7.0, 7.2, breakdown("IW", kOtherWindow, kOtherWindow))});
    MERGE_ENTRY weak = entryOf(store, 0, 2);
    bool decided = false;
    worker.detectTightMerge(store, weak, decided);
    EXPECT_FALSE(decided);
    EXPECT_EQ(weak.priority, 109);
    EXPECT_EQ(determine(store, 0, 2), (Answer{12, 100}));
    // A hair shorter, and the pair is not long any more.
    store.slices[0].start = 0.001;
    EXPECT_EQ(determine(store, 0, 2).strategy, 1);
}

TEST(DetermineMergeStrategyTest, LongPairWithNothingInCommon_GoesOffWindow) {
    const SLICE_BREAKDOWN a = breakdown("T", {}, kHotOutside);
    const SLICE_BREAKDOWN b = breakdown("T", {}, kHotFar);
    EXPECT_EQ(determine(a, 7.0, b, 2.0), (Answer{12, 100}));
    EXPECT_EQ(determine(a, 2.0, b, 7.0), (Answer{12, 100}));
    EXPECT_EQ(determine(a, 6.999, b, 6.999).strategy, 3);
}

TEST(DetermineMergeStrategyTest, LongPairInDifferentWindowsThatFits_Merges) {
    EXPECT_EQ(determine(breakdown("TIW", kWindow, box(1500, 0, 100, 100)), 10,
                        breakdown("TIW", kOtherWindow, box(1700, 0, 100, 100)), 10),
              (Answer{1, 90}));
}

// Without window objects a slice has no window flag, so that four answers alone can come out.
TEST(DetermineMergeStrategyTest, WithoutWindowObjects_OnlyForcedOffWindowLooseAndGoOffWindow) {
    std::array<int, 13> seen{};
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        const double first = 0.5 * (1 + upTo(20));
        OV_DATA_STORE store = sliceStore({slice(0, first), slice(first, first + 0.5 * (1 + upTo(20)))});
        for (OV_FOCUS_SLICE& s : store.slices) {
            if (upTo(4) != 0) {
                s.map.spaces = {{box(upTo(1500), upTo(1000), 1 + upTo(900), 1 + upTo(600)), 1000.0}};
            }
        }
        store.slices[0].keyframe = upTo(2) == 0;
        const Answer answer = determine(store);
        ASSERT_TRUE(answer.strategy == 3 || answer.strategy == 4 || answer.strategy == 5 || answer.strategy == 12)
            << answer;
        ++seen[static_cast<std::size_t>(answer.strategy)];
        ASSERT_EQ(store.slices[0].mergeType, 3);
    }
    EXPECT_GT(std::min({seen[3], seen[4], seen[5], seen[12]}), 0);
}

} // namespace
} // namespace OrvantaNS
