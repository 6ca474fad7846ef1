// Where something is done for a while, within what one readable frame holds: what is worth going near for.
#pragma once

#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/FrameShape.h"
#include "camera/director/Scene.h"

namespace OrvantaNS::camera {

/// A stretch of time in which hand, caret and changes stay within one readable frame.
struct Site {
    double from = 0.0; ///< Seconds of its first act.
    double to = 0.0;   ///< Seconds at which its last act ends.
    RealRect rect;     ///< The box around its acts.
};

/// The sites of a scene, one after the other. A press or a caret outside the frame that holds the site so far begins the
/// next one; a change outside is passed over. A site ends where another window comes to the front, at a step of the wheel,
/// and when nothing is done in it for five seconds.
ORVANTA_CAMERA_EXPORT std::vector<Site> findSites(const Scene& scene, const FrameShape& shape);

} // namespace OrvantaNS::camera
