#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "Scene.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::storeOf;

std::string dump(ValueSpace& space, unsigned index) {
    ::testing::internal::CaptureStdout();
    space.printSpace(index);
    return ::testing::internal::GetCapturedStdout();
}

std::string test(ValueSpace& space) {
    ::testing::internal::CaptureStdout();
    space.testStructure();
    return ::testing::internal::GetCapturedStdout();
}

TEST(PrintSpaceTest, LinkedSpace_WritesItsLists) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.insertObject(1);
    store.valueObjects[0].value = 1.25;
    store.valueObjects[1].value = 1.5;
    space.fillValues();
    EXPECT_EQ(dump(space, 2), "Space: 2\n"
                              "   Valid: 1\n"
                              "   Value: 2\n" // 2.75
                              "   LRTB: 50 100 50 100\n"
                              "   OBJECTS:\n"
                              "0 1 \n"
                              "   PARENTS:\n"
                              "1 0 \n"
                              "   CHILDREN:\n"
                              "\n"
                              "\n");
    EXPECT_EQ(dump(space, 0), "Space: 0\n"
                              "   Valid: 1\n"
                              "   Value: 1\n"
                              "   LRTB: 0 100 0 100\n"
                              "   OBJECTS:\n"
                              "0 \n"
                              "   PARENTS:\n"
                              "\n"
                              "   CHILDREN:\n"
                              "2 \n"
                              "\n");
}

TEST(PrintSpaceTest, FreeSlot_ShowsItsStaleRectangleAndEmptyLists) {
    OV_DATA_STORE store = storeOf({box(1, 2, 3, 4)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.deleteObject(0);
    EXPECT_EQ(dump(space, 0), "Space: 0\n"
                              "   Valid: 0\n"
                              "   Value: 0\n"
                              "   LRTB: 1 4 2 6\n"
                              "   OBJECTS:\n"
                              "\n"
                              "   PARENTS:\n"
                              "\n"
                              "   CHILDREN:\n"
                              "\n"
                              "\n");
}

TEST(PrintSpaceTest, Value_IsCutTowardZero) {
    OV_DATA_STORE store;
    ValueSpace space(&store);
    space.createSpace({});
    struct Row {
        double value;
        const char* text;
    };
    for (const Row& row : {Row{3.99, "3"}, Row{-3.99, "-3"}, Row{-0.5, "0"}, Row{2147483647.5, "2147483647"},
                           Row{1e300, "-2147483648"}, Row{std::numeric_limits<double>::quiet_NaN(), "-2147483648"}}) {
        space.graph[0].value = row.value;
        EXPECT_NE(dump(space, 0).find(std::string("   Value: ") + row.text + "\n"), std::string::npos) << row.value;
    }
}

TEST(TestStructureTest, EmptyOrCleanGraph_PrintsNothing) {
    OV_DATA_STORE store = storeOf({box(0, 0, 100, 100), box(50, 50, 100, 100), box(20, 20, 50, 50)});
    ValueSpace space(&store);
    EXPECT_EQ(test(space), "");
    for (unsigned object = 0; object < 3; ++object) {
        space.insertObject(object);
        EXPECT_EQ(test(space), "");
    }
    space.deleteObject(1);
    EXPECT_EQ(test(space), "");
}

TEST(TestStructureTest, SpaceLeftHoldingADeletedObject_FailsByPosition) {
    // The fourth insertion cuts space 2 off from the first object's space; the walk of the deletion then misses it.
    OV_DATA_STORE store = storeOf({{60, 140, 60, 80}, {20, 80, 60, 100}, {60, 140, 40, 80}, {60, 160, 40, 120}});
    ValueSpace space(&store);
    for (unsigned object = 0; object < 4; ++object) {
        space.insertObject(object);
        EXPECT_EQ(test(space), "");
    }
    space.deleteObject(0);
    EXPECT_EQ(test(space), "Object Location Failure for Object: 0\n");
}

TEST(TestStructureTest, ObjectFailures_AreReportedByPosition) {
    OV_DATA_STORE store = storeOf({box(0, 0, 10, 10)});
    ValueSpace space(&store);
    space.insertObject(0);
    space.graph[0].objects = {7, 0, 9};
    EXPECT_EQ(test(space), "Object Location Failure for Object: 0\n"
                           "Object Location Failure for Object: 2\n");
    space.graph[0].valid = false; // what a free slot holds is not looked at
    EXPECT_EQ(test(space), "");
}

class BrokenGraphTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    BrokenGraphTest() {
        space.createSpace(box(0, 0, 100, 100));   // 0
        space.createSpace(box(10, 10, 20, 20));   // 1: inside 0
        space.createSpace(box(10, 10, 20, 20));   // 2: equal to 1
        space.createSpace(box(500, 500, 10, 10)); // 3: apart from all
    }
};

TEST_F(BrokenGraphTest, LinkThatPointsTheWrongWay_FailsAtBothEnds) {
    space.createLink(3, 1); // a sound position before it
    space.createLink(1, 0);
    EXPECT_EQ(test(space), "Failed parent contain test: 0 0\n"
                           "Failed Children contain test: 1 0\n");
}

TEST_F(BrokenGraphTest, LinkBetweenEqualRectangles_FailsAtBothEnds) {
    space.createLink(0, 2);
    space.createLink(1, 2);
    EXPECT_EQ(test(space), "Failed Children contain test: 1 0\n"
                           "Failed parent contain test: 2 1\n");
}

TEST_F(BrokenGraphTest, ParentThatMerelyDoesNotContainItsChild_GoesUnseen) {
    space.createLink(3, 1);
    EXPECT_EQ(test(space), "");
}

TEST_F(BrokenGraphTest, LinkToAFreeSlot_FailsValidity_AndTheSlotItselfIsSkipped) {
    space.createLink(3, 1);
    space.createLink(0, 1);
    space.createLink(1, 3);
    space.clearSpace(0);
    space.clearSpace(3);
    // The links of 1 still name both slots; their own lists are empty.
    EXPECT_EQ(test(space), "Graph parent failed validity: 0\n"
                           "Graph parent failed validity: 1\n"
                           "Graph Children failed validity: 0\n");
}

TEST_F(BrokenGraphTest, Failures_ComeInTheOrderOfTheTests) {
    space.graph[0].objects = {4};
    space.createLink(1, 0); // wrong way round, and free afterwards
    space.createLink(0, 2);
    space.createLink(3, 0);
    space.createLink(0, 3);
    space.clearSpace(1);
    space.graph[2].rect = box(0, 0, 200, 200);
    // For space 0: its object; parent 1 at position 0, freed and inside; parent 3, sound; child 2 at position 0, too
    // large; child 3, sound. For space 2: its parent 0 lies inside it. For space 3: nothing.
    EXPECT_EQ(test(space), "Object Location Failure for Object: 0\n"
                           "Graph parent failed validity: 0\n"
                           "Failed parent contain test: 0 0\n"
                           "Failed Children contain test: 0 0\n"
                           "Failed parent contain test: 2 0\n");
}

} // namespace
} // namespace OrvantaNS
