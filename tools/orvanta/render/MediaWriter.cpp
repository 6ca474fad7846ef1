#include "render/MediaWriter.h"

#include <cstring>

#include <fmt/format.h>

#include "render/RenderError.h"

namespace OrvantaNS::render {

MediaWriter::MediaWriter(const MediaForm& form, OutputFile& file) : form_(form), file_(file) {
    AVFormatContext* muxer = nullptr;
    checkAv(avformat_alloc_output_context2(&muxer, nullptr, form.container, "out"), "the container cannot be written");
    muxer_.reset(muxer);
    file.lendTo(*muxer);
}

bool MediaWriter::takes(const AVCodecParameters& sound) const {
    return avformat_query_codec(muxer_->oformat, sound.codec_id, FF_COMPLIANCE_NORMAL) == 1;
}

void MediaWriter::copyMetadata(const AVFormatContext& source) {
    av_dict_copy(&muxer_->metadata, source.metadata, 0);
    // These tell of the source's container, not of what is in it.
    for (const char* key : {"major_brand", "minor_version", "compatible_brands", "encoder", "DURATION"}) {
        av_dict_set(&muxer_->metadata, key, nullptr, 0);
    }
}

AVStream& MediaWriter::addStream() {
    AVStream* stream = avformat_new_stream(muxer_.get(), nullptr);
    if (stream == nullptr) {
        throw std::bad_alloc();
    }
    return *stream;
}

int MediaWriter::addVideo(const AVCodecContext& encoder, AVRational rate) {
    AVStream& stream = addStream();
    checkAv(avcodec_parameters_from_context(stream.codecpar, &encoder), "the container cannot be written");
    stream.time_base = encoder.time_base;
    if (rate.num > 0) {
        stream.avg_frame_rate = rate;
    }
    stream.sample_aspect_ratio = encoder.sample_aspect_ratio;
    return stream.index;
}

int MediaWriter::addSound(const AVCodecParameters& parameters, AVRational timeBase, const AVStream& source) {
    AVStream& stream = addStream();
    checkAv(avcodec_parameters_copy(stream.codecpar, &parameters), "the container cannot be written");
    stream.codecpar->codec_tag = 0; // The tag of the source's container; this one has its own.
    stream.time_base = timeBase;
    stream.disposition = source.disposition;
    for (const char* key : {"language", "title"}) {
        if (const AVDictionaryEntry* entry = av_dict_get(source.metadata, key, nullptr, 0); entry != nullptr) {
            av_dict_set(&stream.metadata, key, entry->value, 0);
        }
    }
    return stream.index;
}

void MediaWriter::check(int code, const char* what) {
    if (code >= 0) {
        return;
    }
    if (file_.error() != 0) {
        throw RenderError(fmt::format("{}: {}", what, std::strerror(file_.error())));
    }
    checkAv(code, what);
}

void MediaWriter::writeHeader() {
    AVDictionary* options = nullptr;
    if (form_.indexFirst && file_.seekable()) {
        av_dict_set(&options, "movflags", "+faststart", 0);
    }
    const int code = avformat_write_header(muxer_.get(), &options);
    av_dict_free(&options);
    check(code, "the output cannot be written");
}

void MediaWriter::write(AVPacket& packet, int stream, AVRational timeBase) {
    const std::lock_guard lock(mutex_);
    packet.stream_index = stream;
    packet.pos = -1;
    av_packet_rescale_ts(&packet, timeBase, muxer_->streams[stream]->time_base);
    check(av_interleaved_write_frame(muxer_.get(), &packet), "the output cannot be written");
}

void MediaWriter::writeTrailer() {
    const std::lock_guard lock(mutex_);
    check(av_write_trailer(muxer_.get()), "the output cannot be written");
    avio_flush(muxer_->pb);
    check(file_.error() != 0 ? AVERROR(file_.error()) : 0, "the output cannot be written");
}

} // namespace OrvantaNS::render
