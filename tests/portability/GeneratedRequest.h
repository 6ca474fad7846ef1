// The generated requests by which builds are compared: every clock meets every shape.
#pragma once

#include <cstdint>

#include "GeneratedRecording.h"

namespace OrvantaNS::testing {

/// The plan of a seed's session. A prime number of clocks, so that each meets every shape.
inline SessionPlan planOfSeed(std::uint64_t seed) {
    static constexpr double kScales[] = {1000.0, 100.0, 600.0, 10000000.0, 59.94, 1.0, 90000.0};
    SessionPlan plan;
    plan.seconds = 20.0 + static_cast<double>(seed % 5) * 10.0;
    plan.timeScale = kScales[seed % 7];
    if (seed % 3 == 1) {
        plan.targetWidth = 270;
        plan.targetHeight = 480;
    } else if (seed % 3 == 2) {
        plan.width = 2560;
        plan.height = 1440;
        plan.targetWidth = 1280;
        plan.targetHeight = 720;
    }
    return plan;
}

inline Params generatedRequest(std::uint64_t seed) {
    Params params = generatedRecording(seed, planOfSeed(seed));
    params.setWindowsFlag(seed % 11 == 0);
    return params;
}

} // namespace OrvantaNS::testing
