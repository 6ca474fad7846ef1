// What serves again and again asks for memory at first alone, and lists take it in the steps that are meant.

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "CountingNew.h"
#include "Scene.h"
#include "valuespace/ObjectClasses.h"
#include "valuespace/ObjectSets.h"
#include "valuespace/StandingNames.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {
namespace {

struct ListOfObjects {
    std::vector<std::uint32_t> objects;
};

using Graph = std::vector<ListOfObjects>;

// The allocations that `operation` asks for.
template <typename Operation> std::uint64_t askedBy(Operation operation) {
    const AllocationWatch watch(0);
    operation();
    return watch.asked();
}

// The same, for the hundredth to two hundredth time.
template <typename Operation> std::uint64_t askedAtLast(Operation operation) {
    for (int k = 0; k < 100; ++k) {
        operation();
    }
    return askedBy([&] {
        for (int k = 0; k < 100; ++k) {
            operation();
        }
    });
}

TEST(SteadyMemoryTest, SetsOfObjects_AskForNoMore) {
    Graph graph(4);
    for (std::uint32_t object = 0; object < 300; ++object) {
        graph[object % 2].objects.push_back(object);
        graph[2].objects.push_back(object);
    }
    ObjectSets sets;
    for (const std::size_t expected : {std::size_t{1}, std::size_t{300}}) {
        EXPECT_EQ(askedAtLast([&] {
                      sets.start(graph.size(), expected);
                      ASSERT_TRUE(sets.holdsAll(graph, 2, 0));
                      ASSERT_FALSE(sets.holdsAll(graph, 0, 1));
                  }),
                  0u);
    }
}

TEST(SteadyMemoryTest, ClassesOfObjects_AskForNoMore) {
    const Graph graph{{{1, 2, 3, 4}}, {{1, 2}}, {{3, 1}}, {{4, 4}}};
    ObjectClasses classes;
    EXPECT_EQ(askedAtLast([&] { classes.sortOut(graph, [](std::size_t) {}); }), 0u);
}

TEST(SteadyMemoryTest, ListsThatAreSiftedAndForgotten_ShareTheMemoryOfTheirNames) {
    StandingNames standing;
    const std::vector<std::uint32_t> list{1, 2, 3, 4, 5};
    const auto siftAndForget = [&](std::uint32_t slot) {
        standing.sift(slot, 3, list, [](std::uint32_t name) { return name == 4; });
        standing.forget(slot);
    };
    EXPECT_EQ(askedAtLast([&] {
                  siftAndForget(0);
                  siftAndForget(2);
              }),
              0u);
    // What a reset has dropped is asked for once, by the first of the two.
    EXPECT_EQ(askedAtLast([&] {
                  siftAndForget(1);
                  standing.sift(0, 3, list, [](std::uint32_t name) { return name == 4; });
                  standing.reset();
              }),
              100u);
}

TEST(SteadyMemoryTest, ObjectsThatComeAndGo_AskForNoMore) {
    OV_DATA_STORE store;
    for (std::int32_t k = 0; k < 6; ++k) {
        store.valueObjects.push_back({Click, 0.0, 1.0, box(k * 60, 0, 100, 100), 9.0});
    }
    ValueSpace space(&store);
    const auto comeAndGo = [&] {
        for (unsigned object = 0; object < 6; ++object) {
            space.insertObject(object);
        }
        ASSERT_TRUE(space.quickFocus(1.0).has_value());
        for (unsigned object = 0; object < 6; ++object) {
            space.deleteObject(object);
        }
    };
    // A deletion is handed a list of one.
    EXPECT_EQ(askedAtLast(comeAndGo), 600u);
}

TEST(SteadyMemoryTest, AFewNamesAtOnePlace_AskForMemoryOnce) {
    OV_DATA_STORE store;
    for (int k = 0; k < 8; ++k) {
        store.valueObjects.push_back({Click, 0.0, 1.0, box(0, 0, 100, 100), 9.0});
    }
    ValueSpace space(&store);
    space.insertObject(0);
    // Each object takes a node of the map, the seventh name a longer list as well.
    for (unsigned object = 1; object < 8; ++object) {
        EXPECT_EQ(askedBy([&] { space.insertObject(object); }), object == 6 ? 2u : 1u) << object;
    }
}

TEST(SteadyMemoryTest, ListsOfAGraph_TakeLittleMoreThanTheyHold) {
    OV_DATA_STORE store;
    for (std::int32_t k = 0; k < 400; ++k) {
        store.valueObjects.push_back({Click, 0.0, 1.0, box(0, 0, 400, 400), 1.0});
    }
    for (std::int32_t k = 0; k < 12; ++k) {
        store.valueObjects.push_back({Click, 0.0, 1.0, box(30 * k, 0, 25, 25), 1.0});
    }
    ValueSpace space(&store);
    std::size_t longer = 0; // times that the list of the crowd got longer memory
    for (unsigned object = 0; object < 400; ++object) {
        const std::size_t before = object == 0 ? 0 : space.graph[0].objects.capacity();
        space.insertObject(object);
        const std::size_t capacity = space.graph[0].objects.capacity();
        longer += capacity > before ? 1 : 0;
        // By a quarter at a time, from six on.
        ASSERT_LE(capacity, std::max<std::size_t>(6, object + object / 4 + 2));
        ASSERT_GE(capacity, 6u);
    }
    EXPECT_LE(longer, 18u); // 6 times 1.25 to the 18th power is 333, and each time two more are added
    for (unsigned object = 400; object < 412; ++object) {
        space.insertObject(object);
        // Made in its size: the crowd that it inherits, and the object itself.
        ASSERT_EQ(space.graph.back().objects.size(), 401u);
        ASSERT_EQ(space.graph.back().objects.capacity(), 401u);
        ASSERT_EQ(space.graph.back().parents.capacity(), 6u);
        const std::size_t children = space.graph[0].children.size();
        ASSERT_LE(space.graph[0].children.capacity(), children <= 6 ? 6u : 12u);
        ASSERT_GE(space.graph[0].children.capacity(), 6u);
    }
    // A small space that inherits one name has room for some more.
    space.reset();
    space.insertObject(0);
    space.insertObject(400);
    EXPECT_EQ(space.graph[1].objects.capacity(), 6u);
}

TEST(SteadyMemoryTest, TheParentsOfARecord_HaveRoomForThree) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    std::vector<VS_CREATION_SPACE> creation(1);
    creation[0].rect = box(100, 0, 10, 10);
    for (std::int32_t k = 1; k <= 3; ++k) { // all around it, none within another
        creation.push_back({box(100 - k, 0, 20 - k, 10), {}, false, 0});
        const std::uint64_t asked = askedBy([&] {
            space.addCreationParent(creation, 0, {PARENT_IN_CREATION, static_cast<unsigned>(k)});
        });
        EXPECT_EQ(asked, k == 1 ? 1u : 0u);
        EXPECT_EQ(creation[0].parents.capacity(), 3u);
    }
    EXPECT_EQ(creation[0].parents.size(), 3u);
}

} // namespace
} // namespace OrvantaNS::testing
