#include "render/PictureScaler.h"

#include <cmath>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

#include "render/Pictures.h"
#include "render/RenderError.h"

namespace OrvantaNS::render {
namespace {

using namespace OrvantaNS::testing;

constexpr double kTau = 2.0 * std::numbers::pi;

class PictureScalerFormatTest : public ::testing::TestWithParam<AVPixelFormat> {
protected:
    int most() const { return (1 << planarLayout(GetParam())->depth) - 1; }

    /// A wave across and a wave down, drawn at the places where the samples of each plane lie.
    int wave(const AVFrame& frame, int plane, double x, double y) const {
        static_cast<void>(frame);
        static_cast<void>(plane);
        const double height = std::sin(kTau * x / kAcross) + std::sin(kTau * y / kDown);
        return static_cast<int>(std::lround((0.5 + 0.2 * height) * most()));
    }

    static constexpr double kAcross = 23.0; // Pixels.
    static constexpr double kDown = 17.0;
};

TEST_P(PictureScalerFormatTest, WholePixelsAtTheirOwnSize_AreCopied) {
    const FramePointer source =
        draw(96, 80, GetParam(), [this](int plane, int x, int y) { return (x * 7 + y * 13 + plane * 31) % most(); });
    const FramePointer target = newPicture(48, 32, GetParam());
    PictureScaler().scale(*source, {16.0, 24.0, 48.0, 32.0}, *target);
    const auto layout = planarLayout(GetParam());
    for (int plane = 0; plane < layout->planes; ++plane) {
        const int left = 16 >> layout->columnShift(plane);
        const int top = 24 >> layout->rowShift(plane);
        for (int y = 0; y < planeHeight(*target, plane); ++y) {
            for (int x = 0; x < planeWidth(*target, plane); ++x) {
                ASSERT_EQ(sampleAt(*target, plane, x, y), sampleAt(*source, plane, left + x, top + y))
                    << "plane " << plane << " at " << x << ", " << y;
            }
        }
    }
}

TEST_P(PictureScalerFormatTest, FractionsOfAPixel_LandWhereTheyBelongInEveryPlane) {
    FramePointer source = newPicture(160, 120, GetParam());
    const AVFrame& form = *source;
    source = draw(160, 120, GetParam(), [this, &form](int plane, int x, int y) {
        return wave(form, plane, columnCentre(form, plane, x), rowCentre(form, plane, y));
    });
    struct Case {
        PictureRegion region;
        int width;
        int height;
    };
    const Case cases[] = {
        {{30.37, 21.81, 80.0, 60.0}, 80, 60},    // Moved by a fraction alone.
        {{31.0, 23.0, 80.0, 60.0}, 80, 60},      // An odd number of pixels: half a sample of reduced chroma.
        {{40.25, 30.75, 60.5, 45.375}, 128, 96}, // Enlarged.
        {{10.1, 9.7, 140.3, 105.225}, 96, 72},   // Reduced.
    };
    for (const Case& each : cases) {
        const FramePointer target = newPicture(each.width, each.height, GetParam());
        PictureScaler().scale(*source, each.region, *target);
        const double sizeX = each.region.width / each.width;
        const double sizeY = each.region.height / each.height;
        double worst = 0.0;
        for (int plane = 0; plane < planarLayout(GetParam())->planes; ++plane) {
            for (int y = 0; y < planeHeight(*target, plane); ++y) {
                for (int x = 0; x < planeWidth(*target, plane); ++x) {
                    const int expected =
                        wave(*target, plane, each.region.left + columnCentre(*target, plane, x) * sizeX,
                             each.region.top + rowCentre(*target, plane, y) * sizeY);
                    worst = std::max(worst,
                                     std::abs(sampleAt(*target, plane, x, y) - expected) / static_cast<double>(most()));
                }
            }
        }
        // The wave climbs 0.2 * 2 pi / 17 = 7.4 % a pixel at most: 0.02 is what a shift of a quarter of a pixel gives. The
        // kernel itself, which is no perfect interpolation, stays below half of that.
        EXPECT_LT(worst, 0.011) << each.region.left << " " << each.region.width;
    }
}

std::string formatName(const ::testing::TestParamInfo<AVPixelFormat>& info) { return av_get_pix_fmt_name(info.param); }

INSTANTIATE_TEST_SUITE_P(Formats, PictureScalerFormatTest,
                         ::testing::Values(AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV444P,
                                           AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV422P10, AV_PIX_FMT_YUV444P10,
                                           AV_PIX_FMT_GBRP, AV_PIX_FMT_GBRP10, AV_PIX_FMT_GRAY8),
                         formatName);

} // namespace
} // namespace OrvantaNS::render
