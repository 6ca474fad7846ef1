#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "OrvantaWorker.h"
#include "SharedFolder.h"
#include "frame/DataStore.h"

namespace OrvantaNS {
namespace {

using testing::SharedFile;

constexpr const char* kName = "valuedatadump.txt";

std::string consoleDump(OV_DATA_STORE& store, Interval_Type<double> interval) {
    ::testing::internal::CaptureStdout();
    OrvantaWorker().printValueObjects(store, true, interval);
    return ::testing::internal::GetCapturedStdout();
}

// The objects of a store that are shown, by the values in their text: each object's value is its index.
std::string shown(OV_DATA_STORE& store, Interval_Type<double> interval) {
    const std::string text = consoleDump(store, interval);
    std::string indices;
    for (std::size_t at = text.find("Object: "); at != std::string::npos; at = text.find("Object: ", at + 1)) {
        indices += text.substr(at + 8, text.find(' ', at + 8) - (at + 8)) + " ";
    }
    return indices;
}

OV_DATA_STORE storeWith(std::initializer_list<Interval_Type<double>> spans) {
    OV_DATA_STORE store;
    for (const Interval_Type<double>& span : spans) {
        store.valueObjects.push_back({Click, span.start, span.stop, {1, 2, 3, 4}, 0.0});
    }
    store.nextObject = static_cast<std::uint32_t>(spans.size() - 1);
    return store;
}

TEST(PrintValueObjectsTest, Console_WritesFourLinesForEachObject) {
    OV_DATA_STORE store;
    store.valueObjects = {{Click, 1.0, 2.5, {10, 20, -30, 40}, 7.0},
                          {Hover, 1.25, 1234567.891, {0, 1280, 0, 800}, 0.333333333}};
    store.nextObject = 1;
    EXPECT_EQ(consoleDump(store, {0.0, 10.0}), "Object: 0 (1-2.5)\n"
                                               " LRTB: 10 20 -30 40\n"
                                               "Type: Click Value: 7\n"
                                               "\n"
                                               "Object: 1 (1.25-1.23457e+06)\n"
                                               " LRTB: 0 1280 0 800\n"
                                               "Type: Unidentified:11 Value: 0.333333\n"
                                               "\n");
}

TEST(PrintValueObjectsTest, Console_LabelsTheFirstTypes_ButNotTheIdleCursor) {
    const std::vector<std::string> labels{"Move",        "Unidentified:1", "Click",       "Drag",
                                          "DoubleClick", "Caret",          "TextFocus",   "FollowText",
                                          "ForeOpen",    "ForeAnimate",    "ActiveWindow"};
    for (std::uint32_t type = 0; type < 31; ++type) {
        OV_DATA_STORE store;
        store.valueObjects = {{type, 0.0, 1.0, {}, 0.0}};
        const std::string label = type < labels.size() ? labels[type] : "Unidentified:" + std::to_string(type);
        EXPECT_EQ(consoleDump(store, {0.0, 1.0}), "Object: 0 (0-1)\n LRTB: 0 0 0 0\nType: " + label + " Value: 0\n\n");
    }
}

TEST(PrintValueObjectsTest, File_LabelsTheIdleCursor_AndLeavesTheConsoleAlone) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    OV_DATA_STORE store;
    store.valueObjects = {{MouseIdle, 0.5, 1.0, {1, 2, 3, 4}, 0.25}, {Dead, 0.5, 1.0, {5, 6, 7, 8}, -2.0}};
    store.nextObject = 1;
    ::testing::internal::CaptureStdout();
    OrvantaWorker().printValueObjects(store, false, {0.0, 2.0});
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(file.text(), "Object: 0 (0.5-1)\n"
                           " LRTB: 1 2 3 4\n"
                           "Type: Mouse Idle Value: 0.25\n"
                           "\n"
                           "Object: 1 (0.5-1)\n"
                           " LRTB: 5 6 7 8\n"
                           "Type: Unidentified:19 Value: -2\n"
                           "\n");
}

TEST(PrintValueObjectsTest, File_WithNothingToShow_IsLeftEmpty) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    file.write("an earlier dump\n");
    OV_DATA_STORE store = storeWith({{5.0, 6.0}});
    OrvantaWorker().printValueObjects(store, false, {0.0, 1.0});
    EXPECT_EQ(file.text(), "");
}

TEST(PrintValueObjectsTest, Console_TouchesNoFile) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    file.remove();
    OV_DATA_STORE store = storeWith({{0.0, 1.0}});
    consoleDump(store, {0.0, 1.0});
    EXPECT_EQ(file.text(), std::nullopt);
}

TEST(PrintValueObjectsTest, File_ThatCannotBeOpened_IsPassedOver) {
    if (std::filesystem::exists("/Users/Shared")) {
        GTEST_SKIP() << "the folder stands";
    }
    OV_DATA_STORE store = storeWith({{0.0, 1.0}});
    EXPECT_NO_THROW(OrvantaWorker().printValueObjects(store, false, {0.0, 1.0}));
}

TEST(PrintValueObjectsTest, Interval_ShowsWhatLiesInItOrOverlapsItByMoreThanNothing) {
    const double before = std::nextafter(2.0, 0.0);
    const double after = std::nextafter(2.0, 3.0);
    //   objects against an interval of 2 to 5
    OV_DATA_STORE store = storeWith({
        {0.0, before}, // 0: ends before it
        {0.0, 2.0},    // 1: touches its start
        {0.0, after},  // 2: overlaps by a breath
        {2.0, 5.0},    // 3: the interval itself
        {0.0, 9.0},    // 4: around it
        {3.0, 3.0},    // 5: a moment inside
        {2.0, 2.0},    // 6: a moment on its start
        {5.0, 5.0},    // 7: a moment on its end
        {5.0, 6.0},    // 8: touches its end
        {4.5, 6.0},    // 9: overlaps its end
        {1.0, 1.0},    // 10: a moment outside
        {4.0, 3.0},    // 11: turned round, inside
    });
    EXPECT_EQ(shown(store, {2.0, 5.0}), "2 3 4 5 6 7 9 11 ");
}

TEST(PrintValueObjectsTest, Decay_PlaysNoPart) {
    OV_DATA_STORE store = storeWith({{0.0, 1.0}}); // a click, in force until 5
    EXPECT_EQ(shown(store, {1.5, 4.0}), "");
}

TEST(PrintValueObjectsTest, GoesFromTheFirstActiveToTheNextObject_BothIncluded) {
    OV_DATA_STORE store = storeWith({{0.0, 1.0}, {0.0, 1.0}, {0.0, 1.0}, {0.0, 1.0}, {0.0, 1.0}});
    store.firstActiveObject = 1;
    store.nextObject = 3;
    EXPECT_EQ(shown(store, {0.0, 1.0}), "1 2 3 ");
    store.firstActiveObject = 3;
    EXPECT_EQ(shown(store, {0.0, 1.0}), "3 ");
    store.nextObject = 2;
    EXPECT_EQ(shown(store, {0.0, 1.0}), "");
}

TEST(PrintValueObjectsTest, StopsAtTheLastObject) {
    OV_DATA_STORE store = storeWith({{0.0, 1.0}, {0.0, 1.0}});
    for (const std::uint32_t next : {2u, 9u, std::numeric_limits<std::uint32_t>::max()}) {
        store.nextObject = next;
        EXPECT_EQ(shown(store, {0.0, 1.0}), "0 1 ");
    }
    OV_DATA_STORE none;
    EXPECT_EQ(consoleDump(none, {0.0, 1.0}), "");
}

} // namespace
} // namespace OrvantaNS
