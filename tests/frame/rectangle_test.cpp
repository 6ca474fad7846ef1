#include "Rectangle.h"

#include <gtest/gtest.h>

#include "Geometry.h"

namespace OrvantaNS {
namespace {

TEST(RectangleTest, NoZeroBound_TwoEmptyRectangles_GivesTheAllZeroRectangle) {
    EXPECT_EQ((Rectangle{5, 5, 1, 9}.noZeroBound(Rectangle{7, 7, 7, 7})), Rectangle{});
}

} // namespace
} // namespace OrvantaNS
