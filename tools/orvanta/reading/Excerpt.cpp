#include "reading/Excerpt.h"

#include <algorithm>

#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

/// Bytes shown on each side of the place: together with the indent they fit a narrow terminal.
constexpr std::size_t kReach = 30;

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; }

/// The first byte of the character that byte `at` belongs to.
std::size_t characterStart(std::string_view line, std::size_t at) {
    while (at > 0 && at < line.size() && continuesCharacter(line[at])) {
        --at;
    }
    return at;
}

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !continuesCharacter(c); }));
}

} // namespace

Excerpt excerptAt(std::string_view line, std::size_t offset) {
    const std::size_t at = characterStart(line, std::min(offset, line.size()));
    const std::size_t start = at > kReach ? characterStart(line, at - kReach) : 0;
    const std::size_t end = line.size() - at > kReach ? characterStart(line, at + kReach) : line.size();
    const std::string before = (start > 0 ? "..." : "") + printableName(line.substr(start, at - start));
    Excerpt excerpt;
    excerpt.text = before + printableName(line.substr(at, end - at)) + (end < line.size() ? "..." : "");
    excerpt.caret = countCharacters(before);
    excerpt.column = static_cast<long long>(countCharacters(line.substr(0, at))) + 1;
    return excerpt;
}

} // namespace OrvantaNS::command
