// The figures of a camera path that need no moments: presses, readable share, moves, travel.
#pragma once

#include <cstddef>
#include <optional>

#include "OrvantaCameraExport.h"
#include "camera/score/JudgedPath.h"
#include "camera/score/Session.h"

namespace OrvantaNS::camera {

/// What can be said of a path from the recording alone. Shares are 0 to 1; nothing where there is nothing to judge.
struct PathFigures {
    std::size_t presses = 0;             ///< Presses inside the recording.
    std::optional<double> inside;        ///< Share of the presses inside the frame.
    std::optional<double> atRest;        ///< Share of the presses inside the frame while the camera rests.
    std::optional<double> withRoom;      ///< Share inside with 24 output pixels to every edge that is not the screen's.
    std::optional<double> pressesRead;   ///< Share of the presses inside a frame with a zoom of 0.75 or more.
    std::optional<double> typingRead;    ///< The same for the places of the caret.
    std::optional<double> changesRead;   ///< Share of what was drawn that such a frame shows.
    std::optional<double> windowsRead;   ///< Share of the first 8 s of small windows for which such a frame holds them.
    std::optional<double> readableShare; ///< Mean of those of the four that there are.
    std::size_t moves = 0;               ///< Keyframes.
    double movesAMinute = 0.0;
    double travelAMinute = 0.0; ///< Way of the frame's centre, widths of the recording.
};

/// Judges a path by the recording.
ORVANTA_CAMERA_EXPORT PathFigures judgePath(const JudgedSession& session, const JudgedPath& path, double outputWidth,
                                            double outputHeight);

} // namespace OrvantaNS::camera
