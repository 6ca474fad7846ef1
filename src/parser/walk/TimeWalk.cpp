// The primary pass: walks the streams of one live zone in time order, with the meta pass in between.

#include "parser/DataParser.h"

#include <algorithm>
#include <limits>

#include "frame/InForce.h"
#include "frame/Steps.h"
#include "frame/WrappingArithmetic.h"
#include "parser/meaning/MetaPassTiming.h"
#include "parser/walk/ZoneWalk.h"

namespace OrvantaNS {

namespace {

// The head of a stream that is exhausted.
constexpr long long kAbsent = -1;

template <typename Sample> long long headTime(const std::vector<Sample>& stream, std::uint32_t cursor) {
    return cursor < stream.size() ? stream[cursor].time : kAbsent;
}

bool isEarlier(long long time, long long head) { return head == kAbsent || time < head; }

bool isDoneBefore(long long zoneStop, long long head) { return head < 0 || head >= zoneStop; }

// Leaves the cursor on the last sample before `time`, one short of the first sample at or after it, so that the sample
// just before the moment stays in reach. The samples ahead of position `passed` are known to lie before `time`.
template <typename Sample>
void skipStream(const std::vector<Sample>& stream, std::uint32_t& cursor, long long time,
                long long Sample::*sampleTime = &Sample::time, std::uint32_t passed = 0) {
    std::size_t first = std::max(cursor, passed);
    while (first < stream.size() && stream[first].*sampleTime < time) {
        ++first;
    }
    if (first > cursor) {
        cursor = static_cast<std::uint32_t>(first - 1);
    }
}

} // namespace

DataParser::DataParser() = default;

void DataParser::processLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    processLiveZone(zone, params, store, StreamIndex(params));
}

void DataParser::processLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store,
                                 const StreamIndex& streams) {
    const InForce<OV_DATA_STORE*> counting(counting_, &store);
    drObjects.clear();
    skipToLiveZone(zone, params, store);
    const ReadSamples dirtyRects = findAreas(zone, params, store);
    skipDRObject = 0;

    const ZoneWalk walk{streams, AreaTimes(drObjects)};
    count(drObjects.size());
    const InForce<const ZoneWalk*> inForce(walk_, &walk);
    const long long latest = walkZone(zone, params, store);
    // The walk does without the dirty rectangles: to step over them each time would read all of them once more.
    skipDirtyRects(params, store, latest, dirtyRects);
}

long long DataParser::walkZone(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const long long zoneStop = revertTime(store.liveZones[zone].stop);
    metaStartTime = revertTime(store.liveZones[zone].start);
    metaTime = wrapAdd(metaStartTime, revertTime(kMetaStepSeconds));

    long long latest = std::numeric_limits<long long>::lowest();
    std::uint64_t seen = 0; // samples that the walk has passed
    for (;;) {
        const std::uint64_t now = std::uint64_t{nextAction} + nextCaret + nextForeWindow + nextLocation;
        countSteps(store, now > seen ? now - seen : 1);
        seen = now;
        actionTime = headTime(params.cursorActions(), nextAction);
        caretTime = headTime(params.caretRects(), nextCaret);
        foreWindowTime = headTime(params.foreWindows(), nextForeWindow);
        locationTime = headTime(params.cursorLocations(), nextLocation);

        // On equal times the window goes first, then the caret, the action, the location, and the meta pass last, so
        // that it sees every sample of its own moment.
        if (metaTime >= 0 && isEarlier(metaTime, actionTime) && isEarlier(metaTime, caretTime) &&
            isEarlier(metaTime, foreWindowTime) && isEarlier(metaTime, locationTime)) {
            const Interval_Type<long long> before{metaStartTime, metaTime};
            fluxCapacitor(zone, params, store);
            latest = std::max(latest, before.start);
            // A step of no tick would go on for ever, and one backwards nearly so. One that wraps below 0 only leaves the
            // rest to the primary pass.
            if (metaTime != kNoMetaPass && metaStartTime <= before.start && metaTime <= before.stop) {
                return latest;
            }
        } else if (locationTime >= 0 && isEarlier(locationTime, actionTime) && isEarlier(locationTime, caretTime) &&
                   isEarlier(locationTime, foreWindowTime)) {
            processCursorLocation(zone, params, store);
        } else if (actionTime >= 0 && isEarlier(actionTime, caretTime) && isEarlier(actionTime, foreWindowTime)) {
            processCursorAction(zone, params, store);
        } else if (caretTime >= 0 && isEarlier(caretTime, foreWindowTime)) {
            processCaret(zone, params, store);
        } else if (foreWindowTime >= 0) {
            processForeWindow(zone, params, store);
        } else {
            return latest;
        }

        // The heads are those that this step began with.
        if (metaTime < 0 && isDoneBefore(zoneStop, actionTime) && isDoneBefore(zoneStop, caretTime) &&
            isDoneBefore(zoneStop, foreWindowTime) && isDoneBefore(zoneStop, locationTime)) {
            return latest;
        }
    }
}

void DataParser::skipToLiveZone(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    skipToTime(params, store, revertTime(store.liveZones[zone].start));
    nextLocation = skipLocation;
    nextAction = skipAction;
    nextCaret = skipCaret;
    nextForeWindow = skipForeWindow;
}

void DataParser::skipToTime(const Params& params, OV_DATA_STORE& store, long long time) {
    skipAllButDirtyRects(params, store, time);
    skipDirtyRects(params, store, time, {});
}

void DataParser::skipAllButDirtyRects(const Params& params, OV_DATA_STORE& store, long long time) {
    const auto passed = [&] {
        return std::uint64_t{skipLocation} + skipAction + skipCaret + skipForeWindow + skipDRObject;
    };
    const std::uint64_t before = passed();
    skipStream(params.cursorLocations(), skipLocation, time);
    skipStream(params.cursorActions(), skipAction, time);
    skipStream(params.caretRects(), skipCaret, time);
    skipStream(params.foreWindows(), skipForeWindow, time);
    skipStream(drObjects, skipDRObject, time, &DR_OBJECT::stop);
    countSteps(store, (passed() - before) / kPassedPerStep);
}

void DataParser::skipDirtyRects(const Params& params, OV_DATA_STORE& store, long long time, const ReadSamples& read) {
    const std::uint32_t before = skipDirtyRect;
    skipStream(params.dirtyRects(), skipDirtyRect, time, &OV_TIME_RECT::time, read.latest < time ? read.end : 0);
    countSteps(store, (skipDirtyRect - before) / kPassedPerStep);
}

void DataParser::processCaret(unsigned int, const Params&, OV_DATA_STORE&) { ++nextCaret; }

} // namespace OrvantaNS
