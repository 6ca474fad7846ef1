#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserWorld.h"
#include "parser/walk/StreamIndex.h"

namespace OrvantaNS {
namespace {

using ::testing::IsEmpty;
using testing::ParserWorld;
using testing::ScopedTimeScale;

OV_MOUSE_LOCATION at(long long time, std::int32_t x, std::int32_t y) { return {time, x, y}; }

/// A stroke of the given samples, each of which must continue it.
MOUSE_STROKE strokeOf(DataParser& parser, std::initializer_list<OV_MOUSE_LOCATION> samples) {
    const Params unread;
    MOUSE_STROKE stroke;
    for (const OV_MOUSE_LOCATION& sample : samples) {
        EXPECT_TRUE(parser.addToStroke(sample, stroke, unread)) << sample.x << ", " << sample.y;
    }
    return stroke;
}

bool continues(std::initializer_list<OV_MOUSE_LOCATION> samples, const OV_MOUSE_LOCATION& next) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    MOUSE_STROKE stroke = strokeOf(parser, samples);
    const std::size_t before = stroke.points.size();
    const bool result = parser.addToStroke(next, stroke, Params());
    EXPECT_EQ(stroke.points.size(), result ? before + 1 : before);
    return result;
}

// ---- addToStroke ----

TEST(CursorLocationsTest, AddToStroke_FirstTwoSamples_AreTakenWithNoTest) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    const MOUSE_STROKE stroke = strokeOf(parser, {at(0, 100, 100), at(9000, 90, 130)});
    EXPECT_EQ(stroke.points.size(), 2u);
    EXPECT_EQ(stroke.bounds, (Rectangle{90, 100, 100, 130}));
    EXPECT_EQ(stroke.anchor, 0u); // even though the second point is far from the first
}

TEST(CursorLocationsTest, AddToStroke_RightwardStroke_FallsBackByFourPixels) {
    EXPECT_TRUE(continues({at(0, 0, 50), at(100, 100, 50)}, at(200, 100, 50)));
    EXPECT_TRUE(continues({at(0, 0, 50), at(100, 100, 50)}, at(200, 96, 50)));
    EXPECT_FALSE(continues({at(0, 0, 50), at(100, 100, 50)}, at(200, 95, 50)));
    // The furthest reach counts, not the last point.
    EXPECT_FALSE(continues({at(0, 0, 50), at(100, 100, 50), at(200, 96, 50)}, at(300, 95, 50)));
    EXPECT_TRUE(continues({at(0, 0, 50), at(100, 100, 50), at(200, 96, 50)}, at(300, 97, 50)));
}

TEST(CursorLocationsTest, AddToStroke_LeftwardStroke_FallsBackByFourPixels) {
    EXPECT_TRUE(continues({at(0, 100, 50), at(100, 20, 50)}, at(200, 24, 50)));
    EXPECT_FALSE(continues({at(0, 100, 50), at(100, 20, 50)}, at(200, 25, 50)));
}

TEST(CursorLocationsTest, AddToStroke_VerticalStrokes_FallBackByFourPixels) {
    EXPECT_TRUE(continues({at(0, 50, 0), at(100, 50, 100)}, at(200, 50, 96)));
    EXPECT_FALSE(continues({at(0, 50, 0), at(100, 50, 100)}, at(200, 50, 95)));
    EXPECT_TRUE(continues({at(0, 50, 100), at(100, 50, 20)}, at(200, 50, 24)));
    EXPECT_FALSE(continues({at(0, 50, 100), at(100, 50, 20)}, at(200, 50, 25)));
}

TEST(CursorLocationsTest, AddToStroke_AxisThatHasNotMoved_CountsAsGoingDown) {
    EXPECT_TRUE(continues({at(0, 50, 50), at(100, 50, 100)}, at(200, 0, 150)));
    EXPECT_TRUE(continues({at(0, 50, 50), at(100, 50, 100)}, at(200, 54, 150)));
    EXPECT_FALSE(continues({at(0, 50, 50), at(100, 50, 100)}, at(200, 55, 150)));
    EXPECT_TRUE(continues({at(0, 50, 50), at(100, 100, 50)}, at(200, 150, 0)));
    EXPECT_FALSE(continues({at(0, 50, 50), at(100, 100, 50)}, at(200, 150, 55)));
}

TEST(CursorLocationsTest, AddToStroke_OneAxisTurns_StrokeHasTurned) {
    EXPECT_FALSE(continues({at(0, 0, 0), at(100, 100, 100)}, at(200, 200, 90)));
    EXPECT_FALSE(continues({at(0, 0, 0), at(100, 100, 100)}, at(200, 90, 200)));
    EXPECT_TRUE(continues({at(0, 0, 0), at(100, 100, 100)}, at(200, 200, 200)));
}

TEST(CursorLocationsTest, AddToStroke_FarBoundsAndSamples_DoNotOverflow) {
    constexpr std::int32_t low = std::numeric_limits<std::int32_t>::lowest();
    constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
    // Neither end has room for the allowance of 4 pixels; a difference of the two does not fit 32 bits.
    EXPECT_FALSE(continues({at(0, low, 0), at(100, high, 0)}, at(200, low, 0)));
    EXPECT_FALSE(continues({at(0, high, 0), at(100, low, 0)}, at(200, high, 0)));
}

TEST(CursorLocationsTest, AddToStroke_StandingStillWithoutRoomForTheAllowance_Continues) {
    constexpr std::int32_t low = std::numeric_limits<std::int32_t>::lowest();
    constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(continues({at(0, low, 0), at(100, low + 1, 0)}, at(200, low + 1, 0)));
    EXPECT_TRUE(continues({at(0, high, 0), at(100, high - 1, 0)}, at(200, high - 1, 0)));
    EXPECT_TRUE(continues({at(0, 0, low), at(100, 0, low + 1)}, at(200, 0, low + 1)));
    EXPECT_TRUE(continues({at(0, 0, high), at(100, 0, high - 1)}, at(200, 0, high - 1)));
}

TEST(CursorLocationsTest, AddToStroke_SampleAwayFromTheAnchor_MovesTheAnchorToItself) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    MOUSE_STROKE stroke = strokeOf(parser, {at(0, 0, 0), at(10, 1, 0)});
    EXPECT_TRUE(parser.addToStroke(at(20, 4, 4), stroke, Params()));
    EXPECT_EQ(stroke.anchor, 0u); // 4 pixels on both axes are the same place
    EXPECT_TRUE(parser.addToStroke(at(30, 5, 4), stroke, Params()));
    EXPECT_EQ(stroke.anchor, 3u);
    EXPECT_TRUE(parser.addToStroke(at(40, 5, 9), stroke, Params()));
    EXPECT_EQ(stroke.anchor, 4u);
}

TEST(CursorLocationsTest, AddToStroke_LingeringOfHalfASecond_IsNotYetRest) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    MOUSE_STROKE stroke = strokeOf(parser, {at(0, 0, 0), at(50, 50, 0), at(100, 100, 0), at(600, 102, 0)});
    EXPECT_EQ(stroke.points.size(), 4u);
    EXPECT_FALSE(parser.addToStroke(at(601, 103, 0), stroke, Params()));
    ASSERT_EQ(stroke.points.size(), 3u); // cut back to the anchor
    EXPECT_EQ(stroke.points.back().x, 100);
    EXPECT_EQ(stroke.anchor, 2u);
    EXPECT_EQ(stroke.bounds, (Rectangle{0, 102, 0, 0})); // the point cut off still counts
}

TEST(CursorLocationsTest, AddToStroke_SilenceBehindTheAnchor_CutsNothing) {
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    MOUSE_STROKE stroke = strokeOf(parser, {at(0, 0, 0), at(50, 50, 0), at(100, 100, 0)});
    EXPECT_FALSE(parser.addToStroke(at(2100, 100, 0), stroke, Params()));
    EXPECT_EQ(stroke.points.size(), 3u);
}

TEST(CursorLocationsTest, AddToStroke_TurnWhileLingering_IsATurn) {
    // Both ends of the rule apply; the direction is asked first, so that nothing is cut.
    const ScopedTimeScale clock(1000.0);
    DataParser parser;
    MOUSE_STROKE stroke = strokeOf(parser, {at(0, 0, 0), at(50, 50, 0), at(100, 100, 0), at(200, 104, 0)});
    EXPECT_FALSE(parser.addToStroke(at(2000, 99, 0), stroke, Params()));
    EXPECT_EQ(stroke.points.size(), 4u);
}

// ---- extendIdle ----

TEST(CursorLocationsTest, ExtendIdle_FourPixelsAway_StillRests) {
    DataParser parser;
    MOUSE_IDLE idle{at(100, 50, 50), {100, 600}};
    EXPECT_TRUE(parser.extendIdle(at(700, 54, 46), idle));
    EXPECT_EQ(idle.interval.start, 100);
    EXPECT_EQ(idle.interval.stop, 700);
    EXPECT_FALSE(parser.extendIdle(at(800, 55, 50), idle));
    EXPECT_FALSE(parser.extendIdle(at(800, 45, 50), idle));
    EXPECT_FALSE(parser.extendIdle(at(800, 50, 55), idle));
    EXPECT_FALSE(parser.extendIdle(at(800, 50, 45), idle));
    EXPECT_EQ(idle.interval.stop, 700);
    EXPECT_EQ(idle.location.x, 50);
}

TEST(CursorLocationsTest, ExtendIdle_FarApart_DoesNotWrapIntoRest) {
    DataParser parser;
    MOUSE_IDLE idle{at(0, std::numeric_limits<std::int32_t>::lowest(), 0), {0, 0}};
    EXPECT_FALSE(parser.extendIdle(at(1, std::numeric_limits<std::int32_t>::max(), 0), idle));
}

// ---- The two primitives ----

TEST(CursorLocationsTest, CreateIdlePrimitive_PointOfTheZone_IsOnePixelInLocalCoordinates) {
    ParserWorld world({100, 300, 50, 150});
    MOUSE_IDLE idle{at(1000, 120, 80), {1000, 2500}};
    world.parser.createIdlePrimitive(0, world.store, idle);
    ASSERT_EQ(world.parser.objects.size(), 1u);
    const OV_VALUE_OBJECT& object = world.parser.objects[0];
    EXPECT_EQ(object.type, static_cast<std::uint32_t>(MouseIdle));
    EXPECT_EQ(object.rect, (Rectangle{20, 21, 30, 31}));
    EXPECT_EQ(object.start, 1.0);
    EXPECT_EQ(object.stop, 2.5);
    EXPECT_EQ(object.value, 0.0);
    EXPECT_EQ(idle.location.x, 120);
}

TEST(CursorLocationsTest, CreateIdlePrimitive_PointOutsideTheZone_IsMadeAllTheSame) {
    ParserWorld world({100, 300, 50, 150});
    MOUSE_IDLE idle{at(1000, 99, 150), {1000, 2500}};
    world.parser.createIdlePrimitive(0, world.store, idle);
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].rect, (Rectangle{-1, 0, 100, 101}));
}

TEST(CursorLocationsTest, CreateOffScreenPrimitive_HasNoRectangle) {
    ParserWorld world;
    MOUSE_IDLE idle{{}, {3000, 4500}};
    world.parser.createOffScreenPrimitive(0, world.store, idle);
    ASSERT_EQ(world.parser.objects.size(), 1u);
    const OV_VALUE_OBJECT& object = world.parser.objects[0];
    EXPECT_EQ(object.type, static_cast<std::uint32_t>(OffScreen));
    EXPECT_EQ(object.rect, Rectangle{});
    EXPECT_EQ(object.start, 3.0);
    EXPECT_EQ(object.stop, 4.5);
    EXPECT_EQ(object.value, 0.0);
}

// ---- processCursorLocation: strokes ----

TEST(CursorLocationsTest, ProcessCursorLocation_OneSample_MakesNothing) {
    ParserWorld world;
    world.scene.cursor(1.0, 10, 10);
    world.processCursorLocation();
    EXPECT_EQ(world.parser.nextLocation, 1u);
    EXPECT_THAT(world.parser.strokes, IsEmpty());
    EXPECT_THAT(world.parser.objects, IsEmpty());
}

TEST(CursorLocationsTest, ProcessCursorLocation_EndOfStream_MakesNothing) {
    ParserWorld world;
    world.processCursorLocation();
    EXPECT_EQ(world.parser.nextLocation, 0u);
    EXPECT_THAT(world.parser.strokes, IsEmpty());
}

TEST(CursorLocationsTest, ProcessCursorLocation_StrokeOfFourPixels_IsDropped_OfFiveKept) {
    struct Case {
        std::int32_t x;
        std::int32_t y;
        bool kept;
    };
    for (const Case& c : {Case{0, 0, false}, Case{4, 4, false}, Case{5, 0, true}, Case{0, 5, true}, Case{5, 5, true}}) {
        SCOPED_TRACE(::testing::Message() << c.x << ", " << c.y);
        for (const std::int32_t sign : {1, -1}) {
            ParserWorld world;
            world.scene.cursor(1.0, 50, 50).cursor(1.1, 50 + sign * c.x, 50 + sign * c.y);
            world.processCursorLocation();
            EXPECT_EQ(world.parser.strokes.size(), c.kept ? 1u : 0u);
            EXPECT_EQ(world.parser.nextLocation, 2u);
            EXPECT_THAT(world.parser.objects, IsEmpty());
        }
    }
}

TEST(CursorLocationsTest, ProcessCursorLocation_ReturnToTheStart_IsDropped) {
    // Only the ends count: out by 4 pixels on one axis and back, going down on both.
    ParserWorld world;
    world.scene.cursor(1.0, 50, 50).cursor(1.1, 46, 50).cursor(1.2, 50, 46);
    world.processCursorLocation();
    EXPECT_EQ(world.parser.nextLocation, 3u);
    EXPECT_THAT(world.parser.strokes, IsEmpty());
}

TEST(CursorLocationsTest, ProcessCursorLocation_Turn_IsReadAgainAsTheNextStroke) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 50).cursor(1.1, 100, 50).cursor(1.2, 96, 50).cursor(1.3, 95, 50).cursor(1.4, 40, 50);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.strokes[0].points.size(), 3u);
    EXPECT_EQ(world.parser.nextLocation, 3u);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.strokes.size(), 2u);
    EXPECT_EQ(world.parser.strokes[1].points.size(), 2u);
    EXPECT_EQ(world.parser.strokes[1].points.front().x, 95);
    EXPECT_EQ(world.parser.nextLocation, 5u);
}

TEST(CursorLocationsTest, ProcessCursorLocation_ZoneAwayFromTheOrigin_KeepsRecordingCoordinates) {
    ParserWorld world({100, 300, 50, 150});
    world.scene.cursor(1.0, 110, 60).cursor(1.1, 200, 100);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.strokes[0].points[1].x, 200);
    EXPECT_EQ(world.parser.strokes[0].bounds, (Rectangle{110, 200, 60, 100}));
}

// ---- processCursorLocation: rest ----

TEST(CursorLocationsTest, ProcessCursorLocation_Rest_LastsUntilTheCursorLeaves) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(1.1, 50, 0).cursor(1.2, 100, 0).cursor(1.3, 102, 0);
    world.scene.cursor(1.701, 101, 0).cursor(2.5, 104, 4).cursor(3.0, 105, 0).cursor(3.1, 200, 0);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.strokes[0].points.size(), 3u); // up to the anchor
    ASSERT_EQ(world.parser.objects.size(), 1u);
    const OV_VALUE_OBJECT& idle = world.parser.objects[0];
    EXPECT_EQ(idle.type, static_cast<std::uint32_t>(MouseIdle));
    EXPECT_EQ(idle.start, 1.2);
    EXPECT_EQ(idle.stop, 2.5);
    EXPECT_EQ(idle.rect, (Rectangle{100, 101, 0, 1}));
    // The sample that ended the rest belongs to no stroke.
    EXPECT_EQ(world.parser.nextLocation, 7u);
}

TEST(CursorLocationsTest, ProcessCursorLocation_RestThatEndsAtOnce_StopsAtTheSampleThatShowedIt) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(1.1, 50, 0).cursor(1.2, 100, 0).cursor(1.3, 102, 0);
    world.scene.cursor(1.701, 101, 0).cursor(1.8, 300, 0);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].start, 1.2);
    EXPECT_EQ(world.parser.objects[0].stop, 1.701);
}

TEST(CursorLocationsTest, ProcessCursorLocation_SilenceWithNoSampleNearTheAnchor_IsNoRest) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(1.1, 50, 0).cursor(1.2, 100, 0).cursor(3.2, 100, 0).cursor(4.0, 200, 0);
    world.processCursorLocation();
    EXPECT_THAT(world.parser.objects, IsEmpty());
    ASSERT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.nextLocation, 3u);
}

TEST(CursorLocationsTest, ProcessCursorLocation_SilenceWithOneSampleNearTheAnchor_IsARestFromTheAnchor) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(1.1, 50, 0).cursor(1.2, 100, 0).cursor(1.3, 100, 0).cursor(3.2, 100, 0);
    world.scene.cursor(4.0, 200, 0);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].start, 1.2);
    EXPECT_EQ(world.parser.objects[0].stop, 3.2);
}

TEST(CursorLocationsTest, ProcessCursorLocation_RestFromTheFirstSample_LeavesNoStroke) {
    ParserWorld world;
    world.scene.cursor(1.0, 10, 10).cursor(1.2, 10, 10).cursor(1.501, 10, 10).cursor(2.0, 50, 50);
    world.processCursorLocation();
    EXPECT_THAT(world.parser.strokes, IsEmpty());
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].start, 1.0);
    EXPECT_EQ(world.parser.objects[0].stop, 1.501);
}

TEST(CursorLocationsTest, ProcessCursorLocation_RestAtTheEndOfTheStream_MakesNoIdle) {
    ParserWorld world;
    world.scene.cursor(1.0, 10, 10).cursor(1.2, 10, 10).cursor(1.501, 10, 10).cursor(2.0, 10, 10);
    world.processCursorLocation();
    EXPECT_EQ(world.parser.nextLocation, 4u);
    EXPECT_THAT(world.parser.objects, IsEmpty());
}

TEST(CursorLocationsTest, ProcessCursorLocation_RestIsNotTestedAgainstTheZone) {
    ParserWorld world({0, 100, 0, 100});
    world.scene.cursor(1.0, 98, 50).cursor(1.2, 98, 50).cursor(1.501, 98, 50).cursor(2.0, 102, 50).cursor(2.2, 20, 50);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(MouseIdle));
    EXPECT_EQ(world.parser.objects[0].stop, 2.0);
}

// ---- processCursorLocation: absence ----

TEST(CursorLocationsTest, ProcessCursorLocation_Absence_LastsFromTheFirstToTheLastSampleOutside) {
    ParserWorld world({0, 100, 0, 100});
    world.scene.cursor(1.0, 10, 50).cursor(1.1, 90, 50).cursor(1.2, 100, 50).cursor(1.5, 300, 50);
    world.scene.cursor(1.9, 40, -1).cursor(2.0, 90, 50).cursor(2.1, 50, 50);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(OffScreen));
    EXPECT_EQ(world.parser.objects[0].start, 1.2);
    EXPECT_EQ(world.parser.objects[0].stop, 1.9);
    ASSERT_EQ(world.parser.strokes.size(), 1u); // the way out, without the sample outside
    EXPECT_EQ(world.parser.strokes[0].points.size(), 2u);
    EXPECT_EQ(world.parser.nextLocation, 6u); // the sample back in the zone is consumed
}

TEST(CursorLocationsTest, ProcessCursorLocation_OneSampleOutside_IsAnAbsenceOfNoLength) {
    ParserWorld world({0, 100, 0, 100});
    world.scene.cursor(1.0, 10, 100).cursor(2.0, 10, 99);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].start, 1.0);
    EXPECT_EQ(world.parser.objects[0].stop, 1.0);
    EXPECT_EQ(world.parser.nextLocation, 2u);
}

TEST(CursorLocationsTest, ProcessCursorLocation_AbsenceAtTheEndOfTheStream_MakesNothing) {
    ParserWorld world({0, 100, 0, 100});
    world.scene.cursor(1.0, 10, 50).cursor(1.1, 90, 50).cursor(1.2, 150, 50).cursor(3.0, 160, 50);
    world.processCursorLocation();
    EXPECT_THAT(world.parser.objects, IsEmpty());
    EXPECT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.nextLocation, 4u);
}

// ---- processCursorLocation: the zone's stop ----

TEST(CursorLocationsTest, ProcessCursorLocation_SampleAtTheStop_StillMoves) {
    ParserWorld world({0, 1000, 0, 100}, 0.0, 5.0);
    world.scene.cursor(4.9, 10, 50).cursor(5.0, 90, 50).cursor(5.001, 150, 50).cursor(5.1, 200, 50);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.strokes.size(), 1u);
    EXPECT_EQ(world.parser.strokes[0].points.size(), 2u);
    EXPECT_EQ(world.parser.nextLocation, 3u); // the sample behind the stop is consumed
    EXPECT_THAT(world.parser.objects, IsEmpty());
}

TEST(CursorLocationsTest, ProcessCursorLocation_RestBehindTheStop_IsExtendedWhenTheSampleIsNear) {
    for (const bool near : {true, false}) {
        SCOPED_TRACE(near);
        ParserWorld world({0, 1000, 0, 100}, 0.0, 5.0);
        world.scene.cursor(1.0, 10, 10).cursor(1.2, 10, 10).cursor(1.6, 10, 10).cursor(6.0, near ? 14 : 15, 10);
        world.scene.cursor(7.0, 10, 10);
        world.processCursorLocation();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(MouseIdle));
        EXPECT_EQ(world.parser.objects[0].stop, near ? 6.0 : 1.6);
        EXPECT_EQ(world.parser.nextLocation, 4u);
    }
}

TEST(CursorLocationsTest, ProcessCursorLocation_AbsenceBehindTheStop_EndsAtItsLastSample) {
    ParserWorld world({0, 100, 0, 100}, 0.0, 5.0);
    world.scene.cursor(1.0, 200, 10).cursor(3.0, 200, 10).cursor(6.0, 200, 10).cursor(7.0, 10, 10);
    world.processCursorLocation();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(OffScreen));
    EXPECT_EQ(world.parser.objects[0].start, 1.0);
    EXPECT_EQ(world.parser.objects[0].stop, 3.0);
    EXPECT_EQ(world.parser.nextLocation, 3u);
}

// ---- getMouseAtTime ----

TEST(CursorLocationsTest, GetMouseAtTime_GivesTheFirstSampleAtOrAfter) {
    ParserWorld world;
    world.scene.cursor(1.0, 1, 10).cursor(2.0, 2, 20).cursor(2.0, 3, 30).cursor(50.0, 4, 40);
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, -5).x, 1);
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, 1000).x, 1);
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, 1001).x, 2);
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, 2000).y, 20);
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, 2001).time, 50000); // far away, and so it is
    world.parser.skipLocation = 2;
    EXPECT_EQ(world.parser.getMouseAtTime(world.scene, 0).x, 3);
}

TEST(CursorLocationsTest, GetMouseAtTime_NothingLeft_IsAllMinusOne) {
    ParserWorld world;
    world.scene.cursor(1.0, 1, 10);
    for (const std::uint32_t skip : {0u, 1u, 7u}) {
        world.parser.skipLocation = skip;
        const OV_MOUSE_LOCATION location = world.parser.getMouseAtTime(world.scene, 1001);
        EXPECT_EQ(location.time, -1);
        EXPECT_EQ(location.x, -1);
        EXPECT_EQ(location.y, -1);
    }
}

TEST(CursorLocationsTest, GetMouseAtTime_AnyStream_AgreesWithAScan) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        Params params;
        auto& locations = params.cursorLocations();
        for (std::int32_t n = static_cast<std::int32_t>(random() % 30); n > 0; --n) {
            locations.push_back({static_cast<long long>(random() % 20), n, -n});
        }
        if (seed % 2 == 0) {
            std::stable_sort(locations.begin(), locations.end(),
                             [](const OV_MOUSE_LOCATION& a, const OV_MOUSE_LOCATION& b) { return a.time < b.time; });
        }
        DataParser parser;
        for (std::uint32_t skip = 0; skip < locations.size() + 2; ++skip) {
            parser.skipLocation = skip;
            for (long long time = -1; time < 22; ++time) {
                OV_MOUSE_LOCATION expected{-1, -1, -1};
                for (std::size_t i = skip; i < locations.size(); ++i) {
                    if (locations[i].time >= time) {
                        expected = locations[i];
                        break;
                    }
                }
                for (const OV_MOUSE_LOCATION& location :
                     {parser.getMouseAtTime(params, time), sampleFrom(locations, skip, time, areInOrder(locations))}) {
                    ASSERT_EQ(location.time, expected.time);
                    ASSERT_EQ(location.x, expected.x);
                    ASSERT_EQ(location.y, expected.y);
                }
            }
        }
    }
}

TEST(CursorLocationsTest, GetMouseAtTime_SamplesChangedInPlace_AreReadAnew) {
    Params params;
    params.cursorLocations() = {{1000, 1, 1}, {2000, 2, 2}, {3000, 3, 3}};
    DataParser parser;
    EXPECT_EQ(parser.getMouseAtTime(params, 1500).x, 2);
    params.cursorLocations()[0].time = 9000; // now the first at or after any time up to that
    EXPECT_EQ(parser.getMouseAtTime(params, 1500).x, 1);
    EXPECT_EQ(parser.getMouseAtTime(params, 2500).x, 1);
}

TEST(CursorLocationsTest, AreInOrder_EqualTimesAre_AnyStepBackIsNot) {
    EXPECT_TRUE(areInOrder({}));
    EXPECT_TRUE(areInOrder({{5, 9, 9}, {5, 0, 0}, {6, 4, 4}}));
    EXPECT_FALSE(areInOrder({{5, 0, 0}, {6, 1, 1}, {5, 2, 2}}));
}

// ---- Laws ----

TEST(CursorLocationsTest, ProcessCursorLocation_AnyWalk_KeepsStrokesWithinTheirRules) {
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        ParserWorld world({0, 200, 0, 200}, 0.0, 20.0);
        long long time = 0;
        std::int32_t x = 100;
        std::int32_t y = 100;
        for (int n = 0; n < 300; ++n) {
            time += static_cast<long long>(random() % 4 == 0 ? random() % 400 : random() % 40);
            if (random() % 3 != 0) {
                x += static_cast<std::int32_t>(random() % 41) - 20;
                y += static_cast<std::int32_t>(random() % 41) - 20;
            }
            world.scene.params().cursorLocations().push_back({time, x, y});
        }
        const std::size_t count = world.scene.params().cursorLocations().size();
        std::uint32_t before = 0;
        while (world.parser.nextLocation < count) {
            world.processCursorLocation();
            ASSERT_GT(world.parser.nextLocation, before); // every call takes at least one sample
            before = world.parser.nextLocation;
        }
        for (const MOUSE_STROKE& stroke : world.parser.strokes) {
            ASSERT_GE(stroke.points.size(), 2u);
            const OV_MOUSE_LOCATION& first = stroke.points.front();
            const OV_MOUSE_LOCATION& last = stroke.points.back();
            EXPECT_TRUE(std::abs(first.x - last.x) > 4 || std::abs(first.y - last.y) > 4);
            for (const OV_MOUSE_LOCATION& point : stroke.points) {
                EXPECT_LE(point.time, 20000);
                EXPECT_TRUE(point.x >= 0 && point.x < 200 && point.y >= 0 && point.y < 200);
                EXPECT_TRUE(point.x >= stroke.bounds.left && point.x <= stroke.bounds.right);
                EXPECT_TRUE(point.y >= stroke.bounds.top && point.y <= stroke.bounds.bottom);
            }
        }
        for (const OV_VALUE_OBJECT& object : world.parser.objects) {
            EXPECT_LE(object.start, object.stop);
            if (object.type == static_cast<std::uint32_t>(MouseIdle)) {
                EXPECT_GT(object.stop - object.start, 0.5);
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
