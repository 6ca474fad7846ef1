// A set of slots of the graph, one bit a slot: walked in slot order, so that memory is read in one direction.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvantaNS {

class SlotSet {
public:
    /// Empties the set and makes room for the slots below `slots`.
    void start(std::size_t slots) { words_.assign((slots + kWordBits - 1) / kWordBits, 0); }
    /// Makes room for more slots, none of them in the set.
    void grow(std::size_t slots) { words_.resize((slots + kWordBits - 1) / kWordBits, 0); }

    /// So many slots there is room for.
    std::size_t room() const { return words_.size() * kWordBits; }
    bool holds(std::uint32_t slot) const { return (words_[slot / kWordBits] >> slot % kWordBits & 1) != 0; }
    /// False when the slot was in the set already.
    bool add(std::uint32_t slot) {
        std::uint64_t& word = words_[slot / kWordBits];
        const std::uint64_t bit = std::uint64_t{1} << slot % kWordBits;
        const bool isNew = (word & bit) == 0;
        word |= bit;
        return isNew;
    }
    /// Adds the slots of another set, which has no more room than this one.
    void addAll(const SlotSet& other) {
        for (std::size_t w = 0; w < other.words_.size(); ++w) {
            words_[w] |= other.words_[w];
        }
    }
    void remove(std::uint32_t slot) { words_[slot / kWordBits] &= ~(std::uint64_t{1} << slot % kWordBits); }

    /// Tells each slot of the set, ascending.
    template <typename Visit> void forEach(Visit visit) const {
        forEach(visit, [] {});
    }
    /// The same; calls `pause` after every few slots, so that what is to be done seldom need not be done for each.
    template <typename Visit, typename Pause> void forEach(Visit visit, Pause pause) const {
        for (std::size_t w = 0; w < words_.size(); ++w) {
            visitWord(w, words_[w], visit);
            pause();
        }
    }
    /// Tells each slot that is in this set and not in the other, which has room for all of them, ascending.
    template <typename Visit> void forEachMissingIn(const SlotSet& other, Visit visit) const {
        for (std::size_t w = 0; w < words_.size(); ++w) {
            visitWord(w, words_[w] & ~other.words_[w], visit);
        }
    }

private:
    static constexpr std::size_t kWordBits = 64;

    template <typename Visit> static void visitWord(std::size_t w, std::uint64_t word, Visit& visit) {
        for (; word != 0; word &= word - 1) {
            visit(static_cast<std::uint32_t>(w * kWordBits + static_cast<std::size_t>(std::countr_zero(word))));
        }
    }

    std::vector<std::uint64_t> words_;
};

} // namespace OrvantaNS
