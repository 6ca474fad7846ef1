#include "parser/damage/AreaTimes.h"

#include <random>

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

std::vector<DR_OBJECT> areasOf(std::initializer_list<std::pair<long long, long long>> lives) {
    std::vector<DR_OBJECT> areas;
    for (const auto& [start, stop] : lives) {
        areas.push_back({{{stop, {}}}, start, stop, {}});
    }
    return areas;
}

bool isUsed(const std::vector<DR_OBJECT>& areas) {
    AreaTimes times;
    times.build(areas);
    return times.standsFor(areas);
}

TEST(AreaTimesTest, NotBuilt_StandsForNothingAndHoldsNothing) {
    const AreaTimes times;
    EXPECT_FALSE(times.standsFor({}));
    EXPECT_EQ(times.firstAlive(0, 5), 0u);
}

TEST(AreaTimesTest, StandsFor_OnlyAreasInOrderThatStopNoEarlierThanTheyStart) {
    EXPECT_TRUE(isUsed(areasOf({})));
    EXPECT_TRUE(isUsed(areasOf({{0, 9}, {0, 0}, {3, 5}})));
    EXPECT_FALSE(isUsed(areasOf({{1, 9}, {0, 9}})));
    EXPECT_FALSE(isUsed(areasOf({{1, 9}, {3, 2}})));
}

TEST(AreaTimesTest, StandsFor_AnotherArrayOrNone_IsFalse) {
    const std::vector<DR_OBJECT> areas = areasOf({{0, 9}});
    const std::vector<DR_OBJECT> others = areas;
    AreaTimes times;
    EXPECT_FALSE(times.standsFor(areas));
    times.build(areas);
    EXPECT_FALSE(times.standsFor(others));
}

TEST(AreaTimesTest, FirstAlive_AnyAreas_AgreesWithAScan) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<DR_OBJECT> areas(seed % 20);
        for (DR_OBJECT& area : areas) {
            area.stop = static_cast<long long>(random() % 12);
        }
        AreaTimes times;
        times.build(areas);
        for (std::size_t from = 0; from < areas.size() + 3; ++from) {
            for (long long time = -1; time < 14; ++time) {
                std::size_t expected = std::min(from, areas.size());
                while (expected < areas.size() && areas[expected].stop < time) {
                    ++expected;
                }
                ASSERT_EQ(times.firstAlive(from, time), expected) << from << ", " << time;
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
