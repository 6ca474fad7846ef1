#include "Rectangle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "Interval_Type.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

// Every rectangle, inverted and empty ones included, with edges on the lines 0 to 4 of a grid.
std::vector<Rectangle> smallWorld() {
    std::vector<Rectangle> all;
    for (std::int32_t left = 0; left < 5; ++left) {
        for (std::int32_t right = 0; right < 5; ++right) {
            for (std::int32_t top = 0; top < 5; ++top) {
                for (std::int32_t bottom = 0; bottom < 5; ++bottom) {
                    all.push_back({left, right, top, bottom});
                }
            }
        }
    }
    return all;
}

// The pixels of a rectangle, as bits of a 7 by 7 field that begins at (-1, -1).
std::uint64_t pixels(const Rectangle& r) {
    std::uint64_t set = 0;
    for (std::int32_t y = r.top; y < r.bottom; ++y) {
        for (std::int32_t x = r.left; x < r.right; ++x) {
            set |= std::uint64_t{1} << ((y + 1) * 7 + (x + 1));
        }
    }
    return set;
}

TEST(RectangleTest, Default_IsAllZero) {
    const Rectangle r;
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(r.right, 0);
    EXPECT_EQ(r.top, 0);
    EXPECT_EQ(r.bottom, 0);
}

TEST(RectangleTest, Fields_StandInTheOrderLeftRightTopBottom) {
    const Rectangle r{1, 2, 3, 4};
    EXPECT_EQ(r.left, 1);
    EXPECT_EQ(r.right, 2);
    EXPECT_EQ(r.top, 3);
    EXPECT_EQ(r.bottom, 4);
}

TEST(IntervalTypeTest, Default_IsZeroToZero_AndFieldsAreStartThenStop) {
    const Interval_Type<long long> ticks;
    EXPECT_EQ(ticks.start, 0);
    EXPECT_EQ(ticks.stop, 0);
    const Interval_Type<double> seconds{1.5, 0.5};
    EXPECT_EQ(seconds.start, 1.5);
    EXPECT_EQ(seconds.stop, 0.5);
}

// ---- The vocabulary ----

TEST(GeometryTest, Sizes_OfOrdinaryEmptyAndInvertedRectangles) {
    struct Row {
        Rectangle rect;
        std::int32_t width;
        std::int32_t height;
        std::int32_t area;
        bool empty;
    };
    const std::vector<Row> rows{
        {{10, 30, 5, 15}, 20, 10, 200, false}, {{-5, 5, -3, 3}, 10, 6, 60, false},  {{0, 1, 0, 1}, 1, 1, 1, false},
        {{7, 7, 0, 100}, 0, 100, 0, true},     {{0, 100, 7, 7}, 100, 0, 0, true},   {{5, 4, 0, 100}, -1, 100, 0, true},
        {{0, 100, 5, 4}, 100, -1, 0, true},    {{10, 0, 10, 0}, -10, -10, 0, true}, {{0, 0, 0, 0}, 0, 0, 0, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.rect.left) + " " + ::testing::PrintToString(row.rect.right));
        EXPECT_EQ(width(row.rect), row.width);
        EXPECT_EQ(height(row.rect), row.height);
        EXPECT_EQ(area(row.rect), row.area);
        EXPECT_EQ(isEmpty(row.rect), row.empty);
    }
}

TEST(GeometryTest, Equal_NeedsAllFourFields) {
    const Rectangle r{1, 2, 3, 4};
    EXPECT_EQ(r, (Rectangle{1, 2, 3, 4}));
    EXPECT_NE(r, (Rectangle{0, 2, 3, 4}));
    EXPECT_NE(r, (Rectangle{1, 0, 3, 4}));
    EXPECT_NE(r, (Rectangle{1, 2, 0, 4}));
    EXPECT_NE(r, (Rectangle{1, 2, 3, 0}));
}

TEST(GeometryTest, Contains_SharedEdgesCount_OnePixelBeyondDoesNot) {
    const Rectangle outer{10, 20, 30, 40};
    EXPECT_TRUE(contains(outer, outer));
    EXPECT_TRUE(contains(outer, {11, 19, 31, 39}));
    EXPECT_FALSE(contains(outer, {9, 20, 30, 40}));
    EXPECT_FALSE(contains(outer, {10, 21, 30, 40}));
    EXPECT_FALSE(contains(outer, {10, 20, 29, 40}));
    EXPECT_FALSE(contains(outer, {10, 20, 30, 41}));
}

TEST(GeometryTest, Intersection_OfDisjointRectangles_ComesOutInvertedWithAreaZero) {
    const Rectangle common = intersection({0, 10, 0, 10}, {20, 30, 2, 8});
    EXPECT_EQ(common, (Rectangle{20, 10, 2, 8}));
    EXPECT_EQ(area(common), 0);
}

TEST(GeometryTest, BoundingUnion_DoesNotTestForEmptiness) {
    EXPECT_EQ(boundingUnion({10, 20, 10, 20}, {}), (Rectangle{0, 20, 0, 20}));
}

TEST(GeometryTest, Normalized_SwapsEachAxisByItself) {
    EXPECT_EQ(normalized({1, 2, 3, 4}), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(normalized({2, 1, 3, 4}), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(normalized({1, 2, 4, 3}), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(normalized({2, 1, 4, 3}), (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(normalized({5, 5, 6, 6}), (Rectangle{5, 5, 6, 6}));
}

TEST(GeometryTest, ContainsPoint_HighEdgesAreOutside) {
    const Rectangle r{10, 20, 30, 40};
    EXPECT_TRUE(containsPoint(r, 10, 30));
    EXPECT_TRUE(containsPoint(r, 19, 39));
    EXPECT_FALSE(containsPoint(r, 9, 35));
    EXPECT_FALSE(containsPoint(r, 20, 35));
    EXPECT_FALSE(containsPoint(r, 15, 29));
    EXPECT_FALSE(containsPoint(r, 15, 40));
}

TEST(GeometryTest, RelativeToGrownAndLocalRegion_MoveEdgesByHand) {
    EXPECT_EQ(relativeTo({10, 20, 30, 40}, 10, 5), (Rectangle{0, 10, 25, 35}));
    EXPECT_EQ(grown({10, 20, 30, 40}, 3), (Rectangle{7, 23, 27, 43}));
    EXPECT_EQ(localRegion({100, 740, -50, 350}), (Rectangle{0, 640, 0, 400}));
}

TEST(GeometryTest, SmallWorld_AreaIntersectionAndContainmentAgreeWithPixels) {
    const std::vector<Rectangle> all = smallWorld();
    for (const Rectangle& a : all) {
        ASSERT_EQ(area(a), std::popcount(pixels(a)));
        ASSERT_EQ(isEmpty(a), pixels(a) == 0);
        for (const Rectangle& b : all) {
            // The intersection of an inverted rectangle can only be inverted or empty.
            ASSERT_EQ(pixels(intersection(a, b)), pixels(a) & pixels(b));
            ASSERT_EQ(overlaps(a, b), (pixels(a) & pixels(b)) != 0);
            if (!isEmpty(a) && !isEmpty(b)) {
                ASSERT_EQ(contains(a, b), (pixels(a) & pixels(b)) == pixels(b));
                ASSERT_TRUE(contains(boundingUnion(a, b), a) && contains(boundingUnion(a, b), b));
            }
        }
    }
}

TEST(GeometryTest, Extremes_WrapInThirtyTwoBits) {
    // 2^31 − 1 − (−2^31) = 2^32 − 1, which is −1 in 32 bits: an enormous rectangle counts as inverted.
    EXPECT_EQ(width({kMin, kMax, 0, 1}), -1);
    EXPECT_EQ(area({kMin, kMax, 0, 1}), 0);
    EXPECT_TRUE(isEmpty({kMin, kMax, 0, 1}));
    // 65536 × 65536 = 2^32 wraps to 0: empty although both sides are positive.
    EXPECT_EQ(area({0, 65536, 0, 65536}), 0);
    EXPECT_TRUE(isEmpty({0, 65536, 0, 65536}));
    EXPECT_FALSE(overlaps({0, 65536, 0, 65536}, {0, 65536, 0, 65536}));
    // 46341² = 2147488281 = 2^31 + 4633, which is 4633 − 2^31: negative, so not empty, yet no overlap.
    EXPECT_EQ(area({0, 46341, 0, 46341}), -2147479015);
    EXPECT_FALSE(isEmpty({0, 46341, 0, 46341}));
    EXPECT_FALSE(overlaps({0, 46341, 0, 46341}, {0, 46341, 0, 46341}));
    // 46340² = 2147395600 still fits.
    EXPECT_EQ(area({0, 46340, 0, 46340}), 2147395600);
    EXPECT_EQ(grown({kMin, kMax, 0, 0}, 1), (Rectangle{kMax, kMin, -1, 1}));
    EXPECT_EQ(relativeTo({kMin, kMin, 0, 0}, 1, 0), (Rectangle{kMax, kMax, 0, 0}));
}

// ---- canTouchRect ----

TEST(RectangleTest, CanTouchRect_SharedEdgeOrCornerTouches_GapOfOnePixelDoesNot) {
    const Rectangle r{10, 20, 10, 20};
    struct Row {
        Rectangle other;
        bool touches;
    };
    const std::vector<Row> rows{
        {{19, 30, 10, 20}, true},  {{20, 30, 10, 20}, true},  {{21, 30, 10, 20}, false}, // right neighbour
        {{0, 11, 10, 20}, true},   {{0, 10, 10, 20}, true},   {{0, 9, 10, 20}, false},   // left
        {{10, 20, 19, 30}, true},  {{10, 20, 20, 30}, true},  {{10, 20, 21, 30}, false}, // below
        {{10, 20, 0, 11}, true},   {{10, 20, 0, 10}, true},   {{10, 20, 0, 9}, false},   // above
        {{20, 30, 20, 30}, true},  {{21, 30, 20, 30}, false}, {{20, 30, 21, 30}, false}, // corner
        {{12, 18, 12, 18}, true},  {{0, 40, 0, 40}, true},                               // inside, around
        {{15, 15, 10, 20}, false}, {{18, 12, 12, 18}, false},                            // empty, inverted
    };
    for (const Row& row : rows) {
        EXPECT_EQ(r.canTouchRect(row.other), row.touches)
            << row.other.left << " " << row.other.right << " " << row.other.top << " " << row.other.bottom;
    }
}

TEST(RectangleTest, CanTouchRect_AnEmptyRectangleGrowsAsWell) {
    // (15, 15) grown by one is two pixels wide.
    EXPECT_TRUE((Rectangle{15, 15, 15, 15}.canTouchRect({10, 20, 10, 20})));
    EXPECT_FALSE((Rectangle{10, 20, 10, 20}.canTouchRect({15, 15, 15, 15})));
}

TEST(RectangleTest, CanTouchRect_SmallWorld_EqualsItsDefinition) {
    const std::vector<Rectangle> all = smallWorld();
    for (const Rectangle& a : all) {
        const Rectangle wider{a.left - 1, a.right + 1, a.top - 1, a.bottom + 1};
        for (const Rectangle& b : all) {
            // In pixels: the grown rectangle, which stays within the field, shares at least one with the other.
            ASSERT_EQ(a.canTouchRect(b), (pixels(wider) & pixels(b)) != 0);
            if (!isEmpty(a) && !isEmpty(b)) {
                ASSERT_EQ(a.canTouchRect(b), b.canTouchRect(a));
            }
        }
    }
}

TEST(RectangleTest, CanTouchRect_AtTheExtremes_EdgesWrap) {
    // left − 1 wraps to the largest value: nothing lies right of it.
    EXPECT_FALSE((Rectangle{kMin, 0, 0, 10}.canTouchRect({-5, 5, 0, 10})));
    // right + 1 wraps to the lowest.
    EXPECT_FALSE((Rectangle{0, kMax, 0, 10}.canTouchRect({-5, 5, 0, 10})));
    EXPECT_FALSE((Rectangle{0, 65534, 0, 65534}.canTouchRect({-1, 65535, -1, 65535}))); // 65536² wraps to 0.
}

// ---- snapWithin ----

TEST(RectangleTest, SnapWithin_MovesByTheLowEdgeFirst) {
    const Rectangle bound{100, 200, 50, 150};
    struct Row {
        Rectangle rect;
        Rectangle snapped;
    };
    const std::vector<Row> rows{
        {{120, 180, 60, 90}, {120, 180, 60, 90}},   // inside: unchanged
        {{100, 200, 50, 150}, {100, 200, 50, 150}}, // the bound itself
        {{99, 150, 60, 90}, {100, 151, 60, 90}},    // one pixel left of it
        {{150, 201, 60, 90}, {149, 200, 60, 90}},   // one pixel right of it
        {{0, 30, 0, 20}, {100, 130, 50, 70}},       // far above and to the left
        {{500, 530, 500, 520}, {170, 200, 130, 150}}, {{120, 180, 49, 90}, {120, 180, 50, 91}},
        {{120, 180, 60, 151}, {120, 180, 59, 150}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.rect.snapWithin(bound), row.snapped);
    }
}

TEST(RectangleTest, SnapWithin_RectWiderThanBound_OverhangsRight) {
    // 130 wide in a bound of 100: flush with the low edge, 30 beyond the high one.
    EXPECT_EQ((Rectangle{90, 220, 60, 90}.snapWithin({100, 200, 50, 150})), (Rectangle{100, 230, 60, 90}));
    EXPECT_EQ((Rectangle{120, 180, 40, 170}.snapWithin({100, 200, 50, 150})), (Rectangle{120, 180, 50, 180}));
}

TEST(RectangleTest, SnapWithin_WiderRectStartingWithinBound_EndsFlushWithTheHighEdge) {
    EXPECT_EQ((Rectangle{100, 230, 60, 90}.snapWithin({100, 200, 50, 150})), (Rectangle{70, 200, 60, 90}));
    EXPECT_EQ((Rectangle{120, 180, 50, 180}.snapWithin({100, 200, 50, 150})), (Rectangle{120, 180, 20, 150}));
}

TEST(RectangleTest, SnapWithin_LeavesTheRectangleItselfUnchanged) {
    const Rectangle r{0, 10, 0, 10};
    r.snapWithin({50, 100, 50, 100});
    EXPECT_EQ(r, (Rectangle{0, 10, 0, 10}));
}

TEST(RectangleTest, SnapWithin_SmallWorld_NeverResizes_AndFitsWhatFits) {
    const std::vector<Rectangle> all = smallWorld();
    for (const Rectangle& bound : all) {
        for (const Rectangle& r : all) {
            const Rectangle snapped = r.snapWithin(bound);
            ASSERT_EQ(width(snapped), width(r));
            ASSERT_EQ(height(snapped), height(r));
            if (contains(bound, r)) {
                ASSERT_EQ(snapped, r);
            }
            if (!isEmpty(r) && width(r) <= width(bound) && height(r) <= height(bound)) {
                ASSERT_TRUE(contains(bound, snapped));
            }
        }
    }
}

TEST(RectangleTest, SnapWithin_AtTheExtremes_KeepsTheWrappedSize) {
    const Rectangle r{kMin, kMax, kMin, kMax}; // −1 wide and high
    EXPECT_EQ(r.snapWithin({0, 10, 0, 10}), (Rectangle{0, -1, 0, -1}));
    EXPECT_EQ((Rectangle{kMin, 0, 0, 1}.snapWithin({kMax, kMax, 0, 1})), (Rectangle{kMax, -1, 0, 1}));
}

// ---- noZeroBound ----

TEST(RectangleTest, NoZeroBound_TwoEmptyRectangles_GivesTheAllZeroRectangle) {
    EXPECT_EQ((Rectangle{5, 5, 1, 9}.noZeroBound(Rectangle{7, 7, 7, 7})), Rectangle{});
}

TEST(RectangleTest, NoZeroBound_EmptyThisAndInvertedOther_GivesTheAllZeroRectangle) {
    EXPECT_EQ((Rectangle{5, 5, 1, 9}.noZeroBound(Rectangle{20, 10, 20, 10})), Rectangle{});
}

TEST(RectangleTest, NoZeroBound_OneEmpty_GivesTheOther) {
    const Rectangle full{10, 20, 30, 40};
    EXPECT_EQ((Rectangle{}.noZeroBound(full)), full);
    EXPECT_EQ((Rectangle{9, 2, 9, 2}.noZeroBound(full)), full);
    EXPECT_EQ(full.noZeroBound({}), full);
    EXPECT_EQ(full.noZeroBound({9, 2, 9, 2}), full);
    EXPECT_EQ((Rectangle{}.noZeroBound({3, 4, 5, 6})), (Rectangle{3, 4, 5, 6})); // an area of 1 is enough
}

TEST(RectangleTest, NoZeroBound_SmallWorld_BoundsWhatCoversPixels) {
    const std::vector<Rectangle> all = smallWorld();
    for (const Rectangle& a : all) {
        for (const Rectangle& b : all) {
            const Rectangle expected = pixels(a) == 0 ? (pixels(b) == 0 ? Rectangle{} : b)
                                       : pixels(b) == 0
                                           ? a
                                           : Rectangle{std::min(a.left, b.left), std::max(a.right, b.right),
                                                       std::min(a.top, b.top), std::max(a.bottom, b.bottom)};
            ASSERT_EQ(a.noZeroBound(b), expected);
        }
    }
}

TEST(RectangleTest, NoZeroBound_AreasThatWrap_FollowThirtyTwoBits) {
    const Rectangle zeroArea{0, 65536, 0, 65536};     // wraps to 0: empty
    const Rectangle negativeArea{0, 46341, 0, 46341}; // wraps below 0: not empty, yet below 1
    const Rectangle small{1, 2, 1, 2};
    EXPECT_EQ(zeroArea.noZeroBound(small), small);
    EXPECT_EQ(small.noZeroBound(zeroArea), small);
    EXPECT_EQ((Rectangle{}.noZeroBound(negativeArea)), Rectangle{});
    EXPECT_EQ(small.noZeroBound(negativeArea), negativeArea); // the bounding union of the two
    EXPECT_EQ(negativeArea.noZeroBound(small), negativeArea);
}

// ---- nearSameSize ----

TEST(RectangleTest, NearSameSize_SixteenPixelsOnEachSide_SeventeenOnAnyOneSideIsTooMuch) {
    const Rectangle r{100, 200, 100, 200};
    EXPECT_TRUE(r.nearSameSize(r));
    for (const std::int32_t inset : {1, 15, 16}) {
        EXPECT_TRUE(r.nearSameSize({100 + inset, 200, 100, 200}));
        EXPECT_TRUE(r.nearSameSize({100, 200 - inset, 100, 200}));
        EXPECT_TRUE(r.nearSameSize({100, 200, 100 + inset, 200}));
        EXPECT_TRUE(r.nearSameSize({100, 200, 100, 200 - inset}));
        EXPECT_TRUE(r.nearSameSize({100 + inset, 200 - inset, 100 + inset, 200 - inset}));
    }
    EXPECT_FALSE(r.nearSameSize({117, 200, 100, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 183, 100, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 200, 117, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 200, 100, 183}));
}

TEST(RectangleTest, NearSameSize_LargerArgument_IsFalse) {
    const Rectangle r{100, 200, 100, 200};
    EXPECT_FALSE(r.nearSameSize({99, 200, 100, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 201, 100, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 200, 99, 200}));
    EXPECT_FALSE(r.nearSameSize({100, 200, 100, 201}));
}

TEST(RectangleTest, NearSameSize_EmptyRectanglesAreJudgedByEdgesAlone) {
    EXPECT_TRUE((Rectangle{5, 5, 5, 5}.nearSameSize({5, 5, 5, 5})));
    EXPECT_TRUE((Rectangle{0, 20, 0, 20}.nearSameSize({10, 10, 10, 10})));
}

TEST(RectangleTest, NearSameSize_AtTheExtremes_SidesWrap) {
    // left + 16 wraps below the other's left.
    EXPECT_FALSE((Rectangle{kMax, kMax, 0, 0}.nearSameSize({kMax, kMax, 0, 0})));
    EXPECT_FALSE((Rectangle{0, kMin, 0, 0}.nearSameSize({0, kMin, 0, 0})));
    EXPECT_TRUE((Rectangle{kMin, kMax, kMin, kMax}.nearSameSize({kMin, kMax, kMin, kMax})));
}

// ---- printRect ----

TEST(RectangleTest, PrintRect_WritesTheFourEdgesWithoutALineEnd) {
    std::ostringstream out;
    Rectangle{-1, 20, 300, -4000}.printRect(out);
    EXPECT_EQ(out.str(), "-1 20 300 -4000");
}

TEST(RectangleTest, PrintRect_ToAFileStream_WritesTheSameText) {
    const std::string path = ::testing::TempDir() + "orvanta_print_rect_test.txt";
    {
        std::ofstream out(path);
        ASSERT_TRUE(out.is_open());
        Rectangle{kMin, kMax, 0, 7}.printRect(out);
    }
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    EXPECT_EQ(text.str(), "-2147483648 2147483647 0 7");
    EXPECT_EQ(std::remove(path.c_str()), 0);
}

// ---- Everything at once on hostile edges: the sanitizers watch ----

TEST(RectangleTest, AnyEdges_EveryOperationIsDefined) {
    const std::array<std::int32_t, 9> edges{kMin, kMin + 1, -65536, -1, 0, 1, 65536, kMax - 1, kMax};
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto edge = [&] { return edges[random() % edges.size()]; };
    for (int round = 0; round < 20000; ++round) {
        const Rectangle a{edge(), edge(), edge(), edge()};
        const Rectangle b{edge(), edge(), edge(), edge()};
        ASSERT_EQ(width(a.snapWithin(b)), width(a));
        ASSERT_EQ(height(a.snapWithin(b)), height(a));
        ASSERT_EQ(overlaps(a, b), overlaps(b, a));
        const Rectangle bounded = a.noZeroBound(b);
        ASSERT_TRUE(bounded == Rectangle{} || bounded == a || bounded == b || bounded == boundingUnion(a, b));
        if (a.nearSameSize(b)) {
            ASSERT_TRUE(contains(a, b));
        }
        ASSERT_EQ(normalized(normalized(a)), normalized(a));
        a.canTouchRect(b);
    }
}

static_assert(std::is_trivially_copyable_v<Rectangle> && sizeof(Rectangle) == 16);

} // namespace
} // namespace OrvantaNS
