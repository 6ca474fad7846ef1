// The voting engine: a fixed ballot of candidate rectangles, elected tick by tick by clicks and window changes.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "Interval_Type.h"
#include "Orvanta.h"

namespace OrvantaNS {

class VoteRuns;

/// The voting engine: small and quick, blind to dirty rectangles, carets and the clip interval. A host needs the three
/// questions of `Orvanta` alone; every step behind them is public as well, so that tests can reach it. All operations
/// are const and touch no shared state: any number of threads may use one engine at once.
///
/// Votes are in meaning a map from tick to one sum per target (`VoteMap`). The engine keeps them as runs of ticks with
/// equal sums (`VoteRuns`), and each of its steps works on runs: its cost depends on the number of samples, not on the
/// ticks per second. The steps are there for maps and single events as well, with the same outcome tick by tick.
class ORVANTA_EXPORT OrvantaVotingAlgorithm : public Orvanta {
public:
    /// What the questions of `Orvanta` answer.
    using KeyframeList = std::shared_ptr<std::vector<OV_TIME_RECT>>;
    /// The ballot: candidates for the output frame, each with the weight by which every vote for it is multiplied.
    /// Local pixels: (0, 0) is the top left of the first recording region. A target is known by its index.
    using Targets = std::vector<std::pair<Rectangle, std::int32_t>>;
    /// A vote source: moments (ticks) and the rectangles that want to be seen then (screen pixels).
    using Samples = std::vector<OV_TIME_RECT>;
    /// Votes tick by tick: for each tick at which some vote fell, and for no other, one sum per target.
    using VoteMap = std::map<long long, std::vector<double>>;

    /// The winner of one tick.
    struct RectangleEventData {
        long long time = 0;           ///< The tick.
        std::int32_t targetIndex = 0; ///< Index of the winning target.
        double votes = 0.0;           ///< The winner's sum of votes at that tick.

        friend bool operator==(const RectangleEventData&, const RectangleEventData&) = default;
    };

    /// Many events with one winner and one sum of votes: `count` of them, the first one `first`, each later one `step`
    /// ticks after the one before it.
    struct RectangleEventRun {
        RectangleEventData first;     ///< The earliest event.
        long long step = 1;           ///< Ticks from one event to the next, at least 1.
        unsigned long long count = 1; ///< Number of events, at least 1.

        friend bool operator==(const RectangleEventRun&, const RectangleEventRun&) = default;
    };

    OrvantaVotingAlgorithm();
    ~OrvantaVotingAlgorithm() override;

    // ---- The three questions ----

    /// Empty when nobody voted. `reporter` gets 0 to 30 for the casting, 50 to 70 for the count and 100 at the end, and
    /// is never asked whether it is cancelled. Throws as `verifyParameters` does.
    KeyframeList calcOrvantaKeyframes(const Params& params, ProgressReporter* reporter) const override;
    /// The winner of the first voted tick at or after `time` (ticks), however far ahead; the whole recording when there
    /// is none or when it has no positive vote. Throws as `verifyParameters` does.
    KeyframeList calcOrvantaKeyframeAtTime(const Params& params, long long time) const override;
    /// Always a null pointer, with no check of `params`: this engine has no answer to that question.
    KeyframeList calcKeyframeAtWindow(const Params& params) const override;

    // ---- Ballot ----

    /// Throws `OVERR_BAD_TARGET_SIZE`, `OVERR_BAD_REGION`, `OVERR_TARGET_TOO_LARGE` or `OVERR_BAD_TIME_SCALE`, tested
    /// in this order. Prints nothing.
    void verifyParameters(const Params& params) const;
    /// The 26 targets, tightest first: 16 of the output's size, 9 of a middle size, the whole recording. Throws
    /// `std::out_of_range` without a recording region.
    Targets targetRectsForParams(const Params& params) const;
    /// Appends `steps` by `steps` rectangles of `width` by `height`, column by column, top to bottom in each. They
    /// spread from (0, 0) over what `bounds` leaves free; nothing is appended when `steps` <= 0.
    void generateTargetRects(Rectangle bounds, int width, int height, int steps, int weight, Targets& out) const;

    // ---- Casting ----

    /// Casts all votes of the request on top of `votes`: clicks, then window changes. `progress` is the span of
    /// percentages to report across, half of it for each.
    void castVotes(const Params& params, VoteRuns& votes, const Targets& targets, ProgressReporter* reporter,
                   const Interval_Type<int>& progress) const;
    /// Clicks vote from half a second before up to but not including a second after their moment. Nobody votes when
    /// `timeScale` makes that no whole tick or more ticks than 32 bits hold, or is not a number.
    void castVotesForCursorActions(const Params& params, VoteRuns& votes, const Targets& targets,
                                   ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    /// Window changes vote from a third of a second before up to but not including three seconds after their moment.
    /// Nobody votes under the same conditions as for clicks.
    void castVotesForFrontmostWindows(const Params& params, VoteRuns& votes, const Targets& targets,
                                      ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    /// Lets every sample vote for each target that holds it, at its time + k for each k from -`before` up to but not
    /// including `after`, with the weight `weight(k)` times the sample's closeness to the target's centre times the
    /// target's weight. Ticks wrap; those below 0 are dropped. Votes add up in the order of the samples.
    ///
    /// `weight` must not be empty and must always answer the same: it is asked once for each k of the range, or never
    /// when nobody votes. Reports once per sample when `reporter` is not null.
    void castVotesForActionVector(const Samples& samples, int before, int after,
                                  const std::function<double(int)>& weight, VoteRuns& votes, const Targets& targets,
                                  ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    /// The same four steps on single ticks: each vote is added to the entry of its tick, which is made when it is the
    /// first there and grown with zeros when it has fewer sums than there are targets. Their cost is samples times
    /// targets times ticks of the range, and their memory an entry a tick: for modest tick rates. `weight` is asked once
    /// for every vote.
    void castVotes(const Params& params, VoteMap& votes, const Targets& targets, ProgressReporter* reporter,
                   const Interval_Type<int>& progress) const;
    void castVotesForCursorActions(const Params& params, VoteMap& votes, const Targets& targets,
                                   ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    void castVotesForFrontmostWindows(const Params& params, VoteMap& votes, const Targets& targets,
                                      ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    void castVotesForActionVector(const Samples& samples, int before, int after,
                                  const std::function<double(int)>& weight, VoteMap& votes, const Targets& targets,
                                  ProgressReporter* reporter, const Interval_Type<int>& progress) const;
    /// The presses of the first two buttons, each at the point of the last cursor location (by position in
    /// `cursorLocations`) at or before it in time. Without one, the point of the kept press before; (0, 0) at first.
    Samples actionVectorForCursorData(const Params& params) const;
    /// The foreground windows that differ from the one kept before, the first from the all-zero rectangle.
    Samples actionVectorForFrontmostWindowData(const Params& params) const;

    // ---- Tally ----

    /// The winner of every voted tick: by votes, most first; equal votes by time, earliest first. Only a strictly
    /// greater sum than 0 and than all before it wins, so ties go to the lower target index, and without a positive sum
    /// the winner is target 0 with no votes. One run, of step 1, per run of `votes`: ticks of different runs never
    /// interleave. Reports once per voted tick, in time order, when `reporter` is not null.
    std::vector<RectangleEventRun> countAndSortVotes(const VoteRuns& votes, ProgressReporter* reporter,
                                                     const Interval_Type<int>& progress) const;
    /// The same for single ticks, one event for each entry of `votes`.
    std::vector<RectangleEventData> countAndSortVotes(const VoteMap& votes, ProgressReporter* reporter,
                                                      const Interval_Type<int>& progress) const;
    /// The events that keep their distance, by time. In the order given, an event is taken unless it lies closer than
    /// `fadeDuration` ticks to one already taken; exactly that far is far enough. Needs runs of step 1, with times from
    /// 0 on, of which no two share or interleave their ticks.
    std::vector<RectangleEventRun>
    timeSortedVectorOfNonOverlappingRectangleEventData(const std::vector<RectangleEventRun>& events,
                                                       long long fadeDuration) const;
    /// The same for single events, in any order and at any times: each is compared with all taken before it. Events at
    /// the same time keep their order.
    std::vector<RectangleEventData>
    timeSortedVectorOfNonOverlappingRectangleEventData(const std::vector<RectangleEventData>& events,
                                                       long long fadeDuration) const;
    /// The events whose target differs from that of the event just before them in `events`, kept or not; and the first.
    /// Needs runs by time that do not interleave.
    std::vector<RectangleEventData>
    removeRedundantRectangleEventData(const std::vector<RectangleEventRun>& events) const;
    /// The same for single events.
    std::vector<RectangleEventData>
    removeRedundantRectangleEventData(const std::vector<RectangleEventData>& events) const;
    /// One keyframe per event; never a null pointer. Throws `std::out_of_range` for an index that `targets` lacks.
    KeyframeList orvantaKeyFramesForRectangleEventData(const std::vector<RectangleEventData>& events,
                                                       const Targets& targets) const;
};

} // namespace OrvantaNS
