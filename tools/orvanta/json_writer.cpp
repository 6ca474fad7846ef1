#include "json_writer.h"

#include <cmath>

#include <simdjson.h>

namespace OrvantaNS::command {

namespace {

constexpr std::string_view kIndent = "  ";

/// A string literal. Text that is not UTF-8, such as a file name may be, loses its bytes above 127.
std::string quoted(std::string_view text) {
    const bool unicode = simdjson::validate_utf8(text.data(), text.size());
    std::string literal = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            literal += '\\';
            literal += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            literal += fmt::format("\\u{:04x}", byte);
        } else if (byte >= 0x80 && !unicode) {
            literal += "\\ufffd";
        } else {
            literal += c;
        }
    }
    return literal + '"';
}

} // namespace

void JsonWriter::key(std::string_view name) {
    beginValue();
    text_ += quoted(name);
    text_ += ": ";
    afterKey_ = true;
}

void JsonWriter::value(std::string_view text) { raw(quoted(text)); }

void JsonWriter::value(double number) {
    if (std::isfinite(number)) {
        raw(fmt::format("{}", number));
    } else {
        null();
    }
}

void JsonWriter::open(char bracket, bool row) {
    beginValue();
    text_ += bracket;
    levels_.push_back({row || (!levels_.empty() && levels_.back().row), true});
}

void JsonWriter::close(char bracket) {
    const Level level = levels_.back();
    levels_.pop_back();
    if (!level.empty && !level.row) {
        newLine();
    }
    text_ += bracket;
    if (levels_.empty()) {
        text_ += '\n';
    }
}

void JsonWriter::raw(std::string_view piece) {
    beginValue();
    text_ += piece;
}

/// Separates the next key or value from what stands before it.
void JsonWriter::beginValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty()) {
        return;
    }
    Level& level = levels_.back();
    if (!level.empty) {
        text_ += level.row ? ", " : ",";
    }
    level.empty = false;
    if (!level.row) {
        newLine();
    }
}

void JsonWriter::newLine() {
    text_ += '\n';
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        text_ += kIndent;
    }
}

} // namespace OrvantaNS::command
