#include "Params.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace OrvantaNS {
namespace {

TEST(ParamsTest, Defaults_LeaveNothingToProcess) {
    const Params params;
    EXPECT_EQ(params.targetWidth(), 0);
    EXPECT_EQ(params.targetHeight(), 0);
    EXPECT_EQ(params.timeScale(), 100.0);
    EXPECT_EQ(params.fadeDuration(), 100); // one second at the default scale
    EXPECT_EQ(params.clipStart(), 0);
    EXPECT_EQ(params.clipStop(), 0);
    EXPECT_FALSE(params.isWindows());
    EXPECT_TRUE(params.foreWindows().empty());
    EXPECT_TRUE(params.cursorActions().empty());
    EXPECT_TRUE(params.cursorLocations().empty());
    EXPECT_TRUE(params.dirtyRects().empty());
    EXPECT_TRUE(params.caretRects().empty());
    EXPECT_TRUE(params.recordingRegions().empty());
}

TEST(ParamsTest, Setters_ChainOnTheSameRequest) {
    Params params;
    Params& last = params.setTargetWidth(640)
                       .setTargetHeight(400)
                       .setTimeScale(10000000.0)
                       .setFadeDuration(5000000)
                       .setClipInterval(-7, 9000000000LL)
                       .setWindowsFlag(true);
    EXPECT_EQ(&last, &params);
    EXPECT_EQ(params.targetWidth(), 640);
    EXPECT_EQ(params.targetHeight(), 400);
    EXPECT_EQ(params.timeScale(), 10000000.0);
    EXPECT_EQ(params.fadeDuration(), 5000000);
    EXPECT_EQ(params.clipStart(), -7); // start first, then stop
    EXPECT_EQ(params.clipStop(), 9000000000LL);
    EXPECT_TRUE(params.isWindows());
    EXPECT_FALSE(params.setWindowsFlag(false).isWindows());
}

TEST(ParamsTest, Setters_TakeAnyValue_NothingIsCheckedHere) {
    Params params;
    params.setTargetWidth(-1).setTimeScale(0.0).setClipInterval(5, 1);
    EXPECT_EQ(params.targetWidth(), -1);
    EXPECT_EQ(params.timeScale(), 0.0);
    EXPECT_EQ(params.clipStart(), 5);
    EXPECT_EQ(params.clipStop(), 1);
    EXPECT_EQ(params.setFadeDuration(std::numeric_limits<long long>::min()).fadeDuration(),
              std::numeric_limits<long long>::min());
}

TEST(ParamsTest, Arrays_AreFilledThroughTheirReference_EachByItself) {
    Params params;
    params.foreWindows().push_back({1, {0, 1, 0, 1}});
    params.cursorActions().push_back({2, 6});
    params.cursorLocations().push_back({3, 4, 5});
    params.dirtyRects().push_back({6, {0, 2, 0, 2}});
    params.caretRects().push_back({7, {0, 3, 0, 3}});
    params.recordingRegions().push_back({8, {0, 4, 0, 4}});
    const Params& read = params;
    ASSERT_EQ(read.foreWindows().size(), 1u);
    EXPECT_EQ(read.foreWindows()[0].time, 1);
    EXPECT_EQ(read.foreWindows()[0].rect, (Rectangle{0, 1, 0, 1}));
    ASSERT_EQ(read.cursorActions().size(), 1u);
    EXPECT_EQ(read.cursorActions()[0].time, 2);
    EXPECT_EQ(read.cursorActions()[0].action, 6);
    ASSERT_EQ(read.cursorLocations().size(), 1u);
    EXPECT_EQ(read.cursorLocations()[0].time, 3);
    EXPECT_EQ(read.cursorLocations()[0].x, 4);
    EXPECT_EQ(read.cursorLocations()[0].y, 5);
    ASSERT_EQ(read.dirtyRects().size(), 1u);
    EXPECT_EQ(read.dirtyRects()[0].time, 6);
    EXPECT_EQ(read.dirtyRects()[0].rect, (Rectangle{0, 2, 0, 2}));
    ASSERT_EQ(read.caretRects().size(), 1u);
    EXPECT_EQ(read.caretRects()[0].time, 7);
    EXPECT_EQ(read.caretRects()[0].rect, (Rectangle{0, 3, 0, 3}));
    ASSERT_EQ(read.recordingRegions().size(), 1u);
    EXPECT_EQ(read.recordingRegions()[0].time, 8);
    EXPECT_EQ(read.recordingRegions()[0].rect, (Rectangle{0, 4, 0, 4}));
}

static_assert(std::is_same_v<decltype(std::declval<const Params&>().dirtyRects()), const std::vector<OV_TIME_RECT>&>);
static_assert(std::is_same_v<decltype(std::declval<Params&>().dirtyRects()), std::vector<OV_TIME_RECT>&>);

} // namespace
} // namespace OrvantaNS
