// Where a camera path stands at any moment, as the judge sees it.
#pragma once

#include <cstddef>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/geometry/RealRect.h"

namespace OrvantaNS::camera {

/// Text of a usual screen is readable from this zoom on, output pixels per recording pixel.
inline constexpr double kReadingZoom = 0.75;

/// A keyframe of a path that is judged: from `seconds` on the camera moves to `frame`.
struct JudgedKeyframe {
    double seconds = 0.0; ///< Seconds of the recording.
    RealRect frame;       ///< Local pixels: (0, 0) is the top left of the first recording region.
};

/// A camera path under judgement: the whole recording before the first keyframe, and after each keyframe an eased move
/// (3k^2 - 2k^3) of `fadeSeconds`. A keyframe that comes during a move starts from where the camera is.
class ORVANTA_CAMERA_EXPORT JudgedPath {
public:
    /// `keyframes` sorted by time; `whole` is the recording; `outputWidth` and `outputHeight` are in pixels.
    JudgedPath(std::vector<JudgedKeyframe> keyframes, const RealRect& whole, double outputWidth, double outputHeight,
               double fadeSeconds);

    /// The frame at a moment.
    RealRect at(double seconds) const;
    /// True strictly between a keyframe and the end of its move.
    bool isMoving(double seconds) const;
    /// Output pixels per recording pixel of a frame, in the dimension that has fewer.
    double zoom(const RealRect& frame) const;

    const std::vector<JudgedKeyframe>& keyframes() const { return keyframes_; }
    /// Where the camera is when the move of keyframe `index` begins.
    const RealRect& departure(std::size_t index) const { return departures_[index]; }

private:
    RealRect within(double seconds, std::size_t index) const;
    /// Number of keyframes at or before the moment.
    std::size_t reached(double seconds) const;

    std::vector<JudgedKeyframe> keyframes_;
    std::vector<RealRect> departures_;
    RealRect whole_;
    double outputWidth_;
    double outputHeight_;
    double fade_;
};

} // namespace OrvantaNS::camera
