// Why a shot stands where it does, in words and figures.
#pragma once

#include <vector>

#include "OrvantaDirector.h"
#include "camera/director/Candidates.h"
#include "camera/director/PlanCost.h"

namespace OrvantaNS::camera {

/// What shot `index` of a plan was made for, what it costs and what the best other candidate would. Rectangles are in
/// region pixels; the keyframe is left to the caller.
DirectorShot reasonedShot(const PlanRules& rules, const std::vector<Evidence>& evidence,
                          const std::vector<Candidate>& candidates, const std::vector<PlanShot>& shots,
                          std::size_t index);

} // namespace OrvantaNS::camera
