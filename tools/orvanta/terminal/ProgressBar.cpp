#include "terminal/ProgressBar.h"

#include <string>

#include <fmt/format.h>

#include "terminal/Interrupt.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace OrvantaNS::command {

namespace {

constexpr int kBarWidth = 40; // Columns.

bool isTerminal(std::FILE* file) {
#if defined(_WIN32)
    return _isatty(_fileno(file)) != 0;
#else
    return isatty(fileno(file)) != 0;
#endif
}

} // namespace

ProgressBar::~ProgressBar() {
    if (out_ != nullptr && shown_ >= 0) {
        std::fputs("\r\033[K", out_); // Back to the line's start, and clear it.
        std::fflush(out_);
    }
}

void ProgressBar::reportProgress(double percent) {
    // Written so that a value that is not a number shows nothing.
    if (out_ == nullptr || !(percent >= 0.0)) {
        return;
    }
    const int whole = percent < 100.0 ? static_cast<int>(percent) : 100;
    if (whole <= shown_) {
        return;
    }
    shown_ = whole;
    const auto filled = static_cast<std::size_t>(whole * kBarWidth / 100);
    const std::string line =
        fmt::format("\r[{:<{}}] {:3}%", std::string(filled, '#'), static_cast<int>(kBarWidth), whole);
    std::fputs(line.c_str(), out_);
    std::fflush(out_);
}

bool ProgressBar::isCancelled() { return interrupted(); }

std::FILE* progressTerminal() { return isTerminal(stderr) ? stderr : nullptr; }

bool outputIsTerminal() { return isTerminal(stdout); }

} // namespace OrvantaNS::command
