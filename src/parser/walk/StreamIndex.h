// What the walk over a request's zones needs to know of the request's streams as wholes, worked out once for all zones.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Params.h"
#include "frame/NearSearch.h"
#include "parser/cursor/ActionIndex.h"

namespace OrvantaNS {

/// True when the samples stand in order of time, so that lookups by time need not read them one by one.
inline bool areInOrder(const std::vector<OV_MOUSE_LOCATION>& locations) {
    return std::is_sorted(locations.begin(), locations.end(),
                          [](const OV_MOUSE_LOCATION& a, const OV_MOUSE_LOCATION& b) { return a.time < b.time; });
}

/// The first sample at or after `time` (ticks), from position `from` on; all -1 when there is none. `inOrder` says that
/// the samples are known to stand in order of time.
inline OV_MOUSE_LOCATION sampleFrom(const std::vector<OV_MOUSE_LOCATION>& locations, std::size_t from, long long time,
                                    bool inOrder) {
    const auto begin = locations.begin() + static_cast<std::ptrdiff_t>(std::min(from, locations.size()));
    const auto isBefore = [&](const OV_MOUSE_LOCATION& sample) { return sample.time < time; };
    const auto found =
        inOrder ? firstNear(begin, locations.end(), isBefore) : std::find_if_not(begin, locations.end(), isBefore);
    return found == locations.end() ? OV_MOUSE_LOCATION{-1, -1, -1} : *found;
}

/// Stands for one request as it was when the index was made; the request must not change while the index is in use.
class StreamIndex {
public:
    explicit StreamIndex(const Params& params)
        : params_(params), actions_(params.cursorActions()), locationsInOrder_(areInOrder(params.cursorLocations())) {}

    bool standsFor(const Params& params) const { return &params_ == &params; }
    const ActionIndex& actions() const { return actions_; }
    bool areLocationsInOrder() const { return locationsInOrder_; }

private:
    const Params& params_;
    ActionIndex actions_;
    bool locationsInOrder_;
};

} // namespace OrvantaNS
