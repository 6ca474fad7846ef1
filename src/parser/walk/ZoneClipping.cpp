// Moves screen coordinates into a live zone.

#include "parser/DataParser.h"

#include "frame/Geometry.h"

namespace OrvantaNS {

bool DataParser::clipPointToLZ(unsigned int zone, OV_DATA_STORE& store, std::pair<int, int>& point) {
    const Rectangle bounds = store.liveZones[zone].rect;
    const bool inside = containsPoint(bounds, point.first, point.second);
    point.first = wrapSub(point.first, bounds.left);
    point.second = wrapSub(point.second, bounds.top);
    return inside;
}

bool DataParser::clipPointToLZ(unsigned int zone, OV_DATA_STORE& store, OV_MOUSE_LOCATION& location) {
    std::pair<int, int> point{location.x, location.y};
    const bool inside = clipPointToLZ(zone, store, point);
    location.x = point.first;
    location.y = point.second;
    return inside;
}

bool DataParser::clipRectToLZ(unsigned int zone, OV_DATA_STORE& store, Rectangle& rect) {
    const Rectangle bounds = store.liveZones[zone].rect;
    rect = relativeTo(intersection(rect, bounds), bounds.left, bounds.top);
    return !isEmpty(rect);
}

} // namespace OrvantaNS
