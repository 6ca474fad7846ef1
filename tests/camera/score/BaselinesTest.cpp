#include "camera/score/Baselines.h"

#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

const RealRect kWhole{0, 0, 1280, 800};

TEST(BaselinesTest, ClickZoom_ClicksCloseInTime_ShareAStretch) {
    Scene scene = recording();
    scene.cursor(0, 640, 400).click(10).click(12).cursor(14, 100, 100).click(14).click(30);
    const auto keyframes = clickZoom(judgedSession(scene), 640, 400);
    // In at 9.7, on to 11.7 and 13.7, out at 16.5; in at 29.7 and out at 32.5.
    ASSERT_EQ(keyframes.size(), 6u);
    EXPECT_DOUBLE_EQ(keyframes[0].seconds, 9.7);
    EXPECT_EQ(keyframes[0].frame, (RealRect{320, 200, 960, 600}));
    EXPECT_DOUBLE_EQ(keyframes[1].seconds, 11.7);
    EXPECT_EQ(keyframes[2].frame, (RealRect{0, 0, 640, 400}));
    EXPECT_DOUBLE_EQ(keyframes[3].seconds, 16.5);
    EXPECT_EQ(keyframes[3].frame, kWhole);
    EXPECT_DOUBLE_EQ(keyframes[4].seconds, 29.7);
    EXPECT_DOUBLE_EQ(keyframes[5].seconds, 32.5);
}

TEST(BaselinesTest, ClickZoom_NoClicks_NoKeyframes) {
    EXPECT_TRUE(clickZoom(judgedSession(recording()), 640, 400).empty());
}

TEST(BaselinesTest, ClickZoom_StretchesAreJoined_UpToTwoAndAHalfSecondsApart) {
    const auto frames = [](double second) {
        const Scene scene = recording().cursor(0, 640, 400).click(10).click(second);
        return clickZoom(judgedSession(scene), 640, 400).size();
    };
    // The first stretch ends at 12.5; from 15 on, which is 0.3 s before a click, there is another.
    EXPECT_EQ(frames(15.25), 3u);
    EXPECT_EQ(frames(15.3), 3u); // just then
    EXPECT_EQ(frames(15.35), 4u);
}

TEST(BaselinesTest, ClickZoom_ClickWithinTheMoveToAnother_IsHeldByNoFrameOfItsOwn) {
    const auto frames = [](double second) {
        const Scene scene = recording().cursor(0, 640, 400).click(10).click(second);
        return clickZoom(judgedSession(scene), 640, 400);
    };
    ASSERT_EQ(frames(11.0).size(), 2u);
    EXPECT_EQ(frames(11.0)[1].seconds, 13.5) << "but it is shown as long";
    EXPECT_EQ(frames(11.1).size(), 3u);
}

TEST(BaselinesTest, ClickZoom_ClickAtTheBeginning_IsShownFromThereOn) {
    const auto keyframes = clickZoom(judgedSession(recording().cursor(0, 640, 400).click(0.1)), 640, 400);
    ASSERT_EQ(keyframes.size(), 2u);
    EXPECT_EQ(keyframes[0].seconds, 0.0);
    EXPECT_DOUBLE_EQ(keyframes[1].seconds, 2.6);
}

TEST(BaselinesTest, ClickZoom_FramesLieInTheRecording_AndAreNoLargerThanIt) {
    const auto around = [](std::int32_t x, std::int32_t y, double wide, double high) {
        return clickZoom(judgedSession(recording().cursor(0, x, y).click(10)), wide, high).at(0).frame;
    };
    EXPECT_EQ(around(1279, 799, 640, 400), (RealRect{640, 400, 1280, 800}));
    EXPECT_EQ(around(640, 400, 1280, 800), kWhole);
    // Half as large as the output, which is too wide, or too high.
    EXPECT_EQ(around(640, 400, 2560, 800), (RealRect{0, 200, 1280, 600}));
    EXPECT_EQ(around(640, 400, 640, 1600), (RealRect{480, 0, 800, 800}));
}

TEST(BaselinesTest, ClickZoom_GoesOutToTheLargestFrameInTheMiddle) {
    const JudgedSession session = judgedSession(recording().cursor(0, 100, 100).click(10));
    EXPECT_EQ(clickZoom(session, 360, 640).at(1).frame, (RealRect{415, 0, 865, 800}));
    EXPECT_EQ(clickZoom(session, 640, 40).at(1).frame, (RealRect{0, 360, 1280, 440}));
}

TEST(BaselinesTest, DwellZoom_StayOfTheCursor_IsShownForTwoSeconds) {
    Scene scene = recording();
    // A second within a few pixels, then far away and on.
    scene.cursor(10.0, 640, 400).cursor(10.5, 642, 400).cursor(11.0, 641, 403).cursor(11.1, 900, 700);
    scene.cursor(11.2, 1200, 100);
    const auto keyframes = dwellZoom(judgedSession(scene), 640, 400);
    ASSERT_EQ(keyframes.size(), 2u);
    EXPECT_DOUBLE_EQ(keyframes[0].seconds, 9.5);
    EXPECT_NEAR(centreX(keyframes[0].frame), 641.0, 1e-9);
    EXPECT_NEAR(centreY(keyframes[0].frame), 401.0, 1e-9);
    EXPECT_DOUBLE_EQ(keyframes[1].seconds, 11.5);
    EXPECT_EQ(keyframes[1].frame, kWhole);
}

TEST(BaselinesTest, DwellZoom_TooShortOrTooLong_IsNoStay) {
    Scene scene = recording();
    scene.cursor(10.0, 640, 400).cursor(10.44, 640, 400).cursor(10.5, 100, 100).cursor(13.2, 100, 100);
    EXPECT_TRUE(dwellZoom(judgedSession(scene), 640, 400).empty());
}

/// The keyframes for a cursor that stays in one place from a moment to another, which it has come to from far away.
std::vector<JudgedKeyframe> staying(double from, double to) {
    Scene scene = recording();
    scene.cursor(-1.0, 0, 0).cursor(from, 640, 400).cursor(to, 640, 400).cursor(to + 0.1, 1279, 799);
    return dwellZoom(judgedSession(scene), 640, 400);
}

TEST(BaselinesTest, DwellZoom_StaysOf45HundredthsToTwoSecondsAndSixTenths) {
    EXPECT_EQ(staying(0.0, 0.449).size(), 0u);
    EXPECT_EQ(staying(0.0, 0.45).size(), 2u);
    EXPECT_EQ(staying(0.0, 2.6).size(), 2u);
    EXPECT_EQ(staying(0.0, 2.601).size(), 0u);
    EXPECT_EQ(staying(0.0, 1.0)[0].seconds, 0.0) << "not half a second before the recording";
    EXPECT_EQ(staying(0.0, 1.0)[1].seconds, 1.5);
    EXPECT_EQ(staying(0.0, 1.0)[0].frame, (RealRect{320, 200, 960, 600}));
}

TEST(BaselinesTest, DwellZoom_StepOfTheCursor_IsMoreThanAFiftiethOfTheScreen) {
    // Of its width that is 25.6 pixels, of its height 16, and of both the root of their squares.
    const auto isStep = [](std::int32_t dx, std::int32_t dy) {
        Scene scene = recording();
        scene.cursor(10.0, 600, 400).cursor(10.3, 600, 400).cursor(10.6, 600 + dx, 400 + dy);
        return dwellZoom(judgedSession(scene), 640, 400).empty();
    };
    EXPECT_FALSE(isStep(25, 0));
    EXPECT_TRUE(isStep(26, 0));
    EXPECT_TRUE(isStep(-26, 0));
    EXPECT_FALSE(isStep(0, 15));
    EXPECT_TRUE(isStep(0, 17));
    EXPECT_FALSE(isStep(18, 11)); // 0.0141 and 0.0137
    EXPECT_TRUE(isStep(20, 12));  // 0.0156 and 0.0150
}

TEST(BaselinesTest, DwellZoom_StepOfJustAFiftieth_IsNone) {
    Scene scene = recording(1600, 1600);
    scene.cursor(10.0, 600, 400).cursor(10.3, 600, 400).cursor(10.6, 632, 400);
    EXPECT_EQ(dwellZoom(judgedSession(scene), 640, 400).size(), 2u);
}

TEST(BaselinesTest, DwellZoom_NoCursor_NoKeyframes) {
    EXPECT_TRUE(dwellZoom(judgedSession(recording()), 640, 400).empty());
}

/// The middles of the stays that are shown, of those that begin and end at given moments in places far apart.
std::vector<double> shown(const std::vector<std::pair<double, double>>& stays) {
    Scene scene = recording();
    for (std::size_t i = 0; i < stays.size(); ++i) {
        const std::int32_t x = i % 2 == 0 ? 400 : 900;
        scene.cursor(stays[i].first, x, 400).cursor(stays[i].second, x, 400);
    }
    std::vector<double> middles;
    for (const JudgedKeyframe& keyframe : dwellZoom(judgedSession(scene), 640, 400)) {
        if (keyframe.frame != kWhole) {
            middles.push_back(keyframe.seconds + 1.0);
        }
    }
    return middles;
}

TEST(BaselinesTest, DwellZoom_OfStaysCloserThanTwoSeconds_TheLongestIsShown) {
    // Their middles are 10.5 and 12.5, and 10.5 and 12.25.
    EXPECT_EQ(shown({{10.0, 11.0}, {12.0, 13.0}}), (std::vector<double>{10.5, 12.5}));
    EXPECT_EQ(shown({{10.0, 11.0}, {11.5, 13.0}}), (std::vector<double>{12.25}));
    EXPECT_EQ(shown({{10.0, 11.5}, {12.0, 13.0}}), (std::vector<double>{10.75}));
    EXPECT_EQ(shown({{10.0, 11.0}, {11.5, 12.5}}), (std::vector<double>{10.5})) << "of two as long the first";
    // The one between two that are longer is close to either.
    EXPECT_EQ(shown({{10.0, 11.0}, {11.75, 12.25}, {14.0, 15.0}}), (std::vector<double>{10.5, 14.5}));
    EXPECT_EQ(shown({{10.0, 11.0}, {12.75, 13.25}, {14.0, 15.0}}), (std::vector<double>{10.5, 14.5}));
    EXPECT_EQ(shown({{10.0, 11.0}, {12.25, 12.75}, {14.0, 15.0}}), (std::vector<double>{10.5, 12.5, 14.5}));
}

} // namespace
} // namespace OrvantaNS::testing
