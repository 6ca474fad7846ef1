// The abstract engine: three questions about one recording.
#pragma once

#include <memory>
#include <vector>

#include "OrvantaException.h"
#include "OrvantaExport.h"
#include "OrvantaRecords.h"
#include "Params.h"
#include "ProgressReporter.h"

namespace OrvantaNS {

/// A virtual camera operator. Engines have no state: one is cheap to create and may serve any number of calls, also at the
/// same time on different threads, whatever the time scales of their requests.
class ORVANTA_EXPORT Orvanta {
public:
    virtual ~Orvanta();

    /// The keyframes of the whole clip, ordered by time. At its `time` the camera sets off to show its `rect`, in local
    /// pixels: (0, 0) is the top left of the first recording region. The move takes the fade; then the frame holds. What
    /// is on show at every moment is told by `CameraPath` (CameraPath.h, docs/camera-path.md).
    ///
    /// `reporter` may be null, and a run without one cannot be cancelled. Throws `OrvantaException`.
    virtual std::shared_ptr<std::vector<OV_TIME_RECT>> calcOrvantaKeyframes(const Params& params,
                                                                            ProgressReporter* reporter) const = 0;

    /// The one keyframe that holds at `time`, in ticks; the result has one entry. Throws `OrvantaException`.
    virtual std::shared_ptr<std::vector<OV_TIME_RECT>> calcOrvantaKeyframeAtTime(const Params& params,
                                                                                 long long time) const = 0;

    /// The frame for the first foreground window alone, with no timeline; the result has one entry, at time 0. An
    /// engine that has no answer to this question gives a null pointer. Throws `OrvantaException`.
    virtual std::shared_ptr<std::vector<OV_TIME_RECT>> calcKeyframeAtWindow(const Params& params) const = 0;
};

} // namespace OrvantaNS
