#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "Slices.h"
#include "worker/merging/SliceTests.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::dead;
using testing::entryOf;
using testing::flagsOf;
using testing::slice;
using testing::sliceStore;

const OrvantaWorker worker;

constexpr Rectangle kWindow = box(100, 100, 1000, 700);
constexpr Rectangle kHot = box(200, 200, 300, 200); // In the window, and small enough for a close shot.

// ---- fitsTarget ----

TEST(FitsTargetTest, FiveQuartersOfTheTarget_IsTheLimit) {
    const OV_DATA_STORE store = sliceStore({}); // 640 by 400: 800 by 500.
    EXPECT_TRUE(fitsTarget(store, box(7, 7, 800, 500)));
    EXPECT_FALSE(fitsTarget(store, box(7, 7, 801, 500)));
    EXPECT_FALSE(fitsTarget(store, box(7, 7, 800, 501)));
    EXPECT_TRUE(fitsTarget(store, box(7, 7, 1, 1)));
}

TEST(FitsTargetTest, TargetNotDivisibleByFour_LimitIsTruncated) {
    OV_DATA_STORE store = sliceStore({});
    store.targetWidth = 643;  // 3215 / 4 = 803.75
    store.targetHeight = 402; // 2010 / 4 = 502.5
    EXPECT_TRUE(fitsTarget(store, box(0, 0, 803, 502)));
    EXPECT_FALSE(fitsTarget(store, box(0, 0, 804, 502)));
    EXPECT_FALSE(fitsTarget(store, box(0, 0, 803, 503)));
}

TEST(FitsTargetTest, EmptyOrInverted_DoesNotFit) {
    const OV_DATA_STORE store = sliceStore({});
    EXPECT_FALSE(fitsTarget(store, Rectangle{}));
    EXPECT_FALSE(fitsTarget(store, box(0, 0, 10, 0)));
    EXPECT_FALSE(fitsTarget(store, box(0, 0, 0, 10)));
    EXPECT_FALSE(fitsTarget(store, box(50, 50, -10, 10)));
    EXPECT_FALSE(fitsTarget(store, box(50, 50, -10, -10)));
}

TEST(FitsTargetTest, HugeTarget_LimitDoesNotOverflow) {
    OV_DATA_STORE store = sliceStore({});
    store.targetWidth = store.targetHeight = 2000000000;
    EXPECT_TRUE(fitsTarget(store, box(0, 0, 1000, 1000)));
}

// ---- the other words ----

TEST(SliceTestsTest, FullScreen_NeedsTheFlagAndAWindowThatIsNotEmpty) {
    EXPECT_TRUE(isFullScreen(breakdown("N", kWindow)));
    EXPECT_FALSE(isFullScreen(breakdown("N")));
    EXPECT_FALSE(isFullScreen(breakdown("TIW", kWindow)));
}

TEST(SliceTestsTest, TightInWindowAndWindowed_NeedAllTheirFlags) {
    for (const char* flags : {"", "T", "I", "W", "TI", "TW", "IW", "TIW", "TIWN"}) {
        SCOPED_TRACE(flags);
        const std::string all = flags;
        EXPECT_EQ(isTightInWindow(breakdown(flags)), all == "TIW" || all == "TIWN");
        EXPECT_EQ(isWindowed(breakdown(flags)), all == "IW" || all == "TIW" || all == "TIWN");
    }
}

TEST(SliceTestsTest, LargerWindow_IsTheFirstUnlessTheNextIsStrictlyLarger) {
    const Rectangle a = box(0, 0, 100, 10);
    const Rectangle b = box(5, 5, 10, 100);
    EXPECT_EQ(largerWindow(breakdown("", a), breakdown("", b)), a);
    EXPECT_EQ(largerWindow(breakdown("", a), breakdown("", box(5, 5, 10, 101))), box(5, 5, 10, 101));
    EXPECT_EQ(largerWindow(breakdown("", a), breakdown("")), a);
}

// ---- identifySlice ----

struct Identified {
    SLICE_BREAKDOWN breakdown;
    OV_FOCUS_SLICE slice;
};

// Classifies a slice from 10 to 14 s whose hot rectangle is `hot`, among these window objects.
Identified identify(const Rectangle& hot, std::vector<OV_VALUE_OBJECT> windows) {
    OV_DATA_STORE store = sliceStore({slice(0.0, 10.0), slice(10.0, 14.0)});
    store.windowObjects = std::move(windows);
    if (hot != Rectangle{}) {
        store.slices[1].map.spaces.emplace_back(hot, 16.0); // Tier 4 over 4 s.
    }
    const SLICE_BREAKDOWN result = worker.identifySlice(store, 1);
    return {result, store.slices[1]};
}

OV_VALUE_OBJECT object(OV_OBJECT_TYPE type, double start, double stop, Rectangle rect) {
    return {type, start, stop, rect, 0.0};
}

TEST(IdentifySliceTest, NoWindowObjects_IsLoose) {
    const Identified got = identify(kHot, {});
    EXPECT_EQ(flagsOf(got.breakdown), "T");
    EXPECT_TRUE(got.breakdown.identified);
    EXPECT_EQ(got.breakdown.tier4Rect, kHot);
    EXPECT_EQ(got.breakdown.windowRect, Rectangle{});
    EXPECT_EQ(got.slice.mergeType, 3);
    // The caller stores the breakdown.
    EXPECT_FALSE(got.slice.breakdown.identified);
}

TEST(IdentifySliceTest, HotRectangle_IsRememberedInTheMapOnce) {
    Identified got = identify(kHot, {});
    EXPECT_EQ(got.slice.map.tier4Rects, (std::vector<Rectangle>{kHot}));
    OV_DATA_STORE store = sliceStore({got.slice});
    worker.identifySlice(store, 0);
    EXPECT_EQ(store.slices[0].map.tier4Rects.size(), 1u);
    EXPECT_TRUE(identify({}, {}).slice.map.tier4Rects.empty());
}

TEST(IdentifySliceTest, SmallHotRectangleInTheWindow_IsTight) {
    const Identified got = identify(kHot, {object(ActiveWindow, 8.0, 20.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "TIW");
    EXPECT_EQ(got.breakdown.windowRect, kWindow);
    EXPECT_EQ(got.slice.mergeType, 1);
}

TEST(IdentifySliceTest, LargeHotRectangleInTheWindow_IsWide) {
    const Identified got = identify(box(100, 100, 801, 500), {object(ActiveWindow, 8.0, 20.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "IW");
    EXPECT_EQ(got.slice.mergeType, 2);
}

TEST(IdentifySliceTest, SmallHotRectangleOutsideTheWindow_IsOffWindow) {
    const Identified got = identify(box(1200, 200, 300, 200), {object(ActiveWindow, 8.0, 20.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "TW");
    EXPECT_EQ(got.slice.mergeType, 5);
}

TEST(IdentifySliceTest, LargeHotRectangleMostlyOutsideTheWindow_IsLoose) {
    const Identified got = identify(box(900, 100, 801, 500), {object(ActiveWindow, 8.0, 20.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "W");
    EXPECT_EQ(got.slice.mergeType, 3);
}

TEST(IdentifySliceTest, NoHotRectangle_CountsAsInTheWindow) {
    const Identified got = identify({}, {object(ActiveWindow, 8.0, 20.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "IW");
    EXPECT_EQ(got.slice.mergeType, 2);
}

TEST(IdentifySliceTest, EightTenthsInTheWindow_IsInIt) {
    // 10 by 10 pixels, 8 columns of them in the window, then 7.
    EXPECT_EQ(
        flagsOf(identify(box(92, 200, 10, 10), {object(ActiveWindow, 8.0, 20.0, box(94, 0, 500, 500))}).breakdown),
        "TIW");
    EXPECT_EQ(
        flagsOf(identify(box(92, 200, 10, 10), {object(ActiveWindow, 8.0, 20.0, box(95, 0, 500, 500))}).breakdown),
        "TW");
    // 79 of 100 columns.
    EXPECT_EQ(
        flagsOf(identify(box(0, 200, 100, 10), {object(ActiveWindow, 8.0, 20.0, box(21, 0, 500, 500))}).breakdown),
        "TW");
    // 11 pixels need 88 / 10, truncated to 8.
    EXPECT_EQ(flagsOf(identify(box(0, 0, 11, 1), {object(ActiveWindow, 8.0, 20.0, box(3, 0, 50, 50))}).breakdown),
              "TIW");
    EXPECT_EQ(flagsOf(identify(box(0, 0, 11, 1), {object(ActiveWindow, 8.0, 20.0, box(4, 0, 50, 50))}).breakdown),
              "TW");
}

TEST(IdentifySliceTest, HotRectangleOfManyPixels_NeedDoesNotOverflow) {
    // 20000 x 16000 x 8 is 2,560,000,000. A tenth of it lies in the window.
    const Identified got = identify(box(0, 0, 20000, 16000), {object(ActiveWindow, 8.0, 20.0, box(0, 0, 2000, 16000))});
    EXPECT_EQ(flagsOf(got.breakdown), "W");
}

TEST(IdentifySliceTest, WindowThatOnlyTouchesTheSlice_TakesNoPart) {
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 5.0, 10.0, kWindow)}).breakdown), "T");
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 14.0, 20.0, kWindow)}).breakdown), "T");
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 5.0, 10.001, kWindow)}).breakdown), "TIW");
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 13.999, 20.0, kWindow)}).breakdown), "TIW");
}

TEST(IdentifySliceTest, ObjectWithoutLengthWithinTheSlice_TakesPart) {
    for (const double moment : {10.0, 12.0, 14.0}) {
        SCOPED_TRACE(moment);
        EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, moment, moment, kWindow)}).breakdown), "TIW");
    }
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 9.999, 9.999, kWindow)}).breakdown), "T");
    EXPECT_EQ(flagsOf(identify(kHot, {object(ActiveWindow, 14.001, 14.001, kWindow)}).breakdown), "T");
}

TEST(IdentifySliceTest, SeveralWindows_TheLongestWinsByItsWholeLength) {
    const Rectangle other = box(0, 0, 1200, 900);
    // The first lasts 12 s, of which 1 s in the slice.
    EXPECT_EQ(identify(kHot, {object(ActiveWindow, -1.0, 11.0, kWindow), object(ActiveWindow, 11.0, 14.0, other)})
                  .breakdown.windowRect,
              kWindow);
    EXPECT_EQ(identify(kHot, {object(ActiveWindow, 9.0, 11.0, kWindow), object(ActiveWindow, 11.0, 14.0, other)})
                  .breakdown.windowRect,
              other);
}

TEST(IdentifySliceTest, WindowsOfEqualLength_TheLaterWins) {
    const Rectangle other = box(0, 0, 1200, 900);
    EXPECT_EQ(identify(kHot, {object(ActiveWindow, 10.0, 12.0, kWindow), object(ActiveWindow, 12.0, 14.0, other)})
                  .breakdown.windowRect,
              other);
}

TEST(IdentifySliceTest, ThirdWindow_IsComparedWithTheBestSoFar) {
    const Rectangle second = box(0, 0, 1200, 900);
    const Rectangle third = box(0, 0, 1300, 900);
    // 1 s, 2.5 s, 2 s: the third is longer than the first only.
    EXPECT_EQ(identify(kHot, {object(ActiveWindow, 10.0, 11.0, kWindow), object(ActiveWindow, 11.0, 13.5, second),
                              object(ActiveWindow, 12.0, 14.0, third)})
                  .breakdown.windowRect,
              second);
    // A window object that takes no part stands first: it is not what the length is compared with.
    EXPECT_EQ(identify(kHot, {object(ActiveWindow, 0.0, 9.0, third), object(ActiveWindow, 10.0, 11.0, kWindow),
                              object(ActiveWindow, 11.0, 13.0, second)})
                  .breakdown.windowRect,
              second);
}

TEST(IdentifySliceTest, AnimatedWindow_IsInWindowButHasNone) {
    const Identified got = identify(kHot, {object(ForeAnimate, 11.0, 12.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "TI");
    EXPECT_EQ(got.breakdown.windowRect, kWindow);
    EXPECT_EQ(got.slice.mergeType, 3);
}

TEST(IdentifySliceTest, AnimationAfterASteadyWindow_TakesTheWindowBack) {
    const Rectangle moving = box(0, 0, 1200, 900);
    const Identified got =
        identify(kHot, {object(ActiveWindow, 9.0, 11.0, kWindow), object(ForeAnimate, 11.0, 12.0, moving)});
    EXPECT_EQ(flagsOf(got.breakdown), "TI");
    EXPECT_EQ(got.breakdown.windowRect, moving);
    EXPECT_EQ(got.slice.mergeType, 3);
}

TEST(IdentifySliceTest, SteadyWindowAfterAnAnimation_IsIgnored) {
    const Rectangle moving = box(0, 0, 1200, 900);
    const Identified got =
        identify(kHot, {object(ForeAnimate, 10.0, 11.0, moving), object(ActiveWindow, 11.0, 14.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "TI");
    EXPECT_EQ(got.breakdown.windowRect, moving);
}

TEST(IdentifySliceTest, SecondAnimation_GivesTheWindow) {
    const Rectangle moving = box(0, 0, 1200, 900);
    EXPECT_EQ(identify(kHot, {object(ForeAnimate, 10.0, 11.0, kWindow), object(ForeAnimate, 12.0, 12.5, moving)})
                  .breakdown.windowRect,
              moving);
}

TEST(IdentifySliceTest, FullScreenChange_EndsTheWalk) {
    const Rectangle screen = box(0, 0, 1920, 1200);
    const Identified got =
        identify(kHot, {object(FullScreenDirty, 11.0, 11.1, screen), object(ActiveWindow, 11.0, 14.0, kWindow)});
    EXPECT_EQ(flagsOf(got.breakdown), "TN");
    EXPECT_EQ(got.breakdown.windowRect, screen);
    EXPECT_EQ(got.slice.mergeType, 6);
}

TEST(IdentifySliceTest, FullScreenChangeAfterASteadyWindow_IsOverruled) {
    const Rectangle screen = box(0, 0, 1920, 1200);
    const OV_VALUE_OBJECT window = object(ActiveWindow, 8.0, 20.0, kWindow);
    const OV_VALUE_OBJECT change = object(FullScreenDirty, 11.0, 11.1, screen);
    // The cover is tested against the change's rectangle: everything lies in it.
    const Identified tight = identify(box(1200, 200, 300, 200), {window, change});
    EXPECT_EQ(flagsOf(tight.breakdown), "TIWN");
    EXPECT_EQ(tight.breakdown.windowRect, screen);
    EXPECT_EQ(tight.slice.mergeType, 1);
    const Identified wide = identify(box(100, 100, 900, 700), {window, change});
    EXPECT_EQ(flagsOf(wide.breakdown), "IWN");
    EXPECT_EQ(wide.slice.mergeType, 2);
    const Identified off = identify(kHot, {window, object(FullScreenDirty, 11.0, 11.1, box(1000, 0, 100, 100))});
    EXPECT_EQ(flagsOf(off.breakdown), "TWN");
    EXPECT_EQ(off.slice.mergeType, 5);
}

TEST(IdentifySliceTest, FullScreenChangeAfterAnAnimation_IsFullScreen) {
    const Identified got = identify(
        kHot, {object(ForeAnimate, 10.0, 11.0, kWindow), object(FullScreenDirty, 11.0, 11.1, box(0, 0, 1920, 1200))});
    EXPECT_EQ(flagsOf(got.breakdown), "TIN");
    EXPECT_EQ(got.slice.mergeType, 6);
}

TEST(IdentifySliceTest, EarlierCameraMode_IsForgotten) {
    OV_DATA_STORE store = sliceStore({slice(0.0, 4.0)});
    store.slices[0].mergeType = 6;
    store.slices[0].breakdown = breakdown("TIWN", kWindow, kHot);
    EXPECT_EQ(flagsOf(worker.identifySlice(store, 0)), "");
    EXPECT_EQ(store.slices[0].mergeType, 3);
}

// ---- neighbours and lengths ----

TEST(TargetSliceTest, NextAndPrevious_JumpBlanksAndDeadSlices) {
    OV_DATA_STORE store = sliceStore(
        {blank(0, 1), slice(1, 2), blank(2, 3), dead(slice(3, 4)), dead(blank(4, 5)), slice(5, 6), blank(6, 7)});
    EXPECT_EQ(worker.findNextTargetSlice(store, 0), 1u);
    EXPECT_EQ(worker.findNextTargetSlice(store, 1), 5u);
    EXPECT_EQ(worker.findNextTargetSlice(store, 3), 5u);
    EXPECT_EQ(worker.findNextTargetSlice(store, 5), 5u); // None.
    EXPECT_EQ(worker.findNextTargetSlice(store, 6), 6u);
    EXPECT_EQ(worker.findPreviousTargetSlice(store, 6), 5u);
    EXPECT_EQ(worker.findPreviousTargetSlice(store, 5), 1u);
    EXPECT_EQ(worker.findPreviousTargetSlice(store, 1), 1u); // None.
    EXPECT_EQ(worker.findPreviousTargetSlice(store, 0), 0u);
}

TEST(GetLengthPlusBlanksTest, RunsToTheStartOfTheNextTarget) {
    OV_DATA_STORE store = sliceStore({slice(1, 2), blank(2, 3), dead(slice(3, 4)), slice(4.5, 6), blank(6, 9)});
    EXPECT_EQ(worker.getLengthPlusBlanks(store, 0), 3.5);
    // Without a next target the blanks behind it do not count.
    EXPECT_EQ(worker.getLengthPlusBlanks(store, 3), 1.5);
}

// ---- doWindowsMerge ----

TEST(DoWindowsMergeTest, OneContainsTheOtherOrIsEmpty) {
    const struct {
        Rectangle first;
        Rectangle next;
        bool expected;
    } cases[] = {
        {kWindow, kWindow, true},
        {kWindow, box(100, 100, 50, 700), true},
        {box(100, 100, 50, 700), kWindow, true},
        {kWindow, box(99, 100, 50, 700), false},
        {kWindow, box(1050, 100, 51, 700), false},
        {kWindow, box(1050, 100, 50, 700), true},
        {kWindow, box(2000, 2000, 10, 10), false},
        {Rectangle{}, kWindow, true},
        {kWindow, box(5000, 0, 10, 0), true},
        {box(2000, 2000, -10, 10), kWindow, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.first.left << " " << c.next.left);
        OV_DATA_STORE store = sliceStore({slice(0, 1, breakdown("", c.first)), slice(1, 2, breakdown("", c.next))});
        MERGE_ENTRY entry = entryOf(store, 0, 1);
        EXPECT_EQ(worker.doWindowsMerge(store, entry), c.expected);
    }
}

} // namespace
} // namespace OrvantaNS
