// Fuzz target: the director's keyframes of a whole clip, with any controls.

#include <cmath>

#include "Check.h"
#include "OrvantaDirector.h"
#include "OrvantaException.h"
#include "RequestDecoder.h"
#include "frame/Geometry.h"

namespace {

using namespace OrvantaNS;
using namespace OrvantaNS::fuzz;

/// Ends long runs: a clip of days on a fine clock takes its time by its nature.
class Impatient : public ProgressReporter {
public:
    void reportProgress(double percent) override { FUZZ_CHECK(percent >= 0.0 && percent <= 100.0); }
    bool isCancelled() override { return ++questions_ > 400; }

private:
    int questions_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteReader bytes(data, size);
    const Params params = decodeRequest(bytes).params;
    DirectorControls controls;
    const std::uint8_t choice = size > 0 ? data[size - 1] : 0;
    controls.calm = 0.25 * (1 + choice % 12);
    controls.readable = choice % 3 == 0 ? 1.0 : 0.75;
    controls.presses = choice % 5 == 0 ? DirectorPresses::Cheap : DirectorPresses::Always;
    controls.overhang = choice % 7 == 0;
    try {
        Impatient reporter;
        const auto keyframes = OrvantaDirector(controls).calcOrvantaKeyframes(params, &reporter);
        FUZZ_CHECK(keyframes != nullptr && !keyframes->empty());
        const bool isOneRegion = params.recordingRegions().size() == 1;
        const Rectangle bound = localRegion(params.recordingRegions().front().rect);
        for (const OV_TIME_RECT& keyframe : *keyframes) {
            FUZZ_CHECK(keyframe.time >= params.clipStart());
            FUZZ_CHECK(!isOneRegion || controls.overhang || contains(bound, keyframe.rect));
            FUZZ_CHECK(!isOneRegion || keyframe.rect.right > keyframe.rect.left);
        }
    } catch (const OrvantaException& failure) {
        FUZZ_CHECK(failure.errorCode() >= OVERR_BAD_TARGET_SIZE && failure.errorCode() <= OVERR_USER_CANCELLED);
    }
    return 0;
}
