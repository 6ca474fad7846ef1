// Pictures in, packets out.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "render/AvHandles.h"
#include "render/FramePainter.h"
#include "render/MediaForm.h"

namespace OrvantaNS::render {

/// How good, and how fast.
struct EncodingChoice {
    std::optional<double> crf;           ///< Constant quality; the encoder's own scale, smaller is better.
    std::optional<std::int64_t> bitrate; ///< Bits a second, instead of a quality.
    std::string preset = "medium"; ///< "ultrafast" to "veryslow", by H.264's names; VP9 gets the speed that matches.
    int threads = 0;               ///< 0: as many as the encoder finds right.
};

/// Bits a second of "2500k", "4M" or "800000". Throws `SettingError`.
std::int64_t parseBitrate(std::string_view text);
/// Throws `SettingError` when there is no such preset; the message lists them.
void checkPreset(std::string_view name);

class VideoEncoder {
public:
    using TakePacket = std::function<void(AVPacket&)>;

    /// `timeBase` is that of the pictures' stamps; `rate` is a hint, 0/1 when it is not known. Throws `SettingError` when
    /// the encoder refuses the choice, and `RenderError`.
    VideoEncoder(const MediaForm& form, const PictureForm& pictures, const EncodingChoice& choice, AVRational timeBase,
                 AVRational rate, bool globalHeader);

    /// Hands over a picture with its stamp; `take` gets every packet that is ready. Throws `RenderError`.
    void encode(AVFrame& picture, const TakePacket& take);
    /// No more pictures.
    void finish(const TakePacket& take);

    const AVCodecContext& context() const { return *context_; }

private:
    void drain(const TakePacket& take);

    CodecPointer context_;
    PacketPointer packet_;
};

} // namespace OrvantaNS::render
