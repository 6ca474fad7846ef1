// What the picture shows at every moment of a clip: the keyframes, and the moves between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "CameraEasing.h"
#include "OrvantaCameraExport.h"
#include "OrvantaRecords.h"
#include "Params.h"

namespace OrvantaNS {

/// What the output frame shows: a rectangle of the recording, in local pixels, fractions included. (0, 0) is the top
/// left of the first recording region; y grows downward.
struct CameraFrame {
    double left = 0.0;   ///< Left edge.
    double top = 0.0;    ///< Top edge.
    double width = 0.0;  ///< Above 0.
    double height = 0.0; ///< Above 0; `width` / `height` is the target's shape.
    /// The frame is wider or higher than the recording. It then stands out evenly on both sides of that dimension.
    bool overhangs = false;

    friend bool operator==(const CameraFrame&, const CameraFrame&) = default;
};

/// One move of the camera.
struct CameraMove {
    long long start = 0; ///< Ticks: the moment at which the camera sets off.
    /// Ticks: the moment at which the move is over, or at which the next one takes over. As large as a tick can be where
    /// the sum of start and fade would be larger.
    long long stop = 0;
    CameraFrame from;         ///< On show at `start`.
    CameraFrame to;           ///< Where the move leads; on show from `stop` on unless the move is cut short.
    bool cutShort = false;    ///< The next move begins before this one is over, from where the camera is then.
    std::size_t keyframe = 0; ///< Index of its keyframe in the list that the path was made from.

    friend bool operator==(const CameraMove&, const CameraMove&) = default;
};

/// What a path is made from, beside the keyframes.
struct CameraSetup {
    Rectangle region;              ///< The first recording region, screen pixels; its size alone counts.
    std::int32_t targetWidth = 0;  ///< The output frame, output pixels; its shape alone counts. Above 0.
    std::int32_t targetHeight = 0; ///< Above 0.
    double timeScale = 100.0;      ///< Ticks per second; above 0 and finite.
    long long fadeDuration = 100;  ///< Ticks that a move takes; 0 or more. With 0 the picture jumps.
    long long clipStart = 0;       ///< Ticks: the whole recording is on show here.
    long long clipStop = 0;        ///< Ticks: where the clip ends. No frame depends on it.
    CameraEasing easing;           ///< How every move spreads over its time.

    /// The setup of a request: its first recording region (none gives an empty one), target, time scale, fade and clip.
    static ORVANTA_CAMERA_EXPORT CameraSetup of(const Params& params, const CameraEasing& easing = {});

    friend bool operator==(const CameraSetup&, const CameraSetup&) = default;
};

/// The camera's path through a clip.
///
/// ```
///  whole recording     move     keyframe 1's frame      move      keyframe 2's frame
/// |----------------|/////////|----------------------|/////////|----------------------> time
/// clip's       keyframe 1    keyframe 1's       keyframe 2    keyframe 2's
/// start        's time       time + fade        's time       time + fade
/// ```
///
/// The whole recording is on show from the clip's start, and before it. At each keyframe's time a move begins that takes
/// the fade; then the frame holds. A keyframe that comes before the move before it is over starts from where the camera
/// is then. Keyframes may come in any order; of several at one time the last one given counts. Keyframes before the
/// clip's start count as standing at it, so that the last of them leads the first move.
///
/// Every frame has exactly the target's shape. A keyframe's whole-pixel rectangle, which is up to a pixel off that shape,
/// keeps its centre and grows on its short side, so that nothing of it is lost; then it is moved to lie inside the
/// recording. Where it is too large for that in a dimension, it stands out evenly on both sides of it: such as the whole
/// recording in a portrait frame.
///
/// A move goes evenly to the eye. The logarithm of the frame's size goes evenly from one end to the other (along the
/// easing), because twice as large looks like the same step whatever the size. And the frame's edges go along with the
/// size, so that the point that has the same place in both frames keeps its place in the picture all the way: a pure zoom
/// closes in on one point, which a straight way of the centre would let swing through the picture. A pure pan goes
/// straight. In a dimension in which one end stands out, the frame stays centred until it fits, and goes on from there.
///
/// Frames are the same to the last bit with every compiler and standard library, and in whatever order they are asked for.
/// A path is a value; any number of threads may ask one path at once.
class ORVANTA_CAMERA_EXPORT CameraPath {
public:
    /// Throws `std::invalid_argument` when the setup is out of the ranges told there, when the region covers no pixel or
    /// when a keyframe's rectangle does not (it is inverted or empty). Rectangles may lie anywhere otherwise.
    CameraPath(const std::vector<OV_TIME_RECT>& keyframes, const CameraSetup& setup);

    /// The frame on show at a moment, ticks.
    CameraFrame frameAt(long long tick) const;
    /// The frame on show at a moment, in seconds on the clock of the ticks (tick / time scale), fractions of a tick
    /// included. A moment that is a whole tick but for the rounding of a double counts as that tick. Infinite moments lie
    /// before the first and after the last move; throws `std::invalid_argument` for what is not a number.
    CameraFrame frameAtSeconds(double seconds) const;
    /// `frameAt` of each moment, in the order given.
    std::vector<CameraFrame> framesAt(std::span<const long long> ticks) const;
    /// `frameAtSeconds` of each moment, in the order given.
    std::vector<CameraFrame> framesAtSeconds(std::span<const double> seconds) const;

    /// The moves, by time. One for each keyframe but those that another one at the same time replaces; a move may lead to
    /// where the camera is.
    const std::vector<CameraMove>& moves() const { return moves_; }

    /// The frame that a path shows for a rectangle in local pixels, once the move to it is over. Throws
    /// `std::invalid_argument` when the rectangle covers no pixel.
    CameraFrame frameOf(const Rectangle& rect) const;
    /// The frame that shows the whole recording, such as before the first move.
    const CameraFrame& wholeFrame() const { return whole_; }

    /// What the path was made from, beside the keyframes.
    const CameraSetup& setup() const { return setup_; }

private:
    CameraFrame between(const CameraMove& move, double elapsedTicks) const;

    CameraSetup setup_;
    double regionWidth_ = 0.0;
    double regionHeight_ = 0.0;
    CameraFrame whole_;
    std::vector<CameraMove> moves_;
};

} // namespace OrvantaNS
