#include "OrvantaWorker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "EngineErrors.h"
#include "Scene.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::expectError;

constexpr const char* kBadSize = "Need String! Passed bad width/height to Orvanta";
constexpr const char* kTooLarge =
    "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta";
constexpr const char* kZeroScale = "Need String! TimeScale may not be Zero!";
constexpr const char* kNoRegion = "Need String! Must have at least one Recording Region!";
constexpr const char* kSmallRegion = "Need String! Recording Region is not large enough!";
// What a request that passes every check ends in when nothing happens in its recording.
constexpr const char* kNothingHappened = "No keyframes were created!";

// Both timeline questions must refuse `params` alike; only the first prints, and prints exactly `printed`.
void expectRefused(const Params& params, OVERR_CODES code, const std::string& text, const std::string& printed) {
    const OrvantaWorker worker;
    ::testing::internal::CaptureStdout();
    expectError([&] { worker.calcOrvantaKeyframes(params, nullptr); }, code, text);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), printed);
    ::testing::internal::CaptureStdout();
    expectError([&] { worker.calcOrvantaKeyframeAtTime(params, 0); }, code, text);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

// Both must get past the checks: the clip's question then fails for want of objects, the moment's has an answer.
void expectAccepted(const Params& params) {
    const OrvantaWorker worker;
    ::testing::internal::CaptureStdout();
    expectError([&] { worker.calcOrvantaKeyframes(params, nullptr); }, OVERR_NO_KEYFRAMES, kNothingHappened);
    EXPECT_EQ(worker.calcOrvantaKeyframeAtTime(params, 0)->size(), 1u);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

Params request(int targetWidth, int targetHeight, int regionWidth, int regionHeight) {
    return testing::recording(regionWidth, regionHeight).target(targetWidth, targetHeight).length(2.0).params();
}

TEST(RequestChecksTest, TargetSide_Of63Refused_Of64Accepted) {
    expectRefused(request(63, 400, 1280, 800), OVERR_BAD_TARGET_SIZE, kBadSize,
                  "Passed Width: 63\nPassed Height: 400\n");
    expectRefused(request(640, 63, 1280, 800), OVERR_BAD_TARGET_SIZE, kBadSize,
                  "Passed Width: 640\nPassed Height: 63\n");
    expectRefused(request(-5, -7, 1280, 800), OVERR_BAD_TARGET_SIZE, kBadSize, "Passed Width: -5\nPassed Height: -7\n");
    expectAccepted(request(64, 64, 1280, 800));
}

TEST(RequestChecksTest, NoRegion_Refused) {
    Params params = request(640, 400, 1280, 800);
    params.recordingRegions().clear();
    expectRefused(params, OVERR_BAD_REGION, kNoRegion, "");
}

TEST(RequestChecksTest, TargetAsLargeAsTheRegionInBothDimensions_Refused) {
    expectRefused(request(64, 64, 64, 64), OVERR_TARGET_TOO_LARGE, kTooLarge,
                  "Passed Width: 64\nPassed Height: 64\nRecording Width: 64\nRecording Height: 64\n");
    expectRefused(request(2000, 1200, 1920, 1080), OVERR_TARGET_TOO_LARGE, kTooLarge,
                  "Passed Width: 2000\nPassed Height: 1200\nRecording Width: 1920\nRecording Height: 1080\n");
}

TEST(RequestChecksTest, TargetAsLargeAsTheRegionInOneDimension_Accepted) {
    expectAccepted(request(2000, 100, 1920, 1080));
    expectAccepted(request(1920, 1079, 1920, 1080));
    expectAccepted(request(1919, 1080, 1920, 1080));
}

TEST(RequestChecksTest, TimeScaleZero_Refused) {
    Params params = request(640, 400, 1280, 800);
    params.setTimeScale(0.0);
    expectRefused(params, OVERR_BAD_TIME_SCALE, kZeroScale, "");
    params.setTimeScale(-0.0);
    expectRefused(params, OVERR_BAD_TIME_SCALE, kZeroScale, "");
}

TEST(RequestChecksTest, TimeScaleNotANumber_PassesTheZeroTest) {
    Params params = request(640, 400, 1280, 800);
    params.setTimeScale(std::numeric_limits<double>::quiet_NaN());
    expectAccepted(params);
}

TEST(RequestChecksTest, RegionArea_Of4095Refused_Of4096Accepted) {
    expectRefused(request(64, 64, 63, 65), OVERR_BAD_REGION, kSmallRegion, "");
    expectAccepted(request(64, 64, 32, 128));
}

TEST(RequestChecksTest, RegionWithoutWidthOrHeight_Refused) {
    expectRefused(request(64, 64, 4096, 0), OVERR_BAD_REGION, kSmallRegion, "");
    expectRefused(request(64, 64, 0, 4096), OVERR_BAD_REGION, kSmallRegion, "");
    expectRefused(request(64, 64, -4096, 5000), OVERR_BAD_REGION, kSmallRegion, "");
}

TEST(RequestChecksTest, OnlyTheFirstRegionIsLookedAt) {
    Params params = request(640, 400, 1280, 800);
    params.recordingRegions().push_back({1000, {5, 5, 5, 5}});
    params.setClipInterval(0, 60000);
    const OrvantaWorker worker;
    expectError([&] { worker.calcOrvantaKeyframes(params, nullptr); }, OVERR_NO_KEYFRAMES, kNothingHappened);
}

// Each request breaks two rules that stand next to each other in the order of the checks; the earlier one must win.
TEST(RequestChecksTest, OfTwoFaults_TheOneTestedFirstIsTold) {
    Params sizeBeforeRegion = request(63, 64, 1280, 800);
    sizeBeforeRegion.recordingRegions().clear();
    expectRefused(sizeBeforeRegion, OVERR_BAD_TARGET_SIZE, kBadSize, "Passed Width: 63\nPassed Height: 64\n");

    Params noRegionBeforeScale = request(64, 64, 1280, 800);
    noRegionBeforeScale.recordingRegions().clear();
    noRegionBeforeScale.setTimeScale(0.0);
    expectRefused(noRegionBeforeScale, OVERR_BAD_REGION, kNoRegion, "");

    Params tooLargeBeforeScale = request(64, 64, 64, 64);
    tooLargeBeforeScale.setTimeScale(0.0);
    expectRefused(tooLargeBeforeScale, OVERR_TARGET_TOO_LARGE, kTooLarge,
                  "Passed Width: 64\nPassed Height: 64\nRecording Width: 64\nRecording Height: 64\n");

    Params scaleBeforeSmallRegion = request(64, 64, 4096, 0);
    scaleBeforeSmallRegion.setTimeScale(0.0);
    expectRefused(scaleBeforeSmallRegion, OVERR_BAD_TIME_SCALE, kZeroScale, "");
}

TEST(RequestChecksTest, RefusedRequest_LeavesTheTimeScaleAlone) {
    DataParser::StoreTimeScale = 123.0;
    Params params = request(64, 64, 63, 65);
    params.setTimeScale(777.0);
    expectRefused(params, OVERR_BAD_REGION, kSmallRegion, "");
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 123.0);
}

} // namespace
} // namespace OrvantaNS
