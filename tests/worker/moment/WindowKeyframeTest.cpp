#include "OrvantaWorker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "EngineErrors.h"
#include "Random.h"
#include "Scene.h"
#include "frame/Geometry.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::expectError;
using testing::recording;
using testing::Scene;

Rectangle frameOf(const Params& params) {
    const auto keyframes = OrvantaWorker().calcKeyframeAtWindow(params);
    EXPECT_EQ(keyframes->size(), 1u);
    EXPECT_EQ(keyframes->at(0).time, 0);
    return keyframes->at(0).rect;
}

void expectRefused(const Params& params, OVERR_CODES code, const std::string& text) {
    ::testing::internal::CaptureStdout();
    expectError([&] { OrvantaWorker().calcKeyframeAtWindow(params); }, code, text);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

constexpr const char* kNoRegion = "Need String! Must have at least one Recording Region!";
constexpr const char* kNoWindow = "Need String! Must have at least one Foreground Window!";
constexpr const char* kTooLarge = "Need String! Target dimensions stretch beyond the recording region";
constexpr const char* kNotPositive = "Need String! Target dimensions must be greater than zero";

const Rectangle kWindow = box(500, 300, 200, 100);

TEST(WindowKeyframeTest, Checks_RefuseInTheirOrder) {
    Params nothing;
    expectRefused(nothing, OVERR_BAD_REGION, kNoRegion);

    Params noWindow = recording().target(9999, 9999);
    expectRefused(noWindow, OVERR_BAD_REGION, kNoWindow);
    noWindow.recordingRegions().clear();
    expectRefused(noWindow, OVERR_BAD_REGION, kNoRegion);

    expectRefused(recording().target(1281, 801).window(0.0, kWindow), OVERR_TARGET_TOO_LARGE, kTooLarge);
    expectRefused(recording().target(0, 0).window(0.0, kWindow), OVERR_TARGET_TOO_LARGE, kNotPositive);
    // Larger than an inverted region and below 1: the first test of the two.
    expectRefused(recording(-10, -10).target(-5, -5).window(0.0, kWindow), OVERR_TARGET_TOO_LARGE, kTooLarge);
}

TEST(WindowKeyframeTest, TargetLargerThanTheRegionInOneDimensionOrEqual_Passes) {
    frameOf(recording().target(1281, 800).window(0.0, kWindow));
    frameOf(recording().target(1280, 801).window(0.0, kWindow));
    frameOf(recording().target(1280, 800).window(0.0, kWindow));
}

TEST(WindowKeyframeTest, TargetBelowOneInOneDimension_Passes) {
    // A width of 0 and the whole height: the 200 pixels of the window are taken off, 100 from each side.
    EXPECT_EQ(frameOf(recording().target(0, 100).window(0.0, kWindow)), (Rectangle{600, 600, 0, 800}));
    frameOf(recording().target(100, 0).window(0.0, kWindow));
    frameOf(recording().target(1, 1).window(0.0, kWindow));
    frameOf(recording().target(1, 0).window(0.0, kWindow));
    frameOf(recording().target(0, 1).window(0.0, kWindow));
}

TEST(WindowKeyframeTest, SmallWindow_IsPaddedToTheTargetAroundItsMiddle) {
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, kWindow)), box(280, 150, 640, 400));
}

TEST(WindowKeyframeTest, WindowInACorner_IsMovedOnToTheRegion) {
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(100, 100, 200, 100))), box(0, 0, 640, 400));
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(1100, 700, 180, 100))), box(640, 400, 640, 400));
}

TEST(WindowKeyframeTest, LargeWindow_GetsTheTargetsAspect) {
    // 1000 by 500 at 16:10: 625 high, 62 of the 125 above.
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(100, 100, 1000, 500))),
              (Rectangle{100, 1100, 38, 663}));
}

TEST(WindowKeyframeTest, RegionAwayFromTheOrigin_GivesLocalPixels) {
    Scene scene = recording();
    scene.params().recordingRegions()[0].rect = box(100, 50, 1280, 800);
    scene.target(640, 400).window(0.0, box(600, 350, 200, 100));
    EXPECT_EQ(frameOf(scene), box(280, 150, 640, 400));
}

TEST(WindowKeyframeTest, WindowBeyondTheRegion_IsCutToIt) {
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(-300, -300, 400, 400))), box(0, 0, 640, 400));
    // What is left is 1280 by 500, which at 16:10 wants 800: 150 on either side, moved down from -150.
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(-300, -300, 3000, 800))), box(0, 0, 1280, 800));
}

TEST(WindowKeyframeTest, WindowOffTheRegion_ShowsEverything) {
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(2000, 100, 200, 100))), box(0, 0, 1280, 800));
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, box(1280, 100, 200, 100))), box(0, 0, 1280, 800));
    EXPECT_EQ(frameOf(recording().target(640, 400).window(0.0, {})), box(0, 0, 1280, 800));
}

TEST(WindowKeyframeTest, OnlyTheFirstWindowAndTheFirstRegionCount) {
    const Scene scene = recording()
                            .target(640, 400)
                            .window(55.0, kWindow)
                            .window(0.0, box(0, 0, 50, 50))
                            .region(10.0, box(7, 7, 64, 64));
    EXPECT_EQ(frameOf(scene), box(280, 150, 640, 400));
}

TEST(WindowKeyframeTest, TimeScale_IsNeitherTestedNorStored) {
    DataParser::StoreTimeScale = 321.0;
    Params params = recording().target(640, 400).window(0.0, kWindow);
    params.setTimeScale(0.0);
    EXPECT_EQ(frameOf(params), box(280, 150, 640, 400));
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 321.0);
}

TEST(WindowKeyframeTest, AnyWindow_GivesAFrameOfTheTargetsAspectOnTheRecording) {
    for (std::uint64_t seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const int targetWidth = random.range(1, 1280);
        const int targetHeight = random.range(1, 800);
        const Rectangle window =
            box({random.range(-500, 1500), random.range(-500, 1000), random.range(0, 2000), random.range(0, 1500)});
        const Rectangle frame = frameOf(recording().target(targetWidth, targetHeight).window(0.0, window));
        ASSERT_TRUE(contains(box(0, 0, 1280, 800), frame));
        ASSERT_LE(std::abs(width(frame) * targetHeight - height(frame) * targetWidth),
                  std::max(targetWidth, targetHeight));
    }
}

} // namespace
} // namespace OrvantaNS
