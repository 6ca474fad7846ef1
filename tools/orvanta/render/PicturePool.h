// Memory of pictures of one form, used again and again.
#pragma once

#include <memory>

#include "render/AvHandles.h"

namespace OrvantaNS::render {

/// Gives pictures of one form. The memory of those that are gone is used again: fresh memory of that size comes from the
/// system page by page and cleared, which took a tenth of a rendering's time.
///
/// Pictures may outlive the pool, and may go on any thread. Asked for by one thread at a time.
class PicturePool {
public:
    PicturePool(int width, int height, AVPixelFormat format) : width_(width), height_(height), format_(format) {}

    /// A picture whose content is open, rows aligned for the widest vectors. Throws `std::bad_alloc`.
    FramePointer picture();

private:
    struct PoolDeleter {
        void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
    };

    int width_;
    int height_;
    AVPixelFormat format_;
    std::unique_ptr<AVBufferPool, PoolDeleter> pool_; // Made with the first picture.
};

} // namespace OrvantaNS::render
