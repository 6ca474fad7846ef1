// Options that several subcommands share, each said once. A subcommand has those that it takes as fields, adds them to its
// command line, and asks them for their values after parsing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "asking/Engine.h"
#include "asking/OptionError.h"
#include "subcommands/Batch.h"
#include "writing/KeyframeFormat.h"

namespace OrvantaNS::command {

/// RECORDING, and --strict.
struct RecordingArgument {
    std::string path{};
    bool strict = false;

    void addTo(CLI::App& app);
    /// Reads it, and warns of what was passed over. Throws `InputError` and `Interrupted`.
    Recording read() const;
};

/// RECORDING..., --strict, --out-dir and --jobs of a subcommand that takes several recordings.
struct RecordingsArgument {
    std::vector<std::string> paths;
    bool strict = false;
    BatchArguments batch;

    void addTo(CLI::App& app);
    /// True when the results go into a folder, each worked on in a process of its own.
    bool isBatch() const { return !batch.folder.empty(); }
    /// The only recording. Throws `OptionError` when there are several without a folder for their results.
    RecordingArgument only() const;
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
    std::string path; ///< Empty or "-": the standard output.

    void addTo(CLI::App& app);
    /// Throws `OutputError` when nothing can be written there, or when it is the recording itself.
    void check(const RecordingArgument& recording) const;
};

/// --format and -o of a subcommand that prints keyframes.
struct KeyframeOutputArguments {
    std::string format;
    OutputArgument output;

    void addTo(CLI::App& app);
    /// The format asked for, or that of the file name's ending; without either a table on a terminal, else CSV. Throws
    /// `OptionError` for an ending that no format has.
    const KeyframeFormat& value() const;
    void write(const KeyframeReport& report) const;
};

/// --format and -o of a subcommand that prints text for people, or JSON.
struct TextOutputArguments {
    std::string format;
    OutputArgument output;

    void addTo(CLI::App& app);
    /// By --format, or by the file name's ending. Throws `OptionError` for an ending other than .txt and .json.
    bool isJson() const;
};

/// ".csv": the ending of a file's name in small letters; empty where there is none, and for the standard output.
std::string endingOf(const std::string& path);

/// What is said of a file name whose ending no format has.
OptionError unknownEnding(const std::string& path, const std::vector<std::string>& formats);

/// Names as a sentence has them: "table, csv or json".
std::string listed(const std::vector<std::string>& names);

} // namespace OrvantaNS::command
