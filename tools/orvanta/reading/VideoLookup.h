// Where the video of a recording lies.
#pragma once

#include <string>

#include "reading/Recording.h"

namespace OrvantaNS::command {

/// The video to render: `given` when it is not empty; else the one that the recording's header names, relative to the
/// recording's folder; else a file of the recording's name with the ending .mp4, .mkv, .webm or .mov beside it, in that
/// order. Throws `InputError` when there is none.
std::string findVideo(const std::string& given, const std::string& recordingPath, const Recording& recording);

/// The same for those who only name the video: where there is none, a file of the recording's name with .mp4 beside it, and
/// "VIDEO.mp4" for the standard input.
std::string videoNameFor(const std::string& recordingPath, const Recording& recording);

} // namespace OrvantaNS::command
