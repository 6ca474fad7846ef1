#include <random>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Four windows well below the menu bar. B lies outside the union of A and C, so that a union tells whether it is in.
constexpr Rectangle kA{100, 500, 100, 400};
constexpr Rectangle kB{150, 550, 120, 520};
constexpr Rectangle kC{200, 600, 140, 440};
constexpr Rectangle kD{40, 90, 600, 650};
constexpr Rectangle kE{700, 800, 200, 300};
constexpr Rectangle kNone{};

class ForegroundWindowsTest : public testing::ParserTest {
protected:
    struct Window {
        double time;
        Rectangle rect;
    };
    /// Adds the samples and reads one run.
    void run(std::initializer_list<Window> samples) {
        for (const Window& w : samples) {
            scene.window(w.time, w.rect);
        }
        nextRun();
    }
    void nextRun() { parser.processForeWindow(0, scene, store); }
};

TEST_F(ForegroundWindowsTest, OneSample_IsAWindowAndItsOpening_OfNoLength) {
    run({{2.0, kA}});
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 2..2 (100,500,100,400)", "ForeOpen 2..2 (100,500,100,400)"));
    EXPECT_EQ(parser.nextForeWindow, 1u);
}

TEST_F(ForegroundWindowsTest, EmptySamplesAtTheFront_AreSteppedOver) {
    run({{0.0, kNone}, {0.5, {300, 200, 10, 20}}, {1.0, kA}});
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..1 (100,500,100,400)", "ForeOpen 1..1 (100,500,100,400)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(ForegroundWindowsTest, StreamOfEmptySamplesOnly_ReturnsPastTheEndWithNothing) {
    run({{0.0, kNone}, {1.0, kNone}});
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(parser.nextForeWindow, 2u);
    nextRun();
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, NoRecordingRegion_IsOutOfRange_EvenWithNoSampleLeft) {
    scene.params().recordingRegions().clear();
    EXPECT_THROW(nextRun(), std::out_of_range);
    scene.window(1.0, kA);
    EXPECT_THROW(nextRun(), std::out_of_range);
    EXPECT_THAT(objects(), IsEmpty());
}

TEST_F(ForegroundWindowsTest, WindowOfThreeSeconds_EndsAtItsLastSample_AndTheNextRunOpensAtTheChange) {
    run({{0.0, kA}, {1.0, kA}, {3.0, kA}, {3.125, kB}});
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 0..3 (100,500,100,400)", "ForeOpen 0..0 (100,500,100,400)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
    parser.objects.clear();
    nextRun();
    EXPECT_THAT(objects(),
                ElementsAre("ActiveWindow 3.125..3.125 (150,550,120,520)", "ForeOpen 3.125..3.125 (150,550,120,520)"));
    EXPECT_EQ(parser.nextForeWindow, 4u);
}

TEST_F(ForegroundWindowsTest, WindowHeldForTwoSeconds_IsFinalAtTheFirstChange) {
    // The sample after B is a second change, which would make an animation of the run if it went on.
    struct Case {
        double held;
        const char* first;
        unsigned int next;
    };
    for (const Case& c : {Case{1.999, "ForeAnimate 0..1.999 (100,600,100,440)", 3u},
                          Case{2.0, "ActiveWindow 0..2 (100,500,100,400)", 2u},
                          Case{2.001, "ActiveWindow 0..2.001 (100,500,100,400)", 2u}}) {
        scene = testing::Scene();
        parser = DataParser();
        run({{0.0, kA}, {c.held, kA}, {2.1, kB}, {2.2, kC}});
        EXPECT_EQ(objects().front(), c.first);
        EXPECT_EQ(parser.nextForeWindow, c.next) << c.first;
    }
}

TEST_F(ForegroundWindowsTest, TimeHeld_IsCountedBetweenRepeats_NotToTheChange) {
    // 1 s of repeats, then 4 s of silence: the change still begins a possible animation.
    run({{0.0, kA}, {1.0, kA}, {5.0, kB}, {5.125, kC}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..1 (100,600,100,440)"));
}

TEST_F(ForegroundWindowsTest, ThereAndBackAgain_IsAnAnimationThatLeavesTheMiddleOut) {
    run({{0.0, kA}, {0.125, kB}, {0.25, kA}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0 (100,500,100,400)"));
    // The last sample opens one further run by itself.
    EXPECT_EQ(parser.nextForeWindow, 2u);
    parser.objects.clear();
    nextRun();
    EXPECT_THAT(objects(),
                ElementsAre("ActiveWindow 0.25..0.25 (100,500,100,400)", "ForeOpen 0.25..0.25 (100,500,100,400)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(ForegroundWindowsTest, Animation_UnitesTheStartAndEverythingFromTheSecondChangeOn) {
    run({{0.0, kA}, {0.125, kE}, {0.25, kC}, {0.375, kD}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0.375 (40,600,100,650)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(ForegroundWindowsTest, Animation_MakesNoOpening_AndLeavesTheLastWindowAlone) {
    parser.lastWindow = {ActiveWindow, 1.0, 2.0, kD, 0.0};
    run({{3.0, kA}, {3.125, kB}, {3.25, kC}});
    EXPECT_EQ(parser.objects.size(), 1u);
    EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 1..2 (40,90,600,650)");
}

TEST_F(ForegroundWindowsTest, ChangeThatIsFollowedByAQuarterSecondOfRest_IsASwitch) {
    struct Case {
        double rest;
        const char* window;
        unsigned int next;
    };
    // Below the quarter second the run goes on over the repeat, and runs off the end.
    for (const Case& c : {Case{0.249, "ActiveWindow 0..0.249 (100,500,100,400)", 2u},
                          Case{0.25, "ActiveWindow 0..0 (100,500,100,400)", 1u},
                          Case{0.251, "ActiveWindow 0..0 (100,500,100,400)", 1u}}) {
        scene = testing::Scene();
        parser = DataParser();
        run({{0.0, kA}, {0.1, kB}, {c.rest, kB}});
        EXPECT_EQ(objects().front(), c.window);
        EXPECT_EQ(parser.nextForeWindow, c.next) << c.window;
    }
}

TEST_F(ForegroundWindowsTest, Switch_OpensTheNextRunAtTheNewWindow) {
    run({{0.0, kA}, {0.125, kB}, {1.0, kB}});
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 0..0 (100,500,100,400)", "ForeOpen 0..0 (100,500,100,400)"));
    EXPECT_EQ(parser.nextForeWindow, 1u);
    parser.objects.clear();
    nextRun();
    EXPECT_THAT(objects(),
                ElementsAre("ActiveWindow 0.125..1 (150,550,120,520)", "ForeOpen 0.125..0.125 (150,550,120,520)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
    nextRun();
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(ForegroundWindowsTest, SwitchIsTimedFromTheLastRepeatBeforeTheChange) {
    // The change comes 0.5 s after the last A, its repeat 0.75 s after it: finished, and the window ends at 1.
    run({{0.0, kA}, {1.0, kA}, {1.5, kB}, {1.75, kB}});
    EXPECT_EQ(objects().front(), "ActiveWindow 0..1 (100,500,100,400)");
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, SecondChangeAfterAnyTime_MakesAnAnimation) {
    run({{0.0, kA}, {0.125, kB}, {9.0, kC}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0 (100,600,100,440)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, RepeatBetweenTwoChanges_MovesTheAnimationsEnd) {
    run({{0.0, kA}, {0.125, kB}, {0.2, kB}, {0.25, kC}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0.2 (100,600,100,440)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(ForegroundWindowsTest, AnimationThatRestsAQuarterSecond_EndsOneChangeBack) {
    struct Case {
        double rest;
        const char* animation;
        unsigned int next;
    };
    // The end that the rest is timed from is that of the change before, at 0.3.
    for (const Case& c : {Case{0.549, "ForeAnimate 0..0.549 (40,800,100,650)", 5u},
                          Case{0.55, "ForeAnimate 0..0.3 (40,800,100,650)", 4u},
                          Case{0.551, "ForeAnimate 0..0.3 (40,800,100,650)", 4u}}) {
        scene = testing::Scene();
        parser = DataParser();
        run({{0.0, kA}, {0.1, kB}, {0.2, kC}, {0.3, kD}, {0.4, kE}, {c.rest, kE}});
        EXPECT_THAT(objects(), ElementsAre(c.animation));
        EXPECT_EQ(parser.nextForeWindow, c.next) << c.animation;
    }
}

TEST_F(ForegroundWindowsTest, AnimationThatEndsAtItsSecondChange_ResumesThere) {
    run({{0.0, kA}, {0.125, kB}, {0.25, kC}, {0.5, kC}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0 (100,600,100,440)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, EmptySampleInARun_EndsItThere) {
    run({{0.0, kA}, {1.0, kA}, {2.0, kNone}, {3.0, kB}});
    EXPECT_EQ(objects().front(), "ActiveWindow 0..1 (100,500,100,400)");
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, EmptySampleWithAChangePending_PassesTheChangeOver) {
    run({{0.0, kA}, {0.125, kB}, {0.1875, kNone}, {0.25, kC}});
    EXPECT_EQ(objects().front(), "ActiveWindow 0..0 (100,500,100,400)");
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(ForegroundWindowsTest, EmptySampleInAnAnimation_EndsItThere) {
    run({{0.0, kA}, {0.125, kB}, {0.25, kC}, {0.375, kD}, {0.5, kNone}});
    EXPECT_THAT(objects(), ElementsAre("ForeAnimate 0..0.375 (40,600,100,650)"));
    EXPECT_EQ(parser.nextForeWindow, 4u);
}

TEST_F(ForegroundWindowsTest, Window_IsCutToTheZone_AndRememberedSo) {
    zone({200, 1000, 150, 700});
    run({{1.0, kA}, {2.0, kA}});
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..2 (0,300,0,250)", "ForeOpen 1..1 (0,300,0,250)"));
    EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 1..2 (0,300,0,250)");
}

TEST_F(ForegroundWindowsTest, WindowOutsideTheZone_HasNoEffectButTheStep) {
    zone({600, 1000, 150, 700});
    parser.lastWindow = {ActiveWindow, 1.0, 2.0, kD, 0.0};
    run({{3.0, kA}, {4.0, kA}});
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 1..2 (40,90,600,650)");
    EXPECT_EQ(parser.nextForeWindow, 1u);
}

TEST_F(ForegroundWindowsTest, WindowUnderTheBar_IsAMenuUnlessTheFlagIsSet) {
    const Rectangle menu{100, 300, 0, 320};
    changingArea(1.0, 1.0, menu);
    scene.cursor(1.0, 150, 10);
    run({{1.0, menu}, {2.0, menu}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..2 (100,300,0,320)"));

    parser.objects.clear();
    parser.nextForeWindow = 0;
    scene.params().setWindowsFlag(true);
    nextRun();
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..2 (100,300,0,320)", "ForeOpen 1..1 (100,300,0,320)"));
}

TEST_F(ForegroundWindowsTest, MenuTest_IsMadeOnTheFirstSampleOfARunOnly) {
    const Rectangle menu{100, 300, 0, 320};
    changingArea(1.25, 1.25, menu);
    scene.cursor(1.25, 150, 10);
    // At 1.0 the area has not changed yet within a quarter second of it; the menu sample is a plain change.
    run({{0.5, kA}, {1.25, menu}, {1.5, menu}});
    EXPECT_EQ(objects().front(), "ActiveWindow 0.5..0.5 (100,500,100,400)");
    parser.objects.clear();
    nextRun();
    EXPECT_EQ(objects().front(), "Menu 1.25..1.5 (100,300,0,320)");
}

// One run read word for word, without menus: the type, rectangle and times of its object and where the next run opens.
struct WindowRun {
    OV_VALUE_OBJECT object;
    unsigned int next = 0;
};

WindowRun readRun(const std::vector<OV_TIME_RECT>& stream, unsigned int c) {
    const unsigned int size = static_cast<unsigned int>(stream.size());
    const auto seconds = [](long long ticks) { return DataParser::convertTime(ticks); };
    const long long first = stream[c].time;
    WindowRun run{{ActiveWindow, seconds(first), 0.0, stream[c].rect, 0.0}, c + 1};
    const auto ended = [&](long long stop, unsigned int next) {
        run.object.stop = seconds(stop);
        run.next = next;
        return run;
    };
    if (c + 1 == size) {
        return ended(first, c + 1);
    }
    bool pending = false;
    long long end = first;
    long long last = first;
    unsigned int resume = c + 1;
    for (unsigned int j = c + 1; j < size; ++j) {
        const OV_TIME_RECT& s = stream[j];
        const bool animated = run.object.type == ForeAnimate;
        if (isEmpty(s.rect)) {
            return ended(last, j);
        }
        if (s.rect == stream[j - 1].rect) {
            if ((pending || animated) && seconds(s.time - end) >= 0.25) {
                return ended(end, resume);
            }
            last = s.time;
        } else if (!pending && !animated) {
            if (seconds(last - first) >= 2.0) {
                return ended(last, j);
            }
            pending = true;
            end = last;
            resume = j;
        } else {
            const bool second = pending;
            run.object.type = ForeAnimate;
            run.object.rect = boundingUnion(run.object.rect, s.rect);
            pending = false;
            end = last;
            resume = j;
            if (!second) {
                last = s.time;
            }
        }
    }
    return ended(last, size - 1);
}

TEST_F(ForegroundWindowsTest, GeneratedStreams_ReadLikeTheRulesWordForWord_AndEveryRunAdvances) {
    const Rectangle rects[] = {kA, kB, kC, kD, kE, kNone, {300, 200, 100, 90}};
    for (unsigned int seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto upTo = [&](unsigned int n) { return static_cast<unsigned int>(random() % n); };
        const unsigned int kinds = 2 + upTo(6);
        const long long gaps[] = {0, 50, 100, 125, 249, 250, 251, 1000, 1999, 2000};
        std::vector<OV_TIME_RECT>& stream = scene.params().foreWindows();
        stream.clear();
        long long time = 0;
        Rectangle rect = kA;
        for (unsigned int i = 0, count = 1 + upTo(20); i < count; ++i) {
            time += gaps[upTo(10)];
            rect = upTo(2) == 0 ? rects[upTo(kinds)] : rect;
            stream.push_back({time, rect});
        }
        parser = DataParser();
        while (parser.nextForeWindow < stream.size()) {
            const unsigned int before = parser.nextForeWindow;
            unsigned int c = before;
            while (c < stream.size() && isEmpty(stream[c].rect)) {
                ++c;
            }
            parser.objects.clear();
            nextRun();
            ASSERT_GT(parser.nextForeWindow, before);
            if (c == stream.size()) {
                ASSERT_EQ(parser.nextForeWindow, c);
                ASSERT_THAT(parser.objects, IsEmpty());
                continue;
            }
            const WindowRun expected = readRun(stream, c);
            ASSERT_EQ(parser.nextForeWindow, expected.next);
            ASSERT_EQ(objects().front(), testing::text(expected.object));
            ASSERT_EQ(parser.objects.size(), expected.object.type == ActiveWindow ? 2u : 1u);
        }
    }
}

} // namespace
} // namespace OrvantaNS
