#include "camera/director/Changes.h"

#include <gtest/gtest.h>

#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

using camera::clustered;
using camera::RealRect;

camera::Scene sceneOf(const Params& params) {
    return camera::readScene(params, params.recordingRegions().front().rect, params.clipStart(), params.clipStop());
}

TEST(ChangesTest, Clustered_GapAtTheLimit_Joins) {
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {20, 0, 30, 10}}, 10.0), (std::vector<RealRect>{{0, 0, 30, 10}}));
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {21, 0, 30, 10}}, 10.0).size(), 2u);
}

TEST(ChangesTest, Clustered_ChainsJoinThroughTheirMiddle) {
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {40, 0, 50, 10}, {15, 0, 35, 10}}, 5.0),
              (std::vector<RealRect>{{0, 0, 50, 10}}));
}

TEST(ChangesTest, Clustered_MoreThanSixty_AreOneArea) {
    std::vector<RealRect> rects;
    for (int i = 0; i < 61; ++i) {
        rects.push_back({i * 100.0, 0, i * 100.0 + 1, 1});
    }
    EXPECT_EQ(clustered(rects, 1.0), (std::vector<RealRect>{{0, 0, 6001, 1}}));
    rects.pop_back();
    EXPECT_EQ(clustered(rects, 1.0).size(), 60u);
}

TEST(ChangesTest, ReadChanges_BeatingLikeAClock_GetsLittleAttentionOnceItIsKnown) {
    Scene scene = recording();
    for (int i = 0; i < 30; ++i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30));
    }
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 30u);
    EXPECT_EQ(read.changes.front().attention, 1.0);
    EXPECT_LT(read.changes[10].attention, 0.2);
    EXPECT_LT(read.changes[29].attention, 0.2);
}

TEST(ChangesTest, ReadChanges_IrregularRepeats_KeepTheirAttention) {
    Scene scene = recording();
    const double gaps[] = {0.3, 1.1, 0.5, 2.0, 0.2, 0.9};
    double time = 5.0;
    for (int i = 0; i < 24; ++i) {
        scene.dirty(time, box(100, 100, 60, 30));
        time += gaps[i % 6];
    }
    for (const camera::SceneChange& change : sceneOf(scene).changes) {
        EXPECT_EQ(change.attention, 1.0);
    }
}

TEST(ChangesTest, ReadChanges_AnsweringTheWheel_IsNoClockwork) {
    Scene scene = recording();
    for (int i = 0; i < 30; ++i) {
        scene.action(5.0 + 0.5 * i, 7).dirty(5.1 + 0.5 * i, box(100, 100, 600, 300));
    }
    for (const camera::SceneChange& change : sceneOf(scene).changes) {
        EXPECT_EQ(change.attention, 1.0);
    }
}

TEST(ChangesTest, LineHeight_CaretsTell) {
    EXPECT_EQ(sceneOf(recording()).lineHeight, 18.0);
    Scene scene = recording();
    for (int i = 0; i < 9; ++i) {
        scene.caret(1.0 + i, box(100 + i, 100, 1, 22));
    }
    EXPECT_EQ(sceneOf(scene).lineHeight, 22.0);
}

TEST(ChangesTest, LineHeight_StripsTell_EachPlaceOnce) {
    Scene scene = recording();
    double time = 1.0;
    // Eight lines of text in eight places, and one button that is drawn a hundred times.
    for (int i = 0; i < 8; ++i) {
        scene.dirty(time += 0.37, box(100, 40 * i, 200, 14));
    }
    for (int i = 0; i < 100; ++i) {
        scene.dirty(time += 0.07 + 0.11 * (i % 5), box(700, 500, 90, 40));
    }
    EXPECT_EQ(sceneOf(scene).lineHeight, 14.0);
}

} // namespace
} // namespace OrvantaNS::testing
