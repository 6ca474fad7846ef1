// Who wins an election, which of two winners is the stronger, and how the count is reported.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "OrvantaVotingAlgorithm.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS {

/// The target that is wanted most, and how much.
struct VoteWinner {
    std::int32_t target = 0;
    double votes = 0.0;
};

/// Only a strictly greater sum than 0 and than all before it wins: ties go to the lower index, and without a positive
/// sum the winner is target 0 with no votes.
inline VoteWinner winnerOf(std::span<const double> sums) {
    VoteWinner best;
    for (std::size_t i = 0; i < sums.size(); ++i) {
        if (sums[i] > best.votes) {
            best = {static_cast<std::int32_t>(i), sums[i]};
        }
    }
    return best;
}

/// Votes first, most first, then time, earliest first. The order is total for events at different ticks.
inline bool isStronger(const OrvantaVotingAlgorithm::RectangleEventData& a,
                       const OrvantaVotingAlgorithm::RectangleEventData& b) {
    return a.votes != b.votes ? a.votes > b.votes : a.time < b.time;
}

/// Reports that number `n` of `count`, counted from 1, is in work. Does nothing without a reporter.
template <typename Count>
void reportShare(ProgressReporter* reporter, const Interval_Type<int>& progress, Count n, Count count) {
    if (reporter != nullptr) {
        const double share = static_cast<double>(n) / static_cast<double>(count);
        reporter->reportProgress(progress.start + wrapSub(progress.stop, progress.start) * share);
    }
}

} // namespace OrvantaNS
