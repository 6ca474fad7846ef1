// Keeps the value space in step with the slice walk: what enters it, what leaves it, and what each object is worth over
// the interval in question. All times are seconds.

#include "OrvantaWorker.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/DataStore.h"
#include "frame/Exponential.h"
#include "frame/Steps.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// Work on one object when its worth is integrated, steps.
constexpr std::uint64_t kStepsPerIntegral = 4;

// More objects seldom leave at once: room for them is asked for in one go.
constexpr std::size_t kFewLeaving = 8;

// True when the object, its decay included, and the interval share more than a moment.
bool overlapsInterval(const OV_VALUE_OBJECT& object, const Interval_Type<double>& interval) {
    return std::min(interval.stop, lifeEnd(object)) - std::max(interval.start, object.start) > 0.0;
}

// Antiderivative of 1 - exp(x - decay), the share of its worth that an object still has x seconds after its stop. It
// falls slowly at first and steeply toward the end, to nothing at x = decay.
double decayIntegral(double x, double decay) { return x - exponential(x - decay); }

// The same at the stop itself, where most of the intervals begin in which an object fades. By type.
double decayIntegralAtStop(std::uint32_t type) {
    static const auto integrals = [] {
        std::array<double, g_ValueMatrix.size()> byType{};
        for (std::size_t i = 0; i < byType.size(); ++i) {
            byType[i] = decayIntegral(0.0, g_ValueMatrix[i].decay);
        }
        return byType;
    }();
    return integrals[type];
}

// What an object is worth over an interval that it shares a moment with, value-seconds.
//
//  object      start|========|stop~~~~~~~|stop + decay
//  interval            a|............|b
//  counted              |body|  tail |
double worthWithin(const OV_VALUE_OBJECT& o, const Interval_Type<double>& interval) {
    const auto [value, decay] = g_ValueMatrix[o.type];
    double worth = 0.0;
    const double body = std::min(o.stop, interval.stop) - std::max(o.start, interval.start);
    if (body > 0.0) {
        worth += value * body;
    }
    const double tailStart = std::max(o.stop, interval.start) - o.stop;
    const double tailStop = std::min(o.stop + decay, interval.stop) - o.stop;
    if (tailStop - tailStart > 0.0) {
        worth += value * (decayIntegral(tailStop, decay) -
                          (tailStart == 0.0 ? decayIntegralAtStop(o.type) : decayIntegral(tailStart, decay)));
    }
    return worth;
}

} // namespace

void OrvantaWorker::advanceValueSpace(OV_DATA_STORE& store, double time, ValueSpace& space) const {
    const std::uint32_t first = store.firstActiveObject;
    store.firstActiveObject = store.nextObject;
    if (store.nextObject >= store.valueObjects.size() || first > store.nextObject) {
        return;
    }
    // One long-lived window keeps a whole recording active, so this walk is kept to a comparison an object; only what
    // is in the space is looked up there.
    const auto isRetired = [&](std::uint32_t object) { return lifeEnd(store.valueObjects[object]) < time; };
    for (std::uint32_t i = store.nextObject + 1; i-- > first;) {
        if (isRetired(i)) {
            store.valueObjects[i].value = 0.0;
        } else {
            store.firstActiveObject = i;
        }
    }
    countSteps(store, (store.nextObject - first) / kPassedPerStep);
    StepCounter steps(store);
    std::vector<std::uint32_t> leaving;
    const auto& placed = space.placedObjects();
    const auto isBehind = [&](const std::pair<std::uint32_t, std::uint32_t>& object) { return object.first < first; };
    for (auto entry = std::partition_point(placed.begin(), placed.end(), isBehind);
         entry != placed.end() && entry->first <= store.nextObject; ++entry) {
        steps.add(1);
        if (isRetired(entry->first)) {
            if (leaving.empty()) {
                leaving.reserve(kFewLeaving); // mostly nothing leaves
            }
            leaving.push_back(entry->first);
        }
    }
    steps.settle();
    if (!leaving.empty()) {
        space.deleteObjects(leaving);
    }
}

void OrvantaWorker::loadObjects(OV_DATA_STORE& store, Interval_Type<double> interval, ValueSpace& space) const {
    for (std::uint32_t i = store.nextObject; i < store.valueObjects.size(); ++i) {
        if (store.valueObjects[i].start > interval.stop) {
            break;
        }
        countSteps(store, 1);
        if (overlapsInterval(store.valueObjects[i], interval)) {
            space.insertObject(i);
            // The last one in, not the one after it: the next load meets it again, and the space ignores it.
            store.nextObject = i;
        }
    }
}

void OrvantaWorker::recalcValueInterval(OV_DATA_STORE& store, Interval_Type<double> interval, ValueSpace& space) const {
    StepCounter steps(store);
    for (const auto& [index, location] : space.placedObjects()) {
        steps.add(kStepsPerIntegral);
        OV_VALUE_OBJECT& object = store.valueObjects[index];
        object.value = overlapsInterval(object, interval) ? worthWithin(object, interval) : 0.0;
    }
    steps.settle();
}

double OrvantaWorker::getIntegrationValue(unsigned int object, Interval_Type<double> interval,
                                          OV_DATA_STORE& store) const {
    const OV_VALUE_OBJECT& o = store.valueObjects[object];
    return o.start > interval.stop || interval.start >= lifeEnd(o) ? 0.0 : worthWithin(o, interval);
}

} // namespace OrvantaNS
