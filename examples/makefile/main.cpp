// Where does the picture stand at one moment? The voting engine, asked about a click.
#include <cstdio>

#include "OrvantaVotingAlgorithm.h"

int main() {
    using namespace OrvantaNS;
    Params params;
    params.setTargetWidth(640).setTargetHeight(400);
    params.setTimeScale(1000.0).setFadeDuration(1000).setClipInterval(0, 60000); // One minute, in milliseconds.
    params.recordingRegions() = {{0, {0, 1280, 0, 800}}};                        // Left, right, top, bottom.
    params.cursorLocations() = {{0, 640, 400}, {9800, 200, 150}};
    params.cursorActions() = {{10000, 0}, {10100, 1}}; // A click with the left button.
    try {
        const Rectangle frame = OrvantaVotingAlgorithm().calcOrvantaKeyframeAtTime(params, 10000)->front().rect;
        std::printf("left %d, right %d, top %d, bottom %d\n", frame.left, frame.right, frame.top, frame.bottom);
    } catch (const OrvantaException& failure) {
        std::printf("%s (code %d)\n", failure.what(), failure.errorCode());
        return 1;
    }
    return 0;
}
