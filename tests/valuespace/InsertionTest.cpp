#include "valuespace/ValueSpace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Scene.h"
#include "SpaceChecks.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::Contains;
using ::testing::ElementsAre;
using testing::graphBreaches;
using testing::GraphState;
using ::testing::IsEmpty;
using ::testing::Pair;
using testing::storeOf;

using Creation = std::vector<VS_CREATION_SPACE>;

void insertAll(ValueSpace& space) {
    for (unsigned object = 0; object < space.store->valueObjects.size(); ++object) {
        space.insertObject(object);
    }
}

TEST(InsertObjectTest, EmptyGraph_MakesOneTopSpaceWithTheObject) {
    OV_DATA_STORE store = storeOf({box(10, 20, 30, 40)});
    ValueSpace space(&store);
    space.insertObject(0);
    ASSERT_EQ(space.graph.size(), 1u);
    EXPECT_EQ(space.graph[0].rect, box(10, 20, 30, 40));
    EXPECT_TRUE(space.graph[0].valid);
    EXPECT_EQ(space.graph[0].value, 0.0);
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
    EXPECT_THAT(space.graph[0].parents, IsEmpty());
    EXPECT_THAT(space.graph[0].children, IsEmpty());
    EXPECT_THAT(space.topSpaces, ElementsAre(0));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0)));
}

TEST(InsertObjectTest, InsertingTwice_ChangesNothing) {
    OV_DATA_STORE store = storeOf({box(10, 20, 30, 40)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(0);
    EXPECT_EQ(space.graph.size(), 1u);
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
}

TEST(InsertObjectTest, SameRectangle_SharesTheSpace) {
    OV_DATA_STORE store = storeOf({box(10, 20, 30, 40), box(10, 20, 30, 40)});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 1u);
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0), Pair(1, 0)));
}

TEST(InsertObjectTest, UpToSixteenPixelsSmallerOnEachSide_SharesTheSpace) {
    OV_DATA_STORE store = storeOf({{100, 300, 100, 300}, {116, 284, 116, 284}});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 1u);
    EXPECT_EQ(space.graph[0].rect, (Rectangle{100, 300, 100, 300})); // the space keeps its rectangle
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1));
}

TEST(InsertObjectTest, SeventeenPixelsSmallerOnOneSide_MakesAChildWithTheParentsObjects) {
    const Rectangle outer{100, 300, 100, 300};
    for (const Rectangle& inner : {Rectangle{117, 300, 100, 300}, Rectangle{100, 283, 100, 300},
                                   Rectangle{100, 300, 117, 300}, Rectangle{100, 300, 100, 283}}) {
        OV_DATA_STORE store = storeOf({outer, inner});
        ValueSpace space(&store);
        insertAll(space);
        ASSERT_EQ(space.graph.size(), 2u);
        EXPECT_EQ(space.graph[1].rect, inner);
        EXPECT_THAT(space.graph[1].parents, ElementsAre(0));
        EXPECT_THAT(space.graph[0].children, ElementsAre(1));
        EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
        EXPECT_THAT(space.graph[1].objects, ElementsAre(0, 1));
        EXPECT_THAT(space.topSpaces, ElementsAre(0));
    }
}

TEST(InsertObjectTest, LargerByOnePixel_TakesTheExistingSpaceAsItsChild) {
    // The existing space must be the larger for the two to share.
    for (const std::int32_t margin : {1, 16}) {
        OV_DATA_STORE store = storeOf({{100, 300, 100, 300}, {100 - margin, 300 + margin, 100 - margin, 300 + margin}});
        ValueSpace space(&store);
        insertAll(space);
        ASSERT_EQ(space.graph.size(), 2u);
        EXPECT_THAT(space.graph[0].parents, ElementsAre(1));
        EXPECT_THAT(space.graph[1].children, ElementsAre(0));
        EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1));
        EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
        EXPECT_THAT(space.topSpaces, ElementsAre(1));
    }
}

TEST(InsertObjectTest, TwoOverlappingObjects_GiveThreeSpaces) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    insertAll(space);
    ASSERT_EQ(space.graph.size(), 3u);
    EXPECT_EQ(space.graph[1].rect, box(50, 50, 100, 100));
    EXPECT_EQ(space.graph[2].rect, box(50, 50, 50, 50));
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 1));
    EXPECT_THAT(space.graph[2].parents, ElementsAre(1, 0)); // the object's own space was offered first
    EXPECT_THAT(space.graph[0].children, ElementsAre(2));
    EXPECT_THAT(space.graph[1].children, ElementsAre(2));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0), Pair(1, 1)));
}

TEST(InsertObjectTest, CoveringAnExistingTopSpace_MakesANewTopSpace) {
    OV_DATA_STORE store = storeOf({box(100, 100, 50, 50), box(0, 0, 400, 400)});
    ValueSpace space(&store);
    insertAll(space);
    ASSERT_EQ(space.graph.size(), 2u);
    EXPECT_THAT(space.topSpaces, ElementsAre(1));
    EXPECT_THAT(space.graph[0].parents, ElementsAre(1));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
}

TEST(InsertObjectTest, TouchingAlongAnEdge_OverlapsNothing) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(100, 0, 100, 100), box(0, 100, 100, 100)});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 3u);
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 1, 2));
    for (const OV_INTERSECTION& node : space.graph) {
        EXPECT_TRUE(node.parents.empty() && node.children.empty());
    }
}

TEST(InsertObjectTest, EmptyRectangle_IsATopSpaceOfItsOwn) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), {50, 50, 20, 80}, {260, 240, 20, 80}});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 3u);
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 1, 2));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
}

TEST(InsertObjectTest, EmptyRectangleWithinSixteenPixels_JoinsTheSpace) {
    OV_DATA_STORE store = storeOf({box(0, 0, 30, 30), {15, 15, 15, 15}});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 1u);
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1));
}

TEST(InsertObjectTest, OverlapWhoseAreaWraps_IsNoOverlap) {
    // 65536² wraps to 0 and 46341² below 0.
    for (const std::int32_t side : {65536, 46341}) {
        OV_DATA_STORE store = storeOf({{0, side, 0, side}, {-100, side, -100, side}});
        ValueSpace space(&store);
        insertAll(space);
        EXPECT_EQ(space.graph.size(), 2u);
        EXPECT_THAT(space.topSpaces, ElementsAre(0, 1));
    }
}

TEST(InsertObjectTest, FirstSpaceOfNearlyTheSameSizeInWalkingOrder_Wins) {
    // Space 1 is 10 pixels larger than space 0; an object of 5 pixels less than space 0 would suit both.
    OV_DATA_STORE store = storeOf({{100, 300, 100, 300}, {90, 310, 90, 310}, {105, 295, 105, 295}});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 2u);
    EXPECT_THAT(space.topSpaces, ElementsAre(1));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0), Pair(1, 1), Pair(2, 1)));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1, 2));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 1, 2)); // and its descendants gain it
}

TEST(InsertObjectTest, ASpaceOfNearlyTheSameSizeFoundLate_LeavesTheGraphUnchangedButForTheObject) {
    // The walk collects overlaps with space 0 before it finds its place at space 1: none of them is made.
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 0, 200, 60), box(52, 2, 196, 56)});
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_EQ(space.graph.size(), 3u); // 0, 1 and their common part
    EXPECT_THAT(space.freeSpaces, IsEmpty());
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0), Pair(1, 1), Pair(2, 1)));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1, 2));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1, 2));
}

TEST(InsertObjectTest, PartlyCoveredNest_LinksEachOverlapToItsTightestContainers) {
    // A (0,200), B (0,100) inside it, C (50,300): the walk visits A first, so the record of A ∩ C (50,200) stands before
    // that of B ∩ C (50,100). Spaces: 0 = A, 1 = B, then 2 = C, 3 = A ∩ C, 4 = B ∩ C.
    OV_DATA_STORE store = storeOf({{0, 200, 0, 50}, {0, 100, 0, 50}, {50, 300, 0, 50}});
    ValueSpace space(&store);
    insertAll(space);
    ASSERT_EQ(space.graph.size(), 5u);
    EXPECT_EQ(space.graph[2].rect, (Rectangle{50, 300, 0, 50}));
    EXPECT_EQ(space.graph[3].rect, (Rectangle{50, 200, 0, 50}));
    EXPECT_EQ(space.graph[4].rect, (Rectangle{50, 100, 0, 50}));
    EXPECT_THAT(space.graph[3].parents, ElementsAre(2, 0));
    EXPECT_THAT(space.graph[4].parents, ElementsAre(3, 1)); // A and C are farther out than A ∩ C
    EXPECT_THAT(space.graph[0].children, ElementsAre(1, 3));
    EXPECT_THAT(space.graph[3].objects, ElementsAre(0, 2));
    EXPECT_THAT(space.graph[4].objects, ElementsAre(0, 1, 2));
    EXPECT_THAT(space.topSpaces, ElementsAre(0, 2));
}

TEST(InsertObjectTest, ParentThatIsFilledLater_GivesItsObjectsAsTheyStand) {
    // T (0,60, 0,100) and U (40,200, 0,50) cross; R (50,300, 0,50) cuts both. T is visited first, so the record of
    // T ∩ R (50,60) stands before that of U ∩ R (50,200), which contains it and has no objects yet when it is copied:
    // the order of the list comes from T ∩ U alone. Spaces: 0 = T, 1 = U, 2 = T ∩ U, 3 = R, 4 = T ∩ R, 5 = U ∩ R.
    OV_DATA_STORE store = storeOf({{0, 60, 0, 100}, {40, 200, 0, 50}, {50, 300, 0, 50}});
    ValueSpace space(&store);
    insertAll(space);
    ASSERT_EQ(space.graph.size(), 6u);
    EXPECT_EQ(space.graph[4].rect, (Rectangle{50, 60, 0, 50}));
    EXPECT_EQ(space.graph[5].rect, (Rectangle{50, 200, 0, 50}));
    EXPECT_THAT(space.graph[4].parents, ElementsAre(5, 2));
    EXPECT_THAT(space.graph[5].parents, ElementsAre(3, 1));
    EXPECT_THAT(space.graph[3].children, ElementsAre(5));
    EXPECT_THAT(space.graph[4].objects, ElementsAre(0, 1, 2));
    EXPECT_THAT(space.graph[5].objects, ElementsAre(1, 2));
}

// ---- Lost links ----

// A, B, C, D in order. D reuses C and the common part of A and B, whose old parent A it does not reach.
OV_DATA_STORE lostLinkStore() {
    return storeOf({{60, 140, 60, 80}, {20, 80, 60, 100}, {60, 140, 40, 80}, {60, 160, 40, 120}});
}

TEST(InsertObjectTest, BeforeTheLinkIsLost_EveryLinkStands) {
    OV_DATA_STORE store = lostLinkStore();
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(1);
    space.insertObject(2);
    // 0 = A, 1 = B, 2 = A ∩ B, 3 = C.
    ASSERT_EQ(space.graph.size(), 4u);
    EXPECT_EQ(space.graph[2].rect, (Rectangle{60, 80, 60, 80}));
    EXPECT_EQ(space.graph[3].rect, (Rectangle{60, 140, 40, 80}));
    EXPECT_THAT(space.graph[0].parents, ElementsAre(3));
    EXPECT_THAT(space.graph[1].parents, IsEmpty());
    EXPECT_THAT(space.graph[2].parents, ElementsAre(0, 1));
    EXPECT_THAT(space.graph[3].parents, IsEmpty());
    EXPECT_THAT(space.graph[0].children, ElementsAre(2));
    EXPECT_THAT(space.graph[1].children, ElementsAre(2));
    EXPECT_THAT(space.graph[3].children, ElementsAre(0));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 2));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1, 2));
    EXPECT_THAT(space.graph[3].objects, ElementsAre(2));
    EXPECT_THAT(space.topSpaces, ElementsAre(1, 3));
    EXPECT_THAT(graphBreaches(space, GraphState::Whole), IsEmpty());
}

TEST(InsertObjectTest, ReusedSpaceStopsTheDescent_AndTheOldParentBelowItIsLost) {
    OV_DATA_STORE store = lostLinkStore();
    ValueSpace space(&store);
    insertAll(space);
    // 4 = D, 5 = B ∩ D.
    ASSERT_EQ(space.graph.size(), 6u);
    EXPECT_EQ(space.graph[4].rect, (Rectangle{60, 160, 40, 120}));
    EXPECT_EQ(space.graph[5].rect, (Rectangle{60, 80, 60, 100}));
    EXPECT_THAT(space.graph[0].parents, ElementsAre(3));
    EXPECT_THAT(space.graph[1].parents, IsEmpty());
    EXPECT_THAT(space.graph[2].parents, ElementsAre(3, 5)); // no longer A
    EXPECT_THAT(space.graph[3].parents, ElementsAre(4));
    EXPECT_THAT(space.graph[4].parents, IsEmpty());
    EXPECT_THAT(space.graph[5].parents, ElementsAre(4, 1));
    EXPECT_THAT(space.graph[0].children, IsEmpty());
    EXPECT_THAT(space.graph[1].children, ElementsAre(5));
    EXPECT_THAT(space.graph[2].children, IsEmpty());
    EXPECT_THAT(space.graph[3].children, ElementsAre(0, 2));
    EXPECT_THAT(space.graph[4].children, ElementsAre(5, 3));
    EXPECT_THAT(space.graph[5].children, ElementsAre(2));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 2, 3));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1, 2, 3)); // still lists A's object
    EXPECT_THAT(space.graph[3].objects, ElementsAre(2, 3));
    EXPECT_THAT(space.graph[4].objects, ElementsAre(3));
    EXPECT_THAT(space.graph[5].objects, ElementsAre(1, 3));
    EXPECT_THAT(space.topSpaces, ElementsAre(1, 4));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(0, 0), Pair(1, 1), Pair(2, 3), Pair(3, 4)));
    EXPECT_THAT(graphBreaches(space, GraphState::LinksLost), IsEmpty());
}

TEST(InsertObjectTest, AfterTheLinkIsLost_AnObjectAtTheOldParentDoesNotReachTheSpace) {
    OV_DATA_STORE store = lostLinkStore();
    store.valueObjects.push_back(store.valueObjects[0]); // A once more
    ValueSpace space(&store);
    insertAll(space);
    EXPECT_THAT(space.objectMap, Contains(Pair(4, 0)));
    EXPECT_THAT(space.graph[0].objects, ElementsAre(0, 2, 3, 4));
    EXPECT_THAT(space.graph[2].objects, ElementsAre(0, 1, 2, 3));
}

TEST(InsertObjectTest, LinksLostIsNoticedByTheChecks) {
    OV_DATA_STORE store = lostLinkStore();
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(1);
    auto links = testing::linksOf(space);
    space.insertObject(2);
    EXPECT_FALSE(testing::hasLostLinks(space, links)); // lifted out and put back
    links = testing::linksOf(space);
    space.insertObject(3);
    EXPECT_TRUE(testing::hasLostLinks(space, links));
    EXPECT_THAT(graphBreaches(space, GraphState::Whole),
                ElementsAre("space lists other objects than stand at or above it: 2, 4"));
}

// ---- Pieces of insertion ----

TEST(InsertQuickTest, ReachesEveryDescendantOnce_AndKeepsAnOldMapEntry) {
    OV_DATA_STORE store = storeOf({{}, {}});
    ValueSpace space(&store);
    for (int k = 0; k < 4; ++k) {
        space.createSpace({});
    }
    // A diamond: 0 over 1 and 2, both over 3.
    space.createLink(0, 1);
    space.createLink(0, 2);
    space.createLink(1, 3);
    space.createLink(2, 3);
    space.insertQuick(0, 1);
    for (const OV_INTERSECTION& node : space.graph) {
        EXPECT_THAT(node.objects, ElementsAre(1));
    }
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(1, 0)));
    space.insertQuick(1, 1); // appended without a search
    EXPECT_THAT(space.graph[0].objects, ElementsAre(1));
    EXPECT_THAT(space.graph[1].objects, ElementsAre(1, 1));
    EXPECT_THAT(space.graph[3].objects, ElementsAre(1, 1));
    EXPECT_THAT(space.objectMap, ElementsAre(Pair(1, 0)));
}

TEST(GetCreationLocationTest, KnownRectangle_GivesItsIndex) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    Creation creation{{box(0, 0, 100, 100), {}, false, 0}};
    EXPECT_EQ(space.getCreationLocation(creation, box(0, 0, 100, 100)), 0u);
    EXPECT_EQ(creation.size(), 1u);
    EXPECT_THAT(creation[0].parents, IsEmpty());
}

TEST(GetCreationLocationTest, NewRectangle_TakesItsPlaceBetweenWhatContainsItAndWhatItContains) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    Creation creation{{box(0, 0, 100, 100), {}, false, 0}};
    EXPECT_EQ(space.getCreationLocation(creation, box(10, 10, 20, 20)), 1u);
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_CREATION, 0)));
    // Around record 1: record 1 exchanges its parent 0 for the tighter one.
    EXPECT_EQ(space.getCreationLocation(creation, box(10, 10, 50, 50)), 2u);
    EXPECT_THAT(creation[2].parents, ElementsAre(Pair(PARENT_IN_CREATION, 0)));
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_CREATION, 2)));
    EXPECT_THAT(creation[0].parents, IsEmpty());
    EXPECT_FALSE(creation[2].reuse);
    EXPECT_EQ(creation[2].space, 0u);
}

TEST(GetCreationLocationTest, SeveralContainers_AreOfferedFromTheLastRecordToTheFirst) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    Creation creation{{box(0, 0, 100, 100), {}, false, 0}};
    space.getCreationLocation(creation, box(0, 0, 60, 100));
    space.getCreationLocation(creation, box(0, 0, 100, 60));
    EXPECT_EQ(space.getCreationLocation(creation, box(0, 0, 60, 60)), 3u);
    EXPECT_THAT(creation[3].parents, ElementsAre(Pair(PARENT_IN_CREATION, 2), Pair(PARENT_IN_CREATION, 1)));
}

class AddCreationParentTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};
    Creation creation{{box(0, 0, 100, 100), {}, false, 0}, {box(40, 40, 10, 10), {}, false, 0}};
};

TEST_F(AddCreationParentTest, ParentThatDoesNotContainTheRecord_IsRefused) {
    space.createSpace(box(41, 40, 50, 50));
    space.addCreationParent(creation, 1, {PARENT_IN_GRAPH, 0});
    EXPECT_THAT(creation[1].parents, IsEmpty());
}

TEST_F(AddCreationParentTest, TighterOffer_ReplacesWhatContainsIt_AndKeepsTheOrderOfTheRest) {
    space.createSpace(box(0, 0, 60, 60));   // 0: contains the offer
    space.createSpace(box(40, 0, 10, 90));  // 1: crosses it
    space.createSpace(box(20, 20, 80, 80)); // 2: contains it
    space.createSpace(box(30, 30, 25, 25)); // 3: the offer
    for (const std::uint32_t parent : {0u, 1u, 2u}) {
        creation[1].parents.emplace_back(PARENT_IN_GRAPH, parent);
    }
    space.addCreationParent(creation, 1, {PARENT_IN_GRAPH, 3});
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_GRAPH, 1), Pair(PARENT_IN_GRAPH, 3)));
}

TEST_F(AddCreationParentTest, LooserOffer_IsRefused) {
    space.createSpace(box(30, 30, 25, 25));
    creation[1].parents = {{PARENT_IN_GRAPH, 0}};
    space.addCreationParent(creation, 1, {PARENT_IN_CREATION, 0});
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_GRAPH, 0)));
}

TEST_F(AddCreationParentTest, SameRectangle_KeepsTheNameOfferedLast) {
    space.createSpace(box(0, 0, 100, 100));
    space.addCreationParent(creation, 1, {PARENT_IN_CREATION, 0});
    space.addCreationParent(creation, 1, {PARENT_IN_GRAPH, 0});
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_GRAPH, 0)));
    space.addCreationParent(creation, 1, {PARENT_IN_CREATION, 0});
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_CREATION, 0)));
}

TEST_F(AddCreationParentTest, SameParentOnceMore_MovesToTheEnd) {
    space.createSpace(box(40, 0, 10, 90));
    space.createSpace(box(0, 40, 90, 10));
    for (const std::uint32_t parent : {0u, 1u, 0u}) {
        space.addCreationParent(creation, 1, {PARENT_IN_GRAPH, parent});
    }
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(PARENT_IN_GRAPH, 1), Pair(PARENT_IN_GRAPH, 0)));
}

TEST_F(AddCreationParentTest, AnyKindButOne_IsAnIndexIntoTheGraph) {
    space.createSpace(box(30, 30, 25, 25));
    space.addCreationParent(creation, 1, {7, 0});
    EXPECT_THAT(creation[1].parents, ElementsAre(Pair(7, 0)));
}

} // namespace
} // namespace OrvantaNS
