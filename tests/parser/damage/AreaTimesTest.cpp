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

TEST(AreaTimesTest, NoAreas_AreInOrderAndNoneIsAlive) {
    const AreaTimes times(areasOf({}));
    EXPECT_TRUE(times.isInOrder());
    EXPECT_EQ(times.firstAlive(0, 5), 0u);
}

TEST(AreaTimesTest, InOrder_OnlyAreasByStartThatStopNoEarlierThanTheyStart) {
    EXPECT_TRUE(AreaTimes(areasOf({{0, 9}, {0, 0}, {3, 5}})).isInOrder());
    EXPECT_FALSE(AreaTimes(areasOf({{1, 9}, {0, 9}})).isInOrder());
    EXPECT_FALSE(AreaTimes(areasOf({{1, 9}, {3, 2}})).isInOrder());
}

TEST(AreaTimesTest, FirstAlive_AnyAreas_AgreesWithAScan) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<DR_OBJECT> areas(seed % 20);
        for (DR_OBJECT& area : areas) {
            area.stop = static_cast<long long>(random() % 12);
        }
        const AreaTimes times(areas);
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
