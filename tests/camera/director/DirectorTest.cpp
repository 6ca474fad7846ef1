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

TEST(DirectorTest, Keyframes_MovesThatMustEarnMinutes_AreNotMade) {
    DirectorControls controls;
    controls.calm = 1000.0;
    EXPECT_EQ(keyframes(typing(), controls).size(), 1u);
}

TEST(DirectorTest, Presses_AreShownAlways_OrWhereItIsCheap) {
    // In the midst of typing, somebody presses in the other corner once.
    Scene scene = typing();
    scene.cursor(14.9, 1250, 770).action(15.0, 0).action(15.1, 1).cursor(15.5, 200, 150);
    const auto isShown = [&](DirectorPresses presses) {
        DirectorControls controls;
        controls.presses = presses;
        const auto frame = OrvantaDirector(controls).calcOrvantaKeyframeAtTime(scene, 15000)->front();
        return containsPoint(frame.rect, 1250, 770);
    };
    EXPECT_TRUE(isShown(DirectorPresses::Always));
    EXPECT_FALSE(isShown(DirectorPresses::Cheap));
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

TEST(DirectorTest, Request_AtTheEndsOfItsRanges_IsAnswered) {
    EXPECT_EQ(codeOf(recording().target(64, 64)), 0);
    EXPECT_EQ(codeOf(recording().target(1280, 799)), 0);
    EXPECT_EQ(codeOf(recording().target(1279, 800)), 0);
    EXPECT_EQ(codeOf(recording().target(1281, 801)), OVERR_TARGET_TOO_LARGE);
    // 64 by 64 pixels, whatever their shape.
    EXPECT_EQ(codeOf(recording(32, 128).target(64, 64)), 0);
    EXPECT_EQ(codeOf(recording(31, 132).target(64, 64)), OVERR_BAD_REGION);
    EXPECT_EQ(codeOf(recording(4096, 1).target(64, 64)), 0);
    EXPECT_EQ(codeOf(recording(1, 4096).target(64, 64)), 0);
    EXPECT_EQ(codeOf(recording(4095, 1).target(64, 64)), OVERR_BAD_REGION);
    // A side that 32 bits do not hold.
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::lowest();
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    Params wide = recording().params();
    wide.recordingRegions().front().rect = {kLowest, kHighest, 0, 800};
    EXPECT_EQ(codeOf(wide), OVERR_BAD_REGION);
    wide.recordingRegions().front().rect = {0, 1280, kLowest, kHighest};
    EXPECT_EQ(codeOf(wide), OVERR_BAD_REGION);
    wide.recordingRegions().front().rect = {-1, kHighest, 0, 800};
    EXPECT_EQ(codeOf(wide), OVERR_BAD_REGION);
    wide.recordingRegions().front().rect = {0, kHighest, 0, 800};
    EXPECT_EQ(codeOf(wide), 0);
    wide.recordingRegions().front().rect = {0, 1280, 0, kHighest};
    EXPECT_EQ(codeOf(wide), 0);
    // A tick of two seconds.
    EXPECT_EQ(codeOf(recording().params().setTimeScale(0.5).setClipInterval(0, 60)), 0);
}

// ---- Regions ----

const Rectangle kSecond = box(1280, 100, 1000, 625);

/// Typing in two far corners of a rectangle, for ten seconds each, from a moment on.
void typeIn(Scene& scene, double time, const Rectangle& where) {
    for (int i = 0; i < 40; ++i) {
        scene.caret(time + 0.25 * i, box(where.left + 50 + 3 * i, where.top + 40, 1, 18));
    }
    for (int i = 0; i < 40; ++i) {
        scene.caret(time + 10.0 + 0.25 * i, box(where.right - 200 + 3 * i, where.bottom - 60, 1, 18));
    }
}

Rectangle moved(const Rectangle& rect, std::int32_t right, std::int32_t down) {
    return {rect.left + right, rect.right + right, rect.top + down, rect.bottom + down};
}

TEST(DirectorTest, Regions_EachIsPlannedAsIfAlone) {
    Scene scene = recording().region(30.0, kSecond);
    typeIn(scene, 2.0, kWhole);
    typeIn(scene, 32.0, kSecond);
    const DirectorPlan both = OrvantaDirector().plan(scene, nullptr);
    Params one = scene.params();
    one.recordingRegions().pop_back();
    one.setClipInterval(0, 30000);
    const DirectorPlan first = OrvantaDirector().plan(one, nullptr);
    Params other = scene.params();
    other.recordingRegions().erase(other.recordingRegions().begin());
    other.setClipInterval(30000, 60000);
    const DirectorPlan second = OrvantaDirector().plan(other, nullptr);
    ASSERT_GT(first.shots.size(), 1u);
    ASSERT_GT(second.shots.size(), 1u);
    EXPECT_NEAR(both.cost, first.cost + second.cost, 1e-9);
    ASSERT_EQ(both.shots.size(), first.shots.size() + second.shots.size());
    for (std::size_t i = 0; i < both.shots.size(); ++i) {
        const bool isSecond = i >= first.shots.size();
        const DirectorShot& alone = isSecond ? second.shots[i - first.shots.size()] : first.shots[i];
        const std::int32_t right = isSecond ? 1280 : 0;
        const std::int32_t down = isSecond ? 100 : 0;
        EXPECT_EQ(both.shots[i].keyframe.time, alone.keyframe.time);
        EXPECT_EQ(both.shots[i].keyframe.rect, moved(alone.keyframe.rect, right, down));
        ASSERT_EQ(both.shots[i].hasRunnerUp, alone.hasRunnerUp);
        if (alone.hasRunnerUp) {
            EXPECT_EQ(both.shots[i].runnerUp, moved(alone.runnerUp, right, down));
        }
        ASSERT_EQ(both.shots[i].reasons.size(), alone.reasons.size());
        for (std::size_t k = 0; k < alone.reasons.size(); ++k) {
            EXPECT_EQ(both.shots[i].reasons[k].rect, moved(alone.reasons[k].rect, right, down));
        }
    }
}

TEST(DirectorTest, Regions_TheSameAgain_ArePlannedAsOne) {
    Scene scene = recording();
    typeIn(scene, 30.0, kWhole);
    const auto once = keyframes(scene);
    const auto again = keyframes(scene.region(20.0, kWhole).region(40.0, kWhole));
    ASSERT_GT(once.size(), 1u);
    ASSERT_EQ(again.size(), once.size());
    for (std::size_t i = 0; i < once.size(); ++i) {
        EXPECT_EQ(again[i].time, once[i].time);
        EXPECT_EQ(again[i].rect, once[i].rect);
    }
}

/// The times of the keyframes of a quiet recording with further regions: one for each stretch.
std::vector<long long> quietTimes(const std::vector<OV_TIME_RECT>& regions, double clipStart = 0.0) {
    Params params = recording().params();
    params.recordingRegions().insert(params.recordingRegions().end(), regions.begin(), regions.end());
    params.setClipInterval(static_cast<long long>(clipStart * 1000), 60000);
    std::vector<long long> times;
    for (const OV_TIME_RECT& keyframe : keyframes(params)) {
        times.push_back(keyframe.time);
    }
    return times;
}

TEST(DirectorTest, Regions_AreThoseOfTheClip_InTheirOrder) {
    using Times = std::vector<long long>;
    EXPECT_EQ(quietTimes({{20000, kSecond}, {40000, kWhole}}), (Times{0, 20000, 40000}));
    // The same again is the same stretch.
    EXPECT_EQ(quietTimes({{20000, kWhole}, {40000, kSecond}, {50000, kSecond}}), (Times{0, 40000}));
    // A place that is too small to be shown leaves the camera where it is, and what comes after it begins anew.
    EXPECT_EQ(quietTimes({{20000, box(500, 900, 63, 65)}, {40000, kSecond}}), (Times{0, 40000}));
    EXPECT_EQ(quietTimes({{20000, box(0, 0, 64, 64)}, {40000, kSecond}}), (Times{0, 20000, 40000}));
    EXPECT_EQ(quietTimes({{20000, {}}, {40000, kWhole}}), (Times{0, 40000}));
    // Before the clip, at its ends, and after it.
    EXPECT_EQ(quietTimes({{20000, kSecond}}, 30.0), (Times{30000}));
    EXPECT_EQ(quietTimes({{20000, kSecond}, {25000, kWhole}, {45000, kSecond}}, 30.0), (Times{30000, 45000}));
    EXPECT_EQ(quietTimes({{60000, kSecond}}), (Times{0}));
    EXPECT_EQ(quietTimes({{59999, kSecond}}), (Times{0, 59999}));
    // One that comes too early is passed over.
    EXPECT_EQ(quietTimes({{40000, kSecond}, {20000, kWhole}, {50000, kSecond}}), (Times{0, 50000}));
}

TEST(DirectorTest, Opening_OfTheWholeRecording_HasAKeyframeUnlessItIsShownAnyway) {
    // A page scrolls that fills the screen, and no frame but the whole shows it; then there is typing.
    const auto scrolled = [](const Rectangle& page) {
        Scene scene = recording();
        scene.window(0.0, page);
        for (int i = 0; i < 40; ++i) {
            scene.action(0.5 * i, 7).dirty(0.5 * i + 0.1, page);
        }
        for (int i = 0; i < 100; ++i) {
            scene.caret(30.0 + 0.25 * i, box(page.left + 50 + 3 * i, page.top + 40, 1, 18));
        }
        return scene;
    };
    const auto first = keyframes(scrolled(kWhole));
    ASSERT_EQ(first.size(), 1u);
    EXPECT_GT(first.front().time, 20000);
    EXPECT_NE(first.front().rect, kWhole);
    // The second region is there from the start, and the recording that is shown before it is the first.
    const Rectangle large = box(1280, 100, 1600, 1000);
    const auto second = keyframes(scrolled(large).region(0.0, large));
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(second[0].time, 0);
    EXPECT_EQ(second[0].rect, large);
}

// ---- Clock and fade ----

TEST(DirectorTest, Keyframes_AreRoundedToTicks) {
    // Everything happens at whole tenths of a second; keyframes stand at quarters of a second, half a tick rounds up.
    Scene scene = recording();
    for (int i = 0; i < 20; ++i) {
        scene.caret(20.3 + 0.5 * i, box(150 + 3 * i, 140, 1, 18)).caret(40.3 + 0.5 * i, box(1050 + 3 * i, 700, 1, 18));
    }
    std::stable_sort(scene.params().caretRects().begin(), scene.params().caretRects().end(),
                     [](const OV_TIME_RECT& a, const OV_TIME_RECT& b) { return a.time < b.time; });
    Params coarse = scene.params();
    for (OV_TIME_RECT& caret : coarse.caretRects()) {
        caret.time /= 100;
    }
    coarse.setTimeScale(10.0).setFadeDuration(10).setClipInterval(0, 600);
    const auto fine = keyframes(scene);
    const auto list = keyframes(coarse);
    ASSERT_GE(fine.size(), 2u);
    ASSERT_EQ(list.size(), fine.size());
    for (std::size_t i = 0; i < fine.size(); ++i) {
        EXPECT_EQ(fine[i].time % 250, 0);
        EXPECT_EQ(list[i].time, (fine[i].time + 50) / 100);
        EXPECT_EQ(list[i].rect, fine[i].rect);
    }
}

TEST(DirectorTest, Fade_LongerThanHalfAMinute_IsPlannedAsHalfAMinute) {
    Scene scene = recording().length(300.0);
    for (int i = 0; i < 400; ++i) {
        scene.caret(2.0 + 0.25 * i, box(150 + i, 140, 1, 18));
    }
    for (int i = 0; i < 400; ++i) {
        scene.caret(180.0 + 0.25 * i, box(850 + i, 700, 1, 18));
    }
    const auto times = [&](double fade) {
        std::vector<long long> list;
        for (const OV_TIME_RECT& keyframe : keyframes(Scene(scene).fade(fade))) {
            list.push_back(keyframe.time);
        }
        return list;
    };
    ASSERT_GT(times(30.0).size(), 1u);
    EXPECT_EQ(times(1000.0), times(30.0));
    EXPECT_NE(times(29.0), times(30.0));
    EXPECT_EQ(times(-5.0), times(0.0));
    EXPECT_NE(times(0.0), times(1.0));
}

TEST(DirectorTest, Progress_OfStretches_IsThatOfTheClip) {
    Scene scene = recording().region(30.0, kSecond);
    scene.params().setClipInterval(20000, 60000);
    RecordingReporter reporter;
    OrvantaDirector().calcOrvantaKeyframes(scene, &reporter);
    const std::vector<double>& percents = reporter.percents;
    EXPECT_EQ(percents.front(), 0.0);
    EXPECT_EQ(percents.back(), 100.0);
    // The first of the two stretches ends after a quarter of the clip, where the second begins.
    EXPECT_EQ(std::count(percents.begin(), percents.end(), 25.0), 3);
    EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
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
