#include "CameraEasing.h"

#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS::testing {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

double curve(double first, double second, double s) {
    return 3 * (1 - s) * (1 - s) * s * first + 3 * (1 - s) * s * s * second + s * s * s;
}

TEST(CameraEasingTest, Default_IsEaseInOut) {
    EXPECT_EQ(CameraEasing(), CameraEasing(0.42, 0, 0.58, 1));
    EXPECT_EQ(CameraEasing(), CameraEasing::easeInOut());
    EXPECT_EQ(CameraEasing().name(), "ease-in-out");
    EXPECT_EQ(CameraEasing::names().front(), "ease-in-out");
}

TEST(CameraEasingTest, Presets_HaveTheirControlPointsAndNames) {
    EXPECT_EQ(CameraEasing::linear(), CameraEasing(0, 0, 1, 1));
    EXPECT_EQ(CameraEasing::easeOut(), CameraEasing(0, 0, 0.58, 1));
    EXPECT_EQ(CameraEasing::smooth(), CameraEasing(0.65, 0, 0.35, 1));
    EXPECT_EQ(CameraEasing::names().size(), 4u);
    for (const std::string_view name : CameraEasing::names()) {
        ASSERT_TRUE(CameraEasing::named(name)) << name;
        EXPECT_EQ(CameraEasing::named(name)->name(), name);
    }
}

TEST(CameraEasingTest, Named_OtherName_IsNothing) {
    EXPECT_FALSE(CameraEasing::named(""));
    EXPECT_FALSE(CameraEasing::named("Linear"));
    EXPECT_EQ(CameraEasing(0.1, 0.2, 0.3, 0.4).name(), "");
}

TEST(CameraEasingTest, At_Ends_AreExact) {
    for (const std::string_view name : CameraEasing::names()) {
        const CameraEasing easing = *CameraEasing::named(name);
        EXPECT_EQ(easing.at(0.0), 0.0);
        EXPECT_EQ(easing.at(1.0), 1.0);
        EXPECT_EQ(easing.at(-0.1), 0.0);
        EXPECT_EQ(easing.at(1.1), 1.0);
        EXPECT_EQ(easing.at(-kInfinity), 0.0);
        EXPECT_EQ(easing.at(kInfinity), 1.0);
        EXPECT_EQ(easing.at(kNaN), 0.0);
    }
    EXPECT_NEAR(CameraEasing().at(1e-12), 0.0, 1e-11);
    EXPECT_NEAR(CameraEasing().at(1 - 1e-12), 1.0, 1e-11);
}

TEST(CameraEasingTest, At_EndsOfCurvesThatAreFlatThere_AreExact) {
    // Here x is 1 - (1 - s)^3 or s^3, which is 1 or 0 to a double while y is still far from it.
    EXPECT_EQ(CameraEasing(1, 0, 1, 10).at(1.0), 1.0);
    EXPECT_EQ(CameraEasing(0, 10, 0, 0).at(0.0), 0.0);
}

TEST(CameraEasingTest, At_StraightLine_IsTheTimeItself) {
    for (int i = 0; i <= 1000; ++i) {
        EXPECT_EQ(CameraEasing::linear().at(i / 1000.0), i / 1000.0);
        EXPECT_EQ(CameraEasing(0.2, 0.2, 0.9, 0.9).at(i / 1000.0), i / 1000.0);
    }
}

// At s = 1/2, x and y are three eighths of the points' and an eighth.
TEST(CameraEasingTest, At_OneControlPointOffTheLine_IsACurve) {
    EXPECT_NEAR(CameraEasing(0.5, 0, 0.75, 0.75).at(0.59375), 0.40625, 1e-12);
    EXPECT_NEAR(CameraEasing(0.25, 0.25, 0.5, 1).at(0.40625), 0.59375, 1e-12);
}

TEST(CameraEasingTest, At_SymmetricCurve_IsHalfWayAtHalfTime) {
    EXPECT_NEAR(CameraEasing::easeInOut().at(0.5), 0.5, 1e-15);
    EXPECT_NEAR(CameraEasing::smooth().at(0.5), 0.5, 1e-15);
    // The curve that sets off at once is ahead of both.
    EXPECT_GT(CameraEasing::easeOut().at(0.5), 0.6);
}

// With both x at 0, x is s^3, and y = 1 - (1 - s)^3 with both y at 1: at s = 1/2 they are 1/8 and 7/8.
TEST(CameraEasingTest, At_UprightAndFlatEnds_AreSolved) {
    EXPECT_NEAR(CameraEasing(0, 1, 0, 1).at(0.125), 0.875, 1e-12);
    EXPECT_NEAR(CameraEasing(1, 0, 1, 0).at(0.875), 0.125, 1e-12);
    // Upright in the middle; x is 1/2 only where y is.
    EXPECT_NEAR(CameraEasing(1, 0, 0, 1).at(0.5), 0.5, 1e-4);
}

TEST(CameraEasingTest, At_PointsOfTheCurve_AreFound) {
    const std::uint64_t seed = 20240611;
    Random random(seed);
    for (int round = 0; round < 300; ++round) {
        const double x1 = random.unit();
        const double y1 = random.real(-2, 3);
        const double x2 = random.unit();
        const double y2 = random.real(-2, 3);
        const CameraEasing easing(x1, y1, x2, y2);
        for (int i = 0; i <= 50; ++i) {
            const double s = i / 50.0;
            EXPECT_NEAR(easing.at(curve(x1, x2, s)), curve(y1, y2, s), 1e-6)
                << "seed " << seed << " round " << round << " curve " << x1 << " " << y1 << " " << x2 << " " << y2;
        }
    }
}

// With its x at a third and two thirds a curve's parameter is the time itself.
TEST(CameraEasingTest, At_CurveOfEvenPace_IsFoundToTheLastDigits) {
    const CameraEasing easing(1 / 3.0, 2, 2 / 3.0, -1);
    for (int i = 1; i < 1000; ++i) {
        EXPECT_NEAR(easing.at(i / 1000.0), curve(2, -1, i / 1000.0), 3e-15) << i;
        EXPECT_NEAR(easing.at(1 - i / 1e6), curve(2, -1, 1 - i / 1e6), 3e-15) << i;
    }
}

TEST(CameraEasingTest, At_YWithinTheUnit_NeverFalls) {
    const std::uint64_t seed = 7;
    Random random(seed);
    for (int round = 0; round < 100; ++round) {
        const double x1 = random.unit();
        const double y1 = random.unit();
        const double x2 = random.unit();
        const double y2 = random.real(y1, 1.0);
        const CameraEasing easing(x1, y1, x2, y2);
        double before = 0.0;
        for (int i = 0; i <= 1000; ++i) {
            const double now = easing.at(i / 1000.0);
            EXPECT_GE(now, before - 1e-15) << "seed " << seed << " round " << round << " step " << i;
            EXPECT_LE(now, 1.0 + 1e-15);
            before = now;
        }
    }
}

TEST(CameraEasingTest, ControlPoints_OutOfRange_AreRefused) {
    const auto isRefused = [](std::size_t number, double value) {
        double numbers[4] = {0.5, 0.5, 0.5, 0.5};
        numbers[number] = value;
        try {
            const CameraEasing easing(numbers[0], numbers[1], numbers[2], numbers[3]);
        } catch (const std::invalid_argument&) {
            return true;
        }
        return false;
    };
    for (const std::size_t number : {0u, 1u, 2u, 3u}) {
        const bool isX = number % 2 == 0;
        const double low = isX ? 0.0 : -10.0;
        const double high = isX ? 1.0 : 10.0;
        EXPECT_FALSE(isRefused(number, low)) << number;
        EXPECT_FALSE(isRefused(number, high)) << number;
        for (const double bad : {low - 0.001, high + 0.001, kNaN, kInfinity, -kInfinity}) {
            EXPECT_TRUE(isRefused(number, bad)) << number << " " << bad;
        }
    }
}

} // namespace
} // namespace OrvantaNS::testing
