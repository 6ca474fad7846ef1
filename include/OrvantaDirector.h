// The director: knows the whole recording and finds by search the calmest camera path on which it can be read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Orvanta.h"
#include "OrvantaCameraExport.h"

namespace OrvantaNS {

/// What presses of buttons may ask of the camera.
enum class DirectorPresses : std::uint8_t {
    Always, ///< A press lies in the picture, unless no path can hold it.
    Cheap,  ///< A press may be left out when showing it would cost more than a second and a half of better sight.
};

/// What a host may ask of the director.
struct DirectorControls {
    /// How many seconds of better sight a move must earn, in units of a usual viewer's patience: 0.25 is lively, 1 is
    /// usual, 3 is very calm. Above 0 and finite.
    double calm = 1.0;
    /// The zoom from which text counts as readable, output pixels per recording pixel. Above 0, 1 at most.
    double readable = 0.75;
    /// What presses may ask.
    DirectorPresses presses = DirectorPresses::Always;
    /// Frames may be larger than the recording in one dimension, up to the frame that holds all of it. They then stand
    /// out evenly on both sides; the host fills what is missing.
    bool overhang = false;
};

/// One kind of evidence that a shot was made for.
struct DirectorReason {
    std::string kind;        ///< "press", "drag", "typing", "change", "small window", "page" and so on.
    double weight = 0.0;     ///< Seconds of a viewer's interest during the shot.
    double seen = 0.0;       ///< The share of them that the frame shows, 0 to 1.
    Rectangle rect;          ///< Local pixels: the box around all of it.
    std::uint32_t count = 0; ///< Pieces of evidence.
};

/// One shot of a plan.
struct DirectorShot {
    OV_TIME_RECT keyframe;               ///< As in the list of keyframes.
    std::string text;                    ///< What the shot is for, in words.
    std::vector<DirectorReason> reasons; ///< By weight, most first.
    double cost = 0.0;                   ///< Seconds of missed sight, the moves at both ends included.
    bool hasRunnerUp = false;            ///< There is another frame to compare with.
    Rectangle runnerUp;                  ///< Local pixels: the best other frame for the same time.
    double runnerUpCost = 0.0;           ///< What the shot would have cost with it.
};

/// A whole plan with its reasons.
struct DirectorPlan {
    std::vector<DirectorShot> shots; ///< One for each keyframe, in order.
    double cost = 0.0;               ///< Seconds of missed sight, moves included.
};

/// The director. A host needs the three questions of `Orvanta` alone. Works on all streams of a request; every one of
/// them may be missing. Needs no state and shares none: any number of threads may use one director at once. The same
/// request gives the same answer, to the last bit, on every machine.
class ORVANTA_CAMERA_EXPORT OrvantaDirector : public Orvanta {
public:
    /// What the questions of `Orvanta` answer.
    using KeyframeList = std::shared_ptr<std::vector<OV_TIME_RECT>>;

    /// Throws `std::invalid_argument` for controls out of the ranges told there.
    explicit OrvantaDirector(const DirectorControls& controls = {});
    ~OrvantaDirector() override;

    /// The keyframes of the clip, at least one. Frames are whole pixels inside the recording in the target's shape, as
    /// exactly as its sides' common measure allows, at a zoom of 1 at most where the recording allows it; a rest between
    /// two moves is 1.5 s or longer. The first keyframe stands at the clip's start, but where the whole recording has
    /// the target's shape and the clip begins with it. Regions that change are planned one after the other.
    ///
    /// `reporter` gets 0 to 100 and is asked before each report whether to stop. Throws codes 1 to 4, 7 and 8 of
    /// `OVERR_CODES`: 3 for a time scale that is not above 0 and finite as well, 7 when the clip has no length.
    KeyframeList calcOrvantaKeyframes(const Params& params, ProgressReporter* reporter) const override;
    /// The frame that holds at `time` (ticks) in the plan of the whole clip; the whole recording before the first
    /// keyframe. Throws as `calcOrvantaKeyframes` does.
    KeyframeList calcOrvantaKeyframeAtTime(const Params& params, long long time) const override;
    /// As the value engine answers it. Throws codes 2 and 4.
    KeyframeList calcKeyframeAtWindow(const Params& params) const override;

    /// `calcOrvantaKeyframes` with the reasons. Takes about twice as long.
    DirectorPlan plan(const Params& params, ProgressReporter* reporter) const;

    /// What it was made with.
    const DirectorControls& controls() const { return controls_; }

private:
    DirectorControls controls_;
};

} // namespace OrvantaNS
