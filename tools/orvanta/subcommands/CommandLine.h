// The whole command line: all subcommands, help and version, and what becomes of failures.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "subcommands/Subcommand.h"
#include "terminal/Messages.h"

namespace OrvantaNS::command {

class CommandLine {
public:
    CommandLine();

    /// Does what `argv` says. A failure is told on the standard error.
    ExitStatus run(int argc, const char* const* argv);

    /// Every subcommand and option with its help.
    const CLI::App& app() const { return app_; }

private:
    ExitStatus parseAndRun(int argc, const char* const* argv);
    void addHelpAndVersion();
    void printHelp(const std::vector<std::string>& names) const;
    std::vector<std::string> subcommandNames() const;
    Failure unknownSubcommand(const std::string& word) const;
    Failure usageFailure(const CLI::ParseError& error) const;

    CLI::App app_;
    std::vector<std::unique_ptr<Subcommand>> subcommands_;
    CLI::App* help_ = nullptr;
    CLI::App* version_ = nullptr;
    std::vector<std::string> helpTopic_;
};

} // namespace OrvantaNS::command
