// How a computation stays stoppable while much lies between two of its reports.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/DataStore.h"

namespace OrvantaNS {

/// Elementary steps, of some nanoseconds each, after which the reporter is asked whether to stop: far more than lie
/// between two reports on what people record, and few enough to end well within a third of a second.
inline constexpr std::uint64_t kStepsBetweenQuestions = 8000000;

/// Asks the reporter, which must not be null, whether to stop. Throws `OVERR_USER_CANCELLED`.
void askWhetherToStop(OV_DATA_STORE& store);

/// Counts work done since the reporter was last asked, and asks it again once that has become much. Reports nothing, and
/// does nothing without a reporter. Throws `OVERR_USER_CANCELLED`.
inline void countSteps(OV_DATA_STORE& store, std::uint64_t steps) {
    store.stepsSinceQuestion += steps;
    if (store.stepsSinceQuestion >= kStepsBetweenQuestions && store.progress != nullptr) {
        askWhetherToStop(store);
    }
}

/// Counts work that comes in very many small pieces, for less than a call each.
class StepCounter {
public:
    explicit StepCounter(OV_DATA_STORE& store) : store_(store) {}

    /// Throws `OVERR_USER_CANCELLED`, as `settle` does.
    void add(std::uint64_t steps) {
        pending_ += steps;
        if (pending_ >= kPiece) {
            settle();
        }
    }
    /// Hands on what has not been counted yet. To be called at the end: a destructor must not throw.
    void settle() {
        const std::uint64_t steps = pending_;
        pending_ = 0;
        countSteps(store_, steps);
    }

private:
    static constexpr std::uint64_t kPiece = 16384; // far below what lies between two questions

    OV_DATA_STORE& store_;
    std::uint64_t pending_ = 0;
};

/// Fewer entries than this are sorted in less than a tenth of a second, and their comparisons are not counted.
inline constexpr std::size_t kLongSort = std::size_t{1} << 19;

/// Calls `sort` with the order to sort `count` entries by. In a long sort each comparison counts as a step, so that it can
/// be stopped half way; the entries are then in no order.
template <typename Less, typename Sort>
void stoppableSort(OV_DATA_STORE& store, std::size_t count, Less less, Sort sort) {
    if (count < kLongSort) {
        sort(less);
        return;
    }
    sort([&](const auto& a, const auto& b) {
        countSteps(store, 1);
        return less(a, b);
    });
}

} // namespace OrvantaNS
