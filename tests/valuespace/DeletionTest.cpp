#include "valuespace/ValueSpace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Scene.h"
#include "SpaceChecks.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using testing::graphBreaches;
using testing::GraphState;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::storeOf;

void insertAll(ValueSpace& space) {
    for (unsigned object = 0; object < space.store->valueObjects.size(); ++object) {
        space.insertObject(object);
    }
}

TEST(DeleteObjectTest, UnknownObject_ChangesNothing) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.deleteObject(1);
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0)));
    EXPECT_THAT(space.topSpaces, ElementsAre(0));
    space.deleteObject(0);
    space.deleteObject(0); // deleted before
    EXPECT_THAT(space.freeSpaces, ElementsAre(0));
}

TEST(DeleteObjectTest, TheOnlyObject_FreesItsSlotForTheNextSpace) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.deleteObject(0);
    EXPECT_THAT(space.topSpaces, IsEmpty());
    EXPECT_THAT(space.freeSpaces, ElementsAre(0));
    EXPECT_THAT(space.objectMap, IsEmpty());
    EXPECT_EQ(space.graph.size(), 1u);
    EXPECT_FALSE(space.graph[0].valid);
    EXPECT_EQ(space.createSpace({}), 0u);
}

TEST(DeleteObjectTest, OneOfTwoOverlappingObjects_TakesTheCommonPartWithIt) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    insertAll(space);
    space.deleteObject(0);
    // Space 0 is empty. Space 2 holds object 1 alone, as its remaining parent does.
    EXPECT_THAT(space.topSpaces, ElementsAre(1));
    EXPECT_THAT(space.freeSpaces, ElementsAre(0, 2));
    EXPECT_THAT(space.graph[1].children, IsEmpty());
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
    EXPECT_THAT(graphBreaches(space, GraphState::Whole), IsEmpty());
    space.insertObject(0); // and back: the slot freed last is taken first
    EXPECT_EQ(space.graph.size(), 3u);
    EXPECT_EQ(space.graph[2].rect, box(0, 0, 100, 100));
    EXPECT_EQ(space.graph[0].rect, box(50, 50, 50, 50));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(1, 0));
}

TEST(DeleteObjectTest, ObjectsSharingASpace_TheOtherKeepsItAsItIs) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(10, 10, 80, 80)});
    for (const unsigned gone : {0u, 1u}) {
        ValueSpace space(&store);
        insertAll(space);
        space.deleteObject(gone);
        EXPECT_THAT(space.topSpaces, ElementsAre(0));
        EXPECT_EQ(space.graph[0].rect, box(0, 0, 100, 100));
        EXPECT_THAT(space.graph[0].objects, ElementsAre(1 - gone));
        EXPECT_THAT(space.objectMap, ElementsAre(Pair(1 - gone, 0)));
    }
}

TEST(DeleteObjectTest, DissolvedTopSpace_ItsOnlyChildRisesToTheTop) {
    OV_DATA_STORE store = storeOf({box(0, 0, 400, 400), box(100, 100, 50, 50)});
    ValueSpace space(&store);
    insertAll(space);
    space.deleteObject(0);
    EXPECT_THAT(space.topSpaces, ElementsAre(1));
    EXPECT_THAT(space.graph[1].parents, IsEmpty());
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
    EXPECT_THAT(space.freeSpaces, ElementsAre(0));
}

TEST(DeleteObjectTest, DissolvedSpaceBetweenTwo_HandsItsChildUp) {
    // Three nested boxes; the middle one goes.
    OV_DATA_STORE store = storeOf({box(0, 0, 400, 400), box(50, 50, 300, 300), box(100, 100, 50, 50)});
    ValueSpace space(&store);
    insertAll(space);
    space.deleteObject(1);
    EXPECT_THAT(space.graph[0].children, ElementsAre(2));
    EXPECT_THAT(space.graph[2].parents, ElementsAre(0));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 2));
    EXPECT_THAT(space.freeSpaces, ElementsAre(1));
}

TEST(DeleteObjectTest, ASpaceWhoseParentHoldsAllItsObjects_GoesThoughItIsSmaller) {
    // Object 1 alone gave the inner space its right to stand; object 0 still covers it.
    OV_DATA_STORE store = storeOf({box(0, 0, 400, 400), box(100, 100, 50, 50)});
    ValueSpace space(&store);
    insertAll(space);
    space.deleteObject(1);
    EXPECT_THAT(space.topSpaces, ElementsAre(0));
    EXPECT_THAT(space.graph[0].children, IsEmpty());
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
    EXPECT_THAT(space.freeSpaces, ElementsAre(1));
}

TEST(DeleteObjectTest, TripleOverlap_KeepsThePairThatRemains) {
    // A, B and C pairwise overlapping, with a common part of all three: (60,100).
    OV_DATA_STORE store = storeOf({{0, 100, 0, 100}, {60, 160, 0, 100}, {30, 130, 60, 160}});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 7u);
    space.deleteObject(2);
    // What is left is what A and B alone make.
    EXPECT_EQ(testing::plainGraphOf(space), testing::closureOf(store.valueObjects, {0, 1}));
    EXPECT_THAT(space.countSpaces(), Pair(7, 4));
    EXPECT_THAT(graphBreaches(space, GraphState::Whole), IsEmpty());
}

// A graph put together by hand: lists that only lost links leave behind.
class HandMadeGraphTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    unsigned add(std::vector<std::uint32_t> objects, const std::vector<unsigned>& parents) {
        const unsigned index = space.createSpace({});
        space.graph[index].objects = std::move(objects);
        for (const unsigned parent : parents) {
            space.createLink(parent, index);
        }
        if (parents.empty()) {
            space.topSpaces.push_back(index);
        }
        return index;
    }
};

TEST_F(HandMadeGraphTest, DissolvedWithTwoParentsAndTwoChildren_EachChildIsLinkedToBothParents) {
    // The parents have an object each that the space below lacks, so that neither makes the other superfluous.
    add({0, 1}, {});
    add({0, 2}, {});
    add({0, 3}, {0, 1});
    add({0, 3, 4}, {2});
    add({0, 3, 5}, {2});
    space.objectMap = {{3, 2}};
    space.deleteObject(3);
    EXPECT_THAT(space.freeSpaces, ElementsAre(2));
    EXPECT_THAT(space.graph[0].children, ElementsAre(3, 4));
    EXPECT_THAT(space.graph[1].children, ElementsAre(3, 4));
    EXPECT_THAT(space.graph[3].parents, ElementsAre(1, 0)); // handed up to the last parent first
    EXPECT_THAT(space.graph[4].parents, ElementsAre(1, 0));
    EXPECT_THAT(space.graph[3].objects, ElementsAre(0, 4));
    EXPECT_THAT(space.graph[4].objects, ElementsAre(0, 5));
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 1));
}

TEST_F(HandMadeGraphTest, OfTwoParentsWithTheSameObjects_TheLaterGoes) {
    add({0, 1}, {});
    add({1, 0}, {});
    add({0, 1, 2, 3}, {0, 1});
    space.objectMap = {{3, 2}};
    space.deleteObject(3);
    EXPECT_THAT(space.graph[2].parents, ElementsAre(0));
    EXPECT_THAT(space.graph[0].children, ElementsAre(2));
    EXPECT_THAT(space.graph[1].children, IsEmpty());
    EXPECT_TRUE(space.graph[2].valid);
}

TEST_F(HandMadeGraphTest, OfThreeParentsWithTheSameObjects_TheFirstStays) {
    add({0}, {});
    add({0}, {});
    add({0}, {});
    add({0, 1, 2}, {0, 1, 2});
    space.objectMap = {{2, 3}};
    space.deleteObject(2);
    EXPECT_THAT(space.graph[3].parents, ElementsAre(0));
}

TEST_F(HandMadeGraphTest, TheFirstParentOfASpaceThatStays_GoesWhenALaterOneHoldsMore) {
    add({0}, {});
    add({0, 1}, {});
    add({0, 1, 2, 3}, {0, 1});
    space.objectMap = {{3, 2}};
    space.deleteObject(3);
    // The space keeps object 2 for itself. Parent 1 says all that parent 0 says.
    EXPECT_TRUE(space.graph[2].valid);
    EXPECT_THAT(space.graph[2].parents, ElementsAre(1));
    EXPECT_THAT(space.graph[0].children, IsEmpty());
    EXPECT_THAT(space.graph[1].children, ElementsAre(2));
}

TEST_F(HandMadeGraphTest, SuperfluousParentOfADissolvedSpace_DoesNotInheritItsChildren) {
    // Both parents hold all that is left of the space. Parent 0 is superfluous beside parent 1.
    add({0}, {});
    add({0, 1}, {});
    add({0, 2}, {0, 1});
    add({0, 2, 3}, {2});
    space.objectMap = {{2, 2}};
    space.deleteObject(2);
    EXPECT_THAT(space.freeSpaces, ElementsAre(2));
    EXPECT_THAT(space.graph[3].parents, ElementsAre(1));
    EXPECT_THAT(space.graph[0].children, IsEmpty());
}

TEST_F(HandMadeGraphTest, AnObjectThatTheWalkDoesNotFindInAList_IsNoObstacle) {
    add({0}, {}); // does not list object 1, which stands here by the map
    space.objectMap = {{0, 0}, {1, 0}};
    space.deleteObject(1);
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
    EXPECT_TRUE(space.graph[0].valid);
    EXPECT_THAT(space.topSpaces, ElementsAre(0)); // once
}

// The lists share every other name. A search that goes on two names behind each one that it has found would come out behind
// the end of the list.
TEST_F(HandMadeGraphTest, ALongListThatHasLostItsLastName_HoldsItNoMore) {
    std::vector<std::uint32_t> names;
    std::vector<std::uint32_t> everyOther;
    for (std::uint32_t name = 0; name <= 16; ++name) {
        names.push_back(name);
        if (name % 2 == 0) {
            everyOther.push_back(name);
        }
    }
    names.push_back(17);
    everyOther.insert(everyOther.end(), {17, 20});
    add(names, {});
    add(everyOther, {0});
    space.graph[0].objects.pop_back(); // the name still stands in the memory behind the list
    space.objectMap = {{20, 1}};
    space.deleteObject(20);
    EXPECT_TRUE(space.graph[1].valid) << "object 17 is in this space alone";
    EXPECT_THAT(space.graph[1].parents, ElementsAre(0));
}

TEST_F(HandMadeGraphTest, ASpaceWithoutObjects_IsRedundantEvenWithoutParents) {
    add({5}, {});
    add({}, {0});
    space.objectMap = {{5, 0}};
    space.deleteObject(5);
    EXPECT_THAT(space.freeSpaces, ElementsAre(0, 1));
    EXPECT_THAT(space.topSpaces, IsEmpty());
}

TEST_F(HandMadeGraphTest, ContainsAllObjects_TheEmptyListIsInEveryList) {
    const unsigned both = add({4, 7}, {});
    const unsigned one = add({7}, {});
    const unsigned none = add({}, {});
    EXPECT_TRUE(space.containsAllObjects(both, one));
    EXPECT_FALSE(space.containsAllObjects(one, both));
    EXPECT_TRUE(space.containsAllObjects(both, both));
    EXPECT_TRUE(space.containsAllObjects(both, none));
    EXPECT_TRUE(space.containsAllObjects(none, none));
    EXPECT_FALSE(space.containsAllObjects(none, one));
}

// ---- After lost links ----

TEST(DeleteObjectTest, AfterALostLink_TheSpaceKeepsTheDeletedObject) {
    OV_DATA_STORE store = storeOf({{60, 140, 60, 80}, {20, 80, 60, 100}, {60, 140, 40, 80}, {60, 160, 40, 120}});
    ValueSpace space(&store);
    insertAll(space);
    space.deleteObject(0);
    // Space 0 held objects 2 and 3 besides, as its parent 3 does: it is dissolved. Space 2 is not reached from there.
    EXPECT_THAT(space.freeSpaces, ElementsAre(0));
    EXPECT_THAT(space.graph[3].children, ElementsAre(2));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(space.graph[2].parents, ElementsAre(3, 5));
    EXPECT_THAT(space.listObjects(), ElementsAre(1, 2, 3));
    EXPECT_THAT(graphBreaches(space, GraphState::LinksLost), IsEmpty());
}

} // namespace
} // namespace OrvantaNS
