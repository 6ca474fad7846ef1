// Clips of any length: every stage of a run can be cancelled, and a run without a reporter costs what the clip is long.

#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "HostileRequests.h"
#include "OrvantaWorker.h"
#include "Scene.h"
#include "frame/DataStore.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {
namespace {

constexpr long long kLowest = std::numeric_limits<long long>::lowest();
constexpr long long kHighest = std::numeric_limits<long long>::max();

TEST(ClipLength, Parsing_StopAtEndOfRange_CancelledAtAnyQuestion) {
    // At a coarser clock the very last ticks round up past the range when they come back from seconds.
    const std::vector<std::pair<double, long long>> clips{
        {100.0, kHighest / 2}, {1000.0, kHighest / 2}, {10000000.0, kHighest}};
    for (const auto& [scale, stop] : clips) {
        for (const std::uint64_t cancelAt : {1U, 2U, 3U, 50U, 5000U}) {
            Scene scene = recording().cursor(1.0, 10, 10).cursor(1.1, 400, 300).click(2.0);
            scene.params().setTimeScale(scale).setClipInterval(0, stop);
            CountingReporter reporter(cancelAt);
            EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(scene, &reporter); }), OVERR_USER_CANCELLED);
            EXPECT_EQ(reporter.asked, cancelAt);
            EXPECT_EQ(reporter.percentages.size(), cancelAt - 1);
        }
    }
}

TEST(ClipLength, Slicing_ZoneToEndOfRange_CancelledAtAnyQuestion) {
    for (const std::uint64_t cancelAt : {1U, 2U, 50U, 5000U}) {
        CountingReporter reporter(cancelAt);
        OV_DATA_STORE store;
        store.progress = &reporter;
        store.clipStop = 9.2e11; // what 64 bits hold at 10,000,000 ticks per second
        store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, store.clipStop});
        store.valueObjects.push_back({Click, 1.0, 1.0, {0, 100, 0, 100}, 0.0});
        EXPECT_EQ(codeOf([&] { OrvantaWorker().sliceTime(store); }), OVERR_USER_CANCELLED);
        EXPECT_EQ(reporter.asked, cancelAt);
        // Each question stands before a slice.
        EXPECT_EQ(store.slices.size(), cancelAt - 1);
    }
}

TEST(ClipLength, Run_CancelledAtEachQuestion_AlwaysEndsThere) {
    const Params params = busyRequest(0, 60.0, 1000.0);
    CountingReporter silent;
    std::uint64_t inStage[5] = {};
    OV_DATA_STORE whole;
    OrvantaWorker().runPipeline(params, &silent, whole,
                                [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) { inStage[stage] = silent.asked; });
    // Every stage that can take long asks.
    EXPECT_GT(inStage[OV_PIPELINE_OBJECTS], inStage[OV_PIPELINE_ZONES]);
    EXPECT_GT(inStage[OV_PIPELINE_SLICES], inStage[OV_PIPELINE_OBJECTS]);
    EXPECT_GT(inStage[OV_PIPELINE_SHOTS], inStage[OV_PIPELINE_SLICES]);
    for (std::uint64_t n = 1; n <= silent.asked; ++n) {
        CountingReporter reporter(n);
        EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }), OVERR_USER_CANCELLED);
        EXPECT_EQ(reporter.asked, n);
    }
}

TEST(ClipLength, Run_LastMinuteOfRange_EndsAndCanBeCancelledEverywhere) {
    constexpr double kScale = 10000000.0;
    const long long start = kHighest - 600000000;
    Params params = busyRequest(start, 59.0, kScale);
    params.setClipInterval(start, kHighest);
    CountingReporter silent;
    OV_DATA_STORE store;
    const auto code = codeOf([&] { OrvantaWorker().runPipeline(params, &silent, store, {}); });
    EXPECT_TRUE(!code.has_value() || *code == OVERR_NO_KEYFRAMES);
    EXPECT_FALSE(store.slices.empty());
    EXPECT_LT(silent.asked, 2000U);
    for (std::uint64_t n = 1; n <= silent.asked; ++n) {
        CountingReporter reporter(n);
        EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }), OVERR_USER_CANCELLED);
    }
}

TEST(ClipLength, Run_StopAtEndOfRange_EndsWithinASecondOfTheWish) {
    for (const double scale : {100.0, 1000.0, 10000000.0}) {
        Params params = busyRequest(0, 600.0, scale);
        params.setClipInterval(0, kHighest);
        ImpatientReporter reporter(std::chrono::milliseconds(50));
        EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }), OVERR_USER_CANCELLED);
        EXPECT_LT(reporter.secondsSinceWish(), 1.0);
    }
}

TEST(ClipLength, Merging_ManySlices_EndsWithinASecondOfTheWish) {
    // A day of recording with activity throughout.
    const Params params = busyRequest(0, 86400.0, 1000.0);
    OV_DATA_STORE store;
    store.fadeSeconds = 1.0;
    store.clipStop = 86400.0;
    store.targetWidth = 640;
    store.targetHeight = 400;
    for (int i = 0; i < 100000; ++i) {
        OV_FOCUS_SLICE slice;
        const std::int32_t x = i % 7 * 100;
        slice.start = i * 0.864;
        slice.stop = (i + 1) * 0.864;
        slice.map.span = 0.864;
        slice.map.spaces.push_back({{x, x + 200, 100, 300}, 6.0});
        slice.map.spaces.push_back({{x, x + 400, 100, 500}, 2.0});
        store.slices.push_back(slice);
    }
    ImpatientReporter reporter(std::chrono::milliseconds(50));
    store.progress = &reporter;
    EXPECT_EQ(codeOf([&] { OrvantaWorker().mergeSlices(params, store, 0.0); }), OVERR_USER_CANCELLED);
    EXPECT_LT(reporter.secondsSinceWish(), 1.0);
}

TEST(ClipLength, Run_WithoutReporter_EndsOnEveryOddInterval) {
    struct Clip {
        long long start;
        long long stop;
    };
    // Inverted, empty, far from the events, and with ends whose difference wraps.
    constexpr Clip kClips[] = {{60000, 0},
                               {0, 0},
                               {30000, 30000},
                               {kLowest, kLowest},
                               {kHighest, kHighest},
                               {kHighest, kLowest},
                               {kLowest, 60000},
                               {-60000, 60000},
                               {kLowest, 0},
                               {kHighest, 0},
                               {kHighest - 60000, kHighest}};
    for (const Clip& clip : kClips) {
        Params params = busyRequest(0, 30.0, 1000.0);
        params.setClipInterval(clip.start, clip.stop);
        CountingReporter reporter;
        const auto silent = codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, nullptr); });
        const auto counted = codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); });
        EXPECT_EQ(silent, counted) << clip.start << " " << clip.stop;
        EXPECT_NO_THROW(OrvantaWorker().calcOrvantaKeyframeAtTime(params, clip.start));
        EXPECT_NO_THROW(OrvantaWorker().calcOrvantaKeyframeAtTime(params, clip.stop));
    }
}

TEST(ClipLength, Run_TwiceTheClip_AsksAtMostTwiceAndAFewMoreTimes) {
    // An idle clip: the work is the clip's length alone.
    const auto questions = [](double seconds) {
        Scene scene = recording().length(seconds).cursor(1.0, 10, 10).cursor(1.1, 400, 300).click(2.0);
        CountingReporter reporter;
        codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(scene, &reporter); });
        return reporter.asked;
    };
    const std::uint64_t hour = questions(3600.0);
    const std::uint64_t twoHours = questions(7200.0);
    EXPECT_GT(hour, 360U);
    EXPECT_LE(twoHours, 2 * hour + 10);
}

TEST(ClipLength, Run_RegionFarBehindTheClip_CanBeCancelled) {
    // The clip's stop does not cut the zone of an earlier region, which lasts until the region changes.
    Params params = busyRequest(0, 30.0, 1000.0);
    params.recordingRegions().push_back({kHighest, {0, 640, 0, 480}});
    ImpatientReporter reporter(std::chrono::milliseconds(50));
    EXPECT_EQ(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }), OVERR_USER_CANCELLED);
    EXPECT_LT(reporter.secondsSinceWish(), 1.0);
}

TEST(ClipLength, Run_NegativeScaleFarFromZero_CostsWhatTheClipIsLong) {
    // With a negative scale the step of the meta pass is negative as well; it must not walk down to tick 0.
    constexpr long long kFar = 4000000000000000000;
    Params params = busyRequest(0, 30.0, 1000.0);
    params.setTimeScale(-0.15).setClipInterval(kFar, kFar + 10);
    params.recordingRegions()[0].time = kFar; // at tick 0 the zone would begin there, and no pass be due
    CountingReporter reporter(100000);
    EXPECT_NE(codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }), OVERR_USER_CANCELLED);
    EXPECT_LT(reporter.asked, 100U);
    // This question cannot be cancelled: it ends by itself.
    EXPECT_EQ(OrvantaWorker().calcOrvantaKeyframeAtTime(params, kFar)->size(), 1u);
}

} // namespace
} // namespace OrvantaNS::testing
