#include <gtest/gtest.h>

#include <string>

#include "OrvantaWorker.h"
#include "frame/DataStore.h"

namespace OrvantaNS {
namespace {

std::string dump(OV_DATA_STORE& store, unsigned slice) {
    ::testing::internal::CaptureStdout();
    OrvantaWorker().printFocusSlice(store, slice);
    return ::testing::internal::GetCapturedStdout();
}

TEST(PrintFocusSliceTest, FreshSlice_IsAllZeros) {
    OV_DATA_STORE store;
    store.slices.resize(1);
    EXPECT_EQ(dump(store, 0), "Slice #0: (0 - 0) B:K:M = 0:0:0\n"
                              "  Merge Type: 0 TWIN: 0 0 0 0\n"
                              "  Window = (0 0 0 0)\n"
                              "  Tier4 = (0 0 0 0)\n");
}

TEST(PrintFocusSliceTest, FullSlice_WritesMapAndHotRectangles) {
    OV_DATA_STORE store;
    store.slices.resize(3);
    OV_FOCUS_SLICE& slice = store.slices[2];
    slice.start = 1.5;
    slice.stop = 12.3456789;
    slice.blank = true;
    slice.mergeId = -1;
    slice.mergeType = OV_MERGE_OFF_WINDOW;
    slice.breakdown.windowRect = {1, 2, 3, 4};
    slice.breakdown.tier4Rect = {5, 6, 7, 8};
    slice.map.spaces = {{{9, 10, 11, 12}, 4.25}, {{-1, -2, -3, -4}, 1e9}};
    slice.map.tier4Rects = {{13, 14, 15, 16}, {17, 18, 19, 20}};
    EXPECT_EQ(dump(store, 2), "Slice #2: (1.5 - 12.3457) B:K:M = 1:0:-1\n"
                              "  Merge Type: 5 TWIN: 0 0 0 0\n"
                              "  Window = (1 2 3 4)\n"
                              "  Tier4 = (5 6 7 8)\n"
                              "    Space Value: 4.25 LRTB: 9 10 11 12\n"
                              "    Space Value: 1e+09 LRTB: -1 -2 -3 -4\n"
                              "    Tier4Rect: 0 LRTB: 13 14 15 16\n"
                              "    Tier4Rect: 1 LRTB: 17 18 19 20\n");
}

TEST(PrintFocusSliceTest, EachFlag_HasItsPlace) {
    struct Row {
        bool OV_FOCUS_SLICE::*flag;
        bool SLICE_BREAKDOWN::*part;
        const char* first;
        const char* second;
    };
    for (const Row& row : {
             Row{&OV_FOCUS_SLICE::blank, nullptr, "1:0:0", "0 0 0 0"},
             Row{&OV_FOCUS_SLICE::keyframe, nullptr, "0:1:0", "0 0 0 0"},
             Row{&OV_FOCUS_SLICE::blocked, nullptr, "0:0:0", "0 0 0 0"},
             Row{nullptr, &SLICE_BREAKDOWN::tight, "0:0:0", "1 0 0 0"},
             Row{nullptr, &SLICE_BREAKDOWN::window, "0:0:0", "0 1 0 0"},
             Row{nullptr, &SLICE_BREAKDOWN::inWindow, "0:0:0", "0 0 1 0"},
             Row{nullptr, &SLICE_BREAKDOWN::noWindow, "0:0:0", "0 0 0 1"},
             Row{nullptr, &SLICE_BREAKDOWN::identified, "0:0:0", "0 0 0 0"},
         }) {
        OV_DATA_STORE store;
        store.slices.resize(1);
        if (row.flag != nullptr) {
            store.slices[0].*row.flag = true;
        } else {
            store.slices[0].breakdown.*row.part = true;
        }
        EXPECT_EQ(dump(store, 0), std::string("Slice #0: (0 - 0) B:K:M = ") + row.first + "\n  Merge Type: 0 TWIN: " +
                                      row.second + "\n  Window = (0 0 0 0)\n  Tier4 = (0 0 0 0)\n");
    }
}

} // namespace
} // namespace OrvantaNS
