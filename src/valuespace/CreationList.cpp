#include "valuespace/CreationList.h"

#include <algorithm>

namespace OrvantaNS {

namespace {

// So many rectangles are searched faster than they are hashed.
constexpr std::size_t kFew = 16;

std::size_t hashOf(const Rectangle& r) {
    constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15; // odd, with its bits spread evenly
    const auto pair = [](std::int32_t a, std::int32_t b) {
        return std::uint64_t{static_cast<std::uint32_t>(a)} << 32 | static_cast<std::uint32_t>(b);
    };
    std::uint64_t hash = pair(r.left, r.right) * kMix;
    hash = (hash ^ hash >> 29 ^ pair(r.top, r.bottom)) * kMix;
    return static_cast<std::size_t>(hash ^ hash >> 29);
}

} // namespace

void CreationList::start(const Rectangle& own) {
    rects_.clear();
    lefts_.clear();
    rights_.clear();
    tops_.clear();
    bottoms_.clear();
    table_.clear();
    add(own);
}

std::pair<std::uint32_t, bool> CreationList::place(const Rectangle& rect) {
    if (rects_.size() < kFew) {
        const auto found = std::find(rects_.begin(), rects_.end(), rect);
        if (found != rects_.end()) {
            return {static_cast<std::uint32_t>(found - rects_.begin()), false};
        }
    } else if (table_[slotOf(rect)] != 0) {
        return {table_[slotOf(rect)] - 1, false};
    }
    return {add(rect), true};
}

std::uint32_t CreationList::add(const Rectangle& rect) {
    const auto record = static_cast<std::uint32_t>(rects_.size());
    if (record == records_.size()) {
        records_.emplace_back();
    }
    records_[record].rect = rect;
    records_[record].parents.clear();
    records_[record].reuse = false;
    records_[record].space = 0;
    rects_.push_back(rect);
    lefts_.push_back(rect.left);
    rights_.push_back(rect.right);
    tops_.push_back(rect.top);
    bottoms_.push_back(rect.bottom);
    if (rects_.size() >= kFew) {
        if (2 * rects_.size() > table_.size()) {
            // At most half full, so that a search ends soon.
            table_.assign(std::max(4 * kFew, 2 * table_.size()), 0);
            for (std::uint32_t k = 0; k <= record; ++k) {
                enter(k);
            }
        } else {
            enter(record);
        }
    }
    return record;
}

void CreationList::compareLast() {
    const std::size_t last = rects_.size() - 1;
    const Rectangle rect = rects_[last];
    relations_.resize(last);
    // Plain arrays and no jumps, so that compilers compare several at a time.
    const std::int32_t* left = lefts_.data();
    const std::int32_t* right = rights_.data();
    const std::int32_t* top = tops_.data();
    const std::int32_t* bottom = bottoms_.data();
    std::uint8_t* relation = relations_.data();
    for (std::size_t j = 0; j < last; ++j) {
        const int holds = static_cast<int>(left[j] <= rect.left) & static_cast<int>(right[j] >= rect.right) &
                          static_cast<int>(top[j] <= rect.top) & static_cast<int>(bottom[j] >= rect.bottom);
        const int lies = static_cast<int>(rect.left <= left[j]) & static_cast<int>(rect.right >= right[j]) &
                         static_cast<int>(rect.top <= top[j]) & static_cast<int>(rect.bottom >= bottom[j]);
        relation[j] = static_cast<std::uint8_t>(holds * kHolds + lies * kLies);
    }
}

std::size_t CreationList::slotOf(const Rectangle& rect) const {
    const std::size_t mask = table_.size() - 1; // the size is a power of two
    std::size_t slot = hashOf(rect) & mask;
    while (table_[slot] != 0 && rects_[table_[slot] - 1] != rect) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void CreationList::enter(std::uint32_t record) { table_[slotOf(rects_[record])] = record + 1; }

} // namespace OrvantaNS
