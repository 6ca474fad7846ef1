// Writes JSON text, value by value.
#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace OrvantaNS::command {

/// Builds one JSON document with two spaces of indent. Objects and arrays are opened and closed in pairs; in an object
/// each value follows its key. An object opened by `openRow` stands on one line, as a table's row does.
class JsonWriter {
public:
    void openObject() { open('{', false); }
    void openRow() { open('{', true); }
    void closeObject() { close('}'); }
    void openArray() { open('[', false); }
    void closeArray() { close(']'); }

    /// Names the next value.
    void key(std::string_view name);

    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool flag) { raw(flag ? "true" : "false"); }
    /// A number that is not finite has no form in JSON and comes as null.
    void value(double number);
    template <std::integral T> void value(T number) { raw(fmt::format("{}", number)); }
    void null() { raw("null"); }

    template <typename T> void field(std::string_view name, const T& content) {
        key(name);
        value(content);
    }

    /// The document, with a line end.
    const std::string& text() const { return text_; }

private:
    struct Level {
        bool row = false;
        bool empty = true;
    };

    void open(char bracket, bool row);
    void close(char bracket);
    void raw(std::string_view piece);
    void beginValue();
    void newLine();

    std::string text_;
    std::vector<Level> levels_;
    bool afterKey_ = false;
};

} // namespace OrvantaNS::command
