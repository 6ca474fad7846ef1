// Value maps of two slices become one map for the time of both. A map's spaces are tiers with cumulative values: the
// step from one to the next is a tier's own layer. Where the stacks of two maps overlap, their values add.
#include "worker/merging/ValueMapMerging.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "frame/ValueMap.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// From this value per second on a rectangle is hot.
constexpr double kHotTier = 4.0;

// Pairs of rectangles that are compared in the time of one step.
constexpr std::uint64_t kPairsPerStep = 32;

using Spaces = std::vector<std::pair<Rectangle, double>>;

// Turns cumulative values into layers: each value becomes its difference to its successor, the last one stays. One
// subtraction at a time, from the bottom of the stack, since the differences of rounded sums depend on the order. A
// value below its successor's gives a negative layer, and is used.
void toLayers(Spaces& spaces) {
    for (std::size_t i = spaces.size(); i-- > 1;) {
        for (std::size_t j = i; j-- > 0;) {
            spaces[j].second -= spaces[i].second;
        }
    }
}

// Lays one layer over the stack: it adds to every space that it overlaps, and stands for itself as well.
void addLayer(Spaces& stack, const std::pair<Rectangle, double>& layer) {
    const std::size_t count = stack.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Rectangle common = intersection(stack[i].first, layer.first);
        if (area(common) > 0) {
            const double sum = stack[i].second + layer.second;
            stack.emplace_back(common, sum);
        }
    }
    stack.push_back(layer);
}

} // namespace

VS_VALUE_MAP OrvantaWorker::mergeMaps(VS_VALUE_MAP first, VS_VALUE_MAP second) const {
    OV_DATA_STORE uncounted;
    mergeIntoFirst(*this, uncounted, first, second);
    return first;
}

void mergeIntoFirst(const OrvantaWorker& worker, OV_DATA_STORE& store, VS_VALUE_MAP& first,
                    const VS_VALUE_MAP& second) {
    VS_VALUE_MAP& layers = store.mergeLayers;
    layers.spaces = second.spaces;
    toLayers(layers.spaces);
    VS_VALUE_MAP& stack = store.mergeStack;
    stack.span = first.span + second.span;
    stack.spaces = first.spaces;
    // Each layer sees what the ones before it have added: a third overlapping layer adds onto the sum of two.
    for (const std::pair<Rectangle, double>& layer : layers.spaces) {
        addLayer(stack.spaces, layer);
    }
    countSteps(store, 1 + std::uint64_t{stack.spaces.size()} * stack.spaces.size() / kPairsPerStep);
    sortByDensity(stack.spaces);
    ValueSpace::cleanValueMap(stack);

    VS_VALUE_MAP& tiers = store.mergeLayers; // the layers have been laid
    tiers.spaces.clear();
    for (const double tier : {12.0, 10.0, 8.0, 6.0, 4.0, 3.0, 2.0, 1.0}) {
        const std::pair<Rectangle, double> space = worker.summarizeMerge(stack, stack.span * tier);
        if (!isEmpty(space.first)) {
            tiers.spaces.push_back(space);
        }
    }
    ValueSpace::cleanValueMap(tiers);
    first.span = stack.span;
    first.spaces = tiers.spaces; // with memory of the right size, where it is new: slices keep their maps
    // The hot rectangles of the two are not handed on: the merged map answers by its spaces.
    first.tier4Rects.clear();
}

std::pair<Rectangle, double> OrvantaWorker::summarizeMerge(VS_VALUE_MAP& map, double threshold) const {
    // A single space gives nothing: the frame of such a slice rests on its breakdown.
    if (map.spaces.size() < 2 || map.spaces[0].second < threshold) {
        return {Rectangle{}, 0.0};
    }
    auto [rect, value] = map.spaces[0];
    for (std::size_t i = 1; i < map.spaces.size(); ++i) {
        const auto& [nextRect, nextValue] = map.spaces[i];
        if (nextValue < threshold) {
            break;
        }
        const double size = area(rect);
        const double nextSize = area(nextRect);
        if (contains(nextRect, rect)) {
            // A larger rectangle around the current one: the excess of value is spread over the new area.
            value = (value - nextValue) * size / nextSize + nextValue;
            rect = nextRect;
        } else if (nextSize * nextValue > size * value) {
            rect = nextRect;
            value = nextValue;
        }
    }
    return {rect, value};
}

Rectangle OrvantaWorker::getTier4Rect(const VS_VALUE_MAP& map) const {
    Rectangle hot;
    if (!map.tier4Rects.empty()) {
        hot = map.tier4Rects[0];
        for (const Rectangle& rect : map.tier4Rects) {
            hot = boundingUnion(hot, rect);
        }
        return hot;
    }
    for (const auto& [rect, value] : map.spaces) {
        // The order of the spaces decides: a later one that would pass is not looked at.
        if (value < map.span * kHotTier) {
            break;
        }
        hot = isEmpty(hot) ? rect : boundingUnion(hot, rect);
    }
    return hot;
}

} // namespace OrvantaNS
