#include "render/RenderPlan.h"

#include <algorithm>

#include <fmt/format.h>

#include "render/PixelLayout.h"
#include "render/RenderError.h"

namespace OrvantaNS::render {

PassPlan planOf(const RenderJob& job) {
    PassPlan plan;
    plan.fill = job.fill;
    plan.clip = job.clip;
    plan.rate = job.rate;
    plan.camera = job.camera;
    plan.recordedWidth = job.recordedWidth;
    plan.recordedHeight = job.recordedHeight;
    plan.threads = job.threads;
    return plan;
}

PictureForm convertedForm(const AVFrame& sample, const RenderJob& job, AVPixelFormat format) {
    PictureForm form;
    form.width = job.width;
    form.height = job.height;
    form.format = format;
    form.primaries = sample.color_primaries;
    form.transfer = sample.color_trc;
    const auto from = planarLayout(nearestPlanar(static_cast<AVPixelFormat>(sample.format)));
    const auto to = planarLayout(format);
    if (to && to->family == ZIMG_COLOR_RGB) {
        form.range = AVCOL_RANGE_JPEG;
        form.matrix = AVCOL_SPC_RGB;
    } else if (from && from->family == ZIMG_COLOR_YUV) {
        form.range = isFullRange(sample) ? AVCOL_RANGE_JPEG : sample.color_range;
        form.matrix = sample.colorspace;
        form.siting = sample.chroma_location;
    } else {
        form.range = AVCOL_RANGE_MPEG;
        form.matrix = AVCOL_SPC_BT709;
        form.siting = AVCHROMA_LOC_LEFT;
    }
    return form;
}

void goToStart(VideoReader& reader, const VideoClip& clip) {
    // Below this the way there is not worth a jump, seconds.
    constexpr double kNear = 2.0;
    if (clip.start > kNear) {
        reader.seek(clip.start);
    }
}

double expectedSeconds(const VideoReader& reader, const VideoClip& clip) {
    const std::optional<double> claimed = reader.claimedSeconds();
    const double end =
        clip.stop && claimed ? std::min(*clip.stop, *claimed) : clip.stop.value_or(claimed.value_or(0.0));
    return std::max(end - clip.start, 0.0);
}

void checkNotEmpty(const PassResult& result, const VideoReader& reader, const VideoClip& clip) {
    if (result.pictures > 0) {
        return;
    }
    if (const std::string complaint = reader.complaint(); !complaint.empty()) {
        throw VideoError(fmt::format("{}; nothing of the clip is in it", complaint));
    }
    throw VideoError(fmt::format("the video ends at {:.1f} s of its own time, and the clip starts at {:.1f} s",
                                 result.reachedSeconds, clip.start));
}

void addNotes(RenderOutcome& outcome, const VideoReader& reader, const PassResult& result) {
    if (result.dropped > 0) {
        outcome.notes.push_back(fmt::format(
            "{} of the video's pictures had time stamps that did not go forward, and were left out", result.dropped));
    }
    if (reader.otherStreams() > 0) {
        outcome.notes.emplace_back("subtitles, data and further pictures of the video were left out");
    }
}

} // namespace OrvantaNS::render
