// Draws what the camera shows of one picture.
#pragma once

#include "render/FrameFill.h"
#include "render/PicturePool.h"
#include "render/PictureScaler.h"

namespace OrvantaNS::render {

/// What the pictures of an output look like.
struct PictureForm {
    int width = 0;  ///< Pixels.
    int height = 0; ///< Pixels.
    AVPixelFormat format = AV_PIX_FMT_NONE;
    // What the samples mean; taken from the source where the colours are not converted.
    AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
    AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
    AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
    AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
    AVChromaLocation siting = AVCHROMA_LOC_UNSPECIFIED;
};

/// Makes pictures of one form. Not for two threads at once; each thread has a painter of its own.
class FramePainter {
public:
    FramePainter(const PictureForm& form, const FillChoice& fill)
        : form_(form), fill_(fill), pool_(form.width, form.height, form.format) {}

    /// The part `frame` of `source` (any pixel format), scaled to a new picture. Where the frame reaches beyond the source
    /// shows the fill. Throws `RenderError`.
    FramePointer paint(const AVFrame& source, const PictureRegion& frame);

private:
    /// Says of a picture what its samples mean.
    FramePointer described(FramePointer picture) const;
    FramePointer toPlanar(const AVFrame& source);
    void paintOverhanging(const AVFrame& source, const PictureRegion& frame, AVFrame& target);

    PictureForm form_;
    FrameFill fill_;
    PicturePool pool_;
    PictureScaler scaler_;
    SwsPointer unpack_; // From a format that zimg does not read.
};

} // namespace OrvantaNS::render
