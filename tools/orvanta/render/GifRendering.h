// Animated GIF: 256 colours for the whole clip, found in a first run through it.
#pragma once

#include "render/VideoRendering.h"

namespace OrvantaNS::render {

/// As `renderVideo`, for GIF. Sound is left out; stamps are rounded to the format's hundredths of a second, and pictures
/// that would follow faster than players show them are left out.
RenderOutcome renderGif(VideoReader& reader, const RenderJob& job, OutputFile& file, const TellState& tell,
                        const StopQuestion& stop);

} // namespace OrvantaNS::render
