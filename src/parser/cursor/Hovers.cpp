// Finds the changing areas that a stroke pointed at.

#include "parser/DataParser.h"

#include <limits>
#include <vector>

#include "frame/Geometry.h"
#include "frame/NearSearch.h"
#include "frame/Steps.h"

namespace OrvantaNS {

namespace {

// The cursor is near an area that reaches into the box of this far around it, pixels.
constexpr std::int32_t kNearPixels = 64;

// The rectangles of an area at moments that mostly follow one upon the other, as `getDOFrameAtTime` tells them. An area
// that never rests has a frame for every sighting, and is asked for every point of every stroke.
class FramesInTime {
public:
    FramesInTime(DataParser& parser, unsigned int object)
        : parser_(parser), object_(object), frames_(parser.drObjects[object].frames), later_(frames_.begin() + 1) {}

    Rectangle at(long long time) {
        if (!parser_.drObjects[object_].isInOrder) {
            return parser_.getDOFrameAtTime(object_, time);
        }
        if (time < time_) {
            later_ = frames_.begin() + 1; // the first frame holds whatever its time is
        }
        time_ = time;
        later_ = firstNear(later_, frames_.end(), [&](const OV_TIME_RECT& frame) { return frame.time <= time; });
        return (later_ - 1)->rect;
    }

private:
    DataParser& parser_;
    unsigned int object_;
    const std::vector<OV_TIME_RECT>& frames_;
    std::vector<OV_TIME_RECT>::const_iterator later_; // behind the frame of `time_`
    long long time_ = std::numeric_limits<long long>::lowest();
};

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
    FramesInTime frames(*this, object);
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
        const Rectangle frame = frames.at(point.time);
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
