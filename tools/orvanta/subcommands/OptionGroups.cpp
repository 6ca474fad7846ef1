#include "subcommands/OptionGroups.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "terminal/FileName.h"
#include "terminal/Messages.h"
#include "terminal/Terminal.h"
#include "terminal/TextFormat.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

namespace {

// Below it the camera would follow every twitch, above it no recording has a move that earns its keep.
constexpr double kLeastCalm = 0.01;
constexpr double kMostCalm = 100.0;
// Text at a twentieth of its size is read by nobody.
constexpr double kLeastReadable = 0.05;

constexpr const char* kRecordingHelp =
    "Recording in JSON Lines, plain or packed with gzip or zstd, or captured request; - "
    "for the standard input";
constexpr const char* kStrictHelp =
    "Refuse recordings that are cut off, packed or not exactly in the format, and clips "
    "without a keyframe";

std::vector<std::string> keyframeFormatNames() {
    std::vector<std::string> names;
    for (const KeyframeFormat& known : keyframeFormats()) {
        names.emplace_back(known.name);
    }
    return names;
}

} // namespace

void RecordingArgument::addTo(CLI::App& app) {
    app.add_option("RECORDING", path, kRecordingHelp)->required()->type_name("FILE");
    app.add_flag("--strict", strict, kStrictHelp);
}

void RecordingsArgument::addTo(CLI::App& app) {
    app.add_option("RECORDING", paths, std::string(kRecordingHelp) + "; several with --out-dir")
        ->required()
        ->type_name("FILE");
    app.add_flag("--strict", strict, kStrictHelp);
    batch.addTo(app);
}

RecordingArgument RecordingsArgument::only() const {
    if (paths.size() > 1) {
        throw OptionError(fmt::format("{} recordings: their results need a folder, --out-dir DIR", paths.size()));
    }
    return {paths.front(), strict};
}

Recording RecordingArgument::read() const {
    Recording recording = readRecordingFile(path, strict ? Reading::Strict : Reading::Tolerant);
    for (const std::string& warning : recording.warnings()) {
        tellWarning(warning);
    }
    return recording;
}

void SizeArgument::addTo(CLI::App& app) {
    app.add_option("-s,--size", text,
                   "Output frame: WIDTHxHEIGHT, a scale of the recording such as 0.5, or an aspect such as 9:16 (the "
                   "largest such size that leaves the camera room). A captured request has its own by default")
        ->type_name("SIZE");
}

std::optional<SizeOption> SizeArgument::value() const {
    return text.empty() ? std::nullopt : std::optional(parseSize(text));
}

void FadeArgument::addTo(CLI::App& app) {
    app.add_option("--fade", text, "Length of the animated move between two keyframes (default 1)")
        ->type_name("SECONDS");
}

double FadeArgument::value() const {
    const auto seconds = text.find(':') == std::string::npos ? parseTime(text) : std::nullopt;
    if (!seconds) {
        throw OptionError(
            fmt::format("--fade {}: expected a number of seconds, or of milliseconds such as 500ms", printable(text)));
    }
    return *seconds;
}

void ClipArgument::addTo(CLI::App& app) {
    app.add_option(
           "--clip", text,
           "Stretch to work on, in seconds or as m:ss.mmm, h:mm:ss or 500ms; either end may be left out (default: all)")
        ->type_name("START:STOP");
}

ClipOption ClipArgument::value() const { return text.empty() ? ClipOption{} : parseClip(text); }

void EngineArgument::addTo(CLI::App& app) {
    const std::vector<std::string> names(kEngineNames.begin(), kEngineNames.end());
    app.add_option("--engine", name, fmt::format("Engine that decides: {} (default {})", listed(names), name))
        ->type_name("ENGINE")
        ->check(CLI::IsMember(names));
    app.add_option(
           "--calm", calm,
           "How many seconds of better sight a move must earn: 0.25 is lively, 3 very calm (director; default 1)")
        ->type_name("N");
    app.add_option("--readable", readable, "Zoom from which text counts as readable (director; default 0.75)")
        ->type_name("ZOOM");
    app.add_option(
           "--presses", presses,
           "Whether presses of buttons lie in the picture: always, or when it is cheap (director; default always)")
        ->type_name("WHEN")
        ->check(CLI::IsMember({"always", "cheap"}));
    app.add_flag("--overhang", overhang, "Frames may stand out over the recording's edges (director)");
}

EngineSetup EngineArgument::value() const {
    EngineSetup setup(engineOf(name).value_or(EngineChoice::Value));
    if (setup.choice != EngineChoice::Director) {
        for (const auto& [option, isGiven] : {std::pair{"--calm", !calm.empty()},
                                              {"--readable", !readable.empty()},
                                              {"--presses", !presses.empty()},
                                              {"--overhang", overhang}}) {
            if (isGiven) {
                throw OptionError(fmt::format("{} is for --engine director; the {} engine has no such choice", option,
                                              engineName(setup.choice)));
            }
        }
        return setup;
    }
    if (!calm.empty()) {
        const auto value = parseDecimal(calm);
        if (!value || *value < kLeastCalm || *value > kMostCalm) {
            throw OptionError(fmt::format("--calm {}: expected a number from {} to {}", calm, kLeastCalm, kMostCalm));
        }
        setup.director.calm = *value;
    }
    if (!readable.empty()) {
        const auto value = parseDecimal(readable);
        if (!value || *value < kLeastReadable || *value > 1.0) {
            throw OptionError(fmt::format("--readable {}: expected a zoom from {} to 1", readable, kLeastReadable));
        }
        setup.director.readable = *value;
    }
    setup.director.presses = presses == "cheap" ? DirectorPresses::Cheap : DirectorPresses::Always;
    setup.director.overhang = overhang;
    return setup;
}

void RequestArguments::addTo(CLI::App& app) {
    size.addTo(app);
    fade.addTo(app);
    clip.addTo(app);
    engine.addTo(app);
}

RequestOptions RequestArguments::value() const { return {size.value(), fade.value(), clip.value(), engine.value()}; }

void OutputArgument::addTo(CLI::App& app) {
    app.add_option("-o,--output", path, "File to write, whole or not at all; - for the standard output")
        ->type_name("FILE");
}

void OutputArgument::check(const RecordingArgument& recording) const {
    checkOutput(path);
    refuseOverwriting(path, recording.path);
}

void KeyframeOutputArguments::addTo(CLI::App& app) {
    const std::vector<std::string> names = keyframeFormatNames();
    app.add_option(
           "--format", format,
           fmt::format("{} (default: by the ending of -o; else table on a terminal, csv elsewhere)", listed(names)))
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names));
    output.addTo(app);
}

const KeyframeFormat& KeyframeOutputArguments::value() const {
    if (!format.empty()) {
        return *keyframeFormatNamed(format);
    }
    const std::string ending = endingOf(output.path);
    if (ending.empty()) {
        return *keyframeFormatNamed(isStandardOutput(output.path) && outputIsTerminal() ? "table" : "csv");
    }
    if (const KeyframeFormat* const known = keyframeFormatEnding(ending); known != nullptr) {
        return *known;
    }
    throw unknownEnding(output.path, keyframeFormatNames());
}

void KeyframeOutputArguments::write(const KeyframeReport& report) const {
    writeOutput(output.path, value().text(report));
}

void TextOutputArguments::addTo(CLI::App& app) {
    app.add_option("--format", format, "text or json (default: by the ending of -o, else text)")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
    output.addTo(app);
}

bool TextOutputArguments::isJson() const {
    const std::string ending = endingOf(output.path);
    if (!format.empty() || ending.empty()) {
        return format == "json";
    }
    if (ending != ".json" && ending != ".txt") {
        throw unknownEnding(output.path, {"text", "json"});
    }
    return ending == ".json";
}

std::string endingOf(const std::string& path) {
    std::string ending = nameOf(pathOf(path).extension());
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return ending;
}

OptionError unknownEnding(const std::string& path, const std::vector<std::string>& formats) {
    return OptionError(fmt::format("-o {}: no format has the ending {}; name one with --format: {}",
                                   printableName(path), printable(endingOf(path)), listed(formats)));
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
    }
    return text;
}

} // namespace OrvantaNS::command
