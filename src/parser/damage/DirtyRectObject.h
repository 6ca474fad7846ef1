// One area of the screen that goes on changing, followed from frame to frame.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaRecords.h"

namespace OrvantaNS {

/// One cluster of touching dirty rectangles at a single moment.
struct DR_OBJECT_FRAME {
    std::vector<std::uint32_t> dirtyRects; ///< Indices into the request's `dirtyRects`.
    Rectangle rect;                        ///< The cluster's extent, screen pixels.
    bool matched = false;                  ///< An active object has taken this frame.
};

/// One changing area, in screen pixels and ticks.
struct DR_OBJECT {
    std::vector<OV_TIME_RECT> frames; ///< Its distinct rectangles in order, each with the last time it was seen.
    long long start = 0;              ///< When the object was first seen.
    long long stop = 0;               ///< When it was last seen.
    Rectangle bounds;                 ///< Bounding union of all `frames`.
    bool isInOrder = false;           ///< Every sighting is known to be no earlier than the one before.
};

} // namespace OrvantaNS
