// `orvanta report`.
#pragma once

#include <memory>

#include "subcommands/Subcommand.h"

namespace OrvantaNS::command {

std::unique_ptr<Subcommand> makeReportCommand();

} // namespace OrvantaNS::command
