#include "valuespace/ValueSpace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "Scene.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::storeOf;

TEST(SpaceGraphTest, ParentKinds_AreOneAndTwo) {
    EXPECT_EQ(PARENT_IN_CREATION, 1u);
    EXPECT_EQ(PARENT_IN_GRAPH, 2u);
}

TEST(SpaceGraphTest, Fresh_IsEmptyWithRoomForFiveHundredSpaces) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    EXPECT_EQ(space.store, &store);
    EXPECT_TRUE(space.graph.empty() && space.topSpaces.empty() && space.freeSpaces.empty());
    EXPECT_TRUE(space.objectMap.empty());
    EXPECT_EQ(space.graph.capacity(), 500u);
    EXPECT_EQ(space.topSpaces.capacity(), 0u);
    EXPECT_EQ(space.freeSpaces.capacity(), 0u);
    static_assert(!std::is_copy_constructible_v<ValueSpace> && !std::is_polymorphic_v<ValueSpace>);
}

TEST(SpaceGraphTest, Records_BeginEmpty) {
    const OV_INTERSECTION space;
    EXPECT_FALSE(space.valid);
    EXPECT_EQ(space.value, 0.0);
    const VS_CREATION_SPACE creation;
    EXPECT_FALSE(creation.reuse);
    EXPECT_EQ(creation.space, 0u);
    const VS_VALUE_ORDER order;
    EXPECT_EQ(order.space, 0u);
    EXPECT_EQ(order.value, 0.0);
}

TEST(SpaceGraphTest, CreateSpace_AppendsAnUnlinkedValidSpace) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    EXPECT_EQ(space.createSpace({1, 2, 3, 4}), 0u);
    EXPECT_EQ(space.createSpace({5, 6, 7, 8}), 1u);
    EXPECT_EQ(space.graph[1].rect, (Rectangle{5, 6, 7, 8}));
    EXPECT_EQ(space.graph[1].value, 0.0);
    EXPECT_TRUE(space.graph[1].valid);
    EXPECT_THAT(space.graph[1].parents, IsEmpty());
    EXPECT_THAT(space.graph[1].children, IsEmpty());
    EXPECT_THAT(space.graph[1].objects, IsEmpty());
    EXPECT_THAT(space.topSpaces, IsEmpty());
}

TEST(SpaceGraphTest, CreateSpace_TakesTheSlotFreedLast_AndLeavesNothingOfItsFormerLife) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    for (int k = 0; k < 3; ++k) {
        space.createSpace({0, 10, 0, 10});
    }
    space.graph[2].value = 7.0;
    space.graph[2].objects = {4, 5};
    space.clearSpace(1);
    space.clearSpace(2);
    EXPECT_THAT(space.freeSpaces, ElementsAre(1, 2));
    EXPECT_EQ(space.createSpace({20, 30, 20, 30}), 2u);
    EXPECT_THAT(space.freeSpaces, ElementsAre(1));
    EXPECT_EQ(space.graph[2].rect, (Rectangle{20, 30, 20, 30}));
    EXPECT_EQ(space.graph[2].value, 0.0);
    EXPECT_TRUE(space.graph[2].valid);
    EXPECT_THAT(space.graph[2].objects, IsEmpty());
    EXPECT_EQ(space.createSpace({}), 1u);
    EXPECT_EQ(space.createSpace({}), 3u);
}

TEST(SpaceGraphTest, ClearSpace_EmptiesTheSlotAlone_AndLeavesRectangleAndValueStale) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(1);
    space.graph[2].value = 3.0;
    const unsigned below = space.createSpace({});
    space.createLink(2, below);
    space.clearSpace(2); // the common part of the two, still linked by both and by the one below
    EXPECT_FALSE(space.graph[2].valid);
    EXPECT_EQ(space.graph[2].rect, box(50, 50, 50, 50));
    EXPECT_EQ(space.graph[2].value, 3.0);
    EXPECT_THAT(space.graph[2].parents, IsEmpty());
    EXPECT_THAT(space.graph[2].children, IsEmpty());
    EXPECT_THAT(space.graph[2].objects, IsEmpty());
    EXPECT_THAT(space.graph[below].parents, ElementsAre(2));
    EXPECT_THAT(space.graph[0].children, ElementsAre(2));
    EXPECT_THAT(space.graph[1].children, ElementsAre(2));
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 1));
    EXPECT_THAT(space.freeSpaces, ElementsAre(2));
}

TEST(SpaceGraphTest, ClearSpace_AtOrPastTheEnd_IsIgnored) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    space.createSpace({});
    space.clearSpace(1);
    space.clearSpace(4000000000u);
    EXPECT_THAT(space.freeSpaces, IsEmpty());
    EXPECT_TRUE(space.graph[0].valid);
    space.clearSpace(0);
    EXPECT_THAT(space.freeSpaces, ElementsAre(0));
}

TEST(SpaceGraphTest, Reset_EmptiesEverything_AndTheGraphServesAgain) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(1);
    space.deleteObject(0); // leaves free slots
    space.reset();
    EXPECT_TRUE(space.graph.empty() && space.topSpaces.empty() && space.freeSpaces.empty());
    EXPECT_TRUE(space.objectMap.empty());
    space.insertObject(1);
    EXPECT_THAT(space.topSpaces, ElementsAre(0));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(1));
}

TEST(SpaceGraphTest, ExclusiveAppend_AppendsAtTheEndUnlessPresent) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    std::vector<std::uint32_t> list{3, 1};
    EXPECT_TRUE(space.exclusiveAppend(list, 2));
    EXPECT_FALSE(space.exclusiveAppend(list, 3));
    EXPECT_FALSE(space.exclusiveAppend(list, 2));
    EXPECT_THAT(list, ElementsAre(3, 1, 2));
}

TEST(SpaceGraphTest, CreateLink_PutsBothEndsInPlaceOnce) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    space.createSpace({});
    space.createSpace({});
    space.createLink(0, 1);
    space.createLink(0, 1);
    EXPECT_THAT(space.graph[0].children, ElementsAre(1));
    EXPECT_THAT(space.graph[1].parents, ElementsAre(0));
    EXPECT_THAT(space.graph[0].parents, IsEmpty());
    EXPECT_THAT(space.graph[1].children, IsEmpty());
}

TEST(SpaceGraphTest, CreateLink_MendsALinkWithOneEndMissing) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    space.createSpace({});
    space.createSpace({});
    space.graph[0].children = {1};
    space.createLink(0, 1);
    EXPECT_THAT(space.graph[0].children, ElementsAre(1));
    EXPECT_THAT(space.graph[1].parents, ElementsAre(0));
}

TEST(SpaceGraphTest, RemoveLink_TakesTheFirstOccurrence_KeepsTheOrderOfTheRest) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    for (int k = 0; k < 4; ++k) {
        space.createSpace({});
    }
    space.graph[0].children = {3, 1, 2, 1};
    space.graph[1].parents = {2, 0, 3};
    space.removeLink(0, 1);
    EXPECT_THAT(space.graph[0].children, ElementsAre(3, 2, 1));
    EXPECT_THAT(space.graph[1].parents, ElementsAre(2, 3));
    space.removeLink(0, 1); // the parent's end is absent by now
    EXPECT_THAT(space.graph[0].children, ElementsAre(3, 2));
    space.removeLink(0, 1); // both ends are
    EXPECT_THAT(space.graph[0].children, ElementsAre(3, 2));
    EXPECT_THAT(space.graph[1].parents, ElementsAre(2, 3));
}

TEST(SpaceGraphTest, ListObjects_GivesTheKeysAscending) {
    OV_DATA_STORE store = storeOf({box(0, 0, 9, 9), box(50, 0, 9, 9), box(100, 0, 9, 9), box(150, 0, 9, 9)});
    ValueSpace space(&store);
    EXPECT_THAT(space.listObjects(), IsEmpty());
    space.insertObject(3);
    space.insertObject(0);
    space.insertObject(2);
    EXPECT_THAT(space.listObjects(), ElementsAre(0, 2, 3));
    space.deleteObject(2);
    EXPECT_THAT(space.listObjects(), ElementsAre(0, 3));
}

TEST(SpaceGraphTest, CountSpaces_GivesSlotsInAllAndSlotsFree) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    EXPECT_THAT(space.countSpaces(), Pair(0, 0));
    space.insertObject(0);
    space.insertObject(1);
    EXPECT_THAT(space.countSpaces(), Pair(3, 0));
    space.deleteObject(0);
    EXPECT_THAT(space.countSpaces(), Pair(3, 2));
}

TEST(SpaceGraphTest, GetSpace_GivesACopy) {
    OV_DATA_STORE store = storeOf({box(10, 20, 30, 40)});
    ValueSpace space(&store);
    space.insertObject(0);
    OV_INTERSECTION copy = space.getSpace(0);
    EXPECT_EQ(copy.rect, box(10, 20, 30, 40));
    EXPECT_THAT(copy.objects, ElementsAre(0));
    copy.objects.clear();
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
}

} // namespace
} // namespace OrvantaNS
