// Man pages and shell completions, made from the table of options that the command itself reads.
#pragma once

#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace OrvantaNS::command {

/// The man page of the command, or of one of its subcommands: `root` is the whole command line, `app` what the page is about.
std::string manPage(const CLI::App& root, const CLI::App& app, std::string_view version);

/// Completion scripts for the whole command line.
std::string bashCompletion(const CLI::App& root);
std::string zshCompletion(const CLI::App& root);
std::string fishCompletion(const CLI::App& root);

} // namespace OrvantaNS::command
