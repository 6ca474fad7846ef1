// What is wrong with a request, in words and numbers: the engines' own exceptions have a code only.
#pragma once

#include <cstdint>
#include <optional>

#include "Params.h"
#include "bindings/c/Failure.h"

namespace OrvantaNS::c {

/// The failure with which the value engine would refuse the request, found without asking it: it prints the sizes at
/// fault to the standard output before it throws, and nothing is to be printed here.
std::optional<Failure> valueEngineRefusal(const Params& params);

/// The refusal of `code`, one of 1 to 4, by the voting engine.
Failure votingEngineRefusal(std::int32_t code, const Params& params);

/// The refusal of `code`, 2 or 4, by the question for one window.
Failure windowRefusal(std::int32_t code, const Params& params);

} // namespace OrvantaNS::c
