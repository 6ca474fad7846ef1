// What a vote is worth: how long each kind of sample votes, with which weight, and how near it lies to a target.
#pragma once

#include <cmath>
#include <cstdint>

#include "frame/Geometry.h"

namespace OrvantaNS {

// A click counts for a short while around it, and each of its votes for less than half of a window's.
inline constexpr double kActionSecondsBefore = 0.5;
inline constexpr double kActionWeight = 8.0;
// A new window stays of interest for longer.
inline constexpr double kWindowSecondsBefore = 0.3333333333333333;
inline constexpr double kWindowSecondsAfter = 3.0;
inline constexpr double kWindowWeight = 20.0;

// The weight of a window change's vote at relative tick k. The quotient is one of integers: the weight is a step, not
// a ramp, and within the casting range, where k stays below `end`, the quotient is 0 and every vote weighs the same.
inline double frontmostWindowWeight(int k, int full, int end) {
    if (k <= full) {
        return kWindowWeight;
    }
    // Where `end` is not above `full`, no range is cast that reaches past `full`.
    // NOLINTNEXTLINE(clang-analyzer-core.DivideZero)
    return static_cast<double>(1 - (k - full) / (end - full)) * kWindowWeight;
}

// Pixels from a target's centre to a sample's middle, on one axis. The centre is cut to a whole pixel, the middle is not.
inline double offCentre(std::int32_t low, std::int32_t high, std::int32_t targetLow, std::int32_t targetHigh) {
    return wrapAdd(low, high) * 0.5 - wrapAdd(targetLow, targetHigh) / 2;
}

// 1.0 at the target's centre, 0.75 at its corners. A target without width or height divides by 0; what comes out then
// is minus infinity or not a number, and never wins.
inline double closeness(const Rectangle& sample, const Rectangle& target) {
    const double dx = offCentre(sample.left, sample.right, target.left, target.right) / width(target);
    const double dy = offCentre(sample.top, sample.bottom, target.top, target.bottom) / height(target);
    return 1.0 - std::fabs((dx * dx + dy * dy) * 0.5);
}

} // namespace OrvantaNS
