#include "bindings/c/RequestFaults.h"

#include <string>

#include "frame/Geometry.h"

namespace OrvantaNS::c {

namespace {

// The smallest side of an output frame, pixels, and the smallest recording, in pixels of area.
constexpr std::int32_t kSmallestSide = 64;
constexpr std::int32_t kSmallestArea = kSmallestSide * kSmallestSide;

std::string sizeText(std::int32_t wide, std::int32_t high) { return std::to_string(wide) + "x" + std::to_string(high); }

std::string targetText(const Params& params) { return sizeText(params.targetWidth(), params.targetHeight()); }

std::string regionText(const Params& params) {
    const Rectangle& region = params.recordingRegions().front().rect;
    return sizeText(width(region), height(region));
}

Failure targetTooSmall(const Params& params) {
    const bool narrow = params.targetWidth() < kSmallestSide;
    return {ORVANTA_BAD_TARGET_SIZE,
            narrow ? ORVANTA_PARAMETER_TARGET_WIDTH : ORVANTA_PARAMETER_TARGET_HEIGHT,
            static_cast<double>(narrow ? params.targetWidth() : params.targetHeight()),
            static_cast<double>(kSmallestSide),
            -1,
            "the output frame is " + targetText(params) + "; both sides must be at least 64 pixels"};
}

Failure noRegion() {
    return {ORVANTA_BAD_REGION,
            ORVANTA_PARAMETER_REGIONS,
            0.0,
            1.0,
            -1,
            "there is no recording region: set one that says which part of the screen was recorded"};
}

Failure targetTooLarge(const Params& params, bool wide, const char* rule) {
    const Rectangle& region = params.recordingRegions().front().rect;
    return {ORVANTA_TARGET_TOO_LARGE,
            wide ? ORVANTA_PARAMETER_TARGET_WIDTH : ORVANTA_PARAMETER_TARGET_HEIGHT,
            static_cast<double>(wide ? params.targetWidth() : params.targetHeight()),
            static_cast<double>(wide ? width(region) : height(region)),
            -1,
            "the output frame of " + targetText(params) + " does not fit the recording of " + regionText(params) +
                ": " + rule};
}

Failure zeroTimeScale() {
    return {ORVANTA_BAD_TIME_SCALE,
            ORVANTA_PARAMETER_TIME_SCALE,
            0.0,
            0.0,
            -1,
            "the time scale is 0; it says how many ticks there are in a second"};
}

Failure regionTooSmall(const Params& params) {
    return {ORVANTA_BAD_REGION,
            ORVANTA_PARAMETER_REGIONS,
            static_cast<double>(area(params.recordingRegions().front().rect)),
            static_cast<double>(kSmallestArea),
            0,
            "the first recording region is " + regionText(params) + "; it must cover at least 4096 pixels"};
}

} // namespace

std::optional<Failure> valueEngineRefusal(const Params& params) {
    if (params.targetWidth() < kSmallestSide || params.targetHeight() < kSmallestSide) {
        return targetTooSmall(params);
    }
    if (params.recordingRegions().empty()) {
        return noRegion();
    }
    const Rectangle& region = params.recordingRegions().front().rect;
    if (width(region) <= params.targetWidth() && height(region) <= params.targetHeight()) {
        return targetTooLarge(params, true, "at least one side must be smaller");
    }
    if (params.timeScale() == 0.0) {
        return zeroTimeScale();
    }
    if (area(region) < kSmallestArea) {
        return regionTooSmall(params);
    }
    return std::nullopt;
}

Failure votingEngineRefusal(std::int32_t code, const Params& params) {
    switch (code) {
    case ORVANTA_BAD_TARGET_SIZE:
        return targetTooSmall(params);
    case ORVANTA_TARGET_TOO_LARGE:
        return targetTooLarge(params, params.targetWidth() >= width(params.recordingRegions().front().rect),
                              "this engine needs both sides smaller");
    case ORVANTA_BAD_TIME_SCALE:
        return zeroTimeScale();
    default:
        return noRegion();
    }
}

Failure windowRefusal(std::int32_t code, const Params& params) {
    if (params.recordingRegions().empty()) {
        return noRegion();
    }
    if (code != ORVANTA_TARGET_TOO_LARGE) {
        return {code, ORVANTA_PARAMETER_WINDOWS, 0.0, 1.0, -1, "there is no foreground window to frame: set one"};
    }
    const Rectangle& region = params.recordingRegions().front().rect;
    if (params.targetWidth() > width(region) && params.targetHeight() > height(region)) {
        return targetTooLarge(params, true, "one side must be no larger");
    }
    return {code,
            ORVANTA_PARAMETER_TARGET_WIDTH,
            static_cast<double>(params.targetWidth()),
            1.0,
            -1,
            "the output frame has no size: set target_width and target_height"};
}

} // namespace OrvantaNS::c
