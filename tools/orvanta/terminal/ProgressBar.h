// A line on the standard error that says how far a run is.
#pragma once

#include <cstdio>

#include "ProgressReporter.h"

namespace OrvantaNS::command {

/// Draws a bar when it has a terminal to draw on, and passes Ctrl-C on to the engine.
class ProgressBar : public ProgressReporter {
public:
    /// `out` is the terminal; null draws nothing. It must outlive the bar.
    explicit ProgressBar(std::FILE* out) : out_(out) {}
    /// Takes the bar off the screen.
    ~ProgressBar() override;
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Any number may come; the bar keeps to 0 to 100 percent and never goes back.
    void reportProgress(double percent) override;
    bool isCancelled() override;

private:
    std::FILE* out_;
    int shown_ = -1; // Percent on the screen; -1 before the first drawing.
};

/// The standard error when it is a terminal, else null.
std::FILE* progressTerminal();

/// True when the standard output is a terminal.
bool outputIsTerminal();

} // namespace OrvantaNS::command
