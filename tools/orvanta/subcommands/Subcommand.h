// What the command can be told to do: a subcommand registers its options and runs.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "terminal/ExitStatus.h"

namespace OrvantaNS::command {

/// One subcommand. It lives as long as the `CLI::App` that it was added to, which writes into its fields.
class Subcommand {
public:
    virtual ~Subcommand() = default;
    Subcommand(const Subcommand&) = delete;
    Subcommand& operator=(const Subcommand&) = delete;

    /// Adds the subcommand with its options, and with those that all of them take (--quiet, --no-progress,
    /// --messages).
    void addTo(CLI::App& root);
    /// True once the command line that was parsed names it.
    bool isChosen() const { return app_ != nullptr && app_->parsed(); }

    /// Does what was asked, in the style of messages that the options ask for. May throw `InputError`, `OptionError`,
    /// `OutputError`, `OrvantaException`, `NoAnswer` and `Interrupted`; a failure leaves no output file.
    ExitStatus execute();

protected:
    /// `examples` are whole command lines, one a line.
    Subcommand(std::string name, std::string description, std::string examples);

    virtual void addOptions(CLI::App& app) = 0;
    /// True when messages go to a program: results are asked for as JSON.
    virtual bool speaksJson() const { return false; }
    virtual ExitStatus run() = 0;

private:
    std::string name_;
    std::string description_;
    std::string examples_;
    CLI::App* app_ = nullptr;
    bool quiet_ = false;
    bool noProgress_ = false;
    std::string messages_; // "text", "json", or empty: as speaksJson tells.
};

} // namespace OrvantaNS::command
