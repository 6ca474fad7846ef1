// Where results go: the standard output, a device, or a file that appears whole or not at all.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace OrvantaNS::command {

/// Results that could not be written; the message is complete but for the program's name.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// True when results for `path` go to the standard output: it is empty, or "-".
bool isStandardOutput(const std::string& path);

/// Writes `text` to where `path` says.
///
/// - Empty or "-": the standard output.
/// - /dev/stdout, /dev/stderr, /dev/fd/N, or a link to one of them: that open file, behind what it holds already.
/// - A device or a pipe: in place, as the text comes.
/// - Anything else: a file that appears whole, or takes the place of the one before whole. A failure, Ctrl-C or the end of
///   the process leaves what was there before, and nothing beside it. A link stays, and the file that it names is replaced.
///
/// Throws `OutputError`, also for what `checkOutput` refuses, and `Interrupted` when Ctrl-C came before the end.
void writeOutput(const std::string& path, std::string_view text);

/// Throws `OutputError` when `path` is a directory, a link to nothing or a file that is read-only, or when its folder is missing
/// or takes no files: what is found out before the work costs nobody an hour. Writes nothing.
void checkOutput(const std::string& path);

/// Throws `OutputError` when `path` names what is read: the result would take the place of its own source. `input` is what
/// that is called. The standard output and input, and no name, are no such case.
void refuseOverwriting(const std::string& path, const std::string& inputPath, std::string_view input = "recording");

} // namespace OrvantaNS::command
