// Summaries: the few rectangles that the action of an interval was in, from the hottest down to the merely warm.
//
// A tier N is reached where the objects add up to N value per second over the interval, so every threshold is a multiple
// of the interval's length.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "Geometry.h"
#include "ValueSpace.h"

namespace OrvantaNS {

namespace {

// The tiers from the hottest down, by position in the arrays of `summarize`.
enum Tier : std::size_t { kTier12, kTier10, kTier8, kTier6, kTier4, kTier3, kTier2, kTier1, kTierCount };

// Value per second of one trigger object in force for the whole interval: what is worth a shot.
constexpr double kTier4Rate = 4.0;

using TierLists = std::array<std::vector<std::uint32_t>, kTierCount>;

// Readies the list of the tier below `tier`, which has just been found too hot for the next space.
void handOver(TierLists& lists, std::size_t tier) {
    if (tier == kTier4) {
        // The chain breaks here: tier 3 starts afresh, so that no rectangle below tier 4 swallows one of tier 4 or
        // above. Tier 2 keeps the copy only if the walk never gets there.
        lists[kTier2] = lists[kTier4];
    } else {
        lists[tier + 1] = lists[tier];
    }
}

} // namespace

VS_VALUE_MAP ValueSpace::summarize(double span) {
    VS_VALUE_MAP map;
    map.span = span;
    const std::vector<VS_VALUE_ORDER> order = fillValues();

    const std::array<double, kTierCount> thresholds{12.0 * span,       10.0 * span, 8.0 * span,  6.0 * span,
                                                    kTier4Rate * span, 3.0 * span,  span + span, span};
    TierLists lists;
    std::size_t tier = kTier12;
    for (const VS_VALUE_ORDER& entry : order) {
        // Written with `>=` so that a sum that is not a number reaches no tier.
        while (tier < kTierCount && !(entry.value >= thresholds[tier])) {
            if (tier != kTier1) {
                handOver(lists, tier);
            }
            ++tier;
        }
        if (tier == kTierCount) {
            break;
        }
        summarizeGraph(lists[tier], entry.space);
    }

    for (std::vector<std::uint32_t>& list : lists) {
        summarizeTier(list, map);
    }
    cleanValueMap(map);
    return map;
}

VS_VALUE_MAP ValueSpace::quickSummarize(double span) {
    VS_VALUE_MAP map;
    map.span = span;
    const double threshold = kTier4Rate * span;
    std::vector<std::uint32_t> list;
    for (const VS_VALUE_ORDER& entry : fillValues()) {
        if (!(entry.value >= threshold)) {
            break;
        }
        summarizeGraph(list, entry.space);
    }
    summarizeTier(list, map);
    return map;
}

std::vector<VS_VALUE_ORDER> ValueSpace::fillValues() {
    std::vector<VS_VALUE_ORDER> order;
    order.reserve(graph.size() - freeSpaces.size());
    bool allNumbers = true;
    for (std::size_t index = 0; index < graph.size(); ++index) {
        OV_INTERSECTION& space = graph[index];
        space.value = 0.0;
        if (!space.valid) {
            continue;
        }
        double sum = 0.0;
        for (const std::uint32_t object : space.objects) {
            sum += store->valueObjects[object].value;
        }
        space.value = sum;
        order.push_back({static_cast<std::uint32_t>(index), sum});
        allNumbers = allNumbers && !std::isnan(sum);
    }
    // A sort over values that are not numbers has no defined result, so those go to the end, in slot order.
    auto numbersEnd = order.end();
    if (!allNumbers) {
        numbersEnd = std::stable_partition(order.begin(), order.end(),
                                           [](const VS_VALUE_ORDER& entry) { return !std::isnan(entry.value); });
    }
    std::stable_sort(order.begin(), numbersEnd, CompareValuePairs);
    return order;
}

void ValueSpace::summarizeGraph(std::vector<std::uint32_t>& list, unsigned space) {
    const Rectangle& offered = graph[space].rect;
    for (std::size_t k = list.size(); k-- > 0;) {
        const Rectangle& held = graph[list[k]].rect;
        if (contains(offered, held)) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
        } else if (contains(held, offered)) {
            return;
        }
    }
    list.push_back(space);
}

void ValueSpace::summarizeTier(std::vector<std::uint32_t>& list, VS_VALUE_MAP& map) {
    double bestScore = 0.0;
    Rectangle best;
    for (const std::uint32_t space : list) {
        const Rectangle& rect = graph[space].rect;
        double score = 0.0;
        // The rectangle that counts is that of the space at which the object was inserted, not the object's own.
        for (const auto& [object, location] : objectMap) {
            score +=
                store->valueObjects[object].value * static_cast<double>(area(intersection(rect, graph[location].rect)));
        }
        if (score > bestScore) {
            bestScore = score;
            best = rect;
        }
    }
    if (!isEmpty(best)) {
        map.spaces.emplace_back(best, bestScore / static_cast<double>(area(best)));
    }
}

void ValueSpace::cleanValueMap(VS_VALUE_MAP& map) {
    auto& spaces = map.spaces;
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        for (std::size_t j = i + 1; j < spaces.size();) {
            if (spaces[i].second >= spaces[j].second && spaces[i].first == spaces[j].first) {
                spaces.erase(spaces.begin() + static_cast<std::ptrdiff_t>(j));
            } else {
                ++j;
            }
        }
    }
}

} // namespace OrvantaNS
