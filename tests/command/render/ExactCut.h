// The `ffmpeg` program's filters cut at whole pixels; how they reach a frame that lies between them all the same.
//
// A rectangle of whole pixels around the frame is looked for that scales to whole pixels of the output as well: cut there,
// scaled, and cut again, the picture stands where the frame stands.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include <fmt/format.h>

#include "CameraPath.h"

namespace OrvantaNS::testing {

/// Whole pixels of the source that scale to whole pixels of the output, along one axis.
struct Cut {
    int from = 0; // Source pixels.
    int to = 0;
    int scaled = 0;  // Output pixels that the cut becomes.
    int skipped = 0; // Of them, before the frame begins.
};

/// An even output position within `precision` output pixels of that of an even source position; nothing when there is none.
inline std::optional<int> wholePosition(double start, double size, int source, double precision) {
    const double position = (source - start) / size;
    const int whole = static_cast<int>(std::lround(position / 2.0)) * 2;
    return std::abs(position - whole) <= precision ? std::optional(whole) : std::nullopt;
}

/// The cut for a frame's `start` and `length` along an axis with `side` pixels of the source and `out` of the output.
inline std::optional<Cut> findCut(double start, double length, int side, int out, double precision) {
    constexpr int kMostScaled = 8192; // Pixels: what a filter handles in reasonable time.
    const double size = length / out; // Source pixels an output pixel.
    // The kernel looks three samples of the coarser side around; the cut leaves it room unless the source ends.
    const double margin = 8.0 * std::max(size, 1.0);
    std::optional<Cut> cut;
    for (int from = 0; from <= side && !cut; from += 2) {
        const auto skipped = wholePosition(start, size, from, precision);
        if (skipped && (from == 0 || from <= start - margin) && *skipped <= 0) {
            cut = Cut{from, 0, 0, -*skipped};
        }
    }
    for (int to = side; cut && to > cut->from; to -= 2) {
        const auto end = wholePosition(start, size, to, precision);
        if (end && (to == side || to >= start + length + margin) && *end >= out) {
            cut->to = to;
            cut->scaled = *end + cut->skipped;
            return cut->scaled <= kMostScaled ? cut : std::nullopt;
        }
    }
    return std::nullopt;
}

struct PictureSize {
    int width = 0;
    int height = 0;
};

/// The filters that show `frame` of a source, `precision` output pixels off at most; nothing when there is no such detour.
inline std::optional<std::string> exactCutFilters(const CameraFrame& frame, PictureSize source, PictureSize out,
                                                  double precision) {
    const auto across = findCut(frame.left, frame.width, source.width, out.width, precision);
    const auto down = findCut(frame.top, frame.height, source.height, out.height, precision);
    if (!across || !down) {
        return std::nullopt;
    }
    return fmt::format("crop={}:{}:{}:{},scale={}:{}:flags=bicubic+accurate_rnd:in_h_chr_pos=0:in_v_chr_pos=128:"
                       "out_h_chr_pos=0:out_v_chr_pos=128,crop={}:{}:{}:{}",
                       across->to - across->from, down->to - down->from, across->from, down->from, across->scaled,
                       down->scaled, out.width, out.height, across->skipped, down->skipped);
}

/// The filters that show any frame, one that reaches beyond the source included (with black there), a sixteenth of a source
/// pixel off at most and a little softened: enlarged eight times, and cut to the nearest pixel of that.
inline std::string enlargedCutFilters(const CameraFrame& frame, PictureSize out) {
    constexpr int kMargin = 1200; // Pixels around the source.
    constexpr double kEnlarged = 8;
    const int left = static_cast<int>(std::floor(frame.left));
    const int top = static_cast<int>(std::floor(frame.top));
    const int width = static_cast<int>(std::ceil(frame.left + frame.width)) - left;
    const int height = static_cast<int>(std::ceil(frame.top + frame.height)) - top;
    return fmt::format("format=yuv444p,pad=iw+{}:ih+{}:{}:{},crop={}:{}:{}:{},scale=iw*8:ih*8:flags=bicubic,"
                       "crop={:.0f}:{:.0f}:{:.0f}:{:.0f},scale={}:{}:flags=bicubic",
                       2 * kMargin, 2 * kMargin, kMargin, kMargin, width, height, left + kMargin, top + kMargin,
                       frame.width * kEnlarged, frame.height * kEnlarged, (frame.left - left) * kEnlarged,
                       (frame.top - top) * kEnlarged, out.width, out.height);
}

} // namespace OrvantaNS::testing
