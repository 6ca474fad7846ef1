#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "Slices.h"

namespace OrvantaNS {
namespace {

using testing::blank;
using testing::box;
using testing::breakdown;
using testing::dead;
using testing::flagsOf;
using testing::recording;
using testing::slice;
using testing::sliceStore;
using testing::valueMap;

const OrvantaWorker worker;

// The frames of these tests need no padding: a rectangle of exactly the target's size, 640 by 400 with 256,000 pixels,
// is its own frame.
constexpr Rectangle frameAt(int x, int y = 0) { return box(x, y, 640, 400); }

const testing::Scene kScene = recording(3000, 2000);

// A wide shot whose window is its frame.
OV_FOCUS_SLICE wide(double start, double stop, Rectangle frame) {
    return slice(start, stop, breakdown("IW", frame, {}), 2);
}

// A close shot without a window, whose hot rectangle is its frame.
OV_FOCUS_SLICE close(double start, double stop, Rectangle frame) {
    return slice(start, stop, breakdown("T", {}, frame), 3);
}

// A shot that is nothing in particular.
OV_FOCUS_SLICE loose(double start, double stop, Rectangle frame) {
    return slice(start, stop, breakdown("", {}, frame), 3);
}

const VS_VALUE_MAP kFirstMap = valueMap(2.0, {{box(0, 0, 10, 10), 40.0}, {box(0, 0, 20, 20), 16.0}});
const VS_VALUE_MAP kNextMap = valueMap(3.0, {{box(50, 0, 10, 10), 60.0}, {box(50, 0, 20, 20), 24.0}});

bool equal(const VS_VALUE_MAP& a, const VS_VALUE_MAP& b) { return a.spaces == b.spaces && a.span == b.span; }

std::vector<unsigned> live(const OV_DATA_STORE& store) {
    std::vector<unsigned> result;
    for (unsigned i = 0; i < store.slices.size(); ++i) {
        if (store.slices[i].mergeId >= 0) {
            result.push_back(i);
        }
    }
    return result;
}

using Live = std::vector<unsigned>;

// ---- getSliceGeometry ----

TEST(GetSliceGeometryTest, CameraMode_ChoosesTheFrame) {
    const Rectangle region = box(0, 0, 3000, 1875); // Of the target's shape, as it stands.
    const testing::Scene scene = recording(3000, 1875);
    const Rectangle window = frameAt(100, 100);
    const Rectangle hot = frameAt(900, 900);
    const std::vector<Rectangle> expected = {region, hot, window, hot, hot, hot, region};
    for (std::int32_t mode = 0; mode <= 6; ++mode) {
        SCOPED_TRACE(mode);
        OV_DATA_STORE store = sliceStore({slice(0, 5, breakdown("", window, hot), mode)});
        EXPECT_EQ(worker.getSliceGeometry(scene, store, 0), expected[static_cast<std::size_t>(mode)]);
    }
    for (const std::int32_t mode : {-1, 7, 12}) {
        SCOPED_TRACE(mode);
        OV_DATA_STORE store = sliceStore({slice(0, 5, breakdown("", window, hot), mode)});
        EXPECT_EQ(worker.getSliceGeometry(scene, store, 0), Rectangle{});
    }
}

// ---- mergeNear ----

bool nearWith(Rectangle first, Rectangle next) {
    OV_DATA_STORE store = sliceStore({wide(0, 5, first), wide(5, 10, next)});
    const bool merged = worker.mergeNear(kScene, store, 0, 1);
    EXPECT_EQ(live(store), merged ? Live{0} : (Live{0, 1}));
    EXPECT_EQ(store.slices[0].stop, merged ? 10.0 : 5.0);
    return merged;
}

TEST(MergeNearTest, IdenticalFrames_Merge) { EXPECT_TRUE(nearWith(frameAt(100), frameAt(100))); }

// 70 % of 640 columns are 448.
TEST(MergeNearTest, SeventyPercentOfEach_IsEnough) {
    EXPECT_TRUE(nearWith(frameAt(100), frameAt(292)));
    EXPECT_FALSE(nearWith(frameAt(100), frameAt(293)));
    EXPECT_TRUE(nearWith(frameAt(292), frameAt(100)));
    EXPECT_FALSE(nearWith(frameAt(293), frameAt(100)));
}

// Of the larger frame, 400,000 pixels, 280,000 must be common: 667 columns of the smaller one's 420 rows. Of the smaller
// one, 282,240 pixels, far less would do.
TEST(MergeNearTest, OfUnequalFrames_TheLargerDecides) {
    const Rectangle large = box(0, 0, 800, 500);
    EXPECT_TRUE(nearWith(large, box(133, 0, 672, 420)));
    EXPECT_FALSE(nearWith(large, box(134, 0, 672, 420)));
    EXPECT_TRUE(nearWith(box(133, 0, 672, 420), large));
    EXPECT_FALSE(nearWith(box(134, 0, 672, 420), large));
}

TEST(MergeNearTest, SmallFrameInALargeOne_DoesNotMerge) {
    EXPECT_FALSE(nearWith(box(0, 0, 1600, 1000), frameAt(100, 100)));
    EXPECT_FALSE(nearWith(frameAt(100, 100), box(0, 0, 1600, 1000)));
}

TEST(MergeNearTest, SlicesWithoutAFrame_Merge) {
    OV_DATA_STORE store = sliceStore({slice(0, 5, breakdown(""), 9), slice(5, 10, breakdown(""), 9)});
    EXPECT_TRUE(worker.mergeNear(kScene, store, 0, 1));
    // One without a frame beside one with: nothing is common.
    store = sliceStore({slice(0, 5, breakdown(""), 9), wide(5, 10, frameAt(0))});
    EXPECT_FALSE(worker.mergeNear(kScene, store, 0, 1));
}

// 70 % of 7680 by 4320 pixels, 2,322,432,000 hundredths, does not fit 32 bits.
TEST(MergeNearTest, LargeRecording_DoesNotOverflow) {
    testing::Scene scene = recording(7680, 4320);
    scene.target(1920, 1080);
    OV_DATA_STORE store =
        sliceStore({slice(0, 5, breakdown("N", box(0, 0, 7680, 4320), {}), 6), wide(5, 10, box(100, 100, 1920, 1080))});
    EXPECT_FALSE(worker.mergeNear(scene, store, 0, 1));
    store.slices[1] = slice(5, 10, breakdown("N", box(0, 0, 7680, 4320), {}), 6);
    EXPECT_TRUE(worker.mergeNear(scene, store, 0, 1));
}

// ---- mergeInOutIn ----

struct Excursion {
    SLICE_BREAKDOWN middle = breakdown("IW", box(0, 0, 1600, 1000), {});
    double length = 5.0;
    Rectangle back = frameAt(100);
};

// A shot of 5 s at 100, the excursion, and the shot that comes back.
bool drops(const Excursion& e) {
    OV_DATA_STORE store = sliceStore(
        {wide(0, 5, frameAt(100)), slice(5, 6, e.middle, 2), blank(6, 5 + e.length), wide(5 + e.length, 30, e.back)});
    const bool dropped = worker.mergeInOutIn(kScene, store, 0, 1, 3);
    EXPECT_EQ(live(store), dropped ? (Live{0, 2}) : (Live{0, 1, 2, 3}));
    EXPECT_EQ(store.slices[0].stop, dropped ? 30.0 : 5.0);
    return dropped;
}

TEST(MergeInOutInTest, MiddleMustBeAWiderShot) {
    EXPECT_TRUE(drops({}));
    EXPECT_TRUE(drops({.middle = breakdown("N")})); // No window needed.
    EXPECT_TRUE(drops({.middle = breakdown("TIW")}));
    for (const char* flags : {"", "T", "I", "W", "TI", "TW"}) {
        SCOPED_TRACE(flags);
        EXPECT_FALSE(drops({.middle = breakdown(flags)}));
    }
}

// The fade and 6 s are 7 s, with the blanks behind it.
TEST(MergeInOutInTest, ExcursionOnTheLimit_IsDropped) {
    EXPECT_TRUE(drops({.length = 7.0}));
    EXPECT_FALSE(drops({.length = 7.001}));
}

// At a fade of 0.012 s the sum in this order, fade + 1 + 5, lies one double above fade + 6, and is the limit.
TEST(MergeInOutInTest, LimitAtOtherFades_IsTheFadeAndOneAndFiveSeconds) {
    const auto dropsAt = [](double fade, double length) {
        OV_DATA_STORE store = sliceStore({wide(-5, 0, frameAt(100)), wide(0, 1, box(0, 0, 1600, 1000)),
                                          blank(1, length), wide(length, 30, frameAt(100))});
        store.fadeSeconds = fade;
        return worker.mergeInOutIn(kScene, store, 0, 1, 3);
    };
    EXPECT_TRUE(dropsAt(0.5, 6.5));
    EXPECT_FALSE(dropsAt(0.5, std::nextafter(6.5, 7.0)));
    EXPECT_TRUE(dropsAt(3.0, 9.0));
    EXPECT_FALSE(dropsAt(3.0, std::nextafter(9.0, 10.0)));
    const double limit = 0.012 + 1.0 + 5.0;
    ASSERT_GT(limit, 0.012 + 6.0);
    EXPECT_TRUE(dropsAt(0.012, limit));
    EXPECT_FALSE(dropsAt(0.012, std::nextafter(limit, 7.0)));
}

// 90 % of 640 columns are 576.
TEST(MergeInOutInTest, FramesBeforeAndAfter_ShareNinetyPercent) {
    EXPECT_TRUE(drops({.back = frameAt(164)}));
    EXPECT_FALSE(drops({.back = frameAt(165)}));
    EXPECT_TRUE(drops({.back = frameAt(36)}));
    EXPECT_FALSE(drops({.back = frameAt(35)}));
    // A larger frame around the first, and a smaller one in a larger first.
    EXPECT_FALSE(drops({.back = box(0, 0, 1600, 1000)}));
    OV_DATA_STORE store = sliceStore(
        {wide(0, 5, box(0, 0, 1600, 1000)), wide(5, 6, box(0, 0, 1600, 1000)), wide(6, 30, frameAt(100, 100))});
    EXPECT_FALSE(worker.mergeInOutIn(kScene, store, 0, 1, 2));
}

// ---- mergeTightLooseTight ----

// Close shots around a loose one from 8.2 s to 8.7 s, with blanks on both sides of it.
OV_DATA_STORE looseBetween() {
    OV_DATA_STORE store = sliceStore({close(3, 8, frameAt(0)), blank(8, 8.2), loose(8.2, 8.7, frameAt(500, 500)),
                                      blank(8.7, 9), close(9, 20, frameAt(1000, 600))});
    store.slices[2].map = kFirstMap;
    return store;
}

TEST(MergeTightLooseTightTest, BriefLooseStretch_BecomesAShotOfBoth) {
    OV_DATA_STORE store = looseBetween();
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(live(store), (Live{0, 2, 4}));
    // It would last from 8.2 to 9 s; it gets the 2 s before the next shot.
    EXPECT_EQ(store.slices[0].stop, 7.0);
    EXPECT_EQ(store.slices[2].start, 7.0);
    EXPECT_EQ(store.slices[2].stop, 9.0);
    EXPECT_EQ(store.slices[2].mergeType, 3);
    EXPECT_EQ(store.slices[2].breakdown.tier4Rect, box(0, 0, 1640, 1000));
    EXPECT_EQ(flagsOf(store.slices[2].breakdown), "");
    EXPECT_TRUE(equal(store.slices[2].map, kFirstMap));
    for (const unsigned i : {0u, 2u, 4u}) {
        EXPECT_TRUE(store.slices[i].keyframe);
        EXPECT_FALSE(store.slices[i].blocked);
    }
    EXPECT_EQ(store.slices[0].mergeId, 1);
    EXPECT_EQ(store.slices[2].mergeId, 1);
    EXPECT_EQ(store.slices[4].mergeId, 0);
    EXPECT_EQ(store.slices[4].start, 9.0);
}

TEST(MergeTightLooseTightTest, MiddleLongEnough_KeepsItsStart) {
    OV_DATA_STORE store = looseBetween();
    store.slices[2].start = 7.0;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].start, 7.0);
    EXPECT_EQ(store.slices[0].stop, 8.2);
    EXPECT_EQ(store.slices[2].breakdown.tier4Rect, box(0, 0, 1640, 1000));
    EXPECT_TRUE(store.slices[2].keyframe);
    // A hair shorter, and the boundary moves.
    store = looseBetween();
    store.slices[2].start = 7.001;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].start, 7.0);
    EXPECT_EQ(store.slices[0].stop, 7.0);
}

TEST(MergeTightLooseTightTest, FullScreenMiddle_ShowsTheWholeRegion) {
    OV_DATA_STORE store = looseBetween();
    store.slices[2].breakdown = breakdown("N", box(0, 0, 3000, 2000), {});
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].mergeType, 6);
    EXPECT_EQ(store.slices[2].breakdown.tier4Rect, box(0, 0, 1640, 1000));
    store = looseBetween();
    store.slices[2].breakdown = breakdown("N");
    store.slices[2].mergeType = 6;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].mergeType, 3);
}

TEST(MergeTightLooseTightTest, EmptyHotRectangle_StillCountsForTheBounds) {
    OV_DATA_STORE store = looseBetween();
    store.slices[0].breakdown.tier4Rect = {};
    store.slices[4].breakdown.tier4Rect = frameAt(1000, 600);
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].breakdown.tier4Rect, box(0, 0, 1640, 1000));
}

TEST(MergeTightLooseTightTest, AnyConditionMissing_ChangesNothing) {
    const auto refuses = [](const char* first, const char* middle, const char* next) {
        OV_DATA_STORE store = looseBetween();
        store.slices[0].breakdown = breakdown(first);
        store.slices[2].breakdown = breakdown(middle);
        store.slices[4].breakdown = breakdown(next);
        const bool merged = worker.mergeTightLooseTight(store, 0, 2, 4);
        EXPECT_EQ(live(store).size(), merged ? 3u : 5u);
        EXPECT_EQ(store.slices[0].keyframe, merged);
        EXPECT_EQ(store.slices[2].start, merged ? 7.0 : 8.2);
        return !merged;
    };
    EXPECT_FALSE(refuses("T", "", "T"));
    EXPECT_TRUE(refuses("IW", "", "T"));
    EXPECT_TRUE(refuses("T", "", "IW"));
    EXPECT_TRUE(refuses("T", "T", "T"));
    EXPECT_TRUE(refuses("T", "IW", "T"));
    EXPECT_FALSE(refuses("TIW", "I", "T"));
    EXPECT_FALSE(refuses("T", "W", "TW"));
}

// The fade and 4 s are 5 s, with the blanks behind it.
TEST(MergeTightLooseTightTest, MiddleOnTheLimit_IsTooLong) {
    OV_DATA_STORE store = looseBetween();
    store.slices[2].start = 4.0;
    EXPECT_FALSE(worker.mergeTightLooseTight(store, 0, 2, 4));
    store.slices[2].start = 4.001;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
}

// At a fade of 0.012 s the sum in this order, fade + 1 + 3, lies one double above fade + 4, and is the limit.
TEST(MergeTightLooseTightTest, LimitAtOtherFades_IsTheFadeAndOneAndThreeSeconds) {
    const auto reshapes = [](double fade, double length) {
        OV_DATA_STORE store = sliceStore({close(-5, 0, frameAt(0)), loose(0, 1, frameAt(500, 500)), blank(1, length),
                                          close(length, 20, frameAt(1000, 600))});
        store.fadeSeconds = fade;
        return worker.mergeTightLooseTight(store, 0, 1, 3);
    };
    EXPECT_TRUE(reshapes(0.5, std::nextafter(4.5, 4.0)));
    EXPECT_FALSE(reshapes(0.5, 4.5));
    EXPECT_TRUE(reshapes(3.0, std::nextafter(7.0, 6.0)));
    EXPECT_FALSE(reshapes(3.0, 7.0));
    const double limit = 0.012 + 1.0 + 3.0;
    ASSERT_GT(limit, 0.012 + 4.0);
    EXPECT_TRUE(reshapes(0.012, 0.012 + 4.0));
    EXPECT_FALSE(reshapes(0.012, limit));
}

// The middle shot lasts 0.8 s with its blank; at a fade of 0.5 s it gets the 1.5 s before the next shot.
TEST(MergeTightLooseTightTest, OtherFade_MovesTheBoundaryByItsFloor) {
    OV_DATA_STORE store = looseBetween();
    store.fadeSeconds = 0.5;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[0].stop, 7.5);
    EXPECT_EQ(store.slices[2].start, 7.5);
    // Of exactly 1.5 s it keeps its start.
    store = looseBetween();
    store.fadeSeconds = 0.5;
    store.slices[2].start = 7.5;
    EXPECT_TRUE(worker.mergeTightLooseTight(store, 0, 2, 4));
    EXPECT_EQ(store.slices[2].start, 7.5);
    EXPECT_EQ(store.slices[0].stop, 8.2);
}

// ---- doBestMerge ----

struct BestMerge {
    std::string flags;
    Rectangle window;
    Rectangle hot;
    std::int32_t mergeType;
    bool mapsMerged;
};

constexpr Rectangle kWindow = box(0, 0, 1000, 800);
constexpr Rectangle kNextWindow = box(500, 0, 1000, 800);
constexpr Rectangle kBothWindows = box(0, 0, 1500, 800);
constexpr Rectangle kHot = box(0, 0, 300, 200);
constexpr Rectangle kNextHot = box(600, 100, 300, 200);
constexpr Rectangle kBothHot = box(0, 0, 900, 300);

void expectBestMerge(const char* first, std::int32_t mergeType, const char* next, const BestMerge& expected) {
    SCOPED_TRACE(std::string(first) + " and " + next);
    OV_DATA_STORE store = sliceStore({slice(0, 5, breakdown(first, kWindow, kHot), mergeType), blank(5, 6),
                                      slice(6, 10, breakdown(next, kNextWindow, kNextHot), 5)});
    store.slices[0].map = kFirstMap;
    store.slices[2].map = kNextMap;
    store.slices[2].keyframe = true;
    store.slices[2].blocked = true;
    worker.doBestMerge(store, 0, 2);
    const OV_FOCUS_SLICE& got = store.slices[0];
    EXPECT_EQ(flagsOf(got.breakdown), first);
    EXPECT_EQ(got.breakdown.windowRect, expected.window);
    EXPECT_EQ(got.breakdown.tier4Rect, expected.hot);
    EXPECT_EQ(got.mergeType, expected.mergeType);
    EXPECT_TRUE(equal(got.map, expected.mapsMerged ? worker.mergeMaps(kFirstMap, kNextMap) : kFirstMap));
    EXPECT_EQ(got.stop, 10.0);
    EXPECT_EQ(got.mergeId, 0);
    EXPECT_FALSE(got.keyframe);
    EXPECT_FALSE(got.blocked);
    EXPECT_EQ(live(store), (Live{0, 1})); // The blank between is not touched.
}

TEST(DoBestMergeTest, OneTightInItsWindow_CloseShot) {
    expectBestMerge("TIW", 1, "IW", {"TIW", kWindow, kBothHot, 1, true});
    expectBestMerge("IW", 2, "TIW", {"IW", kNextWindow, kBothHot, 1, true});
    expectBestMerge("TIW", 1, "TIW", {"TIW", kNextWindow, kBothHot, 1, true});
    expectBestMerge("", 3, "TIW", {"", kNextWindow, kBothHot, 1, true});
    expectBestMerge("N", 6, "TIW", {"N", kNextWindow, kBothHot, 1, true});
}

TEST(DoBestMergeTest, BothWindowed_BoundsOfTheWindows) {
    expectBestMerge("IW", 2, "IW", {"IW", kBothWindows, kBothHot, 2, true});
    expectBestMerge("IWN", 6, "IW", {"IWN", kBothWindows, kBothHot, 2, true});
}

TEST(DoBestMergeTest, FirstFullScreen_KeepsItsContent) {
    expectBestMerge("N", 6, "N", {"N", kBothWindows, kHot, 6, false});
    expectBestMerge("IW", 6, "TI", {"IW", kBothWindows, kHot, 6, false});
}

TEST(DoBestMergeTest, Otherwise_LooseShotOfBoth) {
    expectBestMerge("T", 5, "T", {"T", kWindow, kBothHot, 3, true});
    expectBestMerge("IW", 2, "N", {"IW", kWindow, kBothHot, 3, true});
    expectBestMerge("", 4, "IW", {"", kWindow, kBothHot, 3, true});
    // The camera mode counts for row three, not the flag.
    expectBestMerge("N", 3, "N", {"N", kWindow, kBothHot, 3, true});
}

TEST(DoBestMergeTest, EmptyHotRectangle_DoesNotPullTheBounds) {
    OV_DATA_STORE store = sliceStore({loose(0, 5, {}), loose(5, 10, kNextHot)});
    worker.doBestMerge(store, 0, 1);
    EXPECT_EQ(store.slices[0].breakdown.tier4Rect, kNextHot);
}

// ---- processMergeCombos ----

Live combine(OV_DATA_STORE& store) {
    worker.processMergeCombos(kScene, store);
    return live(store);
}

TEST(ProcessMergeCombosTest, FewerThanTwoTargets_NothingMerges) {
    OV_DATA_STORE store = sliceStore({blank(0, 5), dead(wide(5, 6, frameAt(0))), wide(6, 9, frameAt(0)), blank(9, 12)});
    EXPECT_EQ(combine(store), (Live{0, 2, 3}));
    EXPECT_EQ(store.slices[2].stop, 9.0);
}

TEST(ProcessMergeCombosTest, NearShots_AreFoldedIntoTheBackOfTheList) {
    // Blanks and dead slices between do not matter.
    OV_DATA_STORE store = sliceStore({wide(0, 10, frameAt(0)), blank(10, 11), dead(wide(11, 12, frameAt(2000))),
                                      wide(12, 20, frameAt(10)), wide(20, 30, frameAt(20))});
    EXPECT_EQ(combine(store), (Live{0, 1}));
    EXPECT_EQ(store.slices[0].stop, 30.0);
    EXPECT_EQ(store.slices[0].breakdown.windowRect, box(0, 0, 660, 400));
}

// 0 and 192 share 70 % exactly. What they become, 832 by 400 grown to 832 by 520, shares too little with 384 to 1024:
// 448 columns of 400 are 41 % of it. Against the shot at 192 alone 384 would have passed.
TEST(ProcessMergeCombosTest, FoldedShot_IsComparedByItsNewFrame) {
    OV_DATA_STORE store = sliceStore({wide(0, 10, frameAt(0)), wide(10, 20, frameAt(192)), wide(20, 30, frameAt(384))});
    EXPECT_EQ(combine(store), (Live{0, 2}));
    EXPECT_EQ(store.slices[0].stop, 20.0);
    store = sliceStore({wide(10, 20, frameAt(192)), wide(20, 30, frameAt(384))});
    EXPECT_EQ(combine(store), (Live{0}));
}

TEST(ProcessMergeCombosTest, RepeatedExcursions_AllFoldIntoTheFirstShot) {
    const Rectangle out = box(0, 0, 1600, 1000);
    OV_DATA_STORE store = sliceStore({wide(0, 10, frameAt(0)), wide(10, 15, out), wide(15, 25, frameAt(10)),
                                      wide(25, 30, out), wide(30, 40, frameAt(20))});
    EXPECT_EQ(combine(store), (Live{0}));
    EXPECT_EQ(store.slices[0].stop, 40.0);
}

TEST(ProcessMergeCombosTest, LongExcursion_Stays) {
    const Rectangle out = box(0, 0, 1600, 1000);
    OV_DATA_STORE store = sliceStore({wide(0, 10, frameAt(0)), wide(10, 17.5, out), wide(17.5, 25, frameAt(10))});
    EXPECT_EQ(combine(store), (Live{0, 1, 2}));
}

// A middle that both patterns would take: windowed, and the close shots return to the same frame. The first pattern
// drops it.
TEST(ProcessMergeCombosTest, ExcursionIsTriedBeforeTheLooseStretch) {
    OV_DATA_STORE store = sliceStore(
        {close(0, 10, frameAt(0)), slice(10, 12, breakdown("N", {}, frameAt(1000)), 3), close(12, 30, frameAt(10))});
    EXPECT_EQ(combine(store), (Live{0}));
    EXPECT_EQ(store.slices[0].stop, 30.0);
    // When the camera comes back elsewhere, the second pattern shapes the middle.
    store = sliceStore(
        {close(0, 10, frameAt(0)), slice(10, 12, breakdown("N", {}, frameAt(1000)), 3), close(12, 30, frameAt(2000))});
    EXPECT_EQ(combine(store), (Live{0, 1, 2}));
    EXPECT_EQ(store.slices[1].breakdown.tier4Rect, box(0, 0, 2640, 400));
    EXPECT_TRUE(store.slices[1].keyframe);
}

// After the pattern only its last shot is kept. With the first two gone from the list, the loose slice behind cannot
// make an excursion of the next.
TEST(ProcessMergeCombosTest, AfterALooseStretch_OnlyItsLastShotIsKept) {
    // 0, 1, 2 fire; then 2, 3, 4.
    OV_DATA_STORE store =
        sliceStore({close(0, 10, frameAt(0)), loose(10, 12, frameAt(0, 1500)), close(12, 20, frameAt(1000)),
                    loose(20, 22, frameAt(0, 1500)), close(22, 30, frameAt(2000))});
    EXPECT_EQ(combine(store), (Live{0, 1, 2, 3, 4}));
    EXPECT_EQ(store.slices[1].breakdown.tier4Rect, box(0, 0, 1640, 400));
    EXPECT_EQ(store.slices[3].breakdown.tier4Rect, box(1000, 0, 1640, 400));
    // 0, 1, 2 fire with 2 wide as well as tight; 3 comes back to the frame of 1, near enough, but 1 and 2 are no pair
    // in the list any more: nothing is dropped.
    store = sliceStore({close(0, 10, frameAt(0)), loose(10, 12, frameAt(0, 1500)),
                        slice(12, 18, breakdown("TIW", frameAt(0, 800), frameAt(1000)), 2),
                        wide(18, 30, box(0, 0, 1640, 1025))});
    EXPECT_EQ(combine(store), (Live{0, 1, 2, 3}));
}

// The third is near the second and near the first: it folds into the second and ends its turn, although dropping the
// second between the first and the third would apply too (596 of 640 columns are 93 %).
TEST(ProcessMergeCombosTest, SliceFoldedIntoItsNeighbour_IsNotTriedAsAnEnd) {
    // 0 and 236 share 404 columns, 63 %; 236 and 44 share 448, exactly 70 %.
    OV_DATA_STORE store = sliceStore({wide(0, 10, frameAt(0)), wide(10, 15, frameAt(236)), wide(15, 25, frameAt(44))});
    EXPECT_EQ(combine(store), (Live{0, 1}));
    EXPECT_EQ(store.slices[0].stop, 10.0);
    EXPECT_EQ(store.slices[1].stop, 25.0);
}

TEST(ProcessMergeCombosTest, TwoFullScreenShots_FoldWithTheirContentAsItWas) {
    OV_DATA_STORE store = sliceStore({slice(0, 10, breakdown("N", box(0, 0, 3000, 2000), frameAt(0)), 6),
                                      slice(10, 20, breakdown("N", box(0, 0, 3000, 2000), frameAt(1000)), 6)});
    store.slices[0].map = kFirstMap;
    EXPECT_EQ(combine(store), (Live{0}));
    EXPECT_EQ(store.slices[0].mergeType, 6);
    EXPECT_EQ(store.slices[0].breakdown.tier4Rect, frameAt(0));
    EXPECT_TRUE(equal(store.slices[0].map, kFirstMap));
    EXPECT_EQ(store.slices[0].stop, 20.0);
}

} // namespace
} // namespace OrvantaNS
