// The cursor's life: runs of motion, stretches of rest or absence.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "Interval_Type.h"
#include "OrvantaRecords.h"

namespace OrvantaNS {

/// A run of cursor samples that keeps one direction on each axis.
struct MOUSE_STROKE {
    std::vector<OV_MOUSE_LOCATION> points; ///< The samples, screen pixels, in time order.
    /// Smallest and largest x and y over all points ever appended, even points later cut off; inside out at first.
    Rectangle bounds{std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min(),
                     std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()};
    std::uint32_t anchor = 0; ///< Index into `points` of the sample around which the cursor may be lingering.
};

/// A stretch of stillness or absence.
struct MOUSE_IDLE {
    OV_MOUSE_LOCATION location;                ///< Where the cursor rests, screen pixels; unset for an absence.
    Interval_Type<long long> interval{-1, -1}; ///< From when to when, ticks.
};

} // namespace OrvantaNS
