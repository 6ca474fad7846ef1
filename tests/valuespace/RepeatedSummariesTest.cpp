// Summaries of one graph after another: each is of the values, the objects and the links as they are then.
#include <algorithm>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlainSummary.h"
#include "Scene.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::Pair;
using testing::plainQuickSummary;
using testing::plainSummary;
using testing::sameMap;

class RepeatedSummariesTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    std::uint32_t insert(const Rectangle& rect, double value) {
        store.valueObjects.push_back({Click, 0.0, 1.0, rect, value});
        const auto object = static_cast<std::uint32_t>(store.valueObjects.size() - 1);
        space.insertObject(object);
        return object;
    }
};

TEST_F(RepeatedSummariesTest, EachCountsTheValuesOfItsOwnMoment) {
    insert(box(0, 0, 10, 10), 5.0);
    insert(box(100, 0, 20, 10), 4.0);
    // 5 × 100 against 4 × 200; then 9 × 100 against 4 × 200.
    EXPECT_THAT(space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(100, 0, 20, 10), 4.0)));
    store.valueObjects[0].value = 9.0;
    EXPECT_THAT(space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 10, 10), 9.0)));
    store.valueObjects[1].value = 6.0;
    EXPECT_THAT(space.summarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 10, 10), 9.0), Pair(box(100, 0, 20, 10), 6.0)));
    VS_VALUE_MAP map;
    std::vector<std::uint32_t> list{0, 1};
    space.summarizeTier(list, map);
    store.valueObjects[0].value = 20.0;
    space.summarizeTier(list, map);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(100, 0, 20, 10), 6.0), Pair(box(0, 0, 10, 10), 20.0)));
}

TEST_F(RepeatedSummariesTest, AfterOneObjectMore_TheScoresAreThoseOfAll) {
    insert(box(0, 0, 10, 10), 4.0);
    insert(box(100, 0, 10, 10), 5.0);
    EXPECT_THAT(space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(100, 0, 10, 10), 5.0)));
    insert(box(0, 0, 10, 10), 4.0);
    EXPECT_THAT(space.quickSummarize(1.0).spaces, ElementsAre(Pair(box(0, 0, 10, 10), 8.0)));
}

TEST_F(RepeatedSummariesTest, OfAnIntervalOfNegativeLength_TheSpacesBelowZeroTakePart) {
    // Every tier starts below zero, the hottest lowest, so that all spaces are of that one. The area across the five
    // others is worth less than the last tier asks for, and yet sits best on all: 5 × 5 × 60 × 90 - 1.5 × 300 × 100.
    insert(box(0, 10, 300, 100), -1.5);
    for (std::int32_t k = 0; k < 5; ++k) {
        insert(box(60 * k, 0, 60, 100), 5.0);
    }
    EXPECT_THAT(space.summarize(-1.0).spaces, ElementsAre(Pair(box(0, 10, 300, 100), 3.0)));
    EXPECT_TRUE(sameMap(space.summarize(-1.0), plainSummary(space, -1.0)));
}

TEST_F(RepeatedSummariesTest, AFloodAtOnePlace_IsScoredWithEveryObject_WhateverItIsWorth) {
    for (int k = 0; k < 5000; ++k) {
        insert(box(0, 0, 100, 100), k % 4 * 0.5); // 0, 0.5, 1 and 1.5
    }
    insert(box(300, 0, 100, 100), 100.0);
    const VS_VALUE_MAP map = space.quickSummarize(1.0);
    EXPECT_THAT(map.spaces, ElementsAre(Pair(box(0, 0, 100, 100), 3750.0)));
    EXPECT_TRUE(sameMap(map, plainQuickSummary(space, 1.0)));
    EXPECT_TRUE(sameMap(space.summarize(1.0), plainSummary(space, 1.0)));
}

TEST_F(RepeatedSummariesTest, AParentOfTheSameRectangle_DoesNotSwallowItsChild) {
    // By hand: the child's rectangle is its parent's. Offered last, it takes the parent's place behind the space beside
    // them, which scores as much and so stands ahead.
    const Rectangle shared = box(0, 0, 10, 10);
    insert(shared, 9.0);
    insert(box(100, 0, 10, 10), 9.0);
    const std::uint32_t child = space.createSpace(shared);
    space.createLink(0, child);
    store.valueObjects.push_back({Click, 0.0, 1.0, shared, 8.0});
    space.graph[child].objects = {2};
    for (const double span : {1.0, 2.0}) {
        const auto plain = plainQuickSummary(space, span);
        EXPECT_THAT(plain.spaces, ElementsAre(Pair(box(100, 0, 10, 10), 9.0)));
        EXPECT_TRUE(sameMap(space.quickSummarize(span), plain));
        EXPECT_TRUE(sameMap(space.summarize(span), plainSummary(space, span)));
    }
}

// A crowd at one place, and three areas of which the last cuts the crowd's place off from the space that it has in common
// with the second: that space goes on naming the crowd when it leaves.
class CrowdThatComesBackTest : public RepeatedSummariesTest {
protected:
    static constexpr std::uint32_t kCrowd = 60;
    static constexpr std::uint32_t kNewest = 2 + kCrowd;

    // The areas are objects 0 to 2, the crowd those behind them. All but the first five of the crowd leave, are worth
    // nothing from then on, and a summary may forget them.
    void gatherAndLeave() {
        for (const Rectangle& area :
             {Rectangle{20, 80, 60, 100}, Rectangle{60, 140, 40, 80}, Rectangle{60, 160, 40, 120}}) {
            store.valueObjects.push_back({Click, 0.0, 1.0, area, 1.0});
        }
        for (std::uint32_t k = 0; k < kCrowd; ++k) {
            insert({60, 140, 60, 80}, 1.0);
        }
        for (const unsigned area : {0u, 1u, 2u}) {
            space.insertObject(area);
        }
        for (std::uint32_t object = 3 + 5; object < 3 + kCrowd; ++object) {
            leave(object);
        }
        ASSERT_NO_FATAL_FAILURE(expectPlainSummary());
        ASSERT_EQ(namesOf(kNewest), 1u) << "the space that was cut off names it";
    }
    void leave(std::uint32_t object) {
        space.deleteObject(object);
        store.valueObjects[object].value = 0.0;
    }
    std::size_t namesOf(std::uint32_t object) const {
        std::size_t names = 0;
        for (const OV_INTERSECTION& slot : space.graph) {
            names += static_cast<std::size_t>(std::count(slot.objects.begin(), slot.objects.end(), object));
        }
        return names;
    }
    void expectPlainSummary() {
        for (const double span : {0.5, 1.0, 2.0}) {
            ASSERT_TRUE(sameMap(space.summarize(span, VS_LEFT_OBJECTS::WORTH_NOTHING), plainSummary(space, span)));
            for (const VS_VALUE_ORDER& entry : testing::plainOrder(space)) {
                ASSERT_EQ(space.graph[entry.space].value, entry.value) << "space " << entry.space;
            }
        }
    }
};

// The newest of all is asked first, since an object that is newer than all others was in no graph before.
TEST_F(CrowdThatComesBackTest, OneAfterTheOther_CountsWhereverOldListsNameIt) {
    for (const std::uint32_t first : {kNewest, kNewest - 9}) {
        store.valueObjects.clear();
        space.reset();
        ASSERT_NO_FATAL_FAILURE(gatherAndLeave());
        for (const std::uint32_t object : {first, kNewest - 3, kNewest - 1}) {
            store.valueObjects[object].value = 7.0;
            space.insertObject(object);
            ASSERT_NO_FATAL_FAILURE(expectPlainSummary());
        }
    }
}

} // namespace
} // namespace OrvantaNS
