// Windows that were no real windows: a flash, an animation in pieces, a pane of a bigger window, a context menu.

#include "parser/DataParser.h"

#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// A context menu's window begins within this of the object that reports it, seconds.
constexpr double kReportedWindowSeconds = 0.02;
// A window at least this large in both dimensions is no context menu, pixels.
constexpr std::int32_t kContextMenuPixels = 480;
// Windows that follow each other within this belong together, seconds.
constexpr double kContinuationSeconds = 1.0;
// A window's repetitions are looked for this far ahead, seconds.
constexpr double kReopenSeconds = 3.0;
// An opening is kept when its window's stop lies at least this far into the recording, seconds.
constexpr double kLastingSeconds = 10.0;

} // namespace

void DataParser::metaContextMenu(unsigned int, const Params& params, OV_DATA_STORE& store, unsigned int index) {
    for (std::size_t j = index + std::size_t{1}; j < objects.size(); ++j) {
        OV_VALUE_OBJECT& window = objects[j];
        if (window.start > objects[index].stop + kReportedWindowSeconds) {
            return;
        }
        if (window.type != ActiveWindow) {
            continue;
        }
        OV_MOUSE_LOCATION mouse = getMouseAtTime(params, revertTime(window.start));
        clipPointToLZ(store.currentZone, store, mouse);
        if (!isFrameNearMouse(mouse, window.rect) || containsPoint(window.rect, mouse.x, mouse.y) ||
            (width(window.rect) >= kContextMenuPixels && height(window.rect) >= kContextMenuPixels)) {
            continue;
        }
        window.type = Menu;
        objects[index].type = Dead;
        // A menu does not open as a window does.
        for (std::size_t k = index + std::size_t{1}; k < objects.size() && !(objects[k].start > window.start); ++k) {
            if (objects[k].type == ForeOpen && objects[k].start == window.start) {
                objects[k].type = Dead;
                break;
            }
        }
    }
}

void DataParser::metaWindowPane(unsigned int, const Params&, OV_DATA_STORE&, unsigned int index) {
    OV_VALUE_OBJECT& window = objects[index];
    // Only the window directly before this one can be its parent: one with another window or an animation in between
    // cannot.
    std::size_t k = index;
    while (k > 0 && objects[k - 1].type != ActiveWindow && objects[k - 1].type != ForeAnimate) {
        --k;
    }
    if (k == 0) {
        return;
    }
    OV_VALUE_OBJECT& parent = objects[k - 1];
    if (parent.type != ActiveWindow || !(window.start < parent.stop + kContinuationSeconds) ||
        !contains(parent.rect, window.rect)) {
        return;
    }
    parent.stop = window.stop;
    window.type = parent.rect == window.rect ? Dead : Pane;
}

void DataParser::metaJoinAnimatedWindows(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    OV_VALUE_OBJECT& animation = objects[index];
    for (std::size_t j = index + std::size_t{1}; j < objects.size(); ++j) {
        OV_VALUE_OBJECT& next = objects[j];
        if (next.type == ActiveWindow || next.type == FullScreenDirty) {
            break;
        }
        if (next.type == ForeAnimate) {
            if (animation.stop + kContinuationSeconds >= next.start) {
                animation.stop = next.stop;
                animation.rect = boundingUnion(animation.rect, next.rect);
                next.type = Dead;
            }
            break;
        }
    }
    // An animation waits a second longer than other objects, for its continuation.
    if (convertTime(metaStartTime) >= animation.stop + kContinuationSeconds) {
        store.valueObjects.push_back(animation);
        animation.type = Dead;
    }
}

void DataParser::metaKillPopWindow(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    OV_VALUE_OBJECT& opening = objects[index];
    // A moment on the recording's clock, not a duration, though it is added to one: once the first window has matched,
    // the search reaches far ahead, and every opening whose window ends past the first ten seconds is kept.
    double lastStop = 0.0;
    for (std::size_t k = 0; k < objects.size(); ++k) {
        OV_VALUE_OBJECT& object = objects[k];
        const double limit = lastStop + opening.start + kReopenSeconds;
        if (!(object.start >= opening.start) || !(object.rect == opening.rect)) {
            continue;
        }
        if (object.type == ActiveWindow) {
            if (object.start >= limit) {
                break;
            }
            lastStop = object.stop;
        } else if (object.type == ForeOpen && k != index && object.start < limit) {
            object.type = Dead;
        }
    }
    if (lastStop >= kLastingSeconds) {
        store.valueObjects.push_back(opening);
    }
    opening.type = Dead;
}

} // namespace OrvantaNS
