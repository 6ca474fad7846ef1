// `orvanta info`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeInfoCommand();

} // namespace OrvantaNS::command
