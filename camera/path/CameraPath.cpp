#include "CameraPath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>

#include "camera/path/EvenStep.h"

namespace OrvantaNS {

namespace {

// A moment in seconds counts as a whole tick when it is that near, as a share of itself: a division by the time scale
// and a multiplication with it round off no more.
constexpr double kSecondsRounding = 4.0 * std::numeric_limits<double>::epsilon();
// 2^63: the first double that is too large for a tick.
constexpr double kBeyondTicks = 9223372036854775808.0;

// A frame's sides on the way, pixels. Moves that cut each other short while their easing overshoots multiply the sides by the
// overshoot again and again, until no number tells them; all that keyframes can ask for lies between these.
constexpr double kLeastSide = 0x1p-20;
constexpr double kMostSide = 0x1p64;

/// A rectangle's sides without wrapping: hostile edges may lie further apart than 32 bits tell.
struct Sides {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
};

/// Zero where the rectangle is empty or inverted.
Sides sidesOf(const Rectangle& rect) {
    const auto length = [](std::int64_t low, std::int64_t high) {
        return high > low ? static_cast<std::uint64_t>(high - low) : 0u;
    };
    return {length(rect.left, rect.right), length(rect.top, rect.bottom)};
}

double toDouble(std::uint64_t value) { return static_cast<double>(value); }

/// Ticks from `start` to `tick`, which is not before it. The difference of two ticks may be too large for one.
std::uint64_t ticksSince(long long start, long long tick) {
    return static_cast<std::uint64_t>(tick) - static_cast<std::uint64_t>(start);
}

long long saturatedSum(long long start, long long duration) {
    constexpr long long kLatest = std::numeric_limits<long long>::max();
    return start > kLatest - duration ? kLatest : start + duration;
}

/// A frame's low edge in one dimension, moved so that the frame lies between 0 and `limit`, or stands out evenly.
double placed(double low, double size, double limit) {
    if (size > limit) {
        return (limit - size) / 2.0;
    }
    return std::clamp(low, 0.0, limit - size);
}

/// One dimension of a frame.
struct Span {
    double low = 0.0;
    double size = 0.0;
};

/// The low edge of a frame of `size` on the way between two frames, of which the edges have come the given share.
double lowBetween(const Span& from, const Span& to, double size, double share, double limit) {
    double low = 0.0;
    if (from.size <= limit && to.size <= limit) {
        low = from.low + (to.low - from.low) * share;
    } else if (size < limit && (from.size < limit || to.size < limit)) {
        // From where the frame begins to fit, with its low edge at 0, the edge goes along with the size.
        const Span& fitting = from.size < limit ? from : to;
        low = fitting.low * ((limit - size) / (limit - fitting.size));
    } else {
        low = (limit - size) / 2.0;
    }
    return placed(low, size, limit);
}

/// What both sides of a frame may be multiplied by; 1 always, as a side at the end of its range may be rounded beyond it.
double allowedScale(const CameraFrame& from, double scale) {
    const double least = std::min(1.0, kLeastSide / std::min(from.width, from.height));
    const double most = std::max(1.0, kMostSide / std::max(from.width, from.height));
    return std::clamp(scale, least, most);
}

/// A side on the way between two, never beyond them while `progress` lies between 0 and 1, whatever the rounding.
double sizeBetween(double from, double to, double scale, double progress) {
    const double size = from * scale;
    return progress >= 0.0 && progress <= 1.0 ? std::clamp(size, std::min(from, to), std::max(from, to)) : size;
}

void requireSetup(const CameraSetup& setup) {
    const Sides region = sidesOf(setup.region);
    if (region.width == 0 || region.height == 0) {
        throw std::invalid_argument("camera path: the recording region covers no pixel");
    }
    if (setup.targetWidth <= 0 || setup.targetHeight <= 0) {
        throw std::invalid_argument("camera path: the target's width and height must be above 0");
    }
    if (!(setup.timeScale > 0.0) || !std::isfinite(setup.timeScale)) {
        throw std::invalid_argument("camera path: the time scale must be above 0 and finite");
    }
    if (setup.fadeDuration < 0) {
        throw std::invalid_argument("camera path: the fade must be 0 or more");
    }
}

/// The keyframes that lead a move, by time: the indexes of all but those that another one at the same time replaces.
std::vector<std::size_t> leadingKeyframes(const std::vector<OV_TIME_RECT>& keyframes, long long clipStart) {
    std::vector<std::size_t> order(keyframes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return keyframes[a].time < keyframes[b].time; });
    std::vector<std::size_t> leading;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const bool replaced = i + 1 < order.size() && std::max(keyframes[order[i + 1]].time, clipStart) ==
                                                          std::max(keyframes[order[i]].time, clipStart);
        if (!replaced) {
            leading.push_back(order[i]);
        }
    }
    return leading;
}

} // namespace

CameraSetup CameraSetup::of(const Params& params, const CameraEasing& easing) {
    CameraSetup setup;
    if (!params.recordingRegions().empty()) {
        setup.region = params.recordingRegions().front().rect;
    }
    setup.targetWidth = params.targetWidth();
    setup.targetHeight = params.targetHeight();
    setup.timeScale = params.timeScale();
    setup.fadeDuration = params.fadeDuration();
    setup.clipStart = params.clipStart();
    setup.clipStop = params.clipStop();
    setup.easing = easing;
    return setup;
}

CameraPath::CameraPath(const std::vector<OV_TIME_RECT>& keyframes, const CameraSetup& setup) : setup_(setup) {
    requireSetup(setup);
    const Sides region = sidesOf(setup.region);
    regionWidth_ = toDouble(region.width);
    regionHeight_ = toDouble(region.height);
    // A region may be wider than a rectangle can tell in 32 bits from 0, so its own edges make the whole frame.
    whole_ = frameOf(setup.region);

    for (std::size_t i = 0; i < keyframes.size(); ++i) {
        const Sides sides = sidesOf(keyframes[i].rect);
        if (sides.width == 0 || sides.height == 0) {
            throw std::invalid_argument("camera path: the rectangle of keyframe " + std::to_string(i) + " at tick " +
                                        std::to_string(keyframes[i].time) + " covers no pixel");
        }
    }
    for (const std::size_t keyframe : leadingKeyframes(keyframes, setup.clipStart)) {
        const long long start = std::max(keyframes[keyframe].time, setup.clipStart);
        CameraMove move;
        move.from = frameAt(start);
        if (!moves_.empty() && moves_.back().stop > start) {
            moves_.back().stop = start;
            moves_.back().cutShort = true;
        }
        move.start = start;
        move.stop = saturatedSum(start, setup.fadeDuration);
        move.to = frameOf(keyframes[keyframe].rect);
        move.keyframe = keyframe;
        moves_.push_back(move);
    }
}

CameraFrame CameraPath::frameAt(long long tick) const {
    const auto next = std::upper_bound(moves_.begin(), moves_.end(), tick,
                                       [](long long moment, const CameraMove& move) { return moment < move.start; });
    if (next == moves_.begin()) {
        return whole_;
    }
    const CameraMove& move = *std::prev(next);
    return between(move, toDouble(ticksSince(move.start, tick)));
}

CameraFrame CameraPath::frameAtSeconds(double seconds) const {
    const double ticks = seconds * setup_.timeScale;
    if (std::isnan(ticks)) {
        throw std::invalid_argument("camera path: the moment is not a number");
    }
    if (ticks >= kBeyondTicks) {
        return frameAt(std::numeric_limits<long long>::max());
    }
    if (ticks < -kBeyondTicks) {
        return frameAt(std::numeric_limits<long long>::lowest());
    }
    const double nearest = std::round(ticks);
    if (std::fabs(ticks - nearest) <= std::fabs(ticks) * kSecondsRounding) {
        return frameAt(static_cast<long long>(nearest));
    }
    // What is no whole tick lies within 2^53 of 0, so every tick around it is an exact double.
    const auto next = std::upper_bound(moves_.begin(), moves_.end(), ticks, [](double moment, const CameraMove& move) {
        return moment < static_cast<double>(move.start);
    });
    if (next == moves_.begin()) {
        return whole_;
    }
    const CameraMove& move = *std::prev(next);
    return between(move, ticks - static_cast<double>(move.start));
}

std::vector<CameraFrame> CameraPath::framesAt(std::span<const long long> ticks) const {
    std::vector<CameraFrame> frames;
    frames.reserve(ticks.size());
    for (const long long tick : ticks) {
        frames.push_back(frameAt(tick));
    }
    return frames;
}

std::vector<CameraFrame> CameraPath::framesAtSeconds(std::span<const double> seconds) const {
    std::vector<CameraFrame> frames;
    frames.reserve(seconds.size());
    for (const double moment : seconds) {
        frames.push_back(frameAtSeconds(moment));
    }
    return frames;
}

CameraFrame CameraPath::frameOf(const Rectangle& rect) const {
    const Sides sides = sidesOf(rect);
    if (sides.width == 0 || sides.height == 0) {
        throw std::invalid_argument("camera path: the rectangle covers no pixel");
    }
    const auto targetWidth = static_cast<std::uint64_t>(setup_.targetWidth);
    const auto targetHeight = static_cast<std::uint64_t>(setup_.targetHeight);
    CameraFrame frame{0.0, 0.0, toDouble(sides.width), toDouble(sides.height), false};
    // Products of 33 and 31 bits: exact. A frame of the target's own shape keeps both sides to the last bit.
    const std::uint64_t widthByShape = sides.width * targetHeight;
    const std::uint64_t heightByShape = sides.height * targetWidth;
    if (widthByShape >= heightByShape) {
        frame.height = toDouble(widthByShape) / toDouble(targetWidth);
    } else {
        frame.width = toDouble(heightByShape) / toDouble(targetHeight);
    }
    const double centreX = static_cast<double>(rect.left) + toDouble(sides.width) / 2.0;
    const double centreY = static_cast<double>(rect.top) + toDouble(sides.height) / 2.0;
    frame.left = placed(centreX - frame.width / 2.0, frame.width, regionWidth_);
    frame.top = placed(centreY - frame.height / 2.0, frame.height, regionHeight_);
    frame.overhangs = frame.width > regionWidth_ || frame.height > regionHeight_;
    return frame;
}

CameraFrame CameraPath::between(const CameraMove& move, double elapsedTicks) const {
    const double fade = static_cast<double>(setup_.fadeDuration);
    if (elapsedTicks >= fade) {
        return move.to;
    }
    const double progress = setup_.easing.at(elapsedTicks / fade);
    const CameraFrame& from = move.from;
    const CameraFrame& to = move.to;
    const EvenStep step = evenStep(from.width, to.width, progress);
    const double scale = allowedScale(from, step.scale);
    CameraFrame frame;
    frame.width = sizeBetween(from.width, to.width, scale, progress);
    frame.height = sizeBetween(from.height, to.height, scale, progress);
    frame.left = lowBetween({from.left, from.width}, {to.left, to.width}, frame.width, step.share, regionWidth_);
    frame.top = lowBetween({from.top, from.height}, {to.top, to.height}, frame.height, step.share, regionHeight_);
    frame.overhangs = frame.width > regionWidth_ || frame.height > regionHeight_;
    return frame;
}

} // namespace OrvantaNS
