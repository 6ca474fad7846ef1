// A recording as the judge sees it: what was pressed, typed and changed, in seconds and local pixels.
#pragma once

#include <vector>

#include "OrvantaCameraExport.h"
#include "Params.h"
#include "camera/geometry/RealRect.h"

namespace OrvantaNS::camera {

/// A press of a button inside the recording.
struct JudgedPress {
    double seconds = 0.0;
    double x = 0.0; ///< Local pixels.
    double y = 0.0; ///< Local pixels.
};

/// A place of the text caret, from a moment on.
struct JudgedCaret {
    double seconds = 0.0;
    RealRect rect;
};

/// All that was drawn in one quarter of a second, specks and repaints of most of the screen left out.
struct JudgedChange {
    double seconds = 0.0; ///< The middle of the quarter second.
    std::vector<RealRect> rects;
};

/// A small window for as long as it is in front in one place: a menu, a dialog, a tool.
struct JudgedWindow {
    double from = 0.0;
    double to = 0.0;
    RealRect rect;
};

/// A position of the cursor, from a moment on.
struct JudgedCursor {
    double seconds = 0.0;
    double x = 0.0;
    double y = 0.0;
};

/// One recording, made ready for judging. Seconds are those of the recording's clock; everything is relative to the
/// first recording region.
struct JudgedSession {
    double start = 0.0; ///< Start of the clip.
    double stop = 0.0;  ///< End of the clip.
    RealRect whole;     ///< The first region in its own coordinates.
    std::vector<JudgedPress> presses;
    std::vector<JudgedCaret> carets;
    std::vector<JudgedChange> changes;
    std::vector<JudgedWindow> smallWindows;
    std::vector<JudgedCursor> cursor;
};

/// Reads what the judge needs out of a request. Needs a recording region and a time scale other than 0.
ORVANTA_CAMERA_EXPORT JudgedSession judgedSession(const Params& params);

} // namespace OrvantaNS::camera
