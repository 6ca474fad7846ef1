#include "terminal/NearestName.h"

#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

TEST(NearestNameTest, Mistakes_AreForgiven_UpToAThirdOfTheName) {
    const std::vector<std::string> names{"keyframes", "frame", "info", "inspect"};
    EXPECT_EQ(nearestName("keyframes", names), "keyframes");
    EXPECT_EQ(nearestName("keyframe", names), "keyframes");   // One missing.
    EXPECT_EQ(nearestName("keyyframes", names), "keyframes"); // One too many.
    EXPECT_EQ(nearestName("keyfrane", names), "keyframes");
    EXPECT_EQ(nearestName("inof", names), "info"); // Two swapped.
    EXPECT_EQ(nearestName("framf", names), "frame");
    EXPECT_EQ(nearestName("kfs", names), "");
    EXPECT_EQ(nearestName("xyzo", names), ""); // Three of four letters.
    EXPECT_EQ(nearestName("", names), "");
    EXPECT_EQ(nearestName(std::string(100000, 'x'), names), "");
    EXPECT_EQ(nearestName("frame", {}), "");
}

} // namespace
} // namespace OrvantaNS::command
