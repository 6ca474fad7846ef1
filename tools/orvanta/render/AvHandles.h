// Owners of FFmpeg's objects: each is freed by its own function when its owner goes.
#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

namespace OrvantaNS::render {

struct AvDeleter {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

using FramePointer = std::unique_ptr<AVFrame, AvDeleter>;
using PacketPointer = std::unique_ptr<AVPacket, AvDeleter>;
using CodecPointer = std::unique_ptr<AVCodecContext, AvDeleter>;
using GraphPointer = std::unique_ptr<AVFilterGraph, AvDeleter>;
using SwsPointer = std::unique_ptr<SwsContext, AvDeleter>;

inline constexpr int kRowAlignment = 64; // Bytes: what the widest vector instructions of today load at once.

/// An empty frame. Throws `std::bad_alloc`.
FramePointer newFrame();
/// A frame with memory for its picture, rows aligned for the widest vectors. Throws `std::bad_alloc`.
FramePointer newPicture(int width, int height, AVPixelFormat format);
/// A second owner of the same picture. Throws `std::bad_alloc`.
FramePointer sharePicture(const AVFrame& frame);
/// An empty packet. Throws `std::bad_alloc`.
PacketPointer newPacket();

} // namespace OrvantaNS::render
