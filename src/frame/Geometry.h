// The vocabulary of rectangles. Every rule of the library means exactly these operations by these words.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "Rectangle.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS {

/// Stands where a frame heeds no window.
inline constexpr Rectangle kNoWindow{};

/// `right` less `left`, not clamped: negative for an inverted rectangle.
constexpr std::int32_t width(const Rectangle& r) { return wrapSub(r.right, r.left); }

/// `bottom` less `top`, not clamped.
constexpr std::int32_t height(const Rectangle& r) { return wrapSub(r.bottom, r.top); }

/// Pixels covered, in wrapping 32 bits; 0 when the width or the height is not positive.
constexpr std::int32_t area(const Rectangle& r) {
    // Without jumps: of an intersection no processor can foretell whether it is empty.
    const std::int32_t covered = wrapMul(width(r), height(r));
    return static_cast<int>(width(r) > 0) & static_cast<int>(height(r) > 0) ? covered : 0;
}

/// True when the rectangle covers no pixel, an inverted one included.
constexpr bool isEmpty(const Rectangle& r) { return area(r) == 0; }

/// True when `inner` lies within `outer`, shared edges included.
constexpr bool contains(const Rectangle& outer, const Rectangle& inner) {
    // Without jumps between the four, as for areas.
    return static_cast<bool>(static_cast<int>(outer.left <= inner.left) & static_cast<int>(outer.right >= inner.right) &
                             static_cast<int>(outer.top <= inner.top) & static_cast<int>(outer.bottom >= inner.bottom));
}

/// True when the point lies in the rectangle; the right and bottom edges are outside.
constexpr bool containsPoint(const Rectangle& r, std::int32_t x, std::int32_t y) {
    return r.left <= x && x < r.right && r.top <= y && y < r.bottom;
}

/// The common part; may come out inverted, and then its area is 0.
constexpr Rectangle intersection(const Rectangle& a, const Rectangle& b) {
    return {std::max(a.left, b.left), std::min(a.right, b.right), std::max(a.top, b.top), std::min(a.bottom, b.bottom)};
}

/// True when the two share at least one pixel. The product of the sides is taken in 32 bits, so an overlap whose area
/// wraps to 0 or below does not count.
constexpr bool overlaps(const Rectangle& a, const Rectangle& b) { return area(intersection(a, b)) > 0; }

/// The smallest box around both, with no test for emptiness.
constexpr Rectangle boundingUnion(const Rectangle& a, const Rectangle& b) {
    return {std::min(a.left, b.left), std::max(a.right, b.right), std::min(a.top, b.top), std::max(a.bottom, b.bottom)};
}

/// Puts inverted edges in order.
constexpr Rectangle normalized(Rectangle r) {
    if (r.left > r.right) {
        std::swap(r.left, r.right);
    }
    if (r.top > r.bottom) {
        std::swap(r.top, r.bottom);
    }
    return r;
}

/// The rectangle moved by (-x, -y): into the coordinates of an origin at (x, y).
constexpr Rectangle relativeTo(const Rectangle& r, std::int32_t x, std::int32_t y) {
    return {wrapSub(r.left, x), wrapSub(r.right, x), wrapSub(r.top, y), wrapSub(r.bottom, y)};
}

/// The rectangle grown by `pixels` on every side.
constexpr Rectangle grown(const Rectangle& r, std::int32_t pixels) {
    return {wrapSub(r.left, pixels), wrapAdd(r.right, pixels), wrapSub(r.top, pixels), wrapAdd(r.bottom, pixels)};
}

/// The rectangle in its own coordinates: its top left corner at (0, 0), its size kept.
constexpr Rectangle localRegion(const Rectangle& region) { return relativeTo(region, region.left, region.top); }

} // namespace OrvantaNS
