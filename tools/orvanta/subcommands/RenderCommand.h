// `orvanta render`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeRenderCommand();

} // namespace OrvantaNS::command
