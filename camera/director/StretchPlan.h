// The plan of one stretch: a scene in, shots out.
#pragma once

#include <functional>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Candidates.h"
#include "camera/director/PlanCost.h"

namespace OrvantaNS::camera {

/// What a host may ask of the director, and what the request says of the output.
struct PlanWishes {
    double calm = 1.0;
    double fadeSeconds = 1.0;
    bool arePressesHard = true;
};

/// Gathers evidence and rules of a scene.
ORVANTA_CAMERA_EXPORT PlanRules planRules(const Scene& scene, const FrameShape& shape, const PlanWishes& wishes,
                                          const DirectorWeights& weights, const LossTable& losses);

/// The candidates of a scene.
ORVANTA_CAMERA_EXPORT std::vector<Candidate> candidatesFor(const Scene& scene, const FrameShape& shape,
                                                           const std::vector<Evidence>& evidence, double fadeSeconds);

/// Plans a scene. `progress` gets the share done, 0 to 1; what it throws passes through.
ORVANTA_CAMERA_EXPORT std::vector<PlanShot> planStretch(const PlanRules& rules, const FrameShape& shape,
                                                        const std::vector<Candidate>& candidates,
                                                        const std::function<void(double)>& progress);

} // namespace OrvantaNS::camera
