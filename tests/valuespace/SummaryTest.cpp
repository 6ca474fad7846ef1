#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "PlainSummary.h"
#include "Scene.h"
#include "SpaceChecks.h"
#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Pairs = std::vector<std::pair<Rectangle, double>>;

// A space with all its objects inserted in order, each with its value.
struct Valued {
    OV_DATA_STORE store;
    ValueSpace space{&store};

    explicit Valued(const Pairs& objects) {
        for (const auto& [rect, value] : objects) {
            store.valueObjects.push_back({Click, 0.0, 1.0, rect, value});
        }
        for (unsigned object = 0; object < objects.size(); ++object) {
            space.insertObject(object);
        }
    }
};

double below(double value) { return std::nextafter(value, -kInfinity); }

std::vector<std::pair<std::uint32_t, double>> asPairs(const std::vector<VS_VALUE_ORDER>& order) {
    std::vector<std::pair<std::uint32_t, double>> pairs;
    for (const VS_VALUE_ORDER& entry : order) {
        pairs.emplace_back(entry.space, entry.value);
    }
    return pairs;
}

// ---- fillValues ----

TEST(FillValuesTest, WritesEachSum_AndGivesThemDescending) {
    Valued v({{box(0, 0, 100, 100), 2.0}, {box(50, 50, 100, 100), 3.0}, {box(500, 0, 10, 10), 4.0}});
    // Spaces: 0 and 1 the first two objects, 2 their common part, 3 the one apart.
    EXPECT_THAT(asPairs(v.space.fillValues()), ElementsAre(Pair(2, 5.0), Pair(3, 4.0), Pair(1, 3.0), Pair(0, 2.0)));
    EXPECT_EQ(v.space.graph[0].value, 2.0);
    EXPECT_EQ(v.space.graph[1].value, 3.0);
    EXPECT_EQ(v.space.graph[2].value, 5.0);
    EXPECT_EQ(v.space.graph[3].value, 4.0);
}

TEST(FillValuesTest, EqualSums_StandInSlotOrder) {
    Valued v(
        {{box(0, 0, 10, 10), 1.0}, {box(100, 0, 10, 10), 2.0}, {box(200, 0, 10, 10), 1.0}, {box(300, 0, 10, 10), 2.0}});
    EXPECT_THAT(asPairs(v.space.fillValues()), ElementsAre(Pair(1, 2.0), Pair(3, 2.0), Pair(0, 1.0), Pair(2, 1.0)));
}

TEST(FillValuesTest, AddsInListOrder) {
    // (1e16 + 1) − 1e16 is 0 in doubles, (1e16 − 1e16) + 1 is 1.
    Valued ones({{box(0, 0, 10, 10), 1e16}, {box(0, 0, 10, 10), 1.0}, {box(0, 0, 10, 10), -1e16}});
    EXPECT_THAT(asPairs(ones.space.fillValues()), ElementsAre(Pair(0, 0.0)));
    Valued others({{box(0, 0, 10, 10), 1e16}, {box(0, 0, 10, 10), -1e16}, {box(0, 0, 10, 10), 1.0}});
    EXPECT_THAT(asPairs(others.space.fillValues()), ElementsAre(Pair(0, 1.0)));
}

TEST(FillValuesTest, FreeSlots_AreZeroedAndLeftOut) {
    Valued v({{box(0, 0, 100, 100), 2.0}, {box(500, 0, 10, 10), 4.0}});
    v.space.fillValues();
    v.space.deleteObject(0);
    EXPECT_EQ(v.space.graph[0].value, 2.0); // stale until now
    EXPECT_THAT(asPairs(v.space.fillValues()), ElementsAre(Pair(1, 4.0)));
    EXPECT_EQ(v.space.graph[0].value, 0.0);
}

TEST(FillValuesTest, ASpaceWithoutObjects_CountsZero) {
    Valued v({{box(0, 0, 10, 10), -1.0}});
    v.space.createSpace(box(50, 50, 10, 10));
    EXPECT_THAT(asPairs(v.space.fillValues()), ElementsAre(Pair(1, 0.0), Pair(0, -1.0)));
}

TEST(FillValuesTest, SumsThatAreNotANumber_StandLastInSlotOrder) {
    Valued v({{box(0, 0, 10, 10), kNaN},
              {box(100, 0, 10, 10), 1.0},
              {box(200, 0, 10, 10), kNaN},
              {box(300, 0, 10, 10), kInfinity}});
    const std::vector<VS_VALUE_ORDER> order = v.space.fillValues();
    ASSERT_EQ(order.size(), 4u);
    EXPECT_EQ(order[0].space, 3u);
    EXPECT_EQ(order[1].space, 1u);
    EXPECT_EQ(order[2].space, 0u);
    EXPECT_EQ(order[3].space, 2u);
}

TEST(CompareValuePairsTest, DescendingByValueAlone_FalseForWhatIsNotANumber) {
    EXPECT_TRUE(CompareValuePairs({9, 2.0}, {1, 1.0}));
    EXPECT_FALSE(CompareValuePairs({1, 1.0}, {9, 2.0}));
    EXPECT_FALSE(CompareValuePairs({1, 1.0}, {2, 1.0}));
    EXPECT_FALSE(CompareValuePairs({1, kNaN}, {2, 1.0}));
    EXPECT_FALSE(CompareValuePairs({1, 1.0}, {2, kNaN}));
}

// ---- summarizeGraph ----

class SummarizeGraphTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};
    std::vector<std::uint32_t> list;

    SummarizeGraphTest() {
        space.createSpace(box(0, 0, 100, 100));  // 0: contains 1 and 2
        space.createSpace(box(10, 10, 20, 20));  // 1: contains 2
        space.createSpace(box(15, 15, 5, 5));    // 2
        space.createSpace(box(200, 0, 50, 50));  // 3: apart
        space.createSpace(box(10, 10, 20, 20));  // 4: equal to 1
        space.createSpace(box(90, 90, 150, 10)); // 5: crosses 0
    }
};

TEST_F(SummarizeGraphTest, LargerSpace_SwallowsThoseInsideIt_KeepingTheOrderOfTheRest) {
    list = {2, 3, 1, 5};
    space.summarizeGraph(list, 0);
    EXPECT_THAT(list, ElementsAre(3, 5, 0));
}

TEST_F(SummarizeGraphTest, SpaceInsideAnEntry_IsRefused) {
    list = {3, 0};
    space.summarizeGraph(list, 2);
    EXPECT_THAT(list, ElementsAre(3, 0));
}

TEST_F(SummarizeGraphTest, EqualRectangle_ReplacesTheEntry) {
    list = {1, 3};
    space.summarizeGraph(list, 4);
    EXPECT_THAT(list, ElementsAre(3, 4));
}

TEST_F(SummarizeGraphTest, CrossingSpaces_StandSideBySide) {
    space.summarizeGraph(list, 5);
    space.summarizeGraph(list, 0);
    EXPECT_THAT(list, ElementsAre(5, 0));
}

TEST_F(SummarizeGraphTest, GoesFromTheLastEntryToTheFirst) {
    // No list that grew from offers holds a space with one inside it, but it shows the order: 2 is removed before 0
    // refuses the offer.
    list = {0, 2};
    space.summarizeGraph(list, 1);
    EXPECT_THAT(list, ElementsAre(0));
    list = {2, 0};
    space.summarizeGraph(list, 1);
    EXPECT_THAT(list, ElementsAre(2, 0));
}

// ---- summarizeTier ----

TEST(SummarizeTierTest, EmptyList_AppendsNothing) {
    Valued v({{box(0, 0, 10, 10), 5.0}});
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list;
    v.space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, IsEmpty());
}

TEST(SummarizeTierTest, ScoreIsValueTimesOverlapOfAllObjects_DensityIsScorePerPixel) {
    // A 100 by 100 worth 2, B 100 by 100 worth 3, 50 by 50 in common, C apart.
    Valued v({{box(0, 0, 100, 100), 2.0}, {box(50, 50, 100, 100), 3.0}, {box(500, 0, 10, 10), 4.0}});
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0, 1};
    v.space.summarizeTier(list, map);
    // A: 2 × 10000 + 3 × 2500 = 27500. B: 2 × 2500 + 3 × 10000 = 35000.
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(50, 50, 100, 100), 3.5)));
    list = {2};
    v.space.summarizeTier(list, map); // the common part: (2 + 3) × 2500 / 2500, appended behind
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(50, 50, 100, 100), 3.5), Pair(box(50, 50, 50, 50), 5.0)));
    EXPECT_THAT(map.tier4Rects, IsEmpty());
}

TEST(SummarizeTierTest, EqualScores_TheEarlierInTheListWins) {
    Valued v({{box(0, 0, 10, 10), 2.0}, {box(100, 0, 10, 10), 2.0}});
    for (const std::vector<std::uint32_t>& order : {std::vector<std::uint32_t>{0, 1}, {1, 0}}) {
        VS_VALUE_MAP map;
        std::vector<std::uint32_t> list = order;
        v.space.summarizeTier(list, map);
        EXPECT_THAT(map.spaces, ElementsAre(Pair(v.space.graph[order[0]].rect, 2.0)));
    }
}

TEST(SummarizeTierTest, AScoreJustAboveTheEarlier_Wins) {
    Valued v({{box(0, 0, 10, 10), 2.0}, {box(100, 0, 10, 10), std::nextafter(2.0, 3.0)}});
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0, 1};
    v.space.summarizeTier(list, map);
    ASSERT_EQ(map.spaces.size(), 1u);
    EXPECT_EQ(map.spaces[0].first, box(100, 0, 10, 10));
}

TEST(SummarizeTierTest, AnyScoreAboveZero_Wins) {
    Valued v({{box(0, 0, 10, 10), 0.0078125}}); // a score of 0.78125
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0};
    v.space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(0, 0, 10, 10), 0.0078125)));
}

TEST(SummarizeTierTest, ZeroOrNegativeScore_NeverWins) {
    Valued v({{box(0, 0, 10, 10), 0.0}, {box(100, 0, 10, 10), -3.0}, {box(200, 0, 10, 10), kNaN}});
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0, 1, 2};
    v.space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, IsEmpty());
}

TEST(SummarizeTierTest, WithoutObjects_NothingScores) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    space.createSpace(box(0, 0, 10, 10));
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0};
    space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, IsEmpty());
}

TEST(SummarizeTierTest, AnObjectCountsWithTheRectangleOfItsSpace) {
    // The second object is 16 pixels smaller all around and shares the space: 1 × 10000 + 2 × 10000 over 10000. With its
    // own 68 by 68 it would be 1.9248.
    Valued v({{box(0, 0, 100, 100), 1.0}, {box(16, 16, 68, 68), 2.0}});
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0};
    v.space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(0, 0, 100, 100), 3.0)));
}

TEST(SummarizeTierTest, AddsInAscendingObjectOrder) {
    // (1e16 + 1) − 1e16 is 0 in doubles, (1e16 − 1e16) + 1 is 1. An area of 1 leaves the values as they are.
    OV_DATA_STORE store;
    for (const double value : {1e16, 1.0, -1e16}) {
        store.valueObjects.push_back({Click, 0.0, 1.0, box(0, 0, 1, 1), value});
    }
    ValueSpace space(&store);
    for (const unsigned object : {0u, 2u, 1u}) {
        space.insertObject(object); // the order of the list, in which they sum up to 1
    }
    EXPECT_THAT(asPairs(space.fillValues()), ElementsAre(Pair(0, 1.0)));
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0};
    space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, IsEmpty()); // a score of 0
}

// ---- summarize ----

TEST(SummarizeTest, NoSpaces_GivesAnEmptyMapWithItsSpan) {
    Valued v({});
    for (const VS_VALUE_MAP& map : {v.space.summarize(2.5), v.space.quickSummarize(2.5)}) {
        EXPECT_THAT(map.spaces, IsEmpty());
        EXPECT_THAT(map.tier4Rects, IsEmpty());
        EXPECT_EQ(map.span, 2.5);
    }
}

TEST(SummarizeTest, OneObjectAlone_GivesOnePair) {
    Valued v({{box(10, 10, 40, 20), 5.0}});
    const VS_VALUE_MAP map = v.space.summarize(1.0);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(10, 10, 40, 20), 5.0)));
    EXPECT_EQ(map.span, 1.0);
}

TEST(SummarizeTest, LowestThreshold_CountsWhenMetExactly) {
    for (const double span : {1.0, 0.3, 2.5}) {
        EXPECT_EQ(Valued({{box(0, 0, 10, 10), span}}).space.summarize(span).spaces.size(), 1u);
        EXPECT_EQ(Valued({{box(0, 0, 10, 10), below(span)}}).space.summarize(span).spaces.size(), 0u);
    }
}

TEST(SummarizeTest, FirstElementBelowAllTiersButTheLast_FallsThroughAllHandOvers) {
    Valued v({{box(0, 0, 10, 10), 1.5}, {box(100, 0, 20, 20), 1.0}});
    // Both in tier 1, apart: 1.5 × 100 against 1.0 × 400.
    EXPECT_THAT(v.space.summarize(1.0).spaces, ElementsAre(Pair(box(100, 0, 20, 20), 1.0)));
}

TEST(SummarizeTest, WalkEndsBelowTheLastTier) {
    Valued v({{box(0, 0, 10, 10), 1.0}, {box(100, 0, 90, 90), below(1.0)}});
    EXPECT_THAT(v.space.summarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 10, 10), 1.0)));
}

TEST(SummarizeTest, UpperTiers_AreCumulative_SoALargeHotRectangleHidesSmallerCoolerOnes) {
    // Apart from each other. The hottest scores 12 × 10000 and wins every tier down to 4; repeats are removed.
    Valued v({{box(0, 0, 100, 100), 12.0},
              {box(200, 0, 10, 10), 10.0},
              {box(300, 0, 10, 10), 8.0},
              {box(400, 0, 10, 10), 6.0},
              {box(500, 0, 10, 10), 4.0}});
    EXPECT_THAT(v.space.summarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 100, 100), 12.0)));
}

TEST(SummarizeTest, EveryTierFindsItsOwn_WhenEachLowerOneScoresHigher) {
    // Apart from each other. The scores rise from tier to tier: 1200, 4000, 7200, 9600, 10000, 10800, 16200, 22500.
    Valued v({{box(0, 0, 10, 10), 12.0},
              {box(200, 0, 20, 20), 10.0},
              {box(400, 0, 30, 30), 8.0},
              {box(600, 0, 40, 40), 6.0},
              {box(800, 0, 50, 50), 4.0},
              {box(1000, 0, 60, 60), 3.0},
              {box(1200, 0, 90, 90), 2.0},
              {box(1400, 0, 150, 150), 1.0}});
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(0, 0, 10, 10), 12.0), Pair(box(200, 0, 20, 20), 10.0),
                            Pair(box(400, 0, 30, 30), 8.0), Pair(box(600, 0, 40, 40), 6.0),
                            Pair(box(800, 0, 50, 50), 4.0), Pair(box(1000, 0, 60, 60), 3.0),
                            Pair(box(1200, 0, 90, 90), 2.0), Pair(box(1400, 0, 150, 150), 1.0)));
}

TEST(SummarizeTest, Thresholds_ProbedJustBelowAndOn) {
    // Three objects apart: a small hot one of tier 12, the one under test, and a large one a breath cooler. In one tier
    // the large one hides the one under test; when only the latter reaches the threshold, they part and both show.
    for (const double tier : {10.0, 8.0, 6.0, 4.0, 3.0, 2.0}) {
        const double span = 0.7;
        const double threshold = tier == 2.0 ? span + span : tier * span;
        const auto pairsWith = [&](double value) {
            Valued v({{box(0, 0, 10, 10), 12.0 * span},
                      {box(100, 0, 20, 20), value},
                      {box(200, 0, 400, 400), below(value)}});
            return v.space.summarize(span).spaces.size();
        };
        EXPECT_EQ(pairsWith(below(threshold)), 2u) << "tier " << tier;
        EXPECT_EQ(pairsWith(threshold), 3u) << "tier " << tier;
        EXPECT_EQ(pairsWith(std::nextafter(threshold, kInfinity)), 2u) << "tier " << tier;
    }
    // Tier 12 itself: above it there is nothing.
    const double threshold = 12.0 * 0.7;
    Valued on({{box(100, 0, 20, 20), threshold}, {box(200, 0, 400, 400), below(threshold)}});
    EXPECT_EQ(on.space.summarize(0.7).spaces.size(), 2u);
    Valued under({{box(100, 0, 20, 20), below(threshold)}, {box(200, 0, 400, 400), below(below(threshold))}});
    EXPECT_EQ(under.space.summarize(0.7).spaces.size(), 1u);
}

TEST(SummarizeTest, BrokenChain_TierThreeStartsAfresh) {
    // With the chain whole, the large rectangle of tier 4 would win tier 3 as well and hide the second object.
    Valued v({{box(0, 0, 100, 100), 4.0}, {box(200, 0, 10, 10), 3.0}});
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(0, 0, 100, 100), 4.0), Pair(box(200, 0, 10, 10), 3.0)));
}

TEST(SummarizeTest, BrokenChain_LowerTiersAreCumulativeAmongThemselves) {
    // The object of tier 3 scores 3 × 100 and wins tiers 2 and 1 from the later ones of 2 × 100 and 1 × 100.
    Valued v({{box(0, 0, 100, 100), 4.0},
              {box(200, 0, 10, 10), 3.0},
              {box(300, 0, 10, 10), 2.0},
              {box(400, 0, 10, 10), 1.0}});
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(0, 0, 100, 100), 4.0), Pair(box(200, 0, 10, 10), 3.0)));
}

TEST(SummarizeTest, BrokenChain_TierTwoLosesItsCopyWhenTierThreeHandsOver) {
    // Nothing of tier 3: its empty list replaces the copy of tier 4's in tier 2, where the object of 2.5 then wins.
    Valued v({{box(0, 0, 100, 100), 4.0}, {box(200, 0, 10, 10), 2.5}});
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(0, 0, 100, 100), 4.0), Pair(box(200, 0, 10, 10), 2.5)));
    Valued lower({{box(0, 0, 100, 100), 4.0}, {box(200, 0, 10, 10), 1.5}});
    EXPECT_THAT(lower.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(0, 0, 100, 100), 4.0), Pair(box(200, 0, 10, 10), 1.5)));
}

TEST(SummarizeTest, CoolerTierOfTheUpperChain_SwallowsTheHotterRectangleInsideIt) {
    // Outer worth 6, inner 2: the inner space sums up to 8. Tier 8 is the inner one, tier 6 the outer alone.
    Valued v({{box(0, 0, 100, 100), 6.0}, {box(20, 20, 50, 50), 2.0}});
    // Density of the outer: 6 + 2 × 2500 / 10000.
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(20, 20, 50, 50), 8.0), Pair(box(0, 0, 100, 100), 6.5)));
    // The quick summary asks for tier 4 alone, which reaches out to the outer one.
    EXPECT_THAT(v.space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 100, 100), 6.5)));
}

TEST(SummarizeTest, LowerChain_NeverSwallowsTierFour) {
    // Outer worth 3, inner 2: the inner space is of tier 4, the outer of tier 3.
    Valued v({{box(0, 0, 100, 100), 3.0}, {box(20, 20, 50, 50), 2.0}});
    EXPECT_THAT(v.space.summarize(1.0).spaces,
                ElementsAre(Pair(box(20, 20, 50, 50), 5.0), Pair(box(0, 0, 100, 100), 3.5)));
    EXPECT_THAT(v.space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(20, 20, 50, 50), 5.0)));
}

TEST(SummarizeTest, SpanOfZero_PutsAllSpacesInOneList) {
    Valued v({{box(0, 0, 10, 10), 5.0}, {box(100, 0, 20, 20), 1.0}});
    const VS_VALUE_MAP map = v.space.summarize(0.0);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(0, 0, 10, 10), 5.0))); // 500 against 400
    EXPECT_EQ(map.span, 0.0);
}

TEST(SummarizeTest, SpanOfZero_ValuesOfZero_AddNoPair) {
    Valued v({{box(0, 0, 10, 10), 0.0}, {box(100, 0, 20, 20), 0.0}});
    EXPECT_THAT(v.space.summarize(0.0).spaces, IsEmpty());
    EXPECT_THAT(v.space.quickSummarize(0.0).spaces, IsEmpty());
}

TEST(SummarizeTest, SpanThatIsNotANumber_ReachesNoTier) {
    Valued v({{box(0, 0, 10, 10), 5.0}});
    EXPECT_THAT(v.space.summarize(kNaN).spaces, IsEmpty());
}

TEST(SummarizeTest, ChangesNothingButTheValues) {
    Valued v({{box(0, 0, 100, 100), 6.0}, {box(50, 50, 100, 100), 2.0}});
    const std::vector<OV_INTERSECTION> before = v.space.graph;
    v.space.summarize(1.0);
    v.space.quickSummarize(1.0);
    for (std::size_t s = 0; s < before.size(); ++s) {
        EXPECT_EQ(v.space.graph[s].rect, before[s].rect);
        EXPECT_EQ(v.space.graph[s].parents, before[s].parents);
        EXPECT_EQ(v.space.graph[s].children, before[s].children);
        EXPECT_EQ(v.space.graph[s].objects, before[s].objects);
    }
    EXPECT_THAT(v.space.topSpaces, ElementsAre(0, 1));
    EXPECT_EQ(v.space.graph[2].value, 8.0);
}

// ---- quickSummarize ----

TEST(QuickSummarizeTest, Threshold_ProbedJustBelowAndOn) {
    const double threshold = 4.0 * 2.5;
    EXPECT_THAT(Valued({{box(0, 0, 10, 10), threshold}}).space.quickSummarize(2.5).spaces,
                ElementsAre(Pair(box(0, 0, 10, 10), threshold)));
    EXPECT_THAT(Valued({{box(0, 0, 10, 10), below(threshold)}}).space.quickSummarize(2.5).spaces, IsEmpty());
}

TEST(QuickSummarizeTest, LooksAtTierFourAndAboveAsOneList) {
    Valued v({{box(0, 0, 10, 10), 12.0}, {box(100, 0, 30, 30), 4.0}, {box(200, 0, 90, 90), 3.9}});
    EXPECT_THAT(v.space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(100, 0, 30, 30), 4.0)));
    EXPECT_EQ(v.space.quickSummarize(1.0).span, 1.0);
}

TEST(QuickSummarizeTest, WritesEveryValue_ThoseBelowTheThresholdAndOfFreeSlotsToo) {
    Valued v({{box(0, 0, 10, 10), 5.0}, {box(100, 0, 10, 10), 1.0}, {box(200, 0, 10, 10), 2.0}});
    v.space.fillValues();
    v.space.deleteObject(2);
    v.store.valueObjects[1].value = 0.5;
    v.space.quickSummarize(1.0);
    EXPECT_EQ(v.space.graph[0].value, 5.0);
    EXPECT_EQ(v.space.graph[1].value, 0.5);
    EXPECT_EQ(v.space.graph[2].value, 0.0);
}

TEST(QuickSummarizeTest, GeneratedValues_EqualTheWalkOverAllSpacesInOrder) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](std::int32_t limit) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(limit + 1));
    };
    for (int round = 0; round < 300; ++round) {
        // Few values and few sizes: many sums and scores are equal, and some are exactly on the threshold.
        Pairs objects;
        for (std::int32_t k = upTo(12); k >= 0; --k) {
            objects.emplace_back(box(upTo(6) * 20, upTo(6) * 20, 40, 40), upTo(40) == 0 ? kNaN : upTo(5));
        }
        Valued v(objects);
        VS_VALUE_MAP expected;
        std::vector<std::uint32_t> list;
        for (const VS_VALUE_ORDER& entry : v.space.fillValues()) {
            if (!(entry.value >= 4.0)) {
                break;
            }
            v.space.summarizeGraph(list, entry.space);
        }
        v.space.summarizeTier(list, expected);
        ASSERT_EQ(v.space.quickSummarize(1.0).spaces, expected.spaces);
    }
}

TEST(QuickSummarizeTest, SpanThatIsNotANumber_HasNoSumBelowIt) {
    // 1 × 900 and nothing of the object of 0 against 5 × 100.
    Valued v({{box(0, 0, 10, 10), 5.0}, {box(100, 0, 30, 30), 1.0}, {box(200, 0, 90, 90), 0.0}});
    const VS_VALUE_MAP map = v.space.quickSummarize(kNaN);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(100, 0, 30, 30), 1.0)));
    EXPECT_TRUE(std::isnan(map.span));
    EXPECT_EQ(v.space.graph[0].value, 5.0);
}

// ---- cleanValueMap ----

TEST(CleanValueMapTest, EmptyMap_StaysEmpty) {
    VS_VALUE_MAP map;
    ValueSpace::cleanValueMap(map);
    EXPECT_THAT(map.spaces, IsEmpty());
}

TEST(CleanValueMapTest, SameRectangleThrice_KeepsTheFirstWhenItIsWorthMost) {
    const Rectangle a = box(0, 0, 10, 10);
    const Rectangle b = box(50, 0, 10, 10);
    VS_VALUE_MAP map;
    map.spaces = {{a, 3.0}, {b, 9.0}, {a, 3.0}, {a, 2.0}, {b, 1.0}};
    ValueSpace::cleanValueMap(map);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(a, 3.0), Pair(b, 9.0)));
}

TEST(CleanValueMapTest, RepeatWorthMore_Stays_AndThenTakesTheLaterOnes) {
    const Rectangle a = box(0, 0, 10, 10);
    VS_VALUE_MAP map;
    map.spaces = {{a, 2.0}, {a, std::nextafter(2.0, 3.0)}, {a, 1.0}, {a, 2.0}};
    ValueSpace::cleanValueMap(map);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(a, 2.0), Pair(a, std::nextafter(2.0, 3.0))));
}

TEST(CleanValueMapTest, RectanglesThatDiffer_AndValuesThatAreNotNumbers_Stay) {
    const Rectangle a = box(0, 0, 10, 10);
    VS_VALUE_MAP map;
    map.spaces = {{a, 3.0}, {box(0, 0, 10, 11), 3.0}, {a, kNaN}};
    ValueSpace::cleanValueMap(map);
    EXPECT_EQ(map.spaces.size(), 3u);
}

// The definition: each pair that is left takes away the later ones of its rectangle that are worth no more.
Pairs plainlyCleaned(Pairs spaces) {
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        for (std::size_t j = i + 1; j < spaces.size();) {
            if (spaces[i].second >= spaces[j].second && spaces[i].first == spaces[j].first) {
                spaces.erase(spaces.begin() + static_cast<std::ptrdiff_t>(j));
            } else {
                ++j;
            }
        }
    }
    return spaces;
}

TEST(CleanValueMapTest, GeneratedMaps_EqualTheDefinition) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        VS_VALUE_MAP map;
        for (std::size_t count = random() % 20; map.spaces.size() < count;) {
            map.spaces.emplace_back(box(0, 0, static_cast<std::int32_t>(random() % 3), 10),
                                    random() % 10 == 0 ? kNaN : static_cast<double>(random() % 4));
        }
        const Pairs expected = plainlyCleaned(map.spaces);
        ValueSpace::cleanValueMap(map);
        ASSERT_EQ(map.spaces.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(map.spaces[i].first, expected[i].first);
            ASSERT_TRUE(map.spaces[i].second == expected[i].second || std::isnan(expected[i].second));
        }
    }
}

TEST(CleanValueMapTest, TouchesTheSpacesAlone) {
    VS_VALUE_MAP map;
    map.span = 4.0;
    map.tier4Rects = {box(0, 0, 1, 1), box(0, 0, 1, 1)};
    ValueSpace::cleanValueMap(map);
    EXPECT_EQ(map.span, 4.0);
    EXPECT_EQ(map.tier4Rects.size(), 2u);
}

// ---- The definition as yardstick ----

// The outermost of the rectangles whose sum lies from `low` to below `high`, and of those the one with the best score.
Pairs plainTier(const OV_DATA_STORE& store, const testing::PlainGraph& graph, double low, double high) {
    std::vector<Rectangle> reached;
    for (const auto& [edges, space] : graph) {
        double sum = 0.0;
        for (const std::uint32_t object : space.objects) {
            sum += store.valueObjects[object].value;
        }
        if (sum >= low && sum < high) {
            reached.push_back(testing::rectOf(edges));
        }
    }
    Rectangle best;
    double bestScore = 0.0;
    for (const Rectangle& rect : reached) {
        if (std::any_of(reached.begin(), reached.end(),
                        [&](const Rectangle& other) { return other != rect && contains(other, rect); })) {
            continue;
        }
        double score = 0.0;
        for (const OV_VALUE_OBJECT& object : store.valueObjects) {
            score += object.value * area(intersection(object.rect, rect));
        }
        if (score > bestScore) {
            best = rect;
            bestScore = score;
        }
    }
    return isEmpty(best) ? Pairs{} : Pairs{{best, bestScore / area(best)}};
}

TEST(SummaryPropertyTest, GeneratedValues_GiveWhatTheTiersSay) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](std::int32_t limit) {
        return static_cast<std::int32_t>(random() % static_cast<unsigned>(limit + 1));
    };
    int checked = 0;
    for (int round = 0; round < 400; ++round) {
        OV_DATA_STORE store;
        ValueSpace space(&store);
        bool whole = true;
        const std::int32_t count = 1 + upTo(8);
        for (std::int32_t k = 0; k < count; ++k) {
            // Edges on a coarse grid, so that no two rectangles count as one by being nearly the same; values in
            // multiples of 2^-28, so that every sum and every score is exact in any order and no two scores are equal.
            const std::int32_t x = upTo(7) * 20;
            const std::int32_t y = upTo(5) * 20;
            store.valueObjects.push_back(
                {Click, 0.0, 1.0, box(x, y, 20 + upTo(5) * 20, 20 + upTo(5) * 20), upTo(6 << 28) / 268435456.0});
            const auto links = testing::linksOf(space);
            space.insertObject(static_cast<unsigned>(k));
            whole = whole && !testing::hasLostLinks(space, links);
        }
        if (!whole) {
            continue;
        }
        ++checked;
        const testing::PlainGraph graph = testing::plainGraphOf(space);
        const double span = (1 + upTo(3)) / 2.0;
        const auto tier = [&](double low, double high) { return plainTier(store, graph, low * span, high * span); };

        ASSERT_EQ(space.quickSummarize(span).spaces, tier(4.0, kInfinity));

        VS_VALUE_MAP expected;
        for (const Pairs& found :
             {tier(12.0, kInfinity), tier(10.0, kInfinity), tier(8.0, kInfinity), tier(6.0, kInfinity),
              tier(4.0, kInfinity), tier(3.0, 4.0), tier(2.0, 4.0), tier(1.0, 4.0)}) {
            const auto known = [&](const auto& pair) { return !found.empty() && pair.first == found[0].first; };
            if (std::none_of(expected.spaces.begin(), expected.spaces.end(), known)) {
                expected.spaces.insert(expected.spaces.end(), found.begin(), found.end());
            }
        }
        ASSERT_EQ(space.summarize(span).spaces, expected.spaces);
    }
    EXPECT_GT(checked, 100);
}

// ---- Floods ----

TEST(FloodTest, ThousandsOfObjects_AtOnePlaceOrAtSeveral_EqualThePlainSummaries) {
    // So many are not laid out for the first space that is scored.
    for (const std::int32_t places : {1, 3}) {
        Pairs objects;
        for (std::int32_t i = 0; i < 4200; ++i) {
            objects.emplace_back(box(i % places * 60, 0, 100, 100 + i % places), i % 7 * 0.3);
        }
        Valued v(objects);
        for (const double span : {1.0, 700.0, 1500.0}) {
            EXPECT_TRUE(testing::sameMap(v.space.summarize(span), testing::plainSummary(v.space, span))) << span;
            EXPECT_TRUE(testing::sameMap(v.space.quickSummarize(span), testing::plainQuickSummary(v.space, span)))
                << span;
        }
        EXPECT_FALSE(v.space.summarize(1.0).spaces.empty());
    }
}

} // namespace
} // namespace OrvantaNS
