#include "render/VideoReader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <utility>

#include <fmt/format.h>

extern "C" {
#include <libavutil/mathematics.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

// Seconds. Containers round the length that they claim, and the last picture of a stream without durations has none.
constexpr double kClaimTolerance = 0.5;
constexpr AVRational kMicroseconds{1, AV_TIME_BASE};

int askStop(void* question) { return (*static_cast<StopQuestion*>(question))() ? 1 : 0; }

bool isAttachedPicture(const AVStream& stream) { return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0; }

} // namespace

VideoReader::VideoReader(const std::string& path, int threads, StopQuestion stop)
    : name_(path), stop_(std::move(stop)) {
    keepAvMessages();
    open(path);
    openDecoder(threads);
    // The first picture tells format and colours, where the container may be silent. What comes before it is kept.
    while (sample_ == nullptr) {
        if (std::optional<DecodedPicture> picture = receive()) {
            sample_ = sharePicture(*picture->picture);
            waiting_.emplace_back(std::move(*picture));
        } else if (!decodeMore()) {
            throw VideoError(fmt::format("{}: no picture in it can be decoded: {}", name_,
                                         avErrorText(readError_ != 0 ? readError_ : AVERROR_INVALIDDATA)));
        }
    }
}

void VideoReader::open(const std::string& path) {
    AVFormatContext* context = avformat_alloc_context();
    if (context == nullptr) {
        throw std::bad_alloc();
    }
    context->interrupt_callback = {askStop, &stop_};
    // "file:" keeps a name with a colon from being read as a protocol's.
    if (const int code = avformat_open_input(&context, ("file:" + path).c_str(), nullptr, nullptr); code < 0) {
        throw VideoError(fmt::format("{}: cannot be read as a video: {}", name_, avErrorText(code)));
    }
    format_.reset(context);
    if (const int code = avformat_find_stream_info(context, nullptr); code < 0) {
        throw VideoError(fmt::format("{}: cannot be read as a video: {}", name_, avErrorText(code)));
    }
    const int best = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (best < 0 || isAttachedPicture(*context->streams[best])) {
        throw VideoError(fmt::format("{}: has no video in it", name_));
    }
    videoIndex_ = static_cast<unsigned>(best);
    int tracks = 0;
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        AVStream& stream = *context->streams[i];
        const bool sound = stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO && stream.codecpar->codec_id != 0;
        trackOf_.push_back(sound ? tracks++ : -1);
        if (!sound && i != videoIndex_) {
            stream.discard = AVDISCARD_ALL;
        }
    }
}

void VideoReader::openDecoder(int threads) {
    const AVCodecParameters& parameters = *videoStream().codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (codec == nullptr) {
        throw VideoError(
            fmt::format("{}: there is no decoder for its codec {}", name_, avcodec_get_name(parameters.codec_id)));
    }
    decoder_.reset(avcodec_alloc_context3(codec));
    if (decoder_ == nullptr) {
        throw std::bad_alloc();
    }
    decoder_->pkt_timebase = timeBase();
    decoder_->thread_count = threads;
    int code = avcodec_parameters_to_context(decoder_.get(), &parameters);
    if (code >= 0) {
        code = avcodec_open2(decoder_.get(), codec, nullptr);
    }
    if (code < 0) {
        throw VideoError(fmt::format("{}: its codec {} cannot be decoded: {}", name_, codec->name, avErrorText(code)));
    }
}

std::int64_t VideoReader::fromStart(std::int64_t stamp, AVRational timeBase) const {
    // Players count from the file's first stamp, whatever it is.
    if (format_->start_time == AV_NOPTS_VALUE) {
        return stamp;
    }
    return stamp - av_rescale_q(format_->start_time, kMicroseconds, timeBase);
}

std::optional<DecodedPicture> VideoReader::receive() {
    FramePointer frame = newFrame();
    for (;;) {
        const int code = avcodec_receive_frame(decoder_.get(), frame.get());
        if (code == AVERROR(EAGAIN)) {
            return std::nullopt;
        }
        if (code == AVERROR_EOF) {
            ended_ = true;
            return std::nullopt;
        }
        if (code == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        }
        if (code >= 0) {
            break;
        }
        ++brokenPackets_;
    }
    DecodedPicture picture;
    picture.stamp = frame->best_effort_timestamp != AV_NOPTS_VALUE ? fromStart(frame->best_effort_timestamp, timeBase())
                                                                   : expectedStamp_;
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    picture.duration = frame->duration;
#else
    picture.duration = frame->pkt_duration;
#endif
    if (picture.duration <= 0 && rate().num > 0) {
        picture.duration = std::max<std::int64_t>(av_rescale_q(1, av_inv_q(rate()), timeBase()), 1);
    }
    expectedStamp_ = picture.stamp + std::max<std::int64_t>(picture.duration, 1);
    picture.picture = std::move(frame);
    return picture;
}

void VideoReader::takePacket(PacketPointer packet) {
    const auto index = static_cast<unsigned>(packet->stream_index);
    const AVStream& stream = *format_->streams[index];
    if (packet->pts != AV_NOPTS_VALUE) {
        const std::int64_t end = fromStart(packet->pts, stream.time_base) + std::max<std::int64_t>(packet->duration, 0);
        reachedSeconds_ = std::max(reachedSeconds_, static_cast<double>(end) * av_q2d(stream.time_base));
    }
    if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0) {
        ++brokenPackets_;
    }
    if (index == videoIndex_) {
        // Pictures are taken before each packet, so the decoder has room for it.
        const int code = avcodec_send_packet(decoder_.get(), packet.get());
        if (code == AVERROR(ENOMEM)) {
            throw std::bad_alloc();
        }
        brokenPackets_ += code < 0 ? 1 : 0;
    } else if (index < trackOf_.size() && trackOf_[index] >= 0) {
        if (packet->pts != AV_NOPTS_VALUE) {
            packet->pts = fromStart(packet->pts, stream.time_base);
        }
        if (packet->dts != AV_NOPTS_VALUE) {
            packet->dts = fromStart(packet->dts, stream.time_base);
        }
        waiting_.emplace_back(SoundPacket{std::move(packet), static_cast<std::size_t>(trackOf_[index])});
    }
}

/// Gives the decoder one more packet, or tells it that there are none. False at the end of all.
bool VideoReader::decodeMore() {
    if (ended_) {
        return false;
    }
    if (flushing_) {
        return true;
    }
    PacketPointer packet = newPacket();
    const int code = av_read_frame(format_.get(), packet.get());
    if (code >= 0) {
        takePacket(std::move(packet));
        return true;
    }
    if (code != AVERROR(EAGAIN)) {
        if (code != AVERROR_EOF && !stop_()) {
            readError_ = code;
        }
        flushing_ = true;
        avcodec_send_packet(decoder_.get(), nullptr);
    }
    return true;
}

VideoReader::Event VideoReader::next() {
    for (;;) {
        if (!waiting_.empty()) {
            Event event = std::move(waiting_.front());
            waiting_.pop_front();
            return event;
        }
        if (ended_) {
            return {};
        }
        if (std::optional<DecodedPicture> picture = receive()) {
            return std::move(*picture);
        }
        decodeMore();
    }
}

void VideoReader::seek(double seconds) {
    const std::int64_t origin = format_->start_time == AV_NOPTS_VALUE ? 0 : format_->start_time;
    const auto target = origin + static_cast<std::int64_t>(std::llround(std::max(seconds, 0.0) * AV_TIME_BASE));
    const auto stamp = av_rescale_q_rnd(target, kMicroseconds, timeBase(), AV_ROUND_DOWN);
    const auto index = static_cast<int>(videoIndex_);
    for (const std::int64_t to : {stamp, av_rescale_q(origin, kMicroseconds, timeBase())}) {
        if (av_seek_frame(format_.get(), index, to, AVSEEK_FLAG_BACKWARD) < 0) {
            continue;
        }
        avcodec_flush_buffers(decoder_.get());
        waiting_.clear();
        flushing_ = ended_ = false;
        std::optional<DecodedPicture> first;
        while (!first && !ended_) {
            first = receive();
            if (!first) {
                decodeMore();
            }
        }
        if (first && (first->stamp <= fromStart(stamp, timeBase()) || to != stamp)) {
            waiting_.emplace_back(std::move(*first));
            return;
        }
    }
    // The file cannot be gone back in, or there is nothing from there on: what is left is read on.
}

std::vector<const AVStream*> VideoReader::soundTracks() const {
    std::vector<const AVStream*> tracks;
    for (unsigned i = 0; i < trackOf_.size(); ++i) {
        if (trackOf_[i] >= 0) {
            tracks.push_back(format_->streams[i]);
        }
    }
    return tracks;
}

int VideoReader::otherStreams() const {
    int others = 0;
    for (unsigned i = 0; i < trackOf_.size(); ++i) {
        others += trackOf_[i] < 0 && i != videoIndex_ ? 1 : 0;
    }
    return others;
}

AVRational VideoReader::rate() const {
    const AVRational average = videoStream().avg_frame_rate;
    if (average.num > 0 && average.den > 0) {
        return average;
    }
    const AVRational real = videoStream().r_frame_rate;
    return real.num > 0 && real.den > 0 ? real : AVRational{0, 1};
}

std::optional<double> VideoReader::claimedSeconds() const {
    if (format_->duration == AV_NOPTS_VALUE || format_->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE) {
        return std::nullopt;
    }
    return static_cast<double>(format_->duration) / AV_TIME_BASE;
}

std::string VideoReader::complaint() const {
    const std::optional<double> claimed = claimedSeconds();
    if (readError_ != 0) {
        return fmt::format("{}: cannot be read beyond {:.1f} s: {}", name_, reachedSeconds_, avErrorText(readError_));
    }
    if (flushing_ && claimed && reachedSeconds_ < *claimed - kClaimTolerance) {
        return fmt::format("{}: is cut short: it says that it lasts {:.1f} s, and ends at {:.1f} s", name_, *claimed,
                           reachedSeconds_);
    }
    if (brokenPackets_ > 0) {
        return fmt::format("{}: is damaged: {} could not be decoded, and the picture before stands there instead",
                           name_, brokenPackets_ == 1 ? "one stretch" : fmt::format("{} stretches", brokenPackets_));
    }
    return {};
}

} // namespace OrvantaNS::render
