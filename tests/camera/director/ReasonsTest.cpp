#include "camera/director/Reasons.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using namespace camera;

/// Evidence of one kind over some steps; its place is in the frame unless told.
Evidence piece(EvidenceKind kind, double weight, const RealRect& rect = {100, 100, 110, 110}, std::int32_t from = 0,
               std::int32_t to = 1) {
    return {kind, from, to, rect, weight};
}

const RealRect kFrame{0, 0, 640, 400};
const RealRect kOutside{700, 500, 710, 510};

/// A plan on 1280 by 800 with its reasons. A move takes four steps and costs a second for itself; what is cropped is lost
/// by its share.
struct World {
    camera::Scene scene;
    FrameShape shape{640, 400, 1280, 800, 0.5, false};
    std::unique_ptr<LossTable> losses;
    PlanRules rules;

    World(const std::vector<Evidence>& evidence, std::int32_t steps) {
        scene.steps = steps;
        DirectorWeights& weights = rules.weights;
        weights.cropSmall = 1.0;
        weights.cropLarge = 1.0;
        weights.cropWindow = 1.0;
        weights.move = 1.0;
        weights.moveZoom = 0.0;
        weights.moveWay = 0.0;
        weights.moveBlur = 0.0;
        losses = std::make_unique<LossTable>(scene, shape, weights, evidence);
        rules.losses = losses.get();
        rules.outputWidth = 640;
        rules.regionWidth = 1280;
        rules.regionHeight = 800;
        rules.steps = steps;
        rules.pressEnds.assign(static_cast<std::size_t>(steps), 0);
    }
};

/// The one shot of a plan, a quarter of a second long unless told.
DirectorShot shotFor(const std::vector<Evidence>& evidence, std::int32_t steps = 1,
                     const std::vector<Candidate>& candidates = {}) {
    const World world(evidence, steps);
    return reasonedShot(world.rules, evidence, candidates, {{0, kFrame}}, 0);
}

std::string textFor(const std::vector<Evidence>& evidence) { return shotFor(evidence).text; }

// ---- The sentence ----

TEST(ReasonsTest, Text_NamesEachKind_AndCountsWhatCanBeCounted) {
    struct Case {
        EvidenceKind kind;
        std::string one;
        std::string two;
    };
    const std::vector<Case> cases{{EvidenceKind::Press, "a press", "2 presses"},
                                  {EvidenceKind::Drag, "a drag", "2 drags"},
                                  {EvidenceKind::Typing, "typing", "typing"},
                                  {EvidenceKind::Change, "changes", "changes"},
                                  {EvidenceKind::SmallWindow, "a small window", "2 small windows"},
                                  {EvidenceKind::WindowOpens, "a window that opens", "2 windows that open"},
                                  {EvidenceKind::Page, "the window in front", "the window in front"},
                                  {EvidenceKind::Linger, "what was seen last", "what was seen last"},
                                  {EvidenceKind::Context, "the window in front", "the window in front"},
                                  {EvidenceKind::Cursor, "the cursor", "the cursor"},
                                  {EvidenceKind::Whole, "the whole screen", "the whole screen"}};
    ASSERT_EQ(cases.size(), kEvidenceKinds);
    for (const Case& each : cases) {
        EXPECT_EQ(textFor({piece(each.kind, 0.3)}), each.one);
        EXPECT_EQ(textFor({piece(each.kind, 0.3), piece(each.kind, 0.3)}), each.two);
    }
}

TEST(ReasonsTest, Text_NamesTheTwoHeaviest_HeaviestFirst) {
    EXPECT_EQ(
        textFor({piece(EvidenceKind::Press, 0.3), piece(EvidenceKind::Drag, 0.25), piece(EvidenceKind::Typing, 0.4)}),
        "typing and a press");
    // Kinds of one weight stand in the order of the kinds.
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.5), piece(EvidenceKind::Press, 0.5)}), "a press and typing");
}

TEST(ReasonsTest, Text_LeavesOutLessThan15PercentOfTheInterest) {
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.85), piece(EvidenceKind::Press, 0.15)}), "typing and a press");
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.86), piece(EvidenceKind::Press, 0.14)}), "typing");
}

TEST(ReasonsTest, Text_WeighsWhatIsSeenOfAKind) {
    // Half of the press is outside, an eighth of all interest is left.
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.75), piece(EvidenceKind::Press, 0.25, {600, 100, 680, 110})}),
              "typing; a press did not fit");
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.5), piece(EvidenceKind::Press, 0.5, {600, 100, 680, 110})}),
              "a press and typing; a press did not fit");
}

TEST(ReasonsTest, Text_WhatIsUnseenTakesNoPlaceAmongTheNamed) {
    EXPECT_EQ(textFor({piece(EvidenceKind::Press, 0.4, kOutside), piece(EvidenceKind::Typing, 0.3),
                       piece(EvidenceKind::Cursor, 0.3)}),
              "typing and the cursor; a press did not fit");
}

TEST(ReasonsTest, Text_KindSeenByLessThanThreeFifths_DidNotFit) {
    // Of its 100 columns 62, 60 and 58 are inside.
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 1.0, {578, 100, 678, 110})}), "typing");
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 1.0, {580, 100, 680, 110})}), "typing");
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 1.0, {582, 100, 682, 110})}), "typing; typing did not fit");
}

TEST(ReasonsTest, Text_OnlyTheHeaviestOfThoseThatDidNotFitIsNamed) {
    EXPECT_EQ(textFor({piece(EvidenceKind::Press, 0.3, kOutside), piece(EvidenceKind::Typing, 0.7, kOutside)}),
              "nothing in particular; typing did not fit");
    EXPECT_EQ(textFor({piece(EvidenceKind::Drag, 0.3), piece(EvidenceKind::Press, 0.25, kOutside),
                       piece(EvidenceKind::Press, 0.05, kOutside), piece(EvidenceKind::Typing, 0.2, kOutside)}),
              "a drag; 2 presses did not fit");
}

TEST(ReasonsTest, Text_WhatHasLessThan15PercentOfTheInterest_NeedNotFit) {
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.85), piece(EvidenceKind::Press, 0.15, kOutside)}),
              "typing; a press did not fit");
    EXPECT_EQ(textFor({piece(EvidenceKind::Typing, 0.86), piece(EvidenceKind::Press, 0.14, kOutside)}), "typing");
}

TEST(ReasonsTest, Text_WithoutAnyEvidence_IsNothingInParticular) {
    const DirectorShot shot = shotFor({});
    EXPECT_EQ(shot.text, "nothing in particular");
    EXPECT_TRUE(shot.reasons.empty());
    EXPECT_EQ(shot.cost, 0.0);
    EXPECT_FALSE(shot.hasRunnerUp);
}

// ---- The figures ----

TEST(ReasonsTest, Reasons_HaveTheirSecondsShareBoxAndCount_MostFirst) {
    // Two seconds, in the first of which the presses stand; a half of the second press is seen.
    const DirectorShot shot = shotFor({piece(EvidenceKind::Press, 0.25, {100.75, 100, 120, 110.5}, 0, 4),
                                       piece(EvidenceKind::Press, 0.25, {600, 50, 680, 60}, 0, 4),
                                       piece(EvidenceKind::Typing, 0.5, {200, 200, 300, 230}, 0, 8)},
                                      8);
    ASSERT_EQ(shot.reasons.size(), 2u);
    EXPECT_EQ(shot.reasons[0].kind, "typing");
    EXPECT_NEAR(shot.reasons[0].weight, 1.0, 1e-12);
    EXPECT_NEAR(shot.reasons[0].seen, 1.0, 1e-12);
    EXPECT_EQ(shot.reasons[0].rect, (Rectangle{200, 300, 200, 230}));
    EXPECT_EQ(shot.reasons[0].count, 1u);
    EXPECT_EQ(shot.reasons[1].kind, "press");
    EXPECT_NEAR(shot.reasons[1].weight, 0.5, 1e-12);
    EXPECT_NEAR(shot.reasons[1].seen, 0.75, 1e-12);
    EXPECT_EQ(shot.reasons[1].rect, (Rectangle{100, 680, 50, 110}));
    EXPECT_EQ(shot.reasons[1].count, 2u);
}

TEST(ReasonsTest, Reasons_ShareTheInterestOfACrowdedStep) {
    const DirectorShot shot = shotFor({piece(EvidenceKind::Press, 3.0), piece(EvidenceKind::Typing, 1.0)}, 1);
    ASSERT_EQ(shot.reasons.size(), 2u);
    EXPECT_NEAR(shot.reasons[0].weight, 0.75 * 0.25, 1e-12);
    EXPECT_NEAR(shot.reasons[1].weight, 0.25 * 0.25, 1e-12);
}

TEST(ReasonsTest, Reasons_AreThoseOfTheRest_WithoutTheMoves) {
    const std::vector<Evidence> evidence{piece(EvidenceKind::Press, 0.5, {100, 100, 110, 110}, 0, 30)};
    const World world(evidence, 30);
    // Rests from 0 to 6, 10 to 17 and 21 to 30.
    const std::vector<PlanShot> shots{{0, kFrame}, {10, {0, 0, 1280, 800}}, {21, kFrame}};
    const double seconds[] = {6 * 0.25, 7 * 0.25, 9 * 0.25};
    for (std::size_t i = 0; i < 3; ++i) {
        const DirectorShot shot = reasonedShot(world.rules, evidence, {}, shots, i);
        ASSERT_EQ(shot.reasons.size(), 1u);
        EXPECT_NEAR(shot.reasons[0].weight, 0.5 * seconds[i], 1e-12) << i;
    }
}

TEST(ReasonsTest, Cost_IsWhatTheRestMisses_WithTheMovesAtBothEnds) {
    // Outside of every frame, so that each second of it costs a half, in moves as in rests.
    const std::vector<Evidence> evidence{piece(EvidenceKind::Press, 0.5, {1200, 700, 1210, 710}, 0, 30)};
    World world(evidence, 30);
    world.rules.calm = 3.0;
    const std::vector<PlanShot> shots{{0, kFrame}, {10, {100, 0, 740, 400}}, {21, kFrame}};
    const double move = 3.0 + 0.5 * 1.0; // calm, and a second of four steps
    EXPECT_NEAR(reasonedShot(world.rules, evidence, {}, shots, 0).cost, 0.5 * 1.5 + move, 1e-12);
    EXPECT_NEAR(reasonedShot(world.rules, evidence, {}, shots, 1).cost, 0.5 * 1.75 + 2.0 * move, 1e-12);
    EXPECT_NEAR(reasonedShot(world.rules, evidence, {}, shots, 2).cost, 0.5 * 2.25 + move, 1e-12);
}

// ---- The runner-up ----

/// A second of typing at (1000, 600), which the shot's frame does not show, and half of it at (900, 200).
std::vector<Evidence> elsewhere() {
    return {piece(EvidenceKind::Typing, 0.5, {1000, 600, 1010, 610}, 0, 4),
            piece(EvidenceKind::Press, 0.25, {900, 200, 910, 210}, 0, 4)};
}

TEST(ReasonsTest, RunnerUp_IsTheCheapestOtherFrame_TheFirstOfEquals) {
    const DirectorShot shot = shotFor(elsewhere(), 4,
                                      {{{640, 0, 1280, 400}, 0, 4},
                                       {{600.9, 350.5, 1240.9, 750.5}, 0, 4},
                                       {{500, 350, 1140, 750}, 0, 4},
                                       {{0, 400, 640, 800}, 0, 4}});
    EXPECT_NEAR(shot.cost, 0.75, 1e-12);
    ASSERT_TRUE(shot.hasRunnerUp);
    EXPECT_EQ(shot.runnerUp, (Rectangle{600, 1240, 350, 750}));
    EXPECT_NEAR(shot.runnerUpCost, 0.25, 1e-12);
}

TEST(ReasonsTest, RunnerUp_MayBeDearerThanTheShot) {
    const std::vector<Evidence> inside{piece(EvidenceKind::Typing, 0.5, {100, 100, 110, 110}, 0, 4)};
    const DirectorShot shot = shotFor(inside, 4, {{{640, 400, 1280, 800}, 0, 4}});
    EXPECT_EQ(shot.cost, 0.0);
    ASSERT_TRUE(shot.hasRunnerUp);
    EXPECT_NEAR(shot.runnerUpCost, 0.5, 1e-12);
}

TEST(ReasonsTest, RunnerUp_DiffersByATenthOfTheWidthAtAnyEdge) {
    const auto isOther = [](const RealRect& rect) { return shotFor({}, 4, {{rect, 0, 4}}).hasRunnerUp; };
    EXPECT_FALSE(isOther(kFrame));
    EXPECT_FALSE(isOther({63, 63, 703, 463}));
    EXPECT_TRUE(isOther({64, 0, 640, 400}));
    EXPECT_TRUE(isOther({-64, 0, 640, 400}));
    EXPECT_TRUE(isOther({0, 64, 640, 400}));
    EXPECT_TRUE(isOther({0, 0, 704, 400}));
    EXPECT_TRUE(isOther({0, 0, 640, 464}));
    const World world({}, 4);
    const RealRect middle{320, 200, 960, 600};
    EXPECT_FALSE(reasonedShot(world.rules, {}, {{middle, 0, 4}}, {{0, middle}}, 0).hasRunnerUp);
}

TEST(ReasonsTest, RunnerUp_MustBeAliveThroughoutTheRest) {
    const World world({}, 30);
    const std::vector<PlanShot> shots{{0, kFrame}, {10, kFrame}, {21, kFrame}};
    const auto isOther = [&](std::int32_t from, std::int32_t to, std::size_t index) {
        return reasonedShot(world.rules, {}, {{{640, 400, 1280, 800}, from, to}}, shots, index).hasRunnerUp;
    };
    // The second rests from 10 to 17, the last from 21 to 30.
    EXPECT_TRUE(isOther(10, 17, 1));
    EXPECT_FALSE(isOther(11, 17, 1));
    EXPECT_FALSE(isOther(10, 16, 1));
    EXPECT_TRUE(isOther(21, 30, 2));
    EXPECT_FALSE(isOther(21, 29, 2));
}

} // namespace
} // namespace OrvantaNS::testing
