// The steps of an election over single ticks: a map with an entry for each tick at which some vote fell. The engine
// itself works on runs of ticks (`VoteRuns`), whose cost does not grow with the ticks per second.
#include <algorithm>

#include "OrvantaVotingAlgorithm.h"
#include "frame/Geometry.h"
#include "voting/VoteWeights.h"
#include "voting/VoteWinner.h"

namespace OrvantaNS {

void OrvantaVotingAlgorithm::castVotes(const Params& params, VoteMap& votes, const Targets& targets,
                                       ProgressReporter* reporter, const Interval_Type<int>& progress) const {
    const int middle = wrapAdd(wrapSub(progress.stop, progress.start) / 2, progress.start);
    castVotesForCursorActions(params, votes, targets, reporter, {progress.start, middle});
    castVotesForFrontmostWindows(params, votes, targets, reporter, {middle, progress.stop});
}

void OrvantaVotingAlgorithm::castVotesForCursorActions(const Params& params, VoteMap& votes, const Targets& targets,
                                                       ProgressReporter* reporter,
                                                       const Interval_Type<int>& progress) const {
    const int before = truncateToInt32(params.timeScale() * kActionSecondsBefore);
    const int after = truncateToInt32(params.timeScale());
    castVotesForActionVector(
        actionVectorForCursorData(params), before, after, [](int) { return kActionWeight; }, votes, targets, reporter,
        progress);
}

void OrvantaVotingAlgorithm::castVotesForFrontmostWindows(const Params& params, VoteMap& votes, const Targets& targets,
                                                          ProgressReporter* reporter,
                                                          const Interval_Type<int>& progress) const {
    const int before = truncateToInt32(params.timeScale() * kWindowSecondsBefore);
    const int after = truncateToInt32(params.timeScale() * kWindowSecondsAfter);
    const int full = truncateToInt32(params.timeScale());
    castVotesForActionVector(
        actionVectorForFrontmostWindowData(params), before, after,
        [full, after](int k) { return frontmostWindowWeight(k, full, after); }, votes, targets, reporter, progress);
}

void OrvantaVotingAlgorithm::castVotesForActionVector(const Samples& samples, int before, int after,
                                                      const std::function<double(int)>& weight, VoteMap& votes,
                                                      const Targets& targets, ProgressReporter* reporter,
                                                      const Interval_Type<int>& progress) const {
    for (std::size_t n = 0; n < samples.size(); ++n) {
        reportShare(reporter, progress, n + 1, samples.size());
        const OV_TIME_RECT& sample = samples[n];
        for (std::size_t target = 0; target < targets.size(); ++target) {
            const auto& [rect, targetWeight] = targets[target];
            if (!contains(rect, sample.rect)) {
                continue;
            }
            const double near = closeness(sample.rect, rect);
            // Negated in 64 bits: the lowest count, which stands for one that does not fit, gives an empty range.
            for (long long k = -static_cast<long long>(before); k < after; ++k) {
                const long long time = wrapAdd(sample.time, k);
                if (time < 0) {
                    continue;
                }
                std::vector<double>& sums = votes[time];
                sums.resize(std::max(sums.size(), targets.size()), 0.0);
                sums[target] += weight(static_cast<int>(k)) * near * targetWeight;
            }
        }
    }
}

std::vector<OrvantaVotingAlgorithm::RectangleEventData>
OrvantaVotingAlgorithm::countAndSortVotes(const VoteMap& votes, ProgressReporter* reporter,
                                          const Interval_Type<int>& progress) const {
    std::vector<RectangleEventData> winners;
    winners.reserve(votes.size());
    for (const auto& [tick, sums] : votes) {
        reportShare(reporter, progress, winners.size() + 1, votes.size());
        const VoteWinner winner = winnerOf(sums);
        winners.push_back({tick, winner.target, winner.votes});
    }
    std::sort(winners.begin(), winners.end(), isStronger);
    return winners;
}

} // namespace OrvantaNS
