#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "Slices.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::valueMap;
using Space = std::pair<Rectangle, double>;
using Spaces = std::vector<Space>;

const OrvantaWorker worker;

// A strip of 10 pixels' height from `left` to `right`: its area is ten times its width.
constexpr Rectangle strip(int left, int right) { return {left, right, 0, 10}; }

// ---- getTier4Rect ----

TEST(GetTier4RectTest, NothingReachesTheTier_GivesTheAllZeroRectangle) {
    EXPECT_EQ(worker.getTier4Rect(valueMap(2.0, {})), Rectangle{});
    EXPECT_EQ(worker.getTier4Rect(valueMap(2.0, {{box(1, 2, 30, 40), 7.999}})), Rectangle{});
}

TEST(GetTier4RectTest, ValueExactlyFourTimesTheSpan_IsHot) {
    EXPECT_EQ(worker.getTier4Rect(valueMap(2.0, {{box(1, 2, 30, 40), 8.0}})), box(1, 2, 30, 40));
}

TEST(GetTier4RectTest, SeveralHotSpaces_GivesTheirBounds) {
    EXPECT_EQ(worker.getTier4Rect(valueMap(1.0, {{box(0, 0, 10, 10), 9.0}, {box(50, 70, 10, 10), 4.0}})),
              (Rectangle{0, 60, 0, 80}));
}

TEST(GetTier4RectTest, ColdSpaceBeforeAHotOne_EndsTheWalk) {
    EXPECT_EQ(worker.getTier4Rect(valueMap(1.0, {{box(0, 0, 10, 10), 9.0}, {strip(0, 90), 3.9}, {strip(0, 500), 9.0}})),
              box(0, 0, 10, 10));
}

TEST(GetTier4RectTest, EmptyHotSpace_IsReplacedByTheNext) {
    EXPECT_EQ(worker.getTier4Rect(valueMap(1.0, {{Rectangle{500, 400, 0, 10}, 9.0}, {strip(20, 30), 5.0}})),
              strip(20, 30));
    // Once the result is not empty, an empty space still takes part in the bounds.
    EXPECT_EQ(worker.getTier4Rect(valueMap(1.0, {{strip(20, 30), 9.0}, {Rectangle{50, 50, 2, 4}, 5.0}})),
              strip(20, 50));
}

TEST(GetTier4RectTest, GatheredHotRectangles_AnswerWhateverTheSpacesSay) {
    VS_VALUE_MAP map = valueMap(1.0, {{strip(0, 500), 9.0}});
    map.tier4Rects = {strip(20, 30)};
    EXPECT_EQ(worker.getTier4Rect(map), strip(20, 30));
    map.tier4Rects = {strip(20, 30), strip(60, 70)};
    EXPECT_EQ(worker.getTier4Rect(map), strip(20, 70));
    // No test for emptiness: an all-zero entry pulls the bounds to the origin.
    map.tier4Rects = {strip(20, 30), Rectangle{}};
    EXPECT_EQ(worker.getTier4Rect(map), strip(0, 30));
}

// ---- summarizeMerge ----

Space summarize(Spaces spaces, double threshold) {
    VS_VALUE_MAP map = valueMap(1.0, std::move(spaces));
    const Spaces before = map.spaces;
    const Space result = worker.summarizeMerge(map, threshold);
    EXPECT_EQ(map.spaces, before);
    return result;
}

TEST(SummarizeMergeTest, FewerThanTwoSpaces_GivesNothing) {
    EXPECT_EQ(summarize({}, 0.0), Space({}, 0.0));
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}}, 1.0), Space({}, 0.0));
}

TEST(SummarizeMergeTest, FirstSpaceBelowTheThreshold_GivesNothing) {
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(0, 20), 5.0}}, 9.1), Space({}, 0.0));
}

TEST(SummarizeMergeTest, FirstSpaceOnTheThreshold_IsTaken) {
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(0, 20), 5.0}}, 9.0), Space(strip(0, 10), 9.0));
}

TEST(SummarizeMergeTest, LargerSpaceAroundTheCurrentOne_SpreadsTheExcess) {
    // (9 - 5) x 100 / 200 + 5 = 7.
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(0, 20), 5.0}}, 5.0), Space(strip(0, 20), 7.0));
    // An equal rectangle counts as larger: (9 - 5) x 100 / 100 + 5 = 9.
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(0, 10), 5.0}}, 5.0), Space(strip(0, 10), 9.0));
}

TEST(SummarizeMergeTest, SpaceBelowTheThreshold_EndsTheWalk) {
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(0, 20), 4.9}, {strip(0, 40), 8.0}}, 5.0),
              Space(strip(0, 10), 9.0));
}

TEST(SummarizeMergeTest, SpaceElsewhere_WinsByWeightOnly) {
    // Weight of the first: 100 x 9 = 900. A strip of 180 weighs the same at 5, one of 190 more.
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(100, 118), 5.0}}, 5.0), Space(strip(0, 10), 9.0));
    EXPECT_EQ(summarize({{strip(0, 10), 9.0}, {strip(100, 119), 5.0}}, 5.0), Space(strip(100, 119), 5.0));
}

TEST(SummarizeMergeTest, WalkGoesOnFromTheNewCurrentSpace) {
    // The second weighs 2000 and replaces the first; the third is around the second, not the first:
    // (5 - 2) x 400 / 500 + 2 = 4.4.
    const Space result = summarize({{strip(0, 10), 9.0}, {strip(100, 140), 5.0}, {strip(95, 145), 2.0}}, 1.0);
    EXPECT_EQ(result.first, strip(95, 145));
    EXPECT_DOUBLE_EQ(result.second, 4.4);
}

TEST(SummarizeMergeTest, EmptySpaces_DivideByZeroWithoutAGuard) {
    const Space result = summarize({{Rectangle{5, 5, 0, 10}, 9.0}, {Rectangle{5, 5, 0, 20}, 4.0}}, 1.0);
    EXPECT_EQ(result.first, (Rectangle{5, 5, 0, 20}));
    EXPECT_TRUE(std::isnan(result.second));
    // (9 - 5) x 0 / 200 + 5 = 5: the first space is not held against itself, which would divide by zero.
    EXPECT_EQ(summarize({{Rectangle{5, 5, 0, 10}, 9.0}, {strip(0, 20), 5.0}}, 1.0), Space(strip(0, 20), 5.0));
}

// ---- mergeMaps ----

Spaces merge(double firstSpan, Spaces first, double nextSpan, Spaces next) {
    return worker.mergeMaps(valueMap(firstSpan, std::move(first)), valueMap(nextSpan, std::move(next))).spaces;
}

TEST(MergeMapsTest, TwoEmptyMaps_GivesAnEmptyMapOfBothSpans) {
    const VS_VALUE_MAP merged = worker.mergeMaps(valueMap(2.0, {}), valueMap(3.5, {}));
    EXPECT_TRUE(merged.spaces.empty());
    EXPECT_TRUE(merged.tier4Rects.empty());
    EXPECT_DOUBLE_EQ(merged.span, 5.5);
}

TEST(MergeMapsTest, SingleSpaceWithAnEmptyMap_IsLost) {
    const VS_VALUE_MAP map = valueMap(1.0, {{strip(0, 10), 50.0}});
    EXPECT_TRUE(worker.mergeMaps(map, valueMap(1.0, {})).spaces.empty());
    EXPECT_TRUE(worker.mergeMaps(valueMap(1.0, {}), map).spaces.empty());
}

TEST(MergeMapsTest, HotRectanglesOfTheInputs_AreNotHandedOn) {
    VS_VALUE_MAP map = valueMap(1.0, {{strip(0, 10), 50.0}});
    map.tier4Rects = {strip(0, 10)};
    const VS_VALUE_MAP merged = worker.mergeMaps(map, map);
    EXPECT_TRUE(merged.tier4Rects.empty());
    EXPECT_EQ(worker.getTier4Rect(merged), Rectangle{});
}

// The stack is the sum 7, the 4 of the second and the 3 of the first, all of one rectangle: one space remains, which
// gives nothing.
TEST(MergeMapsTest, OneEqualRectangleInBoth_GivesAnEmptyMap) {
    EXPECT_TRUE(merge(0.5, {{strip(0, 10), 3.0}}, 0.5, {{strip(0, 10), 4.0}}).empty());
}

// span 2. Tiers 24: 20 is below. 20, 16, 12: the inner one. 8, 6, 4, 2: the outer one, (20 - 8) x 100 / 400 + 8 = 11.
TEST(MergeMapsTest, NestedTiersWithAnEmptyMap_KeepInnerAndOuter) {
    const Spaces nested = {{box(0, 0, 10, 10), 20.0}, {box(0, 0, 20, 20), 8.0}};
    const Spaces expected = {{box(0, 0, 10, 10), 20.0}, {box(0, 0, 20, 20), 11.0}};
    EXPECT_EQ(merge(1.0, nested, 1.0, {}), expected);
    // As the second map the inner layer is 12 and the outer one 8; the overlap adds up to 20 again.
    EXPECT_EQ(merge(1.0, {}, 1.0, nested), expected);
}

// P stands 10 high in the first map; as the second map its layer is 10 - 4 = 6, and nothing below it adds to it. Q, of
// weight 400, never outweighs it.
TEST(MergeMapsTest, DisjointTiersOfOneMap_OrderOfTheArgumentsMatters) {
    const Rectangle p = box(0, 0, 10, 10);
    const Rectangle q = box(100, 0, 10, 10);
    const Spaces tiers = {{p, 10.0}, {q, 4.0}};
    EXPECT_EQ(merge(0.5, tiers, 0.5, {}), (Spaces{{p, 10.0}}));
    EXPECT_EQ(merge(0.5, {}, 0.5, tiers), (Spaces{{p, 6.0}}));
}

// Layers of three: 20 - 12 = 8, 12 - 5 = 7 and 5, each in its own place. span 1: tiers 12 and 10 find nothing, tier 8
// takes the first (weight 800). Its 7 (weight 700) never replaces it, nor the 5 (weight 500).
TEST(MergeMapsTest, ThreeTiersOfTheSecondMap_AreLayersAgainstTheirSuccessor) {
    EXPECT_EQ(merge(0.5, {}, 0.5, {{strip(0, 10), 20.0}, {strip(20, 30), 12.0}, {strip(40, 50), 5.0}}),
              (Spaces{{strip(0, 10), 8.0}}));
    // Widened to 20 pixels, the layer of 7 weighs 1400 and wins from tier 6 down; widened to 60, the 5 weighs 3000 and
    // wins from tier 4 down.
    EXPECT_EQ(merge(0.5, {}, 0.5, {{strip(0, 10), 20.0}, {strip(20, 40), 12.0}, {strip(40, 100), 5.0}}),
              (Spaces{{strip(0, 10), 8.0}, {strip(20, 40), 7.0}, {strip(40, 100), 5.0}}));
}

// span 2: tiers 8 and 6 hold P alone; from tier 4 down Q counts, with weight 1600 x 5 against 100 x 10.
// The first layer of 39.2, 29.2 and 6.9 is (39.2 - 6.9) - (29.2 - 6.9), which lies above 39.2 - 29.2 in the last bits.
// span 1: tier 12 takes the second layer's place; from tier 10 on the first one's weighs more.
TEST(MergeMapsTest, Layers_AreTakenOffOneByOneFromTheLast) {
    ASSERT_NE(10.000000000000007, 39.2 - 29.2);
    const Spaces tiers = {{strip(0, 100), 39.2}, {strip(200, 210), 29.2}, {strip(300, 310), 6.9}};
    EXPECT_EQ(merge(0.5, {}, 0.5, tiers),
              (Spaces{{strip(200, 210), 22.299999999999997}, {strip(0, 100), 10.000000000000007}}));
}

TEST(MergeMapsTest, DisjointRectangles_TheHeavierTakesTheLowerTiers) {
    const Rectangle p = box(0, 0, 10, 10);
    const Rectangle q = box(0, 100, 40, 40);
    EXPECT_EQ(merge(1.0, {{p, 10.0}}, 1.0, {{q, 5.0}}), (Spaces{{p, 10.0}, {q, 5.0}}));
    EXPECT_EQ(merge(1.0, {{q, 5.0}}, 1.0, {{p, 10.0}}), (Spaces{{p, 10.0}, {q, 5.0}}));
}

TEST(MergeMapsTest, RectanglesThatShareAnEdge_AddNothing) {
    EXPECT_EQ(merge(0.5, {{strip(0, 10), 4.0}}, 0.5, {{strip(10, 20), 3.0}}), (Spaces{{strip(0, 10), 4.0}}));
}

// The common pixel has 7 + 6 and stands for the tiers down to 8; around it, (13 - 7) x 1 / 100 + 7.
TEST(MergeMapsTest, OverlapOfOnePixel_IsAnOverlap) {
    EXPECT_EQ(merge(0.5, {{box(0, 0, 10, 10), 7.0}}, 0.5, {{box(9, 9, 10, 10), 6.0}}),
              (Spaces{{box(9, 9, 1, 1), 13.0}, {box(0, 0, 10, 10), 6.0 / 100.0 + 7.0}}));
}

// The overlap of one column: 4 + 3 = 7 on 19..20, weight 70, outweighed at tier 4 by the first, 200 x 4.
TEST(MergeMapsTest, OverlapOfTwo_AddsTheirValues) {
    EXPECT_EQ(merge(0.5, {{strip(0, 20), 4.0}}, 0.5, {{strip(19, 39), 3.0}}),
              (Spaces{{strip(19, 20), 7.0}, {strip(0, 20), (7.0 - 4.0) * 10.0 / 200.0 + 4.0}}));
}

// First: 0-30 at 4. Second: 10-40 at 7, 20-50 at 3, so layers 4 and 3. The stack, sorted and without repeats:
// 20-30 11 (all three), 10-30 8, 20-40 7, 0-30 4, 10-40 4, 20-50 3. span 1:
// tier 12: nothing. 10: 20-30 at 11. 8: 10-30 around it, (11 - 8) x 100 / 200 + 8 = 9.5. 6: 20-40 weighs 1400 against
// 1900. 4: 0-30 around it, (9.5 - 4) x 200 / 300 + 4 = 23 / 3; 10-40 weighs 1200 against 2300. 3 to 1: no change.
TEST(MergeMapsTest, ThreeOverlappingLayers_AddUp) {
    const Spaces merged = merge(0.5, {{strip(0, 30), 4.0}}, 0.5, {{strip(10, 40), 7.0}, {strip(20, 50), 3.0}});
    ASSERT_EQ(merged.size(), 3u);
    EXPECT_EQ(merged[0], Space(strip(20, 30), 11.0));
    EXPECT_EQ(merged[1], Space(strip(10, 30), 9.5));
    EXPECT_EQ(merged[2].first, strip(0, 30));
    EXPECT_DOUBLE_EQ(merged[2].second, 23.0 / 3.0);
}

// Layers -3 and 5. The stack: 5 of the outer one, -3 + 5 = 2 and -3 of the inner one.
TEST(MergeMapsTest, ValueBelowItsSuccessor_GivesANegativeLayer) {
    EXPECT_EQ(merge(0.5, {}, 0.5, {{box(0, 0, 10, 10), 2.0}, {box(0, 0, 20, 20), 5.0}}),
              (Spaces{{box(0, 0, 20, 20), 5.0}}));
}

// Equal values keep their order in the stack, and an equal weight does not replace: the first map's rectangle stays.
TEST(MergeMapsTest, EqualValuesAndAreas_TheFirstMapsRectangleWins) {
    EXPECT_EQ(merge(0.5, {{strip(0, 10), 5.0}}, 0.5, {{strip(20, 30), 5.0}}), (Spaces{{strip(0, 10), 5.0}}));
    EXPECT_EQ(merge(0.5, {{strip(20, 30), 5.0}}, 0.5, {{strip(0, 10), 5.0}}), (Spaces{{strip(20, 30), 5.0}}));
}

// span 2, values around the eight thresholds 24, 20, 16, 12, 8, 6, 4, 2: one rectangle at the value, and one far away
// of no weight that brings the stack to two spaces.
TEST(MergeMapsTest, ValueOnATier_CountsForIt) {
    for (const double value : {24.0, 20.0, 16.0, 12.0, 8.0, 6.0, 4.0, 2.0}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(merge(1.0, {{strip(0, 10), value}}, 1.0, {{strip(50, 51), -100.0}}), (Spaces{{strip(0, 10), value}}));
    }
    EXPECT_TRUE(merge(1.0, {{strip(0, 10), 1.999}}, 1.0, {{strip(50, 51), -100.0}}).empty());
}

// Each tier picks its own rectangle: wider and wider strips side by side, each just on its tier (span 1) and heavier
// than the last. All eight appear, in tier order.
TEST(MergeMapsTest, EightTiers_AllAppearHighestFirst) {
    const Spaces ladder = {{strip(0, 10), 12.0},    {strip(100, 120), 10.0}, {strip(200, 230), 8.0},
                           {strip(300, 350), 6.0},  {strip(400, 500), 4.0},  {strip(600, 800), 3.0},
                           {strip(900, 1300), 2.0}, {strip(2000, 3000), 1.0}};
    EXPECT_EQ(merge(0.5, ladder, 0.5, {}), ladder);
}

// The thresholds rise from -12 to -1. The first four let the second space pass, which lies around the first:
// (1 + 5) x 100 / 200 - 5 = -2. The others end ahead of it.
TEST(MergeMapsTest, NegativeSpan_AsksForMoreFromTierToTier) {
    EXPECT_EQ(merge(-1.0, {{strip(0, 10), 1.0}, {strip(0, 20), -5.0}}, 0.0, {}),
              (Spaces{{strip(0, 20), -2.0}, {strip(0, 10), 1.0}}));
}

TEST(MergeMapsTest, GeneratedChains_KeepTheirLaws) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        const auto generate = [&] {
            VS_VALUE_MAP map = valueMap(0.25 * (1 + upTo(8)), {});
            double value = 40.0;
            for (int n = upTo(9); n > 0; --n) {
                value -= upTo(5);
                map.spaces.emplace_back(box(upTo(300), upTo(300), 1 + upTo(300), 1 + upTo(300)), value);
            }
            return map;
        };
        VS_VALUE_MAP chain = generate();
        for (int step = 0; step < 12; ++step) {
            const VS_VALUE_MAP next = generate();
            const VS_VALUE_MAP merged = worker.mergeMaps(chain, next);
            Rectangle bounds;
            for (const VS_VALUE_MAP* map : {&std::as_const(chain), &next}) {
                for (const Space& space : map->spaces) {
                    bounds = bounds.noZeroBound(space.first);
                }
            }
            ASSERT_EQ(merged.span, chain.span + next.span);
            ASSERT_LE(merged.spaces.size(), 8u);
            ASSERT_TRUE(merged.tier4Rects.empty());
            for (const Space& space : merged.spaces) {
                ASSERT_FALSE(isEmpty(space.first));
                ASSERT_TRUE(contains(bounds, space.first));
                // At every step of a summary the value stays at or above its tier, and the lowest tier is the span.
                ASSERT_GE(space.second, merged.span * (1.0 - 1e-12));
            }
            chain = merged;
        }
    }
}

} // namespace
} // namespace OrvantaNS
