#include "parser/cursor/StrokePauses.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "frame/Steps.h"

namespace OrvantaNS {

StrokePauses::StrokePauses(DataParser& parser, OV_DATA_STORE* counting)
    : parser_(parser), counting_(counting), pause_(DataParser::revertTime(kPauseSeconds)) {
    const std::vector<MOUSE_STROKE>& strokes = parser.keptStrokes;
    latestStops_.reserve(strokes.size());
    long long latest = std::numeric_limits<long long>::lowest();
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        isInOrder_ = isInOrder_ && (i == 0 || firstTime(strokes[i - 1]) <= firstTime(strokes[i]));
        if (i >= parser.pauseStroke) {
            latest = std::max(latest, lastTime(strokes[i]));
        }
        latestStops_.push_back(latest);
        if (isAfterPause(strokes, i, pause_)) {
            setsOff_.push_back(static_cast<std::uint32_t>(i));
        }
    }
    count(strokes.size());
}

void StrokePauses::count(std::uint64_t steps) const {
    if (counting_ != nullptr) {
        countSteps(*counting_, steps);
    }
}

double StrokePauses::lastBefore(double time) const {
    if (!isInOrder_) {
        count(parser_.keptStrokes.size());
        return parser_.findLastMousePause(time);
    }
    const std::vector<MOUSE_STROKE>& strokes = parser_.keptStrokes;
    long long moment = DataParser::revertTime(time);
    std::size_t i = static_cast<std::size_t>(std::lower_bound(latestStops_.begin(), latestStops_.end(), moment) -
                                             latestStops_.begin());
    // Behind the first stroke that begins too late all do.
    for (i = std::max<std::size_t>(i, parser_.pauseStroke);
         i < strokes.size() && firstTime(strokes[i]) <= wrapAdd(moment, pause_); ++i) {
        count(1);
        if (lastTime(strokes[i]) < moment) {
            continue;
        }
        const auto later = std::upper_bound(setsOff_.begin(), setsOff_.end(), i);
        if (later != setsOff_.begin()) {
            return DataParser::convertTime(firstTime(strokes[*(later - 1)]));
        }
        moment = firstTime(strokes.front());
    }
    return time;
}

} // namespace OrvantaNS
