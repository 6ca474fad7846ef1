// Splits the timeline where the recording region changes, and has the parser fill each stretch with objects.

#include "OrvantaWorker.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "frame/DataStore.h"
#include "frame/StableSort.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "parser/walk/StreamIndex.h"

namespace OrvantaNS {

namespace {

// Seconds beyond the animated move for which the picture is in flux around a change of region.
constexpr double kQuietSeconds = 1.0;

bool isWindowObject(const OV_VALUE_OBJECT& object) {
    return object.type == ForeAnimate || object.type == ActiveWindow || object.type == FullScreenDirty;
}

} // namespace

//  region     first ........|T second
//  zones      [......)  m   |   m  (......]     m: the margin; what lies in it belongs to no zone
void OrvantaWorker::parseLiveZones(const Params& params, OV_DATA_STORE& store) const {
    const double margin = store.fadeSeconds + kQuietSeconds;
    const std::vector<OV_TIME_RECT>& regions = params.recordingRegions();
    OV_LIVE_ZONE zone;
    zone.start = std::max(store.clipStart, DataParser::convertTime(regions.at(0).time));
    zone.rect = regions.at(0).rect;
    if (regions.size() == 1) {
        // Kept whatever its length: a zone without time gets no slices, and that is failure enough later on.
        zone.stop = store.clipStop;
        store.liveZones.push_back(zone);
    } else {
        const auto keepIfLong = [&] {
            if (zone.stop > zone.start + margin) {
                store.liveZones.push_back(zone);
            }
        };
        for (std::size_t i = 1; i < regions.size(); ++i) {
            const double change = DataParser::convertTime(regions[i].time);
            zone.stop = change - margin;
            keepIfLong();
            // Not cut to the clip: only the first zone minds the clip's start, and only the last one its stop.
            zone.start = change + margin;
            zone.rect = regions[i].rect;
        }
        zone.stop = store.clipStop;
        keepIfLong();
    }
    if (store.liveZones.empty()) {
        throw OrvantaException("Need String! No Live Zones detected!", OVERR_NO_LIVE_ZONES);
    }
}

void OrvantaWorker::parseObjectData(const Params& params, OV_DATA_STORE& store, DataParser& parser) const {
    const StreamIndex streams(params);
    countSteps(store, (params.cursorActions().size() + params.cursorLocations().size()) / kPassedPerStep);
    for (std::uint32_t zone = 0; zone < store.liveZones.size(); ++zone) {
        store.currentZone = zone;
        parser.processLiveZone(zone, params, store, streams);
    }
    // The working list has room for all that was ever on it: as much as all objects take.
    parser.objects.shrink_to_fit();
    // Nothing asks for the last zone's areas any more.
    parser.drObjects.clear();
    parser.drObjects.shrink_to_fit();
    std::vector<OV_VALUE_OBJECT>& objects = store.valueObjects;
    countSteps(store, objects.size());
    stoppableSort(store, objects.size(), CompareValueObjects, [&](auto less) { stableSort(objects, less); });
    filterWindows(store);
}

void OrvantaWorker::filterWindows(OV_DATA_STORE& store) const {
    for (const OV_VALUE_OBJECT& object : store.valueObjects) {
        if (isWindowObject(object)) {
            store.windowObjects.push_back(object);
            store.windowObjects.back().value = 0.0;
        }
    }
}

} // namespace OrvantaNS
