#include "parser/cursor/LocationOrder.h"

#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

TEST(LocationOrderTest, NoSamples_AreSorted) {
    LocationOrder order;
    EXPECT_TRUE(order.isSorted({}));
}

TEST(LocationOrderTest, EqualTimes_AreSorted_AnyStepBackIsNot) {
    EXPECT_TRUE(LocationOrder().isSorted({{5, 9, 9}, {5, 0, 0}, {6, 4, 4}}));
    EXPECT_FALSE(LocationOrder().isSorted({{5, 0, 0}, {6, 1, 1}, {5, 2, 2}}));
}

TEST(LocationOrderTest, SameArray_KeepsItsAnswer) {
    LocationOrder order;
    std::vector<OV_MOUSE_LOCATION> samples{{1, 0, 0}, {2, 0, 0}};
    EXPECT_TRUE(order.isSorted(samples));
    samples[0].time = 3; // Nobody changes an array in work: that this goes unseen shows that it is not read again.
    EXPECT_TRUE(order.isSorted(samples));
}

TEST(LocationOrderTest, SameArrayGrown_IsAskedAgain) {
    LocationOrder order;
    std::vector<OV_MOUSE_LOCATION> samples;
    samples.reserve(3);
    samples.push_back({2, 0, 0});
    samples.push_back({3, 0, 0});
    EXPECT_TRUE(order.isSorted(samples));
    samples.push_back({1, 0, 0});
    EXPECT_FALSE(order.isSorted(samples));
}

TEST(LocationOrderTest, OtherArrayOfTheSameLength_IsAskedAgain) {
    LocationOrder order;
    const std::vector<OV_MOUSE_LOCATION> forwards{{1, 0, 0}, {2, 0, 0}};
    const std::vector<OV_MOUSE_LOCATION> backwards{{2, 0, 0}, {1, 0, 0}};
    EXPECT_TRUE(order.isSorted(forwards));
    EXPECT_FALSE(order.isSorted(backwards));
}

} // namespace
} // namespace OrvantaNS
