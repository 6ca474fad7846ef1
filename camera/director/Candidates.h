// The frames among which the search chooses.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Evidence.h"

namespace OrvantaNS::camera {

/// A frame that the camera may rest on during a stretch of steps.
struct Candidate {
    RealRect rect;
    std::int32_t from = 0; ///< First step.
    std::int32_t to = 0;   ///< One past the last step.
};

/// Frames that may be worth resting on, each while it may be; never empty. The first ones are the largest frames, alive
/// throughout. `reachSeconds` is how long presses before and after one may bind a frame that holds it.
ORVANTA_CAMERA_EXPORT std::vector<Candidate> findCandidates(const Scene& scene, const FrameShape& shape,
                                                            const std::vector<Evidence>& evidence, double reachSeconds);

} // namespace OrvantaNS::camera
