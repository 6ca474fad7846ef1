// What a mistyped word was meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace OrvantaNS::command {

/// The name that takes the fewest typing mistakes (a letter too many, too few, wrong, or two swapped) to become `word`, the
/// first of several; empty when even that takes more than a third of its letters.
std::string nearestName(std::string_view word, const std::vector<std::string>& names);

} // namespace OrvantaNS::command
