#include "render/PicturePool.h"

#include <new>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace OrvantaNS::render {

namespace {

constexpr int kPadding = 64; // Bytes behind the last row: vector code may read that far.

} // namespace

FramePointer PicturePool::picture() {
    FramePointer frame = newFrame();
    frame->width = width_;
    frame->height = height_;
    frame->format = format_;
    if (pool_ == nullptr) {
        const int size = av_image_get_buffer_size(format_, width_, height_, kRowAlignment);
        if (size < 0) {
            throw std::bad_alloc();
        }
        pool_.reset(av_buffer_pool_init(static_cast<std::size_t>(size) + kPadding, nullptr));
    }
    frame->buf[0] = pool_ == nullptr ? nullptr : av_buffer_pool_get(pool_.get());
    if (frame->buf[0] == nullptr || av_image_fill_arrays(frame->data, frame->linesize, frame->buf[0]->data, format_,
                                                         width_, height_, kRowAlignment) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

} // namespace OrvantaNS::render
