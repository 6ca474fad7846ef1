#include "render/PictureScaler.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <tuple>

#include <fmt/format.h>

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/pixdesc.h>
}

#include "render/RenderError.h"

namespace OrvantaNS::render {

namespace {

constexpr std::uintptr_t kZimgAlignment = 32; // Bytes: zimg's demand on rows and their distance.

// The cubic kernel of the `ffmpeg` program's scaler: sharper than zimg's own default, which softens letters.
constexpr double kCubicB = 0.0;
constexpr double kCubicC = 0.6;

[[noreturn]] void throwZimgError() {
    std::array<char, 256> text{};
    zimg_get_last_error(text.data(), text.size());
    throw RenderError(fmt::format("the picture cannot be scaled: {}", text.data()));
}

auto key(const zimg_image_format& format) {
    return std::make_tuple(format.width, format.height, format.pixel_type, format.subsample_w, format.subsample_h,
                           format.color_family, format.matrix_coefficients, format.depth, format.pixel_range,
                           format.chroma_location, format.active_region.left, format.active_region.top,
                           format.active_region.width, format.active_region.height);
}

PixelLayout layoutOf(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    const auto layout = planarLayout(format);
    if (!layout) {
        const char* name = av_get_pix_fmt_name(format);
        throw RenderError(fmt::format("the pixel format {} cannot be scaled", name != nullptr ? name : "unknown"));
    }
    return *layout;
}

bool isAligned(const AVFrame& frame) {
    for (int plane = 0; plane < AV_NUM_DATA_POINTERS && frame.data[plane] != nullptr; ++plane) {
        if (reinterpret_cast<std::uintptr_t>(frame.data[plane]) % kZimgAlignment != 0 ||
            static_cast<std::uintptr_t>(static_cast<std::intptr_t>(frame.linesize[plane])) % kZimgAlignment != 0) {
            return false;
        }
    }
    return true;
}

zimg_image_buffer_const bufferOf(const AVFrame& frame, const PixelLayout& layout) {
    zimg_image_buffer_const buffer{};
    buffer.version = ZIMG_API_VERSION;
    for (int i = 0; i < layout.planes; ++i) {
        const int plane = layout.planeOf[static_cast<std::size_t>(i)];
        buffer.plane[i].data = frame.data[plane];
        buffer.plane[i].stride = frame.linesize[plane];
        buffer.plane[i].mask = ZIMG_BUFFER_MAX;
    }
    return buffer;
}

zimg_image_buffer writableBufferOf(const AVFrame& frame, const PixelLayout& layout) {
    zimg_image_buffer buffer{};
    buffer.version = ZIMG_API_VERSION;
    for (int i = 0; i < layout.planes; ++i) {
        const int plane = layout.planeOf[static_cast<std::size_t>(i)];
        buffer.plane[i].data = frame.data[plane];
        buffer.plane[i].stride = frame.linesize[plane];
        buffer.plane[i].mask = ZIMG_BUFFER_MAX;
    }
    return buffer;
}

} // namespace

void PictureScaler::MemoryDeleter::operator()(void* memory) const { av_free(memory); }

void PictureScaler::prepare(const AVFrame& source, const PictureRegion& region, const AVFrame& target) {
    zimg_image_format from = describePicture(source, layoutOf(source));
    zimg_image_format to = describePicture(target, layoutOf(target));
    from.active_region.left = region.left;
    from.active_region.top = region.top;
    from.active_region.width = region.width;
    from.active_region.height = region.height;
    to.active_region = {0.0, 0.0, static_cast<double>(target.width), static_cast<double>(target.height)};
    if (from.color_family == to.color_family) {
        // Scaled, not converted: what an untagged picture is taken for goes by its size, which is not the same here.
        to.matrix_coefficients = from.matrix_coefficients;
        to.pixel_range = from.pixel_range;
    }
    if (graph_ != nullptr && key(from) == key(from_) && key(to) == key(to_)) {
        return; // The camera rests.
    }
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.resample_filter = ZIMG_RESIZE_BICUBIC;
    parameters.filter_param_a = kCubicB;
    parameters.filter_param_b = kCubicC;
    parameters.resample_filter_uv = ZIMG_RESIZE_BICUBIC;
    parameters.filter_param_a_uv = kCubicB;
    parameters.filter_param_b_uv = kCubicC;
    graph_.reset(zimg_filter_graph_build(&from, &to, &parameters));
    std::size_t size = 0;
    if (graph_ == nullptr || zimg_filter_graph_get_tmp_size(graph_.get(), &size) != ZIMG_ERROR_SUCCESS) {
        throwZimgError();
    }
    from_ = from;
    to_ = to;
    if (size > memorySize_) {
        memory_.reset(av_malloc(size));
        if (memory_ == nullptr) {
            throw std::bad_alloc();
        }
        memorySize_ = size;
    }
}

void PictureScaler::scale(const AVFrame& source, const PictureRegion& region, AVFrame& target) {
    if (!isAligned(source)) {
        // Seldom: a decoder that hands out a cut of a larger picture.
        const FramePointer copy = newPicture(source.width, source.height, static_cast<AVPixelFormat>(source.format));
        checkAv(av_frame_copy(copy.get(), &source), "the picture cannot be copied");
        checkAv(av_frame_copy_props(copy.get(), &source), "the picture cannot be copied");
        scale(*copy, region, target);
        return;
    }
    prepare(source, region, target);
    const zimg_image_buffer_const from = bufferOf(source, layoutOf(source));
    const zimg_image_buffer to = writableBufferOf(target, layoutOf(target));
    if (zimg_filter_graph_process(graph_.get(), &from, &to, memory_.get(), nullptr, nullptr, nullptr, nullptr) !=
        ZIMG_ERROR_SUCCESS) {
        throwZimgError();
    }
}

} // namespace OrvantaNS::render
