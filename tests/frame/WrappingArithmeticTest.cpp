#include "frame/WrappingArithmetic.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace OrvantaNS {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t kLowest32 = std::numeric_limits<std::int32_t>::lowest();
constexpr long long kLowest64 = std::numeric_limits<long long>::lowest();

// The bounds, seen by the compiler: it refuses a conversion whose result does not fit, where a processor may happen to
// give the lowest number.
static_assert(truncateToInt32(2147483647.9) == 2147483647);
static_assert(truncateToInt32(2147483648.0) == kLowest32);
static_assert(truncateToInt32(-2147483648.9) == kLowest32);
static_assert(truncateToInt32(-2147483649.0) == kLowest32);
static_assert(truncateToInt32(kInfinity) == kLowest32 && truncateToInt32(-kInfinity) == kLowest32);
static_assert(truncateToInt32(kNaN) == kLowest32);
static_assert(truncateToInt64(9223372036854774784.0) == 9223372036854774784);
static_assert(truncateToInt64(9223372036854775808.0) == kLowest64);
static_assert(truncateToInt64(-9223372036854775808.0) == kLowest64);
static_assert(truncateToInt64(-9223372036854777856.0) == kLowest64);
static_assert(truncateToInt64(kInfinity) == kLowest64 && truncateToInt64(-kInfinity) == kLowest64);
static_assert(truncateToInt64(kNaN) == kLowest64);

TEST(TruncateTest, FractionsGoTowardZero_WhatDoesNotFitIsTheLowestNumber) {
    const std::vector<double> values{0.0,           0.9,   -0.9,         1.9,           -1.9,          2147483647.0,
                                     2147483647.9,  2e9,   2147483648.0, -2147483648.0, -2147483648.9, -2e9,
                                     -2147483649.0, 1e300, -1e300,       kInfinity,     -kInfinity,    kNaN};
    const std::vector<std::int32_t> expected{0,          0,          0,         1,         -1,        2147483647,
                                             2147483647, 2000000000, kLowest32, kLowest32, kLowest32, -2000000000,
                                             kLowest32,  kLowest32,  kLowest32, kLowest32, kLowest32, kLowest32};
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(truncateToInt32(values[i]), expected[i]) << values[i];
    }
    const std::vector<double> wide{-1.9,
                                   2147483648.5,
                                   9223372036854774784.0,
                                   9223372036854775808.0,
                                   -9223372036854774784.0,
                                   -9223372036854775808.0,
                                   1e300,
                                   kNaN};
    const std::vector<long long> expectedWide{
        -1, 2147483648, 9223372036854774784, kLowest64, -9223372036854774784, kLowest64, kLowest64, kLowest64};
    ASSERT_EQ(wide.size(), expectedWide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        EXPECT_EQ(truncateToInt64(wide[i]), expectedWide[i]) << wide[i];
    }
}

TEST(WrappingArithmeticTest, Results_WrapAroundAtTheEndsOfTheType) {
    constexpr std::int32_t most32 = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(wrapAdd(most32, 1), kLowest32);
    EXPECT_EQ(wrapSub(kLowest32, 1), most32);
    EXPECT_EQ(wrapMul(65536, 65536), 0);
    EXPECT_EQ(wrapMul(most32, 2), -2);
    EXPECT_EQ(wrapAdd(-3, 5), 2);
    EXPECT_EQ(wrapSub(3, 5), -2);
    constexpr long long most64 = std::numeric_limits<long long>::max();
    EXPECT_EQ(wrapAdd(most64, 1LL), kLowest64);
    EXPECT_EQ(wrapSub(kLowest64, 1LL), most64);
    EXPECT_EQ(wrapMul(most64, 2LL), -2);
}

} // namespace
} // namespace OrvantaNS
