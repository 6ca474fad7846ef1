// The three questions, errors, progress and regions of the director.

#include "OrvantaDirector.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "RecordingReporter.h"
#include "Scene.h"
#include "frame/Geometry.h"

namespace OrvantaNS::testing {
namespace {

const Rectangle kWhole = box(0, 0, 1280, 800);

std::vector<OV_TIME_RECT> keyframes(const Params& params, const DirectorControls& controls = {}) {
    return *OrvantaDirector(controls).calcOrvantaKeyframes(params, nullptr);
}

OVERR_CODES codeOf(const Params& params) {
    try {
        keyframes(params);
    } catch (const OrvantaException& failure) {
        return failure.errorCode();
    }
    return static_cast<OVERR_CODES>(0);
}

/// Typing in one place for a long time, then in another far away.
Scene typing() {
    Scene scene = recording();
    scene.window(0, box(0, 0, 1280, 800)).cursor(0, 200, 150);
    for (int i = 0; i < 100; ++i) {
        scene.caret(2.0 + 0.25 * i, box(150 + 3 * i, 140, 1, 18));
    }
    for (int i = 0; i < 100; ++i) {
        scene.caret(30.0 + 0.25 * i, box(850 + 3 * i, 700, 1, 18));
    }
    return scene;
}

TEST(DirectorTest, Keyframes_NoStreamAtAll_GiveTheWholeRecording) {
    const auto list = keyframes(recording());
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].time, 0);
    EXPECT_EQ(list[0].rect, kWhole);
}

TEST(DirectorTest, Keyframes_LongTypingInTwoPlaces_ReadableFrameForEach) {
    const auto list = keyframes(typing());
    ASSERT_GE(list.size(), 2u);
    EXPECT_EQ(list.front().time, 0);
    EXPECT_LE(width(list.front().rect), 864);
    EXPECT_LE(list.front().rect.left, 150);
    EXPECT_GE(list.front().rect.right, 447);
    EXPECT_LE(list.front().rect.top, 140);
    EXPECT_GE(list.back().time, 26000);
    EXPECT_LE(list.back().time, 31000);
    EXPECT_LE(width(list.back().rect), 864);
    EXPECT_GE(list.back().rect.right, 1147);
    EXPECT_GE(list.back().rect.bottom, 718);
}

TEST(DirectorTest, Keyframes_SmallDialog_IsHeldWhole) {
    Scene scene = recording();
    scene.window(0, box(0, 0, 1280, 800));
    for (int i = 0; i < 200; ++i) {
        scene.window(10.0 + 0.1 * i, box(700, 300, 500, 320));
    }
    scene.window(30.0, box(0, 0, 1280, 800));
    const auto frame = OrvantaDirector().calcOrvantaKeyframeAtTime(scene, 20000)->front();
    EXPECT_LE(frame.rect.left, 700);
    EXPECT_LE(frame.rect.top, 300);
    EXPECT_GE(frame.rect.right, 1200);
    EXPECT_GE(frame.rect.bottom, 620);
}

TEST(DirectorTest, AtTime_GivesTheFrameThatHolds) {
    const Scene scene = typing();
    const auto list = keyframes(scene);
    for (std::size_t i = 0; i < list.size(); ++i) {
        for (const long long offset : {0, 1, 1400}) {
            const auto answer = OrvantaDirector().calcOrvantaKeyframeAtTime(scene, list[i].time + offset);
            ASSERT_EQ(answer->size(), 1u);
            EXPECT_EQ(answer->front().time, list[i].time + offset);
            EXPECT_EQ(answer->front().rect, list[i].rect);
        }
    }
    EXPECT_EQ(OrvantaDirector().calcOrvantaKeyframeAtTime(scene, -1)->front().rect, kWhole);
}

TEST(DirectorTest, AtWindow_AnswersAsTheValueEngine) {
    const Scene scene = recording().window(3.0, box(300, 200, 500, 320));
    EXPECT_EQ(OrvantaDirector().calcKeyframeAtWindow(scene)->front().rect,
              OrvantaWorker().calcKeyframeAtWindow(scene)->front().rect);
    EXPECT_THROW(OrvantaDirector().calcKeyframeAtWindow(recording()), OrvantaException);
}

TEST(DirectorTest, Plan_HasTheKeyframesWithTheirReasons) {
    const Scene scene = typing();
    const auto list = keyframes(scene);
    const DirectorPlan plan = OrvantaDirector().plan(scene, nullptr);
    ASSERT_EQ(plan.shots.size(), list.size());
    EXPECT_GT(plan.cost, 0.0);
    for (std::size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(plan.shots[i].keyframe.time, list[i].time);
        EXPECT_EQ(plan.shots[i].keyframe.rect, list[i].rect);
        EXPECT_FALSE(plan.shots[i].reasons.empty());
        if (plan.shots[i].hasRunnerUp) {
            // The shot was adjusted to its evidence, so that no candidate is better for the same time.
            EXPECT_GE(plan.shots[i].runnerUpCost, plan.shots[i].cost - 1e-9);
        }
    }
    EXPECT_NE(plan.shots.front().text.find("typing"), std::string::npos);
    EXPECT_EQ(plan.shots.front().reasons.front().kind, "typing");
    EXPECT_GT(plan.shots.front().reasons.front().seen, 0.95);
}

TEST(DirectorTest, Request_FaultyOnes_HaveTheValueEnginesCodes) {
    EXPECT_EQ(codeOf(recording().target(63, 400)), OVERR_BAD_TARGET_SIZE);
    EXPECT_EQ(codeOf(recording().target(640, 63)), OVERR_BAD_TARGET_SIZE);
    EXPECT_EQ(codeOf(recording().target(1280, 800)), OVERR_TARGET_TOO_LARGE);
    EXPECT_EQ(codeOf(recording(4000, 1)), OVERR_BAD_REGION);
    Params none = recording().params();
    none.recordingRegions().clear();
    EXPECT_EQ(codeOf(none), OVERR_BAD_REGION);
    for (const double scale : {0.0, -1.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        EXPECT_EQ(codeOf(recording().params().setTimeScale(scale)), OVERR_BAD_TIME_SCALE) << scale;
    }
    EXPECT_EQ(codeOf(recording().length(0)), OVERR_NO_KEYFRAMES);
    EXPECT_EQ(codeOf(recording().length(0.001)), 0);
}

TEST(DirectorTest, Controls_OutOfTheirRanges_AreRefused) {
    for (const double bad : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        DirectorControls controls;
        controls.calm = bad;
        EXPECT_THROW(OrvantaDirector{controls}, std::invalid_argument) << bad;
        controls = {};
        controls.readable = bad;
        EXPECT_THROW(OrvantaDirector{controls}, std::invalid_argument) << bad;
    }
    DirectorControls controls;
    controls.readable = 1.01;
    EXPECT_THROW(OrvantaDirector{controls}, std::invalid_argument);
    controls.readable = 1.0;
    EXPECT_NO_THROW(OrvantaDirector{controls});
}

TEST(DirectorTest, Progress_GrowsToAHundred_AndCancelsAtAnyQuestion) {
    const Scene scene = typing();
    RecordingReporter reporter;
    OrvantaDirector().calcOrvantaKeyframes(scene, &reporter);
    ASSERT_GT(reporter.percents.size(), 3u);
    EXPECT_EQ(reporter.percents.front(), 0.0);
    EXPECT_EQ(reporter.percents.back(), 100.0);
    EXPECT_TRUE(std::is_sorted(reporter.percents.begin(), reporter.percents.end()));
    for (std::size_t at = 0; at < reporter.questions; ++at) {
        RecordingReporter impatient(at);
        try {
            OrvantaDirector().calcOrvantaKeyframes(scene, &impatient);
            ADD_FAILURE() << at;
        } catch (const OrvantaException& failure) {
            EXPECT_EQ(failure.errorCode(), OVERR_USER_CANCELLED);
            EXPECT_EQ(impatient.percents.size(), at);
        }
    }
}

TEST(DirectorTest, Regions_ThatChange_ArePlannedOneAfterTheOther) {
    Scene scene = recording();
    scene.region(30.0, box(1280, 100, 1000, 625));
    const auto list = keyframes(scene);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].time, 0);
    EXPECT_EQ(list[0].rect, kWhole);
    EXPECT_EQ(list[1].time, 30000);
    // The second region, told from the first one's corner.
    EXPECT_EQ(list[1].rect, box(1280, 100, 1000, 625));
}

TEST(DirectorTest, Overhang_Portrait_MayShowAllOfAWideWindow) {
    Scene scene = recording().target(360, 640);
    for (int i = 0; i < 500; ++i) {
        scene.window(0.1 * i, box(100, 100, 900, 500));
    }
    scene.action(1.0, 7).dirty(1.0, box(100, 100, 900, 500));
    DirectorControls controls;
    const auto inside = keyframes(scene, controls);
    for (const OV_TIME_RECT& keyframe : inside) {
        EXPECT_EQ(height(keyframe.rect) * 9, width(keyframe.rect) * 16);
        EXPECT_LE(height(keyframe.rect), 800);
    }
    controls.overhang = true;
    const auto over = keyframes(scene, controls);
    EXPECT_LE(over.front().rect.left, 100);
    EXPECT_GE(over.front().rect.right, 1000);
    EXPECT_GT(height(over.front().rect), 800);
}

} // namespace
} // namespace OrvantaNS::testing
