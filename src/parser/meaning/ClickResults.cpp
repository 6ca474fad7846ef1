// What a click did, which is only visible afterwards; and the gate through which objects leave the working list.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"

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

bool isWindow(const OV_VALUE_OBJECT& object) {
    return object.type == ForeAnimate || object.type == ActiveWindow || object.type == Menu;
}

// Searching clicks makes no windows, so the list holds for any number of them.
std::vector<std::uint32_t> windowsIn(const std::vector<OV_VALUE_OBJECT>& objects) {
    std::vector<std::uint32_t> windows;
    for (std::uint32_t i = 0; i < objects.size(); ++i) {
        if (isWindow(objects[i])) {
            windows.push_back(i);
        }
    }
    return windows;
}

void findResults(DataParser& parser, unsigned int zone, OV_DATA_STORE& store, unsigned int index,
                 const std::vector<std::uint32_t>& windows) {
    std::vector<OV_VALUE_OBJECT>& objects = parser.objects;
    const double start = objects[index].start;
    const double end = start + kResultSeconds;

    const auto window = std::find_if(windows.begin(), windows.end(), [&](std::uint32_t i) {
        const OV_VALUE_OBJECT& object = objects[i];
        return object.start >= start &&
               (object.stop <= end || std::max(start, object.start) < std::min(end, object.stop));
    });
    if (window != windows.end()) {
        OV_VALUE_OBJECT result = objects[*window];
        result.type = ClickWindow;
        result.start = result.start - kAheadOfWindowSeconds;
        result.stop = result.start;
        objects.push_back(result);
    }

    const Interval_Type<long long> reach{DataParser::revertTime(start), DataParser::revertTime(end)};
    for (const std::uint32_t object : parser.getDRObjectsInTime(reach)) {
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
    const double now = convertTime(metaStartTime);
    const std::vector<std::uint32_t> windows = windowsIn(objects);
    for (std::uint32_t i = 0; i < objects.size(); ++i) {
        if (isClick(objects[i]) && now >= objects[i].stop) {
            findResults(*this, zone, store, i, windows);
        }
    }
}

void DataParser::getClickResultWorker(unsigned int zone, const Params&, OV_DATA_STORE& store, unsigned int index) {
    findResults(*this, zone, store, index, windowsIn(objects));
}

Rectangle DataParser::detectClickDR(const Params&, OV_DATA_STORE& store, OV_VALUE_OBJECT& object) {
    for (std::uint32_t i = skipDRObject; i < drObjects.size(); ++i) {
        const double start = convertTime(drObjects[i].start);
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
    const auto window = std::find_if(objects.begin(), objects.end(), [&](const OV_VALUE_OBJECT& object) {
        return object.type == ActiveWindow && object.start >= click.start &&
               object.start <= click.start + kAnswerSeconds && contains(object.rect, click.rect);
    });
    click.rect = window == objects.end() ? answer : intersection(answer, window->rect);
}

void DataParser::metaAddPersist(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    OV_VALUE_OBJECT& object = objects[index];
    if (object.type == Dead) {
        return;
    }
    if (convertTime(metaStartTime) >= object.stop) {
        store.valueObjects.push_back(object);
        object.type = Dead;
    }
}

void DataParser::metaDragDirty(unsigned int, const Params&, OV_DATA_STORE&, unsigned int index) {
    OV_VALUE_OBJECT& drag = objects[index];
    for (std::size_t k = index + std::size_t{1}; k < objects.size(); ++k) {
        OV_VALUE_OBJECT& hover = objects[k];
        if (hover.type == Hover && hover.start >= drag.start && hover.stop <= drag.stop) {
            drag.rect = boundingUnion(drag.rect, hover.rect);
            hover.type = Dead;
        }
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
