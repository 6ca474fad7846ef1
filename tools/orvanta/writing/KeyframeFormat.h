// The forms in which keyframes can be had, by the names that --format takes.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "writing/KeyframeOutput.h"

namespace OrvantaNS::command {

struct KeyframeFormat {
    std::string_view name;                 ///< As --format takes it.
    std::vector<std::string_view> endings; ///< Of file names that ask for it, in small letters and with their point.
    std::string (*text)(const KeyframeReport& report);
};

/// All of them, in the order in which the help names them.
std::span<const KeyframeFormat> keyframeFormats();

/// The format of that name; null when there is none.
const KeyframeFormat* keyframeFormatNamed(std::string_view name);

/// The first format of files with that ending (".csv"); null when there is none.
const KeyframeFormat* keyframeFormatEnding(std::string_view ending);

} // namespace OrvantaNS::command
