#include <gtest/gtest.h>

#include <limits>

#include "OrvantaVotingAlgorithm.h"
#include "VotingScene.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using testing::squareRecording;
using Targets = OrvantaVotingAlgorithm::Targets;

const OrvantaVotingAlgorithm engine;

struct Failure {
    OVERR_CODES code;
    std::string text;
};

void expectFailure(const Params& params, const Failure& failure) {
    const auto check = [&](auto call, const char* name) {
        SCOPED_TRACE(name);
        try {
            call();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const OrvantaException& error) {
            EXPECT_EQ(error.errorCode(), failure.code);
            EXPECT_STREQ(error.what(), failure.text.c_str());
        }
    };
    ::testing::internal::CaptureStdout();
    check([&] { engine.verifyParameters(params); }, "verifyParameters");
    check([&] { engine.calcOrvantaKeyframes(params, nullptr); }, "calcOrvantaKeyframes");
    check([&] { engine.calcOrvantaKeyframeAtTime(params, 0); }, "calcOrvantaKeyframeAtTime");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

const Failure kBadSize{OVERR_BAD_TARGET_SIZE, "Need String! Passed bad width/height to Orvanta"};
const Failure kNoRegion{OVERR_BAD_REGION, "Need String! Must have at least one Recording Region!"};
const Failure kTooLarge{OVERR_TARGET_TOO_LARGE,
                        "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta"};
const Failure kNoScale{OVERR_BAD_TIME_SCALE, "Need String! TimeScale may not be Zero!"};

TEST(VerifyParametersTest, TargetSize_Below64InEitherDimension_IsBad) {
    expectFailure(squareRecording().setTargetWidth(63), kBadSize);
    expectFailure(squareRecording().setTargetHeight(63), kBadSize);
    expectFailure(squareRecording().setTargetWidth(-5), kBadSize);
    EXPECT_NO_THROW(engine.verifyParameters(squareRecording().setTargetWidth(64).setTargetHeight(64)));
}

TEST(VerifyParametersTest, RecordingRegions_Empty_IsBad) {
    Params params = squareRecording();
    params.recordingRegions().clear();
    expectFailure(params, kNoRegion);
}

TEST(VerifyParametersTest, TargetSize_AsLargeAsTheRegionInOneDimension_IsTooLarge) {
    EXPECT_NO_THROW(engine.verifyParameters(squareRecording().setTargetWidth(1023).setTargetHeight(1023)));
    expectFailure(squareRecording().setTargetWidth(1024), kTooLarge);
    expectFailure(squareRecording().setTargetHeight(1024), kTooLarge);
    expectFailure(squareRecording().setTargetWidth(1025).setTargetHeight(64), kTooLarge);
}

TEST(VerifyParametersTest, TargetSize_IsComparedWithTheFirstRegionOnly) {
    Params params = squareRecording();
    params.recordingRegions().push_back({10, {0, 10, 0, 10}});
    EXPECT_NO_THROW(engine.verifyParameters(params));
}

TEST(VerifyParametersTest, RegionWidth_ThatWraps_IsTooSmall) {
    Params params = squareRecording();
    params.recordingRegions()[0].rect = {std::numeric_limits<int>::lowest(), std::numeric_limits<int>::max(), 0, 1024};
    expectFailure(params, kTooLarge);
}

TEST(VerifyParametersTest, TimeScale_OnlyZeroIsBad) {
    expectFailure(squareRecording().setTimeScale(0.0), kNoScale);
    expectFailure(squareRecording().setTimeScale(-0.0), kNoScale);
    EXPECT_NO_THROW(engine.verifyParameters(squareRecording().setTimeScale(-1.0)));
    EXPECT_NO_THROW(engine.verifyParameters(squareRecording().setTimeScale(std::numeric_limits<double>::quiet_NaN())));
}

TEST(VerifyParametersTest, SeveralFailures_TheFirstInOrderIsThrown) {
    Params params;
    params.setTimeScale(0.0);
    expectFailure(params, kBadSize);
    params.setTargetWidth(64).setTargetHeight(64);
    expectFailure(params, kNoRegion);
    params.recordingRegions().push_back({0, {0, 64, 0, 64}});
    expectFailure(params, kTooLarge);
    params.recordingRegions()[0].rect = {0, 65, 0, 65};
    expectFailure(params, kNoScale);
}

TEST(TargetRectsTest, SquareRecording_GivesThreeRingsColumnByColumn) {
    const Targets targets = engine.targetRectsForParams(squareRecording());
    Targets expected;
    // The range is 768, so the tight columns stand at 0, 256, 512 and 768.
    for (const int x : {0, 256, 512, 768}) {
        for (const int y : {0, 256, 512, 768}) {
            expected.push_back({{x, x + 256, y, y + 256}, 4});
        }
    }
    // s = (256 / 1024 + 1) / 2 = 0.625: 640 by 640, and a range of 384.
    for (const int x : {0, 192, 384}) {
        for (const int y : {0, 192, 384}) {
            expected.push_back({{x, x + 640, y, y + 640}, 2});
        }
    }
    expected.push_back({{0, 1024, 0, 1024}, 1});
    EXPECT_EQ(targets, expected);
}

TEST(TargetRectsTest, WideRecording_TruncatesPositionsAndScalesByTheSmallerQuotient) {
    Params params = squareRecording();
    params.setTargetWidth(640).setTargetHeight(320);
    params.recordingRegions()[0].rect = {0, 1280, 0, 801};
    const Targets targets = engine.targetRectsForParams(params);
    ASSERT_EQ(targets.size(), 26u);
    // Ranges 640 and 481: thirds at 213.33, 426.67 and 160.33, 320.67.
    EXPECT_EQ(targets[5].first, (Rectangle{213, 853, 160, 480}));
    EXPECT_EQ(targets[10].first, (Rectangle{426, 1066, 320, 640}));
    EXPECT_EQ(targets[15].first, (Rectangle{640, 1280, 481, 801}));
    // 320 / 801 = 0.3995... is smaller than 640 / 1280: s = 0.69975..., 895.68 by 560.5, ranges 385 and 241.
    EXPECT_EQ(targets[16].first, (Rectangle{0, 895, 0, 560}));
    EXPECT_EQ(targets[20].first, (Rectangle{192, 1087, 120, 680}));
    EXPECT_EQ(targets[24].first, (Rectangle{385, 1280, 241, 801}));
    EXPECT_EQ(targets[24].second, 2);
    EXPECT_EQ(targets[25], (std::pair<Rectangle, std::int32_t>{{0, 1280, 0, 801}, 1}));
}

TEST(TargetRectsTest, RegionAwayFromTheOrigin_DoesNotShiftTheTargets) {
    Params params = squareRecording();
    params.recordingRegions()[0].rect = {500, 1524, -300, 724};
    EXPECT_EQ(engine.targetRectsForParams(params), engine.targetRectsForParams(squareRecording()));
}

TEST(TargetRectsTest, TargetOnePixelSmallerThanTheRegion_FallsOnTwoPositionsPerAxis) {
    Params params = squareRecording();
    params.setTargetWidth(1023).setTargetHeight(1023);
    const Targets targets = engine.targetRectsForParams(params);
    const int positions[] = {0, 0, 0, 1}; // thirds of 1, truncated
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            const int x = positions[i];
            const int y = positions[j];
            EXPECT_EQ(targets[i * 4 + j].first, (Rectangle{x, x + 1023, y, y + 1023}));
        }
    }
}

TEST(TargetRectsTest, InvertedRegion_LaysTheWholeRecordingOutBelowZero) {
    Params params = squareRecording();
    params.recordingRegions()[0].rect = {100, 40, 300, 100};
    const Targets targets = engine.targetRectsForParams(params);
    EXPECT_EQ(targets.back().first, (Rectangle{-60, 0, -200, 0}));
}

TEST(TargetRectsTest, NoRegion_IsOutOfRange) { EXPECT_THROW(engine.targetRectsForParams(Params{}), std::out_of_range); }

TEST(GenerateTargetRectsTest, Steps_ZeroOrLess_AppendNothing) {
    Targets out;
    engine.generateTargetRects({0, 100, 0, 100}, 10, 10, 0, 1, out);
    engine.generateTargetRects({0, 100, 0, 100}, 10, 10, -3, 1, out);
    EXPECT_TRUE(out.empty());
}

TEST(GenerateTargetRectsTest, NegativeSize_IsLaidOutTheOtherWay) {
    // Ranges 100 + 10 = 110 and 100 + 20 = 120.
    Targets out{{{1, 2, 3, 4}, 9}};
    engine.generateTargetRects({0, 100, 0, 100}, -10, -20, 2, 7, out);
    EXPECT_EQ(out, (Targets{{{1, 2, 3, 4}, 9},
                            {{-10, 0, -20, 0}, 7},
                            {{-10, 0, 100, 120}, 7},
                            {{100, 110, -20, 0}, 7},
                            {{100, 110, 100, 120}, 7}}));
}

TEST(GenerateTargetRectsTest, RangeBelowZero_StepsBackwards) {
    // Range 10 - 30 = -20; half of -15 is -7.5, truncated toward zero.
    Targets out;
    engine.generateTargetRects({0, 10, 0, 15}, 30, 30, 3, 1, out);
    ASSERT_EQ(out.size(), 9u);
    EXPECT_EQ(out[4].first, (Rectangle{-10, 20, -7, 23}));
    EXPECT_EQ(out[8].first, (Rectangle{-20, 10, -15, 15}));
}

TEST(GenerateTargetRectsTest, EdgesAtTheEndsOfTheirRange_Wrap) {
    constexpr int lowest = std::numeric_limits<int>::lowest();
    constexpr int highest = std::numeric_limits<int>::max();
    Targets out;
    engine.generateTargetRects({lowest, highest, lowest, highest}, highest, lowest, 4, 1, out);
    EXPECT_EQ(out.size(), 16u);
    for (const auto& [rect, weight] : out) {
        EXPECT_LE(rect.left, rect.right);
        EXPECT_LE(rect.top, rect.bottom);
    }
}

} // namespace
} // namespace OrvantaNS
