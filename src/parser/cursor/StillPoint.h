// When the cursor counts as being in the same place.
#pragma once

#include <cstdint>

#include "OrvantaRecords.h"

namespace OrvantaNS {

/// Tremor of a resting hand, pixels: two points at most this far apart on each axis are the same place.
inline constexpr std::int32_t kStillPixels = 4;

/// True when the two points differ by more than the tremor on either axis.
inline bool isElsewhere(const OV_MOUSE_LOCATION& a, const OV_MOUSE_LOCATION& b) {
    const auto differ = [](std::int64_t p, std::int64_t q) { return p - q > kStillPixels || q - p > kStillPixels; };
    return differ(a.x, b.x) || differ(a.y, b.y);
}

} // namespace OrvantaNS
