#include "valuespace/ObjectClasses.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using Names = std::vector<std::uint32_t>;

struct ListOfObjects {
    Names objects;
};

using Graph = std::vector<ListOfObjects>;

void sortOut(ObjectClasses& classes, const Graph& graph) {
    classes.sortOut(graph, [](std::size_t) {});
}

// The lists that name an object, a list that names it twice standing here twice.
std::map<std::uint32_t, Names> listsOfEach(const Graph& graph) {
    std::map<std::uint32_t, Names> lists;
    for (std::uint32_t list = 0; list < graph.size(); ++list) {
        for (const std::uint32_t object : graph[list].objects) {
            lists[object].push_back(list);
        }
    }
    return lists;
}

// Compares all classes with what reading all lists for each object says; `objects` are those that any graph names.
void expectClassesOf(const ObjectClasses& classes, const Graph& graph, std::uint32_t objects) {
    const auto lists = listsOfEach(graph);
    std::map<std::uint32_t, Names> listsOfClass;
    for (std::uint32_t object = 0; object < objects; ++object) {
        const auto named = lists.find(object);
        const bool isOfNone = named == lists.end() ||
                              std::adjacent_find(named->second.begin(), named->second.end()) != named->second.end();
        const std::uint32_t found = classes.classOf(object);
        ASSERT_EQ(found == ObjectClasses::kNone, isOfNone) << "object " << object;
        if (isOfNone) {
            continue;
        }
        ASSERT_LT(found, classes.count());
        const auto [known, isNew] = listsOfClass.try_emplace(found, named->second);
        ASSERT_EQ(known->second, named->second) << "object " << object << " stands in other lists than its class";
    }
    // No two classes stand in the same lists.
    for (auto one = listsOfClass.begin(); one != listsOfClass.end(); ++one) {
        for (auto other = std::next(one); other != listsOfClass.end(); ++other) {
            ASSERT_NE(one->second, other->second);
        }
    }
}

TEST(ObjectClassesTest, ObjectsThatEachListNamesBothOrNeither_AreOfOneClass) {
    const Graph graph{{{1, 2, 3, 4}}, {{3, 4}}, {{4, 3, 7}}, {{7}}};
    ObjectClasses classes;
    sortOut(classes, graph);
    EXPECT_EQ(classes.classOf(1), classes.classOf(2));
    EXPECT_EQ(classes.classOf(3), classes.classOf(4));
    EXPECT_NE(classes.classOf(1), classes.classOf(3));
    EXPECT_NE(classes.classOf(7), classes.classOf(1));
    EXPECT_NE(classes.classOf(7), classes.classOf(3));
    expectClassesOf(classes, graph, 9);
}

TEST(ObjectClassesTest, WhatNoListNames_IsOfNoClass) {
    ObjectClasses classes;
    EXPECT_EQ(classes.classOf(0), ObjectClasses::kNone);
    EXPECT_EQ(classes.count(), 0u);
    sortOut(classes, {{{}}, {{2}}, {{}}});
    EXPECT_EQ(classes.classOf(1), ObjectClasses::kNone);
    EXPECT_NE(classes.classOf(2), ObjectClasses::kNone);
    EXPECT_EQ(classes.classOf(3), ObjectClasses::kNone) << "right behind the last";
    EXPECT_EQ(classes.classOf(4000000000u), ObjectClasses::kNone);
    sortOut(classes, {{{1}}});
    EXPECT_NE(classes.classOf(1), ObjectClasses::kNone);
    EXPECT_EQ(classes.classOf(2), ObjectClasses::kNone) << "named the time before alone";
    EXPECT_EQ(classes.count(), 1u);
}

TEST(ObjectClassesTest, AnObjectThatStandsTwiceInAList_IsOfNoClass_WhateverStandsAroundIt) {
    ObjectClasses classes;
    for (const Graph& graph : {Graph{{{5, 5}}}, Graph{{{5, 6, 5}}}, Graph{{{5, 6}}, {{6, 5, 5}}, {{5}}},
                               Graph{{{5, 5, 5, 6}}, {{6, 6}}}, Graph{{{5, 6, 7}}, {{5, 6, 5}}, {{7}}}}) {
        sortOut(classes, graph);
        EXPECT_EQ(classes.classOf(5), ObjectClasses::kNone);
        expectClassesOf(classes, graph, 9);
    }
    const Graph once{{{5, 6}}};
    sortOut(classes, once); // which is not remembered
    EXPECT_EQ(classes.classOf(5), classes.classOf(6));
    expectClassesOf(classes, once, 9);
}

TEST(ObjectClassesTest, TheLengthOfEachListIsTold_BeforeAClassIsMadeOfIt) {
    ObjectClasses classes;
    std::vector<std::size_t> lengths;
    std::vector<std::size_t> classesSoFar;
    classes.sortOut(Graph{{{1, 2}}, {{}}, {{3, 4, 5}}}, [&](std::size_t length) {
        lengths.push_back(length);
        classesSoFar.push_back(classes.count());
    });
    EXPECT_THAT(lengths, ElementsAre(2, 0, 3));
    EXPECT_THAT(classesSoFar, ElementsAre(0, 1, 1));
}

TEST(ObjectClassesTest, NumbersOfClassesThatAreEmptied_ServeAgain) {
    // A list of all objects moves them all to another class. Each time two classes are in use at most.
    const Graph graph(50, {{1, 2, 3}});
    ObjectClasses classes;
    for (int time = 0; time < 3; ++time) {
        sortOut(classes, graph);
        EXPECT_EQ(classes.count(), 2u);
    }
}

TEST(ObjectClassesTest, AnyLists_AreSortedAsReadingThemForEachObjectDoes) {
    ObjectClasses classes; // used again and again, as an operation finds it
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto objects = static_cast<std::uint32_t>(random.range(1, 24));
        const double repeats = random.chance(0.5) ? 0.0 : 0.1;
        Graph graph(static_cast<std::size_t>(random.range(0, 9)));
        // Some objects stand side by side in all lists, so that classes of several are there.
        const int kinds = random.range(1, static_cast<int>(objects));
        for (ListOfObjects& list : graph) {
            const std::uint64_t named = random.next();
            for (std::uint32_t object = 0; object < objects; ++object) {
                if ((named >> object % static_cast<std::uint32_t>(kinds) & 1) != 0) {
                    list.objects.push_back(object);
                }
            }
            for (std::size_t k = list.objects.size(); k-- > 0;) { // in any order
                std::swap(list.objects[k],
                          list.objects[static_cast<std::size_t>(random.range(0, static_cast<int>(k)))]);
                if (random.chance(repeats)) {
                    list.objects.push_back(list.objects[k]);
                }
            }
        }
        sortOut(classes, graph);
        ASSERT_NO_FATAL_FAILURE(expectClassesOf(classes, graph, 30));
        // Each class holds an object, or was emptied by the last list.
        ASSERT_LE(classes.count(), 2 * std::size_t{objects});
    }
}

} // namespace
} // namespace OrvantaNS
