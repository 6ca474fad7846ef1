// Menus that only the screen tells of, and what happens inside a menu.

#include "parser/DataParser.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/meaning/WorkingList.h"

namespace OrvantaNS {

namespace {

// Height of the system's menu bar, pixels.
constexpr std::int32_t kBarPixels = 25;
// A menu drops within this time of the click or stroke that set it off, seconds.
constexpr double kDropSeconds = 0.25;
// A hover this far outside a menu still belongs to it, pixels.
constexpr std::int32_t kMenuHoverPixels = 4;
// A click this far outside a menu still belongs to it, pixels.
constexpr std::int32_t kMenuClickPixels = 16;
// A click's results in a menu begin within this time of it, seconds.
constexpr double kMenuResultSeconds = 2.0;

// The strip of the menu bar, local pixels.
Rectangle barRectangle(DataParser& parser, unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const Rectangle region = params.recordingRegions().at(0).rect;
    Rectangle bar{std::min(region.left, region.right), std::max(region.left, region.right), region.top,
                  wrapAdd(region.top, kBarPixels)};
    parser.clipRectToLZ(zone, store, bar);
    return bar;
}

// Makes a menu of each changing area alive in `interval` that starts in the bar and hangs below it, unless the list
// holds a menu of the same time already. A new menu is the next object that the walk reaches.
void dropMenus(DataParser& parser, WorkingList& list, unsigned int zone, OV_DATA_STORE& store, unsigned int index,
               Interval_Type<long long> interval) {
    for (const std::uint32_t object : parser.getDRObjectsInTime(interval)) {
        countSteps(store, 1);
        const DR_OBJECT& area = parser.drObjects[object];
        Rectangle rect = area.bounds;
        parser.clipRectToLZ(zone, store, rect);
        if (rect.top >= kBarPixels || rect.bottom <= kBarPixels) {
            continue;
        }
        const Interval_Type<double> time = DataParser::convertInterval({area.start, area.stop});
        if (list.menuDuring(time.start, time.stop) == WorkingList::kNone) {
            const Rectangle menu{std::min(rect.left, rect.right), std::max(rect.left, rect.right), 0, rect.bottom};
            list.insertBehind(index, {Menu, time.start, time.stop, menu, 0.0});
        }
    }
}

} // namespace

void DataParser::metaSystemMenuClick(unsigned int zone, const Params& params, OV_DATA_STORE& store,
                                     unsigned int index) {
    if (!contains(barRectangle(*this, zone, params, store), objects[index].rect)) {
        return;
    }
    const long long time = revertTime(objects[index].stop);
    const long long reach = revertTime(kDropSeconds);
    std::optional<WorkingList> own;
    dropMenus(*this, listFor(own, store), zone, store, index, {wrapSub(time, reach), wrapAdd(time, reach)});
}

void DataParser::metaSystemMenuHover(unsigned int zone, const Params& params, OV_DATA_STORE& store,
                                     unsigned int index) {
    if (!overlaps(barRectangle(*this, zone, params, store), objects[index].rect)) {
        return;
    }
    const long long reach = revertTime(kDropSeconds);
    std::optional<WorkingList> own;
    dropMenus(*this, listFor(own, store), zone, store, index,
              {wrapSub(revertTime(objects[index].start), reach), wrapAdd(revertTime(objects[index].stop), reach)});
}

void DataParser::metaPromoteHover(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& stroke = objects[index];
    if (stroke.type == Dead) {
        return;
    }
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const auto next = [&](std::size_t from) {
        return list.within(WorkingList::Hovers, from, stroke.start, stroke.stop);
    };
    for (std::size_t hover = next(0); hover != WorkingList::kNone; hover = next(hover + 1)) {
        store.valueObjects.push_back(objects[hover]);
        list.retype(hover, Dead);
    }
}

void DataParser::metaMenuHover(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& menu = objects[index];
    const Rectangle reach = grown(menu.rect, kMenuHoverPixels);
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const auto next = [&](std::size_t from) { return list.within(WorkingList::Hovers, from, menu.start, menu.stop); };
    for (std::size_t hover = next(0); hover != WorkingList::kNone; hover = next(hover + 1)) {
        if (contains(reach, objects[hover].rect)) {
            store.valueObjects.push_back(objects[hover]);
            store.valueObjects.back().type = Pane;
            list.retype(hover, Dead);
        }
    }
}

void DataParser::metaMenuResult(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& menu = objects[index];
    const Rectangle reach = grown(menu.rect, kMenuClickPixels);
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const std::size_t behind = index + std::size_t{1};
    const auto nextClick = [&](std::size_t from) {
        return list.within(WorkingList::Clicks, from, menu.start, menu.stop);
    };
    // What begins from `seenFrom` to `seenTo` has been looked at for the clicks before: very many clicks at one moment
    // have their results in common.
    double seenFrom = std::numeric_limits<double>::infinity();
    double seenTo = -std::numeric_limits<double>::infinity();
    for (std::size_t c = nextClick(behind); c != WorkingList::kNone; c = nextClick(c + 1)) {
        if (!contains(reach, objects[c].rect)) {
            continue;
        }
        const double from = objects[c].start;
        const double to = from + kMenuResultSeconds;
        const bool goesOn = from >= seenFrom && from <= seenTo;
        const auto nextResult = [&](std::size_t position) {
            return goesOn ? list.beginningBetween(WorkingList::ClickResults, position, seenTo, to)
                          : list.beginning(WorkingList::ClickResults, position, from, to);
        };
        for (std::size_t m = nextResult(behind); m != WorkingList::kNone; m = nextResult(m + 1)) {
            if (!contains(reach, objects[m].rect)) {
                // The walk then removes it: what a menu's click changes elsewhere is not kept.
                list.retype(m, MenuResult);
            }
        }
        seenFrom = goesOn ? seenFrom : from;
        seenTo = goesOn ? std::max(seenTo, to) : to;
    }
}

} // namespace OrvantaNS
