// One stretch of a recording as the director sees it: seconds from the stretch's start, pixels from its region's corner.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaCameraExport.h"
#include "Params.h"
#include "camera/geometry/RealRect.h"

namespace OrvantaNS::camera {

/// A quarter of a second: a camera that sets off a quarter later is not seen to be late.
inline constexpr double kStepSeconds = 0.25;

/// A press of a button inside the region.
struct ScenePress {
    double seconds = 0.0;
    double release = 0.0; ///< When the button came up; `seconds` when it never did.
    double x = 0.0;       ///< The middle of the pixel pressed.
    double y = 0.0;
    RealRect path; ///< Where the cursor was from press to release.
};

/// The window in front, as long as it stayed in one place. An empty rectangle is no window.
struct SceneWindow {
    double from = 0.0;
    double to = 0.0;
    RealRect rect;
};

/// An area that changed within one step.
struct SceneChange {
    RealRect rect;
    double attention = 1.0; ///< 1, or less for what goes on like clockwork.
};

/// The caret, as long as it stayed in one place.
struct SceneCaret {
    double from = 0.0;
    double to = 0.0;
    RealRect rect;
};

/// The cursor at the end of a step.
struct SceneCursor {
    bool isInside = false; ///< Over the region; without any sample it is nowhere.
    bool isNew = false;    ///< It went more than a trembling hand within the step.
    double x = 0.0;
    double y = 0.0;
};

/// A stretch with one recording region.
struct Scene {
    double width = 0.0;         ///< Pixels of the region.
    double height = 0.0;        ///< Pixels of the region.
    double length = 0.0;        ///< Seconds.
    double step = kStepSeconds; ///< Seconds; longer only in recordings of days.
    std::int32_t steps = 1;
    double lineHeight = 18.0; ///< Pixels: a line of text, as carets and changes show it.
    std::vector<ScenePress> presses;
    std::vector<double> wheels; ///< Seconds of the wheel's steps.
    std::vector<SceneWindow> windows;
    std::vector<SceneCaret> carets;
    std::vector<SceneCursor> cursor;       ///< One for each step; empty without samples.
    std::vector<SceneChange> changes;      ///< Those of one step stand together.
    std::vector<std::uint32_t> changeEnds; ///< For each step, where its changes end in `changes`.

    /// The step that holds a moment, cut to the stretch.
    ORVANTA_CAMERA_EXPORT std::int32_t stepAt(double seconds) const;
};

/// Reads the stretch of ticks [start, stop) with `region` out of a request. `stop` must lie after `start`, the region
/// must not be empty, and the time scale must be above 0. Samples out of order are passed over.
ORVANTA_CAMERA_EXPORT Scene readScene(const Params& params, const Rectangle& region, long long start, long long stop);

} // namespace OrvantaNS::camera
