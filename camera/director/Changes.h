// What was drawn, gathered by steps and places, and told apart from what goes on like clockwork.
#pragma once

#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Scene.h"

namespace OrvantaNS::camera {

/// Joins rectangles that overlap or come closer than `gap` pixels, until none do. More than a few dozen become one.
ORVANTA_CAMERA_EXPORT std::vector<RealRect> clustered(std::vector<RealRect> rects, double gap);

/// Fills the changes and the line height of a scene that has its size, steps, carets and actions already.
void readChanges(const Params& params, const Rectangle& region, long long start, long long stop, Scene& scene);

} // namespace OrvantaNS::camera
