// A whole rendering: from a video and a camera to a finished file, or to single pictures.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "render/FrameFill.h"
#include "render/MediaForm.h"
#include "render/OutputFile.h"
#include "render/PicturePass.h"
#include "render/VideoEncoder.h"

namespace OrvantaNS::render {

struct RenderJob {
    MediaForm form;
    int width = 0;  ///< Of the output, pixels.
    int height = 0; ///< Pixels.
    FillChoice fill;
    VideoClip clip;
    std::optional<AVRational> rate; ///< Pictures a second; left out: the video's own stamps.
    EncodingChoice encoding;
    CameraView camera;
    double recordedWidth = 0.0; ///< Pixels of the recording that the video's width shows.
    double recordedHeight = 0.0;
    int threads = 1; ///< That scale.
};

/// How far a rendering is; told from another thread than the caller's.
struct RenderState {
    std::int64_t pictures = 0; ///< Done.
    double seconds = 0.0;      ///< Of the output that are done.
    double ofSeconds = 0.0;    ///< Of the output in all, as far as is known; 0 when it is not.
    int pass = 1;              ///< Of `passes`.
    int passes = 1;
};
using TellState = std::function<void(const RenderState&)>;

struct RenderOutcome {
    std::int64_t pictures = 0;
    double seconds = 0.0;           ///< Length of the output.
    std::string complaint;          ///< What was wrong with the video's content; empty when nothing was.
    std::vector<std::string> notes; ///< What a user should know and need not worry about.
};

/// Makes the whole output in `file`, and leaves publishing it to the caller. Throws `VideoError`, `SettingError` and
/// `RenderError`; returns early when `stop` says so, with nothing worth publishing.
RenderOutcome renderVideo(VideoReader& reader, const RenderJob& job, OutputFile& file, const TellState& tell,
                          const StopQuestion& stop);

/// The picture that shows at a moment of the video, as a PNG file's bytes. Moments before the first picture show the first,
/// moments after the last one the last. Throws `VideoError` and `RenderError`.
std::string renderStill(VideoReader& reader, const RenderJob& job, double videoSeconds, const StopQuestion& stop);

} // namespace OrvantaNS::render
