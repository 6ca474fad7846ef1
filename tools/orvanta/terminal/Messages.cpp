#include "terminal/Messages.h"

#include <cstdio>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace OrvantaNS::command {

namespace {

using Json = nlohmann::ordered_json;

/// One write for each message, so that those of processes side by side do not mix.
void say(const std::string& text) {
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
}

void sayJson(const Json& object) { say(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n"); }

Json failureJson(const Failure& failure) {
    Json error = {{"message", failure.message}, {"exitStatus", static_cast<int>(failure.status)}};
    if (failure.code != 0) {
        error["code"] = failure.code;
    }
    if (!failure.file.empty()) {
        error["file"] = failure.file;
    }
    if (failure.line > 0) {
        error["line"] = failure.line;
    }
    if (failure.column > 0) {
        error["column"] = failure.column;
    }
    if (!failure.excerpt.empty()) {
        error["excerpt"] = failure.excerpt;
    }
    if (!failure.advice.empty()) {
        error["try"] = failure.advice;
    }
    return {{"error", error}};
}

} // namespace

MessageStyle& messageStyle() {
    static MessageStyle style;
    return style;
}

void tellNote(std::string_view message) {
    if (messageStyle().quiet) {
        return;
    }
    if (messageStyle().json) {
        sayJson({{"note", message}});
    } else {
        say(fmt::format("orvanta: {}\n", message));
    }
}

void tellWarning(std::string_view message) {
    if (messageStyle().quiet) {
        return;
    }
    if (messageStyle().json) {
        sayJson({{"warning", message}});
    } else {
        say(fmt::format("orvanta: warning: {}\n", message));
    }
}

void tellFailure(const Failure& failure) {
    if (messageStyle().json) {
        sayJson(failureJson(failure));
        return;
    }
    std::string text = fmt::format("orvanta: {}\n", failure.message);
    if (!failure.excerpt.empty()) {
        text += fmt::format("  {}\n  {:>{}}\n", failure.excerpt, "^", failure.caret + 1);
    }
    if (!failure.advice.empty()) {
        text += fmt::format("Try: {}\n", failure.advice);
    }
    say(text);
}

} // namespace OrvantaNS::command
