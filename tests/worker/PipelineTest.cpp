#include "OrvantaWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "EngineErrors.h"
#include "GeneratedRecording.h"
#include "RecordingReporter.h"
#include "Scene.h"
#include "frame/DataStore.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using testing::expectError;
using testing::RecordingReporter;

bool operator==(const OV_TIME_RECT& a, const OV_TIME_RECT& b) { return a.time == b.time && a.rect == b.rect; }

Params busyMinute() { return testing::generatedRecording(7); }

TEST(PipelineTest, NothingHappens_EndsWithoutKeyframes) {
    const Params params = testing::recording().length(25.0);
    expectError([&] { OrvantaWorker().calcOrvantaKeyframes(params, nullptr); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
}

TEST(PipelineTest, DefaultClip_HasNothingToProcess) {
    const Params params = testing::recording().length(0.0);
    expectError([&] { OrvantaWorker().calcOrvantaKeyframes(params, nullptr); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
}

// A click at the very start gives one slice to the end of a clip of 1.5 s: 0.7 of body and 7 x (F(0.1) - F(0)) = 0.69
// of tail make a probe of 1.39, which carries 0.2 + 1.39 / 0.8 = 1.93 s. An only slice needs more than 4 s for a
// keyframe.
TEST(PipelineTest, NoSliceGetsAKeyframe_EndsWithoutKeyframes) {
    Params params = testing::recording().length(1.5).cursor(0.0, 400, 300).click(0.0);
    OV_DATA_STORE store;
    expectError([&] { OrvantaWorker().runPipeline(params, nullptr, store, {}); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    ASSERT_FALSE(store.slices.empty());
    EXPECT_FALSE(store.slices[0].blank);
    EXPECT_DOUBLE_EQ(store.slices[0].stop, 1.5);
}

// The whole region changes ten times a second from end to end, which is one change of 10 s. Worth 6 a second, it carries
// slices of 0.2 + 1.2 / 0.8 = 1.7 s, which are all full screen and fold into one shot. At 10 s that is long enough for a
// keyframe; but the whole region is on show already when the video starts.
TEST(PipelineTest, OneLongFullScreenShot_EndsWithoutKeyframes) {
    testing::Scene scene = testing::recording().length(10.0);
    for (int i = 0; i <= 100; ++i) {
        scene.dirty(i / 10.0, testing::box(0, 0, 1280, 800));
    }
    expectError([&] { OrvantaWorker().calcOrvantaKeyframes(scene, nullptr); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    OV_DATA_STORE store;
    expectError([&] { OrvantaWorker().runPipeline(scene, nullptr, store, {}); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    ASSERT_EQ(store.valueObjects.size(), 1u);
    EXPECT_EQ(store.valueObjects[0].type, FullScreenDirty);
    ASSERT_FALSE(store.slices.empty());
    EXPECT_EQ(store.slices[0].stop, 10.0);
    EXPECT_FALSE(store.slices[0].blank);
    EXPECT_EQ(store.slices[0].mergeType, OV_MERGE_FULL_SCREEN);
    EXPECT_TRUE(std::all_of(store.slices.begin() + 1, store.slices.end(),
                            [](const OV_FOCUS_SLICE& slice) { return slice.mergeId == -1; }));
}

// With no cursor sample left, the meta passes of a zone from 0 to 25 s end at 10, 20, 25, 25 and 25.
TEST(PipelineTest, ParseStage_ReportsZeroToTwentyPercent) {
    const Params params = testing::recording().length(25.0);
    RecordingReporter reporter;
    expectError([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    EXPECT_THAT(reporter.percents, ElementsAre(0.0, 8.0, 16.0, 20.0, 20.0, 20.0));
    EXPECT_EQ(reporter.questions, reporter.percents.size());
}

TEST(PipelineTest, ClipOfNoLength_ReportsNotANumberAndGoesOn) {
    const Params params = testing::recording().length(0.0);
    RecordingReporter reporter;
    expectError([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    ASSERT_FALSE(reporter.percents.empty());
    EXPECT_TRUE(std::isnan(reporter.percents[0]));
}

TEST(PipelineTest, CancelledAtOnce_ReportsNothingAndParsesNothing) {
    RecordingReporter reporter(0);
    OV_DATA_STORE store;
    expectError([&] { OrvantaWorker().runPipeline(busyMinute(), &reporter, store, {}); }, OVERR_USER_CANCELLED,
                "Need String! User Cancelled");
    EXPECT_TRUE(reporter.percents.empty());
    EXPECT_TRUE(store.liveZones.empty());
}

TEST(PipelineTest, CancelledAtAnyQuestion_StopsThereAfterTheSameReports) {
    const Params params = busyMinute();
    const OrvantaWorker worker;
    RecordingReporter whole;
    worker.calcOrvantaKeyframes(params, &whole);
    ASSERT_GT(whole.questions, 10u);
    for (std::size_t at = 0; at < whole.questions; ++at) {
        RecordingReporter reporter(at);
        expectError([&] { worker.calcOrvantaKeyframes(params, &reporter); }, OVERR_USER_CANCELLED,
                    "Need String! User Cancelled");
        EXPECT_EQ(reporter.percents, std::vector<double>(whole.percents.begin(),
                                                         whole.percents.begin() + static_cast<std::ptrdiff_t>(at)));
    }
}

TEST(PipelineTest, Stages_AreObservedInOrderEachWithItsWorkDone) {
    std::vector<OV_PIPELINE_STAGE> stages;
    OV_DATA_STORE store;
    OrvantaWorker().runPipeline(busyMinute(), nullptr, store, [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& seen) {
        stages.push_back(stage);
        EXPECT_EQ(&seen, &store);
        EXPECT_EQ(seen.liveZones.size(), 1u);
        EXPECT_EQ(seen.valueObjects.empty(), stage < OV_PIPELINE_OBJECTS);
        EXPECT_EQ(seen.slices.empty(), stage < OV_PIPELINE_SLICES);
        EXPECT_EQ(seen.keyframes.empty(), stage < OV_PIPELINE_KEYFRAMES);
    });
    EXPECT_THAT(stages, ElementsAre(OV_PIPELINE_ZONES, OV_PIPELINE_OBJECTS, OV_PIPELINE_SLICES, OV_PIPELINE_SHOTS,
                                    OV_PIPELINE_KEYFRAMES));
}

TEST(PipelineTest, StageThatFails_IsNotObserved) {
    std::vector<OV_PIPELINE_STAGE> stages;
    OV_DATA_STORE store;
    const Params params = testing::recording().length(5.0);
    expectError(
        [&] {
            OrvantaWorker().runPipeline(params, nullptr, store, [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) {
                stages.push_back(stage);
            });
        },
        OVERR_NO_KEYFRAMES, "No keyframes were created!");
    EXPECT_THAT(stages, ElementsAre(OV_PIPELINE_ZONES, OV_PIPELINE_OBJECTS));
}

TEST(PipelineTest, Result_IsTheStoresKeyframesAndEachNamesItsSlice) {
    const Params params = busyMinute();
    const OrvantaWorker worker;
    OV_DATA_STORE store;
    worker.runPipeline(params, nullptr, store, {});
    const auto result = worker.calcOrvantaKeyframes(params, nullptr);
    EXPECT_TRUE(std::equal(result->begin(), result->end(), store.keyframes.begin(), store.keyframes.end(),
                           [](const OV_TIME_RECT& a, const OV_TIME_RECT& b) { return a == b; }));
    ASSERT_EQ(store.keyframeSlices.size(), store.keyframes.size());
    for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
        const OV_FOCUS_SLICE& slice = store.slices[store.keyframeSlices[i]];
        EXPECT_EQ(store.keyframes[i].time, DataParser::revertTime(slice.start));
        EXPECT_NE(slice.mergeType, OV_MERGE_NONE);
    }
}

TEST(PipelineTest, SilentReporterAndNone_GiveTheSameResultTwice) {
    const Params params = busyMinute();
    const OrvantaWorker worker;
    RecordingReporter reporter;
    const auto reported = worker.calcOrvantaKeyframes(params, &reporter);
    for (int run = 0; run < 2; ++run) {
        const auto silent = worker.calcOrvantaKeyframes(params, nullptr);
        EXPECT_TRUE(std::equal(silent->begin(), silent->end(), reported->begin(), reported->end(),
                               [](const OV_TIME_RECT& a, const OV_TIME_RECT& b) { return a == b; }));
    }
}

TEST(PipelineTest, Reports_LieInTheBandsOfTheirStages) {
    RecordingReporter reporter;
    std::vector<std::size_t> reportsAt;
    std::size_t slices = 0; // as slicing leaves them: merging erases a last one that is too short
    OV_DATA_STORE store;
    OrvantaWorker().runPipeline(busyMinute(), &reporter, store,
                                [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& seen) {
                                    reportsAt.push_back(reporter.percents.size());
                                    if (stage == OV_PIPELINE_SLICES) {
                                        slices = seen.slices.size();
                                    }
                                });
    ASSERT_EQ(reportsAt.size(), 5u);
    EXPECT_EQ(reportsAt[0], 1u);
    EXPECT_EQ(reporter.percents[0], 0.0);
    EXPECT_EQ(reportsAt[2] - reportsAt[1], slices) << "one report for each slice";
    EXPECT_EQ(reporter.percents[reportsAt[1]], 20.0);
    for (std::size_t i = reportsAt[1]; i < reportsAt[2]; ++i) {
        EXPECT_GE(reporter.percents[i], 20.0);
        EXPECT_LT(reporter.percents[i], 80.0);
    }
    for (std::size_t i = reportsAt[2]; i < reporter.percents.size(); ++i) {
        EXPECT_GE(reporter.percents[i], 80.0);
        EXPECT_LE(reporter.percents[i], 100.0);
    }
}

TEST(PipelineTest, SetUp_ConvertsClipAndFadeToSeconds) {
    // 100 ticks a second and a fade of 100 ticks are a request's own defaults: one second.
    Params params;
    params.setTargetWidth(640).setTargetHeight(400).setClipInterval(250, 1000);
    params.recordingRegions().push_back({0, {0, 1280, 0, 800}});
    OV_DATA_STORE store;
    expectError([&] { OrvantaWorker().runPipeline(params, nullptr, store, {}); }, OVERR_NO_KEYFRAMES,
                "No keyframes were created!");
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 100.0);
    EXPECT_EQ(store.fadeSeconds, 1.0);
    EXPECT_EQ(store.clipStart, 2.5);
    EXPECT_EQ(store.clipStop, 10.0);
    EXPECT_EQ(store.targetWidth, 640);
    EXPECT_EQ(store.targetHeight, 400);
    EXPECT_EQ(store.progress, nullptr);
}

} // namespace
} // namespace OrvantaNS
