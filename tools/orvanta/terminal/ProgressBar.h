// Shows how far an engine is.
#pragma once

#include <utility>

#include "ProgressReporter.h"
#include "terminal/ProgressLine.h"

namespace OrvantaNS::command {

/// Draws an engine's progress, and passes Ctrl-C on to the engine.
class ProgressBar : public ProgressReporter {
public:
    explicit ProgressBar(ProgressScreen screen) : line_(std::move(screen)) {}

    /// Any number may come; the bar keeps to 0 to 100 percent and never goes back.
    void reportProgress(double percent) override;
    bool isCancelled() override;

private:
    ProgressLine line_;
    double furthest_ = 0.0; // Percent.
};

} // namespace OrvantaNS::command
