// The simple policies that other tools use, to compare a path with.
#pragma once

#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/score/JudgedPath.h"
#include "camera/score/Session.h"

namespace OrvantaNS::camera {

/// Zooms to pixel for pixel at each press, from 0.3 s before it to 2.5 s after it, and out to the whole recording when
/// none follows within another 2.5 s.
ORVANTA_CAMERA_EXPORT std::vector<JudgedKeyframe> clickZoom(const JudgedSession& session, double outputWidth,
                                                            double outputHeight);

/// Zooms to pixel for pixel for two seconds around each time at which the cursor stays in one place for half a second to
/// two and a half, the longest stays first where two are close.
ORVANTA_CAMERA_EXPORT std::vector<JudgedKeyframe> dwellZoom(const JudgedSession& session, double outputWidth,
                                                            double outputHeight);

} // namespace OrvantaNS::camera
