#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rectangle kOuter{100, 900, 100, 700};
constexpr Rectangle kInner{200, 400, 200, 400};

class WindowRulesTest : public testing::ParserTest {
protected:
    void pane(unsigned int index) { parser.metaWindowPane(0, scene, store, index); }
    void join(unsigned int index) { parser.metaJoinAnimatedWindows(0, scene, store, index); }
    void killPop(unsigned int index) { parser.metaKillPopWindow(0, scene, store, index); }
};

// ---- Panes ----

TEST_F(WindowRulesTest, Pane_FirstObjectOfTheList_IsLeftAlone) {
    pane(object(ActiveWindow, 1.0, 2.0, kInner));
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..2 (200,400,200,400)"));
}

TEST_F(WindowRulesTest, Pane_WindowWithinTheOneBefore_ContinuesIt) {
    object(ActiveWindow, 1.0, 2.0, kOuter);
    pane(object(ActiveWindow, 2.5, 4.0, kInner));
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..4 (100,900,100,700)", "Pane 2.5..4 (200,400,200,400)"));
}

TEST_F(WindowRulesTest, Pane_OuterWindowsStop_MayMoveBack) {
    object(ActiveWindow, 1.0, 9.0, kOuter);
    pane(object(ActiveWindow, 2.5, 4.0, {100, 900, 100, 699}));
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..4 (100,900,100,700)", "Pane 2.5..4 (100,900,100,699)"));
}

TEST_F(WindowRulesTest, Pane_SameWindowAgain_MergesIntoTheFirst) {
    object(ActiveWindow, 1.0, 2.0, kOuter);
    pane(object(ActiveWindow, 2.5, 4.0, kOuter));
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..4 (100,900,100,700)", "Dead 2.5..4 (100,900,100,700)"));
}

TEST_F(WindowRulesTest, Pane_MustBeginWithinASecondOfTheOuterStop) {
    for (const auto& [start, continues] : {std::pair(2.999, true), std::pair(3.0, false), std::pair(3.001, false)}) {
        parser = DataParser();
        object(ActiveWindow, 1.0, 2.0, kOuter);
        pane(object(ActiveWindow, start, 4.0, kInner));
        EXPECT_EQ(parser.objects[1].type, continues ? Pane : ActiveWindow) << start;
        EXPECT_EQ(parser.objects[0].stop, continues ? 4.0 : 2.0) << start;
    }
}

TEST_F(WindowRulesTest, Pane_MustLieInTheOuterWhole) {
    for (const Rectangle& rect : {Rectangle{99, 400, 200, 400}, Rectangle{200, 901, 200, 400},
                                  Rectangle{200, 400, 99, 400}, Rectangle{200, 400, 200, 701}}) {
        parser = DataParser();
        object(ActiveWindow, 1.0, 2.0, kOuter);
        pane(object(ActiveWindow, 2.5, 4.0, rect));
        EXPECT_EQ(parser.objects[1].type, ActiveWindow) << testing::text(rect);
        EXPECT_EQ(parser.objects[0].stop, 2.0);
    }
}

TEST_F(WindowRulesTest, Pane_AnimationOrWindowInBetween_HidesTheOuter_OthersDoNot) {
    for (const auto& [type, hides] :
         {std::pair(ForeAnimate, true), std::pair(ActiveWindow, true), std::pair(ForeOpen, false),
          std::pair(Dead, false), std::pair(Menu, false), std::pair(FullScreenDirty, false), std::pair(Pane, false)}) {
        parser = DataParser();
        object(ActiveWindow, 1.0, 2.0, kOuter);
        object(type, 2.25, 2.25, {950, 990, 10, 50});
        pane(object(ActiveWindow, 2.5, 4.0, kInner));
        EXPECT_EQ(parser.objects[2].type, hides ? ActiveWindow : Pane) << objectTypeName(type);
    }
}

TEST_F(WindowRulesTest, Pane_OfTheLaterOfTwoOuterWindows) {
    object(ActiveWindow, 1.0, 2.25, kOuter);
    object(ActiveWindow, 2.0, 2.25, {0, 1280, 0, 800});
    pane(object(ActiveWindow, 2.5, 4.0, kInner));
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..2.25 (100,900,100,700)", "ActiveWindow 2..4 (0,1280,0,800)",
                                       "Pane 2.5..4 (200,400,200,400)"));
}

TEST_F(WindowRulesTest, Pane_OuterOfAnotherType_IsNone) {
    object(ForeAnimate, 1.0, 2.0, kOuter);
    pane(object(ActiveWindow, 2.5, 4.0, kInner));
    EXPECT_EQ(parser.objects[1].type, ActiveWindow);
}

TEST_F(WindowRulesTest, Pane_WindowsBehindIt_DoNotCount) {
    object(ForeOpen, 1.0, 1.0, kOuter);
    pane(object(ActiveWindow, 2.5, 4.0, kInner));
    object(ActiveWindow, 2.5, 4.0, kOuter);
    EXPECT_EQ(parser.objects[1].type, ActiveWindow);
}

// ---- Animations ----

TEST_F(WindowRulesTest, Join_AnimationThatFollowsWithinASecond) {
    for (const auto& [start, joins] : {std::pair(2.5, true), std::pair(3.0, true), std::pair(3.01, false)}) {
        parser = DataParser();
        object(ForeAnimate, 1.0, 2.0, kInner);
        object(ForeAnimate, start, 3.5, {350, 500, 100, 300});
        join(0);
        EXPECT_EQ(objects()[0], joins ? "ForeAnimate 1..3.5 (200,500,100,400)" : "ForeAnimate 1..2 (200,400,200,400)");
        EXPECT_EQ(parser.objects[1].type, joins ? Dead : ForeAnimate) << start;
    }
}

TEST_F(WindowRulesTest, Join_StopsAtAWindowOrAFullScreenChange_NotAtOthers) {
    for (const auto& [type, stops] : {std::pair(ActiveWindow, true), std::pair(FullScreenDirty, true),
                                      std::pair(ForeOpen, false), std::pair(Menu, false), std::pair(Dead, false)}) {
        parser = DataParser();
        object(ForeAnimate, 1.0, 2.0, kInner);
        object(type, 2.25, 2.25, kOuter);
        object(ForeAnimate, 2.5, 3.5, kInner);
        join(0);
        EXPECT_EQ(parser.objects[2].type, stops ? ForeAnimate : Dead) << objectTypeName(type);
    }
}

TEST_F(WindowRulesTest, Join_TakesTheNextOneOnly_AndItsStopEvenWhenEarlier) {
    object(ForeAnimate, 1.0, 4.0, kInner);
    object(ForeAnimate, 2.0, 3.0, kInner);
    object(ForeAnimate, 2.5, 5.0, kInner);
    join(0);
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 1..3 (200,400,200,400)", "Dead 2..3 (200,400,200,400)",
                                       "ForeAnimate 2.5..5 (200,400,200,400)"));
}

TEST_F(WindowRulesTest, Join_HandsOverASecondAfterTheStop_TheJoinedOne) {
    for (const auto& [start, over] : {std::pair(2.999, false), std::pair(3.0, true)}) {
        parser = DataParser();
        store.valueObjects.clear();
        parser.metaStartTime = ticks(start);
        join(object(ForeAnimate, 1.0, 2.0, kInner));
        EXPECT_EQ(parser.objects[0].type, over ? Dead : ForeAnimate) << start;
        EXPECT_EQ(store.valueObjects.size(), over ? 1u : 0u) << start;
    }
    parser = DataParser();
    store.valueObjects.clear();
    parser.metaStartTime = ticks(4.0);
    object(ForeAnimate, 1.0, 2.0, kInner);
    object(ForeAnimate, 3.0, 3.001, kInner);
    join(0);
    EXPECT_THAT(stored(), IsEmpty());
    parser.metaStartTime = ticks(4.001);
    join(0);
    EXPECT_THAT(stored(), ElementsAre("ForeAnimate 1..3.001 (200,400,200,400)"));
    EXPECT_EQ(parser.objects[0].type, Dead);
}

// ---- Openings ----

TEST_F(WindowRulesTest, KillPop_KeepsAnOpeningWhoseWindowStopsTenSecondsIntoTheRecording) {
    for (const auto& [stop, kept] : {std::pair(9.999, false), std::pair(10.0, true), std::pair(50.0, true)}) {
        parser = DataParser();
        store.valueObjects.clear();
        object(ActiveWindow, 1.0, stop, kInner);
        killPop(object(ForeOpen, 1.0, 1.0, kInner));
        EXPECT_EQ(parser.objects[1].type, Dead);
        EXPECT_EQ(stored(),
                  kept ? std::vector<std::string>{"ForeOpen 1..1 (200,400,200,400)"} : std::vector<std::string>{})
            << stop;
    }
}

TEST_F(WindowRulesTest, KillPop_FlashLateInTheRecording_IsKept) {
    object(ForeOpen, 20.0, 20.0, kInner);
    object(ActiveWindow, 20.0, 20.0, kInner);
    killPop(0);
    EXPECT_EQ(store.valueObjects.size(), 1u);
}

TEST_F(WindowRulesTest, KillPop_WindowMustBeginFromTheOpeningOn_WithTheSameRectangle) {
    struct Case {
        std::uint32_t type;
        double start;
        Rectangle rect;
        bool kept;
    };
    for (const Case& c : {Case{ActiveWindow, 19.999, kInner, false}, Case{ActiveWindow, 20.0, kInner, true},
                          Case{ActiveWindow, 22.999, kInner, true}, Case{ActiveWindow, 23.0, kInner, false},
                          Case{ActiveWindow, 20.0, kOuter, false}, Case{ForeAnimate, 20.0, kInner, false},
                          Case{Dead, 20.0, kInner, false}}) {
        parser = DataParser();
        store.valueObjects.clear();
        object(ForeOpen, 20.0, 20.0, kInner);
        object(c.type, c.start, 30.0, c.rect);
        killPop(0);
        EXPECT_EQ(store.valueObjects.size(), c.kept ? 1u : 0u) << objects()[1];
        EXPECT_EQ(parser.objects[0].type, Dead);
    }
}

TEST_F(WindowRulesTest, KillPop_RepeatsOfTheOpeningDie_WithinThreeSeconds) {
    struct Case {
        std::uint32_t type;
        double start;
        Rectangle rect;
        bool dies;
    };
    for (const Case& c :
         {Case{ForeOpen, 0.999, kInner, false}, Case{ForeOpen, 1.0, kInner, true}, Case{ForeOpen, 3.999, kInner, true},
          Case{ForeOpen, 4.0, kInner, false}, Case{ForeOpen, 2.0, kOuter, false}, Case{Menu, 2.0, kInner, false}}) {
        for (const bool ahead : {true, false}) {
            parser = DataParser();
            if (ahead) {
                object(c.type, c.start, c.start, c.rect);
            }
            const unsigned int opening = object(ForeOpen, 1.0, 1.0, kInner);
            if (!ahead) {
                object(c.type, c.start, c.start, c.rect);
            }
            killPop(opening);
            EXPECT_EQ(parser.objects[1 - opening].type, c.dies ? Dead : c.type) << c.start;
            EXPECT_EQ(parser.objects[opening].type, Dead);
        }
    }
}

TEST_F(WindowRulesTest, KillPop_MatchedWindow_PushesTheLimitFarAhead) {
    // Up to the window the limit is 1 + 3; from then on its stop is added to that: 4 + 2 = 6.
    object(ForeOpen, 1.0, 1.0, kInner);
    object(ForeOpen, 4.5, 4.5, kInner); // Met before the window.
    object(ActiveWindow, 1.0, 2.0, kInner);
    object(ForeOpen, 5.999, 5.999, kInner);
    object(ForeOpen, 6.0, 6.0, kInner);
    object(ActiveWindow, 5.999, 11.0, kInner); // Limit 15.
    object(ForeOpen, 14.999, 14.999, kInner);
    object(ForeOpen, 15.0, 15.0, kInner);
    killPop(0);
    EXPECT_THAT(objects(), ElementsAre("Dead 1..1 (200,400,200,400)", "ForeOpen 4.5..4.5 (200,400,200,400)",
                                       "ActiveWindow 1..2 (200,400,200,400)", "Dead 5.999..5.999 (200,400,200,400)",
                                       "ForeOpen 6..6 (200,400,200,400)", "ActiveWindow 5.999..11 (200,400,200,400)",
                                       "Dead 14.999..14.999 (200,400,200,400)", "ForeOpen 15..15 (200,400,200,400)"));
    EXPECT_THAT(stored(), ElementsAre("ForeOpen 1..1 (200,400,200,400)"));
}

TEST_F(WindowRulesTest, KillPop_WindowBeyondTheLimit_EndsTheScan) {
    object(ForeOpen, 1.0, 1.0, kInner);
    object(ActiveWindow, 4.0, 50.0, kInner);
    object(ForeOpen, 2.0, 2.0, kInner);
    object(ActiveWindow, 1.0, 50.0, kInner);
    killPop(0);
    EXPECT_EQ(parser.objects[2].type, ForeOpen);
    EXPECT_THAT(stored(), IsEmpty());
}

TEST_F(WindowRulesTest, KillPop_LastMatchedWindowDecides) {
    object(ForeOpen, 1.0, 1.0, kInner);
    object(ActiveWindow, 1.0, 12.0, kInner);
    object(ActiveWindow, 1.5, 9.0, kInner);
    killPop(0);
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(parser.objects[0].type, Dead);
}

} // namespace
} // namespace OrvantaNS
