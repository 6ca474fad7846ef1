// Windows that were no real windows: a flash, an animation in pieces, a pane of a bigger window, a context menu.

#include "parser/DataParser.h"

#include <optional>

#include "frame/Geometry.h"
#include "parser/meaning/WorkingList.h"

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
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const std::size_t behind = index + std::size_t{1};
    const double latest = objects[index].stop + kReportedWindowSeconds;
    const std::size_t end = list.beginningAfter(WorkingList::Anything, behind, latest);
    const auto next = [&](std::size_t from) { return list.notBeginningAfter(WorkingList::Windows, from, latest); };
    for (std::size_t j = next(behind); j < end; j = next(j + 1)) {
        const OV_VALUE_OBJECT& window = objects[j];
        OV_MOUSE_LOCATION mouse = getMouseAtTime(params, revertTime(window.start));
        clipPointToLZ(store.currentZone, store, mouse);
        if (!isFrameNearMouse(mouse, window.rect) || containsPoint(window.rect, mouse.x, mouse.y) ||
            (width(window.rect) >= kContextMenuPixels && height(window.rect) >= kContextMenuPixels)) {
            continue;
        }
        list.retype(j, Menu);
        list.retype(index, Dead);
        // A menu does not open as a window does.
        const std::size_t opening = list.beginning(WorkingList::Openings, behind, window.start, window.start);
        if (opening < list.beginningAfter(WorkingList::Anything, behind, window.start)) {
            list.retype(opening, Dead);
        }
    }
}

void DataParser::metaWindowPane(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const OV_VALUE_OBJECT& window = objects[index];
    // Only the window directly before this one can be its parent: one with another window or an animation in between
    // cannot.
    const std::size_t before = list.windowBefore(index);
    if (before == WorkingList::kNone) {
        return;
    }
    const OV_VALUE_OBJECT& parent = objects[before];
    if (parent.type != ActiveWindow || !(window.start < parent.stop + kContinuationSeconds) ||
        !contains(parent.rect, window.rect)) {
        return;
    }
    list.setStop(before, window.stop);
    list.retype(index, parent.rect == window.rect ? Dead : Pane);
}

void DataParser::metaJoinAnimatedWindows(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    OV_VALUE_OBJECT& animation = objects[index];
    for (std::size_t j = index + std::size_t{1}; j < objects.size(); ++j) {
        const OV_VALUE_OBJECT& next = objects[j];
        if (next.type == ActiveWindow || next.type == FullScreenDirty) {
            break;
        }
        if (next.type == ForeAnimate) {
            if (animation.stop + kContinuationSeconds >= next.start) {
                list.setStop(index, next.stop);
                animation.rect = boundingUnion(animation.rect, next.rect);
                list.retype(j, Dead);
            }
            break;
        }
    }
    // An animation waits a second longer than other objects, for its continuation.
    if (convertTime(metaStartTime) >= animation.stop + kContinuationSeconds) {
        store.valueObjects.push_back(animation);
        list.retype(index, Dead);
    }
}

void DataParser::metaKillPopWindow(unsigned int, const Params&, OV_DATA_STORE& store, unsigned int index) {
    std::optional<WorkingList> own;
    WorkingList& list = listFor(own, store);
    const OV_VALUE_OBJECT& opening = objects[index];
    // A moment on the recording's clock, not a duration, though it is added to one: once the first window has matched,
    // the search reaches far ahead, and every opening whose window ends past the first ten seconds is kept.
    double lastStop = 0.0;
    list.atSamePlace(opening.rect, opening.start, [&](std::size_t k) {
        const OV_VALUE_OBJECT& object = objects[k];
        const double limit = lastStop + opening.start + kReopenSeconds;
        if (object.type == ActiveWindow) {
            if (object.start >= limit) {
                return false;
            }
            lastStop = object.stop;
        } else if (k != index && object.start < limit) {
            list.retype(k, Dead);
        }
        return true;
    });
    if (lastStop >= kLastingSeconds) {
        store.valueObjects.push_back(opening);
    }
    list.retype(index, Dead);
}

} // namespace OrvantaNS
