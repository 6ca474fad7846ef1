#include "CameraWishes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace OrvantaNS {

namespace {

using Keyframes = std::vector<CameraWishedKeyframe>;

constexpr long long kLatest = std::numeric_limits<long long>::max();
constexpr long long kEarliest = std::numeric_limits<long long>::lowest();

/// `length` is 0 or more.
long long later(long long time, long long length) { return time > kLatest - length ? kLatest : time + length; }
long long earlier(long long time, long long length) { return time < kEarliest + length ? kEarliest : time - length; }

/// Whether a general wish may move or drop a keyframe: what was asked for by name stays.
bool isFree(const CameraWishedKeyframe& keyframe) {
    return keyframe.origin == CameraOrigin::Keyframe || keyframe.origin == CameraOrigin::Start;
}

void requireStretch(const CameraStretch& stretch, const char* what, std::size_t index) {
    if (stretch.stop <= stretch.start) {
        throw std::invalid_argument(std::string("wishes: ") + what + " " + std::to_string(index) +
                                    " must stop after it starts");
    }
}

void requireZoom(const std::optional<double>& zoom, const char* what) {
    if (zoom && (!(*zoom > 0.0) || !std::isfinite(*zoom))) {
        throw std::invalid_argument(std::string("wishes: the ") + what + " zoom must be above 0 and finite");
    }
}

void requireWishes(const CameraWishes& wishes) {
    for (std::size_t i = 0; i < wishes.pins.size(); ++i) {
        requireStretch(wishes.pins[i].stretch, "pin", i);
        const Rectangle& rect = wishes.pins[i].rect;
        if (rect.right <= rect.left || rect.bottom <= rect.top) {
            throw std::invalid_argument("wishes: the rectangle of pin " + std::to_string(i) + " covers no pixel");
        }
    }
    for (std::size_t i = 0; i < wishes.whole.size(); ++i) {
        requireStretch(wishes.whole[i], "stretch on the whole", i);
    }
    for (std::size_t i = 0; i < wishes.keepOut.size(); ++i) {
        requireStretch(wishes.keepOut[i], "kept-out stretch", i);
    }
    requireZoom(wishes.leastZoom, "least");
    requireZoom(wishes.greatestZoom, "greatest");
    if (wishes.leastZoom && wishes.greatestZoom && *wishes.leastZoom > *wishes.greatestZoom) {
        throw std::invalid_argument("wishes: the least zoom must not be above the greatest");
    }
    if (wishes.leastRest && *wishes.leastRest < 0) {
        throw std::invalid_argument("wishes: the least rest must be 0 or more");
    }
}

/// The whole recording in local pixels; a side that 32 bits cannot hold ends at their limit.
Rectangle wholeOf(const CameraSetup& setup) {
    const auto length = [](std::int64_t low, std::int64_t high) {
        return static_cast<std::int32_t>(std::min<std::int64_t>(high - low, std::numeric_limits<std::int32_t>::max()));
    };
    return {0, length(setup.region.left, setup.region.right), 0, length(setup.region.top, setup.region.bottom)};
}

/// Low and high edge of a stretch of `size` pixels around the middle of another, inside `limit` where it fits.
struct Edges {
    std::int32_t low = 0;
    std::int32_t high = 0;
};

Edges centred(std::int64_t low, std::int64_t high, double pixels, std::int64_t limit) {
    constexpr double kMostPixels = std::numeric_limits<std::int32_t>::max();
    const auto size = static_cast<std::int64_t>(std::min(pixels, kMostPixels));
    // An arithmetic shift halves and rounds down. The path centres what does not fit.
    const std::int64_t edge = (low + high - size) >> 1;
    const std::int64_t start = size <= limit ? std::clamp<std::int64_t>(edge, 0, limit - size) : 0;
    return {static_cast<std::int32_t>(start), static_cast<std::int32_t>(start + size)};
}

/// Keeps the frames of keyframes within the limits of the zoom.
class ZoomLimits {
public:
    ZoomLimits(const CameraSetup& setup, const CameraWishes& wishes)
        : path_({}, setup), whole_(wholeOf(setup)), wishes_(wishes) {}

    Rectangle limited(const Rectangle& rect) const {
        const CameraSetup& setup = path_.setup();
        const double width = path_.frameOf(rect).width;
        if (wishes_.greatestZoom && width < setup.targetWidth / *wishes_.greatestZoom) {
            return resized(rect, std::ceil(setup.targetWidth / *wishes_.greatestZoom),
                           std::ceil(setup.targetHeight / *wishes_.greatestZoom));
        }
        if (wishes_.leastZoom && width > setup.targetWidth / *wishes_.leastZoom) {
            return resized(rect, std::max(1.0, std::floor(setup.targetWidth / *wishes_.leastZoom)),
                           std::max(1.0, std::floor(setup.targetHeight / *wishes_.leastZoom)));
        }
        return rect;
    }

private:
    Rectangle resized(const Rectangle& rect, double width, double height) const {
        if (width >= path_.wholeFrame().width) {
            return whole_; // Nothing is larger than the whole.
        }
        const Edges x = centred(rect.left, rect.right, width, whole_.right);
        const Edges y = centred(rect.top, rect.bottom, height, whole_.bottom);
        return {x.low, x.high, y.low, y.high};
    }

    CameraPath path_;
    Rectangle whole_;
    const CameraWishes& wishes_;
};

Keyframes sortedByTime(const std::vector<OV_TIME_RECT>& keyframes) {
    Keyframes all;
    all.reserve(keyframes.size());
    for (std::size_t i = 0; i < keyframes.size(); ++i) {
        all.push_back({keyframes[i], CameraOrigin::Keyframe, i});
    }
    std::stable_sort(all.begin(), all.end(), [](const CameraWishedKeyframe& a, const CameraWishedKeyframe& b) {
        return a.frame.time < b.frame.time;
    });
    return all;
}

/// Leaves out what comes no earlier than a keyframe that stands behind it in the list.
void dropOvertaken(Keyframes& keyframes) {
    Keyframes kept;
    long long next = kLatest;
    bool isLast = true;
    for (std::size_t i = keyframes.size(); i > 0; --i) {
        const CameraWishedKeyframe& keyframe = keyframes[i - 1];
        if (isLast || keyframe.frame.time < next) {
            kept.push_back(keyframe);
            next = keyframe.frame.time;
            isLast = false;
        }
    }
    keyframes.assign(kept.rbegin(), kept.rend());
}

enum class Repeats : std::uint8_t { FreeOnes, All };

/// Leaves out what shows the same as the keyframe before it. While keyframes may still move, those asked for by name stay:
/// they hold their time even where they change nothing.
void dropRepeats(Keyframes& keyframes, Repeats which) {
    Keyframes kept;
    for (const CameraWishedKeyframe& keyframe : keyframes) {
        const bool repeats = !kept.empty() && kept.back().frame.rect == keyframe.frame.rect;
        if (!repeats || (which == Repeats::FreeOnes && !isFree(keyframe))) {
            kept.push_back(keyframe);
        }
    }
    keyframes = std::move(kept);
}

/// Puts `laid` in the place of what begins within the stretch, and goes back at its stop.
void lay(Keyframes& keyframes, const CameraStretch& stretch, const CameraWishedKeyframe& laid, const Rectangle& whole) {
    const auto startsBefore = [](const CameraWishedKeyframe& keyframe, long long time) {
        return keyframe.frame.time < time;
    };
    const auto from = std::lower_bound(keyframes.begin(), keyframes.end(), stretch.start, startsBefore);
    const auto to = std::lower_bound(from, keyframes.end(), stretch.stop, startsBefore);
    Keyframes result(keyframes.begin(), from);
    result.push_back(laid);
    if (to == keyframes.end() || to->frame.time != stretch.stop) {
        CameraWishedKeyframe back{{stretch.stop, whole}, CameraOrigin::Start, 0};
        if (to != keyframes.begin()) {
            back = *std::prev(to);
            back.frame.time = stretch.stop;
        }
        result.push_back(back);
    }
    result.insert(result.end(), to, keyframes.end());
    keyframes = std::move(result);
}

void layStretches(Keyframes& keyframes, const CameraWishes& wishes, const Rectangle& whole) {
    for (std::size_t i = 0; i < wishes.whole.size(); ++i) {
        lay(keyframes, wishes.whole[i], {{wishes.whole[i].start, whole}, CameraOrigin::Whole, i}, whole);
    }
    for (std::size_t i = 0; i < wishes.pins.size(); ++i) {
        const CameraPin& pin = wishes.pins[i];
        lay(keyframes, pin.stretch, {{pin.stretch.start, pin.rect}, CameraOrigin::Pin, i}, whole);
    }
}

/// The stretches without a move, and where a move that would touch one has to wait.
class KeptOut {
public:
    KeptOut(std::vector<CameraStretch> stretches, long long fade) : stretches_(std::move(stretches)), fade_(fade) {
        // In the order of their starts: what one stretch moves to its stop may fall into the next.
        std::stable_sort(stretches_.begin(), stretches_.end(),
                         [](const CameraStretch& a, const CameraStretch& b) { return a.start < b.start; });
    }

    long long outOf(long long time) const {
        for (const CameraStretch& stretch : stretches_) {
            // With no fade the picture jumps at the keyframe's time itself.
            const bool reaches = fade_ > 0 ? time > earlier(stretch.start, fade_) : time >= stretch.start;
            if (reaches && time < stretch.stop) {
                time = stretch.stop;
            }
        }
        return time;
    }

private:
    std::vector<CameraStretch> stretches_;
    long long fade_;
};

void moveOut(Keyframes& keyframes, const KeptOut& keptOut) {
    for (CameraWishedKeyframe& keyframe : keyframes) {
        if (isFree(keyframe)) {
            keyframe.frame.time = keptOut.outOf(keyframe.frame.time);
        }
    }
    dropOvertaken(keyframes);
}

void keepRests(Keyframes& keyframes, long long apart, const KeptOut& keptOut) {
    Keyframes kept;
    auto named = keyframes.begin(); // The next keyframe that stays where it is.
    for (auto keyframe = keyframes.begin(); keyframe != keyframes.end(); ++keyframe) {
        if (isFree(*keyframe)) {
            long long& time = keyframe->frame.time;
            if (!kept.empty()) {
                time = keptOut.outOf(std::max(time, later(kept.back().frame.time, apart)));
            }
            const auto next = std::next(keyframe);
            named = std::find_if_not(std::max(named, next), keyframes.end(), isFree);
            const bool overtaken = next != keyframes.end() && next->frame.time <= time;
            const bool tooClose = named != keyframes.end() && named->frame.time < later(time, apart);
            if (overtaken || tooClose) {
                continue;
            }
        }
        kept.push_back(*keyframe);
    }
    keyframes = std::move(kept);
}

} // namespace

std::vector<CameraWishedKeyframe> applyWishes(const std::vector<OV_TIME_RECT>& keyframes, const CameraSetup& setup,
                                              const CameraWishes& wishes) {
    requireWishes(wishes);
    const CameraPath checked(keyframes, setup); // Refuses what no path can be made from.
    if (wishes.empty()) {
        Keyframes unchanged;
        unchanged.reserve(keyframes.size());
        for (std::size_t i = 0; i < keyframes.size(); ++i) {
            unchanged.push_back({keyframes[i], CameraOrigin::Keyframe, i});
        }
        return unchanged;
    }
    Keyframes wished = sortedByTime(keyframes);
    dropOvertaken(wished);
    const ZoomLimits limits(setup, wishes);
    for (CameraWishedKeyframe& keyframe : wished) {
        keyframe.frame.rect = limits.limited(keyframe.frame.rect);
    }
    layStretches(wished, wishes, wholeOf(setup));
    dropRepeats(wished, Repeats::FreeOnes);
    const KeptOut keptOut(wishes.keepOut, setup.fadeDuration);
    moveOut(wished, keptOut);
    dropRepeats(wished, Repeats::FreeOnes);
    if (wishes.leastRest) {
        keepRests(wished, later(setup.fadeDuration, *wishes.leastRest), keptOut);
    }
    dropRepeats(wished, Repeats::All);
    if (setup.clipStop > setup.clipStart) {
        std::erase_if(wished,
                      [&](const CameraWishedKeyframe& keyframe) { return keyframe.frame.time >= setup.clipStop; });
    }
    return wished;
}

} // namespace OrvantaNS
