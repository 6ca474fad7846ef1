#include "writing/Json.h"

namespace OrvantaNS::command {

namespace {

constexpr const char* kIndent = "  ";

std::string onOneLine(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

} // namespace

std::string jsonText(const Json& document) {
    if (!document.is_object() || document.empty()) {
        return onOneLine(document) + '\n';
    }
    std::string text = "{";
    const char* betweenFields = "\n";
    for (const auto& [name, value] : document.items()) {
        text += betweenFields;
        text += kIndent + onOneLine(name) + ": ";
        betweenFields = ",\n";
        if (!value.is_array() || value.empty()) {
            text += onOneLine(value);
            continue;
        }
        const char* betweenEntries = "[\n";
        for (const Json& entry : value) {
            text += betweenEntries;
            text += kIndent;
            text += kIndent + onOneLine(entry);
            betweenEntries = ",\n";
        }
        text += '\n';
        text += kIndent;
        text += ']';
    }
    return text + "\n}\n";
}

Json edgesOf(const Rectangle& rect) {
    return {{"left", rect.left}, {"top", rect.top}, {"right", rect.right}, {"bottom", rect.bottom}};
}

Json textOrNull(std::string_view text) { return text.empty() ? Json() : Json(text); }

} // namespace OrvantaNS::command
