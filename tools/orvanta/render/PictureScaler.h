// Cuts a region out of a picture and scales it, exact to fractions of a pixel.
#pragma once

#include <cstddef>
#include <memory>

#include "render/AvHandles.h"
#include "render/PixelLayout.h"

namespace OrvantaNS::render {

/// A rectangle in pixels of a picture, counted from its top left corner. Edges may lie between pixels.
struct PictureRegion {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
    friend bool operator==(const PictureRegion&, const PictureRegion&) = default;
};

/// Scales one region of a picture to a whole other picture.
///
/// A camera that moves slowly moves by fractions of a pixel from frame to frame, so the region is never rounded: a cut at
/// whole pixels shakes. The chroma planes are sampled at the places that their siting gives them.
///
/// Not for two threads at once; each thread has a scaler of its own.
class PictureScaler {
public:
    /// Fills `target` (with memory, any planar format) with `region` of `source` (planar). The kernel is the cubic one
    /// that the `ffmpeg` program scales with (b 0, c 0.6), widened when the region is reduced. Where the region reaches beyond
    /// the source, the source goes on as its mirror image; meant for fractions of a pixel. Throws `RenderError`.
    void scale(const AVFrame& source, const PictureRegion& region, AVFrame& target);

private:
    struct GraphDeleter {
        void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
    };
    struct MemoryDeleter {
        void operator()(void* memory) const;
    };

    void prepare(const AVFrame& source, const PictureRegion& region, const AVFrame& target);

    std::unique_ptr<zimg_filter_graph, GraphDeleter> graph_;
    zimg_image_format from_{}; // What the graph was built for.
    zimg_image_format to_{};
    std::unique_ptr<void, MemoryDeleter> memory_;
    std::size_t memorySize_ = 0;
};

} // namespace OrvantaNS::render
