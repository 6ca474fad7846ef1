#include "worker/slicing/WindowTimes.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "OrvantaWorker.h"
#include "Random.h"
#include "frame/DataStore.h"

namespace OrvantaNS {
namespace {

std::vector<OV_VALUE_OBJECT> windowsOf(std::initializer_list<std::pair<double, double>> times) {
    std::vector<OV_VALUE_OBJECT> windows;
    for (const auto& [start, stop] : times) {
        windows.push_back({ActiveWindow, start, stop, {0, 10, 0, 10}, 0.0});
    }
    return windows;
}

TEST(WindowTimesTest, NoWindows_AreInOrderAndNoneStands) {
    const WindowTimes times({});
    EXPECT_TRUE(times.isInOrder());
    EXPECT_EQ(times.firstStanding(0, 5.0), 0u);
}

TEST(WindowTimesTest, InOrder_OnlyWindowsByStartThatStopNoEarlierThanTheyStart) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(WindowTimes(windowsOf({{0, 9}, {0, 0}, {3, 5}})).isInOrder());
    EXPECT_FALSE(WindowTimes(windowsOf({{1, 9}, {0, 9}})).isInOrder());
    EXPECT_FALSE(WindowTimes(windowsOf({{1, 9}, {3, 2}})).isInOrder());
    EXPECT_FALSE(WindowTimes(windowsOf({{notANumber, 9}})).isInOrder());
    EXPECT_FALSE(WindowTimes(windowsOf({{1, notANumber}})).isInOrder());
}

TEST(WindowTimesTest, FirstStanding_IsTheFirstFromThereThatStopsAtTheTimeOrLater) {
    const WindowTimes times(windowsOf({{0, 9}, {1, 2}, {3, 5}}));
    EXPECT_EQ(times.firstStanding(0, 9.0), 0u);
    EXPECT_EQ(times.firstStanding(0, 9.1), 3u);
    EXPECT_EQ(times.firstStanding(1, 2.0), 1u);
    EXPECT_EQ(times.firstStanding(1, 2.1), 2u);
    EXPECT_EQ(times.firstStanding(1, 5.1), 3u);
    EXPECT_EQ(times.firstStanding(7, 0.0), 3u);
}

// Windows in order or not; what the plain lookups over all of them say must be what those with times say.
TEST(WindowTimesTest, SlicesAndLookups_AgreeWithThoseThatReadAllWindows) {
    const OrvantaWorker worker;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        OV_DATA_STORE plain;
        plain.targetWidth = 640;
        plain.targetHeight = 400;
        const bool isOrdered = random.chance(0.8);
        double now = 0.0;
        for (int i = random.range(0, 20); i > 0; --i) {
            now = isOrdered ? now + random.range(0, 2) : random.range(0, 20);
            const double stop =
                now + random.range(isOrdered || random.chance(0.7) ? 0 : -3, random.chance(0.1) ? 40 : 4);
            const std::uint32_t type = random.chance(0.7)   ? ActiveWindow
                                       : random.chance(0.8) ? ForeAnimate
                                                            : FullScreenDirty;
            plain.windowObjects.push_back({type, now, stop, {i, 500 + i, i, 400}, 0.0});
        }
        OV_FOCUS_SLICE slice;
        slice.start = random.range(-1, 25);
        slice.stop = slice.start + random.range(0, 5) - (random.chance(0.1) ? 3.0 : 0.0);
        plain.slices.push_back(slice);
        OV_DATA_STORE quick = plain;
        const WindowTimes times(quick.windowObjects);
        quick.windowTimes = &times;

        ASSERT_TRUE(!isOrdered || times.isInOrder());
        for (double time = -1.0; time < 45.0; time += 0.5) {
            ASSERT_EQ(worker.getNextWindowTime(quick, time), worker.getNextWindowTime(plain, time)) << time;
        }
        const SLICE_BREAKDOWN a = worker.identifySlice(quick, 0);
        const SLICE_BREAKDOWN b = worker.identifySlice(plain, 0);
        ASSERT_EQ(a.window, b.window);
        ASSERT_EQ(a.inWindow, b.inWindow);
        ASSERT_EQ(a.noWindow, b.noWindow);
        ASSERT_EQ(a.windowRect, b.windowRect);
        ASSERT_EQ(quick.slices[0].mergeType, plain.slices[0].mergeType);
    }
}

} // namespace
} // namespace OrvantaNS
