// Marks on objects that are wiped all at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace OrvantaNS {

class ObjectMarks {
public:
    /// Wipes all marks.
    void start() {
        if (++round_ == 0) { // after four thousand million rounds
            marks_.assign(marks_.size(), 0);
            round_ = 1;
        }
    }
    /// False when the object was marked already.
    bool add(std::uint32_t object) {
        if (object >= marks_.size()) {
            marks_.resize(std::size_t{object} + 1, 0);
        }
        const bool isNew = marks_[object] != round_;
        marks_[object] = round_;
        return isNew;
    }
    bool holds(std::uint32_t object) const { return object < marks_.size() && marks_[object] == round_; }

private:
    std::vector<std::uint32_t> marks_; // by object: the last round in which it was marked
    std::uint32_t round_ = 1;
};

} // namespace OrvantaNS
