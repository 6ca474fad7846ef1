#include "terminal/RenderBar.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

namespace OrvantaNS::command {

namespace {

/// "1:05" or "1:02:05"
std::string clockText(double seconds) {
    const auto whole = static_cast<long long>(std::clamp(seconds, 0.0, 1e9));
    constexpr long long kMinute = 60;
    constexpr long long kHour = 3600;
    return whole < kHour ? fmt::format("{}:{:02}", whole / kMinute, whole % kMinute)
                         : fmt::format("{}:{:02}:{:02}", whole / kHour, whole % kHour / kMinute, whole % kMinute);
}

} // namespace

double renderShare(const RenderPosition& position) {
    if (!(position.ofSeconds > 0.0)) {
        return 0.0;
    }
    return (position.pass - 1 + std::clamp(position.seconds / position.ofSeconds, 0.0, 1.0)) / position.passes;
}

std::string renderText(const RenderPosition& position, double elapsed) {
    std::string text = clockText(position.seconds);
    if (position.ofSeconds > 0.0) {
        text += fmt::format(" of {}", clockText(position.ofSeconds));
    }
    // The rate of a second pass would count the first one's time.
    if (position.passes == 1) {
        text += fmt::format("  {:.0f} fps", elapsed > 0.0 ? static_cast<double>(position.pictures) / elapsed : 0.0);
    } else {
        text += fmt::format("  pass {} of {}", position.pass, position.passes);
    }
    if (const double share = renderShare(position); share > 0.0) {
        text += fmt::format("  {} left", clockText(std::ceil(elapsed * (1.0 - share) / share)));
    }
    return text;
}

RenderBar::RenderBar(ProgressScreen screen)
    : seconds_(screen.seconds ? screen.seconds : steadySeconds), start_(seconds_()), line_(std::move(screen)) {}

void RenderBar::show(const RenderPosition& position) {
    if (!line_.isDue()) {
        return;
    }
    const std::string text = renderText(position, seconds_() - start_);
    if (position.ofSeconds > 0.0) {
        line_.show(renderShare(position), text);
    } else {
        line_.showText(text);
    }
}

} // namespace OrvantaNS::command
