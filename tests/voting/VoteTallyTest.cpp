#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "LiteralVoting.h"
#include "VotingScene.h"
#include "voting/VoteRuns.h"
#include "voting/VoteWinner.h"

namespace OrvantaNS {
namespace {

using testing::LiteralVoting;
using testing::ReportLog;
using Event = OrvantaVotingAlgorithm::RectangleEventData;
using EventRun = OrvantaVotingAlgorithm::RectangleEventRun;
using Events = std::vector<Event>;
using EventRuns = std::vector<EventRun>;

const OrvantaVotingAlgorithm engine;

constexpr long long kLastTick = std::numeric_limits<long long>::max();
constexpr long long kLowest = std::numeric_limits<long long>::lowest();

VoteRuns votesOf(std::initializer_list<std::pair<std::pair<long long, long long>, std::vector<double>>> runs) {
    VoteRuns votes(runs.begin()->second.size());
    for (const auto& [span, sums] : runs) {
        votes.append(span.first, span.second, sums);
    }
    return votes;
}

// Each single event of runs.
Events expanded(const EventRuns& runs) {
    Events events;
    for (const EventRun& run : runs) {
        for (unsigned long long i = 0; i < run.count; ++i) {
            events.push_back(
                {run.first.time + static_cast<long long>(i) * run.step, run.first.targetIndex, run.first.votes});
        }
    }
    return events;
}

Events apart(const Events& events, long long fade) {
    return engine.timeSortedVectorOfNonOverlappingRectangleEventData(events, fade);
}

EventRuns apart(const EventRuns& events, long long fade) {
    return engine.timeSortedVectorOfNonOverlappingRectangleEventData(events, fade);
}

std::vector<long long> timesOf(const Events& events) {
    std::vector<long long> times;
    for (const Event& event : events) {
        times.push_back(event.time);
    }
    return times;
}

using Times = std::vector<long long>;

TEST(VoteRunsTest, RunAtOrAfter_FindsTheFirstEntryFromATickOn) {
    const VoteRuns votes = votesOf({{{5, 9}, {1}}, {{10, 10}, {2}}, {{20, kLastTick}, {3}}});
    EXPECT_EQ(votes.runAtOrAfter(kLowest), 0u);
    EXPECT_EQ(votes.runAtOrAfter(9), 0u);
    EXPECT_EQ(votes.runAtOrAfter(10), 1u);
    EXPECT_EQ(votes.runAtOrAfter(11), 2u);
    EXPECT_EQ(votes.runAtOrAfter(kLastTick), 2u);
    EXPECT_TRUE(votes.at(4).empty());
    EXPECT_TRUE(votes.at(11).empty());
    EXPECT_EQ(votes.at(10)[0], 2.0);
    EXPECT_EQ(votes.tickCount(), 6u + static_cast<unsigned long long>(kLastTick) - 19u);
    EXPECT_EQ(VoteRuns(3).runAtOrAfter(0), 0u);
    EXPECT_TRUE(VoteRuns(3).empty());
    EXPECT_EQ(VoteRuns(3).targetCount(), 3u);
    EXPECT_EQ(VoteRuns().targetCount(), 0u);
}

TEST(CountAndSortVotesTest, Winner_IsTheGreatestSum_TheLowerIndexInATie) {
    const VoteRuns votes = votesOf({{{0, 0}, {1, 3, 3, 2}}, {{1, 1}, {4, 1, 4, 4}}});
    EXPECT_EQ(engine.countAndSortVotes(votes, nullptr, {50, 70}),
              (EventRuns{{{1, 0, 4.0}, 1, 1}, {{0, 1, 3.0}, 1, 1}}));
}

TEST(CountAndSortVotesTest, NoPositiveSum_WinsTarget0WithNoVotes) {
    const VoteRuns votes = votesOf({{{3, 4}, {0, 0, 0}}, {{5, 5}, {-1, -2, 0}}});
    EXPECT_EQ(engine.countAndSortVotes(votes, nullptr, {50, 70}),
              (EventRuns{{{3, 0, 0.0}, 1, 2}, {{5, 0, 0.0}, 1, 1}}));
}

TEST(CountAndSortVotesTest, Order_IsByVotesThenTime) {
    const VoteRuns votes =
        votesOf({{{0, 9}, {5, 0}}, {{10, 19}, {7, 0}}, {{20, 29}, {0, 5}}, {{40, 49}, {7, 0}}, {{50, 50}, {9, 8}}});
    EXPECT_EQ(engine.countAndSortVotes(votes, nullptr, {50, 70}), (EventRuns{{{50, 0, 9.0}, 1, 1},
                                                                             {{10, 0, 7.0}, 1, 10},
                                                                             {{40, 0, 7.0}, 1, 10},
                                                                             {{0, 0, 5.0}, 1, 10},
                                                                             {{20, 1, 5.0}, 1, 10}}));
}

TEST(CountAndSortVotesTest, Order_ByVotesThenTime_AndNoneIsAheadOfItself) {
    const Event strong{7, 0, 2.0};
    const Event early{5, 1, 1.0};
    const Event late{6, 2, 1.0};
    for (const auto& [ahead, behind] : {std::pair{strong, early}, std::pair{strong, late}, std::pair{early, late}}) {
        EXPECT_TRUE(isStronger(ahead, behind));
        EXPECT_FALSE(isStronger(behind, ahead));
        EXPECT_FALSE(isStronger(ahead, ahead));
    }
}

TEST(CountAndSortVotesTest, Progress_IsReportedOncePerTick) {
    const VoteRuns votes = votesOf({{{0, 2}, {5}}, {{7, 7}, {6}}});
    ReportLog log;
    engine.countAndSortVotes(votes, &log, {50, 70});
    EXPECT_EQ(log.percents, (std::vector<double>{55, 60, 65, 70}));
    EXPECT_EQ(log.cancelQuestions, 0);
    ReportLog none;
    engine.countAndSortVotes(VoteRuns(1), &none, {50, 70});
    EXPECT_TRUE(none.percents.empty());
}

TEST(NonOverlappingTest, Distance_BelowTheFadeOverlaps_TheFadeItselfDoesNot) {
    // The strongest stands at 100; 99 and 101 ticks away on both sides, and exactly 100.
    for (const auto& [time, taken] :
         {std::pair{1LL, false}, {0LL, true}, {199LL, false}, {200LL, true}, {201LL, true}}) {
        const Events events{{100, 0, 9.0}, {time, 1, 5.0}};
        EXPECT_EQ(apart(events, 100).size(), taken ? 2u : 1u) << time;
        const EventRuns runs{{{100, 0, 9.0}, 1, 1}, {{time, 1, 5.0}, 1, 1}};
        EXPECT_EQ(apart(runs, 100).size(), taken ? 2u : 1u) << time;
    }
}

TEST(NonOverlappingTest, OverlapIsWithTakenEventsOnly) {
    // 150 falls to 100, and then does not stand in the way of 210.
    EXPECT_EQ(timesOf(apart(Events{{100, 0, 9.0}, {150, 1, 8.0}, {210, 2, 7.0}}, 100)), (Times{100, 210}));
}

TEST(NonOverlappingTest, Result_IsByTime) {
    EXPECT_EQ(apart(Events{{500, 0, 9.0}, {100, 1, 8.0}, {300, 2, 7.0}}, 100),
              (Events{{100, 1, 8.0}, {300, 2, 7.0}, {500, 0, 9.0}}));
}

TEST(NonOverlappingTest, FadeOfZeroOrLess_KeepsAllEvents) {
    const EventRuns runs{{{100, 0, 9.0}, 1, 50}, {{0, 1, 8.0}, 1, 100}};
    const EventRuns byTime{{{0, 1, 8.0}, 1, 100}, {{100, 0, 9.0}, 1, 50}};
    for (const long long fade : {1LL, 0LL, -1LL, -1000LL}) {
        EXPECT_EQ(apart(runs, fade), byTime) << fade;
        EXPECT_EQ(apart(expanded(runs), fade), expanded(byTime)) << fade;
    }
    EXPECT_EQ(apart(Events{{7, 1, 1.0}, {7, 2, 1.0}}, 0), (Events{{7, 1, 1.0}, {7, 2, 1.0}}));
}

TEST(NonOverlappingTest, Run_IsTakenEveryFade) {
    // The strong run gives 100, 130, 160, 190. Of the run before it 50 alone stands 30 from 100 and has no room for a
    // second; of the run behind it 220 alone.
    const EventRuns runs{{{100, 0, 64.0}, 1, 100}, {{50, 0, 32.0}, 1, 50}, {{200, 1, 32.0}, 1, 50}};
    EXPECT_EQ(apart(runs, 30), (EventRuns{{{50, 0, 32.0}, 30, 1}, {{100, 0, 64.0}, 30, 4}, {{220, 1, 32.0}, 30, 1}}));
}

TEST(NonOverlappingTest, Run_BetweenStrongerNeighbours_KeepsTheStretchThatBothLeaveFree) {
    // Taken first: 0 and 100. Of 1 to 99 the ticks 40 to 60 are left at a fade of 40, and 40 pushes out the rest. At 50
    // one tick is left, and at 51 none.
    const EventRuns runs{{{0, 0, 9.0}, 1, 1}, {{100, 1, 8.0}, 1, 1}, {{1, 2, 7.0}, 1, 99}};
    EXPECT_EQ(timesOf(expanded(apart(runs, 40))), (Times{0, 40, 100}));
    EXPECT_EQ(timesOf(expanded(apart(runs, 50))), (Times{0, 50, 100}));
    EXPECT_EQ(timesOf(expanded(apart(runs, 51))), (Times{0, 100}));
    EXPECT_EQ(timesOf(expanded(apart(runs, 20))), (Times{0, 20, 40, 60, 80, 100}));
}

TEST(NonOverlappingTest, LongRunsAndShortFades_CostNothing) {
    const EventRuns runs{{{0, 0, 9.0}, 1, 1ULL << 63}};
    EXPECT_EQ(apart(runs, 1), runs);
    EXPECT_EQ(apart(runs, 2), (EventRuns{{{0, 0, 9.0}, 2, 1ULL << 62}}));
    EXPECT_EQ(apart(runs, kLastTick), (EventRuns{{{0, 0, 9.0}, kLastTick, 2}}));
}

TEST(NonOverlappingTest, NegativeFade_ThatWrapsAtTheEndOfTheClock_MakesLateEventsOverlap) {
    // At a fade of -5 the last five ticks wrap. The strongest of them is taken; the next late one overlaps it, and so
    // does an early one more than 5 away, but not one 5 away.
    const Events events{{kLastTick - 2, 0, 9.0}, {kLastTick, 1, 8.0}, {kLastTick - 7, 2, 7.0}, {kLastTick - 8, 3, 6.0}};
    EXPECT_EQ(timesOf(apart(events, -5)), (Times{kLastTick - 7, kLastTick - 2}));
    EventRuns runs;
    for (const Event& event : events) {
        runs.push_back({event, 1, 1});
    }
    EXPECT_EQ(apart(runs, -5), (EventRuns{{{kLastTick - 7, 2, 7.0}, 1, 1}, {{kLastTick - 2, 0, 9.0}, 1, 1}}));
    // With the lowest fade every tick is late.
    EXPECT_EQ(timesOf(apart(Events{{5, 0, 9.0}, {9, 1, 8.0}}, kLowest)), (Times{5}));
}

// Every recording of six ticks whose ticks are silent, weak or strong, as runs and tick by tick.
TEST(NonOverlappingTest, EveryPatternOfSixTicks_RunsEqualSingleEvents) {
    const long long fades[] = {-7, -6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, kLowest, kLowest + 3, kLastTick};
    for (const long long base : {0LL, 1000LL, kLastTick - 5}) {
        for (int pattern = 0; pattern < 729; ++pattern) {
            VoteRuns votes(2);
            int rest = pattern;
            for (int i = 0; i < 6; ++i, rest /= 3) {
                int length = 1;
                for (; i + length < 6 && rest / 3 % 3 == rest % 3; rest /= 3) {
                    ++length;
                }
                if (rest % 3 != 0) {
                    // A third of the strong runs, by their place, goes to the other target.
                    const double strength = rest % 3;
                    const double sums[] = {i % 3 == 0 ? 0.0 : strength, strength};
                    votes.append(base + i, base + (i + length - 1), sums);
                }
                i += length - 1;
            }
            const EventRuns winners = engine.countAndSortVotes(votes, nullptr, {0, 0});
            const Events single = expanded(winners);
            ASSERT_EQ(single.size(), votes.tickCount());
            for (const long long fade : fades) {
                const Events expected = LiteralVoting::apart(single, fade);
                const EventRuns runs = apart(winners, fade);
                ASSERT_EQ(expanded(runs), expected) << "base " << base << " pattern " << pattern << " fade " << fade;
                ASSERT_EQ(apart(single, fade), expected);
                const Events distinct = LiteralVoting::withoutRepeats(expected);
                ASSERT_EQ(engine.removeRedundantRectangleEventData(runs), distinct);
                ASSERT_EQ(engine.removeRedundantRectangleEventData(expected), distinct);
            }
        }
    }
}

// Ticks at both ends of the clock and in its middle, with fades as long as the clock.
TEST(NonOverlappingTest, EventsAllOverTheClock_RunsEqualSingleEvents) {
    const long long places[] = {0, kLastTick / 2 - 10, kLastTick - 25};
    for (std::uint64_t seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937_64 random(seed);
        const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        VoteRuns votes(3);
        for (const long long place : places) {
            for (int tick = pick(8); tick < 25;) {
                const int last = std::min(24, tick + pick(6));
                const double sums[] = {1.0 * pick(3), 1.0 * pick(3), 1.0 * pick(3)};
                votes.append(place + tick, place + last, sums);
                tick = last + 1 + pick(2) * pick(5);
            }
        }
        long long fade = wrapAdd<long long>(places[pick(3)], pick(60) - 30);
        if (pick(2) == 0) {
            fade = pick(20) - 10;
        } else if (pick(2) == 0) {
            fade = wrapSub(0LL, fade);
        }
        const EventRuns winners = engine.countAndSortVotes(votes, nullptr, {0, 0});
        const Events expected = LiteralVoting::apart(expanded(winners), fade);
        ASSERT_EQ(expanded(apart(winners, fade)), expected) << "fade " << fade;
    }
}

TEST(RemoveRedundantTest, EmptyIn_EmptyOut) {
    EXPECT_TRUE(engine.removeRedundantRectangleEventData(Events{}).empty());
    EXPECT_TRUE(engine.removeRedundantRectangleEventData(EventRuns{}).empty());
}

TEST(RemoveRedundantTest, RunsOfOneTarget_CollapseToTheirFirst) {
    const Events events{{0, 3, 1.0}, {1, 3, 2.0}, {2, 4, 1.0}, {3, 4, 1.0}, {4, 3, 1.0}, {5, 3, 9.0}};
    EXPECT_EQ(engine.removeRedundantRectangleEventData(events), (Events{{0, 3, 1.0}, {2, 4, 1.0}, {4, 3, 1.0}}));
    const EventRuns runs{{{0, 3, 1.0}, 1, 5}, {{5, 3, 2.0}, 1, 5}, {{10, 4, 1.0}, 7, 5}};
    EXPECT_EQ(engine.removeRedundantRectangleEventData(runs), (Events{{0, 3, 1.0}, {10, 4, 1.0}}));
}

TEST(RemoveRedundantTest, EventsOfOneTargetWithADroppedOneBetween_AreNeighbours) {
    const Events strongestFirst{{0, 1, 10.0}, {100, 1, 8.0}, {50, 2, 5.0}};
    EXPECT_EQ(engine.removeRedundantRectangleEventData(apart(strongestFirst, 100)), (Events{{0, 1, 10.0}}));
    EXPECT_EQ(engine.removeRedundantRectangleEventData(apart(strongestFirst, 50)),
              (Events{{0, 1, 10.0}, {50, 2, 5.0}, {100, 1, 8.0}}));
}

TEST(KeyframesForEventsTest, EachEvent_BecomesAKeyframeOfItsTarget) {
    const OrvantaVotingAlgorithm::Targets targets{{{0, 1, 0, 1}, 4}, {{5, 6, 7, 8}, 2}};
    const auto keyframes = engine.orvantaKeyFramesForRectangleEventData({{30, 1, 2.0}, {10, 0, 1.0}}, targets);
    ASSERT_EQ(keyframes->size(), 2u);
    EXPECT_EQ((*keyframes)[0].time, 30);
    EXPECT_EQ((*keyframes)[0].rect, (Rectangle{5, 6, 7, 8}));
    EXPECT_EQ((*keyframes)[1].time, 10);
    EXPECT_EQ((*keyframes)[1].rect, (Rectangle{0, 1, 0, 1}));
    EXPECT_THROW(engine.orvantaKeyFramesForRectangleEventData({{0, 2, 1.0}}, targets), std::out_of_range);
    EXPECT_THROW(engine.orvantaKeyFramesForRectangleEventData({{0, -1, 1.0}}, targets), std::out_of_range);
}

TEST(KeyframesForEventsTest, NoEvents_GiveAnEmptyArray) {
    const auto keyframes = engine.orvantaKeyFramesForRectangleEventData({}, {});
    ASSERT_NE(keyframes, nullptr);
    EXPECT_TRUE(keyframes->empty());
}

} // namespace
} // namespace OrvantaNS
