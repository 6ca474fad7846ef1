// The second pass: a small rule engine that looks back over the primitives with the time ahead in hand.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"
#include "frame/InForce.h"
#include "frame/Steps.h"
#include "parser/meaning/MetaPassTiming.h"
#include "parser/meaning/WorkingList.h"
#include "parser/walk/ZoneWalk.h"

namespace OrvantaNS {

namespace {

bool isDue(long long head, long long next) { return head > 0 && head <= next; }

} // namespace

Interval_Type<long long> DataParser::setMetaTime(unsigned int zone, OV_DATA_STORE& store) {
    long long next = revertTime(store.liveZones[zone].stop);
    // A cursor location left in the stream lifts the clamp, even one that lies behind the zone's stop.
    if (locationTime > 0) {
        next = locationTime;
    }
    if (isDue(actionTime, next)) {
        next = actionTime;
    }
    if (isDue(caretTime, next)) {
        next = caretTime;
    }
    if (isDue(foreWindowTime, next)) {
        next = foreWindowTime;
    }
    metaTime = std::min(metaTime, next);
    return {metaStartTime, metaTime};
}

void DataParser::fluxCapacitor(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const Interval_Type<long long> interval = setMetaTime(zone, store);
    passStart_ = convertTime(metaStartTime);
    findFullScreenDR(params, store, interval);
    {
        WorkingList list(objects, store);
        const InForce<WorkingList*> inForce(list_, &list);
        processStrokes(store);
        getClickResult(zone, params, store);
    }
    countSteps(store, objects.size());
    stoppableSort(store, objects.size(), CompareValueObjects2,
                  [&](auto less) { std::stable_sort(objects.begin(), objects.end(), less); });
    applyRules(zone, params, store, convertTime(interval.stop));

    strokes.clear();
    std::erase_if(objects, [](const OV_VALUE_OBJECT& object) { return object.type == Dead; });
    if (walk_ != nullptr) {
        skipAllButDirtyRects(params, store, metaStartTime);
    } else {
        skipToTime(params, store, metaStartTime);
    }
    setProgress(store, convertTime(metaTime), OV_STAGE_PARSE);

    const long long zoneStop = revertTime(store.liveZones[zone].stop);
    const long long step = revertTime(kMetaStepSeconds);
    if (metaStartTime > zoneStop) {
        metaTime = kNoMetaPass;
    } else if (metaStartTime == zoneStop) {
        // One more pass follows, whose start lies beyond every stop of the zone: it flushes the list.
        metaStartTime = wrapAdd(metaStartTime, step);
    } else {
        metaStartTime = metaTime;
        metaTime = wrapAdd(metaTime, step);
    }
}

WorkingList& DataParser::listFor(std::optional<WorkingList>& own, OV_DATA_STORE& store) {
    return list_ != nullptr ? *list_ : own.emplace(objects, store);
}

void DataParser::applyRules(unsigned int zone, const Params& params, OV_DATA_STORE& store, double limit) {
    WorkingList list(objects, store);
    const InForce<WorkingList*> inForce(list_, &list);
    // Rules insert objects behind the walk: everything goes by index.
    for (std::uint32_t i = 0; i < objects.size() && !(objects[i].start > limit); ++i) {
        countSteps(store, 1);
        switch (objects[i].type) {
        case Move:
        case MoveOutOfWindow:
        case MoveIntoWindow:
            metaSystemMenuHover(zone, params, store, i);
            metaPromoteHover(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        case MouseIdle:
            metaOutOfWindowIdle(zone, params, store, i);
            metaInWindowIdle(zone, params, store, i);
            list.retype(i, Dead);
            break;
        case Click:
        case DoubleClick:
            metaSystemMenuClick(zone, params, store, i);
            metaClickDetect(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        case Drag:
            metaDragDirty(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        case Caret:
        case TextFocus:
        case FollowText:
        case FullScreenDirty:
        case HoverPopup:
        case ClickDirty:
            metaAddPersist(zone, params, store, i);
            break;
        case ForeOpen:
            metaKillPopWindow(zone, params, store, i);
            break;
        case ForeAnimate:
            metaJoinAnimatedWindows(zone, params, store, i);
            break;
        case ActiveWindow:
            metaWindowPane(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        case Menu:
            metaMenuHover(zone, params, store, i);
            metaMenuResult(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        case OffScreen:
            metaOutOfRegion(zone, params, store, i);
            break;
        case ClickWindow:
            metaContextMenu(zone, params, store, i);
            metaAddPersist(zone, params, store, i);
            break;
        default:
            // What is not handed over by the rule that makes it does not outlive the walk: hovers, panes, menu
            // results, wheel runs.
            list.retype(i, Dead);
            break;
        }
    }
}

void DataParser::findFullScreenDR(const Params& params, OV_DATA_STORE& store, Interval_Type<long long> interval) {
    const Rectangle region = params.recordingRegions().at(0).rect;
    for (const std::uint32_t index : getDRObjectsInTime(interval)) {
        const DR_OBJECT& object = drObjects[index];
        if (!(object.bounds == region)) {
            continue;
        }
        countSteps(store, object.frames.size() / kPassedPerStep);
        for (std::uint32_t j = 0; j < object.frames.size(); ++j) {
            const OV_TIME_RECT& frame = object.frames[j];
            if (frame.time < interval.start || frame.time > interval.stop || !(frame.rect == region)) {
                continue;
            }
            const Interval_Type<long long> span = getDRFrameSpan(index, j);
            OV_VALUE_OBJECT change;
            change.type = FullScreenDirty;
            change.start = convertTime(std::max(span.start, interval.start));
            change.stop = convertTime(std::min(span.stop, interval.stop));
            change.rect = region;
            clipRectToLZ(store.currentZone, store, change.rect);
            objects.push_back(change);
        }
    }
}

} // namespace OrvantaNS
