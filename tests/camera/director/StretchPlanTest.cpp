#include "camera/director/StretchPlan.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EmptyScene.h"
#include "camera/director/Adjustment.h"
#include "camera/director/Search.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;
using ::testing::ElementsAre;

// The largest portrait frame is 450 by 800: presses more than 446 apart, or 796 one above the other, share none.
const FrameShape kPortrait(360, 640, 1280, 800, 0.75, false);

ScenePress press(double seconds, double x, double y = 400.0) { return {seconds, seconds, x, y, {x, y, x, y}}; }

PlanRules rulesOf(const camera::Scene& scene, const PlanWishes& wishes = {}) {
    const LossTable losses(scene, kPortrait, {}, {});
    PlanRules rules = planRules(scene, kPortrait, wishes, {}, losses);
    rules.losses = nullptr; // it ends here
    return rules;
}

/// What leaving out each press costs.
std::vector<double> misses(const std::vector<ScenePress>& presses, const PlanWishes& wishes = {}) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses = presses;
    std::vector<double> costs;
    for (const PlanPress& one : rulesOf(scene, wishes).presses) {
        costs.push_back(one.miss);
    }
    return costs;
}

TEST(StretchPlanTest, Rules_TakeTheSceneTheShapeAndTheWishes) {
    camera::Scene scene = emptyScene(60.0);
    PlanWishes wishes;
    wishes.calm = 1.75;
    DirectorWeights weights;
    weights.moveWay = 123.0;
    const LossTable losses(scene, kPortrait, weights, {});
    const PlanRules rules = planRules(scene, kPortrait, wishes, weights, losses);
    EXPECT_EQ(rules.losses, &losses);
    EXPECT_EQ(rules.weights.moveWay, 123.0);
    EXPECT_EQ(rules.calm, 1.75);
    EXPECT_EQ(rules.outputWidth, 360.0);
    EXPECT_EQ(rules.regionWidth, 1280.0);
    EXPECT_EQ(rules.regionHeight, 800.0);
    EXPECT_EQ(rules.steps, 241);
    EXPECT_EQ(rules.pressMargin, 24.0);
}

TEST(StretchPlanTest, Rules_CountMovesAndRestsInWholeSteps) {
    const auto moveSteps = [](double fade) {
        PlanWishes wishes;
        wishes.fadeSeconds = fade;
        return rulesOf(emptyScene(60.0), wishes).moveSteps;
    };
    EXPECT_EQ(moveSteps(1.0), 4);
    EXPECT_EQ(moveSteps(1.01), 5);
    EXPECT_EQ(moveSteps(0.0), 1);
    EXPECT_EQ(moveSteps(30.0), 120);
    const PlanRules rules = rulesOf(emptyScene(60.0));
    EXPECT_EQ(rules.restSteps, 6);
    EXPECT_EQ(rules.calmSteps, 20);
    camera::Scene coarse = emptyScene(60.0);
    coarse.step = 2.0;
    EXPECT_EQ(rulesOf(coarse).restSteps, 1);
    EXPECT_EQ(rulesOf(coarse).calmSteps, 3);
}

TEST(StretchPlanTest, Rules_OfAShortStretch_CountNoFurtherThanBeyondItsEnd) {
    // Half a second has three steps.
    const PlanRules rules = rulesOf(emptyScene(0.5));
    EXPECT_EQ(rules.moveSteps, 4);
    EXPECT_EQ(rules.restSteps, 4);
    EXPECT_EQ(rules.calmSteps, 4);
}

TEST(StretchPlanTest, Presses_Want24PixelsToTheFramesEdge) {
    const RealRect frame{400, 100, 760, 740}; // pixel for pixel
    const auto cost = [&frame](double x) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses = {press(10.0, x)};
        return restPressCost(rulesOf(scene), frame, 40);
    };
    EXPECT_EQ(cost(424.0), 0.0);
    EXPECT_GT(cost(423.5), 0.0);
}

TEST(StretchPlanTest, Presses_StandWithTheirSteps) {
    camera::Scene scene = emptyScene(1.0);
    scene.presses = {press(0.0, 10.0, 20.0), press(0.3, 30.0, 40.0), press(0.49, 50.0, 60.0), press(1.0, 70.0, 80.0)};
    const PlanRules rules = rulesOf(scene);
    EXPECT_THAT(rules.pressEnds, ElementsAre(1u, 3u, 3u, 3u, 4u));
    ASSERT_EQ(rules.presses.size(), 4u);
    EXPECT_EQ(rules.presses[0].step, 0);
    EXPECT_EQ(rules.presses[1].step, 1);
    EXPECT_EQ(rules.presses[2].step, 1);
    EXPECT_EQ(rules.presses[3].step, 4);
    EXPECT_EQ(rules.presses[1].x, 30.0);
    EXPECT_EQ(rules.presses[1].y, 40.0);
}

TEST(StretchPlanTest, Press_Alone_MustNotBeMissed_ButAtTheStart) {
    EXPECT_THAT(misses({press(1.49, 10.0), press(1.5, 10.0), press(30.0, 10.0)}), ElementsAre(30.0, 1000.0, 1000.0));
}

TEST(StretchPlanTest, Presses_ThatNoFrameHoldsTogether_AreExcused) {
    const auto across = [](double apart) { return misses({press(10.0, 100.0), press(11.0, 100.0 + apart)}); };
    EXPECT_THAT(across(446.0), ElementsAre(1000.0, 1000.0));
    EXPECT_THAT(across(446.5), ElementsAre(30.0, 30.0));
    EXPECT_THAT(misses({press(10.0, 600.0), press(11.0, 100.0)}), ElementsAre(30.0, 30.0));
    const auto below = [](double apart) { return misses({press(10.0, 100.0, 1.0), press(11.0, 100.0, 1.0 + apart)}); };
    EXPECT_THAT(below(796.0), ElementsAre(1000.0, 1000.0));
    EXPECT_THAT(below(796.5), ElementsAre(30.0, 30.0));
    EXPECT_THAT(misses({press(10.0, 100.0, 798.0), press(11.0, 100.0, 1.0)}), ElementsAre(30.0, 30.0));
}

TEST(StretchPlanTest, Presses_FurtherApartThanARestAndItsTwoMoves_AreNotExcused) {
    const auto later = [](double seconds, double fade) {
        PlanWishes wishes;
        wishes.fadeSeconds = fade;
        return misses({press(10.0, 100.0), press(10.0 + seconds, 900.0)}, wishes);
    };
    EXPECT_THAT(later(3.5, 1.0), ElementsAre(30.0, 30.0));
    EXPECT_THAT(later(3.75, 1.0), ElementsAre(1000.0, 1000.0));
    EXPECT_THAT(later(2.5, 0.5), ElementsAre(30.0, 30.0));
    EXPECT_THAT(later(2.75, 0.5), ElementsAre(1000.0, 1000.0));
}

TEST(StretchPlanTest, Press_LooksForOthersBeyondItsNeighbours) {
    // The one in the middle can be shown with either.
    EXPECT_THAT(misses({press(10.0, 100.0), press(11.0, 400.0), press(12.0, 700.0)}), ElementsAre(30.0, 1000.0, 30.0));
    EXPECT_THAT(misses({press(10.0, 100.0), press(11.0, 400.0), press(15.0, 700.0)}),
                ElementsAre(1000.0, 1000.0, 1000.0));
}

TEST(StretchPlanTest, Press_LooksAtAsManyOthersBeforeItAsAfter) {
    // A burst in one place between two presses that no frame holds together, each with the burst.
    const auto ends = [](std::size_t between) {
        std::vector<ScenePress> presses{press(10.0, 100.0)};
        presses.insert(presses.end(), between, press(11.0, 400.0));
        presses.push_back(press(12.0, 700.0));
        const std::vector<double> costs = misses(presses);
        return std::pair(costs.front(), costs.back());
    };
    EXPECT_EQ(ends(255), std::pair(30.0, 30.0));
    EXPECT_EQ(ends(256), std::pair(1000.0, 1000.0));
}

TEST(StretchPlanTest, Press_LateInALongRecording_LooksBackAndForthAsWell) {
    std::vector<ScenePress> presses(300, press(2.0, 400.0));
    presses.insert(presses.end(), {press(10.0, 100.0), press(11.0, 700.0)});
    presses.insert(presses.end(), 300, press(20.0, 400.0));
    const std::vector<double> costs = misses(presses);
    EXPECT_EQ(costs[299], 1000.0);
    EXPECT_EQ(costs[300], 30.0);
    EXPECT_EQ(costs[301], 30.0);
    EXPECT_EQ(costs[302], 1000.0);
}

TEST(StretchPlanTest, Presses_ThatNeedNotBeHeld_CostASecondAndAHalf) {
    PlanWishes wishes;
    wishes.arePressesHard = false;
    EXPECT_THAT(misses({press(0.5, 100.0), press(10.0, 100.0), press(11.0, 900.0)}, wishes),
                ElementsAre(1.5, 1.5, 1.5));
}

TEST(StretchPlanTest, Candidates_AreThoseForPressesWithinARestAndItsTwoMoves) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses = {press(10.0, 100.0), press(12.5, 300.0), press(15.75, 500.0)};
    for (const auto& [fade, reach] : {std::pair(1.0, 3.5), std::pair(0.25, 2.0)}) {
        const std::vector<Candidate> given = candidatesFor(scene, kPortrait, {}, fade);
        const std::vector<Candidate> expected = findCandidates(scene, kPortrait, {}, reach);
        ASSERT_EQ(given.size(), expected.size());
        for (std::size_t i = 0; i < given.size(); ++i) {
            EXPECT_EQ(given[i].rect, expected[i].rect);
            EXPECT_EQ(given[i].from, expected[i].from);
            EXPECT_EQ(given[i].to, expected[i].to);
        }
    }
    EXPECT_NE(findCandidates(scene, kPortrait, {}, 3.5).size(), findCandidates(scene, kPortrait, {}, 2.0).size());
}

TEST(StretchPlanTest, Plan_IsTheCheapestOneWithItsFramesAdjusted) {
    const camera::Scene scene = emptyScene(20.0);
    const std::vector<Evidence> evidence{{EvidenceKind::Typing, 0, 40, {103, 107, 203, 157}, 1.0},
                                         {EvidenceKind::Typing, 40, 81, {903, 507, 1003, 557}, 1.0}};
    const LossTable losses(scene, kPortrait, {}, evidence);
    const PlanRules rules = planRules(scene, kPortrait, {}, {}, losses);
    const std::vector<Candidate> candidates = candidatesFor(scene, kPortrait, evidence, 1.0);
    std::vector<double> shares;
    const std::vector<PlanShot> plan =
        planStretch(rules, kPortrait, candidates, [&](double share) { shares.push_back(share); });
    const std::vector<PlanShot> cheapest = cheapestPlan(rules, candidates, {});
    std::vector<PlanShot> adjusted = cheapest;
    adjustShots(rules, kPortrait, adjusted);
    EXPECT_NE(adjusted, cheapest);
    EXPECT_EQ(plan, adjusted);
    EXPECT_THAT(shares, ElementsAre(0.0, 64.0 / 81.0));
}

} // namespace
} // namespace OrvantaNS::testing
