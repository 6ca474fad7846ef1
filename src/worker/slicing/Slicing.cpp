// Cuts each live zone into slices, stretches during which attention stays on one thing or on nothing. All times are
// seconds.

#include "OrvantaWorker.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "frame/NearSearch.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "valuespace/ValueSpace.h"
#include "worker/slicing/WindowTimes.h"

namespace OrvantaNS {

namespace {

// How much of a slice's beginning is asked whether anything is happening, seconds. Also a blank slice's least length.
constexpr double kProbeSeconds = 0.2;
// The longest that a slice runs from its probe, and the longest blank slice, seconds.
constexpr double kLongestSeconds = 3.0;
// How far behind a later trigger the space is asked where the focus then lies, seconds.
constexpr double kLookAheadSeconds = 1.0;
// The rate at which a probe counts as focused: a probe just there runs on for a second.
constexpr double kFocusRate = 4.0;
// A trigger with this share of its area in the focus lies in it, percent.
constexpr std::int64_t kInFocusPercent = 95;
// How far an edge of the focus must have moved for the focus to have moved, pixels.
constexpr int kMotionPixels = 128;
// `advanceValueSpace` takes an object's worth before it takes the object out of the space, and nothing gives it back.
constexpr VS_LEFT_OBJECTS kDeparted = VS_LEFT_OBJECTS::WORTH_NOTHING;

bool liesInFocus(const Rectangle& rect, const Rectangle& focus) {
    // The product needs 64 bits from 8K recordings on; the areas themselves are 32-bit.
    return area(intersection(rect, focus)) >= kInFocusPercent * area(rect) / 100;
}

// The first active object that starts after `time`: no trigger after it lies lower, since the objects are sorted. Spares
// the search for triggers the objects behind it, of which one long-lived window can keep a whole recording active.
std::uint32_t firstActiveAfter(const OV_DATA_STORE& store, double time) {
    const auto& objects = store.valueObjects;
    if (store.firstActiveObject >= objects.size()) {
        return store.firstActiveObject;
    }
    const auto isAfter = [](double t, const OV_VALUE_OBJECT& object) { return t < object.start; };
    std::size_t from = store.firstActiveObject;
    if (store.nextObject > from && store.nextObject < objects.size() && !isAfter(time, objects[store.nextObject])) {
        from = store.nextObject; // the newest object in the space
    }
    const auto begin = objects.begin();
    const auto after = firstNear(begin + static_cast<std::ptrdiff_t>(from), objects.end(),
                                 [&](const OV_VALUE_OBJECT& object) { return !isAfter(time, object); });
    return static_cast<std::uint32_t>(after - begin);
}

// Where the walk of a zone takes up the objects again.
void repositionIndices(OV_DATA_STORE& store, std::uint32_t zone) {
    const std::uint32_t next = store.nextObject;
    if (next >= store.valueObjects.size()) {
        return;
    }
    const double start = store.liveZones[zone].start;
    countSteps(store, 1);
    if (!(start > lifeEnd(store.valueObjects[next]))) {
        store.firstActiveObject = next;
        return;
    }
    const auto survivor =
        std::find_if(store.valueObjects.begin() + static_cast<std::ptrdiff_t>(next) + 1, store.valueObjects.end(),
                     [&](const OV_VALUE_OBJECT& object) { return !(lifeEnd(object) < start); });
    countSteps(store, static_cast<std::uint64_t>(survivor - store.valueObjects.begin()) - next);
    // The index of the zone, not that of the survivor: the walk falls back to a low object and passes over the expired
    // ones again, unless there are more zones than objects in force.
    if (survivor != store.valueObjects.end()) {
        store.firstActiveObject = zone;
    }
    store.nextObject = zone;
}

// Makes room for the slices that there will be at least, so that those of hours are moved once or twice as their list
// grows, not a dozen times. Never for more of them than there are objects: a zone may be given any length.
void reserveSlices(OV_DATA_STORE& store) {
    double fewest = 0.0;
    for (const OV_LIVE_ZONE& zone : store.liveZones) {
        fewest += std::max(0.0, zone.stop - zone.start) / (kProbeSeconds + kLongestSeconds);
    }
    const std::size_t most = store.valueObjects.size();
    store.slices.reserve(fewest < static_cast<double>(most) ? static_cast<std::size_t>(fewest) : most);
}

} // namespace

void OrvantaWorker::sliceTime(OV_DATA_STORE& store) const {
    if (store.valueObjects.empty()) {
        throw OrvantaException("No keyframes were created!", OVERR_NO_KEYFRAMES);
    }
    store.firstActiveObject = 0;
    store.nextObject = 0;
    reserveSlices(store);
    for (std::uint32_t zone = 0; zone < store.liveZones.size(); ++zone) {
        store.currentZone = zone;
        repositionIndices(store, zone);
        ValueSpace space(&store);
        double time = store.liveZones[zone].start;
        while (store.liveZones[zone].stop > time) {
            DataParser::setProgress(store, time, OV_STAGE_SLICE);
            store.slices.push_back(detectSlice(store, space, time));
            const double stop = store.slices.back().stop;
            if (!(stop > time)) {
                break; // a time so large that seconds vanish in it: the walk would stand still for ever
            }
            time = stop;
            advanceValueSpace(store, time, space);
        }
    }
}

OV_FOCUS_SLICE OrvantaWorker::detectSlice(OV_DATA_STORE& store, ValueSpace& space, double time) const {
    const double probeEnd = time + kProbeSeconds;
    loadObjects(store, {time, probeEnd}, space);
    recalcValueInterval(store, {time, probeEnd}, space);
    const std::optional<std::pair<Rectangle, double>> probe = space.quickFocus(probeEnd - time, kDeparted);

    OV_FOCUS_SLICE slice;
    slice.start = time;
    slice.blank = !probe.has_value();
    double end = 0.0;
    if (slice.blank) {
        const unsigned int trigger = getFirstTriggerObject(store, time, firstActiveAfter(store, time));
        end = time + kLongestSeconds;
        if (trigger < store.valueObjects.size()) {
            end = std::min(end, std::max(store.valueObjects[trigger].start, probeEnd));
        }
    } else {
        const auto& [focus, density] = *probe;
        end = probeEnd + std::min(kLongestSeconds, density / ((probeEnd - time) * kFocusRate));
        double bound = probeEnd;
        unsigned int trigger = getFirstTriggerObject(store, bound, firstActiveAfter(store, bound));
        while (trigger < store.valueObjects.size()) {
            const double start = store.valueObjects[trigger].start;
            if (!(start < end)) {
                break;
            }
            countSteps(store, 1);
            if (!liesInFocus(store.valueObjects[trigger].rect, focus)) {
                bound = start + kLookAheadSeconds;
                loadObjects(store, {start, bound}, space);
                recalcValueInterval(store, {start, bound}, space);
                const auto ahead = space.quickFocus(bound - start, kDeparted);
                const bool staysPut = ahead.has_value() && !detectMotion(ahead->first, focus, kMotionPixels);
                if (!staysPut) {
                    end = start;
                    break;
                }
            }
            // A trigger inside the focus leaves the bound alone: the next one counts from where this one did.
            trigger = getFirstTriggerObject(store, bound, trigger + 1);
        }
    }

    end = std::min(end, store.liveZones[store.currentZone].stop);
    const double nextWindow = getNextWindowTime(store, time);
    if (nextWindow > probeEnd && nextWindow < end) {
        end = nextWindow;
    }

    if (!slice.blank) {
        recalcValueInterval(store, {time, end}, space);
        slice.map = space.summarize(end - time, kDeparted);
        slice.blank = slice.map.spaces.empty(); // the map keeps its span
    }
    slice.stop = end;
    return slice;
}

unsigned int OrvantaWorker::getFirstTriggerObject(OV_DATA_STORE& store, double time, unsigned int from) const {
    const auto count = static_cast<unsigned int>(store.valueObjects.size());
    for (unsigned int i = from; i < count; ++i) {
        if (store.valueObjects[i].start > time && isTrigger(store.valueObjects[i])) {
            countSteps(store, (i - from) / kPassedPerStep);
            return i;
        }
    }
    countSteps(store, (count - std::min(from, count)) / kPassedPerStep);
    return count;
}

bool OrvantaWorker::detectMotion(Rectangle a, Rectangle b, int threshold) const {
    const auto isApart = [&](std::int32_t edge, std::int32_t other) {
        return wrapSub(edge, other) >= threshold || wrapSub(other, edge) >= threshold;
    };
    return isApart(a.left, b.left) || isApart(a.right, b.right) || isApart(a.top, b.top) || isApart(a.bottom, b.bottom);
}

double OrvantaWorker::getNextWindowTime(OV_DATA_STORE& store, double time) const {
    const auto& windows = store.windowObjects;
    auto window = windows.begin();
    if (store.windowTimes != nullptr && store.windowTimes->isInOrder()) {
        window = std::upper_bound(windows.begin(), windows.end(), time,
                                  [](double t, const OV_VALUE_OBJECT& object) { return t < object.start; });
    }
    const auto from = window;
    window = std::find_if(from, windows.end(), [&](const OV_VALUE_OBJECT& object) {
        return object.type == ActiveWindow && object.start > time;
    });
    countSteps(store, static_cast<std::uint64_t>(window - from) / kPassedPerStep);
    return window == windows.end() ? time : window->start;
}

bool OrvantaWorker::getConstantWindow(OV_DATA_STORE& store, Interval_Type<double> interval, Rectangle& window) const {
    const auto& windows = store.windowObjects;
    const auto found = std::find_if(windows.begin(), windows.end(), [&](const OV_VALUE_OBJECT& object) {
        return object.type == ActiveWindow && object.start <= interval.start && object.stop >= interval.stop;
    });
    countSteps(store, static_cast<std::uint64_t>(found - windows.begin()) / kPassedPerStep);
    if (found == windows.end()) {
        return false;
    }
    window = found->rect;
    return true;
}

Rectangle OrvantaWorker::getSliceValueTier(OV_DATA_STORE& store, unsigned int slice) const {
    const OV_FOCUS_SLICE& s = store.slices[slice];
    const std::vector<Rectangle>& hot = s.map.tier4Rects;
    Rectangle tier;
    if (!hot.empty()) {
        tier = hot.front();
        for (const Rectangle& rect : hot) {
            tier = boundingUnion(tier, rect);
        }
    }
    if (isEmpty(tier)) {
        tier = s.breakdown.windowRect;
    }
    if (isEmpty(tier)) {
        tier = {0, 1, 0, 1};
    }
    return tier;
}

} // namespace OrvantaNS
