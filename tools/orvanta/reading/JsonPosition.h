// Where in a line of JSON something stands: the fast parser does not tell, so a line that is refused is looked at again.
#pragma once

#include <cstddef>
#include <string_view>

namespace OrvantaNS::command {

/// Byte offset at which the line stops being JSON: of the character that cannot stand there, of a number that is too large,
/// or the end of the line. 0 when the line is JSON after all.
std::size_t offsetOfSyntaxError(std::string_view line);

/// Byte offset of entry `index` (from 0) of the list or object that the line is; of its closing bracket when it has fewer.
/// The line must be JSON.
std::size_t offsetOfEntry(std::string_view line, std::size_t index);

/// Byte offset of the value of field `name` of the object that the line is, of the last one of that name; 0 when there is
/// none. The line must be JSON.
std::size_t offsetOfField(std::string_view line, std::string_view name);

} // namespace OrvantaNS::command
