#include "parser/damage/AreaTimes.h"

#include <limits>

namespace OrvantaNS {

namespace {

// The stops of all areas. Finds out in the same pass, since the areas of a day are more than a cache holds, where they do
// not stand in order of start or one stops before it starts.
std::vector<long long> stopsOf(const std::vector<DR_OBJECT>& areas, bool& areInOrder) {
    std::vector<long long> stops;
    stops.reserve(areas.size());
    long long earlier = std::numeric_limits<long long>::lowest();
    for (const DR_OBJECT& area : areas) {
        areInOrder = areInOrder && earlier <= area.start && area.start <= area.stop;
        earlier = area.start;
        stops.push_back(area.stop);
    }
    return stops;
}

} // namespace

AreaTimes::AreaTimes(const std::vector<DR_OBJECT>& areas) : stops_(stopsOf(areas, isInOrder_)) {}

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
