#include "OrvantaWorker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "Random.h"
#include "Scene.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using testing::box;
using Padding = std::pair<int, int>;

const Rectangle kScreen = box(0, 0, 1920, 1080);

Padding padding(int targetWidth, int targetHeight, const Rectangle& bound, const Rectangle& rect) {
    OrvantaWorker().calculatePadding(targetWidth, targetHeight, bound, rect);
    return {targetWidth, targetHeight};
}

Rectangle padded(Rectangle rect, int padWidth, int padHeight, const Rectangle& window = {},
                 const Rectangle& bound = box(-5000, -5000, 10000, 10000)) {
    OrvantaWorker().padToAspectRatio(rect, padWidth, padHeight, window, bound);
    return rect;
}

// ---- How much is missing ----

TEST(CalculatePaddingTest, RectThatFits_GetsTheRestOfTheTarget) {
    EXPECT_EQ(padding(640, 480, kScreen, box(10, 10, 640, 480)), Padding(0, 0));
    EXPECT_EQ(padding(640, 480, kScreen, box(10, 10, 639, 480)), Padding(1, 0));
    EXPECT_EQ(padding(640, 480, kScreen, box(10, 10, 100, 30)), Padding(540, 450));
    EXPECT_EQ(padding(640, 480, kScreen, box(10, 10, 0, 0)), Padding(640, 480));
}

TEST(CalculatePaddingTest, RectThatFits_DoesNotLookAtTheBound) {
    EXPECT_EQ(padding(640, 480, box(0, 0, 50, 50), box(10, 10, 100, 30)), Padding(540, 450));
}

TEST(CalculatePaddingTest, RectAsWideOrAsHighAsTheTarget_DoesNotLookAtTheBoundEither) {
    EXPECT_EQ(padding(640, 400, box(0, 0, 1280, 300), box(0, 0, 640, 100)), Padding(0, 300));
    EXPECT_EQ(padding(640, 400, box(0, 0, 500, 800), box(0, 0, 100, 400)), Padding(540, 0));
}

// There and back again through the aspect loses the last bit here: 242 x (72 / 176) is 99, but 99 / (72 / 176) is just
// below 242. A bound of exactly the size wanted must not lead there.
TEST(CalculatePaddingTest, BoundOfExactlyTheSizeWanted_IsRoomEnough) {
    EXPECT_EQ(padding(72, 176, box(0, 0, 99, 1000), box(0, 0, 50, 242)), Padding(49, 0));
    EXPECT_EQ(padding(64, 428, box(0, 0, 1000, 1391), box(0, 0, 208, 1000)), Padding(0, 391));
}

TEST(CalculatePaddingTest, LargerRectOfTheTargetsAspect_GetsNothing) {
    EXPECT_EQ(padding(640, 480, kScreen, box(0, 0, 1280, 960)), Padding(0, 0));
    EXPECT_EQ(padding(64, 64, box(0, 0, 10, 10), box(0, 0, 65, 65)), Padding(0, 0));
}

TEST(CalculatePaddingTest, WiderThanTheTarget_GrowsInHeight) {
    // Aspect 4/3 against 10: the height wanted is 1000 / (4/3) = 750.
    EXPECT_EQ(padding(640, 480, kScreen, box(0, 0, 1000, 100)), Padding(0, 650));
    EXPECT_EQ(padding(640, 480, box(0, 0, 1920, 750), box(0, 0, 1000, 100)), Padding(0, 650));
    // 641 / (4/3) = 480.75, of which the fraction is dropped.
    EXPECT_EQ(padding(640, 480, kScreen, box(0, 0, 641, 480)), Padding(0, 0));
}

TEST(CalculatePaddingTest, WiderThanTheTargetUnderALowBound_LosesWidth) {
    // The bound is 600 high: 4/3 x 600 = 800 wide.
    EXPECT_EQ(padding(640, 480, box(0, 0, 1920, 600), box(0, 0, 1000, 100)), Padding(-200, 500));
    EXPECT_EQ(padding(640, 480, box(0, 0, 1920, 749), box(0, 0, 1000, 100)), Padding(-2, 649)); // 998.67
}

TEST(CalculatePaddingTest, NarrowerThanTheTarget_GrowsInWidth) {
    EXPECT_EQ(padding(640, 480, kScreen, box(0, 0, 100, 900)), Padding(1100, 0)); // 1200 wanted
    // 481 x 4/3 = 641.33.
    EXPECT_EQ(padding(640, 480, kScreen, box(0, 0, 640, 481)), Padding(1, 0));
}

TEST(CalculatePaddingTest, NarrowerThanTheTargetInANarrowBound_LosesHeight) {
    // The bound is 1000 wide: 1000 / (4/3) = 750 high.
    EXPECT_EQ(padding(640, 480, box(0, 0, 1000, 1080), box(0, 0, 100, 900)), Padding(900, -150));
    EXPECT_EQ(padding(640, 480, box(0, 0, 1200, 1080), box(0, 0, 100, 900)), Padding(1100, 0));
    EXPECT_EQ(padding(640, 480, box(0, 0, 1199, 1080), box(0, 0, 100, 900)), Padding(1099, -1)); // 899.25
}

TEST(CalculatePaddingTest, TargetWithoutWidth_HasNoHeightToStopAt) {
    // Aspect 0: the height wanted is infinite, so the bound's it is, and no width at all.
    EXPECT_EQ(padding(0, 100, kScreen, box(0, 0, 200, 100)), Padding(-200, 980));
}

TEST(CalculatePaddingTest, ShapeThatCannotBeCompared_LeavesThePaddingAlone) {
    EXPECT_EQ(padding(-1, 100, kScreen, box(0, 0, 0, 0)), Padding(-1, 100));
}

// ---- Where it goes ----

// Rectangles that are inside out lie in a window by their edges, with gaps that wrap around.
class InsideOutTest : public ::testing::Test {
protected:
    static constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    static constexpr Rectangle kEverywhere{-kMost - 1, kMost, -kMost - 1, kMost};
    static constexpr Rectangle kWindow{-100, 100, 0, 400};
};

TEST_F(InsideOutTest, NothingToSpend_LeansOnNoWall) {
    EXPECT_EQ(padded({kMost, 50, 10, 20}, 0, 0, kWindow, kEverywhere), (Rectangle{kMost, 50, 10, 20}));
}

TEST_F(InsideOutTest, OnePixelToSpend_LeansOnTheNearerWall) {
    // The gap on the left is kMost + 100, which wraps to -2147483549: less than half a pixel, and less than the 50 on
    // the right.
    EXPECT_EQ(padded({kMost, 50, 10, 20}, 1, 0, kWindow, kEverywhere), (Rectangle{-100, 50 + 1 + 2147483549, 10, 20}));
}

TEST_F(InsideOutTest, EqualGaps_SpreadEvenly) {
    // Both gaps are kMost + 100, wrapped. The first edge to move puts the rectangle in order: -kMost to kMost - 5.
    EXPECT_EQ(padded({kMost, -kMost, 10, 20}, 10, 0, kWindow, kEverywhere), (Rectangle{-kMost, kMost, 10, 20}));
}

TEST(PadToAspectRatioTest, PositivePadding_IsSpreadWithTheOddPixelRightAndBelow) {
    EXPECT_EQ(padded(box(100, 200, 50, 60), 0, 0), box(100, 200, 50, 60));
    EXPECT_EQ(padded(box(100, 200, 50, 60), 10, 20), (Rectangle{95, 155, 190, 270}));
    EXPECT_EQ(padded(box(100, 200, 50, 60), 11, 21), (Rectangle{95, 156, 190, 271}));
    EXPECT_EQ(padded(box(100, 200, 50, 60), 1, 1), (Rectangle{100, 151, 200, 261}));
}

TEST(PadToAspectRatioTest, NegativePadding_IsTakenOffWithTheOddPixelLeftAndAbove) {
    EXPECT_EQ(padded(box(100, 200, 50, 60), -10, -20), (Rectangle{105, 145, 210, 250}));
    EXPECT_EQ(padded(box(100, 200, 50, 60), -3, -1), (Rectangle{102, 149, 201, 260}));
    EXPECT_EQ(padded(box(0, 0, 1000, 100), -200, 500), (Rectangle{100, 900, -250, 350}));
}

TEST(PadToAspectRatioTest, NegativePaddingBeyondTheSize_TurnsTheRectOver) {
    // Left goes to 5 and, past the right edge, becomes it; the other edge is then moved 5 back from there.
    EXPECT_EQ(padded({0, 3, 0, 3}, -10, -10), (Rectangle{0, 3, 0, 3}));
    EXPECT_EQ(padded({0, 3, 0, 0}, -8, 0), (Rectangle{0, 3, 0, 0}));
    EXPECT_EQ(padded({0, 4, 0, 0}, -4, 0), (Rectangle{2, 2, 0, 0}));
}

TEST(PadToAspectRatioTest, NearWall_TakesTheFrameAndTheRestGoesToTheOtherSide) {
    const Rectangle window = box(0, 0, 1000, 1000);
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, window), (Rectangle{0, 200, 500, 600}));
    EXPECT_EQ(padded(box(897, 500, 100, 100), 100, 0, window), (Rectangle{800, 1000, 500, 600}));
    EXPECT_EQ(padded(box(500, 3, 100, 100), 0, 100, window), (Rectangle{500, 600, 0, 200}));
    EXPECT_EQ(padded(box(500, 897, 100, 100), 0, 100, window), (Rectangle{500, 600, 800, 1000}));
    EXPECT_EQ(padded(box(3, 897, 100, 100), 100, 100, window), (Rectangle{0, 200, 800, 1000}));
}

TEST(PadToAspectRatioTest, WallCountsBelowHalfThePadding) {
    const Rectangle window = box(0, 0, 1000, 1000);
    // To the left wall: 49, 50 and 51 pixels.
    EXPECT_EQ(padded(box(49, 500, 100, 100), 100, 0, window), (Rectangle{0, 200, 500, 600}));
    EXPECT_EQ(padded(box(50, 500, 100, 100), 100, 0, window), (Rectangle{0, 200, 500, 600}));
    EXPECT_EQ(padded(box(51, 500, 100, 100), 100, 0, window), (Rectangle{1, 201, 500, 600}));
    // To the right wall: 49, 50 and 51.
    EXPECT_EQ(padded(box(851, 500, 100, 100), 100, 0, window), (Rectangle{800, 1000, 500, 600}));
    EXPECT_EQ(padded(box(850, 500, 100, 100), 100, 0, window), (Rectangle{800, 1000, 500, 600}));
    EXPECT_EQ(padded(box(849, 500, 100, 100), 100, 0, window), (Rectangle{799, 999, 500, 600}));
    // Half of an odd padding is rounded down, so that 50 pixels are far enough for 101, and one is crossed.
    EXPECT_EQ(padded(box(851, 500, 100, 100), 101, 0, window), (Rectangle{799, 1000, 500, 600}));
    EXPECT_EQ(padded(box(850, 500, 100, 100), 101, 0, window), (Rectangle{800, 1001, 500, 600}));
}

TEST(PadToAspectRatioTest, EqualGaps_SpreadThePadding) {
    EXPECT_EQ(padded(box(10, 10, 100, 100), 11, 11, box(0, 0, 120, 120)), (Rectangle{5, 116, 5, 116}));
}

TEST(PadToAspectRatioTest, WindowTooSmallForTheFrame_IsNoWall) {
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, box(0, 0, 200, 1000)), (Rectangle{0, 200, 500, 600}));
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, box(0, 0, 199, 1000)), (Rectangle{-47, 153, 500, 600}));
    // Each dimension for itself.
    EXPECT_EQ(padded(box(3, 3, 100, 100), 100, 100, box(0, 0, 199, 1000)), (Rectangle{-47, 153, 0, 200}));
}

TEST(PadToAspectRatioTest, WindowThatDoesNotHoldTheRect_IsNoWall) {
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, box(0, 501, 1000, 400)), (Rectangle{-47, 153, 500, 600}));
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, box(0, 500, 1000, 100)), (Rectangle{0, 200, 500, 600}));
    EXPECT_EQ(padded(box(3, 500, 100, 100), 100, 0, box(0, 500, 0, 100)), (Rectangle{-47, 153, 500, 600}));
}

TEST(PadToAspectRatioTest, NegativePaddingInOneDimension_ShrinksTheRectBeforeTheWallsAreAsked) {
    // 300 wide, the rect would poke out of the window on both sides; 200 of it are taken off first.
    EXPECT_EQ(padded(box(-50, 3, 300, 100), -200, 100, box(0, 0, 200, 1000)), (Rectangle{50, 150, 0, 200}));
}

TEST(PadToAspectRatioTest, Result_IsMovedWithinTheBound) {
    const Rectangle bound = box(0, 0, 1000, 800);
    EXPECT_EQ(padded(box(10, 10, 100, 100), 300, 200, {}, bound), box(0, 0, 400, 300));
    EXPECT_EQ(padded(box(890, 690, 100, 100), 300, 200, {}, bound), box(600, 500, 400, 300));
    EXPECT_EQ(padded(box(10, 10, 100, 100), 1000, 200, {}, bound), box(0, 0, 1100, 300)) << "overhangs the right";
}

TEST(PadToAspectRatioTest, LargeRectOfTheTargetsAspect_ComesBackUnchanged) {
    EXPECT_EQ(padded(box(10, 20, 1280, 960), 0, 0, box(0, 0, 1400, 1000), box(0, 0, 1920, 1080)),
              box(10, 20, 1280, 960));
}

// ---- Laws ----

struct Framing {
    int targetWidth;
    int targetHeight;
    Rectangle bound;
    Rectangle rect;
    Rectangle window;
};

// A target no larger than the bound, a rectangle inside it, and any window or none.
Framing randomFraming(testing::Random& random) {
    Framing f;
    const auto inside = [&](const Rectangle& r) {
        const int w = random.range(1, width(r));
        const int h = random.range(1, height(r));
        return box({random.range(r.left, r.right - w), random.range(r.top, r.bottom - h), w, h});
    };
    f.bound = box({0, 0, random.range(64, 3000), random.range(64, 2000)});
    f.targetWidth = random.range(1, width(f.bound));
    f.targetHeight = random.range(1, height(f.bound));
    f.rect = inside(f.bound);
    f.window = random.chance(0.3) ? Rectangle{} : inside(f.bound);
    if (random.chance(0.3)) {
        f.window = boundingUnion(f.window, f.rect);
    }
    return f;
}

TEST(FramingLaws, Frame_HasTheTargetsAspectLiesInTheBoundAndCoversTheRectUnlessItHadToShrink) {
    const OrvantaWorker worker;
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const Framing f = randomFraming(random);
        int padWidth = f.targetWidth;
        int padHeight = f.targetHeight;
        worker.calculatePadding(padWidth, padHeight, f.bound, f.rect);
        Rectangle frame = f.rect;
        worker.padToAspectRatio(frame, padWidth, padHeight, f.window, f.bound);

        ASSERT_EQ(width(frame), width(f.rect) + padWidth);
        ASSERT_EQ(height(frame), height(f.rect) + padHeight);
        ASSERT_TRUE(contains(f.bound, frame));
        if (width(f.rect) <= f.targetWidth && height(f.rect) <= f.targetHeight) {
            ASSERT_EQ(width(frame), f.targetWidth);
            ASSERT_EQ(height(frame), f.targetHeight);
        }
        // One dimension is exact; the other lost less than a pixel.
        const long long skew = static_cast<long long>(width(frame)) * f.targetHeight -
                               static_cast<long long>(height(frame)) * f.targetWidth;
        ASSERT_LE(std::llabs(skew), std::max(f.targetWidth, f.targetHeight));
        if (padWidth >= 0) {
            ASSERT_LE(frame.left, f.rect.left);
            ASSERT_GE(frame.right, f.rect.right);
        }
        if (padHeight >= 0) {
            ASSERT_LE(frame.top, f.rect.top);
            ASSERT_GE(frame.bottom, f.rect.bottom);
        }
        const bool windowHolds = !isEmpty(f.window) && padWidth >= 0 && padHeight >= 0 && contains(f.window, f.rect);
        if (windowHolds && width(frame) <= width(f.window)) {
            ASSERT_GE(frame.left, f.window.left) << "a frame that has room in the window stays in it";
            ASSERT_LE(frame.right, f.window.right + 1) << "but for the odd pixel";
        }
        if (windowHolds && height(frame) <= height(f.window)) {
            ASSERT_GE(frame.top, f.window.top);
            ASSERT_LE(frame.bottom, f.window.bottom + 1);
        }
    }
}

TEST(FramingLaws, AnyEdgesAndPaddings_AreFramedWithoutFault) {
    const OrvantaWorker worker;
    const std::int32_t extremes[] = {std::numeric_limits<std::int32_t>::lowest(),
                                     std::numeric_limits<std::int32_t>::lowest() + 1,
                                     -65536,
                                     -1,
                                     0,
                                     1,
                                     2,
                                     64,
                                     65536,
                                     std::numeric_limits<std::int32_t>::max()};
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto any = [&] { return extremes[random.range(0, 9)]; };
        const auto anyRect = [&] { return Rectangle{any(), any(), any(), any()}; };
        int padWidth = any();
        int padHeight = any();
        Rectangle rect = anyRect();
        worker.calculatePadding(padWidth, padHeight, anyRect(), rect);
        worker.padToAspectRatio(rect, padWidth, padHeight, anyRect(), anyRect());
    }
}

} // namespace
} // namespace OrvantaNS
