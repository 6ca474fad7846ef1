// Fuzz target: the value engine's keyframe for one moment.

#include <algorithm>
#include <cmath>

#include "Check.h"
#include "EngineChecks.h"
#include "OrvantaWorker.h"
#include "RequestDecoder.h"
#include "frame/DataStore.h"
#include "frame/Geometry.h"
#include "parser/DataParser.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

// The objects that the answer is made from, by the stages that lead to it.
bool hasUprightObjects(const Params& params, long long time) {
    const OrvantaWorker engine;
    OV_DATA_STORE store;
    store.clipStart = DataParser::convertTime(params.clipStart());
    store.clipStop = DataParser::convertTime(params.clipStop());
    engine.createLiveZoneAtTime(params, store, time);
    DataParser parser;
    engine.parseObjectData(params, store, parser);
    return std::all_of(store.valueObjects.begin(), store.valueObjects.end(), [](const OV_VALUE_OBJECT& object) {
        return object.rect.left <= object.rect.right && object.rect.top <= object.rect.bottom;
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const DecodedRequest request = decodeRequest(bytes);
    const Params& params = request.params;

    const OrvantaWorker engine;
    const Answer answer = ask([&] { return engine.calcOrvantaKeyframeAtTime(params, request.queryTime); });
    if (answer.outOfMemory) {
        return 0;
    }
    const OrvantaWorker fresh;
    FUZZ_CHECK(answer == ask([&] { return engine.calcOrvantaKeyframeAtTime(params, request.queryTime); }));
    FUZZ_CHECK(answer == ask([&] { return fresh.calcOrvantaKeyframeAtTime(params, request.queryTime); }));
    if (answer.code.has_value()) {
        FUZZ_CHECK(*answer.code <= OVERR_BAD_REGION);
        return 0;
    }
    FUZZ_CHECK(answer.keyframes != nullptr && answer.keyframes->size() == 1);
    const OV_TIME_RECT& keyframe = answer.keyframes->front();
    FUZZ_CHECK(keyframe.time == request.queryTime);
    if (isTame(params)) {
        FUZZ_CHECK(liesInRegion(keyframe.rect, params));
        FUZZ_CHECK(hasTargetAspect(keyframe.rect, params) || !hasUprightObjects(params, request.queryTime));
    }
    return 0;
}
