// Where results go: the standard output, or a file that appears whole or not at all.
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

/// Writes `text` to the standard output when `path` is empty, else to the file. A regular file is written beside its
/// place and moved there at the end, so that a failure or Ctrl-C leaves what was there before. Throws `OutputError`, and
/// `Interrupted` when Ctrl-C came before the move.
void writeOutput(const std::string& path, std::string_view text);

/// Throws `OutputError` when `path` names the recording itself: the result would take the place of its own source.
void refuseOverwriting(const std::string& path, const std::string& recordingPath);

} // namespace OrvantaNS::command
