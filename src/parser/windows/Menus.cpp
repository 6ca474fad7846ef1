// Menus that show up in the stream of foreground windows. While one is open, the window behind it stays the active one.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// A menu pulled down from the bar starts at most this far below the screen's top, pixels.
constexpr std::int32_t kMenuTopPixels = 24;
// The screen changes within this time of a menu's window sample, seconds.
constexpr double kMenuChangeSeconds = 0.25;
// The window behind a menu is given back when it had not ended longer than this before the menu opened, seconds.
constexpr double kWindowBehindSeconds = 0.25;
// A submenu overlaps its parent's column by at most this, pixels.
constexpr std::int32_t kCascadeOverlapPixels = 1;

// A menu's rectangle reaches up to include the bar.
Rectangle raisedToBar(Rectangle menu, const Rectangle& region) {
    menu.top = region.top;
    return normalized(menu);
}

bool isCascade(const Rectangle& menu, const Rectangle& next) {
    const std::int32_t overlapX = wrapSub(std::min(menu.right, next.right), std::max(menu.left, next.left));
    return menu.canTouchRect(next) && overlapX <= kCascadeOverlapPixels;
}

bool isSameMenuResized(const Rectangle& menu, const Rectangle& next) {
    return width(menu) == width(next) && (contains(menu, next) || contains(next, menu));
}

} // namespace

bool DataParser::isMenu(const Params& params, OV_DATA_STORE& store, unsigned int index) {
    static_cast<void>(params.recordingRegions().at(0)); // a request without a region fails here rather than later
    const OV_TIME_RECT& window = params.foreWindows()[index];
    if (window.rect.top > kMenuTopPixels) {
        return false;
    }
    const long long around = revertTime(kMenuChangeSeconds);
    for (const std::uint32_t object :
         getDRObjectsInTime({wrapSub(window.time, around), wrapAdd(window.time, around)})) {
        Rectangle changed = drObjects[object].bounds;
        clipRectToLZ(store.currentZone, store, changed);
        if (changed.top != 0) {
            continue;
        }
        // Pulled down from the bar to under the cursor.
        const OV_MOUSE_LOCATION mouse = getMouseAtTime(params, window.time);
        if (mouse.y >= 0 && mouse.y < changed.bottom && mouse.x >= changed.left && mouse.x < changed.right) {
            return true;
        }
    }
    return false;
}

void DataParser::processMenu(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const Rectangle region = params.recordingRegions().at(0).rect;
    const std::vector<OV_TIME_RECT>& windows = params.foreWindows();
    const auto isLeft = [&] { return nextForeWindow < windows.size(); };
    if (!isLeft()) {
        return;
    }

    Rectangle menu = raisedToBar(windows[nextForeWindow].rect, region);
    long long began = windows[nextForeWindow].time;
    long long ended = began;
    const double menuStart = convertTime(began);
    ++nextForeWindow;

    const auto takeRepeatsOf = [&](const Rectangle& rect) {
        for (; isLeft() && windows[nextForeWindow].rect == rect; ++nextForeWindow) {
            ended = windows[nextForeWindow].time;
        }
    };
    const auto appendMenu = [&] {
        Rectangle rect = menu;
        if (clipRectToLZ(zone, store, rect)) {
            objects.push_back({Menu, convertTime(began), convertTime(ended), rect, 0.0});
        }
    };

    // Only the exit through a closed menu appends the open one: a menu that changes with the stream's very last sample
    // is never told of.
    while (isLeft()) {
        while (isLeft() && isEmpty(windows[nextForeWindow].rect)) {
            ++nextForeWindow;
        }
        takeRepeatsOf(menu);
        if (!isLeft()) {
            appendMenu();
            break;
        }
        const OV_TIME_RECT sample = windows[nextForeWindow];
        if (isCascade(menu, sample.rect)) {
            takeRepeatsOf(sample.rect);
            appendMenu();
            menu = sample.rect;
            began = sample.time;
        } else if (isSameMenuResized(menu, sample.rect)) {
            menu = boundingUnion(menu, sample.rect);
            ended = sample.time;
            ++nextForeWindow;
        } else if (isMenu(params, store, nextForeWindow)) {
            appendMenu();
            ended = sample.time;
            menu = raisedToBar(sample.rect, region);
            began = ended;
            ++nextForeWindow;
        } else {
            appendMenu();
            break;
        }
    }

    if (lastWindow.stop >= menuStart - kWindowBehindSeconds) {
        OV_VALUE_OBJECT behind;
        behind.type = ActiveWindow;
        behind.start = lastWindow.stop;
        behind.stop = convertTime(ended);
        behind.rect = lastWindow.rect;
        // The rectangle is local already and is clipped once more: in a zone away from the screen's origin it shifts
        // by that origin and may lose its edges.
        if (clipRectToLZ(zone, store, behind.rect)) {
            objects.push_back(behind);
        }
        lastWindow = behind;
    }
}

} // namespace OrvantaNS
