#include "terminal/ProgressLine.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "terminal/Messages.h"
#include "terminal/Terminal.h"

namespace OrvantaNS::command {

namespace {

constexpr double kDelay = 0.5;                 // Seconds: what is done sooner needs no bar.
constexpr double kInterval = 0.1;              // Seconds between drawings: as fast as numbers can be read.
constexpr int kLongestBar = 40;                // Columns.
constexpr int kShortestBar = 5;                // Columns: a shorter bar says less than the number beside it.
constexpr const char* kEraseLine = "\r\033[K"; // To the line's start, and clear it.

/// A bar with its number and text in at most `columns` columns.
std::string lineText(double share, std::string_view text, int columns) {
    std::string line = fmt::format("{:3}%", static_cast<int>(share * 100.0));
    if (!text.empty()) {
        line += fmt::format("  {}", text);
    }
    const int room = columns - static_cast<int>(line.size()) - 3; // Two brackets and a space.
    if (room >= kShortestBar) {
        const int width = std::min(room, kLongestBar);
        const auto filled = static_cast<std::size_t>(share * width);
        line = fmt::format("[{:<{}}] {}", std::string(filled, '#'), width, line);
    }
    return line.substr(0, static_cast<std::size_t>(std::max(columns, 0)));
}

} // namespace

double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

ProgressScreen progressScreen() {
    ProgressScreen screen;
    screen.out = messageStyle().quiet || !messageStyle().progress ? nullptr : progressTerminal();
    return screen;
}

ProgressLine::ProgressLine(ProgressScreen screen) : screen_(std::move(screen)) {
    if (!screen_.seconds) {
        screen_.seconds = steadySeconds;
    }
    if (!screen_.columns) {
        screen_.columns = [out = screen_.out] { return terminalColumns(out); };
    }
    if (screen_.out != nullptr) {
        next_ = screen_.seconds() + kDelay;
    }
}

ProgressLine::~ProgressLine() {
    if (!shown_.empty()) {
        std::fputs(kEraseLine, screen_.out);
        std::fflush(screen_.out);
    }
}

bool ProgressLine::isDue() const { return screen_.out != nullptr && screen_.seconds() >= next_; }

void ProgressLine::draw(const std::string& line) {
    next_ = screen_.seconds() + kInterval;
    if (line != shown_) {
        std::fputs((kEraseLine + line).c_str(), screen_.out);
        std::fflush(screen_.out);
        shown_ = line;
    }
}

void ProgressLine::show(double share, std::string_view text) {
    // Written so that a share that is not a number shows nothing.
    if (share >= 0.0 && isDue()) {
        // The last column stays free: a terminal would go on to the next line.
        draw(lineText(std::min(share, 1.0), text, screen_.columns() - 1));
    }
}

void ProgressLine::showText(std::string_view text) {
    if (isDue()) {
        draw(std::string(text.substr(0, static_cast<std::size_t>(std::max(screen_.columns() - 1, 0)))));
    }
}

} // namespace OrvantaNS::command
