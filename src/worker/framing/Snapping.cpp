// Spends padding with purpose before the rest is spread evenly: on the window's edges, then on what is worth seeing
// beside the thing in focus.

#include "OrvantaWorker.h"

#include <algorithm>

#include "frame/ValueMap.h"
#include "worker/framing/FrameEdges.h"

namespace OrvantaNS {

namespace {

// A gap to the window's edge of this much or more is not closed, pixels: it is room, not a sliver.
constexpr std::int32_t kOpenGapPixels = 64;
// Rectangles of a map below this density are not worth growing for, value per pixel; a summary's tier 4 starts here.
constexpr double kWorthTakingIn = 4.0;

// Moves `edge` outward, low edges to the left or up, to the window's when the gap is small and the padding pays for it.
bool closeGap(Rectangle& rect, std::int32_t Rectangle::*edge, std::int32_t gap, const Rectangle& window, int& padding) {
    if (gap <= 0 || gap >= kOpenGapPixels || gap > padding) {
        return false;
    }
    setEdge(rect, edge, window.*edge);
    padding -= gap;
    return true;
}

// How far an edge may go out: as far as needed, as the padding lasts, and as the window reaches.
std::int32_t growth(std::int32_t need, std::int32_t padding, std::int32_t room, bool hasWindow) {
    const std::int32_t wanted = std::min(need, padding);
    return hasWindow ? std::min(wanted, room) : wanted;
}

void growHigh(Rectangle& rect, std::int32_t Rectangle::*edge, const Rectangle& worth, const Rectangle& window,
              bool hasWindow, int& padding) {
    const std::int32_t pixels =
        growth(wrapSub(worth.*edge, rect.*edge), padding, wrapSub(window.*edge, rect.*edge), hasWindow);
    if (pixels > 0) {
        moveEdge(rect, edge, pixels);
        padding -= pixels;
    }
}

void growLow(Rectangle& rect, std::int32_t Rectangle::*edge, const Rectangle& worth, const Rectangle& window,
             bool hasWindow, int& padding) {
    const std::int32_t pixels =
        growth(wrapSub(rect.*edge, worth.*edge), padding, wrapSub(rect.*edge, window.*edge), hasWindow);
    if (pixels > 0) {
        moveEdge(rect, edge, -pixels);
        padding -= pixels;
    }
}

} // namespace

bool OrvantaWorker::stretchToWindow(Rectangle& rect, Rectangle window, int& padWidth, int& padHeight) const {
    // Where padding is short, the edge that is tried first takes it.
    bool moved = closeGap(rect, &Rectangle::left, wrapSub(rect.left, window.left), window, padWidth);
    moved = closeGap(rect, &Rectangle::top, wrapSub(rect.top, window.top), window, padHeight) || moved;
    moved = closeGap(rect, &Rectangle::right, wrapSub(window.right, rect.right), window, padWidth) || moved;
    moved = closeGap(rect, &Rectangle::bottom, wrapSub(window.bottom, rect.bottom), window, padHeight) || moved;
    return moved;
}

void OrvantaWorker::snapToValue(Rectangle& rect, int& padWidth, int& padHeight, Rectangle window, VS_VALUE_MAP map,
                                Rectangle) const {
    const bool hasWindow = !isEmpty(window);
    if (hasWindow) {
        stretchToWindow(rect, window, padWidth, padHeight);
    }
    for (const auto& [worth, density] : map.spaces) {
        if (density < kWorthTakingIn) {
            break;
        }
        if (padWidth > 0) {
            growHigh(rect, &Rectangle::right, worth, window, hasWindow, padWidth);
            growLow(rect, &Rectangle::left, worth, window, hasWindow, padWidth);
        }
        if (padHeight > 0) {
            growHigh(rect, &Rectangle::bottom, worth, window, hasWindow, padHeight);
            growLow(rect, &Rectangle::top, worth, window, hasWindow, padHeight);
        }
        if (hasWindow) {
            stretchToWindow(rect, window, padWidth, padHeight);
        }
        if (padWidth < 1 && padHeight < 1) {
            break;
        }
        if (hasWindow && width(rect) == width(window) && height(rect) == height(window)) {
            break;
        }
    }
}

} // namespace OrvantaNS
