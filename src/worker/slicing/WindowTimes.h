// When the windows of a recording stand, so that neither a slice nor a shot reads all windows of a long one.
#pragma once

#include <cstddef>
#include <vector>

#include "frame/LatestStops.h"
#include "frame/ValueObject.h"

namespace OrvantaNS {

/// Stands for one array of window objects as it was when it was made.
class WindowTimes {
public:
    explicit WindowTimes(const std::vector<OV_VALUE_OBJECT>& windows);

    /// True when the windows stand in order of start and none stops before it starts.
    bool isInOrder() const { return isInOrder_; }
    /// Position of the first window from `from` on that stops at or after `time` (seconds), or the number of windows.
    std::size_t firstStanding(std::size_t from, double time) const { return stops_.firstFrom(from, time); }

private:
    bool isInOrder_;
    LatestStops<double> stops_;
};

} // namespace OrvantaNS
