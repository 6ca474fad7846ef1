// Value maps of two slices become one map for the time of both. A map's spaces are tiers with cumulative values: the
// step from one to the next is a tier's own layer. Where the stacks of two maps overlap, their values add.
#include "worker/merging/ValueMapMerging.h"

#include <cmath>
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
constexpr std::uint64_t kSpacePairsPerStep = 32;

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

// Grows a rectangle over a list of spaces, as far down as a threshold allows: what it is for one threshold is where it
// goes on for a lower one.
class Growth {
public:
    explicit Growth(const Spaces& spaces) : spaces_(spaces) {}

    /// The rectangle and its value at a threshold that is no higher than the one before; an empty one above all spaces.
    std::pair<Rectangle, double> downTo(double threshold) {
        // A single space gives nothing: the frame of such a slice rests on its breakdown.
        if (spaces_.size() < 2 || spaces_[0].second < threshold) {
            return {Rectangle{}, 0.0};
        }
        if (taken_ == 0) {
            grown_ = spaces_[0];
            taken_ = 1;
        }
        auto& [rect, value] = grown_;
        for (; taken_ < spaces_.size() && !(spaces_[taken_].second < threshold); ++taken_) {
            const auto& [nextRect, nextValue] = spaces_[taken_];
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
        return grown_;
    }
    /// Spaces that the rectangle has been grown over so far.
    std::size_t taken() const { return taken_; }

private:
    const Spaces& spaces_;
    std::size_t taken_ = 0;
    std::pair<Rectangle, double> grown_;
};

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
    countSteps(store, 1 + std::uint64_t{stack.spaces.size()} * stack.spaces.size() / kSpacePairsPerStep);
    sortByDensity(stack.spaces);
    ValueSpace::cleanValueMap(stack);

    VS_VALUE_MAP& tiers = store.mergeLayers; // the layers have been laid
    tiers.spaces.clear();
    Growth growth(stack.spaces);
    for (const double tier : {12.0, 10.0, 8.0, 6.0, 4.0, 3.0, 2.0, 1.0}) {
        const std::size_t before = growth.taken();
        // The thresholds of a span that is negative or not a number do not descend, and are answered one by one.
        const std::pair<Rectangle, double> space =
            stack.span >= 0.0 ? growth.downTo(stack.span * tier) : worker.summarizeMerge(stack, stack.span * tier);
        // What gives the pair of the tier before once more would be cleaned away, unless it is not a number.
        const bool isRepeat = before > 0 && growth.taken() == before && !std::isnan(space.second);
        if (!isRepeat && !isEmpty(space.first)) {
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
    return Growth(map.spaces).downTo(threshold);
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
