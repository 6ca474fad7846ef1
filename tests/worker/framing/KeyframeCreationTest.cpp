#include "OrvantaWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "Scene.h"
#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using testing::recording;
using testing::Scene;

const Rectangle kScreen = box(0, 0, 1280, 800);
const Rectangle kThing = box(600, 300, 100, 100); // framed by 640 by 400: (330, 970, 150, 550)
const Rectangle kThingFrame = box(330, 150, 640, 400);
const Rectangle kOtherThing = box(0, 0, 50, 50); // framed in the corner
const Rectangle kOtherFrame = box(0, 0, 640, 400);

// A window whose right wall is 200 from the thing, less than half of the padding of 540: the frame leans on it. Above
// and below there are 200 each.
const Rectangle kWindow = box(100, 100, 800, 500);
const Rectangle kThingInWindow = box(260, 150, 640, 400);

class KeyframeCreationTest : public ::testing::Test {
protected:
    void SetUp() override {
        DataParser::StoreTimeScale = 1000.0;
        store_.fadeSeconds = 1.0;
        scene_.target(640, 400);
    }

    OV_FOCUS_SLICE& slice(double start, double stop, int mergeType, Rectangle hot = {}, Rectangle window = {}) {
        OV_FOCUS_SLICE slice;
        slice.start = start;
        slice.stop = stop;
        slice.mergeType = mergeType;
        slice.breakdown.tier4Rect = hot;
        slice.breakdown.windowRect = window;
        store_.slices.push_back(slice);
        return store_.slices.back();
    }
    // A first slice that gets no keyframe of its own.
    void quietStart(double stop = 5.0) { slice(0.0, stop, OV_MERGE_NONE); }
    void stroke(long long first, long long last) {
        MOUSE_STROKE stroke;
        stroke.points = {{first, 0, 0}, {last, 50, 0}};
        parser_.keptStrokes.push_back(stroke);
    }
    void run() { worker_.createKeyframeLoop(scene_.params(), store_, parser_, 0.0); }
    std::vector<std::pair<long long, Rectangle>> keyframes() {
        run();
        std::vector<std::pair<long long, Rectangle>> result;
        for (const OV_TIME_RECT& keyframe : store_.keyframes) {
            result.emplace_back(keyframe.time, keyframe.rect);
        }
        return result;
    }
    using Keyframes = std::vector<std::pair<long long, Rectangle>>;

    OrvantaWorker worker_;
    OV_DATA_STORE store_;
    DataParser parser_;
    Scene scene_ = recording();
};

// ---- Frames ----

TEST_F(KeyframeCreationTest, TightFrame_IsTheTargetAroundTheHotRect) {
    slice(0.0, 1.0, OV_MERGE_TIGHT, kThing);
    EXPECT_EQ(worker_.createTightKeyframe(scene_.params(), store_, 0), kThingFrame);
}

TEST_F(KeyframeCreationTest, TightFrame_SpendsItsPaddingOnTheWindowAndOnValue) {
    // Padding 540 by 300. The window's left edge is 60 away and is closed (480 left); its other edges are far. The
    // value grows the right side by 100 and the bottom by 40 (380 and 260 left). In the window (540 to 1240 by 0 to
    // 800) the frame of 640 leans on the left wall: nothing to the left, 380 to the right, to 1180. Vertically the
    // walls are 300 and 360 away, at least half of 260: 130 on either side.
    slice(0.0, 1.0, OV_MERGE_TIGHT, kThing, Rectangle{540, 1240, 0, 800}).map.spaces = {
        {Rectangle{600, 800, 300, 440}, 5.0}};
    EXPECT_EQ(worker_.createTightKeyframe(scene_.params(), store_, 0), (Rectangle{540, 1180, 170, 570}));
}

TEST_F(KeyframeCreationTest, TightFrameWithoutAHotRect_IsTheTargetAtTheOrigin) {
    slice(0.0, 1.0, OV_MERGE_TIGHT);
    EXPECT_EQ(worker_.createTightKeyframe(scene_.params(), store_, 0), box(0, 0, 640, 400));
}

TEST_F(KeyframeCreationTest, WideFrame_IsTheWindowAndNothingElse) {
    slice(0.0, 1.0, OV_MERGE_WIDE, kThing, box(100, 100, 800, 500)).map.spaces = {{box(100, 100, 900, 500), 9.0}};
    EXPECT_EQ(worker_.createWideKeyframe(scene_.params(), store_, 0), box(100, 100, 800, 500));
}

TEST_F(KeyframeCreationTest, WideFrame_DoesNotLeanOnItsOwnWalls) {
    // 200 by 100 padded by 440 by 300: evenly, and not by the window, which is no window to the framing.
    slice(0.0, 1.0, OV_MERGE_WIDE, {}, box(500, 300, 200, 100));
    EXPECT_EQ(worker_.createWideKeyframe(scene_.params(), store_, 0), box(280, 150, 640, 400));
}

TEST_F(KeyframeCreationTest, OffWindowFrame_FollowsValueButNoWindow) {
    // Padding 540 by 300; the value takes 100 on the right, which leaves 440: 220 on either side.
    slice(0.0, 1.0, OV_MERGE_OFF_WINDOW, kThing, box(540, 240, 700, 500)).map.spaces = {
        {Rectangle{600, 800, 300, 400}, 5.0}};
    EXPECT_EQ(worker_.createOffWindowKeyframe(scene_.params(), store_, 0), (Rectangle{380, 1020, 150, 550}));
}

TEST_F(KeyframeCreationTest, OffWindowFrameWithoutAHotRect_IsTheWholeRegion) {
    slice(0.0, 1.0, OV_MERGE_OFF_WINDOW, box(5, 5, 0, 100));
    EXPECT_EQ(worker_.createOffWindowKeyframe(scene_.params(), store_, 0), kScreen);
}

TEST_F(KeyframeCreationTest, FullScreenFrame_IsTheRegionInTheTargetsAspect) {
    slice(0.0, 1.0, OV_MERGE_FULL_SCREEN, kThing, kThing).map.spaces = {{kThing, 9.0}};
    EXPECT_EQ(worker_.createFullScreenKeyframe(scene_.params(), store_, 0), kScreen);
    // 9:16 on a region of 1280 by 800: 0.5625 x 800 = 450 wide, 415 off either side.
    scene_.target(225, 400);
    EXPECT_EQ(worker_.createFullScreenKeyframe(scene_.params(), store_, 0), (Rectangle{415, 865, 0, 800}));
}

TEST_F(KeyframeCreationTest, Frames_AreLocalToTheFirstRegion) {
    scene_.params().recordingRegions()[0].rect = box(100, 50, 1280, 800);
    slice(0.0, 1.0, OV_MERGE_TIGHT, kThing, {});
    EXPECT_EQ(worker_.createTightKeyframe(scene_.params(), store_, 0), kThingFrame);
    EXPECT_EQ(worker_.createFullScreenKeyframe(scene_.params(), store_, 0), kScreen);
}

TEST_F(KeyframeCreationTest, NoRegion_IsTheStandardLibrarysOutOfRange) {
    scene_.params().recordingRegions().clear();
    slice(0.0, 1.0, OV_MERGE_TIGHT, kThing);
    EXPECT_THROW(worker_.createTightKeyframe(scene_.params(), store_, 0), std::out_of_range);
}

// ---- The first slice ----

TEST_F(KeyframeCreationTest, NoSlices_GiveNoKeyframes) { EXPECT_TRUE(keyframes().empty()); }

TEST_F(KeyframeCreationTest, OnlySlice_NeedsMoreThanTwoFadesAndTwoSeconds) {
    slice(0.0, 4.0, OV_MERGE_TIGHT, kThing);
    EXPECT_TRUE(keyframes().empty());
    EXPECT_EQ(store_.slices[0].start, 0.0) << "and keeps its start";
    store_.slices[0].stop = 4.001;
    EXPECT_EQ(keyframes(), (Keyframes{{2000, kThingFrame}}));
    EXPECT_EQ(store_.slices[0].start, 2.0);
    EXPECT_THAT(store_.keyframeSlices, ElementsAre(0u));
}

TEST_F(KeyframeCreationTest, FirstSliceAmongOthers_NeedsSixSecondsMore) {
    slice(0.0, 10.0, OV_MERGE_TIGHT, kThing);
    slice(10.0, 20.0, OV_MERGE_NONE);
    EXPECT_TRUE(keyframes().empty());
    EXPECT_EQ(store_.slices[0].start, 0.0);
    store_.slices[0].stop = 10.001;
    EXPECT_EQ(keyframes(), (Keyframes{{2000, kThingFrame}}));
}

TEST_F(KeyframeCreationTest, OnlySliceAtOtherFades_NeedsTwoFadesAndTwoSeconds) {
    store_.fadeSeconds = 0.5; // 3 s; the move starts at 1.5 s
    slice(0.0, 3.0, OV_MERGE_TIGHT, kThing);
    EXPECT_TRUE(keyframes().empty());
    store_.slices[0].stop = 3.001;
    EXPECT_EQ(keyframes(), (Keyframes{{1500, kThingFrame}}));
    EXPECT_EQ(store_.slices[0].start, 1.5);
    store_.fadeSeconds = 3.0; // 8 s; the move starts at 4 s
    store_.keyframes.clear();
    store_.slices = {};
    slice(0.0, 8.0, OV_MERGE_TIGHT, kThing);
    EXPECT_TRUE(keyframes().empty());
    store_.slices[0].stop = 8.001;
    EXPECT_EQ(keyframes(), (Keyframes{{4000, kThingFrame}}));
}

TEST_F(KeyframeCreationTest, FirstSliceAmongOthersAtOtherFades_NeedsTwoFadesAndEightSeconds) {
    store_.fadeSeconds = 0.5; // 9 s
    slice(0.0, 9.0, OV_MERGE_TIGHT, kThing);
    slice(9.0, 20.0, OV_MERGE_NONE);
    EXPECT_TRUE(keyframes().empty());
    store_.slices[0].stop = 9.001;
    EXPECT_EQ(keyframes(), (Keyframes{{1500, kThingFrame}}));
    store_.fadeSeconds = 3.0; // 14 s
    store_.keyframes.clear();
    store_.slices[0].start = 0.0;
    store_.slices[0].stop = 14.0;
    EXPECT_TRUE(keyframes().empty());
    store_.slices[0].stop = 14.001;
    EXPECT_EQ(keyframes(), (Keyframes{{4000, kThingFrame}}));
}

TEST_F(KeyframeCreationTest, FirstSliceAmongDeadOthers_CountsThem) {
    slice(0.0, 10.0, OV_MERGE_TIGHT, kThing);
    slice(4.0, 10.0, OV_MERGE_TIGHT, kThing).mergeId = -1;
    EXPECT_TRUE(keyframes().empty());
}

TEST_F(KeyframeCreationTest, FirstSlice_CountsFromItsOwnStart) {
    slice(30.0, 34.0, OV_MERGE_TIGHT, kThing);
    EXPECT_TRUE(keyframes().empty());
    store_.slices[0].stop = 34.5;
    EXPECT_EQ(keyframes(), (Keyframes{{32000, kThingFrame}}));
}

TEST_F(KeyframeCreationTest, FirstSlice_TakesItsFrameByMode) {
    const Rectangle& window = kWindow;
    const std::vector<std::pair<int, Keyframes>> cases = {
        {OV_MERGE_NONE, {}},
        {OV_MERGE_TIGHT, {{2000, kThingInWindow}}},
        {OV_MERGE_WIDE, {{2000, window}}},
        {OV_MERGE_LOOSE, {{2000, kThingFrame}}},
        {OV_MERGE_FORCED, {{2000, kThingFrame}}},
        {OV_MERGE_OFF_WINDOW, {{2000, kThingFrame}}},
        {OV_MERGE_FULL_SCREEN, {}},
    };
    for (const auto& [mode, expected] : cases) {
        store_ = {};
        store_.fadeSeconds = 1.0;
        slice(0.0, 9.0, mode, kThing, window);
        EXPECT_EQ(keyframes(), expected) << "mode " << mode;
        EXPECT_EQ(store_.slices[0].start, 2.0) << "moved in every mode";
    }
}

TEST_F(KeyframeCreationTest, FirstSliceThatShowsTheWholeRegion_GivesNoKeyframe) {
    slice(0.0, 9.0, OV_MERGE_WIDE, {}, kScreen);
    EXPECT_TRUE(keyframes().empty());
    EXPECT_EQ(store_.slices[0].start, 2.0);
}

TEST_F(KeyframeCreationTest, FirstSliceWithAFrameOfTheRegionsArea_GivesNoKeyframe) {
    // A target wider than the region frames a thing in 1600 by 640, as many pixels as 1280 by 800.
    scene_.target(1600, 640);
    slice(0.0, 9.0, OV_MERGE_TIGHT, kThing);
    EXPECT_TRUE(keyframes().empty());
    scene_.target(1600, 641);
    EXPECT_EQ(keyframes(), (Keyframes{{4000, box(0, 30, 1600, 641)}})); // 7 s of the slice are left
}

TEST_F(KeyframeCreationTest, FirstSlice_IsNotPulledToThePause) {
    stroke(0, 100);
    stroke(1000, 9000);
    slice(0.0, 9.0, OV_MERGE_TIGHT, kThing);
    EXPECT_EQ(keyframes(), (Keyframes{{2000, kThingFrame}}));
}

// ---- The other slices ----

TEST_F(KeyframeCreationTest, LaterSlices_TakeTheirFramesByMode) {
    const Rectangle& window = kWindow;
    const std::vector<std::pair<int, Keyframes>> cases = {
        {OV_MERGE_NONE, {}},
        {OV_MERGE_TIGHT, {{5000, kThingInWindow}}},
        {OV_MERGE_WIDE, {{5000, window}}},
        {OV_MERGE_LOOSE, {{5000, kThingFrame}}},
        {OV_MERGE_FORCED, {{5000, kThingFrame}}},
        {OV_MERGE_OFF_WINDOW, {{5000, kThingFrame}}},
        {OV_MERGE_FULL_SCREEN, {{5000, kScreen}}},
    };
    for (const auto& [mode, expected] : cases) {
        store_ = {};
        store_.fadeSeconds = 1.0;
        quietStart();
        slice(5.0, 9.0, mode, kThing, window);
        EXPECT_EQ(keyframes(), expected) << "mode " << mode;
    }
}

TEST_F(KeyframeCreationTest, DeadAndBlankSlices_ArePassedOver) {
    quietStart();
    slice(5.0, 10.0, OV_MERGE_TIGHT, kThing).mergeId = -1;
    slice(10.0, 15.0, OV_MERGE_TIGHT, kThing).blank = true;
    slice(15.0, 20.0, OV_MERGE_TIGHT, kThing).mergeId = 3;
    EXPECT_EQ(keyframes(), (Keyframes{{14700, kThingFrame}}));
    EXPECT_THAT(store_.keyframeSlices, ElementsAre(3u));
    EXPECT_EQ(store_.slices[1].start, 5.0);
    EXPECT_EQ(store_.slices[2].start, 10.0);
}

TEST_F(KeyframeCreationTest, FrameOfTheOneBefore_IsNotRepeated) {
    quietStart();
    slice(5.0, 10.0, OV_MERGE_TIGHT, kThing);
    slice(10.0, 15.0, OV_MERGE_TIGHT, kThing);
    slice(15.0, 20.0, OV_MERGE_TIGHT, kOtherThing);
    slice(20.0, 25.0, OV_MERGE_TIGHT, kThing);
    EXPECT_EQ(keyframes(), (Keyframes{{5000, kThingFrame}, {14700, kOtherFrame}, {19700, kThingFrame}}));
    EXPECT_THAT(store_.keyframeSlices, ElementsAre(1u, 3u, 4u));
    EXPECT_EQ(store_.slices[2].start, 9.7) << "moved, though it gives no keyframe";
}

TEST_F(KeyframeCreationTest, FrameOfTheFirstSlice_IsNotRepeatedEither) {
    slice(0.0, 11.0, OV_MERGE_TIGHT, kThing);
    slice(11.0, 15.0, OV_MERGE_TIGHT, kThing);
    slice(15.0, 20.0, OV_MERGE_FULL_SCREEN);
    EXPECT_EQ(keyframes(), (Keyframes{{2000, kThingFrame}, {14700, kScreen}}));
}

TEST_F(KeyframeCreationTest, UnclassifiedSlice_KeepsItsStart) {
    quietStart();
    slice(5.0, 10.0, OV_MERGE_TIGHT, kThing);
    slice(10.0, 15.0, OV_MERGE_NONE);
    run();
    EXPECT_EQ(store_.slices[2].start, 10.0);
}

TEST_F(KeyframeCreationTest, KeyframeFlag_PlaysNoPart) {
    quietStart();
    slice(5.0, 10.0, OV_MERGE_TIGHT, kThing).keyframe = true;
    slice(10.0, 15.0, OV_MERGE_TIGHT, kThing).keyframe = true;
    EXPECT_EQ(keyframes().size(), 1u);
}

// ---- When ----

// Slice 2, at 20, behind one that starts at `before`: the floor is `before` + 2.
class ZoomTimeTest : public KeyframeCreationTest {
protected:
    double startAfterAdjusting(double before = 0.0) {
        store_.slices.clear();
        slice(0.0, before, OV_MERGE_TIGHT);
        slice(before, 20.0, OV_MERGE_TIGHT);
        slice(20.0, 30.0, OV_MERGE_TIGHT);
        worker_.adjustZoomTime(store_, parser_, 2);
        return store_.slices[2].start;
    }
};

TEST_F(ZoomTimeTest, WithoutStrokes_LeadsByAThirdOfASecond) { EXPECT_EQ(startAfterAdjusting(), 20.0 - 0.3); }

TEST_F(ZoomTimeTest, StrokeThatBegan_LeadsFromItsStartWithinTheLimits) {
    const std::vector<std::pair<long long, double>> cases = {
        {15000, 17.0},   // 5 s before: 3 s are the most
        {16999, 17.0},   // just beyond the most
        {17000, 17.0},   // the most
        {17001, 17.001}, // just within
        {18500, 18.5},   // where the cursor set off
        {19699, 19.699}, // just within
        {19700, 19.7},   // the least
        {19701, 19.7},   // just beyond the least
        {19900, 19.7},   // 0.1 s before: 0.3 s are the least
        {20100, 19.7},   // not begun yet
    };
    for (const auto& [first, expected] : cases) {
        parser_.keptStrokes.clear();
        stroke(1000, 2000);
        stroke(first, 21000);
        EXPECT_DOUBLE_EQ(startAfterAdjusting(), expected) << "stroke from " << first;
    }
}

TEST_F(ZoomTimeTest, StrokeWithNothingBeforeIt_GivesNoPause) {
    stroke(18500, 21000);
    EXPECT_EQ(startAfterAdjusting(), 19.7);
}

TEST_F(ZoomTimeTest, Floor_KeepsTheMoveOffTheOneBefore) {
    EXPECT_EQ(startAfterAdjusting(17.5), 19.7) << "floor 19.5";
    EXPECT_EQ(startAfterAdjusting(17.75), 19.75) << "floor 19.75";
    EXPECT_EQ(startAfterAdjusting(18.0), 20.0) << "floor 20: no move";
    EXPECT_EQ(startAfterAdjusting(19.0), 20.0) << "floor 21: never later";
}

TEST_F(ZoomTimeTest, FloorAtOtherFades_IsTheFadeAndASecondBehindTheSliceBefore) {
    store_.fadeSeconds = 0.5;
    EXPECT_EQ(startAfterAdjusting(18.0), 19.7) << "floor 19.5";
    EXPECT_EQ(startAfterAdjusting(18.25), 19.75) << "floor 19.75";
    EXPECT_EQ(startAfterAdjusting(18.5), 20.0) << "floor 20: no move";
    store_.fadeSeconds = 3.0;
    EXPECT_EQ(startAfterAdjusting(15.5), 19.7) << "floor 19.5";
    EXPECT_EQ(startAfterAdjusting(15.75), 19.75) << "floor 19.75";
    EXPECT_EQ(startAfterAdjusting(16.0), 20.0) << "floor 20: no move";
}

TEST_F(ZoomTimeTest, Floor_IsTheSliceBeforeWhateverItsState) {
    slice(0.0, 5.0, OV_MERGE_TIGHT);
    slice(18.75, 20.0, OV_MERGE_TIGHT).mergeId = -1;
    store_.slices.back().blank = true;
    slice(20.0, 30.0, OV_MERGE_TIGHT);
    worker_.adjustZoomTime(store_, parser_, 2);
    EXPECT_EQ(store_.slices[2].start, 20.0);
}

TEST_F(ZoomTimeTest, Floor_CountsFromTheStartThatTheOneBeforeWasMovedTo) {
    quietStart();
    slice(5.0, 10.0, OV_MERGE_TIGHT, kThing);
    slice(10.0, 11.75, OV_MERGE_TIGHT, kOtherThing); // leads by 0.3 s, from 9.7: the floor behind it is 11.7
    slice(11.75, 20.0, OV_MERGE_TIGHT, kThing);
    EXPECT_EQ(keyframes(), (Keyframes{{5000, kThingFrame}, {9700, kOtherFrame}, {11700, kThingFrame}}));
}

TEST_F(ZoomTimeTest, FirstTwoSlices_NeverMove) {
    stroke(1000, 2000);
    stroke(17000, 21000);
    slice(20.0, 25.0, OV_MERGE_TIGHT);
    slice(20.0, 25.0, OV_MERGE_TIGHT);
    worker_.adjustZoomTime(store_, parser_, 0);
    worker_.adjustZoomTime(store_, parser_, 1);
    EXPECT_EQ(store_.slices[0].start, 20.0);
    EXPECT_EQ(store_.slices[1].start, 20.0);
}

TEST_F(ZoomTimeTest, StopOfTheSliceBefore_IsLeftAlone) {
    startAfterAdjusting();
    EXPECT_EQ(store_.slices[1].stop, 20.0);
}

} // namespace
} // namespace OrvantaNS
