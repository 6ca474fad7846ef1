// The integer rectangle in which the library takes and gives everything it decides.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "OrvantaExport.h"

namespace OrvantaNS {

/// A rectangle on the recording's pixel grid; y grows downward. A plain value, all zero by default.
///
/// It need not be normalised: an inverted rectangle (`right` below `left`, or `bottom` below `top`) is an ordinary
/// value that every test treats as empty. All edge arithmetic is signed 32-bit and wraps.
struct ORVANTA_EXPORT Rectangle {
    std::int32_t left = 0;   ///< Left edge, pixels.
    std::int32_t right = 0;  ///< Right edge, pixels: one past the last column.
    std::int32_t top = 0;    ///< Top edge, pixels.
    std::int32_t bottom = 0; ///< Bottom edge, pixels: one past the last row.

    /// True when this rectangle, grown by one pixel on every side, overlaps `other` with positive area. Rectangles that
    /// share an edge or meet at a corner touch; a gap of one pixel between them does not.
    bool canTouchRect(const Rectangle& other) const;

    /// Returns a copy of this rectangle moved, never resized, to lie within `bound`. The low edges are tested first: a
    /// copy whose low edge lies below the bound's ends flush there and overhangs the high edge if it is too large.
    Rectangle snapWithin(const Rectangle& bound) const;

    /// Bounding union of the two that ignores an empty partner; all zero when both are empty.
    Rectangle noZeroBound(const Rectangle& other) const;

    /// True when this rectangle contains `other` and stands at most 16 pixels beyond it on every side. Asymmetric: the
    /// smaller rectangle is the argument.
    bool nearSameSize(const Rectangle& other) const;

    /// Writes "left right top bottom", with no line end, in the stream's default formatting.
    void printRect(std::ofstream& out) const;
    /// Writes the same text to any output stream.
    void printRect(std::ostream& out) const;

    /// True when all four edges are equal.
    friend constexpr bool operator==(const Rectangle& a, const Rectangle& b) {
        // Without jumps between the four: which edge tells two rectangles apart cannot be foretold.
        return ((a.left ^ b.left) | (a.right ^ b.right) | (a.top ^ b.top) | (a.bottom ^ b.bottom)) == 0;
    }
};

} // namespace OrvantaNS
