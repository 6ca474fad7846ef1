// The object lists of some spaces as sets of bits, for an operation that asks many times whether one list holds another.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace OrvantaNS {

/// A set is made from a list when it is asked for first, and the operation tells of each change to a list afterwards. The
/// lists stay what counts: nothing here outlives the operation, so there is nothing to keep in step with them.
class ObjectSets {
public:
    /// Forgets all sets. There are `slots` lists; more objects on them than `objectsExpected` are taken in, for more time.
    void start(std::size_t slots, std::size_t objectsExpected) {
        if (rowCount_ > 0 || rows_.size() != slots) { // most operations ask for no set
            rows_.assign(slots, kNone);
        }
        rowCount_ = 0;
        for (const std::uint32_t object : numbered_) {
            numbers_[object] = kNone;
        }
        numbered_.clear();
        rowWords_ = std::max<std::size_t>(1, (objectsExpected + kWordBits - 1) / kWordBits);
    }

    /// True when every object of the second list stands in the first.
    template <typename Graph> bool holdsAll(const Graph& graph, std::uint32_t container, std::uint32_t contained) {
        const std::size_t held = rowOf(graph, container);
        const std::size_t asked = rowOf(graph, contained);
        // Making the second row may have widened all rows, which forgets the first one.
        const std::size_t heldNow = rows_[container] == held ? held : rowOf(graph, container);
        const std::uint64_t* a = &words_[heldNow * rowWords_];
        const std::uint64_t* b = &words_[asked * rowWords_];
        for (std::size_t w = rowWords_; w-- > 0;) { // the newest objects, which tell most lists apart, come last
            if ((b[w] & ~a[w]) != 0) {
                return false;
            }
        }
        return true;
    }
    /// The list of the slot has changed.
    void forget(std::uint32_t slot) { rows_[slot] = kNone; }

private:
    static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
    static constexpr std::size_t kWordBits = 64;
    static constexpr std::size_t kFewRows = 8;

    template <typename Graph> std::size_t rowOf(const Graph& graph, std::uint32_t slot) {
        return rows_[slot] != kNone ? rows_[slot] : makeRow(graph[slot].objects, slot);
    }
    std::size_t makeRow(const std::vector<std::uint32_t>& list, std::uint32_t slot) {
        const std::size_t row = rowCount_++;
        const std::size_t begin = row * rowWords_;
        if (words_.size() < begin + rowWords_) {
            // By a quarter: on a dense screen the rows are long and many.
            words_.reserve(begin + begin / 4 + kFewRows * rowWords_);
            words_.resize(words_.capacity());
        }
        words_[begin] = 0;
        if (rowWords_ > 1) { // mostly one word holds all objects in force
            std::fill_n(words_.begin() + static_cast<std::ptrdiff_t>(begin) + 1, rowWords_ - 1, 0);
        }
        for (const std::uint32_t object : list) {
            const std::uint32_t number = numberOf(object);
            if (number >= rowWords_ * kWordBits) {
                widen(list);
                return makeRow(list, slot);
            }
            words_[begin + number / kWordBits] |= std::uint64_t{1} << number % kWordBits;
        }
        rows_[slot] = static_cast<std::uint32_t>(row);
        return row;
    }
    std::uint32_t numberOf(std::uint32_t object) {
        if (object >= numbers_.size()) {
            numbers_.resize(std::size_t{object} + 1, kNone);
        }
        std::uint32_t& number = numbers_[object];
        if (number == kNone) {
            number = static_cast<std::uint32_t>(numbered_.size());
            numbered_.push_back(object);
        }
        return number;
    }
    // Forgets all rows, and makes room in each for the objects of the list as well.
    void widen(const std::vector<std::uint32_t>& list) {
        for (const std::uint32_t object : list) {
            numberOf(object);
        }
        rowWords_ = 2 * ((numbered_.size() + kWordBits - 1) / kWordBits);
        std::fill(rows_.begin(), rows_.end(), kNone);
        rowCount_ = 0;
    }

    std::vector<std::uint32_t> rows_;  // by slot: its row of `words_`
    std::vector<std::uint64_t> words_; // `rowWords_` a row
    std::size_t rowWords_ = 1;
    std::size_t rowCount_ = 0;
    std::vector<std::uint32_t> numbers_;  // by object: its bit
    std::vector<std::uint32_t> numbered_; // the objects that have a bit
};

} // namespace OrvantaNS
