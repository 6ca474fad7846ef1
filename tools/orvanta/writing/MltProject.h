// The camera path as a project of the video editors that are built on MLT, and of its program melt.
#pragma once

#include <string>

#include "reading/CameraPlan.h"
#include "writing/PathOutput.h"

namespace OrvantaNS::command {

/// The picture rate of a project unless told.
constexpr PictureRate kMltRate{30, 1};

/// MLT XML that shows what the path shows, from the clip's start to its stop: one producer, `video`, under an affine filter
/// that holds the rectangle of the whole recording in the output picture.
///
/// A key stands at the first and the last picture of the clip, and at every one whose frame is not that of both its
/// neighbours; between keys the rectangle goes evenly. So the easing is in the keys: MLT 7.12 knows three kinds of curves, and
/// none of them takes control points. Values are rounded to 1/1000 output pixel.
///
/// `video` is the video's file, as the project shall name it: relative names count from the project's folder. Beside a frame
/// that overhangs there is black. Throws `OptionError` when the clip has more than ten million pictures, or none.
std::string mltProject(const CameraPlan& plan, const PictureRate& rate, const std::string& video);

/// The name under which a project in `projectFile` (empty or "-": the standard output) finds `video`: relative to the
/// project's folder, and absolute where there is none.
std::string mltVideoName(const std::string& video, const std::string& projectFile);

/// The command line that uses a project, for people. `file` is where it lies.
std::string mltCommandLine(const std::string& file);

} // namespace OrvantaNS::command
