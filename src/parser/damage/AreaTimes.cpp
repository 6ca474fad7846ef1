#include "parser/damage/AreaTimes.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace OrvantaNS {

namespace {

bool liveInOrder(const std::vector<DR_OBJECT>& areas) {
    const auto startsEarlier = [](const DR_OBJECT& a, const DR_OBJECT& b) { return a.start < b.start; };
    return std::is_sorted(areas.begin(), areas.end(), startsEarlier) &&
           std::all_of(areas.begin(), areas.end(), [](const DR_OBJECT& area) { return area.start <= area.stop; });
}

} // namespace

AreaTimes::AreaTimes(const std::vector<DR_OBJECT>& areas)
    : size_(areas.size()), isInOrder_(liveInOrder(areas)), leafCount_(std::bit_ceil(areas.size())) {
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

std::vector<std::uint32_t> areasInTime(const std::vector<DR_OBJECT>& areas, std::size_t from,
                                       Interval_Type<long long> interval, const AreaTimes* times) {
    std::vector<std::uint32_t> selected;
    const bool isQuick = times != nullptr && times->isInOrder();
    for (std::size_t i = from; i < areas.size(); ++i) {
        if (isQuick) {
            // An area that stops before the interval is never selected, and before the first later one none ends the
            // scan.
            i = times->firstAlive(i, interval.start);
            if (i == areas.size()) {
                break;
            }
        }
        if (livesIn({areas[i].start, areas[i].stop}, interval)) {
            selected.push_back(static_cast<std::uint32_t>(i));
        } else if (areas[i].start > interval.stop) {
            break;
        }
    }
    return selected;
}

} // namespace OrvantaNS
