// The forms in which a camera path can be had, by the names that --format takes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "writing/PathOutput.h"

namespace OrvantaNS::command {

/// What may be asked of a format beside its name.
struct PathOutputOptions {
    std::optional<PictureRate>
        sample;          ///< The frame at every picture of this rate, instead of keyframes; a project's rate.
    bool even = false;   ///< Whole even pixels of the exact shape.
    std::string video{}; ///< The video's file, for formats that name it.
};

struct PathFormat {
    std::string_view name;                 ///< As --format takes it.
    std::vector<std::string_view> endings; ///< Of file names that ask for it, in small letters and with their point.
    bool takesSample = false;              ///< Understands `PathOutputOptions::sample`.
    bool takesEven = false;                ///< Understands `PathOutputOptions::even`.
    std::string (*text)(const CameraPlan& plan, const PathOutputOptions& options);
    /// What to do with the result, a note of one line; null where it speaks for itself. `file` is where it was written to,
    /// empty for the standard output.
    std::string (*advice)(const CameraPlan& plan, const PathOutputOptions& options, const std::string& file) = nullptr;
};

/// All of them, in the order in which the help names them.
std::span<const PathFormat> pathFormats();

/// The format of that name; null when there is none.
const PathFormat* pathFormatNamed(std::string_view name);

/// The format that a file of that name asks for by its ending, in capital or small letters; null when it asks for none.
const PathFormat* pathFormatOfFile(std::string_view file);

} // namespace OrvantaNS::command
