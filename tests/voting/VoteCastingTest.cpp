#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>

#include "LiteralVoting.h"
#include "VotingScene.h"
#include "voting/VoteRuns.h"
#include "voting/VoteWeights.h"

namespace OrvantaNS {
namespace {

using testing::addClick;
using testing::addWindow;
using testing::LiteralVoting;
using testing::ReportLog;
using testing::squareRecording;
using Targets = OrvantaVotingAlgorithm::Targets;
using Samples = OrvantaVotingAlgorithm::Samples;

const OrvantaVotingAlgorithm engine;

constexpr long long kFirstTick = std::numeric_limits<long long>::lowest();
constexpr long long kLastTick = std::numeric_limits<long long>::max();
constexpr int kLowestInt = std::numeric_limits<int>::lowest();

VoteRuns votesOf(const Params& params) {
    VoteRuns votes;
    engine.castVotes(params, votes, engine.targetRectsForParams(params), nullptr, {0, 30});
    return votes;
}

// Target index to sum, for the sums that are not 0.
std::map<std::size_t, double> nonZero(const VoteRuns& votes, long long tick) {
    std::map<std::size_t, double> result;
    const auto sums = votes.at(tick);
    for (std::size_t i = 0; i < sums.size(); ++i) {
        if (sums[i] != 0.0) {
            result[i] = sums[i];
        }
    }
    return result;
}

// First and last tick of each run.
std::vector<std::pair<long long, long long>> spans(const VoteRuns& votes) {
    std::vector<std::pair<long long, long long>> result;
    for (std::size_t run = 0; run < votes.size(); ++run) {
        result.emplace_back(votes.first(run), votes.last(run));
    }
    return result;
}

using Spans = std::vector<std::pair<long long, long long>>;

TEST(CastVotesTest, NoSamples_NoVotes) {
    Params params = squareRecording();
    params.cursorLocations() = {{0, 10, 10}};
    params.cursorActions() = {{5, 1}, {6, 3}, {7, 4}, {8, 6}};
    EXPECT_TRUE(votesOf(params).empty());
}

TEST(CastVotesTest, Click_AtACentre_VotesByCloseness) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    // Target 0: at the centre, 8 x 1 x 4. Target 16: 192 of 640 off on both axes, 1 - 0.3 squared. Target 25: 384 of
    // 1024 off, 1 - 0.375 squared = 0.859375, times 8.
    const auto sums = nonZero(votesOf(params), 1000);
    ASSERT_THAT(sums, ::testing::SizeIs(3));
    EXPECT_EQ(sums.at(0), 32.0);
    EXPECT_NEAR(sums.at(16), 14.56, 1e-12);
    EXPECT_EQ(sums.at(25), 6.875);
}

TEST(CastVotesTest, Click_AtACornerOfATarget_HasThreeQuartersOfTheCentresVotes) {
    Params params = squareRecording();
    addClick(params, 1000, 0, 0);
    const auto sums = nonZero(votesOf(params), 1000);
    EXPECT_EQ(sums, (std::map<std::size_t, double>{{0, 24.0}, {16, 12.0}, {25, 6.0}}));
}

TEST(CastVotesTest, Click_OnAnEdge_VotesForBothNeighbours) {
    Params params = squareRecording();
    addClick(params, 1000, 256, 128);
    // Half a width off on one axis: 1 - 0.125.
    const auto sums = nonZero(votesOf(params), 1000);
    EXPECT_EQ(sums.at(0), 28.0);
    EXPECT_EQ(sums.at(4), 28.0);
    EXPECT_EQ(sums.count(1), 0u);
    EXPECT_EQ(sums.count(8), 0u);
}

TEST(CastVotesTest, Click_OutsideTheRecording_VotesForNothing) {
    for (const auto& [x, y] : {std::pair{1025, 5}, {5, 1025}, {-1, 5}, {5, -1}}) {
        Params params = squareRecording();
        addClick(params, 1000, x, y);
        EXPECT_TRUE(votesOf(params).empty()) << x << ", " << y;
    }
    Params onTheEdge = squareRecording();
    addClick(onTheEdge, 1000, 1024, 1024);
    EXPECT_EQ(nonZero(votesOf(onTheEdge), 1000).count(15), 1u);
}

TEST(CastVotesTest, RegionAwayFromTheOrigin_IsNotSubtractedFromSamples) {
    Params params = squareRecording();
    params.recordingRegions()[0].rect = {500, 1524, 500, 1524};
    addClick(params, 1000, 128, 128);
    EXPECT_EQ(nonZero(votesOf(params), 1000).at(0), 32.0);
    Params outside = squareRecording();
    outside.recordingRegions()[0].rect = {500, 1524, 500, 1524};
    addClick(outside, 1000, 1500, 1500); // inside the region on screen
    EXPECT_TRUE(votesOf(outside).empty());
}

TEST(CastVotesTest, OddTarget_TruncatesItsCentre) {
    Params params = squareRecording();
    addClick(params, 5, 0, 0);
    // The centre of 0 to 5 is 2: the corner is 2 of 5 off on each axis, 1 - 0.4 squared.
    VoteRuns votes;
    engine.castVotesForCursorActions(params, votes, {{{0, 5, 0, 5}, 1}}, nullptr, {0, 0});
    EXPECT_NEAR(votes.at(5)[0], 8.0 * 0.84, 1e-12);
    // The centre of -5 to 0 is -2, toward zero: 2 of 5 off again, where an exact middle would be 2.5 off.
    VoteRuns below;
    engine.castVotesForCursorActions(params, below, {{{-5, 0, -5, 0}, 1}}, nullptr, {0, 0});
    EXPECT_NEAR(below.at(5)[0], 8.0 * 0.84, 1e-12);
}

TEST(CastVotesTest, Click_NearTheStart_DropsTheTicksBelowZero) {
    Params params = squareRecording();
    addClick(params, 10, 128, 128);
    const VoteRuns votes = votesOf(params);
    EXPECT_EQ(spans(votes), (Spans{{0, 109}}));
    EXPECT_EQ(votes.tickCount(), 110u);
    EXPECT_TRUE(votes.at(110).empty());
}

TEST(CastVotesTest, Click_VotesFromHalfASecondBeforeToASecondAfter) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    EXPECT_EQ(spans(votesOf(params)), (Spans{{950, 1099}}));
}

TEST(CastVotesTest, Window_VotesFromAThirdOfASecondBeforeToThreeSecondsAfter_AlwaysWithFullWeight) {
    Params params = squareRecording();
    addWindow(params, 1000, {64, 192, 64, 192});
    const VoteRuns votes = votesOf(params);
    // 33.33 truncated before; one run, as the weight is a step that the range does not reach.
    EXPECT_EQ(spans(votes), (Spans{{967, 1299}}));
    EXPECT_EQ(nonZero(votes, 1299).at(0), 80.0);
    EXPECT_EQ(nonZero(votes, 1299).at(25), 20.0 * 0.859375);
}

// Votes are cast before the end alone, where every weight is the full one; the weight itself goes down by whole ones.
TEST(CastVotesTest, WindowWeight_IsFullUpToTheEnd_AndGoesDownInSteps) {
    for (const int k : {-500, 0, 100, 101, 299}) {
        EXPECT_EQ(frontmostWindowWeight(k, 100, 300), 20.0) << k;
    }
    EXPECT_EQ(frontmostWindowWeight(300, 100, 300), 0.0);
    EXPECT_EQ(frontmostWindowWeight(500, 100, 300), -20.0);
}

TEST(CastVotesTest, TickCounts_AreTruncatedEachOnItsOwn) {
    Params params = squareRecording();
    params.setTimeScale(7.9);
    addClick(params, 1000, 128, 128); // 3.95 before, 7.9 after
    EXPECT_EQ(spans(votesOf(params)), (Spans{{997, 1006}}));
    params.cursorActions().clear();
    addWindow(params, 1000, {64, 192, 64, 192}); // 2.63 before, 23.7 after
    EXPECT_EQ(spans(votesOf(params)), (Spans{{998, 1022}}));
}

TEST(CastVotesTest, Window_LargerThanTheOutput_VotesForMiddleTargetsAndTheWhole) {
    Params params = squareRecording();
    addWindow(params, 1000, {10, 310, 10, 310});
    const auto sums = nonZero(votesOf(params), 1000);
    ASSERT_THAT(sums, ::testing::SizeIs(2));
    EXPECT_EQ(sums.count(16), 1u);
    EXPECT_EQ(sums.count(25), 1u);
}

TEST(CastVotesTest, Window_LargerThanTheRecording_VotesForNothing) {
    Params params = squareRecording();
    addWindow(params, 1000, {0, 1025, 0, 100});
    addWindow(params, 1100, {-5000, 5000, -5000, 5000});
    EXPECT_TRUE(votesOf(params).empty());
}

TEST(CastVotesTest, ClipIntervalAndOtherStreams_PlayNoPart) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    params.setClipInterval(5000, 6000).setWindowsFlag(true);
    params.dirtyRects() = {{1000, {0, 9, 0, 9}}};
    params.caretRects() = {{1000, {0, 9, 0, 9}}};
    EXPECT_EQ(spans(votesOf(params)), (Spans{{950, 1099}}));
}

TEST(CastVotesTest, OverlappingSamples_StartARunAtEachEdge) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    addWindow(params, 1100, {64, 192, 64, 192});
    const VoteRuns votes = votesOf(params);
    EXPECT_EQ(spans(votes), (Spans{{950, 1066}, {1067, 1099}, {1100, 1399}}));
    EXPECT_EQ(nonZero(votes, 1066).at(0), 32.0);
    EXPECT_EQ(nonZero(votes, 1067).at(0), 112.0);
    EXPECT_EQ(nonZero(votes, 1100).at(0), 80.0);
}

TEST(CastVotesTest, Progress_SplitsInTheMiddleBetweenClicksAndWindows) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    addClick(params, 1010, 5000, 5000); // votes for nothing, and is reported all the same
    addWindow(params, 1100, {64, 192, 64, 192});
    addWindow(params, 1200, {64, 192, 64, 193});
    addWindow(params, 1300, {64, 192, 64, 194});
    ReportLog log;
    VoteRuns votes;
    const Targets targets = engine.targetRectsForParams(params);
    engine.castVotes(params, votes, targets, &log, {0, 30});
    EXPECT_EQ(log.percents, (std::vector<double>{7.5, 15.0, 15 + 15 * (1.0 / 3.0), 15 + 15 * (2.0 / 3.0), 30.0}));
    EXPECT_EQ(log.cancelQuestions, 0);

    ReportLog odd;
    engine.castVotes(params, votes, targets, &odd, {-10, -3}); // half of 7 is 3
    EXPECT_EQ(odd.percents[1], -7.0);
    EXPECT_EQ(odd.percents[0], -8.5);
}

TEST(CastVotesTest, Progress_NothingForASourceWithoutSamples) {
    Params params = squareRecording();
    addWindow(params, 1100, {64, 192, 64, 192});
    ReportLog log;
    VoteRuns votes;
    engine.castVotes(params, votes, engine.targetRectsForParams(params), &log, {0, 30});
    EXPECT_EQ(log.percents, (std::vector<double>{30.0}));
}

TEST(CastVotesTest, Progress_SpanThatWraps_IsDefined) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    ReportLog log;
    VoteRuns votes;
    engine.castVotes(params, votes, engine.targetRectsForParams(params), &log,
                     {kLowestInt, std::numeric_limits<int>::max()});
    // The span wraps to -1, half of which is 0.
    EXPECT_EQ(log.percents, (std::vector<double>{static_cast<double>(kLowestInt)}));
}

TEST(VotingTimeScaleTest, WithoutWholeTicks_NobodyVotes) {
    for (const double scale : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(), -100.0, -1e300, -0.5, 1e-300, 0.3, 1e300,
                               2147483648.0, 3e9, 6442450944.0, 1e10}) {
        Params params = squareRecording();
        params.setTimeScale(scale);
        addClick(params, 1000, 128, 128);
        addWindow(params, 1000, {64, 192, 64, 192});
        EXPECT_TRUE(votesOf(params).empty()) << scale;
        EXPECT_TRUE(engine.calcOrvantaKeyframes(params, nullptr)->empty()) << scale;
        EXPECT_EQ(engine.calcOrvantaKeyframeAtTime(params, 3)->front().rect, (Rectangle{0, 1024, 0, 1024})) << scale;
    }
}

TEST(VotingTimeScaleTest, BelowOne_OnlyAWindowHasTicks) {
    Params params = squareRecording();
    params.setTimeScale(0.9); // clicks: 0 and 0; windows: 0 before, 2.7 after
    addClick(params, 1000, 128, 128);
    addWindow(params, 1000, {64, 192, 64, 192});
    const VoteRuns votes = votesOf(params);
    EXPECT_EQ(spans(votes), (Spans{{1000, 1001}}));
    // Tick 1001 lies past the full weight's end at 0, but the quotient 1 / 2 is 0.
    EXPECT_EQ(nonZero(votes, 1001).at(0), 80.0);
}

TEST(VotingTimeScaleTest, ClickWithoutTicks_ChangesNothing) {
    Params params = squareRecording();
    params.setTimeScale(0.9); // clicks: 0 and 0; windows: 0 before, 2.7 after
    addClick(params, 0, 896, 896);
    addClick(params, 1, 896, 896);
    addWindow(params, 0, {64, 192, 64, 192});
    VoteRuns votes = votesOf(params);
    const auto isTheWindowsAlone = [&] {
        return spans(votes) == Spans{{0, 1}} && votes.at(0)[0] == 80.0 && votes.at(0)[15] == 0.0;
    };
    EXPECT_TRUE(isTheWindowsAlone());
    engine.castVotesForCursorActions(params, votes, engine.targetRectsForParams(params), nullptr, {0, 0});
    EXPECT_TRUE(isTheWindowsAlone()) << "cast on top";
}

TEST(VotingTimeScaleTest, LargestCounts_VoteInOneRun) {
    Params params = squareRecording();
    params.setTimeScale(2147483647.0);
    addClick(params, 5000000000, 128, 128);
    addWindow(params, 5000000000, {64, 192, 64, 192}); // 3 times the scale does not fit
    EXPECT_EQ(spans(votesOf(params)), (Spans{{5000000000 - 1073741823, 5000000000 + 2147483646}}));
    params.setTimeScale(715827882.0);
    params.cursorActions().clear();
    EXPECT_EQ(spans(votesOf(params)), (Spans{{5000000000 - 238609294, 5000000000 + 2147483645}}));
}

TEST(VotingEndsOfTheClockTest, TicksPastTheLast_WrapBelowZeroAndAreDropped) {
    Params params = squareRecording();
    addClick(params, kLastTick, 128, 128);
    EXPECT_EQ(spans(votesOf(params)), (Spans{{kLastTick - 50, kLastTick}}));
    EXPECT_EQ(nonZero(votesOf(params), kLastTick).at(0), 32.0);
}

TEST(VotingEndsOfTheClockTest, TicksBeforeTheFirst_WrapToTheFarEnd) {
    Params params = squareRecording();
    addClick(params, kFirstTick, 128, 128);
    EXPECT_EQ(spans(votesOf(params)), (Spans{{kLastTick - 49, kLastTick}}));
}

TEST(VotingEndsOfTheClockTest, SampleBelowZero_VotesFromZeroOn) {
    Params params = squareRecording();
    addClick(params, -60, 128, 128);
    EXPECT_EQ(spans(votesOf(params)), (Spans{{0, 39}}));
    Params tooEarly = squareRecording();
    addClick(tooEarly, -100, 128, 128);
    EXPECT_TRUE(votesOf(tooEarly).empty());
}

TEST(CastVotesForActionVectorTest, AnyWeight_IsAskedOncePerTickAndMultiplies) {
    const Targets targets{{{0, 10, 0, 10}, 3}, {{20, 30, 20, 30}, 1}};
    const Samples samples{{5, {5, 5, 5, 5}}, {7, {5, 5, 5, 5}}, {9, {50, 50, 5, 5}}};
    std::vector<int> asked;
    VoteRuns votes;
    engine.castVotesForActionVector(samples, 2, 3,
                                    [&](int k) {
                                        asked.push_back(k);
                                        return static_cast<double>(k);
                                    },
                                    votes, targets, nullptr, {0, 0});
    EXPECT_EQ(asked, (std::vector<int>{-2, -1, 0, 1, 2}));
    // The first sample votes -6 -3 0 3 6 at ticks 3 to 7, the second the same at 5 to 9.
    std::vector<double> sums;
    for (long long tick = 3; tick <= 9; ++tick) {
        ASSERT_EQ(votes.at(tick).size(), 2u) << tick;
        sums.push_back(votes.at(tick)[0]);
        EXPECT_EQ(votes.at(tick)[1], 0.0);
    }
    EXPECT_EQ(sums, (std::vector<double>{-6, -3, -6, 0, 6, 3, 6}));
    EXPECT_EQ(votes.tickCount(), 7u);
}

TEST(CastVotesForActionVectorTest, WeightOfZero_StillMakesEntries) {
    VoteRuns votes;
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, 1, 1, [](int) { return 0.0; }, votes, {{{0, 10, 0, 10}, 1}},
                                    nullptr, {0, 0});
    EXPECT_EQ(spans(votes), (Spans{{4, 5}}));
}

TEST(CastVotesForActionVectorTest, NobodyVotes_WeightIsNotAsked) {
    VoteRuns votes;
    ReportLog log;
    const auto weight = [](int) -> double {
        ADD_FAILURE();
        return 1.0;
    };
    engine.castVotesForActionVector({{5, {50, 50, 5, 5}}}, 1, 1, weight, votes, {{{0, 10, 0, 10}, 1}}, &log, {0, 10});
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, -1, 1, weight, votes, {{{0, 10, 0, 10}, 1}}, &log, {0, 10});
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, 1, -1, weight, votes, {{{0, 10, 0, 10}, 1}}, &log, {0, 10});
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, kLowestInt, 1000, weight, votes, {{{0, 10, 0, 10}, 1}}, &log,
                                    {0, 10});
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, 1000, kLowestInt, weight, votes, {{{0, 10, 0, 10}, 1}}, &log,
                                    {0, 10});
    EXPECT_TRUE(votes.empty());
    EXPECT_EQ(log.percents, (std::vector<double>{10, 10, 10, 10, 10}));
}

TEST(CastVotesForActionVectorTest, RangeBehindTheSample_IsAllowed) {
    // before = -2: from the second tick after the moment on.
    VoteRuns votes;
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, -2, 4, [](int) { return 1.0; }, votes, {{{0, 10, 0, 10}, 1}},
                                    nullptr, {0, 0});
    EXPECT_EQ(spans(votes), (Spans{{7, 8}}));
}

TEST(CastVotesForActionVectorTest, TargetWithoutWidth_NeverWins) {
    // A point on the line is 0 / 0 widths off its centre, which is not a number and not greater than anything. The
    // inverted sample's middle, 5.5, is 0.5 / 0 widths off: infinitely far, with a closeness of minus infinity.
    const Targets targets{{{5, 5, 0, 10}, 4}, {{4, 6, 5, 5}, 4}, {{0, 10, 0, 10}, 1}};
    const auto one = [](int) { return 1.0; };
    VoteRuns votes;
    engine.castVotesForActionVector({{5, {5, 5, 5, 5}}, {5, {5, 5, 5, 5}}, {7, {9, 2, 6, 6}}}, 0, 1, one, votes,
                                    targets, nullptr, {0, 0});
    ASSERT_EQ(spans(votes), (Spans{{5, 5}, {7, 7}}));
    EXPECT_TRUE(std::isnan(votes.at(5)[0]));
    EXPECT_TRUE(std::isnan(votes.at(5)[1]));
    EXPECT_EQ(votes.at(5)[2], 2.0);
    EXPECT_EQ(votes.at(7)[0], -std::numeric_limits<double>::infinity());
    const auto winners = engine.countAndSortVotes(votes, nullptr, {0, 0});
    ASSERT_EQ(winners.size(), 2u);
    EXPECT_EQ(winners[0].first, (OrvantaVotingAlgorithm::RectangleEventData{5, 2, 2.0}));
    EXPECT_EQ(winners[1].first.targetIndex, 2);
}

TEST(CastVotesForActionVectorTest, InvertedSample_VotesWhereItsEdgesLieWithin) {
    // The edges 8 and 2 stand in the wrong order but both within 0 to 9; their middle counts as usual. A target at 5 to
    // 9 holds it as well: its left lies below 8 and its right above 2.
    const Targets targets{{{0, 10, 0, 10}, 1}, {{5, 9, 0, 10}, 1}};
    VoteRuns votes;
    engine.castVotesForActionVector({{5, {8, 2, 5, 5}}}, 0, 1, [](int) { return 1.0; }, votes, targets, nullptr,
                                    {0, 0});
    EXPECT_EQ(votes.at(5)[0], 1.0);
    // The middle is 5, the centre 7, the width 4: half a width off, 1 - 0.125.
    EXPECT_EQ(votes.at(5)[1], 0.875);
}

TEST(CastVotesForActionVectorTest, TargetThatNobodyVotesForNow_KeepsItsSum) {
    // Tick 4 and 5 have one vote for the second target; ticks 5 to 7 get one for the first.
    const Targets both{{{0, 10, 0, 10}, 1}, {{20, 30, 20, 30}, 1}};
    const auto one = [](int) { return 1.0; };
    for (const Targets& later : {both, Targets{both[0]}}) {
        SCOPED_TRACE(std::to_string(later.size()) + " targets in the later ballot");
        VoteRuns votes;
        engine.castVotesForActionVector({{5, {25, 25, 25, 25}}}, 1, 1, one, votes, both, nullptr, {0, 0});
        engine.castVotesForActionVector({{5, {5, 5, 5, 5}}}, 0, 3, one, votes, later, nullptr, {0, 0});
        EXPECT_EQ(spans(votes), (Spans{{4, 4}, {5, 5}, {6, 7}}));
        EXPECT_THAT(votes.at(4), ::testing::ElementsAre(0.0, 1.0));
        EXPECT_THAT(votes.at(5), ::testing::ElementsAre(1.0, 1.0));
        EXPECT_THAT(votes.at(7), ::testing::ElementsAre(1.0, 0.0));
    }
}

// Any weights, many pieces, votes on top of votes, ballots that grow: against the loop over ticks.
TEST(CastVotesForActionVectorTest, AnyWeights_OnTopOfEachOther_EqualTheLiteralLoop) {
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937_64 random(seed);
        const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        const auto edge = [&] { return pick(12) - 2; };
        VoteRuns votes;
        LiteralVoting::Votes literal;
        Targets targets;
        for (int round = 0; round < 3; ++round) {
            for (int i = pick(3) + (round == 0 ? 1 : 0); i > 0; --i) {
                targets.push_back({{edge() - 4, edge() + 4, edge() - 4, edge() + 4}, pick(5) - 1});
            }
            Samples samples;
            const long long origins[] = {0, 20, kLastTick - 20, kFirstTick + 20};
            const long long origin = origins[pick(4)];
            for (int i = pick(6); i > 0; --i) {
                samples.push_back({wrapAdd<long long>(origin, pick(50) - 25), {edge(), edge(), edge(), edge()}});
            }
            const int steps = 1 + pick(6);
            const auto weight = [&](int k) { return k / steps == 2 ? -1e300 : 0.1 * (k / steps); };
            const int before = pick(20) - 5;
            const int after = pick(20) - 5;
            engine.castVotesForActionVector(samples, before, after, weight, votes, targets, nullptr, {0, 0});
            LiteralVoting::castSamples(samples, before, after, weight, literal, targets, nullptr, 0, 0);
            ASSERT_EQ(votes.tickCount(), literal.size());
            for (const auto& [tick, sums] : literal) {
                const auto found = votes.at(tick);
                ASSERT_GE(found.size(), sums.size()) << tick;
                for (std::size_t t = 0; t < found.size(); ++t) {
                    const double expected = t < sums.size() ? sums[t] : 0.0;
                    ASSERT_TRUE(found[t] == expected || (std::isnan(found[t]) && std::isnan(expected)))
                        << "tick " << tick << " target " << t << ": " << found[t] << ", " << expected;
                }
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
