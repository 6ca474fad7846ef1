#include "frame/ValueObject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "frame/DataStore.h"

namespace OrvantaNS {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

OV_VALUE_OBJECT startingAt(double start) { return {Move, start, start + 1.0, {}, 0.0}; }

TEST(ValueRow, OfNothing_IsWorthNothing) {
    const OV_VALUE_ROW row;
    EXPECT_EQ(row.value, 0.0);
    EXPECT_EQ(row.decay, 0.0);
}

TEST(ValueMatrixTest, Rows_HaveTheirNumberValueAndDecay) {
    struct Row {
        std::uint32_t type;
        std::uint32_t number;
        double value;
        double decay;
    };
    const std::vector<Row> rows{
        {Move, 0, 5.0, 1.0},
        {MouseIdle, 1, 0.0, 0.1},
        {Click, 2, 7.0, 4.0},
        {Drag, 3, 10.0, 2.0},
        {DoubleClick, 4, 7.0, 4.0},
        {Caret, 5, 1.0, 3.0},
        {TextFocus, 6, 1.0, 4.0},
        {FollowText, 7, 1.0, 3.0},
        {ForeOpen, 8, 8.0, 3.0},
        {ForeAnimate, 9, 7.0, 1.5},
        {ActiveWindow, 10, 2.0, 0.1},
        {Hover, 11, 6.0, 0.5},
        {IdleDirty, 12, 5.0, 0.5},
        {Menu, 13, 10.0, 2.0},
        {Pane, 14, 10.0, 0.5},
        {MenuResult, 15, 15.0, 1.0},
        {Reserved16, 16, 1.0, 0.1},
        {OffScreen, 17, 1.0, 0.1},
        {Scroll, 18, 1.0, 0.1},
        {Dead, 19, 0.0, 0.1},
        {Reserved20, 20, 0.5, 0.1},
        {Reserved21, 21, 8.0, 3.0},
        {Reserved22, 22, 1.5, 0.5},
        {FullScreenDirty, 23, 6.0, 1.0},
        {MoveOutOfWindow, 24, 6.0, 1.0},
        {MoveIntoWindow, 25, 6.0, 1.0},
        {HoverPopup, 26, 10.0, 2.0},
        {ClickDirty, 27, 3.0, 0.5},
        {ClickWindow, 28, 3.0, 0.5},
    };
    ASSERT_EQ(g_ValueMatrix.size(), 29u);
    ASSERT_EQ(rows.size(), g_ValueMatrix.size());
    for (const Row& row : rows) {
        EXPECT_EQ(row.type, row.number);
        EXPECT_EQ(g_ValueMatrix[row.number].value, row.value) << "type " << row.number;
        EXPECT_EQ(g_ValueMatrix[row.number].decay, row.decay) << "type " << row.number;
    }
}

TEST(ValueMatrixTest, Triggers_AreExactlyTheTypesWorthAtLeastFourUnits) {
    const std::set<std::uint32_t> triggers{0, 2, 3, 4, 8, 9, 11, 12, 13, 14, 15, 21, 23, 24, 25, 26};
    for (std::uint32_t type = 0; type < g_ValueMatrix.size(); ++type) {
        EXPECT_EQ(isTrigger({type, 0.0, 0.0, {}, 0.0}), triggers.count(type) == 1) << "type " << type;
    }
}

TEST(ValueMatrixTest, MenuResult_IsWorthMost_DeadAndMouseIdleNothing) {
    for (const OV_VALUE_ROW& row : g_ValueMatrix) {
        EXPECT_LE(row.value, g_ValueMatrix[MenuResult].value);
        EXPECT_GE(row.value, 0.0);
    }
    EXPECT_EQ(g_ValueMatrix[Dead].value, 0.0);
    EXPECT_EQ(g_ValueMatrix[MouseIdle].value, 0.0);
}

TEST(ValueObjectTest, Default_IsZero) {
    const OV_VALUE_OBJECT object;
    EXPECT_EQ(object.type, 0u);
    EXPECT_EQ(object.start, 0.0);
    EXPECT_EQ(object.stop, 0.0);
    EXPECT_EQ(object.rect, Rectangle{});
    EXPECT_EQ(object.value, 0.0);
}

TEST(ValueObjectTest, LifeEnd_IsStopPlusTheDecayOfTheRow) {
    EXPECT_EQ(lifeEnd({Click, 1.0, 2.5, {}, 0.0}), 6.5);
    EXPECT_EQ(lifeEnd({ForeAnimate, 1.0, 2.0, {}, 0.0}), 3.5);
}

TEST(CompareValueObjectsTest, IsStrictOnStartAlone) {
    for (const auto compare : {CompareValueObjects, CompareValueObjects2}) {
        EXPECT_TRUE(compare(startingAt(1.0), startingAt(std::nextafter(1.0, 2.0))));
        EXPECT_FALSE(compare(startingAt(1.0), startingAt(1.0)));
        EXPECT_FALSE(compare(startingAt(2.0), startingAt(1.0)));
        EXPECT_FALSE(compare({Move, 1.0, 2.0, {}, 0.0}, {Click, 1.0, 9.0, {1, 2, 3, 4}, 5.0}));
        EXPECT_FALSE(compare(startingAt(-0.0), startingAt(0.0)));
    }
}

TEST(CompareValueObjectsTest, NotANumber_IsFalseOnEitherSide) {
    for (const auto compare : {CompareValueObjects, CompareValueObjects2}) {
        EXPECT_FALSE(compare(startingAt(kNaN), startingAt(1.0)));
        EXPECT_FALSE(compare(startingAt(1.0), startingAt(kNaN)));
        EXPECT_FALSE(compare(startingAt(kNaN), startingAt(kNaN)));
    }
}

TEST(ValueMapTest, ANewMap_IsOfNothingInNoTime) {
    const VS_VALUE_MAP map;
    EXPECT_TRUE(map.spaces.empty());
    EXPECT_TRUE(map.tier4Rects.empty());
    EXPECT_EQ(map.span, 0.0);
}

TEST(CompareMapSpacesTest, AscendingAndDescendingByDensityAlone) {
    const std::pair<Rectangle, double> thin{{0, 1, 0, 1}, 1.0};
    const std::pair<Rectangle, double> dense{{5, 6, 5, 6}, 2.0};
    const std::pair<Rectangle, double> none{{}, kNaN};
    EXPECT_TRUE(CompareMapSpaces(thin, dense));
    EXPECT_FALSE(CompareMapSpaces(dense, thin));
    EXPECT_FALSE(CompareMapSpaces(thin, thin));
    EXPECT_TRUE(CompareMapSpacesReverse(dense, thin));
    EXPECT_FALSE(CompareMapSpacesReverse(thin, dense));
    EXPECT_FALSE(CompareMapSpacesReverse(thin, thin));
    for (const auto compare : {CompareMapSpaces, CompareMapSpacesReverse}) {
        EXPECT_FALSE(compare(none, thin));
        EXPECT_FALSE(compare(thin, none));
    }
}

// The edges tell the spaces apart: 0 to 5 in the order in which they come.
TEST(SortByDensityTest, DensestFirst_EqualOnesInOrder_NotANumberLast) {
    std::vector<std::pair<Rectangle, double>> spaces{{{0}, 1.0},  {{1}, kNaN}, {{2}, 3.0},
                                                     {{3}, kNaN}, {{4}, 2.0},  {{5}, 3.0}};
    sortByDensity(spaces);
    std::vector<std::int32_t> order;
    order.reserve(spaces.size());
    for (const auto& space : spaces) {
        order.push_back(space.first.left);
    }
    EXPECT_EQ(order, (std::vector<std::int32_t>{2, 5, 4, 0, 1, 3}));
}

// The definition: what is no number goes behind the rest, and the rest is sorted with equal ones in order.
std::vector<std::pair<Rectangle, double>> plainlySorted(std::vector<std::pair<Rectangle, double>> spaces) {
    const auto end = std::stable_partition(spaces.begin(), spaces.end(),
                                           [](const auto& space) { return !std::isnan(space.second); });
    std::stable_sort(spaces.begin(), end, CompareMapSpacesReverse);
    return spaces;
}

TEST(SortByDensityTest, FewAndMany_EqualTheDefinition) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::pair<Rectangle, double>> spaces;
        const std::size_t count = random() % (2 * kFewMapSpaces + 2);
        for (std::int32_t i = 0; spaces.size() < count; ++i) {
            // Few values, so that many are equal.
            spaces.push_back({{i}, random() % 8 == 0 ? kNaN : static_cast<double>(random() % 6)});
        }
        const std::vector<std::pair<Rectangle, double>> expected = plainlySorted(spaces);
        sortByDensity(spaces);
        ASSERT_EQ(spaces.size(), expected.size());
        for (std::size_t i = 0; i < spaces.size(); ++i) {
            ASSERT_EQ(spaces[i].first, expected[i].first) << "at " << i << " of " << count;
        }
    }
}

TEST(DataStoreTest, Fresh_IsZeroed) {
    const OV_DATA_STORE store;
    EXPECT_TRUE(store.liveZones.empty() && store.valueObjects.empty() && store.keyframes.empty());
    EXPECT_TRUE(store.slices.empty() && store.windowObjects.empty() && store.keyframeSlices.empty());
    EXPECT_EQ(store.scrollLocation, 0u);
    EXPECT_EQ(store.firstActiveObject, 0u);
    EXPECT_EQ(store.nextObject, 0u);
    EXPECT_EQ(store.fadeSeconds, 0.0);
    EXPECT_EQ(store.currentZone, 0u);
    EXPECT_EQ(store.progress, nullptr);
    EXPECT_EQ(store.clipStart, 0.0);
    EXPECT_EQ(store.clipStop, 0.0);
    EXPECT_EQ(store.targetWidth, 0);
    EXPECT_EQ(store.targetHeight, 0);
    EXPECT_EQ(store.mergesRemaining, 0);
    EXPECT_EQ(store.mergesTotal, 0);
}

TEST(LiveZoneTest, Fresh_IsEmptyAtTimeZero) {
    const OV_LIVE_ZONE zone;
    EXPECT_EQ(zone.rect, Rectangle{});
    EXPECT_EQ(zone.start, 0.0);
    EXPECT_EQ(zone.stop, 0.0);
}

TEST(FocusSliceTest, Fresh_IsUnmergedAndUnclassified) {
    const OV_FOCUS_SLICE slice;
    EXPECT_TRUE(slice.map.spaces.empty() && slice.map.tier4Rects.empty());
    EXPECT_EQ(slice.map.span, 0.0);
    EXPECT_EQ(slice.start, 0.0);
    EXPECT_EQ(slice.stop, 0.0);
    EXPECT_FALSE(slice.blank || slice.keyframe || slice.blocked);
    EXPECT_EQ(slice.mergeId, 0);
    EXPECT_EQ(slice.mergeType, 0);
    EXPECT_FALSE(slice.breakdown.tight || slice.breakdown.inWindow || slice.breakdown.window);
    EXPECT_FALSE(slice.breakdown.noWindow || slice.breakdown.identified);
    EXPECT_EQ(slice.breakdown.windowRect, Rectangle{});
    EXPECT_EQ(slice.breakdown.tier4Rect, Rectangle{});
}

// Dumps and reports show the numbers.
TEST(MergeStrategyTest, Values_AreZeroToTwelve) {
    const std::vector<std::int32_t> values{OV_MERGE_NONE,
                                           OV_MERGE_TIGHT,
                                           OV_MERGE_WIDE,
                                           OV_MERGE_LOOSE,
                                           OV_MERGE_FORCED,
                                           OV_MERGE_OFF_WINDOW,
                                           OV_MERGE_FULL_SCREEN,
                                           OV_MERGE_TIGHT_PAN_TIGHT,
                                           OV_MERGE_TIGHT_GROW_WIDE,
                                           OV_MERGE_WIDE_SHRINK_TIGHT,
                                           OV_MERGE_RETURN_WINDOW,
                                           OV_MERGE_GO_FULL_SCREEN,
                                           OV_MERGE_GO_OFF_WINDOW};
    EXPECT_EQ(values, (std::vector<std::int32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

TEST(ProgressStageTest, Values_AreZeroToTwo) {
    EXPECT_EQ(OV_STAGE_PARSE, 0);
    EXPECT_EQ(OV_STAGE_SLICE, 1);
    EXPECT_EQ(OV_STAGE_MERGE, 2);
}

} // namespace
} // namespace OrvantaNS
