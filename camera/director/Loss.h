// What a viewer misses when a frame is shown.
#pragma once

#include <cstdint>
#include <vector>

#include "OrvantaCameraExport.h"
#include "camera/director/Evidence.h"

namespace OrvantaNS::camera {

/// A piece of evidence, made ready to be weighed against many frames.
struct Weighed {
    RealRect rect;
    double weight = 0.0;   ///< As it is among the evidence.
    double perPixel = 0.0; ///< 1 over the most of its area that a frame can hold.
    double needed = 0.0;   ///< Binary logarithm of the zoom at which it is as readable as it can be.
    double crop = 1.0;     ///< How much faster than its share the sight of it is lost.
    double reading = 1.0;  ///< The part of its reading that counts.
    bool isWhole = false;  ///< A window or page, which is to be seen whole.
};

/// The evidence of a scene, step by step, and the loss of frames against it.
class ORVANTA_CAMERA_EXPORT LossTable {
public:
    LossTable(const Scene& scene, const FrameShape& shape, const DirectorWeights& weights,
              const std::vector<Evidence>& evidence);

    /// Loss of a second of `step` with `frame`, whose zoom has the binary logarithm `zoomLog`.
    double loss(const RealRect& frame, double zoomLog, std::int32_t step) const;
    /// Loss of the steps from `from` up to but not including `to`.
    double loss(const RealRect& frame, std::int32_t from, std::int32_t to) const;
    /// The sum of the weights of a step.
    double weightOf(std::int32_t step) const { return sums_[static_cast<std::size_t>(step)]; }
    /// The indices of the evidence of a step, from `begin` up to `end`.
    const std::uint32_t* begin(std::int32_t step) const {
        return items_.data() + ends_[static_cast<std::size_t>(step)];
    }
    const std::uint32_t* end(std::int32_t step) const {
        return items_.data() + ends_[static_cast<std::size_t>(step) + 1];
    }
    const Weighed& piece(std::uint32_t index) const { return pieces_[index]; }
    /// The factor that scales the weights of a step down to a sum of 1; 1 where they are less.
    double scale(std::int32_t step) const { return scales_[static_cast<std::size_t>(step)]; }
    /// The sight of one piece, 0 to 1: how much of it the frame shows, losses by cropping included.
    static double sight(const RealRect& frame, const Weighed& item) {
        const double shownWidth = std::min(frame.right, item.rect.right) - std::max(frame.left, item.rect.left);
        const double shownHeight = std::min(frame.bottom, item.rect.bottom) - std::max(frame.top, item.rect.top);
        if (!(shownWidth > 0.0) || !(shownHeight > 0.0)) {
            return 0.0;
        }
        const double lost = item.crop * (1.0 - shownWidth * shownHeight * item.perPixel);
        return lost <= 0.0 ? 1.0 : lost >= 1.0 ? 0.0 : 1.0 - lost;
    }
    double stepSeconds() const { return step_; }

private:
    double unread(double octaves) const;
    double partsReading(std::size_t step, double wholeAsks, double readable) const;

    double step_;
    double outputWidth_;
    double unread_;
    double unreadStep_;
    double unreadOctaves_;
    double unreadWhole_;
    std::vector<Weighed> pieces_;
    std::vector<std::uint32_t> items_; ///< Indices of pieces, step by step: many steps share a piece.
    std::vector<std::size_t> ends_;
    std::vector<double> scales_;
    std::vector<double> sums_;
    std::vector<double> parts_; ///< For each step, the part of the reading of parts that counts.
};

} // namespace OrvantaNS::camera
