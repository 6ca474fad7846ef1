// When a cluster of this moment is the changing area of an earlier one.
#pragma once

#include <cstdint>

#include "frame/Geometry.h"

namespace OrvantaNS {

/// Two sizes are alike when each is at most a tenth and this many pixels above the other.
inline constexpr std::int64_t kSizeSlackPixels = 8;

inline bool isSizeWithinReach(std::int32_t size, std::int32_t other) {
    return std::int64_t{size} - kSizeSlackPixels <= std::int64_t{other} * 11 / 10;
}

/// True when the two share a pixel and are about the same size on both axes.
inline bool isSimilar(const Rectangle& seen, const Rectangle& fresh) {
    return overlaps(seen, fresh) && isSizeWithinReach(width(seen), width(fresh)) &&
           isSizeWithinReach(width(fresh), width(seen)) && isSizeWithinReach(height(seen), height(fresh)) &&
           isSizeWithinReach(height(fresh), height(seen));
}

} // namespace OrvantaNS
