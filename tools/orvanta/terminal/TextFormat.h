// How times, rectangles and names from files look in text for people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Rectangle.h"

namespace OrvantaNS::command {

/// "m:ss.mmm", rounded to the millisecond, with a minus sign before negative times. A time that is not finite, or too
/// large for milliseconds to matter, comes as a plain number of seconds.
std::string formatTime(double seconds);

/// "640x400 at 12, 30"
std::string rectText(const Rectangle& rect);

/// Text from a file as it may stand in a message or on a terminal, cut after `longest` bytes: what would steer a terminal
/// or turn the writing direction (control characters, C1 included, line and bidirectional marks) and bytes that are not
/// UTF-8 stand as \xNN or \u{NNNN}.
std::string printable(std::string_view text, std::size_t longest = 40);

/// A file's name as it may stand in a message: `printable`, whole.
std::string printableName(std::string_view name);

} // namespace OrvantaNS::command
