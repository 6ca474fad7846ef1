// Options of the subcommands that make or take a camera path.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "CameraWishes.h"
#include "reading/CameraPlan.h"
#include "subcommands/OptionGroups.h"
#include "writing/PathFormat.h"

namespace OrvantaNS::command {

/// --easing.
struct EasingArgument {
    std::string text;

    void addTo(CLI::App& app);
    /// Nothing when the option was left out. Throws `OptionError`.
    std::optional<CameraEasing> value() const;
};

/// --wishes, and an option for each single wish.
struct WishesArguments {
    std::string file;
    std::vector<std::string> pins;
    std::vector<std::string> whole;
    std::vector<std::string> keepOut;
    std::string leastZoom;
    std::string greatestZoom;
    std::string leastRest;

    void addTo(CLI::App& app);
    /// The wishes of the file, then those of the options: the latter count where they meet. Throws `InputError`,
    /// `OptionError` and `Interrupted`.
    CameraWishes value(const CameraSetup& setup) const;
    /// Lays them over the plan's keyframes; without any the plan stays as it is, to the last bit. Throws as `value` does.
    void layOver(CameraPlan& plan) const;
};

/// --format, --sample, --even and -o of a subcommand that prints a path.
struct PathOutputArguments {
    std::string format;
    std::string sample;
    bool even = false;
    OutputArgument output;
    std::string video; ///< The video's file, for formats that name it; no option.

    void addTo(CLI::App& app);
    /// The format asked for; without one that of the file's ending; else a table on a terminal and CSV elsewhere.
    const PathFormat& value() const;
    /// What is asked of it. Throws `OptionError` when the format has no such thing.
    PathOutputOptions options() const;
    /// Throws what writing throws, and `OptionError`.
    void write(const CameraPlan& plan) const;
};

/// Pictures a second: "30", "29.97" or "30000/1001". Throws `OptionError` that names `option`.
PictureRate parsePictureRate(std::string_view text, std::string_view option);

} // namespace OrvantaNS::command
