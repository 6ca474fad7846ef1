#include "render/MediaForm.h"

#include <array>
#include <cctype>

#include <fmt/format.h>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "render/PixelLayout.h"
#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

constexpr std::array<MediaForm, 5> kForms{{
    {".mp4", "mp4", "H.264", AV_CODEC_ID_H264, AV_CODEC_ID_AAC, true},
    {".mov", "mov", "H.264", AV_CODEC_ID_H264, AV_CODEC_ID_AAC, true},
    {".webm", "webm", "VP9", AV_CODEC_ID_VP9, AV_CODEC_ID_OPUS, false},
    {".mkv", "matroska", "H.264", AV_CODEC_ID_H264, AV_CODEC_ID_AAC, false},
    {".gif", "gif", "GIF", AV_CODEC_ID_GIF, AV_CODEC_ID_NONE, false},
}};

bool endsWith(std::string_view text, std::string_view ending) {
    if (text.size() <= ending.size()) {
        return false;
    }
    text.remove_prefix(text.size() - ending.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(text[i])) != ending[i]) {
            return false;
        }
    }
    return true;
}

/// yuvj420p and its like are the plain format with the range in the name; the range is told by its own tag.
AVPixelFormat withoutRange(AVPixelFormat format) {
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    default:
        return format;
    }
}

} // namespace

std::optional<MediaForm> mediaFormOf(std::string_view path) {
    for (const MediaForm& form : kForms) {
        if (endsWith(path, form.ending)) {
            return form;
        }
    }
    return std::nullopt;
}

std::string mediaEndings() {
    std::string text;
    for (const MediaForm& form : kForms) {
        text += fmt::format("{}{}", text.empty() ? "" : ", ", form.ending);
    }
    return text;
}

const AVCodec& videoEncoder(const MediaForm& form) {
    const AVCodec* encoder = nullptr;
    if (form.video == AV_CODEC_ID_H264) {
        encoder = avcodec_find_encoder_by_name("libx264");
    } else if (form.video == AV_CODEC_ID_VP9) {
        encoder = avcodec_find_encoder_by_name("libvpx-vp9");
    } else {
        encoder = avcodec_find_encoder(form.video);
    }
    if (encoder == nullptr) {
        throw SettingError(fmt::format("this FFmpeg was built without an encoder for {}; choose another ending ({})",
                                       form.videoName, mediaEndings()));
    }
    return *encoder;
}

AVPixelFormat encodingFormat(const AVCodec& encoder, AVPixelFormat source) {
    const AVPixelFormat planar = withoutRange(nearestPlanar(source));
    const auto layout = planarLayout(planar);
    const bool wide = layout && layout->wide();
    if (!layout || layout->family != ZIMG_COLOR_YUV) {
        const AVPixelFormat wanted = wide ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
        return wanted;
    }
    std::vector<AVPixelFormat> taken;
    for (const AVPixelFormat* format = encoder.pix_fmts; format != nullptr && *format != AV_PIX_FMT_NONE; ++format) {
        const auto candidate = planarLayout(*format);
        if (candidate && candidate->family == ZIMG_COLOR_YUV && withoutRange(*format) == *format) {
            taken.push_back(*format);
        }
    }
    if (taken.empty()) {
        return AV_PIX_FMT_YUV420P;
    }
    taken.push_back(AV_PIX_FMT_NONE);
    int loss = 0;
    return avcodec_find_best_pix_fmt_of_list(taken.data(), planar, 0, &loss);
}

} // namespace OrvantaNS::render
