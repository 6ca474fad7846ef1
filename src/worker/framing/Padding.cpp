// Gives a rectangle the shape of the output frame: how much is missing, and where it goes.

#include "OrvantaWorker.h"

#include "worker/framing/FrameEdges.h"

namespace OrvantaNS {

namespace {

// The two ends of one dimension, so that width and height are framed by the same rule.
struct Axis {
    std::int32_t Rectangle::*low;
    std::int32_t Rectangle::*high;
};

constexpr Axis kHorizontal{&Rectangle::left, &Rectangle::right};
constexpr Axis kVertical{&Rectangle::top, &Rectangle::bottom};

std::int32_t extent(const Rectangle& rect, const Axis& axis) { return wrapSub(rect.*axis.high, rect.*axis.low); }

// Takes negative padding off both ends; an odd pixel is taken from the low one.
void shrink(Rectangle& rect, const Axis& axis, std::int32_t padding) {
    if (padding < 0) {
        const std::int32_t half = -(padding / 2);
        moveEdge(rect, axis.low, half + (padding % 2 != 0 ? 1 : 0));
        moveEdge(rect, axis.high, -half);
    }
}

// A frame that would cross the nearer wall of the window ends flush with it, and all of its padding goes to the other
// side. Nothing happens when both walls are far enough, equally near, or too close together for the frame.
void leanOnWall(Rectangle& rect, const Axis& axis, std::int32_t& padding, const Rectangle& window) {
    if (padding <= 0 || wrapAdd(extent(rect, axis), padding) > extent(window, axis)) {
        return;
    }
    const std::int32_t lowGap = wrapSub(rect.*axis.low, window.*axis.low);
    const std::int32_t highGap = wrapSub(window.*axis.high, rect.*axis.high);
    if (lowGap < padding / 2 && lowGap < highGap) {
        setEdge(rect, axis.low, window.*axis.low);
        moveEdge(rect, axis.high, wrapSub(padding, lowGap));
        padding = 0;
    } else if (highGap < lowGap && highGap < padding / 2) {
        setEdge(rect, axis.high, window.*axis.high);
        moveEdge(rect, axis.low, wrapSub(highGap, padding));
        padding = 0;
    }
}

// Spreads what is left over both ends; an odd pixel goes to the high one.
void spread(Rectangle& rect, const Axis& axis, std::int32_t padding) {
    if (padding > 0) {
        const std::int32_t half = padding / 2;
        moveEdge(rect, axis.low, -half);
        moveEdge(rect, axis.high, padding - half);
    }
}

} // namespace

void OrvantaWorker::calculatePadding(int& padWidth, int& padHeight, Rectangle bound, Rectangle rect) const {
    const std::int32_t rectWidth = width(rect);
    const std::int32_t rectHeight = height(rect);
    if (rectWidth <= padWidth && rectHeight <= padHeight) {
        // What fits is shown at one recording pixel per output pixel: nothing is ever magnified.
        padWidth = wrapSub(padWidth, rectWidth);
        padHeight = wrapSub(padHeight, rectHeight);
        return;
    }
    const double aspect = static_cast<double>(padWidth) / static_cast<double>(padHeight);
    const double rectAspect = static_cast<double>(rectWidth) / static_cast<double>(rectHeight);
    if (aspect == rectAspect) {
        padWidth = 0;
        padHeight = 0;
    } else if (aspect > rectAspect) {
        double wanted = static_cast<double>(rectHeight) * aspect;
        padHeight = 0;
        if (static_cast<double>(width(bound)) < wanted) {
            // Too narrow and no room to widen: the shape is kept by losing height.
            wanted = static_cast<double>(width(bound));
            padHeight = wrapSub(truncateToInt32(wanted / aspect), rectHeight);
        }
        padWidth = wrapSub(truncateToInt32(wanted), rectWidth);
    } else if (aspect < rectAspect) {
        double wanted = static_cast<double>(rectWidth) / aspect;
        padWidth = 0;
        if (static_cast<double>(height(bound)) < wanted) {
            wanted = static_cast<double>(height(bound));
            padWidth = wrapSub(truncateToInt32(aspect * wanted), rectWidth);
        }
        padHeight = wrapSub(truncateToInt32(wanted), rectHeight);
    }
}

void OrvantaWorker::padToAspectRatio(Rectangle& rect, int padWidth, int padHeight, Rectangle window,
                                     Rectangle bound) const {
    shrink(rect, kHorizontal, padWidth);
    shrink(rect, kVertical, padHeight);
    if (!isEmpty(window) && contains(window, rect)) {
        leanOnWall(rect, kHorizontal, padWidth, window);
        leanOnWall(rect, kVertical, padHeight, window);
    }
    spread(rect, kHorizontal, padWidth);
    spread(rect, kVertical, padHeight);
    rect = rect.snapWithin(bound);
}

} // namespace OrvantaNS
