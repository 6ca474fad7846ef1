#include "camera/score/JudgedPath.h"

#include <algorithm>
#include <utility>

namespace OrvantaNS::camera {

JudgedPath::JudgedPath(std::vector<JudgedKeyframe> keyframes, const RealRect& whole, double outputWidth,
                       double outputHeight, double fadeSeconds)
    : keyframes_(std::move(keyframes)), whole_(whole), outputWidth_(outputWidth), outputHeight_(outputHeight),
      fade_(fadeSeconds) {
    departures_.reserve(keyframes_.size());
    for (std::size_t i = 0; i < keyframes_.size(); ++i) {
        departures_.push_back(i == 0 ? whole_ : within(keyframes_[i].seconds, i - 1));
    }
}

std::size_t JudgedPath::reached(double seconds) const {
    const auto after = std::upper_bound(keyframes_.begin(), keyframes_.end(), seconds,
                                        [](double time, const JudgedKeyframe& k) { return time < k.seconds; });
    return static_cast<std::size_t>(after - keyframes_.begin());
}

RealRect JudgedPath::within(double seconds, std::size_t index) const {
    const RealRect& to = keyframes_[index].frame;
    const double k = fade_ > 0.0 ? (seconds - keyframes_[index].seconds) / fade_ : 1.0;
    if (!(k < 1.0)) {
        return to;
    }
    const double part = std::max(0.0, k);
    const double eased = part * part * (3.0 - 2.0 * part);
    const RealRect& from = departures_[index];
    const auto between = [eased](double a, double b) { return a + (b - a) * eased; };
    return {between(from.left, to.left), between(from.top, to.top), between(from.right, to.right),
            between(from.bottom, to.bottom)};
}

RealRect JudgedPath::at(double seconds) const {
    const std::size_t count = reached(seconds);
    return count == 0 ? whole_ : within(seconds, count - 1);
}

bool JudgedPath::isMoving(double seconds) const {
    const std::size_t count = reached(seconds);
    if (count == 0) {
        return false;
    }
    const double start = keyframes_[count - 1].seconds;
    return start < seconds && seconds < start + fade_;
}

double JudgedPath::zoom(const RealRect& frame) const {
    if (isEmpty(frame)) {
        return 0.0;
    }
    return std::min(outputWidth_ / width(frame), outputHeight_ / height(frame));
}

} // namespace OrvantaNS::camera
