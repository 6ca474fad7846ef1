#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "ParserWorld.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::ScopedTimeScale;

constexpr long long kLowest = std::numeric_limits<long long>::lowest();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Read before any test has set the clock.
const double kScaleAtLoad = DataParser::StoreTimeScale.load();

TEST(TimeModelTest, StoreTimeScale_AtLoad_IsZero) { EXPECT_EQ(kScaleAtLoad, 0.0); }

TEST(TimeModelTest, ConvertTime_PlainScale_DividesTicksByIt) {
    const ScopedTimeScale clock(1000.0);
    EXPECT_EQ(DataParser::convertTime(0), 0.0);
    EXPECT_EQ(DataParser::convertTime(1500), 1.5);
    EXPECT_EQ(DataParser::convertTime(-250), -0.25);
    EXPECT_EQ(DataParser::convertTime(1), 1.0 / 1000.0);
}

TEST(TimeModelTest, RevertTime_PlainScale_RoundsHalfUpFromZeroOn) {
    const ScopedTimeScale clock(4.0);
    EXPECT_EQ(DataParser::revertTime(0.12), 0);  // 0.48 + 0.5
    EXPECT_EQ(DataParser::revertTime(0.125), 1); // 0.5 + 0.5
    EXPECT_EQ(DataParser::revertTime(0.374), 1); // 1.496 + 0.5
    EXPECT_EQ(DataParser::revertTime(0.375), 2);
    EXPECT_EQ(DataParser::revertTime(2.0), 8);
}

TEST(TimeModelTest, RevertTime_NegativeTime_IsCutTowardZeroAfterTheHalfIsAdded) {
    const ScopedTimeScale clock(4.0);
    EXPECT_EQ(DataParser::revertTime(-0.25), 0);   // -1 + 0.5
    EXPECT_EQ(DataParser::revertTime(-0.375), -1); // -1.5 + 0.5
    EXPECT_EQ(DataParser::revertTime(-0.5), -1);   // -2 + 0.5
    EXPECT_EQ(DataParser::revertTime(-0.625), -2); // -2.5 + 0.5
}

TEST(TimeModelTest, ConvertTime_ExactScale_AddsRestAndWholeSeconds) {
    const ScopedTimeScale clock(10000000.0);
    EXPECT_EQ(DataParser::convertTime(12345678), 2345678.0 / 10000000.0 + 1.0);
    EXPECT_EQ(DataParser::convertTime(-12345678), -2345678.0 / 10000000.0 + -1.0);
    EXPECT_EQ(DataParser::convertTime(9999999), 9999999.0 / 10000000.0);
    EXPECT_EQ(DataParser::convertTime(kLowest), -4775808.0 / 10000000.0 + -922337203685.0);
}

TEST(TimeModelTest, RevertTime_ExactScale_RoundsTheFractionAlone) {
    const ScopedTimeScale clock(10000000.0);
    EXPECT_EQ(DataParser::revertTime(0.25), 2500000);
    EXPECT_EQ(DataParser::revertTime(10.0), 100000000);
    EXPECT_EQ(DataParser::revertTime(-1.25), -12499999); // -2500000 + 0.5 cut toward zero, less a whole second
    EXPECT_EQ(DataParser::revertTime(-1.0), -10000000);
}

TEST(TimeModelTest, RevertTime_ExactScale_RoundTripsTickCounts) {
    const ScopedTimeScale clock(10000000.0);
    // Beyond some 2^29 seconds a double no longer holds tenths of a microsecond.
    constexpr std::uint64_t seed = 11;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int n = 0; n < 20000; ++n) {
        const long long ticks = static_cast<long long>(random() >> (12 + n % 50));
        ASSERT_EQ(DataParser::revertTime(DataParser::convertTime(ticks)), ticks);
    }
}

TEST(TimeModelTest, TimeScale_NextToTheExactOne_TakesThePlainPath) {
    const ScopedTimeScale clock(std::nextafter(10000000.0, kInfinity));
    // The plain path adds the half to the whole count, so a negative whole second loses a tick.
    EXPECT_EQ(DataParser::revertTime(-1.0), -9999999);
}

TEST(TimeModelTest, RevertTime_ResultBeyond64Bits_IsTheLowestValue) {
    for (const double scale : {1.0, 1000.0, 10000000.0}) {
        SCOPED_TRACE(scale);
        const ScopedTimeScale clock(scale);
        for (const double seconds : {kNaN, kInfinity, -kInfinity, 1e300, -1e300}) {
            EXPECT_EQ(DataParser::revertTime(seconds), kLowest) << seconds;
        }
    }
}

TEST(TimeModelTest, RevertTime_ExactScale_WrapsWholeSeconds) {
    const ScopedTimeScale clock(10000000.0);
    // 10^19 less 2^64.
    EXPECT_EQ(DataParser::revertTime(1e12), -8446744073709551616LL + 0);
}

TEST(TimeModelTest, TimeScale_NotANumberOrInfinite_IsHarmless) {
    {
        const ScopedTimeScale clock(kNaN);
        EXPECT_TRUE(std::isnan(DataParser::convertTime(5)));
        EXPECT_EQ(DataParser::revertTime(5.0), kLowest);
    }
    {
        const ScopedTimeScale clock(kInfinity);
        EXPECT_EQ(DataParser::convertTime(5), 0.0);
        EXPECT_EQ(DataParser::revertTime(5.0), kLowest);
        EXPECT_EQ(DataParser::revertTime(0.0), kLowest); // infinity times nothing is not a number
    }
    {
        const ScopedTimeScale clock(0.0);
        EXPECT_EQ(DataParser::convertTime(5), kInfinity);
        EXPECT_EQ(DataParser::revertTime(5.0), 0);
    }
}

TEST(TimeModelTest, RevertTime_TinyScale_MakesTenSecondsNoTick) {
    {
        const ScopedTimeScale clock(0.01);
        EXPECT_EQ(DataParser::revertTime(10.0), 0);
    }
    {
        const ScopedTimeScale clock(0.05);
        EXPECT_EQ(DataParser::revertTime(10.0), 1); // 0.5 + 0.5
    }
}

TEST(TimeModelTest, ConvertInterval_InvertedEnds_AreConvertedAsTheyStand) {
    const ScopedTimeScale clock(1000.0);
    const Interval_Type<double> seconds = DataParser::convertInterval({7500, -500});
    EXPECT_EQ(seconds.start, 7.5);
    EXPECT_EQ(seconds.stop, -0.5);
}

} // namespace
} // namespace OrvantaNS
