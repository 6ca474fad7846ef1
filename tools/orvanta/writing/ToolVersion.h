// The command's version, for --version and for results that name their maker.
#pragma once

#include <string_view>

namespace OrvantaNS::command {

/// "0.1.0"
std::string_view toolVersion();

} // namespace OrvantaNS::command
