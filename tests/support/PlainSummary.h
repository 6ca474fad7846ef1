// The two summaries once more, with no thought for speed: every space is summed, sorted and offered. The library's must
// equal these to the last bit.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {

using SpaceList = std::vector<std::uint32_t>;

/// All valid spaces by descending sum, equal ones in slot order; sums that are not numbers at the end.
inline std::vector<VS_VALUE_ORDER> plainOrder(const ValueSpace& space) {
    std::vector<VS_VALUE_ORDER> order;
    std::vector<VS_VALUE_ORDER> notNumbers;
    for (std::uint32_t s = 0; s < space.graph.size(); ++s) {
        if (!space.graph[s].valid) {
            continue;
        }
        double sum = 0.0;
        for (const std::uint32_t object : space.graph[s].objects) {
            sum += space.store->valueObjects[object].value;
        }
        (std::isnan(sum) ? notNumbers : order).push_back({s, sum});
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const VS_VALUE_ORDER& a, const VS_VALUE_ORDER& b) { return a.value > b.value; });
    order.insert(order.end(), notNumbers.begin(), notNumbers.end());
    return order;
}

inline void plainOffer(const ValueSpace& space, SpaceList& list, std::uint32_t offered) {
    const Rectangle& rect = space.graph[offered].rect;
    for (std::size_t k = list.size(); k-- > 0;) {
        if (contains(rect, space.graph[list[k]].rect)) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
        } else if (contains(space.graph[list[k]].rect, rect)) {
            return;
        }
    }
    list.push_back(offered);
}

inline void plainTier(const ValueSpace& space, const SpaceList& list, VS_VALUE_MAP& map) {
    double bestScore = 0.0;
    Rectangle best;
    for (const std::uint32_t s : list) {
        double score = 0.0;
        for (const auto& [object, location] : space.objectMap) {
            score += space.store->valueObjects[object].value *
                     static_cast<double>(area(intersection(space.graph[s].rect, space.graph[location].rect)));
        }
        if (score > bestScore) {
            bestScore = score;
            best = space.graph[s].rect;
        }
    }
    if (area(best) > 0) {
        map.spaces.emplace_back(best, bestScore / static_cast<double>(area(best)));
    }
}

inline VS_VALUE_MAP plainSummary(const ValueSpace& space, double span) {
    enum { T12, T10, T8, T6, T4, T3, T2, T1 };
    const std::array<double, 8> thresholds{12.0 * span, 10.0 * span, 8.0 * span,  6.0 * span,
                                           4.0 * span,  3.0 * span,  span + span, span};
    std::array<SpaceList, 8> lists;
    std::size_t tier = T12;
    for (const VS_VALUE_ORDER& entry : plainOrder(space)) {
        bool isOver = false;
        while (!isOver && !(entry.value >= thresholds[tier])) {
            isOver = tier == T1;
            if (!isOver) {
                lists[tier == T4 ? std::size_t{T2} : tier + 1] = lists[tier];
                ++tier;
            }
        }
        if (isOver) {
            break;
        }
        plainOffer(space, lists[tier], entry.space);
    }
    VS_VALUE_MAP map;
    map.span = span;
    for (const SpaceList& list : lists) {
        plainTier(space, list, map);
    }
    for (std::size_t i = 0; i < map.spaces.size(); ++i) {
        for (std::size_t j = i + 1; j < map.spaces.size();) {
            if (map.spaces[i].second >= map.spaces[j].second && map.spaces[i].first == map.spaces[j].first) {
                map.spaces.erase(map.spaces.begin() + static_cast<std::ptrdiff_t>(j));
            } else {
                ++j;
            }
        }
    }
    return map;
}

/// For a span that is a number.
inline VS_VALUE_MAP plainQuickSummary(const ValueSpace& space, double span) {
    SpaceList list;
    for (const VS_VALUE_ORDER& entry : plainOrder(space)) {
        if (!(entry.value >= 4.0 * span)) {
            break;
        }
        plainOffer(space, list, entry.space);
    }
    VS_VALUE_MAP map;
    map.span = span;
    plainTier(space, list, map);
    return map;
}

/// True when the two are equal to the last bit.
inline bool sameMap(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) {
    const auto sameBits = [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    };
    return sameBits(a.span, b.span) &&
           std::equal(a.spaces.begin(), a.spaces.end(), b.spaces.begin(), b.spaces.end(),
                      [&](const auto& x, const auto& y) { return x.first == y.first && sameBits(x.second, y.second); });
}

} // namespace OrvantaNS::testing
