#include "OrvantaWorker.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "Scene.h"
#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::recording;
using testing::Scene;

OV_VALUE_OBJECT object(std::uint32_t type, double start, double stop, Rectangle rect) {
    return {type, start, stop, rect, 0.0};
}

const Rectangle kScreen = box(0, 0, 1280, 800);

// A store as the parser would leave it, and the frame for second 10 of it.
class KeyframeAtTimeTest : public ::testing::Test {
protected:
    void SetUp() override {
        DataParser::StoreTimeScale = 1000.0;
        store_.liveZones = {{kScreen, 0.0, 20.0}};
        scene_.target(640, 400);
    }

    void add(std::uint32_t type, double start, double stop, Rectangle rect) {
        store_.valueObjects.push_back(object(type, start, stop, rect));
        if (type == ActiveWindow || type == ForeAnimate) {
            store_.windowObjects.push_back(store_.valueObjects.back());
        }
    }
    Rectangle frame() {
        store_.keyframes.clear();
        store_.firstActiveObject = 5; // left over from whatever came before
        store_.nextObject = 7;
        worker_.applyOrvantaKeyframeMode(scene_.params(), store_, 10000);
        EXPECT_EQ(store_.keyframes.size(), 1u);
        EXPECT_EQ(store_.keyframes.at(0).time, 10000);
        return store_.keyframes.at(0).rect;
    }

    OrvantaWorker worker_;
    OV_DATA_STORE store_;
    Scene scene_ = recording();
};

// ---- The zone ----

TEST_F(KeyframeAtTimeTest, Zone_ReachesTenSecondsEitherWayWithinTheClip) {
    const auto zoneAt = [&](long long time) {
        OV_DATA_STORE store;
        store.clipStart = 5.0;
        store.clipStop = 60.0;
        worker_.createLiveZoneAtTime(scene_.params(), store, time);
        EXPECT_EQ(store.liveZones.size(), 1u);
        EXPECT_EQ(store.liveZones[0].rect, kScreen);
        return std::pair(store.liveZones[0].start, store.liveZones[0].stop);
    };
    scene_.region(2.0, box(7, 7, 100, 100)); // the first region it is, whichever holds
    EXPECT_EQ(zoneAt(30000), std::pair(20.0, 40.0));
    EXPECT_EQ(zoneAt(55000), std::pair(45.0, 60.0));
    EXPECT_EQ(zoneAt(8000), std::pair(5.0, 18.0));
    EXPECT_EQ(zoneAt(90000), std::pair(80.0, 60.0)) << "behind the clip: a zone that stops before it starts";
    EXPECT_EQ(zoneAt(-20000), std::pair(5.0, -10.0));
}

// ---- Windows at a moment ----

TEST_F(KeyframeAtTimeTest, SnapWindow_IsTheFirstActiveWindowInForceEndsIncluded) {
    add(ForeAnimate, 0.0, 20.0, box(1, 1, 10, 10));
    add(ActiveWindow, 2.0, 4.0, box(2, 2, 10, 10));
    add(ActiveWindow, 4.0, 6.0, box(3, 3, 10, 10));
    EXPECT_EQ(worker_.getSnapWindowAtTime(1.999, store_), Rectangle{});
    EXPECT_EQ(worker_.getSnapWindowAtTime(2.0, store_), box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getSnapWindowAtTime(4.0, store_), box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getSnapWindowAtTime(4.001, store_), box(3, 3, 10, 10));
    EXPECT_EQ(worker_.getSnapWindowAtTime(6.001, store_), Rectangle{});
}

TEST_F(KeyframeAtTimeTest, AnimWindow_ReachesIntoAFifthOfASecondAround) {
    add(ActiveWindow, 0.0, 20.0, box(1, 1, 10, 10));
    add(ForeAnimate, 2.0, 4.0, box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getAnimWindowAtTime(4.1, store_), box(2, 2, 10, 10)) << "0.1 s after it ended";
    EXPECT_EQ(worker_.getAnimWindowAtTime(4.199, store_), box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getAnimWindowAtTime(4.201, store_), Rectangle{});
    EXPECT_EQ(worker_.getAnimWindowAtTime(1.801, store_), box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getAnimWindowAtTime(1.799, store_), Rectangle{});
    add(ForeAnimate, 3.0, 4.0, box(3, 3, 10, 10));
    EXPECT_EQ(worker_.getAnimWindowAtTime(3.5, store_), box(2, 2, 10, 10)) << "the first of two";
}

// Touching is not reaching into: binary fractions of the clock would show it, so the moment is shifted until the
// difference is exact.
TEST_F(KeyframeAtTimeTest, AnimWindowThatOnlyTouches_IsNotFound) {
    const double moment = 10.0;
    add(ForeAnimate, 2.0, moment - 0.2, box(2, 2, 10, 10));
    EXPECT_EQ(worker_.getAnimWindowAtTime(moment, store_), Rectangle{});
}

// ---- Modes ----

TEST_F(KeyframeAtTimeTest, WindowOfFiveQuartersOfTheTarget_IsSnappedTo) {
    // A window in force that the frame is, whatever happens inside it and whatever moves.
    add(ActiveWindow, 0.0, 20.0, box(100, 100, 800, 500));
    add(ForeAnimate, 9.0, 11.0, box(900, 600, 50, 50));
    add(Drag, 9.0, 20.0, box(900, 600, 50, 50));
    EXPECT_EQ(frame(), box(100, 100, 800, 500));
}

TEST_F(KeyframeAtTimeTest, SmallWindow_IsSnappedToAndPaddedEvenly) {
    add(ActiveWindow, 0.0, 20.0, box(500, 300, 200, 100));
    EXPECT_EQ(frame(), box(280, 150, 640, 400));
}

// One pixel more than 5/4: the frame follows the thing of value instead. Around (100, 200, 100, 200) the target has 540
// by 300 to pad, and leans on the window's left and top walls.
TEST_F(KeyframeAtTimeTest, WindowOnePixelLarger_IsNotSnappedTo) {
    add(Drag, 9.0, 20.0, box(100, 100, 100, 100));
    for (const Rectangle& window : {Rectangle{0, 801, 0, 500}, Rectangle{0, 800, 0, 501}}) {
        store_.windowObjects = {object(ActiveWindow, 0.0, 20.0, window)};
        EXPECT_EQ(frame(), box(0, 0, 640, 400));
    }
}

// The window itself is worth 2 a second, 6 in all, and with the drag's 30 on a fortieth of it 6.7 a pixel: the padding
// is spent on taking in as much of it as goes, to the right and below first.
TEST_F(KeyframeAtTimeTest, LargeWindowOfValue_IsGrownInto) {
    add(ActiveWindow, 0.0, 20.0, box(0, 0, 801, 500));
    add(Drag, 9.0, 20.0, box(100, 100, 100, 100));
    EXPECT_EQ(frame(), box(100, 100, 640, 400));
}

TEST_F(KeyframeAtTimeTest, FiveQuarters_AreRoundedDown) {
    scene_.target(641, 403); // 801.25 and 503.75
    add(Drag, 9.0, 20.0, box(10, 10, 50, 50));
    store_.windowObjects = {object(ActiveWindow, 0.0, 20.0, box(100, 100, 801, 503))};
    // 801 by 503 at 641:403 = 1.590571: 801 / 1.590571 = 503.59, so nothing to pad.
    EXPECT_EQ(frame(), box(100, 100, 801, 503));
    store_.windowObjects[0].rect = box(100, 100, 802, 503);
    EXPECT_NE(frame(), box(100, 100, 802, 503));
    store_.windowObjects[0].rect = box(100, 100, 801, 504);
    EXPECT_NE(frame(), box(100, 100, 801, 504));
}

TEST_F(KeyframeAtTimeTest, InvertedOrFlatWindow_IsNotSnappedTo) {
    add(ActiveWindow, 0.0, 20.0, {});
    add(ForeAnimate, 9.0, 11.0, box(500, 300, 200, 100));
    for (const Rectangle& window :
         {Rectangle{500, 400, 300, 400}, Rectangle{400, 400, 300, 400}, Rectangle{400, 500, 300, 300}}) {
        store_.windowObjects[0].rect = window;
        EXPECT_EQ(frame(), box(280, 150, 640, 400)) << window.left << ' ' << window.bottom;
    }
}

TEST_F(KeyframeAtTimeTest, LargeWindow_GivesWayToOneInMotion) {
    add(ActiveWindow, 0.0, 20.0, box(0, 0, 1000, 700));
    add(ForeAnimate, 9.0, 9.9, box(500, 300, 200, 100));
    add(Drag, 9.0, 20.0, box(900, 600, 50, 50));
    EXPECT_EQ(frame(), box(280, 150, 640, 400));
}

TEST_F(KeyframeAtTimeTest, EmptyAnimation_DoesNotCount) {
    add(ActiveWindow, 0.0, 20.0, box(0, 0, 1000, 700));
    add(ForeAnimate, 9.0, 11.0, box(500, 300, 0, 100));
    // 1000 by 700 wants 1120 by 700: 120 to pad, which has no room in the window.
    store_.valueObjects.clear();
    EXPECT_EQ(frame(), box(0, 0, 1120, 700));
}

TEST_F(KeyframeAtTimeTest, NoWindow_FollowsValue) {
    add(Drag, 9.0, 20.0, box(600, 300, 100, 100));
    EXPECT_EQ(frame(), box(330, 150, 640, 400));
}

TEST_F(KeyframeAtTimeTest, ValueMode_AreaThatABetterOneBeatsInEveryTier_IsNotTakenIn) {
    // The change on the right is 300 away and fits the padding of 540.
    add(Drag, 9.0, 20.0, box(600, 300, 100, 100));
    add(Drag, 9.0, 20.0, box(600, 300, 100, 100));
    add(IdleDirty, 9.0, 20.0, box(1000, 300, 100, 100));
    // Tiers: two drags, 60 over 3 s, are tier 12 and carry down to tier 6; the change, 15 over 3 s, is of tier 4. In
    // tier 4's list are both; the drags score better, so that theirs is the only rectangle and 270 go to either side.
    EXPECT_EQ(frame(), box(330, 150, 640, 400));
}

TEST_F(KeyframeAtTimeTest, LargeWindowWithoutValue_IsTheFrame) {
    store_.windowObjects = {object(ActiveWindow, 0.0, 20.0, box(100, 50, 1000, 625))};
    EXPECT_EQ(frame(), box(100, 50, 1000, 625));
}

TEST_F(KeyframeAtTimeTest, NothingAtAll_IsTheWholeRecordingOnTheLocalRegion) {
    EXPECT_EQ(frame(), kScreen);
    scene_.params().recordingRegions()[0].rect = box(100, 50, 1280, 800);
    EXPECT_EQ(frame(), kScreen);
    // 9:16: 450 of 1280 are kept of the region where it stands on the screen, (515, 965), which lies on the local one.
    scene_.target(225, 400);
    EXPECT_EQ(frame(), (Rectangle{515, 965, 0, 800}));
}

// The window fits five quarters of the target, 2125000000 by 80. Five times the width wraps to -89934592 in 32 bits, which
// no window fits: the frame would follow the animation, at top 300 - 4 / 2 = 298.
TEST_F(KeyframeAtTimeTest, WhereOtherWalksHadGot_IsForgotten) {
    frame();
    EXPECT_EQ(store_.firstActiveObject, 0u);
    EXPECT_EQ(store_.nextObject, 0u);
}

TEST_F(KeyframeAtTimeTest, HugeTarget_IsComparedWide) {
    scene_.target(1700000000, 64);
    add(ActiveWindow, 0.0, 20.0, box(0, 0, 100, 50));
    add(ForeAnimate, 9.0, 11.0, box(500, 300, 200, 60));
    // Half of the padding of 1699999900 by 14 lies to the left and above; the bound brings those edges back to 0.
    EXPECT_EQ(frame(), (Rectangle{0, 1700000000, 0, 64}));
}

// ---- Value ----

TEST_F(KeyframeAtTimeTest, DetectKeyframe_SumsUpThreeSeconds) {
    store_.valueObjects = {object(Drag, 9.0, 20.0, box(600, 300, 100, 100))};
    const VS_VALUE_MAP map = worker_.detectKeyframe(store_, 10.0);
    EXPECT_EQ(map.span, 3.0);
    ASSERT_EQ(map.spaces.size(), 1u);
    EXPECT_EQ(map.spaces[0].first, box(600, 300, 100, 100));
    EXPECT_DOUBLE_EQ(map.spaces[0].second, 30.0);
}

TEST_F(KeyframeAtTimeTest, DetectKeyframe_StopsAtTheZone) {
    store_.liveZones[0].stop = 11.5;
    store_.valueObjects = {object(Drag, 9.0, 20.0, box(600, 300, 100, 100))};
    const VS_VALUE_MAP map = worker_.detectKeyframe(store_, 10.0);
    EXPECT_EQ(map.span, 1.5);
    ASSERT_EQ(map.spaces.size(), 1u);
    EXPECT_DOUBLE_EQ(map.spaces[0].second, 15.0);
}

// A large moderately warm area with a hot spot in it. By tier the hot spot (menu and drag, 60) leads with its density;
// the whole (drag alone, 30) is of tier 10 and swallows the spot in every list below tier 12.
TEST_F(KeyframeAtTimeTest, DetectKeyframe_DensestFirst) {
    store_.valueObjects = {object(Drag, 9.0, 20.0, box(0, 0, 400, 400)),
                           object(Menu, 9.0, 20.0, box(100, 100, 100, 100))};
    const VS_VALUE_MAP map = worker_.detectKeyframe(store_, 10.0);
    ASSERT_EQ(map.spaces.size(), 2u);
    EXPECT_EQ(map.spaces[0].first, box(100, 100, 100, 100));
    EXPECT_DOUBLE_EQ(map.spaces[0].second, 60.0);
    EXPECT_EQ(map.spaces[1].first, box(0, 0, 400, 400));
    EXPECT_DOUBLE_EQ(map.spaces[1].second, 30.0 + 30.0 / 16.0);
}

// A higher tier whose rectangle is less dense than a lower one's: the large area of tier 4 (13 over 3 s) has many small
// changes in it, which touch no tier by themselves but add to its density.
TEST_F(KeyframeAtTimeTest, DetectKeyframe_DensestFirstAgainstTheTiers) {
    // Tier 10: the drag, 30 over 3 s, small. Tier 4: an idle change, 15 over 3 s, as large as the four drags' corners
    // that lie in it: each corner adds 30 x 40 x 40 to 15 x 100 x 100, which makes 15 + 4 x 4.8 = 34.2 a pixel.
    const Rectangle middle = box(500, 300, 100, 100);
    store_.valueObjects = {object(IdleDirty, 9.0, 20.0, middle)};
    for (const Rectangle& corner :
         {box(440, 240, 100, 100), box(560, 240, 100, 100), box(440, 360, 100, 100), box(560, 360, 100, 100)}) {
        store_.valueObjects.push_back(object(Drag, 9.0, 20.0, corner));
    }
    const VS_VALUE_MAP map = worker_.detectKeyframe(store_, 10.0);
    ASSERT_GE(map.spaces.size(), 2u);
    for (std::size_t i = 1; i < map.spaces.size(); ++i) {
        EXPECT_GE(map.spaces[i - 1].second, map.spaces[i].second);
    }
}

TEST_F(KeyframeAtTimeTest, DetectKeyframe_ZoneThatEndsBeforeTheMoment_FindsNothing) {
    store_.liveZones[0].stop = 4.0;
    store_.valueObjects = {object(Drag, 0.0, 20.0, box(600, 300, 100, 100))};
    EXPECT_TRUE(worker_.detectKeyframe(store_, 10.0).spaces.empty());
}

// ---- The whole question ----

TEST_F(KeyframeAtTimeTest, WholeQuestion_NothingHappens_IsTheWholeRecording) {
    for (const long long time : {0ll, 30000ll, 59999ll, 90000ll, -5000ll}) {
        const auto keyframes = worker_.calcOrvantaKeyframeAtTime(recording().target(640, 400), time);
        ASSERT_EQ(keyframes->size(), 1u);
        EXPECT_EQ(keyframes->at(0).time, time);
        EXPECT_EQ(keyframes->at(0).rect, kScreen);
    }
}

// At 90 s the zone runs from 80 back to 60 s, and what the frame could follow from 90 s on ends at 60: nothing counts,
// whether it happened in the clip or behind it.
TEST_F(KeyframeAtTimeTest, WholeQuestion_FarBehindTheClip_IsTheWholeRecordingWhateverHappened) {
    const Rectangle window = box(500, 300, 200, 100);
    const auto frameOf = [&](const Scene& scene) {
        const auto keyframes = worker_.calcOrvantaKeyframeAtTime(scene, 90000);
        EXPECT_EQ(keyframes->size(), 1u);
        EXPECT_EQ(keyframes->at(0).time, 90000);
        return keyframes->at(0).rect;
    };
    Scene inClip = recording().target(640, 400).cursor(5.0, 600, 350).click(5.0).window(5.0, window);
    inClip.dirty(5.1, box(550, 320, 60, 40)).cursor(5.5, 700, 350);
    EXPECT_EQ(frameOf(inClip), kScreen);
    Scene behind = recording().target(640, 400).cursor(70.0, 600, 350).click(72.0).window(62.0, window);
    behind.window(85.0, window).dirty(72.1, box(550, 320, 60, 40)).cursor(84.0, 700, 350).cursor(100.0, 1, 1);
    EXPECT_EQ(frameOf(behind), kScreen);
}

TEST_F(KeyframeAtTimeTest, WholeQuestion_WhatHappenedAheadOfTheClip_DoesNotCount) {
    // A click at 20 s still counts at 20.6 s, unless the clip begins between the two.
    Scene scene = recording().target(640, 400).cursor(19.0, 200, 200).click(20.0);
    const auto frameOf = [&](long long clipStart) {
        scene.params().setClipInterval(clipStart, 60000);
        return worker_.calcOrvantaKeyframeAtTime(scene, 20600)->at(0).rect;
    };
    EXPECT_EQ(frameOf(15000), box(0, 0, 640, 400));
    EXPECT_EQ(frameOf(20500), kScreen);
}

// At 65 s the zone runs from 55 to the clip's stop, 60 s, but its meta passes are (55, 65) and (65, 75) as long as the
// cursor goes on: a window from 62 to 65 s is handed over in the second one and is in force at 65.
TEST_F(KeyframeAtTimeTest, WholeQuestion_JustBehindTheClip_SeesAWindowThatStandsThere) {
    const Rectangle window = box(500, 300, 200, 100);
    const auto frameOf = [&](double windowStop, double cursorTime) {
        const Scene scene =
            recording().target(640, 400).window(62.0, window).window(windowStop, window).cursor(cursorTime, 5, 5);
        return worker_.calcOrvantaKeyframeAtTime(scene, 65000)->at(0).rect;
    };
    EXPECT_EQ(frameOf(65.0, 80.0), box(280, 150, 640, 400));
    EXPECT_EQ(frameOf(65.001, 80.0), kScreen) << "it would be handed over by a pass that no longer comes";
    EXPECT_EQ(frameOf(65.0, 70.0), kScreen) << "no cursor behind the second pass, which is cut to end at 60";
}

TEST_F(KeyframeAtTimeTest, WholeQuestion_FindsAnAreaThatIsDragged) {
    // A drag from (200, 200) to (300, 300) between 20 and 23 s, asked for in its middle.
    Scene scene = recording().target(640, 400).cursor(0.0, 200, 200).action(20.0, 0);
    for (int i = 1; i <= 30; ++i) {
        scene.cursor(20.0 + i / 10.0 - 0.05, 200 + i * 10 / 3, 200 + i * 10 / 3);
    }
    scene.action(23.0, 1);
    const auto keyframes = worker_.calcOrvantaKeyframeAtTime(scene, 21500);
    ASSERT_EQ(keyframes->size(), 1u);
    EXPECT_EQ(width(keyframes->at(0).rect), 640);
    EXPECT_EQ(height(keyframes->at(0).rect), 400);
    EXPECT_TRUE(contains(keyframes->at(0).rect, box(210, 210, 80, 80)));
}

TEST_F(KeyframeAtTimeTest, WholeQuestion_StoresTheTimeScale) {
    DataParser::StoreTimeScale = 5.0;
    worker_.calcOrvantaKeyframeAtTime(recording().target(640, 400), 0);
    EXPECT_EQ(DataParser::StoreTimeScale.load(), 1000.0);
}

TEST_F(KeyframeAtTimeTest, WholeQuestion_OddTimeScalesAndTimes_End) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double scale : {0.01, 1e-300, 1e300, -1000.0, nan, infinity, -infinity}) {
        for (const long long time :
             {0ll, 1000ll, std::numeric_limits<long long>::lowest(), std::numeric_limits<long long>::max()}) {
            Params params = recording().target(640, 400).cursor(1.0, 5, 5).click(2.0).window(0.0, box(0, 0, 99, 99));
            params.setTimeScale(scale);
            EXPECT_EQ(worker_.calcOrvantaKeyframeAtTime(params, time)->size(), 1u);
        }
    }
}

} // namespace
} // namespace OrvantaNS
