// The shortest road from a request to a frame: one window in, one keyframe out, with no timeline.

#include "OrvantaWorker.h"

#include "frame/Geometry.h"

namespace OrvantaNS {

OrvantaWorker::KeyframeList OrvantaWorker::calcKeyframeAtWindow(const Params& params) const {
    if (params.recordingRegions().empty()) {
        throw OrvantaException("Need String! Must have at least one Recording Region!", OVERR_BAD_REGION);
    }
    if (params.foreWindows().empty()) {
        throw OrvantaException("Need String! Must have at least one Foreground Window!", OVERR_BAD_REGION);
    }
    const Rectangle& region = params.recordingRegions().front().rect;
    if (params.targetWidth() > width(region) && params.targetHeight() > height(region)) {
        throw OrvantaException("Need String! Target dimensions stretch beyond the recording region",
                               OVERR_TARGET_TOO_LARGE);
    }
    if (params.targetWidth() < 1 && params.targetHeight() < 1) {
        throw OrvantaException("Need String! Target dimensions must be greater than zero", OVERR_TARGET_TOO_LARGE);
    }

    const Rectangle bound = localRegion(region);
    Rectangle rect = relativeTo(intersection(params.foreWindows().front().rect, region), region.left, region.top);
    if (isEmpty(rect)) {
        rect = bound; // the window lies off the recording: show everything
    }
    int padWidth = params.targetWidth();
    int padHeight = params.targetHeight();
    calculatePadding(padWidth, padHeight, bound, rect);
    padToAspectRatio(rect, padWidth, padHeight, rect, bound);

    auto result = std::make_shared<std::vector<OV_TIME_RECT>>();
    result->push_back({0, rect});
    return result;
}

} // namespace OrvantaNS
