// The spaces that an insertion is about to make.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "Rectangle.h"
#include "valuespace/CreationSpace.h"

namespace OrvantaNS {

/// The records of one insertion, with their rectangles laid side by side for the two questions that are asked of all of
/// them for each space on the way: which has this rectangle, and which contain it or lie in it?
class CreationList {
public:
    /// Starts anew with the record of the object's own rectangle.
    void start(const Rectangle& own);
    std::size_t size() const { return rects_.size(); }
    VS_CREATION_SPACE& operator[](std::size_t record) { return records_[record]; }
    /// The records, and spare ones behind the last.
    std::vector<VS_CREATION_SPACE>& records() { return records_; }
    /// The record of the rectangle, and whether it has just been added.
    std::pair<std::uint32_t, bool> place(const Rectangle& rect);
    /// Tells each record ahead of the last one that contains it (`outer`) or else lies in it (`inner`), last one first.
    template <typename Outer, typename Inner> void relateLast(Outer outer, Inner inner) const;

private:
    std::uint32_t add(const Rectangle& rect);
    std::size_t slotOf(const Rectangle& rect) const;
    void enter(std::uint32_t record);

    std::vector<VS_CREATION_SPACE> records_; // kept from insertion to insertion, for the memory of their lists
    std::vector<Rectangle> rects_;           // by record; equal to those in the records
    std::vector<std::uint32_t> table_;       // open hash table of record + 1; in use once there are many
};

template <typename Outer, typename Inner> void CreationList::relateLast(Outer outer, Inner inner) const {
    const auto last = static_cast<std::uint32_t>(rects_.size() - 1);
    const Rectangle rect = rects_[last];
    for (std::uint32_t j = last; j-- > 0;) {
        const Rectangle& r = rects_[j];
        // Without jumps between the four comparisons: most records are neither.
        const bool holds =
            (r.left <= rect.left) & (r.right >= rect.right) & (r.top <= rect.top) & (r.bottom >= rect.bottom);
        const bool lies =
            (rect.left <= r.left) & (rect.right >= r.right) & (rect.top <= r.top) & (rect.bottom >= r.bottom);
        if (holds) {
            outer(j);
        } else if (lies) {
            inner(j);
        }
    }
}

} // namespace OrvantaNS
