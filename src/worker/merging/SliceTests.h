// The words in which merging speaks of slices, each said once.
#pragma once

#include <cstdint>

#include "frame/DataStore.h"
#include "frame/Geometry.h"

namespace OrvantaNS {

/// Merged away. Dead slices keep their place in the list, so that slice indices stay valid while merging runs.
constexpr std::int32_t kDeadMergeId = -1;

/// Seconds that a camera position must last beyond the animated move to it, so that the viewer sees it at rest.
constexpr double kRestSeconds = 1.0;

/// Live, and with something to show.
inline bool isTargetSlice(const OV_FOCUS_SLICE& slice) { return !slice.blank && slice.mergeId >= 0; }

/// Shortest time that a camera position may stand, seconds.
inline double keyframeFloor(const OV_DATA_STORE& store) { return store.fadeSeconds + kRestSeconds; }

/// The slice's own length, seconds.
inline double sliceLength(const OV_FOCUS_SLICE& slice) { return slice.stop - slice.start; }

/// Wants a close shot of something that lies in its window.
inline bool isTightInWindow(const SLICE_BREAKDOWN& b) { return b.tight && b.window && b.inWindow; }

/// What matters lies in its window, large or small.
inline bool isWindowed(const SLICE_BREAKDOWN& b) { return b.window && b.inWindow; }

/// The whole recording region changed.
inline bool isFullScreen(const SLICE_BREAKDOWN& b) { return b.noWindow && !isEmpty(b.windowRect); }

/// True when a close shot can show the rectangle: it may be up to a quarter larger than the output frame. The limit is
/// worked out in 64 bits, so that no target overflows it.
inline bool fitsTarget(const OV_DATA_STORE& store, const Rectangle& rect) {
    constexpr std::int64_t numerator = 5;
    constexpr std::int64_t denominator = 4;
    return width(rect) <= numerator * store.targetWidth / denominator &&
           height(rect) <= numerator * store.targetHeight / denominator && area(rect) > 0;
}

/// The first window, unless the second is strictly larger.
inline Rectangle largerWindow(const SLICE_BREAKDOWN& first, const SLICE_BREAKDOWN& next) {
    return area(next.windowRect) > area(first.windowRect) ? next.windowRect : first.windowRect;
}

} // namespace OrvantaNS
