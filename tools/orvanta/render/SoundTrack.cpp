#include "render/SoundTrack.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/channel_layout.h>
#include <libavutil/mathematics.h>
#include <libavutil/samplefmt.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

constexpr const char* kSoundFailure = "the sound cannot be encoded anew";
constexpr std::int64_t kBitsPerChannel = 96000; // A second: transparent for speech, good for music, with AAC and Opus.
constexpr int kOpusRate = 48000;                // Samples a second; Opus knows no other that matters.
constexpr int kMostChannels = 8;                // Of what AAC and Opus take.

int encodingRate(const AVCodec& codec, int rate) {
    if (codec.id == AV_CODEC_ID_OPUS) {
        return kOpusRate;
    }
    int best = rate;
    if (codec.supported_samplerates != nullptr) {
        best = codec.supported_samplerates[0];
        for (const int* each = codec.supported_samplerates; *each != 0; ++each) {
            best = std::abs(*each - rate) < std::abs(best - rate) ? *each : best;
        }
    }
    return best;
}

std::string layoutName(const AVChannelLayout& layout) {
    std::array<char, 128> name{};
    av_channel_layout_describe(&layout, name.data(), name.size());
    return name.data();
}

} // namespace

SoundTrack::SoundTrack(const AVStream& source, const MediaForm& form, const VideoClip& clip, MediaWriter& writer)
    : writer_(writer), timeBase_(source.time_base), clip_(clip), wholeLength_(clip.start <= 0.0) {
    if (writer.takes(*source.codecpar)) {
        stream_ = writer.addSound(*source.codecpar, source.time_base, source);
        return;
    }
    frame_ = newFrame();
    packet_ = newPacket();
    openDecoder(source);
    openEncoder(form);
    openFilter(clip);
    AVCodecParameters* parameters = avcodec_parameters_alloc();
    const int code =
        parameters == nullptr ? AVERROR(ENOMEM) : avcodec_parameters_from_context(parameters, encoder_.get());
    if (code >= 0) {
        stream_ = writer.addSound(*parameters, encoder_->time_base, source);
    }
    avcodec_parameters_free(&parameters);
    checkAv(code, kSoundFailure);
}

void SoundTrack::openDecoder(const AVStream& source) {
    const AVCodec* codec = avcodec_find_decoder(source.codecpar->codec_id);
    if (codec == nullptr) {
        throw SettingError(
            fmt::format("there is no decoder for the sound's codec {}", avcodec_get_name(source.codecpar->codec_id)));
    }
    decoder_.reset(avcodec_alloc_context3(codec));
    checkAv(decoder_ == nullptr ? AVERROR(ENOMEM) : avcodec_parameters_to_context(decoder_.get(), source.codecpar),
            kSoundFailure);
    decoder_->pkt_timebase = source.time_base;
    checkAv(avcodec_open2(decoder_.get(), codec, nullptr), kSoundFailure);
    if (decoder_->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
        const int channels = decoder_->ch_layout.nb_channels;
        av_channel_layout_uninit(&decoder_->ch_layout);
        av_channel_layout_default(&decoder_->ch_layout, channels);
    }
}

void SoundTrack::openEncoder(const MediaForm& form) {
    const AVCodec* codec = form.sound == AV_CODEC_ID_OPUS ? avcodec_find_encoder_by_name("libopus") : nullptr;
    codec = codec != nullptr ? codec : avcodec_find_encoder(form.sound);
    if (codec == nullptr) {
        throw SettingError(fmt::format("this FFmpeg was built without an encoder for {}; choose another ending ({})",
                                       avcodec_get_name(form.sound), mediaEndings()));
    }
    encoder_.reset(avcodec_alloc_context3(codec));
    if (encoder_ == nullptr) {
        throw std::bad_alloc();
    }
    const int channels = std::clamp(decoder_->ch_layout.nb_channels, 1, kMostChannels);
    if (channels == decoder_->ch_layout.nb_channels && channels <= 2) {
        checkAv(av_channel_layout_copy(&encoder_->ch_layout, &decoder_->ch_layout), kSoundFailure);
    } else {
        av_channel_layout_default(&encoder_->ch_layout, channels);
    }
    encoder_->sample_rate = encodingRate(*codec, decoder_->sample_rate);
    encoder_->sample_fmt = codec->sample_fmts != nullptr ? codec->sample_fmts[0] : AV_SAMPLE_FMT_FLTP;
    encoder_->time_base = {1, encoder_->sample_rate};
    encoder_->bit_rate = kBitsPerChannel * channels;
    if (writer_.wantsGlobalHeader()) {
        encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    checkAv(avcodec_open2(encoder_.get(), codec, nullptr), kSoundFailure);
}

void SoundTrack::openFilter(const VideoClip& clip) {
    graph_.reset(avfilter_graph_alloc());
    if (graph_ == nullptr) {
        throw std::bad_alloc();
    }
    const std::string stop = clip.stop ? fmt::format(":end={:.6f}", *clip.stop) : "";
    // Holes become silence, so that what comes after them keeps its place.
    const std::string text =
        fmt::format("abuffer@in=time_base={}/{}:sample_rate={}:sample_fmt={}:channel_layout={},"
                    "atrim=start={:.6f}{},asetpts=PTS-{:.6f}/TB,aresample={}:async=1:first_pts=0,"
                    "aformat=sample_fmts={}:channel_layouts={},abuffersink@out",
                    timeBase_.num, timeBase_.den, decoder_->sample_rate, av_get_sample_fmt_name(decoder_->sample_fmt),
                    layoutName(decoder_->ch_layout), clip.start, stop, clip.start, encoder_->sample_rate,
                    av_get_sample_fmt_name(encoder_->sample_fmt), layoutName(encoder_->ch_layout));
    AVFilterInOut* inputs = nullptr;
    AVFilterInOut* outputs = nullptr;
    const int code = avfilter_graph_parse2(graph_.get(), text.c_str(), &inputs, &outputs);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    checkAv(code, kSoundFailure);
    checkAv(avfilter_graph_config(graph_.get(), nullptr), kSoundFailure);
    in_ = avfilter_graph_get_filter(graph_.get(), "abuffer@in");
    out_ = avfilter_graph_get_filter(graph_.get(), "abuffersink@out");
    if (in_ == nullptr || out_ == nullptr) {
        throw RenderError(kSoundFailure);
    }
    if ((encoder_->codec->capabilities & AV_CODEC_CAP_VARIABLE_FRAME_SIZE) == 0 && encoder_->frame_size > 0) {
        av_buffersink_set_frame_size(out_, static_cast<unsigned>(encoder_->frame_size));
    }
}

void SoundTrack::add(AVPacket& packet) {
    if (copied()) {
        copy(packet);
    } else {
        decode(&packet);
    }
}

void SoundTrack::copy(AVPacket& packet) {
    if (packet.pts == AV_NOPTS_VALUE) {
        return;
    }
    const double seconds = static_cast<double>(packet.pts) * av_q2d(timeBase_);
    if (clip_.stop && seconds >= *clip_.stop) {
        return;
    }
    if (!wholeLength_) {
        if (seconds < clip_.start) {
            return;
        }
        const std::int64_t start =
            av_rescale_q(static_cast<std::int64_t>(clip_.start * AV_TIME_BASE), {1, AV_TIME_BASE}, timeBase_);
        packet.pts -= start;
        packet.dts = packet.dts == AV_NOPTS_VALUE ? packet.pts : packet.dts - start;
    }
    writer_.write(packet, stream_, timeBase_);
}

void SoundTrack::decode(const AVPacket* packet) {
    // A packet that cannot be decoded leaves a hole, which becomes silence.
    if (const int code = avcodec_send_packet(decoder_.get(), packet); code < 0 && packet != nullptr) {
        return;
    }
    while (avcodec_receive_frame(decoder_.get(), frame_.get()) >= 0) {
        frame_->pts = frame_->best_effort_timestamp;
        checkAv(av_buffersrc_add_frame(in_, frame_.get()), kSoundFailure);
        encodeFiltered();
    }
}

void SoundTrack::encodeFiltered() {
    for (;;) {
        const int code = av_buffersink_get_frame(out_, frame_.get());
        if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) {
            return;
        }
        checkAv(code, kSoundFailure);
        frame_->pts = av_rescale_q(frame_->pts, av_buffersink_get_time_base(out_), encoder_->time_base);
        encode(frame_.get());
        av_frame_unref(frame_.get());
    }
}

void SoundTrack::encode(const AVFrame* frame) {
    checkAv(avcodec_send_frame(encoder_.get(), frame), kSoundFailure);
    while (avcodec_receive_packet(encoder_.get(), packet_.get()) >= 0) {
        writer_.write(*packet_, stream_, encoder_->time_base);
    }
}

void SoundTrack::finish() {
    if (copied()) {
        return;
    }
    decode(nullptr);
    checkAv(av_buffersrc_add_frame(in_, nullptr), kSoundFailure);
    encodeFiltered();
    encode(nullptr);
}

} // namespace OrvantaNS::render
