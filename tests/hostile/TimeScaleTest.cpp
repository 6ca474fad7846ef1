// Time scales that no clock has.

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "HostileRequests.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kOddScales[] = {0.01,
                                 0.04,
                                 1e-300,
                                 1e300,
                                 -1000.0,
                                 -0.01,
                                 -1e300,
                                 kNaN,
                                 kInfinity,
                                 -kInfinity,
                                 std::numeric_limits<double>::denorm_min(),
                                 std::numeric_limits<double>::max(),
                                 -10000000.0};

// A clip of 20 ticks: 2000 seconds at the slowest scale that advances.
Params smallRequest(double scale) {
    Params params;
    params.setTimeScale(scale).setTargetWidth(640).setTargetHeight(400).setFadeDuration(1).setClipInterval(0, 20);
    params.recordingRegions().push_back({0, {0, 1280, 0, 800}});
    for (int i = 0; i < 20; ++i) {
        params.foreWindows().push_back({i, {i / 5 * 100, i / 5 * 100 + 500, 100, 600}});
        params.cursorLocations().push_back({i, i * 30, i * 20});
        params.dirtyRects().push_back({i, {200, 400, 200, 400}});
        params.dirtyRects().push_back({i, {200, 400, 200, 400}});
        params.cursorActions().push_back({i, i % 2});
    }
    return params;
}

std::vector<OV_TIME_RECT> keyframesOf(const Orvanta& engine, const Params& params) {
    try {
        return *engine.calcOrvantaKeyframes(params, nullptr);
    } catch (const OrvantaException&) {
        return {};
    }
}

TEST(TimeScale, ValueEngine_OddScale_EndsInKeyframesOrTheLibrarysException) {
    for (const double scale : kOddScales) {
        SCOPED_TRACE(scale);
        const Params params = smallRequest(scale);
        CountingReporter reporter(100000);
        const auto code = codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); });
        if (std::fabs(scale) < 1e-100) {
            // A tick is longer than any recording; slicing goes through the seconds of the clip until it is told to
            // stop.
            EXPECT_EQ(code, OVERR_USER_CANCELLED);
            continue;
        }
        EXPECT_TRUE(!code.has_value() || *code == OVERR_NO_LIVE_ZONES || *code == OVERR_MERGE_FAILED ||
                    *code == OVERR_NO_KEYFRAMES);
        EXPECT_LT(reporter.asked, 100000U);
        const std::vector<OV_TIME_RECT> first = keyframesOf(OrvantaWorker(), params);
        const std::vector<OV_TIME_RECT> second = keyframesOf(OrvantaWorker(), params);
        ASSERT_EQ(first.size(), second.size());
        for (std::size_t i = 0; i < first.size(); ++i) {
            EXPECT_EQ(first[i].time, second[i].time);
            EXPECT_EQ(first[i].rect, second[i].rect);
        }
    }
}

TEST(TimeScale, ValueEngineAtTime_OddScale_GivesOneKeyframe) {
    constexpr long long kTimes[] = {0, 10, -1, std::numeric_limits<long long>::max(),
                                    std::numeric_limits<long long>::lowest()};
    for (const double scale : kOddScales) {
        for (const long long time : kTimes) {
            SCOPED_TRACE(scale);
            const auto keyframes = OrvantaWorker().calcOrvantaKeyframeAtTime(smallRequest(scale), time);
            ASSERT_EQ(keyframes->size(), 1U);
            EXPECT_EQ(keyframes->front().time, time);
        }
    }
}

TEST(TimeScale, VotingEngine_OddScale_Answers) {
    for (const double scale : kOddScales) {
        SCOPED_TRACE(scale);
        Params params = smallRequest(scale);
        const auto keyframes = OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr);
        ASSERT_NE(keyframes, nullptr);
        const auto moment = OrvantaVotingAlgorithm().calcOrvantaKeyframeAtTime(params, 10);
        ASSERT_EQ(moment->size(), 1U);
        if (std::isnan(scale) || std::fabs(scale) >= 1e300) {
            // No count of ticks fits: nobody votes, and the whole recording stands.
            EXPECT_TRUE(keyframes->empty());
            EXPECT_EQ(moment->front().rect, (Rectangle{0, 1280, 0, 800}));
        }
    }
}

TEST(TimeScale, BothEngines_ScaleZero_IsRefused) {
    for (const double scale : {0.0, -0.0}) {
        const Params params = smallRequest(scale);
        EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, nullptr); }), OVERR_BAD_TIME_SCALE);
        EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframeAtTime(params, 0); }), OVERR_BAD_TIME_SCALE);
        EXPECT_EQ(codeOf([&] { OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr); }),
                  OVERR_BAD_TIME_SCALE);
    }
}

} // namespace
} // namespace OrvantaNS::testing
