// A camera path with everything that tells where it came from: what the path formats hold.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CameraPath.h"

namespace OrvantaNS::command {

/// A keyframe, and why the camera stands there, in a word.
struct PlannedKeyframe {
    OV_TIME_RECT frame;
    std::string reason; ///< "tight", "pinned" and so on (docs/camera-path.md); empty where there is none.

    friend bool operator==(const PlannedKeyframe& a, const PlannedKeyframe& b) {
        return a.frame.time == b.frame.time && a.frame.rect == b.frame.rect && a.reason == b.reason;
    }
};

struct CameraPlan {
    std::string recording;                ///< The recording's name; empty when it is not known.
    std::string engine;                   ///< The engine's name; empty when it is not known.
    std::optional<long long> videoOffset; ///< Ticks: where the time 0 of the video lies.
    CameraSetup setup;
    std::vector<PlannedKeyframe> keyframes;

    double toSeconds(long long tick) const;
    /// Seconds on the video's clock; a video whose offset is not known starts at tick 0.
    double toVideoSeconds(long long tick) const;
    /// Output pixels per recording pixel: 1 shows the recording pixel for pixel, 0.5 at half its size.
    double zoomOf(double frameWidth) const;

    std::vector<OV_TIME_RECT> frames() const;
    /// Throws `std::invalid_argument` when no path can be made of it.
    CameraPath path() const { return {frames(), setup}; }

    friend bool operator==(const CameraPlan&, const CameraPlan&) = default;
};

} // namespace OrvantaNS::command
