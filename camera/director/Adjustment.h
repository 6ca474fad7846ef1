// Each shot's frame on the exact evidence of its own time.
#pragma once

#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/PlanCost.h"

namespace OrvantaNS::camera {

/// Moves and resizes the frame of each shot in turn, in steps that halve, as long as the plan gets cheaper by it. The
/// plan never gets dearer, and its times stay.
ORVANTA_CAMERA_EXPORT void adjustShots(const PlanRules& rules, const FrameShape& shape, std::vector<PlanShot>& shots);

} // namespace OrvantaNS::camera
