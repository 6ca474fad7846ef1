// Containers and codecs: what the ending of the output's name decides.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/AvHandles.h"

namespace OrvantaNS::render {

struct MediaForm {
    std::string_view ending;    ///< With its point, lower case.
    const char* container;      ///< FFmpeg's name of the muxer.
    std::string_view videoName; ///< For messages.
    AVCodecID video = AV_CODEC_ID_NONE;
    AVCodecID sound = AV_CODEC_ID_NONE; ///< For sound that the container does not take as it is; none: no sound.
    bool indexFirst = false;            ///< The index goes to the front, so that a browser plays before it has all.
};

/// The form for an output's name; nothing when its ending is none of those that can be made. Capitals count as small.
std::optional<MediaForm> mediaFormOf(std::string_view path);

/// ".mp4, .mov, .webm, .mkv, .gif"
std::string mediaEndings();

/// The encoder for a form's pictures. Throws `SettingError` when this FFmpeg has none.
const AVCodec& videoEncoder(const MediaForm& form);

/// The pixel format in which an encoder should get pictures that came as `source`: depth and chroma stay where it takes
/// them; RGB and grey become 4:2:0, which every player shows.
AVPixelFormat encodingFormat(const AVCodec& encoder, AVPixelFormat source);

} // namespace OrvantaNS::render
