// The camera path in C: the frames of `CameraPath`, to the last bit.
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CRequest.h"
#include "CameraPath.h"
#include "GeneratedRecording.h"

namespace OrvantaNS::testing {
namespace {

void expectFrame(const orvanta_frame& inC, const CameraFrame& inCpp) {
    EXPECT_EQ(inC.left, inCpp.left);
    EXPECT_EQ(inC.top, inCpp.top);
    EXPECT_EQ(inC.width, inCpp.width);
    EXPECT_EQ(inC.height, inCpp.height);
    EXPECT_EQ(inC.overhangs != 0, inCpp.overhangs);
}

std::vector<OV_TIME_RECT> keyframesOf(const std::vector<orvanta_keyframe>& rows) {
    std::vector<OV_TIME_RECT> keyframes;
    keyframes.reserve(rows.size());
    for (const orvanta_keyframe& row : rows) {
        keyframes.push_back({row.time, {row.rect.left, row.rect.right, row.rect.top, row.rect.bottom}});
    }
    return keyframes;
}

PathHandle pathOf(const RequestHandle& request, const std::vector<orvanta_keyframe>& rows, const orvanta_easing* easing,
                  orvanta_error* error) {
    orvanta_path* made = nullptr;
    orvanta_path_create(request.get(), rows.data(), rows.size(), sizeof(orvanta_keyframe), easing, &made, error);
    return PathHandle(made);
}

TEST(CPathTest, FramesOfAPlan_AreThoseOfCameraPath) {
    const Params params = generatedRecording(5, {});
    const RequestHandle request = requestOf(params, ORVANTA_ENGINE_VALUE);
    orvanta_result* made = nullptr;
    ASSERT_EQ(orvanta_plan(request.get(), nullptr, &made, nullptr), ORVANTA_OK);
    const ResultHandle result(made);
    const auto rows = rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES);
    const std::vector<OV_TIME_RECT> keyframes = keyframesOf(rows);
    std::vector<std::int64_t> ticks;
    std::vector<double> seconds;
    for (std::int64_t tick = 0; tick <= params.clipStop(); tick += 37) {
        ticks.push_back(tick);
        seconds.push_back((static_cast<double>(tick) + 0.25) / params.timeScale());
    }
    for (const char* name : {"linear", "ease-in-out", "ease-out", "smooth"}) {
        orvanta_easing easing{};
        ASSERT_EQ(orvanta_easing_named(name, &easing, nullptr), ORVANTA_OK);
        const PathHandle path = pathOf(request, rows, &easing, nullptr);
        ASSERT_NE(path, nullptr);
        const CameraPath expected(keyframes, CameraSetup::of(params, *CameraEasing::named(name)));
        std::vector<orvanta_frame> frames(ticks.size());
        ASSERT_EQ(orvanta_path_frames_at_ticks(path.get(), ticks.data(), ticks.size(), frames.data(), nullptr), 0);
        for (std::size_t i = 0; i < ticks.size(); ++i) {
            expectFrame(frames[i], expected.frameAt(ticks[i]));
        }
        ASSERT_EQ(orvanta_path_frames_at_seconds(path.get(), seconds.data(), seconds.size(), frames.data(), nullptr),
                  0);
        for (std::size_t i = 0; i < seconds.size(); ++i) {
            expectFrame(frames[i], expected.frameAtSeconds(seconds[i]));
        }
    }
}

orvanta_keyframe keyframeAt(std::int64_t time, orvanta_rect rect) {
    orvanta_keyframe row{};
    row.time = time;
    row.rect = rect;
    return row;
}

// The moves of a recording of 1280x800 in a frame of 640x400, 1000 ticks a second, a fade of 1000.
std::vector<orvanta_move> movesTo(const std::vector<orvanta_keyframe>& rows) {
    Params params;
    params.setTargetWidth(640).setTargetHeight(400).setTimeScale(1000.0).setFadeDuration(1000);
    params.setClipInterval(500, 20000);
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}};
    return movesOf(pathOf(requestOf(params, ORVANTA_ENGINE_VALUE), rows, nullptr, nullptr));
}

TEST(CPathTest, Moves_AreThoseOfTheKeyframesByTime) {
    const orvanta_rect left{0, 0, 640, 400};
    const orvanta_rect right{640, 400, 1280, 800};
    const auto moves = movesTo({keyframeAt(8000, right), keyframeAt(2000, left)});
    ASSERT_EQ(moves.size(), 2U);
    EXPECT_EQ(moves[0].start, 2000);
    EXPECT_EQ(moves[0].stop, 3000);
    EXPECT_EQ(moves[0].start_seconds, 2.0);
    EXPECT_EQ(moves[0].stop_seconds, 3.0);
    expectFrame(moves[0].from, {0.0, 0.0, 1280.0, 800.0, false});
    expectFrame(moves[0].to, {0.0, 0.0, 640.0, 400.0, false});
    EXPECT_EQ(moves[0].keyframe, 1);
    EXPECT_EQ(moves[0].cut_short, 0);
    EXPECT_EQ(moves[1].start, 8000);
    EXPECT_EQ(moves[1].stop_seconds, 9.0);
    expectFrame(moves[1].from, {0.0, 0.0, 640.0, 400.0, false});
    expectFrame(moves[1].to, {640.0, 400.0, 640.0, 400.0, false});
    EXPECT_EQ(moves[1].keyframe, 0);
}

TEST(CPathTest, MoveThatTheNextOneOvertakes_IsCutShort) {
    const auto moves = movesTo({keyframeAt(2000, {0, 0, 640, 400}), keyframeAt(2250, {640, 400, 1280, 800}),
                                keyframeAt(9000, {0, 0, 640, 400}), keyframeAt(9000, {320, 200, 960, 600})});
    ASSERT_EQ(moves.size(), 3U); // The last keyframe replaces the one at its time.
    EXPECT_EQ(moves[0].stop, 2250);
    EXPECT_NE(moves[0].cut_short, 0);
    EXPECT_EQ(moves[1].start, 2250);
    EXPECT_EQ(moves[1].stop, 3250);
    EXPECT_EQ(moves[1].cut_short, 0);
    EXPECT_LT(moves[1].from.width, 1280.0); // It sets off from where the first one was.
    EXPECT_GT(moves[1].from.width, 640.0);
    EXPECT_EQ(moves[2].keyframe, 3);
}

TEST(CPathTest, MovesOutsideWhatTicksHold_EndWhereTicksEnd) {
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    const auto moves = movesTo({keyframeAt(-5, {0, 0, 640, 400}), keyframeAt(last, {640, 400, 1280, 800})});
    ASSERT_EQ(moves.size(), 2U);
    EXPECT_EQ(moves[0].start, 500); // The clip's start.
    EXPECT_EQ(moves[0].stop, 1500);
    EXPECT_EQ(moves[1].start, last);
    EXPECT_EQ(moves[1].stop, last);
    EXPECT_TRUE(movesTo({}).empty());
}

TEST(CPathTest, MovesOfAPlan_AreThoseOfCameraPath) {
    const Params params = generatedRecording(5, {});
    const RequestHandle request = requestOf(params, ORVANTA_ENGINE_VALUE);
    orvanta_result* made = nullptr;
    ASSERT_EQ(orvanta_plan(request.get(), nullptr, &made, nullptr), ORVANTA_OK);
    const auto rows = rowsOf<orvanta_keyframe>(ResultHandle(made), ORVANTA_TABLE_KEYFRAMES);
    const std::vector<OV_TIME_RECT> keyframes = keyframesOf(rows);
    const auto moves = movesOf(pathOf(request, rows, nullptr, nullptr));
    const CameraPath expected(keyframes, CameraSetup::of(params));
    ASSERT_GT(moves.size(), 0U);
    ASSERT_EQ(moves.size(), expected.moves().size());
    for (std::size_t i = 0; i < moves.size(); ++i) {
        const CameraMove& move = expected.moves()[i];
        EXPECT_EQ(moves[i].start, move.start);
        EXPECT_EQ(moves[i].stop, move.stop);
        EXPECT_EQ(moves[i].start_seconds, static_cast<double>(move.start) / params.timeScale());
        EXPECT_EQ(moves[i].stop_seconds, static_cast<double>(move.stop) / params.timeScale());
        expectFrame(moves[i].from, move.from);
        expectFrame(moves[i].to, move.to);
        EXPECT_EQ(moves[i].keyframe, static_cast<std::int64_t>(move.keyframe));
        EXPECT_EQ(moves[i].cut_short != 0, move.cutShort);
    }
}

TEST(CPathTest, NoKeyframes_ShowTheWholeRecording) {
    const RequestHandle request = requestOf(generatedRecording(5, {}), ORVANTA_ENGINE_VALUE);
    orvanta_path* made = nullptr;
    ASSERT_EQ(orvanta_path_create(request.get(), nullptr, 0, 0, nullptr, &made, nullptr), ORVANTA_OK);
    const PathHandle path(made);
    const double moment = 1.0;
    orvanta_frame frame{};
    ASSERT_EQ(orvanta_path_frames_at_seconds(path.get(), &moment, 1, &frame, nullptr), ORVANTA_OK);
    EXPECT_EQ(frame.left, 0.0);
    EXPECT_EQ(frame.top, 0.0);
    EXPECT_EQ(frame.width, 1280.0);
    EXPECT_EQ(frame.height, 800.0);
    EXPECT_EQ(frame.overhangs, 0);
}

TEST(CPathTest, NumberThatMissesABound_IsToldWithIt) {
    const auto refusal = [](const Params& params) {
        orvanta_error error = emptyError();
        error.value = error.limit = 99.0;
        EXPECT_EQ(pathOf(requestOf(params, ORVANTA_ENGINE_VALUE), {}, nullptr, &error), nullptr);
        return std::pair(error.value, error.limit);
    };
    const Params good = generatedRecording(5, {});
    Params params = good;
    EXPECT_EQ(refusal(params.setTargetWidth(0)), std::pair(0.0, 1.0));
    params = good;
    EXPECT_EQ(refusal(params.setTargetHeight(-7)), std::pair(-7.0, 1.0));
    params = good;
    EXPECT_EQ(refusal(params.setTimeScale(0.0)), std::pair(0.0, 0.0));
    params = good;
    EXPECT_EQ(refusal(params.setTimeScale(-2.5)), std::pair(-2.5, 0.0));
    params = good;
    EXPECT_EQ(refusal(params.setFadeDuration(-1)), std::pair(-1.0, 0.0));
}

TEST(CPathTest, WhatAPathCannotBeMadeFrom_IsNamed) {
    const auto refusal = [](const Params& params, const orvanta_easing* easing = nullptr,
                            const std::vector<orvanta_keyframe>& rows = {}) {
        orvanta_error error = emptyError();
        EXPECT_EQ(pathOf(requestOf(params, ORVANTA_ENGINE_VALUE), rows, easing, &error), nullptr);
        EXPECT_EQ(error.code, ORVANTA_BAD_ARGUMENT);
        return error.parameter;
    };
    const Params good = generatedRecording(5, {});
    Params params = good;
    EXPECT_EQ(refusal(params.setTargetWidth(0)), ORVANTA_PARAMETER_TARGET_WIDTH);
    params = good;
    EXPECT_EQ(refusal(params.setTargetHeight(-1)), ORVANTA_PARAMETER_TARGET_HEIGHT);
    for (const double scale : {0.0, -1.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        params = good;
        EXPECT_EQ(refusal(params.setTimeScale(scale)), ORVANTA_PARAMETER_TIME_SCALE);
    }
    params = good;
    EXPECT_EQ(refusal(params.setFadeDuration(-1)), ORVANTA_PARAMETER_FADE_DURATION);
    params = good;
    params.recordingRegions().clear();
    EXPECT_EQ(refusal(params), ORVANTA_PARAMETER_REGIONS);
    const orvanta_easing backwards{1.5, 0.0, 0.5, 1.0};
    EXPECT_EQ(refusal(good, &backwards), ORVANTA_PARAMETER_EASING);
    EXPECT_EQ(refusal(good, nullptr, {orvanta_keyframe{}}), ORVANTA_PARAMETER_KEYFRAMES);
    orvanta_error error = emptyError();
    orvanta_easing easing{};
    EXPECT_EQ(orvanta_easing_named("bouncy", &easing, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_EASING);
}

TEST(CPathTest, MomentThatIsNoNumber_IsRefusedAndNothingIsWritten) {
    const PathHandle path = pathOf(requestOf(generatedRecording(5, {}), 0), {}, nullptr, nullptr);
    const double moments[] = {1.0, std::nan("")};
    orvanta_frame frames[2] = {{-7.0, 0.0, 0.0, 0.0, 0, 0}, {}};
    orvanta_error error = emptyError();
    EXPECT_EQ(orvanta_path_frames_at_seconds(path.get(), moments, 2, frames, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_TIMES);
    EXPECT_EQ(error.index, 1);
    EXPECT_EQ(frames[0].left, -7.0);
}

} // namespace
} // namespace OrvantaNS::testing
