#include "reading/JsonPosition.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <system_error>

#include <nlohmann/json.hpp>

namespace OrvantaNS::command {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

/// One past the string that begins at the quote at `at`.
std::size_t endOfString(std::string_view line, std::size_t at) {
    for (++at; at < line.size() && line[at] != '"'; ++at) {
        at += line[at] == '\\' ? 1 : 0;
    }
    return at < line.size() ? at + 1 : line.size();
}

std::size_t skipSpace(std::string_view line, std::size_t at) {
    const std::size_t found = line.find_first_not_of(kSpace, at);
    return found == std::string_view::npos ? line.size() : found;
}

/// One past the value that begins at `at`: where the comma or the closing bracket behind it stands.
std::size_t endOfValue(std::string_view line, std::size_t at) {
    int depth = 0;
    while (at < line.size()) {
        const char c = line[at];
        if (c == '"') {
            at = endOfString(line, at);
            continue;
        }
        if (c == '[' || c == '{') {
            ++depth;
        } else if (c == ']' || c == '}') {
            if (depth == 0) {
                return at;
            }
            --depth;
        } else if (c == ',' && depth == 0) {
            return at;
        }
        ++at;
    }
    return at;
}

/// A whole number that does not fit 64 bits, or one whose power of ten a double does not have.
bool isTooLarge(std::string_view number) {
    if (number.find_first_of(".eE") == std::string_view::npos) {
        std::int64_t value = 0;
        std::uint64_t positive = 0;
        const char* const end = number.data() + number.size();
        return std::from_chars(number.data(), end, value).ec == std::errc::result_out_of_range &&
               std::from_chars(number.data(), end, positive).ec != std::errc{};
    }
    return std::isinf(std::strtod(std::string(number).c_str(), nullptr));
}

std::size_t offsetOfLargeNumber(std::string_view line) {
    constexpr std::string_view kNumber = "+-.0123456789eE";
    for (std::size_t at = 0; at < line.size();) {
        if (line[at] == '"') {
            at = endOfString(line, at);
        } else if (line[at] == '-' || (line[at] >= '0' && line[at] <= '9')) {
            const std::size_t found = line.find_first_not_of(kNumber, at);
            const std::size_t end = found == std::string_view::npos ? line.size() : found;
            if (isTooLarge(line.substr(at, end - at))) {
                return at;
            }
            at = end;
        } else {
            ++at;
        }
    }
    return std::string_view::npos;
}

} // namespace

std::size_t offsetOfSyntaxError(std::string_view line) {
    // Asked first: the parser below takes such numbers, or tells their end.
    const std::size_t largeNumber = offsetOfLargeNumber(line);
    nlohmann::json::parser_callback_t keepNothing = [](int, nlohmann::json::parse_event_t, nlohmann::json&) {
        return false;
    };
    try {
        [[maybe_unused]] const auto parsed = nlohmann::json::parse(line.begin(), line.end(), keepNothing);
    } catch (const nlohmann::json::parse_error& error) {
        // `byte` counts the characters read, the one at fault included.
        const std::size_t at = error.byte > 0 ? error.byte - 1 : 0;
        return at < largeNumber ? at : largeNumber;
    } catch (const nlohmann::json::exception&) {
        return largeNumber == std::string_view::npos ? 0 : largeNumber;
    }
    return largeNumber == std::string_view::npos ? 0 : largeNumber;
}

std::size_t offsetOfEntry(std::string_view line, std::size_t index) {
    std::size_t at = skipSpace(line, 0);
    at = skipSpace(line, at + 1); // Behind the opening bracket.
    for (; index > 0 && at < line.size() && line[at] != ']' && line[at] != '}'; --index) {
        at = endOfValue(line, at);
        if (at < line.size() && line[at] == ',') {
            at = skipSpace(line, at + 1);
        }
    }
    return at;
}

std::size_t offsetOfField(std::string_view line, std::string_view name) {
    std::size_t found = 0;
    for (std::size_t at = skipSpace(line, skipSpace(line, 0) + 1); at < line.size() && line[at] == '"';) {
        const std::size_t nameEnd = endOfString(line, at);
        const std::size_t value = skipSpace(line, skipSpace(line, nameEnd) + 1); // Behind the colon.
        if (line.substr(at + 1, nameEnd - at - 2) == name) {
            found = value;
        }
        at = endOfValue(line, value);
        if (at >= line.size() || line[at] != ',') {
            break;
        }
        at = skipSpace(line, at + 1);
    }
    return found;
}

} // namespace OrvantaNS::command
