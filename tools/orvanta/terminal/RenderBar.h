// A line on the standard error that says how far a rendering is.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace OrvantaNS::command {

/// How far a rendering is.
struct RenderPosition {
    std::int64_t pictures = 0; ///< Done.
    double seconds = 0.0;      ///< Of the output that are done.
    double ofSeconds = 0.0;    ///< Of the output in all; 0 when it is not known.
    int pass = 1;              ///< Of `passes`.
    int passes = 1;
};

/// The line for a position after `elapsed` seconds, at most `columns` long: share done, position, pictures a second and
/// the time left.
std::string renderLine(const RenderPosition& position, double elapsed, int columns);

/// Draws the line when it has a terminal to draw on: after half a second, at most ten times a second. One thread at a time.
class RenderBar {
public:
    /// `out` is the terminal; null draws nothing. It must outlive the bar.
    explicit RenderBar(std::FILE* out);
    /// Takes the line off the screen.
    ~RenderBar();
    RenderBar(const RenderBar&) = delete;
    RenderBar& operator=(const RenderBar&) = delete;

    void show(const RenderPosition& position);

private:
    using Clock = std::chrono::steady_clock;

    std::FILE* out_;
    Clock::time_point start_;
    Clock::time_point next_;
    bool shown_ = false;
};

} // namespace OrvantaNS::command
