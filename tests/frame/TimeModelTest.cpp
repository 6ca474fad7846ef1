#include "frame/TimeModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace OrvantaNS {
namespace {

constexpr long long kLowest = std::numeric_limits<long long>::lowest();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// ---- Ticks to seconds ----

TEST(TimeModelTest, TicksToSeconds_OrdinaryScale_Divides) {
    EXPECT_EQ(ticksToSeconds(100, 100.0), 1.0); // the default fade
    EXPECT_EQ(ticksToSeconds(1500, 1000.0), 1.5);
    EXPECT_EQ(ticksToSeconds(-250, 1000.0), -0.25);
    EXPECT_EQ(ticksToSeconds(0, 90000.0), 0.0);
    EXPECT_EQ(ticksToSeconds(3, -2.0), -1.5);
}

TEST(TimeModelTest, TicksToSeconds_ExactScale_KeepsWholeSecondsAndRestApart) {
    EXPECT_EQ(ticksToSeconds(15000000, kExactTimeScale), 1.5);
    EXPECT_EQ(ticksToSeconds(1, kExactTimeScale), 1e-7);
    // Toward zero: whole −1 and rest −5000000.
    EXPECT_EQ(ticksToSeconds(-15000000, kExactTimeScale), -1.5);
    EXPECT_EQ(ticksToSeconds(-1, kExactTimeScale), -1e-7);
    // 2^53 + 1 ticks are no double. Split, they are 900719925 s and 4740993 ticks; the sum of the two is rounded once.
    EXPECT_EQ(ticksToSeconds(9007199254740993, kExactTimeScale), 0.4740993 + 900719925.0);
}

TEST(TimeModelTest, TicksToSeconds_OneTickBesideTheExactScale_TakesTheOrdinaryPath) {
    const double near = std::nextafter(kExactTimeScale, 0.0);
    EXPECT_EQ(ticksToSeconds(9007199254740993, near), static_cast<double>(9007199254740993) / near);
}

TEST(TimeModelTest, TicksToSeconds_OddScales_GiveWhatDivisionGives) {
    EXPECT_TRUE(std::isnan(ticksToSeconds(5, kNaN)));
    EXPECT_EQ(ticksToSeconds(5, kInfinity), 0.0);
    EXPECT_EQ(ticksToSeconds(5, 0.0), kInfinity); // zero at load, before any computation has written a scale
    EXPECT_TRUE(std::isnan(ticksToSeconds(0, 0.0)));
    EXPECT_EQ(ticksToSeconds(kLowest, 1.0), -9223372036854775808.0);
    // −9223372036854775808 = −922337203685 s and −4775808 ticks.
    EXPECT_EQ(ticksToSeconds(kLowest, kExactTimeScale), -0.4775808 + -922337203685.0);
}

// ---- Seconds to ticks ----

TEST(TimeModelTest, SecondsToTicks_RoundsHalfUpForTimesFromZeroOn) {
    EXPECT_EQ(secondsToTicks(0.0, 100.0), 0);
    EXPECT_EQ(secondsToTicks(0.25, 2.0), 1); // half a tick
    EXPECT_EQ(secondsToTicks(0.24, 2.0), 0);
    EXPECT_EQ(secondsToTicks(1.25, 2.0), 3);
    EXPECT_EQ(secondsToTicks(1.0, 100.0), 100);
    EXPECT_EQ(secondsToTicks(10.0, 1000.0), 10000);
}

TEST(TimeModelTest, SecondsToTicks_NegativeTime_IsCutTowardZeroAfterTheHalf) {
    EXPECT_EQ(secondsToTicks(-0.25, 2.0), 0); // −0.5 + 0.5 = 0
    EXPECT_EQ(secondsToTicks(-0.5, 2.0), 0);  // −1 + 0.5 = −0.5, cut to 0
    EXPECT_EQ(secondsToTicks(-1.0, 2.0), -1); // −2 + 0.5 = −1.5, cut to −1
    EXPECT_EQ(secondsToTicks(-1.0, 100.0), -99);
}

TEST(TimeModelTest, SecondsToTicks_ExactScale_RoundsTheFractionAlone) {
    EXPECT_EQ(secondsToTicks(1.5, kExactTimeScale), 15000000);
    EXPECT_EQ(secondsToTicks(1e-7, kExactTimeScale), 1);
    EXPECT_EQ(secondsToTicks(0.49e-7, kExactTimeScale), 0);
    EXPECT_EQ(secondsToTicks(0.51e-7, kExactTimeScale), 1);
    // Whole −1, fraction −0.5: −5000000 + 0.5 is cut to −4999999.
    EXPECT_EQ(secondsToTicks(-1.5, kExactTimeScale), -14999999);
    // A whole second has fraction 0: the half is cut away again.
    EXPECT_EQ(secondsToTicks(-2.0, kExactTimeScale), -20000000);
}

TEST(TimeModelTest, SecondsToTicks_NotANumber_GivesTheLowestValue) {
    EXPECT_EQ(secondsToTicks(kNaN, 1000.0), kLowest);
    EXPECT_EQ(secondsToTicks(1.0, kNaN), kLowest);
    // On the exact path the lowest value meets lowest × 10,000,000, which wraps to 0 (2^63 times an even number).
    EXPECT_EQ(secondsToTicks(kNaN, kExactTimeScale), kLowest);
}

TEST(TimeModelTest, SecondsToTicks_InfiniteScale_GivesTheLowestValue) {
    EXPECT_EQ(secondsToTicks(1.0, kInfinity), kLowest);
    EXPECT_EQ(secondsToTicks(-1.0, kInfinity), kLowest);
    EXPECT_EQ(secondsToTicks(0.0, kInfinity), kLowest); // 0 × infinity is not a number
}

TEST(TimeModelTest, SecondsToTicks_TooLarge_GivesTheLowestValue) {
    EXPECT_EQ(secondsToTicks(9223372036854774784.0, 1.0), 9223372036854774784); // the largest double below 2^63
    EXPECT_EQ(secondsToTicks(9223372036854775808.0, 1.0), kLowest);             // 2^63
    EXPECT_EQ(secondsToTicks(1e300, 1.0), kLowest);
    EXPECT_EQ(secondsToTicks(-9223372036854775808.0, 1.0), kLowest); // −2^63 fits
    EXPECT_EQ(secondsToTicks(-1e300, 1.0), kLowest);
    EXPECT_EQ(secondsToTicks(kInfinity, 1.0), kLowest);
}

TEST(TimeModelTest, SecondsToTicks_ExactScaleTooLarge_WrapsWithoutUndefinedBehaviour) {
    // 10^12 s: whole × 10^7 = 10^19 = 2^64 − 8446744073709551616, so the ticks wrap to −8446744073709551616.
    EXPECT_EQ(secondsToTicks(1e12, kExactTimeScale), -8446744073709551616LL);
    // Infinity: the whole is the lowest value, the fraction infinite and so the lowest value as well; the product
    // wraps to 0.
    EXPECT_EQ(secondsToTicks(kInfinity, kExactTimeScale), kLowest);
}

// ---- Round trip ----

TEST(TimeModelTest, RoundTrip_ExactScale_ReturnsTheTicksOfRecordings) {
    for (const long long ticks : {0LL, 1LL, 9999999LL, 10000000LL, 10000001LL, 123456789012LL}) {
        EXPECT_EQ(secondsToTicks(ticksToSeconds(ticks, kExactTimeScale), kExactTimeScale), ticks);
    }
}

TEST(TimeModelTest, RoundTrip_ExactScale_GeneratedTicks) {
    // Up to 2^29 s, some 17 years. Seconds below that are rounded by at most 2^-25 s, three tenths of a tick; beyond it
    // the rounding exceeds half a tick and no conversion through a double can be exact.
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<long long> any(0, (1LL << 29) * 10000000 - 1);
    for (int round = 0; round < 100000; ++round) {
        const long long ticks = any(random);
        ASSERT_EQ(secondsToTicks(ticksToSeconds(ticks, kExactTimeScale), kExactTimeScale), ticks);
    }
}

TEST(TimeModelTest, RoundTrip_OrdinaryScales_GeneratedTicks) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<long long> any(0, 1LL << 48);
    for (const double scale : {1.0, 30.0, 100.0, 1000.0, 90000.0, 29.97}) {
        for (int round = 0; round < 10000; ++round) {
            const long long ticks = any(random);
            ASSERT_EQ(secondsToTicks(ticksToSeconds(ticks, scale), scale), ticks) << "scale " << scale;
        }
    }
}

} // namespace
} // namespace OrvantaNS
