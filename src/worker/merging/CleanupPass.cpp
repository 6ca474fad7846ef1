// The last pass of merging: a shot in which no camera move could finish takes in what follows it, and blanks are swept
// up by the shot before them.
#include <cstddef>

#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "worker/merging/SliceTests.h"
#include "worker/merging/ValueMapMerging.h"

namespace OrvantaNS {

namespace {

// Gives the shot the time of the blanks from index `from` on; returns where the run of blanks ends. A slice that is not
// blank ends the run even when it is dead, so blanks behind a slice that was merged away are not reached from here. A
// blank may end before the shot does, and then takes the shot's stop back.
std::size_t sweepBlanks(OV_DATA_STORE& store, OV_FOCUS_SLICE& shot, std::size_t from) {
    std::size_t i = from;
    StepCounter steps(store);
    for (; i < store.slices.size() && store.slices[i].blank; ++i) {
        steps.add(1);
        if (store.slices[i].mergeId >= 0) {
            shot.stop = store.slices[i].stop;
            store.slices[i].mergeId = kDeadMergeId;
        }
    }
    steps.settle();
    return i;
}

} // namespace

void OrvantaWorker::mergeCleanupPass(OV_DATA_STORE& store) const {
    for (std::size_t i = 0; i < store.slices.size(); ++i) {
        OV_FOCUS_SLICE& shot = store.slices[i];
        // Only death matters: a blank that is still alive is treated like a shot, and may swallow real ones.
        if (shot.mergeId == kDeadMergeId) {
            continue;
        }
        std::size_t rest = sweepBlanks(store, shot, i + 1);
        if (sliceLength(shot) <= keyframeFloor(store)) {
            while (rest < store.slices.size()) {
                OV_FOCUS_SLICE& taken = store.slices[rest];
                ++rest;
                countSteps(store, 1);
                if (taken.mergeId >= 0) {
                    // The frame stays the short shot's, even when the longer one is taken in.
                    shot.stop = taken.stop;
                    mergeIntoFirst(*this, store, shot.map, taken.map);
                    taken.mergeId = kDeadMergeId;
                }
                if (sliceLength(shot) > keyframeFloor(store)) {
                    break;
                }
            }
        }
        sweepBlanks(store, shot, rest);
        if (shot.mergeType == OV_MERGE_NONE) {
            // No proposal ever classified it: it shows the whole recording region.
            shot.mergeType = OV_MERGE_FULL_SCREEN;
        }
    }
}

} // namespace OrvantaNS
