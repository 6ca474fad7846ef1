#include "OrvantaWorker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <utility>
#include <vector>

#include "Random.h"
#include "Scene.h"
#include "frame/Geometry.h"
#include "frame/ValueMap.h"

namespace OrvantaNS {
namespace {

using testing::box;

using Spaces = std::vector<std::pair<Rectangle, double>>;

// A frame with the padding that is left for it.
struct Frame {
    Rectangle rect;
    int padWidth = 0;
    int padHeight = 0;
    friend bool operator==(const Frame&, const Frame&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Frame& f) {
        f.rect.printRect(out);
        return out << ", padding " << f.padWidth << " " << f.padHeight;
    }
};

Frame stretched(Frame f, const Rectangle& window, bool expected) {
    EXPECT_EQ(OrvantaWorker().stretchToWindow(f.rect, window, f.padWidth, f.padHeight), expected);
    return f;
}

Frame snapped(Frame f, const Rectangle& window, const Spaces& spaces) {
    VS_VALUE_MAP map;
    map.spaces = spaces;
    OrvantaWorker().snapToValue(f.rect, f.padWidth, f.padHeight, window, map, {1, 2, 3, 4});
    return f;
}

const Rectangle kWindow{0, 1000, 0, 1000};

// ---- Window edges ----

TEST(StretchToWindowTest, GapOf63_IsClosed_GapOf64StaysOpen) {
    EXPECT_EQ(stretched({{63, 500, 500, 600}, 200, 200}, kWindow, true), (Frame{{0, 500, 500, 600}, 137, 200}));
    EXPECT_EQ(stretched({{64, 500, 500, 600}, 200, 200}, kWindow, false), (Frame{{64, 500, 500, 600}, 200, 200}));
    EXPECT_EQ(stretched({{500, 600, 63, 500}, 200, 200}, kWindow, true), (Frame{{500, 600, 0, 500}, 200, 137}));
    EXPECT_EQ(stretched({{500, 600, 64, 500}, 200, 200}, kWindow, false), (Frame{{500, 600, 64, 500}, 200, 200}));
    EXPECT_EQ(stretched({{500, 937, 500, 600}, 200, 200}, kWindow, true), (Frame{{500, 1000, 500, 600}, 137, 200}));
    EXPECT_EQ(stretched({{500, 936, 500, 600}, 200, 200}, kWindow, false), (Frame{{500, 936, 500, 600}, 200, 200}));
    EXPECT_EQ(stretched({{500, 600, 500, 937}, 200, 200}, kWindow, true), (Frame{{500, 600, 500, 1000}, 200, 137}));
    EXPECT_EQ(stretched({{500, 600, 500, 936}, 200, 200}, kWindow, false), (Frame{{500, 600, 500, 936}, 200, 200}));
}

TEST(StretchToWindowTest, GapOfOne_IsClosed_NoGapIsNoMove) {
    EXPECT_EQ(stretched({{1, 500, 500, 600}, 1, 0}, kWindow, true), (Frame{{0, 500, 500, 600}, 0, 0}));
    EXPECT_EQ(stretched({{0, 500, 500, 600}, 9, 9}, kWindow, false), (Frame{{0, 500, 500, 600}, 9, 9}));
}

TEST(StretchToWindowTest, EdgeBeyondTheWindow_Stays) {
    EXPECT_EQ(stretched({{-5, 1005, -5, 1005}, 99, 99}, kWindow, false), (Frame{{-5, 1005, -5, 1005}, 99, 99}));
}

TEST(StretchToWindowTest, GapMustBePaidForInItsOwnDimension) {
    EXPECT_EQ(stretched({{40, 500, 40, 500}, 40, 39}, kWindow, true), (Frame{{0, 500, 40, 500}, 0, 39}));
    EXPECT_EQ(stretched({{40, 500, 40, 500}, 39, 40}, kWindow, true), (Frame{{40, 500, 0, 500}, 39, 0}));
    EXPECT_EQ(stretched({{40, 500, 40, 500}, -50, -50}, kWindow, false), (Frame{{40, 500, 40, 500}, -50, -50}));
}

TEST(StretchToWindowTest, ShortPadding_GoesToTheLeftAndTheTop) {
    EXPECT_EQ(stretched({{40, 970, 40, 970}, 60, 60}, kWindow, true), (Frame{{0, 970, 0, 970}, 20, 20}));
    EXPECT_EQ(stretched({{40, 970, 40, 970}, 70, 70}, kWindow, true), (Frame{{0, 1000, 0, 1000}, 0, 0}));
    // What the left cannot pay for, the right may.
    EXPECT_EQ(stretched({{40, 970, 40, 970}, 30, 30}, kWindow, true), (Frame{{40, 1000, 40, 1000}, 0, 0}));
}

// ---- Value ----

constexpr Rectangle kNone{};

TEST(SnapToValueTest, NoWindowAndNoValue_ChangesNothing) {
    EXPECT_EQ(snapped({{40, 970, 40, 970}, 60, 60}, kNone, {}), (Frame{{40, 970, 40, 970}, 60, 60}));
    EXPECT_EQ(snapped({{40, 970, 40, 970}, 60, 60}, {0, 1000, 5, 5}, {}), (Frame{{40, 970, 40, 970}, 60, 60}))
        << "an empty window does not count";
}

TEST(SnapToValueTest, Window_IsStretchedToWithoutValue) {
    EXPECT_EQ(snapped({{40, 500, 500, 600}, 60, 60}, kWindow, {}), (Frame{{0, 500, 500, 600}, 20, 60}));
}

TEST(SnapToValueTest, Value_IsTakenInOnAllSides) {
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 300, 300}, kNone, {{{350, 560, 370, 580}, 5.0}}),
              (Frame{{350, 560, 370, 580}, 190, 190}));
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 300, 300}, kNone, {{{420, 480, 420, 480}, 5.0}}),
              (Frame{{400, 500, 400, 500}, 300, 300}));
}

TEST(SnapToValueTest, ShortPadding_GoesToTheRightAndTheBottom) {
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 50, 70}, kNone, {{{350, 560, 370, 580}, 5.0}}),
              (Frame{{400, 550, 400, 570}, 0, 0}));
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 70, 90}, kNone, {{{350, 560, 370, 580}, 5.0}}),
              (Frame{{390, 560, 390, 580}, 0, 0}));
}

TEST(SnapToValueTest, WithoutPaddingInADimension_ThatDimensionStays) {
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 0, 90}, kNone, {{{350, 560, 370, 580}, 5.0}}),
              (Frame{{400, 500, 390, 580}, 0, 0}));
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 90, -10}, kNone, {{{350, 560, 370, 580}, 5.0}}),
              (Frame{{370, 560, 400, 500}, 0, -10}));
}

TEST(SnapToValueTest, ValueBelowFour_StopsTheSearch) {
    const Frame start{{400, 500, 400, 500}, 300, 300};
    EXPECT_EQ(snapped(start, kNone, {{{350, 560, 370, 580}, 3.99}, {{350, 560, 370, 580}, 9.0}}), start);
    EXPECT_EQ(snapped(start, kNone, {{{350, 560, 370, 580}, 4.0}}), (Frame{{350, 560, 370, 580}, 190, 190}));
    EXPECT_EQ(snapped(start, kNone, {{{350, 560, 370, 580}, std::numeric_limits<double>::quiet_NaN()}}),
              (Frame{{350, 560, 370, 580}, 190, 190}))
        << "only what is known to be below four stops it";
}

TEST(SnapToValueTest, SeveralValues_AreTakenInInOrderUntilThePaddingIsSpent) {
    const Rectangle first{400, 560, 400, 500};
    const Rectangle second{300, 500, 300, 500};
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 100, 80}, kNone, {{first, 5.0}, {second, 9.0}}),
              (Frame{{360, 560, 320, 500}, 0, 0}));
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 60, 0}, kNone, {{first, 5.0}, {second, 9.0}}),
              (Frame{{400, 560, 400, 500}, 0, 0}));
}

TEST(SnapToValueTest, Window_IsTheLimit) {
    const Rectangle window{200, 700, 200, 700};
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 900, 900}, window, {{{0, 1000, 350, 550}, 5.0}}),
              (Frame{{200, 700, 350, 550}, 500, 800}));
    // An edge that pokes out of the window does not grow, nor does the limit pull it back.
    EXPECT_EQ(snapped({{400, 720, 400, 500}, 300, 300}, window, {{{400, 800, 400, 500}, 5.0}}),
              (Frame{{400, 720, 400, 500}, 300, 300}));
}

TEST(SnapToValueTest, EachValue_IsFollowedByAStretchToTheWindow) {
    // Growing to 640 leaves a gap of 60 to the window's right edge, which is then closed.
    EXPECT_EQ(snapped({{400, 500, 400, 500}, 300, 300}, {200, 700, 200, 700}, {{{400, 640, 400, 500}, 5.0}}),
              (Frame{{400, 700, 400, 500}, 100, 300}));
}

// A frame of the window's size that stands beside it: the second value would move its left edge.
TEST(SnapToValueTest, FrameOfTheWindowsSize_StopsTheSearch) {
    const Rectangle window{0, 200, 0, 200};
    const Spaces spaces{{{100, 300, 0, 150}, 5.0}, {{50, 300, 0, 150}, 5.0}};
    EXPECT_EQ(snapped({{100, 300, 0, 200}, 50, 50}, window, spaces), (Frame{{100, 300, 0, 200}, 50, 50}));
    EXPECT_EQ(snapped({{100, 300, 0, 130}, 50, 20}, window, spaces), (Frame{{50, 300, 0, 150}, 0, 0}))
        << "the window's width alone is not its size";
    EXPECT_EQ(snapped({{100, 300, 0, 200}, 50, 50}, kNone, spaces), (Frame{{50, 300, 0, 200}, 0, 50}))
        << "nor is there one to be the size of";
}

// ---- Laws ----

TEST(SnapToValueTest, LastPixelOfPadding_IsSpent) {
    const Rectangle rect{100, 200, 100, 200};
    const Rectangle right{150, 300, 150, 180};
    const Rectangle left{50, 160, 150, 180};
    const Rectangle below{150, 180, 150, 300};
    const Rectangle above{150, 180, 50, 160};
    EXPECT_EQ(snapped({rect, 1, 0}, {}, {{right, 9.0}}), (Frame{{100, 201, 100, 200}, 0, 0}));
    EXPECT_EQ(snapped({rect, 1, 0}, {}, {{left, 9.0}}), (Frame{{99, 200, 100, 200}, 0, 0}));
    EXPECT_EQ(snapped({rect, 0, 1}, {}, {{below, 9.0}}), (Frame{{100, 200, 100, 201}, 0, 0}));
    EXPECT_EQ(snapped({rect, 0, 1}, {}, {{above, 9.0}}), (Frame{{100, 200, 99, 200}, 0, 0}));
    // Behind a space that needs nothing, too.
    EXPECT_EQ(snapped({rect, 1, 0}, {}, {{rect, 9.0}, {right, 8.0}}), (Frame{{100, 201, 100, 200}, 0, 0}));
    EXPECT_EQ(snapped({rect, 0, 1}, {}, {{rect, 9.0}, {below, 8.0}}), (Frame{{100, 200, 100, 201}, 0, 0}));
}

TEST(SnapToValueTest, SpaceThatEndsWhereTheFrameDoes_LeavesTheFrameAlone) {
    // Even an inverted one, whose edges any move would put in order.
    const Rectangle inverted{100, 50, 200, 150};
    EXPECT_EQ(snapped({inverted, 9, 9}, {}, {{inverted, 9.0}}), (Frame{inverted, 9, 9}));
}

TEST(SnappingLaws, Frame_NeverShrinksNeverOverspendsAndStaysInAWindowThatHeldIt) {
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto anyRect = [&] {
            return box({random.range(0, 800), random.range(0, 800), random.range(0, 600), random.range(0, 600)});
        };
        const Frame start{anyRect(), random.range(-50, 700), random.range(-50, 700)};
        Rectangle window = random.chance(0.3) ? Rectangle{} : anyRect();
        if (!isEmpty(window) && random.chance(0.7)) {
            window = boundingUnion(window, start.rect);
        }
        Spaces spaces;
        for (int i = random.range(0, 6); i > 0; --i) {
            spaces.emplace_back(anyRect(), random.real(3.5, 12.0));
        }
        const Frame frame = snapped(start, window, spaces);

        ASSERT_TRUE(contains(frame.rect, start.rect));
        ASSERT_EQ(width(frame.rect) + frame.padWidth, width(start.rect) + start.padWidth);
        ASSERT_EQ(height(frame.rect) + frame.padHeight, height(start.rect) + start.padHeight);
        ASSERT_GE(frame.padWidth, std::min(start.padWidth, 0));
        ASSERT_GE(frame.padHeight, std::min(start.padHeight, 0));
        if (!isEmpty(window) && contains(window, start.rect)) {
            ASSERT_TRUE(contains(window, frame.rect));
        }
    }
}

TEST(SnappingLaws, AnyEdges_AreSnappedWithoutFault) {
    const std::int32_t extremes[] = {std::numeric_limits<std::int32_t>::lowest(), -65536, -1, 0, 1, 63, 65536,
                                     std::numeric_limits<std::int32_t>::max()};
    for (std::uint64_t seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto any = [&] { return extremes[random.range(0, 7)]; };
        const auto anyRect = [&] { return Rectangle{any(), any(), any(), any()}; };
        snapped({anyRect(), any(), any()}, anyRect(), {{anyRect(), 5.0}, {anyRect(), 5.0}});
    }
}

} // namespace
} // namespace OrvantaNS
