// A camera path in JSON, as `--format json` writes it, read back: edited or not.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "reading/CameraPlan.h"

namespace OrvantaNS::command {

/// What the field "format" of a path says, and the version that is written and read.
inline constexpr std::string_view kPathFormat = "orvanta-path";
inline constexpr int kPathVersion = 1;
/// The same of a list of sampled frames, which is only written.
inline constexpr std::string_view kSamplesFormat = "orvanta-frames";

/// Reads a path from a file, or from the standard input when `path` is "-". A path can be made of what comes back
/// (`CameraPlan::path`). Throws `InputError` and `Interrupted`.
CameraPlan readPathFile(const std::string& path);

/// The path of a document; `name` stands for it in messages. Throws `InputError`.
CameraPlan pathOf(const nlohmann::json& document, const std::string& name);

} // namespace OrvantaNS::command
