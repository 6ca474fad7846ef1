// A video file: its pictures, decoded, and the packets of its sound.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "render/AvHandles.h"

namespace OrvantaNS::render {

/// Asked now and then during long work; true ends it.
using StopQuestion = std::function<bool()>;

/// A decoded picture. Stamps are in the video stream's time base and count from the video's time 0.
struct DecodedPicture {
    FramePointer picture;
    std::int64_t stamp = 0;
    std::int64_t duration = 0; ///< How long it shows when it is the last one.
};

/// An undecoded packet of a sound stream; its stamps count from the video's time 0, in that stream's time base.
struct SoundPacket {
    PacketPointer packet;
    std::size_t track = 0; ///< Index into `VideoReader::soundTracks`.
};

/// Reads the best video stream and all sound streams, in the order in which the file has them.
class VideoReader {
public:
    /// Opens the file and decodes the first picture. `threads` is that of the decoder, 0 as many as it finds right.
    /// Throws `VideoError` when there is no picture in it.
    VideoReader(const std::string& path, int threads, StopQuestion stop);

    using Event = std::variant<std::monostate, DecodedPicture, SoundPacket>;
    /// What comes next; nothing at the end. Broken stretches are passed over and counted. Throws `VideoError` for what is
    /// no fault of the file's content.
    Event next();

    /// Goes back to the last picture that can be decoded at or before `seconds`, or to the beginning when the file has no
    /// way to go there.
    void seek(double seconds);

    const AVStream& videoStream() const { return *format_->streams[videoIndex_]; }
    AVRational timeBase() const { return videoStream().time_base; }
    /// The first picture of the file.
    const AVFrame& sample() const { return *sample_; }
    std::vector<const AVStream*> soundTracks() const;
    const AVFormatContext& format() const { return *format_; }
    /// Streams that are neither the video nor sound.
    int otherStreams() const;
    /// Pictures a second on the average; 0/1 when the file does not tell.
    AVRational rate() const;
    /// Length that the file claims, seconds of the video's time; nothing when it does not.
    std::optional<double> claimedSeconds() const;

    /// After the end: what was wrong with the content, as one sentence; empty when nothing was.
    std::string complaint() const;

private:
    struct CloseFormat {
        void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    };

    void open(const std::string& path);
    void openDecoder(int threads);
    bool decodeMore();
    std::optional<DecodedPicture> receive();
    void takePacket(PacketPointer packet);
    std::int64_t fromStart(std::int64_t stamp, AVRational timeBase) const;

    std::string name_;
    StopQuestion stop_;
    std::unique_ptr<AVFormatContext, CloseFormat> format_;
    CodecPointer decoder_;
    unsigned videoIndex_ = 0;
    std::vector<int> trackOf_; // For each stream: its place among the sound tracks, or -1.
    FramePointer sample_;
    std::deque<Event> waiting_; // Read, and not yet asked for.
    bool flushing_ = false;     // No more packets: the decoder gives what it still holds.
    bool ended_ = false;
    std::int64_t expectedStamp_ = 0; // For pictures without one.
    double reachedSeconds_ = 0.0;    // Where the last packet of any stream ends.
    int brokenPackets_ = 0;
    int readError_ = 0;
};

} // namespace OrvantaNS::render
