#include <algorithm>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "ParserWorld.h"
#include "Random.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ListeningReporter;
using testing::ParserWorld;
using testing::ScopedTimeScale;

constexpr Rectangle kScreen{0, 1280, 0, 800};
constexpr Rectangle kWindow{100, 500, 100, 400};
constexpr Rectangle kOtherWindow{600, 900, 100, 400};
/// A code that is stepped over without a look at anything else.
constexpr std::int32_t kUnknownCode = 9;

/// The state of a parser at the moment of one report.
struct PassView {
    double percent;
    long long start;
    long long stop;
    std::uint32_t nextLocation;
    std::uint32_t nextAction;
    std::uint32_t nextCaret;
    std::uint32_t nextForeWindow;
};

/// Runs zones in order and notes every meta pass. With a clip of 0 to 100 seconds, 5 seconds are one percent.
std::vector<PassView> watchPasses(ParserWorld& world) {
    std::vector<PassView> passes;
    ListeningReporter reporter;
    const DataParser& parser = world.parser;
    reporter.onReport = [&](double percent) {
        passes.push_back({percent, parser.metaStartTime, parser.metaTime, parser.nextLocation, parser.nextAction,
                          parser.nextCaret, parser.nextForeWindow});
    };
    world.store.progress = &reporter;
    world.store.clipStop = 100.0;
    for (unsigned int zone = 0; zone < world.store.liveZones.size(); ++zone) {
        world.processLiveZone(zone);
    }
    world.store.progress = nullptr;
    return passes;
}

std::vector<std::pair<long long, long long>> intervals(const std::vector<PassView>& passes) {
    std::vector<std::pair<long long, long long>> result;
    for (const PassView& pass : passes) {
        result.emplace_back(pass.start, pass.stop);
    }
    return result;
}

/// A world whose clock is so fine that 10 seconds do not fit the tick count: no meta pass ever comes due, and the
/// working list keeps what the primary pass made, in the order in which it was made.
struct PrimaryPassAlone : ParserWorld {
    static constexpr long long kSecond = 1000000000000000000;

    explicit PrimaryPassAlone(double stop = 5.0) : ParserWorld(kScreen, 0.0, stop) {
        DataParser::StoreTimeScale = static_cast<double>(kSecond);
    }
    static constexpr long long at(int tenths) { return kSecond / 10 * tenths; }
};

// ---- A new parser ----

TEST(TimeWalkTest, Constructor_StartsWithNoHeadsAndCursorsAtZero) {
    const DataParser parser;
    EXPECT_EQ(parser.skipLocation, 0u);
    EXPECT_EQ(parser.skipAction, 0u);
    EXPECT_EQ(parser.skipCaret, 0u);
    EXPECT_EQ(parser.skipForeWindow, 0u);
    EXPECT_EQ(parser.skipDirtyRect, 0u);
    EXPECT_EQ(parser.skipDRObject, 0u);
    EXPECT_EQ(parser.pauseStroke, 0u);
    EXPECT_EQ(parser.nextLocation, 0u);
    EXPECT_EQ(parser.nextAction, 0u);
    EXPECT_EQ(parser.nextCaret, 0u);
    EXPECT_EQ(parser.nextForeWindow, 0u);
    EXPECT_EQ(parser.actionTime, -1);
    EXPECT_EQ(parser.caretTime, -1);
    EXPECT_EQ(parser.foreWindowTime, -1);
    EXPECT_EQ(parser.metaTime, -1);
    EXPECT_EQ(parser.locationTime, -1);
    EXPECT_EQ(parser.metaStartTime, 0);
    EXPECT_THAT(parser.strokes, IsEmpty());
    EXPECT_THAT(parser.objects, IsEmpty());
    EXPECT_THAT(parser.drObjects, IsEmpty());
    EXPECT_THAT(parser.keptStrokes, IsEmpty());
    EXPECT_EQ(parser.lastWindow.type, 0u);
    EXPECT_EQ(parser.lastWindow.stop, 0.0);
    EXPECT_EQ(parser.lastWindow.rect, Rectangle{});
}

// ---- Skip cursors ----

TEST(TimeWalkTest, SkipToTime_EveryStream_EndsOnTheLastSampleBeforeTheTime) {
    ParserWorld world;
    for (const double time : {1.0, 2.0, 3.0, 4.0}) {
        world.scene.cursor(time, 0, 0).action(time, kUnknownCode).caret(time, kWindow);
        world.scene.window(time, kWindow).dirty(time, kWindow);
        world.parser.drObjects.push_back({{}, 0, static_cast<long long>(time * 1000.0), {}});
    }
    const auto expectAll = [&world](std::uint32_t expected) {
        EXPECT_EQ(world.parser.skipLocation, expected);
        EXPECT_EQ(world.parser.skipAction, expected);
        EXPECT_EQ(world.parser.skipCaret, expected);
        EXPECT_EQ(world.parser.skipForeWindow, expected);
        EXPECT_EQ(world.parser.skipDirtyRect, expected);
        EXPECT_EQ(world.parser.skipDRObject, expected);
    };
    world.parser.skipToTime(world.scene, world.store, 1000); // the first sample is not before the time
    expectAll(0);
    world.parser.skipToTime(world.scene, world.store, 2000);
    expectAll(0);
    world.parser.skipToTime(world.scene, world.store, 2001);
    expectAll(1);
    world.parser.skipToTime(world.scene, world.store, 1000); // never back
    expectAll(1);
    world.parser.skipToTime(world.scene, world.store, 4000);
    expectAll(2);
    world.parser.skipToTime(world.scene, world.store, 99000); // all before: on the last, not past the end
    expectAll(3);
}

TEST(TimeWalkTest, SkipToTime_BeforeTheFirstSample_LeavesTheCursors) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(2.0, 0, 0);
    world.parser.skipToTime(world.scene, world.store, 500);
    EXPECT_EQ(world.parser.skipLocation, 0u);
}

TEST(TimeWalkTest, SkipToTime_CursorOnALaterSample_StaysThere) {
    ParserWorld world;
    world.scene.cursor(1.0, 0, 0).cursor(9.0, 0, 0).cursor(2.0, 0, 0).cursor(3.0, 0, 0);
    world.parser.skipLocation = 1;
    world.parser.skipToTime(world.scene, world.store, 5000); // the sample under the cursor is already past it
    EXPECT_EQ(world.parser.skipLocation, 1u);
    world.parser.skipLocation = 2;
    world.parser.skipToTime(world.scene, world.store, 5000); // what lies behind the cursor is not looked at again
    EXPECT_EQ(world.parser.skipLocation, 3u);
}

TEST(TimeWalkTest, SkipToTime_ObjectsThatStopOutOfOrder_EndsAtTheFirstStillAlive) {
    ParserWorld world;
    for (const long long stop : {100, 900, 200, 300}) {
        world.parser.drObjects.push_back({{}, 0, stop, {}});
    }
    world.parser.skipToTime(world.scene, world.store, 500);
    EXPECT_EQ(world.parser.skipDRObject, 0u);
    world.parser.skipToTime(world.scene, world.store, 901);
    EXPECT_EQ(world.parser.skipDRObject, 3u);
}

TEST(TimeWalkTest, SkipToTime_DirtyRectsOutOfOrder_EndsAtTheFirstThatIsNotBefore) {
    ParserWorld world;
    world.scene.dirty(9.0, kWindow).dirty(2.0, kWindow).dirty(3.0, kWindow);
    world.parser.skipToTime(world.scene, world.store, 5000);
    EXPECT_EQ(world.parser.skipDirtyRect, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_DirtyRectAtTheLastPass_IsNotBeforeIt) {
    ParserWorld world(kScreen, 20.0, 45.0); // the last pass starts at 55 seconds
    world.scene.dirty(44.0, kWindow).dirty(55.0, kWindow).dirty(60.0, kWindow);
    world.processLiveZone();
    EXPECT_EQ(world.parser.skipDirtyRect, 0u);
}

// The walk steps over the dirty rectangles once, at its end, and passes those that the search for areas has read. The cursor
// must end where stepping one by one at each meta pass would have left it: the next zone reads on from there.
TEST(TimeWalkTest, ProcessLiveZone_DirtyRectCursor_EndsWhereEachPassWouldHaveSteppedIt) {
    testing::Random random(20261122);
    int disordered = 0;
    for (int round = 0; round < 600; ++round) {
        SCOPED_TRACE(round);
        // Passes start at 20, 30, 40 and 45 seconds, and one more behind the zone at 55.
        ParserWorld world(kScreen, 20.0, 45.0);
        const int count = random.range(0, 60);
        double time = random.real(0.0, 40.0);
        for (int i = 0; i < count; ++i) {
            time += random.chance(0.3) ? 0.0 : random.real(0.0, random.chance(0.1) ? 40.0 : 2.0);
            const double back = round % 3 == 0 && random.chance(0.2) ? random.real(0.0, 30.0) : 0.0;
            disordered += back > 0.0 ? 1 : 0;
            world.scene.dirty(time - back, kWindow);
        }
        const Params& request = world.scene;
        const std::vector<OV_TIME_RECT>& records = request.dirtyRects();
        std::size_t expected = 0;
        for (const long long pass : {20000, 20000, 30000, 40000, 45000, 55000}) { // the zone's own start first
            std::size_t next = expected;
            while (next < records.size() && records[next].time < pass) {
                ++next;
            }
            expected = next > expected ? next - 1 : expected;
        }
        world.processLiveZone();
        ASSERT_EQ(world.parser.skipDirtyRect, expected);
    }
    EXPECT_GT(disordered, 100);
}

TEST(TimeWalkTest, SkipToLiveZone_ForwardCursors_BeginOnTheLastSampleBeforeTheZone) {
    ParserWorld world(kScreen, 10.0, 20.0);
    for (const double time : {5.0, 9.0, 10.0, 11.0}) {
        world.scene.cursor(time, 0, 0).action(time, kUnknownCode).caret(time, kWindow).window(time, kWindow);
    }
    world.parser.nextLocation = 77;
    world.parser.skipToLiveZone(0, world.scene, world.store);
    EXPECT_EQ(world.parser.skipLocation, 1u);
    EXPECT_EQ(world.parser.nextLocation, 1u);
    EXPECT_EQ(world.parser.nextAction, 1u);
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_EQ(world.parser.nextForeWindow, 1u);
}

TEST(TimeWalkTest, SkipToLiveZone_AllSamplesBeforeTheZone_RereadsTheLastOne) {
    ParserWorld world(kScreen, 10.0, 20.0);
    world.scene.window(1.0, kOtherWindow).window(2.0, kWindow);
    world.parser.skipToLiveZone(0, world.scene, world.store);
    EXPECT_EQ(world.parser.nextForeWindow, 1u);
    world.processLiveZone();
    // The window in force when the zone opens is read as the zone's first sample.
    EXPECT_EQ(world.parser.lastWindow.start, 2.0);
    EXPECT_EQ(world.parser.lastWindow.rect, kWindow);
}

TEST(TimeWalkTest, ProcessCaret_OnlyStepsItsCursor) {
    ParserWorld world;
    world.scene.caret(1.0, kWindow);
    world.parser.processCaret(0, world.scene, world.store);
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_THAT(world.parser.objects, IsEmpty());
    EXPECT_THAT(world.store.valueObjects, IsEmpty());
}

// ---- The beat of the meta pass ----

TEST(TimeWalkTest, ProcessLiveZone_NoSamples_PassesRunToTheZonesStopAndFlush) {
    ParserWorld world(kScreen, 0.0, 25.0);
    const auto passes = watchPasses(world);
    EXPECT_THAT(intervals(passes),
                ElementsAre(std::pair(0LL, 10000LL), std::pair(10000LL, 20000LL), std::pair(20000LL, 25000LL),
                            std::pair(25000LL, 25000LL), std::pair(35000LL, 25000LL)));
    std::vector<double> percents;
    for (const PassView& pass : passes) {
        percents.push_back(pass.percent);
    }
    EXPECT_THAT(percents, ElementsAre(2.0, 4.0, 5.0, 5.0, 5.0)); // 10, 20 and 25 of 100 seconds on a band of 20
    EXPECT_EQ(world.parser.metaTime, -1);
    EXPECT_THAT(world.store.valueObjects, IsEmpty());
}

TEST(TimeWalkTest, ProcessLiveZone_CursorGoesOnBehindTheZone_StepsAreNotClamped) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.cursor(90.0, 0, 0);
    EXPECT_THAT(intervals(watchPasses(world)), ElementsAre(std::pair(0LL, 10000LL), std::pair(10000LL, 20000LL),
                                                           std::pair(20000LL, 30000LL), std::pair(30000LL, 40000LL)));
    EXPECT_EQ(world.parser.nextLocation, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_OtherStreamsGoOnBehindTheZone_StepsAreClamped) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.action(90.0, kUnknownCode).caret(90.0, kWindow).window(90.0, kWindow);
    EXPECT_EQ(intervals(watchPasses(world)).size(), 5u);
    EXPECT_EQ(world.parser.nextAction, 0u);
    EXPECT_EQ(world.parser.nextCaret, 0u);
    EXPECT_EQ(world.parser.nextForeWindow, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_StopOnAStep_IsMetOnce) {
    ParserWorld world(kScreen, 0.0, 20.0);
    EXPECT_THAT(intervals(watchPasses(world)), ElementsAre(std::pair(0LL, 10000LL), std::pair(10000LL, 20000LL),
                                                           std::pair(20000LL, 20000LL), std::pair(30000LL, 20000LL)));
}

TEST(TimeWalkTest, ProcessLiveZone_ZoneThatStartsLate_StepsFromItsStart) {
    ParserWorld world(kScreen, 7.0, 12.0);
    EXPECT_THAT(intervals(watchPasses(world)),
                ElementsAre(std::pair(7000LL, 12000LL), std::pair(12000LL, 12000LL), std::pair(22000LL, 12000LL)));
}

TEST(TimeWalkTest, ProcessLiveZone_ZoneOfNoLength_StillFlushes) {
    ParserWorld world(kScreen, 0.0, 0.0);
    EXPECT_THAT(intervals(watchPasses(world)), ElementsAre(std::pair(0LL, 0LL), std::pair(10000LL, 0LL)));
}

TEST(TimeWalkTest, ProcessLiveZone_SampleAtTheTimeOfAPass_IsHandledBeforeIt) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.cursor(10.0, 5, 5).action(10.0, kUnknownCode).caret(10.0, kWindow).window(10.0, kWindow);
    const auto passes = watchPasses(world);
    ASSERT_FALSE(passes.empty());
    EXPECT_EQ(passes[0].stop, 10000);
    EXPECT_EQ(passes[0].nextLocation, 1u);
    EXPECT_EQ(passes[0].nextAction, 1u);
    EXPECT_EQ(passes[0].nextCaret, 1u);
    EXPECT_EQ(passes[0].nextForeWindow, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_SampleATickAfterAPass_IsHandledBehindIt) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.cursor(10.001, 5, 5).action(10.001, kUnknownCode).caret(10.001, kWindow).window(10.001, kWindow);
    const auto passes = watchPasses(world);
    ASSERT_GE(passes.size(), 2u);
    EXPECT_EQ(passes[0].nextLocation, 0u);
    EXPECT_EQ(passes[0].nextAction, 0u);
    EXPECT_EQ(passes[0].nextCaret, 0u);
    EXPECT_EQ(passes[0].nextForeWindow, 0u);
    EXPECT_EQ(passes[1].nextLocation, 1u);
    EXPECT_EQ(passes[1].nextAction, 1u);
    EXPECT_EQ(passes[1].nextCaret, 1u);
    EXPECT_EQ(passes[1].nextForeWindow, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_LastStep_ConsumesUpToTenSecondsBehindTheStop) {
    ParserWorld world(kScreen, 0.0, 25.0);
    for (const double time : {26.0, 30.0, 35.0, 35.001}) {
        world.scene.action(time, kUnknownCode);
    }
    watchPasses(world);
    // The pass that is clamped to 25 seconds leaves the next one due at 35.
    EXPECT_EQ(world.parser.nextAction, 3u);
}

TEST(TimeWalkTest, ProcessLiveZone_Cancelled_ThrowsFromTheMetaPass) {
    ParserWorld world(kScreen, 0.0, 25.0);
    ListeningReporter reporter;
    int questions = 0;
    int reports = 0;
    reporter.onQuestion = [&questions] { return ++questions == 2; };
    reporter.onReport = [&reports](double) { ++reports; };
    world.store.progress = &reporter;
    EXPECT_THROW(world.processLiveZone(), OrvantaException);
    EXPECT_EQ(questions, 2);
    EXPECT_EQ(reports, 1);
}

TEST(TimeWalkTest, ProcessLiveZone_SampleAtTickZeroWithNoPassDue_IsPresentAndDoesNotEndTheWalk) {
    PrimaryPassAlone world;
    for (const int tenths : {0, 1}) {
        world.scene.params().cursorActions().push_back({PrimaryPassAlone::at(tenths), kUnknownCode});
    }
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextAction, 2u);
}

// ---- Who goes first ----

// A head that is negative, yet not -1, is present, is earlier than every other head and has no handler: behind it the
// walk comes to a halt, which shows which of two equal heads was taken first.
constexpr long long kHalt = -7;

TEST(TimeWalkTest, ProcessLiveZone_ActionAndLocationAtOneTick_ActionGoesFirst) {
    ParserWorld world;
    world.scene.cursor(5.0, 5, 5).action(5.0, kUnknownCode);
    world.scene.params().cursorActions().push_back({kHalt, kUnknownCode});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextAction, 1u);
    EXPECT_EQ(world.parser.nextLocation, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_LocationATickEarlier_GoesBeforeTheAction) {
    ParserWorld world;
    world.scene.cursor(4.999, 5, 5).action(5.0, kUnknownCode);
    world.scene.params().cursorActions().push_back({kHalt, kUnknownCode});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextAction, 1u);
    EXPECT_EQ(world.parser.nextLocation, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_CaretAndLocationAtOneTick_CaretGoesFirst) {
    ParserWorld world;
    world.scene.cursor(5.0, 5, 5).caret(5.0, kWindow);
    world.scene.params().caretRects().push_back({kHalt, kWindow});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_EQ(world.parser.nextLocation, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_CaretAndActionAtOneTick_CaretGoesFirst) {
    ParserWorld world;
    world.scene.action(5.0, kUnknownCode).caret(5.0, kWindow);
    world.scene.params().caretRects().push_back({kHalt, kWindow});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_EQ(world.parser.nextAction, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_ActionATickEarlier_GoesBeforeTheCaret) {
    ParserWorld world;
    world.scene.action(4.999, kUnknownCode).caret(5.0, kWindow);
    world.scene.params().caretRects().push_back({kHalt, kWindow});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_WindowAndTheRestAtOneTick_WindowGoesFirst) {
    ParserWorld world;
    world.scene.cursor(5.0, 5, 5).action(5.0, kUnknownCode).caret(5.0, kWindow).window(5.0, kWindow);
    world.scene.params().foreWindows().push_back({kHalt, kOtherWindow});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextForeWindow, 1u);
    EXPECT_EQ(world.parser.nextCaret, 0u);
    EXPECT_EQ(world.parser.nextAction, 0u);
    EXPECT_EQ(world.parser.nextLocation, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_CaretATickEarlier_GoesBeforeTheWindow) {
    ParserWorld world;
    world.scene.caret(4.999, kWindow).window(5.0, kWindow);
    world.scene.params().foreWindows().push_back({kHalt, kOtherWindow});
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextForeWindow, 1u);
    EXPECT_EQ(world.parser.nextCaret, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_CaretWithNoWindowLeft_IsSteppedOver) {
    ParserWorld world(kScreen, 0.0, 5.0);
    world.scene.caret(1.0, kWindow).caret(2.0, kWindow);
    watchPasses(world);
    EXPECT_EQ(world.parser.nextCaret, 2u);
    EXPECT_EQ(world.parser.caretTime, -1);
}

TEST(TimeWalkTest, ProcessLiveZone_WindowAndClickAtOneTick_WindowIsMadeFirst) {
    PrimaryPassAlone world;
    Params& params = world.scene.params();
    params.foreWindows().push_back({PrimaryPassAlone::at(10), kWindow});
    params.cursorActions() = {{PrimaryPassAlone::at(10), 0}, {PrimaryPassAlone::at(11), 1}};
    world.processLiveZone();
    std::vector<std::uint32_t> types;
    for (const OV_VALUE_OBJECT& object : world.parser.objects) {
        types.push_back(object.type);
    }
    EXPECT_THAT(types, ElementsAre(ActiveWindow, ForeOpen, Click));
    EXPECT_EQ(world.parser.objects[2].start, 1.0);
}

TEST(TimeWalkTest, ProcessLiveZone_ClickATickBeforeTheWindow_IsMadeFirst) {
    PrimaryPassAlone world;
    Params& params = world.scene.params();
    params.foreWindows().push_back({PrimaryPassAlone::at(10), kWindow});
    params.cursorActions() = {{PrimaryPassAlone::at(10) - 1, 0}, {PrimaryPassAlone::at(11), 1}};
    world.processLiveZone();
    ASSERT_EQ(world.parser.objects.size(), 3u);
    EXPECT_EQ(world.parser.objects[0].type, static_cast<std::uint32_t>(Click));
}

// ---- Negative heads ----

TEST(TimeWalkTest, ProcessLiveZone_LocationAtMinusOne_CountsAsAbsent) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.params().cursorLocations().push_back({-1, 5, 5});
    world.scene.action(3.0, kUnknownCode);
    EXPECT_EQ(watchPasses(world).size(), 5u);
    EXPECT_EQ(world.parser.nextLocation, 0u);
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_ActionAtMinusOne_DoesNotHoldUpLocations) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.params().cursorActions().push_back({-1, kUnknownCode});
    world.scene.cursor(3.0, 5, 5);
    EXPECT_EQ(watchPasses(world).size(), 5u);
    EXPECT_EQ(world.parser.nextLocation, 1u);
    EXPECT_EQ(world.parser.nextAction, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_OtherNegativeLocation_HoldsUpTheMetaPassAlone) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.params().cursorLocations().push_back({-5, 5, 5});
    world.scene.action(3.0, kUnknownCode).caret(3.0, kWindow).window(3.0, kWindow);
    EXPECT_THAT(watchPasses(world), IsEmpty());
    EXPECT_EQ(world.parser.nextLocation, 0u);
    EXPECT_EQ(world.parser.nextAction, 1u);
    EXPECT_EQ(world.parser.nextCaret, 1u);
    EXPECT_EQ(world.parser.nextForeWindow, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_OtherNegativeAction_HoldsUpLocations) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.params().cursorActions().push_back({-5, kUnknownCode});
    world.scene.cursor(3.0, 5, 5).caret(3.0, kWindow);
    EXPECT_THAT(watchPasses(world), IsEmpty());
    EXPECT_EQ(world.parser.nextLocation, 0u);
    EXPECT_EQ(world.parser.nextAction, 0u);
    EXPECT_EQ(world.parser.nextCaret, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_OtherNegativeWindow_HoldsUpEverything) {
    ParserWorld world(kScreen, 0.0, 25.0);
    world.scene.params().foreWindows().push_back({-5, kWindow});
    world.scene.cursor(3.0, 5, 5).action(3.0, kUnknownCode).caret(3.0, kWindow);
    EXPECT_THAT(watchPasses(world), IsEmpty());
    EXPECT_EQ(world.parser.nextLocation, 0u);
    EXPECT_EQ(world.parser.nextAction, 0u);
    EXPECT_EQ(world.parser.nextCaret, 0u);
    EXPECT_EQ(world.parser.nextForeWindow, 0u);
}

// ---- Where the walk ends ----

TEST(TimeWalkTest, ProcessLiveZone_NoPassesDue_EndsBehindTheFirstHandlerWhoseHeadIsNotBeforeTheStop) {
    PrimaryPassAlone world;
    for (const int tenths : {49, 50, 51}) {
        world.scene.params().cursorActions().push_back({PrimaryPassAlone::at(tenths), kUnknownCode});
    }
    world.processLiveZone();
    // The heads that are tested are those from before the handler: the sample at the stop is still handled.
    EXPECT_EQ(world.parser.nextAction, 2u);
}

TEST(TimeWalkTest, ProcessLiveZone_NoPassesDue_EveryStreamMustBeDone) {
    PrimaryPassAlone world;
    Params& params = world.scene.params();
    params.caretRects() = {{PrimaryPassAlone::at(10), kWindow}, {PrimaryPassAlone::at(60), kWindow}};
    params.cursorActions() = {{PrimaryPassAlone::at(20), kUnknownCode}, {PrimaryPassAlone::at(61), kUnknownCode}};
    world.processLiveZone();
    EXPECT_EQ(world.parser.nextCaret, 2u); // the caret at 6 s was the step that found all heads behind the stop
    EXPECT_EQ(world.parser.nextAction, 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_SecondRun_EmptiesTheChangingAreasAndRestartsTheirCursor) {
    ParserWorld world(kScreen, 0.0, 5.0);
    world.parser.drObjects.resize(3);
    world.parser.skipDRObject = 2;
    world.processLiveZone();
    EXPECT_THAT(world.parser.drObjects, IsEmpty());
    EXPECT_EQ(world.parser.skipDRObject, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_ZonesLessThanTenSecondsApart_SecondNeverReadsItsFirstSamples) {
    ParserWorld world({0, 100, 0, 100}, 0.0, 25.0);
    world.store.liveZones.push_back({{0, 50, 0, 50}, 28.0, 60.0});
    world.scene.click(31.0).click(33.0).click(36.0);
    watchPasses(world);
    // The first zone handles the actions up to second 35 and skips to second 35; the second goes on from there, on the
    // release at 33.1. Were the cursors back at second 28, the first two clicks would stand twice.
    std::vector<double> starts;
    for (const OV_VALUE_OBJECT& object : world.store.valueObjects) {
        EXPECT_EQ(object.type, static_cast<std::uint32_t>(Click));
        starts.push_back(object.start);
    }
    EXPECT_THAT(starts, ElementsAre(31.0, 33.0, 36.0));
}

TEST(TimeWalkTest, ProcessLiveZone_FirstOfTwoCloseZones_LeavesSkipCursorsUpToTenSecondsBehindItsStop) {
    ParserWorld world({0, 100, 0, 100}, 0.0, 25.0);
    world.scene.click(31.0).click(33.0).click(36.0);
    world.processLiveZone();
    EXPECT_EQ(world.parser.skipAction, 3u);
    // Clicks that lie behind the last interval wait in the list for the next zone.
    EXPECT_EQ(world.parser.objects.size(), 2u);
    EXPECT_THAT(world.store.valueObjects, IsEmpty());
}

// ---- Clocks on which the passes do not advance ----

TEST(TimeWalkTest, ProcessLiveZone_StepOfNoTick_EndsThereAfterOnePass) {
    ParserWorld world(kScreen, 0.0, 6000.0);
    DataParser::StoreTimeScale = 0.01;
    world.scene.params().cursorLocations().push_back({5, 5, 5});
    EXPECT_EQ(intervals(watchPasses(world)).size(), 1u);
    EXPECT_EQ(world.parser.nextLocation, 0u);
}

TEST(TimeWalkTest, ProcessLiveZone_StepOfNoTickAndStopAtStart_EndsThereAfterOnePass) {
    ParserWorld world(kScreen, 0.0, 0.0);
    DataParser::StoreTimeScale = 0.01;
    EXPECT_EQ(intervals(watchPasses(world)).size(), 1u);
}

TEST(TimeWalkTest, ProcessLiveZone_StepOfOneTick_AdvancesToTheStop) {
    ParserWorld world(kScreen, 0.0, 60.0);
    DataParser::StoreTimeScale = 0.05; // ten seconds are half a tick, rounded up
    EXPECT_THAT(intervals(watchPasses(world)),
                ElementsAre(std::pair(0LL, 1LL), std::pair(1LL, 2LL), std::pair(2LL, 3LL), std::pair(3LL, 3LL),
                            std::pair(4LL, 3LL)));
}

TEST(TimeWalkTest, ProcessLiveZone_StepThatWraps_Ends) {
    constexpr double scale = 9e17;
    ParserWorld world(kScreen, 0.0, 9.5);
    DataParser::StoreTimeScale = scale;
    // 9e18 is due first; the zone's stop of 8.55e18 clamps it. From there on 9e18 more wraps below zero.
    EXPECT_THAT(intervals(watchPasses(world)), ElementsAre(std::pair(0LL, 8550000000000000000LL)));
    EXPECT_LT(world.parser.metaTime, 0);
}

TEST(TimeWalkTest, ProcessLiveZone_StepThatWraps_LeavesTheSamplesToThePrimaryPass) {
    ParserWorld world(kScreen, 0.0, 10.2);
    DataParser::StoreTimeScale = 9e17;
    // No pass is due behind 9e18, the first one, and the zone goes on to 9.18e18.
    world.scene.params().cursorActions() = {{9000000000000000000, kUnknownCode}, {9100000000000000000, kUnknownCode}};
    EXPECT_EQ(watchPasses(world).size(), 1u);
    EXPECT_EQ(world.parser.nextAction, 2u);
}

TEST(TimeWalkTest, ProcessLiveZone_ScaleNotANumber_Ends) {
    ParserWorld world(kScreen, 0.0, 10.0);
    DataParser::StoreTimeScale = std::numeric_limits<double>::quiet_NaN();
    world.scene.cursor(1.0, 5, 5).click(1.0).window(2.0, kWindow).dirty(0.5, kWindow).caret(1.0, kWindow);
    world.processLiveZone();
    SUCCEED();
}

TEST(TimeWalkTest, ProcessLiveZone_NegativeScale_RunsNoPassBelowTickZero) {
    ParserWorld world(kScreen, 0.0, -60.0);
    DataParser::StoreTimeScale = -100.0;
    world.scene.params().cursorActions().push_back({3, kUnknownCode});
    EXPECT_THAT(watchPasses(world), IsEmpty());
    EXPECT_EQ(world.parser.nextAction, 1u);
}

// ---- Any input ----

/// A value with a bias to what breaks things.
long long hostileTime(std::mt19937_64& random) {
    switch (random() % 12) {
    case 0:
        return std::numeric_limits<long long>::lowest() + static_cast<long long>(random() % 3);
    case 1:
        return std::numeric_limits<long long>::max() - static_cast<long long>(random() % 3);
    case 2:
        return -static_cast<long long>(random() % 4);
    case 3:
        return static_cast<long long>(random());
    default:
        return static_cast<long long>(random() % 40000);
    }
}

std::int32_t hostilePixel(std::mt19937_64& random) {
    switch (random() % 12) {
    case 0:
        return std::numeric_limits<std::int32_t>::lowest() + static_cast<std::int32_t>(random() % 3);
    case 1:
        return std::numeric_limits<std::int32_t>::max() - static_cast<std::int32_t>(random() % 3);
    case 2:
        return static_cast<std::int32_t>(random());
    default:
        return static_cast<std::int32_t>(random() % 1400) - 50;
    }
}

Rectangle hostileRect(std::mt19937_64& random) {
    return {hostilePixel(random), hostilePixel(random), hostilePixel(random), hostilePixel(random)};
}

class HostileStreams : public ::testing::TestWithParam<double> {};

TEST_P(HostileStreams, ProcessLiveZone_UnsortedStreams_Ends) {
    for (std::uint64_t seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        std::mt19937_64 random(seed);
        ParserWorld world;
        DataParser::StoreTimeScale = GetParam();
        Params& params = world.scene.params();
        params.setWindowsFlag(random() % 2 == 0);
        params.recordingRegions()[0].rect = random() % 2 == 0 ? kScreen : hostileRect(random);
        const auto fill = [&random](std::vector<OV_TIME_RECT>& stream) {
            for (std::uint64_t n = random() % 60; n > 0; --n) {
                stream.push_back({hostileTime(random), hostileRect(random)});
            }
        };
        fill(params.foreWindows());
        fill(params.dirtyRects());
        fill(params.caretRects());
        for (std::uint64_t n = random() % 120; n > 0; --n) {
            params.cursorLocations().push_back({hostileTime(random), hostilePixel(random), hostilePixel(random)});
        }
        for (std::uint64_t n = random() % 60; n > 0; --n) {
            params.cursorActions().push_back({hostileTime(random), static_cast<std::int32_t>(random() % 12) - 2});
        }
        if (random() % 2 == 0) { // half of them sorted, as a recorder would have it
            const auto byTime = [](const auto& a, const auto& b) { return a.time < b.time; };
            std::stable_sort(params.foreWindows().begin(), params.foreWindows().end(), byTime);
            std::stable_sort(params.dirtyRects().begin(), params.dirtyRects().end(), byTime);
            std::stable_sort(params.caretRects().begin(), params.caretRects().end(), byTime);
            std::stable_sort(params.cursorLocations().begin(), params.cursorLocations().end(), byTime);
            std::stable_sort(params.cursorActions().begin(), params.cursorActions().end(), byTime);
        }
        world.store.liveZones.clear();
        const long long step = DataParser::revertTime(10.0);
        const std::uint64_t longest = step > 0 && step < 100 ? 200 * static_cast<std::uint64_t>(step) : 20000;
        for (int zone = 0; zone < 3; ++zone) {
            const auto first = static_cast<long long>(random() % 30000);
            const auto last = first + static_cast<long long>(random() % longest);
            world.store.liveZones.push_back({random() % 3 == 0 ? hostileRect(random) : kScreen,
                                             DataParser::convertTime(first), DataParser::convertTime(last)});
        }
        for (unsigned int zone = 0; zone < 3; ++zone) {
            world.processLiveZone(zone);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Clocks, HostileStreams,
                         ::testing::Values(1000.0, 10000000.0, 1.0, 0.05, 0.01, 1e-300, 1e300, 1e18, -100.0, 0.0,
                                           std::numeric_limits<double>::quiet_NaN(),
                                           std::numeric_limits<double>::infinity(),
                                           -std::numeric_limits<double>::infinity()));

// A tick of this clock is a hundred seconds, so that the one pass does not get beyond the zone's start: what comes after it
// in time ends the steps, whatever order the rest is in.
TEST(TimeWalkTest, ProcessLiveZone_DirtyRectsInDisorder_AreNotSteppedOverBeyondTheFirstThatIsLater) {
    const std::vector<std::vector<long long>> streams{{5, 20, 7, 6, 8}, {5, 10, 7, 6}, {20, 5, 5}};
    for (const std::vector<long long>& times : streams) {
        ParserWorld world(kScreen, 1000.0, 5000.0);
        DataParser::StoreTimeScale = 0.01;
        for (const long long time : times) {
            world.scene.params().dirtyRects().push_back({time, kWindow});
        }
        world.processLiveZone();
        EXPECT_EQ(world.parser.skipDirtyRect, 0u) << times.size();
    }
}

} // namespace
} // namespace OrvantaNS
