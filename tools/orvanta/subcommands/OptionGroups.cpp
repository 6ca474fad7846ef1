#include "subcommands/OptionGroups.h"

#include <cstdio>

#include <fmt/format.h>

#include "terminal/Messages.h"
#include "terminal/Terminal.h"
#include "terminal/TextFormat.h"
#include "writing/Output.h"

namespace OrvantaNS::command {

void RecordingArgument::addTo(CLI::App& app) {
    app.add_option("RECORDING", path, "Recording in JSON Lines or captured request; - for the standard input")
        ->required()
        ->type_name("FILE");
    app.add_flag("--strict", strict,
                 "Refuse recordings that are cut off, packed, or not exactly in the format, and clips in which nothing "
                 "happens");
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
}

EngineChoice EngineArgument::value() const { return engineOf(name).value_or(EngineChoice::Value); }

void RequestArguments::addTo(CLI::App& app) {
    size.addTo(app);
    fade.addTo(app);
    clip.addTo(app);
    engine.addTo(app);
}

RequestOptions RequestArguments::value() const { return {size.value(), fade.value(), clip.value(), engine.value()}; }

void OutputArgument::addTo(CLI::App& app) {
    app.add_option("-o,--output", path, "File to write; it appears whole or not at all")->type_name("FILE");
}

void KeyframeOutputArguments::addTo(CLI::App& app) {
    std::vector<std::string> names;
    for (const KeyframeFormat& known : keyframeFormats()) {
        names.emplace_back(known.name);
    }
    app.add_option("--format", format, fmt::format("{} (default: table on a terminal, else csv)", listed(names)))
        ->type_name("FORMAT")
        ->check(CLI::IsMember(names));
    output.addTo(app);
}

const KeyframeFormat& KeyframeOutputArguments::value() const {
    const bool terminal = output.path.empty() && outputIsTerminal();
    const KeyframeFormat* const known = keyframeFormatNamed(!format.empty() ? format : terminal ? "table" : "csv");
    return *known;
}

void KeyframeOutputArguments::write(const KeyframeReport& report) const {
    writeOutput(output.path, value().text(report));
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
    }
    return text;
}

} // namespace OrvantaNS::command
