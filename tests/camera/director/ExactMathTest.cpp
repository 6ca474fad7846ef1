#include "camera/director/ExactMath.h"

#include <cmath>

#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS::testing {
namespace {

using camera::binaryLog;

TEST(ExactMathTest, BinaryLog_PowersOfTwo_AreExact) {
    for (int exponent = -60; exponent <= 60; ++exponent) {
        EXPECT_EQ(binaryLog(std::ldexp(1.0, exponent)), exponent);
    }
}

TEST(ExactMathTest, BinaryLog_AnyNumber_IsCloseToTheStandardLibrary) {
    Random random(7);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::ldexp(random.real(1.0, 2.0), random.range(-40, 40));
        // The first term that is left out is s^13 / 13 times 2.9, with s below 0.172: 2.6e-11.
        EXPECT_NEAR(binaryLog(value), std::log2(value), 3e-11) << value;
    }
}

TEST(ExactMathTest, BinaryLog_LargerNumber_IsNotSmaller) {
    double last = binaryLog(0.5);
    for (double value = 0.5; value < 2.5; value += 0.0001) {
        EXPECT_GE(binaryLog(value), last) << value;
        last = binaryLog(value);
    }
}

} // namespace
} // namespace OrvantaNS::testing
