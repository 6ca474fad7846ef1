
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "Slices.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::entryOf;
using testing::flagsOf;
using testing::slice;
using testing::sliceStore;
using testing::valueMap;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

const OrvantaWorker worker;

constexpr Rectangle kWindow = box(0, 0, 1000, 800);
constexpr Rectangle kLargeWindow = box(0, 0, 1200, 900);
constexpr Rectangle kOtherWindow = box(1300, 0, 1300, 900);
constexpr Rectangle kHot = box(0, 0, 300, 200);
constexpr Rectangle kHotNear = box(200, 100, 300, 200); // With kHot: 500 by 300.
constexpr Rectangle kHotFar = box(1200, 700, 300, 200); // With kHot: 1500 by 900.
constexpr Rectangle kBoth = box(0, 0, 500, 300);
constexpr Rectangle kScreen = box(0, 0, 3000, 2000);

// Maps that can be told apart: merged, they are neither of the two.
const VS_VALUE_MAP kFirstMap = valueMap(2.0, {{box(0, 0, 10, 10), 40.0}, {box(0, 0, 20, 20), 16.0}});
const VS_VALUE_MAP kNextMap = valueMap(3.0, {{box(50, 0, 10, 10), 60.0}, {box(50, 0, 20, 20), 24.0}});

bool equal(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) {
    return a.spaces == b.spaces && a.span == b.span && a.tier4Rects == b.tier4Rects;
}

// A pair from 10 to 15 s with a blank of 0.5 s before the next slice, which starts at 12.5 s.
OV_DATA_STORE pairOf(const SLICE_BREAKDOWN& first, const SLICE_BREAKDOWN& next) {
    OV_DATA_STORE store = sliceStore({slice(10, 12, first), blank(12, 12.5), slice(12.5, 15, next)});
    store.slices[0].map = kFirstMap;
    store.slices[2].map = kNextMap;
    store.mergesRemaining = 5;
    return store;
}

using Executor = void (OrvantaWorker::*)(OV_DATA_STORE&, OrvantaWorker::MergeQueue&, MERGE_ENTRY&) const;

OrvantaWorker::MergeQueue execute(Executor executor, OV_DATA_STORE& store, unsigned first, unsigned next) {
    OrvantaWorker::MergeQueue queue;
    MERGE_ENTRY entry = entryOf(store, first, next);
    (worker.*executor)(store, queue, entry);
    return queue;
}

enum class Map { Merged, First, Next };

// Checks everything that a merge of `pairOf` leaves.
void expectMerged(const OV_DATA_STORE& store, const std::string& flags, Rectangle window, Rectangle hot, Map map,
                  std::int32_t mergeType) {
    const OV_FOCUS_SLICE& first = store.slices[0];
    EXPECT_EQ(first.start, 10.0);
    EXPECT_EQ(first.stop, 15.0);
    EXPECT_EQ(first.mergeId, 2); // The blank and the next slice.
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[2].mergeId, -1);
    EXPECT_EQ(flagsOf(first.breakdown), flags);
    EXPECT_TRUE(first.breakdown.identified);
    EXPECT_EQ(first.breakdown.windowRect, window);
    EXPECT_EQ(first.breakdown.tier4Rect, hot);
    const VS_VALUE_MAP expected = map == Map::First  ? kFirstMap
                                  : map == Map::Next ? kNextMap
                                                     : worker.mergeMaps(kFirstMap, kNextMap);
    EXPECT_TRUE(equal(first.map, expected));
    EXPECT_EQ(first.mergeType, mergeType);
    EXPECT_EQ(store.mergesRemaining, 4);
    EXPECT_FALSE(first.blocked);
    EXPECT_FALSE(first.keyframe);
    // What was merged away stays as it was.
    EXPECT_TRUE(equal(store.slices[2].map, kNextMap));
    EXPECT_EQ(store.slices[2].stop, 15.0);
}

// The guard of an executor: its line on the standard output, then the failure, with the pair already combined.
void expectGuard(Executor executor, const SLICE_BREAKDOWN& first, const SLICE_BREAKDOWN& next, const char* line) {
    OV_DATA_STORE store = pairOf(first, next);
    CaptureStdout();
    try {
        execute(executor, store, 0, 2);
        FAIL() << "did not throw";
    } catch (const OrvantaException& e) {
        EXPECT_STREQ(e.what(), "Need String! Impossible to process merge");
        EXPECT_EQ(e.errorCode(), 6);
    }
    EXPECT_EQ(GetCapturedStdout(), std::string(line) + "\n");
    EXPECT_EQ(store.slices[0].stop, 15.0);
    EXPECT_EQ(store.slices[2].mergeId, -1);
    EXPECT_EQ(store.mergesRemaining, 5);
}

// ---- doTightMerge ----

TEST(DoTightMergeTest, BothTightInOneWindow_ShareOneShot) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), breakdown("TIW", kLargeWindow, kHotNear));
    execute(&OrvantaWorker::doTightMerge, store, 0, 2);
    expectMerged(store, "TIW", kLargeWindow, kBoth, Map::Merged, 1);
}

TEST(DoTightMergeTest, FirstWindowLargerOrEqual_IsKept) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kLargeWindow, kHot), breakdown("TIW", kWindow, kHotNear));
    execute(&OrvantaWorker::doTightMerge, store, 0, 2);
    expectMerged(store, "TIW", kLargeWindow, kBoth, Map::Merged, 1);
}

TEST(DoTightMergeTest, WindowsThatCannotShare_KeepTheFirst) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), breakdown("TIW", kOtherWindow, kHotNear));
    execute(&OrvantaWorker::doTightMerge, store, 0, 2);
    expectMerged(store, "TIW", kWindow, kHot, Map::First, 1);
}

TEST(DoTightMergeTest, PairThatDoesNotFit_KeepsTheFirst) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), breakdown("TIW", kLargeWindow, kHotFar));
    execute(&OrvantaWorker::doTightMerge, store, 0, 2);
    expectMerged(store, "TIW", kWindow, kHot, Map::First, 1);
}

TEST(DoTightMergeTest, OnlyTheFirstTight_KeepsItAndDropsTheFullScreenFlag) {
    OV_DATA_STORE store = pairOf(breakdown("TIWN", kWindow, kHot), breakdown("", {}, kHotNear));
    execute(&OrvantaWorker::doTightMerge, store, 0, 2);
    expectMerged(store, "TIW", kWindow, kHot, Map::First, 1);
}

TEST(DoTightMergeTest, OnlyTheNextTight_TakesItsContentFromTheFirstsStart) {
    for (const char* flags : {"", "T", "IW", "TI", "TW", "N"}) {
        SCOPED_TRACE(flags);
        OV_DATA_STORE store = pairOf(breakdown(flags, kLargeWindow, kHot), breakdown("TIW", kWindow, kHotNear));
        execute(&OrvantaWorker::doTightMerge, store, 0, 2);
        expectMerged(store, "TIW", kWindow, kHotNear, Map::Next, 1);
    }
}

TEST(DoTightMergeTest, NeitherTight_Fails) {
    expectGuard(&OrvantaWorker::doTightMerge, breakdown("IW", kWindow, kHot), breakdown("T", kWindow, kHotNear),
                "REALLY BAD TIGHT MERGE");
}

// ---- doWideMerge ----

TEST(DoWideMergeTest, BothWindowed_ShareTheLargerWindow) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), breakdown("IW", kLargeWindow, kHotFar));
    execute(&OrvantaWorker::doWideMerge, store, 0, 2);
    expectMerged(store, "IW", kLargeWindow, box(0, 0, 1500, 900), Map::Merged, 2);
}

TEST(DoWideMergeTest, WindowsThatCannotShare_KeepTheFirst) {
    OV_DATA_STORE store = pairOf(breakdown("IWN", kWindow, kHot), breakdown("IW", kOtherWindow, kHotFar));
    execute(&OrvantaWorker::doWideMerge, store, 0, 2);
    expectMerged(store, "IW", kWindow, kHot, Map::First, 2);
}

TEST(DoWideMergeTest, OnlyOneWindowed_ItsContentStands) {
    OV_DATA_STORE store = pairOf(breakdown("IW", kWindow, kHot), breakdown("TW", kLargeWindow, kHotFar));
    execute(&OrvantaWorker::doWideMerge, store, 0, 2);
    expectMerged(store, "IW", kWindow, kHot, Map::First, 2);
    store = pairOf(breakdown("TI", kWindow, kHot), breakdown("TIW", kLargeWindow, kHotFar));
    execute(&OrvantaWorker::doWideMerge, store, 0, 2);
    expectMerged(store, "IW", kLargeWindow, kHotFar, Map::Next, 2);
}

TEST(DoWideMergeTest, NeitherWindowed_Fails) {
    expectGuard(&OrvantaWorker::doWideMerge, breakdown("TW", kWindow, kHot), breakdown("TI", kWindow, kHotNear),
                "REALLY BAD WIDE MERGE");
}

// ---- doLooseMerge, doOffWindowMerge, doFullScreenMerge ----

TEST(DoLooseMergeTest, AlwaysMerges_InWindowWithoutAWindow) {
    OV_DATA_STORE store = pairOf(breakdown("TW", kLargeWindow, kHot), breakdown("TN", kWindow, kHotFar));
    execute(&OrvantaWorker::doLooseMerge, store, 0, 2);
    expectMerged(store, "I", kLargeWindow, box(0, 0, 1500, 900), Map::Merged, 3);
    store = pairOf(breakdown(""), breakdown(""));
    execute(&OrvantaWorker::doLooseMerge, store, 0, 2);
    expectMerged(store, "I", {}, {}, Map::Merged, 3);
}

TEST(DoOffWindowMergeTest, PairThatFits_SharesOneShot) {
    OV_DATA_STORE store = pairOf(breakdown("TWN", kWindow, kHot), breakdown("W", kLargeWindow, kHotNear));
    execute(&OrvantaWorker::doOffWindowMerge, store, 0, 2);
    expectMerged(store, "T", kLargeWindow, kBoth, Map::Merged, 5);
}

TEST(DoOffWindowMergeTest, PairThatDoesNotFit_Fails) {
    expectGuard(&OrvantaWorker::doOffWindowMerge, breakdown("TW", kWindow, kHot), breakdown("TW", kWindow, kHotFar),
                "REALLY BAD OFF_WINDOW MERGE");
}

TEST(DoFullScreenMergeTest, TheFullScreenSliceGivesTheWindow) {
    OV_DATA_STORE store = pairOf(breakdown("TIW", kWindow, kHot), breakdown("N", kScreen, kHotFar));
    execute(&OrvantaWorker::doFullScreenMerge, store, 0, 2);
    expectMerged(store, "N", kScreen, box(0, 0, 1500, 900), Map::Merged, 6);
    // The first's, even when the next one's is larger.
    store = pairOf(breakdown("N", kWindow, kHot), breakdown("N", kScreen, kHotNear));
    execute(&OrvantaWorker::doFullScreenMerge, store, 0, 2);
    expectMerged(store, "N", kWindow, kBoth, Map::Merged, 6);
    // A flag without a window does not count.
    store = pairOf(breakdown("N", {}, kHot), breakdown("N", kScreen, kHotNear));
    execute(&OrvantaWorker::doFullScreenMerge, store, 0, 2);
    expectMerged(store, "N", kScreen, kBoth, Map::Merged, 6);
}

TEST(DoFullScreenMergeTest, NeitherFullScreen_Fails) {
    expectGuard(&OrvantaWorker::doFullScreenMerge, breakdown("N", {}, kHot), breakdown("TIW", kWindow, kHotNear),
                "REALLY BAD FULL SCREEN MERGE");
}

// ---- the steps that all merges share ----

struct MergeCase {
    const char* name;
    Executor executor;
    SLICE_BREAKDOWN first;
    SLICE_BREAKDOWN next;
};

const std::vector<MergeCase> kMerges = {
    {"tight", &OrvantaWorker::doTightMerge, breakdown("TIW", kWindow, kHot), breakdown("TIW", kWindow, kHotNear)},
    {"wide", &OrvantaWorker::doWideMerge, breakdown("IW", kWindow, kHot), breakdown("IW", kWindow, kHotNear)},
    {"loose", &OrvantaWorker::doLooseMerge, breakdown("", {}, kHot), breakdown("", {}, kHotNear)},
    {"off window", &OrvantaWorker::doOffWindowMerge, breakdown("T", {}, kHot), breakdown("T", {}, kHotNear)},
    {"full screen", &OrvantaWorker::doFullScreenMerge, breakdown("N", kScreen, kHot), breakdown("", {}, kHotNear)},
};

// A long slice before the pair and one behind it.
OV_DATA_STORE surrounded(const MergeCase& c) {
    return sliceStore({slice(0, 10, breakdown("", {}, kHot)), slice(10, 12, c.first), slice(12, 15, c.next),
                       slice(15, 25, breakdown("", {}, kHot))});
}

TEST(MergeFamilyTest, FreshProposals_EarlierPairFirst) {
    for (const MergeCase& c : kMerges) {
        SCOPED_TRACE(c.name);
        OV_DATA_STORE store = surrounded(c);
        const OrvantaWorker::MergeQueue queue = execute(c.executor, store, 1, 2);
        ASSERT_EQ(queue.size(), 2u);
        // The order in the queue is by priority; both proposals carry the merged slice's new revision.
        const MERGE_ENTRY& earlier = queue[0].firstSlice == 0 ? queue[0] : queue[1];
        const MERGE_ENTRY& later = queue[0].firstSlice == 0 ? queue[1] : queue[0];
        EXPECT_EQ(earlier.firstSlice, 0u);
        EXPECT_EQ(earlier.nextSlice, 1u);
        EXPECT_EQ(earlier.nextMergeId, 1);
        EXPECT_EQ(later.firstSlice, 1u);
        EXPECT_EQ(later.nextSlice, 3u);
        EXPECT_EQ(later.firstMergeId, 1);
        if (queue[0].priority == queue[1].priority) {
            EXPECT_EQ(queue[0].firstSlice, 0u);
        }
    }
}

TEST(MergeFamilyTest, BlockedNextSlice_BlocksTheMergeAfterOneMoreProposal) {
    for (const MergeCase& c : kMerges) {
        SCOPED_TRACE(c.name);
        OV_DATA_STORE store = surrounded(c);
        store.slices[0].blocked = true; // Keeps the earlier pair out of the queue.
        store.slices[2].blocked = true;
        store.slices[2].keyframe = true;
        const OrvantaWorker::MergeQueue queue = execute(c.executor, store, 1, 2);
        EXPECT_TRUE(store.slices[1].blocked);
        EXPECT_FALSE(store.slices[1].keyframe);
        ASSERT_EQ(queue.size(), 1u);
        EXPECT_EQ(queue[0].firstSlice, 1u);
        EXPECT_EQ(queue[0].nextSlice, 3u);
    }
}

TEST(MergeFamilyTest, BlockedFirstSlice_StaysBlockedAndIsNotProposed) {
    for (const MergeCase& c : kMerges) {
        SCOPED_TRACE(c.name);
        OV_DATA_STORE store = surrounded(c);
        store.slices[0].blocked = true;
        store.slices[1].blocked = true;
        store.slices[1].keyframe = true;
        EXPECT_TRUE(execute(c.executor, store, 1, 2).empty());
        EXPECT_TRUE(store.slices[1].blocked);
        EXPECT_TRUE(store.slices[1].keyframe);
    }
}

// The verdict counts as computed, so that the fresh proposals do not classify the slice anew.
TEST(MergeFamilyTest, UnidentifiedFirstSlice_IsIdentifiedAfterwards) {
    for (const MergeCase& c : kMerges) {
        SCOPED_TRACE(c.name);
        OV_DATA_STORE store = surrounded(c);
        store.slices[1].breakdown.identified = false;
        execute(c.executor, store, 1, 2);
        EXPECT_TRUE(store.slices[1].breakdown.identified);
        EXPECT_EQ(store.slices[1].breakdown.tier4Rect, kBoth);
    }
}

TEST(MergeFamilyTest, MergesRemaining_MayGoBelowZero) {
    for (const MergeCase& c : kMerges) {
        SCOPED_TRACE(c.name);
        OV_DATA_STORE store = surrounded(c);
        execute(c.executor, store, 1, 2);
        EXPECT_EQ(store.mergesRemaining, -1);
    }
}

// ---- doForcedMerge ----

// A keyframe of 1 s at 10 s, a next slice from 11 s on, and one more that starts where the next one's length with
// blanks ends.
OV_DATA_STORE forcedStore(double nextLength) {
    OV_DATA_STORE store = sliceStore(
        {slice(10, 11, breakdown("TIW", kWindow, kHot), 1), slice(11, 11.5, breakdown("N", kScreen, kHotFar), 6),
         blank(11.5, 11 + nextLength), slice(11 + nextLength, 30, breakdown("", {}, kHotNear))});
    store.slices[0].keyframe = true;
    store.slices[0].map = kFirstMap;
    store.slices[1].map = kNextMap;
    store.mergesRemaining = 5;
    return store;
}

TEST(DoForcedMergeTest, EqualLengths_FirstKeepsItsContent) {
    OV_DATA_STORE store = forcedStore(1.0);
    execute(&OrvantaWorker::doForcedMerge, store, 0, 1);
    EXPECT_EQ(flagsOf(store.slices[0].breakdown), "TIW");
    EXPECT_EQ(store.slices[0].breakdown.tier4Rect, kHot);
    EXPECT_TRUE(equal(store.slices[0].map, kFirstMap));
    EXPECT_EQ(store.slices[0].mergeType, 4);
    EXPECT_EQ(store.slices[0].stop, 11.5); // The blank behind the next slice is not combined.
    EXPECT_EQ(store.slices[0].mergeId, 1);
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[2].mergeId, 0);
    EXPECT_TRUE(store.slices[0].keyframe);
    EXPECT_EQ(store.mergesRemaining, 4);
}

TEST(DoForcedMergeTest, NextLongerWithItsBlanks_GivesItsContentWhole) {
    OV_DATA_STORE store = forcedStore(1.001);
    execute(&OrvantaWorker::doForcedMerge, store, 0, 1);
    EXPECT_EQ(flagsOf(store.slices[0].breakdown), "N");
    EXPECT_EQ(store.slices[0].breakdown.windowRect, kScreen);
    EXPECT_EQ(store.slices[0].breakdown.tier4Rect, kHotFar);
    EXPECT_TRUE(equal(store.slices[0].map, kNextMap));
    EXPECT_EQ(store.slices[0].mergeType, 4);
}

TEST(DoForcedMergeTest, GapOnTheFloor_StillMerges) {
    OV_DATA_STORE store = sliceStore(
        {slice(10, 10.5, breakdown("", {}, kHot)), blank(10.5, 12), slice(12, 15, breakdown("T", {}, kHotNear))});
    execute(&OrvantaWorker::doForcedMerge, store, 0, 2);
    EXPECT_EQ(store.slices[0].stop, 15.0);
    EXPECT_EQ(store.slices[0].mergeId, 2);
    EXPECT_EQ(store.slices[0].mergeType, 4);
}

// 1 s and 0.5 s: with its new next target at 11.5 s the keyframe still lasts less than 2 s.
TEST(DoForcedMergeTest, StillBelowTheFloor_IsForcedAgain) {
    OV_DATA_STORE store = forcedStore(0.5);
    const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doForcedMerge, store, 0, 1);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue[0].strategy, 4);
    EXPECT_EQ(queue[0].priority, 1000);
    EXPECT_EQ(queue[0].firstSlice, 0u);
    EXPECT_EQ(queue[0].nextSlice, 3u);
    EXPECT_EQ(queue[0].firstMergeId, 1);
}

TEST(DoForcedMergeTest, BlockedFlagOfEither_IsKept) {
    for (const unsigned blocked : {0u, 1u}) {
        SCOPED_TRACE(blocked);
        OV_DATA_STORE store = forcedStore(3.0);
        store.slices[blocked].blocked = true;
        const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doForcedMerge, store, 0, 1);
        EXPECT_TRUE(store.slices[0].blocked);
        // The next one's flag comes after the fresh proposals.
        EXPECT_EQ(queue.size(), blocked == 0 ? 0u : 1u);
    }
    OV_DATA_STORE store = forcedStore(3.0);
    execute(&OrvantaWorker::doForcedMerge, store, 0, 1);
    EXPECT_FALSE(store.slices[0].blocked);
}

TEST(DoForcedMergeTest, BlanksAboveTheFloor_AreCutBackAndTheFirstIsStretched) {
    // The limit is 12 s.
    OV_DATA_STORE store = sliceStore({slice(10, 10.5, breakdown("", {}, kHot)), blank(10.5, 11), blank(11, 12),
                                      testing::dead(blank(12, 12.5)), blank(11.5, 13), blank(13, 16),
                                      slice(16, 18, breakdown("T", {}, kHotNear))});
    store.slices[0].mergeType = 3;
    store.slices[0].keyframe = true;
    store.mergesRemaining = 5;
    const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doForcedMerge, store, 0, 6);
    EXPECT_EQ(store.slices[0].stop, 12.0);
    EXPECT_EQ(store.slices[0].mergeId, 0);
    EXPECT_EQ(store.slices[0].mergeType, 3);
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[2].mergeId, -1); // Its stop is the limit, not above it.
    EXPECT_EQ(store.slices[3].start, 12.0); // Dead: passed over.
    EXPECT_EQ(store.slices[4].mergeId, 0);
    EXPECT_EQ(store.slices[4].start, 12.0);
    EXPECT_EQ(store.slices[5].mergeId, 0); // Behind the one that was cut.
    EXPECT_EQ(store.slices[5].start, 13.0);
    EXPECT_EQ(store.slices[6].mergeId, 0);
    EXPECT_EQ(store.mergesRemaining, 5);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue[0].firstSlice, 0u);
    EXPECT_EQ(queue[0].nextSlice, 6u);
    EXPECT_NE(queue[0].strategy, 4);
}

TEST(DoForcedMergeTest, DeadBlankPastTheLimit_DoesNotEndTheCut) {
    OV_DATA_STORE store = sliceStore({slice(10, 10.5, breakdown("", {}, kHot)), testing::dead(blank(10.5, 14)),
                                      testing::dead(slice(14, 15)), blank(10.5, 11), blank(11, 16),
                                      slice(16, 18, breakdown("T", {}, kHotNear))});
    execute(&OrvantaWorker::doForcedMerge, store, 0, 5);
    EXPECT_EQ(store.slices[1].start, 10.5);
    EXPECT_EQ(store.slices[2].start, 14.0);
    EXPECT_EQ(store.slices[3].mergeId, -1);
    EXPECT_EQ(store.slices[4].start, 12.0);
}

} // namespace
} // namespace OrvantaNS
