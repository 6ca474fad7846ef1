#include "parser/damage/AreaTimes.h"

#include <algorithm>

namespace OrvantaNS {

namespace {

bool liveInOrder(const std::vector<DR_OBJECT>& areas) {
    const auto startsEarlier = [](const DR_OBJECT& a, const DR_OBJECT& b) { return a.start < b.start; };
    return std::is_sorted(areas.begin(), areas.end(), startsEarlier) &&
           std::all_of(areas.begin(), areas.end(), [](const DR_OBJECT& area) { return area.start <= area.stop; });
}

std::vector<long long> stopsOf(const std::vector<DR_OBJECT>& areas) {
    std::vector<long long> stops(areas.size());
    std::transform(areas.begin(), areas.end(), stops.begin(), [](const DR_OBJECT& area) { return area.stop; });
    return stops;
}

} // namespace

AreaTimes::AreaTimes(const std::vector<DR_OBJECT>& areas) : isInOrder_(liveInOrder(areas)), stops_(stopsOf(areas)) {}

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
