#include "render/PixelLayout.h"

#include <array>
#include <bit>
#include <cstdint>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/pixdesc.h>
}

namespace OrvantaNS::render {

namespace {

constexpr int kHdHeight = 720; // Pixels: from here on untagged colours are those of high definition.
constexpr int kHdWidth = 1280; // Pixels.

bool hasRangeInName(AVPixelFormat format) {
    return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P ||
           format == AV_PIX_FMT_YUVJ440P || format == AV_PIX_FMT_YUVJ411P;
}

zimg_matrix_coefficients_e matrixOf(const AVFrame& frame) {
    // Where zimg knows the code it is the one of the tag; the two tables come from the same recommendation.
    if (frame.colorspace == AVCOL_SPC_UNSPECIFIED || frame.colorspace == AVCOL_SPC_RGB ||
        frame.colorspace == AVCOL_SPC_RESERVED) {
        return frame.height >= kHdHeight || frame.width >= kHdWidth ? ZIMG_MATRIX_BT709 : ZIMG_MATRIX_BT470_BG;
    }
    return static_cast<zimg_matrix_coefficients_e>(frame.colorspace);
}

zimg_chroma_location_e sitingOf(AVChromaLocation location) {
    // FFmpeg counts from 1, where 0 means unknown; zimg begins with the left.
    return location == AVCHROMA_LOC_UNSPECIFIED
               ? ZIMG_CHROMA_LEFT
               : static_cast<zimg_chroma_location_e>(static_cast<int>(location) - static_cast<int>(AVCHROMA_LOC_LEFT));
}

} // namespace

std::optional<PixelLayout> planarLayout(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    constexpr std::uint64_t kUnfit = AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_HWACCEL |
                                     AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT |
                                     (std::endian::native == std::endian::little ? AV_PIX_FMT_FLAG_BE : 0);
    if (description == nullptr || (description->flags & kUnfit) != 0 || description->nb_components == 2) {
        return std::nullopt;
    }
    PixelLayout layout;
    layout.planes = description->nb_components == 1 ? 1 : 3;
    layout.depth = description->comp[0].depth;
    layout.family = layout.planes == 1                                ? ZIMG_COLOR_GREY
                    : (description->flags & AV_PIX_FMT_FLAG_RGB) != 0 ? ZIMG_COLOR_RGB
                                                                      : ZIMG_COLOR_YUV;
    layout.subsampleWidth = description->log2_chroma_w;
    layout.subsampleHeight = description->log2_chroma_h;
    if (layout.depth < 8 || layout.depth > 16 || layout.subsampleWidth > 2 || layout.subsampleHeight > 2) {
        return std::nullopt;
    }
    for (int i = 0; i < layout.planes; ++i) {
        const AVComponentDescriptor& component = description->comp[i];
        if (component.step != (layout.wide() ? 2 : 1) || component.shift != 0 || component.offset != 0 ||
            component.depth != layout.depth) {
            return std::nullopt;
        }
        layout.planeOf[static_cast<std::size_t>(i)] = component.plane;
    }
    return layout;
}

AVPixelFormat nearestPlanar(AVPixelFormat format) {
    if (planarLayout(format)) {
        return format;
    }
    constexpr std::array<AVPixelFormat, 16> kPlanar{
        AV_PIX_FMT_YUV420P,   AV_PIX_FMT_YUV422P,   AV_PIX_FMT_YUV444P,   AV_PIX_FMT_YUV420P10,
        AV_PIX_FMT_YUV422P10, AV_PIX_FMT_YUV444P10, AV_PIX_FMT_YUV420P12, AV_PIX_FMT_YUV422P12,
        AV_PIX_FMT_YUV444P12, AV_PIX_FMT_YUV420P16, AV_PIX_FMT_YUV422P16, AV_PIX_FMT_YUV444P16,
        AV_PIX_FMT_GBRP,      AV_PIX_FMT_GBRP10,    AV_PIX_FMT_GBRP16,    AV_PIX_FMT_NONE};
    int loss = 0;
    return avcodec_find_best_pix_fmt_of_list(kPlanar.data(), format, 0, &loss);
}

bool isFullRange(const AVFrame& frame) {
    return frame.color_range == AVCOL_RANGE_JPEG || hasRangeInName(static_cast<AVPixelFormat>(frame.format));
}

zimg_image_format describePicture(const AVFrame& frame, const PixelLayout& layout) {
    zimg_image_format description;
    zimg_image_format_default(&description, ZIMG_API_VERSION);
    description.width = static_cast<unsigned>(frame.width);
    description.height = static_cast<unsigned>(frame.height);
    description.pixel_type = layout.wide() ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    description.depth = static_cast<unsigned>(layout.depth);
    description.color_family = layout.family;
    if (layout.family == ZIMG_COLOR_RGB) {
        description.matrix_coefficients = ZIMG_MATRIX_RGB;
        description.pixel_range = frame.color_range == AVCOL_RANGE_MPEG ? ZIMG_RANGE_LIMITED : ZIMG_RANGE_FULL;
        return description;
    }
    description.matrix_coefficients = matrixOf(frame);
    description.pixel_range = isFullRange(frame) ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    if (layout.family == ZIMG_COLOR_YUV) {
        description.subsample_w = static_cast<unsigned>(layout.subsampleWidth);
        description.subsample_h = static_cast<unsigned>(layout.subsampleHeight);
        description.chroma_location = sitingOf(frame.chroma_location);
    }
    return description;
}

} // namespace OrvantaNS::render
