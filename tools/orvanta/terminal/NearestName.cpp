#include "terminal/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace OrvantaNS::command {

namespace {

/// Number of typing mistakes between two words.
std::size_t mistakes(std::string_view a, std::string_view b) {
    // cost[i][j]: between the first i letters of a and the first j of b.
    std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1, 0));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            cost[i][j] = std::min({replaced, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

} // namespace

std::string nearestName(std::string_view word, const std::vector<std::string>& names) {
    constexpr std::size_t kLongestWord = 64; // Beyond that nothing was mistyped.
    std::string nearest;
    std::size_t fewest = kLongestWord;
    for (const std::string& name : names) {
        const std::size_t count = word.size() > kLongestWord ? kLongestWord : mistakes(word, name);
        if (count < fewest && 3 * count <= std::max(name.size(), std::size_t{3})) {
            fewest = count;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace OrvantaNS::command
