// Pictures that tests draw, and samples that they look at.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "render/AvHandles.h"
#include "render/PixelLayout.h"

namespace OrvantaNS::testing {

/// Columns and rows of one plane (0: Y or R, 1: U or G, 2: V or B).
inline int planeWidth(const AVFrame& frame, int plane) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    return (frame.width + (1 << layout->columnShift(plane)) - 1) >> layout->columnShift(plane);
}
inline int planeHeight(const AVFrame& frame, int plane) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    return (frame.height + (1 << layout->rowShift(plane)) - 1) >> layout->rowShift(plane);
}

inline int sampleAt(const AVFrame& frame, int plane, int x, int y) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    const int stored = layout->planeOf[static_cast<std::size_t>(plane)];
    const std::uint8_t* row = frame.data[stored] + static_cast<std::ptrdiff_t>(y) * frame.linesize[stored];
    return layout->wide() ? reinterpret_cast<const std::uint16_t*>(row)[x] : row[x];
}

inline void setSample(AVFrame& frame, int plane, int x, int y, int value) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    const int stored = layout->planeOf[static_cast<std::size_t>(plane)];
    std::uint8_t* row = frame.data[stored] + static_cast<std::ptrdiff_t>(y) * frame.linesize[stored];
    if (layout->wide()) {
        reinterpret_cast<std::uint16_t*>(row)[x] = static_cast<std::uint16_t>(value);
    } else {
        row[x] = static_cast<std::uint8_t>(value);
    }
}

/// A picture whose samples are what `value` says for plane, column and row of that plane.
inline render::FramePointer draw(int width, int height, AVPixelFormat format,
                                 const std::function<int(int, int, int)>& value) {
    render::FramePointer frame = render::newPicture(width, height, format);
    for (int plane = 0; plane < render::planarLayout(format)->planes; ++plane) {
        for (int y = 0; y < planeHeight(*frame, plane); ++y) {
            for (int x = 0; x < planeWidth(*frame, plane); ++x) {
                setSample(*frame, plane, x, y, value(plane, x, y));
            }
        }
    }
    return frame;
}

/// Where the samples of a plane lie in the picture's own pixels: the centre of the first pixel is 0.5. Chroma of a
/// horizontally reduced plane is sited to the left: on the centre of the left one of its pixels.
inline double columnCentre(const AVFrame& frame, int plane, int x) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    return (x << layout->columnShift(plane)) + 0.5;
}
/// Rows of a vertically reduced plane lie midway between two rows of pixels.
inline double rowCentre(const AVFrame& frame, int plane, int y) {
    const auto layout = render::planarLayout(static_cast<AVPixelFormat>(frame.format));
    const int shift = layout->rowShift(plane);
    return (y + 0.5) * (1 << shift);
}

} // namespace OrvantaNS::testing
