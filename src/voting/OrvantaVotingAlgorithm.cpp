// The three questions of the voting engine.
#include "OrvantaVotingAlgorithm.h"

#include "voting/VoteRuns.h"

namespace OrvantaNS {

namespace {

// Percentages that the steps of a whole clip report across. The gaps are jumps: choosing among the winners reports
// nothing of its own.
constexpr Interval_Type<int> kCastingProgress{0, 30};
constexpr Interval_Type<int> kCountingProgress{50, 70};
constexpr double kDone = 100.0;

} // namespace

OrvantaVotingAlgorithm::OrvantaVotingAlgorithm() = default;

OrvantaVotingAlgorithm::~OrvantaVotingAlgorithm() = default;

OrvantaVotingAlgorithm::KeyframeList OrvantaVotingAlgorithm::calcOrvantaKeyframes(const Params& params,
                                                                                  ProgressReporter* reporter) const {
    verifyParameters(params);
    const Targets targets = targetRectsForParams(params);
    VoteRuns votes;
    castVotes(params, votes, targets, reporter, kCastingProgress);
    const auto winners = countAndSortVotes(votes, reporter, kCountingProgress);
    const auto spaced = timeSortedVectorOfNonOverlappingRectangleEventData(winners, params.fadeDuration());
    const auto events = removeRedundantRectangleEventData(spaced);
    KeyframeList keyframes = orvantaKeyFramesForRectangleEventData(events, targets);
    if (reporter != nullptr) {
        reporter->reportProgress(kDone);
    }
    return keyframes;
}

OrvantaVotingAlgorithm::KeyframeList OrvantaVotingAlgorithm::calcOrvantaKeyframeAtTime(const Params& params,
                                                                                       long long time) const {
    verifyParameters(params);
    const Targets targets = targetRectsForParams(params);
    VoteRuns votes;
    castVotes(params, votes, targets, nullptr, {0, 0});
    // Where nobody wants anything, the whole recording is shown; in a count of the whole clip target 0 stands there.
    std::size_t answer = targets.size() - 1;
    const std::size_t run = votes.runAtOrAfter(time);
    if (run < votes.size()) {
        const auto sums = votes.sums(run);
        double best = 0.0;
        for (std::size_t i = 0; i < sums.size(); ++i) {
            if (sums[i] > best) {
                best = sums[i];
                answer = i;
            }
        }
    }
    return std::make_shared<std::vector<OV_TIME_RECT>>(1, OV_TIME_RECT{time, targets[answer].first});
}

OrvantaVotingAlgorithm::KeyframeList OrvantaVotingAlgorithm::calcKeyframeAtWindow(const Params&) const {
    return nullptr;
}

} // namespace OrvantaNS
