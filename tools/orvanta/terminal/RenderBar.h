// Shows how far a rendering is.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "terminal/ProgressLine.h"

namespace OrvantaNS::command {

/// How far a rendering is.
struct RenderPosition {
    std::int64_t pictures = 0; ///< Done.
    double seconds = 0.0;      ///< Of the output that are done.
    double ofSeconds = 0.0;    ///< Of the output in all; 0 when it is not known.
    int pass = 1;              ///< Of `passes`.
    int passes = 1;
};

/// The share of the whole rendering that is done, 0 to 1; 0 when nobody knows.
double renderShare(const RenderPosition& position);

/// What stands behind the share after `elapsed` seconds: position, pictures a second and the time left.
std::string renderText(const RenderPosition& position, double elapsed);

/// Draws both on a progress line. One thread at a time.
class RenderBar {
public:
    explicit RenderBar(ProgressScreen screen);

    void show(const RenderPosition& position);

private:
    std::function<double()> seconds_;
    double start_; // Seconds of that clock.
    ProgressLine line_;
};

} // namespace OrvantaNS::command
