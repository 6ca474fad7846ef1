#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rectangle kWindow{100, 900, 100, 700};
constexpr Rectangle kOther{0, 1280, 0, 800};
constexpr Rectangle kSpot{200, 300, 200, 300};
constexpr Rectangle kInside{150, 151, 150, 151};
constexpr Rectangle kOutside{950, 951, 150, 151};

class IdleRulesTest : public testing::ParserTest {
protected:
    void outOfWindow(unsigned int index) { parser.metaOutOfWindowIdle(0, scene, store, index); }
    void inWindow(unsigned int index) { parser.metaInWindowIdle(0, scene, store, index); }
    void outOfRegion(unsigned int index) { parser.metaOutOfRegion(0, scene, store, index); }
    void windowAllAlong() { object(ActiveWindow, 0.0, 60.0, kWindow); }
    /// The window of `kWindow` gives way to a larger one at `time`.
    void windowChangesAt(double time) {
        object(ActiveWindow, 0.0, time, kWindow);
        object(ActiveWindow, time, 60.0, kOther);
    }
};

// ---- Rest outside the window: from 10 s on ----

TEST_F(IdleRulesTest, RestOutside_OfTwoSecondsAfterAStrokeOut_ShowsWhatChangesInTheWindow) {
    for (const auto& [stop, shows] : {std::pair(11.999, false), std::pair(12.0, true), std::pair(20.0, true)}) {
        parser = DataParser();
        store.valueObjects.clear();
        windowAllAlong();
        object(MoveOutOfWindow, 9.0, 10.0, kSpot);
        changingArea(11.0, 11.5, kSpot);
        outOfWindow(object(MouseIdle, 10.0, stop, kOutside));
        EXPECT_EQ(stored(),
                  shows ? std::vector<std::string>{"IdleDirty 11..11.5 (200,300,200,300)"} : std::vector<std::string>{})
            << stop;
    }
}

TEST_F(IdleRulesTest, RestInsideTheWindow_IsNotForTheOutsideRule) {
    windowAllAlong();
    object(MoveOutOfWindow, 9.0, 10.0, kSpot);
    changingArea(11.0, 11.5, kSpot);
    outOfWindow(object(MouseIdle, 10.0, 20.0, kInside));
    EXPECT_THAT(stored(), IsEmpty());
    outOfWindow(object(MouseIdle, 10.0, 20.0, {899, 901, 150, 151})); // Half outside.
    EXPECT_EQ(store.valueObjects.size(), 1u);
}

TEST_F(IdleRulesTest, StrokeOut_BeginsLessThanTwoSecondsBeforeTheRest_AndStandsAheadOfIt) {
    for (const auto& [start, follows] : {std::pair(7.999, false), std::pair(8.0, false), std::pair(8.001, true),
                                         std::pair(10.0, true), std::pair(15.0, true)}) {
        parser = DataParser();
        store.valueObjects.clear();
        windowAllAlong();
        object(MoveOutOfWindow, start, 16.0, kSpot);
        changingArea(18.0, 18.0, kSpot);
        outOfWindow(object(MouseIdle, 10.0, 20.0, kOutside));
        EXPECT_EQ(store.valueObjects.size(), follows ? 1u : 0u) << start;
    }
    parser = DataParser();
    store.valueObjects.clear();
    windowAllAlong();
    object(Move, 9.0, 10.0, kSpot);
    object(MoveIntoWindow, 9.0, 10.0, kSpot);
    object(Dead, 9.0, 10.0, kSpot);
    const unsigned int rest = object(MouseIdle, 10.0, 20.0, kOutside);
    object(MoveOutOfWindow, 10.0, 10.5, kSpot);
    changingArea(18.0, 18.0, kSpot);
    outOfWindow(rest);
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(IdleRulesTest, Search_IsFromHalfASecondBeforeTheFirstStrokeThatIsLateEnough) {
    windowAllAlong();
    object(MoveOutOfWindow, 5.0, 6.0, kSpot); // Too early.
    object(MoveOutOfWindow, 8.5, 8.75, kSpot);
    object(MoveOutOfWindow, 9.5, 9.75, kSpot);
    changingArea(7.0, 7.999, {201, 300, 200, 300});   // Over before 8.
    changingArea(7.5, 8.25, {202, 300, 200, 300});    // Cut at 8.
    changingArea(8.0, 8.0, {203, 300, 200, 300});     //
    changingArea(9.0, 30.0, {204, 300, 200, 300});    // Cut at the rest's end.
    changingArea(20.0, 20.0, {205, 300, 200, 300});   //
    changingArea(20.001, 20.5, {206, 300, 200, 300}); // After it.
    outOfWindow(object(MouseIdle, 10.0, 20.0, kOutside));
    EXPECT_THAT(stored(), ElementsAre("IdleDirty 8..8.25 (202,300,200,300)", "IdleDirty 8..8 (203,300,200,300)",
                                      "IdleDirty 9..20 (204,300,200,300)", "IdleDirty 20..20 (205,300,200,300)"));
}

TEST_F(IdleRulesTest, WindowThatChangesDuringTheRest_IsEnough_AndTheFirstOneCounts) {
    windowChangesAt(10.25);
    changingArea(9.0, 10.125, kSpot);
    changingArea(10.25, 10.25, {50, 300, 200, 300}); // In the second window only.
    changingArea(10.25, 10.25, {100, 900, 100, 700});
    outOfWindow(object(MouseIdle, 10.0, 10.5, kInside));
    EXPECT_THAT(stored(),
                ElementsAre("IdleDirty 10..10.125 (200,300,200,300)", "IdleDirty 10.25..10.25 (100,900,100,700)"));
}

TEST_F(IdleRulesTest, AreaMustLieInTheWindowWhole_AsCutToTheZoneInWork) {
    store.liveZones.push_back({{200, 1000, 0, 800}, 0.0, 60.0});
    store.currentZone = 1;
    windowAllAlong();
    object(MoveOutOfWindow, 9.0, 10.0, kSpot);
    changingArea(11.0, 11.0, {100, 350, 200, 300});  // Within the zone (0,150,200,300): beyond the window's left edge.
    changingArea(11.0, 11.0, {300, 350, 200, 300});  // (100,150,200,300).
    changingArea(11.0, 11.0, {900, 1200, 200, 300}); // (700,800,200,300).
    changingArea(11.0, 11.0, {300, 350, 200, 701});
    outOfWindow(object(MouseIdle, 10.0, 20.0, kOutside));
    EXPECT_THAT(stored(), ElementsAre("IdleDirty 11..11 (100,150,200,300)", "IdleDirty 11..11 (700,800,200,300)"));
}

TEST_F(IdleRulesTest, NoWindow_TwoEqualEmptyOnes_LeadToTheSearchForTheStroke) {
    // What lies left of and above the zone comes out within the empty window.
    changingArea(11.0, 11.0, {-100, -50, -100, -50});
    changingArea(11.0, 11.0, kSpot);
    outOfWindow(object(MouseIdle, 10.0, 20.0, kOutside));
    EXPECT_THAT(stored(), IsEmpty()); // The first object of the list has no stroke ahead of it.
    parser.objects.clear();
    object(MoveOutOfWindow, 9.0, 10.0, kSpot);
    outOfWindow(object(MouseIdle, 10.0, 20.0, kOutside));
    EXPECT_THAT(stored(), ElementsAre("IdleDirty 11..11 (0,-50,0,-50)"));
}

// ---- Rest inside the window: from 10 s on ----

TEST_F(IdleRulesTest, RestInside_UnderTwoSeconds_ShowsWhatChangesInTheWindow) {
    for (const auto& [stop, shows] : {std::pair(11.999, true), std::pair(12.0, false), std::pair(12.001, false)}) {
        parser = DataParser();
        store.valueObjects.clear();
        windowAllAlong();
        changingArea(9.0, 50.0, kSpot);
        changingArea(11.0, 11.5, {0, 300, 200, 300}); // Not in the window.
        inWindow(object(MouseIdle, 10.0, stop, kInside));
        EXPECT_EQ(stored(), shows ? std::vector<std::string>{"IdleDirty 10..11.999 (200,300,200,300)"}
                                  : std::vector<std::string>{})
            << stop;
    }
}

TEST_F(IdleRulesTest, RestInside_MustLieInTheOneWindow) {
    windowAllAlong();
    changingArea(10.5, 10.5, kSpot);
    inWindow(object(MouseIdle, 10.0, 11.0, kOutside));
    EXPECT_THAT(stored(), IsEmpty());

    parser.objects.clear();
    windowChangesAt(10.5);
    inWindow(object(MouseIdle, 10.0, 11.0, kInside));
    EXPECT_THAT(stored(), IsEmpty());
    // Both windows alike are one.
    parser.objects[1].rect = kWindow;
    inWindow(2);
    EXPECT_EQ(store.valueObjects.size(), 1u);
}

TEST_F(IdleRulesTest, RestInside_TakesTheAreasOfItsOwnTime) {
    windowAllAlong();
    changingArea(9.0, 9.999, {201, 300, 200, 300});
    changingArea(9.5, 10.0, {202, 300, 200, 300});
    changingArea(10.0, 10.0, {203, 300, 200, 300});
    changingArea(11.0, 11.0, {204, 300, 200, 300});
    changingArea(11.001, 11.25, {205, 300, 200, 300});
    inWindow(object(MouseIdle, 10.0, 11.0, kInside));
    EXPECT_THAT(stored(), ElementsAre("IdleDirty 10..10 (203,300,200,300)", "IdleDirty 11..11 (204,300,200,300)"));
}

// ---- Absence: from 10 s on ----

TEST_F(IdleRulesTest, Absence_UnderTwoSeconds_ShowsWhatChangesInTheWindow_AndDiesInAnyCase) {
    for (const auto& [stop, shows] : {std::pair(11.999, true), std::pair(12.0, false), std::pair(20.0, false)}) {
        parser = DataParser();
        store.valueObjects.clear();
        windowAllAlong();
        changingArea(9.0, 10.5, kSpot);
        changingArea(10.25, 10.5, {0, 300, 200, 300});
        outOfRegion(object(OffScreen, 10.0, stop, {}));
        EXPECT_EQ(stored(),
                  shows ? std::vector<std::string>{"IdleDirty 10..10.5 (200,300,200,300)"} : std::vector<std::string>{})
            << stop;
        EXPECT_EQ(parser.objects[1].type, Dead);
    }
}

TEST_F(IdleRulesTest, Absence_WhileTheWindowChanges_ShowsNothing) {
    windowChangesAt(10.5);
    changingArea(10.25, 10.25, kSpot);
    outOfRegion(object(OffScreen, 10.0, 11.0, {}));
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(parser.objects[2].type, Dead);
}

TEST_F(IdleRulesTest, RestsStayInTheList_ForTheWalkToRemove) {
    windowAllAlong();
    const unsigned int rest = object(MouseIdle, 10.0, 11.0, kInside);
    outOfWindow(rest);
    inWindow(rest);
    EXPECT_EQ(parser.objects[rest].type, MouseIdle);
}

} // namespace
} // namespace OrvantaNS
