// Sorts the cursor's life into motion (strokes), rest and absence.

#include "parser/DataParser.h"

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/cursor/StillPoint.h"
#include "parser/walk/ZoneWalk.h"

namespace OrvantaNS {

namespace {

// Near its anchor for longer than this, seconds, the cursor rests.
constexpr double kLingerSeconds = 0.5;

// Whether `next` goes on in the direction from `first` to `last`, or falls back by no more than the tremor from the
// furthest reach. A stroke that has not moved on the axis counts as going down it; standing still always continues.
bool continuesOnAxis(std::int32_t first, std::int32_t last, std::int32_t next, std::int32_t low, std::int32_t high) {
    if (first < last) {
        return next >= last || next >= wrapSub(high, kStillPixels);
    }
    return next <= last || next <= wrapAdd(low, kStillPixels);
}

void appendPoint(MOUSE_STROKE& stroke, const OV_MOUSE_LOCATION& location) {
    stroke.points.push_back(location);
    stroke.bounds = boundingUnion(stroke.bounds, {location.x, location.x, location.y, location.y});
}

// `DataParser::addToStroke`, with the longest stay near the anchor that is no rest, ticks.
bool goesOn(const OV_MOUSE_LOCATION& location, MOUSE_STROKE& stroke, long long linger) {
    if (stroke.points.size() < 2) {
        appendPoint(stroke, location);
        return true;
    }
    const OV_MOUSE_LOCATION first = stroke.points.front();
    const OV_MOUSE_LOCATION last = stroke.points.back();
    if (!continuesOnAxis(first.x, last.x, location.x, stroke.bounds.left, stroke.bounds.right) ||
        !continuesOnAxis(first.y, last.y, location.y, stroke.bounds.top, stroke.bounds.bottom)) {
        return false;
    }
    const OV_MOUSE_LOCATION anchor = stroke.points[stroke.anchor];
    if (isElsewhere(location, anchor)) {
        stroke.anchor = static_cast<std::uint32_t>(stroke.points.size());
    } else if (wrapSub(location.time, anchor.time) > linger) {
        // The rest began at the anchor. Bounds and anchor stay as they are.
        stroke.points.resize(stroke.anchor + std::size_t{1});
        return false;
    }
    appendPoint(stroke, location);
    return true;
}

} // namespace

bool DataParser::addToStroke(const OV_MOUSE_LOCATION& location, MOUSE_STROKE& stroke, const Params&) {
    return goesOn(location, stroke, revertTime(kLingerSeconds));
}

bool DataParser::extendIdle(const OV_MOUSE_LOCATION& location, MOUSE_IDLE& idle) {
    if (isElsewhere(location, idle.location)) {
        return false;
    }
    idle.interval.stop = location.time;
    return true;
}

void DataParser::processCursorLocation(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const std::vector<OV_MOUSE_LOCATION>& locations = params.cursorLocations();
    const long long zoneStop = revertTime(store.liveZones[zone].stop);
    const long long linger = revertTime(kLingerSeconds);
    MOUSE_STROKE& stroke = strokeInWork_;
    stroke.points.clear(); // and keep their memory
    stroke.bounds = MOUSE_STROKE{}.bounds;
    stroke.anchor = 0;
    MOUSE_IDLE idle;
    bool idling = false;
    bool offScreen = false;

    while (nextLocation < locations.size()) {
        const OV_MOUSE_LOCATION sample = locations[nextLocation];
        ++nextLocation;
        if (sample.time > zoneStop) {
            if (idling) {
                extendIdle(sample, idle);
                createIdlePrimitive(zone, store, idle);
            }
            if (offScreen) {
                createOffScreenPrimitive(zone, store, idle);
            }
            break;
        }
        if (idling) {
            if (extendIdle(sample, idle)) {
                continue;
            }
            // The sample that ends a rest or an absence is consumed and belongs to no stroke.
            createIdlePrimitive(zone, store, idle);
            break;
        }
        OV_MOUSE_LOCATION local = sample;
        const bool inZone = clipPointToLZ(zone, store, local);
        if (offScreen) {
            if (!inZone) {
                idle.interval.stop = sample.time;
                continue;
            }
            createOffScreenPrimitive(zone, store, idle);
            break;
        }
        if (!inZone) {
            offScreen = true;
            idle.interval = {sample.time, sample.time};
            continue;
        }
        const std::size_t pointsBefore = stroke.points.size();
        if (goesOn(sample, stroke, linger)) {
            continue;
        }
        if (stroke.points.size() < pointsBefore) {
            idle.location = stroke.points.back();
            idle.interval = {idle.location.time, sample.time};
            idling = true;
            continue;
        }
        // The stroke has turned: the sample opens the next one.
        --nextLocation;
        break;
    }

    if (stroke.points.size() >= 2 && isElsewhere(stroke.points.front(), stroke.points.back())) {
        strokes.push_back(stroke);
    }
}

void DataParser::createIdlePrimitive(unsigned int zone, OV_DATA_STORE& store, MOUSE_IDLE& idle) {
    std::pair<int, int> point{idle.location.x, idle.location.y};
    clipPointToLZ(zone, store, point);
    const auto [x, y] = point;
    const Interval_Type<double> time = convertInterval(idle.interval);
    objects.push_back({MouseIdle, time.start, time.stop, {x, wrapAdd(x, 1), y, wrapAdd(y, 1)}, 0.0});
}

void DataParser::createOffScreenPrimitive(unsigned int, OV_DATA_STORE&, MOUSE_IDLE& idle) {
    const Interval_Type<double> time = convertInterval(idle.interval);
    objects.push_back({OffScreen, time.start, time.stop, Rectangle{}, 0.0});
}

OV_MOUSE_LOCATION DataParser::getMouseAtTime(const Params& params, long long time) {
    const bool inOrder = walk_ != nullptr && walk_->streams.standsFor(params) && walk_->streams.areLocationsInOrder();
    if (!inOrder) {
        count(params.cursorLocations().size() / kPassedPerStep); // at most
    }
    return sampleFrom(params.cursorLocations(), skipLocation, time, inOrder);
}

} // namespace OrvantaNS
