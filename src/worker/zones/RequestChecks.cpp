// The checks that both timeline questions of the value engine begin with.

#include "worker/zones/RequestChecks.h"

#include <iostream>

#include "OrvantaException.h"
#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// The smallest side of an output frame, pixels: below it a frame shows too little to be worth following.
constexpr std::int32_t kSmallestTargetSide = 64;
// The smallest recording, pixels: the area of the smallest target.
constexpr std::int32_t kSmallestRegionArea = kSmallestTargetSide * kSmallestTargetSide;

// Each line is flushed on its own: the host may end at the exception that follows.
void printSize(const char* what, std::int32_t width, std::int32_t height) {
    std::cout << what << " Width: " << width << std::endl;
    std::cout << what << " Height: " << height << std::endl;
}

} // namespace

void checkRequest(const Params& params, RefusalOutput output) {
    const bool isPrinted = output == RefusalOutput::printed;
    if (params.targetWidth() < kSmallestTargetSide || params.targetHeight() < kSmallestTargetSide) {
        if (isPrinted) {
            printSize("Passed", params.targetWidth(), params.targetHeight());
        }
        throw OrvantaException("Need String! Passed bad width/height to Orvanta", OVERR_BAD_TARGET_SIZE);
    }
    if (params.recordingRegions().empty()) {
        throw OrvantaException("Need String! Must have at least one Recording Region!", OVERR_BAD_REGION);
    }
    const Rectangle& region = params.recordingRegions().front().rect;
    // A target that is larger in one dimension only is taken: it can still be filled by shrinking the other.
    if (width(region) <= params.targetWidth() && height(region) <= params.targetHeight()) {
        if (isPrinted) {
            printSize("Passed", params.targetWidth(), params.targetHeight());
            printSize("Recording", width(region), height(region));
        }
        throw OrvantaException(
            "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta",
            OVERR_TARGET_TOO_LARGE);
    }
    if (params.timeScale() == 0.0) {
        throw OrvantaException("Need String! TimeScale may not be Zero!", OVERR_BAD_TIME_SCALE);
    }
    if (area(region) < kSmallestRegionArea) {
        throw OrvantaException("Need String! Recording Region is not large enough!", OVERR_BAD_REGION);
    }
}

} // namespace OrvantaNS
