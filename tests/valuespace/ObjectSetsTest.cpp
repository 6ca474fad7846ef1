#include "valuespace/ObjectSets.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS {
namespace {

struct ListOfObjects {
    std::vector<std::uint32_t> objects;
};

using Graph = std::vector<ListOfObjects>;

bool holdsAllByReading(const Graph& graph, std::uint32_t container, std::uint32_t contained) {
    const std::vector<std::uint32_t>& held = graph[container].objects;
    return std::all_of(graph[contained].objects.begin(), graph[contained].objects.end(),
                       [&](std::uint32_t object) { return std::find(held.begin(), held.end(), object) != held.end(); });
}

TEST(ObjectSetsTest, ListThatHoldsAllOfAnother_AndNotTheOtherWayRound) {
    const Graph graph{{{3, 1, 2}}, {{2, 3}}, {{}}};
    ObjectSets sets;
    sets.start(graph.size(), 3);
    EXPECT_TRUE(sets.holdsAll(graph, 0, 1));
    EXPECT_FALSE(sets.holdsAll(graph, 1, 0));
    EXPECT_TRUE(sets.holdsAll(graph, 1, 2));
    EXPECT_FALSE(sets.holdsAll(graph, 2, 1));
    EXPECT_TRUE(sets.holdsAll(graph, 1, 1));
}

TEST(ObjectSetsTest, StartedAnew_KnowsNothingOfTheListsAsTheyWere) {
    Graph graph{{{1, 2}}, {{1, 2}}, {{3}}};
    ObjectSets sets;
    sets.start(graph.size(), 2);
    ASSERT_TRUE(sets.holdsAll(graph, 0, 0)); // makes one set
    graph[0].objects = {2};
    sets.start(graph.size(), 2);
    EXPECT_FALSE(sets.holdsAll(graph, 0, 1));
    graph[1].objects = {2, 3};
    sets.start(graph.size(), 2);
    EXPECT_TRUE(sets.holdsAll(graph, 1, 2));
    EXPECT_TRUE(sets.holdsAll(graph, 1, 0));
}

// One list alone takes up more bits than were expected for all, so that the sets made before have to be made again.
TEST(ObjectSetsTest, MoreObjectsThanExpected_WidenTheSetsMadeBefore) {
    Graph graph(3);
    for (std::uint32_t object = 0; object < 200; ++object) {
        graph[1].objects.push_back(object);
        graph[2].objects.push_back(1000 + object);
    }
    graph[0].objects = {5, 199};
    ObjectSets sets;
    sets.start(graph.size(), 1);
    EXPECT_TRUE(sets.holdsAll(graph, 0, 0));
    EXPECT_FALSE(sets.holdsAll(graph, 0, 1));
    EXPECT_TRUE(sets.holdsAll(graph, 1, 0));
    EXPECT_FALSE(sets.holdsAll(graph, 2, 1));
    EXPECT_FALSE(sets.holdsAll(graph, 1, 2));
}

TEST(ObjectSetsTest, OneObjectMoreThanAWordHolds_IsMissedLikeTheOthers) {
    Graph graph(2);
    for (std::uint32_t object = 0; object < 64; ++object) {
        graph[0].objects.push_back(object);
    }
    graph[1].objects = graph[0].objects;
    graph[1].objects.push_back(64);
    ObjectSets sets;
    sets.start(graph.size(), 64);
    EXPECT_FALSE(sets.holdsAll(graph, 0, 1));
    EXPECT_TRUE(sets.holdsAll(graph, 1, 0));
}

TEST(ObjectSetsTest, AnyLists_AnswerAsReadingThemDoes_ThroughAllChanges) {
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const int kinds = random.chance(0.5) ? 6 : 300; // few objects, or more than a word or two has bits
        Graph graph(static_cast<std::size_t>(random.range(2, 8)));
        const auto anySlot = [&] {
            return static_cast<std::uint32_t>(random.range(0, static_cast<int>(graph.size()) - 1));
        };
        const auto fill = [&](std::vector<std::uint32_t>& list) {
            list.clear();
            for (int i = random.range(0, kinds / 2); i > 0; --i) {
                list.push_back(static_cast<std::uint32_t>(random.range(0, kinds)));
            }
        };
        for (ListOfObjects& list : graph) {
            fill(list.objects);
        }
        ObjectSets sets;
        for (int operation = 0; operation < 3; ++operation) {
            sets.start(graph.size(), static_cast<std::size_t>(random.range(0, kinds)));
            for (int step = 0; step < 30; ++step) {
                const std::uint32_t slot = anySlot();
                if (random.chance(0.2)) {
                    fill(graph[slot].objects);
                    sets.forget(slot);
                }
                const std::uint32_t other = anySlot();
                ASSERT_EQ(sets.holdsAll(graph, slot, other), holdsAllByReading(graph, slot, other));
                // A list that is made of the other, as a space's is of its parents'.
                graph[slot].objects = graph[other].objects;
                sets.forget(slot);
                ASSERT_TRUE(sets.holdsAll(graph, slot, other));
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
