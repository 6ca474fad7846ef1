#include <limits>

#include <gtest/gtest.h>

#include "ParserWorld.h"

namespace OrvantaNS {
namespace {

using testing::ParserWorld;

constexpr Rectangle kZone{100, 300, 50, 150};

struct PointCase {
    int x;
    int y;
    bool inside;
};

TEST(ZoneClippingTest, ClipPointToLZ_BothForms_TakeRightAndBottomAsOutsideAndShiftInAnyCase) {
    ParserWorld world(kZone);
    for (const PointCase& c :
         {PointCase{100, 50, true}, PointCase{99, 50, false}, PointCase{100, 49, false}, PointCase{299, 149, true},
          PointCase{300, 149, false}, PointCase{299, 150, false}, PointCase{0, 0, false}, PointCase{200, 100, true}}) {
        SCOPED_TRACE(::testing::Message() << c.x << ", " << c.y);
        std::pair<int, int> point{c.x, c.y};
        EXPECT_EQ(world.parser.clipPointToLZ(0, world.store, point), c.inside);
        EXPECT_EQ(point.first, c.x - 100);
        EXPECT_EQ(point.second, c.y - 50);

        OV_MOUSE_LOCATION location{77, c.x, c.y};
        EXPECT_EQ(world.parser.clipPointToLZ(0, world.store, location), c.inside);
        EXPECT_EQ(location.time, 77);
        EXPECT_EQ(location.x, c.x - 100);
        EXPECT_EQ(location.y, c.y - 50);
    }
}

TEST(ZoneClippingTest, ClipPointToLZ_SecondZone_UsesThatZone) {
    ParserWorld world(kZone);
    world.store.liveZones.push_back({{0, 10, 0, 10}, 0.0, 1.0});
    std::pair<int, int> point{5, 6};
    EXPECT_TRUE(world.parser.clipPointToLZ(1, world.store, point));
    EXPECT_EQ(point, (std::pair<int, int>{5, 6}));
}

TEST(ZoneClippingTest, ClipPointToLZ_FarCoordinates_Wrap) {
    ParserWorld world(kZone);
    constexpr int lowest = std::numeric_limits<int>::lowest();
    std::pair<int, int> point{lowest, lowest};
    EXPECT_FALSE(world.parser.clipPointToLZ(0, world.store, point));
    EXPECT_EQ(point.first, std::numeric_limits<int>::max() - 99);
    EXPECT_EQ(point.second, std::numeric_limits<int>::max() - 49);
}

TEST(ZoneClippingTest, ClipRectToLZ_RectangleInside_IsMadeRelative) {
    ParserWorld world(kZone);
    Rectangle rect{120, 140, 60, 90};
    EXPECT_TRUE(world.parser.clipRectToLZ(0, world.store, rect));
    EXPECT_EQ(rect, (Rectangle{20, 40, 10, 40}));
}

TEST(ZoneClippingTest, ClipRectToLZ_RectangleAround_BecomesTheZone) {
    ParserWorld world(kZone);
    Rectangle rect{0, 1000, 0, 1000};
    EXPECT_TRUE(world.parser.clipRectToLZ(0, world.store, rect));
    EXPECT_EQ(rect, (Rectangle{0, 200, 0, 100}));
}

TEST(ZoneClippingTest, ClipRectToLZ_OnePixelIn_Remains) {
    ParserWorld world(kZone);
    Rectangle rect{0, 101, 0, 51};
    EXPECT_TRUE(world.parser.clipRectToLZ(0, world.store, rect));
    EXPECT_EQ(rect, (Rectangle{0, 1, 0, 1}));
}

TEST(ZoneClippingTest, ClipRectToLZ_RectangleAtTheEdge_IsEmptyAndStillMoved) {
    ParserWorld world(kZone);
    Rectangle rect{0, 100, 60, 90};
    EXPECT_FALSE(world.parser.clipRectToLZ(0, world.store, rect));
    EXPECT_EQ(rect, (Rectangle{0, 0, 10, 40}));
}

TEST(ZoneClippingTest, ClipRectToLZ_RectangleOutside_IsLeftInverted) {
    ParserWorld world(kZone);
    Rectangle rect{10, 30, 60, 90};
    EXPECT_FALSE(world.parser.clipRectToLZ(0, world.store, rect));
    EXPECT_EQ(rect, (Rectangle{0, -70, 10, 40})); // left 100, right 30, less the zone's left
}

} // namespace
} // namespace OrvantaNS
