// Fuzz target: the value engine's keyframes of a whole clip, with and without a reporter that cancels.

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

// Up to this length of all zones a run must end by itself, seconds. Longer ones, which may take for ever by their
// nature, are cancelled after `kLongRunSteps` questions.
constexpr double kShortSeconds = 3600.0;
constexpr std::uint64_t kLongRunSteps = 3000;

// A zone has a meta pass every 10 seconds, give or take a tick; a slice lasts 0.2 seconds or more; merging pops an
// entry for every slice and a few more for every slice that it folds or fixes.
std::uint64_t stepBudget(double seconds, std::size_t zones) {
    return 100 + 10 * zones + static_cast<std::uint64_t>(std::ceil(seconds * 5.0 * 10.0));
}

// Zones follow each other in time when the regions do, and then so do slices.
bool hasOrderedZones(const Params& params) {
    return params.timeScale() > 0.0 && params.fadeDuration() >= 0 && isSorted(params);
}

bool isUpright(const Rectangle& rect) {
    constexpr std::int32_t kMost = 1 << 16;
    return rect.left <= rect.right && rect.top <= rect.bottom && rect.left >= -kMost && rect.right <= kMost &&
           rect.top >= -kMost && rect.bottom <= kMost;
}

void checkGraphlessStore(const Params& params, const OV_DATA_STORE& store) {
    // Objects stand in order, and slices of a zone meet end to end until merging moves them.
    for (const OV_VALUE_OBJECT& object : store.valueObjects) {
        FUZZ_CHECK(object.type < g_ValueMatrix.size());
        FUZZ_CHECK(object.type != Dead && object.type != MouseIdle && object.type != OffScreen &&
                   object.type != Scroll && object.type != MenuResult);
    }
    for (std::size_t i = 1; i < store.valueObjects.size(); ++i) {
        FUZZ_CHECK(!(store.valueObjects[i].start < store.valueObjects[i - 1].start));
    }
    FUZZ_CHECK(!params.recordingRegions().empty());
}

void checkSlices(const OV_DATA_STORE& store) {
    for (std::size_t i = 0; i < store.slices.size(); ++i) {
        const OV_FOCUS_SLICE& slice = store.slices[i];
        FUZZ_CHECK(slice.map.spaces.size() <= 8);
        FUZZ_CHECK(slice.mergeId == 0 && slice.mergeType == 0 && !slice.keyframe && !slice.blocked);
        FUZZ_CHECK(slice.blank == slice.map.spaces.empty());
        FUZZ_CHECK(slice.stop >= slice.start);
    }
}

void checkShots(const OV_DATA_STORE& store) {
    for (const OV_FOCUS_SLICE& slice : store.slices) {
        FUZZ_CHECK(slice.mergeId >= -1);
        FUZZ_CHECK(slice.mergeType >= 0 && slice.mergeType <= 6);
        FUZZ_CHECK(slice.mergeId == -1 || slice.mergeType != 0);
        FUZZ_CHECK(slice.map.spaces.size() <= 8);
    }
}

void checkKeyframes(const Params& params, const OV_DATA_STORE& store) {
    FUZZ_CHECK(store.keyframes.size() == store.keyframeSlices.size());
    const bool ordered = hasOrderedZones(params);
    for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
        const OV_TIME_RECT& keyframe = store.keyframes[i];
        const OV_FOCUS_SLICE& slice = store.slices[store.keyframeSlices[i]];
        FUZZ_CHECK(keyframe.time == DataParser::revertTime(slice.start));
        FUZZ_CHECK(slice.mergeId != -1 || store.keyframeSlices[i] == 0);
        if (i > 0) {
            FUZZ_CHECK(store.keyframeSlices[i] > store.keyframeSlices[i - 1]);
            FUZZ_CHECK(!(keyframe.rect == store.keyframes[i - 1].rect));
            // A move may be pulled forward to where the cursor set off, but never ahead of the move before it. A time
            // that does not fit 64 bits is the lowest tick.
            FUZZ_CHECK(!ordered || store.keyframes[i - 1].time <= keyframe.time ||
                       keyframe.time == std::numeric_limits<long long>::lowest());
        }
        if (isTame(params)) {
            FUZZ_CHECK(liesInRegion(keyframe.rect, params));
            // Clipping can leave an inverted rectangle, and framing puts its edges in order one by one.
            if (isUpright(slice.breakdown.tier4Rect) && isUpright(slice.breakdown.windowRect)) {
                FUZZ_CHECK(hasTargetAspect(keyframe.rect, params));
            }
        }
    }
}

void checkStages(const Params& params, OrvantaWorker& engine, const Answer& expected) {
    OV_DATA_STORE store;
    const Answer answer = ask([&]() -> Keyframes {
        int stages = 0;
        engine.runPipeline(params, nullptr, store, [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& seen) {
            FUZZ_CHECK(stage == stages);
            FUZZ_CHECK(&seen == &store);
            ++stages;
            switch (stage) {
            case OV_PIPELINE_ZONES:
                FUZZ_CHECK(!store.liveZones.empty());
                break;
            case OV_PIPELINE_OBJECTS:
                checkGraphlessStore(params, store);
                break;
            case OV_PIPELINE_SLICES:
                checkSlices(store);
                break;
            case OV_PIPELINE_SHOTS:
                checkShots(store);
                break;
            case OV_PIPELINE_KEYFRAMES:
                checkKeyframes(params, store);
                break;
            }
        });
        return std::make_shared<std::vector<OV_TIME_RECT>>(store.keyframes);
    });
    FUZZ_CHECK(answer.outOfMemory || expected.outOfMemory || answer == expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const DecodedRequest request = decodeRequest(bytes);
    const Params& params = request.params;
    OrvantaWorker engine;

    const double seconds = zoneSecondsBound(params);
    const bool isShort = !(seconds > kShortSeconds);
    const std::uint64_t budget =
        isShort ? stepBudget(seconds >= 0.0 ? seconds : 0.0, params.recordingRegions().size()) : kLongRunSteps;
    const std::uint64_t cancelAfter =
        isShort
            ? request.cancelAfter
            : std::min<std::uint64_t>(request.cancelAfter == 0 ? kLongRunSteps : request.cancelAfter, kLongRunSteps);

    QuestionCounter counter(cancelAfter, budget);
    const Answer first = ask([&] { return engine.calcOrvantaKeyframes(params, &counter); });
    FUZZ_CHECK(counter.hasCancelled() == (first.code == OVERR_USER_CANCELLED));
    FUZZ_CHECK(first.code.has_value() || first.outOfMemory || (first.keyframes && !first.keyframes->empty()));

    QuestionCounter again(cancelAfter, budget);
    const OrvantaWorker fresh;
    const Answer second = ask([&] { return fresh.calcOrvantaKeyframes(params, &again); });
    if (first.outOfMemory || second.outOfMemory) {
        return 0;
    }
    FUZZ_CHECK(first == second && counter.steps() == again.steps());

    if (!isShort || counter.hasCancelled()) {
        return 0;
    }
    // The run ends by itself, so it may be left alone with the request.
    const Answer silent = ask([&] { return engine.calcOrvantaKeyframes(params, nullptr); });
    FUZZ_CHECK(silent.outOfMemory || silent == first);
    checkStages(params, engine, first);
    return 0;
}
