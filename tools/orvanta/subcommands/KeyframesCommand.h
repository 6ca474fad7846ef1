// `orvanta keyframes`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeKeyframesCommand();

} // namespace OrvantaNS::command
