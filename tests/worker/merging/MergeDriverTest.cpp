#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "ProgressReporter.h"
#include "RecordingReporter.h"
#include "Slices.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::dead;
using testing::entryOf;
using testing::recording;
using testing::RecordingReporter;
using testing::slice;
using testing::sliceStore;
using testing::valueMap;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

const OrvantaWorker worker;

constexpr Rectangle kWindow = box(0, 0, 1600, 1000);
constexpr Rectangle kHot = box(0, 0, 300, 200);
constexpr Rectangle kHotNear = box(200, 100, 300, 200);
constexpr Rectangle kHotFar = box(1200, 700, 300, 200);

// Notes every report; says from the given report on that the host wants to stop.
class Reporter : public ProgressReporter {
public:
    explicit Reporter(std::size_t cancelAt = 1000) : cancelAt_(cancelAt) {}
    void reportProgress(double percent) override { reports.push_back(percent); }
    bool isCancelled() override { return reports.size() >= cancelAt_; }

    std::vector<double> reports;

private:
    std::size_t cancelAt_;
};

void mergeAll(OV_DATA_STORE& store) { worker.mergeSlices(recording(1920, 1200), store, 0.0); }

// Three tight slices of 2 s in one window, all of which fit one shot.
OV_DATA_STORE threeTightSlices() {
    const SLICE_BREAKDOWN tight = breakdown("TIW", kWindow, kHot);
    return sliceStore({slice(0, 2, tight), slice(2, 4, tight), slice(4, 6, tight)});
}

// ---- mergeSlices ----

TEST(MergeSlicesTest, NoSlices_Fails) {
    OV_DATA_STORE store = sliceStore({});
    try {
        mergeAll(store);
        FAIL() << "did not throw";
    } catch (const OrvantaException& e) {
        EXPECT_STREQ(e.what(), "Need String! somehow we have no slices!");
        EXPECT_EQ(e.errorCode(), 6);
    }
}

TEST(MergeSlicesTest, SingleSlice_HasNoProposalAndShowsTheWholeRegion) {
    OV_DATA_STORE store = sliceStore({slice(0, 5)});
    Reporter reporter;
    store.progress = &reporter;
    store.mergesTotal = 9;
    mergeAll(store);
    EXPECT_TRUE(reporter.reports.empty());
    EXPECT_EQ(store.mergesTotal, 0);
    EXPECT_EQ(store.mergesRemaining, 0);
    EXPECT_TRUE(store.slices[0].keyframe);
    EXPECT_EQ(store.slices[0].mergeType, 6);
    EXPECT_EQ(store.slices[0].mergeId, 0);
}

TEST(MergeSlicesTest, AllBlank_FirstBlankSweepsUpTheRest) {
    OV_DATA_STORE store = sliceStore({blank(0, 3), blank(3, 6), blank(6, 9)});
    Reporter reporter;
    store.progress = &reporter;
    mergeAll(store);
    EXPECT_TRUE(reporter.reports.empty());
    EXPECT_EQ(store.mergesTotal, 0);
    ASSERT_EQ(store.slices.size(), 3u);
    EXPECT_EQ(store.slices[0].stop, 9.0);
    EXPECT_TRUE(store.slices[0].blank);
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[2].mergeId, -1);
}

// Proposals (0, 1) and (1, 2) at 514. The first fires: 1 of 2 remain. The second is stale: no change. The retest's
// (0, 2) fires: none remain.
TEST(MergeSlicesTest, ShortLastSlice_IsGoneBeforeAnythingIsProposed) {
    const SLICE_BREAKDOWN tight = breakdown("TIW", kWindow, kHot);
    OV_DATA_STORE store = sliceStore({slice(0, 10, tight), slice(10, 10.5, tight)});
    mergeAll(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_EQ(store.slices[0].stop, 10.5);
    EXPECT_EQ(store.mergesTotal, 0);
}

TEST(MergeSlicesTest, ThreeSlicesOfOneShot_ReportsAfterEveryProposal) {
    OV_DATA_STORE store = threeTightSlices();
    Reporter reporter;
    store.progress = &reporter;
    mergeAll(store);
    EXPECT_EQ(reporter.reports, (std::vector<double>{90.0, 90.0, 100.0}));
    EXPECT_EQ(store.mergesTotal, 2);
    EXPECT_EQ(store.mergesRemaining, 0);
    EXPECT_EQ(store.slices[0].stop, 6.0);
    EXPECT_EQ(store.slices[0].mergeType, 1);
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[2].mergeId, -1);
}

// The clip's start is not added to the time of merging, so the band shifts down: 20 s and 40 s of a clip from 20 s on.
TEST(MergeSlicesTest, ClipThatStartsLate_ReportsBelowTheBand) {
    OV_DATA_STORE store = threeTightSlices();
    Reporter reporter;
    store.progress = &reporter;
    store.clipStart = 20.0;
    mergeAll(store);
    EXPECT_EQ(reporter.reports, (std::vector<double>{80.0, 80.0, 90.0}));
}

TEST(MergeSlicesTest, CancelledAtAnyReport_StopsThere) {
    for (std::size_t cancelAt = 0; cancelAt < 3; ++cancelAt) {
        SCOPED_TRACE(cancelAt);
        OV_DATA_STORE store = threeTightSlices();
        Reporter reporter(cancelAt);
        store.progress = &reporter;
        try {
            mergeAll(store);
            FAIL() << "did not throw";
        } catch (const OrvantaException& e) {
            EXPECT_EQ(e.errorCode(), 8);
        }
        EXPECT_EQ(reporter.reports.size(), cancelAt);
        // The first merge was carried out before the first report; the last pass has not run.
        EXPECT_EQ(store.slices[1].mergeId, -1);
        EXPECT_EQ(store.slices[2].mergeId, cancelAt < 2 ? 0 : -1);
    }
}

// P: long, outside. F: 1 s, windowed. Y: long, tight in the same window, too far away to fit.
// (F, Y) is fixed first at 300, which makes F a keyframe; the old (P, F) is stale; the new (P, F) is fixed at 100 and
// proposes F anew, which is too short by now and swallows Y: three executors for two proposals.
TEST(MergeSlicesTest, MoreExecutorsThanProposals_ProgressStaysAtItsEnd) {
    OV_DATA_STORE store =
        sliceStore({slice(0, 10, breakdown("T", {}, box(1500, 1050, 300, 150))),
                    slice(10, 11, breakdown("IW", kWindow, kHotFar)), slice(11, 21, breakdown("TIW", kWindow, kHot))});
    Reporter reporter;
    store.progress = &reporter;
    mergeAll(store);
    EXPECT_EQ(reporter.reports, (std::vector<double>{90.0, 90.0, 100.0, 100.0}));
    EXPECT_EQ(store.mergesTotal, 2);
    EXPECT_EQ(store.mergesRemaining, -1);
    EXPECT_EQ(store.slices[0].mergeType, 3);
    EXPECT_EQ(store.slices[1].mergeType, 4);
    EXPECT_EQ(store.slices[1].breakdown.tier4Rect, kHot);
    EXPECT_EQ(store.slices[1].stop, 21.0);
    EXPECT_EQ(store.slices[2].mergeId, -1);
}

// Each neighbour pair fits one shot, all three do not. (0, 1) stands at the floor, 900 x 0.2 = 180; (1, 2) at
// 900 x (0.25 x 5/7 + 0.25 x 6/7 + 0.5 x 4/7) = 610 and goes first. The pan from the long first slice is then fixed.
TEST(MergeSlicesTest, MostUrgentPair_GoesBeforeTheEarlierOne) {
    OV_DATA_STORE store = sliceStore({slice(0, 8, breakdown("TIW", kWindow, box(0, 0, 400, 200))),
                                      slice(8, 10, breakdown("TIW", kWindow, box(400, 0, 400, 200))),
                                      slice(10, 11, breakdown("TIW", kWindow, box(800, 0, 400, 200))), blank(11, 20)});
    mergeAll(store);
    EXPECT_EQ(store.slices[0].mergeType, 1);
    EXPECT_EQ(store.slices[0].stop, 8.0);
    EXPECT_EQ(store.slices[0].breakdown.tier4Rect, box(0, 0, 400, 200));
    EXPECT_EQ(store.slices[1].mergeType, 1);
    EXPECT_EQ(store.slices[1].stop, 11.0);
    EXPECT_EQ(store.slices[1].breakdown.tier4Rect, box(400, 0, 800, 200));
    EXPECT_EQ(store.slices[2].mergeId, -1);
}

// ---- forceLastKeyframe ----

TEST(ForceLastKeyframeTest, LastOnTheFloor_Stays) {
    OV_DATA_STORE store = sliceStore({slice(0, 5), slice(5, 7)});
    worker.forceLastKeyframe(store);
    EXPECT_EQ(store.slices.size(), 2u);
}

TEST(ForceLastKeyframeTest, LastAHairShorter_IsFoldedIntoThePreviousTarget) {
    OV_DATA_STORE store = sliceStore({slice(0, 5), blank(5, 6), blank(6, 7), slice(7, 8.999)});
    store.slices[0].map = valueMap(5.0, {{kHot, 20.0}});
    store.slices[3].map = valueMap(2.0, {{kHotFar, 80.0}});
    worker.forceLastKeyframe(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_EQ(store.slices[0].stop, 8.999);
    EXPECT_EQ(store.slices[0].mergeId, 3);
    ASSERT_EQ(store.slices[0].map.spaces.size(), 1u);
    EXPECT_EQ(store.slices[0].map.spaces[0].first, kHot);
}

TEST(ForceLastKeyframeTest, FloorAtOtherFades_IsTheFadeAndASecond) {
    const auto left = [](double fade, double lastLength) {
        OV_DATA_STORE store = sliceStore({slice(0, 5), slice(5, 5 + lastLength)});
        store.fadeSeconds = fade;
        worker.forceLastKeyframe(store);
        return store.slices.size();
    };
    EXPECT_EQ(left(0.5, 1.5), 2u);
    EXPECT_EQ(left(0.5, 1.499), 1u);
    EXPECT_EQ(left(3.0, 4.0), 2u);
    EXPECT_EQ(left(3.0, 3.999), 1u);
}

TEST(ForceLastKeyframeTest, ShortBlankAtTheEnd_IsFoldedLikeAnyOther) {
    OV_DATA_STORE store = sliceStore({slice(0, 5), blank(5, 8), blank(8, 9)});
    worker.forceLastKeyframe(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_EQ(store.slices[0].stop, 9.0);
}

TEST(ForceLastKeyframeTest, SeveralShortSlicesInARow_AllGo) {
    // 5.5 to 6.5 s goes into the slice from 5 s, that into the one from 4.5 s, which then lasts 2 s and stays.
    OV_DATA_STORE store = sliceStore({slice(0, 4.5), slice(4.5, 5), slice(5, 5.5), slice(5.5, 6.5)});
    worker.forceLastKeyframe(store);
    ASSERT_EQ(store.slices.size(), 2u);
    EXPECT_EQ(store.slices[1].start, 4.5);
    EXPECT_EQ(store.slices[1].stop, 6.5);
    EXPECT_EQ(store.slices[1].mergeId, 1);
    EXPECT_EQ(store.slices[0].mergeId, 0);
}

TEST(ForceLastKeyframeTest, OnlyABlankBefore_TheBlankTakesOver) {
    OV_DATA_STORE store = sliceStore({blank(0, 3), slice(3, 4)});
    worker.forceLastKeyframe(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_TRUE(store.slices[0].blank);
    EXPECT_EQ(store.slices[0].stop, 4.0);
    EXPECT_EQ(store.slices[0].mergeId, 1);
}

TEST(ForceLastKeyframeTest, OnlyShortBlanksBefore_TheyAreFoldedOneByOne) {
    OV_DATA_STORE store = sliceStore({blank(0, 3), blank(3, 3.5), blank(3.5, 4), slice(4, 4.5)});
    worker.forceLastKeyframe(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_EQ(store.slices[0].stop, 4.5);
    EXPECT_EQ(store.slices[0].mergeId, 1);
}

TEST(ForceLastKeyframeTest, OnlySlice_StaysHoweverShort) {
    OV_DATA_STORE store = sliceStore({slice(0, 0.1)});
    worker.forceLastKeyframe(store);
    EXPECT_EQ(store.slices.size(), 1u);
}

// ---- createMergeEntry ----

TEST(CreateMergeEntryTest, NoNextTarget_ProposesNothing) {
    OV_DATA_STORE store = sliceStore({slice(0, 5), blank(5, 6)});
    OrvantaWorker::MergeQueue queue;
    EXPECT_EQ(worker.createMergeEntry(store, queue, 0), 0u);
    EXPECT_TRUE(queue.empty());
    EXPECT_FALSE(store.slices[0].breakdown.identified);
}

TEST(CreateMergeEntryTest, Proposal_RemembersTheRevisions) {
    OV_DATA_STORE store = threeTightSlices();
    store.slices[0].mergeId = 4;
    store.slices[1].mergeId = -1;
    store.slices[2].mergeId = 7;
    OrvantaWorker::MergeQueue queue;
    EXPECT_EQ(worker.createMergeEntry(store, queue, 0), 2u);
    ASSERT_EQ(queue.size(), 1u);
    EXPECT_EQ(queue[0].firstSlice, 0u);
    EXPECT_EQ(queue[0].nextSlice, 2u);
    EXPECT_EQ(queue[0].firstMergeId, 4);
    EXPECT_EQ(queue[0].nextMergeId, 7);
    EXPECT_EQ(queue[0].strategy, 1);
    EXPECT_GT(queue[0].priority, 0);
}

TEST(CreateMergeEntryTest, NoStrategy_IsNotQueued) {
    OV_DATA_STORE store = threeTightSlices();
    store.slices[0].blocked = true;
    OrvantaWorker::MergeQueue queue;
    EXPECT_EQ(worker.createMergeEntry(store, queue, 0), 1u);
    EXPECT_TRUE(queue.empty());
}

// ---- processMerge ----

TEST(ProcessMergeTest, OutOfDateEntry_IsDroppedWithoutATrace) {
    const std::vector<std::function<void(OV_DATA_STORE&)>> changes = {
        [](OV_DATA_STORE& s) { s.slices[0].mergeId = -1; }, [](OV_DATA_STORE& s) { s.slices[1].mergeId = -1; },
        [](OV_DATA_STORE& s) { s.slices[0].mergeId = 4; }, [](OV_DATA_STORE& s) { s.slices[1].mergeId = 6; }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        // A strategy that does not exist is not even looked at.
        for (const std::int32_t strategy : {1, 99}) {
            SCOPED_TRACE(::testing::Message() << i << " " << strategy);
            OV_DATA_STORE store = threeTightSlices();
            store.slices[0].mergeId = 3;
            store.slices[1].mergeId = 5;
            MERGE_ENTRY entry = entryOf(store, 0, 1, strategy);
            changes[i](store);
            OrvantaWorker::MergeQueue queue;
            worker.processMerge(store, queue, entry);
            EXPECT_TRUE(queue.empty());
            EXPECT_EQ(store.mergesRemaining, 0);
            EXPECT_EQ(store.slices[0].stop, 2.0);
            EXPECT_EQ(store.slices[0].mergeType, 0);
        }
    }
}

TEST(ProcessMergeTest, RevisionBelowTheRemembered_IsNotOutOfDate) {
    OV_DATA_STORE store = threeTightSlices();
    MERGE_ENTRY entry = entryOf(store, 0, 1, 1);
    entry.firstMergeId = 1;
    entry.nextMergeId = 1;
    OrvantaWorker::MergeQueue queue;
    worker.processMerge(store, queue, entry);
    EXPECT_EQ(store.slices[0].stop, 4.0);
}

TEST(ProcessMergeTest, NewerEntryOfTheSamePair_Fires) {
    OV_DATA_STORE store = threeTightSlices();
    MERGE_ENTRY old = entryOf(store, 0, 1, 1);
    ++store.slices[0].mergeId;
    MERGE_ENTRY fresh = entryOf(store, 0, 1, 1);
    OrvantaWorker::MergeQueue queue;
    worker.processMerge(store, queue, old);
    EXPECT_EQ(store.slices[0].stop, 2.0);
    worker.processMerge(store, queue, fresh);
    EXPECT_EQ(store.slices[0].stop, 4.0);
}

TEST(ProcessMergeTest, UnknownStrategy_Fails) {
    for (const std::int32_t strategy : {0, 13, -1}) {
        SCOPED_TRACE(strategy);
        OV_DATA_STORE store = threeTightSlices();
        MERGE_ENTRY entry = entryOf(store, 0, 1, strategy);
        OrvantaWorker::MergeQueue queue;
        CaptureStdout();
        try {
            worker.processMerge(store, queue, entry);
            FAIL() << "did not throw";
        } catch (const OrvantaException& e) {
            EXPECT_STREQ(e.what(), "Need String! Impossible to process merge");
            EXPECT_EQ(e.errorCode(), 6);
        }
        EXPECT_EQ(GetCapturedStdout(), "IMPOSSIBLE MERGE\n");
    }
}

// A pair that every executor accepts: tight, windowed and full screen at once, without `inWindow` for strategy 5, which
// asks for nothing but the fit. What is left of it tells the executor.
TEST(ProcessMergeTest, EachStrategy_CallsItsExecutor) {
    struct Expected {
        std::int32_t first;
        std::int32_t next;
        bool merged;
        const char* flags;
    };
    const std::vector<Expected> expected = {{1, 0, true, "TIW"},   {2, 0, true, "IW"},    {3, 0, true, "I"},
                                            {4, 0, true, "TIWN"},  {5, 0, true, "T"},     {6, 0, true, "N"},
                                            {1, 1, false, "TIWN"}, {1, 2, false, "TIWN"}, {2, 1, false, "TIWN"},
                                            {3, 2, false, "TIWN"}, {3, 6, false, "TIWN"}, {0, 0, false, "TIWN"}};
    for (std::int32_t strategy = 1; strategy <= 12; ++strategy) {
        SCOPED_TRACE(strategy);
        OV_DATA_STORE store = sliceStore(
            {slice(0, 1, breakdown("TIWN", kWindow, kHot)), slice(1, 2, breakdown("TIWN", kWindow, kHotNear))});
        MERGE_ENTRY entry = entryOf(store, 0, 1, strategy);
        OrvantaWorker::MergeQueue queue;
        worker.processMerge(store, queue, entry);
        const Expected& e = expected[static_cast<std::size_t>(strategy - 1)];
        EXPECT_EQ(store.slices[0].mergeType, e.first);
        EXPECT_EQ(store.slices[1].mergeType, e.next);
        EXPECT_EQ(store.slices[1].mergeId, e.merged ? -1 : 1);
        EXPECT_EQ(testing::flagsOf(store.slices[0].breakdown), e.flags);
        EXPECT_EQ(store.mergesRemaining, -1);
    }
}

// ---- combineSlices ----

TEST(CombineSlicesTest, FoldsTheLiveSlicesOfTheRun) {
    OV_DATA_STORE store = sliceStore({slice(0, 1), blank(1, 2), dead(slice(2, 9)), slice(3, 4), slice(4, 5)});
    store.slices[3].keyframe = true;
    store.slices[3].blocked = true;
    store.slices[3].mergeType = 5;
    store.slices[3].map = valueMap(1.0, {{kHot, 4.0}});
    worker.combineSlices(store, 0, 3);
    EXPECT_EQ(store.slices[0].stop, 4.0);
    EXPECT_EQ(store.slices[0].mergeId, 2);
    EXPECT_EQ(store.slices[1].mergeId, -1);
    EXPECT_EQ(store.slices[3].mergeId, -1);
    EXPECT_EQ(store.slices[4].mergeId, 0);
    EXPECT_FALSE(store.slices[0].keyframe);
    EXPECT_FALSE(store.slices[0].blocked);
    EXPECT_FALSE(store.slices[0].blank);
    EXPECT_EQ(store.slices[0].mergeType, 0);
    EXPECT_TRUE(store.slices[0].map.spaces.empty());
    EXPECT_TRUE(store.slices[1].blank);
    EXPECT_EQ(store.slices[3].mergeType, 5);
    EXPECT_EQ(store.slices[3].start, 3.0);
}

TEST(CombineSlicesTest, StopMayGoBack) {
    OV_DATA_STORE store = sliceStore({slice(0, 9), slice(1, 2)});
    worker.combineSlices(store, 0, 1);
    EXPECT_EQ(store.slices[0].stop, 2.0);
}

TEST(CombineSlicesTest, EmptyRun_ChangesNothing_AndCountsAsNoWork) {
    OV_DATA_STORE store = sliceStore({slice(0, 1), slice(1, 2)});
    RecordingReporter reporter;
    store.progress = &reporter;
    worker.combineSlices(store, 1, 1);
    worker.combineSlices(store, 1, 0);
    worker.combineSlices(store, 0, 0);
    EXPECT_EQ(store.slices[0].mergeId, 0);
    EXPECT_EQ(store.slices[1].mergeId, 0);
    EXPECT_EQ(reporter.questions, 0u);
}

// ---- retestMerge, retestBlock ----

// The pairs in the queue as it stands; equal priorities stand in the order of their pushes.
std::string pairs(const OrvantaWorker::MergeQueue& queue) {
    std::string text;
    for (const MERGE_ENTRY& entry : queue) {
        text += std::to_string(entry.firstSlice) + "-" + std::to_string(entry.nextSlice) + " ";
    }
    return text;
}

// Five long slices that have nothing in common: every proposal stands at 100.
OV_DATA_STORE fiveLongSlices() {
    std::vector<OV_FOCUS_SLICE> slices;
    for (int i = 0; i < 5; ++i) {
        slices.push_back(slice(10 * i, 10 * i + 10, breakdown("T", {}, i % 2 == 0 ? kHot : kHotFar)));
    }
    return sliceStore(std::move(slices));
}

TEST(RetestTest, RetestMerge_ProposesTheEarlierPairFirst) {
    OV_DATA_STORE store = fiveLongSlices();
    OrvantaWorker::MergeQueue queue;
    worker.retestMerge(store, queue, 2);
    EXPECT_EQ(pairs(queue), "1-2 2-3 ");
    queue.clear();
    store.slices[1].blank = true;
    store.slices[3].mergeId = -1;
    worker.retestMerge(store, queue, 2);
    EXPECT_EQ(pairs(queue), "0-2 2-4 ");
}

TEST(RetestTest, RetestMerge_AtTheEnds) {
    OV_DATA_STORE store = fiveLongSlices();
    OrvantaWorker::MergeQueue queue;
    worker.retestMerge(store, queue, 0);
    EXPECT_EQ(pairs(queue), "0-1 ");
    queue.clear();
    worker.retestMerge(store, queue, 4);
    EXPECT_EQ(pairs(queue), "3-4 ");
}

TEST(RetestTest, RetestBlock_LeavesThePairOut) {
    OV_DATA_STORE store = fiveLongSlices();
    OrvantaWorker::MergeQueue queue;
    worker.retestBlock(store, queue, 1, 2);
    EXPECT_EQ(pairs(queue), "0-1 2-3 ");
    queue.clear();
    worker.retestBlock(store, queue, 0, 1);
    EXPECT_EQ(pairs(queue), "1-2 ");
    queue.clear();
    worker.retestBlock(store, queue, 3, 4);
    EXPECT_EQ(pairs(queue), "2-3 ");
}

} // namespace
} // namespace OrvantaNS
