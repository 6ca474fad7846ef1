#include <cstdint>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StrokesTest : public testing::ParserTest {
protected:
    void stroke(std::initializer_list<Sample> samples) { parser.strokes.push_back(strokeOver(samples)); }
    void drag(double start, double stop) { object(Drag, start, stop, {0, 10, 0, 10}); }

    /// A stroke over these times, 10 pixels to the right for every second.
    void strokeAt(std::initializer_list<double> times) {
        MOUSE_STROKE made;
        for (const double t : times) {
            made.points.push_back({ticks(t), static_cast<std::int32_t>(10 * t), 50});
        }
        parser.strokes.push_back(made);
    }
    /// The times of each stroke's points, as "1 2 3".
    std::vector<std::string> pieces() const {
        std::vector<std::string> all;
        for (const MOUSE_STROKE& s : parser.strokes) {
            std::string times;
            for (const OV_MOUSE_LOCATION& p : s.points) {
                times += (times.empty() ? "" : " ") + testing::text(DataParser::convertTime(p.time));
            }
            all.push_back(times);
        }
        return all;
    }
    void chop() { parser.chopStrokes(); }
    void process() { parser.processStrokes(store); }
};

// ---- New records ----

TEST(MouseRecordsTest, FreshStroke_HasNoPointAndBoundsInsideOut) {
    const MOUSE_STROKE stroke;
    EXPECT_THAT(stroke.points, IsEmpty());
    EXPECT_EQ(stroke.bounds, (Rectangle{INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN}));
    EXPECT_EQ(stroke.anchor, 0u);
}

TEST(MouseRecordsTest, FreshIdle_HasNoTime) {
    const MOUSE_IDLE idle;
    EXPECT_EQ(idle.interval.start, -1);
    EXPECT_EQ(idle.interval.stop, -1);
}

// ---- Cutting at drags ----

TEST_F(StrokesTest, Chop_StrokeAcrossADrag_FallsIntoBeforeWithinAndAfter) {
    drag(2.0, 4.0);
    strokeAt({1, 1.5, 2, 3, 4, 5, 6});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 1.5 2", "3 4", "5 6"));
}

TEST_F(StrokesTest, Chop_TwoDrags_GiveUpToFivePieces) {
    drag(2.0, 4.0);
    drag(6.0, 8.0);
    strokeAt({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 2", "3 4", "5 6", "7 8", "9 10"));
}

TEST_F(StrokesTest, Chop_PiecesOfOnePoint_AreDropped) {
    drag(2.0, 4.0);
    strokeAt({1, 3, 3.5, 5});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("3 3.5"));
}

TEST_F(StrokesTest, Chop_AfterAnErasedHead_TheTailInItsPlaceIsCutInItsTurn) {
    drag(2.0, 4.0);
    strokeAt({1, 3, 3.5, 5, 6});
    strokeAt({7, 8});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("3 3.5", "5 6", "7 8"));
}

TEST_F(StrokesTest, Chop_HeadAndTailOfOnePointEach_GoBoth_AndTheWalkGoesOn) {
    drag(2.0, 4.0);
    strokeAt({1, 3});
    strokeAt({3.5, 4.5, 5.5});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("4.5 5.5"));
}

TEST_F(StrokesTest, Chop_PointAtTheCut_StaysBeforeIt) {
    drag(2.0, 50.0);
    strokeAt({1, 2, 2.001, 3});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 2", "2.001 3"));
}

TEST_F(StrokesTest, Chop_StrokeThatBeginsAtACut_LosesItsFirstPoint) {
    drag(2.0, 50.0);
    strokeAt({2, 3, 4});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("3 4"));
}

TEST_F(StrokesTest, Chop_CutsAreUsedInListOrder_AndTheCursorNeverGoesBack) {
    // Cuts 10, 12, 2, 4: the first stroke meets only the cut at 10, the second passes it and meets 12.
    drag(10.0, 12.0);
    drag(2.0, 4.0);
    strokeAt({1, 3, 5});
    strokeAt({10.5, 11, 12, 13, 14});
    strokeAt({1, 3, 5});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 3 5", "10.5 11 12", "13 14", "1 3 5"));
}

TEST_F(StrokesTest, Chop_LaterCutThatLiesEarlier_CutsOnceTheCursorReachesIt) {
    // Cuts 4, 20, 2, 23: a stroke from 21 on passes the first three together.
    drag(4.0, 20.0);
    drag(2.0, 23.0);
    strokeAt({21, 22, 24, 25});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("21 22", "24 25"));
}

TEST_F(StrokesTest, Chop_OnlyDragsOfTheWorkingListCut) {
    object(Click, 2.0, 4.0, {0, 10, 0, 10});
    object(Dead, 2.0, 4.0, {0, 10, 0, 10});
    store.valueObjects.push_back({Drag, 2.0, 4.0, {0, 10, 0, 10}, 0.0});
    strokeAt({1, 3, 5});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 3 5"));
}

TEST_F(StrokesTest, Chop_ErasesStrokesShorterThan4OnBothAxes_EvenWithNoDrag) {
    stroke({{1.0, 0, 0}, {2.0, 3, 3}});
    stroke({{1.0, 0, 0}, {2.0, 4, 0}});
    stroke({{1.0, 0, 0}, {2.0, 0, -4}});
    stroke({{1.0, 0, 0}, {1.5, 100, 100}, {2.0, -3, 3}});
    stroke({{1.0, 0, 0}, {2.0, -4, 3}});
    stroke({{5.0, 0, 0}, {6.0, 3, 4}});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 2", "1 2", "1 2", "5 6"));
    EXPECT_EQ(parser.strokes[0].points[1].x, 4);
    EXPECT_EQ(parser.strokes[1].points[1].y, -4);
    EXPECT_EQ(parser.strokes[2].points[1].x, -4);
}

// The whole stroke is long; of its three pieces the first and last are 3 by 3 and the middle one 4 by 0.
TEST_F(StrokesTest, Chop_PiecesAreMeasuredAfterTheCutting) {
    drag(3.0, 5.0);
    stroke({{1.0, 100, 100}, {2.0, 103, 103}, {3.5, 200, 200}, {4.0, 204, 200}, {6.0, 300, 300}, {7.0, 303, 297}});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("3.5 4"));
}

TEST_F(StrokesTest, Chop_StrokesAtTheEndsOfTheGrid_AreFarApart) {
    stroke({{1.0, std::numeric_limits<std::int32_t>::min(), 0}, {2.0, std::numeric_limits<std::int32_t>::max(), 0}});
    chop();
    EXPECT_THAT(pieces(), ElementsAre("1 2"));
}

TEST_F(StrokesTest, Chop_TailHasItsOwnBoundsAndAnchor_TheHeadKeepsItsOld) {
    drag(2.0, 50.0);
    stroke({{1.0, 10, 90}, {2.0, 20, 80}, {3.0, 60, 30}, {4.0, 40, 70}});
    parser.strokes[0].anchor = 1;
    chop();
    ASSERT_THAT(pieces(), ElementsAre("1 2", "3 4"));
    EXPECT_EQ(parser.strokes[0].bounds, (Rectangle{10, 60, 30, 90}));
    EXPECT_EQ(parser.strokes[0].anchor, 1u);
    EXPECT_EQ(parser.strokes[1].bounds, (Rectangle{40, 60, 30, 70}));
    EXPECT_EQ(parser.strokes[1].anchor, 0u);
}

TEST_F(StrokesTest, Chop_StrokesWithoutPoints_DoNoHarm) {
    drag(2.0, 4.0);
    parser.strokes.emplace_back();
    strokeAt({1, 1.5, 3, 4});
    parser.strokes.emplace_back();
    chop();
    EXPECT_THAT(pieces(), ::testing::IsSupersetOf({"1 1.5", "3 4"}));
}

TEST_F(StrokesTest, Chop_WithAscendingCuts_EveryPieceLiesWhollyInsideOrOutsideEachDrag) {
    for (unsigned int seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto upTo = [&](unsigned int n) { return static_cast<long long>(random() % n); };
        parser = DataParser();
        long long time = 0;
        std::vector<long long> cuts;
        for (long long i = 0, drags = upTo(5); i < drags; ++i) {
            const long long start = time + upTo(20);
            time = start + upTo(20);
            drag(DataParser::convertTime(start), DataParser::convertTime(time));
            cuts.push_back(start);
            cuts.push_back(time);
        }
        time = 0;
        std::size_t points = 0;
        for (long long i = 0, count = 1 + upTo(6); i < count; ++i) {
            MOUSE_STROKE made;
            for (long long k = 0, length = 2 + upTo(9); k < length; ++k) {
                time += upTo(6);
                made.points.push_back({time, static_cast<std::int32_t>(10 * time), static_cast<std::int32_t>(10 * k)});
            }
            points += made.points.size();
            parser.strokes.push_back(made);
        }
        chop();
        std::size_t left = 0;
        long long before = -1;
        for (const MOUSE_STROKE& s : parser.strokes) {
            ASSERT_GE(s.points.size(), 2u);
            left += s.points.size();
            for (const OV_MOUSE_LOCATION& p : s.points) {
                ASSERT_GE(p.time, before);
                before = p.time;
            }
            for (const long long cut : cuts) {
                ASSERT_FALSE(s.points.front().time <= cut && cut < s.points.back().time) << "cut at " << cut;
            }
        }
        ASSERT_LE(left, points);
    }
}

// ---- The object of a stroke ----

TEST_F(StrokesTest, StrokeToRect_SpansFirstAndLastPoint_NotTheBounds) {
    MOUSE_STROKE s = strokeOver({{1.0, 50, 20}, {1.5, 500, 900}, {2.0, 10, 80}});
    EXPECT_EQ(parser.convertStrokeToRect(s), (Rectangle{10, 50, 20, 80}));
    MOUSE_STROKE t = strokeOver({{1.0, 10, 80}, {2.0, 50, 20}});
    EXPECT_EQ(parser.convertStrokeToRect(t), (Rectangle{10, 50, 20, 80}));
}

TEST_F(StrokesTest, WindowAtTime_IsTheFirstInTheListThatIsInForce_EndsIncluded) {
    object(ForeAnimate, 0.0, 9.0, {9, 90, 9, 90});
    object(ActiveWindow, 4.0, 6.0, {1, 10, 1, 10});
    object(ActiveWindow, 2.0, 4.0, {2, 20, 2, 20});
    object(Dead, 0.0, 9.0, {9, 90, 9, 90});
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(1999), Rectangle{});
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(2000), (Rectangle{2, 20, 2, 20}));
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(3999), (Rectangle{2, 20, 2, 20}));
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(4000), (Rectangle{1, 10, 1, 10}));
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(6000), (Rectangle{1, 10, 1, 10}));
    EXPECT_EQ(parser.getPrimitiveWindowAtTime(6001), Rectangle{});
}

TEST_F(StrokesTest, Type_FollowsTheWindowsAtBothEnds) {
    constexpr Rectangle kA{100, 500, 100, 400};
    constexpr Rectangle kB{600, 900, 100, 400};
    constexpr Rectangle kInverted{500, 100, 100, 400};
    struct Point {
        std::int32_t x;
        std::int32_t y;
    };
    constexpr Point kInA{300, 200};
    constexpr Point kInB{700, 210};
    constexpr Point kOut{550, 500};
    struct Case {
        const char* name;
        Rectangle a;
        Rectangle b;
        Point from;
        Point to;
        const char* type;
    };
    for (const Case& c : {
             Case{"no window", {}, {}, kInA, kOut, "Move"},
             Case{"both empty, not equal", {}, kInverted, kInA, kOut, "Move"},
             Case{"one window, within", kA, kA, kInA, {320, 210}, "Move"},
             Case{"one window, outward", kA, kA, kInA, kOut, "MoveOutOfWindow"},
             Case{"one window, inward", kA, kA, kOut, kInA, "MoveIntoWindow"},
             Case{"one window, outside", kA, kA, kOut, {580, 520}, "Move"},
             Case{"two windows, in to in", kA, kB, kInA, kInB, "MoveOutOfWindow"},
             Case{"two windows, in to out", kA, kB, kInA, kOut, "MoveOutOfWindow"},
             Case{"two windows, out to in", kA, kB, kOut, kInB, "MoveIntoWindow"},
             Case{"two windows, out to the first", kA, kB, kOut, kInA, "Move"},
             Case{"two windows, out to out", kA, kB, kOut, {580, 520}, "Move"},
             Case{"window comes, its place entered", {}, kB, kOut, kInB, "MoveIntoWindow"},
             Case{"window comes, not entered", {}, kB, kInB, kOut, "Move"},
             Case{"window goes, from within", kA, {}, kInA, kOut, "MoveOutOfWindow"},
             Case{"window goes, from outside", kA, {}, kOut, kInA, "Move"},
             Case{"left and top are inside", kA, kA, {100, 100}, kOut, "MoveOutOfWindow"},
             Case{"right is outside", kA, kA, {500, 250}, kInA, "MoveIntoWindow"},
             Case{"bottom is outside", kA, kA, {200, 400}, kInA, "MoveIntoWindow"},
             Case{"last column and row are inside", kA, kA, {499, 399}, kOut, "MoveOutOfWindow"},
         }) {
        parser = DataParser();
        if (c.a != Rectangle{}) {
            object(ActiveWindow, 0.0, 1.5, c.a);
        }
        if (c.b != Rectangle{}) {
            object(ActiveWindow, 1.5, 3.0, c.b);
        }
        stroke({{1.0, c.from.x, c.from.y}, {2.0, c.to.x, c.to.y}});
        process();
        ASSERT_FALSE(parser.objects.empty());
        EXPECT_EQ(objectTypeName(parser.objects.back().type), c.type) << c.name;
    }
}

TEST_F(StrokesTest, PointsOnScreen_AreComparedWithZoneRelativeWindowsAsTheyStand) {
    zone({100, 1000, 100, 700});
    object(ActiveWindow, 0.0, 9.0, {0, 300, 0, 300}); // (100,400,100,400) on the screen.
    stroke({{1.0, 350, 350}, {2.0, 250, 250}});
    process();
    EXPECT_EQ(objects().back(), "MoveIntoWindow 1..2 (150,250,150,250)");
}

TEST_F(StrokesTest, Object_IsTheBoxOfBothEnds_CutToTheZoneInWork) {
    store.liveZones.push_back({{100, 300, 50, 300}, 0.0, 60.0});
    store.currentZone = 1;
    stroke({{1.0, 400, 250}, {1.5, 500, 900}, {2.0, 200, 20}});
    process();
    EXPECT_THAT(objects(), ElementsAre("Move 1..2 (100,200,0,200)"));
    EXPECT_EQ(parser.keptStrokes.size(), 1u);
}

TEST_F(StrokesTest, VerticalStroke_MakesNoObject_YetIsSearchedForHoversAndKept) {
    changingArea(1.0, 3.0, {90, 110, 200, 300});
    stroke({{1.0, 100, 100}, {2.0, 100, 250}});
    process();
    EXPECT_THAT(objects(), ElementsAre("Hover 2..2 (90,110,200,300)"));
    ASSERT_EQ(parser.keptStrokes.size(), 1u);
    EXPECT_EQ(parser.keptStrokes[0].points[1].y, 250);
}

TEST_F(StrokesTest, StrokeComesBeforeItsHovers_AndTheNextStrokeAfterThem) {
    changingArea(1.0, 9.0, {100, 300, 100, 300});
    stroke({{1.0, 150, 150}, {2.0, 250, 250}});
    stroke({{3.0, 250, 250}, {4.0, 150, 160}});
    process();
    EXPECT_THAT(objects(), ElementsAre("Move 1..2 (150,250,150,250)", "Hover 1..2 (100,300,100,300)",
                                       "Move 3..4 (150,250,160,250)", "Hover 3..4 (100,300,100,300)"));
    EXPECT_EQ(parser.keptStrokes.size(), 2u);
    EXPECT_EQ(parser.strokes.size(), 2u); // The pass empties them, not this step.
}

TEST_F(StrokesTest, Flick_IsAMoveUnderAQuarterSecondAndOver320Pixels) {
    struct Case {
        double duration;
        std::int32_t dx;
        std::int32_t dy;
        bool kept;
    };
    for (const Case& c : {Case{0.249, 321, 10, false}, Case{0.25, 321, 10, true}, Case{0.249, 320, 10, true},
                          Case{0.249, -321, 10, false}, Case{0.249, -320, 10, true}, Case{0.249, 10, 321, false},
                          Case{0.249, 10, 320, true}, Case{0.249, 10, -321, false}, Case{0.25, 10, 321, true},
                          Case{0.249, 321, 321, false}, Case{0.2, 500, 0, false}}) {
        parser = DataParser();
        changingArea(0.5, 9.0, {300, 500, 300, 500});
        stroke({{1.0, 400, 400}, {1.0 + c.duration, 400 + c.dx, 400 + c.dy}});
        process();
        EXPECT_EQ(parser.keptStrokes.size(), c.kept ? 1u : 0u) << c.duration << ' ' << c.dx << ' ' << c.dy;
        // One Move and one Hover, or nothing at all.
        EXPECT_EQ(parser.objects.size(), c.kept ? 2u : 0u) << c.duration << ' ' << c.dx << ' ' << c.dy;
    }
}

TEST_F(StrokesTest, FlickInsideAWindowIsDropped_OutOfItOrIntoItIsKept) {
    object(ActiveWindow, 0.0, 9.0, {100, 700, 100, 700});
    stroke({{1.0, 150, 200}, {1.2, 650, 210}});
    stroke({{2.0, 150, 200}, {2.2, 750, 210}});
    stroke({{3.0, 750, 200}, {3.2, 150, 210}});
    process();
    EXPECT_THAT(objects(),
                ElementsAre("ActiveWindow 0..9 (100,700,100,700)", "MoveOutOfWindow 2..2.2 (150,750,200,210)",
                            "MoveIntoWindow 3..3.2 (150,750,200,210)"));
    EXPECT_EQ(parser.keptStrokes.size(), 2u);
}

TEST_F(StrokesTest, FlickAcrossTheWholeGrid_DoesNotOverflow) {
    stroke({{1.0, std::numeric_limits<std::int32_t>::min(), 0}, {1.1, std::numeric_limits<std::int32_t>::max(), 9}});
    process();
    // The width wraps to -1, which is not over 320: the stroke is kept, and cut to the zone.
    EXPECT_THAT(objects(), ElementsAre("Move 1..1.1 (0,1280,0,9)"));
}

TEST_F(StrokesTest, StrokesAreChoppedFirst) {
    drag(2.0, 4.0);
    strokeAt({1, 2, 3, 4, 5, 6});
    for (MOUSE_STROKE& s : parser.strokes) {
        for (OV_MOUSE_LOCATION& p : s.points) {
            p.y = p.x + 100;
        }
    }
    process();
    EXPECT_THAT(objects(), ElementsAre("Drag 2..4 (0,10,0,10)", "Move 1..2 (10,20,110,120)",
                                       "Move 3..4 (30,40,130,140)", "Move 5..6 (50,60,150,160)"));
    EXPECT_EQ(parser.keptStrokes.size(), 3u);
}

// A day has hundreds of thousands of points on the way, and nobody asks for them again.
TEST_F(StrokesTest, KeptStroke_HasItsEndsAlone) {
    stroke({{1.0, 10, 100}, {1.5, 30, 120}, {2.0, 40, 160}, {2.5, 90, 200}});
    process();
    ASSERT_EQ(parser.keptStrokes.size(), 1u);
    const MOUSE_STROKE& kept = parser.keptStrokes[0];
    ASSERT_EQ(kept.points.size(), 2u);
    EXPECT_EQ(kept.points[0].time, parser.strokes[0].points[0].time);
    EXPECT_EQ(kept.points[0].x, 10);
    EXPECT_EQ(kept.points[1].time, parser.strokes[0].points[3].time);
    EXPECT_EQ(kept.points[1].x, 90);
    EXPECT_EQ(kept.bounds, parser.strokes[0].bounds);
}

TEST_F(StrokesTest, StrokesWithoutPoints_MakeNothingAndAreNotKept) {
    parser.strokes.emplace_back();
    stroke({{1.0, 10, 100}, {2.0, 50, 200}});
    parser.strokes.emplace_back();
    process();
    EXPECT_THAT(objects(), ElementsAre("Move 1..2 (10,50,100,200)"));
    EXPECT_EQ(parser.keptStrokes.size(), 1u);
}

TEST_F(StrokesTest, NoStrokes_NoObjects) {
    drag(2.0, 4.0);
    process();
    EXPECT_EQ(parser.objects.size(), 1u);
    EXPECT_THAT(parser.keptStrokes, IsEmpty());
}

} // namespace
} // namespace OrvantaNS
