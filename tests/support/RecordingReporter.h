// A host's reporter that remembers what it was told, and cancels when asked often enough.
#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "ProgressReporter.h"

namespace OrvantaNS::testing {

class RecordingReporter : public ProgressReporter {
public:
    /// Never cancels.
    RecordingReporter() = default;
    /// Cancels at the question of this number, counted from 0.
    explicit RecordingReporter(std::size_t cancelAt) : cancelAt_(cancelAt) {}

    void reportProgress(double percent) override { percents.push_back(percent); }
    bool isCancelled() override { return questions++ >= cancelAt_; }

    std::vector<double> percents; ///< Every report, in order.
    std::size_t questions = 0;    ///< How often it was asked whether to stop.

private:
    std::size_t cancelAt_ = std::numeric_limits<std::size_t>::max();
};

} // namespace OrvantaNS::testing
