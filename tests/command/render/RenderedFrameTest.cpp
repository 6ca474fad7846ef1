// The rendered picture of a real session, against a cut and a scale by the `ffmpeg` program.
//
// Its filters cut at whole pixels, so the exact frame is reached on a detour. A rectangle of whole pixels around the
// frame is looked for that scales to whole pixels of the output as well: cut there, scaled, and cut again, the picture
// stands where the frame stands to within a hundredth of a pixel.
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "CameraPath.h"
#include "asking/Engine.h"
#include "reading/Recording.h"
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

/// Whole pixels of the source that scale to whole pixels of the output, along one axis.
struct Cut {
    int from = 0; // Source pixels.
    int to = 0;
    int scaled = 0;  // Output pixels that the cut becomes.
    int skipped = 0; // Of them, before the frame begins.
};

/// An even output position close to that of an even source position; nothing when there is none within the precision.
std::optional<int> wholePosition(double start, double size, int source) {
    const double position = (source - start) / size;
    const int whole = static_cast<int>(std::lround(position / 2.0)) * 2;
    return std::abs(position - whole) <= kPrecision ? std::optional(whole) : std::nullopt;
}

std::optional<Cut> findCut(double start, double length, int side, int out) {
    const double size = length / out; // Source pixels an output pixel.
    // The kernel looks three samples of the coarser side around; the cut leaves it room unless the source ends.
    const double margin = 8.0 * std::max(size, 1.0);
    std::optional<Cut> cut;
    for (int from = 0; from <= side && !cut; from += 2) {
        const auto skipped = wholePosition(start, size, from);
        if (skipped && (from == 0 || from <= start - margin) && *skipped <= 0) {
            cut = Cut{from, 0, 0, -*skipped};
        }
    }
    for (int to = side; cut && to > cut->from; to -= 2) {
        const auto end = wholePosition(start, size, to);
        if (end && (to == side || to >= start + length + margin) && *end >= out) {
            cut->to = to;
            cut->scaled = *end + cut->skipped;
            return cut;
        }
    }
    return std::nullopt;
}

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
        const auto across = findCut(frame.left, frame.width, kSourceWidth, kOutWidth);
        const auto down = findCut(frame.top, frame.height, kSourceHeight, kOutHeight);
        if (!across || !down || across->scaled > 8192 || down->scaled > 8192) {
            continue; // No such detour for this frame.
        }
        const std::string filters = fmt::format(
            "crop={}:{}:{}:{},scale={}:{}:flags=bicubic+accurate_rnd:in_h_chr_pos=0:in_v_chr_pos=128:out_h_chr_pos=0:"
            "out_v_chr_pos=128,crop={}:{}:{}:{}",
            across->to - across->from, down->to - down->from, across->from, down->from, across->scaled, down->scaled,
            kOutWidth, kOutHeight, across->skipped, down->skipped);
        const auto picture = [&](const std::string& file, const std::string& filter) {
            return ffmpeg(fmt::format("-ss {:.3f} -i '{}' -frames:v 1 {} -pix_fmt yuv420p -f rawvideo -",
                                      times[i] - 0.01, file, filter));
        };
        const std::string expected = picture(source, "-vf " + filters);
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
