// A host in one file: fills a request by hand, asks the value engine, prints the keyframes.
#include <cstdio>

#include "OrvantaWorker.h"

int main() {
    using namespace OrvantaNS;
    Params params;
    params.setTargetWidth(640).setTargetHeight(400);
    params.setTimeScale(1000.0).setFadeDuration(1000).setClipInterval(0, 60000); // One minute, in milliseconds.
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}};                        // Left, right, top, bottom.
    params.cursorLocations() = {{0, 640, 400}, {9800, 200, 150}, {39800, 1100, 700}};
    params.cursorActions() = {{10000, 0}, {10100, 1}, {40000, 0}, {40100, 1}}; // Two clicks with the left button.
    try {
        const auto keyframes = OrvantaWorker().calcOrvantaKeyframes(params, nullptr);
        for (const OV_TIME_RECT& keyframe : *keyframes) {
            std::printf("from %lld ms on: left %d, right %d, top %d, bottom %d\n", keyframe.time, keyframe.rect.left,
                        keyframe.rect.right, keyframe.rect.top, keyframe.rect.bottom);
        }
    } catch (const OrvantaException& failure) {
        std::printf("%s (code %d)\n", failure.what(), failure.errorCode());
        return 1;
    }
    return 0;
}
