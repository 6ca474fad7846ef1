#include "reading/CameraPlan.h"

#include "frame/TimeModel.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS::command {

double CameraPlan::toSeconds(long long tick) const { return ticksToSeconds(tick, setup.timeScale); }

double CameraPlan::toVideoSeconds(long long tick) const {
    return ticksToSeconds(wrapSub(tick, videoOffset.value_or(0)), setup.timeScale);
}

double CameraPlan::zoomOf(double frameWidth) const { return frameWidth > 0.0 ? setup.targetWidth / frameWidth : 0.0; }

std::vector<OV_TIME_RECT> CameraPlan::frames() const {
    std::vector<OV_TIME_RECT> frames;
    frames.reserve(keyframes.size());
    for (const PlannedKeyframe& keyframe : keyframes) {
        frames.push_back(keyframe.frame);
    }
    return frames;
}

} // namespace OrvantaNS::command
