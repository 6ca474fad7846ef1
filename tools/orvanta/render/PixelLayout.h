// How a picture's planes are laid out, in zimg's words.
#pragma once

#include <array>
#include <optional>

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixfmt.h>
}
#include <zimg.h>

namespace OrvantaNS::render {

/// A pixel format whose samples stand in planes of their own, 8 to 16 bits each.
struct PixelLayout {
    zimg_color_family_e family = ZIMG_COLOR_YUV;
    int planes = 3;                         ///< 1 for grey.
    std::array<int, 3> planeOf{};           ///< Where Y, U, V or R, G, B stand among a frame's planes.
    int depth = 8;                          ///< Bits a sample.
    int subsampleWidth = 0;                 ///< Binary logarithm: 1 when a chroma sample spans two columns.
    int subsampleHeight = 0;                ///< Binary logarithm.
    bool wide() const { return depth > 8; } ///< Samples take two bytes.

    int columnShift(int plane) const { return family == ZIMG_COLOR_YUV && plane > 0 ? subsampleWidth : 0; }
    int rowShift(int plane) const { return family == ZIMG_COLOR_YUV && plane > 0 ? subsampleHeight : 0; }
};

/// The layout of a format; nothing when its samples do not stand in planes (or are not the machine's integers). Alpha is
/// left out: a recording has none to show.
std::optional<PixelLayout> planarLayout(AVPixelFormat format);

/// The planar format that holds what `format` holds, without loss where there is one.
AVPixelFormat nearestPlanar(AVPixelFormat format);

/// zimg's description of a picture: size, layout, range, matrix and siting of the chroma. What a frame does not tell is
/// what players take it for: limited range, chroma sited to the left, and the matrix of its size.
zimg_image_format describePicture(const AVFrame& frame, const PixelLayout& layout);

/// True when samples span all values: by its tag, or by a format that has the range in its name.
bool isFullRange(const AVFrame& frame);

} // namespace OrvantaNS::render
