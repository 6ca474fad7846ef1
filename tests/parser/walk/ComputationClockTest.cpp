#include "parser/walk/ComputationClock.h"

#include <algorithm>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "ParserWorld.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::ListeningReporter;
using testing::ScopedTimeScale;

// Each asks two questions.
constexpr int kRounds = 50000;

TEST(ComputationClockTest, WithoutAClock_ConversionsUseTheStoredScale) {
    const ScopedTimeScale stored(250.0);
    EXPECT_EQ(ComputationClock::ticksPerSecond(), 250.0);
    EXPECT_EQ(DataParser::convertTime(1000), 4.0);
    EXPECT_EQ(DataParser::revertTime(4.0), 1000);
}

TEST(ComputationClockTest, Making_StoresItsScale) {
    const ScopedTimeScale stored(250.0);
    const ComputationClock clock(500.0);
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 500.0);
}

TEST(ComputationClockTest, AScaleStoredMeanwhile_ReachesConversionsOnlyBehindTheClock) {
    const ScopedTimeScale stored(250.0);
    {
        const ComputationClock clock(500.0);
        DataParser::StoreTimeScale = 10000000.0;
        EXPECT_EQ(DataParser::convertTime(1000), 2.0);
        EXPECT_EQ(DataParser::revertTime(2.0), 1000);
        const Interval_Type<double> both = DataParser::convertInterval({500, 1500});
        EXPECT_EQ(both.start, 1.0);
        EXPECT_EQ(both.stop, 3.0);
    }
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 10000000.0);
    EXPECT_EQ(DataParser::convertTime(10000000), 1.0);
}

TEST(ComputationClockTest, ClocksNest) {
    const ScopedTimeScale stored(250.0);
    const ComputationClock outer(500.0);
    {
        const ComputationClock inner(1000.0);
        EXPECT_EQ(DataParser::convertTime(1000), 1.0);
    }
    EXPECT_EQ(DataParser::convertTime(1000), 2.0);
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 1000.0) << "the computation that began last";
}

TEST(ComputationClockTest, ClockOfOneThread_IsNoneOfAnothers) {
    const ScopedTimeScale stored(250.0);
    const ComputationClock clock(500.0);
    DataParser::StoreTimeScale = 100.0;
    double seconds = 0.0;
    std::thread([&] { seconds = DataParser::convertTime(1000); }).join();
    EXPECT_EQ(seconds, 10.0);
}

// A click, and a window that changes: the frames and their moments depend on every conversion in between.
Params request(double ticksPerSecond) {
    Params params;
    params.setTimeScale(ticksPerSecond).setTargetWidth(640).setTargetHeight(400);
    const auto at = [&](double seconds) { return static_cast<long long>(seconds * ticksPerSecond); };
    params.setFadeDuration(at(1.0)).setClipInterval(0, at(5.0));
    params.recordingRegions().push_back({0, {0, 1280, 0, 800}});
    params.foreWindows().push_back({0, {0, 500, 100, 700}});
    params.cursorLocations().push_back({0, 300, 200});
    params.cursorActions().push_back({at(3.0), 0});
    params.cursorActions().push_back({at(3.1), 1});
    return params;
}

std::vector<OV_TIME_RECT> answer(const Params& params) {
    std::vector<OV_TIME_RECT> all = *OrvantaWorker().calcOrvantaKeyframes(params, nullptr);
    const auto moment = OrvantaWorker().calcOrvantaKeyframeAtTime(params, params.clipStop() / 2);
    all.insert(all.end(), moment->begin(), moment->end());
    return all;
}

bool areEqual(const std::vector<OV_TIME_RECT>& a, const std::vector<OV_TIME_RECT>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const OV_TIME_RECT& x, const OV_TIME_RECT& y) {
        return x.time == y.time && x.rect == y.rect;
    });
}

TEST(ComputationClockTest, TheQuestions_LeaveNoClockBehind) {
    const ScopedTimeScale stored(250.0);
    OrvantaWorker().calcOrvantaKeyframes(request(1000.0), nullptr);
    DataParser::StoreTimeScale = 500.0;
    EXPECT_EQ(DataParser::convertTime(1000), 2.0);
    OrvantaWorker().calcOrvantaKeyframeAtTime(request(1000.0), 2500);
    DataParser::StoreTimeScale = 500.0;
    EXPECT_EQ(DataParser::convertTime(1000), 2.0);
    Params empty = request(1000.0);
    empty.foreWindows().clear();
    empty.cursorActions().clear();
    EXPECT_THROW(OrvantaWorker().calcOrvantaKeyframes(empty, nullptr), OrvantaException);
    DataParser::StoreTimeScale = 500.0;
    EXPECT_EQ(DataParser::convertTime(1000), 2.0);
}

TEST(ComputationClockTest, AQuestionFromInsideAReport_DisturbsNothing) {
    const ScopedTimeScale stored(250.0);
    const std::vector<OV_TIME_RECT> slow = answer(request(1000.0));
    const std::vector<OV_TIME_RECT> fast = answer(request(1000000.0));
    ListeningReporter reporter;
    reporter.onReport = [&](double) { EXPECT_TRUE(areEqual(answer(request(1000000.0)), fast)); };
    std::vector<OV_TIME_RECT> actual = *OrvantaWorker().calcOrvantaKeyframes(request(1000.0), &reporter);
    actual.push_back(slow.back());
    EXPECT_TRUE(areEqual(actual, slow));
}

TEST(ComputationClockTest, TwoThreadsWithScalesOfTheirOwn_GetRightAnswers) {
    const std::vector<double> scales{1000.0, 1000000.0};
    std::vector<Params> requests;
    std::vector<std::vector<OV_TIME_RECT>> expected;
    for (const double scale : scales) {
        requests.push_back(request(scale));
        expected.push_back(answer(requests.back()));
        ASSERT_GE(expected.back().size(), 2u);
    }
    // What is expected stands on its own feet: the same recording on a clock a thousand times as fine.
    for (std::size_t i = 0; i < expected[0].size(); ++i) {
        EXPECT_EQ(expected[0][i].time * 1000, expected[1][i].time);
        EXPECT_EQ(expected[0][i].rect, expected[1][i].rect);
    }
    std::vector<int> wrong(scales.size(), 0);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < scales.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < kRounds; ++round) {
                wrong[t] += areEqual(answer(requests[t]), expected[t]) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(scales.size(), 0));
}

} // namespace
} // namespace OrvantaNS
