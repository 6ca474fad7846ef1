#include "terminal/TextFormat.h"

#include <array>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "frame/Geometry.h"

namespace OrvantaNS::command {

namespace {

/// Seconds: from here on doubles are too coarse for milliseconds.
constexpr double kMillisecondLimit = 1e12;

struct Character {
    char32_t code = 0;
    std::size_t bytes = 1;
    bool isUtf8 = false; ///< False for a byte that begins no character; it stands alone.
};

/// The character that begins at `at`.
Character characterAt(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) {
        return {first, 1, true};
    }
    const std::size_t bytes = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
    if (first < 0xc2 || first > 0xf4 || at + bytes > text.size()) {
        return {};
    }
    char32_t code = first & (0x7fU >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xc0U) != 0x80U) {
            return {};
        }
        code = (code << 6U) | (byte(i) & 0x3fU);
    }
    constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xd800 && code <= 0xdfff;
    return code < kSmallest[bytes] || code > 0x10ffff || surrogate ? Character{} : Character{code, bytes, true};
}

/// Characters that steer a terminal or move text about: C1 controls, and marks of lines and of writing direction.
bool steersText(char32_t code) {
    return (code >= 0x80 && code < 0xa0) || code == 0x200e || code == 0x200f || (code >= 0x2028 && code <= 0x202e) ||
           (code >= 0x2066 && code <= 0x2069) || code == 0xfeff;
}

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
    std::size_t at = 0;
    while (at < text.size()) {
        const Character next = characterAt(text, at);
        if (at + next.bytes > longest) {
            return shown + "...";
        }
        if (!next.isUtf8 || next.code < 0x20 || next.code == 0x7f) {
            shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[at]));
        } else if (steersText(next.code)) {
            shown += fmt::format("\\u{{{:04x}}}", static_cast<std::uint32_t>(next.code));
        } else {
            shown += text.substr(at, next.bytes);
        }
        at += next.bytes;
    }
    return shown;
}

std::string printableName(std::string_view name) { return printable(name, std::string_view::npos); }

} // namespace OrvantaNS::command
