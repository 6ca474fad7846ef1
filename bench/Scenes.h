// The scenes whose cost docs/performance.md tells: what makes the value engine work hardest, and what people record.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Params.h"

namespace OrvantaNS::bench {

/// A named request. The name's part ahead of the slash is the curve that the scene is a point of, the part behind it the
/// size that grows along the curve.
struct Scene {
    std::string name;
    std::function<Params()> make;
};

/// Twenty seconds of a cursor that sweeps over `areas` changing areas, each of which overlaps the others.
Params overlappingAreas(int areas);

/// A request whose clip and samples follow upon themselves so many `times`; the recorded regions stay as they are.
Params repeated(const Params& once, int times);

/// A desktop session: the same busy hour again and again.
Params desktopSession(int hours);

/// Ten seconds with something to see, and `count` presses of a button that is never released.
Params pressesWithoutRelease(int count);

/// Ten seconds with `count` clicks at one place, evenly spread.
Params manyClicks(int count);

/// Ten seconds with `count` strokes of the cursor, to and fro between two places, evenly spread.
Params manyStrokes(int count);

/// Ten seconds with `count` changes of the window in front, evenly spread, among ten windows.
Params manyWindows(int count);

/// Ten seconds with `count` windows, evenly spread, no two alike and nearly every two overlapping. Each stands alone.
Params windowsApart(int count);

/// All scenes, cheap ones first within each curve.
std::vector<Scene> allScenes();

} // namespace OrvantaNS::bench
