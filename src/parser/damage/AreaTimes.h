// When the changing areas of a zone live, so that a lookup by time does not read all that lie between an area that never
// rests and the moment in question.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Interval_Type.h"
#include "frame/LatestStops.h"
#include "parser/damage/DirtyRectObject.h"

namespace OrvantaNS {

/// Stands for one array of areas as it was when it was made.
class AreaTimes {
public:
    explicit AreaTimes(const std::vector<DR_OBJECT>& areas);

    /// True when the areas stand in order of start and none stops before it starts.
    bool isInOrder() const { return isInOrder_; }
    /// Position of the first area from `from` on that stops at or after `time`, or the number of areas.
    std::size_t firstAlive(std::size_t from, long long time) const { return stops_.firstFrom(from, time); }

private:
    bool isInOrder_ = true;
    LatestStops<long long> stops_;
};

/// Whether a span of time lies within the interval, ends included, or overlaps it by more than nothing. A span of no
/// length inside the interval thus counts, and one outside does not.
inline bool livesIn(Interval_Type<long long> span, Interval_Type<long long> interval) {
    return (interval.start <= span.start && span.stop <= interval.stop) ||
           std::min(span.stop, interval.stop) > std::max(span.start, interval.start);
}

/// Positions of the areas from `from` on that live in the interval, ascending, up to the first that starts behind it.
/// `times` may be null, or stands for `areas`.
std::vector<std::uint32_t> areasInTime(const std::vector<DR_OBJECT>& areas, std::size_t from,
                                       Interval_Type<long long> interval, const AreaTimes* times);

} // namespace OrvantaNS
