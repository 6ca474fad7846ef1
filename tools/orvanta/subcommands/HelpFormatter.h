// Help texts that fit the terminal.
#pragma once

#include <CLI/CLI.hpp>

namespace OrvantaNS::command {

/// Breaks descriptions into lines of at most `columns` columns.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(int columns);

    std::string make_description(const CLI::App* app) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_subcommand(const CLI::App* subcommand) const override;

private:
    std::string entry(const std::string& name, const std::string& description) const;

    std::size_t columns_;
};

/// The word that stands for an option's value, such as "SIZE"; empty for a flag.
std::string valueName(const CLI::Option& option);

/// `text` in lines of at most `columns` columns, broken at spaces; a longer word stands alone.
std::string wrapped(std::string_view text, std::size_t columns, std::string_view indent);

} // namespace OrvantaNS::command
