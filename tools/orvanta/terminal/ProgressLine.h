// A line on a terminal that says how far a run is, drawn again and again.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

namespace OrvantaNS::command {

/// What a progress line is drawn on. The last two are there for tests.
struct ProgressScreen {
    std::FILE* out = nullptr;        ///< Null draws nothing. It must outlive the line.
    std::function<int()> columns;    ///< Asked at each drawing, as windows change; by default the terminal's.
    std::function<double()> seconds; ///< A clock; by default a steady one.
};

/// A clock that never goes back.
double steadySeconds();

/// The screen for this run: the standard error, if it is a terminal and neither --quiet nor --no-progress was given.
ProgressScreen progressScreen();

/// Short runs show nothing: the first drawing comes half a second after the line was made. Redrawn at most ten times a
/// second.
class ProgressLine {
public:
    explicit ProgressLine(ProgressScreen screen);
    /// Takes the line off the screen.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Shows how much is done, 0 to 1, with `text` behind it (such as "12.3 frames/s, 0:40 left"), if a drawing is due. The
    /// bar gives way to the text, and both are cut to the terminal's width. Shares that are no number are passed over.
    void show(double share, std::string_view text = {});
    /// Shows `text` alone, if a drawing is due: for work whose length nobody knows.
    void showText(std::string_view text);
    /// True when `show` would draw: texts that cost something to make can be left unmade.
    bool isDue() const;

private:
    void draw(const std::string& line);

    ProgressScreen screen_;
    double next_ = 0.0; // Seconds of the clock: when the next drawing is due.
    std::string shown_;
};

} // namespace OrvantaNS::command
