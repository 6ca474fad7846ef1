// One run through the video: from the file's pictures to the output's, in order.
#pragma once

#include <cstdint>
#include <functional>

#include "render/FrameClock.h"
#include "render/FramePainter.h"
#include "render/VideoReader.h"

namespace OrvantaNS::render {

/// What the camera shows at a moment of the video, seconds: a rectangle in pixels of the recording, relative to its top
/// left corner. Asked from several threads at once.
using CameraView = std::function<PictureRegion(double)>;

struct PassPlan {
    PictureForm form;
    FillChoice fill;
    VideoClip clip;
    std::optional<AVRational> rate; ///< Pictures a second; left out: the video's own stamps.
    CameraView camera;
    double recordedWidth = 0.0; ///< Pixels of the recording that the video's width shows.
    double recordedHeight = 0.0;
    int threads = 1; ///< That scale.
};

/// A picture of the output.
struct PaintedPicture {
    FramePointer picture;
    std::int64_t stamp = 0;    ///< From the clip's start, in the pass's time base.
    std::int64_t duration = 0; ///< In the pass's time base.
    double clipSeconds = 0.0;  ///< The stamp in seconds.
};

/// What became of a pass.
struct PassResult {
    std::int64_t pictures = 0;
    int dropped = 0;             ///< Pictures of the video whose stamps did not go forward.
    double reachedSeconds = 0.0; ///< Where the last picture of the video ends, on the video's clock.
};

/// What the stamps of a pass count.
AVRational passTimeBase(const VideoReader& reader, const PassPlan& plan);

/// The part of a picture of the video that shows at a moment.
PictureRegion regionAt(const PassPlan& plan, const AVFrame& source, double videoSeconds);

/// Runs from where the reader stands to the clip's stop or the end. `take` gets the pictures in order, on one thread that
/// is not the caller's; `sound` gets the packets of the sound on the caller's thread. Throws what these throw, and
/// `VideoError` and `RenderError`. Returns early, with what was done, when `stop` says so.
PassResult runPass(VideoReader& reader, const PassPlan& plan, const std::function<void(PaintedPicture)>& take,
                   const std::function<void(SoundPacket)>& sound, const StopQuestion& stop);

} // namespace OrvantaNS::render
