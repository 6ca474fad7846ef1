#include "render/FrameFill.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <fmt/format.h>

extern "C" {
#include <libavutil/parseutils.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

// The blurred picture is reduced to this many rows or columns on its shorter side and enlarged again: nothing of a letter
// is left, but where the light and the dark parts are can still be seen.
constexpr int kBlurSamples = 18;
constexpr int kBlurPasses = 2; // Of a box of three samples: hides the grid of the reduced picture.

int reducedSide(int side, int shorter) { return std::max(4, (side * kBlurSamples / shorter + 1) / 2 * 2); }

template <typename Sample> void boxBlur(Sample* samples, std::size_t step, int count) {
    Sample before = samples[0];
    for (int i = 0; i < count; ++i) {
        Sample& sample = samples[static_cast<std::size_t>(i) * step];
        const Sample after = i + 1 < count ? samples[static_cast<std::size_t>(i + 1) * step] : sample;
        const Sample here = sample;
        sample = static_cast<Sample>((before + 2 * here + after + 2) / 4);
        before = here;
    }
}

template <typename Sample> void blurPlane(std::uint8_t* data, int lineSize, int width, int height) {
    const std::size_t stride = static_cast<std::size_t>(lineSize) / sizeof(Sample);
    auto* samples = reinterpret_cast<Sample*>(data);
    for (int pass = 0; pass < kBlurPasses; ++pass) {
        for (int y = 0; y < height; ++y) {
            boxBlur(samples + static_cast<std::size_t>(y) * stride, 1, width);
        }
        for (int x = 0; x < width; ++x) {
            boxBlur(samples + x, stride, height);
        }
    }
}

int planeSide(int side, int shift) { return (side + (1 << shift) - 1) >> shift; }

void blurPicture(AVFrame& picture, const PixelLayout& layout) {
    for (int i = 0; i < layout.planes; ++i) {
        const int plane = layout.planeOf[static_cast<std::size_t>(i)];
        const int width = planeSide(picture.width, layout.columnShift(i));
        const int height = planeSide(picture.height, layout.rowShift(i));
        if (layout.wide()) {
            blurPlane<std::uint16_t>(picture.data[plane], picture.linesize[plane], width, height);
        } else {
            blurPlane<std::uint8_t>(picture.data[plane], picture.linesize[plane], width, height);
        }
    }
}

/// How much of each sample of a row or column lies within [from, to), in 1/256.
std::vector<int> coverage(int first, int count, int shift, double from, double to) {
    std::vector<int> covered(static_cast<std::size_t>(count));
    const double size = 1 << shift;
    for (int i = 0; i < count; ++i) {
        const double start = first + i * size;
        const double part = std::min(to, start + size) - std::max(from, start);
        covered[static_cast<std::size_t>(i)] = static_cast<int>(std::lround(std::clamp(part / size, 0.0, 1.0) * 256.0));
    }
    return covered;
}

template <typename Sample>
void mixRow(const std::uint8_t* from, std::uint8_t* to, const std::vector<int>& columns, int row) {
    const auto* above = reinterpret_cast<const Sample*>(from);
    auto* below = reinterpret_cast<Sample*>(to);
    for (std::size_t x = 0; x < columns.size(); ++x) {
        const int share = columns[x] * row; // In 1/65536.
        const auto mixed =
            static_cast<std::int64_t>(above[x]) * share + static_cast<std::int64_t>(below[x]) * (65536 - share) + 32768;
        below[x] = static_cast<Sample>(mixed >> 16);
    }
}

} // namespace

FillChoice parseFill(std::string_view text) {
    FillChoice choice;
    if (text == "blur") {
        return choice;
    }
    std::array<std::uint8_t, 4> rgba{};
    const std::string name(text);
    // "random" is a colour to FFmpeg; the same call must give the same video.
    if (name.empty() || name == "random" || name == "bikeshed" ||
        av_parse_color(rgba.data(), name.c_str(), -1, nullptr) < 0) {
        throw SettingError(fmt::format("--fill {}: expected blur, a colour's name such as black, or #RRGGBB", text));
    }
    choice.blur = false;
    choice.colour = {rgba[0], rgba[1], rgba[2]};
    return choice;
}

void FrameFill::paint(const AVFrame& source, const PictureRegion& visible, AVFrame& target) {
    if (choice_.blur) {
        paintBlur(source, visible, target);
    } else {
        paintColour(target);
    }
}

void FrameFill::paintColour(AVFrame& target) {
    if (plain_ == nullptr) {
        constexpr int kSwatch = 64; // Pixels: any size will do.
        const FramePointer swatch = newPicture(kSwatch, kSwatch, AV_PIX_FMT_GBRP);
        const std::array<std::uint8_t, 3> planes{choice_.colour[1], choice_.colour[2], choice_.colour[0]};
        for (std::size_t plane = 0; plane < planes.size(); ++plane) {
            std::memset(swatch->data[plane], planes[plane],
                        static_cast<std::size_t>(swatch->linesize[plane]) * static_cast<std::size_t>(kSwatch));
        }
        plain_ = newPicture(target.width, target.height, static_cast<AVPixelFormat>(target.format));
        checkAv(av_frame_copy_props(plain_.get(), &target), "the fill cannot be painted");
        reduce_.scale(*swatch, {0.0, 0.0, kSwatch, kSwatch}, *plain_);
    }
    checkAv(av_frame_copy(&target, plain_.get()), "the fill cannot be painted");
}

void FrameFill::paintBlur(const AVFrame& source, const PictureRegion& visible, AVFrame& target) {
    // As much of the visible part as has the target's shape, about its centre, so that it covers all.
    PictureRegion part = visible;
    const double shape = static_cast<double>(target.width) / target.height;
    if (part.width > part.height * shape) {
        part.left += (part.width - part.height * shape) / 2.0;
        part.width = part.height * shape;
    } else {
        part.top += (part.height - part.width / shape) / 2.0;
        part.height = part.width / shape;
    }
    const int shorter = std::min(target.width, target.height);
    const auto format = static_cast<AVPixelFormat>(target.format);
    const FramePointer reduced =
        newPicture(reducedSide(target.width, shorter), reducedSide(target.height, shorter), format);
    checkAv(av_frame_copy_props(reduced.get(), &target), "the fill cannot be painted");
    reduce_.scale(source, part, *reduced);
    blurPicture(*reduced, *planarLayout(format));
    enlarge_.scale(*reduced, {0.0, 0.0, static_cast<double>(reduced->width), static_cast<double>(reduced->height)},
                   target);
}

void layOver(const AVFrame& picture, int column, int row, const Placement& placement, AVFrame& target) {
    const PixelLayout layout = *planarLayout(static_cast<AVPixelFormat>(target.format));
    const int bytes = layout.wide() ? 2 : 1;
    for (int i = 0; i < layout.planes; ++i) {
        const int plane = layout.planeOf[static_cast<std::size_t>(i)];
        const int columnShift = layout.columnShift(i);
        const int rowShift = layout.rowShift(i);
        const auto columns = coverage(column, planeSide(picture.width, columnShift), columnShift, placement.left,
                                      placement.left + placement.width);
        const auto rows = coverage(row, planeSide(picture.height, rowShift), rowShift, placement.top,
                                   placement.top + placement.height);
        for (std::size_t y = 0; y < rows.size(); ++y) {
            const std::uint8_t* from = picture.data[plane] + static_cast<std::ptrdiff_t>(y) * picture.linesize[plane];
            std::uint8_t* to = target.data[plane] +
                               (static_cast<std::ptrdiff_t>(y) + (row >> rowShift)) * target.linesize[plane] +
                               static_cast<std::ptrdiff_t>(column >> columnShift) * bytes;
            if (layout.wide()) {
                mixRow<std::uint16_t>(from, to, columns, rows[y]);
            } else {
                mixRow<std::uint8_t>(from, to, columns, rows[y]);
            }
        }
    }
}

} // namespace OrvantaNS::render
