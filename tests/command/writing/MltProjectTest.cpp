#include "writing/MltProject.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "asking/OptionError.h"
#include "reading/PathFile.h"
#include "render/ExactCut.h"
#include "support/Process.h"
#include "writing/PathFormat.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kWidth = 640;
constexpr int kHeight = 400;
constexpr PictureRate kRate{10, 1};

/// Moves of every kind: a zoom, one that is cut short, a pan with a zoom out; video from 0.25 s on.
CameraPlan plainPlan() {
    CameraPlan plan;
    plan.recording = "session.jsonl";
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

TEST(MltProjectTest, Keys_StandWhereAPictureDiffersFromItsNeighbours) {
    CameraPlan plan = plainPlan();
    plan.videoOffset.reset();
    plan.setup.easing = CameraEasing::linear();
    plan.setup.fadeDuration = 300;
    plan.keyframes = {{{1000, {320, 640, 200, 400}}, ""}}; // From all of 640x400 to its lower right quarter.
    const std::string text = mltProject(plan, kRate, "a.mp4");
    // At rest until 1 s (picture 10), then a third of the way in the logarithm of the size at each picture: the recording
    // grows by 2^(1/3) each time, and its low edges stay at 0 less what has been passed.
    EXPECT_THAT(text, HasSubstr(">0=0.000 0.000 320.000 200.000 1;10=0.000 0.000 320.000 200.000 1;"
                                "11=-83.175 -51.984 403.175 251.984 1;12=-187.968 -117.480 507.968 317.480 1;"
                                "13=-320.000 -200.000 640.000 400.000 1;60=-320.000 -200.000 640.000 400.000 1<"));
    EXPECT_THAT(text, HasSubstr(R"(<entry producer="video" in="0" out="60"/>)"));
    EXPECT_THAT(text, HasSubstr(R"(width="320" height="200")"));
    EXPECT_THAT(text, HasSubstr(R"(display_aspect_num="8" display_aspect_den="5" frame_rate_num="10")"));
}

TEST(MltProjectTest, Pictures_AreThoseOfTheVideosClockInTheClip) {
    CameraPlan plan = plainPlan(); // The video begins at tick 250.
    plan.setup.clipStart = 1300;
    plan.setup.clipStop = 2250;
    const std::string text = mltProject(plan, kRate, "a.mp4");
    EXPECT_THAT(text, HasSubstr(R"(<entry producer="video" in="11" out="20"/>)"));
    EXPECT_THAT(text, HasSubstr(">11="));
    EXPECT_THAT(text, Not(HasSubstr(";21=")));
}

TEST(MltProjectTest, ClipWithoutAPicture_IsRefused) {
    CameraPlan plan = plainPlan();
    plan.setup.clipStop = 200; // The video begins at 250.
    EXPECT_THROW(mltProject(plan, kRate, "a.mp4"), OptionError);
    plan.videoOffset.reset();
    plan.setup.clipStart = -5000; // Nobody knows of a video then.
    EXPECT_THROW(mltProject(plan, kRate, "a.mp4"), OptionError);
}

TEST(MltProjectTest, Names_AreEscaped) {
    EXPECT_THAT(mltProject(plainPlan(), kRate, "a<b>&\"c\"\n.mp4"),
                HasSubstr("<property name=\"resource\">a&lt;b&gt;&amp;&quot;c&quot;?.mp4</property>"));
}

TEST(MltProjectTest, Video_IsNamedFromTheProjectsFolder) {
    EXPECT_EQ(mltVideoName("/a/b/video.mp4", "/a/c/path.mlt"), "../b/video.mp4");
    EXPECT_EQ(mltVideoName("/a/b/video.mp4", "/a/b/path.mlt"), "video.mp4");
    EXPECT_EQ(mltVideoName("/a/b/video.mp4", ""), "/a/b/video.mp4");
    EXPECT_EQ(mltVideoName("video.mp4", "folder/path.mlt"), "../video.mp4");
}

TEST(MltProjectTest, Format_IsChosenByItsNameAndEnding) {
    ASSERT_NE(pathFormatNamed("mlt"), nullptr);
    EXPECT_EQ(pathFormatOfFile("PATH.MLT"), pathFormatNamed("mlt"));
    PathOutputOptions options;
    options.video = "a.mp4";
    EXPECT_THAT(pathFormatNamed("mlt")->text(plainPlan(), options), HasSubstr("frame_rate_num=\"30\""));
    EXPECT_EQ(pathFormatNamed("mlt")->advice(plainPlan(), options, "x.mlt"),
              "the project shows a.mp4; use it like this: melt x.mlt -consumer avformat:OUT.mp4 rescale=bicubic");
}

bool hasMelt() { return std::system("melt -version >/dev/null 2>&1 && ffmpeg -version >/dev/null 2>&1") == 0; }

void run(const std::string& line) { ASSERT_EQ(std::system(line.c_str()), 0) << line; }

/// What melt shows of a project, in grey, picture after picture.
std::string shown(const testing::TemporaryDirectory& directory, const std::string& project,
                  const std::string& range = {}) {
    const std::string out = directory.path("shown.mkv");
    const std::string raw = directory.path("shown.raw");
    run(fmt::format(
        "melt -silent '{}' {} -consumer avformat:'{}' rescale=bicubic real_time=-1 vcodec=ffv1 pix_fmt=yuv444p "
        "an=1 >/dev/null 2>&1",
        project, range, out));
    run(fmt::format("ffmpeg -v error -nostdin -y -i '{}' -f rawvideo -pix_fmt gray '{}'", out, raw));
    return testing::readFile(raw);
}

/// How alike two pictures are, decibels, with the second one moved by some pixels.
double likeness(std::string_view a, std::string_view b, testing::PictureSize size, int dx, int dy) {
    const auto at = [&size](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(x);
    };
    double sum = 0;
    int count = 0;
    for (int y = 1; y < size.height - 1; ++y) {
        for (int x = 1; x < size.width - 1; ++x) {
            const double difference =
                static_cast<unsigned char>(a[at(x, y)]) - static_cast<unsigned char>(b[at(x + dx, y + dy)]);
            sum += difference * difference;
            ++count;
        }
    }
    return 10 * std::log10(255.0 * 255.0 * count / std::max(sum, 1e-9));
}

/// Two pictures are alike, and moving one of them by a pixel to any side makes them less so: half a pixel off, one of the
/// neighbours would be as near.
void expectSamePlace(std::string_view melted, std::string_view expected, testing::PictureSize size, double least,
                     int picture) {
    const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    ASSERT_EQ(melted.size(), pixels);
    ASSERT_EQ(expected.size(), pixels);
    const double here = likeness(melted, expected, size, 0, 0);
    EXPECT_GT(here, least) << "picture " << picture;
    for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
        constexpr double kMargin = 3.0; // Decibels.
        EXPECT_GT(here, likeness(melted, expected, size, dx, dy) + kMargin) << "picture " << picture;
    }
}

/// Waves in both directions, bent so that no two places are alike, without colours and without time.
constexpr const char* kWaves = "128+50*sin(X*0.35+3*sin(Y*0.05))+50*sin(Y*0.45+3*sin(X*0.04))";

/// Lets melt show a plan of a generated video, and compares pictures with those that ffmpeg cuts and scales.
void expectShows(const CameraPlan& plan, const std::vector<int>& pictures) {
    const testing::TemporaryDirectory directory;
    const std::string video = directory.path("video.mkv");
    run(fmt::format(
        "ffmpeg -v error -nostdin -y -f lavfi -i \"nullsrc=s={}x{}:r=10:d=0.1,format=yuv420p,geq=lum='{}':cb=128:"
        "cr=128,loop=59:1\" -c:v ffv1 -color_range tv -colorspace bt709 '{}'",
        kWidth, kHeight, kWaves, video));
    const std::string project = directory.write("path.mlt", mltProject(plan, kRate, "video.mkv"));
    const std::string all = shown(directory, project);
    const testing::PictureSize size{plan.setup.targetWidth, plan.setup.targetHeight};
    const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    const CameraPath path = plan.path();
    for (const int picture : pictures) {
        const double seconds =
            static_cast<double>(picture) / kRate.perSecond() + plan.toSeconds(plan.videoOffset.value_or(0));
        const std::string raw = directory.path("expected.raw");
        run(fmt::format(
            "ffmpeg -v error -nostdin -y -i '{}' -vf \"select=eq(n\\,{}),{}\" -frames:v 1 -f rawvideo -pix_fmt "
            "gray '{}'",
            video, picture, testing::enlargedCutFilters(path.frameAtSeconds(seconds), size), raw));
        ASSERT_GE(all.size(), pixels * static_cast<std::size_t>(picture + 1));
        // Decibels: what another kernel leaves of waves that are reduced to four pixels.
        expectSamePlace(std::string_view(all).substr(static_cast<std::size_t>(picture) * pixels, pixels),
                        testing::readFile(raw), size, 26.0, picture);
    }
}

TEST(MltProjectTest, Melt_ShowsThePath) {
    if (!hasMelt()) {
        GTEST_SKIP() << "the programs melt and ffmpeg are not there";
    }
    expectShows(plainPlan(), {3, 9, 12, 15, 20, 30, 40, 43, 55});
}

TEST(MltProjectTest, Melt_ShowsAnOverhang) {
    if (!hasMelt()) {
        GTEST_SKIP() << "the programs melt and ffmpeg are not there";
    }
    CameraPlan plan = plainPlan();
    plan.setup.targetWidth = 180;
    plan.setup.targetHeight = 320;
    plan.keyframes = {{{1000, {100, 325, 0, 400}}, ""}, {{4000, {400, 490, 100, 260}}, ""}};
    expectShows(plan, {3, 10, 13, 25, 42, 55});
}

// The command's own project of a real session: melt's picture is the one that ffmpeg cuts and scales from the source at the
// frame that CameraPath gives.
TEST(MltProjectTest, Melt_ShowsARealSession) {
    if (!hasMelt()) {
        GTEST_SKIP() << "the programs melt and ffmpeg are not there";
    }
    const testing::TemporaryDirectory directory;
    const std::string project = directory.path("path.mlt");
    const std::string recording = ORVANTA_VIDEO_SAMPLE ".jsonl";
    const std::string video = ORVANTA_VIDEO_SAMPLE ".mp4";
    const std::vector<std::string> question{"keyframes", recording, "--size", "640x360", "--clip", ":62"};
    const auto asked = [&](std::vector<std::string> more) {
        more.insert(more.begin(), question.begin(), question.end());
        return testing::runOrvanta(more);
    };
    const auto written = asked({"--sample", "8", "-o", project}); // The video's own rate.
    ASSERT_EQ(written.status, 0) << written.err;
    EXPECT_THAT(written.err, HasSubstr("melt " + project));
    ASSERT_EQ(asked({"-o", directory.path("path.json")}).status, 0);
    const CameraPlan plan = readPathFile(directory.path("path.json"));
    const CameraPath path = plan.path();
    ASSERT_GE(path.moves().size(), 3U);

    std::vector<int> pictures{4}; // At rest at first; then in the midst of moves, and at rest after them.
    for (const CameraMove& move : path.moves()) {
        const double middle = (plan.toVideoSeconds(move.start) + plan.toVideoSeconds(move.stop)) / 2;
        pictures.push_back(static_cast<int>(middle * 8));
        pictures.push_back(static_cast<int>(std::ceil(plan.toVideoSeconds(move.stop) * 8)) + 1);
    }
    int compared = 0;
    for (const int picture : pictures) {
        const CameraFrame frame = path.frameAtSeconds(picture / 8.0 + plan.toSeconds(plan.videoOffset.value_or(0)));
        constexpr double kPrecision = 0.05; // Output pixels.
        const auto filters = testing::exactCutFilters(frame, {1920, 1080}, {640, 360}, kPrecision);
        if (!filters || compared == 6) {
            continue; // No such detour for this frame.
        }
        const std::string raw = directory.path("expected.raw");
        run(fmt::format(
            "ffmpeg -v error -nostdin -y -ss {:.3f} -i '{}' -vf \"{}\" -frames:v 1 -f rawvideo -pix_fmt gray '{}'",
            picture / 8.0 - 0.01, video, *filters, raw));
        const std::string expected = testing::readFile(raw);
        const std::string melted = shown(directory, project, fmt::format("in={0} out={0}", picture));
        // Decibels: what another kernel leaves at letters.
        expectSamePlace(melted, expected, {640, 360}, 30.0, picture);
        ++compared;
    }
    EXPECT_GE(compared, 5);
}

} // namespace
} // namespace OrvantaNS::command
