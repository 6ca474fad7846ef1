// Options that several subcommands share, each said once. A subcommand has those that it takes as fields, adds them to its
// command line, and asks them for their values after parsing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "asking/Engine.h"
#include "writing/KeyframeFormat.h"

namespace OrvantaNS::command {

/// RECORDING, and --strict.
struct RecordingArgument {
    std::string path;
    bool strict = false;

    void addTo(CLI::App& app);
    /// Reads it, and warns of what was passed over. Throws `InputError` and `Interrupted`.
    Recording read() const;
};

/// --size.
struct SizeArgument {
    std::string text;

    void addTo(CLI::App& app);
    /// Nothing when the option was left out. Throws `OptionError`.
    std::optional<SizeOption> value() const;
};

/// --fade.
struct FadeArgument {
    std::string text = "1";

    void addTo(CLI::App& app);
    /// Seconds. Throws `OptionError`.
    double value() const;
};

/// --clip.
struct ClipArgument {
    std::string text;

    void addTo(CLI::App& app);
    /// Throws `OptionError`.
    ClipOption value() const;
};

/// --engine, and what the director can be told: --calm, --readable, --presses and --overhang.
struct EngineArgument {
    std::string name{engineName(EngineChoice::Value)};
    std::string calm;
    std::string readable;
    std::string presses;
    bool overhang = false;

    void addTo(CLI::App& app);
    /// Throws `OptionError`.
    EngineSetup value() const;
};

/// The four above: what an engine is asked with, beside the recording.
struct RequestArguments {
    SizeArgument size;
    FadeArgument fade;
    ClipArgument clip;
    EngineArgument engine;

    void addTo(CLI::App& app);
    /// Throws `OptionError`.
    RequestOptions value() const;
};

/// -o.
struct OutputArgument {
    std::string path; ///< Empty: the standard output.

    void addTo(CLI::App& app);
};

/// --format and -o of a subcommand that prints keyframes.
struct KeyframeOutputArguments {
    std::string format;
    OutputArgument output;

    void addTo(CLI::App& app);
    /// The format asked for; without one a table on a terminal, else CSV.
    const KeyframeFormat& value() const;
    void write(const KeyframeReport& report) const;
};

/// Names as a sentence has them: "table, csv or json".
std::string listed(const std::vector<std::string>& names);

} // namespace OrvantaNS::command
