#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rectangle kScreen{0, 1280, 0, 800};
constexpr Rectangle kSpot{600, 700, 300, 400};

class Reporter : public ProgressReporter {
public:
    void reportProgress(double percent) override { percents.push_back(percent); }
    bool isCancelled() override { return cancelled; }

    std::vector<double> percents;
    bool cancelled = false;
};

class MetaPassTest : public testing::ParserTest {
protected:
    /// Sets the interval of the next pass.
    void due(double start, double stop) {
        parser.metaStartTime = ticks(start);
        parser.metaTime = ticks(stop);
    }
    void pass() { parser.fluxCapacitor(0, scene, store); }

    /// The intervals of all passes of a zone that begins at 0, as text, with the heads left as they are.
    std::vector<std::string> passes(double zoneStop) {
        store.liveZones[0].stop = zoneStop;
        due(0.0, 10.0);
        std::vector<std::string> all;
        while (parser.metaTime >= 0 && all.size() < 100) {
            const Interval_Type<long long> interval = DataParser(parser).setMetaTime(0, store);
            all.push_back(testing::text(DataParser::convertTime(interval.start)) + " to " +
                          testing::text(DataParser::convertTime(interval.stop)));
            pass();
        }
        return all;
    }

    using Texts = std::vector<std::string>;

    /// What a pass from 0 to 10 s keeps and hands over in a fresh scene that `prepare` fills.
    template <typename Prepare> std::pair<Texts, Texts> outcome(Prepare prepare) {
        parser = DataParser();
        store.valueObjects.clear();
        scene = testing::Scene();
        due(0.0, 10.0);
        prepare();
        pass();
        return {objects(), stored()};
    }
};

// ---- The beat ----

TEST_F(MetaPassTest, ZoneOf25Seconds_WithNoLocationAfterItsStop_IsClampedAndFlushed) {
    EXPECT_THAT(passes(25.0), ElementsAre("0 to 10", "10 to 20", "20 to 25", "25 to 25", "35 to 25"));
}

TEST_F(MetaPassTest, ZoneOf25Seconds_WithLocationsAfterItsStop_IsNotClamped) {
    parser.locationTime = ticks(50.0);
    EXPECT_THAT(passes(25.0), ElementsAre("0 to 10", "10 to 20", "20 to 30", "30 to 40"));
}

TEST_F(MetaPassTest, ZoneOfWholeSteps_TakesTheFlushingPass_WithOrWithoutLocations) {
    EXPECT_THAT(passes(20.0), ElementsAre("0 to 10", "10 to 20", "20 to 20", "30 to 20"));
    parser = DataParser();
    parser.locationTime = ticks(50.0);
    EXPECT_THAT(passes(20.0), ElementsAre("0 to 10", "10 to 20", "20 to 30", "30 to 30"));
}

TEST_F(MetaPassTest, WholeZone_TakesTheSamePassesInTheTimeWalk) {
    Reporter reporter;
    store.progress = &reporter;
    store.clipStop = 100.0; // A second is a fifth of a percent.
    zone(kScreen, 0.0, 25.0);
    parser.processLiveZone(0, scene, store);
    EXPECT_THAT(reporter.percents, ElementsAre(2.0, 4.0, 5.0, 5.0, 5.0));

    reporter.percents.clear();
    parser = DataParser();
    scene.cursor(50.0, 1, 1);
    parser.processLiveZone(0, scene, store);
    EXPECT_THAT(reporter.percents, ElementsAre(2.0, 4.0, 6.0, 8.0));
}

struct Heads {
    double metaTime;
    double location;
    double action;
    double caret;
    double window;
    double clamped;
};

TEST_F(MetaPassTest, SetMetaTime_ClampsToTheZonesStopUnlessALocationOrAHeadStands) {
    constexpr double kAbsent = -0.001;
    zone(kScreen, 0.0, 25.0);
    for (const Heads& h : {
             Heads{10, kAbsent, kAbsent, kAbsent, kAbsent, 10},
             Heads{25, kAbsent, kAbsent, kAbsent, kAbsent, 25},
             Heads{25.001, kAbsent, kAbsent, kAbsent, kAbsent, 25},
             Heads{30, kAbsent, kAbsent, kAbsent, kAbsent, 25},
             Heads{30, 0, 0, 0, 0, 25},                    // A head at 0 counts as absent.
             Heads{30, 27, kAbsent, kAbsent, kAbsent, 27}, // Later than the zone's stop, quite intentionally.
             Heads{30, 40, kAbsent, kAbsent, kAbsent, 30}, //
             Heads{30, 12, kAbsent, kAbsent, kAbsent, 12}, //
             Heads{30, kAbsent, 26, kAbsent, kAbsent, 25}, // Later than what stands so far.
             Heads{30, kAbsent, 24, kAbsent, kAbsent, 24}, //
             Heads{30, 40, 26, kAbsent, kAbsent, 26},      // Not later than the location.
             Heads{30, kAbsent, 20, 22, 18, 18},           //
             Heads{30, kAbsent, 20, 22, 19.999, 19.999},   //
             Heads{30, kAbsent, kAbsent, 21, 23, 21},      //
             Heads{30, kAbsent, kAbsent, kAbsent, 23, 23}, //
             Heads{30, 0.001, kAbsent, kAbsent, kAbsent, 0.001},
             Heads{30, kAbsent, 0.001, kAbsent, kAbsent, 0.001}, // One tick is the first that counts.
             Heads{30, kAbsent, kAbsent, 0.001, kAbsent, 0.001}, //
             Heads{30, kAbsent, kAbsent, kAbsent, 0.001, 0.001}, //
         }) {
        due(5.0, h.metaTime);
        const auto head = [](double time) { return time < 0 ? -1 : ticks(time); };
        parser.locationTime = head(h.location);
        parser.actionTime = head(h.action);
        parser.caretTime = head(h.caret);
        parser.foreWindowTime = head(h.window);
        const Interval_Type<long long> interval = parser.setMetaTime(0, store);
        EXPECT_EQ(interval.start, 5000);
        EXPECT_EQ(interval.stop, ticks(h.clamped));
        EXPECT_EQ(parser.metaTime, ticks(h.clamped));
        EXPECT_EQ(parser.metaStartTime, 5000);
    }
}

// ---- The bookkeeping of a pass ----

TEST_F(MetaPassTest, PassOverNothing_MovesTheSkipCursorsToItsStart_AndTheBeat) {
    for (const double t : {1.0, 5.0, 9.999, 10.0, 12.0}) {
        scene.cursor(t, 1, 1).action(t, 9).window(t, kSpot).dirty(t, kSpot).caret(t, kSpot);
        changingArea(t, t, kSpot);
    }
    due(10.0, 20.0);
    parser.strokes.push_back(strokeOver({{8.0, 5, 5}, {9.0, 5, 5}}));
    pass();
    EXPECT_EQ(parser.skipLocation, 2u);
    EXPECT_EQ(parser.skipAction, 2u);
    EXPECT_EQ(parser.skipForeWindow, 2u);
    EXPECT_EQ(parser.skipCaret, 2u);
    EXPECT_EQ(parser.skipDirtyRect, 2u);
    EXPECT_EQ(parser.skipDRObject, 2u);
    EXPECT_EQ(parser.metaStartTime, 20000);
    EXPECT_EQ(parser.metaTime, 30000);
    EXPECT_THAT(parser.strokes, IsEmpty());
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(MetaPassTest, Progress_IsReportedForThePassesEnd) {
    Reporter reporter;
    store.progress = &reporter;
    due(10.0, 30.0);
    pass();
    EXPECT_THAT(reporter.percents, ElementsAre(10.0));
}

TEST_F(MetaPassTest, Cancelling_ThrowsAfterThePassesWorkAndBeforeTheBeatMoves) {
    Reporter reporter;
    reporter.cancelled = true;
    store.progress = &reporter;
    due(10.0, 20.0);
    object(FullScreenDirty, 1.0, 2.0, kScreen);
    parser.strokes.push_back(strokeOver({{8.0, 5, 5}, {9.0, 5, 5}}));
    try {
        pass();
        FAIL() << "not cancelled";
    } catch (const OrvantaException& error) {
        EXPECT_EQ(error.errorCode(), OVERR_USER_CANCELLED);
        EXPECT_STREQ(error.what(), "Need String! User Cancelled");
    }
    EXPECT_THAT(reporter.percents, IsEmpty());
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_THAT(parser.strokes, IsEmpty());
    EXPECT_EQ(store.valueObjects.size(), 1u);
    EXPECT_EQ(parser.metaStartTime, 10000);
    EXPECT_EQ(parser.metaTime, 20000);
}

TEST_F(MetaPassTest, ObjectsAreSorted_TiesInTheirOrder_AndTheDeadRemoved) {
    due(0.0, 10.0);
    object(Drag, 3.0, 20.0, {3, 4, 0, 1});
    object(Caret, 2.0, 20.0, {0, 1, 0, 1});
    object(OffScreen, 2.5, 20.0, {});
    object(TextFocus, 2.0, 20.0, {1, 2, 0, 1});
    object(Caret, 2.0, 20.0, {2, 3, 0, 1});
    object(Menu, 30.0, 40.0, kSpot);
    object(FollowText, 1.0, 20.0, kSpot);
    pass();
    EXPECT_THAT(objects(),
                ElementsAre("FollowText 1..20 (600,700,300,400)", "Caret 2..20 (0,1,0,1)", "TextFocus 2..20 (1,2,0,1)",
                            "Caret 2..20 (2,3,0,1)", "Drag 3..20 (3,4,0,1)", "Menu 30..40 (600,700,300,400)"));
}

TEST_F(MetaPassTest, Walk_TakesObjectsUpToAndAtThePassesEnd) {
    due(0.0, 10.0);
    object(OffScreen, 9.999, 10.0, {});
    object(OffScreen, 10.0, 10.0, {});
    object(OffScreen, 10.001, 10.5, {});
    pass();
    EXPECT_THAT(objects(), ElementsAre("OffScreen 10.001..10.5 (0,0,0,0)"));
}

// ---- The table ----

// Which types a pass over one lone object of 1 to 2 s hands over once the pass has gone beyond it, and holds back while
// it has not. Everything else dies without reaching the store.
TEST_F(MetaPassTest, Table_EachTypeIsHandedOverOrDies) {
    const std::vector<std::uint32_t> persisting = {
        Move,       MoveOutOfWindow, MoveIntoWindow, Click,      DoubleClick, Drag,         Caret, TextFocus,
        FollowText, FullScreenDirty, HoverPopup,     ClickDirty, ForeAnimate, ActiveWindow, Menu,  ClickWindow};
    std::vector<std::uint32_t> all;
    for (std::uint32_t type = 0; type <= 30; ++type) {
        all.push_back(type);
    }
    all.push_back(std::numeric_limits<std::uint32_t>::max());
    for (const std::uint32_t type : all) {
        SCOPED_TRACE(objectTypeName(type));
        const bool persists = std::find(persisting.begin(), persisting.end(), type) != persisting.end();
        parser.objects.clear();
        store.valueObjects.clear();
        object(type, 1.0, 2.0, kSpot);
        due(0.0, 10.0);
        pass();
        EXPECT_EQ(store.valueObjects.size(), 0u);
        ASSERT_EQ(parser.objects.size(), persists ? 1u : 0u);
        due(5.0, 15.0);
        pass();
        EXPECT_EQ(parser.objects.size(), 0u);
        ASSERT_EQ(store.valueObjects.size(), persists ? 1u : 0u);
        if (persists) {
            EXPECT_EQ(store.valueObjects[0].type, type);
            EXPECT_EQ(store.valueObjects[0].start, 1.0);
            EXPECT_EQ(store.valueObjects[0].stop, 2.0);
        }
    }
}

TEST_F(MetaPassTest, Table_EachTypeRunsItsRules) {
    // A stroke along the bar drops a menu and hands over its hovers.
    for (const std::uint32_t type : {Move, MoveOutOfWindow, MoveIntoWindow}) {
        const auto [kept, handed] = outcome([&] {
            object(type, 1.0, 2.0, {100, 200, 10, 20});
            object(Hover, 1.5, 1.75, kSpot);
            changingArea(1.5, 1.75, {100, 300, 0, 300});
        });
        EXPECT_EQ(kept, (Texts{objectTypeName(type) + " 1..2 (100,200,10,20)", "Menu 1.5..1.75 (100,300,0,300)"}));
        EXPECT_EQ(handed, Texts{"Hover 1.5..1.75 (600,700,300,400)"});
    }
    // A click in the bar drops a menu and takes the shape of what answers it.
    for (const std::uint32_t type : {Click, DoubleClick}) {
        const auto [kept, handed] = outcome([&] {
            object(type, 1.0, 1.25, {100, 101, 10, 11});
            changingArea(1.25, 1.75, {100, 300, 0, 300});
        });
        EXPECT_EQ(kept, (Texts{objectTypeName(type) + " 1..1.25 (100,300,0,300)", "Menu 1.25..1.75 (100,300,0,300)"}));
        EXPECT_EQ(handed, Texts{});
    }
    // Hovers under a drag become part of it.
    EXPECT_EQ(outcome([&] {
                  object(Drag, 1.0, 2.0, {0, 10, 0, 10});
                  object(Hover, 1.0, 2.0, {20, 30, 0, 5});
              }).first,
              Texts{"Drag 1..2 (0,30,0,10)"});
    // A rest asks both idle rules: here the one for short rests inside the window, and the one for long rests outside.
    EXPECT_EQ(outcome([&] {
                  object(ActiveWindow, 0.0, 20.0, {500, 800, 200, 500});
                  object(MouseIdle, 1.0, 2.0, {600, 601, 300, 301});
                  changingArea(1.5, 1.5, kSpot);
              }).second,
              Texts{"IdleDirty 1.5..1.5 (600,700,300,400)"});
    EXPECT_EQ(outcome([&] {
                  object(ActiveWindow, 0.0, 20.0, {500, 800, 200, 500});
                  object(MoveOutOfWindow, 0.5, 1.0, {400, 600, 300, 301});
                  object(MouseIdle, 1.0, 4.0, {400, 401, 300, 301});
                  changingArea(1.5, 1.5, kSpot);
              }).second,
              Texts{"IdleDirty 1.5..1.5 (600,700,300,400)"});
    EXPECT_EQ(outcome([&] {
                  object(ActiveWindow, 0.0, 20.0, {500, 800, 200, 500});
                  object(OffScreen, 1.0, 2.0, {});
                  changingArea(1.5, 1.5, kSpot);
              }).second,
              Texts{"IdleDirty 1.5..1.5 (600,700,300,400)"});
    // An opening whose window stays past 10 s is kept, at once.
    EXPECT_EQ(outcome([&] {
                  object(ForeOpen, 1.0, 1.0, kSpot);
                  object(ActiveWindow, 1.0, 20.0, kSpot);
              }).second,
              Texts{"ForeOpen 1..1 (600,700,300,400)"});
    EXPECT_EQ(outcome([&] {
                  object(ForeAnimate, 1.0, 2.0, {0, 10, 0, 10});
                  object(ForeAnimate, 2.5, 3.0, {20, 30, 0, 10});
              }).first,
              Texts{"ForeAnimate 1..3 (0,30,0,10)"});
    EXPECT_EQ(outcome([&] {
                  object(ActiveWindow, 1.0, 2.0, kSpot);
                  object(ActiveWindow, 2.5, 3.0, kSpot);
              }).first,
              Texts{"ActiveWindow 1..3 (600,700,300,400)"});
    // A menu hands over its hovers as panes, and loses what its clicks changed elsewhere.
    {
        const auto [kept, handed] = outcome([&] {
            object(Menu, 1.0, 4.0, kSpot);
            object(Hover, 1.5, 1.75, {610, 620, 310, 320});
            object(Click, 2.0, 2.0, {610, 611, 310, 311});
            object(ClickDirty, 3.0, 3.0, {0, 10, 0, 10});
        });
        EXPECT_EQ(kept, (Texts{"Menu 1..4 (600,700,300,400)", "Click 2..2 (594,626,294,326)"}));
        EXPECT_EQ(handed, Texts{"Pane 1.5..1.75 (610,620,310,320)"});
    }
    // A click's window beside the cursor is a menu.
    EXPECT_EQ(outcome([&] {
                  scene.cursor(1.0, 590, 300);
                  object(ClickWindow, 0.99, 0.99, kSpot);
                  object(ActiveWindow, 1.0, 2.0, kSpot);
              }).first,
              Texts{"Menu 1..2 (600,700,300,400)"});
}

// Each scene holds what the rules of the next row would act on.
TEST_F(MetaPassTest, Table_TypeRunsNoRuleOfAnother) {
    // A rest in the bar drops no menu, as a click there would.
    EXPECT_EQ(outcome([&] {
                  object(MouseIdle, 1.0, 2.0, {100, 101, 10, 11});
                  changingArea(2.0, 2.5, {100, 300, 0, 300});
              }),
              std::pair(Texts{}, Texts{}));
    // A click takes in no hover of its time, as a drag would.
    for (const std::uint32_t type : {Click, DoubleClick}) {
        EXPECT_EQ(outcome([&] {
                      object(type, 1.0, 1.25, {640, 641, 400, 401});
                      object(Hover, 1.0, 1.25, {20, 30, 0, 5});
                  }),
                  std::pair(Texts{objectTypeName(type) + " 1..1.25 (624,656,384,416)"}, Texts{}));
    }
    // An opening joins no animation, as another animation would.
    EXPECT_EQ(outcome([&] {
                  object(ForeOpen, 1.0, 1.0, {0, 10, 0, 10});
                  object(ForeAnimate, 1.5, 3.0, kSpot);
              }),
              std::pair(Texts{"ForeAnimate 1.5..3 (600,700,300,400)"}, Texts{}));
    // An absence makes no menu of a window beside the cursor, as a click's window would.
    EXPECT_EQ(outcome([&] {
                  scene.cursor(1.0, 590, 300);
                  object(OffScreen, 0.99, 0.99, {});
                  object(ActiveWindow, 1.0, 2.0, kSpot);
              }),
              std::pair(Texts{"ActiveWindow 1..2 (600,700,300,400)"}, Texts{}));
}

TEST_F(MetaPassTest, PaneOfAWindow_ReachesTheStoreOnlyInTheTurnThatMadeIt) {
    const auto windowInAWindow = [this](double outerStop, double innerStop) {
        parser.objects.clear();
        store.valueObjects.clear();
        object(ActiveWindow, 1.0, outerStop, {500, 800, 200, 500});
        object(ActiveWindow, 2.5, innerStop, kSpot);
    };
    // The outer window is held back, the pane over already; the outer window now ends with it.
    windowInAWindow(6.0, 4.0);
    due(5.0, 15.0);
    pass();
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..4 (500,800,200,500)"));
    EXPECT_THAT(stored(), ElementsAre("Pane 2.5..4 (600,700,300,400)"));

    // Held back by its stop, the pane is met as a pane by the next pass, and dies.
    windowInAWindow(2.0, 6.0);
    due(1.5, 5.0);
    pass();
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..6 (500,800,200,500)", "Pane 2.5..6 (600,700,300,400)"));
    due(7.0, 15.0);
    pass();
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_THAT(stored(), ElementsAre("ActiveWindow 1..6 (500,800,200,500)"));

    // A window handed over before its inner one is met takes in nothing.
    windowInAWindow(2.0, 4.0);
    due(5.0, 15.0);
    pass();
    EXPECT_THAT(stored(), ElementsAre("ActiveWindow 1..2 (500,800,200,500)", "ActiveWindow 2.5..4 (600,700,300,400)"));
}

// ---- Menus that drop during the walk ----

// The click's menu stands behind it when the walk gets there, ahead of the hover, which it takes as its pane. The click
// itself takes the area's place.
TEST_F(MetaPassTest, MenuOfAClick_TakesItsHoverInTheSamePass) {
    due(10.0, 20.0);
    object(Click, 9.5, 10.0, {100, 101, 10, 11});
    object(Hover, 11.0, 12.0, {110, 150, 50, 70});
    changingArea(10.0, 13.0, {90, 290, 0, 300});
    pass();
    EXPECT_THAT(stored(), ElementsAre("Click 9.5..10 (90,290,0,300)", "Pane 11..12 (110,150,50,70)"));
    EXPECT_THAT(objects(), ElementsAre("Menu 10..13 (90,290,0,300)"));
}

// The new menu begins behind the pass's end and so ends the walk, although the object behind it begins before that end:
// an object off screen, which the walk would remove.
TEST_F(MetaPassTest, MenuThatBeginsBehindThePass_EndsTheWalk) {
    due(0.0, 10.0);
    object(Click, 9.5, 10.0, {100, 101, 10, 11});
    object(OffScreen, 9.9, 9.95, {5, 6, 5, 6});
    changingArea(10.2, 13.0, {90, 290, 0, 300});
    pass();
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_THAT(objects(), ElementsAre("Click 9.5..10 (90,290,0,300)", "Menu 10.2..13 (90,290,0,300)",
                                       "OffScreen 9.9..9.95 (5,6,5,6)"));
}

// ---- The life of a click ----

TEST_F(MetaPassTest, ClickWithNoAnswer_MovesItsBoxOnTheSecondPass_AndIsHandedOver) {
    due(10.0, 20.0);
    object(Click, 12.0, 12.125, {640, 641, 400, 401});
    pass();
    EXPECT_THAT(objects(), ElementsAre("Click 12..12.125 (624,656,384,416)"));
    EXPECT_THAT(stored(), IsEmpty());
    pass();
    EXPECT_THAT(objects(), IsEmpty());
    // A box of 32 whose bottom right corner is the click point.
    EXPECT_THAT(stored(), ElementsAre("Click 12..12.125 (608,640,368,400)"));
}

TEST_F(MetaPassTest, ClickThatWaitsThroughThreePasses_IsReshapedAtEach) {
    due(10.0, 20.0);
    object(Click, 12.0, 25.0, {640, 641, 400, 401});
    pass();
    pass();
    EXPECT_THAT(objects(), ElementsAre("Click 12..25 (608,640,368,400)"));
    pass();
    EXPECT_THAT(stored(), ElementsAre("Click 12..25 (592,624,352,384)"));
}

TEST_F(MetaPassTest, ClickIsAnsweredOnTheSecondPass_WhenItsBoxReachesTheArea) {
    due(10.0, 20.0);
    object(Click, 12.0, 12.125, {640, 641, 400, 401});
    changingArea(12.25, 12.25, {650, 690, 410, 430}); // 9 pixels from the point, within the first box.
    pass();
    EXPECT_THAT(objects(), ElementsAre("Click 12..12.125 (624,656,384,416)"));
    pass();
    EXPECT_THAT(stored(),
                ElementsAre("Click 12..12.125 (650,690,410,430)", "ClickDirty 12.25..12.25 (650,690,410,430)"));
}

TEST_F(MetaPassTest, ClickGetsItsResultsOnce_InTheFirstPassThatStartsAtItsEnd) {
    due(10.0, 20.0);
    object(Click, 19.0, 20.0, {640, 641, 400, 401});
    object(ActiveWindow, 20.0, 55.0, {100, 500, 100, 500});
    changingArea(20.5, 20.5, {900, 950, 500, 550});
    pass();
    EXPECT_THAT(objects(), ElementsAre("Click 19..20 (624,656,384,416)", "ActiveWindow 20..55 (100,500,100,500)"));
    pass();
    EXPECT_THAT(stored(), ElementsAre("Click 19..20 (608,640,368,400)", "ClickWindow 19.99..19.99 (100,500,100,500)"));
    EXPECT_THAT(objects(),
                ElementsAre("ActiveWindow 20..55 (100,500,100,500)", "ClickDirty 20.5..20.5 (900,950,500,550)"));
    pass();
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 20..55 (100,500,100,500)"));
    EXPECT_EQ(store.valueObjects.size(), 3u);
}

TEST_F(MetaPassTest, ClickFromPressToKeyframeObject_ThroughTheWholeZone) {
    // Press and release at second 12 with the cursor resting at (640, 400) and nothing changing.
    scene.cursor(11.0, 640, 400).action(12.0, 0).action(12.125, 1).cursor(59.0, 640, 400);
    parser.processLiveZone(0, scene, store);
    EXPECT_THAT(stored(), ElementsAre("Click 12..12.125 (608,640,368,400)"));
    EXPECT_THAT(objects(), IsEmpty());
}

// ---- Full-screen changes ----

class FullScreenTest : public MetaPassTest {
protected:
    void find(double start, double stop) { parser.findFullScreenDR(scene, store, {ticks(start), ticks(stop)}); }
};

TEST_F(FullScreenTest, FrameOfTheWholeRegion_IsAFullScreenChange) {
    changingArea(3.0, 5.0, kScreen);
    find(0.0, 10.0);
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 3..5 (0,1280,0,800)"));
}

TEST_F(FullScreenTest, FrameMustBeSeenLastWithinTheInterval_EndsIncluded) {
    changingArea(3.0, 5.0, kScreen);
    for (const auto& [start, stop, expected] :
         {std::tuple(0.0, 4.999, ""), std::tuple(0.0, 5.0, "FullScreenDirty 3..5"),
          std::tuple(4.0, 6.0, "FullScreenDirty 4..5"), std::tuple(5.0, 5.0, ""),
          std::tuple(4.999, 9.0, "FullScreenDirty 4.999..5"), std::tuple(5.0, 9.0, ""), std::tuple(5.001, 9.0, "")}) {
        parser.objects.clear();
        find(start, stop);
        const std::string rect = " (0,1280,0,800)";
        if (*expected == '\0') {
            EXPECT_THAT(objects(), IsEmpty()) << start;
        } else {
            EXPECT_THAT(objects(), ElementsAre(expected + rect));
        }
    }
}

TEST_F(FullScreenTest, MomentAtTheIntervalsStart_IsFound) {
    changingArea(5.0, 5.0, kScreen);
    find(5.0, 10.0);
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 5..5 (0,1280,0,800)"));
}

TEST_F(FullScreenTest, EachFullFrame_LastsFromTheFrameBefore) {
    changingArea(3.0, 8.0, kScreen, {{4000, kScreen}, {6000, kSpot}, {8000, kScreen}});
    find(0.0, 10.0);
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 3..4 (0,1280,0,800)", "FullScreenDirty 6..8 (0,1280,0,800)"));
}

TEST_F(FullScreenTest, FramesOutsideTheInterval_AreLeftOut_AndTheFirstIsCutAtItsStart) {
    changingArea(1.0, 12.0, kScreen, {{2000, kScreen}, {7000, kScreen}, {12000, kScreen}});
    find(5.0, 10.0);
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 5..7 (0,1280,0,800)"));
}

TEST_F(FullScreenTest, BoundsAndFrameMustBothEqualTheFirstRegion) {
    scene.region(20.0, kSpot);
    changingArea(3.0, 5.0, {-1, 1280, 0, 800}, {{4000, kScreen}, {5000, {-1, 1280, 0, 800}}});
    changingArea(3.0, 5.0, kScreen, {{4000, {0, 1280, 0, 500}}, {5000, {0, 1280, 300, 800}}});
    changingArea(3.0, 5.0, kSpot);
    find(0.0, 10.0);
    EXPECT_THAT(objects(), IsEmpty());
}

TEST_F(FullScreenTest, RectangleIsTheRegionWithinTheZoneInWork_EvenWhenNothingRemains) {
    store.liveZones.push_back({{100, 500, 50, 300}, 0.0, 60.0});
    store.liveZones.push_back({{1300, 1400, 50, 300}, 0.0, 60.0});
    changingArea(3.0, 5.0, kScreen);
    store.currentZone = 1;
    find(0.0, 10.0);
    store.currentZone = 2;
    find(0.0, 10.0);
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 3..5 (0,400,0,250)", "FullScreenDirty 3..5 (0,-20,0,250)"));
}

TEST_F(FullScreenTest, PassTakesItThroughToTheStore) {
    due(0.0, 10.0);
    changingArea(3.0, 5.0, kScreen);
    pass();
    EXPECT_THAT(objects(), ElementsAre("FullScreenDirty 3..5 (0,1280,0,800)"));
    pass();
    EXPECT_THAT(stored(), ElementsAre("FullScreenDirty 3..5 (0,1280,0,800)"));
}

} // namespace
} // namespace OrvantaNS
