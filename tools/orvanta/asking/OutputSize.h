// How large a rendered picture is, and how large a frame the engine plans for it.
#pragma once

#include <optional>

#include "asking/EngineChoice.h"
#include "asking/SizeOption.h"

namespace OrvantaNS::command {

/// The size of the output, pixels, for a video of the given size.
///
/// - Without an option it is the video's own size, rounded down to even numbers.
/// - Pixels are taken as they are.
/// - A scale gives that share of the video, an aspect the largest size of that shape that fits it, both in even numbers.
///   Nothing is halved to leave the camera room, as it is for keyframes: how far it goes in is up to --max-zoom.
FrameSize outputSize(const std::optional<SizeOption>& option, const FrameSize& video);

/// A quarter of the width and of the height, in even numbers: enough to see where the camera goes.
FrameSize previewSize(const FrameSize& output);

/// The frame that the engine plans for, pixels of the recording: the smallest that fills the output when each pixel of the
/// video is enlarged `maxZoom` times. Nothing when no such frame leaves the camera room, so that the whole recording stays
/// on show: the value engine wants one that is smaller than the recording in one dimension at least, the voting engine
/// in both. Throws `OptionError` when the recording's region is empty.
std::optional<FrameSize> plannedSize(const FrameSize& output, double maxZoom, const FrameSize& video,
                                     const Rectangle& region, EngineChoice engine);

} // namespace OrvantaNS::command
