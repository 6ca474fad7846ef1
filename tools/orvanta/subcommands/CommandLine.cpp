#include "subcommands/CommandLine.h"

#include <cstdio>
#include <exception>
#include <new>
#include <string>

#include <fmt/format.h>

#include "OrvantaException.h"
#include "asking/OptionError.h"
#include "reading/InputError.h"
#include "subcommands/FrameCommand.h"
#include "subcommands/InfoCommand.h"
#include "subcommands/InspectCommand.h"
#include "subcommands/KeyframesCommand.h"
#include "subcommands/RenderCommand.h"
#include "subcommands/ReportCommand.h"
#include "terminal/Interrupt.h"
#include "writing/ToolVersion.h"

namespace OrvantaNS::command {

namespace {

constexpr const char* kExamples = R"(Examples:
  orvanta keyframes session.jsonl --size 640x400
  orvanta keyframes session.jsonl --size 9:16 --format json -o portrait.json
  orvanta keyframes session.jsonl --size 0.5 --clip 0:30:2:00 --fade 0.5
  orvanta frame session.jsonl --size 640x400 --at 1:05.5
  orvanta frame session.jsonl --size 640x400 --window
  orvanta inspect session.jsonl --size 640x400
  orvanta report session.jsonl --size 640x400 -o report.html
  gunzip -c session.jsonl.gz | orvanta info -

Exit status: 0 done; 1 the engine failed or the result could not be written;
2 the recording or an option cannot be used; 130 stopped by Ctrl-C.)";

/// In the order in which the help names them.
std::vector<std::unique_ptr<Subcommand>> makeSubcommands() {
    std::vector<std::unique_ptr<Subcommand>> subcommands;
    subcommands.push_back(makeKeyframesCommand());
    subcommands.push_back(makeFrameCommand());
    subcommands.push_back(makeInfoCommand());
    subcommands.push_back(makeInspectCommand());
    subcommands.push_back(makeRenderCommand());
    subcommands.push_back(makeReportCommand());
    return subcommands;
}

ExitStatus complain(const std::string& message, ExitStatus status) {
    fmt::print(stderr, "orvanta: {}\n", message);
    return status;
}

} // namespace

CommandLine::CommandLine()
    : app_("Decides where the picture of a screen recording stands in a smaller output frame."),
      subcommands_(makeSubcommands()) {
    app_.name("orvanta");
    app_.footer(kExamples);
    app_.set_version_flag("--version", fmt::format("orvanta {}", toolVersion()));
    app_.require_subcommand(1);
    for (const auto& subcommand : subcommands_) {
        subcommand->addTo(app_);
    }
}

ExitStatus CommandLine::parseAndRun(int argc, const char* const* argv) {
    try {
        app_.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app_.exit(error); // Help and version.
            return kDone;
        }
        return complain(fmt::format("{}\nTry: orvanta --help", error.what()), kBadInput);
    }
    catchInterrupts();
    for (const auto& subcommand : subcommands_) {
        if (subcommand->isChosen()) {
            return subcommand->run();
        }
    }
    return kDone; // Not reached: the parser requires one.
}

ExitStatus CommandLine::run(int argc, const char* const* argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const InputError& error) {
        return complain(error.what(), kBadInput);
    } catch (const OptionError& error) {
        return complain(error.what(), kBadInput);
    } catch (const Interrupted& error) {
        return complain(error.what(), kInterrupted);
    } catch (const OrvantaException& error) {
        return complain(fmt::format("{} (code {})", error.what(), static_cast<int>(error.errorCode())), kFailed);
    } catch (const std::bad_alloc&) {
        return complain("out of memory", kFailed);
    } catch (const std::exception& error) {
        return complain(error.what(), kFailed);
    }
}

} // namespace OrvantaNS::command
