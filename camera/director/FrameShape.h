// The frames that an output can show of a region: whole pixels, the output's shape, inside the region.
#pragma once

#include <cstdint>

#include "OrvantaCameraExport.h"
#include "camera/geometry/RealRect.h"

namespace OrvantaNS::camera {

/// The output frame on one region. Frames come in whole pixels and, where the output's sides have a common measure that
/// is not too coarse, in exactly its shape.
class ORVANTA_CAMERA_EXPORT FrameShape {
public:
    /// Sizes in pixels, all above 0; `readable` is a zoom above 0. With `mayOverhang` frames may be larger than the
    /// region in one dimension, up to the frame that holds the whole region.
    FrameShape(std::int32_t outputWidth, std::int32_t outputHeight, double regionWidth, double regionHeight,
               double readable, bool mayOverhang);

    double outputWidth() const { return outputWidth_; }
    double outputHeight() const { return outputHeight_; }
    double regionWidth() const { return regionWidth_; }
    double regionHeight() const { return regionHeight_; }
    /// Width over height.
    double ratio() const { return outputWidth_ / outputHeight_; }
    /// The zoom from which text counts as readable, output pixels per recording pixel.
    double readable() const { return readable_; }
    /// Width of the frame that shows as much as a line of text needs: the readable frame, but no narrower than a square
    /// of its area, because lines are as long in portrait.
    double readingWidth() const;
    /// Width of the tightest frame: that of the output, or what the region allows.
    double least() const { return least_; }
    /// Width of the largest frame.
    double widest() const { return widest_; }
    double heightOf(double frameWidth) const;
    /// The largest zoom at which a frame holds the rectangle, whatever its place.
    double fittingZoom(const RealRect& rect) const;
    /// Width of the tightest frame that holds a rectangle grown by `room`, 1 for none; the largest when none does.
    double fittingWidth(const RealRect& rect, double room) const;
    /// The frame around a centre, moved into the region. Its width is rounded to the next that the shape knows.
    RealRect frame(double centreX, double centreY, double frameWidth) const;
    /// True when the largest frame is the region itself.
    bool holdsRegion() const;

private:
    double outputWidth_;
    double outputHeight_;
    double regionWidth_;
    double regionHeight_;
    double readable_;
    double unitWidth_;
    double unitHeight_;
    double mostHeight_; ///< Of a frame, pixels.
    double least_;
    double widest_;
};

} // namespace OrvantaNS::camera
