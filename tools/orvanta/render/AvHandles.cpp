#include "render/AvHandles.h"

#include <new>

namespace OrvantaNS::render {

namespace {

template <typename T> T owned(T pointer) {
    if (pointer == nullptr) {
        throw std::bad_alloc();
    }
    return pointer;
}

} // namespace

FramePointer newFrame() { return FramePointer(owned(av_frame_alloc())); }

FramePointer newPicture(int width, int height, AVPixelFormat format) {
    FramePointer frame = newFrame();
    frame->width = width;
    frame->height = height;
    frame->format = format;
    if (av_frame_get_buffer(frame.get(), kRowAlignment) < 0) {
        throw std::bad_alloc();
    }
    return frame;
}

FramePointer sharePicture(const AVFrame& frame) { return FramePointer(owned(av_frame_clone(&frame))); }

PacketPointer newPacket() { return PacketPointer(owned(av_packet_alloc())); }

} // namespace OrvantaNS::render
