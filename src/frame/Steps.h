// How a computation stays stoppable while much lies between two of its reports.
#pragma once

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

} // namespace OrvantaNS
