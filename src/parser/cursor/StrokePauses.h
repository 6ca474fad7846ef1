// Where the cursor set off on its way to each of many moments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "frame/WrappingArithmetic.h"
#include "parser/DataParser.h"
#include "parser/cursor/MouseStroke.h"

namespace OrvantaNS {

/// A rest between two strokes longer than this is a pause, seconds. Also how soon after a moment a stroke may begin to
/// count as leading to it.
inline constexpr double kPauseSeconds = 0.2;

inline long long firstTime(const MOUSE_STROKE& stroke) { return stroke.points.front().time; }
inline long long lastTime(const MOUSE_STROKE& stroke) { return stroke.points.back().time; }

/// True when the stroke follows the one before it after more than `pause`, ticks.
inline bool isAfterPause(const std::vector<MOUSE_STROKE>& strokes, std::size_t stroke, long long pause) {
    return stroke > 0 && wrapAdd(lastTime(strokes[stroke - 1]), pause) < firstTime(strokes[stroke]);
}

/// Answers `findLastMousePause` of one parser by a search among the strokes instead of a walk over all of them. The parser
/// outlives it, and its kept strokes do not change meanwhile.
class StrokePauses {
public:
    /// `counting` is where the work is counted (`countSteps`), or null; it outlives this, too.
    explicit StrokePauses(DataParser& parser, OV_DATA_STORE* counting = nullptr);

    /// What `findLastMousePause` gives for `time`, seconds.
    double lastBefore(double time) const;

private:
    void count(std::uint64_t steps) const;

    DataParser& parser_;
    OV_DATA_STORE* counting_;
    long long pause_;                    // the least length of a pause, ticks
    bool isInOrder_ = true;              // the strokes stand in order of their first samples
    std::vector<long long> latestStops_; // by stroke: the latest last sample from `pauseStroke` up to it
    std::vector<std::uint32_t> setsOff_; // the strokes that come after a pause, ascending
};

} // namespace OrvantaNS
