#include <random>
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
using testing::slice;
using testing::sliceStore;
using testing::valueMap;

const OrvantaWorker worker;

// At the fade of 1 s the floor is 2 s.

OV_FOCUS_SLICE shot(double start, double stop, std::int32_t mergeType = 3) {
    return slice(start, stop, breakdown("T", {}, box(0, 0, 10, 10)), mergeType);
}

OV_DATA_STORE cleaned(std::vector<OV_FOCUS_SLICE> slices) {
    OV_DATA_STORE store = sliceStore(std::move(slices));
    worker.mergeCleanupPass(store);
    return store;
}

std::vector<bool> alive(const OV_DATA_STORE& store) {
    std::vector<bool> result;
    for (const OV_FOCUS_SLICE& s : store.slices) {
        result.push_back(s.mergeId >= 0);
    }
    return result;
}

using Alive = std::vector<bool>;

TEST(MergeCleanupPassTest, UnclassifiedSlice_ShowsTheWholeRegion) {
    EXPECT_EQ(cleaned({shot(0, 5, 0)}).slices[0].mergeType, 6);
    for (std::int32_t mode = 1; mode <= 6; ++mode) {
        EXPECT_EQ(cleaned({shot(0, 5, mode)}).slices[0].mergeType, mode);
    }
}

TEST(MergeCleanupPassTest, DeadSlice_IsLeftAlone) {
    const OV_DATA_STORE store = cleaned({shot(0, 5), dead(slice(5, 6))});
    EXPECT_EQ(store.slices[1].mergeType, 0);
    EXPECT_EQ(store.slices[1].stop, 6.0);
}

TEST(MergeCleanupPassTest, LongShots_StayApart) {
    const OV_DATA_STORE store = cleaned({shot(0, 2.001), shot(2.001, 4.002)});
    EXPECT_EQ(alive(store), (Alive{true, true}));
    EXPECT_EQ(store.slices[0].stop, 2.001);
}

TEST(MergeCleanupPassTest, BlanksBehindAShot_AreSweptUp) {
    const OV_DATA_STORE store = cleaned({shot(0, 5), blank(5, 6), dead(blank(6, 9)), blank(7, 8), shot(8, 12)});
    EXPECT_EQ(alive(store), (Alive{true, false, false, false, true}));
    EXPECT_EQ(store.slices[0].stop, 8.0); // The dead blank does not count.
    EXPECT_EQ(store.slices[4].start, 8.0);
}

TEST(MergeCleanupPassTest, SweptBlanks_CountForTheLength) {
    const OV_DATA_STORE store = cleaned({shot(0, 1), blank(1, 2.001), shot(2.001, 9)});
    EXPECT_EQ(alive(store), (Alive{true, false, true}));
}

TEST(MergeCleanupPassTest, ShotOnTheFloor_TakesInTheNext) {
    const OV_DATA_STORE store = cleaned({shot(0, 2), shot(2, 9)});
    EXPECT_EQ(alive(store), (Alive{true, false}));
    EXPECT_EQ(store.slices[0].stop, 9.0);
}

TEST(MergeCleanupPassTest, FloorAtOtherFades_IsTheFadeAndASecond) {
    const auto left = [](double fade, double length) {
        OV_DATA_STORE store = sliceStore({shot(0, length), shot(length, 20)});
        store.fadeSeconds = fade;
        worker.mergeCleanupPass(store);
        return alive(store);
    };
    EXPECT_EQ(left(0.5, 1.5), (Alive{true, false}));
    EXPECT_EQ(left(0.5, 1.501), (Alive{true, true}));
    EXPECT_EQ(left(3.0, 4.0), (Alive{true, false}));
    EXPECT_EQ(left(3.0, 4.001), (Alive{true, true}));
    // The same floor ends the taking in: 0.75 s and 0.75 s are on it, and go on.
    OV_DATA_STORE store = sliceStore({shot(0, 0.75), shot(0.75, 1.5), shot(1.5, 5), shot(5, 9)});
    store.fadeSeconds = 0.5;
    worker.mergeCleanupPass(store);
    EXPECT_EQ(alive(store), (Alive{true, false, false, true}));
    EXPECT_EQ(store.slices[0].stop, 5.0);
}

TEST(MergeCleanupPassTest, StillOnTheFloorAfterTakingIn_GoesOn) {
    const OV_DATA_STORE store = cleaned({shot(0, 1), shot(1, 2), shot(2, 3), shot(3, 9)});
    EXPECT_EQ(alive(store), (Alive{true, false, false, true}));
    EXPECT_EQ(store.slices[0].stop, 3.0);
}

TEST(MergeCleanupPassTest, ShortShot_TakesInALongOneWhole) {
    OV_FOCUS_SLICE first = slice(0, 1, breakdown("TIW", box(0, 0, 900, 700), box(0, 0, 300, 200)), 1);
    OV_FOCUS_SLICE next = slice(1, 20, breakdown("N", box(0, 0, 1920, 1200), {}), 6);
    first.map = valueMap(1.0, {{box(0, 0, 10, 10), 40.0}, {box(0, 0, 20, 20), 16.0}});
    next.map = valueMap(19.0, {{box(50, 0, 10, 10), 600.0}, {box(50, 0, 20, 20), 240.0}});
    next.keyframe = true;
    next.blocked = true;
    const VS_VALUE_MAP merged = worker.mergeMaps(first.map, next.map);
    const OV_DATA_STORE store = cleaned({first, next});
    EXPECT_EQ(alive(store), (Alive{true, false}));
    const OV_FOCUS_SLICE& got = store.slices[0];
    EXPECT_EQ(got.stop, 20.0);
    EXPECT_EQ(got.mergeType, 1);
    EXPECT_EQ(testing::flagsOf(got.breakdown), "TIW");
    EXPECT_EQ(got.breakdown.tier4Rect, box(0, 0, 300, 200));
    EXPECT_EQ(got.map.spaces, merged.spaces);
    EXPECT_EQ(got.map.span, 20.0);
    EXPECT_FALSE(got.keyframe);
    EXPECT_FALSE(got.blocked);
    EXPECT_EQ(got.mergeId, 0);
}

// Blanks taken in while the shot is too short give their maps as well; swept blanks do not.
TEST(MergeCleanupPassTest, BlankBehindADeadSlice_IsTakenInLikeAShot) {
    OV_FOCUS_SLICE first = slice(0, 1, breakdown("T"), 3);
    first.map.span = 1.0;
    OV_FOCUS_SLICE hidden = blank(1, 1.5);
    hidden.map.span = 0.5;
    OV_FOCUS_SLICE swept = blank(1.5, 1.75);
    swept.map.span = 0.25;
    OV_DATA_STORE store = cleaned({first, swept, dead(slice(1, 2)), hidden, shot(3, 9)});
    // 0 to 1.75 s; then the dead one is passed over, the blank gives its stop at 1.5 s, and the shot its own.
    EXPECT_EQ(alive(store), (Alive{true, false, false, false, false}));
    EXPECT_EQ(store.slices[0].stop, 9.0);
    EXPECT_EQ(store.slices[0].map.span, 1.0 + 0.5 + 6.0);
}

TEST(MergeCleanupPassTest, BlanksBehindTheTakenInShot_AreSweptUp) {
    const OV_DATA_STORE store = cleaned({shot(0, 1), shot(1, 4), blank(4, 5), blank(5, 6), shot(6, 9)});
    EXPECT_EQ(alive(store), (Alive{true, false, false, false, true}));
    EXPECT_EQ(store.slices[0].stop, 6.0);
    EXPECT_EQ(store.slices[0].map.span, 4.0);
}

TEST(MergeCleanupPassTest, ShortShotAtTheEnd_StaysShort) {
    const OV_DATA_STORE store = cleaned({shot(0, 5), shot(5, 6)});
    EXPECT_EQ(alive(store), (Alive{true, true}));
    EXPECT_EQ(store.slices[1].stop, 6.0);
}

TEST(MergeCleanupPassTest, ShortShotWithTooLittleBehindIt_TakesInEverything) {
    const OV_DATA_STORE store = cleaned({shot(0, 5), shot(5, 5.5), shot(5.5, 6), dead(shot(6, 9)), blank(6, 6.5)});
    EXPECT_EQ(alive(store), (Alive{true, true, false, false, false}));
    EXPECT_EQ(store.slices[1].stop, 6.5);
}

// F has absorbed X; the sweep of F ends at X, which is dead but not blank. The blank of 0.5 s is reached by itself, is
// below the floor and takes in Y, whose shot is gone: a blank gets no keyframe.
TEST(MergeCleanupPassTest, BlankBehindAnAbsorbedSlice_SwallowsTheNextShot) {
    const OV_DATA_STORE store = cleaned({shot(0, 6, 1), dead(shot(3, 6)), blank(6, 6.5), shot(6.5, 12)});
    EXPECT_EQ(alive(store), (Alive{true, false, true, false}));
    EXPECT_EQ(store.slices[0].stop, 6.0);
    EXPECT_TRUE(store.slices[2].blank);
    EXPECT_EQ(store.slices[2].stop, 12.0);
    EXPECT_EQ(store.slices[2].mergeType, 6);
}

TEST(MergeCleanupPassTest, LongBlankBehindAnAbsorbedSlice_LeavesTheNextShot) {
    const OV_DATA_STORE store = cleaned({shot(0, 6, 1), dead(shot(3, 6)), blank(6, 8), blank(8, 8.5), shot(8.5, 12)});
    EXPECT_EQ(alive(store), (Alive{true, false, true, false, true}));
    EXPECT_EQ(store.slices[2].stop, 8.5);
}

TEST(MergeCleanupPassTest, BlankAtTheHead_SwallowsTheFirstShot) {
    const OV_DATA_STORE store = cleaned({blank(0, 2), shot(2, 12), shot(12, 20)});
    EXPECT_EQ(alive(store), (Alive{true, false, true}));
    EXPECT_TRUE(store.slices[0].blank);
    EXPECT_EQ(store.slices[0].stop, 12.0);
}

// The shot reaches to 12 s past the blank at 6 to 7 s, whose stop it takes; the dead slice behind ends the sweep.
TEST(MergeCleanupPassTest, BlankWithinAnExtendedShot_TakesItsStopBack) {
    const OV_DATA_STORE store = cleaned({shot(0, 12), blank(6, 7), dead(shot(7, 12)), shot(12, 20)});
    EXPECT_EQ(store.slices[0].stop, 7.0);
    EXPECT_EQ(alive(store), (Alive{true, false, false, true}));
}

// What the pass leaves on any list: the first slice lives, no live slice is without a camera mode, the order of starts
// and the number of slices stay, and a slice on the floor or below it is live only where nothing live stands behind it.
TEST(MergeCleanupPassTest, GeneratedLists_KeepTheirLaws) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        std::vector<OV_FOCUS_SLICE> slices;
        double time = 0.0;
        for (int n = 1 + upTo(12); n > 0; --n) {
            const double stop = time + 0.25 * (1 + upTo(16));
            OV_FOCUS_SLICE s = upTo(3) == 0 ? blank(time, stop) : shot(time, stop, upTo(7));
            if (!slices.empty() && upTo(4) == 0) {
                s.mergeId = -1;
            }
            slices.push_back(s);
            time = stop;
        }
        const OV_DATA_STORE store = cleaned(slices);
        ASSERT_EQ(store.slices.size(), slices.size());
        ASSERT_GE(store.slices[0].mergeId, 0);
        bool last = true;
        for (std::size_t i = slices.size(); i-- > 0;) {
            const OV_FOCUS_SLICE& s = store.slices[i];
            ASSERT_EQ(s.start, slices[i].start);
            ASSERT_EQ(s.blank, slices[i].blank);
            if (s.mergeId < 0) {
                continue;
            }
            ASSERT_NE(s.mergeType, 0);
            ASSERT_TRUE(last || s.stop - s.start > 2.0);
            last = false;
        }
    }
}

} // namespace
} // namespace OrvantaNS
