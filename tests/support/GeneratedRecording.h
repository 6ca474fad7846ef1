// Recordings of sessions that nobody had: human-like motion, clicks, windows, menus, drags, wheel runs and rests.
#pragma once

#include <cstdint>

#include "Params.h"

namespace OrvantaNS::testing {

/// What to generate.
struct SessionPlan {
    double seconds = 60.0;     ///< Length of the recording, and of the clip.
    double timeScale = 1000.0; ///< Ticks per second.
    std::int32_t width = 1280; ///< Size of the screen, which is the recording region, pixels.
    std::int32_t height = 800;
    std::int32_t targetWidth = 640; ///< Size of the output frame, pixels.
    std::int32_t targetHeight = 400;
    double dirtyPerSecond = 4.0; ///< Changes of the screen that nobody asked for: carets, clocks, animations.
};

/// The session of a seed, the same on every machine. All streams are sorted by time.
Params generatedRecording(std::uint64_t seed, const SessionPlan& plan = {});

} // namespace OrvantaNS::testing
