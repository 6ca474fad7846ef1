#include "Params.h"

namespace OrvantaNS {

Params& Params::setTargetWidth(int width) {
    targetWidth_ = width;
    return *this;
}

Params& Params::setTargetHeight(int height) {
    targetHeight_ = height;
    return *this;
}

Params& Params::setTimeScale(double ticksPerSecond) {
    timeScale_ = ticksPerSecond;
    return *this;
}

Params& Params::setFadeDuration(long long ticks) {
    fadeDuration_ = ticks;
    return *this;
}

Params& Params::setClipInterval(long long start, long long stop) {
    clipStart_ = start;
    clipStop_ = stop;
    return *this;
}

Params& Params::setWindowsFlag(bool isWindows) {
    windowsFlag_ = isWindows;
    return *this;
}

} // namespace OrvantaNS
