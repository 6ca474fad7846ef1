#include "camera/director/FrameShape.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace OrvantaNS::camera {

namespace {

// The coarsest common measure of the output's sides that frames are made of, pixels: 16:9 has 16. Where it would be
// coarser, the height is rounded instead.
constexpr double kCoarsestUnit = 40.0;

} // namespace

FrameShape::FrameShape(std::int32_t outputWidth, std::int32_t outputHeight, double regionWidth, double regionHeight,
                       double readable, bool mayOverhang)
    : outputWidth_(outputWidth), outputHeight_(outputHeight), regionWidth_(regionWidth), regionHeight_(regionHeight),
      readable_(readable) {
    const std::int32_t measure = std::gcd(outputWidth, outputHeight);
    unitWidth_ = outputWidth_ / measure;
    unitHeight_ = outputHeight_ / measure;
    if (std::max(unitWidth_, unitHeight_) > kCoarsestUnit) {
        unitWidth_ = 1.0;
        unitHeight_ = 0.0; // rounded from the width
    }
    const double byHeight = regionHeight_ * outputWidth_ / outputHeight_;
    mostHeight_ = mayOverhang ? std::numeric_limits<double>::infinity() : regionHeight_;
    if (!mayOverhang && std::min(regionWidth_, byHeight) < unitWidth_) {
        // A sliver of a region, or of an output: no frame of the exact shape fits, so the nearest whole pixels do.
        unitWidth_ = 1.0;
        unitHeight_ = 0.0;
    }
    if (mayOverhang) {
        widest_ = std::ceil(std::max(regionWidth_, byHeight) / unitWidth_) * unitWidth_;
    } else {
        widest_ = std::max(1.0, std::floor(std::min(regionWidth_, byHeight) / unitWidth_)) * unitWidth_;
    }
    least_ = std::min(std::ceil(outputWidth_ / unitWidth_) * unitWidth_, widest_);
}

double FrameShape::readingWidth() const {
    const double readableWidth = outputWidth_ / readable_;
    return std::min(widest_, std::max(readableWidth, std::sqrt(outputWidth_ * outputHeight_) / readable_));
}

double FrameShape::heightOf(double frameWidth) const {
    return unitHeight_ > 0.0 ? frameWidth / unitWidth_ * unitHeight_
                             : std::clamp(std::floor(frameWidth * outputHeight_ / outputWidth_), 1.0, mostHeight_);
}

double FrameShape::fittingZoom(const RealRect& rect) const {
    return std::min(outputWidth_ / width(rect), outputHeight_ / height(rect));
}

double FrameShape::fittingWidth(const RealRect& rect, double room) const {
    const double needed = room * std::max(width(rect), height(rect) * ratio());
    return std::clamp(std::ceil(needed / unitWidth_) * unitWidth_, least_, widest_);
}

RealRect FrameShape::frame(double centreX, double centreY, double frameWidth) const {
    const double w = std::clamp(std::floor(frameWidth / unitWidth_ + 0.5) * unitWidth_, least_, widest_);
    const double h = heightOf(w);
    const auto place = [](double centre, double size, double bound) {
        return size >= bound ? std::floor((bound - size) / 2.0)
                             : std::clamp(std::floor(centre - size / 2.0 + 0.5), 0.0, bound - size);
    };
    const double left = place(centreX, w, regionWidth_);
    const double top = place(centreY, h, regionHeight_);
    return {left, top, left + w, top + h};
}

bool FrameShape::holdsRegion() const { return widest_ == regionWidth_ && heightOf(widest_) == regionHeight_; }

} // namespace OrvantaNS::camera
