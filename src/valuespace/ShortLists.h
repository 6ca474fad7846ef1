// Lists of indices that are mostly so short that a call or a wrong guess of the processor costs more than to read them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvantaNS {

/// Takes the first copy of the value off the list. False when it is not in the list.
inline bool eraseFirst(std::vector<std::uint32_t>& list, std::uint32_t value) {
    // So many are moved up without a jump for each.
    constexpr std::size_t kShort = 12;
    if (list.size() > kShort) {
        const auto found = std::find(list.begin(), list.end(), value);
        if (found == list.end()) {
            return false;
        }
        list.erase(found);
        return true;
    }
    std::size_t kept = 0;
    bool isFound = false;
    for (const std::uint32_t entry : list) {
        const bool leaves = entry == value && !isFound;
        list[kept] = entry;
        kept += leaves ? 0 : 1;
        isFound = isFound || leaves;
    }
    list.resize(kept);
    return isFound;
}

} // namespace OrvantaNS
