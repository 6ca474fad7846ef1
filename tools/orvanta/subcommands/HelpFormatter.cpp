#include "subcommands/HelpFormatter.h"

#include <algorithm>

#include <fmt/format.h>

namespace OrvantaNS::command {

namespace {

constexpr std::size_t kNameColumns = 26; // Room for an option's name before its description.
constexpr std::size_t kNarrow = 60;      // Below this many columns descriptions go under the names.
constexpr std::size_t kNarrowIndent = 6; // Of a description under its name.

} // namespace

HelpFormatter::HelpFormatter(int columns) : columns_(static_cast<std::size_t>(std::clamp(columns, 30, 100))) {}

std::string HelpFormatter::make_description(const CLI::App* app) const {
    return wrapped(app->get_description(), columns_, "") + "\n";
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    return entry(make_option_name(option, isPositional) + make_option_opts(option), make_option_desc(option));
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const std::string value = option->get_positional() ? "" : valueName(*option);
    return value.empty() ? "" : " " + value;
}

std::string HelpFormatter::make_subcommand(const CLI::App* subcommand) const {
    return entry(subcommand->get_name(), subcommand->get_description());
}

std::string HelpFormatter::entry(const std::string& name, const std::string& description) const {
    const bool isNarrow = columns_ < kNarrow;
    const std::string indent(isNarrow ? kNarrowIndent : kNameColumns, ' ');
    const std::string lines = wrapped(description, columns_ - indent.size(), indent);
    const std::string start = "  " + name;
    if (isNarrow || start.size() + 2 > kNameColumns) {
        return start + "\n" + indent + lines + "\n";
    }
    return fmt::format("{:<{}}{}\n", start, kNameColumns, lines);
}

std::string valueName(const CLI::Option& option) {
    if (option.get_type_size() == 0) {
        return {};
    }
    // A check adds its own description behind a colon; the help text names the choices in words.
    const std::string name = option.get_type_name();
    if (const std::size_t range = name.find(" in ["); range != std::string::npos) {
        return name.substr(0, name.rfind(':', range));
    }
    return name.substr(0, name.find(":{"));
}

std::string wrapped(std::string_view text, std::size_t columns, std::string_view indent) {
    std::string lines;
    std::size_t used = 0;
    while (!text.empty()) {
        const std::size_t space = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, space);
        text.remove_prefix(std::min(space + 1, text.size()));
        if (used > 0 && used + 1 + word.size() > columns) {
            lines += "\n";
            lines += indent;
            used = 0;
        } else if (used > 0) {
            lines += ' ';
            ++used;
        }
        lines += word;
        used += word.size();
    }
    return lines;
}

} // namespace OrvantaNS::command
