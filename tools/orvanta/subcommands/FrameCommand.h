// `orvanta frame`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeFrameCommand();

} // namespace OrvantaNS::command
