// The tally: from votes to winners, from winners to moments a fade apart, from those to keyframes.
//
// All ticks of a run have the same winner with the same votes, so each step takes a run as one. That stays exact
// through the choice of moments because ticks of different runs never interleave: of each run, what neighbours already
// taken leave free is one stretch, and of a stretch the moments taken are its first tick and every fade after it.
#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <vector>

#include "OrvantaVotingAlgorithm.h"
#include "frame/Geometry.h"
#include "voting/VoteRuns.h"
#include "voting/VoteWinner.h"

namespace OrvantaNS {

namespace {

using RectangleEventData = OrvantaVotingAlgorithm::RectangleEventData;
using RectangleEventRun = OrvantaVotingAlgorithm::RectangleEventRun;

constexpr long long kLatestTick = std::numeric_limits<long long>::max();

// Reports each tick of the votes in turn.
void reportTicks(const VoteRuns& votes, ProgressReporter& reporter, const Interval_Type<int>& progress) {
    for (unsigned long long tick = 1; tick <= votes.tickCount(); ++tick) {
        reportShare(&reporter, progress, tick, votes.tickCount());
    }
}

bool beginsEarlier(const RectangleEventRun& a, const RectangleEventRun& b) { return a.first.time < b.first.time; }

long long lastTime(const RectangleEventRun& run) {
    return wrapAdd(run.first.time, wrapMul(run.step, static_cast<long long>(run.count - 1)));
}

// The events of `run` from `first` to `last` at most, `step` apart.
RectangleEventRun stretchOf(const RectangleEventRun& run, long long first, long long last, long long step) {
    const auto length = static_cast<unsigned long long>(last) - static_cast<unsigned long long>(first);
    return {{first, run.first.targetIndex, run.first.votes}, step, length / static_cast<unsigned long long>(step) + 1};
}

// For a fade of 1 tick or more: distances of less than the fade overlap.
std::vector<RectangleEventRun> takeApart(const std::vector<RectangleEventRun>& runs, long long fade) {
    std::vector<RectangleEventRun> taken;
    std::map<long long, long long> lastByFirst; // the stretches taken; there is at most one in each run
    for (const RectangleEventRun& run : runs) {
        long long first = run.first.time;
        long long last = lastTime(run);
        const auto next = lastByFirst.lower_bound(first);
        if (next != lastByFirst.begin()) {
            const long long before = std::prev(next)->second;
            if (before > kLatestTick - fade) {
                continue;
            }
            first = std::max(first, before + fade);
        }
        if (next != lastByFirst.end()) {
            last = std::min(last, next->first - fade);
        }
        if (first <= last) {
            taken.push_back(stretchOf(run, first, last, fade));
            lastByFirst.emplace_hint(next, first, lastTime(taken.back()));
        }
    }
    return taken;
}

// For a fade of 0 ticks or less. No distance is below it, so every event is taken, but for what wraps: time - fade runs
// past the end of the clock for the last -fade ticks, the late ones, and comes out below every tick. That makes two
// late events overlap always, an early and a late one when they stand more than -fade apart, and two early ones never.
std::vector<RectangleEventRun> takeWithoutDistance(const std::vector<RectangleEventRun>& runs, long long fade) {
    const long long lastEarly = kLatestTick + fade;
    std::vector<RectangleEventRun> taken;
    std::optional<long long> firstEarlyTaken;
    std::optional<long long> lateTaken;
    for (const RectangleEventRun& run : runs) {
        long long first = run.first.time;
        const long long last = lastTime(run);
        if (first <= lastEarly) {
            const long long lastEarlyOfRun = std::min(last, lastEarly);
            const long long from = lateTaken ? std::max(first, *lateTaken + fade) : first;
            if (from <= lastEarlyOfRun) {
                taken.push_back(stretchOf(run, from, lastEarlyOfRun, 1));
                firstEarlyTaken = std::min(from, firstEarlyTaken.value_or(from));
            }
            if (last == lastEarlyOfRun) {
                continue;
            }
            first = lastEarly + 1;
        }
        if (!lateTaken && (!firstEarlyTaken || first <= *firstEarlyTaken - fade)) {
            taken.push_back(stretchOf(run, first, first, 1));
            lateTaken = first;
        }
    }
    return taken;
}

} // namespace

std::vector<RectangleEventRun> OrvantaVotingAlgorithm::countAndSortVotes(const VoteRuns& votes,
                                                                         ProgressReporter* reporter,
                                                                         const Interval_Type<int>& progress) const {
    if (reporter != nullptr) {
        reportTicks(votes, *reporter, progress);
    }
    std::vector<RectangleEventRun> winners;
    winners.reserve(votes.size());
    for (std::size_t run = 0; run < votes.size(); ++run) {
        const VoteWinner best = winnerOf(votes.sums(run));
        const RectangleEventRun winner{{votes.first(run), best.target, best.votes}, 1, 1};
        winners.push_back(stretchOf(winner, votes.first(run), votes.last(run), 1));
    }
    std::sort(winners.begin(), winners.end(),
              [](const RectangleEventRun& a, const RectangleEventRun& b) { return isStronger(a.first, b.first); });
    return winners;
}

std::vector<RectangleEventRun>
OrvantaVotingAlgorithm::timeSortedVectorOfNonOverlappingRectangleEventData(const std::vector<RectangleEventRun>& events,
                                                                           long long fadeDuration) const {
    std::vector<RectangleEventRun> taken =
        fadeDuration > 0 ? takeApart(events, fadeDuration) : takeWithoutDistance(events, fadeDuration);
    std::sort(taken.begin(), taken.end(), beginsEarlier);
    return taken;
}

std::vector<RectangleEventData> OrvantaVotingAlgorithm::timeSortedVectorOfNonOverlappingRectangleEventData(
    const std::vector<RectangleEventData>& events, long long fadeDuration) const {
    std::vector<RectangleEventData> taken;
    for (const RectangleEventData& event : events) {
        const bool overlaps = std::any_of(taken.begin(), taken.end(), [&](const RectangleEventData& other) {
            return event.time > wrapSub(other.time, fadeDuration) && wrapSub(event.time, fadeDuration) < other.time;
        });
        if (!overlaps) {
            taken.push_back(event);
        }
    }
    std::stable_sort(taken.begin(), taken.end(),
                     [](const RectangleEventData& a, const RectangleEventData& b) { return a.time < b.time; });
    return taken;
}

std::vector<RectangleEventData>
OrvantaVotingAlgorithm::removeRedundantRectangleEventData(const std::vector<RectangleEventRun>& events) const {
    // Within a run each event but the first repeats its neighbour.
    std::vector<RectangleEventData> firsts;
    firsts.reserve(events.size());
    for (const RectangleEventRun& run : events) {
        firsts.push_back(run.first);
    }
    return removeRedundantRectangleEventData(firsts);
}

std::vector<RectangleEventData>
OrvantaVotingAlgorithm::removeRedundantRectangleEventData(const std::vector<RectangleEventData>& events) const {
    std::vector<RectangleEventData> kept;
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (i == 0 || events[i].targetIndex != events[i - 1].targetIndex) {
            kept.push_back(events[i]);
        }
    }
    return kept;
}

OrvantaVotingAlgorithm::KeyframeList
OrvantaVotingAlgorithm::orvantaKeyFramesForRectangleEventData(const std::vector<RectangleEventData>& events,
                                                              const Targets& targets) const {
    auto keyframes = std::make_shared<std::vector<OV_TIME_RECT>>();
    keyframes->reserve(events.size());
    for (const RectangleEventData& event : events) {
        keyframes->push_back({event.time, targets.at(static_cast<std::size_t>(event.targetIndex)).first});
    }
    return keyframes;
}

} // namespace OrvantaNS
