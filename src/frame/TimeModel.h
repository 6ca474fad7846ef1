// The arithmetic between ticks of a recording's clock and seconds.
#pragma once

#include "frame/WrappingArithmetic.h"

namespace OrvantaNS {

/// The scale at which conversions take an exact path, ticks per second: whole seconds and the rest are kept apart, so
/// that the fractions of long recordings stay exact.
constexpr double kExactTimeScale = 10000000.0;

/// Ticks to seconds at `scale` ticks per second.
constexpr double ticksToSeconds(long long ticks, double scale) {
    if (scale == kExactTimeScale) {
        constexpr long long ticksPerSecond = 10000000;
        const long long whole = ticks / ticksPerSecond;
        const long long rest = ticks % ticksPerSecond;
        return static_cast<double>(rest) / kExactTimeScale + static_cast<double>(whole);
    }
    return static_cast<double>(ticks) / scale;
}

/// Seconds to ticks at `scale` ticks per second. Rounds half up for times from 0 on; a negative time is cut toward zero
/// after the half is added.
constexpr long long secondsToTicks(double seconds, double scale) {
    if (scale == kExactTimeScale) {
        constexpr long long ticksPerSecond = 10000000;
        const long long whole = truncateToInt64(seconds);
        const double fraction = seconds - static_cast<double>(whole);
        return wrapAdd(truncateToInt64(fraction * kExactTimeScale + 0.5), wrapMul(whole, ticksPerSecond));
    }
    return truncateToInt64(scale * seconds + 0.5);
}

} // namespace OrvantaNS
