// The queues of the two walks. What a plain queue searches for, these look up: each slot knows where it stands.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace OrvantaNS {

/// Stands in a queue for a place that has been left; no graph gets that long.
inline constexpr std::uint32_t kLeft = std::numeric_limits<std::uint32_t>::max();

/// Makes places for the slots below `slots`, all empty. Only the slots of the last walk, `visited`, have places that are
/// not: a short walk of a large graph clears those alone.
template <typename Place>
void clearPlaces(std::vector<Place>& places, const std::vector<std::uint32_t>& visited, std::size_t slots) {
    constexpr std::size_t kShort = 8; // so many times shorter than the graph
    if (visited.size() > places.size() / kShort) {
        places.assign(slots, Place{});
        return;
    }
    for (const std::uint32_t slot : visited) {
        if (slot != kLeft) {
            places[slot] = Place{};
        }
    }
    places.resize(std::max(places.size(), slots));
}

/// The queue of insertion: a slot that waits in it is not taken in again, one that has left it is. The slot in work counts
/// as waiting.
class InsertionQueue {
public:
    /// Starts anew with a list of slots, all below `slots`.
    void start(const std::vector<std::uint32_t>& list, std::size_t slots) {
        clearPlaces(places_, entries_, slots);
        entries_ = list;
        next_ = 0;
        for (std::size_t k = 0; k < entries_.size(); ++k) {
            places_[entries_[k]] = static_cast<std::uint32_t>(k) + 1;
        }
    }
    bool isDone() const { return next_ == entries_.size(); }
    std::uint32_t slotInWork() const { return entries_[next_]; }
    void advance() { ++next_; }
    void offer(std::uint32_t slot) {
        if (places_[slot] <= next_) {
            entries_.push_back(slot);
            places_[slot] = static_cast<std::uint32_t>(entries_.size());
        }
    }

private:
    std::vector<std::uint32_t> entries_;
    std::vector<std::uint32_t> places_; // by slot: one more than the index of its last entry, 0 before its first
    std::size_t next_ = 0;
};

/// The queue of deletion: a slot that is put in moves behind all others. The last entry is outside the search for the
/// place that it leaves, so a slot that stands there gets a second place, and there are never more than two.
class DeletionQueue {
public:
    void start(std::uint32_t slot, std::size_t slots) {
        clearPlaces(places_, entries_, slots);
        entries_.assign(1, slot);
        next_ = 0;
        places_[slot].newer = 1;
    }
    /// Steps over the places that were left; false at the end.
    bool skipToNext() {
        while (next_ < entries_.size() && entries_[next_] == kLeft) {
            ++next_;
        }
        return next_ < entries_.size();
    }
    std::uint32_t slotInWork() const { return entries_[next_]; }
    void advance() { ++next_; }
    void moveToEnd(std::uint32_t slot) {
        Places& places = places_[slot];
        const bool standsLast = places.newer == entries_.size();
        if (isWaiting(places.older)) {
            entries_[places.older - 1] = kLeft; // the first of two
            places.older = places.newer;
        } else if (standsLast) {
            places.older = places.newer;
        } else if (isWaiting(places.newer)) {
            entries_[places.newer - 1] = kLeft;
        }
        entries_.push_back(slot);
        places.newer = static_cast<std::uint32_t>(entries_.size());
    }

private:
    struct Places { // one more than an index into the entries, 0 for none
        std::uint32_t older = 0;
        std::uint32_t newer = 0;
    };
    bool isWaiting(std::uint32_t place) const { return place > next_; }

    std::vector<std::uint32_t> entries_;
    std::vector<Places> places_; // by slot
    std::size_t next_ = 0;
};

} // namespace OrvantaNS
