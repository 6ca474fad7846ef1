// Which engine answers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "OrvantaDirector.h"

namespace OrvantaNS::command {

enum class EngineChoice : std::uint8_t {
    Value,    ///< The value engine: interprets, values, slices, merges.
    Voting,   ///< The voting engine: clicks and windows vote for a fixed ballot.
    Director, ///< The director: finds the path on which a viewer misses least.
};

/// The engines' names, as --engine has them and results tell them; indexed by `EngineChoice`.
inline constexpr std::array<std::string_view, 3> kEngineNames{"value", "voting", "director"};

constexpr std::string_view engineName(EngineChoice engine) { return kEngineNames[static_cast<std::size_t>(engine)]; }

/// Nothing for a name that no engine has.
constexpr std::optional<EngineChoice> engineOf(std::string_view name) {
    for (std::size_t i = 0; i < kEngineNames.size(); ++i) {
        if (kEngineNames[i] == name) {
            return static_cast<EngineChoice>(i);
        }
    }
    return std::nullopt;
}

/// An engine with all that it can be told. Where only the engine matters, it stands for its choice.
struct EngineSetup {
    EngineChoice choice = EngineChoice::Value;
    DirectorControls director; ///< Read by the director alone.

    EngineSetup(EngineChoice engine = EngineChoice::Value, const DirectorControls& controls = {})
        : choice(engine), director(controls) {}
    operator EngineChoice() const { return choice; }
};

} // namespace OrvantaNS::command
