#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr Rectangle kInBar{100, 101, 10, 11};
constexpr Rectangle kDrop{90, 290, 0, 300};

class MenuRulesTest : public testing::ParserTest {
protected:
    void click(unsigned int index, unsigned int zoneIndex = 0) {
        parser.metaSystemMenuClick(zoneIndex, scene, store, index);
    }
    void hover(unsigned int index, unsigned int zoneIndex = 0) {
        parser.metaSystemMenuHover(zoneIndex, scene, store, index);
    }
    bool menuDropped() const { return parser.objects.size() > 1 && parser.objects[1].type == Menu; }
};

// ---- Clicks in the bar ----

TEST_F(MenuRulesTest, ClickInTheBar_WithNoAreaNear_DropsNothing) {
    click(object(Click, 9.0, 10.0, kInBar));
    EXPECT_EQ(parser.objects.size(), 1u);
}

TEST_F(MenuRulesTest, ClickInTheBar_DropsAMenuFromTheTop_BehindTheClick) {
    click(object(Click, 9.0, 10.0, kInBar));
    changingArea(10.0, 13.0, {90, 290, 20, 300});
    object(Drag, 11.0, 12.0, kInBar);
    click(0);
    EXPECT_THAT(objects(), ElementsAre("Click 9..10 (100,101,10,11)", "Menu 10..13 (90,290,0,300)",
                                       "Drag 11..12 (100,101,10,11)"));
}

TEST_F(MenuRulesTest, Click_MustLieInTheBarWhole) {
    for (const auto& [rect, in] :
         {std::pair(Rectangle{0, 1280, 0, 25}, true), std::pair(Rectangle{100, 101, 24, 26}, false),
          std::pair(Rectangle{100, 101, -1, 11}, false), std::pair(Rectangle{-1, 101, 10, 11}, false),
          std::pair(Rectangle{100, 1281, 10, 11}, false)}) {
        parser = DataParser();
        changingArea(10.0, 13.0, kDrop);
        click(object(DoubleClick, 9.0, 10.0, rect));
        EXPECT_EQ(menuDropped(), in) << testing::text(rect);
    }
}

TEST_F(MenuRulesTest, Area_MustChangeWithinAQuarterSecondOfTheClicksEnd) {
    for (const auto& [start, stop, near] :
         {std::tuple(9.749, 9.749, false), std::tuple(9.75, 9.75, true), std::tuple(10.25, 10.25, true),
          std::tuple(10.251, 10.251, false), std::tuple(10.249, 20.0, true), std::tuple(10.25, 20.0, false),
          std::tuple(9.0, 9.1, false)}) {
        parser = DataParser();
        changingArea(start, stop, kDrop);
        click(object(Click, 9.0, 10.0, kInBar));
        EXPECT_EQ(menuDropped(), near) << start << ' ' << stop;
    }
}

TEST_F(MenuRulesTest, Area_BeginsInTheBarAndHangsBelowIt) {
    struct Case {
        std::int32_t top;
        std::int32_t bottom;
        bool hangs;
    };
    for (const Case& c : {Case{24, 26, true}, Case{24, 25, false}, Case{25, 300, false}, Case{-40, 26, true},
                          Case{0, 26, true}, Case{0, 25, false}}) {
        parser = DataParser();
        changingArea(10.0, 13.0, {90, 290, c.top, c.bottom});
        click(object(Click, 9.0, 10.0, kInBar));
        EXPECT_EQ(menuDropped(), c.hangs) << c.top << ' ' << c.bottom;
    }
}

TEST_F(MenuRulesTest, AreaBesideTheZone_GivesAMenuWithItsSidesInOrder) {
    changingArea(10.0, 13.0, {1300, 1400, 0, 300});
    click(object(Click, 9.0, 10.0, kInBar));
    EXPECT_EQ(objects()[1], "Menu 10..13 (1280,1300,0,300)");
}

TEST_F(MenuRulesTest, Menu_IsDroppedWhenAnotherCoversOrOverlapsItInTime) {
    struct Case {
        std::uint32_t type;
        double start;
        double stop;
        double areaStop;
        bool made;
    };
    for (const Case& c : {Case{Menu, 10.0, 11.0, 11.0, false}, Case{Menu, 9.0, 12.0, 11.0, false},
                          Case{Menu, 9.0, 10.0, 11.0, true}, // End to end.
                          Case{Menu, 9.0, 10.001, 11.0, false}, Case{Menu, 11.0, 12.0, 11.0, true},
                          Case{Menu, 10.999, 12.0, 11.0, false},
                          Case{Menu, 10.5, 10.5, 11.0, true},   // A moment within overlaps by nothing.
                          Case{Menu, 9.0, 10.0, 10.0, false},   // A moment is covered by what ends there,
                          Case{Menu, 10.0, 12.0, 10.0, false},  // or begins there.
                          Case{Menu, 10.001, 12.0, 10.0, true}, //
                          Case{Dead, 9.0, 12.0, 11.0, true}, Case{Pane, 9.0, 12.0, 11.0, true}}) {
        parser = DataParser();
        changingArea(10.0, c.areaStop, kDrop);
        object(Click, 9.0, 10.0, kInBar);
        object(c.type, c.start, c.stop, {500, 600, 0, 100});
        click(0);
        EXPECT_EQ(parser.objects.size(), c.made ? 3u : 2u) << objects()[1];
    }
}

TEST_F(MenuRulesTest, MenuAheadOfTheClick_CountsToo) {
    changingArea(10.0, 11.0, kDrop);
    object(Menu, 9.0, 12.0, {500, 600, 0, 100});
    click(object(Click, 9.0, 10.0, kInBar));
    EXPECT_EQ(parser.objects.size(), 2u);
}

TEST_F(MenuRulesTest, SecondClickInTheBarOfAnOpenMenu_MakesNoSecondMenu) {
    changingArea(10.0, 12.0, kDrop);
    object(Click, 9.75, 10.0, kInBar);
    object(Click, 11.75, 12.0, kInBar);
    click(0);
    ASSERT_EQ(parser.objects.size(), 3u);
    click(2);
    EXPECT_EQ(parser.objects.size(), 3u);
}

TEST_F(MenuRulesTest, TwoMenusOfOneClick_StandEachDirectlyBehindIt) {
    changingArea(9.8, 9.9, {90, 190, 0, 100});
    changingArea(10.0, 10.1, {90, 290, 0, 300});
    object(Click, 9.0, 10.0, kInBar);
    object(Drag, 11.0, 12.0, kInBar);
    click(0);
    EXPECT_THAT(objects(), ElementsAre("Click 9..10 (100,101,10,11)", "Menu 10..10.1 (90,290,0,300)",
                                       "Menu 9.8..9.9 (90,190,0,100)", "Drag 11..12 (100,101,10,11)"));
}

TEST_F(MenuRulesTest, Bar_IsTheFirstRegionsTop25Rows_WithinTheRulesZone) {
    store.liveZones.push_back({{100, 500, 10, 700}, 0.0, 60.0});
    scene.params().recordingRegions()[0].rect = {1280, 0, 0, 800}; // Sides the wrong way round.
    scene.region(0.0, {0, 1280, 300, 800});
    // On the screen (100,500,10,25), within the zone (0,400,0,15).
    for (const auto& [rect, in] : {std::pair(Rectangle{0, 400, 0, 15}, true), std::pair(Rectangle{0, 1, 14, 16}, false),
                                   std::pair(Rectangle{399, 401, 10, 11}, false)}) {
        parser = DataParser();
        changingArea(10.0, 13.0, {150, 350, 5, 300});
        click(object(Click, 9.0, 10.0, rect), 1);
        EXPECT_EQ(menuDropped(), in) << testing::text(rect);
        if (in) {
            EXPECT_EQ(objects()[1], "Menu 10..13 (50,250,0,290)");
        }
    }
}

TEST_F(MenuRulesTest, AreaIsTestedForTheBar_WithinTheZone) {
    // In a zone whose top is at 100, the area from 124 to 126 begins in the first 25 rows.
    zone({0, 1280, 100, 800});
    scene.params().recordingRegions()[0].rect = {0, 1280, 100, 800};
    changingArea(10.0, 13.0, {90, 290, 124, 126});
    click(object(Click, 9.0, 10.0, kInBar));
    EXPECT_EQ(objects()[1], "Menu 10..13 (90,290,0,26)");
}

// ---- Strokes along the bar ----

TEST_F(MenuRulesTest, StrokeThatOverlapsTheBar_DropsAMenu) {
    for (const auto& [rect, along] :
         {std::pair(Rectangle{100, 400, 24, 300}, true), std::pair(Rectangle{100, 400, 25, 300}, false),
          std::pair(Rectangle{-50, 1, -50, 1}, true), std::pair(Rectangle{-50, 0, 0, 20}, false),
          std::pair(Rectangle{100, 100, 0, 20}, false)}) {
        parser = DataParser();
        changingArea(10.0, 13.0, kDrop);
        hover(object(Move, 9.0, 10.0, rect));
        EXPECT_EQ(menuDropped(), along) << testing::text(rect);
    }
}

TEST_F(MenuRulesTest, StrokesArea_MustChangeFromAQuarterSecondBeforeItToAQuarterAfter) {
    for (const auto& [time, near] : {std::pair(8.749, false), std::pair(8.75, true), std::pair(9.5, true),
                                     std::pair(10.25, true), std::pair(10.251, false)}) {
        parser = DataParser();
        changingArea(time, time, kDrop);
        hover(object(MoveIntoWindow, 9.0, 10.0, {100, 400, 10, 300}));
        EXPECT_EQ(menuDropped(), near) << time;
        if (near) {
            EXPECT_EQ(objects()[1], "Menu " + testing::text(time) + ".." + testing::text(time) + " (90,290,0,300)");
        }
    }
}

// ---- Hovers handed over ----

TEST_F(MenuRulesTest, PromoteHover_HandsOverTheHoversWithinTheStrokesTime_WhereverTheyStand) {
    object(Hover, 9.0, 9.5, kInBar);
    object(Hover, 8.999, 9.5, kInBar);
    object(Move, 9.0, 10.0, kDrop);
    object(Hover, 9.5, 10.0, {1, 2, 3, 4});
    object(Hover, 9.5, 10.001, kInBar);
    object(HoverPopup, 9.5, 10.0, kInBar);
    parser.metaPromoteHover(0, scene, store, 2);
    EXPECT_THAT(stored(), ElementsAre("Hover 9..9.5 (100,101,10,11)", "Hover 9.5..10 (1,2,3,4)"));
    EXPECT_THAT(objects(), ElementsAre("Dead 9..9.5 (100,101,10,11)", "Hover 8.999..9.5 (100,101,10,11)",
                                       "Move 9..10 (90,290,0,300)", "Dead 9.5..10 (1,2,3,4)",
                                       "Hover 9.5..10.001 (100,101,10,11)", "HoverPopup 9.5..10 (100,101,10,11)"));
}

TEST_F(MenuRulesTest, PromoteHover_OfADeadStroke_DoesNothing) {
    object(Dead, 9.0, 10.0, kDrop);
    object(Hover, 9.0, 9.5, kInBar);
    parser.metaPromoteHover(0, scene, store, 0);
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(parser.objects[1].type, Hover);
}

// ---- What happens in a menu: one from 10 to 14 at (100,300,0,320) ----

TEST_F(MenuRulesTest, HoverWithin4PixelsOfAMenu_IsAPane) {
    struct Case {
        double start;
        double stop;
        Rectangle rect;
        bool pane;
    };
    for (const Case& c : {Case{10.0, 14.0, {110, 120, 10, 20}, true}, Case{9.999, 14.0, {110, 120, 10, 20}, false},
                          Case{10.0, 14.001, {110, 120, 10, 20}, false}, Case{11.0, 12.0, {97, 120, 10, 20}, true},
                          Case{11.0, 12.0, {96, 304, -4, 324}, true}, Case{11.0, 12.0, {95, 120, 10, 20}, false},
                          Case{11.0, 12.0, {110, 305, 10, 20}, false}, Case{11.0, 12.0, {110, 120, -5, 20}, false},
                          Case{11.0, 12.0, {110, 120, 10, 325}, false}}) {
        for (const bool ahead : {true, false}) {
            parser = DataParser();
            store.valueObjects.clear();
            if (ahead) {
                object(Hover, c.start, c.stop, c.rect);
            }
            const unsigned int menu = object(Menu, 10.0, 14.0, {100, 300, 0, 320});
            if (!ahead) {
                object(Hover, c.start, c.stop, c.rect);
            }
            parser.metaMenuHover(0, scene, store, menu);
            const std::string rest =
                " " + testing::text(c.start) + ".." + testing::text(c.stop) + " " + testing::text(c.rect);
            EXPECT_EQ(objects()[1 - menu], (c.pane ? "Dead" : "Hover") + rest);
            EXPECT_EQ(stored(), c.pane ? std::vector<std::string>{"Pane" + rest} : std::vector<std::string>{});
        }
    }
}

class MenuResultTest : public MenuRulesTest {
protected:
    /// What becomes of a click's `result` when both stand behind the menu.
    std::uint32_t afterwards(OV_VALUE_OBJECT clickObject, OV_VALUE_OBJECT result) {
        parser.objects = {{Menu, 10.0, 14.0, {100, 300, 0, 320}, 0.0}, clickObject, result};
        parser.metaMenuResult(0, scene, store, 0);
        EXPECT_EQ(parser.objects[0].type, Menu);
        EXPECT_EQ(parser.objects[1].type, clickObject.type);
        return parser.objects[2].type;
    }
    static OV_VALUE_OBJECT clickAt(double start, double stop, Rectangle rect, std::uint32_t type = Click) {
        return {type, start, stop, rect, 0.0};
    }
    static constexpr Rectangle kInside{110, 120, 10, 20};
    static constexpr Rectangle kOutside{400, 500, 10, 20};
};

TEST_F(MenuResultTest, ClickInTheMenu_TurnsWhatItChangedElsewhereIntoAMenuResult) {
    const OV_VALUE_OBJECT dirty{ClickDirty, 12.0, 12.0, kOutside, 0.0};
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, kInside), dirty), MenuResult);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, kInside, DoubleClick), dirty), MenuResult);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, kInside, Drag), dirty), ClickDirty);
    // The click's time and place.
    EXPECT_EQ(afterwards(clickAt(10.0, 14.0, kInside), dirty), MenuResult);
    EXPECT_EQ(afterwards(clickAt(9.999, 11.5, kInside), dirty), ClickDirty);
    EXPECT_EQ(afterwards(clickAt(11.0, 14.001, kInside), dirty), ClickDirty);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, {84, 316, -16, 336}), dirty), MenuResult);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, {83, 120, 10, 20}), dirty), ClickDirty);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, {110, 317, 10, 20}), dirty), ClickDirty);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, {110, 120, -17, 20}), dirty), ClickDirty);
    EXPECT_EQ(afterwards(clickAt(11.0, 11.5, {110, 120, 10, 337}), dirty), ClickDirty);
}

TEST_F(MenuResultTest, ResultMustBeginWithinTwoSecondsOfTheClick_OutsideTheMenu) {
    const OV_VALUE_OBJECT inMenu = clickAt(11.0, 11.5, kInside);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 10.999, 20.0, kOutside, 0.0}), ClickDirty);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 11.0, 20.0, kOutside, 0.0}), MenuResult);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 13.0, 20.0, kOutside, 0.0}), MenuResult);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 13.001, 20.0, kOutside, 0.0}), ClickDirty);
    EXPECT_EQ(afterwards(inMenu, {ClickWindow, 12.0, 12.0, kOutside, 0.0}), MenuResult);
    EXPECT_EQ(afterwards(inMenu, {ActiveWindow, 12.0, 12.0, kOutside, 0.0}), ActiveWindow);
    EXPECT_EQ(afterwards(inMenu, {Hover, 12.0, 12.0, kOutside, 0.0}), Hover);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 12.0, 12.0, {84, 316, -16, 336}, 0.0}), ClickDirty);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 12.0, 12.0, {83, 316, -16, 336}, 0.0}), MenuResult);
    EXPECT_EQ(afterwards(inMenu, {ClickDirty, 12.0, 12.0, {110, 317, 10, 20}, 0.0}), MenuResult);
}

TEST_F(MenuResultTest, OnlyWhatStandsBehindTheMenuCounts_InAnyOrderThere) {
    object(Click, 11.0, 11.5, kInside);
    object(ClickDirty, 11.25, 11.25, kOutside);
    object(Menu, 10.0, 14.0, {100, 300, 0, 320});
    object(ClickDirty, 12.0, 12.0, kOutside);
    parser.metaMenuResult(0, scene, store, 2);
    EXPECT_EQ(parser.objects[3].type, ClickDirty); // The click stands ahead of the menu.
    object(Click, 11.0, 11.5, kInside);
    parser.metaMenuResult(0, scene, store, 2);
    EXPECT_EQ(parser.objects[1].type, ClickDirty);
    EXPECT_EQ(parser.objects[3].type, MenuResult);
}

TEST_F(MenuResultTest, EveryClickInTheMenuReachesItsOwnTwoSeconds) {
    object(Menu, 10.0, 14.0, {100, 300, 0, 320});
    object(Click, 10.5, 10.75, kInside);
    object(Click, 13.0, 13.25, kInside);
    object(ClickDirty, 12.5, 12.5, kOutside);
    object(ClickDirty, 12.75, 12.75, kOutside);
    object(ClickWindow, 15.0, 15.0, kOutside);
    parser.metaMenuResult(0, scene, store, 0);
    EXPECT_EQ(parser.objects[3].type, MenuResult);
    EXPECT_EQ(parser.objects[4].type, ClickDirty);
    EXPECT_EQ(parser.objects[5].type, MenuResult);
}

// No click begins from such a menu's start on.
TEST_F(MenuResultTest, MenuWithoutANumberForItsTime_DoesNothing) {
    object(Menu, kNan, kNan, {100, 300, 0, 320});
    object(Click, 11.0, 11.5, kInside);
    object(ClickDirty, 12.0, 12.0, kOutside);
    parser.metaMenuResult(0, scene, store, 0);
    EXPECT_EQ(parser.objects[2].type, ClickDirty);
    // The start and the stop each suffice for that.
    parser.objects[0].start = 10.0;
    parser.metaMenuResult(0, scene, store, 0);
    EXPECT_EQ(parser.objects[2].type, ClickDirty);
    parser.objects[0].start = kNan;
    parser.objects[0].stop = 14.0;
    parser.metaMenuResult(0, scene, store, 0);
    EXPECT_EQ(parser.objects[2].type, ClickDirty);
    parser.objects[0].start = 10.0;
    parser.metaMenuResult(0, scene, store, 0);
    EXPECT_EQ(parser.objects[2].type, MenuResult);
}

// ---- Context menus: a click's window at 10, with the object's stop as its anchor ----

class ContextMenuTest : public MenuRulesTest {
protected:
    void context(unsigned int index = 0) { parser.metaContextMenu(0, scene, store, index); }
    /// The type that a window of `rect` gets with the cursor at (x, y).
    std::uint32_t windowAt(Rectangle rect, std::int32_t x, std::int32_t y) {
        scene = testing::Scene();
        scene.cursor(10.0, x, y);
        parser = DataParser();
        object(ClickWindow, 9.99, 9.99, rect);
        object(ActiveWindow, 10.0, 12.0, rect);
        context();
        EXPECT_EQ(parser.objects[0].type, parser.objects[1].type == Menu ? Dead : ClickWindow);
        return parser.objects[1].type;
    }
};

TEST_F(ContextMenuTest, SmallWindowBesideTheCursor_IsAMenu) {
    constexpr Rectangle kSmall{600, 900, 300, 500};
    EXPECT_EQ(windowAt(kSmall, 590, 310), Menu);
    EXPECT_EQ(windowAt(kSmall, 537, 310), Menu); // 63 pixels away.
    EXPECT_EQ(windowAt(kSmall, 536, 310), ActiveWindow);
    EXPECT_EQ(windowAt(kSmall, 600, 300), ActiveWindow); // In it.
    EXPECT_EQ(windowAt(kSmall, 899, 499), ActiveWindow);
    EXPECT_EQ(windowAt(kSmall, 900, 499), Menu);
    EXPECT_EQ(windowAt(kSmall, 899, 500), Menu);
    EXPECT_EQ(windowAt(kSmall, 599, 300), Menu);
    EXPECT_EQ(windowAt(kSmall, 600, 299), Menu);
    // Large in both dimensions.
    EXPECT_EQ(windowAt({600, 1080, 300, 780}, 590, 310), ActiveWindow);
    EXPECT_EQ(windowAt({600, 1079, 300, 780}, 590, 310), Menu);
    EXPECT_EQ(windowAt({600, 1080, 300, 779}, 590, 310), Menu);
    EXPECT_EQ(windowAt({600, 1100, 300, 800}, 590, 310), ActiveWindow);
}

TEST_F(ContextMenuTest, WindowMustBeginWithinTwoHundredthsOfTheClicksWindow) {
    for (const auto& [after, menu] : {std::pair(0.0, true), std::pair(0.02, true), std::pair(0.021, false)}) {
        scene = testing::Scene();
        scene.cursor(20.0, 590, 310);
        parser = DataParser();
        object(ClickWindow, 9.0, 10.0, {600, 900, 300, 500});
        object(ActiveWindow, 10.0 + after, 12.0, {600, 900, 300, 500});
        context();
        EXPECT_EQ(parser.objects[1].type, menu ? Menu : ActiveWindow) << after;
    }
}

TEST_F(ContextMenuTest, FirstObjectThatBeginsLater_EndsTheSearch) {
    scene.cursor(20.0, 590, 310);
    object(ClickWindow, 10.0, 10.0, {600, 900, 300, 500});
    object(Click, 10.5, 10.5, kInBar);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    context();
    EXPECT_EQ(parser.objects[2].type, ActiveWindow);
}

TEST_F(ContextMenuTest, WindowsAheadOfIt_AndOtherTypes_DoNotCount) {
    scene.cursor(20.0, 590, 310);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    object(ClickWindow, 10.0, 10.0, {600, 900, 300, 500});
    object(ForeAnimate, 10.0, 12.0, {600, 900, 300, 500});
    context(1);
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 10..12 (600,900,300,500)", "ClickWindow 10..10 (600,900,300,500)",
                                       "ForeAnimate 10..12 (600,900,300,500)"));
}

TEST_F(ContextMenuTest, Cursor_IsTheFirstSampleAtOrAfterTheWindow_WithinTheZoneInWork) {
    store.liveZones.push_back({{100, 1100, 50, 750}, 0.0, 60.0});
    store.currentZone = 1;
    scene.cursor(9.999, 0, 0).cursor(10.5, 690, 360).cursor(10.6, 0, 0);
    object(ClickWindow, 9.99, 9.99, {600, 900, 300, 500});
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    context();
    EXPECT_EQ(parser.objects[1].type, Menu);
}

TEST_F(ContextMenuTest, NoCursorSampleLeft_IsAPointFarOff) {
    object(ClickWindow, 9.99, 9.99, {600, 900, 300, 500});
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    context();
    EXPECT_EQ(parser.objects[1].type, ActiveWindow);
    // It stands at (-1, -1), near a window in the corner.
    EXPECT_EQ(parser.objects.size(), 2u);
    parser.objects[1].rect = {0, 50, 0, 50};
    context();
    EXPECT_EQ(parser.objects[1].type, Menu);
}

TEST_F(ContextMenuTest, TheWindowsOpening_DiesWithIt_OneOnly) {
    scene.cursor(20.0, 590, 310);
    object(ForeOpen, 10.0, 10.0, kInBar); // Ahead.
    object(ClickWindow, 9.99, 9.99, kInBar);
    object(ForeOpen, 9.995, 9.995, kInBar); // Another time.
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    object(ForeOpen, 10.0, 10.0, kInBar);
    object(ForeOpen, 10.0, 10.0, kInBar);
    context(1);
    EXPECT_THAT(objects(), ElementsAre("ForeOpen 10..10 (100,101,10,11)", "Dead 9.99..9.99 (100,101,10,11)",
                                       "ForeOpen 9.995..9.995 (100,101,10,11)", "Menu 10..12 (600,900,300,500)",
                                       "Dead 10..10 (100,101,10,11)", "ForeOpen 10..10 (100,101,10,11)"));
}

TEST_F(ContextMenuTest, OpeningDirectlyBehindTheClicksWindow_AheadOfItsOwn_DiesToo) {
    scene.cursor(20.0, 590, 310);
    object(ClickWindow, 9.99, 9.99, kInBar);
    object(ForeOpen, 10.0, 10.0, kInBar);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    context();
    EXPECT_THAT(objects(), ElementsAre("Dead 9.99..9.99 (100,101,10,11)", "Dead 10..10 (100,101,10,11)",
                                       "Menu 10..12 (600,900,300,500)"));
}

TEST_F(ContextMenuTest, SearchForTheOpening_EndsAtTheFirstObjectThatBeginsLater) {
    scene.cursor(20.0, 590, 310);
    object(ClickWindow, 9.99, 9.99, kInBar);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    object(Click, 10.001, 10.5, kInBar);
    object(ForeOpen, 10.0, 10.0, kInBar);
    context();
    EXPECT_EQ(parser.objects[1].type, Menu);
    EXPECT_EQ(parser.objects[3].type, ForeOpen);
}

TEST_F(ContextMenuTest, StartThatIsNoNumber_EndsNeitherSearch) {
    scene.cursor(20.0, 590, 310);
    object(ClickWindow, 9.99, 9.99, kInBar);
    object(Click, kNan, 10.5, kInBar);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    object(Click, kNan, 10.5, kInBar);
    object(ForeOpen, 10.0, 10.0, kInBar);
    context();
    EXPECT_EQ(parser.objects[0].type, Dead);
    EXPECT_EQ(parser.objects[2].type, Menu);
    EXPECT_EQ(parser.objects[4].type, Dead);
}

TEST_F(ContextMenuTest, WalkGoesOnOverFurtherWindows) {
    scene.cursor(20.0, 590, 310);
    object(ClickWindow, 9.99, 9.99, kInBar);
    object(ActiveWindow, 10.0, 12.0, {600, 900, 300, 500});
    object(ForeOpen, 10.0, 10.0, kInBar);
    object(ActiveWindow, 10.005, 12.0, {610, 900, 300, 500});
    object(ForeOpen, 10.005, 10.005, kInBar);
    context();
    EXPECT_EQ(parser.objects[1].type, Menu);
    EXPECT_EQ(parser.objects[2].type, Dead);
    EXPECT_EQ(parser.objects[3].type, Menu);
    EXPECT_EQ(parser.objects[4].type, Dead);
}

} // namespace
} // namespace OrvantaNS
