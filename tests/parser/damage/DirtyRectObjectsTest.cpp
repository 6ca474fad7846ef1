#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserWorld.h"
#include "frame/Geometry.h"
#include "parser/damage/AreaTimes.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ParserWorld;
using testing::ScopedTimeScale;

using Indices = std::vector<std::uint32_t>;
using Frames = std::vector<DR_OBJECT_FRAME>;

DR_OBJECT objectOf(long long start, long long stop) { return {{{stop, {}}}, start, stop, {}}; }

DR_OBJECT_FRAME frameOf(Rectangle rect) { return {{}, rect, false}; }

/// The clusters of one moment that holds `rects`, in their order.
Frames clustersOf(std::initializer_list<Rectangle> rects) {
    Params params;
    DataParser parser;
    Frames frames;
    for (const Rectangle& rect : rects) {
        params.dirtyRects().push_back({0, rect});
    }
    for (std::uint32_t i = 0; i < params.dirtyRects().size(); ++i) {
        parser.addDRToFrameSet(i, params, frames);
    }
    return frames;
}

// ---- New records ----

TEST(DirtyRectObjectsTest, FreshObject_IsEmptyAtTimeZero) {
    const DR_OBJECT object;
    EXPECT_THAT(object.frames, IsEmpty());
    EXPECT_EQ(object.start, 0);
    EXPECT_EQ(object.stop, 0);
    EXPECT_EQ(object.bounds, Rectangle{});
    EXPECT_FALSE(object.isInOrder);
}

TEST(DirtyRectObjectsTest, FreshFrame_IsEmptyAndNotMatched) {
    const DR_OBJECT_FRAME frame;
    EXPECT_THAT(frame.dirtyRects, IsEmpty());
    EXPECT_EQ(frame.rect, Rectangle{});
    EXPECT_FALSE(frame.matched);
}

// ---- preProcessDR ----

TEST(DirtyRectObjectsTest, PreProcessDR_NoRectangles_LeavesNoObjectAndEmptyAnswers) {
    ParserWorld world;
    world.parser.preProcessDR(0, world.scene, world.store);
    EXPECT_THAT(world.parser.drObjects, IsEmpty());
    EXPECT_THAT(world.parser.getDRObjectsInTime({0, 1000}), IsEmpty());
    EXPECT_THAT(world.parser.getDRObjectsInSpaceTime({0, 1000}, box(0, 0, 100, 100)), IsEmpty());
}

TEST(DirtyRectObjectsTest, PreProcessDR_OneRectangle_IsAnObjectOfNoLength) {
    ParserWorld world;
    world.scene.dirty(2.0, box(10, 20, 30, 40));
    world.parser.preProcessDR(0, world.scene, world.store);
    ASSERT_EQ(world.parser.drObjects.size(), 1u);
    const DR_OBJECT& object = world.parser.drObjects[0];
    EXPECT_EQ(object.start, 2000);
    EXPECT_EQ(object.stop, 2000);
    EXPECT_EQ(object.bounds, box(10, 20, 30, 40));
    ASSERT_EQ(object.frames.size(), 1u);
    EXPECT_EQ(object.frames[0].time, 2000);
    EXPECT_EQ(object.frames[0].rect, box(10, 20, 30, 40));
    EXPECT_EQ(world.parser.skipDirtyRect, 0u);
}

TEST(DirtyRectObjectsTest, PreProcessDR_FirstRecordOfEachFurtherMoment_IsSteppedOver) {
    // Moments A, A, B, B, C: the first B ends the group of A unread, and C that of B.
    ParserWorld world;
    world.scene.dirty(1.0, box(0, 0, 10, 10)).dirty(1.0, box(100, 0, 10, 10));
    world.scene.dirty(2.0, box(200, 0, 10, 10)).dirty(2.0, box(300, 0, 10, 10)).dirty(3.0, box(400, 0, 10, 10));
    world.parser.preProcessDR(0, world.scene, world.store);
    std::vector<std::int32_t> lefts;
    for (const DR_OBJECT& object : world.parser.drObjects) {
        lefts.push_back(object.bounds.left);
    }
    EXPECT_THAT(lefts, ElementsAre(0, 100, 300));
}

TEST(DirtyRectObjectsTest, PreProcessDR_OneRecordAMoment_ReadsEverySecondOne) {
    ParserWorld world;
    for (int n = 0; n < 5; ++n) {
        world.scene.dirty(1.0 + n, box(100 * n, 0, 10, 10));
    }
    world.parser.preProcessDR(0, world.scene, world.store);
    ASSERT_EQ(world.parser.drObjects.size(), 3u);
    EXPECT_EQ(world.parser.drObjects[1].bounds.left, 200);
    EXPECT_EQ(world.parser.drObjects[1].start, 3000);
    EXPECT_EQ(world.parser.drObjects[2].bounds.left, 400);
}

TEST(DirtyRectObjectsTest, PreProcessDR_RecordAtTheStop_IsRead_OneTickLaterEnds) {
    ParserWorld world({0, 1280, 0, 800}, 0.0, 5.0);
    world.scene.dirty(5.0, box(0, 0, 10, 10)).dirty(5.0, box(100, 0, 10, 10));
    world.parser.preProcessDR(0, world.scene, world.store);
    EXPECT_EQ(world.parser.drObjects.size(), 2u);

    ParserWorld late({0, 1280, 0, 800}, 0.0, 5.0);
    late.scene.dirty(5.001, box(0, 0, 10, 10));
    late.parser.preProcessDR(0, late.scene, late.store);
    EXPECT_THAT(late.parser.drObjects, IsEmpty());
}

TEST(DirtyRectObjectsTest, PreProcessDR_ReadsFromTheSkipCursor) {
    ParserWorld world;
    world.scene.dirty(1.0, box(0, 0, 10, 10)).dirty(2.0, box(100, 0, 10, 10));
    world.parser.skipDirtyRect = 1;
    world.parser.preProcessDR(0, world.scene, world.store);
    ASSERT_EQ(world.parser.drObjects.size(), 1u);
    EXPECT_EQ(world.parser.drObjects[0].bounds.left, 100);
    EXPECT_EQ(world.parser.skipDirtyRect, 1u);
}

TEST(DirtyRectObjectsTest, PreProcessDR_RecordBeforeTheZone_MayOpenTheFirstObject) {
    ParserWorld world({0, 1280, 0, 800}, 10.0, 20.0);
    world.scene.dirty(1.0, box(0, 0, 10, 10)).dirty(2.0, box(50, 0, 10, 10)).dirty(11.0, box(100, 0, 10, 10));
    world.processLiveZone();
    ASSERT_EQ(world.parser.drObjects.size(), 1u); // that of second 11 is stepped over
    EXPECT_EQ(world.parser.drObjects[0].start, 2000);
}

TEST(DirtyRectObjectsTest, PreProcessDR_SameRectangleForTenSeconds_IsOneFrame) {
    ParserWorld world;
    for (int n = 0; n <= 10; ++n) { // two records a moment: the first one is stepped over
        world.scene.dirty(n, box(0, 0, 50, 50)).dirty(n, box(0, 0, 50, 50));
    }
    world.parser.preProcessDR(0, world.scene, world.store);
    ASSERT_EQ(world.parser.drObjects.size(), 1u);
    const DR_OBJECT& object = world.parser.drObjects[0];
    EXPECT_EQ(object.start, 0);
    EXPECT_EQ(object.stop, 10000);
    ASSERT_EQ(object.frames.size(), 1u);
    EXPECT_EQ(object.frames[0].time, 10000);
}

// ---- addDRToFrameSet ----

TEST(DirtyRectObjectsTest, AddDRToFrameSet_GapOfOnePixel_IsTwoClusters_SharedEdgeIsOne) {
    EXPECT_EQ(clustersOf({box(0, 0, 10, 10), box(11, 0, 10, 10)}).size(), 2u);
    EXPECT_EQ(clustersOf({box(0, 0, 10, 10), box(0, 11, 10, 10)}).size(), 2u);
    const Frames touching = clustersOf({box(0, 0, 10, 10), box(10, 10, 10, 10)}); // at a corner
    ASSERT_EQ(touching.size(), 1u);
    EXPECT_EQ(touching[0].rect, box(0, 0, 20, 20));
    EXPECT_THAT(touching[0].dirtyRects, ElementsAre(0, 1));
    EXPECT_FALSE(touching[0].matched);
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_BridgeBetweenTwoClusters_DropsTheSecondOnesExtent) {
    const Frames frames = clustersOf({box(0, 0, 10, 10), box(20, 0, 10, 10), box(10, 0, 10, 5)});
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_THAT(frames[0].dirtyRects, ElementsAre(0, 1, 2));
    EXPECT_EQ(frames[0].rect, box(0, 0, 20, 10)); // the first cluster and the bridge only
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_JoinedCluster_IsStillTouchedThroughItsMembers) {
    const Frames frames = clustersOf({box(0, 0, 10, 10), box(20, 0, 10, 10), box(10, 0, 10, 5), box(30, 0, 10, 10)});
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_THAT(frames[0].dirtyRects, ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(frames[0].rect, box(0, 0, 40, 10));
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_ExtentAloneIsTouched_IsNoHit) {
    // An L of two: the corner that its extent covers belongs to neither.
    const Frames frames = clustersOf({box(0, 0, 10, 40), box(10, 30, 30, 10), box(30, 0, 10, 10)});
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_THAT(frames[1].dirtyRects, ElementsAre(2));
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_ClustersInBetween_KeepTheirOrder) {
    // Rectangle 5 touches clusters 1, 2 and 4: both further ones are joined though the walk closes up behind each.
    const Frames frames = clustersOf({box(500, 500, 10, 10), box(0, 0, 10, 10), box(0, 20, 10, 10),
                                      box(600, 600, 10, 10), box(20, 10, 10, 10), box(10, 5, 10, 20)});
    ASSERT_EQ(frames.size(), 3u);
    EXPECT_THAT(frames[0].dirtyRects, ElementsAre(0));
    EXPECT_THAT(frames[1].dirtyRects, ElementsAre(1, 2, 4, 5));
    EXPECT_THAT(frames[2].dirtyRects, ElementsAre(3));
    EXPECT_EQ(frames[1].rect, (Rectangle{0, 20, 0, 25}));
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_EmptyRectangle_TouchesWhatLiesAroundItButIsNotTouched) {
    // The new rectangle is the one that is grown by a pixel.
    EXPECT_EQ(clustersOf({box(0, 0, 10, 10), box(5, 5, 0, 0)}).size(), 1u);
    EXPECT_EQ(clustersOf({box(5, 5, 0, 0), box(0, 0, 10, 10)}).size(), 2u);
    EXPECT_EQ(clustersOf({box(5, 5, 0, 0), box(5, 5, 0, 0)}).size(), 2u);
}

TEST(DirtyRectObjectsTest, AddDRToFrameSet_InvertedRectangle_IsOneOfItsOwn) {
    const Frames frames = clustersOf({box(0, 0, 100, 100), Rectangle{60, 40, 60, 40}});
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[1].rect, (Rectangle{60, 40, 60, 40}));
}

// ---- mergeFramesToActiveSet ----

/// Whether a frame of `next` is taken by an object whose last rectangle is `last`.
bool isSimilar(Rectangle last, Rectangle next) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames first{frameOf(last)};
    Frames second{frameOf(next)};
    parser.mergeFramesToActiveSet(first, active, 0);
    parser.mergeFramesToActiveSet(second, active, 100);
    EXPECT_EQ(second[0].matched, parser.drObjects.size() == 1);
    return parser.drObjects.size() == 1;
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_SizesWithinATenthAndEightPixels_AreSimilar) {
    struct Case {
        std::int32_t from;
        std::int32_t to;
        bool similar;
    };
    for (const Case& c : {Case{100, 118, true}, Case{100, 119, false}, Case{118, 100, true}, Case{119, 100, false},
                          Case{105, 123, true}, Case{105, 124, false}, // 115.5 is cut to 115
                          Case{9, 17, true}, Case{9, 18, false}, Case{1, 9, true}, Case{1, 10, false},
                          Case{10, 1, false}, Case{9, 1, true}, Case{100, 100, true}}) {
        SCOPED_TRACE(::testing::Message() << c.from << " to " << c.to);
        EXPECT_EQ(isSimilar(box(0, 0, c.from, 50), box(0, 0, c.to, 50)), c.similar);
        EXPECT_EQ(isSimilar(box(0, 0, 50, c.from), box(0, 0, 50, c.to)), c.similar);
    }
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_WithoutACommonPixel_AreNotSimilar) {
    EXPECT_TRUE(isSimilar(box(0, 0, 50, 50), box(49, 49, 50, 50)));
    EXPECT_FALSE(isSimilar(box(0, 0, 50, 50), box(50, 0, 50, 50)));
    EXPECT_FALSE(isSimilar(box(0, 0, 50, 50), box(0, 50, 50, 50)));
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_HugeSides_AreComparedWideEnough) {
    // 11 times 2^30 does not fit 32 bits.
    EXPECT_TRUE(isSimilar(box(0, 0, 1 << 30, 1), box(0, 0, 1 << 30, 1)));
    EXPECT_TRUE(isSimilar(box(0, 0, 1, 1 << 30), box(0, 0, 1, 1 << 30)));
    EXPECT_FALSE(isSimilar(box(0, 0, 1 << 30, 1), box(0, 0, 1 << 29, 1)));
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_ChangedRectangle_IsANewFrameAndWidensTheBounds) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    for (const auto& [time, left] : {std::pair{0LL, 0}, {100LL, 0}, {200LL, 5}, {300LL, 5}, {400LL, 0}}) {
        Frames frames{frameOf(box(left, 0, 50, 50))};
        parser.mergeFramesToActiveSet(frames, active, time);
        EXPECT_EQ(frames[0].matched, time != 0);
    }
    ASSERT_EQ(parser.drObjects.size(), 1u);
    const DR_OBJECT& object = parser.drObjects[0];
    ASSERT_EQ(object.frames.size(), 3u);
    EXPECT_EQ(object.frames[0].time, 100);
    EXPECT_EQ(object.frames[1].time, 300);
    EXPECT_EQ(object.frames[2].time, 400);
    EXPECT_EQ(object.frames[1].rect.left, 5);
    EXPECT_EQ(object.frames[2].rect.left, 0);
    EXPECT_EQ(object.bounds, box(0, 0, 55, 50));
    EXPECT_EQ(object.start, 0);
    EXPECT_EQ(object.stop, 400);
    EXPECT_THAT(active, ElementsAre(0));
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_SightingsInOrder_AreKnownToBe_UntilOneIsEarlier) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    for (const auto& [time, inOrder] :
         {std::pair{500LL, true}, {500LL, true}, {700LL, true}, {699LL, false}, {800LL, false}}) {
        Frames frames{frameOf(box(0, 0, 50, 50))};
        parser.mergeFramesToActiveSet(frames, active, time);
        ASSERT_EQ(parser.drObjects.size(), 1u);
        EXPECT_EQ(parser.drObjects[0].isInOrder, inOrder) << time;
    }
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_ShapeMayDriftWithoutLimit) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    for (int n = 0; n < 20; ++n) {
        Frames frames{frameOf(box(10 * n, 0, 20, 20))};
        parser.mergeFramesToActiveSet(frames, active, 100 * n);
    }
    ASSERT_EQ(parser.drObjects.size(), 1u);
    EXPECT_EQ(parser.drObjects[0].bounds, box(0, 0, 210, 20));
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_OneFrameForTwoObjects_GoesToTheEarlierOne) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames two{frameOf(box(0, 0, 50, 50)), frameOf(box(60, 0, 50, 50))};
    parser.mergeFramesToActiveSet(two, active, 0);
    Frames one{frameOf(box(30, 0, 50, 50))};
    parser.mergeFramesToActiveSet(one, active, 100);
    ASSERT_EQ(parser.drObjects.size(), 2u);
    EXPECT_EQ(parser.drObjects[0].stop, 100);
    EXPECT_EQ(parser.drObjects[1].stop, 0);
    EXPECT_THAT(active, ElementsAre(0, 1));
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_TwoFramesForOneObject_FirstIsTakenAndTheOtherBeginsAnObject) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames one{frameOf(box(30, 0, 50, 50))};
    parser.mergeFramesToActiveSet(one, active, 0);
    Frames two{frameOf(box(0, 0, 50, 50)), frameOf(box(60, 0, 50, 50))};
    parser.mergeFramesToActiveSet(two, active, 100);
    ASSERT_EQ(parser.drObjects.size(), 2u);
    EXPECT_EQ(parser.drObjects[0].frames.back().rect.left, 0);
    EXPECT_EQ(parser.drObjects[1].bounds.left, 60);
    EXPECT_EQ(parser.drObjects[1].start, 100);
    EXPECT_TRUE(two[0].matched);
    EXPECT_FALSE(two[1].matched);
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_FrameThatIsTaken_IsPassedOver) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames first{frameOf(box(0, 0, 50, 50))};
    parser.mergeFramesToActiveSet(first, active, 0);
    Frames second{frameOf(box(0, 0, 50, 50)), frameOf(box(10, 0, 50, 50))};
    second[0].matched = true;
    parser.mergeFramesToActiveSet(second, active, 100);
    ASSERT_EQ(parser.drObjects.size(), 1u); // a frame that comes in as taken begins no object
    EXPECT_EQ(parser.drObjects[0].frames.back().rect.left, 10);
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_UnseenForExactlyOneAndAHalfSeconds_StaysActive) {
    for (const long long gap : {1500LL, 1501LL}) {
        SCOPED_TRACE(gap);
        const ScopedTimeScale clock(1000.0);
        DataParser parser;
        Indices active;
        Frames here{frameOf(box(0, 0, 50, 50))};
        parser.mergeFramesToActiveSet(here, active, 0);
        Frames elsewhere{frameOf(box(500, 0, 50, 50))};
        parser.mergeFramesToActiveSet(elsewhere, active, gap);
        if (gap == 1500) {
            EXPECT_THAT(active, ElementsAre(0, 1));
        } else {
            EXPECT_THAT(active, ElementsAre(1));
        }
        EXPECT_EQ(parser.drObjects.size(), 2u);
    }
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_LongUnseenObject_IsMatchedBeforeItsAgeIsTested) {
    EXPECT_TRUE(isSimilar(box(0, 0, 50, 50), box(0, 0, 50, 50)));
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames first{frameOf(box(0, 0, 50, 50))};
    parser.mergeFramesToActiveSet(first, active, 0);
    Frames again{frameOf(box(0, 0, 50, 50))};
    parser.mergeFramesToActiveSet(again, active, 60000);
    ASSERT_EQ(parser.drObjects.size(), 1u);
    EXPECT_EQ(parser.drObjects[0].stop, 60000);
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_SeveralTooOld_AreAllRemovedInOneWalk) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames four{frameOf(box(0, 0, 50, 50)), frameOf(box(100, 0, 50, 50)), frameOf(box(200, 0, 50, 50)),
                frameOf(box(300, 0, 50, 50))};
    parser.mergeFramesToActiveSet(four, active, 0);
    Frames third{frameOf(box(200, 0, 50, 50))};
    parser.mergeFramesToActiveSet(third, active, 5000);
    EXPECT_THAT(active, ElementsAre(2));
    EXPECT_EQ(parser.drObjects.size(), 4u);
}

TEST(DirtyRectObjectsTest, MergeFramesToActiveSet_NoFrames_OnlyAges) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    Indices active;
    Frames one{frameOf(box(0, 0, 50, 50))};
    parser.mergeFramesToActiveSet(one, active, 0);
    Frames none;
    parser.mergeFramesToActiveSet(none, active, 1500);
    EXPECT_THAT(active, ElementsAre(0));
    parser.mergeFramesToActiveSet(none, active, 1501);
    EXPECT_THAT(active, IsEmpty());
}

// ---- Queries in time ----

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_WithinOrOverlappingByMoreThanNothing) {
    struct Case {
        long long start;
        long long stop;
        bool selected;
    };
    for (const Case& c : {Case{1000, 2000, true}, Case{1500, 1600, true}, Case{1000, 1000, true},
                          Case{2000, 2000, true}, Case{1500, 1500, true}, Case{0, 3000, true}, Case{0, 1001, true},
                          Case{0, 1000, false}, Case{1999, 9000, true}, Case{2000, 9000, false}, Case{999, 999, false},
                          Case{2001, 2001, false}, Case{0, 999, false}}) {
        SCOPED_TRACE(::testing::Message() << c.start << " to " << c.stop);
        DataParser parser;
        parser.drObjects.push_back(objectOf(c.start, c.stop));
        EXPECT_EQ(parser.getDRObjectsInTime({1000, 2000}), c.selected ? Indices{0} : Indices{});
    }
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_MomentInsideAnObject_SelectsNothing) {
    DataParser parser;
    parser.drObjects = {objectOf(0, 3000), objectOf(1500, 1500), objectOf(1500, 1600)};
    EXPECT_THAT(parser.getDRObjectsInTime({1500, 1500}), ElementsAre(1));
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_ScanEndsAtTheFirstUnselectedObjectBehindTheInterval) {
    DataParser parser;
    parser.drObjects = {objectOf(0, 100), objectOf(2000, 9000), objectOf(2001, 9000), objectOf(1500, 1600)};
    // The object that starts on the interval's end is not selected and does not end the scan; the next one does.
    EXPECT_THAT(parser.getDRObjectsInTime({1000, 2000}), IsEmpty());
    parser.drObjects[2].start = 2000;
    EXPECT_THAT(parser.getDRObjectsInTime({1000, 2000}), ElementsAre(3));
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_LooksFromTheSkipCursorOn) {
    DataParser parser;
    parser.drObjects = {objectOf(1000, 1100), objectOf(1200, 1300), objectOf(1400, 1500)};
    parser.skipDRObject = 1;
    EXPECT_THAT(parser.getDRObjectsInTime({0, 9000}), ElementsAre(1, 2));
    for (const std::uint32_t end : {3u, 4u, 4000000000u}) {
        parser.skipDRObject = end;
        EXPECT_THAT(parser.getDRObjectsInTime({0, 9000}), IsEmpty());
    }
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_AnyObjects_AgreesWithItsDefinition) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        DataParser parser;
        for (std::uint64_t n = random() % 12; n > 0; --n) {
            const auto start = static_cast<long long>(random() % 12);
            parser.drObjects.push_back(objectOf(start, start + static_cast<long long>(random() % 8) - 1));
        }
        if (seed % 2 == 0) {
            std::stable_sort(parser.drObjects.begin(), parser.drObjects.end(),
                             [](const DR_OBJECT& p, const DR_OBJECT& q) { return p.start < q.start; });
        }
        parser.skipDRObject = static_cast<std::uint32_t>(random() % 3);
        for (long long a = -1; a < 14; ++a) {
            for (long long b = -1; b < 14; ++b) {
                Indices expected;
                for (std::uint32_t i = parser.skipDRObject; i < parser.drObjects.size(); ++i) {
                    const long long s = parser.drObjects[i].start;
                    const long long e = parser.drObjects[i].stop;
                    if ((a <= s && e <= b) || std::min(e, b) > std::max(s, a)) {
                        expected.push_back(i);
                    } else if (s > b) {
                        break;
                    }
                }
                ASSERT_EQ(parser.getDRObjectsInTime({a, b}), expected) << a << " to " << b;
            }
        }
    }
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_AreasOfAStream_AgreesWithItsDefinition) {
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        ParserWorld world;
        DataParser& parser = world.parser;
        auto& records = world.scene.params().dirtyRects();
        long long time = 0;
        for (int n = 0; n < 120; ++n) {
            // One area that hardly ever rests among many that only flash; every fifth stream goes back in places.
            time += static_cast<long long>(random() % 3) - (seed % 5 == 0 && random() % 4 == 0 ? 3 : 0);
            records.push_back({time, box(0, 0, 50, 50)});
            records.push_back({time, box(static_cast<int>(random() % 5), 0, 50, 50)});
            records.push_back({time, box(100 * n, 100, 10, 10)});
        }
        parser.preProcessDR(0, world.scene, world.store);
        const AreaTimes times(parser.drObjects);
        for (const std::uint32_t skip : {0u, 1u, 7u, 4000u}) {
            parser.skipDRObject = skip;
            for (long long a = -10; a < 130; a += 3) {
                for (const long long length : {-20, -1, 0, 1, 5, 60}) {
                    const long long b = a + length;
                    Indices expected;
                    for (std::uint32_t i = skip; i < parser.drObjects.size(); ++i) {
                        const long long s = parser.drObjects[i].start;
                        const long long e = parser.drObjects[i].stop;
                        if ((a <= s && e <= b) || std::min(e, b) > std::max(s, a)) {
                            expected.push_back(i);
                        } else if (s > b) {
                            break;
                        }
                    }
                    ASSERT_EQ(parser.getDRObjectsInTime({a, b}), expected) << a << " to " << b;
                    ASSERT_EQ(areasInTime(parser.drObjects, skip, {a, b}, &times), expected) << a << " to " << b;
                }
            }
        }
    }
}

TEST(DirtyRectObjectsTest, GetDRObjectsInTime_AfterAWalk_WorksFromTheAreasAsTheyStand) {
    ParserWorld world;
    world.scene.dirty(1.0, box(0, 0, 10, 10)).dirty(1.0, box(100, 0, 10, 10));
    world.processLiveZone();
    world.parser.skipDRObject = 0;
    ASSERT_EQ(world.parser.drObjects.size(), 2u);
    EXPECT_THAT(world.parser.getDRObjectsInTime({900, 1100}), ElementsAre(0, 1));
    world.parser.drObjects[0].stop = 5000; // in its place: the array is where it was, and as long
    EXPECT_THAT(world.parser.getDRObjectsInTime({4000, 4500}), ElementsAre(0));
}

// ---- Frames of one object ----

DR_OBJECT objectWithFrames(std::initializer_list<long long> times) {
    DR_OBJECT object;
    std::int32_t n = 0;
    for (const long long time : times) {
        object.frames.push_back({time, box(10 * n, 0, 10, 10)});
        ++n;
    }
    object.start = 500;
    object.stop = object.frames.back().time;
    return object;
}

TEST(DirtyRectObjectsTest, GetDOFrameAtTime_MomentInsideAFramesLife_GivesTheFrameBefore) {
    DataParser parser;
    parser.drObjects.push_back(objectWithFrames({1000, 2000, 3000}));
    EXPECT_EQ(parser.getDOFrameAtTime(0, -5).left, 0);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 1000).left, 0);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 1999).left, 0);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 2000).left, 10);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 2999).left, 10);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 3000).left, 20);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 9000).left, 20);
}

TEST(DirtyRectObjectsTest, GetDOFrameAtTime_FirstFramesTime_IsNotAsked) {
    DataParser parser;
    parser.drObjects.push_back(objectWithFrames({9000, 2000, 3000}));
    EXPECT_EQ(parser.getDOFrameAtTime(0, 1000).left, 0);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 2000).left, 10);
}

TEST(DirtyRectObjectsTest, GetDOFrameAtTime_FramesOutOfOrder_StopsAtTheFirstLaterOne) {
    DataParser parser;
    parser.drObjects.push_back(objectWithFrames({1000, 5000, 2000, 3000}));
    EXPECT_EQ(parser.getDOFrameAtTime(0, 3000).left, 0);
    EXPECT_EQ(parser.getDOFrameAtTime(0, 5000).left, 30);
}

TEST(DirtyRectObjectsTest, GetDOFrameAtTime_AnyFrames_AgreesWithItsDefinition) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        DataParser parser;
        DR_OBJECT object;
        for (std::uint64_t n = 1 + random() % 40; n > 0; --n) {
            object.frames.push_back({static_cast<long long>(random() % 30), box(static_cast<int>(n), 0, 1, 1)});
        }
        if (seed % 2 == 0) {
            std::stable_sort(object.frames.begin(), object.frames.end(),
                             [](const OV_TIME_RECT& p, const OV_TIME_RECT& q) { return p.time < q.time; });
        }
        parser.drObjects.push_back(object);
        for (long long time = -1; time < 32; ++time) {
            Rectangle expected = object.frames[0].rect;
            for (std::size_t i = 1; i < object.frames.size() && object.frames[i].time <= time; ++i) {
                expected = object.frames[i].rect;
            }
            ASSERT_EQ(parser.getDOFrameAtTime(0, time), expected) << time;
        }
    }
}

TEST(DirtyRectObjectsTest, GetDOFrameAtTime_FollowedAreas_AgreeWithItsDefinition) {
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        const ScopedTimeScale clock(1000.0);
        std::mt19937_64 random(seed);
        DataParser parser;
        Indices active;
        long long time = 0;
        for (int moment = 0; moment < 60; ++moment) {
            // Moments that repeat and, in every third round, moments that go back.
            time += static_cast<long long>(random() % 4) - (seed % 3 == 0 ? 2 : 0);
            Frames frames{frameOf(box(static_cast<int>(random() % 8), 0, 50, 50))};
            parser.mergeFramesToActiveSet(frames, active, time);
        }
        for (std::uint32_t i = 0; i < parser.drObjects.size(); ++i) {
            const std::vector<OV_TIME_RECT>& frames = parser.drObjects[i].frames;
            for (long long t = -150; t < 200; ++t) {
                Rectangle expected = frames[0].rect;
                for (std::size_t f = 1; f < frames.size() && frames[f].time <= t; ++f) {
                    expected = frames[f].rect;
                }
                ASSERT_EQ(parser.getDOFrameAtTime(i, t), expected) << t;
            }
        }
    }
}

TEST(DirtyRectObjectsTest, GetDRFrameSpan_ReachesFromTheFrameBefore) {
    DataParser parser;
    parser.drObjects.push_back(objectWithFrames({1000, 2000, 3000}));
    EXPECT_EQ(parser.getDRFrameSpan(0, 0).start, 500);
    EXPECT_EQ(parser.getDRFrameSpan(0, 0).stop, 1000);
    EXPECT_EQ(parser.getDRFrameSpan(0, 2).start, 2000);
    EXPECT_EQ(parser.getDRFrameSpan(0, 2).stop, 3000);
}

TEST(DirtyRectObjectsTest, GetDRObjectsInSpaceTime_FirstFrameSpansTheObject_LaterFramesItsStop) {
    using Pair = std::pair<std::uint32_t, std::uint32_t>;
    DataParser parser;
    parser.drObjects.push_back(objectWithFrames({1000, 2000, 3000})); // from 500 to 3000
    const Rectangle all = box(0, 0, 100, 100);
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({0, 9000}, all), ElementsAre(Pair{0, 0}, Pair{0, 1}, Pair{0, 2}));
    // Later frames stand at 3000 alone, whatever their own times.
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({600, 2500}, all), ElementsAre(Pair{0, 0}));
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({2900, 3000}, all), ElementsAre(Pair{0, 0}, Pair{0, 1}, Pair{0, 2}));
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({3000, 4000}, all), IsEmpty()); // the object itself is not selected
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({0, 9000}, box(19, 0, 1, 1)), ElementsAre(Pair{0, 1}));
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({0, 9000}, box(30, 0, 5, 5)), IsEmpty()); // touching shares no pixel
    EXPECT_THAT(parser.getDRObjectsInSpaceTime({0, 9000}, box(15, 5, 0, 0)), IsEmpty());
}

// ---- Against the rules told rectangle by rectangle ----

void plainAdd(std::uint32_t index, const std::vector<OV_TIME_RECT>& records, Frames& frames) {
    const Rectangle rect = records[index].rect;
    const auto isHit = [&](const DR_OBJECT_FRAME& frame) {
        return std::any_of(frame.dirtyRects.begin(), frame.dirtyRects.end(),
                           [&](std::uint32_t member) { return rect.canTouchRect(records[member].rect); });
    };
    std::size_t target = frames.size();
    for (std::size_t i = 0; i < frames.size();) {
        if (!isHit(frames[i])) {
            ++i;
        } else if (target == frames.size()) {
            target = i++;
        } else {
            const Indices members = frames[i].dirtyRects;
            frames[target].dirtyRects.insert(frames[target].dirtyRects.end(), members.begin(), members.end());
            frames.erase(frames.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
    if (target < frames.size()) {
        frames[target].dirtyRects.push_back(index);
        frames[target].rect = boundingUnion(frames[target].rect, rect);
    } else {
        frames.push_back({{index}, rect, false});
    }
}

bool plainSimilar(const Rectangle& r, const Rectangle& f) {
    const auto sidesFit = [](long long p, long long q) { return p - 8 <= q * 11 / 10 && q - 8 <= p * 11 / 10; };
    return area(intersection(r, f)) > 0 && sidesFit(width(r), width(f)) && sidesFit(height(r), height(f));
}

void plainMerge(Frames& frames, Indices& active, std::vector<DR_OBJECT>& objects, long long time, long long patience) {
    for (std::size_t a = 0; a < active.size();) {
        DR_OBJECT& object = objects[active[a]];
        for (DR_OBJECT_FRAME& frame : frames) {
            const Rectangle last = object.frames.back().rect;
            if (frame.matched || !plainSimilar(last, frame.rect)) {
                continue;
            }
            object.stop = time;
            frame.matched = true;
            if (frame.rect == last) {
                object.frames.back().time = time;
            } else {
                object.frames.push_back({time, frame.rect});
                object.bounds = boundingUnion(object.bounds, frame.rect);
            }
            break;
        }
        if (wrapSub(time, object.stop) > patience) {
            active.erase(active.begin() + static_cast<std::ptrdiff_t>(a));
        } else {
            ++a;
        }
    }
    for (const DR_OBJECT_FRAME& frame : frames) {
        if (!frame.matched) {
            active.push_back(static_cast<std::uint32_t>(objects.size()));
            objects.push_back({{{time, frame.rect}}, time, time, frame.rect});
        }
    }
}

std::vector<DR_OBJECT> plainPreProcess(const std::vector<OV_TIME_RECT>& records, std::size_t first, long long zoneStop,
                                       long long patience) {
    std::vector<DR_OBJECT> objects;
    Indices active;
    for (std::size_t i = first; i < records.size() && records[i].time <= zoneStop; ++i) {
        const long long time = records[i].time;
        Frames frames;
        for (; i < records.size() && records[i].time == time; ++i) {
            plainAdd(static_cast<std::uint32_t>(i), records, frames);
        }
        plainMerge(frames, active, objects, time, patience);
    }
    return objects;
}

void expectSame(const std::vector<DR_OBJECT>& objects, const std::vector<DR_OBJECT>& expected) {
    ASSERT_EQ(objects.size(), expected.size());
    for (std::size_t i = 0; i < objects.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_EQ(objects[i].start, expected[i].start);
        ASSERT_EQ(objects[i].stop, expected[i].stop);
        ASSERT_EQ(objects[i].bounds, expected[i].bounds);
        ASSERT_EQ(objects[i].frames.size(), expected[i].frames.size());
        for (std::size_t f = 0; f < objects[i].frames.size(); ++f) {
            ASSERT_EQ(objects[i].frames[f].time, expected[i].frames[f].time);
            ASSERT_EQ(objects[i].frames[f].rect, expected[i].frames[f].rect);
        }
    }
}

/// A rectangle on a world of `extent` pixels with sides up to `longest`; now and then a very large, empty, inverted or
/// outlying one.
Rectangle randomRect(std::mt19937_64& random, std::int32_t extent, std::int32_t longest) {
    const auto below = [&random](std::int32_t n) {
        return static_cast<std::int32_t>(random() % static_cast<std::uint64_t>(n));
    };
    if (random() % 40 == 0) {
        constexpr std::int32_t edges[] = {std::numeric_limits<std::int32_t>::lowest(),
                                          std::numeric_limits<std::int32_t>::lowest() + 1,
                                          -1,
                                          0,
                                          1,
                                          1 << 20,
                                          std::numeric_limits<std::int32_t>::max() - 1,
                                          std::numeric_limits<std::int32_t>::max()};
        return {edges[below(8)], edges[below(8)], edges[below(8)], edges[below(8)]};
    }
    if (random() % 60 == 0) {
        return {below(extent), below(extent), below(extent), below(extent)};
    }
    return box(below(extent), below(extent), below(longest + 1), below(longest + 1));
}

struct Density {
    std::int32_t extent;
    std::int32_t longest;
    std::size_t rects;
    int rounds;
};

class DirtyRectDensity : public ::testing::TestWithParam<Density> {};

TEST_P(DirtyRectDensity, AddDRToFrameSet_AnyRectangles_AgreesWithItsDefinition) {
    const Density& density = GetParam();
    for (std::uint64_t seed = 1; seed <= static_cast<std::uint64_t>(density.rounds); ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        Params params;
        for (std::size_t n = 0; n < density.rects; ++n) {
            params.dirtyRects().push_back({0, randomRect(random, density.extent, density.longest)});
        }
        DataParser parser;
        Frames frames;
        Frames expected;
        for (std::uint32_t i = 0; i < density.rects; ++i) {
            parser.addDRToFrameSet(i, params, frames);
            plainAdd(i, params.dirtyRects(), expected);
        }
        ASSERT_EQ(frames.size(), expected.size());
        for (std::size_t f = 0; f < frames.size(); ++f) {
            ASSERT_EQ(frames[f].dirtyRects, expected[f].dirtyRects);
            ASSERT_EQ(frames[f].rect, expected[f].rect);
            ASSERT_FALSE(frames[f].matched);
        }
    }
}

TEST_P(DirtyRectDensity, PreProcessDR_AnyStream_AgreesWithItsDefinition) {
    const Density& density = GetParam();
    for (std::uint64_t seed = 1; seed <= static_cast<std::uint64_t>(density.rounds); ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed * 7919);
        ParserWorld world;
        auto& records = world.scene.params().dirtyRects();
        // Few rectangles that come back, shaken a little, over a few moments.
        std::vector<Rectangle> themes;
        for (std::size_t n = 0; n < density.rects; ++n) {
            themes.push_back(randomRect(random, density.extent, density.longest));
        }
        long long time = 0;
        const int moments = 2 + static_cast<int>(random() % 8);
        for (int moment = 0; moment < moments; ++moment) {
            time += static_cast<long long>(random() % 4 == 0 ? random() % 4000 : random() % 700);
            for (const Rectangle& theme : themes) {
                if (random() % 3 != 0) {
                    const auto shake = static_cast<std::int32_t>(random() % 3);
                    records.push_back({time, {theme.left, wrapAdd(theme.right, shake), theme.top, theme.bottom}});
                }
            }
        }
        if (seed % 5 == 0 && records.size() > 2) { // out of order in one place
            std::swap(records[records.size() / 3], records[records.size() / 2]);
        }
        world.parser.skipDirtyRect = static_cast<std::uint32_t>(random() % 2);
        world.parser.preProcessDR(0, world.scene, world.store);
        expectSame(world.parser.drObjects, plainPreProcess(records, world.parser.skipDirtyRect, 60000, 1500));
        if (HasFatalFailure()) {
            return;
        }
    }
}

// From hardly ever touching to a single heap.
INSTANTIATE_TEST_SUITE_P(Crowds, DirtyRectDensity,
                         ::testing::Values(Density{60, 6, 30, 200}, Density{200, 12, 60, 100},
                                           Density{2000, 20, 300, 20}, Density{5000, 300, 300, 10},
                                           Density{3000, 12, 1500, 3}, Density{300, 4, 1500, 3},
                                           Density{100000, 30, 1500, 3}));

} // namespace
} // namespace OrvantaNS
