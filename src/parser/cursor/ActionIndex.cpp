#include "parser/cursor/ActionIndex.h"

#include <algorithm>

namespace OrvantaNS {

ActionIndex::ActionIndex(const std::vector<OV_MOUSE_ACTION>& actions) {
    for (std::size_t i = 0; i < actions.size(); ++i) {
        const std::int32_t code = actions[i].action;
        if (code >= 0 && static_cast<std::size_t>(code) < positions_.size()) {
            positions_[static_cast<std::size_t>(code)].push_back(i);
        }
    }
}

std::size_t ActionIndex::firstFrom(std::size_t from, std::int32_t code) const {
    const std::vector<std::size_t>& positions = positions_[static_cast<std::size_t>(code)];
    const auto found = std::lower_bound(positions.begin(), positions.end(), from);
    return found == positions.end() ? kNone : *found;
}

std::size_t ActionIndex::lastBefore(std::size_t before, std::int32_t code) const {
    const std::vector<std::size_t>& positions = positions_[static_cast<std::size_t>(code)];
    const auto found = std::lower_bound(positions.begin(), positions.end(), before);
    return found == positions.begin() ? kNone : *(found - 1);
}

} // namespace OrvantaNS
