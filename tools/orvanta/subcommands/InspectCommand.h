// `orvanta inspect`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeInspectCommand();

} // namespace OrvantaNS::command
