#include "terminal/RenderBar.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include <fmt/format.h>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace OrvantaNS::command {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPatience{500}; // What is done sooner needs no bar.
constexpr milliseconds kInterval{100}; // Between two drawings: no eye reads faster.
constexpr int kUsualColumns = 80;      // Of a terminal that does not tell.
constexpr int kLongestBar = 30;        // Columns.
constexpr int kShortestBar = 5;        // Columns; below that it is left out.

int columnsOf(std::FILE* out) {
#if defined(TIOCGWINSZ)
    winsize size = {};
    if (ioctl(fileno(out), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
#endif
    static_cast<void>(out);
    return kUsualColumns;
}

/// "1:05" or "1:02:05"
std::string clockText(double seconds) {
    const auto whole = static_cast<long long>(std::clamp(seconds, 0.0, 1e9));
    constexpr long long kMinute = 60;
    constexpr long long kHour = 3600;
    return whole < kHour ? fmt::format("{}:{:02}", whole / kMinute, whole % kMinute)
                         : fmt::format("{}:{:02}:{:02}", whole / kHour, whole % kHour / kMinute, whole % kMinute);
}

} // namespace

std::string renderLine(const RenderPosition& position, double elapsed, int columns) {
    const double rate = elapsed > 0.0 ? static_cast<double>(position.pictures) / elapsed : 0.0;
    std::string text;
    double share = 0.0;
    if (position.ofSeconds > 0.0) {
        const double inPass = std::clamp(position.seconds / position.ofSeconds, 0.0, 1.0);
        share = (position.pass - 1 + inPass) / position.passes;
        text = fmt::format("{:3}%  {} of {}", static_cast<int>(share * 100.0), clockText(position.seconds),
                           clockText(position.ofSeconds));
    } else {
        text = clockText(position.seconds);
    }
    // The rate of a second pass would count the first one's time.
    if (position.passes == 1) {
        text += fmt::format("  {:.0f} fps", rate);
    } else {
        text += fmt::format("  pass {} of {}", position.pass, position.passes);
    }
    if (share > 0.0) {
        text += fmt::format("  {} left", clockText(std::ceil(elapsed * (1.0 - share) / share)));
    }
    const int room = std::min(columns - 1 - static_cast<int>(text.size()) - 3, kLongestBar);
    if (position.ofSeconds > 0.0 && room >= kShortestBar) {
        const std::string filled(static_cast<std::size_t>(share * room), '#');
        text = fmt::format("[{:<{}}] {}", filled, room, text);
    }
    return text.substr(0, static_cast<std::size_t>(std::max(columns - 1, 0)));
}

RenderBar::RenderBar(std::FILE* out) : out_(out), start_(Clock::now()), next_(start_ + kPatience) {
    const char* terminal = std::getenv("TERM");
    if (terminal != nullptr && std::string_view(terminal) == "dumb") {
        out_ = nullptr; // It cannot go back to the line's start.
    }
}

RenderBar::~RenderBar() {
    if (shown_) {
        std::fputs("\r\033[K", out_); // Back to the line's start, and clear it.
        std::fflush(out_);
    }
}

void RenderBar::show(const RenderPosition& position) {
    const Clock::time_point now = Clock::now();
    if (out_ == nullptr || now < next_) {
        return;
    }
    next_ = now + kInterval;
    shown_ = true;
    const double elapsed = std::chrono::duration<double>(now - start_).count();
    std::fputs(fmt::format("\r\033[K{}", renderLine(position, elapsed, columnsOf(out_))).c_str(), out_);
    std::fflush(out_);
}

} // namespace OrvantaNS::command
