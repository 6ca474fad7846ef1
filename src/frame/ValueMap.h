// What a value space says about one interval: the few rectangles in which the action was.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "Rectangle.h"

namespace OrvantaNS {

/// The summary of an interval by value tiers.
struct VS_VALUE_MAP {
    /// The rectangles that deserve attention, highest tier first, each with its value density (value-weighted overlap
    /// per pixel). Local pixels. Empty when nothing reached even the lowest tier.
    std::vector<std::pair<Rectangle, double>> spaces;
    /// Length of the summarised interval, seconds. The tiers are multiples of it.
    double span = 0.0;
    /// The hot rectangle as classification found it, one entry at most; empty in a map fresh from a summary or a merge.
    std::vector<Rectangle> tier4Rects;
};

/// Ascending by density. Nothing sorts with it; it stands beside its reverse.
inline bool CompareMapSpaces(const std::pair<Rectangle, double>& a, const std::pair<Rectangle, double>& b) {
    return b.second > a.second;
}

/// Descending by density. False when either density is not a number; ties keep their order under a stable sort.
inline bool CompareMapSpacesReverse(const std::pair<Rectangle, double>& a, const std::pair<Rectangle, double>& b) {
    return a.second > b.second;
}

/// Up to this many rectangles are sorted one by one: a sort by merging asks for memory first.
inline constexpr std::size_t kFewMapSpaces = 24;

/// Sorts by density, densest first; equal ones keep their order. A sort over values that are not numbers has no defined
/// result, so those go to the end, in the order in which they stand.
inline void sortByDensity(std::vector<std::pair<Rectangle, double>>& spaces) {
    const auto goesAhead = [](const std::pair<Rectangle, double>& a, const std::pair<Rectangle, double>& b) {
        return std::isnan(b.second) ? !std::isnan(a.second) : CompareMapSpacesReverse(a, b);
    };
    if (spaces.size() > kFewMapSpaces) {
        std::stable_sort(spaces.begin(), spaces.end(), goesAhead);
        return;
    }
    for (std::size_t i = 1; i < spaces.size(); ++i) {
        const std::pair<Rectangle, double> moving = spaces[i];
        std::size_t hole = i;
        for (; hole > 0 && goesAhead(moving, spaces[hole - 1]); --hole) {
            spaces[hole] = spaces[hole - 1];
        }
        spaces[hole] = moving;
    }
}

} // namespace OrvantaNS
