// The records that cross the library's boundary: samples of the request and keyframes of the result.
#pragma once

#include <cstdint>

#include "Rectangle.h"

namespace OrvantaNS {

/// One timed rectangle: an input sample (window, dirty rectangle, caret, region) or a keyframe of the result.
struct OV_TIME_RECT {
    long long time = 0; ///< Ticks of the request's clock.
    Rectangle rect;     ///< Valid from `time` on. Screen pixels in a request; local pixels in a keyframe, where
                        ///< (0, 0) is the top left of the first recording region.
};

/// One sample of the cursor's position.
struct OV_MOUSE_LOCATION {
    long long time = 0; ///< Ticks of the request's clock.
    std::int32_t x = 0; ///< Screen pixels.
    std::int32_t y = 0; ///< Screen pixels.
};

/// One event of the cursor's buttons or wheel.
struct OV_MOUSE_ACTION {
    long long time = 0;      ///< Ticks of the request's clock.
    std::int32_t action = 0; ///< 0, 2, 4: press of a button; 1, 3, 5: its release; 6, 7: a wheel step; else ignored.
};

} // namespace OrvantaNS
