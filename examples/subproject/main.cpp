// Frames one window: the shortest question there is, without a timeline.
#include <cstdio>

#include "OrvantaWorker.h"

int main() {
    using namespace OrvantaNS;
    Params params;
    params.setTargetWidth(640).setTargetHeight(400);
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}}; // Left, right, top, bottom.
    params.foreWindows() = {{0, {100, 500, 100, 300}}};
    try {
        const Rectangle frame = OrvantaWorker().calcKeyframeAtWindow(params)->front().rect;
        std::printf("left %d, right %d, top %d, bottom %d\n", frame.left, frame.right, frame.top, frame.bottom);
    } catch (const OrvantaException& failure) {
        std::printf("%s (code %d)\n", failure.what(), failure.errorCode());
        return 1;
    }
    return 0;
}
