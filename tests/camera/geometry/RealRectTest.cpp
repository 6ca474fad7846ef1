#include "camera/geometry/RealRect.h"

#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using camera::RealRect;

// 40 wide and 10 high.
constexpr RealRect kRect{10.5, 3.0, 50.5, 13.0};

TEST(RealRectTest, Default_IsAPointAtTheCorner) { EXPECT_EQ(RealRect(), (RealRect{0.0, 0.0, 0.0, 0.0})); }

TEST(RealRectTest, Equal_NeedsAllFourEdges) {
    EXPECT_EQ(kRect, (RealRect{10.5, 3.0, 50.5, 13.0}));
    EXPECT_NE(kRect, (RealRect{10.0, 3.0, 50.5, 13.0}));
    EXPECT_NE(kRect, (RealRect{10.5, 3.5, 50.5, 13.0}));
    EXPECT_NE(kRect, (RealRect{10.5, 3.0, 50.0, 13.0}));
    EXPECT_NE(kRect, (RealRect{10.5, 3.0, 50.5, 13.5}));
}

TEST(RealRectTest, SidesAndMiddle) {
    EXPECT_EQ(camera::width(kRect), 40.0);
    EXPECT_EQ(camera::height(kRect), 10.0);
    EXPECT_EQ(camera::centreX(kRect), 30.5);
    EXPECT_EQ(camera::centreY(kRect), 8.0);
}

TEST(RealRectTest, Area_IsOfWhatHasBothSides) {
    EXPECT_EQ(camera::area(kRect), 400.0);
    for (const RealRect& none :
         std::vector<RealRect>{{}, {5, 5, 5, 9}, {5, 5, 9, 5}, {5, 5, 4, 9}, {5, 5, 9, 4}, {5, 5, 4, 4}}) {
        EXPECT_TRUE(camera::isEmpty(none));
        EXPECT_EQ(camera::area(none), 0.0);
    }
    EXPECT_FALSE(camera::isEmpty({5.0, 5.0, 5.25, 5.25}));
    EXPECT_EQ(camera::area({5.0, 5.0, 5.25, 5.25}), 0.0625);
}

TEST(RealRectTest, ToReal_TakesTheEdgesByTheirNames) {
    EXPECT_EQ(camera::toReal({1, 2, 3, 4}), (RealRect{1.0, 3.0, 2.0, 4.0})); // left, right, top, bottom
}

TEST(RealRectTest, IntersectionAndUnion_OfEveryPairOnASmallGrid_HoldThePointsOfBothOrEither) {
    std::vector<RealRect> all;
    for (int code = 0; code < 81; ++code) {
        const double left = code % 3;
        const double top = code / 3 % 3;
        all.push_back({left, top, left + 1 + code / 9 % 3, top + 1 + code / 27});
    }
    for (const RealRect& a : all) {
        for (const RealRect& b : all) {
            const RealRect both = camera::intersection(a, b);
            const RealRect either = camera::boundingUnion(a, b);
            EXPECT_EQ(both, camera::intersection(b, a));
            EXPECT_EQ(either, camera::boundingUnion(b, a));
            for (int point = 0; point < 64; ++point) {
                const double x = point % 8;
                const double y = point / 8;
                const bool inA = camera::containsPoint(a, x, y);
                const bool inB = camera::containsPoint(b, x, y);
                EXPECT_EQ(camera::containsPoint(both, x, y), inA && inB);
                EXPECT_TRUE(camera::containsPoint(either, x, y) || !(inA || inB));
            }
            // No smaller box holds both: each edge is one of theirs.
            EXPECT_TRUE(either.left == a.left || either.left == b.left);
            EXPECT_TRUE(either.top == a.top || either.top == b.top);
            EXPECT_TRUE(either.right == a.right || either.right == b.right);
            EXPECT_TRUE(either.bottom == a.bottom || either.bottom == b.bottom);
        }
    }
}

TEST(RealRectTest, ContainsPoint_LeftAndTopEdgesAreInside_RightAndBottomOutside) {
    EXPECT_TRUE(camera::containsPoint(kRect, 10.5, 3.0));
    EXPECT_TRUE(camera::containsPoint(kRect, 50.25, 12.75));
    EXPECT_FALSE(camera::containsPoint(kRect, 10.25, 8.0));
    EXPECT_FALSE(camera::containsPoint(kRect, 50.5, 8.0));
    EXPECT_FALSE(camera::containsPoint(kRect, 30.0, 2.75));
    EXPECT_FALSE(camera::containsPoint(kRect, 30.0, 13.0));
}

TEST(RealRectTest, ShareInside_IsThePartsOwnShare) {
    EXPECT_EQ(camera::shareInside({0, 0, 100, 100}, kRect), 1.0);
    // A quarter of its columns and half of its rows.
    EXPECT_EQ(camera::shareInside({40.5, 8.0, 100, 100}, kRect), 0.125);
    EXPECT_EQ(camera::shareInside({50.5, 0, 100, 100}, kRect), 0.0);
    EXPECT_EQ(camera::shareInside({60, 60, 100, 100}, kRect), 0.0);
    EXPECT_EQ(camera::shareInside({0, 0, 100, 100}, {5, 5, 5, 9}), 0.0);
    EXPECT_EQ(camera::shareInside({0, 0, 1, 1}, {0.0, 0.0, 0.5, 0.5}), 1.0);
}

} // namespace
} // namespace OrvantaNS::testing
