// From an engine's answer to a camera path: where it came from, its easing, and what a person wants otherwise.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CameraWishes.h"
#include "asking/Engine.h"
#include "reading/CameraPlan.h"

namespace OrvantaNS::command {

/// The plan of an engine's answer. `recording` holds the request that it answers.
CameraPlan planOf(const Recording& recording, EngineChoice engine, const std::vector<ReasonedKeyframe>& keyframes,
                  const CameraEasing& easing = {});

/// The reasons of what wishes asked for.
inline constexpr std::string_view kPinnedReason = "pinned";
inline constexpr std::string_view kWholeReason = "whole";

/// Lays wishes over the plan's keyframes. Throws `OptionError` when they cannot be applied.
void layWishes(CameraPlan& plan, const CameraWishes& wishes);

/// The easing of a preset's name, or of "X1,Y1,X2,Y2" as CSS has it in cubic-bezier(). Throws `OptionError`.
CameraEasing parseEasing(std::string_view text);

/// A pin as --pin has it: "START:STOP@WIDTHxHEIGHT+LEFT+TOP", the stretch as --clip has it, the rectangle in pixels
/// relative to the first region. Throws `OptionError`.
CameraPin parsePin(std::string_view text, const CameraSetup& setup);

/// A stretch as --clip has it; ends that are left out are the clip's. `option` is for messages. Throws `OptionError`.
CameraStretch parseStretch(std::string_view text, std::string_view option, const CameraSetup& setup);

} // namespace OrvantaNS::command
