// How a computation stays stoppable while much lies between two of its reports.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/DataStore.h"

namespace OrvantaNS {

/// Samples, frames or objects that a plain scan passes in the time of one step of those that are counted here.
inline constexpr std::uint64_t kPassedPerStep = 8;

/// Asks the reporter, which must not be null, whether to stop. Throws `OVERR_USER_CANCELLED`.
void askWhetherToStop(OV_DATA_STORE& store);

/// The count of steps has come down to nothing: starts it anew, and asks the reporter, if there is one, whether to stop.
/// Throws `OVERR_USER_CANCELLED`.
void beginNextCount(OV_DATA_STORE& store);

/// Counts work done since the reporter was last asked, and asks it again once that has become much. Reports nothing, and
/// does nothing without a reporter. Throws `OVERR_USER_CANCELLED`.
inline void countSteps(OV_DATA_STORE& store, std::uint64_t steps) {
    // Downward, since processors compare with nothing for nothing.
    store.stepsToQuestion -= static_cast<std::int64_t>(steps);
    if (store.stepsToQuestion < 0) {
        beginNextCount(store);
    }
}

/// Counts work that comes in very many small pieces, for less than a call each.
class StepCounter {
public:
    explicit StepCounter(OV_DATA_STORE& store) : store_(store) {}

    /// Throws `OVERR_USER_CANCELLED`, as `settle` does.
    void add(std::uint64_t steps) {
        left_ -= static_cast<std::int64_t>(steps);
        if (left_ < 0) {
            settle();
        }
    }
    /// Hands on what has not been counted yet. To be called at the end: a destructor must not throw.
    void settle() {
        const std::int64_t steps = kPiece - left_;
        left_ = kPiece;
        countSteps(store_, static_cast<std::uint64_t>(steps));
    }

private:
    static constexpr std::int64_t kPiece = 16384; // far below what lies between two questions

    OV_DATA_STORE& store_;
    std::int64_t left_ = kPiece;
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
