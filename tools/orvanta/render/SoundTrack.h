// One track of sound on its way from the video to the output.
#pragma once

#include "render/AvHandles.h"
#include "render/FrameClock.h"
#include "render/MediaWriter.h"

namespace OrvantaNS::render {

/// Copies packets where the container takes them, else decodes and encodes them anew. Sound outside the clip is left out:
/// to the sample when it is encoded anew, by whole packets (some 20 ms) when it is copied.
class SoundTrack {
public:
    /// Adds its stream to the writer, before the header. Throws `RenderError` and `SettingError`.
    SoundTrack(const AVStream& source, const MediaForm& form, const VideoClip& clip, MediaWriter& writer);

    /// A packet of the source, stamps from the video's time 0. Throws `RenderError`.
    void add(AVPacket& packet);
    /// No more packets.
    void finish();
    bool copied() const { return decoder_ == nullptr; }

private:
    void openDecoder(const AVStream& source);
    void openEncoder(const MediaForm& form);
    void openFilter(const VideoClip& clip);
    void copy(AVPacket& packet);
    void decode(const AVPacket* packet);
    void encodeFiltered();
    void encode(const AVFrame* frame);

    MediaWriter& writer_;
    AVRational timeBase_;
    VideoClip clip_;
    bool wholeLength_ = false;
    int stream_ = -1;
    // All empty when the sound is copied.
    CodecPointer decoder_;
    CodecPointer encoder_;
    GraphPointer graph_;
    AVFilterContext* in_ = nullptr;
    AVFilterContext* out_ = nullptr;
    FramePointer frame_;
    PacketPointer packet_;
};

} // namespace OrvantaNS::render
