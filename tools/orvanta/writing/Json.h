// JSON documents, as the command prints them.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "Rectangle.h"

namespace OrvantaNS::command {

/// Fields keep the order in which they were added.
using Json = nlohmann::ordered_json;

/// The document with a line end: a line for each field, and within a field that holds a list a line for each entry, so
/// that a keyframe stands on a line of its own. Numbers come back as they were; what is no finite number becomes null, and
/// bytes that are not UTF-8, as a file name may have, become the replacement character.
std::string jsonText(const Json& document);

/// `left`, `top`, `right`, `bottom`.
Json edgesOf(const Rectangle& rect);

/// The text, or null where there is none.
Json textOrNull(std::string_view text);

} // namespace OrvantaNS::command
