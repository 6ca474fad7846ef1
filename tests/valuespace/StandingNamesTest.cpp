#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "valuespace/StandingNames.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using List = std::vector<std::uint32_t>;

bool isEven(std::uint32_t name) { return name % 2 == 0; }
bool isNone(std::uint32_t) { return false; }

List told(const StandingNames& standing, std::uint32_t slot, const List& list) {
    List names;
    standing.forEach(slot, list, [&](std::uint32_t name) { names.push_back(name); });
    EXPECT_EQ(standing.namesIn(slot, list), names.size());
    return names;
}

TEST(StandingNamesTest, AListThatIsNotSifted_IsToldWhole) {
    const StandingNames standing;
    EXPECT_TRUE(standing.isEmpty());
    EXPECT_THAT(told(standing, 3, {7, 5, 9}), ElementsAre(7u, 5u, 9u));
}

TEST(StandingNamesTest, OfASiftedList_TellsWhatStood_AndAllThatCameSince) {
    StandingNames standing;
    List list{1, 4, 3, 2, 5};
    standing.sift(6, 9, list, isEven);
    EXPECT_FALSE(standing.isEmpty());
    EXPECT_THAT(told(standing, 6, list), ElementsAre(4u, 2u));
    list.insert(list.end(), {11, 6});
    EXPECT_THAT(told(standing, 6, list), ElementsAre(4u, 2u, 11u, 6u));
    EXPECT_THAT(told(standing, 5, {1, 2}), ElementsAre(1u, 2u)) << "another slot";
    standing.sift(6, 9, list, isEven);
    EXPECT_THAT(told(standing, 6, list), ElementsAre(4u, 2u, 6u)) << "from what the first sifting left";
}

TEST(StandingNamesTest, AListOfWhichMostStands_IsLeftAsItIs) {
    StandingNames standing;
    standing.sift(0, 2, {2, 4, 6, 1, 3}, isEven);
    EXPECT_TRUE(standing.isEmpty());
    standing.sift(0, 2, {2, 4, 1, 3}, isEven);
    EXPECT_THAT(told(standing, 0, {2, 4, 1, 3}), ElementsAre(2u, 4u)) << "half of it is little enough";
    standing.sift(0, 2, {2, 4, 1, 3, 6, 8, 10}, isEven);
    EXPECT_THAT(told(standing, 0, {2, 4, 1, 3, 6, 8, 10}), ElementsAre(2u, 4u, 1u, 3u, 6u, 8u, 10u)) << "no longer";
}

TEST(StandingNamesTest, WhatLeavesTheList_IsToldNoMore) {
    StandingNames standing;
    standing.sift(0, 1, {1, 2, 3, 4, 5}, isEven);
    standing.erase(0, 2); // before the end of what was sifted
    EXPECT_THAT(told(standing, 0, {1, 3, 4, 5}), ElementsAre(4u));
    standing.erase(0, 8); // was put on since, at the end
    EXPECT_THAT(told(standing, 0, {1, 3, 4, 5, 10}), ElementsAre(4u, 10u));
    standing.eraseIf(0, [](std::uint32_t name) { return name >= 4; });
    EXPECT_THAT(told(standing, 0, {1, 3, 5}), ElementsAre());
    standing.erase(1, 4); // a slot without anything
    standing.eraseIf(1, isEven);
    EXPECT_THAT(told(standing, 1, {4}), ElementsAre(4u));
}

TEST(StandingNamesTest, AForgottenList_IsToldWhole_AndItsPlaceServesAnother) {
    StandingNames standing;
    standing.sift(0, 3, {1, 3}, isNone);
    standing.sift(1, 3, {1, 2, 3, 5}, isEven);
    standing.forget(0);
    standing.forget(0);
    standing.forget(2);
    EXPECT_THAT(told(standing, 0, {1, 3}), ElementsAre(1u, 3u));
    standing.sift(2, 3, {4, 7, 9}, isEven);
    standing.sift(0, 4, {8, 7, 9}, isEven);
    EXPECT_THAT(told(standing, 0, {8, 7, 9}), ElementsAre(8u));
    EXPECT_THAT(told(standing, 1, {1, 2, 3, 5}), ElementsAre(2u));
    EXPECT_THAT(told(standing, 2, {4, 7, 9}), ElementsAre(4u));
    standing.reset();
    EXPECT_TRUE(standing.isEmpty());
    EXPECT_THAT(told(standing, 1, {1, 2, 3, 5}), ElementsAre(1u, 2u, 3u, 5u));
}

TEST(StandingNamesTest, AfterAReset_ListsAreSiftedAsInAFreshOne) {
    StandingNames standing;
    standing.sift(0, 3, {1, 2, 3}, isNone);
    standing.sift(1, 3, {1, 2, 3}, isEven);
    standing.forget(1); // leaves a place that serves another
    standing.reset();
    standing.sift(2, 3, {5, 6, 7}, isEven);
    standing.sift(0, 3, {8, 9, 11}, isEven);
    EXPECT_THAT(told(standing, 0, {8, 9, 11}), ElementsAre(8u));
    EXPECT_THAT(told(standing, 1, {1, 2, 3}), ElementsAre(1u, 2u, 3u));
    EXPECT_THAT(told(standing, 2, {5, 6, 7}), ElementsAre(6u));
}

} // namespace
} // namespace OrvantaNS
