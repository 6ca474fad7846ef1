#include "render/VideoEncoder.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

extern "C" {
#include <libavutil/opt.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

/// Speeds by H.264's names, with what VP9 calls the same.
struct Preset {
    std::string_view name;
    int vp9Speed;  // libvpx's "cpu-used" in its good-quality mode; 5 is its fastest.
    int lookahead; // Pictures that x264 holds to look ahead, unless told.
};
constexpr std::array<Preset, 9> kPresets{{{"ultrafast", 5, 0},
                                          {"superfast", 5, 0},
                                          {"veryfast", 5, 10},
                                          {"faster", 4, 20},
                                          {"fast", 4, 30},
                                          {"medium", 3, 40},
                                          {"slow", 2, 50},
                                          {"slower", 1, 60},
                                          {"veryslow", 0, 60}}};

// Pictures. One costs x264 almost 7 MB at 1920x1080: with the 40 of its medium preset a rendering holds 540 MB, with these
// less than 400, for a file that is hardly larger.
constexpr int kMostLookahead = 12;

// Constant quality unless told: x264's own default, and what VP9 needs for about the same look.
constexpr double kH264Crf = 23.0;
constexpr double kVp9Crf = 32.0;
constexpr double kH264WorstCrf = 51.0;
constexpr double kVp9WorstCrf = 63.0;

void setOption(AVCodecContext& context, const char* name, const std::string& value) {
    if (av_opt_set(&context, name, value.c_str(), AV_OPT_SEARCH_CHILDREN) < 0) {
        throw SettingError(fmt::format("the encoder {} does not take {} {}", context.codec->name, name, value));
    }
}

void choose(AVCodecContext& context, const EncodingChoice& choice) {
    const bool vp9 = context.codec_id == AV_CODEC_ID_VP9;
    if (vp9) {
        for (const Preset& preset : kPresets) {
            if (preset.name == choice.preset) {
                setOption(context, "cpu-used", std::to_string(preset.vp9Speed));
            }
        }
        setOption(context, "deadline", "good");
        setOption(context, "row-mt", "1");
    } else {
        setOption(context, "preset", choice.preset);
        for (const Preset& preset : kPresets) {
            if (preset.name == choice.preset && preset.lookahead > kMostLookahead) {
                setOption(context, "rc-lookahead", std::to_string(kMostLookahead));
            }
        }
    }
    if (choice.bitrate) {
        context.bit_rate = *choice.bitrate;
        return;
    }
    const double crf = choice.crf.value_or(vp9 ? kVp9Crf : kH264Crf);
    const double worst = vp9 ? kVp9WorstCrf : kH264WorstCrf;
    if (crf < 0.0 || crf > worst || (vp9 && crf != std::floor(crf))) {
        throw SettingError(
            fmt::format("--crf {}: expected {} from 0 to {}", crf, vp9 ? "a whole number" : "a number", worst));
    }
    setOption(context, "crf", fmt::format("{}", crf));
    context.bit_rate = 0; // VP9 would hold on to its default rate otherwise.
}

} // namespace

std::int64_t parseBitrate(std::string_view text) {
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    double factor = 0.0;
    if (unit.empty()) {
        factor = 1.0;
    } else if (unit == "k" || unit == "K") {
        factor = 1e3;
    } else if (unit == "M" || unit == "m") {
        factor = 1e6;
    }
    const double bits = number * factor;
    constexpr double kLeast = 1e3; // Bits a second; x264 takes less for kilobits.
    constexpr double kMost = 1e9;
    if (error != std::errc() || !(bits >= kLeast && bits <= kMost)) {
        throw SettingError(
            fmt::format("--bitrate {}: expected bits a second from 1k to 1000M, such as 2500k or 4M", text));
    }
    return static_cast<std::int64_t>(std::llround(bits));
}

void checkPreset(std::string_view name) {
    std::string names;
    for (const Preset& preset : kPresets) {
        if (preset.name == name) {
            return;
        }
        names += fmt::format("{}{}", names.empty() ? "" : ", ", preset.name);
    }
    throw SettingError(fmt::format("--preset {}: expected one of {}", name, names));
}

VideoEncoder::VideoEncoder(const MediaForm& form, const PictureForm& pictures, const EncodingChoice& choice,
                           AVRational timeBase, AVRational rate, bool globalHeader)
    : packet_(newPacket()) {
    const AVCodec& codec = videoEncoder(form);
    context_.reset(avcodec_alloc_context3(&codec));
    if (context_ == nullptr) {
        throw std::bad_alloc();
    }
    context_->width = pictures.width;
    context_->height = pictures.height;
    context_->pix_fmt = pictures.format;
    context_->sample_aspect_ratio = {1, 1};
    context_->color_range = pictures.range;
    context_->colorspace = pictures.matrix;
    context_->color_primaries = pictures.primaries;
    context_->color_trc = pictures.transfer;
    context_->chroma_sample_location = pictures.siting;
    context_->time_base = timeBase;
    if (rate.num > 0) {
        context_->framerate = rate;
    }
    context_->thread_count = choice.threads;
    if (globalHeader) {
        context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    if (form.video != AV_CODEC_ID_GIF) {
        choose(*context_, choice);
    }
    checkAv(avcodec_open2(context_.get(), &codec, nullptr),
            fmt::format("the encoder {} does not take {}x{} pictures with these settings", codec.name, pictures.width,
                        pictures.height));
}

void VideoEncoder::encode(AVFrame& picture, const TakePacket& take) {
    checkAv(avcodec_send_frame(context_.get(), &picture), "a picture cannot be encoded");
    drain(take);
}

void VideoEncoder::finish(const TakePacket& take) {
    checkAv(avcodec_send_frame(context_.get(), nullptr), "the last pictures cannot be encoded");
    drain(take);
}

void VideoEncoder::drain(const TakePacket& take) {
    for (;;) {
        const int code = avcodec_receive_packet(context_.get(), packet_.get());
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
            return;
        }
        checkAv(code, "a picture cannot be encoded");
        take(*packet_);
        av_packet_unref(packet_.get());
    }
}

} // namespace OrvantaNS::render
