#include "camera/director/Adjustment.h"

#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using namespace camera;

// Frames are multiples of 8 by 5 pixels, 64 by 40 at least.
const FrameShape kShape(64, 40, 2048, 1280, 1.0, false);

/// Five seconds of 2048 by 1280 in which moves and crops cost by their plain measures: what is cropped is lost by its
/// share, and half the weight is lost at once by what is too small.
struct Plain {
    camera::Scene scene;
    DirectorWeights weights;
    FrameShape shape = kShape;
    std::vector<Evidence> evidence;
    std::vector<PlanPress> presses;
    double pressMargin = 3.0;
    std::unique_ptr<LossTable> losses;
    PlanRules rules;

    Plain() {
        scene.steps = 20;
        weights.cropSmall = 1.0;
        weights.unread = 1.0;
        weights.unreadStep = 0.5;
        weights.unreadOctaves = 2.0;
        weights.move = 0.0;
        weights.moveZoom = 0.0;
        weights.moveWay = 0.0;
        weights.moveBlur = 0.0;
    }

    Plain& see(const RealRect& rect, std::int32_t from, std::int32_t to, double weight) {
        evidence.push_back({EvidenceKind::Press, from, to, rect, weight});
        return *this;
    }

    std::vector<PlanShot> adjusted(std::vector<PlanShot> shots) {
        losses = std::make_unique<LossTable>(scene, shape, weights, evidence);
        rules.losses = losses.get();
        rules.weights = weights;
        rules.outputWidth = shape.outputWidth();
        rules.regionWidth = shape.regionWidth();
        rules.regionHeight = shape.regionHeight();
        rules.steps = scene.steps;
        rules.pressMargin = pressMargin;
        rules.presses = presses;
        for (std::int32_t step = 0; step < scene.steps; ++step) {
            rules.pressEnds.push_back(0);
            for (const PlanPress& press : presses) {
                rules.pressEnds.back() += press.step <= step ? 1 : 0;
            }
        }
        adjustShots(rules, shape, shots);
        return shots;
    }
};

RealRect frameAt(double left, double top, double wide = 64.0) {
    return {left, top, left + wide, top + wide / 8.0 * 5.0};
}

TEST(AdjustmentTest, NoShots_StayNone) { EXPECT_TRUE(Plain().adjusted({}).empty()); }

TEST(AdjustmentTest, NothingToSee_FramesStay) {
    const std::vector<PlanShot> shots{{0, frameAt(100, 60)}, {10, frameAt(700, 300, 128)}};
    EXPECT_EQ(Plain().adjusted(shots), shots);
}

TEST(AdjustmentTest, FrameBesideAThingOfItsSize_GoesThereToThePixel) {
    // Any other frame crops the thing or shows it too small.
    for (const auto& [x, y] : {std::pair{83.0, 52.0}, {79.0, 49.0}, {73.0, 56.0}, {95.0, 35.0}}) {
        const auto shots = Plain().see(frameAt(80, 50), 0, 20, 1.0).adjusted({{0, frameAt(x, y)}});
        EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(80, 50)}})) << x << ' ' << y;
    }
}

TEST(AdjustmentTest, FrameWithinALargerThing_GrowsAroundIt) {
    Plain plain;
    plain.shape = FrameShape(64, 40, 2048, 1280, 0.5, false);
    const auto shots = plain.see(frameAt(60, 50, 128), 0, 20, 1.0).adjusted({{0, frameAt(92, 70)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(60, 50, 128)}}));
}

TEST(AdjustmentTest, FrameTooLargeForItsThing_ShrinksToIt) {
    Plain plain;
    plain.shape = FrameShape(64, 40, 2048, 1280, 0.5, false);
    const auto shots = plain.see(frameAt(64, 40, 128), 0, 20, 1.0).adjusted({{0, frameAt(0, 0, 256)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(64, 40, 128)}}));
}

/// A drawn area of 1024 columns from 480 on, which is readable in no wider frame.
Plain largeChange() {
    Plain plain;
    plain.shape = FrameShape(64, 40, 2048, 1280, 0.0625, false);
    plain.weights.cropLarge = 1.0;
    plain.evidence.push_back({EvidenceKind::Change, 0, 20, frameAt(480, 320, 1024), 1.0});
    return plain;
}

TEST(AdjustmentTest, LargeFrame_GoesByStepsOfA256thOfItsWidth) {
    // The steps are 128, 64, 32, 16, 8 and 4 pixels.
    EXPECT_EQ(largeChange().adjusted({{0, frameAt(484, 320, 1024)}})[0].rect, frameAt(480, 320, 1024));
    EXPECT_EQ(largeChange().adjusted({{0, frameAt(482, 320, 1024)}})[0].rect, frameAt(482, 320, 1024));
}

TEST(AdjustmentTest, GainOfLessThanAMillionth_IsNone) {
    // The first step to the left shows all of it, for a quarter of a second: half a millionth is nothing, five are.
    const RealRect thing{80, 60, 88, 70};
    EXPECT_EQ(Plain().see(thing, 0, 1, 2e-6).adjusted({{0, frameAt(88, 50)}})[0].rect, frameAt(88, 50));
    EXPECT_EQ(Plain().see(thing, 0, 1, 4e-6).adjusted({{0, frameAt(88, 50)}})[0].rect, frameAt(88, 50)); // just one
    EXPECT_EQ(Plain().see(thing, 0, 1, 2e-5).adjusted({{0, frameAt(88, 50)}})[0].rect, frameAt(80, 50));
}

TEST(AdjustmentTest, TwoSidesAlike_GoesToTheRightAndDown) {
    // One thing just beyond each edge; the frame that holds both shows them too small by more than one of them is worth.
    const auto between = [](const RealRect& one, const RealRect& other) {
        return Plain().see(one, 0, 20, 0.5).see(other, 0, 20, 0.5).adjusted({{0, frameAt(100, 50)}})[0].rect;
    };
    EXPECT_EQ(between({164, 60, 172, 70}, {92, 60, 100, 70}), frameAt(108, 50));
    EXPECT_EQ(between({120, 90, 130, 95}, {120, 45, 130, 50}), frameAt(100, 55));
}

/// Where a frame goes for presses that want no room to its edges, and a thing to be read.
RealRect goesTo(const RealRect& from, const std::vector<std::pair<double, double>>& places,
                const RealRect& thing = {}) {
    Plain plain;
    plain.pressMargin = 0.0;
    for (const auto& [x, y] : places) {
        plain.presses.push_back({5, x, y, 1000.0});
    }
    if (!isEmpty(thing)) {
        plain.see(thing, 0, 20, 1.0);
    }
    return plain.adjusted({{0, from}})[0].rect;
}

TEST(AdjustmentTest, PressAboveOrBelow_IsReachedByOneStep) {
    // An eighth of its width is 8, and 5 in height.
    EXPECT_EQ(goesTo(frameAt(100, 50), {{130, 48}}), frameAt(100, 45));
    EXPECT_EQ(goesTo(frameAt(100, 50), {{130, 92}}), frameAt(100, 55));
    // What is further away than a step is not found.
    EXPECT_EQ(goesTo(frameAt(100, 50), {{130, 43}}), frameAt(100, 50));
    EXPECT_EQ(goesTo(frameAt(100, 50), {{130, 97}}), frameAt(100, 50));
}

TEST(AdjustmentTest, PressesBeyondBothSides_AreReachedByGrowing) {
    // To either side as many would be lost as won. It grows by a step on each side.
    EXPECT_EQ(goesTo(frameAt(100, 50), {{96, 70}, {102, 70}, {162, 70}, {168, 70}}), frameAt(92, 45, 80));
}

TEST(AdjustmentTest, FrameShrinksAroundItsMiddle_AndThenToTheRight) {
    // By a quarter of its width to 96 columns, and from there, as it is tried next, by as much with its right side held.
    EXPECT_EQ(goesTo(frameAt(100, 60, 128), {}, {160, 98, 168, 106}), frameAt(148, 80));
}

TEST(AdjustmentTest, FrameShrinksToTheSideWhereAPressIs) {
    // Twice by a quarter of its first width, each time with that side held.
    const RealRect from = frameAt(100, 60, 128);
    EXPECT_EQ(goesTo(from, {{226.5, 100}}, {200, 102, 210, 112}), frameAt(164, 80));
    EXPECT_EQ(goesTo(from, {{101.5, 100}}, {120, 102, 130, 112}), frameAt(100, 80));
    EXPECT_EQ(goesTo(from, {{164, 138.5}}, {160, 122, 168, 136}), frameAt(132, 100));
    EXPECT_EQ(goesTo(from, {{164, 61.5}}, {160, 64, 168, 78}), frameAt(132, 60));
}

TEST(AdjustmentTest, TwoFramesFarApart_CreepTowardsEachOther_TwelveTriesAtEachStep) {
    Plain plain;
    plain.weights.moveWay = 1.0;
    plain.weights.moveZoom = 100.0;
    // A try goes a step to the side twice, once as it is and once as tight as it can be: 24 steps of 8, 4, 2 and 1 pixels.
    const auto shots = plain.adjusted({{0, frameAt(0, 600)}, {10, frameAt(1900, 600)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(360, 600)}, {10, frameAt(1540, 600)}}));
}

TEST(AdjustmentTest, FrameBetweenTwoOthers_GoesOntoTheirWay) {
    Plain plain;
    plain.weights.moveWay = 1.0;
    plain.weights.moveZoom = 100.0;
    plain.weights.cropSmall = 4.0;
    // The outer frames are held where they are by what they show.
    plain.see(frameAt(100, 600), 0, 3, 1.0).see(frameAt(1800, 600), 14, 20, 1.0);
    const auto shots = plain.adjusted({{0, frameAt(100, 600)}, {7, frameAt(950, 640)}, {14, frameAt(1800, 600)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(100, 600)}, {7, frameAt(950, 600)}, {14, frameAt(1800, 600)}}));
}

TEST(AdjustmentTest, EachShot_GoesByItsOwnRest) {
    Plain plain;
    // The first rests until the move that arrives at step 10 begins, at step 6. Things of one step scale to a sum of 1.
    plain.see(frameAt(80, 50), 0, 6, 0.1).see(frameAt(90, 50), 10, 20, 1.0);
    const auto shots = plain.adjusted({{0, frameAt(83, 50)}, {10, frameAt(85, 50)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(80, 50)}, {10, frameAt(90, 50)}}));
}

TEST(AdjustmentTest, WhatHappensDuringAMove_DrawsBothOfItsEnds) {
    const auto shots = Plain().see(frameAt(80, 50), 6, 10, 1.0).adjusted({{0, frameAt(72, 50)}, {10, frameAt(90, 54)}});
    EXPECT_EQ(shots, (std::vector<PlanShot>{{0, frameAt(80, 50)}, {10, frameAt(80, 50)}}));
}

TEST(AdjustmentTest, PressOutside_IsTakenInWithItsMargin) {
    Plain plain;
    plain.presses.push_back({5, 131.5, 60.5, 1000.0});
    // A step of 8 leaves 4.5 pixels to the edge, which is more than 3.
    EXPECT_EQ(plain.adjusted({{0, frameAt(64, 40)}})[0].rect, frameAt(72, 40));
}

TEST(AdjustmentTest, PressDuringAMove_IsTakenInByTheSecondEnd) {
    Plain plain;
    plain.presses.push_back({8, 131.5, 60.5, 1000.0});
    const auto shots = plain.adjusted({{0, frameAt(80, 40)}, {10, frameAt(64, 40)}});
    EXPECT_EQ(shots[0].rect, frameAt(80, 40));
    EXPECT_EQ(shots[1].rect, frameAt(72, 40));
}

} // namespace
} // namespace OrvantaNS::testing
