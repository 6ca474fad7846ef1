// What shows where the camera's frame reaches beyond the recording.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "render/PictureScaler.h"

namespace OrvantaNS::render {

/// What --fill may say.
struct FillChoice {
    bool blur = true;                            ///< The picture itself, enlarged and blurred.
    std::array<std::uint8_t, 3> colour{0, 0, 0}; ///< Red, green, blue; when it is not blurred.
};

/// "blur", or a colour: a name such as black, or #RRGGBB. Throws `SettingError`.
FillChoice parseFill(std::string_view text);

/// Paints whole pictures to lie behind the recording. Not for two threads at once.
class FrameFill {
public:
    explicit FrameFill(const FillChoice& choice) : choice_(choice) {}

    /// Fills `target` (with memory, planar). `visible` is the part of `source` that the camera's frame shows.
    /// Throws `RenderError`.
    void paint(const AVFrame& source, const PictureRegion& visible, AVFrame& target);

private:
    void paintColour(AVFrame& target);
    void paintBlur(const AVFrame& source, const PictureRegion& visible, AVFrame& target);

    FillChoice choice_;
    PictureScaler reduce_;
    PictureScaler enlarge_;
    FramePointer plain_; // The colour, once in the target's format.
};

/// A rectangle of the output that the recording covers, output pixels; edges may lie between pixels.
using Placement = PictureRegion;

/// Lays `picture` over `target` with its top left at column `column` and row `row` (multiples of the chroma's
/// subsampling), as far as `placement` covers each sample: samples at its edges are mixed, so that an edge moves smoothly.
/// Both have the same planar format.
void layOver(const AVFrame& picture, int column, int row, const Placement& placement, AVFrame& target);

} // namespace OrvantaNS::render
