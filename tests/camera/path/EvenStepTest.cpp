#include "camera/path/EvenStep.h"

#include <cmath>

#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS::testing {
namespace {

TEST(EvenStepTest, LogRatio_AgreesWithTheStandardLibrary) {
    const std::uint64_t seed = 11;
    Random random(seed);
    for (int i = 0; i < 20000; ++i) {
        const double from = std::exp(random.real(-20, 40));
        const double to = random.chance(0.3) ? from * (1 + random.real(-1e-9, 1e-9)) : std::exp(random.real(-20, 40));
        const double expected = std::fabs(to / from - 1) < 0.1 ? std::log1p((to - from) / from) : std::log(to / from);
        EXPECT_NEAR(even_step::logRatio(from, to), expected, 4e-15 * std::fabs(expected) + 1e-300)
            << "seed " << seed << " from " << from << " to " << to;
    }
}

TEST(EvenStepTest, LogRatio_Doublings_AreMultiplesOfOneLogarithm) {
    EXPECT_EQ(even_step::logRatio(3.0, 3.0), 0.0);
    EXPECT_NEAR(even_step::logRatio(1.0, 1024.0), 10 * std::log(2.0), 1e-14);
    EXPECT_NEAR(even_step::logRatio(5.0, 1.25), -2 * std::log(2.0), 1e-15);
}

TEST(EvenStepTest, Growth_AgreesWithTheStandardLibrary) {
    const std::uint64_t seed = 12;
    Random random(seed);
    for (int i = 0; i < 20000; ++i) {
        const double x = random.chance(0.3) ? random.real(-1e-6, 1e-6) : random.real(-100, 100);
        const double expected = std::expm1(x);
        EXPECT_NEAR(even_step::growth(x), expected, 1e-13 * std::fabs(expected)) << "seed " << seed << " x " << x;
    }
}

TEST(EvenStepTest, Ends_AreExact) {
    const std::uint64_t seed = 13;
    Random random(seed);
    for (int i = 0; i < 1000; ++i) {
        const double from = random.real(1, 5000);
        const double to = random.chance(0.1) ? from : random.real(1, 5000);
        EXPECT_EQ(evenStep(from, to, 0.0).scale, 1.0);
        EXPECT_EQ(evenStep(from, to, 0.0).share, 0.0);
        EXPECT_EQ(evenStep(from, to, 1.0).share, 1.0);
        EXPECT_NEAR(evenStep(from, to, 1.0).scale, to / from, 1e-13 * to / from);
    }
}

// From 100 to 400: half of the logarithm is a doubling, and 100 of the 300 pixels.
TEST(EvenStepTest, HalfWay_IsTheGeometricMean) {
    EXPECT_NEAR(evenStep(100, 400, 0.5).scale, 2.0, 1e-15);
    EXPECT_NEAR(evenStep(100, 400, 0.5).share, 1.0 / 3.0, 1e-15);
    EXPECT_NEAR(evenStep(400, 100, 0.5).scale, 0.5, 1e-15);
    EXPECT_NEAR(evenStep(400, 100, 0.5).share, 2.0 / 3.0, 1e-15);
}

TEST(EvenStepTest, EqualSizes_GoWithTheProgress) {
    EXPECT_EQ(evenStep(640, 640, 0.37).share, 0.37);
    EXPECT_EQ(evenStep(640, 640, 0.37).scale, 1.0);
}

TEST(EvenStepTest, NearlyEqualSizes_GoNearlyWithTheProgress) {
    // r^p = 1 + p d + p (p - 1) / 2 d^2 + ..., so the share is p (1 + (p - 1) / 2 d + ...).
    const double d = 1e-6;
    EXPECT_NEAR(evenStep(1.0, 1.0 + d, 0.3).share, 0.3 * (1 - 0.35 * d), 1e-12);
}

TEST(EvenStepTest, EverySize_StaysAboveZero) {
    // The furthest that sizes lie apart and the furthest that an easing overshoots.
    for (const double progress : {-9.0, -0.5, 0.5, 1.5, 9.0}) {
        for (const double size : {1e-19, 1e19}) {
            const EvenStep step = evenStep(1.0, size, progress);
            EXPECT_GT(step.scale, 0.0);
            EXPECT_TRUE(std::isfinite(step.scale));
            EXPECT_TRUE(std::isfinite(step.share));
        }
    }
}

} // namespace
} // namespace OrvantaNS::testing
