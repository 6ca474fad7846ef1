// The rendered picture of a real session, against a cut and a scale by the `ffmpeg` program.
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "CameraPath.h"
#include "asking/Engine.h"
#include "reading/Recording.h"
#include "render/ExactCut.h"
#include "render/MediaTools.h"
#include "support/Process.h"

namespace OrvantaNS {
namespace {

using namespace OrvantaNS::testing;

constexpr int kOutWidth = 640; // Pixels.
constexpr int kOutHeight = 360;
constexpr int kSourceWidth = 1920;
constexpr int kSourceHeight = 1080;
constexpr double kPrecision = 0.01; // Output pixels that the detour may be off.
// Decibels. Two scalers that agree reach 58 and more; a shift by a seventh of a pixel costs 20.
constexpr double kLeastLikeness = 50.0;
constexpr std::size_t kMoments = 20;

double likeness(const std::string& one, const std::string& other, std::size_t from, std::size_t count) {
    double sum = 0.0;
    for (std::size_t i = from; i < from + count; ++i) {
        const double difference = static_cast<unsigned char>(one.at(i)) - static_cast<unsigned char>(other.at(i));
        sum += difference * difference;
    }
    return 10.0 * std::log10(255.0 * 255.0 / (sum / static_cast<double>(count) + 1e-6));
}

TEST(RenderedFrameTest, RealSession_EqualsFfmpegsOwnCutAndScaleAtTheCamerasFrame) {
    const std::string recordingPath = ORVANTA_VIDEO_SAMPLE ".jsonl";
    const std::string source = ORVANTA_VIDEO_SAMPLE ".mp4";
    const TemporaryDirectory directory;
    const std::string out = directory.path("out.mkv");
    // Without loss; the recording's first minute has moves in, out and back.
    const ProcessResult result =
        runOrvanta({"render", recordingPath, "-o", out, "--size", fmt::format("{}x{}", kOutWidth, kOutHeight), "--crf",
                    "0", "--preset", "ultrafast", "--clip", ":62", "--fade", "4"});
    ASSERT_EQ(result.status, 0) << result.err;

    // What the camera shows, asked of the same classes as any host would.
    command::Recording recording = command::readRecordingFile(recordingPath);
    command::RequestOptions options;
    options.size = command::SizeOption{};
    options.size->pixels = {kOutWidth / 2, kOutHeight / 2};
    options.fadeSeconds = 4.0;
    options.clip.stop = 62.0;
    completeRequest(recording, options);
    std::vector<OV_TIME_RECT> keyframes;
    for (const command::ReasonedKeyframe& keyframe : askKeyframes(recording.params, options.engine)) {
        keyframes.push_back(keyframe.frame);
    }
    ASSERT_GE(keyframes.size(), 3U);
    CameraSetup setup = CameraSetup::of(recording.params);
    setup.targetWidth = kOutWidth;
    setup.targetHeight = kOutHeight;
    const CameraPath path(keyframes, setup);

    const std::vector<double> times = stamps(out);
    std::size_t compared = 0;
    std::size_t moving = 0;
    double lastWidth = 0.0;
    double lastLeft = -1.0;
    for (std::size_t i = 0; i < times.size() && compared < kMoments; ++i) {
        const double moment = times[i] + static_cast<double>(recording.videoOffset.value_or(0)) / setup.timeScale;
        const CameraFrame frame = path.frameAtSeconds(moment);
        const bool sameAsBefore = frame.width == lastWidth && frame.left == lastLeft;
        lastWidth = frame.width;
        lastLeft = frame.left;
        if (sameAsBefore && i % 31 != 0) {
            continue; // Each move's frames, and a few of each rest.
        }
        const auto filters = exactCutFilters(frame, {kSourceWidth, kSourceHeight}, {kOutWidth, kOutHeight}, kPrecision);
        if (!filters) {
            continue; // No such detour for this frame.
        }
        const auto picture = [&](const std::string& file, const std::string& filter) {
            return ffmpeg(fmt::format("-ss {:.3f} -i '{}' -frames:v 1 {} -pix_fmt yuv420p -f rawvideo -",
                                      times[i] - 0.01, file, filter));
        };
        const std::string expected = picture(source, "-vf " + *filters);
        const std::string rendered = picture(out, "");
        constexpr std::size_t kLuma = std::size_t{kOutWidth} * kOutHeight;
        ASSERT_EQ(expected.size(), kLuma * 3 / 2);
        ASSERT_EQ(rendered.size(), expected.size());
        EXPECT_GT(likeness(rendered, expected, 0, kLuma), kLeastLikeness) << "luma at " << moment << " s";
        EXPECT_GT(likeness(rendered, expected, kLuma, kLuma / 2), kLeastLikeness) << "chroma at " << moment << " s";
        ++compared;
        moving += sameAsBefore ? 0 : 1;
    }
    EXPECT_EQ(compared, kMoments);
    EXPECT_GE(moving, 8U);
}

} // namespace
} // namespace OrvantaNS
