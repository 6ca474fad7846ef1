// The camera path as a filter script for the program ffmpeg.
#pragma once

#include <string>

#include "reading/CameraPlan.h"

namespace OrvantaNS::command {

/// A filter chain that shows what the path shows, at whatever moments the video's pictures have: `scale` gives the whole
/// recording the size at which the frame is twice the output, `crop` cuts the frame out, and a last `scale` halves it.
/// Sizes and positions are expressions of the time, with the moves in them, so that the script needs no rate. Where a frame
/// overhangs, `pad` puts black beside the recording.
///
/// Sizes are rounded to the pixel of the doubled picture, so that an edge is at most half an output pixel off.
/// `zoompan` would round to whole pixels of the recording and so shake, and a chain of nested conditions would end at some
/// hundred keyframes; here they form a balanced tree.
std::string ffmpegScript(const CameraPlan& plan);

/// The command line that uses a script, for people. `file` is where it lies.
std::string ffmpegCommandLine(const CameraPlan& plan, const std::string& file);

} // namespace OrvantaNS::command
