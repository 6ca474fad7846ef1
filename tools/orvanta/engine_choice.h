// Which of the two engines answers.
#pragma once

#include <cstdint>

namespace OrvantaNS::command {

enum class EngineChoice : std::uint8_t {
    Value,  ///< The value engine: interprets, values, slices, merges.
    Voting, ///< The voting engine: clicks and windows vote for a fixed ballot.
};

} // namespace OrvantaNS::command
