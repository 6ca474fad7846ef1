#include "asking/OutputSize.h"

#include <gtest/gtest.h>

#include "asking/OptionError.h"

namespace OrvantaNS::command {
namespace {

constexpr FrameSize kHd{1920, 1080};
constexpr Rectangle kHdRegion{0, 1920, 0, 1080};

TEST(OutputSizeTest, WithoutOption_IsTheVideosOwnInEvenNumbers) {
    EXPECT_EQ(outputSize(std::nullopt, kHd), kHd);
    EXPECT_EQ(outputSize(std::nullopt, {1367, 769}), (FrameSize{1366, 768}));
}

TEST(OutputSizeTest, Pixels_AreTakenAsTheyAre) {
    EXPECT_EQ(outputSize(parseSize("333x111"), kHd), (FrameSize{333, 111}));
}

TEST(OutputSizeTest, Scale_IsAShareOfTheVideo) {
    EXPECT_EQ(outputSize(parseSize("0.5"), kHd), (FrameSize{960, 540}));
    EXPECT_EQ(outputSize(parseSize("0.3"), kHd), (FrameSize{576, 324}));
    EXPECT_EQ(outputSize(parseSize("0.01"), {100, 100}), (FrameSize{2, 2}));
}

TEST(OutputSizeTest, Aspect_FitsTheVideoWithoutRoomToSpare) {
    EXPECT_EQ(outputSize(parseSize("16:9"), kHd), kHd);
    EXPECT_EQ(outputSize(parseSize("9:16"), kHd), (FrameSize{606, 1080}));
    EXPECT_EQ(outputSize(parseSize("1:1"), kHd), (FrameSize{1080, 1080}));
    EXPECT_EQ(outputSize(parseSize("21:9"), kHd), (FrameSize{1920, 822}));
}

TEST(OutputSizeTest, Preview_IsAQuarterOfEachSide) {
    EXPECT_EQ(previewSize(kHd), (FrameSize{480, 270}));
    EXPECT_EQ(previewSize({606, 1080}), (FrameSize{150, 270}));
}

TEST(PlannedSizeTest, IsTheOutputDividedByTheZoom) {
    EXPECT_EQ(plannedSize(kHd, 2.0, kHd, kHdRegion, EngineChoice::Value), (FrameSize{960, 540}));
    EXPECT_EQ(plannedSize({1280, 720}, 1.0, kHd, kHdRegion, EngineChoice::Value), (FrameSize{1280, 720}));
    EXPECT_EQ(plannedSize({1080, 1920}, 2.0, kHd, kHdRegion, EngineChoice::Voting), (FrameSize{540, 960}));
}

TEST(PlannedSizeTest, VideoOfAnotherSizeThanTheRegion_CountsInRecordedPixels) {
    // A screen of 1280x720 points, recorded with two pixels a point.
    EXPECT_EQ(plannedSize({2560, 1440}, 2.0, {2560, 1440}, {0, 1280, 0, 720}, EngineChoice::Value),
              (FrameSize{640, 360}));
}

TEST(PlannedSizeTest, IsNeverSmallerThanAnEngineTakes) {
    EXPECT_EQ(plannedSize({160, 90}, 2.0, kHd, kHdRegion, EngineChoice::Value), (FrameSize{114, 64}));
}

TEST(PlannedSizeTest, WithoutRoomForTheCamera_IsNothing) {
    EXPECT_EQ(plannedSize(kHd, 1.0, kHd, kHdRegion, EngineChoice::Value), std::nullopt);
    EXPECT_EQ(plannedSize({3840, 2160}, 2.0, kHd, kHdRegion, EngineChoice::Value), std::nullopt);
    // Lower than the recording but as wide: enough for one engine, not for the other.
    EXPECT_EQ(plannedSize({1920, 800}, 1.0, kHd, kHdRegion, EngineChoice::Value), (FrameSize{1920, 800}));
    EXPECT_EQ(plannedSize({1920, 800}, 1.0, kHd, kHdRegion, EngineChoice::Voting), std::nullopt);
}

TEST(PlannedSizeTest, RegionWithoutPixels_IsRefused) {
    EXPECT_THROW(plannedSize(kHd, 2.0, kHd, {0, 0, 0, 1080}, EngineChoice::Value), OptionError);
    EXPECT_THROW(plannedSize(kHd, 2.0, kHd, {10, 5, 10, 5}, EngineChoice::Value), OptionError);
}

} // namespace
} // namespace OrvantaNS::command
