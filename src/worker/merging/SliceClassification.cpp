// What a slice is: the camera shot that it wants, its neighbours, and its length with the blanks behind it.
#include <algorithm>
#include <cstddef>

#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "worker/merging/MergeEntry.h"
#include "worker/merging/SliceTests.h"
#include "worker/slicing/WindowTimes.h"

namespace OrvantaNS {

namespace {

// True when the object lies within the slice, ends included, or shares more than a moment with it. The first test lets
// objects without length take part.
bool takesPart(const OV_VALUE_OBJECT& object, const OV_FOCUS_SLICE& slice) {
    return (object.start >= slice.start && object.stop <= slice.stop) ||
           std::min(object.stop, slice.stop) - std::max(object.start, slice.start) > 0;
}

// Finds the slice's window among the window objects: writes the flags and `windowRect` of the breakdown, and the
// slice's camera mode.
void findWindow(OV_DATA_STORE& store, OV_FOCUS_SLICE& slice, SLICE_BREAKDOWN& breakdown) {
    std::size_t best = 0;
    const bool isQuick = store.windowTimes != nullptr && store.windowTimes->isInOrder();
    for (std::size_t i = 0; i < store.windowObjects.size(); ++i) {
        if (isQuick) {
            // A window that stops before the slice takes no part, nor does any behind the first that starts after it.
            i = store.windowTimes->firstStanding(i, slice.start);
            if (i == store.windowObjects.size() || store.windowObjects[i].start > slice.stop) {
                break;
            }
        }
        countSteps(store, 1);
        const OV_VALUE_OBJECT& object = store.windowObjects[i];
        if (!takesPart(object, slice)) {
            continue;
        }
        if (object.type == FullScreenDirty) {
            // Flags that an earlier window set stay, and may overrule the camera mode afterwards.
            breakdown.noWindow = true;
            breakdown.windowRect = object.rect;
            slice.mergeType = OV_MERGE_FULL_SCREEN;
            return;
        }
        if (object.type == ForeAnimate) {
            // A window in motion is no wall to hold a frame by; later steady windows are ignored as well.
            breakdown.inWindow = true;
            breakdown.window = false;
            breakdown.windowRect = object.rect;
            slice.mergeType = OV_MERGE_LOOSE;
        } else if (object.type == ActiveWindow && breakdown.window) {
            const OV_VALUE_OBJECT& longest = store.windowObjects[best];
            if (object.stop - object.start >= longest.stop - longest.start) {
                breakdown.windowRect = object.rect;
                best = i;
            }
        } else if (object.type == ActiveWindow && !breakdown.inWindow) {
            breakdown.window = true;
            breakdown.windowRect = object.rect;
            best = i;
        }
    }
}

// True when at least 80 % of the hot rectangle lies in the window; always for an empty hot rectangle.
bool coversHotRect(const SLICE_BREAKDOWN& breakdown) {
    constexpr std::int64_t coverTenths = 8;
    const std::int64_t need = area(breakdown.tier4Rect) * coverTenths / 10;
    return area(intersection(breakdown.windowRect, breakdown.tier4Rect)) >= need;
}

// The first target behind the slice, or the slice itself.
std::uint32_t searchTarget(OV_DATA_STORE& store, std::uint32_t slice) {
    const auto size = static_cast<std::uint32_t>(store.slices.size());
    std::uint32_t next = slice + 1;
    while (next < size && !isTargetSlice(store.slices[next])) {
        ++next;
    }
    countSteps(store, next - slice - 1);
    return next < size ? next : slice;
}

} // namespace

SLICE_BREAKDOWN OrvantaWorker::identifySlice(OV_DATA_STORE& store, unsigned int slice) const {
    OV_FOCUS_SLICE& target = store.slices[slice];
    SLICE_BREAKDOWN breakdown;
    target.mergeType = OV_MERGE_LOOSE;
    breakdown.tier4Rect = getTier4Rect(target.map);
    if (target.map.tier4Rects.empty() && !isEmpty(breakdown.tier4Rect)) {
        target.map.tier4Rects.push_back(breakdown.tier4Rect);
    }
    findWindow(store, target, breakdown);
    if (breakdown.window && coversHotRect(breakdown)) {
        breakdown.inWindow = true;
    }
    breakdown.tight = fitsTarget(store, breakdown.tier4Rect);
    if (isTightInWindow(breakdown)) {
        target.mergeType = OV_MERGE_TIGHT;
    } else if (isWindowed(breakdown)) {
        target.mergeType = OV_MERGE_WIDE;
    } else if (breakdown.window && breakdown.tight) {
        target.mergeType = OV_MERGE_OFF_WINDOW;
    }
    breakdown.identified = true;
    return breakdown;
}

double OrvantaWorker::getLengthPlusBlanks(OV_DATA_STORE& store, unsigned int slice) const {
    const std::uint32_t next = findNextTargetSlice(store, slice);
    if (next == slice) {
        return sliceLength(store.slices[slice]);
    }
    return store.slices[next].start - store.slices[slice].start;
}

unsigned int OrvantaWorker::findNextTargetSlice(OV_DATA_STORE& store, unsigned int slice) const {
    // Asked for very often, and mostly it is the first.
    const std::uint32_t next = slice + 1;
    return next < store.slices.size() && isTargetSlice(store.slices[next]) ? next : searchTarget(store, slice);
}

unsigned int OrvantaWorker::findPreviousTargetSlice(OV_DATA_STORE& store, unsigned int slice) const {
    std::uint32_t behind = slice;
    while (behind > 0 && !isTargetSlice(store.slices[behind - 1])) {
        --behind;
    }
    countSteps(store, slice - behind);
    return behind > 0 ? behind - 1 : slice;
}

bool OrvantaWorker::doWindowsMerge(OV_DATA_STORE& store, MERGE_ENTRY& entry) const {
    const Rectangle& first = store.slices[entry.firstSlice].breakdown.windowRect;
    const Rectangle& next = store.slices[entry.nextSlice].breakdown.windowRect;
    return contains(first, next) || contains(next, first) || isEmpty(first) || isEmpty(next);
}

} // namespace OrvantaNS
