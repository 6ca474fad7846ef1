// Fuzz target: the three questions to the voting engine.

#include <algorithm>
#include <cmath>

#include "Check.h"
#include "EngineChecks.h"
#include "OrvantaVotingAlgorithm.h"
#include "RequestDecoder.h"
#include "frame/Geometry.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

// Up to this many ticks a second the engine may be given a reporter, which hears of every voted tick.
constexpr double kReportedScale = 1000.0;

// Reports of this engine: at most one for each sample and each voted tick, and the last.
class ReportCounter : public ProgressReporter {
public:
    bool isCancelled() override { fail("the voting engine never asks whether to stop", __FILE__, __LINE__); }
    void reportProgress(double percent) override {
        ++reports;
        FUZZ_CHECK(percent >= 0.0 && percent <= 100.0);
        last = percent;
    }

    std::uint64_t reports = 0;
    double last = 0.0;
};

void checkKeyframes(const Params& params, const std::vector<OV_TIME_RECT>& keyframes) {
    const auto targets = OrvantaVotingAlgorithm().targetRectsForParams(params);
    for (std::size_t i = 0; i < keyframes.size(); ++i) {
        FUZZ_CHECK(std::any_of(targets.begin(), targets.end(),
                               [&](const auto& target) { return target.first == keyframes[i].rect; }));
        FUZZ_CHECK(keyframes[i].time >= 0);
        if (i > 0) {
            FUZZ_CHECK(keyframes[i].time > keyframes[i - 1].time);
            if (params.fadeDuration() > 0) {
                FUZZ_CHECK(keyframes[i].time - keyframes[i - 1].time >= params.fadeDuration());
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const DecodedRequest request = decodeRequest(bytes);
    const Params& params = request.params;
    const OrvantaVotingAlgorithm engine;
    const OrvantaVotingAlgorithm fresh;

    FUZZ_CHECK(engine.calcKeyframeAtWindow(params) == nullptr);

    const Answer clip = ask([&] { return engine.calcOrvantaKeyframes(params, nullptr); });
    FUZZ_CHECK(clip.outOfMemory || clip == ask([&] { return engine.calcOrvantaKeyframes(params, nullptr); }));
    FUZZ_CHECK(clip.outOfMemory || clip == ask([&] { return fresh.calcOrvantaKeyframes(params, nullptr); }));
    if (clip.code.has_value()) {
        FUZZ_CHECK(*clip.code <= OVERR_BAD_REGION);
    } else if (!clip.outOfMemory) {
        checkKeyframes(params, *clip.keyframes);
    }
    if (std::fabs(params.timeScale()) <= kReportedScale) {
        ReportCounter reporter;
        FUZZ_CHECK(clip == ask([&] { return engine.calcOrvantaKeyframes(params, &reporter); }));
        FUZZ_CHECK(clip.code.has_value() ? reporter.reports == 0 : reporter.last == 100.0);
    }

    const Answer moment = ask([&] { return engine.calcOrvantaKeyframeAtTime(params, request.queryTime); });
    FUZZ_CHECK(moment == ask([&] { return fresh.calcOrvantaKeyframeAtTime(params, request.queryTime); }));
    FUZZ_CHECK(moment.code == clip.code);
    if (moment.keyframes != nullptr) {
        FUZZ_CHECK(moment.keyframes->size() == 1 && moment.keyframes->front().time == request.queryTime);
        checkKeyframes(params, {{0, moment.keyframes->front().rect}});
    }
    return 0;
}
