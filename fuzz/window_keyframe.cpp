// Fuzz target: the frame of one window, from both engines.

#include <algorithm>

#include "Check.h"
#include "EngineChecks.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "RequestDecoder.h"
#include "frame/Geometry.h"

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    DecodedRequest request = decodeRequest(bytes);
    Params& params = request.params;

    const OrvantaWorker engine;
    const Answer answer = ask([&] { return engine.calcKeyframeAtWindow(params); });
    const OrvantaWorker fresh;
    FUZZ_CHECK(answer == ask([&] { return engine.calcKeyframeAtWindow(params); }));
    FUZZ_CHECK(answer == ask([&] { return fresh.calcKeyframeAtWindow(params); }));

    const Answer vote = ask([&] { return OrvantaVotingAlgorithm().calcKeyframeAtWindow(params); });
    FUZZ_CHECK(vote.keyframes == nullptr && !vote.code.has_value());

    if (answer.code.has_value()) {
        FUZZ_CHECK(answer.code == OVERR_TARGET_TOO_LARGE || answer.code == OVERR_BAD_REGION);
        return 0;
    }
    FUZZ_CHECK(answer.keyframes != nullptr && answer.keyframes->size() == 1);
    const OV_TIME_RECT keyframe = answer.keyframes->front();
    FUZZ_CHECK(keyframe.time == 0);
    if (isTame(params)) {
        FUZZ_CHECK(liesInRegion(keyframe.rect, params));
        FUZZ_CHECK(hasTargetAspect(keyframe.rect, params));
    }

    // Nothing but the first window, the first region and the target counts.
    params.foreWindows().resize(1);
    params.recordingRegions().resize(1);
    params.cursorLocations().clear();
    params.cursorActions().clear();
    params.dirtyRects().clear();
    params.caretRects().clear();
    params.foreWindows().front().time = request.queryTime;
    params.setTimeScale(0.0).setFadeDuration(-1).setClipInterval(5, 3);
    FUZZ_CHECK(answer == ask([&] { return engine.calcKeyframeAtWindow(params); }));
    return 0;
}
