// Named moments: what a viewer must see, and when; and how much of it a path shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/score/JudgedPath.h"

namespace OrvantaNS::camera {

/// What kind of sight a moment asks for.
enum class MomentView : std::uint8_t {
    Close,  ///< Text that is read or typed, or something small: it should be large in the picture.
    Window, ///< A whole window, dialog, menu or page is the subject.
    Wide,   ///< Two places far apart, or the whole screen.
};

/// One moment that a viewer must see.
struct Moment {
    double from = 0.0; ///< Seconds of the recording.
    double to = 0.0;   ///< Seconds, after `from`.
    RealRect rect;     ///< Local pixels; not empty.
    MomentView view = MomentView::Close;
    std::string what; ///< What happens, in words.
};

/// How well a path shows one moment, as shares of the moment's time.
struct MomentScore {
    double seen = 0.0;      ///< 95% or more of the rectangle is inside the frame.
    double read = 0.0;      ///< Seen at a zoom of 0.75, or at 95% of the largest zoom that holds the rectangle.
    bool isHoldable = true; ///< A frame of the output's shape inside the recording can hold 95% of the rectangle.
};

/// The zoom at which a rectangle counts as read, output pixels per recording pixel.
ORVANTA_CAMERA_EXPORT double readingZoom(const RealRect& rect, double outputWidth, double outputHeight);

/// Judges each moment at the middle of each tenth of a second or so of it.
ORVANTA_CAMERA_EXPORT std::vector<MomentScore> judgeMoments(const JudgedPath& path, const std::vector<Moment>& moments,
                                                            const RealRect& whole, double outputWidth,
                                                            double outputHeight);

} // namespace OrvantaNS::camera
