// Where each button code stands in the action stream, so that the search for a press's release never scans the stream
// again for every press.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "OrvantaRecords.h"

namespace OrvantaNS {

/// Positions of the codes 0 to 5 in one array of actions as it was when the index was made, ascending.
class ActionIndex {
public:
    /// Returned when there is no such action.
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    explicit ActionIndex(const std::vector<OV_MOUSE_ACTION>& actions);

    /// The first position from `from` on that holds `code` (0 to 5), or `kNone`.
    std::size_t firstFrom(std::size_t from, std::int32_t code) const;
    /// The last position before `before` that holds `code` (0 to 5), or `kNone`.
    std::size_t lastBefore(std::size_t before, std::int32_t code) const;

private:
    std::array<std::vector<std::size_t>, 6> positions_;
};

} // namespace OrvantaNS
