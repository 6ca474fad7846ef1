// Tells what the user did with the buttons and the wheel. An action has no position of its own, so each gesture's
// rectangle comes from the cursor's samples at its moments.

#include "parser/DataParser.h"

#include <algorithm>
#include <optional>

#include "frame/Geometry.h"
#include "frame/NearSearch.h"
#include "frame/Steps.h"
#include "parser/walk/ZoneWalk.h"

namespace OrvantaNS {

namespace {

// Pixels covered from which a press and its release are a drag and no click.
constexpr std::int32_t kDragArea = 17;
// A second release at most this long after the first press makes a double click, seconds.
constexpr double kDoubleClickSeconds = 0.5;
// Both clicks of a double click fit in a box smaller than this, pixels.
constexpr std::int32_t kDoubleClickPixels = 5;
// A longer pause between two wheel steps ends the run, seconds.
constexpr double kScrollGapSeconds = 1.0;

bool isPress(std::int32_t code) { return code == 0 || code == 2 || code == 4; }

bool isWheel(std::int32_t code) { return code == 6 || code == 7; }

// A gesture at one point, or along one row or column, still covers pixels.
void growIfEmpty(Rectangle& rect) {
    if (isEmpty(rect)) {
        rect.right = wrapAdd(rect.right, 1);
        rect.bottom = wrapAdd(rect.bottom, 1);
    }
}

Rectangle spannedBy(const OV_MOUSE_LOCATION& a, const OV_MOUSE_LOCATION& b) {
    return {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)};
}

} // namespace

Rectangle DataParser::getClickRect(const Params& params, unsigned int down, unsigned int up, unsigned int& location) {
    const std::vector<OV_MOUSE_LOCATION>& locations = params.cursorLocations();
    const long long downTime = params.cursorActions()[down].time;
    const long long upTime = params.cursorActions()[up].time;
    OV_MOUSE_LOCATION press;
    OV_MOUSE_LOCATION release;
    const bool isInOrder = walk_ != nullptr && walk_->streams.standsFor(params) ? walk_->streams.areLocationsInOrder()
                                                                                : areInOrder(locations);
    if (downTime <= upTime && isInOrder) {
        // The samples in force at both moments, without reading all that lies in between.
        const auto firstAfter = [&](auto begin, long long time) {
            return firstNear(begin, locations.end(),
                             [&](const OV_MOUSE_LOCATION& sample) { return sample.time <= time; });
        };
        const auto from =
            locations.begin() + static_cast<std::ptrdiff_t>(std::min(std::size_t{location}, locations.size()));
        const auto afterPress = firstAfter(from, downTime);
        const auto afterRelease = firstAfter(afterPress, upTime);
        if (afterPress != from) {
            press = *(afterPress - 1);
        }
        if (afterRelease != from) {
            release = *(afterRelease - 1);
            location = static_cast<std::uint32_t>(afterRelease - 1 - locations.begin());
        }
        return spannedBy(press, release);
    }
    bool reachedPress = false;
    const std::uint32_t first = location;
    for (std::uint32_t i = location; i < locations.size(); ++i) {
        const OV_MOUSE_LOCATION& sample = locations[i];
        if (sample.time == downTime || (sample.time < downTime && !reachedPress)) {
            press = sample;
        }
        reachedPress = reachedPress || sample.time >= downTime;
        if (sample.time > upTime) {
            break;
        }
        release = sample;
        location = i;
    }
    count(1 + (location - first) / kPassedPerStep);
    return spannedBy(press, release);
}

void DataParser::processCursorAction(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const std::vector<OV_MOUSE_ACTION>& actions = params.cursorActions();
    const std::uint32_t press = nextAction;
    const std::int32_t code = actions[press].action;
    if (isWheel(code)) {
        detectScroll(zone, params, store);
        return;
    }
    if (!isPress(code)) {
        ++nextAction;
        return;
    }

    std::optional<ActionIndex> own;
    const ActionIndex& index =
        walk_ != nullptr && walk_->streams.standsFor(params) ? walk_->streams.actions() : own.emplace(actions);
    const std::int32_t releaseCode = code + 1;
    const auto firstRelease = [&](std::size_t from) {
        const std::size_t found = index.firstFrom(from, releaseCode);
        return found == ActionIndex::kNone ? press : static_cast<std::uint32_t>(found);
    };

    const std::uint32_t release = firstRelease(press + std::size_t{1});
    std::uint32_t location = skipLocation;
    OV_VALUE_OBJECT gesture;
    gesture.type = Click;
    gesture.rect = getClickRect(params, press, release, location);
    gesture.start = convertTime(actions[press].time);
    gesture.stop = convertTime(actions[release].time);
    growIfEmpty(gesture.rect);

    if (area(gesture.rect) >= kDragArea) {
        gesture.type = Drag;
    } else {
        // The second click is the last press ahead of the next release of the same button.
        const std::uint32_t release2 = firstRelease(release + std::size_t{1});
        const std::size_t press2 = index.lastBefore(release2, code);
        if (release < release2 && press2 != ActionIndex::kNone && press2 > release) {
            const double stop2 = convertTime(actions[release2].time);
            if (stop2 - gesture.start <= kDoubleClickSeconds) {
                Rectangle second = getClickRect(params, static_cast<std::uint32_t>(press2), release2, location);
                growIfEmpty(second);
                const Rectangle both = boundingUnion(gesture.rect, second);
                if (width(both) < kDoubleClickPixels && height(both) < kDoubleClickPixels) {
                    gesture.type = DoubleClick;
                    gesture.rect = both;
                    gesture.stop = stop2;
                    nextAction = release2;
                }
            }
        }
    }
    ++nextAction;
    if (clipRectToLZ(zone, store, gesture.rect)) {
        objects.push_back(gesture);
    }
}

void DataParser::detectScroll(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const std::vector<OV_MOUSE_ACTION>& actions = params.cursorActions();
    const std::uint32_t first = nextAction;
    std::uint32_t end = first + 1;
    while (end < actions.size() && isWheel(actions[end].action) &&
           !(convertTime(wrapSub(actions[end].time, actions[end - 1].time)) > kScrollGapSeconds)) {
        ++end;
    }
    const std::uint32_t last = end - 1;

    OV_VALUE_OBJECT scroll;
    scroll.type = Scroll;
    scroll.rect = getClickRect(params, first, last, store.scrollLocation);
    scroll.start = convertTime(actions[first].time);
    scroll.stop = convertTime(actions[last].time);
    growIfEmpty(scroll.rect);
    nextAction = end;
    if (clipRectToLZ(zone, store, scroll.rect)) {
        objects.push_back(scroll);
    }
}

} // namespace OrvantaNS
