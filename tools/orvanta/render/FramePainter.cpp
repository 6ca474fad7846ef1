#include "render/FramePainter.h"

#include <algorithm>
#include <cmath>

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

// Source pixels. A path computed in doubles may end this far outside without a fill being meant.
constexpr double kEdgeTolerance = 1e-3;

/// A stretch of the output that the source covers, along one axis.
struct Span {
    double from = 0.0; // Output pixels.
    double to = 0.0;
    int first = 0; // Whole pixels around it, multiples of `step`.
    int last = 0;
};

Span coveredSpan(double start, double length, int sourceSide, int side, int step) {
    const double scale = side / length;
    Span span;
    span.from = std::clamp(-start * scale, 0.0, static_cast<double>(side));
    span.to = std::clamp((sourceSide - start) * scale, 0.0, static_cast<double>(side));
    span.first = static_cast<int>(std::floor(span.from / step)) * step;
    span.last = std::min(static_cast<int>(std::ceil(span.to / step)) * step, side);
    return span;
}

} // namespace

FramePointer FramePainter::described(FramePointer picture) const {
    picture->color_range = form_.range;
    picture->colorspace = form_.matrix;
    picture->color_primaries = form_.primaries;
    picture->color_trc = form_.transfer;
    picture->chroma_location = form_.siting;
    return picture;
}

FramePointer FramePainter::toPlanar(const AVFrame& source) {
    const auto format = static_cast<AVPixelFormat>(source.format);
    const AVPixelFormat planar = nearestPlanar(format);
    unpack_.reset(sws_getCachedContext(unpack_.release(), source.width, source.height, format, source.width,
                                       source.height, planar, SWS_POINT | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
    if (unpack_ == nullptr) {
        throw RenderError("the video's pixel format cannot be read");
    }
    FramePointer picture = newPicture(source.width, source.height, planar);
    checkAv(av_frame_copy_props(picture.get(), &source), "the picture cannot be unpacked");
    checkAv(sws_scale(unpack_.get(), source.data, source.linesize, 0, source.height, picture->data, picture->linesize),
            "the picture cannot be unpacked");
    return picture;
}

FramePointer FramePainter::paint(const AVFrame& source, const PictureRegion& frame) {
    if (!planarLayout(static_cast<AVPixelFormat>(source.format))) {
        return paint(*toPlanar(source), frame);
    }
    FramePointer target = described(pool_.picture());
    if (frame.left >= -kEdgeTolerance && frame.top >= -kEdgeTolerance &&
        frame.left + frame.width <= source.width + kEdgeTolerance &&
        frame.top + frame.height <= source.height + kEdgeTolerance) {
        scaler_.scale(source, frame, *target);
    } else {
        paintOverhanging(source, frame, *target);
    }
    return target;
}

void FramePainter::paintOverhanging(const AVFrame& source, const PictureRegion& frame, AVFrame& target) {
    const PixelLayout layout = *planarLayout(form_.format);
    const Span across = coveredSpan(frame.left, frame.width, source.width, target.width, 1 << layout.subsampleWidth);
    const Span down = coveredSpan(frame.top, frame.height, source.height, target.height, 1 << layout.subsampleHeight);
    const double left = std::max(frame.left, 0.0);
    const double top = std::max(frame.top, 0.0);
    const PictureRegion visible{left, top, std::min(frame.left + frame.width, static_cast<double>(source.width)) - left,
                                std::min(frame.top + frame.height, static_cast<double>(source.height)) - top};
    if (!(visible.width > 0.0 && visible.height > 0.0)) {
        // Nothing of the recording shows; a blur of all of it is as good as any.
        fill_.paint(source, {0.0, 0.0, static_cast<double>(source.width), static_cast<double>(source.height)}, target);
        return;
    }
    fill_.paint(source, visible, target);
    // The recording is painted on whole pixels around the place that it covers, each sample where the exact frame has it.
    const FramePointer picture =
        described(newPicture(across.last - across.first, down.last - down.first, form_.format));
    const double sizeX = frame.width / target.width; // Source pixels per output pixel.
    const double sizeY = frame.height / target.height;
    scaler_.scale(source,
                  {frame.left + across.first * sizeX, frame.top + down.first * sizeY, picture->width * sizeX,
                   picture->height * sizeY},
                  *picture);
    layOver(*picture, across.first, down.first, {across.from, down.from, across.to - across.from, down.to - down.from},
            target);
}

} // namespace OrvantaNS::render
