#include "writing/FfmpegScript.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reading/CameraPlan.h"
#include "render/ExactCut.h"
#include "support/Process.h"
#include "writing/PathFormat.h"

namespace OrvantaNS::command {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr int kWidth = 640;
constexpr int kHeight = 400;
constexpr int kRate = 10; // Pictures a second of the generated video.

/// Moves of every kind: a zoom, one that is cut short, a pan with a zoom out; video from 0.25 s on.
CameraPlan plainPlan() {
    CameraPlan plan;
    plan.videoOffset = 250;
    plan.setup.region = {0, kWidth, 0, kHeight};
    plan.setup.targetWidth = 320;
    plan.setup.targetHeight = 200;
    plan.setup.timeScale = 1000;
    plan.setup.fadeDuration = 1000;
    plan.setup.clipStop = 6000;
    plan.setup.easing = CameraEasing::smooth();
    plan.keyframes = {
        {{1000, {50, 370, 40, 240}}, ""}, {{1600, {300, 540, 150, 300}}, ""}, {{4000, {10, 490, 5, 305}}, ""}};
    return plan;
}

bool hasFfmpeg() { return std::system("ffmpeg -version >/dev/null 2>&1") == 0; }

/// Runs ffmpeg quietly and gives the grey pictures that come out, one after the other.
std::string greyPictures(const testing::TemporaryDirectory& directory, const std::string& arguments) {
    const std::string file = directory.path("pictures.raw");
    const std::string line =
        fmt::format("ffmpeg -v error -nostdin -y {} -f rawvideo -pix_fmt gray '{}'", arguments, file);
    EXPECT_EQ(std::system(line.c_str()), 0) << line;
    return testing::readFile(file);
}

const std::string kSource =
    fmt::format("-f lavfi -i testsrc2=size={}x{}:rate={}:duration=6,format=yuv420p", kWidth, kHeight, kRate);

double likeness(std::string_view a, std::string_view b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double difference = static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]);
        sum += difference * difference;
    }
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(a.size()) / std::max(sum, 1e-9));
}

/// One picture of the source cut and scaled on its own.
std::string cutOnItsOwn(const testing::TemporaryDirectory& directory, int picture, const CameraFrame& frame,
                        const CameraSetup& setup) {
    return greyPictures(directory,
                        fmt::format("{} -vf \"select=eq(n\\,{}),{}\" -frames:v 1", kSource, picture,
                                    testing::enlargedCutFilters(frame, {setup.targetWidth, setup.targetHeight})));
}

void expectShows(const CameraPlan& plan, std::initializer_list<int> pictures) {
    const testing::TemporaryDirectory directory;
    const std::string script = directory.write("path.ffmpeg", ffmpegScript(plan));
    const std::string all = greyPictures(directory, fmt::format("{} -filter_script:v '{}'", kSource, script));
    const std::size_t size =
        static_cast<std::size_t>(plan.setup.targetWidth) * static_cast<std::size_t>(plan.setup.targetHeight);
    ASSERT_EQ(all.size(), size * 6 * kRate);
    const CameraPath path = plan.path();
    for (const int picture : pictures) {
        const double seconds = static_cast<double>(picture) / kRate + plan.toSeconds(plan.videoOffset.value_or(0));
        const std::string expected = cutOnItsOwn(directory, picture, path.frameAtSeconds(seconds), plan.setup);
        ASSERT_EQ(expected.size(), size);
        // What rounding to half an output pixel leaves at the sharp edges of this picture; a whole pixel off gives less.
        EXPECT_GT(likeness(std::string_view(all).substr(static_cast<std::size_t>(picture) * size, size), expected), 28)
            << "picture " << picture;
    }
}

TEST(FfmpegScriptTest, Ffmpeg_ShowsThePath) {
    if (!hasFfmpeg()) {
        GTEST_SKIP() << "the program ffmpeg is not there";
    }
    expectShows(plainPlan(), {3, 9, 12, 15, 20, 30, 40, 43, 58});
}

TEST(FfmpegScriptTest, Ffmpeg_ShowsAnOverhang) {
    if (!hasFfmpeg()) {
        GTEST_SKIP() << "the program ffmpeg is not there";
    }
    CameraPlan plan = plainPlan();
    plan.setup.targetWidth = 180;
    plan.setup.targetHeight = 320;
    plan.keyframes = {{{1000, {100, 325, 0, 400}}, ""}, {{4000, {400, 490, 100, 260}}, ""}};
    expectShows(plan, {3, 10, 13, 25, 42, 58});
}

TEST(FfmpegScriptTest, Ffmpeg_TakesHundredsOfKeyframes) {
    if (!hasFfmpeg()) {
        GTEST_SKIP() << "the program ffmpeg is not there";
    }
    CameraPlan plan = plainPlan();
    plan.setup.fadeDuration = 5;
    plan.keyframes.clear();
    for (int i = 0; i < 500; ++i) {
        plan.keyframes.push_back({{300 + i * 11, {i % 300, i % 300 + 320, i % 190, i % 190 + 200}}, ""});
    }
    expectShows(plan, {20, 50});
}

TEST(FfmpegScriptTest, CommandLine_CutsToTheClip) {
    CameraPlan plan = plainPlan();
    EXPECT_EQ(ffmpegCommandLine(plan, "a.ffmpeg"),
              "ffmpeg -i VIDEO -filter_script:v a.ffmpeg -to 5.75 -c:a copy OUT.mp4");
    plan.setup.clipStart = 1250;
    EXPECT_EQ(ffmpegCommandLine(plan, ""), "ffmpeg -i VIDEO -filter_script:v FILE -ss 1 -to 5.75 -c:a copy OUT.mp4");
}

TEST(FfmpegScriptTest, Format_IsChosenByItsNameAndEnding) {
    ASSERT_NE(pathFormatNamed("ffmpeg"), nullptr);
    EXPECT_EQ(pathFormatOfFile("PATH.FFMPEG"), pathFormatNamed("ffmpeg"));
    EXPECT_EQ(pathFormatOfFile("a.json"), pathFormatNamed("json"));
    EXPECT_EQ(pathFormatOfFile("a.mp4"), nullptr);
    EXPECT_THAT(pathFormatNamed("ffmpeg")->advice(plainPlan(), {}, "x"), HasSubstr("-filter_script:v x"));
}

} // namespace
} // namespace OrvantaNS::command
