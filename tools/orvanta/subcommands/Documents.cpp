#include "subcommands/Documents.h"

#include <vector>

#include <fmt/format.h>

#include "subcommands/HelpFormatter.h"

namespace OrvantaNS::command {

namespace {

using Words = std::vector<std::string>;

/// What the shells and pages need to know of an option.
struct OptionEntry {
    Words names;       ///< "-o", "--output".
    std::string value; ///< "FILE"; empty for a flag.
    Words choices;     ///< The values that it takes, where they are few.
    std::string description;
    bool isFile = false;
    bool isFolder = false;
};

/// The choices that a check lists: "FORMAT:{a,b}".
Words choicesOf(const std::string& typeName) {
    const std::size_t open = typeName.find(":{");
    if (open == std::string::npos) {
        return {};
    }
    const std::size_t start = open + 2;
    return CLI::detail::split(typeName.substr(start, typeName.find('}', start) - start), ',');
}

OptionEntry entryOf(const CLI::Option& option) {
    OptionEntry entry;
    for (const std::string& name : option.get_snames()) {
        entry.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        entry.names.push_back("--" + name);
    }
    entry.value = valueName(option);
    entry.choices = choicesOf(option.get_type_name());
    entry.description = option.get_description();
    entry.isFile = entry.value == "FILE";
    entry.isFolder = entry.value == "DIR";
    return entry;
}

std::vector<OptionEntry> optionsOf(const CLI::App& app) {
    std::vector<OptionEntry> entries;
    for (const CLI::Option* option : app.get_options([](const CLI::Option* each) { return each->nonpositional(); })) {
        entries.push_back(entryOf(*option));
    }
    return entries;
}

std::string joined(const Words& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : std::string(between)) + word;
    }
    return text;
}

Words namesOf(const CLI::App& root) {
    Words names;
    for (const CLI::App* app : root.get_subcommands({})) {
        names.push_back(app->get_name());
    }
    return names;
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// Text as it may stand in a page: a line must not begin with a control character of the format, nor hold a bare one.
std::string roff(const std::string& text) {
    std::string escaped = replaced(replaced(text, "\\", "\\e"), "-", "\\-");
    if (!escaped.empty() && (escaped.front() == '.' || escaped.front() == '\'')) {
        escaped.insert(0, "\\&");
    }
    return replaced(replaced(escaped, "\n.", "\n\\&."), "\n'", "\n\\&'");
}

std::string synopsis(const CLI::App& root, const CLI::App& app) {
    if (&root == &app) {
        return ".B orvanta\n.I SUBCOMMAND\n[options]\n";
    }
    std::string text = fmt::format(".B orvanta {}\n", roff(app.get_name()));
    for (const CLI::Option* option : app.get_options([](const CLI::Option* each) { return each->get_positional(); })) {
        const std::string name = option->get_name(true, false);
        text += option->get_required() ? fmt::format(".I {}\n", roff(name)) : fmt::format("[\\fI{}\\fR]\n", roff(name));
    }
    return text + "[options]\n";
}

std::string roffOption(const OptionEntry& option) {
    Words names;
    for (const std::string& name : option.names) {
        names.push_back(fmt::format("\\fB{}\\fR", roff(name)));
    }
    const std::string value = option.value.empty() ? "" : fmt::format(" \\fI{}\\fR", roff(option.value));
    return fmt::format(".TP\n{}{}\n{}\n", joined(names, ", "), value, roff(option.description));
}

/// A word in single quotes, as all three shells read it.
std::string quoted(const std::string& text) { return "'" + replaced(text, "'", "'\\''") + "'"; }

/// A description inside of zsh's specifications.
std::string zshText(const std::string& text) {
    return replaced(replaced(replaced(replaced(text, "\\", "\\\\"), "[", "\\["), "]", "\\]"), ":", "\\:");
}

std::string zshAction(const OptionEntry& option) {
    if (option.value.empty()) {
        return {};
    }
    const std::string action = !option.choices.empty() ? fmt::format("({})", joined(option.choices, " "))
                               : option.isFile         ? "_files"
                               : option.isFolder       ? "_files -/"
                                                       : " ";
    return fmt::format(":{}:{}", zshText(option.value), action);
}

} // namespace

std::string manPage(const CLI::App& root, const CLI::App& app, std::string_view version) {
    const bool isRoot = &root == &app;
    const std::string name = isRoot ? "orvanta" : "orvanta-" + app.get_name();
    std::string page =
        fmt::format(".TH {} 1 \"\" \"orvanta {}\" \"User Commands\"\n", replaced(name, "-", "\\-"), version);
    page += fmt::format(".SH NAME\n{} \\- {}\n", roff(name), roff(app.get_description()));
    page += ".SH SYNOPSIS\n" + synopsis(root, app);
    const auto positionals = app.get_options([](const CLI::Option* each) { return each->get_positional(); });
    if (!positionals.empty()) {
        page += ".SH ARGUMENTS\n";
        for (const CLI::Option* option : positionals) {
            page +=
                fmt::format(".TP\n.I {}\n{}\n", roff(option->get_name(true, false)), roff(option->get_description()));
        }
    }
    page += ".SH OPTIONS\n";
    for (const OptionEntry& option : optionsOf(app)) {
        page += roffOption(option);
    }
    if (isRoot) {
        page += ".SH SUBCOMMANDS\n";
        for (const CLI::App* subcommand : app.get_subcommands({})) {
            page += fmt::format(".TP\n.B {}\n{}\n", roff(subcommand->get_name()), roff(subcommand->get_description()));
        }
    }
    page += fmt::format(".SH NOTES\n.nf\n{}\n.fi\n",
                        roff(isRoot || app.get_footer() != root.get_footer() ? app.get_footer() : ""));
    page += isRoot ? ".SH SEE ALSO\n" : ".SH SEE ALSO\n.BR orvanta (1)\n";
    if (isRoot) {
        for (const std::string& subcommand : namesOf(root)) {
            page += fmt::format(".BR orvanta\\-{} (1)\n", subcommand);
        }
    }
    return page;
}

std::string bashCompletion(const CLI::App& root) {
    std::string values;
    std::string options;
    for (const CLI::App* app : root.get_subcommands({})) {
        Words names;
        for (const OptionEntry& option : optionsOf(*app)) {
            names.insert(names.end(), option.names.begin(), option.names.end());
            if (option.value.empty()) {
                continue;
            }
            Words patterns;
            for (const std::string& name : option.names) {
                patterns.push_back(app->get_name() + ":" + name);
            }
            const std::string action = !option.choices.empty() ? fmt::format("COMPREPLY=($(compgen -W {} -- \"$cur\"))",
                                                                             quoted(joined(option.choices, " ")))
                                       : option.isFile         ? "compopt -o default"
                                       : option.isFolder       ? "COMPREPLY=($(compgen -d -- \"$cur\"))"
                                                               : ":";
            values += fmt::format("        {}) {}; return ;;\n", joined(patterns, "|"), action);
        }
        options += fmt::format("        {}) words={} ;;\n", app->get_name(), quoted(joined(names, " ")));
    }
    const std::string subcommands = joined(namesOf(root), " ");
    return fmt::format(R"(# Completion of orvanta for bash; made from its table of options.
_orvanta() {{
    local cur=${{COMP_WORDS[COMP_CWORD]}} prev=${{COMP_WORDS[COMP_CWORD-1]}} subcommand=${{COMP_WORDS[1]}} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(compgen -W '{} --help --version' -- "$cur"))
        return
    fi
    case "$subcommand:$prev" in
{}    esac
    if [ "$subcommand" = help ]; then
        COMPREPLY=($(compgen -W '{}' -- "$cur"))
        return
    fi
    case "$subcommand" in
{}    esac
    case "$cur" in
        -*) COMPREPLY=($(compgen -W "$words" -- "$cur")) ;;
        *) compopt -o default ;;
    esac
}}
complete -F _orvanta orvanta
)",
                       subcommands, values, subcommands, options);
}

std::string zshCompletion(const CLI::App& root) {
    std::string list;
    std::string cases;
    for (const CLI::App* app : root.get_subcommands({})) {
        list += fmt::format("        {}\n", quoted(app->get_name() + ":" + app->get_description()));
        cases += fmt::format("        {})\n            _arguments \\\n", app->get_name());
        for (const OptionEntry& option : optionsOf(*app)) {
            for (const std::string& name : option.names) {
                const bool takesValue = !option.value.empty();
                const std::string mark = !takesValue ? "" : name.starts_with("--") ? "=" : "+";
                cases += fmt::format(
                    "                {} \\\n",
                    quoted(fmt::format("{}{}[{}]{}", name, mark, zshText(option.description), zshAction(option))));
            }
        }
        cases += app->get_name() == "help" ? "                '1: :_orvanta_subcommands'\n"
                                           : "                '*:file:_files'\n";
        cases += "            ;;\n";
    }
    return fmt::format(R"(#compdef orvanta
# Completion of orvanta for zsh; made from its table of options.
_orvanta_subcommands() {{
    local -a subcommands=(
{}    )
    _describe subcommand subcommands
}}
_orvanta() {{
    if (( CURRENT == 2 )); then
        _orvanta_subcommands
        return
    fi
    local subcommand=$words[2]
    shift words
    (( CURRENT-- ))
    case $subcommand in
{}    esac
}}
_orvanta "$@"
)",
                       list, cases);
}

std::string fishCompletion(const CLI::App& root) {
    std::string text = "# Completion of orvanta for fish; made from its table of options.\n";
    for (const CLI::App* app : root.get_subcommands({})) {
        text += fmt::format("complete -c orvanta -f -n __fish_use_subcommand -a {} -d {}\n", app->get_name(),
                            quoted(app->get_description()));
        const std::string condition = fmt::format("-n '__fish_seen_subcommand_from {}'", app->get_name());
        for (const OptionEntry& option : optionsOf(*app)) {
            text += fmt::format("complete -c orvanta {}", condition);
            for (const std::string& name : option.names) {
                text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            }
            if (!option.choices.empty()) {
                text += fmt::format(" -x -a {}", quoted(joined(option.choices, " ")));
            } else if (!option.value.empty()) {
                text += option.isFile || option.isFolder ? " -r -F" : " -x";
            }
            text += fmt::format(" -d {}\n", quoted(option.description));
        }
    }
    return text + fmt::format("complete -c orvanta -f -n '__fish_seen_subcommand_from help' -a {}\n",
                              quoted(joined(namesOf(root), " ")));
}

} // namespace OrvantaNS::command
