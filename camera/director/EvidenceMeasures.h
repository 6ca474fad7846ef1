// How large and how long what is worth seeing is taken to be, where more than one part of the director asks.
#pragma once

#include <algorithm>

#include "camera/director/FrameShape.h"
#include "camera/director/Scene.h"

namespace OrvantaNS::camera {

// ---- Times, seconds ----
constexpr double kLongPress = 0.3; // a button held longer drags

// ---- Lengths, lines of text ----
constexpr double kPressWidth = 8.0;
constexpr double kPressHeight = 5.0;
constexpr double kTypingWidth = 18.0;
constexpr double kTypingHeight = 3.5;
constexpr double kSpeckArea = 0.3; // square lines: less is a blinking caret

/// A box of a size around a point, cut to the screen.
inline RealRect boxAround(double x, double y, double w, double h, const Scene& scene) {
    return {std::max(0.0, x - w / 2.0), std::max(0.0, y - h / 2.0), std::min(scene.width, x + w / 2.0),
            std::min(scene.height, y + h / 2.0)};
}

/// The left end of an area that no readable frame holds in its width, as wide as a part of that frame; all of any other
/// area.
inline RealRect leftPart(const RealRect& rect, const FrameShape& shape, double part) {
    const double readingWidth = shape.readingWidth();
    return width(rect) <= readingWidth ? rect
                                       : RealRect{rect.left, rect.top, rect.left + part * readingWidth, rect.bottom};
}

} // namespace OrvantaNS::camera
