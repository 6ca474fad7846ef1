#include "render/FrameClock.h"

#include <algorithm>
#include <cmath>
#include <utility>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace OrvantaNS::render {

namespace {

std::int64_t stampOf(double seconds, AVRational timeBase) {
    return static_cast<std::int64_t>(std::llround(seconds / av_q2d(timeBase)));
}

} // namespace

FrameClock::FrameClock(AVRational timeBase, const VideoClip& clip, std::optional<AVRational> rate, Emit emit)
    : timeBase_(timeBase), rate_(rate), emit_(std::move(emit)), start_(stampOf(clip.start, timeBase)) {
    if (clip.stop) {
        stop_ = stampOf(*clip.stop, timeBase);
    }
}

void FrameClock::add(FramePointer picture, std::int64_t stamp, std::int64_t duration) {
    if (done_) {
        return;
    }
    if (held_ != nullptr && stamp <= heldStamp_) {
        ++dropped_;
        return;
    }
    if (held_ != nullptr) {
        show(stamp);
    }
    if (stop_ && stamp >= *stop_) {
        held_ = nullptr;
        done_ = true;
        return;
    }
    held_ = std::move(picture);
    heldStamp_ = stamp;
    heldDuration_ = std::max<std::int64_t>(duration, 1);
    reached_ = stamp + heldDuration_;
}

void FrameClock::finish() {
    if (held_ != nullptr && !done_) {
        show(heldStamp_ + heldDuration_);
    }
    held_ = nullptr;
    done_ = true;
}

void FrameClock::show(std::int64_t end) {
    if (stop_) {
        end = std::min(end, *stop_);
    }
    const std::int64_t from = std::max(heldStamp_, start_);
    if (end <= from) {
        return; // Before the clip.
    }
    if (rate_) {
        showAtRate(end);
        return;
    }
    TimedPicture picture;
    picture.source = std::move(held_);
    picture.videoSeconds = static_cast<double>(from) * av_q2d(timeBase_);
    picture.stamp = from - start_;
    picture.duration = end - from;
    emit_(std::move(picture));
}

void FrameClock::showAtRate(std::int64_t end) {
    const AVRational tick = av_inv_q(*rate_);
    // Output pictures take what shows at their time: all ticks before `end`, compared without rounding.
    while (av_compare_ts(nextTick_, tick, end - start_, timeBase_) < 0) {
        TimedPicture picture;
        picture.source = sharePicture(*held_);
        picture.videoSeconds =
            static_cast<double>(start_) * av_q2d(timeBase_) + static_cast<double>(nextTick_) * av_q2d(tick);
        picture.stamp = nextTick_++;
        picture.duration = 1;
        emit_(std::move(picture));
    }
}

} // namespace OrvantaNS::render
