// The search against all plans there are, on worlds small enough to try them all.

#include "camera/director/Search.h"

#include <algorithm>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "Random.h"
#include "camera/director/Adjustment.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

/// A random small world: some evidence, some presses, a few candidates.
struct World {
    camera::Scene scene;
    FrameShape shape{64, 40, 256, 160, 0.75, false};
    std::vector<Evidence> evidence;
    std::unique_ptr<LossTable> losses;
    PlanRules rules;
    std::vector<Candidate> candidates;

    explicit World(std::uint64_t seed) {
        Random random(seed);
        scene.width = 256;
        scene.height = 160;
        scene.steps = random.range(10, 16);
        scene.length = scene.steps * scene.step;
        scene.changeEnds.assign(static_cast<std::size_t>(scene.steps), 0);
        const int pieces = random.range(2, 6);
        for (int i = 0; i < pieces; ++i) {
            const std::int32_t from = random.range(0, scene.steps - 1);
            const double left = random.range(0, 200);
            const double top = random.range(0, 130);
            const EvidenceKind kind = random.chance(0.5) ? EvidenceKind::Press : EvidenceKind::Page;
            const std::int32_t to = random.range(from + 1, std::min(scene.steps, from + 7));
            const double wide = random.range(5, 56);
            const double high = random.range(5, 30);
            evidence.push_back({kind, from, to, {left, top, left + wide, top + high}, random.real(0.2, 3.0)});
        }
        DirectorWeights weights;
        weights.move = random.real(0.001, 0.02);
        weights.moveZoom = random.real(0.0, 0.05);
        weights.moveWay = random.real(0.0, 0.1);
        weights.shortRest = random.real(0.0, 0.1);
        weights.moveBlur = random.real(0.0, 0.2);
        weights.unread = random.real(0.5, 1.0);
        weights.unreadOctaves = random.real(1.0, 3.0);
        weights.unreadWhole = random.real(0.3, 1.0);
        weights.wholeAsks = random.real(0.0, 2.0);
        weights.cropSmall = random.real(1.0, 3.0);
        weights.cropWindow = random.real(1.0, 3.0);
        losses = std::make_unique<LossTable>(scene, shape, weights, evidence);
        rules.losses = losses.get();
        rules.weights = weights;
        rules.calm = random.real(0.2, 2.0);
        rules.outputWidth = 64;
        rules.regionWidth = 256;
        rules.regionHeight = 160;
        rules.steps = scene.steps;
        rules.moveSteps = random.range(1, 2);
        rules.restSteps = random.range(1, 3);
        rules.calmSteps = rules.restSteps + random.range(0, 3);
        rules.pressMargin = 3.0;
        for (std::int32_t step = 0; step < scene.steps; ++step) {
            if (random.chance(0.08)) {
                const double x = random.range(0, 255) + 0.5;
                const double y = random.range(0, 159) + 0.5;
                rules.presses.push_back({step, x, y, 5.0});
            }
            rules.pressEnds.push_back(rules.presses.size());
        }
        candidates.push_back({shape.frame(128, 80, 256), 0, scene.steps});
        const int count = random.range(1, 3); // of frames, most of them on a piece of evidence
        for (int i = 0; i < count; ++i) {
            const std::int32_t from = random.chance(0.5) ? 0 : random.range(0, scene.steps - 1);
            const RealRect place = random.chance(0.7)
                                       ? evidence[static_cast<std::size_t>(random.range(0, pieces - 1))].rect
                                       : RealRect{0.0, 0.0, random.range(1, 512) * 1.0, random.range(1, 320) * 1.0};
            const RealRect rect = shape.frame(centreX(place), centreY(place), random.range(64, 200));
            candidates.push_back({rect, from, random.chance(0.5) ? scene.steps : random.range(from + 1, scene.steps)});
        }
    }
};

/// The cheapest of all plans, tried one by one. A shot may rest while its candidate lives, and depart from one of the
/// steps of its life.
double cheapestOfAll(const World& world) {
    const PlanRules& rules = world.rules;
    double best = 1e300;
    std::vector<PlanShot> shots;
    const std::function<void(const Candidate&, std::int32_t)> extend = [&](const Candidate& at, std::int32_t arrival) {
        const std::int32_t last = rules.steps - 1;
        const std::int32_t free = shots.size() == 1 ? arrival : arrival + rules.restSteps;
        if (free <= last && at.to > last) {
            best = std::min(best, planCost(rules, shots));
        }
        for (std::int32_t departure = free; departure < std::min(at.to, rules.steps); ++departure) {
            const std::int32_t next = departure + rules.moveSteps;
            for (const Candidate& other : world.candidates) {
                if (&other == &at || next >= rules.steps || next < other.from ||
                    next + rules.restSteps >= std::min(other.to, rules.steps)) {
                    continue;
                }
                shots.push_back({next, other.rect});
                extend(other, next);
                shots.pop_back();
            }
        }
    };
    for (const Candidate& first : world.candidates) {
        if (first.from == 0) {
            shots.push_back({0, first.rect});
            extend(first, 0);
            shots.pop_back();
        }
    }
    return best;
}

TEST(SearchTest, CheapestPlan_SmallWorlds_EqualsTheBestOfAllPlans) {
    int withMoves = 0;
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        const World world(seed);
        const std::vector<PlanShot> plan = cheapestPlan(world.rules, world.candidates, {});
        EXPECT_NEAR(planCost(world.rules, plan), cheapestOfAll(world), 1e-9);
        withMoves += plan.size() > 1 ? 1 : 0;
    }
    EXPECT_GT(withMoves, 40); // the worlds ask something of the search
}

TEST(SearchTest, CheapestPlan_MorePressesInAMoveThanHaveABit_EqualsTheBestOfAllPlans) {
    int withMoves = 0;
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        World world(seed);
        Random random(seed + 1000);
        // Up to the middle of the time presses fall into one frame, and then into another, where no frame holds both.
        world.candidates = {{world.shape.frame(60, 80, 96), 0, world.rules.steps},
                            {world.shape.frame(196, 80, 96), 0, world.rules.steps}};
        world.rules.presses.clear();
        for (std::int32_t step = 0; step < world.rules.steps; ++step) {
            // About 64 in the steps of one move, more and less.
            const int count = random.range(31, 34) * 2 / world.rules.moveSteps;
            for (int i = 0; i < count; ++i) {
                const double x = random.range(0, 60) + (step * 2 < world.rules.steps ? 30.5 : 166.5);
                const double y = random.range(55, 105) + 0.5;
                world.rules.presses.push_back({step, x, y, random.real(3.5, 6.0)});
            }
            world.rules.pressEnds[static_cast<std::size_t>(step)] = world.rules.presses.size();
        }
        const std::vector<PlanShot> plan = cheapestPlan(world.rules, world.candidates, {});
        EXPECT_NEAR(planCost(world.rules, plan), cheapestOfAll(world), 1e-9);
        withMoves += plan.size() > 1 ? 1 : 0;
    }
    EXPECT_GT(withMoves, 20);
}

TEST(SearchTest, CheapestPlan_PressInAMoveThatBothEndsHold_MayBeWorthIt) {
    // Presses all the time where two frames overlap. What is of interest is in one frame before step 20, and in the other
    // from step 21 on: staying would miss 19 quarters of a second, and the move at step 20 costs 3 for its press.
    World world(1);
    world.scene.steps = 40;
    const FrameShape shape(64, 40, 256, 160, 0.5, false);
    const RealRect first{0, 40, 128, 120};
    const RealRect second{96, 40, 224, 120};
    DirectorWeights weights;
    weights.move = 0.01;
    weights.moveZoom = 0.0;
    weights.moveWay = 0.0;
    weights.moveBlur = 0.0;
    const LossTable losses(
        world.scene, shape, weights,
        {{EvidenceKind::Press, 0, 20, {10, 60, 20, 70}, 1.0}, {EvidenceKind::Press, 21, 40, {200, 60, 210, 70}, 1.0}});
    PlanRules& rules = world.rules;
    rules.losses = &losses;
    rules.weights = weights;
    rules.calm = 1.0;
    rules.steps = 40;
    rules.moveSteps = 1;
    rules.restSteps = 1;
    rules.calmSteps = 1;
    rules.presses.clear();
    rules.pressEnds.clear();
    for (std::int32_t step = 0; step < 40; ++step) {
        rules.presses.push_back({step, 112.5, 80.5, 20.0});
        rules.pressEnds.push_back(rules.presses.size());
    }
    const std::vector<PlanShot> plan = cheapestPlan(rules, {{first, 0, 40}, {second, 0, 40}}, {});
    EXPECT_EQ(plan, (std::vector<PlanShot>{{0, first}, {21, second}}));
    EXPECT_NEAR(planCost(rules, plan), 3.01, 1e-9);
}

TEST(SearchTest, CheapestPlan_WhereNothingIsOfInterest_RestsOnTheFirstCandidate) {
    World world(1);
    world.losses = std::make_unique<LossTable>(world.scene, world.shape, world.rules.weights, std::vector<Evidence>{});
    world.rules.losses = world.losses.get();
    world.rules.presses.clear();
    world.rules.pressEnds.assign(world.rules.pressEnds.size(), 0);
    const RealRect whole = world.candidates[0].rect;
    world.candidates = {{whole, 0, world.rules.steps},
                        {world.shape.frame(50, 50, 64), 0, world.rules.steps},
                        {world.shape.frame(200, 90, 96), 0, world.rules.steps}};
    EXPECT_EQ(cheapestPlan(world.rules, world.candidates, {}), (std::vector<PlanShot>{{0, whole}}));
}

/// Ten seconds of 256 by 160 in which a move takes a quarter of a second and costs 0.01, and rests cost nothing.
struct Plain {
    camera::Scene scene;
    FrameShape shape{64, 40, 256, 160, 0.5, false};
    std::unique_ptr<LossTable> losses;
    PlanRules rules;

    explicit Plain(const std::vector<Evidence>& evidence, std::int32_t steps = 40) {
        scene.steps = steps;
        DirectorWeights weights;
        weights.move = 0.01;
        weights.moveZoom = 0.0;
        weights.moveWay = 0.05;
        weights.moveBlur = 0.0;
        weights.shortRest = 0.0;
        losses = std::make_unique<LossTable>(scene, shape, weights, evidence);
        rules.losses = losses.get();
        rules.weights = weights;
        rules.calm = 1.0;
        rules.outputWidth = 64;
        rules.regionWidth = 256;
        rules.regionHeight = 160;
        rules.steps = steps;
        rules.moveSteps = 1;
        rules.restSteps = 1;
        rules.calmSteps = 1;
        rules.pressMargin = 3.0;
        rules.pressEnds.assign(static_cast<std::size_t>(steps), 0);
    }
};

TEST(SearchTest, CheapestPlan_MoveThatMayComeAtAnyTime_ComesAtOnce) {
    // Until step 5 something is in the first frame, and from step 20 on in the second.
    const Plain plain(
        {{EvidenceKind::Press, 0, 5, {10, 60, 20, 70}, 1.0}, {EvidenceKind::Press, 20, 40, {200, 60, 210, 70}, 1.0}});
    const RealRect first{0, 40, 128, 120};
    const RealRect second{96, 40, 224, 120};
    EXPECT_EQ(cheapestPlan(plain.rules, {{first, 0, 40}, {second, 0, 40}}, {}),
              (std::vector<PlanShot>{{0, first}, {6, second}}));
}

TEST(SearchTest, CheapestPlan_OfTwoFramesThatCostTheSame_TakesTheFirst) {
    // Both hold what is seen first, and are as far from the frame of what comes then.
    const Plain plain(
        {{EvidenceKind::Press, 0, 5, {10, 62, 20, 72}, 1.0}, {EvidenceKind::Press, 20, 40, {140, 60, 150, 70}, 1.0}});
    const RealRect upper{0, 40, 64, 80};
    const RealRect lower{0, 60, 64, 100};
    const RealRect then{128, 50, 192, 90};
    EXPECT_EQ(cheapestPlan(plain.rules, {{upper, 0, 40}, {lower, 0, 40}, {then, 0, 40}}, {}),
              (std::vector<PlanShot>{{0, upper}, {6, then}}));
    EXPECT_EQ(cheapestPlan(plain.rules, {{lower, 0, 40}, {upper, 0, 40}, {then, 0, 40}}, {}),
              (std::vector<PlanShot>{{0, lower}, {6, then}}));
}

TEST(SearchTest, CheapestPlan_OfTwoWaysThatCostTheSameWithTheirPresses_TakesTheOneThatWasCheaperWithout) {
    // From step 10 on each step has a press, and from 11 on something is in the last frame, which is alive from then on. The
    // way there from the upper frame costs a move, 2, and a miss, 4. The lower one holds the presses, which cost 3 in a move,
    // but misses a second of what is in the upper one before.
    Plain plain(
        {{EvidenceKind::Press, 0, 4, {10, 10, 20, 20}, 1.0}, {EvidenceKind::Press, 11, 40, {10, 142, 20, 148}, 1.0}});
    plain.rules.weights.move = 2.0;
    plain.rules.weights.moveWay = 0.0;
    for (std::int32_t step = 10; step < 40; ++step) {
        plain.rules.presses.push_back({step, 30.5, 120.5, 4.0});
        plain.rules.pressEnds[static_cast<std::size_t>(step)] = plain.rules.presses.size();
    }
    const RealRect upper{0, 0, 64, 40};
    const RealRect lower{0, 100, 64, 140};
    const RealRect last{0, 110, 64, 150};
    EXPECT_EQ(cheapestPlan(plain.rules, {{upper, 0, 40}, {lower, 0, 40}, {last, 11, 40}}, {}),
              (std::vector<PlanShot>{{0, upper}, {11, last}}));
    EXPECT_EQ(planCost(plain.rules, {{0, upper}, {11, last}}), 6.0);
    EXPECT_EQ(planCost(plain.rules, {{0, lower}, {11, last}}), 6.0);
}

TEST(SearchTest, CheapestPlan_MoveFromTheSecondStep_CountsWhatTheFirstLost) {
    // Nobody sees what is in the first step. In the second one something is in the first frame: half of its 0.1 would be lost
    // by leaving then, so that the move, which takes two steps, begins with the third one.
    Plain plain({{EvidenceKind::Press, 0, 1, {10, 140, 20, 150}, 1.0},
                 {EvidenceKind::Press, 1, 2, {10, 60, 20, 70}, 0.4},
                 {EvidenceKind::Press, 20, 40, {200, 60, 210, 70}, 1.0}});
    plain.rules.moveSteps = 2;
    const RealRect first{0, 40, 128, 120};
    const RealRect second{96, 40, 224, 120};
    EXPECT_EQ(cheapestPlan(plain.rules, {{first, 0, 40}, {second, 3, 40}}, {}),
              (std::vector<PlanShot>{{0, first}, {4, second}}));
}

TEST(SearchTest, CheapestPlan_PressesInAMoveAreHeldByBothEnds_AsManyAsHaveABitAndOneMore) {
    // Before step 20 a press in each step is held by the first frame alone, from 21 on by the second alone. Those of step 20
    // lie in both and cost three each in a move; a move at any other time misses one of the others.
    for (const std::size_t count : {std::size_t{64}, std::size_t{65}}) {
        SCOPED_TRACE(count);
        Plain plain({});
        plain.rules.presses.clear();
        plain.rules.pressEnds.clear();
        for (std::int32_t step = 0; step < 40; ++step) {
            if (step == 20) {
                plain.rules.presses.insert(plain.rules.presses.end(), count, {step, 112.5, 80.5, 20.0});
            } else {
                plain.rules.presses.push_back({step, step < 20 ? 30.5 : 200.5, 80.5, 1000.0});
            }
            plain.rules.pressEnds.push_back(plain.rules.presses.size());
        }
        const RealRect first{0, 40, 128, 120};
        const RealRect second{96, 40, 224, 120};
        EXPECT_EQ(cheapestPlan(plain.rules, {{first, 0, 40}, {second, 0, 40}}, {}),
                  (std::vector<PlanShot>{{0, first}, {21, second}}));
    }
}

TEST(SearchTest, CheapestPlan_PressInAMove_CostsThreeAndNoMore) {
    // A press in each step that both frames hold. Five seconds are lost without the first frame, and three and a half
    // without the second.
    Plain plain(
        {{EvidenceKind::Press, 0, 20, {10, 60, 20, 70}, 1.0}, {EvidenceKind::Press, 26, 40, {200, 60, 210, 70}, 1.0}});
    plain.rules.presses.clear();
    plain.rules.pressEnds.clear();
    for (std::int32_t step = 0; step < 40; ++step) {
        plain.rules.presses.push_back({step, 112.5, 80.5, 20.0});
        plain.rules.pressEnds.push_back(plain.rules.presses.size());
    }
    const RealRect first{0, 40, 128, 120};
    const RealRect second{96, 40, 224, 120};
    EXPECT_EQ(cheapestPlan(plain.rules, {{first, 0, 40}, {second, 0, 40}}, {}),
              (std::vector<PlanShot>{{0, first}, {21, second}}));
}

TEST(SearchTest, CheapestPlan_NoMoveStaysWhereItIs) {
    // A press at the frame's edge costs more at rest than in a move, but the camera cannot move from a frame to itself.
    Plain plain({});
    const RealRect frame{0, 40, 128, 120};
    plain.rules.presses.assign(10, {20, 126.0, 80.0, 1000.0});
    for (std::size_t step = 20; step < 40; ++step) {
        plain.rules.pressEnds[step] = 10;
    }
    EXPECT_EQ(cheapestPlan(plain.rules, {{frame, 0, 40}}, {}), (std::vector<PlanShot>{{0, frame}}));
}

TEST(SearchTest, CheapestPlan_Progress_IsToldEvery64Steps) {
    const Plain plain({}, 200);
    std::vector<double> shares;
    cheapestPlan(plain.rules, {{{0, 0, 256, 160}, 0, 200}}, [&shares](double share) { shares.push_back(share); });
    EXPECT_EQ(shares, (std::vector<double>{0.0, 0.32, 0.64, 0.96}));
}

TEST(SearchTest, CheapestPlan_CalmerRules_NeverSpendMoreOnMoves) {
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        World world(seed);
        double last = 1e300;
        for (const double calm : {0.01, 0.25, 0.5, 1.0, 1.5, 2.0, 3.0, 6.0, 50.0}) {
            world.rules.calm = calm;
            const double spent = movesCost(world.rules, cheapestPlan(world.rules, world.candidates, {}));
            EXPECT_LE(spent, last + 1e-9) << calm;
            last = spent;
        }
    }
}

TEST(SearchTest, AdjustShots_AnyPlan_NeverCostsMore) {
    int better = 0;
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        const World world(seed);
        std::vector<PlanShot> plan = cheapestPlan(world.rules, world.candidates, {});
        const double before = planCost(world.rules, plan);
        const std::vector<PlanShot> given = plan;
        adjustShots(world.rules, world.shape, plan);
        EXPECT_LE(planCost(world.rules, plan), before + 1e-9);
        ASSERT_EQ(plan.size(), given.size());
        for (std::size_t i = 0; i < plan.size(); ++i) {
            EXPECT_EQ(plan[i].arrival, given[i].arrival);
        }
        better += plan != given ? 1 : 0;
    }
    EXPECT_GT(better, 100);
}

TEST(SearchTest, CheapestPlan_Progress_GrowsAndItsFailureEndsTheSearch) {
    const World world(3);
    double last = -1.0;
    cheapestPlan(world.rules, world.candidates, [&](double share) {
        EXPECT_GT(share, last);
        EXPECT_LE(share, 1.0);
        last = share;
    });
    EXPECT_EQ(last, 0.0); // fewer steps than lie between two reports
    EXPECT_THROW(cheapestPlan(world.rules, world.candidates, [](double) { throw 1; }), int);
}

} // namespace
} // namespace OrvantaNS::testing
