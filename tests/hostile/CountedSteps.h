// What a piece of work counts: a reporter is asked in time only where each loop that can get long is counted by what it
// goes through.
#pragma once

#include <cstdint>
#include <functional>

#include <gtest/gtest.h>

#include "frame/DataStore.h"

namespace OrvantaNS::testing {

// A step is some nanoseconds: so many entries are read in its time at most, and so many steps is the reading of one at
// most, with the memory that it may be far away in.
inline constexpr std::uint64_t kReadPerStep = 16;
inline constexpr std::uint64_t kStepsPerRead = 16;

/// The steps that `work` counts in `store`.
inline std::uint64_t stepsOf(OV_DATA_STORE& store, const std::function<void()>& work) {
    constexpr std::int64_t kNever = std::int64_t{1} << 60; // so many that no question comes
    store.stepsToQuestion = kNever;
    work();
    return static_cast<std::uint64_t>(kNever - store.stepsToQuestion);
}

/// The steps of `work` are those of going through so many entries, give or take the time that one takes.
inline void expectCounted(OV_DATA_STORE& store, std::uint64_t entries, const std::function<void()>& work) {
    const std::uint64_t steps = stepsOf(store, work);
    EXPECT_GE(steps * kReadPerStep, entries);
    EXPECT_LE(steps, entries * kStepsPerRead);
}

} // namespace OrvantaNS::testing
