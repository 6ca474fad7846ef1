#include "camera/director/Loss.h"

#include <cmath>

#include <gtest/gtest.h>

#include "EmptyScene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

const FrameShape kShape(640, 400, 1280, 800, 0.75, false);

TEST(LossTest, FrameThatHoldsAllAtAReadableZoom_LosesNothing) {
    const camera::Scene scene = emptyScene(0.25);
    const LossTable table(scene, kShape, {}, {{EvidenceKind::Press, 0, 2, {100, 100, 200, 150}, 0.5}});
    EXPECT_EQ(table.loss({0, 0, 640, 400}, 0, 2), 0.0);
    EXPECT_EQ(table.weightOf(0), 0.5);
}

TEST(LossTest, FrameThatHoldsNothing_LosesTheWeightForEverySecond) {
    const camera::Scene scene = emptyScene(0.25);
    const LossTable table(scene, kShape, {}, {{EvidenceKind::Press, 0, 1, {100, 100, 200, 150}, 0.5}});
    EXPECT_EQ(table.loss({640, 400, 1280, 800}, 0, 1), 0.125);
    EXPECT_EQ(table.loss({640, 400, 1280, 800}, 1, 2), 0.0);
}

TEST(LossTest, WeightsOfACrowdedStep_AddUpToOne) {
    const camera::Scene scene = emptyScene(0.25);
    const LossTable table(scene, kShape, {},
                          {{EvidenceKind::Press, 0, 2, {100, 100, 200, 150}, 3.0},
                           {EvidenceKind::Press, 0, 1, {1100, 700, 1200, 750}, 1.0}});
    EXPECT_EQ(table.weightOf(0), 1.0);
    // The frame misses a quarter of the first step's interest and nothing of the second.
    EXPECT_NEAR(table.loss({0, 0, 640, 400}, 0, 2), 0.25 * 0.25, 1e-12);
}

TEST(LossTest, CroppedThing_LosesFasterThanItsShare) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.cropSmall = 4.0;
    const LossTable table(scene, kShape, weights, {{EvidenceKind::Press, 0, 1, {600, 100, 700, 200}, 1.0}});
    const Weighed& item = table.piece(*table.begin(0));
    // 95, 90 and 60 of its 100 columns are inside.
    EXPECT_NEAR(LossTable::sight({55, 0, 695, 400}, item), 1.0 - 4.0 * 0.05, 1e-12);
    EXPECT_NEAR(LossTable::sight({50, 0, 690, 400}, item), 1.0 - 4.0 * 0.10, 1e-12);
    EXPECT_EQ(LossTable::sight({20, 0, 660, 400}, item), 0.0);
}

TEST(LossTest, HalfTheReadableZoom_LosesTheStepAndItsPartOfTheSlope) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.unread = 0.8;
    weights.unreadStep = 0.5;
    weights.unreadOctaves = 2.0;
    const FrameShape shape(640, 400, 1280, 800, 1.0, false);
    const LossTable table(scene, shape, weights, {{EvidenceKind::Press, 0, 1, {600, 100, 700, 200}, 1.0}});
    // One octave below: all of the step, half of the slope, which is 3 to 1; reading is worth 0.8 of these odds.
    EXPECT_NEAR(table.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 2.4 / 3.4, 1e-12);
}

TEST(LossTest, WhatIsOverSoon_LosesOnlyItsPartByBeingTooSmall) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.unread = 0.8;
    weights.unreadStep = 0.5;
    weights.unreadOctaves = 2.0;
    const FrameShape shape(640, 400, 1280, 800, 1.0, false);
    const LossTable table(scene, shape, weights, {{EvidenceKind::Press, 0, 1, {600, 100, 700, 200}, 1.0, 0.25}});
    EXPECT_NEAR(table.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 0.25 * 2.4 / 3.4, 1e-12);
    EXPECT_EQ(table.loss({640, 400, 1280, 800}, 0, 1), 0.25) << "and all of it by not being seen";
}

TEST(LossTest, AHairBelowTheReadableZoom_LosesTheStepInProportion) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.unread = 1.0;
    weights.unreadStep = 1.0;
    const FrameShape shape(640, 400, 1280, 800, 1.0, false);
    const LossTable table(scene, shape, weights, {{EvidenceKind::Press, 0, 1, {100, 100, 200, 150}, 1.0}});
    // The step is climbed within 0.08 octaves.
    EXPECT_NEAR(table.loss({0, 0, 656, 410}, 0, 1), 0.25 * std::log2(656.0 / 640.0) / 0.08, 1e-9);
}

TEST(LossTest, BeyondTheEndOfTheSlope_LosesAllAndNoMore) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.unread = 1.6;
    weights.unreadStep = 0.5;
    weights.unreadOctaves = 0.5;
    const FrameShape shape(640, 400, 1280, 800, 1.0, false);
    const LossTable table(scene, shape, weights, {{EvidenceKind::Press, 0, 1, {600, 100, 700, 200}, 1.0}});
    EXPECT_NEAR(table.loss({0, 0, 1280, 800}, 0, 1), 0.25, 1e-12);
}

TEST(LossTest, WindowThatNoReadableFrameHolds_IsReadAtTheLargestZoomThatHoldsIt) {
    const camera::Scene scene = emptyScene(0.25);
    // 1100 columns fit at 0.582; the frame of 1280 shows it a little smaller, that of 1112 does not.
    const LossTable table(scene, kShape, {}, {{EvidenceKind::Page, 0, 1, {0, 0, 1100, 600}, 1.0}});
    EXPECT_EQ(table.loss({0, 0, 1112, 695}, 0, 1), 0.0);
    EXPECT_GT(table.loss({0, 0, 1280, 800}, 0, 1), 0.0);
}

TEST(LossTest, CroppedWindow_LosesFasterStill) {
    const camera::Scene scene = emptyScene(0.25);
    DirectorWeights weights;
    weights.cropWindow = 10.0;
    const LossTable table(scene, kShape, weights, {{EvidenceKind::SmallWindow, 0, 1, {600, 100, 700, 200}, 1.0}});
    const Weighed& item = table.piece(*table.begin(0));
    EXPECT_NEAR(LossTable::sight({55, 0, 695, 400}, item), 1.0 - 10.0 * 0.05, 1e-12);
    EXPECT_EQ(LossTable::sight({40, 0, 680, 400}, item), 0.0);
}

/// Below its readable zoom a thing loses half of its weight at once, and nothing more.
DirectorWeights halfUnread() {
    DirectorWeights weights;
    weights.unread = 1.0;
    weights.unreadStep = 0.5;
    weights.unreadOctaves = 1e15;
    weights.unreadWhole = 0.4;
    weights.wholeAsks = 1.0;
    return weights;
}

TEST(LossTest, LargeWindow_LosesLessBySmallnessThanItsParts) {
    const camera::Scene scene = emptyScene(0.25);
    // 640 columns would be readable in whole; the frame of 1280 shows them at half the output's size.
    const RealRect window{0, 0, 600, 350};
    const LossTable whole(scene, kShape, halfUnread(), {{EvidenceKind::Page, 0, 1, window, 1.0}});
    EXPECT_NEAR(whole.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 0.5 * 0.4, 1e-12);
    const LossTable part(scene, kShape, halfUnread(), {{EvidenceKind::Press, 0, 1, window, 1.0}});
    EXPECT_NEAR(part.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 0.5, 1e-12);
}

TEST(LossTest, LargeWindowThatOpens_TakesItsShareOfWhatItsPartsAskToBeRead) {
    const camera::Scene scene = emptyScene(0.25);
    const RealRect window{0, 0, 1200, 780}; // no frame tighter than the whole screen holds it
    const RealRect field{100, 100, 200, 150};
    const RealRect screen{0, 0, 1280, 800};
    // The window has 0.6 of the step's weight, so 0.4 of the reading of the press's 0.4 is left. The window itself is as
    // readable as it can be.
    const LossTable table(scene, kShape, halfUnread(),
                          {{EvidenceKind::WindowOpens, 0, 1, window, 3.0}, {EvidenceKind::Press, 0, 2, field, 2.0}});
    EXPECT_NEAR(table.loss(screen, 0, 1), 0.25 * 0.4 * 0.4 * 0.5, 1e-12);
    // Once it stands, the press counts in full: alone, with a weight of 1.
    EXPECT_NEAR(table.loss(screen, 1, 2), 0.25 * 0.5, 1e-12);
}

TEST(LossTest, WindowThatOpens_TakesMoreTheLessOfItCanBeRead) {
    const camera::Scene scene = emptyScene(0.25);
    // With a little room, 0.97 of the frame, it fits at a zoom of 0.15 octaves below the readable one: half of what makes it
    // large.
    const double wide = 0.97 * 640 / 0.75 * std::exp2(0.15);
    const auto losses = [&](double wholeAsks, const std::vector<Evidence>& more) {
        DirectorWeights weights = halfUnread();
        weights.wholeAsks = wholeAsks;
        std::vector<Evidence> evidence{{EvidenceKind::WindowOpens, 0, 1, {0, 0, wide, 300}, 3.0},
                                       {EvidenceKind::Press, 0, 1, {100, 100, 200, 150}, 2.0}};
        evidence.insert(evidence.end(), more.begin(), more.end());
        return LossTable(scene, kShape, weights, evidence).loss({0, 0, 1280, 800}, 0, 1);
    };
    // Half of its 0.6 leaves the press 0.7 of its reading. The window loses 0.4 of its own.
    const double window = 0.6 * 0.4 * 0.5;
    EXPECT_NEAR(losses(1.0, {}), 0.25 * (window + 0.4 * 0.7 * 0.5), 1e-9);
    EXPECT_NEAR(losses(2.0, {}), 0.25 * (window + 0.4 * 0.4 * 0.5), 1e-9);
    EXPECT_NEAR(losses(4.0, {}), 0.25 * window, 1e-9);
    // Two that open do not add up: each has 3 of 8, of which the half is taken.
    EXPECT_NEAR(losses(1.0, {{EvidenceKind::WindowOpens, 0, 1, {0, 0, wide, 300}, 3.0}}),
                0.25 * (2 * 3 / 8.0 * 0.4 * 0.5 + 2 / 8.0 * (1 - 3 / 16.0) * 0.5), 1e-9);
}

TEST(LossTest, Kinds_AreCroppedAndReadEachInItsWay) {
    DirectorWeights weights;
    weights.cropSmall = 2.0;
    weights.cropLarge = 3.0;
    weights.cropWindow = 5.0;
    const auto weighed = [&](EvidenceKind kind) {
        const LossTable table(emptyScene(0.25), kShape, weights, {{kind, 0, 1, {0, 0, 100, 100}, 0.25}});
        return table.piece(0);
    };
    for (const EvidenceKind kind : {EvidenceKind::Press, EvidenceKind::Drag}) {
        EXPECT_EQ(weighed(kind).crop, 2.0);
        EXPECT_FALSE(weighed(kind).isWhole);
    }
    for (const EvidenceKind kind : {EvidenceKind::Typing, EvidenceKind::Change}) {
        EXPECT_EQ(weighed(kind).crop, 3.0);
        EXPECT_FALSE(weighed(kind).isWhole);
    }
    for (const EvidenceKind kind : {EvidenceKind::WindowOpens, EvidenceKind::Page}) {
        EXPECT_EQ(weighed(kind).crop, 5.0);
        EXPECT_TRUE(weighed(kind).isWhole);
    }
    EXPECT_EQ(weighed(EvidenceKind::SmallWindow).crop, 5.0);
    EXPECT_FALSE(weighed(EvidenceKind::SmallWindow).isWhole);
    EXPECT_EQ(weighed(EvidenceKind::Press).weight, 0.25);
}

TEST(LossTest, ThingLargerThanAnyFrame_IsSeenAsFarAsAFrameCan) {
    // The largest frame is 450 by 800.
    const FrameShape portrait(360, 640, 1280, 800, 0.9, false);
    DirectorWeights weights;
    weights.cropWindow = 1.0;
    const LossTable table(emptyScene(0.25), portrait, weights, {{EvidenceKind::Page, 0, 1, {0, 0, 1280, 800}, 1.0}});
    const Weighed& page = table.piece(0);
    EXPECT_NEAR(LossTable::sight({100, 0, 550, 800}, page), 1.0, 1e-12);
    EXPECT_NEAR(LossTable::sight({100, 0, 325, 400}, page), 0.25, 1e-12);
    // It is as readable as it can be in the largest frame: at 0.8.
    EXPECT_NEAR(page.needed, std::log2(0.8), 1e-8);
}

TEST(LossTest, Sight_OfWhatLiesBesideTheFrame_IsNone) {
    const LossTable table(emptyScene(0.25), kShape, {}, {{EvidenceKind::Press, 0, 1, {600, 300, 700, 400}, 1.0}});
    const Weighed& item = table.piece(0);
    for (const RealRect& frame : std::vector<RealRect>{
             {0, 0, 600, 375}, {700, 400, 1340, 800}, {0, 0, 640, 300}, {0, 400, 640, 800}, {700, 0, 1340, 400}}) {
        EXPECT_EQ(LossTable::sight(frame, item), 0.0);
    }
    EXPECT_EQ(LossTable::sight({600, 300, 700, 400}, item), 1.0);
}

TEST(LossTest, Sight_LostSlowlyByCropping_IsNoneBesideTheFrameEither) {
    // Of a square pixel half of its share is lost by cropping.
    Weighed item;
    item.rect = {100, 100, 101, 101};
    item.perPixel = 1.0;
    item.crop = 0.5;
    EXPECT_EQ(LossTable::sight({0, 0, 100.5, 200}, item), 0.75);
    EXPECT_EQ(LossTable::sight({0, 0, 200, 100.5}, item), 0.75);
    for (const RealRect& frame : std::vector<RealRect>{
             {0, 0, 100, 200}, {0, 0, 200, 100}, {0, 0, 99.5, 200}, {0, 0, 200, 99.5}, {0, 0, 99.5, 99.5}}) {
        EXPECT_EQ(LossTable::sight(frame, item), 0.0);
    }
}

TEST(LossTest, Table_ListsTheEvidenceOfEachStepInItsOrder) {
    const LossTable table(emptyScene(0.75), kShape, {},
                          {{EvidenceKind::Press, 1, 4, {0, 0, 10, 10}, 0.5},
                           {EvidenceKind::Press, 0, 2, {0, 0, 10, 10}, 0.25},
                           {EvidenceKind::Press, 3, 3, {0, 0, 10, 10}, 8.0}});
    const auto of = [&](std::int32_t step) { return std::vector<std::uint32_t>(table.begin(step), table.end(step)); };
    EXPECT_EQ(of(0), (std::vector<std::uint32_t>{1}));
    EXPECT_EQ(of(1), (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(of(2), (std::vector<std::uint32_t>{0}));
    EXPECT_EQ(of(3), (std::vector<std::uint32_t>{0}));
    EXPECT_EQ(table.weightOf(0), 0.25);
    EXPECT_EQ(table.weightOf(1), 0.75);
    EXPECT_EQ(table.scale(1), 1.0);
    EXPECT_EQ(table.stepSeconds(), 0.25);
}

TEST(LossTest, SmallWindowThatOpens_LeavesItsPartsTheirReading) {
    const camera::Scene scene = emptyScene(0.25);
    const LossTable table(scene, kShape, halfUnread(),
                          {{EvidenceKind::WindowOpens, 0, 1, {90, 90, 210, 160}, 3.0},
                           {EvidenceKind::Press, 0, 1, {100, 100, 200, 150}, 2.0}});
    EXPECT_NEAR(table.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 0.5 * (0.6 * 0.4 + 0.4), 1e-12);
}

TEST(LossTest, LargeChange_IsSeenInAReadableFrameFullOfIt) {
    const camera::Scene scene = emptyScene(0.25);
    const FrameShape shape(640, 400, 1280, 800, 0.8, false);
    const LossTable table(scene, shape, {}, {{EvidenceKind::Change, 0, 1, {0, 0, 1280, 800}, 1.0}});
    EXPECT_EQ(table.loss({100, 100, 900, 600}, 0, 1), 0.0);
}

TEST(LossTest, LargeChangeInPortrait_IsReadWhereAFrameHoldsALine) {
    camera::Scene scene = emptyScene(0.25);
    scene.width = 2560;
    scene.height = 1600;
    // A readable frame is 480 wide and 853 high; a square of its area, 640.
    const FrameShape shape(360, 640, 2560, 1600, 0.75, false);
    const LossTable table(scene, shape, halfUnread(), {{EvidenceKind::Change, 0, 1, {0, 0, 2560, 1600}, 1.0}});
    EXPECT_EQ(table.loss({0, 0, 640, 1138}, 0, 1), 0.0);
    EXPECT_GT(table.loss({0, 0, 900, 1600}, 0, 1), 0.0);
}

TEST(LossTest, LargeChange_IsNotReadByShowingItWhole) {
    const camera::Scene scene = emptyScene(0.25);
    const LossTable table(scene, kShape, halfUnread(), {{EvidenceKind::Change, 0, 1, {0, 0, 1280, 800}, 1.0}});
    EXPECT_NEAR(table.loss({0, 0, 1280, 800}, 0, 1), 0.25 * 0.5, 1e-12);
}

} // namespace
} // namespace OrvantaNS::testing
