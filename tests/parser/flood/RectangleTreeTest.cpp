#include "parser/flood/RectangleTree.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using Node = RectangleTree::Node;

TEST(RectangleTreeTest, IsFindable_NothingCoveredOrFarAway_IsNot) {
    constexpr std::int32_t far = RectangleTree::kFarPixels;
    EXPECT_TRUE(RectangleTree::isFindable({0, 1, 0, 1}));
    EXPECT_FALSE(RectangleTree::isFindable({0, 0, 0, 1}));
    EXPECT_FALSE(RectangleTree::isFindable({0, 1, 1, 0}));
    EXPECT_TRUE(RectangleTree::isFindable({-far, far, -far, far}));
    EXPECT_FALSE(RectangleTree::isFindable({-far - 1, 0, 0, 1}));
    EXPECT_FALSE(RectangleTree::isFindable({0, 1, 0, far + 1}));
    EXPECT_TRUE(RectangleTree::isFar({0, far + 1, 0, 0}));
    EXPECT_FALSE(RectangleTree::isFar({0, 0, 0, 0}));
}

TEST(RectangleTreeTest, IsFar_AsWideOrHighAsASideThatWraps_IsFar) {
    constexpr std::int32_t half = 1 << 30;
    EXPECT_LT(width({-half, half, 0, 1}), 0);
    EXPECT_TRUE(RectangleTree::isFar({-half, half, 0, 1}));
    EXPECT_TRUE(RectangleTree::isFar({0, 1, -half, half}));
}

TEST(RectangleTreeTest, CanMeet_NothingIncluded_IsFalse) {
    const RectangleTree tree({{0, 10, 0, 10}, {5, 5, 0, 0}});
    EXPECT_FALSE(tree.canMeet(RectangleTree::kRoot, {-100, 100, -100, 100}));
    const RectangleTree none({});
    EXPECT_FALSE(none.canMeet(RectangleTree::kRoot, {-100, 100, -100, 100}));
    EXPECT_TRUE(none.isLeaf(RectangleTree::kRoot));
}

TEST(RectangleTreeTest, CanMeet_EdgesThatTouch_ShareNoPixel) {
    RectangleTree tree({{0, 10, 0, 10}});
    tree.include(0, {0, 10, 0, 10});
    EXPECT_TRUE(tree.canMeet(RectangleTree::kRoot, {9, 20, 9, 20}));
    EXPECT_FALSE(tree.canMeet(RectangleTree::kRoot, {10, 20, 0, 10}));
    EXPECT_FALSE(tree.canMeet(RectangleTree::kRoot, {0, 10, 10, 20}));
    EXPECT_FALSE(tree.canMeet(RectangleTree::kRoot, {-5, 0, 0, 10}));
    EXPECT_FALSE(tree.canMeet(RectangleTree::kRoot, {0, 10, -5, 0}));
}

// A side of twice the limit leaves little room in 32 bits: what is reckoned with it must not overflow.
TEST(RectangleTreeTest, Include_RectanglesAsWideAndHighAsCanBe_CanBeMet) {
    constexpr std::int32_t far = RectangleTree::kFarPixels;
    const std::vector<Rectangle> rects{
        {-far, far, -far, far}, {far - 1, far, far - 1, far}, {-far, far, -far, 1 - far}};
    RectangleTree tree(rects);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        tree.include(i, rects[i]);
        EXPECT_TRUE(tree.canMeet(tree.leafOf(i), rects[i])) << i;
    }
    EXPECT_TRUE(tree.canMeet(RectangleTree::kRoot, {0, 1, 0, 1}));
}

// Every rectangle that is included has a leaf of its own, and can be met in every node from there up to the root.
TEST(RectangleTreeTest, Include_AnyRectangles_KeepsEachWithinReachOfEveryNodeAboveIt) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<Rectangle> rects(seed % 10 == 0 ? seed % 4 : random() % 200);
        for (Rectangle& rect : rects) {
            const auto pick = [&] { return static_cast<std::int32_t>(random() % 500); };
            rect = {pick(), pick(), pick(), pick()}; // a quarter of them the right way round
        }
        RectangleTree tree(rects);
        std::vector<int> seated(tree.nodeCount(), 0);
        for (std::size_t i = 0; i < rects.size(); ++i) {
            if (!RectangleTree::isFindable(rects[i])) {
                continue;
            }
            ASSERT_TRUE(tree.isLeaf(tree.leafOf(i)));
            ASSERT_LT(tree.leafOf(i), tree.nodeCount());
            ASSERT_EQ(seated[tree.leafOf(i)]++, 0);
            ASSERT_FALSE(tree.canMeet(tree.leafOf(i), rects[i]));
            tree.include(i, rects[i]);
            for (Node node = tree.leafOf(i); node >= RectangleTree::kRoot; node = RectangleTree::parent(node)) {
                ASSERT_TRUE(tree.canMeet(node, rects[i]));
            }
        }
    }
}

TEST(RectangleTreeTest, Children_LeadBackToTheirParent) {
    for (const Node node : {Node{1}, Node{2}, Node{77}}) {
        EXPECT_EQ(RectangleTree::parent(RectangleTree::firstChild(node)), node);
        EXPECT_EQ(RectangleTree::parent(RectangleTree::secondChild(node)), node);
        EXPECT_NE(RectangleTree::firstChild(node), RectangleTree::secondChild(node));
    }
}

} // namespace
} // namespace OrvantaNS
