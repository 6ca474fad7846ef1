#include "camera/director/PlanCost.h"

#include <vector>

#include <gtest/gtest.h>

#include "EmptyScene.h"

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
    EXPECT_NEAR(moveCost(rules, {2.0, 0.5}), 2.0 * (0.5 + 0.5 + 1.5), 1e-12);
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
    EXPECT_TRUE(holdsPress(rules, frame, {0, 0.0, 500.0, 30.0}));
    // An edge a pixel from the region's is an edge.
    EXPECT_FALSE(holdsPress(rules, {1, 400, 201, 600}, {0, 1.5, 500.0, 30.0}));
    EXPECT_FALSE(holdsPress(rules, {400, 1, 600, 201}, {0, 500.0, 1.5, 30.0}));
    EXPECT_FALSE(holdsPress(rules, {799, 400, 999, 600}, {0, 998.5, 500.0, 30.0}));
    EXPECT_FALSE(holdsPress(rules, {400, 799, 600, 999}, {0, 500.0, 998.5, 30.0}));
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

TEST(PlanCostTest, RestPressCost_GoesByTheNearestOfTheFourEdges_AndTheRegionsDoNotCount) {
    const RealRect inside{400, 400, 600, 600};
    // 12 of 24 pixels from one of its edges.
    for (const auto& [x, y] : {std::pair(412.0, 500.0), {588.0, 500.0}, {500.0, 412.0}, {500.0, 588.0}}) {
        EXPECT_NEAR(restPressCost(pressesAt({{0, x, y, 20.0}}), inside, 0), 2.5, 1e-12) << x << ", " << y;
    }
    for (const RealRect& atTheEdge :
         {RealRect{0, 400, 200, 600}, {800, 400, 1000, 600}, {400, 0, 600, 200}, {400, 800, 600, 1000}}) {
        // A pixel from the region's edge, in the middle of the other dimension.
        const double x = atTheEdge.left == 0 ? 1 : atTheEdge.right == 1000 ? 999 : 500;
        const double y = atTheEdge.top == 0 ? 1 : atTheEdge.bottom == 1000 ? 999 : 500;
        EXPECT_EQ(restPressCost(pressesAt({{0, x, y, 20.0}}), atTheEdge, 0), 0.0) << x << ", " << y;
    }
    // Out of the frame at the region's edge is out all the same.
    EXPECT_EQ(restPressCost(pressesAt({{0, -1.0, 500.0, 20.0}}), {0, 400, 200, 600}, 0), 20.0);
}

TEST(PlanCostTest, RestPressCost_MarginIsInPixelsOfTheOutput) {
    // In a frame of twice the output's size 24 pixels are 48, and 12 are a quarter of the margin.
    EXPECT_NEAR(restPressCost(pressesAt({{0, 412.0, 600.0, 20.0}}), {400, 400, 800, 800}, 0), 0.75 * 5.0, 1e-12);
    EXPECT_EQ(restPressCost(pressesAt({{0, 448.0, 600.0, 20.0}}), {400, 400, 800, 800}, 0), 0.0);
    // A pixel from the edge is held, and nearly at the edge.
    EXPECT_NEAR(restPressCost(pressesAt({{0, 401.0, 500.0, 20.0}}), {400, 400, 600, 600}, 0), 23 / 24.0 * 5.0, 1e-12);
    EXPECT_EQ(restPressCost(pressesAt({{0, 400.9, 500.0, 20.0}}), {400, 400, 600, 600}, 0), 20.0);
}

TEST(PlanCostTest, RestPressCost_CountsThePressesOfItsStep) {
    PlanRules rules = pressesAt({{0, 900.0, 900.0, 1.0}, {1, 900.0, 900.0, 10.0}, {1, 900.0, 900.0, 100.0}});
    rules.pressEnds = {1, 3, 3};
    const RealRect frame{400, 400, 600, 600};
    EXPECT_EQ(restPressCost(rules, frame, 0), 1.0);
    EXPECT_EQ(restPressCost(rules, frame, 1), 110.0);
    EXPECT_EQ(restPressCost(rules, frame, 2), 0.0);
    EXPECT_EQ(movePressCost(rules, frame, frame, 0, 1), 1.0);
    EXPECT_EQ(movePressCost(rules, frame, frame, 1, 2), 110.0);
    EXPECT_EQ(movePressCost(rules, frame, frame, 0, 2), 111.0);
}

const RealRect kTopLeft{0, 0, 640, 400};
const RealRect kBottomRight{640, 400, 1280, 800};
const RealRect kWhole{0, 0, 1280, 800};

/// Ten seconds of 1280 by 800, where half the output's size is readable. At the top left there is interest of 0.4 all the
/// time, at the bottom right of 0.2 from step 10 on. A move takes four steps and a calm rest twelve; calm is 2.
struct World {
    LossTable losses{emptyScene(9.75), FrameShape(640, 400, 1280, 800, 0.5, false), plain(),
                     std::vector<Evidence>{{EvidenceKind::Press, 0, 40, {100, 100, 200, 150}, 0.4},
                                           {EvidenceKind::Press, 10, 40, {1000, 600, 1100, 650}, 0.2}}};
    PlanRules rules;

    World() {
        rules.losses = &losses;
        rules.weights = plain();
        rules.calm = 2.0;
        rules.outputWidth = 640;
        rules.regionWidth = 1280;
        rules.regionHeight = 800;
        rules.steps = 40;
        rules.moveSteps = 4;
        rules.calmSteps = 12;
        rules.pressEnds.assign(40, 0);
    }

    static DirectorWeights plain() {
        DirectorWeights weights;
        weights.cropSmall = 1.0;
        weights.move = 0.5;
        weights.moveZoom = 0.25;
        weights.moveWay = 3.0;
        weights.shortRest = 0.7;
        weights.moveBlur = 1.5;
        return weights;
    }

    /// A press, after all others in time.
    void press(std::int32_t step, double x, double y, double miss) {
        rules.presses.push_back({step, x, y, miss});
        for (auto i = static_cast<std::size_t>(step); i < rules.pressEnds.size(); ++i) {
            rules.pressEnds[i] = rules.presses.size();
        }
    }
};

// Of the plan below, the rests: nothing is lost at the top left up to step 10; at the bottom right a second and a half of
// the 0.4, and the rest of six steps is short. The moves: across, one diagonal and no octave, with half of what either end
// misses (0.2 and 0.4) and all of the 0.6 blurred; out, an octave and a quarter of a diagonal, with half of 0.4.
const std::vector<PlanShot> kThere{{0, kTopLeft}, {14, kBottomRight}, {24, kWhole}};
constexpr double kAcross = 0.5 * (0.2 + 0.4) + 1.5 * 0.6 + 2.0 * (0.5 + 3.0);
constexpr double kOut = 0.5 * 0.4 + 1.5 * 0.6 + 2.0 * (0.5 + 0.25 + 0.75);
constexpr double kRests = 1.5 * 0.4 + 2.0 * 0.7;

TEST(PlanCostTest, PlanCost_IsThatOfItsRestsAndItsMoves) {
    const World world;
    EXPECT_NEAR(planCost(world.rules, kThere), kAcross + kOut + kRests, 1e-9);
    EXPECT_NEAR(moveStretchCost(world.rules, kTopLeft, kBottomRight, 14), kAcross, 1e-9);
    EXPECT_NEAR(moveStretchCost(world.rules, kBottomRight, kWhole, 24), kOut, 1e-9);
    EXPECT_NEAR(restCost(world.rules, kBottomRight, 14, 20), 1.5 * 0.4, 1e-9);
    // A tenth of a diagonal blurs a fifth. Both frames show the same.
    EXPECT_NEAR(moveStretchCost(world.rules, kTopLeft, {64, 40, 704, 440}, 14),
                0.2 + 0.2 * 1.5 * 0.6 + 2.0 * (0.5 + 0.3), 1e-9);
    // All is shown all the time.
    EXPECT_EQ(planCost(world.rules, {{0, kWhole}}), 0.0);
    EXPECT_EQ(planCost(world.rules, {}), 0.0);
}

TEST(PlanCostTest, PlanCost_CountsEveryPressOnce_AtRestOrInAMove) {
    World world;
    world.press(9, 1000, 600, 16.0);  // outside at rest
    world.press(10, 1000, 600, 32.0); // in the move, at one end alone
    world.press(13, 1000, 600, 64.0);
    world.press(14, 1000, 600, 128.0); // inside at rest
    world.press(14, 100, 100, 256.0);
    world.press(19, 100, 100, 512.0);
    world.press(20, 100, 100, 1024.0);
    world.press(23, 100, 100, 2048.0);
    world.press(23, 1000, 600, 4096.0); // in the move, at both ends: 3
    world.press(24, 100, 100, 8192.0);  // inside at rest
    world.press(39, 100, 100, 16384.0);
    EXPECT_NEAR(planCost(world.rules, kThere), kAcross + kOut + kRests + 16 + 32 + 64 + 256 + 512 + 1024 + 2048 + 3,
                1e-9);
}

TEST(PlanCostTest, LastRest_EndsAStepBeforeTheEnd_ForItsCalm) {
    const World world;
    const auto shortRests = [&](std::int32_t arrival) {
        const double moves = movesCost(world.rules, {{0, kTopLeft}, {arrival, kTopLeft}});
        return (moves - 0.5) / 0.7;
    };
    EXPECT_NEAR(shortRests(27), 0.0, 1e-9);
    EXPECT_NEAR(shortRests(28), 1.0, 1e-9);
}

TEST(PlanCostTest, Rest_OfJustTheCalmSteps_IsCalm) {
    const World world;
    const auto cost = [&](std::int32_t next) {
        return planCost(world.rules, {{0, kWhole}, {8, kWhole}, {next, kWhole}});
    };
    // The third shot begins to move four steps before; the last rest is calm. Two moves with all of their sight.
    EXPECT_NEAR(cost(24), 2 * 2.0 * 0.5, 1e-9);
    EXPECT_NEAR(cost(23), 2 * 2.0 * 0.5 + 2.0 * 0.7, 1e-9);
    EXPECT_NEAR(movesCost(world.rules, {{0, kWhole}, {8, kWhole}, {24, kWhole}}), 2 * 0.5, 1e-9);
    EXPECT_NEAR(movesCost(world.rules, {{0, kWhole}, {8, kWhole}, {23, kWhole}}), 2 * 0.5 + 0.7, 1e-9);
}

TEST(PlanCostTest, MovesCost_IsThatOfTheMovesAlone_ForACalmOfOne) {
    const World world;
    EXPECT_NEAR(movesCost(world.rules, kThere), (0.5 + 3.0) + 0.7 + (0.5 + 0.25 + 0.75), 1e-9);
    EXPECT_EQ(movesCost(world.rules, {{0, kTopLeft}}), 0.0);
    EXPECT_EQ(shortRestCost(world.rules), 2.0 * 0.7);
}

TEST(PlanCostTest, MoveExtent_OfFramesOfOneSize_HasNoOctaves) {
    const MoveExtent extent = moveExtent(kTopLeft, kBottomRight);
    EXPECT_EQ(extent.octaves, 0.0);
    EXPECT_NEAR(extent.way, 1.0, 1e-12);
}

} // namespace
} // namespace OrvantaNS::testing
