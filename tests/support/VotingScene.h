// A recording whose ballot is easy to work out by hand, for the tests of the voting engine.
#pragma once

#include "OrvantaVotingAlgorithm.h"

namespace OrvantaNS::testing {

/// 1024 by 1024 pixels, target 256 by 256, 100 ticks a second, fade 100 ticks. Its ballot: tight targets of 256 at 0,
/// 256, 512 and 768 on each axis (indices 0 to 15), middle targets of 640 at 0, 192 and 384 (16 to 24), the whole (25).
inline Params squareRecording() {
    Params params;
    params.setTargetWidth(256).setTargetHeight(256).setTimeScale(100.0).setFadeDuration(100);
    params.recordingRegions().push_back({0, {0, 1024, 0, 1024}});
    return params;
}

/// Adds a press of the first button, and the cursor's location at that tick.
inline void addClick(Params& params, long long tick, std::int32_t x, std::int32_t y) {
    params.cursorLocations().push_back({tick, x, y});
    params.cursorActions().push_back({tick, 0});
}

inline void addWindow(Params& params, long long tick, Rectangle rect) { params.foreWindows().push_back({tick, rect}); }

} // namespace OrvantaNS::testing
