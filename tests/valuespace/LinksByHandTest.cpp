// Links, spaces and objects that did not come by insertion and deletion: what is to be had cheaply from a graph that those
// two alone have made must not be taken for granted here. The plain graph starts from the same slots and does the same.
#include <cstdint>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlainValueSpace.h"
#include "Scene.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::PlainValueSpace;
using testing::sameGraph;

class LinksByHandTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    std::uint32_t addObject(const Rectangle& rect) {
        store.valueObjects.push_back({Click, 0.0, 1.0, rect, 1.0});
        return static_cast<std::uint32_t>(store.valueObjects.size() - 1);
    }
    std::uint32_t insert(const Rectangle& rect) {
        const std::uint32_t object = addObject(rect);
        space.insertObject(object);
        return object;
    }
    std::uint32_t addSpace(const Rectangle& rect, std::vector<std::uint32_t> objects) {
        const std::uint32_t index = space.createSpace(rect);
        space.graph[index].objects = std::move(objects);
        return index;
    }
    // The plain graph in the state that the other one is in.
    PlainValueSpace plainCopy() const {
        PlainValueSpace plain(store.valueObjects);
        plain.graph = space.graph;
        plain.topSpaces = space.topSpaces;
        plain.freeSpaces = space.freeSpaces;
        plain.objectMap = space.objectMap;
        return plain;
    }
    void expectInsertedAsPlainly(const Rectangle& rect) {
        PlainValueSpace plain = plainCopy();
        plain.insertObject(insert(rect));
        EXPECT_TRUE(sameGraph(space, plain));
    }
    void expectDeletedAsPlainly(const std::vector<std::uint32_t>& leaving) {
        PlainValueSpace plain = plainCopy();
        for (const std::uint32_t object : leaving) {
            plain.deleteObject(object);
        }
        space.deleteObjects(leaving);
        EXPECT_TRUE(sameGraph(space, plain));
    }
};

// ---- Insertion looks everywhere that links lead ----

// The first object takes over a space of which it does not meet one parent, and the second inherits names that never
// entered.
TEST_F(LinksByHandTest, NamesThatWereWrittenByHand_AreHandedDown_WhereLinksWereLost) {
    store.valueObjects.resize(110);
    const std::uint32_t parent = addSpace(box(0, 0, 1000, 1000), {});
    const std::uint32_t elsewhere = addSpace(box(5000, 0, 100, 100), {});
    const std::uint32_t child = addSpace(box(100, 100, 50, 50), {});
    for (std::uint32_t name = 100; name < 110; ++name) {
        space.graph[parent].objects.push_back(name);
    }
    space.createLink(parent, child);
    space.createLink(elsewhere, child);
    space.topSpaces = {parent, elsewhere};
    store.valueObjects[0].rect = box(50, 50, 200, 200);
    store.valueObjects[1].rect = box(500, 500, 100, 100);
    PlainValueSpace plain = plainCopy();
    for (const std::uint32_t object : {0U, 1U}) {
        space.insertObject(object);
        plain.insertObject(object);
    }
    EXPECT_TRUE(sameGraph(space, plain));
    EXPECT_THAT(space.graph.back().objects, ::testing::SizeIs(11));
}

TEST_F(LinksByHandTest, ALinkToASpaceElsewhere_IsFollowedByTheWalk) {
    insert(box(0, 0, 200, 200));
    insert(box(190, 0, 200, 200)); // a space of its own, and what the two have in common
    const std::uint32_t elsewhere = addSpace(box(500, 0, 100, 100), {});
    space.createLink(0, elsewhere);
    // An object that overlaps space 0 goes on to what is below it, and finds the space that lies outside of it.
    expectInsertedAsPlainly(box(100, 0, 500, 100));
    expectInsertedAsPlainly(box(500, 0, 100, 100));
}

TEST_F(LinksByHandTest, ASpaceBelowOneThatItOnlyOverlaps_IsFoundFromThere) {
    insert(box(0, 0, 200, 200));
    insert(box(150, 0, 100, 100));
    space.createLink(0, 1);
    space.topSpaces = {0};
    expectInsertedAsPlainly(box(150, 0, 100, 100));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1, 2));
}

TEST_F(LinksByHandTest, AClearedSlotThatIsStillLinked_GetsTheEndThatItLacks) {
    insert(box(0, 0, 100, 100));
    insert(box(50, 50, 100, 100));
    space.clearSpace(2); // the common part: its parents go on naming it
    expectInsertedAsPlainly(box(10, 10, 30, 30));
    EXPECT_THAT(space.graph[2].parents, ElementsAre(0));
    expectInsertedAsPlainly(box(40, 40, 580, 580));
    expectInsertedAsPlainly(box(500, 500, 100, 100));
}

TEST_F(LinksByHandTest, ARemovedLink_LeavesASpaceThatNoWalkMeets) {
    insert(box(0, 0, 400, 400));
    insert(box(100, 100, 50, 50));
    space.removeLink(0, 1);
    expectInsertedAsPlainly(box(100, 100, 50, 50)); // makes a second one
    expectInsertedAsPlainly(box(50, 50, 300, 300));
    expectDeletedAsPlainly({0, 2});
}

TEST_F(LinksByHandTest, AnEmptyRectangle_IsNotLookedForBelowASpace_ByHandOrNot) {
    for (const bool byHand : {false, true}) {
        space.reset();
        if (byHand) {
            space.createSpace(box(900, 900, 5, 5));
        }
        insert(box(0, 0, 400, 400));
        insert(box(100, 100, 20, 20));
        // Of nearly the size of the inner space, which it is not told of as it overlaps nothing.
        expectInsertedAsPlainly({105, 105, 100, 120});
    }
}

// ---- Objects that enter at a space reach all that links make its descendants at that moment ----

TEST_F(LinksByHandTest, AnObjectEnters_WhatWasLinkedAfterTheOneBefore_AndNotWhatWasUnlinked) {
    const std::uint32_t upper = addSpace(box(0, 0, 100, 100), {});
    const std::uint32_t first = addSpace(box(0, 0, 50, 50), {});
    const std::uint32_t second = addSpace(box(50, 50, 50, 50), {});
    for (int k = 0; k < 4; ++k) {
        addObject(box(0, 0, 100, 100));
    }
    space.createLink(upper, first);
    space.insertQuick(upper, 0);
    space.createLink(upper, second);
    space.insertQuick(upper, 1);
    space.removeLink(upper, first);
    space.insertQuick(upper, 2);
    EXPECT_THAT(space.graph[upper].objects, ElementsAre(0, 1, 2));
    EXPECT_THAT(space.graph[first].objects, ElementsAre(0, 1));
    EXPECT_THAT(space.graph[second].objects, ElementsAre(1, 2));
}

TEST_F(LinksByHandTest, AParentThatADeletionFoundSuperfluous_HandsNothingDownAnyMore) {
    const std::uint32_t few = addSpace(box(0, 0, 100, 100), {0});
    const std::uint32_t more = addSpace(box(0, 0, 90, 90), {0, 1});
    const std::uint32_t below = addSpace(box(0, 0, 50, 50), {0, 1, 2, 3});
    for (int k = 0; k < 6; ++k) {
        addObject(box(0, 0, 100, 100));
    }
    space.topSpaces = {few, more};
    space.createLink(few, below);
    space.createLink(more, below);
    space.objectMap = {{3, below}};
    space.insertQuick(few, 4); // below knows it now
    space.graph[more].objects.push_back(4);
    expectDeletedAsPlainly({3});
    ASSERT_THAT(space.graph[below].parents, ElementsAre(more));
    space.insertQuick(few, 5);
    EXPECT_THAT(space.graph[few].objects, ElementsAre(0, 4, 5));
    EXPECT_THAT(space.graph[below].objects, ElementsAre(0, 1, 2, 4));
}

// ---- Deletion ----

TEST_F(LinksByHandTest, ASpaceThatNamesAnObjectTwice_IsHeldByAShorterList) {
    insert(box(0, 0, 400, 400));
    insert(box(100, 100, 50, 50));
    space.insertQuick(1, 0); // stands there already, from above
    ASSERT_THAT(space.graph[1].objects, ElementsAre(0, 1, 0));
    expectDeletedAsPlainly({1});
    EXPECT_FALSE(space.graph[1].valid) << "all that is left of it stands in space 0";
}

TEST_F(LinksByHandTest, ListsWrittenByHand_MayNameAnObjectTwice) {
    const std::uint32_t upper = addSpace(box(0, 0, 100, 100), {0});
    const std::uint32_t lower = addSpace(box(0, 0, 50, 50), {0, 1, 0});
    space.graph[upper].children = {lower};
    space.graph[lower].parents = {upper};
    space.topSpaces = {upper};
    addObject(box(0, 0, 100, 100));
    addObject(box(0, 0, 50, 50));
    space.objectMap = {{0, upper}, {1, lower}};
    expectDeletedAsPlainly({1});
    EXPECT_FALSE(space.graph[lower].valid);
}

TEST_F(LinksByHandTest, WhatAnUnlinkedSpaceStillNames_StaysThere_WhoeverLeavesWithIt) {
    // Two crowded places and what they have in common, which is then no longer below the first.
    for (int k = 0; k < 20; ++k) {
        insert(box(0, 0, 100, 100));
        insert(box(50, 50, 100, 100));
    }
    space.removeLink(0, 2);
    expectDeletedAsPlainly({0, 1});
    EXPECT_EQ(space.graph[2].objects.size(), 39u) << "object 1 has left it alone";
}

TEST_F(LinksByHandTest, AnObjectThatTheMapWasGivenByHand_Leaves) {
    const Rectangle rect = box(0, 0, 100, 100);
    const std::uint32_t object = addObject(rect);
    space.objectMap = {{object, addSpace(rect, {object})}};
    expectDeletedAsPlainly({object});
    EXPECT_THAT(space.objectMap, IsEmpty());
}

TEST_F(LinksByHandTest, AListWithoutObjects_HoldsNothing) {
    const std::uint32_t empty = addSpace(box(0, 0, 100, 100), {});
    const std::uint32_t below = addSpace(box(0, 0, 50, 50), {1, 2});
    space.topSpaces = {empty};
    space.createLink(empty, below);
    addObject(box(0, 0, 50, 50));
    space.objectMap = {{2, below}};
    expectDeletedAsPlainly({2});
    EXPECT_THAT(space.graph[below].objects, ElementsAre(1));
    EXPECT_THAT(space.graph[below].parents, ElementsAre(empty));
}

TEST_F(LinksByHandTest, HandedUpToAParent_ALinkWithOneEndIsMended) {
    const std::uint32_t upper = addSpace(box(0, 0, 100, 100), {0});
    const std::uint32_t middle = addSpace(box(0, 0, 90, 90), {0, 1});
    const std::uint32_t lower = addSpace(box(0, 0, 50, 50), {0, 1, 2});
    space.topSpaces = {upper};
    space.createLink(upper, middle);
    space.createLink(middle, lower);
    space.graph[upper].children.push_back(lower); // whose own end is missing
    space.objectMap = {{1, middle}};
    addObject(box(0, 0, 50, 50));
    addObject(box(0, 0, 50, 50));
    expectDeletedAsPlainly({1});
    EXPECT_FALSE(space.graph[middle].valid);
    EXPECT_THAT(space.graph[lower].parents, ElementsAre(upper));
}

// A crowd at one place, some of which leave together: the others stand in for them, so that nothing is looked at but the
// lists. That the place was worth keeping then is no reason to keep it once a link has been put above it.
TEST_F(LinksByHandTest, ALinkAboveACrowdedPlace_IsSeenByTheNextThatLeave) {
    for (const bool byHandBefore : {false, true}) {
        store.valueObjects.clear();
        space.reset();
        for (int k = 0; k < 60; ++k) {
            insert(box(0, 0, 100, 100));
        }
        const std::uint32_t place = space.topSpaces[0];
        if (byHandBefore) {
            space.createSpace(box(900, 900, 5, 5));
        }
        expectDeletedAsPlainly({0, 1, 2});
        expectDeletedAsPlainly({3, 4});
        const std::uint32_t holder = addSpace(box(0, 0, 200, 200), space.graph[place].objects);
        space.topSpaces = {holder};
        space.createLink(holder, place);
        expectDeletedAsPlainly({5, 6});
        EXPECT_FALSE(space.graph[place].valid) << "the space above it holds all its objects";
    }
}

// ---- Sums ----

TEST_F(LinksByHandTest, AClearedSlot_IsWorthNothingFromTheNextSumOn) {
    insert(box(0, 0, 100, 100));
    const std::uint32_t beside = addSpace(box(500, 0, 10, 10), {0});
    space.fillValues();
    EXPECT_EQ(space.graph[beside].value, 1.0);
    space.clearSpace(beside);
    EXPECT_EQ(space.graph[beside].value, 1.0);
    EXPECT_EQ(space.fillValues().size(), 1u);
    EXPECT_EQ(space.graph[beside].value, 0.0);
}

TEST_F(LinksByHandTest, AResetWhileSlotsWereFree_LeavesNothingToSumUp) {
    insert(box(0, 0, 100, 100));
    insert(box(300, 0, 100, 100));
    space.deleteObjects({0, 1});
    space.reset();
    EXPECT_THAT(space.fillValues(), IsEmpty());
    EXPECT_THAT(space.summarize(1.0).spaces, IsEmpty());
}

} // namespace
} // namespace OrvantaNS
