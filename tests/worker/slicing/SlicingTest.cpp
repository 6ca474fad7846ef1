#include "OrvantaWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "EngineErrors.h"
#include "Random.h"
#include "RecordingReporter.h"
#include "Scene.h"
#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;
using testing::expectError;
using testing::RecordingReporter;

OV_VALUE_OBJECT object(std::uint32_t type, double start, double stop, Rectangle rect) {
    return {type, start, stop, rect, 0.0};
}

const Rectangle kHere = box(0, 0, 200, 200);
const Rectangle kFarAway = box(900, 600, 200, 200);

// A store with one zone from 0 to 100 s, and the slice that starts at 0.
class DetectSliceTest : public ::testing::Test {
protected:
    DetectSliceTest() { store_.liveZones = {{box(0, 0, 1280, 800), 0.0, 100.0}}; }

    OV_FOCUS_SLICE slice(std::vector<OV_VALUE_OBJECT> objects, double time = 0.0) {
        store_.valueObjects = std::move(objects);
        store_.firstActiveObject = 0;
        store_.nextObject = 0;
        ValueSpace space(&store_);
        return worker_.detectSlice(store_, space, time);
    }
    void window(double start, std::uint32_t type = ActiveWindow) {
        store_.windowObjects.push_back(object(type, start, 100.0, kHere));
    }

    OrvantaWorker worker_;
    OV_DATA_STORE store_;
};

// ---- Blank slices ----

TEST_F(DetectSliceTest, NothingHappensAndNoTrigger_IsBlankForThreeSeconds) {
    // An active window is worth 2 a second, too little for the probe and for a trigger.
    const OV_FOCUS_SLICE s = slice({object(ActiveWindow, 0.0, 50.0, kHere)});
    EXPECT_TRUE(s.blank);
    EXPECT_EQ(s.start, 0.0);
    EXPECT_EQ(s.stop, 3.0);
    EXPECT_TRUE(s.map.spaces.empty());
    EXPECT_EQ(s.map.span, 0.0);
}

TEST_F(DetectSliceTest, NothingHappens_RunsToTheNextTriggerWithinThreeSeconds) {
    EXPECT_EQ(slice({object(Click, 1.5, 1.6, kHere)}).stop, 1.5);
    EXPECT_EQ(slice({object(Click, 2.999, 3.1, kHere)}).stop, 2.999);
    EXPECT_EQ(slice({object(Click, 3.001, 3.1, kHere)}).stop, 3.0);
    EXPECT_EQ(slice({object(ClickDirty, 1.0, 1.1, kHere), object(Click, 1.5, 1.6, kHere)}).stop, 1.5);
}

// A click of no length at 0.1 adds 7 x (F(0.1) - F(0)) = 7 x (0.1 - e^-3.9 + e^-4) = 0.686 to the probe, whose
// threshold is 4 x 0.2 = 0.8.
TEST_F(DetectSliceTest, TriggerWithinAProbeThatSawNothing_LeavesTheBlankSliceItsLeastLength) {
    const OV_FOCUS_SLICE s = slice({object(Click, 0.1, 0.1, kHere)});
    EXPECT_TRUE(s.blank);
    EXPECT_EQ(s.stop, 0.2);
}

// A change of no length is worth 5 x (F(0.2) - F(0)) = 5 x (0.2 - e^-0.3 + e^-0.5) = 0.33 to the probe.
TEST_F(DetectSliceTest, TriggerThatStartsWithABlankSlice_DoesNotEndIt) {
    const OV_FOCUS_SLICE s = slice({object(IdleDirty, 0.0, 0.0, kHere)});
    EXPECT_TRUE(s.blank);
    EXPECT_EQ(s.stop, 3.0);
    EXPECT_EQ(slice({object(IdleDirty, 0.0, 0.0, kHere), object(IdleDirty, 0.0, 0.0, kFarAway)}).stop, 3.0);
    EXPECT_EQ(slice({object(IdleDirty, 0.0, 0.0, kHere), object(IdleDirty, 1.0, 1.0, kFarAway)}).stop, 1.0);
}

TEST_F(DetectSliceTest, Triggers_AreSearchedFromTheFirstActiveObjectOn) {
    const auto stopFrom = [&](std::vector<OV_VALUE_OBJECT> objects, std::uint32_t firstActive, std::uint32_t next,
                              double time) {
        store_.valueObjects = std::move(objects);
        store_.firstActiveObject = firstActive;
        store_.nextObject = next;
        ValueSpace space(&store_);
        return worker_.detectSlice(store_, space, time).stop;
    };
    const std::vector<OV_VALUE_OBJECT> clicks = {object(ActiveWindow, 0.0, 50.0, kHere),
                                                 object(Click, 10.5, 10.6, kHere), object(Click, 11.0, 11.1, kHere)};
    EXPECT_EQ(stopFrom(clicks, 0, 0, 10.0), 10.5);
    EXPECT_EQ(stopFrom(clicks, 1, 1, 10.0), 10.5);
    EXPECT_EQ(stopFrom(clicks, 2, 2, 10.0), 11.0);
    EXPECT_EQ(stopFrom(clicks, 3, 3, 10.0), 13.0);
    // The same behind a probe that found something: each of the two changes would cut.
    const std::vector<OV_VALUE_OBJECT> changes = {object(Hover, 0.0, 0.2, kHere), object(IdleDirty, 1.0, 1.0, kFarAway),
                                                  object(IdleDirty, 1.5, 1.5, kFarAway)};
    EXPECT_EQ(stopFrom(changes, 0, 0, 0.0), 1.0);
    EXPECT_EQ(stopFrom(changes, 1, 0, 0.0), 1.0);
    EXPECT_EQ(stopFrom(changes, 2, 0, 0.0), 1.5);
    EXPECT_DOUBLE_EQ(stopFrom(changes, 3, 0, 0.0), 1.7);
}

TEST_F(DetectSliceTest, BlankSliceWithATimeAboveZero_CountsFromIt) {
    const OV_FOCUS_SLICE s = slice({object(ActiveWindow, 0.0, 50.0, kHere)}, 40.0);
    EXPECT_EQ(s.start, 40.0);
    EXPECT_EQ(s.stop, 43.0);
}

// ---- The probe's strength ----

// A drag is worth 10 a second: 2 in the probe, which carries 2 / (0.2 x 4) = 2.5 s beyond it.
TEST_F(DetectSliceTest, Length_FollowsFromTheDensityOfTheProbe) {
    const OV_FOCUS_SLICE s = slice({object(Drag, 0.0, 10.0, kHere)});
    EXPECT_FALSE(s.blank);
    EXPECT_DOUBLE_EQ(s.stop, 2.7);
    ASSERT_EQ(s.map.spaces.size(), 1u);
    EXPECT_EQ(s.map.spaces[0].first, kHere);
    EXPECT_DOUBLE_EQ(s.map.spaces[0].second, 27.0);
    EXPECT_DOUBLE_EQ(s.map.span, 2.7);
}

TEST_F(DetectSliceTest, ProbeThatJustReachesTheThreshold_CarriesOneSecond) {
    // Two windows of one place, 2 a second each.
    const OV_FOCUS_SLICE s = slice({object(ActiveWindow, 0.0, 10.0, kHere), object(ActiveWindow, 0.0, 10.0, kHere)});
    EXPECT_FALSE(s.blank);
    EXPECT_DOUBLE_EQ(s.stop, 1.2);
}

TEST_F(DetectSliceTest, StrongProbe_CarriesThreeSecondsAtMost) {
    EXPECT_DOUBLE_EQ(
        slice({object(Drag, 0.0, 10.0, kHere), object(Drag, 0.0, 10.0, kHere), object(Drag, 0.0, 10.0, kHere)}).stop,
        3.2);
}

TEST_F(DetectSliceTest, OtherFields_StayAsMade) {
    const OV_FOCUS_SLICE s = slice({object(Drag, 0.0, 10.0, kHere)});
    EXPECT_FALSE(s.keyframe);
    EXPECT_FALSE(s.blocked);
    EXPECT_EQ(s.mergeId, 0);
    EXPECT_EQ(s.mergeType, 0);
    EXPECT_FALSE(s.breakdown.identified);
    EXPECT_EQ(s.breakdown.windowRect, Rectangle{});
    EXPECT_TRUE(s.map.tier4Rects.empty());
}

// Three windows flash for the probe: 1.2 carries 1.5 s, over which 1.2 and their tails (6 x 0.005) make less than one
// value per second.
TEST_F(DetectSliceTest, FullSummaryEmpty_IsBlankAndKeepsItsSpan) {
    const OV_VALUE_OBJECT flash = object(ActiveWindow, 0.0, 0.2, kHere);
    const OV_FOCUS_SLICE s = slice({flash, flash, flash});
    EXPECT_TRUE(s.blank);
    EXPECT_DOUBLE_EQ(s.stop, 1.7);
    EXPECT_TRUE(s.map.spaces.empty());
    EXPECT_DOUBLE_EQ(s.map.span, 1.7);
}

// ---- Looking ahead ----

// The focus of these: a hover that ends with the probe, 6 x 0.2 = 1.2, which carries 1.5 s, to 1.7. Its own life ends at
// 0.7, so that a look ahead from 1.0 on finds only what comes then.
OV_VALUE_OBJECT briefFocus(Rectangle rect = kHere) { return object(Hover, 0.0, 0.2, rect); }

TEST_F(DetectSliceTest, TriggerInsideTheFocus_NeverShortens) {
    EXPECT_DOUBLE_EQ(slice({briefFocus()}).stop, 1.7);
    EXPECT_DOUBLE_EQ(slice({briefFocus(), object(IdleDirty, 1.0, 1.0, box(50, 50, 20, 20))}).stop, 1.7);
    EXPECT_DOUBLE_EQ(slice({briefFocus(), object(Drag, 1.0, 50.0, kHere), object(Menu, 1.1, 50.0, kHere)}).stop, 1.7);
}

// An idle change of no length is worth 5 x (F(0.5) - F(0)) = 5 x 0.107 = 0.53 in the second after it: the look ahead
// finds nothing, and the slice is cut unless the change counts as inside.
TEST_F(DetectSliceTest, TriggerCountsAsInsideFrom95Percent) {
    const Rectangle focus = box(0, 0, 100, 100);
    const auto stopWith = [&](Rectangle trigger) {
        return slice({briefFocus(focus), object(IdleDirty, 1.0, 1.0, trigger)}).stop;
    };
    EXPECT_DOUBLE_EQ(stopWith(box(4, 0, 100, 100)), 1.7) << "96 percent";
    EXPECT_DOUBLE_EQ(stopWith(box(5, 0, 100, 100)), 1.7) << "95 percent";
    EXPECT_EQ(stopWith(box(6, 0, 100, 100)), 1.0) << "94 percent";
    // 18 of 19 pixels are 94.7 percent, but 95 x 19 / 100 is rounded down to 18.
    EXPECT_DOUBLE_EQ(stopWith(box(82, 0, 19, 1)), 1.7);
    EXPECT_EQ(stopWith(box(83, 0, 19, 1)), 1.0) << "17 of 19";
    EXPECT_DOUBLE_EQ(stopWith(box(900, 600, 0, 50)), 1.7) << "an empty trigger has nothing outside";
}

// 94 percent of a focus of 8K: the product with 95 does not fit 32 bits, and would call it inside if it wrapped.
TEST_F(DetectSliceTest, ShareOfALargeTrigger_IsWorkedOutWide) {
    const Rectangle focus = box(0, 0, 7680, 4320);
    store_.liveZones[0].rect = focus;
    EXPECT_DOUBLE_EQ(slice({briefFocus(focus), object(IdleDirty, 1.0, 1.0, box(384, 0, 7680, 4320))}).stop, 1.7);
    EXPECT_EQ(slice({briefFocus(focus), object(IdleDirty, 1.0, 1.0, box(385, 0, 7680, 4320))}).stop, 1.0);
}

TEST_F(DetectSliceTest, LookAheadFindsNothing_CutsAtTheTrigger) {
    EXPECT_EQ(slice({briefFocus(), object(IdleDirty, 1.0, 1.0, kFarAway)}).stop, 1.0);
}

// A drag of a second is worth 10 over the look ahead: the focus is where it is.
TEST_F(DetectSliceTest, LookAheadFindsTheFocusWithin127Pixels_ChangesNothing) {
    const auto stopWith = [&](Rectangle trigger) {
        return slice({briefFocus(), object(Drag, 1.0, 3.0, trigger)}).stop;
    };
    EXPECT_DOUBLE_EQ(stopWith(box(127, 0, 200, 200)), 1.7);
    EXPECT_EQ(stopWith(box(128, 0, 200, 200)), 1.0);
    EXPECT_DOUBLE_EQ(stopWith(box(0, 127, 200, 200)), 1.7);
    EXPECT_EQ(stopWith(box(0, 128, 200, 200)), 1.0);
    EXPECT_DOUBLE_EQ(stopWith(box(0, 0, 327, 200)), 1.7) << "only the right edge moved";
    EXPECT_EQ(stopWith(box(0, 0, 328, 200)), 1.0);
}

TEST_F(DetectSliceTest, TriggerAtOrBehindTheProvisionalEnd_IsNotLookedAt) {
    EXPECT_EQ(slice({briefFocus(), object(Drag, 1.69, 3.0, kFarAway)}).stop, 1.69);
    EXPECT_EQ(store_.nextObject, 1u) << "the look ahead loads it";
    const double end = slice({briefFocus()}).stop;
    EXPECT_DOUBLE_EQ(end, 0.2 + 1.2 / ((0.2 - 0.0) * 4.0));
    EXPECT_EQ(slice({briefFocus(), object(Drag, end, 3.0, kFarAway)}).stop, end);
    EXPECT_EQ(store_.nextObject, 0u) << "no look ahead";
}

TEST_F(DetectSliceTest, TriggerWithinTheProbe_IsNotLookedAt) {
    // It starts at 0.1, so the probe has 1.2 and, elsewhere, 0.5 of it; only what starts after 0.2 can cut.
    EXPECT_DOUBLE_EQ(slice({briefFocus(), object(IdleDirty, 0.1, 0.2, kFarAway)}).stop, 1.7);
    EXPECT_DOUBLE_EQ(slice({briefFocus(), object(IdleDirty, 0.2, 0.2, kFarAway)}).stop, 1.7);
    EXPECT_EQ(slice({briefFocus(), object(IdleDirty, 0.201, 0.201, kFarAway)}).stop, 0.201);
}

// The first trigger, near the focus, wins the look ahead from 1.0 to 2.0 with 10 x 40000 against 5 x 60000 of the
// second, which starts at 1.5. From 1.5 to 2.5 it would be 9.1 x 40000 against 10 x 60000.
TEST_F(DetectSliceTest, AfterALookAhead_TheSearchGoesOnBehindIt) {
    const OV_VALUE_OBJECT nearby = object(Drag, 1.0, 2.0, box(100, 0, 200, 200));
    const OV_VALUE_OBJECT distant = object(Drag, 1.5, 3.0, box(700, 500, 300, 200));
    EXPECT_DOUBLE_EQ(slice({briefFocus(), nearby, distant}).stop, 1.7);
    EXPECT_EQ(slice({briefFocus(), distant}).stop, 1.5) << "alone it cuts";
}

TEST_F(DetectSliceTest, AfterATriggerInsideTheFocus_TheSearchGoesOnFromTheOldBound) {
    const OV_VALUE_OBJECT inside = object(IdleDirty, 1.0, 1.0, box(50, 50, 20, 20));
    EXPECT_EQ(slice({briefFocus(), inside, object(Drag, 1.5, 3.0, kFarAway)}).stop, 1.5);
}

// ---- Cuts ----

TEST_F(DetectSliceTest, ZoneStop_CutsEverySlice) {
    store_.liveZones[0].stop = 0.15;
    EXPECT_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 0.15);
    EXPECT_EQ(slice({object(ActiveWindow, 0.0, 10.0, kHere)}).stop, 0.15);
    store_.liveZones[0].stop = 2.0;
    EXPECT_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 2.0);
}

TEST_F(DetectSliceTest, ZoneInWork_IsTheCurrentOne) {
    store_.liveZones.push_back({box(0, 0, 1280, 800), 0.0, 1.0});
    store_.currentZone = 1;
    EXPECT_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 1.0);
}

TEST_F(DetectSliceTest, NewWindow_CutsBlankAndOtherSlices) {
    window(1.0);
    EXPECT_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 1.0);
    EXPECT_EQ(slice({object(ActiveWindow, 0.0, 10.0, kHere)}).stop, 1.0);
}

TEST_F(DetectSliceTest, NewWindowWithinTheProbe_CutsNothingAndHidesTheNextOne) {
    window(0.2);
    EXPECT_DOUBLE_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 2.7);
    window(1.0);
    EXPECT_DOUBLE_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 2.7);
    store_.windowObjects[0].start = 0.201;
    EXPECT_DOUBLE_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 0.201);
}

TEST_F(DetectSliceTest, WindowThatStartsWithTheSlice_IsNoNewWindow) {
    window(0.0);
    window(1.0);
    EXPECT_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 1.0);
}

TEST_F(DetectSliceTest, OtherWindowObjects_CutNothing) {
    window(1.0, ForeAnimate);
    window(1.0, FullScreenDirty);
    EXPECT_DOUBLE_EQ(slice({object(Drag, 0.0, 10.0, kHere)}).stop, 2.7);
}

// ---- The walk ----

std::vector<std::pair<double, double>> spans(const OV_DATA_STORE& store) {
    std::vector<std::pair<double, double>> result;
    for (const OV_FOCUS_SLICE& s : store.slices) {
        result.emplace_back(s.start, s.stop);
    }
    return result;
}

using Spans = std::vector<std::pair<double, double>>;

OV_DATA_STORE storeWithZones(std::vector<std::pair<double, double>> zones, std::vector<OV_VALUE_OBJECT> objects) {
    OV_DATA_STORE store;
    for (const auto& [start, stop] : zones) {
        store.liveZones.push_back({box(0, 0, 1280, 800), start, stop});
    }
    store.valueObjects = std::move(objects);
    return store;
}

TEST(SliceTimeTest, NoObjects_Fails) {
    OV_DATA_STORE store = storeWithZones({{0.0, 10.0}}, {});
    expectError([&] { OrvantaWorker().sliceTime(store); }, OVERR_NO_KEYFRAMES, "No keyframes were created!");
}

TEST(SliceTimeTest, ZoneWithoutTime_GetsNoSlices) {
    OV_DATA_STORE store = storeWithZones({{0.0, 0.0}, {9.0, 4.0}}, {object(Click, 0.0, 0.1, kHere)});
    OrvantaWorker().sliceTime(store);
    EXPECT_TRUE(store.slices.empty());
}

TEST(SliceTimeTest, Slices_MeetEndToEndAndZonesDoNot) {
    OV_DATA_STORE store = storeWithZones({{0.0, 7.0}, {10.0, 14.0}}, {object(ActiveWindow, 0.0, 50.0, kHere)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(spans(store), (Spans{{0.0, 3.0}, {3.0, 6.0}, {6.0, 7.0}, {10.0, 13.0}, {13.0, 14.0}}));
    EXPECT_EQ(store.currentZone, 1u);
}

TEST(SliceTimeTest, ShortZone_GetsOneSlice) {
    OV_DATA_STORE store = storeWithZones({{1.0, 1.15}}, {object(Drag, 0.0, 10.0, kHere)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(spans(store), (Spans{{1.0, 1.15}}));
}

TEST(SliceTimeTest, OldIndices_AreForgotten) {
    OV_DATA_STORE store = storeWithZones({{0.0, 2.0}}, {object(Drag, 0.0, 10.0, kHere)});
    store.firstActiveObject = 7;
    store.nextObject = 9;
    OrvantaWorker().sliceTime(store);
    ASSERT_EQ(store.slices.size(), 1u);
    EXPECT_FALSE(store.slices[0].blank);
}

TEST(SliceTimeTest, ExpiredObjects_LeaveTheWalk) {
    // The hover's life ends at 0.7, within the first slice; the drag at 20 is in force when the walk ends.
    OV_DATA_STORE store =
        storeWithZones({{0.0, 21.0}}, {object(Hover, 0.0, 0.2, kHere), object(Drag, 20.0, 30.0, kFarAway)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(store.valueObjects[0].value, 0.0);
    EXPECT_EQ(store.firstActiveObject, 1u);
    EXPECT_EQ(store.nextObject, 1u);
    EXPECT_EQ(store.slices.back().start, 20.0);
    EXPECT_EQ(store.slices.back().stop, 21.0);
    EXPECT_EQ(store.slices.back().map.spaces.at(0).first, kFarAway);
}

TEST(SliceTimeTest, EachSliceStart_IsReportedInTheSlicingBand) {
    OV_DATA_STORE store = storeWithZones({{0.0, 9.0}}, {object(ActiveWindow, 0.0, 50.0, kHere)});
    RecordingReporter reporter;
    store.progress = &reporter;
    store.clipStop = 12.0;
    OrvantaWorker().sliceTime(store);
    EXPECT_THAT(reporter.percents, ElementsAre(20.0, 35.0, 50.0));
}

TEST(SliceTimeTest, Cancel_TakesEffectBeforeTheNextSlice) {
    OV_DATA_STORE store = storeWithZones({{0.0, 9.0}}, {object(ActiveWindow, 0.0, 50.0, kHere)});
    RecordingReporter reporter(2);
    store.progress = &reporter;
    store.clipStop = 12.0;
    expectError([&] { OrvantaWorker().sliceTime(store); }, OVERR_USER_CANCELLED, "Need String! User Cancelled");
    EXPECT_EQ(store.slices.size(), 2u);
    EXPECT_EQ(reporter.percents.size(), 2u);
}

TEST(SliceTimeTest, NextZone_GoesOnWithAnObjectStillInForce) {
    OV_DATA_STORE store =
        storeWithZones({{0.0, 1.0}, {4.0, 5.0}}, {object(Drag, 0.0, 3.0, kHere), object(Drag, 4.0, 5.0, kFarAway)});
    OrvantaWorker().sliceTime(store);
    // The first drag lives until 5: it stands in the second zone's space again, where the second between 4 and 5 has 10
    // of the drag of now and 10 x (F(2) - F(1)) = 10 x e^-1 = 3.7 of the drag of old.
    ASSERT_EQ(store.slices.back().map.spaces.size(), 2u);
    EXPECT_EQ(store.slices.back().start, 4.0);
    EXPECT_EQ(store.nextObject, 1u);
}

TEST(SliceTimeTest, NextZone_FindsALaterObject) {
    // The click's life ends at 4.1. In zone 1 the walk starts over from object 1.
    OV_DATA_STORE store = storeWithZones({{0.0, 1.0}, {50.0, 52.0}},
                                         {object(Click, 0.0, 0.1, kHere), object(Drag, 50.0, 60.0, kFarAway)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(store.slices.back().map.spaces.at(0).first, kFarAway);
}

// What is taken up is the zone's index: in zone 2 of these, number 2, although the drag in force there is number 1. The
// drag is never loaded, and the zone stays blank.
TEST(SliceTimeTest, NextZoneOfAHigherIndexThanTheObjects_MissesThem) {
    OV_DATA_STORE store = storeWithZones({{0.0, 3.0}, {10.0, 13.0}, {20.0, 23.0}},
                                         {object(Drag, 0.5, 12.0, kHere), object(Drag, 20.0, 23.0, kFarAway)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(store.slices.back().start, 20.0);
    EXPECT_EQ(store.slices.back().stop, 23.0);
    EXPECT_TRUE(store.slices.back().blank);
    EXPECT_EQ(store.nextObject, 2u);
}

TEST(SliceTimeTest, NextZoneWithoutASurvivor_MovesOnlyTheNextObject) {
    OV_DATA_STORE store =
        storeWithZones({{0.0, 1.0}, {50.0, 51.0}}, {object(Hover, 0.0, 0.1, kHere), object(Hover, 0.0, 0.1, kHere),
                                                    object(Hover, 0.0, 0.1, kHere)});
    OrvantaWorker().sliceTime(store);
    // Zone 0 ends with all three objects loaded and taken out: both indices at 2. Zone 1 writes 1 to the next object
    // alone, and the walk behind its one slice brings the first one down to it.
    EXPECT_EQ(store.nextObject, 1u);
    EXPECT_EQ(store.firstActiveObject, 1u);
    EXPECT_TRUE(store.slices.back().blank);
}

// Where zones that begin at these times, and have no length, leave the first active and the next object. The lives of
// the drags end 2 s behind their stops.
std::pair<unsigned, unsigned> indicesBehind(const std::vector<double>& zones, std::vector<OV_VALUE_OBJECT> objects) {
    OV_DATA_STORE store = storeWithZones({}, std::move(objects));
    store.firstActiveObject = 7; // of an earlier walk
    for (const double start : zones) {
        store.liveZones.push_back({box(0, 0, 1280, 800), start, start});
    }
    OrvantaWorker().sliceTime(store);
    EXPECT_TRUE(store.slices.empty());
    return {store.firstActiveObject, store.nextObject};
}

TEST(SliceTimeTest, ExpiredObject_TheIndexOfTheZoneIsTakenUpWhenALaterOneLives) {
    using Indices = std::pair<unsigned, unsigned>;
    const OV_VALUE_OBJECT expired = object(Drag, 0.0, 1.0, kHere);
    EXPECT_EQ(indicesBehind({50.0}, {expired}), Indices(0, 0));
    EXPECT_EQ(indicesBehind({50.0, 60.0}, {expired, object(Drag, 0.0, 90.0, kHere)}), Indices(1, 1));
    EXPECT_EQ(indicesBehind({50.0, 60.0}, {expired, object(Drag, 0.0, 57.75, kHere)}), Indices(0, 1));
    EXPECT_EQ(indicesBehind({50.0, 60.0}, {expired, object(Drag, 0.0, 58.0, kHere)}), Indices(1, 1))
        << "alive to the zone's very start";
}

TEST(SliceTimeTest, NextObjectInForceAtTheZonesStart_BecomesTheFirstActiveOne) {
    using Indices = std::pair<unsigned, unsigned>;
    const OV_VALUE_OBJECT expired = object(Drag, 0.0, 1.0, kHere);
    EXPECT_EQ(indicesBehind({50.0, 60.0, 70.0}, {expired, object(Drag, 0.0, 68.0, kHere)}), Indices(1, 1));
    EXPECT_EQ(indicesBehind({50.0, 60.0, 70.0}, {expired, object(Drag, 0.0, 67.75, kHere)}), Indices(1, 2));
    // The second zone finds no survivor and moves the next object alone; the third one, back in time, finds that in
    // force.
    EXPECT_EQ(indicesBehind({50.0, 60.0, 20.0}, {expired, object(Drag, 0.0, 28.0, kHere)}), Indices(1, 1));
}

TEST(SliceTimeTest, NextObjectBehindTheLast_StaysThere) {
    const OV_VALUE_OBJECT expired = object(Drag, 0.0, 1.0, kHere);
    EXPECT_EQ(indicesBehind({50.0, 60.0, 70.0, 80.0}, {expired, expired}), (std::pair<unsigned, unsigned>(0, 2)));
}

TEST(SliceTimeTest, TimeTooLargeForSeconds_EndsTheZoneAfterOneSlice) {
    OV_DATA_STORE store = storeWithZones({{1e17, 2e17}, {5.0, 6.0}}, {object(ActiveWindow, 0.0, 50.0, kHere)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(spans(store), (Spans{{1e17, 1e17}, {5.0, 6.0}}));
}

TEST(SliceTimeTest, InfiniteZones_End) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    OV_DATA_STORE store = storeWithZones({{-infinity, 0.0}, {-infinity, infinity}, {infinity, infinity}},
                                         {object(Drag, -infinity, infinity, kHere)});
    OrvantaWorker().sliceTime(store);
    EXPECT_EQ(store.slices.size(), 2u);
}

// ---- The search for triggers ----

// A slice as the worker makes it, with every search for a trigger over all objects from the first active one on.
OV_FOCUS_SLICE plainSlice(OV_DATA_STORE& store, ValueSpace& space, double time) {
    const OrvantaWorker worker;
    const auto valueOf = [&](double from, double to) {
        worker.loadObjects(store, {from, to}, space);
        worker.recalcValueInterval(store, {from, to}, space);
        return space.quickSummarize(to - from);
    };
    const double probeEnd = time + 0.2;
    const VS_VALUE_MAP probe = valueOf(time, probeEnd);
    const auto count = static_cast<unsigned>(store.valueObjects.size());
    OV_FOCUS_SLICE s;
    s.start = time;
    s.blank = probe.spaces.empty();
    if (s.blank) {
        const unsigned i = worker.getFirstTriggerObject(store, time, store.firstActiveObject);
        s.stop = i == count ? time + 3.0 : std::min(time + 3.0, std::max(store.valueObjects[i].start, probeEnd));
    } else {
        const Rectangle focus = probe.spaces[0].first;
        s.stop = probeEnd + std::min(3.0, probe.spaces[0].second / ((probeEnd - time) * 4.0));
        double bound = probeEnd;
        unsigned i = worker.getFirstTriggerObject(store, bound, store.firstActiveObject);
        while (i < count && store.valueObjects[i].start < s.stop) {
            const double start = store.valueObjects[i].start;
            const Rectangle rect = store.valueObjects[i].rect;
            if (area(intersection(rect, focus)) < 95 * area(rect) / 100) {
                bound = start + 1.0;
                const VS_VALUE_MAP ahead = valueOf(start, start + 1.0);
                if (ahead.spaces.size() != 1 || worker.detectMotion(ahead.spaces[0].first, focus, 128)) {
                    s.stop = start;
                    break;
                }
            }
            i = worker.getFirstTriggerObject(store, bound, i + 1);
        }
    }
    s.stop = std::min(s.stop, store.liveZones[store.currentZone].stop);
    const double window = worker.getNextWindowTime(store, time);
    if (window > probeEnd && window < s.stop) {
        s.stop = window;
    }
    if (!s.blank) {
        worker.recalcValueInterval(store, {time, s.stop}, space);
        s.map = space.summarize(s.stop - time);
        s.blank = s.map.spaces.empty();
    }
    return s;
}

// Objects of all types, many of them starting at one time, one of them in force for the whole zone.
OV_DATA_STORE generatedStore(std::uint64_t seed) {
    testing::Random random(seed);
    std::vector<OV_VALUE_OBJECT> objects = {object(ActiveWindow, 0.0, 40.0, box(0, 0, 800, 600))};
    for (int n = random.range(5, 50); n > 0; --n) {
        const double start = 0.25 * random.range(0, 140);
        const double length = random.chance(0.3) ? 0.0 : 0.25 * random.range(0, 12);
        const Rectangle rect =
            box({100 * random.range(0, 8), 100 * random.range(0, 5), 50 * random.range(1, 6), 50 * random.range(1, 6)});
        objects.push_back(
            object(static_cast<std::uint32_t>(random.range(Move, ClickWindow)), start, start + length, rect));
    }
    std::stable_sort(objects.begin(), objects.end(), CompareValueObjects);
    OV_DATA_STORE store = storeWithZones({{0.0, 40.0}}, std::move(objects));
    OrvantaWorker().filterWindows(store);
    return store;
}

TEST(SliceTimeTest, GeneratedStores_GetTheSlicesOfAPlainSearch) {
    const OrvantaWorker worker;
    std::size_t cut = 0; // slices that a trigger ends, at a quarter of a second
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        OV_DATA_STORE store = generatedStore(seed);
        OV_DATA_STORE plain = store;
        worker.sliceTime(store);
        ValueSpace space(&plain);
        for (double time = 0.0; time < 40.0;) {
            plain.slices.push_back(plainSlice(plain, space, time));
            time = plain.slices.back().stop;
            worker.advanceValueSpace(plain, time, space);
        }
        ASSERT_EQ(store.slices.size(), plain.slices.size());
        for (std::size_t i = 0; i < plain.slices.size(); ++i) {
            ASSERT_EQ(store.slices[i].start, plain.slices[i].start) << "slice " << i;
            ASSERT_EQ(store.slices[i].stop, plain.slices[i].stop) << "slice " << i;
            ASSERT_EQ(store.slices[i].blank, plain.slices[i].blank) << "slice " << i;
            ASSERT_EQ(store.slices[i].map.spaces, plain.slices[i].map.spaces) << "slice " << i;
            ASSERT_EQ(store.slices[i].map.span, plain.slices[i].map.span) << "slice " << i;
            cut += std::any_of(store.valueObjects.begin(), store.valueObjects.end(),
                               [&](const OV_VALUE_OBJECT& o) { return o.start == store.slices[i].stop; });
        }
    }
    EXPECT_GT(cut, 1000u) << "the stores must put the search to the test";
}

// ---- Lookups ----

TEST(SlicingLookupsTest, FirstTrigger_StartsStrictlyAfterTheTime) {
    OV_DATA_STORE store = storeWithZones({}, {object(Click, 1.0, 9.0, kHere), object(ActiveWindow, 2.0, 9.0, kHere),
                                              object(Drag, 2.0, 9.0, kHere), object(Menu, 3.0, 9.0, kHere)});
    const OrvantaWorker worker;
    EXPECT_EQ(worker.getFirstTriggerObject(store, 0.999, 0), 0u);
    EXPECT_EQ(worker.getFirstTriggerObject(store, 1.0, 0), 2u);
    EXPECT_EQ(worker.getFirstTriggerObject(store, 1.0, 2), 2u);
    EXPECT_EQ(worker.getFirstTriggerObject(store, 1.0, 3), 3u);
    EXPECT_EQ(worker.getFirstTriggerObject(store, 2.0, 0), 3u);
    EXPECT_EQ(worker.getFirstTriggerObject(store, 3.0, 0), 4u) << "none: the number of objects";
    EXPECT_EQ(worker.getFirstTriggerObject(store, 0.0, 9), 4u);
}

TEST(SlicingLookupsTest, Triggers_AreTheTypesWorthAtLeastFour) {
    std::vector<std::uint32_t> triggers;
    for (std::uint32_t type = Move; type <= ClickWindow; ++type) {
        OV_DATA_STORE store = storeWithZones({}, {object(type, 1.0, 2.0, kHere)});
        if (OrvantaWorker().getFirstTriggerObject(store, 0.0, 0) == 0) {
            triggers.push_back(type);
        }
    }
    EXPECT_THAT(triggers, ElementsAre(0u, 2u, 3u, 4u, 8u, 9u, 11u, 12u, 13u, 14u, 15u, 21u, 23u, 24u, 25u, 26u));
}

TEST(SlicingLookupsTest, Motion_IsAnyEdgeAtTheThreshold) {
    const OrvantaWorker worker;
    const Rectangle rest{1000, 2000, 500, 900};
    std::int32_t Rectangle::*const edges[] = {&Rectangle::left, &Rectangle::right, &Rectangle::top, &Rectangle::bottom};
    EXPECT_FALSE(worker.detectMotion(rest, rest, 128));
    for (const auto edge : edges) {
        for (const int sign : {-1, 1}) {
            Rectangle moved = rest;
            moved.*edge += sign * 127;
            EXPECT_FALSE(worker.detectMotion(moved, rest, 128));
            moved.*edge += sign;
            EXPECT_TRUE(worker.detectMotion(moved, rest, 128));
            EXPECT_TRUE(worker.detectMotion(rest, moved, 128));
        }
    }
}

TEST(SlicingLookupsTest, NextWindowTime_IsTheFirstActiveWindowAfterTheTime) {
    OV_DATA_STORE store;
    store.windowObjects = {object(ForeAnimate, 1.0, 2.0, kHere), object(ActiveWindow, 3.0, 5.0, kHere),
                           object(ActiveWindow, 6.0, 7.0, kHere)};
    const OrvantaWorker worker;
    EXPECT_EQ(worker.getNextWindowTime(store, 0.0), 3.0);
    EXPECT_EQ(worker.getNextWindowTime(store, 2.999), 3.0);
    EXPECT_EQ(worker.getNextWindowTime(store, 3.0), 6.0);
    EXPECT_EQ(worker.getNextWindowTime(store, 6.0), 6.0) << "none: the time itself";
    EXPECT_EQ(worker.getNextWindowTime(store, 8.5), 8.5);
}

TEST(SlicingLookupsTest, ConstantWindow_SpansTheIntervalEndsIncluded) {
    OV_DATA_STORE store;
    store.windowObjects = {object(ForeAnimate, 0.0, 9.0, box(1, 1, 1, 1)), object(ActiveWindow, 1.0, 5.0, kHere),
                           object(ActiveWindow, 0.0, 9.0, kFarAway)};
    const OrvantaWorker worker;
    Rectangle window = box(7, 7, 7, 7);
    EXPECT_FALSE(worker.getConstantWindow(store, {1.0, 9.001}, window));
    EXPECT_EQ(window, box(7, 7, 7, 7));
    EXPECT_TRUE(worker.getConstantWindow(store, {1.0, 5.0}, window));
    EXPECT_EQ(window, kHere);
    EXPECT_TRUE(worker.getConstantWindow(store, {0.999, 5.0}, window));
    EXPECT_EQ(window, kFarAway);
    EXPECT_TRUE(worker.getConstantWindow(store, {1.0, 5.001}, window));
    EXPECT_EQ(window, kFarAway);
}

TEST(SlicingLookupsTest, SliceValueTier_FallsBackToTheWindowAndToAPixel) {
    OV_DATA_STORE store;
    store.slices.resize(1);
    const OrvantaWorker worker;
    EXPECT_EQ(worker.getSliceValueTier(store, 0), (Rectangle{0, 1, 0, 1}));
    store.slices[0].breakdown.windowRect = kFarAway;
    EXPECT_EQ(worker.getSliceValueTier(store, 0), kFarAway);
    store.slices[0].map.tier4Rects = {box(5, 5, 0, 9)};
    EXPECT_EQ(worker.getSliceValueTier(store, 0), kFarAway) << "an empty hot rectangle does not count";
    store.slices[0].map.tier4Rects = {box(10, 20, 30, 40)};
    EXPECT_EQ(worker.getSliceValueTier(store, 0), box(10, 20, 30, 40));
    store.slices[0].map.tier4Rects.push_back(box(100, 10, 50, 20));
    EXPECT_EQ(worker.getSliceValueTier(store, 0), (Rectangle{10, 150, 10, 60}));
}

} // namespace
} // namespace OrvantaNS
