#include "render/PicturePass.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "render/OrderedWorkers.h"

namespace OrvantaNS::render {

AVRational passTimeBase(const VideoReader& reader, const PassPlan& plan) {
    return plan.rate ? av_inv_q(*plan.rate) : reader.timeBase();
}

PictureRegion regionAt(const PassPlan& plan, const AVFrame& source, double videoSeconds) {
    const PictureRegion view = plan.camera(videoSeconds);
    const double sizeX = source.width / plan.recordedWidth;
    const double sizeY = source.height / plan.recordedHeight;
    return {view.left * sizeX, view.top * sizeY, view.width * sizeX, view.height * sizeY};
}

PassResult runPass(VideoReader& reader, const PassPlan& plan, const std::function<void(PaintedPicture)>& take,
                   const std::function<void(SoundPacket)>& sound, const StopQuestion& stop) {
    PassResult result;
    const AVRational timeBase = passTimeBase(reader, plan);
    using Workers = OrderedWorkers<TimedPicture, PaintedPicture>;
    const auto makeWork = [&plan, timeBase]() -> Workers::Work {
        const auto painter = std::make_shared<FramePainter>(plan.form, plan.fill);
        return [&plan, timeBase, painter](TimedPicture timed) {
            PaintedPicture painted;
            painted.picture = painter->paint(*timed.source, regionAt(plan, *timed.source, timed.videoSeconds));
            painted.stamp = timed.stamp;
            painted.duration = timed.duration;
            painted.clipSeconds = static_cast<double>(timed.stamp) * av_q2d(timeBase);
            return painted;
        };
    };
    Workers workers(static_cast<std::size_t>(std::max(plan.threads, 1)), makeWork, take);
    FrameClock clock(reader.timeBase(), plan.clip, plan.rate, [&](TimedPicture picture) {
        ++result.pictures;
        workers.push(std::move(picture));
    });
    while (!clock.done() && !stop()) {
        VideoReader::Event event = reader.next();
        if (auto* picture = std::get_if<DecodedPicture>(&event)) {
            clock.add(std::move(picture->picture), picture->stamp, picture->duration);
        } else if (auto* packet = std::get_if<SoundPacket>(&event)) {
            sound(std::move(*packet));
        } else {
            clock.finish();
        }
    }
    workers.finish();
    result.dropped = clock.dropped();
    result.reachedSeconds = clock.reachedSeconds();
    return result;
}

} // namespace OrvantaNS::render
