// The C interface's own promises: answers, failures, callbacks, silence, threads.
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GeneratedRecording.h"
#include "OrvantaDirector.h"
#include "SameAnswers.h"

namespace OrvantaNS::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

Params session(std::uint64_t seed, double timeScale = 1000.0) {
    SessionPlan plan;
    plan.seconds = 40.0;
    plan.timeScale = timeScale;
    return generatedRecording(seed, plan);
}

TEST(CInterfaceTest, GeneratedSessions_AnswerAsInCpp) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        constexpr double kScales[] = {1000.0, 10000000.0, 59.94};
        expectSameAnswers(session(seed, kScales[seed % 3]));
    }
}

// Every bound of the checks, just below, on and just above it, and all that can be missing.
TEST(CInterfaceTest, RequestsAtTheBounds_AreRefusedAsInCppAndInSilence) {
    ::testing::internal::CaptureStdout();
    std::vector<std::string> differing;
    for (const int targetWidth : {-5, 0, 1, 63, 64, 65, 127, 128, 129}) {
        for (const int targetHeight : {0, 63, 64, 127, 128, 129}) {
            for (const int regionWidth : {-1, 0, 31, 63, 64, 128, 129, 4096}) {
                for (const int regionHeight : {0, 1, 63, 64, 128, 131}) {
                    for (const double scale : {0.0, 100.0}) {
                        Params params;
                        params.setTargetWidth(targetWidth).setTargetHeight(targetHeight).setTimeScale(scale);
                        params.recordingRegions() = {{0, {10, 10 + regionWidth, 20, 20 + regionHeight}}};
                        for (const std::int32_t engine : {ORVANTA_ENGINE_VALUE, ORVANTA_ENGINE_VOTING}) {
                            const std::string inC = answerInC(params, engine);
                            ::testing::internal::GetCapturedStdout();
                            ::testing::internal::CaptureStdout();
                            const std::string inCpp = answerInCpp(params, engine);
                            ::testing::internal::GetCapturedStdout();
                            ::testing::internal::CaptureStdout();
                            if (inC != inCpp) {
                                differing.push_back(std::to_string(targetWidth) + "x" + std::to_string(targetHeight) +
                                                    " of " + std::to_string(regionWidth) + "x" +
                                                    std::to_string(regionHeight) + ": " + inC + inCpp);
                            }
                        }
                    }
                }
            }
        }
    }
    ::testing::internal::GetCapturedStdout();
    EXPECT_THAT(differing, ::testing::IsEmpty());
}

TEST(CInterfaceTest, RefusedSizes_PrintNothing) {
    Params params;
    params.setTargetWidth(200).setTargetHeight(200);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    answerInC(params, ORVANTA_ENGINE_VALUE); // no region
    params.recordingRegions() = {{0, {0, 100, 0, 100}}};
    answerInC(params, ORVANTA_ENGINE_VALUE); // too large
    answerInC(params, ORVANTA_ENGINE_VOTING);
    params.setTargetWidth(10);
    answerInC(params, ORVANTA_ENGINE_VALUE); // too small
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(CInterfaceTest, Refusals_SayWhichSizeMissesWhichLimit) {
    const auto refusal = [](int targetWidth, int targetHeight, std::int32_t engine) {
        Params params;
        params.setTargetWidth(targetWidth).setTargetHeight(targetHeight);
        params.recordingRegions() = {{0, {0, 1280, 0, 800}}};
        orvanta_error error = emptyError();
        orvanta_result* result = nullptr;
        EXPECT_EQ(orvanta_plan(requestOf(params, engine).get(), nullptr, &result, &error), error.code);
        EXPECT_EQ(result, nullptr);
        return error;
    };
    orvanta_error error = refusal(640, 63, ORVANTA_ENGINE_VALUE);
    EXPECT_EQ(error.code, ORVANTA_BAD_TARGET_SIZE);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_TARGET_HEIGHT);
    EXPECT_EQ(error.value, 63.0);
    EXPECT_EQ(error.limit, 64.0);
    EXPECT_EQ(error.index, -1);
    EXPECT_THAT(error.message, AllOf(HasSubstr("640x63"), HasSubstr("64 pixels")));

    error = refusal(1280, 800, ORVANTA_ENGINE_VALUE);
    EXPECT_EQ(error.code, ORVANTA_TARGET_TOO_LARGE);
    EXPECT_EQ(error.limit, 1280.0);
    EXPECT_THAT(error.message, HasSubstr("1280x800"));

    error = refusal(640, 801, ORVANTA_ENGINE_VOTING);
    EXPECT_EQ(error.code, ORVANTA_TARGET_TOO_LARGE);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_TARGET_HEIGHT);
    EXPECT_EQ(error.value, 801.0);
    EXPECT_EQ(error.limit, 800.0);
}

TEST(CInterfaceTest, NothingWorthAMove_GivesAResultWithoutKeyframes) {
    Params params;
    params.setTargetWidth(640).setTargetHeight(400).setTimeScale(1000.0).setClipInterval(0, 5000);
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}};
    const RequestHandle request = requestOf(params, ORVANTA_ENGINE_VALUE);
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.keep_stages = 1;
    orvanta_result* made = nullptr;
    orvanta_error error = emptyError();
    EXPECT_EQ(orvanta_plan(request.get(), &run, &made, &error), ORVANTA_NO_KEYFRAMES);
    const ResultHandle result(made);
    ASSERT_NE(result, nullptr);
    EXPECT_TRUE(rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES).empty());
    EXPECT_EQ(rowsOf<orvanta_zone>(result, ORVANTA_TABLE_ZONES).size(), 1u);
    EXPECT_THAT(error.message, HasSubstr("whole recording"));
}

struct Calls {
    int reports = 0;
    int questions = 0;
    int cancelAt = std::numeric_limits<int>::max();
};

orvanta_run listening(Calls& calls) {
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.progress = [](double, void* data) { ++static_cast<Calls*>(data)->reports; };
    run.cancelled = [](void* data) -> std::int32_t {
        auto* heard = static_cast<Calls*>(data);
        return heard->questions++ >= heard->cancelAt ? 1 : 0;
    };
    run.user_data = &calls;
    return run;
}

TEST(CInterfaceTest, Cancelled_EndsThePlanWithoutAResult) {
    for (const std::int32_t engine : {ORVANTA_ENGINE_VALUE, ORVANTA_ENGINE_VOTING}) {
        const RequestHandle request = requestOf(session(1), engine);
        Calls all;
        orvanta_run run = listening(all);
        orvanta_result* result = nullptr;
        ASSERT_EQ(orvanta_plan(request.get(), &run, &result, nullptr), ORVANTA_OK);
        orvanta_result_free(result);
        EXPECT_GE(all.reports, 2);
        for (const int at : {0, 1, all.questions - 1}) {
            Calls some;
            some.cancelAt = at;
            run = listening(some);
            orvanta_error error = emptyError();
            EXPECT_EQ(orvanta_plan(request.get(), &run, &result, &error), ORVANTA_CANCELLED);
            EXPECT_EQ(result, nullptr);
            EXPECT_EQ(error.code, ORVANTA_CANCELLED);
            EXPECT_EQ(some.questions, at + 1);
        }
    }
}

TEST(CInterfaceTest, ExceptionOutOfACallback_StopsAtTheBorder) {
    const RequestHandle request = requestOf(session(1), ORVANTA_ENGINE_VALUE);
    orvanta_run run{};
    run.struct_size = sizeof run;
    orvanta_error error = emptyError();
    orvanta_result* result = nullptr;
    run.progress = [](double, void*) { throw std::runtime_error("the host's own"); };
    EXPECT_EQ(orvanta_plan(request.get(), &run, &result, &error), ORVANTA_INTERNAL);
    EXPECT_STREQ(error.message, "the host's own");
    run.progress = [](double, void*) { throw 7; };
    EXPECT_EQ(orvanta_plan(request.get(), &run, &result, &error), ORVANTA_INTERNAL);
    EXPECT_EQ(result, nullptr);
}

TEST(CInterfaceTest, NullPointers_AreRefusedByName) {
    orvanta_error error = emptyError();
    orvanta_request* request = nullptr;
    orvanta_options options;
    orvanta_options_init(&options, sizeof options);
    EXPECT_EQ(orvanta_request_create(nullptr, &request, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_POINTER);
    EXPECT_STREQ(error.message, "options is NULL");
    EXPECT_EQ(orvanta_request_create(&options, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_STREQ(error.message, "request is NULL");
    orvanta_result* result = nullptr;
    EXPECT_EQ(orvanta_plan(nullptr, nullptr, &result, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_plan(nullptr, nullptr, nullptr, nullptr), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_request_set_cursor(nullptr, nullptr, 0, 0, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_frame_at(nullptr, 0, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_frame_at_window(nullptr, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_result_table(nullptr, 0, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_path_create(nullptr, nullptr, 0, 0, nullptr, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_path_frames_at_ticks(nullptr, nullptr, 0, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(orvanta_path_moves(nullptr, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_POINTER);
    EXPECT_EQ(orvanta_options_init(nullptr, sizeof options), ORVANTA_BAD_ARGUMENT);
    orvanta_request_free(nullptr);
    orvanta_result_free(nullptr);
    orvanta_path_free(nullptr);
}

TEST(CInterfaceTest, VotingEngine_HasNoAnswerForAWindow) {
    orvanta_rect frame{};
    orvanta_error error = emptyError();
    EXPECT_EQ(orvanta_frame_at_window(requestOf(session(1), ORVANTA_ENGINE_VOTING).get(), &frame, &error),
              ORVANTA_NO_ANSWER);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_ENGINE);
}

TEST(CInterfaceTest, WindowQuestion_SaysWhatIsMissing) {
    Params params;
    params.setTargetWidth(640).setTargetHeight(400);
    orvanta_rect frame{};
    orvanta_error error = emptyError();
    EXPECT_EQ(orvanta_frame_at_window(requestOf(params, 0).get(), &frame, &error), ORVANTA_BAD_REGION);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_REGIONS);
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}};
    EXPECT_EQ(orvanta_frame_at_window(requestOf(params, 0).get(), &frame, &error), ORVANTA_BAD_REGION);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_WINDOWS);
    params.foreWindows() = {{0, {0, 500, 0, 400}}};
    params.setTargetWidth(1281).setTargetHeight(801);
    EXPECT_EQ(orvanta_frame_at_window(requestOf(params, 0).get(), &frame, &error), ORVANTA_TARGET_TOO_LARGE);
    EXPECT_EQ(error.limit, 1280.0);
    params.setTargetWidth(0).setTargetHeight(0);
    EXPECT_EQ(orvanta_frame_at_window(requestOf(params, 0).get(), &frame, &error), ORVANTA_TARGET_TOO_LARGE);
    EXPECT_EQ(error.limit, 1.0);
}

TEST(CInterfaceTest, ErrorRecordOfUnknownSize_IsLeftAlone) {
    orvanta_error error;
    std::memset(&error, 0x5a, sizeof error);
    error.struct_size = 8;
    EXPECT_EQ(orvanta_plan(nullptr, nullptr, nullptr, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.code, 0x5a5a5a5a);
}

TEST(CInterfaceTest, UnknownTableAndEngine_AreRefused) {
    orvanta_error error = emptyError();
    orvanta_options options;
    orvanta_options_init(&options, sizeof options);
    for (const std::int32_t engine : {-1, 99}) {
        options.engine = engine;
        orvanta_request* request = nullptr;
        EXPECT_EQ(orvanta_request_create(&options, &request, &error), ORVANTA_BAD_ARGUMENT);
        EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_ENGINE);
        EXPECT_EQ(error.value, engine);
    }
    orvanta_result* made = nullptr;
    orvanta_plan(requestOf(session(1), ORVANTA_ENGINE_VALUE).get(), nullptr, &made, nullptr);
    const ResultHandle result(made);
    orvanta_table table{};
    for (const std::int32_t id : {-1, 7}) {
        EXPECT_EQ(orvanta_result_table(result.get(), id, &table, &error), ORVANTA_BAD_ARGUMENT);
        EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_TABLE);
    }
    // Stages that nobody asked for.
    EXPECT_EQ(orvanta_result_table(result.get(), ORVANTA_TABLE_SHOTS, &table, &error), ORVANTA_OK);
    EXPECT_EQ(table.count, 0u);
    EXPECT_EQ(table.rows, nullptr);
}

TEST(CInterfaceTest, Director_AnswersAsInCpp) {
    for (const std::uint64_t seed : {6u, 7u}) {
        const Params params = session(seed);
        orvanta_options options = optionsOf(params, ORVANTA_ENGINE_DIRECTOR);
        options.calm = 0.5;
        options.readable = 0.6;
        options.presses = ORVANTA_PRESSES_CHEAP;
        options.overhang = 1;
        const RequestHandle request = requestOf(params, ORVANTA_ENGINE_DIRECTOR);
        ASSERT_EQ(orvanta_request_set_options(request.get(), &options, nullptr), ORVANTA_OK);
        const DirectorControls controls{0.5, 0.6, DirectorPresses::Cheap, true};
        const DirectorPlan expected = OrvantaDirector(controls).plan(params, nullptr);
        for (const std::int32_t keepStages : {0, 1}) {
            orvanta_run run{};
            run.struct_size = sizeof run;
            run.keep_stages = keepStages;
            orvanta_result* made = nullptr;
            ASSERT_EQ(orvanta_plan(request.get(), &run, &made, nullptr), ORVANTA_OK);
            const ResultHandle result(made);
            const auto rows = rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES);
            ASSERT_EQ(rows.size(), expected.shots.size());
            for (std::size_t i = 0; i < rows.size(); ++i) {
                EXPECT_EQ(rows[i].time, expected.shots[i].keyframe.time);
                EXPECT_EQ(text(rows[i].rect), text(expected.shots[i].keyframe.rect));
                EXPECT_EQ(orvanta_result_reason(result.get(), i), keepStages != 0 ? expected.shots[i].text : "");
            }
            EXPECT_STREQ(orvanta_result_reason(result.get(), rows.size()), "");
        }
        const long long time = params.clipStop() / 2;
        EXPECT_EQ(frameInC([&](orvanta_rect* frame) { return orvanta_frame_at(request.get(), time, frame, nullptr); }),
                  frameInCpp([&] { return OrvantaDirector(controls).calcOrvantaKeyframeAtTime(params, time); }));
    }
}

TEST(CInterfaceTest, DirectorsControls_AreRefusedByName) {
    orvanta_options good;
    orvanta_options_init(&good, sizeof good);
    const auto refused = [](const orvanta_options& options) {
        orvanta_request* request = nullptr;
        orvanta_error error = emptyError();
        EXPECT_EQ(orvanta_request_create(&options, &request, &error), ORVANTA_BAD_ARGUMENT);
        EXPECT_EQ(error.limit, error.parameter == ORVANTA_PARAMETER_CALM ? 0.0 : 1.0);
        return error.parameter;
    };
    for (const double calm : {0.0, -1.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        orvanta_options options = good;
        options.calm = calm;
        EXPECT_EQ(refused(options), ORVANTA_PARAMETER_CALM);
    }
    for (const double readable : {0.0, 1.01, std::nan("")}) {
        orvanta_options options = good;
        options.readable = readable;
        EXPECT_EQ(refused(options), ORVANTA_PARAMETER_READABLE);
    }
    orvanta_options options = good;
    options.presses = 2;
    EXPECT_EQ(refused(options), ORVANTA_PARAMETER_PRESSES);
}

TEST(CInterfaceTest, Names_AreThoseOfTheCommand) {
    EXPECT_STREQ(orvanta_version(), ORVANTA_VERSION);
    EXPECT_STREQ(orvanta_mode_name(ORVANTA_MODE_OFF_WINDOW), "off-window");
    EXPECT_STREQ(orvanta_mode_name(ORVANTA_MODE_NONE), "");
    EXPECT_STREQ(orvanta_mode_name(-1), "");
    EXPECT_STREQ(orvanta_mode_name(7), "");
    EXPECT_STREQ(orvanta_object_type_name(2), "Click");
    EXPECT_STREQ(orvanta_object_type_name(28), "ClickWindow");
    EXPECT_STREQ(orvanta_object_type_name(29), "");
}

TEST(CInterfaceTest, OneRequestOnManyThreads_AnswersAlike) {
    const Params params = session(3);
    const RequestHandle request = requestOf(params, ORVANTA_ENGINE_VALUE);
    const std::string expected = answerInCpp(params, ORVANTA_ENGINE_VALUE);
    std::vector<std::string> answers(4);
    std::vector<std::thread> threads;
    for (std::string& answer : answers) {
        threads.emplace_back([&] { answer = answerInC(params, ORVANTA_ENGINE_VALUE); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& answer : answers) {
        EXPECT_EQ(answer, expected);
    }
}

TEST(CInterfaceTest, ClocksOfDifferentScalesSideBySide_AnswerAsAlone) {
    constexpr double kScales[] = {1000.0, 1000000.0};
    std::vector<std::string> differing(2);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 2; ++i) {
        const Params params = session(4, kScales[i]);
        const std::string alone = answerInC(params, ORVANTA_ENGINE_VALUE);
        threads.emplace_back([&differing, i, params, alone] {
            for (int round = 0; round < 5; ++round) {
                const std::string now = answerInC(params, ORVANTA_ENGINE_VALUE);
                if (now != alone) {
                    differing[i] = now;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differing[0], "");
    EXPECT_EQ(differing[1], "");
}

} // namespace
} // namespace OrvantaNS::testing
