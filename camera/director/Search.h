// The cheapest plan over given candidates, by dynamic programming over steps.
#pragma once

#include <functional>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Candidates.h"
#include "camera/director/PlanCost.h"

namespace OrvantaNS::camera {

/// The cheapest plan: of all that rest on candidates while these are alive, keep the rules' rests and moves, and start
/// on any candidate at step 0. Candidate 0 must be alive throughout. `progress` gets the share done, 0 to 1, now and
/// then; what it throws passes through.
///
/// Takes time in proportion to steps times the square of the candidates alive, and memory to steps times candidates.
ORVANTA_CAMERA_EXPORT std::vector<PlanShot> cheapestPlan(const PlanRules& rules,
                                                         const std::vector<Candidate>& candidates,
                                                         const std::function<void(double)>& progress);

} // namespace OrvantaNS::camera
