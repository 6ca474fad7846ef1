// The four things that the command does.
#pragma once

#include <optional>
#include <string>

#include "engine.h"
#include "keyframe_output.h"

namespace OrvantaNS::command {

/// Where the result goes, and in which form.
struct OutputOptions {
    std::optional<Format> format; ///< Left out: a table on a terminal, else CSV.
    std::string path;             ///< Empty: the standard output.
};

/// Which moment `frame` is asked about.
struct FrameQuestion {
    std::optional<double> atSeconds; ///< Nothing: the first window, without a moment.
};

/// Each reads the recording, works, and writes its result. They throw `InputError`, `OptionError`, `OutputError`,
/// `OrvantaException`, `NoAnswer` and `Interrupted`; a failure leaves no output file.
void runKeyframes(const std::string& recordingPath, const RequestOptions& request, const OutputOptions& output);
void runFrame(const std::string& recordingPath, const FrameQuestion& question, const RequestOptions& request,
              const OutputOptions& output);
void runInfo(const std::string& recordingPath);
/// An engine's failure is thrown on after the stages before it have been printed, unless they were to go to a file.
void runInspect(const std::string& recordingPath, const RequestOptions& request, bool json, const std::string& path);

} // namespace OrvantaNS::command
