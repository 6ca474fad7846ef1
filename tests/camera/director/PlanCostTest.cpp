#include "camera/director/PlanCost.h"

#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using namespace camera;

TEST(PlanCostTest, MoveExtent_CountsOctavesAndDiagonalsOfTheLargerFrame) {
    // From 300x400, whose diagonal is 500, into its half: the centre goes 75 by 100, a quarter of the diagonal.
    const MoveExtent in = moveExtent({0, 0, 300, 400}, {150, 200, 300, 400});
    EXPECT_NEAR(in.octaves, 1.0, 1e-12);
    EXPECT_NEAR(in.way, 0.25, 1e-12);
    const MoveExtent out = moveExtent({150, 200, 300, 400}, {0, 0, 300, 400});
    EXPECT_NEAR(out.octaves, 1.0, 1e-12);
    EXPECT_NEAR(out.way, 0.25, 1e-12);
}

TEST(PlanCostTest, MoveCost_WeighsOctavesAndWay_TimesCalm) {
    PlanRules rules;
    rules.calm = 2.0;
    rules.weights.move = 0.5;
    rules.weights.moveZoom = 0.25;
    rules.weights.moveWay = 3.0;
    EXPECT_NEAR(moveCost(rules, {1.0, 0.5}), 2.0 * (0.5 + 0.25 + 1.5), 1e-12);
}

TEST(PlanCostTest, BlurShare_GrowsToTheWholeAtHalfAnOctaveOrHalfADiagonal) {
    EXPECT_EQ(blurShare({0.0, 0.0}), 0.0);
    EXPECT_NEAR(blurShare({0.25, 0.0}), 0.5, 1e-12);
    EXPECT_NEAR(blurShare({0.0, 0.25}), 0.5, 1e-12);
    EXPECT_NEAR(blurShare({0.2, 0.2}), 0.8, 1e-12);
    EXPECT_EQ(blurShare({0.5, 0.0}), 1.0);
    EXPECT_EQ(blurShare({0.0, 0.5}), 1.0);
    EXPECT_EQ(blurShare({3.0, 2.0}), 1.0);
}

/// Presses of one step in the middle of a region of 1000 by 1000, for an output of 200 by 200.
PlanRules pressesAt(const std::vector<PlanPress>& presses) {
    PlanRules rules;
    rules.outputWidth = 200;
    rules.regionWidth = 1000;
    rules.regionHeight = 1000;
    rules.pressMargin = 24.0;
    rules.presses = presses;
    rules.pressEnds = {presses.size()};
    return rules;
}

TEST(PlanCostTest, HoldsPress_NeedsAPixelOfRoom_ButNotAtTheRegionsEdge) {
    const PlanRules rules = pressesAt({});
    const RealRect frame{0, 400, 200, 600};
    EXPECT_TRUE(holdsPress(rules, frame, {0, 199.0, 500.0, 30.0}));
    EXPECT_FALSE(holdsPress(rules, frame, {0, 199.5, 500.0, 30.0}));
    EXPECT_TRUE(holdsPress(rules, frame, {0, 100.0, 401.0, 30.0}));
    EXPECT_FALSE(holdsPress(rules, frame, {0, 100.0, 400.5, 30.0}));
    EXPECT_TRUE(holdsPress(rules, frame, {0, 0.5, 500.0, 30.0}));
    EXPECT_FALSE(holdsPress(rules, frame, {0, 100.0, 700.0, 30.0}));
}

TEST(PlanCostTest, RestPressCost_IsTheMissOutside_AndAPartOfItNearTheEdge) {
    const RealRect frame{400, 400, 600, 600};
    EXPECT_EQ(restPressCost(pressesAt({{0, 500.5, 500.5, 1000.0}}), frame, 0), 0.0);
    EXPECT_EQ(restPressCost(pressesAt({{0, 700.5, 500.5, 1000.0}}), frame, 0), 1000.0);
    // 12 of 24 pixels from the edge: half of a quarter of the miss, which is 7.5 at most.
    EXPECT_NEAR(restPressCost(pressesAt({{0, 588.0, 500.0, 20.0}}), frame, 0), 0.5 * 0.25 * 20.0, 1e-12);
    EXPECT_NEAR(restPressCost(pressesAt({{0, 588.0, 500.0, 1000.0}}), frame, 0), 0.5 * 7.5, 1e-12);
}

TEST(PlanCostTest, MovePressCost_IsSmallOnlyWhereBothEndsHoldThePress) {
    const RealRect from{400, 400, 600, 600};
    const RealRect to{500, 400, 700, 600};
    EXPECT_EQ(movePressCost(pressesAt({{0, 550.5, 500.5, 1000.0}}), from, to, 0, 1), 3.0);
    EXPECT_EQ(movePressCost(pressesAt({{0, 550.5, 500.5, 2.0}}), from, to, 0, 1), 2.0);
    EXPECT_EQ(movePressCost(pressesAt({{0, 450.5, 500.5, 1000.0}}), from, to, 0, 1), 1000.0);
    EXPECT_EQ(movePressCost(pressesAt({{0, 650.5, 500.5, 1000.0}, {0, 550.5, 500.5, 1000.0}}), from, to, 0, 1), 1003.0);
    EXPECT_EQ(movePressCost(pressesAt({}), from, to, 0, 1), 0.0);
}

} // namespace
} // namespace OrvantaNS::testing
