#include "camera/director/PlanCost.h"

#include <cmath>

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

} // namespace
} // namespace OrvantaNS::testing
