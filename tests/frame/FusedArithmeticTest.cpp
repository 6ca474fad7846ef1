#include "frame/FusedArithmetic.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Random.h"

namespace OrvantaNS {
namespace {

using testing::Random;

constexpr double kUnit = 0x1p-52; // The last place of 1.

TEST(FusedArithmeticTest, SumAndProduct_KeepWhatRoundingTakesOff) {
    EXPECT_EQ(exactSum(1.0, 0x1p-80).value, 1.0);
    EXPECT_EQ(exactSum(1.0, 0x1p-80).error, 0x1p-80);
    EXPECT_EQ(exactSum(0x1p-80, -1.0).error, 0x1p-80);
    EXPECT_EQ(exactSum(1.5, 2.25).error, 0.0);
    // (1 + u)^2 = 1 + 2u + u^2
    EXPECT_EQ(exactProduct(1.0 + kUnit, 1.0 + kUnit).value, 1.0 + 2.0 * kUnit);
    EXPECT_EQ(exactProduct(1.0 + kUnit, 1.0 + kUnit).error, kUnit * kUnit);
    EXPECT_EQ(exactProduct(3.0, -7.0).error, 0.0);
}

TEST(FusedArithmeticTest, OneRounding_WhereTwoGiveAnotherNumber) {
    // The product's last digits are all that is left.
    EXPECT_EQ(plainFusedMultiplyAdd(1.0 + kUnit, 1.0 + kUnit, -(1.0 + 2.0 * kUnit)), kUnit * kUnit);
    EXPECT_EQ(plainFusedMultiplyAdd(1.0 + kUnit, 1.0 - kUnit, -1.0), -kUnit * kUnit);
    // 1 + u/2, a tie that goes to the even 1, but for a trace above it.
    EXPECT_EQ(plainFusedMultiplyAdd(kUnit / 2.0, 1.0, 1.0), 1.0);
    EXPECT_EQ(plainFusedMultiplyAdd(kUnit / 2.0, 1.0 + kUnit, 1.0), 1.0 + kUnit);
    EXPECT_EQ(plainFusedMultiplyAdd(-kUnit / 2.0, 1.0 + kUnit, -1.0), -1.0 - kUnit);
    // 1 + 3u/2, a tie that goes to the even 1 + 2u, but for a trace below it. The trace lies 2^-105 below: eleven digits
    // more, which some libraries take, do not show it.
    EXPECT_EQ(plainFusedMultiplyAdd(kUnit / 2.0, 1.0, 1.0 + kUnit), 1.0 + 2.0 * kUnit);
    EXPECT_EQ(plainFusedMultiplyAdd(kUnit / 2.0, 1.0 - kUnit / 2.0, 1.0 + kUnit), 1.0 + kUnit);
    // The same ties with a trace that the product's own rounding takes off, on either side: (1 + x) (1 - x) = 1 - x^2 and
    // (1 + x) (1 - x + x^2) = 1 + x^3.
    constexpr double kX = 0x1p-26;
    const auto half = [](double trace, double c) {
        constexpr double kHalf = kUnit / 2.0;
        return trace < 0.0 ? plainFusedMultiplyAdd(kHalf * (1.0 + kX / 16.0), 1.0 - kX / 16.0, c)
                           : plainFusedMultiplyAdd(kHalf * (1.0 + kX), 1.0 - kX + kX * kX, c);
    };
    EXPECT_EQ(half(-1.0, 1.0), 1.0);
    EXPECT_EQ(half(1.0, 1.0), 1.0 + kUnit);
    EXPECT_EQ(half(-1.0, 1.0 + kUnit), 1.0 + kUnit);
    EXPECT_EQ(half(1.0, 1.0 + kUnit), 1.0 + 2.0 * kUnit);
    // Nothing, and nothing to add.
    EXPECT_EQ(plainFusedMultiplyAdd(0.0, 5.0, 3.0), 3.0);
    EXPECT_EQ(plainFusedMultiplyAdd(2.0, 5.0, -10.0), 0.0);
}

TEST(FusedArithmeticTest, TheFormInUse_IsThePlainOne) {
    Random random(20261123);
    for (int i = 0; i < 50000; ++i) {
        const double a = random.real(-8.0, 8.0);
        const double b = std::ldexp(random.real(-8.0, 8.0), -random.range(0, 40));
        // Every fourth sum nearly vanishes.
        const double c = i % 4 == 0 ? -a * b * (1.0 + random.range(-2, 2) * kUnit)
                                    : std::ldexp(random.real(-8.0, 8.0), -random.range(0, 80));
        EXPECT_EQ(fusedMultiplyAdd(a, b, c), plainFusedMultiplyAdd(a, b, c))
            << "seed 20261123, " << a << ", " << b << ", " << c;
    }
}

} // namespace
} // namespace OrvantaNS
