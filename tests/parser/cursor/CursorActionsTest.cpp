#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"
#include "ParserWorld.h"
#include "frame/Geometry.h"
#include "parser/walk/StreamIndex.h"

namespace OrvantaNS {
namespace {

using ::testing::IsEmpty;
using testing::ParserWorld;

/// The rule of the rectangle between two actions, sample by sample. The yardstick of every faster way.
Rectangle plainClickRect(const Params& params, unsigned int down, unsigned int up, unsigned int& location) {
    const auto& locations = params.cursorLocations();
    if (location >= locations.size()) {
        return {};
    }
    const long long tDown = params.cursorActions()[down].time;
    const long long tUp = params.cursorActions()[up].time;
    OV_MOUSE_LOCATION press;
    OV_MOUSE_LOCATION release;
    bool metDown = false;
    for (std::size_t i = location; i < locations.size(); ++i) {
        const long long t = locations[i].time;
        if (t == tDown || (t < tDown && !metDown)) {
            press = locations[i];
        }
        metDown = metDown || t >= tDown;
        if (t > tUp) {
            break;
        }
        release = locations[i];
        location = static_cast<unsigned int>(i);
    }
    return {std::min(press.x, release.x), std::max(press.x, release.x), std::min(press.y, release.y),
            std::max(press.y, release.y)};
}

void expectObject(const OV_VALUE_OBJECT& object, OV_OBJECT_TYPE type, double start, double stop, Rectangle rect) {
    EXPECT_EQ(object.type, static_cast<std::uint32_t>(type));
    EXPECT_EQ(object.start, start);
    EXPECT_EQ(object.stop, stop);
    EXPECT_EQ(object.rect, rect);
    EXPECT_EQ(object.value, 0.0);
}

// ---- getClickRect ----

TEST(CursorActionsTest, GetClickRect_PressAndRelease_TakeTheLastSampleAtOrBefore) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(4.0, 1);
    world.scene.cursor(1.0, 10, 90).cursor(1.9, 20, 80).cursor(3.0, 5, 5).cursor(3.9, 70, 40).cursor(4.1, 99, 99);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{20, 70, 40, 80}));
    EXPECT_EQ(location, 3u);
}

TEST(CursorActionsTest, GetClickRect_SamplesAtTheVeryMoments_AreTaken) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(4.0, 1);
    world.scene.cursor(1.0, 1, 1).cursor(2.0, 20, 20).cursor(4.0, 40, 40).cursor(5.0, 50, 50);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{20, 40, 20, 40}));
    EXPECT_EQ(location, 2u);
}

TEST(CursorActionsTest, GetClickRect_ManySamplesAtThePress_LastOneCounts) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(2.0, 1);
    world.scene.cursor(1.0, 1, 1).cursor(2.0, 20, 20).cursor(2.0, 30, 30).cursor(2.0, 25, 35).cursor(2.1, 99, 99);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{25, 25, 35, 35}));
    EXPECT_EQ(location, 3u);
}

TEST(CursorActionsTest, GetClickRect_FirstSampleAfterThePress_LeavesThePressAtTheOrigin) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(4.0, 1);
    world.scene.cursor(3.0, 30, 40).cursor(3.5, 50, 20);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{0, 50, 0, 20}));
    EXPECT_EQ(location, 1u);
}

TEST(CursorActionsTest, GetClickRect_FirstSampleAfterTheRelease_IsAllZeroAndStays) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(4.0, 1);
    world.scene.cursor(5.0, 30, 40);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), Rectangle{});
    EXPECT_EQ(location, 0u);
}

TEST(CursorActionsTest, GetClickRect_SearchStartsAtTheLocation) {
    ParserWorld world;
    world.scene.action(2.0, 0).action(4.0, 1);
    world.scene.cursor(1.0, 10, 10).cursor(1.5, 15, 15).cursor(3.0, 30, 30).cursor(3.5, 35, 35);
    unsigned int location = 2; // behind the press: its point stays at the origin
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{0, 35, 0, 35}));
    EXPECT_EQ(location, 3u);
}

TEST(CursorActionsTest, GetClickRect_LocationAtOrPastTheEnd_IsAllZero) {
    ParserWorld world;
    world.scene.action(2.0, 0).cursor(1.0, 10, 10);
    for (const unsigned int end : {1u, 2u, 4000000000u}) {
        unsigned int location = end;
        EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 0, location), Rectangle{});
        EXPECT_EQ(location, end);
    }
}

TEST(CursorActionsTest, GetClickRect_ReleaseBeforeThePress_LetsTheSampleThatEndsTheWalkBeThePress) {
    ParserWorld world;
    world.scene.action(5.0, 0).action(3.0, 1);
    world.scene.cursor(2.0, 20, 20).cursor(4.0, 40, 40).cursor(4.5, 45, 45);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{20, 40, 20, 40}));
    EXPECT_EQ(location, 0u);
}

TEST(CursorActionsTest, GetClickRect_UnsortedSamples_EarlierOnesBehindThePressDoNotCount) {
    ParserWorld world;
    world.scene.action(5.0, 0).action(9.0, 1);
    world.scene.cursor(2.0, 20, 20).cursor(6.0, 60, 60).cursor(3.0, 30, 30);
    unsigned int location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{20, 30, 20, 30}));
    EXPECT_EQ(location, 2u);
    world.scene.cursor(5.0, 50, 55); // the very moment counts even then
    location = 0;
    EXPECT_EQ(world.parser.getClickRect(world.scene, 0, 1, location), (Rectangle{50, 50, 55, 55}));
}

/// `count` samples and actions on a clock of few ticks, so that most times are equal to others.
void fillCrowdedTimes(Params& params, std::mt19937_64& random, bool sorted) {
    const std::uint64_t ticks = 1 + random() % 20;
    for (std::uint64_t n = random() % 40; n > 0; --n) {
        params.cursorLocations().push_back({static_cast<long long>(random() % ticks),
                                            static_cast<std::int32_t>(random() % 50),
                                            static_cast<std::int32_t>(random() % 50)});
    }
    for (std::uint64_t n = 1 + random() % 20; n > 0; --n) {
        params.cursorActions().push_back(
            {static_cast<long long>(random() % ticks), static_cast<std::int32_t>(random() % 8)});
    }
    if (sorted) {
        const auto byTime = [](const auto& a, const auto& b) { return a.time < b.time; };
        std::stable_sort(params.cursorLocations().begin(), params.cursorLocations().end(), byTime);
        std::stable_sort(params.cursorActions().begin(), params.cursorActions().end(), byTime);
    }
}

TEST(CursorActionsTest, GetClickRect_AnyStreams_AgreesWithTheWalkSampleBySample) {
    for (std::uint64_t seed = 1; seed <= 600; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        ParserWorld world;
        Params& params = world.scene.params();
        fillCrowdedTimes(params, random, seed % 3 != 0);
        const auto actions = static_cast<unsigned int>(params.cursorActions().size());
        for (unsigned int down = 0; down < actions; ++down) {
            for (unsigned int up = 0; up < actions; ++up) { // a release before the press included
                const auto from = static_cast<unsigned int>(random() % (params.cursorLocations().size() + 2));
                unsigned int location = from;
                unsigned int plainLocation = from;
                ASSERT_EQ(world.parser.getClickRect(params, down, up, location),
                          plainClickRect(params, down, up, plainLocation));
                ASSERT_EQ(location, plainLocation);
            }
        }
    }
}

// ---- processCursorAction: what is stepped over ----

TEST(CursorActionsTest, ProcessCursorAction_CodesWithNoGesture_AreSteppedOver) {
    for (const std::int32_t code : {1, 3, 5, 8, 9, 2147483647, -1, -2, -2147483647 - 1}) {
        SCOPED_TRACE(code);
        ParserWorld world;
        world.scene.action(1.0, code).action(1.1, code + (code == 2147483647 ? 0 : 1)).cursor(0.5, 10, 10);
        world.processCursorAction();
        EXPECT_EQ(world.parser.nextAction, 1u);
        EXPECT_THAT(world.parser.objects, IsEmpty());
    }
}

// ---- processCursorAction: clicks and drags ----

TEST(CursorActionsTest, ProcessCursorAction_EachButton_MakesAClick) {
    for (const std::int32_t code : {0, 2, 4}) {
        SCOPED_TRACE(code);
        ParserWorld world;
        world.scene.action(1.0, code).action(1.25, code + 1).cursor(0.5, 10, 20);
        world.processCursorAction();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        expectObject(world.parser.objects[0], Click, 1.0, 1.25, {10, 11, 20, 21});
        EXPECT_EQ(world.parser.nextAction, 1u); // the release stays in the stream
    }
}

TEST(CursorActionsTest, ProcessCursorAction_PressWithoutRelease_IsAClickOfNoLength) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.2, 0).action(1.3, 3).cursor(0.5, 10, 20);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Click, 1.0, 1.0, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(CursorActionsTest, ProcessCursorAction_PressAsTheLastAction_IsAClickOfNoLength) {
    ParserWorld world;
    world.scene.action(1.0, 4).cursor(0.5, 10, 20).cursor(9.0, 300, 300);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Click, 1.0, 1.0, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(CursorActionsTest, ProcessCursorAction_OtherButtonsInBetween_ChangeNothing) {
    ParserWorld world;
    world.scene.action(1.0, 2).action(1.1, 0).action(1.2, 1).action(1.3, 3).cursor(0.5, 10, 20);
    world.processCursorAction();
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 2u);
    expectObject(world.parser.objects[0], Click, 1.0, 1.3, {10, 11, 20, 21});
    expectObject(world.parser.objects[1], Click, 1.1, 1.2, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 2u);
}

struct SweepCase {
    std::int32_t dx;
    std::int32_t dy;
    OV_OBJECT_TYPE type;
    Rectangle rect;
};

TEST(CursorActionsTest, ProcessCursorAction_Sweep_IsADragFromSeventeenPixelsOn) {
    for (const SweepCase& c :
         {SweepCase{4, 4, Click, {100, 104, 100, 104}}, SweepCase{5, 4, Drag, {100, 105, 100, 104}},
          SweepCase{-4, -4, Click, {96, 100, 96, 100}}, SweepCase{15, 0, Click, {100, 116, 100, 101}},
          SweepCase{16, 0, Drag, {100, 117, 100, 101}}, SweepCase{0, 15, Click, {100, 101, 100, 116}},
          SweepCase{0, -16, Drag, {100, 101, 84, 101}}, SweepCase{20, 0, Drag, {100, 121, 100, 101}},
          SweepCase{16, 1, Click, {100, 116, 100, 101}}, SweepCase{17, 1, Drag, {100, 117, 100, 101}}}) {
        SCOPED_TRACE(::testing::Message() << c.dx << ", " << c.dy);
        ParserWorld world;
        world.scene.action(1.0, 0).action(2.0, 1);
        world.scene.cursor(0.5, 100, 100).cursor(1.5, 100 + c.dx, 100 + c.dy);
        world.processCursorAction();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        expectObject(world.parser.objects[0], c.type, 1.0, 2.0, c.rect);
        EXPECT_EQ(world.parser.nextAction, 1u);
    }
}

TEST(CursorActionsTest, ProcessCursorAction_RectangleIsClippedToTheZoneBehindTheDragTest) {
    ParserWorld world({104, 300, 100, 300});
    world.scene.action(1.0, 0).action(2.0, 1).cursor(0.5, 100, 100).cursor(1.5, 105, 104);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Drag, 1.0, 2.0, {0, 1, 0, 4}); // 1 by 4 remain of 5 by 4
}

TEST(CursorActionsTest, ProcessCursorAction_ClippedToNothing_StillMovesOn) {
    ParserWorld world({500, 600, 500, 600});
    world.scene.click(1.0).cursor(0.5, 100, 100);
    world.processCursorAction();
    EXPECT_EQ(world.parser.nextAction, 1u);
    EXPECT_THAT(world.parser.objects, IsEmpty());

    ParserWorld drag({500, 600, 500, 600});
    drag.scene.action(1.0, 0).action(2.0, 1).cursor(0.5, 100, 100).cursor(1.5, 200, 200);
    drag.processCursorAction();
    EXPECT_EQ(drag.parser.nextAction, 1u);
    EXPECT_THAT(drag.parser.objects, IsEmpty());
}

TEST(CursorActionsTest, ProcessCursorAction_SkipLocation_IsWhereTheSearchStartsAndStays) {
    ParserWorld world;
    world.scene.click(2.0).cursor(1.0, 10, 10).cursor(1.5, 20, 20).cursor(1.8, 30, 30);
    world.parser.skipLocation = 1;
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].rect, (Rectangle{30, 31, 30, 31}));
    EXPECT_EQ(world.parser.skipLocation, 1u);
    EXPECT_EQ(world.store.scrollLocation, 0u);
}

TEST(CursorActionsTest, ProcessCursorAction_NoLocations_IsAClickAtTheOrigin) {
    ParserWorld world;
    world.scene.click(2.0);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].rect, (Rectangle{0, 1, 0, 1}));
}

TEST(CursorActionsTest, ProcessCursorAction_SidesWhoseProductWraps_AreMeasuredIn32Bits) {
    // 65536 by 65536 is nothing in 32 bits: one pixel is added on each side, and 65537 by 65537 leaves 131073.
    ParserWorld world({0, 100, 0, 100});
    world.scene.action(1.0, 0).action(2.0, 1).cursor(0.5, 0, 0).cursor(1.5, 65536, 65536);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Drag, 1.0, 2.0, {0, 100, 0, 100});
}

// ---- processCursorAction: double clicks ----

/// Two clicks at 1.0 and 1.2 whose second release comes at `release`, with the cursor moved by (dx, dy) in between.
void twoClicks(ParserWorld& world, double release, std::int32_t dx, std::int32_t dy) {
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 0).action(release, 1);
    world.scene.cursor(0.5, 10, 10).cursor(1.15, 10 + dx, 10 + dy);
}

TEST(CursorActionsTest, ProcessCursorAction_TwoClicksAtOnePlace_AreADoubleClick) {
    ParserWorld world;
    twoClicks(world, 1.3, 0, 0);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], DoubleClick, 1.0, 1.3, {10, 11, 10, 11});
    EXPECT_EQ(world.parser.nextAction, 4u);
}

TEST(CursorActionsTest, ProcessCursorAction_SecondReleaseHalfASecondBehindTheFirstPress_IsStillADoubleClick) {
    for (const bool late : {false, true}) {
        SCOPED_TRACE(late);
        ParserWorld world;
        twoClicks(world, late ? 1.501 : 1.5, 0, 0);
        world.processCursorAction();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        expectObject(world.parser.objects[0], late ? Click : DoubleClick, 1.0, late ? 1.1 : 1.5, {10, 11, 10, 11});
        EXPECT_EQ(world.parser.nextAction, late ? 1u : 4u);
    }
}

TEST(CursorActionsTest, ProcessCursorAction_TwoClicksFourPixelsApart_AreNoDoubleClick) {
    for (const auto& [dx, dy] : {std::pair{4, 0}, {0, 4}, {-4, 0}, {0, -4}}) {
        ParserWorld world;
        twoClicks(world, 1.3, dx, dy);
        world.processCursorAction();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        expectObject(world.parser.objects[0], Click, 1.0, 1.1, {10, 11, 10, 11});
        EXPECT_EQ(world.parser.nextAction, 1u);
    }
}

TEST(CursorActionsTest, ProcessCursorAction_TwoClicksThreePixelsApart_AreADoubleClickOverTheirUnion) {
    ParserWorld right;
    twoClicks(right, 1.3, 3, 0);
    right.processCursorAction();
    ASSERT_EQ(right.parser.objects.size(), 1u);
    expectObject(right.parser.objects[0], DoubleClick, 1.0, 1.3, {10, 14, 10, 11});
    ParserWorld up;
    twoClicks(up, 1.3, 0, -3);
    up.processCursorAction();
    ASSERT_EQ(up.parser.objects.size(), 1u);
    expectObject(up.parser.objects[0], DoubleClick, 1.0, 1.3, {10, 11, 7, 11});
}

TEST(CursorActionsTest, ProcessCursorAction_SecondClickThatIsASweep_IsNotGrown) {
    // 3 by 3 is not empty, so nothing is added to it: the union with the first click's pixel is 4 by 4.
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 0).action(1.3, 1);
    world.scene.cursor(0.5, 10, 10).cursor(1.15, 11, 11).cursor(1.25, 14, 14);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], DoubleClick, 1.0, 1.3, {10, 14, 10, 14});
}

TEST(CursorActionsTest, ProcessCursorAction_ThreeFastClicks_AreADoubleClickAndAClick) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.05, 1).action(1.1, 0).action(1.15, 1).action(1.2, 0).action(1.25, 1);
    world.scene.cursor(0.5, 10, 10);
    while (world.parser.nextAction < 6) {
        world.processCursorAction();
    }
    ASSERT_EQ(world.parser.objects.size(), 2u);
    expectObject(world.parser.objects[0], DoubleClick, 1.0, 1.15, {10, 11, 10, 11});
    expectObject(world.parser.objects[1], Click, 1.2, 1.25, {10, 11, 10, 11});
}

TEST(CursorActionsTest, ProcessCursorAction_SeveralPressesBeforeTheSecondRelease_LastOneCounts) {
    // The cursor is far away at the press of 1.15 and near again at that of 1.25.
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.15, 0).action(1.25, 0).action(1.3, 1);
    world.scene.cursor(0.5, 10, 10).cursor(1.12, 200, 10).cursor(1.2, 12, 10);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], DoubleClick, 1.0, 1.3, {10, 13, 10, 11});
    EXPECT_EQ(world.parser.nextAction, 5u);
}

TEST(CursorActionsTest, ProcessCursorAction_SecondReleaseWithNoPress_IsNoDoubleClick) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 1).action(1.3, 0).action(1.35, 1).cursor(0.5, 10, 10);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Click, 1.0, 1.1, {10, 11, 10, 11});
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(CursorActionsTest, ProcessCursorAction_SecondPressWithNoRelease_IsNoDoubleClick) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 0).cursor(0.5, 10, 10);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(Click));
}

TEST(CursorActionsTest, ProcessCursorAction_SecondClickOfAnotherButton_IsNoDoubleClick) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 2).action(1.3, 3).cursor(0.5, 10, 10);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(Click));
}

TEST(CursorActionsTest, ProcessCursorAction_PressBetweenThePairOfAnotherClick_IsFoundBehindItsRelease) {
    // The press at 1.05 lies before the first release: only presses behind it count for the second click.
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.05, 0).action(1.1, 1).action(1.2, 1).cursor(0.5, 10, 10);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Click, 1.0, 1.1, {10, 11, 10, 11});
}

TEST(CursorActionsTest, ProcessCursorAction_DoubleClickClippedToNothing_StillJumpsBothClicks) {
    ParserWorld world({500, 600, 500, 600});
    twoClicks(world, 1.3, 0, 0);
    world.processCursorAction();
    EXPECT_EQ(world.parser.nextAction, 4u);
    EXPECT_THAT(world.parser.objects, IsEmpty());
}

TEST(CursorActionsTest, ProcessCursorAction_DragBeforeAClick_IsNotPairedWithIt) {
    ParserWorld world;
    world.scene.action(1.0, 0).action(1.1, 1).action(1.2, 0).action(1.3, 1);
    world.scene.cursor(0.5, 10, 10).cursor(1.05, 15, 14);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Drag, 1.0, 1.1, {10, 15, 10, 14});
    EXPECT_EQ(world.parser.nextAction, 1u);
}

// ---- detectScroll ----

TEST(CursorActionsTest, DetectScroll_OneStep_HasNoLength) {
    ParserWorld world;
    world.scene.action(1.0, 6).cursor(0.5, 10, 20);
    world.detectScroll();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Scroll, 1.0, 1.0, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(CursorActionsTest, DetectScroll_GapOfOneSecond_GoesOn_OneTickMoreEnds) {
    ParserWorld world;
    world.scene.action(1.0, 6).action(2.0, 7).action(3.0, 6).action(4.001, 7).action(4.1, 6).cursor(0.5, 10, 20);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    expectObject(world.parser.objects[0], Scroll, 1.0, 3.0, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 3u);
    world.processCursorAction();
    ASSERT_EQ(world.parser.objects.size(), 2u);
    expectObject(world.parser.objects[1], Scroll, 4.001, 4.1, {10, 11, 20, 21});
    EXPECT_EQ(world.parser.nextAction, 5u);
}

TEST(CursorActionsTest, DetectScroll_AnyOtherCode_EndsTheRun) {
    for (const std::int32_t code : {0, 1, 5, 8, -1, 2147483647}) {
        SCOPED_TRACE(code);
        ParserWorld world;
        world.scene.action(1.0, 7).action(1.1, 6).action(1.2, code).action(1.3, 6).cursor(0.5, 10, 20);
        world.detectScroll();
        ASSERT_EQ(world.parser.objects.size(), 1u);
        EXPECT_EQ(world.parser.objects[0].stop, 1.1);
        EXPECT_EQ(world.parser.nextAction, 2u);
    }
}

TEST(CursorActionsTest, DetectScroll_Rectangle_SpansTheCursorAndItsSearchGoesOnFromThere) {
    ParserWorld world;
    world.scene.action(1.0, 6).action(1.5, 6).action(9.0, 6);
    world.scene.cursor(0.5, 10, 20).cursor(1.2, 40, 60).cursor(8.0, 90, 90).cursor(9.5, 100, 100);
    world.detectScroll();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].rect, (Rectangle{10, 40, 20, 60}));
    EXPECT_EQ(world.store.scrollLocation, 1u);
    world.detectScroll();
    ASSERT_EQ(world.parser.objects.size(), 2u);
    EXPECT_EQ(world.parser.objects[1].rect, (Rectangle{90, 91, 90, 91}));
    EXPECT_EQ(world.store.scrollLocation, 2u);
    EXPECT_EQ(world.parser.skipLocation, 0u);
}

TEST(CursorActionsTest, DetectScroll_SearchBehindTheEnd_IsAtTheOrigin) {
    ParserWorld world;
    world.scene.action(1.0, 6).cursor(0.5, 10, 20);
    world.store.scrollLocation = 1;
    world.detectScroll();
    ASSERT_EQ(world.parser.objects.size(), 1u);
    EXPECT_EQ(world.parser.objects[0].rect, (Rectangle{0, 1, 0, 1}));
}

TEST(CursorActionsTest, DetectScroll_ClippedToNothing_StillMovesOn) {
    ParserWorld world({500, 600, 500, 600});
    world.scene.action(1.0, 6).action(1.1, 6).cursor(0.5, 10, 20);
    world.detectScroll();
    EXPECT_EQ(world.parser.nextAction, 2u);
    EXPECT_THAT(world.parser.objects, IsEmpty());
}

TEST(CursorActionsTest, DetectScroll_GapThatWraps_IsANegativeGapAndGoesOn) {
    ParserWorld world;
    world.scene.params().cursorActions() = {{std::numeric_limits<long long>::lowest(), 6},
                                            {std::numeric_limits<long long>::max(), 6}};
    world.detectScroll();
    EXPECT_EQ(world.parser.nextAction, 2u); // the difference wraps to -1
}

// ---- Called by themselves, operations work from what they are given ----

TEST(CursorActionsTest, ActionsChangedInPlace_AreReadAnew) {
    ParserWorld world;
    world.scene.cursor(0.5, 10, 20).action(1.0, 0).action(1.2, 1).action(1.4, 3);
    world.processCursorAction();
    EXPECT_EQ(world.parser.objects.back().stop, 1.2);
    std::swap(world.scene.params().cursorActions()[1].action, world.scene.params().cursorActions()[2].action);
    world.parser.nextAction = 0;
    world.processCursorAction();
    EXPECT_EQ(world.parser.objects.back().stop, 1.4);
}

TEST(CursorActionsTest, SamplesPutOutOfOrderInPlace_AreReadAnew) {
    ParserWorld world;
    world.scene.action(2.0, 6).cursor(0.5, 10, 20).cursor(1.0, 30, 40).cursor(1.5, 50, 60);
    world.detectScroll();
    EXPECT_EQ(world.parser.objects.back().rect, (Rectangle{50, 51, 60, 61}));
    // The sample in between now lies behind the action: the search ends there, and halving would pass over it.
    world.scene.params().cursorLocations()[1].time = 9000;
    world.store.scrollLocation = 0;
    world.parser.nextAction = 0;
    world.detectScroll();
    EXPECT_EQ(world.parser.objects.back().rect, (Rectangle{10, 11, 20, 21}));
}

TEST(CursorActionsTest, Walk_WithAnIndexOfTheRequestOrOfAnother_GivesTheSame) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit + 1)); };
    for (int round = 0; round < 60; ++round) {
        ParserWorld with;
        for (int i = 0; i < 150; ++i) {
            const double time = 0.02 * i * (round % 3 == 0 && upTo(20) == 0 ? 0.5 : 1.0);
            with.scene.cursor(time, upTo(8), upTo(8));
            if (upTo(2) == 0) {
                with.scene.action(time, upTo(8) - 1);
            }
        }
        ParserWorld without;
        without.scene = with.scene;
        with.parser.processLiveZone(0, with.scene, with.store, StreamIndex(with.scene));
        without.parser.processLiveZone(0, without.scene, without.store, StreamIndex(Params()));
        ASSERT_EQ(testing::texts(with.store.valueObjects), testing::texts(without.store.valueObjects));
        ASSERT_EQ(testing::texts(with.parser.objects), testing::texts(without.parser.objects));
    }
}

} // namespace
} // namespace OrvantaNS
