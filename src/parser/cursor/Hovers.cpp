// Finds the changing areas that a stroke pointed at.

#include "parser/DataParser.h"

#include "frame/Geometry.h"
#include "frame/Steps.h"

namespace OrvantaNS {

namespace {

// The cursor is near an area that reaches into the box of this far around it, pixels.
constexpr std::int32_t kNearPixels = 64;

} // namespace

bool DataParser::isFrameNearMouse(OV_MOUSE_LOCATION location, Rectangle frame) {
    return overlaps(grown({location.x, location.x, location.y, location.y}, kNearPixels), frame);
}

void DataParser::findMouseHoverDR(OV_DATA_STORE& store, MOUSE_STROKE& stroke) {
    for (const std::uint32_t object : getDRObjectsInTime({stroke.points.front().time, stroke.points.back().time})) {
        countSteps(store, stroke.points.size());
        OV_VALUE_OBJECT hover = findHoverPrimitive(object, stroke);
        if (hover.type != Dead && clipRectToLZ(store.currentZone, store, hover.rect)) {
            objects.push_back(hover);
        }
    }
}

OV_VALUE_OBJECT DataParser::findHoverPrimitive(unsigned int object, MOUSE_STROKE& stroke) {
    const DR_OBJECT& area = drObjects[object];
    bool hovering = false;
    bool entered = true;
    std::size_t first = 0;
    std::size_t last = 0;
    Rectangle covered;

    for (std::size_t n = 0; n < stroke.points.size(); ++n) {
        const OV_MOUSE_LOCATION& point = stroke.points[n];
        if (point.time < area.start) {
            continue;
        }
        if (point.time > area.stop) {
            break;
        }
        const Rectangle frame = getDOFrameAtTime(object, point.time);
        if (!isFrameNearMouse(point, frame)) {
            if (hovering) {
                break;
            }
            continue;
        }
        if (hovering && !entered) {
            // A popup keeps the frame of its first moment, while the cursor stays near it.
            if (!isFrameNearMouse(point, covered)) {
                break;
            }
            last = n;
        }
        if (!hovering) {
            first = n;
            last = n;
            covered = frame;
            if (containsPoint(frame, point.x, point.y)) {
                hovering = true;
                entered = true;
            } else {
                // Only an area that came up at this very moment is a popup; near an older one nothing starts.
                entered = point.time > area.start;
                hovering = !entered;
            }
        }
        if (hovering && entered) {
            last = n;
            covered = boundingUnion(covered, frame);
        }
    }

    OV_VALUE_OBJECT hover;
    hover.type = Dead;
    if (hovering) {
        hover.type = entered ? Hover : HoverPopup;
        hover.rect = covered;
        hover.start = convertTime(stroke.points[first].time);
        hover.stop = convertTime(stroke.points[last].time);
    }
    return hover;
}

} // namespace OrvantaNS
