// What a file is that is no recording.
#pragma once

#include <string>
#include <string_view>

namespace OrvantaNS::command {

/// What a file that begins with `start` seems to be and what to do about it, as a sentence for a message, such as "this is a
/// video (MP4 or MOV); ..."; empty when nothing comes to mind. `start` is the first line, or as much of it as is there.
std::string contentRemark(std::string_view start);

} // namespace OrvantaNS::command
