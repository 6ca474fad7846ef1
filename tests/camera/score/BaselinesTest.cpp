#include "camera/score/Baselines.h"

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

} // namespace
} // namespace OrvantaNS::testing
