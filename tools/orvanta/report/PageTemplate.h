// The page as it was built from `web/`, compiled into the command.
#pragma once

#include <string_view>

namespace OrvantaNS::command {

/// The page without data; empty when the command was built without it.
std::string_view pageTemplate();

} // namespace OrvantaNS::command
