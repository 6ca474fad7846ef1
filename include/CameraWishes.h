// What a person wants otherwise: stretches that show this or that, limits of the zoom, rests. Wishes outlive the engine's
// answer: they are applied anew to whatever it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "CameraPath.h"
#include "Interval_Type.h"
#include "OrvantaCameraExport.h"
#include "OrvantaRecords.h"

namespace OrvantaNS {

/// A stretch of time, ticks: from `start` on, up to but not including `stop`, which is later.
using CameraStretch = Interval_Type<long long>;

/// A frame of one's own for a stretch: at its start the camera sets off to `rect`, at its stop to where it would be
/// without the pin.
struct CameraPin {
    CameraStretch stretch; ///< When.
    Rectangle rect;        ///< Local pixels; covers at least one.

    friend bool operator==(const CameraPin& a, const CameraPin& b) {
        return a.stretch.start == b.stretch.start && a.stretch.stop == b.stretch.stop && a.rect == b.rect;
    }
};

/// The wishes for one clip. None by default.
struct CameraWishes {
    std::vector<CameraPin> pins;        ///< Of two that overlap, the one later in the list counts.
    std::vector<CameraStretch> whole;   ///< The whole recording is on show; a pin in such a stretch counts.
    std::vector<CameraStretch> keepOut; ///< The camera rests; what it would move to waits until the stop.
    /// Zoom of the furthest frame, output pixels per recording pixel; above 0 and finite. For the engine's keyframes.
    std::optional<double> leastZoom;
    /// Zoom of the closest frame; above 0, finite, and not below `leastZoom`. For the engine's keyframes.
    std::optional<double> greatestZoom;
    /// Ticks from the end of a move to the start of the next, at least; 0 or more.
    std::optional<long long> leastRest;

    /// True when nothing is wished.
    bool empty() const {
        return pins.empty() && whole.empty() && keepOut.empty() && !leastZoom && !greatestZoom && !leastRest;
    }
};

/// What a keyframe goes back to.
enum class CameraOrigin : std::uint8_t {
    Keyframe = 0, ///< One of the keyframes given; its rectangle may have another size, its time be later.
    Pin = 1,      ///< A pin.
    Whole = 2,    ///< A stretch on the whole recording.
    Start = 3,    ///< The whole recording as the clip begins: where a stretch before the first keyframe goes back to.
};

/// A keyframe of the list that wishes lead to.
struct CameraWishedKeyframe {
    OV_TIME_RECT frame;                           ///< The keyframe: ticks, local pixels.
    CameraOrigin origin = CameraOrigin::Keyframe; ///< What it goes back to.
    std::size_t index = 0; ///< Of the keyframe, the pin or the stretch in the list given; 0 for `Start`.

    friend bool operator==(const CameraWishedKeyframe& a, const CameraWishedKeyframe& b) {
        return a.frame.time == b.frame.time && a.frame.rect == b.frame.rect && a.origin == b.origin &&
               a.index == b.index;
    }
};

/// The keyframes that the wishes make of `keyframes`. `setup` gives the region, the target's size, the fade and the clip.
///
/// Without wishes the result is the list given, in its order, to the last bit. Otherwise it is sorted by time, made in
/// this order (docs/camera-path.md works each step out):
///
/// 1. The keyframes are sorted by time (of several at one time the last one given stays), and those beyond a limit of the
///    zoom get the nearest size within it.
/// 2. Stretches are laid over them, first those on the whole recording, then the pins, in the order given: each takes the
///    place of what begins within it, and at its stop the camera sets off to what would be on show then.
/// 3. The keyframes of origin `Keyframe` and `Start` are moved out of each kept-out stretch, to its stop, when their move
///    would touch it.
/// 4. The same keyframes wait until the least rest has passed after the move before them (and then for the stop of a
///    kept-out stretch that they get into); where it could not pass before the next pin or stretch on the whole, they are
///    left out.
/// 5. What comes at or behind the clip's stop is left out, where that lies behind the clip's start.
///
/// Wherever a keyframe would come no earlier than one behind it in the list, it is left out. After steps 2 and 3 a keyframe
/// of origin `Keyframe` or `Start` that shows what the one before it shows is left out, and after step 4 any such keyframe.
///
/// Throws `std::invalid_argument` for a setup or keyframes that `CameraPath` refuses, and for wishes out of the ranges told
/// above.
ORVANTA_CAMERA_EXPORT std::vector<CameraWishedKeyframe>
applyWishes(const std::vector<OV_TIME_RECT>& keyframes, const CameraSetup& setup, const CameraWishes& wishes);

} // namespace OrvantaNS
