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

inline command::Recording readText(std::string_view text) {
    return command::readRecording(command::sourceOf(text), "f");
}

/// The message that reading `text` as the file "f" ends with; empty when it can be read.
inline std::string readingError(std::string_view text) {
    try {
        readText(text);
    } catch (const command::InputError& error) {
        return error.what();
    }
    return {};
}

} // namespace OrvantaNS::testing
