// Rectangles with real edges, for frames on their way between pixels.
#pragma once

#include <algorithm>
#include <cstdint>

#include "Rectangle.h"

namespace OrvantaNS::camera {

/// A rectangle with real edges, in pixels; y grows downward. A plain value.
struct RealRect {
    double left = 0.0;   ///< Left edge.
    double top = 0.0;    ///< Top edge.
    double right = 0.0;  ///< Right edge.
    double bottom = 0.0; ///< Bottom edge.

    friend bool operator==(const RealRect&, const RealRect&) = default;
};

constexpr double width(const RealRect& r) { return r.right - r.left; }
constexpr double height(const RealRect& r) { return r.bottom - r.top; }
constexpr double centreX(const RealRect& r) { return (r.left + r.right) / 2.0; }
constexpr double centreY(const RealRect& r) { return (r.top + r.bottom) / 2.0; }
/// True when the rectangle covers nothing.
constexpr bool isEmpty(const RealRect& r) { return r.right <= r.left || r.bottom <= r.top; }
/// Pixels covered; 0 when nothing is.
constexpr double area(const RealRect& r) { return isEmpty(r) ? 0.0 : width(r) * height(r); }

constexpr RealRect toReal(const Rectangle& r) {
    return {static_cast<double>(r.left), static_cast<double>(r.top), static_cast<double>(r.right),
            static_cast<double>(r.bottom)};
}

/// Pixels from an edge to the origin that it is counted from; on 64 bits, so that no edge overflows.
constexpr double toLocal(std::int32_t edge, std::int32_t origin) {
    return static_cast<double>(static_cast<long long>(edge) - static_cast<long long>(origin));
}

/// A rectangle of the screen, counted from the top left of `region`.
constexpr RealRect toLocal(const Rectangle& r, const Rectangle& region) {
    return {toLocal(r.left, region.left), toLocal(r.top, region.top), toLocal(r.right, region.left),
            toLocal(r.bottom, region.top)};
}

constexpr RealRect intersection(const RealRect& a, const RealRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

constexpr RealRect boundingUnion(const RealRect& a, const RealRect& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

/// True when the point lies in the rectangle; the right and bottom edges are outside.
constexpr bool containsPoint(const RealRect& r, double x, double y) {
    return r.left <= x && x < r.right && r.top <= y && y < r.bottom;
}

/// The share of `part` that lies inside `frame`, 0 to 1; 0 when `part` covers nothing.
constexpr double shareInside(const RealRect& frame, const RealRect& part) {
    const double whole = area(part);
    return whole > 0.0 ? area(intersection(frame, part)) / whole : 0.0;
}

} // namespace OrvantaNS::camera
