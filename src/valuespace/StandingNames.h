// For sums over lists in which most names are of objects that have left: the names of those that are still there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "valuespace/ShortLists.h"

namespace OrvantaNS {

/// A space that has lost its links keeps the names of objects that leave, for good. Of such a list the beginning is sifted
/// now and then: its names that stand are laid apart, in their order. What was put on the list since then is read as it is.
/// Only lists that become much shorter by it are kept sifted, so a graph without such spaces takes no memory here.
class StandingNames {
public:
    bool isEmpty() const { return places_.empty(); }
    /// Forgets all lists.
    void reset() {
        places_.clear();
        sifted_.clear();
        spare_.clear();
    }
    /// Names that are read where the list of the slot is gone through.
    std::size_t namesIn(std::uint32_t slot, const std::vector<std::uint32_t>& list) const {
        const Sifted* sifted = of(slot);
        return sifted == nullptr ? list.size() : sifted->names.size() + (list.size() - sifted->read);
    }
    /// Tells the names of the slot's list in their order, and leaves out some of objects that have left.
    template <typename Visit>
    void forEach(std::uint32_t slot, const std::vector<std::uint32_t>& list, Visit visit) const {
        std::size_t from = 0;
        if (const Sifted* sifted = of(slot)) {
            for (const std::uint32_t name : sifted->names) {
                visit(name);
            }
            from = sifted->read;
        }
        for (std::size_t k = from; k < list.size(); ++k) {
            visit(list[k]);
        }
    }
    /// Sifts the list of the slot, one of `slots`: `stands(name)` is true of objects that have not left.
    template <typename Stands>
    void sift(std::uint32_t slot, std::size_t slots, const std::vector<std::uint32_t>& list, Stands stands) {
        kept_.clear();
        forEach(slot, list, [&](std::uint32_t name) {
            if (stands(name)) {
                kept_.push_back(name);
            }
        });
        if (2 * kept_.size() > list.size()) {
            forget(slot); // it is as soon read as it stands
            return;
        }
        places_.resize(slots, 0);
        if (places_[slot] == 0) {
            if (spare_.empty()) {
                sifted_.emplace_back();
                spare_.push_back(static_cast<std::uint32_t>(sifted_.size()));
            }
            places_[slot] = spare_.back();
            spare_.pop_back();
        }
        Sifted& sifted = sifted_[places_[slot] - 1];
        sifted.read = list.size();
        sifted.names = kept_;
    }
    /// The list of the slot has lost an object that it named once and that had not left when it was sifted.
    void erase(std::uint32_t slot, std::uint32_t object) {
        Sifted* sifted = of(slot);
        if (sifted != nullptr && eraseFirst(sifted->names, object)) {
            --sifted->read;
        }
    }
    /// The same for all objects of which `leaves` is true.
    template <typename Leaves> void eraseIf(std::uint32_t slot, Leaves leaves) {
        if (Sifted* sifted = of(slot)) {
            sifted->read -= std::erase_if(sifted->names, leaves);
        }
    }
    /// The list of the slot is another one from now on.
    void forget(std::uint32_t slot) {
        if (of(slot) != nullptr) {
            spare_.push_back(places_[slot]); // the next list at this place uses the memory of these names
            places_[slot] = 0;
        }
    }

private:
    struct Sifted {
        std::size_t read = 0;             // so many names of the list have been sifted
        std::vector<std::uint32_t> names; // those of them that stand
    };
    const Sifted* of(std::uint32_t slot) const {
        return slot < places_.size() && places_[slot] != 0 ? &sifted_[places_[slot] - 1] : nullptr;
    }
    Sifted* of(std::uint32_t slot) {
        return slot < places_.size() && places_[slot] != 0 ? &sifted_[places_[slot] - 1] : nullptr;
    }

    std::vector<std::uint32_t> places_; // by slot: one more than its place in `sifted_`, 0 for none
    std::vector<Sifted> sifted_;
    std::vector<std::uint32_t> spare_; // places, plus one, that no slot has
    std::vector<std::uint32_t> kept_;  // the names of the list in work
};

} // namespace OrvantaNS
