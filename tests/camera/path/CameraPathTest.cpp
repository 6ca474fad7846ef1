#include "CameraPath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using ::testing::HasSubstr;

constexpr long long kLatest = std::numeric_limits<long long>::max();
constexpr long long kEarliest = std::numeric_limits<long long>::lowest();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

Rectangle rect(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
    return {left, left + width, top, top + height};
}

/// A square recording of 1000 pixels, moves of 100 ticks at even speed, 100 ticks a second.
CameraSetup square() {
    CameraSetup setup;
    setup.region = rect(0, 0, 1000, 1000);
    setup.targetWidth = 200;
    setup.targetHeight = 200;
    setup.clipStop = 10000;
    setup.easing = CameraEasing::linear();
    return setup;
}

void expectFrame(const CameraFrame& frame, double left, double top, double width, double height) {
    EXPECT_NEAR(frame.left, left, 1e-9);
    EXPECT_NEAR(frame.top, top, 1e-9);
    EXPECT_NEAR(frame.width, width, 1e-9);
    EXPECT_NEAR(frame.height, height, 1e-9);
}

template <typename Call> std::string messageOf(Call call) {
    try {
        call();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "no std::invalid_argument";
}

TEST(CameraPathTest, NoKeyframes_WholeRecordingStaysOnShow) {
    const CameraPath path({}, square());
    EXPECT_TRUE(path.moves().empty());
    const CameraFrame whole{0, 0, 1000, 1000, false};
    for (const long long tick : {kEarliest, -1LL, 0LL, 5000LL, kLatest}) {
        EXPECT_EQ(path.frameAt(tick), whole);
    }
    EXPECT_EQ(path.wholeFrame(), whole);
}

TEST(CameraPathTest, Region_ElsewhereOnTheScreen_GivesLocalPixels) {
    CameraSetup setup = square();
    setup.region = rect(-300, 4000, 1000, 1000);
    EXPECT_EQ(CameraPath({}, setup).wholeFrame(), (CameraFrame{0, 0, 1000, 1000, false}));
}

TEST(CameraPathTest, Keyframe_MoveBeginsAtItsTimeAndTakesTheFade) {
    const CameraPath path({{500, rect(300, 200, 400, 400)}}, square());
    EXPECT_EQ(path.frameAt(500), path.wholeFrame());
    EXPECT_NE(path.frameAt(501), path.wholeFrame());
    EXPECT_NE(path.frameAt(599), path.frameAt(600));
    EXPECT_EQ(path.frameAt(600), (CameraFrame{300, 200, 400, 400, false}));
    EXPECT_EQ(path.frameAt(kLatest), path.frameAt(600));
}

// From 1000 to 250 at half way: 500, and the edges have come 500 of 750.
TEST(CameraPathTest, Zoom_ClosesInOnThePointThatBothFramesShare) {
    const CameraPath path({{0, rect(750, 0, 250, 250)}}, square());
    expectFrame(path.frameAt(50), 500, 0, 500, 500);
    // The corner (1000, 0) has the same place in both frames, so it keeps it all the way.
    for (long long tick = 0; tick <= 100; ++tick) {
        const CameraFrame frame = path.frameAt(tick);
        EXPECT_NEAR(frame.left + frame.width, 1000, 1e-9);
        EXPECT_NEAR(frame.top, 0, 1e-9);
        EXPECT_NEAR(std::log(frame.width), std::log(1000) + std::log(0.25) * static_cast<double>(tick) / 100, 1e-12);
    }
}

TEST(CameraPathTest, Pan_GoesStraightAndEvenly) {
    const CameraPath path({{0, rect(0, 0, 200, 200)}, {1000, rect(500, 100, 200, 200)}}, square());
    for (long long tick = 0; tick <= 100; ++tick) {
        const double share = static_cast<double>(tick) / 100;
        expectFrame(path.frameAt(1000 + tick), 500 * share, 100 * share, 200, 200);
    }
}

TEST(CameraPathTest, Easing_SpreadsTheMove) {
    CameraSetup setup = square();
    setup.easing = CameraEasing(0.1, 0.4, 0.3, 0.9);
    const CameraPath path({{0, rect(0, 0, 200, 200)}, {1000, rect(500, 0, 200, 200)}}, setup);
    EXPECT_NEAR(path.frameAt(1030).left, 500 * setup.easing.at(0.3), 1e-9);
}

TEST(CameraPathTest, Easing_ThatOvershoots_ComesBackAndStaysInside) {
    CameraSetup setup = square();
    setup.easing = CameraEasing(0.3, 0, 0.4, 2.5);
    const CameraPath path({{0, rect(0, 0, 200, 200)}, {1000, rect(700, 0, 200, 200)}}, setup);
    double furthest = 0;
    for (long long tick = 1000; tick <= 1100; ++tick) {
        furthest = std::max(furthest, path.frameAt(tick).left);
    }
    EXPECT_EQ(furthest, 800);
    EXPECT_EQ(path.frameAt(1100).left, 700);
}

TEST(CameraPathTest, Easing_ThatOvershootsAgainAndAgain_KeepsFramesOfASize) {
    // Half way the easing has gone 7.6 times the way, and there the next move begins: left alone, the sides would come to
    // 1e-12, 1e86 and nothing at all.
    CameraSetup setup = square();
    setup.easing = CameraEasing(0.5, 10, 0.5, 10);
    const Rectangle small = rect(500, 500, 10, 10);
    const Rectangle large = rect(0, 0, 1000, 1000);
    const CameraPath path({{0, small}, {50, large}, {100, small}, {150, large}, {200, small}}, setup);
    for (long long tick = 0; tick <= 300; ++tick) {
        const CameraFrame frame = path.frameAt(tick);
        EXPECT_GE(frame.width, 0x1p-20) << "tick " << tick;
        EXPECT_LE(frame.width, 0x1p64) << "tick " << tick;
        EXPECT_EQ(frame.width, frame.height) << "tick " << tick;
        EXPECT_TRUE(std::isfinite(frame.left) && std::isfinite(frame.top)) << "tick " << tick;
    }
    for (const CameraMove& move : path.moves()) {
        EXPECT_EQ(path.frameAt(move.start), move.from);
    }
    EXPECT_EQ(path.frameAt(300), (CameraFrame{500, 500, 10, 10, false}));
}

TEST(CameraPathTest, Easing_ThatOvershootsAgainAndAgain_BoundsTheShorterAndTheLongerSide) {
    CameraSetup setup = square();
    setup.targetHeight = setup.targetWidth / 2;
    setup.easing = CameraEasing(0.5, 10, 0.5, 10);
    const Rectangle small = rect(500, 500, 20, 10);
    const Rectangle large = rect(0, 0, 1000, 500);
    const CameraPath path({{0, small}, {50, large}, {100, small}, {150, large}, {200, small}}, setup);
    double least = 1000.0;
    double most = 0.0;
    for (long long tick = 0; tick <= 300; ++tick) {
        const CameraFrame frame = path.frameAt(tick);
        least = std::min(least, std::min(frame.width, frame.height));
        most = std::max(most, std::max(frame.width, frame.height));
    }
    // But for their rounding the bounds are reached.
    EXPECT_NEAR(least * 0x1p20, 1.0, 1e-9);
    EXPECT_NEAR(most * 0x1p-64, 1.0, 1e-9);
}

TEST(CameraPathTest, Frame_APixelOffTheShape_KeepsItsCentreAndGrowsItsShortSide) {
    const CameraPath path({}, square());
    EXPECT_EQ(path.frameOf(rect(100, 100, 201, 200)), (CameraFrame{100, 99.5, 201, 201, false}));
    EXPECT_EQ(path.frameOf(rect(100, 100, 200, 203)), (CameraFrame{98.5, 100, 203, 203, false}));
    EXPECT_EQ(path.frameOf(rect(100, 100, 200, 200)), (CameraFrame{100, 100, 200, 200, false}));
}

TEST(CameraPathTest, Frame_AtTheEdge_IsMovedInside) {
    const CameraPath path({}, square());
    EXPECT_EQ(path.frameOf(rect(0, 0, 200, 203)), (CameraFrame{0, 0, 203, 203, false}));
    EXPECT_EQ(path.frameOf(rect(800, 700, 200, 300)), (CameraFrame{700, 700, 300, 300, false}));
    EXPECT_EQ(path.frameOf(rect(-500, 5000, 200, 200)), (CameraFrame{0, 800, 200, 200, false}));
}

TEST(CameraPathTest, Frame_OfAnotherShape_OverhangsEvenly) {
    CameraSetup setup = square();
    setup.targetWidth = 90;
    setup.targetHeight = 160;
    setup.region = rect(0, 0, 1280, 800);
    const CameraPath path({{0, rect(400, 0, 450, 800)}}, setup);
    // 1280 * 160 / 90 = 2275.55...; 737.77... are missing above and below.
    expectFrame(path.wholeFrame(), 0, (800 - 1280 * 16 / 9.0) / 2, 1280, 1280 * 16 / 9.0);
    EXPECT_TRUE(path.wholeFrame().overhangs);
    EXPECT_TRUE(path.frameAt(99).overhangs);
    EXPECT_EQ(path.frameAt(100), (CameraFrame{400, 0, 450, 800, false}));
    // Half way the width is the geometric mean, 758.9; its height still stands out, so the frame stays centred.
    const CameraFrame half = path.frameAt(50);
    const double width = std::sqrt(1280.0 * 450.0);
    expectFrame(half, 400 * (1280 - width) / (1280 - 450), (800 - width * 16 / 9) / 2, width, width * 16 / 9);
}

// Higher than the recording at first, and low in it at the end: centred until it fits, then along with the size.
TEST(CameraPathTest, Move_OutOfAnOverhang_GoesOnFromWhereTheFrameFits) {
    CameraSetup setup = square();
    setup.region = rect(0, 0, 2000, 1000);
    const CameraPath path({{0, rect(0, 750, 250, 250)}}, setup);
    expectFrame(path.frameAt(0), 0, -500, 2000, 2000);
    // 2000 / 250 is 2^3: the frame fits after a third of the way.
    const CameraFrame before = path.frameAt(20);
    expectFrame(before, 0, (1000 - before.height) / 2, before.width, before.width);
    EXPECT_GT(before.height, 1000);
    EXPECT_TRUE(before.overhangs);
    const CameraFrame after = path.frameAt(67);
    EXPECT_LT(after.height, 1000);
    EXPECT_NEAR(after.top, 750 * (1000 - after.height) / (1000 - 250), 1e-9);
    EXPECT_FALSE(after.overhangs);
}

TEST(CameraPathTest, Move_IntoAnOverhang_IsCentredFromWhereItNoLongerFits) {
    CameraSetup setup = square();
    setup.region = rect(0, 0, 2000, 1000);
    const CameraPath path({{0, rect(0, 750, 250, 250)}, {1000, rect(0, 0, 2000, 1000)}}, setup);
    const CameraFrame within = path.frameAt(1033);
    EXPECT_LT(within.height, 1000);
    EXPECT_NEAR(within.top, 750 * (1000 - within.height) / (1000 - 250), 1e-9);
    const CameraFrame beyond = path.frameAt(1080);
    EXPECT_GT(beyond.height, 1000);
    EXPECT_NEAR(beyond.top, (1000 - beyond.height) / 2, 1e-9);
    EXPECT_EQ(path.frameAt(1100), path.wholeFrame());
}

// In neither dimension at the edge, where every way would lead to the same place. Left is straight: 600 of 2000 - 250.
TEST(CameraPathTest, Move_BetweenAnOverhangAndTheMiddle_GoesTheSameWayThereAndBack) {
    CameraSetup setup = square();
    setup.region = rect(0, 0, 2000, 1000);
    const CameraPath path({{0, rect(600, 300, 250, 250)}, {1000, rect(0, 0, 2000, 1000)}}, setup);
    for (const long long tick : {0LL, 10LL, 33LL, 34LL, 50LL, 90LL, 100LL}) {
        const double size = 2000 * std::pow(8, -static_cast<double>(tick) / 100);
        const double top = size > 1000 ? (1000 - size) / 2 : 300 * (1000 - size) / (1000 - 250);
        expectFrame(path.frameAt(tick), 600 * (2000 - size) / (2000 - 250), top, size, size);
        expectFrame(path.frameAt(1100 - tick), 600 * (2000 - size) / (2000 - 250), top, size, size);
    }
}

TEST(CameraPathTest, Easing_ThatDrawsBackFromAFrameThatJustFits_StaysCentred) {
    CameraSetup setup = square();
    setup.region = rect(0, 0, 2000, 1000);
    setup.easing = CameraEasing(0.3, -0.5, 0.7, 1);
    const CameraPath path({{0, rect(500, 0, 1000, 1000)}, {1000, rect(0, 0, 2000, 1000)}}, setup);
    const CameraFrame frame = path.frameAt(1010);
    const double size = 1000 * std::pow(2, setup.easing.at(0.1));
    EXPECT_LT(size, 990);
    expectFrame(frame, 500 * (2000 - size) / (2000 - 1000), (1000 - size) / 2, size, size);
}

TEST(CameraPathTest, Easing_ThatOvershootsAFrameThatJustFits_StaysCentred) {
    CameraSetup setup = square();
    setup.region = rect(0, 0, 2000, 1000);
    setup.easing = CameraEasing(0.3, 0, 0.4, 2.5);
    const CameraPath path({{0, rect(500, 0, 1000, 1000)}}, setup);
    const CameraFrame frame = path.frameAt(60);
    const double size = 2000 * std::pow(0.5, setup.easing.at(0.6));
    EXPECT_LT(size, 990);
    expectFrame(frame, 500 * (2000 - size) / (2000 - 1000), (1000 - size) / 2, size, size);
}

TEST(CameraPathTest, Easing_ThatOvershoots_ZoomsFurtherThanItsEnd) {
    CameraSetup setup = square();
    setup.easing = CameraEasing(0.3, 0, 0.4, 2.5);
    const CameraPath path({{0, rect(300, 300, 400, 400)}}, setup);
    double closest = 1000;
    for (long long tick = 0; tick < 100; ++tick) {
        const double width = path.frameAt(tick).width;
        EXPECT_NEAR(width, 1000 * std::pow(0.4, setup.easing.at(static_cast<double>(tick) / 100)), 1e-9);
        closest = std::min(closest, width);
    }
    EXPECT_LT(closest, 300);
}

// A thousand million millionth before the end, where the rounding of a size is larger than what is left of the way.
TEST(CameraPathTest, Size_AtTheLastTickOfALongMove_IsNotBeyondItsEnd) {
    CameraSetup setup = square();
    setup.fadeDuration = 1000000000000000;
    // With the curve the progress is 1 to a double, on the line it is not.
    for (const CameraEasing& easing : {CameraEasing::easeInOut(), CameraEasing::linear()}) {
        setup.easing = easing;
        for (std::int32_t size = 1; size < 1000; ++size) {
            const long long later = 2 * setup.fadeDuration;
            const CameraPath path({{0, rect(0, 0, size, size)}, {later, rect(0, 0, 1000, 1000)}}, setup);
            EXPECT_GE(path.frameAt(setup.fadeDuration - 1).width, size);
            EXPECT_LE(path.frameAt(later + setup.fadeDuration - 1).width, 1000);
        }
    }
}

TEST(CameraPathTest, Keyframe_DuringAMove_StartsFromWhereTheCameraIs) {
    const CameraPath path({{0, rect(750, 0, 250, 250)}, {50, rect(0, 0, 1000, 1000)}}, square());
    expectFrame(path.frameAt(50), 500, 0, 500, 500);
    // Back from 500 to 1000 over the whole fade, half of it at 100.
    const double width = std::sqrt(500.0 * 1000.0);
    expectFrame(path.frameAt(100), 1000 - width, 0, width, width);
    EXPECT_EQ(path.frameAt(150), path.wholeFrame());
    ASSERT_EQ(path.moves().size(), 2u);
    EXPECT_TRUE(path.moves()[0].cutShort);
    EXPECT_EQ(path.moves()[0].stop, 50);
    EXPECT_FALSE(path.moves()[1].cutShort);
    EXPECT_EQ(path.moves()[1].from, path.frameAt(50));
}

TEST(CameraPathTest, Keyframe_WhenTheMoveBeforeItIsJustOver_CutsNothingShort) {
    const CameraPath path({{0, rect(750, 0, 250, 250)}, {100, rect(0, 0, 1000, 1000)}}, square());
    EXPECT_FALSE(path.moves()[0].cutShort);
    EXPECT_EQ(path.frameAt(100), path.moves()[0].to);
}

TEST(CameraPathTest, Moves_TellEachMoveOnce) {
    const std::vector<OV_TIME_RECT> keyframes{{500, rect(300, 200, 400, 400)}, {200, rect(0, 0, 200, 200)}};
    const CameraPath path(keyframes, square());
    const CameraFrame first{0, 0, 200, 200, false};
    const CameraFrame second{300, 200, 400, 400, false};
    const std::vector<CameraMove> expected{{200, 300, path.wholeFrame(), first, false, 1},
                                           {500, 600, first, second, false, 0}};
    EXPECT_EQ(path.moves(), expected);
}

TEST(CameraPathTest, Keyframes_AtOneTime_TheLastGivenCounts) {
    const Rectangle first = rect(0, 0, 200, 200);
    const Rectangle last = rect(500, 500, 200, 200);
    const CameraPath path({{500, first}, {500, last}}, square());
    ASSERT_EQ(path.moves().size(), 1u);
    EXPECT_EQ(path.moves()[0].keyframe, 1u);
    EXPECT_EQ(path.moves()[0].from, path.wholeFrame());
    EXPECT_EQ(path.frameAt(600), path.frameOf(last));
}

TEST(CameraPathTest, Keyframes_BeforeTheClip_StandAtItsStart) {
    CameraSetup setup = square();
    setup.clipStart = 1000;
    const CameraPath path(
        {{100, rect(0, 0, 200, 200)}, {999, rect(500, 500, 200, 200)}, {2000, rect(0, 0, 1000, 1000)}}, setup);
    ASSERT_EQ(path.moves().size(), 2u);
    EXPECT_EQ(path.moves()[0].start, 1000);
    EXPECT_EQ(path.moves()[0].keyframe, 1u);
    EXPECT_EQ(path.frameAt(500), path.wholeFrame());
    EXPECT_EQ(path.frameAt(1000), path.wholeFrame());
    EXPECT_EQ(path.frameAt(1100), path.frameOf(rect(500, 500, 200, 200)));

    const CameraPath replaced({{100, rect(0, 0, 200, 200)}, {1000, rect(500, 500, 200, 200)}}, setup);
    ASSERT_EQ(replaced.moves().size(), 1u);
    EXPECT_EQ(replaced.moves()[0].keyframe, 1u);
}

TEST(CameraPathTest, Fade_OfNothing_Jumps) {
    CameraSetup setup = square();
    setup.fadeDuration = 0;
    const CameraPath path({{500, rect(300, 200, 400, 400)}}, setup);
    EXPECT_EQ(path.frameAt(499), path.wholeFrame());
    EXPECT_EQ(path.frameAt(500), path.frameOf(rect(300, 200, 400, 400)));
    EXPECT_EQ(path.frameAtSeconds(5.0), path.frameAt(500));
    EXPECT_EQ(path.frameAtSeconds(4.999), path.wholeFrame());
}

TEST(CameraPathTest, Seconds_CountOnTheClockOfTheTicks) {
    const CameraPath path({{500, rect(750, 0, 250, 250)}}, square());
    EXPECT_EQ(path.frameAtSeconds(5.5), path.frameAt(550));
    // Between two ticks: 0.125 of the way at 5.125 s, where 1000 * 4^-0.125 is 840.9.
    EXPECT_NEAR(path.frameAtSeconds(5.125).width, 1000 * std::pow(4, -0.125), 1e-9);
    EXPECT_EQ(path.frameAtSeconds(-kInfinity), path.wholeFrame());
    EXPECT_EQ(path.frameAtSeconds(kInfinity), path.frameAt(600));
    EXPECT_EQ(path.frameAtSeconds(1e300), path.frameAt(600));
    EXPECT_EQ(path.frameAtSeconds(-1e300), path.wholeFrame());
    EXPECT_THROW(path.frameAtSeconds(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
}

TEST(CameraPathTest, Seconds_OfAWholeTick_AreThatTick) {
    for (const double scale : {1000.0, 30000.0 / 1001.0, 48000.0, 1000000.0, 90000.0, 7.0}) {
        CameraSetup setup = square();
        setup.timeScale = scale;
        setup.fadeDuration = 0;
        for (long long tick = 1; tick < 200000; tick = tick * 3 + 1) {
            const CameraPath path({{tick, rect(300, 200, 400, 400)}}, setup);
            const auto at = [&](long long moment) { return path.frameAtSeconds(static_cast<double>(moment) / scale); };
            EXPECT_EQ(at(tick), path.frameAt(tick)) << scale << " " << tick;
            EXPECT_EQ(at(tick - 1), path.wholeFrame()) << scale << " " << tick;
        }
    }
}

// A second a tick and no fade: doubles below 2 are 2^-52 apart, and seven of them are within 2 times 2^-50.
TEST(CameraPathTest, Seconds_AreAWholeTickWithinFourRoundings) {
    CameraSetup setup = square();
    setup.timeScale = 1;
    setup.fadeDuration = 0;
    const CameraPath path({{2, rect(300, 200, 400, 400)}}, setup);
    const double rounding = std::numeric_limits<double>::epsilon();
    EXPECT_EQ(path.frameAtSeconds(2 - 7 * rounding), path.frameAt(2));
    EXPECT_EQ(path.frameAtSeconds(2 - 8 * rounding), path.wholeFrame());
}

TEST(CameraPathTest, Batches_GiveTheFramesInTheOrderAsked) {
    const CameraPath path({{500, rect(750, 0, 250, 250)}}, square());
    const std::vector<long long> ticks{550, 0, 10000, 510};
    const std::vector<double> seconds{5.5, 0, 100, 5.1};
    const std::vector<CameraFrame> expected{path.frameAt(550), path.frameAt(0), path.frameAt(10000), path.frameAt(510)};
    EXPECT_EQ(path.framesAt(ticks), expected);
    EXPECT_EQ(path.framesAtSeconds(seconds), expected);
    EXPECT_TRUE(path.framesAt({}).empty());
}

TEST(CameraPathTest, Setup_OfARequest_TakesItsFields) {
    Params params;
    params.recordingRegions().push_back({5, rect(10, 20, 1000, 500)});
    params.recordingRegions().push_back({9, rect(0, 0, 50, 50)});
    params.setTargetWidth(320).setTargetHeight(240).setTimeScale(600).setFadeDuration(300).setClipInterval(7, 9000);
    const CameraSetup setup = CameraSetup::of(params, CameraEasing::smooth());
    EXPECT_EQ(setup, (CameraSetup{rect(10, 20, 1000, 500), 320, 240, 600.0, 300, 7, 9000, CameraEasing::smooth()}));
    EXPECT_EQ(CameraSetup::of(Params()).region, Rectangle{});
    EXPECT_EQ(CameraPath({}, setup).setup(), setup);
}

TEST(CameraPathTest, Setup_OutOfRange_IsRefused) {
    const auto refusal = [](auto change) {
        CameraSetup setup = square();
        change(setup);
        return messageOf([&] { CameraPath({}, setup); });
    };
    EXPECT_THAT(refusal([](CameraSetup& s) { s.region = {}; }), HasSubstr("region"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.region = {10, 0, 0, 10}; }), HasSubstr("region"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.region = {0, 10, 10, 0}; }), HasSubstr("region"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.region = {0, 10, 5, 5}; }), HasSubstr("region"));
    EXPECT_EQ(refusal([](CameraSetup& s) { s.region = {7, 8, 5, 6}; }), "no std::invalid_argument");
    EXPECT_EQ(refusal([](CameraSetup& s) { s.targetWidth = s.targetHeight = 1; }), "no std::invalid_argument");
    EXPECT_THAT(refusal([](CameraSetup& s) { s.targetWidth = 0; }), HasSubstr("target"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.targetHeight = 0; }), HasSubstr("target"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.targetHeight = -1; }), HasSubstr("target"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.timeScale = 0; }), HasSubstr("time scale"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.timeScale = -5; }), HasSubstr("time scale"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.timeScale = kInfinity; }), HasSubstr("time scale"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.timeScale = std::nan(""); }), HasSubstr("time scale"));
    EXPECT_THAT(refusal([](CameraSetup& s) { s.fadeDuration = -1; }), HasSubstr("fade"));
}

TEST(CameraPathTest, Keyframe_WithoutPixels_IsRefusedByNumberAndTick) {
    const std::vector<OV_TIME_RECT> keyframes{{5, rect(0, 0, 10, 10)}, {77, {10, 10, 0, 10}}};
    EXPECT_EQ(messageOf([&] { CameraPath(keyframes, square()); }),
              "camera path: the rectangle of keyframe 1 at tick 77 covers no pixel");
    EXPECT_EQ(messageOf([] {
                  CameraPath({{-4, {0, 10, 10, 0}}}, square());
              }),
              "camera path: the rectangle of keyframe 0 at tick -4 covers no pixel");
    EXPECT_EQ(messageOf([] {
                  CameraPath({}, square()).frameOf({0, 10, 10, 0});
              }),
              "camera path: the rectangle covers no pixel");
}

TEST(CameraPathTest, ExtremeNumbers_GiveFiniteFrames) {
    constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::lowest();
    CameraSetup setup;
    setup.region = {kLow, kHigh, kLow, kHigh};
    setup.targetWidth = 1;
    setup.targetHeight = kHigh;
    setup.timeScale = 1e-300;
    setup.fadeDuration = kLatest;
    setup.clipStart = kEarliest;
    setup.clipStop = kLatest;
    setup.easing = CameraEasing(0, -10, 1, 10);
    const CameraPath path(
        {{kEarliest, {kLow, kHigh, kLow, kHigh}}, {-5, {0, 1, 0, 1}}, {kLatest, {kHigh - 1, kHigh, kLow, kHigh}}},
        setup);
    for (const long long tick :
         {kEarliest, kEarliest + 1, kEarliest / 2, -6LL, -5LL, 0LL, kLatest / 2, kLatest - 1, kLatest}) {
        const CameraFrame frame = path.frameAt(tick);
        for (const double number : {frame.left, frame.top, frame.width, frame.height}) {
            EXPECT_TRUE(std::isfinite(number)) << tick;
        }
        EXPECT_GT(frame.width, 0.0);
        EXPECT_GT(frame.height, 0.0);
    }
    EXPECT_EQ(path.moves().back().stop, kLatest);
}

} // namespace
} // namespace OrvantaNS::testing
