#include "subcommands/CommandLine.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include <fmt/format.h>

#include "subcommands/Failures.h"
#include "subcommands/FrameCommand.h"
#include "subcommands/HelpFormatter.h"
#include "subcommands/InfoCommand.h"
#include "subcommands/InspectCommand.h"
#include "subcommands/KeyframesCommand.h"
#include "subcommands/RenderCommand.h"
#include "subcommands/ReportCommand.h"
#include "subcommands/ScoreCommand.h"
#include "terminal/FileName.h"
#include "terminal/Interrupt.h"
#include "terminal/NearestName.h"
#include "terminal/Terminal.h"
#include "terminal/TextFormat.h"
#include "writing/Output.h"
#include "writing/ToolVersion.h"

namespace OrvantaNS::command {

namespace {

constexpr const char* kExamples = R"(Examples:
  orvanta keyframes session.jsonl --size 640x400
  orvanta keyframes session.jsonl --size 9:16 -o portrait.json
  orvanta keyframes session.jsonl --size 0.5 --clip 0:30:2:00
  orvanta keyframes *.jsonl --size 0.5 --out-dir keyframes
  orvanta frame session.jsonl --size 640x400 --at 1:05.5
  orvanta inspect session.jsonl --size 640x400
  orvanta score session.jsonl --size 640x400 --engine director
  orvanta report session.jsonl --size 640x400 -o report.html
  orvanta info session.jsonl.gz
  orvanta help keyframes

Exit status: 0 done; 1 the engine failed or the result could not be
written; 2 the recording or an option cannot be used; 130 stopped by
Ctrl-C.)";

/// In the order in which the help names them.
std::vector<std::unique_ptr<Subcommand>> makeSubcommands() {
    std::vector<std::unique_ptr<Subcommand>> subcommands;
    subcommands.push_back(makeKeyframesCommand());
    subcommands.push_back(makeFrameCommand());
    subcommands.push_back(makeInfoCommand());
    subcommands.push_back(makeInspectCommand());
    subcommands.push_back(makeScoreCommand());
    subcommands.push_back(makeRenderCommand());
    subcommands.push_back(makeReportCommand());
    return subcommands;
}

std::string versionText() { return fmt::format("orvanta {}\n", toolVersion()); }

/// The value that the command line gives an option, whether or not the rest of it can be understood; empty when none.
std::string_view valueOf(std::string_view option, int argc, const char* const* argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == option && i + 1 < argc) {
            return argv[i + 1];
        }
        if (word.starts_with(option) && word.substr(option.size()).starts_with("=")) {
            return word.substr(option.size() + 1);
        }
    }
    return {};
}

/// True when the command line asks for messages in JSON.
bool asksForJson(int argc, const char* const* argv) {
    const std::string_view messages = valueOf("--messages", argc, argv);
    return messages.empty() ? valueOf("--format", argc, argv) == "json" : messages == "json";
}

std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/// What stands on the command line beyond what was asked for, in its order.
std::string extrasText(const CLI::App& app) {
    const std::vector<std::string> extras = app.remaining();
    std::string shown;
    std::string suggestion;
    for (const std::string& extra : extras) {
        shown += " " + printableName(extra);
        const std::string name = extra.substr(0, extra.find('='));
        if (suggestion.empty() && name.starts_with("--")) {
            suggestion = nearestName(name, optionNames(app));
        }
    }
    const bool isOption = extras.size() == 1 && extras.front().starts_with("-");
    return fmt::format("{}{}{}", isOption ? "there is no option" : "not expected:", shown,
                       suggestion.empty() ? "" : "; did you mean " + suggestion + "?");
}

} // namespace

CommandLine::CommandLine()
    : app_("Decides where the picture of a screen recording stands in a smaller output frame."),
      subcommands_(makeSubcommands()) {
    app_.name("orvanta");
    app_.allow_windows_style_options(false); // A word that begins with a slash names a file on every system.
    app_.formatter(std::make_shared<HelpFormatter>(terminalColumns(stdout)));
    app_.footer(kExamples);
    app_.require_subcommand(1);
    for (const auto& subcommand : subcommands_) {
        subcommand->addTo(app_);
    }
    addHelpAndVersion();
}

void CommandLine::addHelpAndVersion() {
    app_.set_version_flag("-V,--version", versionText());
    help_ = app_.add_subcommand("help", "Print this help, or that of a subcommand");
    help_->add_option("SUBCOMMAND", helpTopic_, "Subcommand to print the help of")->expected(0, 1);
    version_ = app_.add_subcommand("version", "Print the version");
}

void CommandLine::printHelp(const std::vector<std::string>& names) const {
    if (names.empty()) {
        // Not `help()`, which would give that of the subcommand on the command line.
        writeOutput({}, app_.get_formatter()->make_help(&app_, app_.get_name(), CLI::AppFormatMode::Normal));
        return;
    }
    const auto known = subcommandNames();
    if (std::find(known.begin(), known.end(), names.front()) == known.end()) {
        throw unknownSubcommand(names.front());
    }
    writeOutput({}, app_.get_subcommand(names.front())->help("orvanta"));
}

std::vector<std::string> CommandLine::subcommandNames() const {
    std::vector<std::string> names;
    for (const CLI::App* subcommand : app_.get_subcommands({})) {
        names.push_back(subcommand->get_name());
    }
    return names;
}

Failure CommandLine::unknownSubcommand(const std::string& word) const {
    const std::string nearest = nearestName(word, subcommandNames());
    std::error_code error;
    Failure failure{fmt::format("there is no subcommand {}", printableName(word)), kBadInput};
    failure.advice = "orvanta --help";
    if (!nearest.empty()) {
        failure.message += fmt::format("; did you mean {}?", nearest);
    } else if (std::filesystem::is_regular_file(pathOf(word), error)) {
        failure.message = fmt::format("{} is a file; a subcommand comes first", printableName(word));
        failure.advice = fmt::format("orvanta info {}", printableName(word));
    }
    return failure;
}

Failure CommandLine::usageFailure(const CLI::ParseError& error) const {
    const std::vector<CLI::App*> chosen = app_.get_subcommands();
    const CLI::App& app = chosen.empty() ? app_ : *chosen.back();
    Failure failure{error.what(), kBadInput};
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        failure.message = extrasText(app);
    } else if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && chosen.empty()) {
        failure.message = "a subcommand is missing";
    }
    failure.advice = chosen.empty() ? "orvanta --help" : fmt::format("orvanta {} --help", app.get_name());
    return failure;
}

ExitStatus CommandLine::parseAndRun(int argc, const char* const* argv) {
    if (argc > 1 && argv[1][0] != '-') {
        const auto known = subcommandNames();
        if (std::find(known.begin(), known.end(), argv[1]) == known.end()) {
            throw unknownSubcommand(argv[1]);
        }
    }
    try {
        app_.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        writeOutput({}, app_.help());
        return kDone;
    } catch (const CLI::CallForVersion&) {
        writeOutput({}, versionText());
        return kDone;
    } catch (const CLI::ParseError& error) {
        throw usageFailure(error);
    }
    if (help_->parsed()) {
        printHelp(helpTopic_);
        return kDone;
    }
    if (version_->parsed()) {
        writeOutput({}, versionText());
        return kDone;
    }
    catchInterrupts();
    for (const auto& subcommand : subcommands_) {
        if (subcommand->isChosen()) {
            return subcommand->execute();
        }
    }
    return kDone; // Not reached: the parser requires one.
}

ExitStatus CommandLine::run(int argc, const char* const* argv) {
    messageStyle().json = asksForJson(argc, argv);
    try {
        return parseAndRun(argc, argv);
    } catch (const Failure& failure) {
        tellFailure(failure);
        return failure.status;
    } catch (...) {
        const Failure failure = currentFailure();
        tellFailure(failure);
        return failure.status;
    }
}

} // namespace OrvantaNS::command
