#include "frame/Exponential.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

#include "Random.h"
#include "frame/ExponentialTable.h"

namespace OrvantaNS {
namespace {

using testing::Random;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Case {
    double x;
    double expected;
};

// Worked out with sixty digits and rounded to the nearest double.
constexpr Case kEasy[] = {
    {0.0, 1.0},
    {-0.0, 1.0},
    {1.0, 0x1.5bf0a8b145769p+1},
    {-1.0, 0x1.78b56362cef38p-2},
    {-0.5, 0x1.368b2fc6f960ap-1},
    {-4.0, 0x1.2c155b8213cf4p-6},
    {-3.0, 0x1.97db0ccceb0afp-5},
    {-0.1, 0x1.cf46d99d52b3ap-1},
    {0x1.62e42fefa39efp-1, 2.0}, // ln 2
    {0x1p-54, 1.0},
    {-0x1p-54, 1.0},
    {-0x1p-55, 1.0},
    {-0x1p-53, 0x1.fffffffffffffp-1},
    {-708.0, 0x1.7c8ab2288c9abp-1022},
    {709.0, 0x1.d422d2be5dc9bp+1022},
};

// Nearly half way between two doubles. Without fused multiplication each of them gives the other one.
constexpr Case kClose[] = {
    {-0x1.78cc800ab39cp-1, 0x1.ea8dfa703f0e3p-2},  {0x1.f02c80edb604p-2, 0x1.9f997d161cdcfp+0},
    {-0x1.a45ec301d3db8p+1, 0x1.32fa00f356d67p-5}, {-0x1.a52ae4781bf31p+1, 0x1.3111f7d035625p-5},
    {-0x1.f7064495f1729p+1, 0x1.41e185b87206bp-6}, {-0x1.c2b2335caf0dcp+1, 0x1.e47119098872dp-6},
    {-0x1.7d0021049572p-1, 0x1.e68b9eafcb807p-2},
};

TEST(ExponentialTest, NumbersWorkedOutElsewhere_AreMetToTheLastBit) {
    for (const Case& c : kEasy) {
        EXPECT_EQ(exponential(c.x), c.expected) << "of " << c.x;
    }
    for (const Case& c : kClose) {
        EXPECT_EQ(exponential(c.x), c.expected) << "of " << c.x;
    }
}

TEST(ExponentialTest, BeyondTheNormalDoubles_IsNothingOrInfinite) {
    EXPECT_EQ(exponential(std::nextafter(-708.0, -kInfinity)), 0.0);
    EXPECT_EQ(exponential(-kInfinity), 0.0);
    EXPECT_EQ(exponential(std::nextafter(709.0, kInfinity)), kInfinity);
    EXPECT_EQ(exponential(kInfinity), kInfinity);
    EXPECT_TRUE(std::isnan(exponential(std::numeric_limits<double>::quiet_NaN())));
}

// The square of each power stands in the table, too, or twice one that does. Both doubles of an entry count here: what is
// left over is of the second order of their error, far less than a half of any entry's second one.
TEST(ExponentialTest, EachPowerInTheTable_IsTheRootOfAnother) {
    constexpr double kSecondOrder = 0x1p-102;
    ASSERT_EQ(kPowersOfTwo.size(), 128u);
    EXPECT_EQ(kPowersOfTwo[0].value, 1.0);
    EXPECT_EQ(kPowersOfTwo[0].tail, 0.0);
    for (std::size_t i = 0; i < kPowersOfTwo.size(); ++i) {
        const PowerOfTwo& root = kPowersOfTwo[i];
        const PowerOfTwo& power = kPowersOfTwo[2 * i % kPowersOfTwo.size()];
        const double expected = 2 * i < kPowersOfTwo.size() ? power.value : 2.0 * power.value;
        const double square = root.value * root.value;
        const double rounding = std::fma(root.value, root.value, -square);
        const double off = (square - expected + rounding) / expected + 2.0 * root.tail - power.tail;
        EXPECT_LT(std::fabs(off), kSecondOrder) << "2^(" << i << "/128)";
    }
}

// Whatever the C library's own may be, it is less than one unit in the last place off.
TEST(ExponentialTest, GeneratedNumbers_AreTheLibrarysButForTheLastBit) {
    Random random(20261122);
    for (int i = 0; i < 20000; ++i) {
        const double x = i % 2 == 0 ? random.real(-8.0, 8.0) : random.real(-708.0, 709.0);
        const double expected = std::exp(x);
        const double actual = exponential(x);
        EXPECT_GE(actual, std::nextafter(expected, 0.0)) << "seed 20261122, of " << x;
        EXPECT_LE(actual, std::nextafter(expected, kInfinity)) << "seed 20261122, of " << x;
    }
}

} // namespace
} // namespace OrvantaNS
