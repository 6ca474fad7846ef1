// A piece of a line that shows where in it something is wrong.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OrvantaNS::command {

struct Excerpt {
    std::string text;      ///< Printable.
    std::size_t caret = 0; ///< Where in `text` the place lies, in characters from 0.
    long long column = 0;  ///< Of the place in the line, in characters from 1.
};

/// The text around byte `offset` of a line; the end of the line when it lies beyond.
Excerpt excerptAt(std::string_view line, std::size_t offset);

} // namespace OrvantaNS::command
