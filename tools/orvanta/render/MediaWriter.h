// The container: where packets of pictures and sound become a file.
#pragma once

#include <map>
#include <mutex>
#include <vector>

#include "render/AvHandles.h"
#include "render/MediaForm.h"
#include "render/OutputFile.h"

namespace OrvantaNS::render {

/// Streams are added, then the header is written, then packets come, then the trailer. Packets may come from several
/// threads.
class MediaWriter {
public:
    /// `file` must outlive this. Throws `RenderError`.
    MediaWriter(const MediaForm& form, OutputFile& file);

    bool wantsGlobalHeader() const { return (muxer_->oformat->flags & AVFMT_GLOBALHEADER) != 0; }
    /// True when the container takes packets of this codec as they are.
    bool takes(const AVCodecParameters& sound) const;
    /// Title and the like of the source.
    void copyMetadata(const AVFormatContext& source);

    int addVideo(const AVCodecContext& encoder, AVRational rate);
    int addSound(const AVCodecParameters& parameters, AVRational timeBase, const AVStream& source);

    /// Throws `RenderError`.
    void writeHeader();
    /// Takes the packet over; its stamps are in `timeBase`. Throws `RenderError`.
    void write(AVPacket& packet, int stream, AVRational timeBase);
    /// Throws `RenderError`.
    void writeTrailer();

private:
    struct FreeMuxer {
        void operator()(AVFormatContext* context) const { avformat_free_context(context); }
    };

    AVStream& addStream();
    void check(int code, const char* what);

    MediaForm form_;
    OutputFile& file_;
    std::unique_ptr<AVFormatContext, FreeMuxer> muxer_;
    std::mutex mutex_; // Guards the muxer from the header to the trailer.
};

} // namespace OrvantaNS::render
