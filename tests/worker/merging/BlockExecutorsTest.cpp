#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "Slices.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::dead;
using testing::entryOf;
using testing::slice;
using testing::sliceStore;

const OrvantaWorker worker;

constexpr Rectangle kHot = box(0, 0, 300, 200);
constexpr Rectangle kHotFar = box(1200, 700, 300, 200);

using Executor = void (OrvantaWorker::*)(OV_DATA_STORE&, OrvantaWorker::MergeQueue&, MERGE_ENTRY&) const;

// A long slice, the pair with blanks between, and another long slice.
OV_DATA_STORE blockStore(std::int32_t firstType, std::int32_t nextType) {
    OV_DATA_STORE store =
        sliceStore({slice(0, 10, breakdown("T", {}, kHotFar)), slice(10, 20, breakdown("T", {}, kHot), firstType),
                    blank(20, 21), dead(blank(21, 21.5)), blank(21.5, 22),
                    slice(22, 32, breakdown("T", {}, kHotFar), nextType), slice(32, 42, breakdown("T", {}, kHot))});
    store.slices[5].map.spaces = {{kHotFar, 50.0}};
    store.mergesRemaining = 5;
    return store;
}

OrvantaWorker::MergeQueue execute(Executor executor, OV_DATA_STORE& store, unsigned first = 1, unsigned next = 5) {
    OrvantaWorker::MergeQueue queue;
    MERGE_ENTRY entry = entryOf(store, first, next);
    (worker.*executor)(store, queue, entry);
    return queue;
}

const std::vector<Executor> kBlocks = {&OrvantaWorker::doTightPanTight,   &OrvantaWorker::doTightGrowWide,
                                       &OrvantaWorker::doWideShrinkTight, &OrvantaWorker::doReturnWindow,
                                       &OrvantaWorker::doGoFullScreen,    &OrvantaWorker::doGoOffWindow};

TEST(BlockExecutorsTest, CameraModes) {
    // For each: first and next before as 0, then as 5.
    const std::vector<std::array<std::int32_t, 4>> expected = {{1, 1, 1, 1}, {1, 2, 1, 2}, {2, 1, 2, 1},
                                                               {3, 2, 5, 5}, {3, 6, 5, 6}, {0, 0, 5, 5}};
    for (std::size_t i = 0; i < kBlocks.size(); ++i) {
        SCOPED_TRACE(i);
        OV_DATA_STORE store = blockStore(0, 0);
        execute(kBlocks[i], store);
        EXPECT_EQ(store.slices[1].mergeType, expected[i][0]);
        EXPECT_EQ(store.slices[5].mergeType, expected[i][1]);
        store = blockStore(5, 5);
        execute(kBlocks[i], store);
        EXPECT_EQ(store.slices[1].mergeType, expected[i][2]);
        EXPECT_EQ(store.slices[5].mergeType, expected[i][3]);
    }
}

TEST(BlockExecutorsTest, PairStands_AndOnlyTheBlanksAreAbsorbed) {
    for (std::size_t i = 0; i < kBlocks.size(); ++i) {
        SCOPED_TRACE(i);
        OV_DATA_STORE store = blockStore(1, 1);
        execute(kBlocks[i], store);
        const OV_FOCUS_SLICE& first = store.slices[1];
        const OV_FOCUS_SLICE& next = store.slices[5];
        EXPECT_EQ(first.stop, 22.0);
        EXPECT_EQ(store.slices[2].mergeId, -1);
        EXPECT_EQ(store.slices[4].mergeId, -1);
        EXPECT_TRUE(first.keyframe);
        EXPECT_TRUE(next.keyframe);
        EXPECT_TRUE(first.blocked);
        EXPECT_FALSE(next.blocked);
        EXPECT_EQ(first.mergeId, 3); // Two blanks, and the transition.
        EXPECT_EQ(next.mergeId, 1);
        EXPECT_EQ(store.mergesRemaining, 4);
        EXPECT_EQ(first.breakdown.tier4Rect, kHot);
        EXPECT_EQ(next.breakdown.tier4Rect, kHotFar);
        EXPECT_EQ(next.map.spaces.size(), 1u);
    }
}

TEST(BlockExecutorsTest, PairIsNotProposedAgain_ItsNeighboursAre) {
    for (std::size_t i = 0; i < kBlocks.size(); ++i) {
        SCOPED_TRACE(i);
        OV_DATA_STORE store = blockStore(1, 1);
        const OrvantaWorker::MergeQueue queue = execute(kBlocks[i], store);
        // Both at 100: the earlier pair, pushed first, stands on top.
        ASSERT_EQ(queue.size(), 2u);
        EXPECT_EQ(queue[0].firstSlice, 0u);
        EXPECT_EQ(queue[0].nextSlice, 1u);
        EXPECT_EQ(queue[0].nextMergeId, 3);
        EXPECT_EQ(queue[1].firstSlice, 5u);
        EXPECT_EQ(queue[1].nextSlice, 6u);
        EXPECT_EQ(queue[1].firstMergeId, 1);
    }
}

TEST(BlockExecutorsTest, NextSliceAlreadyBlocked_StaysSo) {
    OV_DATA_STORE store = blockStore(1, 1);
    store.slices[5].blocked = true;
    const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doTightPanTight, store);
    EXPECT_TRUE(store.slices[5].blocked);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue[0].firstSlice, 0u);
}

TEST(BlockExecutorsTest, BlockedPair_IsProposedOnlyBelowTheKeyframeFloor) {
    OV_DATA_STORE store =
        sliceStore({slice(0, 1, breakdown("T", {}, kHot)), slice(1, 11, breakdown("T", {}, kHotFar))});
    execute(&OrvantaWorker::doGoOffWindow, store, 0, 1);
    OrvantaWorker::MergeQueue queue;
    EXPECT_EQ(worker.createMergeEntry(store, queue, 0), 1u);
    ASSERT_EQ(queue.size(), 1u); // 1 s: forced.
    EXPECT_EQ(queue[0].strategy, 4);
    store.slices[1].start = 2.0;
    queue.clear();
    EXPECT_EQ(worker.createMergeEntry(store, queue, 0), 1u);
    EXPECT_TRUE(queue.empty());
}

// ---- doTightLooseTight ----

// Tight shots from 0 to 8 s and from 9 s on, blanks around a loose one from 8.2 to 8.7 s, and a shot before and behind.
OV_DATA_STORE threeShots() {
    OV_DATA_STORE store =
        sliceStore({slice(0, 3, breakdown("", {}, kHotFar)), slice(3, 8, breakdown("TIW", {}, kHot)), blank(8, 8.2),
                    slice(8.2, 8.7, breakdown("", {}, {})), blank(8.7, 9), slice(9, 20, breakdown("TIW", {}, kHotFar)),
                    slice(20, 30, breakdown("", {}, kHot))});
    store.slices[1].map.tier4Rects = {kHot};
    store.slices[3].map.tier4Rects = {box(5, 5, 5, 5)};
    store.slices[5].map.tier4Rects = {kHotFar, box(6, 6, 6, 6)};
    store.mergesRemaining = 5;
    return store;
}

TEST(DoTightLooseTightTest, MiddleGetsRoomAndBothShotsHotRectangles) {
    OV_DATA_STORE store = threeShots();
    const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doTightLooseTight, store, 1, 3);
    // 8.2 to 9 s is below 2 s: the middle starts 2 s before the last.
    EXPECT_EQ(store.slices[1].stop, 7.0);
    EXPECT_EQ(store.slices[3].start, 7.0);
    EXPECT_EQ(store.slices[3].stop, 9.0);
    EXPECT_EQ(store.slices[2].mergeId, -1);
    EXPECT_EQ(store.slices[4].mergeId, -1);
    for (const unsigned i : {1u, 3u, 5u}) {
        EXPECT_TRUE(store.slices[i].keyframe);
    }
    EXPECT_EQ(store.slices[3].mergeType, 3);
    EXPECT_EQ(store.slices[3].map.tier4Rects,
              (std::vector<Rectangle>{box(5, 5, 5, 5), kHot, kHotFar, box(6, 6, 6, 6)}));
    EXPECT_EQ(store.slices[1].mergeId, 2); // One blank, and the pattern.
    EXPECT_EQ(store.slices[3].mergeId, 2);
    EXPECT_EQ(store.slices[5].mergeId, 1);
    EXPECT_TRUE(store.slices[1].blocked);
    EXPECT_TRUE(store.slices[3].blocked);
    EXPECT_FALSE(store.slices[5].blocked);
    EXPECT_EQ(store.mergesRemaining, 3);
    ASSERT_EQ(queue.size(), 2u);
    for (const MERGE_ENTRY& entry : queue) {
        EXPECT_TRUE((entry.firstSlice == 0 && entry.nextSlice == 1) || (entry.firstSlice == 5 && entry.nextSlice == 6));
    }
    EXPECT_NE(queue[0].firstSlice, queue[1].firstSlice);
}

TEST(DoTightLooseTightTest, MiddleOnTheFloor_KeepsItsStart) {
    OV_DATA_STORE store = threeShots();
    store.slices[3].start = 7.0;
    execute(&OrvantaWorker::doTightLooseTight, store, 1, 3);
    EXPECT_EQ(store.slices[3].start, 7.0);
    EXPECT_EQ(store.slices[1].stop, 8.2);
}

TEST(DoTightLooseTightTest, FullScreenMiddle_ShowsTheWholeScreen) {
    OV_DATA_STORE store = threeShots();
    store.slices[3].breakdown = breakdown("N", box(0, 0, 1920, 1200), {});
    execute(&OrvantaWorker::doTightLooseTight, store, 1, 3);
    EXPECT_EQ(store.slices[3].mergeType, 6);
    store = threeShots();
    store.slices[3].breakdown = breakdown("N");
    execute(&OrvantaWorker::doTightLooseTight, store, 1, 3);
    EXPECT_EQ(store.slices[3].mergeType, 3);
}

TEST(DoTightLooseTightTest, NoTargetBehindTheMiddle_MiddleServesAsTheLast) {
    OV_DATA_STORE store = sliceStore({slice(0, 8, breakdown("TIW", {}, kHot)), slice(8, 12, breakdown("", {}, {}))});
    store.slices[0].map.tier4Rects = {kHot};
    store.slices[1].map.tier4Rects = {kHotFar};
    const OrvantaWorker::MergeQueue queue = execute(&OrvantaWorker::doTightLooseTight, store, 0, 1);
    EXPECT_EQ(store.slices[0].mergeId, 1);
    EXPECT_EQ(store.slices[1].mergeId, 2); // Once as the middle, once as the last.
    EXPECT_EQ(store.slices[1].map.tier4Rects, (std::vector<Rectangle>{kHotFar, kHot, kHotFar, kHot}));
    EXPECT_TRUE(queue.empty());
    EXPECT_EQ(store.mergesRemaining, -2);
}

} // namespace
} // namespace OrvantaNS
