// A slow move must not shake: what is rendered stands where the camera's frame puts it, to a small part of a pixel.
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "render/MediaTools.h"
#include "render/OutputFile.h"
#include "render/VideoRendering.h"
#include "support/Process.h"

namespace OrvantaNS::render {
namespace {

using namespace OrvantaNS::testing;

constexpr int kWidth = 320;  // Of the source, pixels.
constexpr int kHeight = 200; // Pixels.
constexpr int kGrid = 8;     // Pixels from line to line.
constexpr int kOutWidth = 256;
constexpr int kOutHeight = 160;
constexpr int kFrames = 40;

/// Where the lines of a grid of period `period` lie in a row of samples: the phase of that frequency, in samples.
double phaseOf(const std::uint8_t* samples, std::size_t step, int count, double period) {
    std::complex<double> sum;
    for (int i = 0; i < count; ++i) {
        // A window that fades at both ends keeps what is cut off there from mattering.
        const double window = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * (i + 0.5) / count);
        sum += window * samples[static_cast<std::size_t>(i) * step] *
               std::polar(1.0, -2.0 * std::numbers::pi * i / period);
    }
    return -std::arg(sum) / (2.0 * std::numbers::pi) * period;
}

/// The difference of two phases, the short way around.
double moved(double from, double to, double period) { return std::remainder(to - from, period); }

struct Move {
    const char* name;
    PictureRegion first;
    double right; // Source pixels a frame.
    double down;
};

class SteadinessTest : public ::testing::TestWithParam<Move> {};

TEST_P(SteadinessTest, SlowMove_ShiftsAFineGridEvenly) {
    const Move& move = GetParam();
    const TemporaryDirectory directory;
    const std::string video = directory.path("grid.mkv");
    // Lines two pixels wide; grey, so that all of it is in the luma.
    ffmpeg("-f lavfi -i \"color=black:size=320x200:rate=20:duration=2,drawgrid=w=8:h=8:t=2:c=white,format=yuv420p\" "
           "-c:v libx264 -preset ultrafast -qp 0 '" +
           video + "'");
    VideoReader reader(video, 1, [] { return false; });
    RenderJob job;
    const std::string out = directory.path("out.mkv");
    job.form = *mediaFormOf(out);
    job.width = kOutWidth;
    job.height = kOutHeight;
    job.recordedWidth = kWidth;
    job.recordedHeight = kHeight;
    job.threads = 2;
    job.encoding.crf = 0.0; // Without loss.
    job.encoding.preset = "ultrafast";
    job.camera = [&move](double seconds) {
        const double frame = seconds * 20.0;
        return PictureRegion{move.first.left + move.right * frame, move.first.top + move.down * frame, move.first.width,
                             move.first.height};
    };
    OutputFile file(out);
    const RenderOutcome outcome = renderVideo(
        reader, job, file, [](const RenderState&) {}, [] { return false; });
    file.publish();
    ASSERT_EQ(outcome.pictures, kFrames);
    ASSERT_EQ(outcome.complaint, "");

    const auto luma = rawVideo(out, "gray", "");
    constexpr std::size_t kSize = std::size_t{kOutWidth} * kOutHeight;
    ASSERT_EQ(luma.size(), kSize * kFrames);
    const double zoom = kOutWidth / move.first.width;
    const double period = kGrid * zoom;
    std::vector<double> across;
    std::vector<double> down;
    for (std::size_t i = 0; i < kFrames; ++i) {
        // A row and a column between lines: sums of all would do as well.
        std::vector<std::uint8_t> row(kOutWidth);
        std::vector<std::uint8_t> column(kOutHeight);
        for (int x = 0; x < kOutWidth; ++x) {
            int sum = 0;
            for (int y = 0; y < kOutHeight; ++y) {
                sum += luma[i * kSize + static_cast<std::size_t>(y * kOutWidth + x)];
            }
            row[static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(sum / kOutHeight);
        }
        for (int y = 0; y < kOutHeight; ++y) {
            int sum = 0;
            for (int x = 0; x < kOutWidth; ++x) {
                sum += luma[i * kSize + static_cast<std::size_t>(y * kOutWidth + x)];
            }
            column[static_cast<std::size_t>(y)] = static_cast<std::uint8_t>(sum / kOutWidth);
        }
        across.push_back(phaseOf(row.data(), 1, kOutWidth, period));
        down.push_back(phaseOf(column.data(), 1, kOutHeight, period));
    }
    constexpr double kEven = 0.05; // Output pixels.
    for (std::size_t i = 1; i < kFrames; ++i) {
        EXPECT_NEAR(moved(across[i - 1], across[i], period), -move.right * zoom, kEven) << move.name << " frame " << i;
        EXPECT_NEAR(moved(down[i - 1], down[i], period), -move.down * zoom, kEven) << move.name << " frame " << i;
    }
}

std::string moveName(const ::testing::TestParamInfo<Move>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Moves, SteadinessTest,
                         ::testing::Values(Move{"pan", {10.3, 20.7, 200.0, 125.0}, 0.37, 0.0},
                                           Move{"slow", {30.0, 12.0, 160.0, 100.0}, 0.05, 0.03},
                                           Move{"diagonal", {12.9, 8.2, 230.0, 143.75}, 0.613, 0.291},
                                           Move{"back", {90.1, 60.4, 210.0, 131.25}, -0.41, -0.77}),
                         moveName);

} // namespace
} // namespace OrvantaNS::render
