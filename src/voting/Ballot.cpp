// The ballot of the voting engine: the check of the request and the candidates drawn up from it.
#include <algorithm>

#include "OrvantaVotingAlgorithm.h"
#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// Below this size (pixels) an output frame shows nothing of use.
constexpr std::int32_t kSmallestTarget = 64;

// The rings of candidates, tightest first. The tighter a ring, the more its targets' votes weigh: without that the
// whole recording, which holds everything, would win everywhere.
constexpr int kTightSteps = 4;
constexpr int kTightWeight = 4;
constexpr int kMiddleSteps = 3;
constexpr int kMiddleWeight = 2;
constexpr int kWholeWeight = 1;

} // namespace

void OrvantaVotingAlgorithm::verifyParameters(const Params& params) const {
    if (params.targetWidth() < kSmallestTarget || params.targetHeight() < kSmallestTarget) {
        throw OrvantaException("Need String! Passed bad width/height to Orvanta", OVERR_BAD_TARGET_SIZE);
    }
    if (params.recordingRegions().empty()) {
        throw OrvantaException("Need String! Must have at least one Recording Region!", OVERR_BAD_REGION);
    }
    // Too large in one dimension is too large here: the grids need a range to spread over on both axes.
    const Rectangle& region = params.recordingRegions().front().rect;
    if (params.targetWidth() >= width(region) || params.targetHeight() >= height(region)) {
        throw OrvantaException(
            "Need String! Passed width/height equal to or larger than recording dimensions to Orvanta",
            OVERR_TARGET_TOO_LARGE);
    }
    if (params.timeScale() == 0.0) {
        throw OrvantaException("Need String! TimeScale may not be Zero!", OVERR_BAD_TIME_SCALE);
    }
}

OrvantaVotingAlgorithm::Targets OrvantaVotingAlgorithm::targetRectsForParams(const Params& params) const {
    const Rectangle& region = params.recordingRegions().at(0).rect;
    const std::int32_t regionWidth = width(region);
    const std::int32_t regionHeight = height(region);
    Targets targets;
    generateTargetRects(region, params.targetWidth(), params.targetHeight(), kTightSteps, kTightWeight, targets);
    // Halfway between the output's zoom and no zoom at all. The middle targets have the recording's aspect, not the
    // output's.
    const double zoom = std::min(static_cast<double>(params.targetWidth()) / regionWidth,
                                 static_cast<double>(params.targetHeight()) / regionHeight);
    const double scale = (zoom + 1.0) * 0.5;
    generateTargetRects(region, truncateToInt32(regionWidth * scale), truncateToInt32(regionHeight * scale),
                        kMiddleSteps, kMiddleWeight, targets);
    targets.emplace_back(normalized({0, regionWidth, 0, regionHeight}), kWholeWeight);
    return targets;
}

void OrvantaVotingAlgorithm::generateTargetRects(Rectangle bounds, int width, int height, int steps, int weight,
                                                 Targets& out) const {
    // The positions start from 0, not from the corner of `bounds`, which counts for the range alone.
    const std::int32_t rangeX = wrapSub(wrapSub(bounds.right, width), bounds.left);
    const std::int32_t rangeY = wrapSub(wrapSub(bounds.bottom, height), bounds.top);
    const double last = static_cast<double>(steps) - 1.0;
    for (int i = 0; i < steps; ++i) {
        const std::int32_t x = truncateToInt32(i / last * rangeX);
        for (int j = 0; j < steps; ++j) {
            const std::int32_t y = truncateToInt32(j / last * rangeY);
            out.emplace_back(normalized({x, wrapAdd(x, width), y, wrapAdd(y, height)}), weight);
        }
    }
}

} // namespace OrvantaNS
