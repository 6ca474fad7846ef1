#include <utility>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "render/RenderError.h"
#include "render/RenderPlan.h"
#include "render/VideoRendering.h"

namespace OrvantaNS::render {

namespace {

/// The picture that shows at a moment of the video.
FramePointer pictureAt(VideoReader& reader, double videoSeconds, const StopQuestion& stop) {
    reader.seek(videoSeconds);
    FramePointer shown;
    while (!stop()) {
        VideoReader::Event event = reader.next();
        if (std::holds_alternative<std::monostate>(event)) {
            break;
        }
        if (auto* picture = std::get_if<DecodedPicture>(&event)) {
            const double begins = static_cast<double>(picture->stamp) * av_q2d(reader.timeBase());
            if (shown != nullptr && begins > videoSeconds) {
                break;
            }
            shown = std::move(picture->picture);
            if (begins > videoSeconds) {
                break;
            }
        }
    }
    return shown;
}

std::string pngOf(AVFrame& picture) {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_PNG);
    if (codec == nullptr) {
        throw SettingError("this FFmpeg was built without an encoder for PNG");
    }
    const CodecPointer encoder(avcodec_alloc_context3(codec));
    if (encoder == nullptr) {
        throw std::bad_alloc();
    }
    encoder->width = picture.width;
    encoder->height = picture.height;
    encoder->pix_fmt = static_cast<AVPixelFormat>(picture.format);
    encoder->time_base = {1, 1};
    checkAv(avcodec_open2(encoder.get(), codec, nullptr), "the still cannot be encoded");
    picture.pts = 0;
    checkAv(avcodec_send_frame(encoder.get(), &picture), "the still cannot be encoded");
    checkAv(avcodec_send_frame(encoder.get(), nullptr), "the still cannot be encoded");
    const PacketPointer packet = newPacket();
    checkAv(avcodec_receive_packet(encoder.get(), packet.get()), "the still cannot be encoded");
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

/// From planes to the bytes that PNG has, without a change of values.
FramePointer packed(const AVFrame& planar) {
    FramePointer picture = newPicture(planar.width, planar.height, AV_PIX_FMT_RGB24);
    for (int y = 0; y < planar.height; ++y) {
        const auto row = static_cast<std::ptrdiff_t>(y);
        const std::uint8_t* green = planar.data[0] + row * planar.linesize[0];
        const std::uint8_t* blue = planar.data[1] + row * planar.linesize[1];
        const std::uint8_t* red = planar.data[2] + row * planar.linesize[2];
        std::uint8_t* out = picture->data[0] + row * picture->linesize[0];
        for (int x = 0; x < planar.width; ++x) {
            *out++ = red[x];
            *out++ = green[x];
            *out++ = blue[x];
        }
    }
    return picture;
}

} // namespace

std::string renderStill(VideoReader& reader, const RenderJob& job, double videoSeconds, const StopQuestion& stop) {
    PassPlan plan = planOf(job);
    plan.form = convertedForm(reader.sample(), job, AV_PIX_FMT_GBRP);
    const FramePointer source = pictureAt(reader, videoSeconds, stop);
    if (source == nullptr) {
        throw VideoError("the video has no picture there");
    }
    FramePainter painter(plan.form, plan.fill);
    const FramePointer picture = painter.paint(*source, regionAt(plan, *source, videoSeconds));
    return pngOf(*packed(*picture));
}

} // namespace OrvantaNS::render
