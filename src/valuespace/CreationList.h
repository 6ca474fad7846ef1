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
    template <typename Outer, typename Inner> void relateLast(Outer outer, Inner inner);

private:
    // How a record stands to the last one.
    static constexpr std::uint8_t kHolds = 1;
    static constexpr std::uint8_t kLies = 2;

    /// Fills `relations_` for all records ahead of the last one.
    void compareLast();
    std::uint32_t add(const Rectangle& rect);
    std::size_t slotOf(const Rectangle& rect) const;
    void enter(std::uint32_t record);

    std::vector<VS_CREATION_SPACE> records_; // kept from insertion to insertion, for the memory of their lists
    std::vector<Rectangle> rects_;           // by record; equal to those in the records
    std::vector<std::int32_t> lefts_;        // the sides of the rectangles, so that many are compared at once
    std::vector<std::int32_t> rights_;
    std::vector<std::int32_t> tops_;
    std::vector<std::int32_t> bottoms_;
    std::vector<std::uint8_t> relations_; // by record
    std::vector<std::uint32_t> table_;    // open hash table of record + 1; in use once there are many
};

template <typename Outer, typename Inner> void CreationList::relateLast(Outer outer, Inner inner) {
    compareLast();
    for (std::size_t j = relations_.size(); j-- > 0;) {
        // Most records are neither.
        if (relations_[j] != 0) {
            if (relations_[j] & kHolds) {
                outer(static_cast<std::uint32_t>(j));
            } else {
                inner(static_cast<std::uint32_t>(j));
            }
        }
    }
}

} // namespace OrvantaNS
