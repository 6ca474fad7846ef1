// Casting: every sample votes for the targets that hold it, for a stretch of ticks around its moment.
//
// In meaning a loop over samples, targets and ticks that adds to one sum at a time. Here the ranges of the samples are
// walked from edge to edge: between two edges all ticks have the same votes, and one sum stands for them all.
#include <algorithm>
#include <bit>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "OrvantaVotingAlgorithm.h"
#include "frame/Geometry.h"
#include "voting/OrderedSum.h"
#include "voting/VoteRuns.h"
#include "voting/VoteWeights.h"
#include "voting/VoteWinner.h"

namespace OrvantaNS {

namespace {

// Ticks of the clock as unsigned numbers, so that one past the last tick is a tick as well.
using Tick = unsigned long long;
constexpr Tick kLastTick = std::numeric_limits<long long>::max();
constexpr Tick kNever = std::numeric_limits<Tick>::max();

// A stretch of relative ticks, from `begin` up to but not including `end`, at which every vote has the same weight.
struct WeightPiece {
    long long begin;
    long long end;
    double weight;
};

// Where a piece of a sample's range starts, or one past its last tick.
struct RangeEdge {
    Tick tick;
    bool starts;
    std::size_t sample;
    double weight;
};

struct TickRange {
    Tick first;
    Tick last;
};

bool holdsAny(const OrvantaVotingAlgorithm::Targets& targets, const Rectangle& sample) {
    return std::any_of(targets.begin(), targets.end(),
                       [&](const auto& target) { return contains(target.first, sample); });
}

// The ticks `time` + k for k from `begin` up to but not including `end`, with wrapping and without those below 0. A
// range is far shorter than half the clock, so one stretch is left at most: one that starts below 0 may climb past it,
// one that starts above may run off the end of the clock, into the negative ticks.
std::optional<TickRange> votedTicks(long long time, long long begin, long long end) {
    const Tick first = static_cast<Tick>(wrapAdd(time, begin));
    const Tick last = static_cast<Tick>(wrapAdd(time, end - 1));
    if (first <= kLastTick) {
        return TickRange{first, std::min(last, kLastTick)};
    }
    if (last <= kLastTick) {
        return TickRange{0, last};
    }
    return std::nullopt;
}

// One weight for the whole range. The count before is negated in 64 bits, so that the lowest 32-bit number, which
// stands for a count that does not fit, gives an empty range like any other that ends before it starts.
std::vector<WeightPiece> evenWeight(int before, int after, double weight) {
    const long long begin = -static_cast<long long>(before);
    if (begin >= after) {
        return {};
    }
    return {{begin, after, weight}};
}

// Any weight: stretches of one value, from asking for each tick.
std::vector<WeightPiece> weightTickByTick(int before, int after, const std::function<double(int)>& weight) {
    std::vector<WeightPiece> pieces;
    for (long long k = -static_cast<long long>(before); k < after; ++k) {
        const double value = weight(static_cast<int>(k));
        if (!pieces.empty() && std::bit_cast<Tick>(pieces.back().weight) == std::bit_cast<Tick>(value)) {
            pieces.back().end = k + 1;
        } else {
            pieces.push_back({k, k + 1, value});
        }
    }
    return pieces;
}

// Reports the samples one by one, and gives those that some target holds.
std::vector<std::size_t> reportAndSelect(const OrvantaVotingAlgorithm::Samples& samples,
                                         const OrvantaVotingAlgorithm::Targets& targets, ProgressReporter* reporter,
                                         const Interval_Type<int>& progress) {
    std::vector<std::size_t> voters;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        reportShare(reporter, progress, i + 1, samples.size());
        if (holdsAny(targets, samples[i].rect)) {
            voters.push_back(i);
        }
    }
    return voters;
}

// Where the votes of the samples change, in time order.
std::vector<RangeEdge> edgesOf(const OrvantaVotingAlgorithm::Samples& samples, const std::vector<std::size_t>& voters,
                               const std::vector<WeightPiece>& pieces) {
    std::vector<RangeEdge> edges;
    edges.reserve(2 * voters.size() * pieces.size());
    for (const std::size_t sample : voters) {
        for (const WeightPiece& piece : pieces) {
            if (const auto range = votedTicks(samples[sample].time, piece.begin, piece.end)) {
                edges.push_back({range->first, true, sample, piece.weight});
                edges.push_back({range->last + 1, false, sample, piece.weight});
            }
        }
    }
    // Ends come before starts: at a tick where one piece of a sample passes to the next, the new weight stays.
    std::sort(edges.begin(), edges.end(), [](const RangeEdge& a, const RangeEdge& b) {
        return a.tick != b.tick ? a.tick < b.tick : a.starts != b.starts ? b.starts : a.sample < b.sample;
    });
    return edges;
}

// The votes in force at one tick, moved along the clock.
class OpenVotes {
public:
    OpenVotes(const OrvantaVotingAlgorithm::Samples& samples, const OrvantaVotingAlgorithm::Targets& targets)
        : samples_(samples), targets_(targets), votes_(targets.size(), OrderedSum(samples.size())),
          changed_(targets.size(), false), bases_(targets.size(), 0.0) {}

    bool empty() const { return open_ == 0; }

    void pass(const RangeEdge& edge) {
        const Rectangle& sample = samples_[edge.sample].rect;
        for (std::size_t t = 0; t < targets_.size(); ++t) {
            const auto& [rect, weight] = targets_[t];
            if (contains(rect, sample)) {
                votes_[t].set(edge.sample, edge.starts ? edge.weight * closeness(sample, rect) * weight : 0.0);
                changed_[t] = true;
            }
        }
        open_ += edge.starts ? 1 : -1;
    }

    // Brings `sums` up to date: the votes in force, added in the order of the samples onto `base`, what was cast before.
    // An empty `base` stands for zeros, and so does what it lacks.
    void addOnto(std::span<const double> base, std::vector<double>& sums) {
        for (std::size_t t = 0; t < targets_.size(); ++t) {
            const double from = t < base.size() ? base[t] : 0.0;
            if (changed_[t] || std::bit_cast<Tick>(from) != std::bit_cast<Tick>(bases_[t])) {
                sums[t] = votes_[t].addedTo(from);
                bases_[t] = from;
                changed_[t] = false;
            }
        }
        for (std::size_t t = targets_.size(); t < sums.size(); ++t) {
            sums[t] = t < base.size() ? base[t] : 0.0;
        }
    }

private:
    const OrvantaVotingAlgorithm::Samples& samples_;
    const OrvantaVotingAlgorithm::Targets& targets_;
    std::vector<OrderedSum> votes_; // by target; an addend's number is its sample's
    std::vector<bool> changed_;     // by target: since its sum was last brought up to date
    std::vector<double> bases_;     // by target: what its sum was last added onto
    long long open_ = 0;            // ranges that have started and not ended
};

// Walks the edges together with the runs that stand, and puts the overlay of both in their place.
void castBetweenEdges(const OrvantaVotingAlgorithm::Samples& samples, const std::vector<RangeEdge>& edges,
                      VoteRuns& votes, const OrvantaVotingAlgorithm::Targets& targets) {
    VoteRuns overlay(std::max(votes.targetCount(), targets.size()));
    OpenVotes open(samples, targets);
    std::vector<double> sums(overlay.targetCount(), 0.0);
    std::size_t edge = 0;
    std::size_t run = 0;
    const auto runStart = [&] { return run < votes.size() ? static_cast<Tick>(votes.first(run)) : kNever; };
    Tick tick = std::min(edges.front().tick, runStart());
    while (tick != kNever) {
        for (; edge < edges.size() && edges[edge].tick == tick; ++edge) {
            open.pass(edges[edge]);
        }
        if (run < votes.size() && static_cast<Tick>(votes.last(run)) < tick) {
            ++run;
        }
        const bool inRun = runStart() <= tick;
        const Tick runEdge = inRun ? static_cast<Tick>(votes.last(run)) + 1 : runStart();
        const Tick next = std::min(edge < edges.size() ? edges[edge].tick : kNever, runEdge);
        if (inRun || !open.empty()) {
            open.addOnto(inRun ? votes.sums(run) : std::span<const double>{}, sums);
            overlay.append(static_cast<long long>(tick), static_cast<long long>(next - 1), sums);
        }
        tick = next;
    }
    votes = std::move(overlay);
}

// The casting loop for a weight that is known stretch by stretch.
void castPieces(const OrvantaVotingAlgorithm::Samples& samples, const std::vector<WeightPiece>& pieces, VoteRuns& votes,
                const OrvantaVotingAlgorithm::Targets& targets, ProgressReporter* reporter,
                const Interval_Type<int>& progress) {
    const std::vector<std::size_t> voters = reportAndSelect(samples, targets, reporter, progress);
    const std::vector<RangeEdge> edges = edgesOf(samples, voters, pieces);
    if (!edges.empty()) {
        castBetweenEdges(samples, edges, votes, targets);
    }
}

} // namespace

void OrvantaVotingAlgorithm::castVotes(const Params& params, VoteRuns& votes, const Targets& targets,
                                       ProgressReporter* reporter, const Interval_Type<int>& progress) const {
    const int middle = wrapAdd(wrapSub(progress.stop, progress.start) / 2, progress.start);
    castVotesForCursorActions(params, votes, targets, reporter, {progress.start, middle});
    castVotesForFrontmostWindows(params, votes, targets, reporter, {middle, progress.stop});
}

void OrvantaVotingAlgorithm::castVotesForCursorActions(const Params& params, VoteRuns& votes, const Targets& targets,
                                                       ProgressReporter* reporter,
                                                       const Interval_Type<int>& progress) const {
    const int before = truncateToInt32(params.timeScale() * kActionSecondsBefore);
    const int after = truncateToInt32(params.timeScale());
    castPieces(actionVectorForCursorData(params), evenWeight(before, after, kActionWeight), votes, targets, reporter,
               progress);
}

void OrvantaVotingAlgorithm::castVotesForFrontmostWindows(const Params& params, VoteRuns& votes, const Targets& targets,
                                                          ProgressReporter* reporter,
                                                          const Interval_Type<int>& progress) const {
    const int before = truncateToInt32(params.timeScale() * kWindowSecondsBefore);
    const int after = truncateToInt32(params.timeScale() * kWindowSecondsAfter);
    const int full = truncateToInt32(params.timeScale());
    // The weight stands at its full value up to and including `full` and falls to nothing at `after`, just beyond the
    // range: between them nothing changes. So the last tick of the range tells the weight of all.
    std::vector<WeightPiece> pieces = evenWeight(before, after, 0.0);
    if (!pieces.empty()) {
        pieces.front().weight = frontmostWindowWeight(after - 1, full, after);
    }
    castPieces(actionVectorForFrontmostWindowData(params), pieces, votes, targets, reporter, progress);
}

void OrvantaVotingAlgorithm::castVotesForActionVector(const Samples& samples, int before, int after,
                                                      const std::function<double(int)>& weight, VoteRuns& votes,
                                                      const Targets& targets, ProgressReporter* reporter,
                                                      const Interval_Type<int>& progress) const {
    const std::vector<std::size_t> voters = reportAndSelect(samples, targets, reporter, progress);
    if (voters.empty()) {
        return;
    }
    const std::vector<RangeEdge> edges = edgesOf(samples, voters, weightTickByTick(before, after, weight));
    if (!edges.empty()) {
        castBetweenEdges(samples, edges, votes, targets);
    }
}

} // namespace OrvantaNS
