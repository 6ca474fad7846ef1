// The small containers of the graph against plain ones.
#include "valuespace/SlotSet.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Random.h"
#include "valuespace/ObjectMarks.h"
#include "valuespace/ShortLists.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using List = std::vector<std::uint32_t>;

List slotsOf(const SlotSet& set) {
    List slots;
    set.forEach([&](std::uint32_t slot) { slots.push_back(slot); });
    return slots;
}

List missing(const SlotSet& set, const SlotSet& other) {
    List slots;
    set.forEachMissingIn(other, [&](std::uint32_t slot) { slots.push_back(slot); });
    return slots;
}

TEST(SlotSetTest, TellsItsSlotsAscending_WhateverOrderTheyCameIn) {
    SlotSet set;
    set.start(200);
    EXPECT_THAT(slotsOf(set), IsEmpty());
    for (const std::uint32_t slot : {130u, 63u, 0u, 64u, 199u}) {
        EXPECT_TRUE(set.add(slot)) << slot;
        EXPECT_FALSE(set.add(slot)) << slot << " is in it";
    }
    EXPECT_THAT(slotsOf(set), ElementsAre(0, 63, 64, 130, 199));
    set.remove(63);
    set.remove(63);
    set.remove(1);
    EXPECT_THAT(slotsOf(set), ElementsAre(0, 64, 130, 199));
    set.start(200);
    EXPECT_THAT(slotsOf(set), IsEmpty());
}

TEST(SlotSetTest, GrownByAnyNumber_HoldsWhatItHeld_AndNothingNew) {
    SlotSet set;
    for (std::uint32_t slots = 1; slots <= 300; ++slots) {
        set.grow(slots);
        ASSERT_FALSE(set.holds(slots - 1));
        if (slots % 3 == 0) {
            set.add(slots - 1);
        }
    }
    const List held = slotsOf(set);
    ASSERT_EQ(held.size(), 100u);
    for (std::uint32_t slot = 0; slot < 300; ++slot) {
        ASSERT_EQ(set.holds(slot), slot % 3 == 2) << slot;
        ASSERT_EQ(std::count(held.begin(), held.end(), slot), slot % 3 == 2 ? 1 : 0) << slot;
    }
}

TEST(SlotSetTest, PausesOncePerWordOfSlots_AlsoWhereNoneIsInTheSet) {
    SlotSet set;
    set.start(130);
    set.add(128);
    int pauses = 0;
    List told;
    set.forEach([&](std::uint32_t slot) { told.push_back(slot); }, [&] { ++pauses; });
    EXPECT_THAT(told, ElementsAre(128));
    EXPECT_EQ(pauses, 3);
    SlotSet grown;
    grown.grow(128); // two words to the last slot
    pauses = 0;
    grown.forEach([](std::uint32_t) {}, [&] { ++pauses; });
    EXPECT_EQ(pauses, 2);
}

TEST(SlotSetTest, TwoSets_AnswerAsPlainOnes) {
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const int slots = random.range(1, 260);
        const int others = random.range(1, slots);
        SlotSet set;
        SlotSet other;
        set.start(static_cast<std::size_t>(slots));
        other.start(static_cast<std::size_t>(others));
        std::set<std::uint32_t> plain;
        std::set<std::uint32_t> plainOther;
        for (int step = 0; step < 60; ++step) {
            const auto slot = static_cast<std::uint32_t>(random.range(0, slots - 1));
            if (random.chance(0.3)) {
                set.remove(slot);
                plain.erase(slot);
            } else {
                ASSERT_EQ(set.add(slot), plain.insert(slot).second);
            }
            const auto beside = static_cast<std::uint32_t>(random.range(0, others - 1));
            ASSERT_EQ(other.holds(beside), plainOther.count(beside) != 0);
            ASSERT_EQ(other.add(beside), plainOther.insert(beside).second);
        }
        ASSERT_EQ(slotsOf(set), List(plain.begin(), plain.end()));
        List expected;
        std::set_difference(plainOther.begin(), plainOther.end(), plain.begin(), plain.end(),
                            std::back_inserter(expected));
        ASSERT_EQ(missing(other, set), expected);
        set.addAll(other);
        plain.insert(plainOther.begin(), plainOther.end());
        ASSERT_EQ(slotsOf(set), List(plain.begin(), plain.end()));
        ASSERT_THAT(missing(other, set), IsEmpty());
    }
}

TEST(ObjectMarksTest, Marks_StandUntilAllAreWiped) {
    ObjectMarks marks;
    EXPECT_FALSE(marks.holds(0));
    EXPECT_TRUE(marks.add(5));
    EXPECT_FALSE(marks.add(5));
    EXPECT_TRUE(marks.holds(5));
    EXPECT_FALSE(marks.holds(4)) << "below it";
    EXPECT_FALSE(marks.holds(6)) << "right behind it";
    EXPECT_TRUE(marks.add(3));
    for (int round = 0; round < 3; ++round) {
        marks.start();
        EXPECT_FALSE(marks.holds(5));
        EXPECT_TRUE(marks.add(5));
        EXPECT_FALSE(marks.add(5));
        EXPECT_TRUE(marks.add(4u + static_cast<std::uint32_t>(round) * 10));
    }
}

// Lists of 0 to 30 entries: few are moved one by one, many searched.
TEST(ShortListsTest, EraseFirst_TakesTheFirstCopyAlone_FromListsOfAnyLength) {
    for (std::uint32_t length = 0; length <= 30; ++length) {
        List list;
        for (std::uint32_t k = 0; k < length; ++k) {
            list.push_back(k % 7);
        }
        for (std::uint32_t value = 0; value <= 7; ++value) {
            List expected = list;
            const auto first = std::find(expected.begin(), expected.end(), value);
            const bool isIn = first != expected.end();
            if (isIn) {
                expected.erase(first);
            }
            List left = list;
            ASSERT_EQ(eraseFirst(left, value), isIn) << length << " entries, " << value;
            ASSERT_EQ(left, expected) << length << " entries, " << value;
        }
    }
}

} // namespace
} // namespace OrvantaNS
