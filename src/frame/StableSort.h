// A stable sort for lists that are nearly in order, which most lists over time are.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace OrvantaNS {

/// As many moves for each entry are made before a list counts as being in no order at all.
inline constexpr std::size_t kMovesPerEntry = 12;

/// Sorts by `goesAhead`, a strict weak order; entries of which neither goes ahead keep their order. The answer is that of
/// `std::stable_sort`. A list of few entries, or with few that stand far from their place, takes no memory, and time by its
/// length.
template <typename T, typename Order> void stableSort(std::vector<T>& entries, Order goesAhead) {
    std::size_t moves = kMovesPerEntry * entries.size();
    for (std::size_t i = 1; i < entries.size(); ++i) {
        if (!goesAhead(entries[i], entries[i - 1])) {
            continue;
        }
        T moving = std::move(entries[i]);
        std::size_t hole = i;
        do {
            entries[hole] = std::move(entries[hole - 1]);
            --hole;
            --moves;
        } while (hole > 0 && moves > 0 && goesAhead(moving, entries[hole - 1]));
        entries[hole] = std::move(moving);
        if (moves == 0) {
            // Nothing has passed its equal so far, so that the order of equals is still the first one.
            std::stable_sort(entries.begin(), entries.end(), goesAhead);
            return;
        }
    }
}

} // namespace OrvantaNS
