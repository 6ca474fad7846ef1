// What a click did, which is only visible afterwards; and the gate through which objects leave the working list.

#include "parser/DataParser.h"

#include <algorithm>
#include <optional>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "frame/TimeModel.h"
#include "parser/meaning/WorkingList.h"
#include "parser/walk/ComputationClock.h"

namespace OrvantaNS {

namespace {

// How long after a click its results may begin, seconds.
constexpr double kResultSeconds = 2.0;
// The click's window is told of just ahead of the window itself, seconds.
constexpr double kAheadOfWindowSeconds = 0.01;
// An area at least this large in both dimensions is too large to be a point of interest, pixels.
constexpr std::int32_t kResultPixels = 481;
// An area that answers a click begins within this of it, seconds; so does a window that the click brought up.
constexpr double kAnswerSeconds = 0.25;
// An answer below this covers next to nothing, pixels in all.
constexpr std::int32_t kAnswerArea = 2;
// Half the side of the box around a click that nothing answered, pixels.
constexpr std::int32_t kClickBoxPixels = 16;
// How far from a stroke something that explains it may lie, seconds.
constexpr double kExplainSeconds = 5.0;
constexpr double kExplainIdleSeconds = 2.0;

bool isClick(const OV_VALUE_OBJECT& object) { return object.type == Click || object.type == DoubleClick; }

void findResults(DataParser& parser, WorkingList& list, unsigned int zone, OV_DATA_STORE& store, unsigned int index) {
    std::vector<OV_VALUE_OBJECT>& objects = parser.objects;
    const double start = objects[index].start;
    const double end = start + kResultSeconds;

    const std::size_t window = list.windowFollowing(start, end);
    if (window != WorkingList::kNone) {
        OV_VALUE_OBJECT result = objects[window];
        result.type = ClickWindow;
        result.start = result.start - kAheadOfWindowSeconds;
        result.stop = result.start;
        objects.push_back(result);
    }

    const Interval_Type<long long> reach{DataParser::revertTime(start), DataParser::revertTime(end)};
    for (const std::uint32_t object : parser.getDRObjectsInTime(reach)) {
        countSteps(store, 1);
        const DR_OBJECT& area = parser.drObjects[object];
        if (area.start < reach.start || (area.stop > reach.stop && area.start >= reach.stop)) {
            continue;
        }
        Rectangle rect = area.bounds;
        parser.clipRectToLZ(zone, store, rect);
        if (rect.top == 0) {
            continue; // changes in the menu bar are no results
        }
        if (width(rect) < kResultPixels || height(rect) < kResultPixels) {
            const double time = DataParser::convertTime(area.start);
            objects.push_back({ClickDirty, time, time, rect, 0.0});
        }
    }
}

} // namespace

void DataParser::getClickResult(unsigned int zone, const Params&, OV_DATA_STORE& store) {
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const double now = convertTime(metaStartTime);
    for (std::uint32_t i = 0; i < objects.size(); ++i) {
        if (isClick(objects[i]) && now >= objects[i].stop) {
            findResults(*this, list, zone, store, i);
        }
    }
}

void DataParser::getClickResultWorker(unsigned int zone, const Params&, OV_DATA_STORE& store, unsigned int index) {
    std::optional<WorkingList> own;
    findResults(*this, listFor(own, store), zone, store, index);
}

Rectangle DataParser::detectClickDR(const Params&, OV_DATA_STORE& store, OV_VALUE_OBJECT& object) {
    const double scale = ComputationClock::ticksPerSecond();
    for (std::uint32_t i = skipDRObject; i < drObjects.size(); ++i) {
        countSteps(store, 1);
        const double start = ticksToSeconds(drObjects[i].start, scale);
        if (start >= object.start - kAnswerSeconds && start <= object.stop + kAnswerSeconds) {
            Rectangle rect = drObjects[i].bounds;
            clipRectToLZ(store.currentZone, store, rect);
            if (overlaps(rect, object.rect)) {
                return rect;
            }
        } else if (start > object.stop + kAnswerSeconds) {
            break;
        }
    }
    return {};
}

void DataParser::metaClickDetect(unsigned int, const Params& params, OV_DATA_STORE& store, unsigned int index) {
    OV_VALUE_OBJECT& click = objects[index];
    const Rectangle answer = detectClickDR(params, store, click);
    if (isEmpty(answer) || area(answer) < kAnswerArea) {
        // The box moves on the next pass that meets the click: this box's corner then serves as the click point.
        const std::int32_t left = click.rect.left;
        const std::int32_t top = std::min(click.rect.top, click.rect.bottom);
        click.rect = grown({left, left, top, top}, kClickBoxPixels);
        return;
    }
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const auto next = [&](std::size_t from) {
        return list.beginning(WorkingList::Windows, from, click.start, click.start + kAnswerSeconds);
    };
    std::size_t window = next(0);
    while (window != WorkingList::kNone && !contains(objects[window].rect, click.rect)) {
        window = next(window + 1);
    }
    click.rect = window == WorkingList::kNone ? answer : intersection(answer, objects[window].rect);
}

void DataParser::metaAddPersist(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& object = objects[index];
    if (object.type == Dead) {
        return;
    }
    if ((list_ != nullptr ? passStart_ : convertTime(metaStartTime)) >= object.stop) {
        store.valueObjects.push_back(object);
        std::optional<WorkingList> own;
        listFor(own, store).retype(index, Dead);
    }
}

void DataParser::metaDragDirty(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    OV_VALUE_OBJECT& drag = objects[index];
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const auto next = [&](std::size_t from) { return list.within(WorkingList::Hovers, from, drag.start, drag.stop); };
    for (std::size_t k = next(index + std::size_t{1}); k != WorkingList::kNone; k = next(k + 1)) {
        drag.rect = boundingUnion(drag.rect, objects[k].rect);
        list.retype(k, Dead);
    }
}

void DataParser::metaKillStrokes(unsigned int, const Params&, OV_DATA_STORE&, unsigned int index) {
    OV_VALUE_OBJECT& stroke = objects[index];
    bool explained = false;
    for (const OV_VALUE_OBJECT& object : objects) {
        // A stroke within a drag is the drag's, whatever else would explain it.
        if (object.type == Drag && object.start <= stroke.start && object.stop >= stroke.stop) {
            explained = false;
            break;
        }
        const bool leadsToGesture = (isClick(object) || object.type == Drag) && object.start >= stroke.start &&
                                    object.start < stroke.start + kExplainSeconds;
        const bool followsClick =
            isClick(object) && object.start <= stroke.start && object.stop + kExplainSeconds > stroke.start;
        const bool spansIdle = object.type == MouseIdle && object.start - kExplainIdleSeconds <= stroke.start &&
                               object.start + kExplainIdleSeconds >= stroke.stop;
        const bool meetsPopup = object.type == HoverPopup && object.start >= stroke.start && object.stop <= stroke.stop;
        explained = explained || leadsToGesture || followsClick || spansIdle || meetsPopup;
    }
    if (!explained) {
        stroke.type = Dead;
    }
}

} // namespace OrvantaNS
