// `orvanta score`: judges a camera path.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeScoreCommand();

} // namespace OrvantaNS::command
