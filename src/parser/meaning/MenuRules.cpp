// Menus that only the screen tells of, and what happens inside a menu.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"

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
void dropMenus(DataParser& parser, unsigned int zone, OV_DATA_STORE& store, unsigned int index,
               Interval_Type<long long> interval) {
    std::vector<OV_VALUE_OBJECT>& objects = parser.objects;
    for (const std::uint32_t object : parser.getDRObjectsInTime(interval)) {
        const DR_OBJECT& area = parser.drObjects[object];
        Rectangle rect = area.bounds;
        parser.clipRectToLZ(zone, store, rect);
        if (rect.top >= kBarPixels || rect.bottom <= kBarPixels) {
            continue;
        }
        const Interval_Type<double> time = DataParser::convertInterval({area.start, area.stop});
        const bool isKnown = std::any_of(objects.begin(), objects.end(), [&](const OV_VALUE_OBJECT& k) {
            return k.type == Menu && ((k.start <= time.start && k.stop >= time.stop) ||
                                      std::min(k.stop, time.stop) - std::max(k.start, time.start) > 0.0);
        });
        if (!isKnown) {
            const Rectangle menu{std::min(rect.left, rect.right), std::max(rect.left, rect.right), 0, rect.bottom};
            objects.insert(objects.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                           {Menu, time.start, time.stop, menu, 0.0});
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
    dropMenus(*this, zone, store, index, {wrapSub(time, reach), wrapAdd(time, reach)});
}

void DataParser::metaSystemMenuHover(unsigned int zone, const Params& params, OV_DATA_STORE& store,
                                     unsigned int index) {
    if (!overlaps(barRectangle(*this, zone, params, store), objects[index].rect)) {
        return;
    }
    const long long reach = revertTime(kDropSeconds);
    dropMenus(*this, zone, store, index,
              {wrapSub(revertTime(objects[index].start), reach), wrapAdd(revertTime(objects[index].stop), reach)});
}

void DataParser::metaPromoteHover(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& stroke = objects[index];
    if (stroke.type == Dead) {
        return;
    }
    for (OV_VALUE_OBJECT& hover : objects) {
        if (hover.type == Hover && hover.start >= stroke.start && hover.stop <= stroke.stop) {
            store.valueObjects.push_back(hover);
            hover.type = Dead;
        }
    }
}

void DataParser::metaMenuHover(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    const OV_VALUE_OBJECT& menu = objects[index];
    const Rectangle reach = grown(menu.rect, kMenuHoverPixels);
    for (OV_VALUE_OBJECT& hover : objects) {
        if (hover.type == Hover && hover.start >= menu.start && hover.stop <= menu.stop &&
            contains(reach, hover.rect)) {
            hover.type = Pane;
            store.valueObjects.push_back(hover);
            hover.type = Dead;
        }
    }
}

void DataParser::metaMenuResult(unsigned int, const Params&, OV_DATA_STORE&, unsigned int index) {
    const OV_VALUE_OBJECT& menu = objects[index];
    const Rectangle reach = grown(menu.rect, kMenuClickPixels);
    for (std::size_t c = index + std::size_t{1}; c < objects.size(); ++c) {
        const OV_VALUE_OBJECT& click = objects[c];
        if ((click.type != Click && click.type != DoubleClick) || !contains(reach, click.rect) ||
            !(click.start >= menu.start && click.stop <= menu.stop)) {
            continue;
        }
        for (std::size_t m = index + std::size_t{1}; m < objects.size(); ++m) {
            OV_VALUE_OBJECT& result = objects[m];
            if ((result.type == ClickDirty || result.type == ClickWindow) && result.start >= click.start &&
                result.start <= click.start + kMenuResultSeconds && !contains(reach, result.rect)) {
                // The walk then removes it: what a menu's click changes elsewhere is not kept.
                result.type = MenuResult;
            }
        }
    }
}

} // namespace OrvantaNS
