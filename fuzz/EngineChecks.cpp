#include "EngineChecks.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>

#include "Check.h"
#include "frame/Geometry.h"

namespace OrvantaNS::fuzz {

namespace {

bool isTextOf(OVERR_CODES code, const std::string& text) {
    switch (code) {
    case OVERR_BAD_TARGET_SIZE:
        return text == "Need String! Passed bad width/height to Orvanta";
    case OVERR_TARGET_TOO_LARGE:
        return text == "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta" ||
               text == "Need String! Target dimensions stretch beyond the recording region" ||
               text == "Need String! Target dimensions must be greater than zero";
    case OVERR_BAD_TIME_SCALE:
        return text == "Need String! TimeScale may not be Zero!";
    case OVERR_BAD_REGION:
        return text == "Need String! Must have at least one Recording Region!" ||
               text == "Need String! Recording Region is not large enough!" ||
               text == "Need String! Must have at least one Foreground Window!";
    case OVERR_NO_LIVE_ZONES:
        return text == "Need String! No Live Zones detected!";
    case OVERR_MERGE_FAILED:
        // The other text of this code belongs to guards that no request reaches.
        return text == "Need String! somehow we have no slices!";
    case OVERR_NO_KEYFRAMES:
        return text == "No keyframes were created!";
    case OVERR_USER_CANCELLED:
        return text == "Need String! User Cancelled";
    }
    return false;
}

} // namespace

bool QuestionCounter::isCancelled() {
    ++steps_;
    // Asked before every report, and no report follows once the run is told to stop.
    FUZZ_CHECK(steps_ == reports_ + 1);
    FUZZ_CHECK(!hasCancelled_);
    FUZZ_CHECK(steps_ <= budget_);
    hasCancelled_ = cancelAfter_ != 0 && steps_ >= cancelAfter_;
    return hasCancelled_;
}

void QuestionCounter::reportProgress(double) {
    ++reports_;
    FUZZ_CHECK(reports_ == steps_ && !hasCancelled_);
}

bool Answer::operator==(const Answer& other) const {
    const auto isEqual = [](const OV_TIME_RECT& a, const OV_TIME_RECT& b) {
        return a.time == b.time && a.rect == b.rect;
    };
    if (code != other.code || (keyframes == nullptr) != (other.keyframes == nullptr)) {
        return false;
    }
    return keyframes == nullptr ||
           std::equal(keyframes->begin(), keyframes->end(), other.keyframes->begin(), other.keyframes->end(), isEqual);
}

Answer ask(const std::function<Keyframes()>& question) {
    Answer answer;
    try {
        answer.keyframes = question();
    } catch (const OrvantaException& error) {
        FUZZ_CHECK(isTextOf(error.errorCode(), error.what()));
        answer.code = error.errorCode();
    } catch (const std::bad_alloc&) {
        answer.outOfMemory = true;
    }
    return answer;
}

bool hasTargetAspect(const Rectangle& frame, const Params& params) {
    const std::int64_t w = width(frame);
    const std::int64_t h = height(frame);
    const std::int64_t targetWidth = params.targetWidth();
    const std::int64_t targetHeight = params.targetHeight();
    // One side follows from the other by truncation, so it is off by less than a pixel.
    return w >= 0 && h >= 0 && std::abs(w * targetHeight - h * targetWidth) <= std::max(targetWidth, targetHeight);
}

bool liesInRegion(const Rectangle& frame, const Params& params) {
    const Rectangle region = localRegion(params.recordingRegions().front().rect);
    const bool fitsAcross = width(frame) > width(region) || (frame.left >= 0 && frame.right <= region.right);
    const bool fitsDown = height(frame) > height(region) || (frame.top >= 0 && frame.bottom <= region.bottom);
    return fitsAcross && fitsDown;
}

} // namespace OrvantaNS::fuzz
