// The whole command line: all subcommands, help and version, and what becomes of failures.
#pragma once

#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "subcommands/Subcommand.h"

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

    CLI::App app_;
    std::vector<std::unique_ptr<Subcommand>> subcommands_;
};

} // namespace OrvantaNS::command
