// Turns raw strokes into objects: only now are the windows and changing areas known that give them meaning.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/meaning/WorkingList.h"

namespace OrvantaNS {

namespace {

// A piece of a stroke that spans less than this on both axes is dropped, pixels. Looser than what keeps a whole stroke:
// a piece of 4 by 0 stays.
constexpr std::int64_t kPiecePixels = 4;
// A stroke shorter than this, seconds, and larger than that on an axis, pixels, is a flick across the screen.
constexpr double kFlickSeconds = 0.25;
constexpr std::int32_t kFlickPixels = 320;
// Strokes that are moved in the time of one step.
constexpr std::size_t kMovedPerStep = 2;

bool isPoint(const MOUSE_STROKE& stroke) {
    if (stroke.points.empty()) {
        return true;
    }
    const OV_MOUSE_LOCATION& first = stroke.points.front();
    const OV_MOUSE_LOCATION& last = stroke.points.back();
    const auto isNear = [](std::int64_t a, std::int64_t b) { return a - b < kPiecePixels && b - a < kPiecePixels; };
    return isNear(first.x, last.x) && isNear(first.y, last.y);
}

// Takes the points from `from` on off the stroke, into one with bounds of its own.
MOUSE_STROKE splitStroke(MOUSE_STROKE& stroke, std::vector<OV_MOUSE_LOCATION>::iterator from) {
    MOUSE_STROKE tail;
    tail.points.assign(from, stroke.points.end());
    stroke.points.erase(from, stroke.points.end());
    for (const OV_MOUSE_LOCATION& point : tail.points) {
        tail.bounds = boundingUnion(tail.bounds, {point.x, point.x, point.y, point.y});
    }
    return tail;
}

} // namespace

void DataParser::chopStrokes() {
    if (strokes.empty()) {
        return;
    }
    std::vector<long long> cuts;
    count(objects.size() / kPassedPerStep);
    for (const OV_VALUE_OBJECT& object : objects) {
        if (object.type == Drag) {
            cuts.push_back(revertTime(object.start));
            cuts.push_back(revertTime(object.stop));
        }
    }
    // The cuts are used in list order and the cursor never goes back: a cut that lies behind it is passed for good.
    std::size_t cut = 0;
    for (std::size_t i = 0; i < strokes.size();) {
        if (strokes[i].points.empty()) {
            ++i;
            continue;
        }
        while (cut < cuts.size() && cuts[cut] < strokes[i].points.front().time) {
            ++cut;
        }
        if (cut >= cuts.size()) {
            break;
        }
        std::vector<OV_MOUSE_LOCATION>& points = strokes[i].points;
        const auto beyond = std::find_if(points.begin(), points.end(),
                                         [&](const OV_MOUSE_LOCATION& point) { return point.time > cuts[cut]; });
        count(1 + points.size() / kPassedPerStep);
        if (beyond == points.end()) {
            ++i;
            continue;
        }
        MOUSE_STROKE tail = splitStroke(strokes[i], beyond);
        const auto head = strokes.begin() + static_cast<std::ptrdiff_t>(i);
        const bool isHeadKept = head->points.size() >= 2;
        const bool isTailKept = tail.points.size() >= 2;
        if (isHeadKept) {
            if (isTailKept) {
                count((strokes.size() - i) / kMovedPerStep);
                strokes.insert(head + 1, std::move(tail));
            }
            ++i;
        } else if (isTailKept) {
            *head = std::move(tail); // the tail stands in the head's place and is the next to be walked
        } else {
            count((strokes.size() - i) / kMovedPerStep);
            strokes.erase(head);
        }
    }
    std::erase_if(strokes, isPoint);
}

Rectangle DataParser::convertStrokeToRect(MOUSE_STROKE& stroke) {
    const OV_MOUSE_LOCATION& first = stroke.points.front();
    const OV_MOUSE_LOCATION& last = stroke.points.back();
    return {std::min(first.x, last.x), std::max(first.x, last.x), std::min(first.y, last.y), std::max(first.y, last.y)};
}

Rectangle DataParser::getPrimitiveWindowAtTime(long long time) { return windowAt(convertTime(time)); }

Rectangle DataParser::windowAt(double seconds) const {
    if (list_ != nullptr) {
        const std::size_t window = list_->windowInForceAt(seconds);
        return window == WorkingList::kNone ? Rectangle{} : objects[window].rect;
    }
    for (const OV_VALUE_OBJECT& object : objects) {
        if (object.type == ActiveWindow && object.start <= seconds && seconds <= object.stop) {
            return object.rect;
        }
    }
    return {};
}

void DataParser::processStrokes(OV_DATA_STORE& store) {
    chopStrokes();
    for (MOUSE_STROKE& stroke : strokes) {
        const OV_MOUSE_LOCATION first = stroke.points.front();
        const OV_MOUSE_LOCATION last = stroke.points.back();
        OV_VALUE_OBJECT object;
        object.start = convertTime(first.time);
        object.stop = convertTime(last.time);
        const Rectangle windowAtStart = windowAt(object.start);
        const Rectangle windowAtEnd = windowAt(object.stop);
        // Points in screen pixels against windows in local ones: compared as they stand.
        const bool startsInside = containsPoint(windowAtStart, first.x, first.y);
        const bool endsInside = containsPoint(windowAtEnd, last.x, last.y);

        object.type = Move;
        if (isEmpty(windowAtStart) && isEmpty(windowAtEnd)) {
            object.type = Move;
        } else if (windowAtStart == windowAtEnd) {
            if (startsInside && !endsInside) {
                object.type = MoveOutOfWindow;
            } else if (endsInside && !startsInside) {
                object.type = MoveIntoWindow;
            }
        } else if (startsInside) {
            // Into another window is out of this one, wherever the stroke ends.
            object.type = MoveOutOfWindow;
        } else if (endsInside) {
            object.type = MoveIntoWindow;
        }

        object.rect = convertStrokeToRect(stroke);
        if (object.type == Move && object.stop - object.start < kFlickSeconds &&
            (width(object.rect) > kFlickPixels || height(object.rect) > kFlickPixels)) {
            continue;
        }
        if (clipRectToLZ(store.currentZone, store, object.rect)) {
            objects.push_back(object);
        }
        findMouseHoverDR(store, stroke);
        // The ends tell when the cursor moved; the way between them would be a fifth of a day's memory.
        keptStrokes.push_back({{first, last}, stroke.bounds});
    }
}

} // namespace OrvantaNS
