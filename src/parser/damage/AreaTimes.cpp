#include "parser/damage/AreaTimes.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace OrvantaNS {

void AreaTimes::build(const std::vector<DR_OBJECT>& areas) {
    data_ = areas.data();
    size_ = areas.size();
    const auto startsEarlier = [](const DR_OBJECT& a, const DR_OBJECT& b) { return a.start < b.start; };
    isInOrder_ = std::is_sorted(areas.begin(), areas.end(), startsEarlier) &&
                 std::all_of(areas.begin(), areas.end(), [](const DR_OBJECT& area) { return area.start <= area.stop; });
    leafCount_ = std::bit_ceil(size_);
    latestStops_.assign(2 * leafCount_, std::numeric_limits<long long>::lowest());
    for (std::size_t i = 0; i < size_; ++i) {
        latestStops_[leafCount_ + i] = areas[i].stop;
    }
    for (std::size_t node = leafCount_ - 1; node > 0; --node) {
        latestStops_[node] = std::max(latestStops_[2 * node], latestStops_[2 * node + 1]);
    }
}

std::size_t AreaTimes::firstAlive(std::size_t from, long long time) const {
    if (from >= size_) {
        return size_;
    }
    std::size_t node = leafCount_ + from;
    // Up and to the right until a branch has an area that lives long enough, ...
    while (latestStops_[node] < time) {
        while (node % 2 == 1) {
            node /= 2;
        }
        if (node == 0) {
            return size_; // the root has no branch to its right
        }
        ++node;
    }
    // ... then down to the first one in it.
    while (node < leafCount_) {
        node = latestStops_[2 * node] >= time ? 2 * node : 2 * node + 1;
    }
    return std::min(node - leafCount_, size_);
}

} // namespace OrvantaNS
