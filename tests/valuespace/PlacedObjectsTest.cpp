// The objects of a graph in one piece of memory stand for its map, whatever entered and left.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Random.h"
#include "Scene.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class PlacedObjectsTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    std::uint32_t addObject(const Rectangle& rect) {
        store.valueObjects.push_back({Click, 0.0, 1.0, rect, 1.0});
        return static_cast<std::uint32_t>(store.valueObjects.size() - 1);
    }
    void expectTheMap() {
        const std::vector<std::pair<std::uint32_t, std::uint32_t>> map(space.objectMap.begin(), space.objectMap.end());
        ASSERT_EQ(space.placedObjects(), map);
    }
};

TEST_F(PlacedObjectsTest, ANewGraph_HasNone) { EXPECT_THAT(space.placedObjects(), IsEmpty()); }

TEST_F(PlacedObjectsTest, EachObject_StandsWithTheSpaceThatServesIt) {
    space.insertObject(addObject(box(0, 0, 100, 100)));
    EXPECT_THAT(space.placedObjects(), ElementsAre(Pair(0u, 0u)));
    space.insertObject(addObject(box(300, 0, 100, 100)));
    space.insertObject(addObject(box(300, 0, 100, 100)));
    EXPECT_THAT(space.placedObjects(), ElementsAre(Pair(0u, 0u), Pair(1u, 1u), Pair(2u, 1u)));
    space.deleteObject(1);
    EXPECT_THAT(space.placedObjects(), ElementsAre(Pair(0u, 0u), Pair(2u, 1u)));
}

TEST_F(PlacedObjectsTest, AnObjectThatComesBack_StandsAtItsNumber) {
    for (const int left : {0, 300, 600}) {
        space.insertObject(addObject(box(left, 0, 100, 100)));
    }
    space.deleteObject(0);
    expectTheMap();
    space.insertObject(0);
    expectTheMap();
    EXPECT_EQ(space.placedObjects().front().first, 0u);
}

TEST_F(PlacedObjectsTest, AMapWrittenByHand_IsReadEachTime) {
    const unsigned made = space.createSpace(box(0, 0, 100, 100));
    space.objectMap = {{3, made}};
    EXPECT_THAT(space.placedObjects(), ElementsAre(Pair(3u, made)));
    space.objectMap = {{5, made}};
    EXPECT_THAT(space.placedObjects(), ElementsAre(Pair(5u, made)));
}

TEST_F(PlacedObjectsTest, AGraphThatBeginsAnew_HasNone) {
    space.insertObject(addObject(box(0, 0, 100, 100)));
    expectTheMap();
    space.reset();
    EXPECT_THAT(space.placedObjects(), IsEmpty());
    space.insertObject(0);
    expectTheMap();
}

// Crowds above and below the size up to which one that leaves is taken out on its own; who asks, asks only now and then.
TEST_F(PlacedObjectsTest, ThroughCrowdsThatComeAndGo_StandForTheMap) {
    testing::Random random(20261122);
    std::size_t largest = 0;
    for (int step = 0; step < 2000; ++step) {
        SCOPED_TRACE(step);
        const std::size_t crowd = step / 250 % 2 == 0 ? 90 : 20;
        if (space.objectMap.size() < crowd) {
            space.insertObject(addObject(box(40 * random.range(0, 19), 0, 30, 30)));
        } else {
            std::vector<std::uint32_t> leaving = space.listObjects();
            std::erase_if(leaving, [&](std::uint32_t) { return random.chance(0.7); });
            space.deleteObjects(leaving);
        }
        largest = std::max(largest, space.objectMap.size());
        if (random.chance(0.6)) {
            expectTheMap();
        }
    }
    EXPECT_EQ(largest, 90u);
}

} // namespace
} // namespace OrvantaNS
