// Reads recordings from text, and the message of one that cannot be read.
#pragma once

#include <string>
#include <string_view>

#include "reading/InputError.h"
#include "reading/Recording.h"

namespace OrvantaNS::testing {

/// A header that the reader takes.
inline const std::string kHeader =
    R"({"format": "orvanta-recording", "version": 1, "timeScale": 1000, "windowsFlag": false, "description": "d"})"
    "\n";

inline command::Recording readText(std::string_view text, command::Reading reading = command::Reading::Tolerant) {
    return command::readRecording(command::sourceOf(text), "f", reading);
}

/// What reading `text` as the file "f" ends with; an empty message when it can be read.
struct ReadingFailure {
    std::string message;
    command::InputPlace place;
};

inline ReadingFailure readingFailure(std::string_view text, command::Reading reading = command::Reading::Tolerant) {
    try {
        readText(text, reading);
    } catch (const command::InputError& error) {
        return {error.what(), error.place()};
    }
    return {};
}

/// The message alone, without the column: "f:LINE: reason".
inline std::string readingError(std::string_view text, command::Reading reading = command::Reading::Tolerant) {
    const ReadingFailure failure = readingFailure(text, reading);
    const std::string column = ":" + std::to_string(failure.place.column) + ": ";
    std::string message = failure.message;
    if (const std::size_t at = message.find(column); failure.place.column > 0 && at != std::string::npos) {
        message.replace(at, column.size(), ": ");
    }
    return message;
}

} // namespace OrvantaNS::testing
