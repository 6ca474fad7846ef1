#include "Rectangle.h"

#include <fstream>
#include <ostream>

#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// How far a side may stand beyond the smaller rectangle's for the two to count as one: about the width of a shadow or
// border.
constexpr std::int32_t kNearSameSizePixels = 16;

} // namespace

bool Rectangle::canTouchRect(const Rectangle& other) const { return overlaps(grown(*this, 1), other); }

Rectangle Rectangle::snapWithin(const Rectangle& bound) const {
    Rectangle copy = *this;
    if (left < bound.left) {
        copy.left = bound.left;
        copy.right = wrapAdd(width(*this), bound.left);
    } else if (right > bound.right) {
        copy.right = bound.right;
        copy.left = wrapSub(bound.right, width(*this));
    }
    if (top < bound.top) {
        copy.top = bound.top;
        copy.bottom = wrapAdd(height(*this), bound.top);
    } else if (bottom > bound.bottom) {
        copy.bottom = bound.bottom;
        copy.top = wrapSub(bound.bottom, height(*this));
    }
    return copy;
}

Rectangle Rectangle::noZeroBound(const Rectangle& other) const {
    if (isEmpty(*this)) {
        return area(other) >= 1 ? other : Rectangle{};
    }
    if (area(other) == 0) {
        return *this;
    }
    return boundingUnion(*this, other);
}

bool Rectangle::nearSameSize(const Rectangle& other) const {
    return contains(*this, other) && wrapAdd(left, kNearSameSizePixels) >= other.left &&
           wrapSub(right, kNearSameSizePixels) <= other.right && wrapAdd(top, kNearSameSizePixels) >= other.top &&
           wrapSub(bottom, kNearSameSizePixels) <= other.bottom;
}

void Rectangle::printRect(std::ofstream& out) const { printRect(static_cast<std::ostream&>(out)); }

void Rectangle::printRect(std::ostream& out) const { out << left << " " << right << " " << top << " " << bottom; }

} // namespace OrvantaNS
