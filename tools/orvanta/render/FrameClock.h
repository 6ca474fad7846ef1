// Which source picture shows when, and with which time stamp it leaves.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "render/AvHandles.h"

namespace OrvantaNS::render {

/// The stretch of the video that is rendered, seconds of the video's time.
struct VideoClip {
    double start = 0.0;
    std::optional<double> stop; ///< Left out: to the video's end.
};

/// One picture of the output.
struct TimedPicture {
    FramePointer source;
    double videoSeconds = 0.0; ///< The moment, on the video's clock: what the camera is asked for.
    std::int64_t stamp = 0;    ///< From the clip's start, in the output's time base.
    std::int64_t duration = 0; ///< In the output's time base.
};

/// Turns decoded pictures into output pictures. A picture shows until the next one comes, and what shows at the clip's
/// start leaves with time 0, so that the output covers the clip. Pictures keep their stamps, or come at a constant rate,
/// repeated or dropped; each then has its own moment on the camera's path.
class FrameClock {
public:
    using Emit = std::function<void(TimedPicture)>;

    /// `timeBase` is that of the pictures' stamps. `rate` is in pictures a second.
    FrameClock(AVRational timeBase, const VideoClip& clip, std::optional<AVRational> rate, Emit emit);

    /// A picture that begins to show at `stamp`, for about `duration` when no other comes. Stamps count from the video's
    /// time 0. One that does not lie after the picture before it is dropped.
    void add(FramePointer picture, std::int64_t stamp, std::int64_t duration);
    /// No more pictures: the last one shows for its duration.
    void finish();

    /// What the stamps of the output count.
    AVRational outputTimeBase() const { return rate_ ? av_inv_q(*rate_) : timeBase_; }
    /// True once nothing more can show before the clip's stop.
    bool done() const { return done_; }
    /// Pictures whose stamps did not go forward.
    int dropped() const { return dropped_; }
    /// Where the last picture that came ends, seconds of the video's time.
    double reachedSeconds() const { return static_cast<double>(reached_) * av_q2d(timeBase_); }

private:
    void show(std::int64_t end);
    void showAtRate(std::int64_t end);

    AVRational timeBase_;
    std::optional<AVRational> rate_;
    Emit emit_;
    std::int64_t start_;
    std::optional<std::int64_t> stop_;
    FramePointer held_; // Shows from `heldStamp_` until the next one comes.
    std::int64_t heldStamp_ = 0;
    std::int64_t heldDuration_ = 0;
    std::int64_t nextTick_ = 0; // Of the constant rate.
    std::int64_t reached_ = 0;
    int dropped_ = 0;
    bool done_ = false;
};

} // namespace OrvantaNS::render
