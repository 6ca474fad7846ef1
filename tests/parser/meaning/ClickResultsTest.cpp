#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rectangle kPoint{640, 641, 400, 401};
constexpr Rectangle kWindow{600, 900, 350, 700};

class ClickResultsTest : public testing::ParserTest {
protected:
    void now(double start) { parser.metaStartTime = ticks(start); }
    void allResults() { parser.getClickResult(0, scene, store); }
    void results(unsigned int index) { parser.getClickResultWorker(0, scene, store, index); }
    void detect(unsigned int index) { parser.metaClickDetect(0, scene, store, index); }
    std::string answer(OV_VALUE_OBJECT click) { return testing::text(parser.detectClickDR(scene, store, click)); }
};

// ---- Which clicks ----

TEST_F(ClickResultsTest, ClickThatThePassHasReached_GetsItsResults) {
    for (const auto& [start, reached] : {std::pair(10.999, false), std::pair(11.0, true), std::pair(11.001, true)}) {
        parser = DataParser();
        object(Click, 10.0, 11.0, kPoint);
        changingArea(10.5, 10.5, kWindow);
        now(start);
        allResults();
        EXPECT_EQ(parser.objects.size(), reached ? 2u : 1u) << start;
    }
}

TEST_F(ClickResultsTest, ClicksAndDoubleClicksOnly_EachInItsTurn) {
    object(Drag, 10.0, 10.5, kPoint);
    object(DoubleClick, 10.0, 10.5, kPoint);
    object(Dead, 10.0, 10.5, kPoint);
    object(Click, 20.0, 20.5, kPoint);
    object(Click, 30.0, 30.5, kPoint);
    changingArea(11.0, 11.0, {10, 20, 10, 20});
    changingArea(21.0, 21.0, {30, 40, 30, 40});
    changingArea(31.0, 31.0, {50, 60, 50, 60});
    now(25.0);
    allResults();
    parser.objects.erase(parser.objects.begin(), parser.objects.begin() + 5);
    EXPECT_THAT(objects(), ElementsAre("ClickDirty 11..11 (10,20,10,20)", "ClickDirty 21..21 (30,40,30,40)"));
}

// ---- The window that a click opened: the click begins at 10, the search ends at 12 ----

TEST_F(ClickResultsTest, OpenedWindow_BeginsFromTheClickOn_WithinTwoSeconds) {
    struct Case {
        std::uint32_t type;
        double start;
        double stop;
        bool opened;
    };
    for (const Case& c :
         {Case{ActiveWindow, 9.99, 11.0, false}, Case{ActiveWindow, 10.0, 10.0, true},
          Case{ActiveWindow, 10.0, 50.0, true}, Case{ActiveWindow, 11.75, 12.0, true},
          Case{ActiveWindow, 11.75, 50.0, true}, Case{ActiveWindow, 12.0, 12.0, true},
          Case{ActiveWindow, 12.0, 12.25, false}, Case{ActiveWindow, 12.25, 50.0, false},
          Case{ActiveWindow, 12.25, 12.0, true}, // Over before it began: its stop alone counts.
          Case{ForeAnimate, 11.0, 50.0, true}, Case{Menu, 11.0, 50.0, true}, Case{ForeOpen, 11.0, 50.0, false},
          Case{ClickWindow, 11.0, 50.0, false}, Case{Pane, 11.0, 50.0, false}, Case{FullScreenDirty, 11.0, 50.0, false},
          Case{Dead, 11.0, 50.0, false}}) {
        parser = DataParser();
        object(Click, 10.0, 10.5, kPoint);
        object(c.type, c.start, c.stop, kWindow);
        results(0);
        const std::string name = testing::text(parser.objects[1]);
        ASSERT_EQ(parser.objects.size(), c.opened ? 3u : 2u) << name;
        if (c.opened) {
            const std::string start = testing::text(c.start - 0.01);
            EXPECT_EQ(objects()[2], "ClickWindow " + start + ".." + start + " (600,900,350,700)") << name;
        }
    }
}

TEST_F(ClickResultsTest, FirstWindowOfTheListCounts_EvenAheadOfTheClick_AndNoOther) {
    object(ActiveWindow, 9.0, 50.0, {0, 10, 0, 10});
    object(Menu, 11.5, 11.75, {20, 30, 20, 30});
    object(Click, 10.0, 10.5, kPoint);
    object(ActiveWindow, 11.0, 50.0, kWindow);
    results(2);
    EXPECT_EQ(parser.objects.size(), 5u);
    EXPECT_EQ(objects().back(), "ClickWindow 11.49..11.49 (20,30,20,30)");
}

TEST_F(ClickResultsTest, OpenedWindow_AtTheHeadOfTheList_Counts) {
    object(ActiveWindow, 11.0, 50.0, kWindow);
    object(Click, 10.0, 10.5, kPoint);
    results(1);
    EXPECT_EQ(parser.objects.size(), 3u);
    EXPECT_EQ(objects().back(), "ClickWindow 10.99..10.99 (600,900,350,700)");
}

TEST_F(ClickResultsTest, SearchRunsFromTheClicksStart_NotItsStop) {
    object(Click, 10.0, 30.0, kPoint);
    object(ActiveWindow, 12.5, 50.0, kWindow);
    results(0);
    EXPECT_EQ(parser.objects.size(), 2u);
}

TEST_F(ClickResultsTest, WindowTakesItsWholeRecordAlong) {
    object(Click, 10.0, 10.5, kPoint);
    parser.objects.push_back({Menu, 10.5, 11.0, kWindow, 3.5});
    results(0);
    EXPECT_EQ(objects().back(), "ClickWindow 10.49..10.49 (600,900,350,700) value 3.5");
}

// ---- What a click changed ----

TEST_F(ClickResultsTest, ChangedArea_BeginsWithinTwoSecondsOfTheClick) {
    struct Case {
        double start;
        double stop;
        bool result;
    };
    for (const Case& c : {Case{9.0, 9.5, false}, Case{9.999, 11.0, false}, Case{9.999, 50.0, false},
                          Case{10.0, 10.0, true}, Case{10.0, 50.0, true}, Case{11.999, 50.0, true},
                          Case{12.0, 12.0, true}, Case{12.0, 12.001, false}, Case{12.001, 12.001, false}}) {
        parser = DataParser();
        object(Click, 10.0, 10.5, kPoint);
        changingArea(c.start, c.stop, kWindow);
        results(0);
        const std::string start = testing::text(c.start);
        if (c.result) {
            EXPECT_EQ(objects().back(), "ClickDirty " + start + ".." + start + " (600,900,350,700)");
        } else {
            EXPECT_EQ(parser.objects.size(), 1u) << c.start << ' ' << c.stop;
        }
    }
}

TEST_F(ClickResultsTest, AreaAtTheZonesTop_IsNoResult_HoweverLowItReaches) {
    for (const auto& [top, result] :
         {std::pair(-10, false), std::pair(0, false), std::pair(1, true), std::pair(25, true)}) {
        parser = DataParser();
        object(Click, 10.0, 10.5, kPoint);
        changingArea(10.5, 10.5, {100, 200, top, 790});
        results(0);
        EXPECT_EQ(parser.objects.size(), result ? 2u : 1u) << top;
    }
}

TEST_F(ClickResultsTest, AreaIsTakenIntoTheRulesZone) {
    store.liveZones.push_back({{100, 1000, 50, 700}, 0.0, 60.0});
    object(Click, 10.0, 10.5, kPoint);
    changingArea(10.5, 10.5, {50, 300, 60, 200});
    changingArea(10.5, 10.5, {50, 300, 50, 200}); // At this zone's top.
    parser.getClickResultWorker(1, scene, store, 0);
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (640,641,400,401)", "ClickDirty 10.5..10.5 (0,200,10,150)"));
}

TEST_F(ClickResultsTest, AreaOfAtLeast481By481_IsTooLarge) {
    zone({0, 3000, 0, 3000});
    for (const auto& [w, h, result] :
         {std::tuple(480, 2000, true), std::tuple(481, 480, true), std::tuple(480, 481, true),
          std::tuple(481, 481, false), std::tuple(2000, 480, true), std::tuple(2000, 2000, false)}) {
        parser = DataParser();
        object(Click, 10.0, 10.5, kPoint);
        changingArea(10.5, 10.5, testing::box(100, 100, w, h));
        results(0);
        EXPECT_EQ(parser.objects.size(), result ? 2u : 1u) << w << ' ' << h;
    }
}

TEST_F(ClickResultsTest, AreaIsMeasuredWithinTheZone) {
    object(Click, 10.0, 10.5, kPoint);
    changingArea(10.5, 10.5, {800, 2000, 320, 2000}); // 480 by 480 of it lie in the zone.
    results(0);
    EXPECT_EQ(objects().back(), "ClickDirty 10.5..10.5 (800,1280,320,800)");
}

TEST_F(ClickResultsTest, AreaBesideTheZone_LeavesAnInvertedResult) {
    object(Click, 10.0, 10.5, kPoint);
    changingArea(10.5, 10.5, {1300, 1400, 100, 700});
    results(0);
    EXPECT_EQ(objects().back(), "ClickDirty 10.5..10.5 (1300,1280,100,700)");
}

TEST_F(ClickResultsTest, WindowComesFirst_ThenAreasInTheirOrder) {
    object(Click, 10.0, 10.5, kPoint);
    object(ActiveWindow, 11.0, 50.0, kWindow);
    changingArea(10.5, 11.5, {10, 20, 10, 20});
    changingArea(10.5, 10.5, {30, 40, 30, 40});
    parser.skipDRObject = 0;
    results(0);
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (640,641,400,401)", "ActiveWindow 11..50 (600,900,350,700)",
                                       "ClickWindow 10.99..10.99 (600,900,350,700)",
                                       "ClickDirty 10.5..10.5 (10,20,10,20)", "ClickDirty 10.5..10.5 (30,40,30,40)"));
}

// ---- What answers a click: one from 10 to 10.5 ----

TEST_F(ClickResultsTest, Answer_BeginsWithinAQuarterSecondOfTheClick) {
    for (const auto& [start, answers] : {std::pair(9.749, false), std::pair(9.75, true), std::pair(10.25, true),
                                         std::pair(10.75, true), std::pair(10.751, false)}) {
        parser = DataParser();
        changingArea(start, 50.0, kWindow);
        EXPECT_EQ(answer({Click, 10.0, 10.5, kPoint, 0.0}), answers ? "(600,900,350,700)" : "(0,0,0,0)") << start;
    }
}

TEST_F(ClickResultsTest, Answer_IsTheFirstAreaThatOverlaps) {
    changingArea(5.0, 6.0, kWindow);
    changingArea(10.0, 10.0, {0, 640, 0, 800}); // Shares the edge only.
    changingArea(10.1, 10.1, {620, 650, 390, 410});
    changingArea(10.1, 10.1, kWindow);
    EXPECT_EQ(answer({Click, 10.0, 10.5, kPoint, 0.0}), "(620,650,390,410)");
    parser.skipDRObject = 3;
    EXPECT_EQ(answer({Click, 10.0, 10.5, kPoint, 0.0}), "(600,900,350,700)");
    parser.skipDRObject = 9;
    EXPECT_EQ(answer({Click, 10.0, 10.5, kPoint, 0.0}), "(0,0,0,0)");
}

TEST_F(ClickResultsTest, Answer_SearchEndsAtTheFirstAreaThatBeginsLater) {
    changingArea(10.751, 20.0, kWindow);
    changingArea(10.5, 20.0, kWindow); // Out of order: not reached.
    EXPECT_EQ(answer({Click, 10.0, 10.5, kPoint, 0.0}), "(0,0,0,0)");
}

TEST_F(ClickResultsTest, Answer_ClickThatStopsBeforeItStarts_SearchGoesOnUntilAQuarterSecondBehindItsStop) {
    // From 10 to 9.875: an answer begins from 9.75 to 10.125. The first area begins too early, and ends nothing.
    changingArea(9.7, 20.0, {0, 1280, 0, 800});
    changingArea(9.75, 20.0, kWindow);
    EXPECT_EQ(answer({Click, 10.0, 9.875, kPoint, 0.0}), "(600,900,350,700)");
}

TEST_F(ClickResultsTest, Answer_IsTakenIntoTheZoneInWork) {
    store.liveZones.push_back({{500, 1000, 300, 700}, 0.0, 60.0});
    store.currentZone = 1;
    changingArea(10.0, 10.0, kWindow);
    EXPECT_EQ(answer({Click, 10.0, 10.5, {399, 400, 60, 61}, 0.0}), "(100,400,50,400)");
    EXPECT_EQ(answer({Click, 10.0, 10.5, {400, 401, 60, 61}, 0.0}), "(0,0,0,0)");
}

// ---- The shape of a click ----

TEST_F(ClickResultsTest, UnansweredClick_BecomesABoxAroundItsCorner) {
    detect(object(Click, 10.0, 10.5, {640, 650, 400, 403}));
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (624,656,384,416)"));
    detect(0);
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (608,640,368,400)"));
}

TEST_F(ClickResultsTest, UnansweredClickUpsideDown_TakesItsUpperEdge) {
    detect(object(Click, 10.0, 10.5, {640, 650, 403, 400}));
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (624,656,384,416)"));
    // Left and right are taken as they stand.
    detect(object(Click, 10.0, 10.5, {650, 640, 400, 403}));
    EXPECT_EQ(objects().back(), "Click 10..10.5 (634,666,384,416)");
}

TEST_F(ClickResultsTest, AnswerOfOnePixel_CountsAsNone_OfTwoPixelsAsOne) {
    changingArea(10.0, 10.0, kPoint);
    detect(object(Click, 10.0, 10.5, kPoint));
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (624,656,384,416)"));

    parser = DataParser();
    changingArea(10.0, 10.0, {640, 642, 400, 401});
    detect(object(Click, 10.0, 10.5, kPoint));
    EXPECT_THAT(objects(), ElementsAre("Click 10..10.5 (640,642,400,401)"));
}

TEST_F(ClickResultsTest, AnsweredClick_IsCutToTheWindowThatItBroughtUp) {
    struct Case {
        std::uint32_t type;
        double start;
        Rectangle rect;
        bool cut;
    };
    for (const Case& c :
         {Case{ActiveWindow, 9.999, {630, 700, 390, 420}, false}, Case{ActiveWindow, 10.0, {630, 700, 390, 420}, true},
          Case{ActiveWindow, 10.25, {630, 700, 390, 420}, true},
          Case{ActiveWindow, 10.251, {630, 700, 390, 420}, false},
          Case{ActiveWindow, 10.1, {641, 700, 390, 420}, false}, // The click does not lie in it.
          Case{ActiveWindow, 10.1, {640, 641, 400, 401}, true},  //
          Case{ForeAnimate, 10.1, {630, 700, 390, 420}, false}, Case{Menu, 10.1, {630, 700, 390, 420}, false}}) {
        parser = DataParser();
        changingArea(10.0, 10.0, {620, 690, 380, 410});
        object(Click, 10.0, 10.5, kPoint);
        object(c.type, c.start, 50.0, c.rect);
        detect(0);
        const Rectangle expected = c.cut ? Rectangle{std::max(620, c.rect.left), std::min(690, c.rect.right),
                                                     std::max(380, c.rect.top), std::min(410, c.rect.bottom)}
                                         : Rectangle{620, 690, 380, 410};
        EXPECT_EQ(objects()[0], "Click 10..10.5 " + testing::text(expected)) << objects()[1];
    }
}

TEST_F(ClickResultsTest, WindowThatCutsTheClick_IsTheFirstOfTheList) {
    changingArea(10.0, 10.0, {620, 690, 380, 410});
    object(ActiveWindow, 10.2, 50.0, {630, 700, 390, 420});
    object(ActiveWindow, 10.1, 50.0, {0, 645, 0, 800});
    detect(object(DoubleClick, 10.0, 10.5, kPoint));
    EXPECT_EQ(objects().back(), "DoubleClick 10..10.5 (630,690,390,410)");
}

TEST_F(ClickResultsTest, WindowThatCutsTheClick_MayStandDirectlyBehindOneThatDoesNotHoldIt) {
    changingArea(10.0, 10.0, {620, 690, 380, 410});
    object(Click, 10.0, 10.5, kPoint);
    object(ActiveWindow, 10.1, 50.0, {650, 700, 390, 420});
    object(ActiveWindow, 10.2, 50.0, {630, 700, 390, 420});
    detect(0);
    EXPECT_EQ(objects()[0], "Click 10..10.5 (630,690,390,410)");
}

// ---- The hand-over ----

TEST_F(ClickResultsTest, Persist_HandsOverFromThePassThatStartsAtTheStop) {
    for (const auto& [start, over] : {std::pair(10.999, false), std::pair(11.0, true), std::pair(11.001, true)}) {
        parser = DataParser();
        store.valueObjects.clear();
        parser.objects.push_back({ClickDirty, 10.0, 11.0, kPoint, 2.5});
        now(start);
        parser.metaAddPersist(0, scene, store, 0);
        const std::string object = "ClickDirty 10..11 (640,641,400,401) value 2.5";
        if (over) {
            EXPECT_THAT(stored(), ElementsAre(object));
            EXPECT_EQ(parser.objects[0].type, Dead);
        } else {
            EXPECT_THAT(stored(), IsEmpty());
            EXPECT_THAT(objects(), ElementsAre(object));
        }
    }
}

TEST_F(ClickResultsTest, Persist_NeverHandsOverTheDead) {
    object(Dead, 1.0, 2.0, kPoint);
    now(50.0);
    parser.metaAddPersist(0, scene, store, 0);
    EXPECT_THAT(stored(), IsEmpty());
}

// ---- Drags ----

TEST_F(ClickResultsTest, Drag_TakesInTheHoversWithinItsTimeBehindIt) {
    object(Hover, 10.0, 11.0, {0, 5, 0, 5}); // Ahead of the drag in the list.
    object(Drag, 10.0, 12.0, {100, 200, 100, 200});
    object(Hover, 9.999, 11.0, {10, 15, 10, 15});
    object(Hover, 10.0, 12.0, {150, 250, 90, 150});
    object(HoverPopup, 10.5, 11.0, {0, 900, 0, 900});
    object(Hover, 10.5, 12.001, {20, 25, 20, 25});
    object(Click, 11.0, 11.0, kPoint);
    object(Hover, 11.5, 11.75, {300, 310, 120, 110}); // Inverted: the union does not ask.
    parser.metaDragDirty(0, scene, store, 1);
    EXPECT_THAT(objects(), ElementsAre("Hover 10..11 (0,5,0,5)", "Drag 10..12 (100,310,90,200)",
                                       "Hover 9.999..11 (10,15,10,15)", "Dead 10..12 (150,250,90,150)",
                                       "HoverPopup 10.5..11 (0,900,0,900)", "Hover 10.5..12.001 (20,25,20,25)",
                                       "Click 11..11 (640,641,400,401)", "Dead 11.5..11.75 (300,310,120,110)"));
    EXPECT_THAT(stored(), IsEmpty());
}

// ---- Strokes that nothing explains: one from 10 to 12 ----

TEST_F(ClickResultsTest, KillStrokes_AStrokeStaysWhenSomethingExplainsIt) {
    struct Case {
        std::uint32_t type;
        double start;
        double stop;
        bool stays;
    };
    for (const Case& c : {
             // A gesture that begins from the stroke's start on, less than 5 s after it.
             Case{Click, 10.0, 10.0, true},
             Case{Click, 14.999, 15.5, true},
             Case{Click, 15.0, 15.5, false},
             Case{Drag, 10.001, 10.5, true},
             Case{Drag, 14.999, 15.5, true},
             Case{Drag, 15.0, 15.5, false},
             Case{DoubleClick, 14.999, 15.5, true},
             Case{DoubleClick, 15.0, 15.5, false},
             // A click that the stroke follows by less than 5 s.
             Case{Click, 4.0, 5.001, true},
             Case{Click, 4.0, 5.0, false},
             Case{Click, 9.999, 20.0, true},
             Case{DoubleClick, 4.0, 5.001, true},
             Case{DoubleClick, 4.0, 5.0, false},
             Case{Drag, 4.0, 9.0, false},
             // A rest about the stroke's start.
             Case{MouseIdle, 10.0, 11.0, true},
             Case{MouseIdle, 12.0, 13.0, true},
             Case{MouseIdle, 12.001, 13.0, false},
             Case{MouseIdle, 9.999, 11.0, false},
             // A popup within its time.
             Case{HoverPopup, 10.0, 12.0, true},
             Case{HoverPopup, 9.999, 12.0, false},
             Case{HoverPopup, 10.0, 12.001, false},
             Case{Hover, 10.0, 12.0, false},
             // Nothing else counts.
             Case{ActiveWindow, 10.0, 12.0, false},
             Case{Menu, 10.5, 11.0, false},
             Case{ClickDirty, 10.5, 11.0, false},
             // A drag over the whole stroke kills it.
             Case{Drag, 10.0, 12.0, false},
             Case{Drag, 9.0, 13.0, false},
             Case{Drag, 10.0, 11.999, true},
         }) {
        for (const bool ahead : {true, false}) {
            parser = DataParser();
            const unsigned int first = ahead ? object(c.type, c.start, c.stop, kPoint) : 0;
            const unsigned int stroke = object(Move, 10.0, 12.0, kWindow);
            const unsigned int other = ahead ? first : object(c.type, c.start, c.stop, kPoint);
            parser.metaKillStrokes(0, scene, store, stroke);
            EXPECT_EQ(parser.objects[stroke].type, c.stays ? Move : Dead) << objects()[other];
            EXPECT_EQ(parser.objects[other].type, c.type);
        }
    }
}

TEST_F(ClickResultsTest, KillStrokes_CoveringDragKills_WhateverStandsBeforeOrBehindIt) {
    object(Click, 10.5, 10.5, kPoint);
    object(MoveIntoWindow, 10.0, 12.0, kWindow);
    object(Drag, 9.0, 13.0, kPoint);
    object(HoverPopup, 10.5, 11.0, kPoint);
    parser.metaKillStrokes(0, scene, store, 1);
    EXPECT_EQ(parser.objects[1].type, Dead);
}

TEST_F(ClickResultsTest, KillStrokes_ClickAtTheStrokesStart_ExplainsItWhereFiveSecondsAreLostInRounding) {
    // Doubles of this size are 16 apart, so that the start plus 5 s is the start itself. The click's stop lies behind it.
    object(Click, 1e17, 2e17, kPoint);
    object(Move, 1e17, 2e17, kWindow);
    parser.metaKillStrokes(0, scene, store, 1);
    EXPECT_EQ(parser.objects[1].type, Move);
}

TEST_F(ClickResultsTest, KillStrokes_LoneStrokeDies) {
    object(MoveOutOfWindow, 10.0, 12.0, kWindow);
    parser.metaKillStrokes(0, scene, store, 0);
    EXPECT_EQ(parser.objects[0].type, Dead);
    EXPECT_THAT(stored(), IsEmpty());
}

} // namespace
} // namespace OrvantaNS
