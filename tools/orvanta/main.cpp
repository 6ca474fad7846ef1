// The command `orvanta`: options, and what becomes of failures.
#include <cstdio>
#include <exception>
#include <string>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "commands.h"
#include "input_error.h"
#include "interrupt.h"
#include "output.h"

namespace {

namespace command = OrvantaNS::command;

/// What the process ends with.
enum ExitStatus : int {
    kDone = 0,
    kFailed = 1,        ///< The engine failed or has no answer, or the result could not be written.
    kBadInput = 2,      ///< The recording or an option cannot be used.
    kInterrupted = 130, ///< Ctrl-C: 128 and the signal's number, as shells have it.
};

constexpr const char* kExamples = R"(Examples:
  orvanta keyframes session.jsonl --size 640x400
  orvanta keyframes session.jsonl --size 9:16 --format json -o portrait.json
  orvanta keyframes session.jsonl --size 0.5 --clip 0:30:2:00 --fade 0.5
  orvanta frame session.jsonl --size 640x400 --at 1:05.5
  orvanta frame session.jsonl --size 640x400 --window
  orvanta inspect session.jsonl --size 640x400
  gunzip -c session.jsonl.gz | orvanta info -

Exit status: 0 done; 1 the engine failed or the result could not be written;
2 the recording or an option cannot be used; 130 stopped by Ctrl-C.)";

/// The options as typed.
struct Arguments {
    std::string recording;
    std::string size;
    std::string fade = "1";
    std::string clip;
    std::string engine = "value";
    std::string format;
    std::string output;
    std::string at;
    bool window = false;
};

command::RequestOptions requestOf(const Arguments& arguments) {
    command::RequestOptions request;
    if (!arguments.size.empty()) {
        request.size = command::parseSize(arguments.size);
    }
    const auto fade = command::parseDecimal(arguments.fade);
    if (!fade) {
        throw command::OptionError(fmt::format("--fade {}: expected a number of seconds", arguments.fade));
    }
    request.fadeSeconds = *fade;
    if (!arguments.clip.empty()) {
        request.clip = command::parseClip(arguments.clip);
    }
    request.engine = arguments.engine == "voting" ? command::EngineChoice::Voting : command::EngineChoice::Value;
    return request;
}

command::OutputOptions outputOf(const Arguments& arguments) {
    command::OutputOptions output;
    if (arguments.format == "table") {
        output.format = command::Format::Table;
    } else if (arguments.format == "csv") {
        output.format = command::Format::Csv;
    } else if (arguments.format == "json") {
        output.format = command::Format::Json;
    }
    output.path = arguments.output;
    return output;
}

command::FrameQuestion questionOf(const Arguments& arguments) {
    if (arguments.at.empty() == !arguments.window) {
        throw command::OptionError("frame needs either --at TIME or --window");
    }
    command::FrameQuestion question;
    if (!arguments.window) {
        question.atSeconds = command::parseTime(arguments.at);
        if (!question.atSeconds) {
            throw command::OptionError(fmt::format("--at {}: expected seconds or m:ss.mmm", arguments.at));
        }
    }
    return question;
}

void addRecording(CLI::App& app, Arguments& arguments) {
    app.add_option("RECORDING", arguments.recording,
                   "Recording in JSON Lines or captured request; - for the standard input")
        ->required();
}

void addRequest(CLI::App& app, Arguments& arguments) {
    app.add_option("-s,--size", arguments.size,
                   "Output frame: WIDTHxHEIGHT, a scale of the recording such as 0.5, or an aspect such as 9:16 (the "
                   "largest such size that leaves the camera room). A captured request has its own by default")
        ->type_name("SIZE");
    app.add_option("--fade", arguments.fade, "Length of the animated move between two keyframes (default 1)")
        ->type_name("SECONDS");
    app.add_option("--clip", arguments.clip,
                   "Stretch to work on, in seconds or m:ss.mmm; either end may be left out (default: all)")
        ->type_name("START:STOP");
}

void addEngine(CLI::App& app, Arguments& arguments) {
    app.add_option("--engine", arguments.engine, "Engine that decides: value or voting (default value)")
        ->type_name("ENGINE")
        ->check(CLI::IsMember({"value", "voting"}));
}

void addOutput(CLI::App& app, Arguments& arguments) {
    app.add_option("-o,--output", arguments.output, "File to write; it appears whole or not at all")->type_name("FILE");
}

void addKeyframeFormat(CLI::App& app, Arguments& arguments) {
    app.add_option("--format", arguments.format, "table, csv or json (default: table on a terminal, else csv)")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"table", "csv", "json"}));
}

int complain(const std::string& message, ExitStatus status) {
    fmt::print(stderr, "orvanta: {}\n", message);
    return status;
}

int run(int argc, char** argv) {
    Arguments arguments;
    CLI::App app{"Decides where the picture of a screen recording stands in a smaller output frame."};
    app.name("orvanta");
    app.footer(kExamples);
    app.set_version_flag("--version", "orvanta " ORVANTA_VERSION);
    app.require_subcommand(1);

    CLI::App& keyframes = *app.add_subcommand("keyframes", "Print where the camera stands over the whole clip");
    addRecording(keyframes, arguments);
    addRequest(keyframes, arguments);
    addEngine(keyframes, arguments);
    addKeyframeFormat(keyframes, arguments);
    addOutput(keyframes, arguments);
    keyframes.footer("Example:\n  orvanta keyframes session.jsonl --size 640x400 --format csv -o keyframes.csv");

    CLI::App& frame = *app.add_subcommand("frame", "Print where the camera stands at one moment, or for one window");
    addRecording(frame, arguments);
    frame.add_option("--at", arguments.at, "Moment, in seconds or m:ss.mmm")->type_name("TIME");
    frame.add_flag("--window", arguments.window, "Frame the recording's first window, whatever the moment");
    addRequest(frame, arguments);
    addEngine(frame, arguments);
    addKeyframeFormat(frame, arguments);
    addOutput(frame, arguments);
    frame.footer("Examples:\n  orvanta frame session.jsonl --size 640x400 --at 1:05.5\n"
                 "  orvanta frame session.jsonl --size 640x400 --window");

    CLI::App& info = *app.add_subcommand("info", "Print what a recording holds, and what is odd about it");
    addRecording(info, arguments);
    info.footer("Example:\n  orvanta info session.jsonl");

    CLI::App& inspect =
        *app.add_subcommand("inspect", "Print what the value engine makes of a recording, stage by stage");
    addRecording(inspect, arguments);
    addRequest(inspect, arguments);
    inspect.add_option("--format", arguments.format, "text or json (default text)")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"text", "json"}));
    addOutput(inspect, arguments);
    inspect.footer("Example:\n  orvanta inspect session.jsonl --size 640x400 --format json -o stages.json");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return app.exit(error); // Help and version.
        }
        return complain(fmt::format("{}\nTry: orvanta --help", error.what()), kBadInput);
    }

    command::catchInterrupts();
    if (keyframes.parsed()) {
        command::runKeyframes(arguments.recording, requestOf(arguments), outputOf(arguments));
    } else if (frame.parsed()) {
        command::runFrame(arguments.recording, questionOf(arguments), requestOf(arguments), outputOf(arguments));
    } else if (info.parsed()) {
        command::runInfo(arguments.recording);
    } else {
        command::runInspect(arguments.recording, requestOf(arguments), arguments.format == "json", arguments.output);
    }
    return kDone;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const command::InputError& error) {
        return complain(error.what(), kBadInput);
    } catch (const command::OptionError& error) {
        return complain(error.what(), kBadInput);
    } catch (const command::Interrupted& error) {
        return complain(error.what(), kInterrupted);
    } catch (const OrvantaNS::OrvantaException& error) {
        return complain(fmt::format("{} (code {})", error.what(), static_cast<int>(error.errorCode())), kFailed);
    } catch (const std::bad_alloc&) {
        return complain("out of memory", kFailed);
    } catch (const std::exception& error) {
        return complain(error.what(), kFailed);
    }
}
