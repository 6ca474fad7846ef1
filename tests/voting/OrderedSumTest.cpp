#include "voting/OrderedSum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace OrvantaNS {
namespace {

double oneByOne(double start, const std::vector<double>& addends) {
    double sum = start;
    for (const double addend : addends) {
        sum += addend;
    }
    return sum;
}

bool sameDouble(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

TEST(OrderedSumTest, AddedTo_NoAddends_IsTheStart) {
    EXPECT_EQ(OrderedSum(0).addedTo(1.5), 1.5);
    EXPECT_EQ(OrderedSum(100).addedTo(0.0), 0.0);
}

TEST(OrderedSumTest, AddedTo_TakesTheAddendsInAscendingNumber_WhateverTheOrderOfSetting) {
    // At 2^53 the doubles are 2 apart: each 1.0 alone is a tie that falls back to the even 2^53, while 1.0 + 1.0 first
    // would make 2^53 + 2.
    OrderedSum sum(3);
    sum.set(2, 1.0);
    sum.set(0, 9007199254740992.0);
    sum.set(1, 1.0);
    EXPECT_EQ(sum.addedTo(0.0), 9007199254740992.0);
    sum.set(0, 0.0);
    EXPECT_EQ(sum.addedTo(0.0), 2.0);
    sum.set(2, 9007199254740992.0);
    EXPECT_EQ(sum.addedTo(1.0), 9007199254740994.0);
}

TEST(OrderedSumTest, AddedTo_ManyTies_RoundToEvenOneByOne) {
    // From 2^53 + 2, an odd step, one 1.0 is a tie upward to the even 2^53 + 4; each further one falls back to it.
    OrderedSum sum(1000);
    for (std::size_t i = 0; i < 1000; ++i) {
        sum.set(i, 1.0);
    }
    EXPECT_EQ(sum.addedTo(9007199254740994.0), 9007199254740996.0);
    EXPECT_EQ(sum.addedTo(9007199254740992.0), 9007199254740992.0);
    EXPECT_EQ(sum.addedTo(0.0), 1000.0);
}

TEST(OrderedSumTest, AddedTo_NoneInForce_LeavesANegativeZero) {
    // Adding a 0.0 that is not in force would make it positive.
    EXPECT_TRUE(std::signbit(OrderedSum(40).addedTo(-0.0)));
    OrderedSum sum(1);
    sum.set(0, 1.0);
    sum.set(0, 0.0);
    EXPECT_TRUE(std::signbit(sum.addedTo(-0.0)));
}

TEST(OrderedSumTest, AddedTo_AddendsThatCancel_StillRoundOneByOne) {
    // Half a step below 3 is a tie that goes up to the even 3; one off that is 2. In one block, then in two.
    for (const std::size_t second : {1u, 32u}) {
        OrderedSum sum(64);
        sum.set(0, 1.0);
        sum.set(second, -1.0);
        EXPECT_EQ(sum.addedTo(2.0 - std::ldexp(1.0, -52)), 2.0) << second;
    }
}

TEST(OrderedSumTest, AddedTo_SumThatRoundingLiftsToAPowerOfTwo_GoesOnInTheWiderSteps) {
    // Ten times 0.6 of a step, 7 steps below 2: each of the first seven is rounded up to a step. At 2 the steps are
    // twice as wide, and the rest is rounded down. The ten together, 6 steps, would not reach 2.
    const double step = std::ldexp(1.0, -52);
    OrderedSum sum(10);
    for (std::size_t i = 0; i < 10; ++i) {
        sum.set(i, 0.6 * step);
    }
    EXPECT_EQ(sum.addedTo(2.0 - 7.0 * step), 2.0);
}

TEST(OrderedSumTest, AddedTo_AnOddStep_ShiftsByTheStepsOfBothBlocks) {
    const double step = std::ldexp(1.0, -51); // between 2 and 4
    OrderedSum sum(64);
    sum.set(0, step);
    sum.set(63, step);
    EXPECT_EQ(sum.addedTo(2.0 + step), 2.0 + 3.0 * step);
}

TEST(OrderedSumTest, AddedTo_AtTheSmallestDoubles_AddsThemToo) {
    constexpr double smallest = std::numeric_limits<double>::denorm_min();
    constexpr double smallestNormal = std::numeric_limits<double>::min();
    OrderedSum sum(1);
    sum.set(0, smallest);
    EXPECT_EQ(sum.addedTo(0.0), smallest);
    EXPECT_EQ(sum.addedTo(smallest), 2.0 * smallest);
    EXPECT_EQ(sum.addedTo(smallestNormal), smallestNormal + smallest);
}

// Addends as they come from votes, addends that make ties, and addends of any size or kind.
enum class Kind { Votes, Ties, Sizes, Anything };

class OrderedSumProperty : public ::testing::TestWithParam<Kind> {
protected:
    double addend(std::mt19937_64& random) const {
        const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        switch (GetParam()) {
        case Kind::Votes:
            return (pick(2) == 0 ? 8.0 : 20.0) * (1.0 - std::ldexp(pick(1 << 30), -32)) * (1 << pick(3));
        case Kind::Ties:
            return 1.0 + pick(4);
        case Kind::Sizes:
            return std::ldexp(1.0 + pick(1000), pick(120) - 60);
        case Kind::Anything:
            break;
        }
        switch (pick(400)) {
        case 0:
            return std::numeric_limits<double>::infinity();
        case 1:
            return std::numeric_limits<double>::quiet_NaN();
        case 2:
            return -std::ldexp(1.0, pick(40));
        case 3:
            return std::numeric_limits<double>::max();
        case 4:
            return std::numeric_limits<double>::denorm_min();
        case 5:
            return -0.0;
        default:
            return std::ldexp(1.0 + pick(1000), pick(20) - 10);
        }
    }

    double start(std::mt19937_64& random) const {
        const double ends[] = {0.0, 7.25, 9007199254740990.0, 9007199254740992.0, 9007199254740994.0, -3.0, 1e300};
        return ends[random() % (GetParam() == Kind::Votes ? 2 : 7)];
    }
};

TEST_P(OrderedSumProperty, AddedTo_WhileAddendsComeAndGo_EqualsAddingOneByOne) {
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937_64 random(seed);
        const std::size_t count = 1 + random() % 700;
        std::vector<double> addends(count, 0.0);
        OrderedSum sum(count);
        for (int change = 0; change < 1500; ++change) {
            // At first the set fills up; later it mostly moves along like a window, at times anywhere.
            const std::size_t number = random() % 3 == 0 ? random() % count : static_cast<std::size_t>(change) % count;
            const bool leaves = addends[number] != 0.0 && random() % 2 == 0;
            addends[number] = leaves ? 0.0 : addend(random);
            sum.set(number, addends[number]);
            const double from = start(random);
            ASSERT_TRUE(sameDouble(sum.addedTo(from), oneByOne(from, addends)))
                << "change " << change << " from " << from;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, OrderedSumProperty,
                         ::testing::Values(Kind::Votes, Kind::Ties, Kind::Sizes, Kind::Anything));

} // namespace
} // namespace OrvantaNS
