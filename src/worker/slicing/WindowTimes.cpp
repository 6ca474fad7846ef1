#include "worker/slicing/WindowTimes.h"

#include <algorithm>

namespace OrvantaNS {

namespace {

// Written so that a time that is not a number is in no order.
bool standInOrder(const std::vector<OV_VALUE_OBJECT>& windows) {
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (!(windows[i].start <= windows[i].stop) || (i > 0 && !(windows[i - 1].start <= windows[i].start))) {
            return false;
        }
    }
    return true;
}

std::vector<double> stopsOf(const std::vector<OV_VALUE_OBJECT>& windows) {
    std::vector<double> stops(windows.size());
    std::transform(windows.begin(), windows.end(), stops.begin(), [](const OV_VALUE_OBJECT& w) { return w.stop; });
    return stops;
}

} // namespace

WindowTimes::WindowTimes(const std::vector<OV_VALUE_OBJECT>& windows)
    : isInOrder_(standInOrder(windows)), stops_(stopsOf(windows)) {}

} // namespace OrvantaNS
