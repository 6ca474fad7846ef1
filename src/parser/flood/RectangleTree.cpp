#include "parser/flood/RectangleTree.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

constexpr Rectangle kNothing{std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min(),
                             std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()};

// One rectangle that is to get a leaf.
struct Seat {
    int size; // In powers of four.
    std::int32_t x;
    std::int32_t y;
    std::size_t index;
};

Seat seatOf(const Rectangle& rect, std::size_t index) {
    const auto longer = static_cast<std::uint32_t>(std::max(width(rect), height(rect)));
    const int size = static_cast<int>(std::bit_width(longer)) / 2;
    return {size, rect.left + width(rect) / 2, rect.top + height(rect) / 2, index};
}

// Orders the seats below a node that has `capacity` leaves, by halves across the longer side. Seats come sorted by size,
// and sizes are parted first: a pane among specks would make a wide box of every branch above it.
void seatBelow(std::vector<Seat>::iterator begin, std::vector<Seat>::iterator end, std::ptrdiff_t capacity) {
    if (end - begin < 2) {
        return;
    }
    const std::ptrdiff_t half = capacity / 2;
    if (end - begin > half) {
        const auto byX = [](const Seat& a, const Seat& b) { return a.x < b.x; };
        const auto byY = [](const Seat& a, const Seat& b) { return a.y < b.y; };
        if (begin->size == (end - 1)->size) {
            const auto [left, right] = std::minmax_element(begin, end, byX);
            const auto [top, bottom] = std::minmax_element(begin, end, byY);
            if (right->x - left->x > bottom->y - top->y) {
                std::nth_element(begin, begin + half, end, byX);
            } else {
                std::nth_element(begin, begin + half, end, byY);
            }
        }
        seatBelow(begin + half, end, half);
        end = begin + half;
    }
    seatBelow(begin, end, half);
}

} // namespace

bool RectangleTree::isFar(const Rectangle& rect) {
    const auto isFarEdge = [](std::int32_t edge) { return edge < -kFarPixels || edge > kFarPixels; };
    return isFarEdge(rect.left) || isFarEdge(rect.right) || isFarEdge(rect.top) || isFarEdge(rect.bottom);
}

bool RectangleTree::isFindable(const Rectangle& rect) {
    return !isFar(rect) && rect.left < rect.right && rect.top < rect.bottom;
}

RectangleTree::RectangleTree(const std::vector<Rectangle>& rects) : leaves_(rects.size(), 0) {
    std::vector<Seat> seats;
    seats.reserve(rects.size());
    for (std::size_t i = 0; i < rects.size(); ++i) {
        if (isFindable(rects[i])) {
            seats.push_back(seatOf(rects[i], i));
        }
    }
    std::stable_sort(seats.begin(), seats.end(), [](const Seat& a, const Seat& b) { return a.size < b.size; });
    leafCount_ = std::bit_ceil(seats.size());
    seatBelow(seats.begin(), seats.end(), static_cast<std::ptrdiff_t>(leafCount_));
    boxes_.assign(2 * leafCount_, kNothing);
    for (std::size_t place = 0; place < seats.size(); ++place) {
        leaves_[seats[place].index] = leafCount_ + place;
    }
}

void RectangleTree::include(std::size_t index, const Rectangle& rect) {
    for (Node node = leafOf(index); node >= kRoot; node = parent(node)) {
        boxes_[node] = boundingUnion(boxes_[node], rect);
    }
}

} // namespace OrvantaNS
