// The sort for lists that are nearly in order, held against the standard one.
#include "frame/StableSort.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

using Entry = std::pair<int, std::size_t>; // what is sorted by, and where it stood

constexpr auto kByFirst = [](const Entry& a, const Entry& b) { return a.first < b.first; };

std::vector<Entry> numbered(const std::vector<int>& keys) {
    std::vector<Entry> entries;
    for (const int key : keys) {
        entries.emplace_back(key, entries.size());
    }
    return entries;
}

void expectSortedLikeStandard(const std::vector<int>& keys) {
    std::vector<Entry> expected = numbered(keys);
    std::stable_sort(expected.begin(), expected.end(), kByFirst);
    std::vector<Entry> sorted = numbered(keys);
    stableSort(sorted, kByFirst);
    EXPECT_EQ(sorted, expected);
}

std::size_t comparisonsToSort(const std::vector<int>& keys) {
    std::vector<Entry> entries = numbered(keys);
    std::size_t comparisons = 0;
    stableSort(entries, [&](const Entry& a, const Entry& b) {
        ++comparisons;
        return kByFirst(a, b);
    });
    EXPECT_TRUE(std::is_sorted(entries.begin(), entries.end()));
    return comparisons;
}

TEST(StableSortTest, EqualEntriesKeepTheirOrder) {
    std::vector<Entry> entries{{2, 0}, {1, 1}, {2, 2}, {1, 3}, {0, 4}};
    stableSort(entries, kByFirst);
    EXPECT_EQ(entries, (std::vector<Entry>{{0, 4}, {1, 1}, {1, 3}, {2, 0}, {2, 2}}));
}

TEST(StableSortTest, ListsOfNoneAndOneStayAsTheyAre) {
    expectSortedLikeStandard({});
    expectSortedLikeStandard({7});
}

// A list in falling order makes as many moves as a list can, so that longer ones are given to the standard sort, after
// every possible number of moves. Each length falls in pairs, too, so that equal entries would show a wrong turn.
TEST(StableSortTest, ListsInFallingOrder) {
    for (int length = 2; length <= 120; ++length) {
        std::vector<int> falling(static_cast<std::size_t>(length));
        std::iota(falling.rbegin(), falling.rend(), 0);
        expectSortedLikeStandard(falling);
        for (int& key : falling) {
            key /= 2;
        }
        expectSortedLikeStandard(falling);
    }
}

// One late entry that belongs to the front, behind every length of an ordered list: its moves run out on the way in some.
TEST(StableSortTest, OneEntryFarFromItsPlace) {
    for (int length = 1; length <= 400; ++length) {
        std::vector<int> keys(static_cast<std::size_t>(length));
        std::iota(keys.begin(), keys.end(), 0);
        keys.push_back(0);
        keys.push_back(length / 2);
        expectSortedLikeStandard(keys);
    }
}

TEST(StableSortTest, GeneratedListsFromNearlyOrderedToNotAtAll) {
    std::mt19937_64 random(20261122);
    for (int round = 0; round < 2000; ++round) {
        const std::size_t length = random() % 200;
        const std::size_t spread = 1 + random() % 60;
        std::vector<int> keys;
        for (std::size_t i = 0; i < length; ++i) {
            keys.push_back(static_cast<int>(i / 3 + random() % spread));
        }
        SCOPED_TRACE(::testing::Message() << "round " << round << ", " << length << " entries, spread " << spread);
        expectSortedLikeStandard(keys);
    }
}

// What is nearly in order is compared a few times an entry and no more, however long the list is.
TEST(StableSortTest, NearlyOrderedListsAreComparedByTheirLength) {
    std::vector<int> keys;
    for (int i = 0; i < 50000; ++i) {
        keys.push_back(i % 4 == 3 ? i - 6 : i);
    }
    EXPECT_LE(comparisonsToSort(keys), 4 * keys.size()); // a merge sort makes some 15 an entry
}

// A long list in no order is not sorted by moving its entries one by one: that would be 25 million comparisons here.
TEST(StableSortTest, ListsInNoOrderAreLeftToTheStandardSort) {
    std::vector<int> keys(10000);
    std::iota(keys.rbegin(), keys.rend(), 0);
    EXPECT_LE(comparisonsToSort(keys), 50 * keys.size());
}

} // namespace
} // namespace OrvantaNS
