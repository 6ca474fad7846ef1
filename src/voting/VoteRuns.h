// The votes of one election, as runs of ticks with equal sums.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <span>
#include <vector>

namespace OrvantaNS {

/// In meaning an ordered map from tick to one sum of votes per target, with an entry for each tick at which some vote
/// fell and for no other. A host's ticks may be tenths of microseconds, millions of them under one window change, so
/// neighbouring ticks that the same samples voted at share one run: memory grows with samples, not with ticks.
///
/// Runs stand in time order and do not overlap; no tick is below 0. Neighbouring runs may carry equal sums.
class VoteRuns {
public:
    /// No votes, for a ballot of `targetCount` targets.
    explicit VoteRuns(std::size_t targetCount = 0) : targetCount_(targetCount) {}

    /// True when no vote fell.
    bool empty() const { return spans_.empty(); }
    /// Number of runs.
    std::size_t size() const { return spans_.size(); }
    /// Length of every run's array of sums.
    std::size_t targetCount() const { return targetCount_; }
    /// Number of ticks with an entry.
    unsigned long long tickCount() const { return tickCount_; }

    /// First tick of a run.
    long long first(std::size_t run) const { return spans_[run].first; }
    /// Last tick of a run, included: a run may reach the last tick there is.
    long long last(std::size_t run) const { return spans_[run].last; }
    /// The sums of votes, by target index, that every tick of the run has.
    std::span<const double> sums(std::size_t run) const {
        return std::span<const double>(sums_).subspan(run * targetCount_, targetCount_);
    }

    /// The run of the first entry with a tick at or after `tick`; `size()` when there is none.
    std::size_t runAtOrAfter(long long tick) const {
        const auto found = std::lower_bound(spans_.begin(), spans_.end(), tick,
                                            [](const Span& span, long long value) { return span.last < value; });
        return static_cast<std::size_t>(found - spans_.begin());
    }
    /// The sums of the entry of `tick`; empty when it has none.
    std::span<const double> at(long long tick) const {
        const std::size_t run = runAtOrAfter(tick);
        return run < size() && first(run) <= tick ? sums(run) : std::span<const double>{};
    }

    /// Adds a run behind all others: 0 <= `first` <= `last`, with one sum per target.
    void append(long long first, long long last, std::span<const double> sums) {
        assert(first >= 0 && first <= last && (empty() || spans_.back().last < first));
        assert(sums.size() == targetCount_);
        spans_.push_back({first, last});
        sums_.insert(sums_.end(), sums.begin(), sums.end());
        tickCount_ += static_cast<unsigned long long>(last) - static_cast<unsigned long long>(first) + 1;
    }

private:
    struct Span {
        long long first;
        long long last;
    };

    std::size_t targetCount_;
    unsigned long long tickCount_ = 0;
    std::vector<Span> spans_;
    std::vector<double> sums_; // run after run
};

} // namespace OrvantaNS
