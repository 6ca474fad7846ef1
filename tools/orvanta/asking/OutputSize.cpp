#include "asking/OutputSize.h"

#include <algorithm>
#include <cmath>

#include "asking/OptionError.h"
#include "frame/Geometry.h"

namespace OrvantaNS::command {

namespace {

constexpr std::int32_t kLeastEven = 2;       // Pixels.
constexpr std::int32_t kLeastPlanned = 64;   // Pixels: the engines want no smaller frame.
constexpr std::int32_t kMostPlanned = 65536; // Pixels: more than any recording has, and far from overflow.

std::int32_t boundedEvenBelow(double side) {
    const double bounded = std::clamp(side, static_cast<double>(kLeastEven), static_cast<double>(kMostPlanned));
    return static_cast<std::int32_t>(std::floor(bounded / 2.0 + 1e-9)) * 2;
}

std::int32_t wholeNear(double side) {
    return static_cast<std::int32_t>(
        std::lround(std::clamp(side, static_cast<double>(kLeastPlanned), static_cast<double>(kMostPlanned))));
}

} // namespace

FrameSize outputSize(const std::optional<SizeOption>& option, const FrameSize& video) {
    if (!option) {
        return {boundedEvenBelow(video.width), boundedEvenBelow(video.height)};
    }
    if (option->kind == SizeOption::Kind::Pixels) {
        return option->pixels;
    }
    if (option->kind == SizeOption::Kind::Scale) {
        return {boundedEvenBelow(video.width * option->scale), boundedEvenBelow(video.height * option->scale)};
    }
    const double aspect = option->aspectWidth / option->aspectHeight;
    const double fittedWidth = std::min(static_cast<double>(video.width), video.height * aspect);
    return {boundedEvenBelow(fittedWidth), boundedEvenBelow(fittedWidth / aspect)};
}

FrameSize previewSize(const FrameSize& output) {
    constexpr double kShare = 4.0;
    return {boundedEvenBelow(output.width / kShare), boundedEvenBelow(output.height / kShare)};
}

std::optional<FrameSize> plannedSize(const FrameSize& output, double maxZoom, const FrameSize& video,
                                     const Rectangle& region, EngineChoice engine) {
    const double regionWidth = width(region);
    const double regionHeight = height(region);
    if (regionWidth <= 0.0 || regionHeight <= 0.0) {
        throw OptionError("the recording's first region is empty, so there is nothing that a picture could show");
    }
    double plannedWidth = output.width / maxZoom * regionWidth / video.width;
    double plannedHeight = output.height / maxZoom * regionHeight / video.height;
    const double growth = std::max({1.0, kLeastPlanned / plannedWidth, kLeastPlanned / plannedHeight});
    plannedWidth *= growth;
    plannedHeight *= growth;
    const FrameSize planned{wholeNear(plannedWidth), wholeNear(plannedHeight)};
    const bool narrower = planned.width < regionWidth;
    const bool lower = planned.height < regionHeight;
    if (engine == EngineChoice::Voting ? !(narrower && lower) : !(narrower || lower)) {
        return std::nullopt;
    }
    return planned;
}

} // namespace OrvantaNS::command
