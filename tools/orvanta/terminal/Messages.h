// What the command says beside its results, on the standard error: for people in sentences, for programs one JSON object a
// line.
#pragma once

#include <string>
#include <string_view>

#include "terminal/ExitStatus.h"

namespace OrvantaNS::command {

/// How the process speaks. Set once from the command line.
struct MessageStyle {
    bool quiet = false;   ///< No notes, no warnings, no progress; failures are told all the same.
    bool json = false;    ///< One JSON object a line instead of sentences.
    bool progress = true; ///< A progress bar where there is a terminal for it.
};

/// The style in force.
MessageStyle& messageStyle();

/// What ended the run.
struct Failure {
    std::string message{}; ///< One line, complete but for the program's name.
    ExitStatus status = kFailed;
    int code = 0;          ///< The engine's number for it (`OVERR_CODES`); 0 when no engine failed.
    std::string file{};    ///< The input at fault, as the file system has it; empty when none is.
    long long line = 0;    ///< From 1; 0 when no line is at fault.
    long long column = 0;  ///< From 1, in characters; 0 when not known.
    std::string excerpt{}; ///< The text around the column, printable; may be empty.
    std::size_t caret = 0; ///< Where in the excerpt the column lies, in characters from 0.
    std::string advice{};  ///< A command line that helps, such as "orvanta --help"; may be empty.
};

/// A remark on what was done: "orvanta: MESSAGE".
void tellNote(std::string_view message);
/// Something that is hardly meant: "orvanta: warning: MESSAGE".
void tellWarning(std::string_view message);
/// "orvanta: MESSAGE", with the excerpt and the advice on lines of their own.
void tellFailure(const Failure& failure);

} // namespace OrvantaNS::command
