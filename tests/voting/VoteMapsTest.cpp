#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "LiteralVoting.h"
#include "VotingScene.h"
#include "voting/VoteRuns.h"

namespace OrvantaNS {
namespace {

using ::testing::_;
using testing::addClick;
using testing::addWindow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LiteralVoting;
using ::testing::Pair;
using testing::ReportLog;
using testing::squareRecording;
using Event = OrvantaVotingAlgorithm::RectangleEventData;
using Samples = OrvantaVotingAlgorithm::Samples;
using Targets = OrvantaVotingAlgorithm::Targets;
using VoteMap = OrvantaVotingAlgorithm::VoteMap;

const OrvantaVotingAlgorithm engine;

constexpr int kLowestInt = std::numeric_limits<int>::lowest();
constexpr long long kLastTick = std::numeric_limits<long long>::max();

// One target of 10 by 10, weight 3, and a sample in its centre: every vote is the weight of its tick times 3.
const Targets kOneTarget{{{0, 10, 0, 10}, 3}};
constexpr Rectangle kCentre{5, 5, 5, 5};

VoteMap cast(const Samples& samples, int before, int after, const Targets& targets = kOneTarget, VoteMap votes = {}) {
    engine.castVotesForActionVector(samples, before, after, [](int k) { return 10.0 + k; }, votes, targets, nullptr,
                                    {0, 0});
    return votes;
}

TEST(VoteMapsTest, EveryTickOfTheRange_FromMinusBeforeUpToAfter) {
    EXPECT_THAT(cast({{100, kCentre}}, 2, 2), ElementsAre(Pair(98, ElementsAre(24.0)), Pair(99, ElementsAre(27.0)),
                                                          Pair(100, ElementsAre(30.0)), Pair(101, ElementsAre(33.0))));
    EXPECT_THAT(cast({{100, kCentre}}, -1, 3), ElementsAre(Pair(101, _), Pair(102, _)));
    EXPECT_THAT(cast({{100, kCentre}}, -3, 3), IsEmpty());
    EXPECT_THAT(cast({{100, kCentre}}, kLowestInt, 3), IsEmpty());
    EXPECT_THAT(cast({{100, kCentre}}, 2, kLowestInt), IsEmpty());
}

TEST(VoteMapsTest, TicksBelowZero_AreDropped_AndWrappingOnesToo) {
    EXPECT_THAT(cast({{1, kCentre}}, 3, 1), ElementsAre(Pair(0, ElementsAre(27.0)), Pair(1, ElementsAre(30.0))));
    EXPECT_THAT(cast({{kLastTick, kCentre}}, 0, 3), ElementsAre(Pair(kLastTick, ElementsAre(30.0))));
}

TEST(VoteMapsTest, OnlyTargetsThatHoldTheSample_TakePart) {
    const Targets targets{{{0, 10, 0, 10}, 1}, {{0, 4, 0, 10}, 1}, {{0, 10, 0, 10}, 2}};
    EXPECT_THAT(cast({{7, kCentre}}, 0, 1, targets), ElementsAre(Pair(7, ElementsAre(10.0, 0.0, 20.0))));
    EXPECT_THAT(cast({{7, {0, 11, 0, 10}}}, 0, 1, targets), IsEmpty());
    // At a corner of the target the closeness is 0.75.
    EXPECT_THAT(cast({{7, {0, 0, 0, 0}}}, 0, 1), ElementsAre(Pair(7, ElementsAre(22.5))));
}

TEST(VoteMapsTest, EntriesThatStand_AreAddedTo_GrownWhenShort_AndNeverCut) {
    const Targets two{{{90, 99, 0, 10}, 1}, {{0, 10, 0, 10}, 3}};
    const VoteMap before{{6, {5.0}}, {7, {1.0, 2.0, 4.0}}};
    EXPECT_THAT(cast({{6, kCentre}}, 0, 2, two, before),
                ElementsAre(Pair(6, ElementsAre(5.0, 30.0)), Pair(7, ElementsAre(1.0, 35.0, 4.0))));
}

TEST(VoteMapsTest, Reports_OnceASampleAndOnceAnEntry) {
    ReportLog log;
    VoteMap votes;
    engine.castVotesForActionVector({{1, kCentre}, {2, {99, 99, 99, 99}}}, 0, 1, [](int) { return 1.0; }, votes,
                                    kOneTarget, &log, {10, 30});
    EXPECT_THAT(log.percents, ElementsAre(20.0, 30.0));
    votes[9] = {};
    log.percents.clear();
    engine.countAndSortVotes(votes, &log, {50, 70});
    EXPECT_THAT(log.percents, ElementsAre(60.0, 70.0));
    EXPECT_EQ(log.cancelQuestions, 0);
}

TEST(VoteMapsTest, Reports_SplitInTheMiddleBetweenClicksAndWindows) {
    Params params = squareRecording();
    addClick(params, 1000, 5000, 5000); // vote for nothing, and are reported all the same
    addClick(params, 1010, 5000, 5000);
    addWindow(params, 1100, {4000, 5000, 4000, 5000});
    ReportLog log;
    VoteMap votes;
    engine.castVotes(params, votes, kOneTarget, &log, {10, 20});
    EXPECT_THAT(log.percents, ElementsAre(12.5, 15.0, 20.0));
    log.percents.clear();
    engine.castVotes(params, votes, kOneTarget, &log, {-10, -3}); // half of 7 is 3
    EXPECT_THAT(log.percents, ElementsAre(-8.5, -7.0, -3.0));
}

TEST(VoteMapsTest, CountAndSort_OneEventAnEntry_StrongestThenEarliest) {
    const VoteMap votes{{3, {1.0, 2.0, 2.0}}, {4, {0.0, -1.0}}, {5, {5.0}}, {6, {0.0, 2.0}}, {7, {}}};
    EXPECT_THAT(engine.countAndSortVotes(votes, nullptr, {0, 0}),
                ElementsAre(Event{5, 0, 5.0}, Event{3, 1, 2.0}, Event{6, 1, 2.0}, Event{4, 0, 0.0}, Event{7, 0, 0.0}));
}

TEST(VoteMapsTest, Clicks_VoteHalfASecondBeforeAndASecondAfter_WindowsAThirdAndThree) {
    // At 100 ticks a second: 50 and 100, 33 and 300.
    Params params = squareRecording();
    addClick(params, 1000, 512, 512);
    const Targets targets = engine.targetRectsForParams(params);
    VoteMap votes;
    engine.castVotesForCursorActions(params, votes, targets, nullptr, {0, 0});
    ASSERT_FALSE(votes.empty());
    EXPECT_EQ(votes.begin()->first, 950);
    EXPECT_EQ(votes.rbegin()->first, 1099);
    EXPECT_EQ(votes.size(), 150u);
    // The whole recording holds the click in its very centre: 8 times its weight of 1.
    EXPECT_EQ(votes.at(1000).back(), 8.0);

    votes.clear();
    addWindow(params, 2000, {412, 612, 412, 612});
    engine.castVotesForFrontmostWindows(params, votes, targets, nullptr, {0, 0});
    ASSERT_FALSE(votes.empty());
    EXPECT_EQ(votes.begin()->first, 1967);
    EXPECT_EQ(votes.rbegin()->first, 2299);
    EXPECT_EQ(votes.at(2299).back(), 20.0);
}

// The runs, tick by tick.
VoteMap tickByTick(const VoteRuns& runs) {
    VoteMap votes;
    for (std::size_t run = 0; run < runs.size(); ++run) {
        for (long long tick = runs.first(run); tick <= runs.last(run); ++tick) {
            votes[tick].assign(runs.sums(run).begin(), runs.sums(run).end());
        }
    }
    return votes;
}

std::vector<Event> oneByOne(const std::vector<OrvantaVotingAlgorithm::RectangleEventRun>& runs) {
    std::vector<Event> events;
    for (const auto& run : runs) {
        for (unsigned long long i = 0; i < run.count; ++i) {
            events.push_back(
                {run.first.time + static_cast<long long>(i) * run.step, run.first.targetIndex, run.first.votes});
        }
    }
    // A run stands where its first event does; one with equal votes may begin before it has ended.
    std::stable_sort(events.begin(), events.end(), [](const Event& a, const Event& b) { return a.votes > b.votes; });
    return events;
}

TEST(VoteMapsTest, GeneratedRequests_BothFormsAndTheTallyByHandAgree) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit + 1)); };
    std::size_t voted = 0;
    for (int round = 0; round < 150; ++round) {
        Params params = squareRecording();
        params.setTimeScale(1 + upTo(60)).setFadeDuration(upTo(80));
        long long time = upTo(20) - 10;
        for (int event = upTo(12); event > 0; --event) {
            time += upTo(90);
            const std::int32_t x = upTo(10) * 100;
            const std::int32_t y = upTo(10) * 100;
            if (upTo(1) == 0) {
                addClick(params, time, x, y);
            } else {
                addWindow(params, time, {x, x + upTo(5) * 100, y, y + upTo(5) * 100});
            }
        }
        const Targets targets = engine.targetRectsForParams(params);
        ReportLog mapLog;
        ReportLog runLog;
        ReportLog literalLog;
        VoteMap votes;
        VoteRuns runs;
        LiteralVoting::Votes literal;
        engine.castVotes(params, votes, targets, &mapLog, {0, 30});
        engine.castVotes(params, runs, targets, &runLog, {0, 30});
        LiteralVoting::cast(params, literal, targets, &literalLog, 0, 30);
        ASSERT_EQ(votes, literal);
        ASSERT_EQ(votes, tickByTick(runs));
        voted += votes.size();

        const std::vector<Event> events = engine.countAndSortVotes(votes, &mapLog, {50, 70});
        ASSERT_EQ(events, LiteralVoting::winners(literal, &literalLog, 50, 70));
        const auto eventRuns = engine.countAndSortVotes(runs, &runLog, {50, 70});
        ASSERT_EQ(events, oneByOne(eventRuns));
        ASSERT_EQ(mapLog.percents, literalLog.percents);
        ASSERT_EQ(mapLog.percents, runLog.percents);

        // The way of single events goes on to the same keyframes.
        const long long fade = params.fadeDuration();
        const auto kept = engine.removeRedundantRectangleEventData(
            engine.timeSortedVectorOfNonOverlappingRectangleEventData(events, fade));
        ASSERT_EQ(kept, engine.removeRedundantRectangleEventData(
                            engine.timeSortedVectorOfNonOverlappingRectangleEventData(eventRuns, fade)));
    }
    EXPECT_GT(voted, 1000u);
}

} // namespace
} // namespace OrvantaNS
