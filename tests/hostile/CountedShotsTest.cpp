// What the stages from slices to shots count of their work, piece by piece. Each case makes one of the loops that can get
// long long, and all others short.

#include <cstdint>
#include <functional>

#include <gtest/gtest.h>

#include "CountedSteps.h"
#include "HostileRequests.h"
#include "OrvantaWorker.h"
#include "parser/DataParser.h"
#include "valuespace/ValueSpace.h"
#include "worker/merging/MergeEntry.h"

namespace OrvantaNS::testing {
namespace {

class CountedShotsTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    OrvantaWorker worker;

    static constexpr unsigned int kSlices = 2000;

    // One after the other, of a second each.
    void slices(std::size_t count, bool blank) {
        store.slices.resize(count);
        for (std::size_t k = 0; k < count; ++k) {
            store.slices[k].start = static_cast<double>(k);
            store.slices[k].stop = static_cast<double>(k + 1);
            store.slices[k].blank = blank;
        }
    }

    void expectCounted(std::uint64_t entries, const std::function<void()>& work) {
        testing::expectCounted(store, entries, work);
    }
};

// ---- From zone to zone ----

TEST_F(CountedShotsTest, Zones_AreCountedOneByOne) {
    constexpr std::size_t kZones = 2000;
    store.valueObjects.push_back({Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    store.liveZones.resize(kZones); // without time, so that nothing is sliced
    expectCounted(kZones, [&] { worker.sliceTime(store); });
}

// Each zone finds its object expired and the next one in force.
TEST_F(CountedShotsTest, Zones_ByTheObjectsThatEachPasses_NotByThoseAhead) {
    constexpr int kZones = 300;
    for (int k = 0; k <= kZones; ++k) {
        store.valueObjects.push_back({Click, 0.0, k + 0.5, {0, 10, 0, 10}, 0.0});
        const double start = k + 1.0 + g_ValueMatrix[Click].decay; // between the ends of this object and of the next
        store.liveZones.push_back({{0, 10, 0, 10}, start, start});
    }
    expectCounted(2ULL * kZones, [&] { worker.sliceTime(store); });
}

TEST_F(CountedShotsTest, Zones_ByTheObjectsThatEachPasses) {
    constexpr std::size_t kObjects = 4000;
    store.valueObjects.assign(kObjects, {Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    store.liveZones.push_back({{0, 10, 0, 10}, 50.0, 50.0});
    expectCounted(kObjects, [&] { worker.sliceTime(store); });
}

TEST_F(CountedShotsTest, Zones_ByTheSamplesThatAreHeldForAll) {
    constexpr int kSamples = 4000;
    Params params = busyRequest(0, 10.0, 1000.0);
    store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, 0.1}); // ends long before them
    params.cursorLocations().assign(kSamples, {50000, 10, 10});
    params.cursorActions().assign(kSamples, {50000, 0});
    DataParser parser;
    expectCounted(2ULL * kSamples, [&] { worker.parseObjectData(params, store, parser); });
}

TEST_F(CountedShotsTest, Objects_AreCountedWhereTheyArePutInOrder) {
    constexpr std::size_t kObjects = 4000;
    store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, 0.1});
    store.valueObjects.assign(kObjects, {Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    DataParser parser;
    expectCounted(kObjects, [&] { worker.parseObjectData(busyRequest(0, 10.0, 1000.0), store, parser); });
}

// ---- The walk along the objects ----

TEST_F(CountedShotsTest, Objects_AreCountedAsTheyAreLoaded_ThoseThatAreOverToo) {
    constexpr std::size_t kObjects = 2000;
    store.valueObjects.assign(kObjects, {Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    ValueSpace space(&store);
    expectCounted(kObjects, [&] { worker.loadObjects(store, {50.0, 51.0}, space); });
}

TEST_F(CountedShotsTest, Objects_AreCountedAsTheWalkPassesThem_NotThoseAhead) {
    constexpr std::uint32_t kObjects = 4000;
    store.valueObjects.assign(2ULL * kObjects, {Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    ValueSpace space(&store);
    store.nextObject = kObjects;
    expectCounted(kObjects, [&] { worker.advanceValueSpace(store, 50.0, space); });
    store.firstActiveObject = 2 * kObjects - 9;
    store.nextObject = 2 * kObjects - 1;
    expectCounted(8, [&] { worker.advanceValueSpace(store, 50.0, space); });
}

TEST_F(CountedShotsTest, Worth_ByTheObjectsInTheSpace) {
    constexpr std::uint32_t kObjects = 2000;
    store.valueObjects.assign(kObjects, {Click, 0.0, 1.0, {0, 10, 0, 10}, 0.0});
    ValueSpace space(&store);
    for (std::uint32_t k = 0; k < kObjects; ++k) {
        space.insertObject(k);
    }
    expectCounted(kObjects, [&] { worker.recalcValueInterval(store, {0.0, 1.0}, space); });
}

// ---- Cutting into slices ----

TEST_F(CountedShotsTest, Triggers_ByTheObjectsThatAreScanned_NotThoseAhead) {
    constexpr unsigned int kObjects = 4000;
    store.valueObjects.assign(2ULL * kObjects, {Scroll, 1.0, 2.0, {0, 10, 0, 10}, 0.0});
    expectCounted(2ULL * kObjects, [&] { EXPECT_EQ(worker.getFirstTriggerObject(store, 0.0, 0), 2 * kObjects); });
    expectCounted(8, [&] { worker.getFirstTriggerObject(store, 0.0, 2 * kObjects - 8); });
    store.valueObjects[kObjects].type = Click;
    expectCounted(kObjects, [&] { EXPECT_EQ(worker.getFirstTriggerObject(store, 0.0, 0), kObjects); });
    expectCounted(8, [&] { worker.getFirstTriggerObject(store, 0.0, kObjects - 8); });
}

// None of them ends the slice.
TEST_F(CountedShotsTest, Triggers_AreCountedWhereTheyLieInTheFocus) {
    constexpr std::size_t kTriggers = 2000;
    store.valueObjects.assign(kTriggers, {Click, 0.5, 1.0, {0, 100, 0, 100}, 0.0});
    store.valueObjects.front().start = 0.0;
    store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, 60.0});
    ValueSpace space(&store);
    expectCounted(kTriggers, [&] { EXPECT_GT(worker.detectSlice(store, space, 0.0).stop, 0.5); });
}

TEST_F(CountedShotsTest, Windows_ByThoseThatAreScanned) {
    constexpr std::size_t kWindows = 4000;
    store.windowObjects.assign(kWindows, {ForeAnimate, 1.0, 2.0, {0, 10, 0, 10}, 0.0});
    expectCounted(kWindows, [&] { EXPECT_EQ(worker.getNextWindowTime(store, 0.0), 0.0); });
    Rectangle window;
    expectCounted(kWindows, [&] { EXPECT_FALSE(worker.getConstantWindow(store, {1.0, 2.0}, window)); });
}

// ---- Slices ----

TEST_F(CountedShotsTest, AWindowOfASlice_ByTheWindowsThatItIsLookedForAmong) {
    constexpr std::size_t kWindows = 2000;
    store.slices.resize(1);
    store.windowObjects.assign(kWindows, {ActiveWindow, 50.0, 51.0, {0, 10, 0, 10}, 0.0});
    expectCounted(kWindows, [&] { worker.identifySlice(store, 0); });
}

TEST_F(CountedShotsTest, Targets_ByTheSlicesInBetween) {
    slices(kSlices, true);
    expectCounted(kSlices, [&] { EXPECT_EQ(worker.findNextTargetSlice(store, 0), 0u); });
    expectCounted(kSlices, [&] { EXPECT_EQ(worker.findPreviousTargetSlice(store, kSlices - 1), kSlices - 1); });
    store.slices.front().blank = store.slices.back().blank = false;
    expectCounted(4, [&] { EXPECT_EQ(worker.findNextTargetSlice(store, kSlices - 5), kSlices - 1); });
    store.slices[kSlices - 5].blank = false;
    expectCounted(4, [&] { EXPECT_EQ(worker.findPreviousTargetSlice(store, kSlices - 1), kSlices - 5); });
}

TEST_F(CountedShotsTest, Combining_ByTheSlicesThatAreFolded) {
    slices(kSlices, true);
    expectCounted(kSlices, [&] { worker.combineSlices(store, 0, kSlices - 1); });
    expectCounted(4, [&] { worker.combineSlices(store, kSlices - 5, kSlices - 1); });
}

// The blanks in between are cut back; what lies ahead takes no part.
TEST_F(CountedShotsTest, AForcedMerge_ByTheBlanksInBetween) {
    slices(kSlices, true);
    store.slices[kSlices - 5].blank = store.slices.back().blank = false;
    MERGE_ENTRY entry;
    entry.firstSlice = kSlices - 5;
    entry.nextSlice = kSlices - 1;
    OrvantaWorker::MergeQueue queue;
    expectCounted(4, [&] { worker.doForcedMerge(store, queue, entry); });
}

// ---- Merging ----

// Asked in the loop that makes the first proposals, of blanks too: nothing has been said of their number yet.
TEST_F(CountedShotsTest, Proposals_AreCountedAsTheyAreMade) {
    constexpr std::int32_t kNotSaid = -7;
    slices(20, true);
    CountingReporter impatient(1);
    store.progress = &impatient;
    store.stepsToQuestion = 0;
    store.mergesTotal = kNotSaid;
    EXPECT_EQ(codeOf([&] { worker.mergeSlices(busyRequest(0, 10.0, 1000.0), store, 0.0); }), OVERR_USER_CANCELLED);
    EXPECT_EQ(store.mergesTotal, kNotSaid);
}

// Each is held against the two shots ahead of it.
TEST_F(CountedShotsTest, Combinations_ByTheSlices) {
    slices(kSlices, true);
    const Params params = busyRequest(0, 10.0, 1000.0);
    expectCounted(3ULL * kSlices, [&] { worker.processMergeCombos(params, store); });
}

TEST_F(CountedShotsTest, Maps_ByThePairsOfTheirStack) {
    // Eight rectangles one on the other in both maps: each layer doubles the stack and adds itself.
    VS_VALUE_MAP map;
    map.span = 1.0;
    for (std::int32_t i = 0; i < 8; ++i) {
        map.spaces.push_back({{0, 100 + i, 0, 100}, 20.0 - i});
    }
    std::uint64_t stack = map.spaces.size();
    for (int layer = 0; layer < 8; ++layer) {
        stack = 2 * stack + 1;
    }
    store.slices.resize(2);
    for (OV_FOCUS_SLICE& slice : store.slices) {
        slice.map = map;
    }
    expectCounted(stack * (stack - 1) / 2, [&] { worker.doBestMerge(store, 0, 1); });
    EXPECT_EQ(store.slices[0].map.spaces, worker.mergeMaps(map, map).spaces);
}

// ---- Cleanup ----

TEST_F(CountedShotsTest, Cleanup_ByTheBlanksThatAreSwept) {
    slices(kSlices, true);
    store.slices.front().blank = false;
    expectCounted(kSlices, [&] { worker.mergeCleanupPass(store); });
}

TEST_F(CountedShotsTest, Cleanup_ByTheDeadSlicesThatAShortShotPasses) {
    slices(kSlices, false);
    for (OV_FOCUS_SLICE& slice : store.slices) {
        slice.mergeId = -1;
    }
    store.slices.front().mergeId = 0;
    store.slices.front().stop = 0.0;
    expectCounted(kSlices, [&] { worker.mergeCleanupPass(store); });
}

} // namespace
} // namespace OrvantaNS::testing
