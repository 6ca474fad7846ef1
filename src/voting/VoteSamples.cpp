// The vote sources: what in a request counts as a sample that may vote.
#include <algorithm>
#include <vector>

#include "OrvantaVotingAlgorithm.h"

namespace OrvantaNS {

namespace {

// Press of the first and of the second button.
constexpr std::int32_t kFirstPress = 0;
constexpr std::int32_t kSecondPress = 2;

} // namespace

OrvantaVotingAlgorithm::Samples OrvantaVotingAlgorithm::actionVectorForCursorData(const Params& params) const {
    const auto& locations = params.cursorLocations();
    // For each location the earliest time from there on. It never falls, and the last place where it is at or before
    // a moment is the last location at or before that moment: for any input, sorted or not, what a scan of the whole
    // list for each press would find.
    std::vector<long long> earliestFrom(locations.size());
    for (std::size_t i = locations.size(); i-- > 0;) {
        earliestFrom[i] =
            i + 1 < locations.size() ? std::min(locations[i].time, earliestFrom[i + 1]) : locations[i].time;
    }

    Samples samples;
    Rectangle point; // stays through presses that no location precedes
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        if (action.action != kFirstPress && action.action != kSecondPress) {
            continue;
        }
        const auto after = std::upper_bound(earliestFrom.begin(), earliestFrom.end(), action.time);
        if (after != earliestFrom.begin()) {
            const OV_MOUSE_LOCATION& location = locations[static_cast<std::size_t>(after - earliestFrom.begin()) - 1];
            point = {location.x, location.x, location.y, location.y};
        }
        samples.push_back({action.time, point});
    }
    return samples;
}

OrvantaVotingAlgorithm::Samples OrvantaVotingAlgorithm::actionVectorForFrontmostWindowData(const Params& params) const {
    Samples samples;
    Rectangle kept; // all zero: a first sample that says "no window" is no change
    for (const OV_TIME_RECT& window : params.foreWindows()) {
        if (window.rect != kept) {
            kept = window.rect;
            samples.push_back(window);
        }
    }
    return samples;
}

} // namespace OrvantaNS
