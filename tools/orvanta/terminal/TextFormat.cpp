#include "terminal/TextFormat.h"

#include <cmath>

#include <fmt/format.h>

#include "frame/Geometry.h"

namespace OrvantaNS::command {

namespace {

/// Seconds: from here on doubles are too coarse for milliseconds.
constexpr double kMillisecondLimit = 1e12;

} // namespace

std::string formatTime(double seconds) {
    if (!std::isfinite(seconds) || std::abs(seconds) >= kMillisecondLimit) {
        return fmt::format("{} s", seconds);
    }
    const long long milliseconds = std::llround(std::abs(seconds) * 1000.0);
    return fmt::format("{}{}:{:02}.{:03}", seconds < 0.0 && milliseconds > 0 ? "-" : "", milliseconds / 60000,
                       milliseconds / 1000 % 60, milliseconds % 1000);
}

std::string rectText(const Rectangle& rect) {
    return fmt::format("{}x{} at {}, {}", width(rect), height(rect), rect.left, rect.top);
}

std::string printable(std::string_view text, std::size_t longest) {
    std::string shown;
    for (const char c : text.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) {
            shown += fmt::format("\\x{:02x}", byte);
        } else {
            shown += c;
        }
    }
    if (text.size() > longest) {
        // A character that the cut went through would come out broken.
        while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0x80U) != 0) {
            shown.pop_back();
        }
        shown += "...";
    }
    return shown;
}

} // namespace OrvantaNS::command
