// A scene in which nothing happens, for tests to put something into.
#pragma once

#include <cmath>
#include <cstdint>

#include "camera/director/Scene.h"

namespace OrvantaNS::testing {

/// So many seconds of 1280 by 800 in quarters of a second, with lines of 20 pixels and a last step for the end.
inline camera::Scene emptyScene(double seconds) {
    camera::Scene scene;
    scene.width = 1280;
    scene.height = 800;
    scene.length = seconds;
    scene.steps = static_cast<std::int32_t>(std::ceil(seconds / scene.step)) + 1;
    scene.lineHeight = 20.0;
    scene.changeEnds.assign(static_cast<std::size_t>(scene.steps), 0);
    return scene;
}

} // namespace OrvantaNS::testing
