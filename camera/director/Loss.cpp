#include "camera/director/Loss.h"

#include <algorithm>

#include "camera/director/ExactMath.h"

namespace OrvantaNS::camera {

namespace {

// Octaves below the readable zoom within which the step of the loss is climbed, so that a pixel more or less of a frame
// decides nothing.
constexpr double kStepOctaves = 0.08;
// Of the largest zoom that holds a thing: it wants a little room around it.
constexpr double kRoom = 0.97;

bool isSmall(EvidenceKind kind) {
    return kind == EvidenceKind::Press || kind == EvidenceKind::SmallWindow || kind == EvidenceKind::WindowOpens ||
           kind == EvidenceKind::Page || kind == EvidenceKind::Drag;
}

} // namespace

LossTable::LossTable(const Scene& scene, const FrameShape& shape, const DirectorWeights& weights,
                     const std::vector<Evidence>& evidence)
    : step_(scene.step), outputWidth_(shape.outputWidth()), unread_(weights.unread), unreadStep_(weights.unreadStep),
      unreadOctaves_(weights.unreadOctaves) {
    const auto steps = static_cast<std::size_t>(scene.steps);
    ends_.assign(steps + 1, 0);
    for (const Evidence& one : evidence) {
        for (std::int32_t step = one.from; step < one.to; ++step) {
            ++ends_[static_cast<std::size_t>(step) + 1];
        }
    }
    for (std::size_t step = 0; step < steps; ++step) {
        ends_[step + 1] += ends_[step];
    }
    items_.resize(ends_[steps]);
    std::vector<std::size_t> next(ends_.begin(), ends_.end() - 1);
    for (std::size_t i = 0; i < evidence.size(); ++i) {
        const Evidence& one = evidence[i];
        Weighed item;
        item.rect = one.rect;
        item.weight = one.weight;
        item.source = static_cast<std::uint32_t>(i);
        // A change says that something is to be seen in it, rarely all of it: a readable frame full of it will do.
        const double most = one.kind == EvidenceKind::Change ? shape.readingWidth() : shape.widest();
        const double held = std::min(width(one.rect), most) * std::min(height(one.rect), most / shape.ratio());
        item.perPixel = 1.0 / held;
        const double fitting = kRoom * shape.fittingZoom(one.rect);
        const double largest =
            one.kind == EvidenceKind::Change ? std::max(fitting, shape.outputWidth() / shape.readingWidth()) : fitting;
        const double zoom = std::max(shape.outputWidth() / shape.widest(), std::min(shape.readable(), largest));
        item.needed = binaryLog(zoom);
        item.crop = isSmall(one.kind) ? weights.cropSmall : weights.cropLarge;
        for (std::int32_t step = one.from; step < one.to; ++step) {
            items_[next[static_cast<std::size_t>(step)]++] = item;
        }
    }
    sums_.resize(steps);
    for (std::size_t step = 0; step < steps; ++step) {
        double sum = 0.0;
        for (std::size_t i = ends_[step]; i < ends_[step + 1]; ++i) {
            sum += items_[i].weight;
        }
        const double scale = sum > 1.0 ? 1.0 / sum : 1.0;
        for (std::size_t i = ends_[step]; i < ends_[step + 1]; ++i) {
            items_[i].weight *= scale;
        }
        sums_[step] = sum * scale;
    }
}

double LossTable::unread(double octaves) const {
    if (octaves <= 0.0) {
        return 0.0;
    }
    const double step = std::min(1.0, octaves / kStepOctaves);
    const double slope = std::min(1.0, octaves / unreadOctaves_);
    return unread_ * (unreadStep_ * step + (1.0 - unreadStep_) * slope);
}

double LossTable::loss(const RealRect& frame, double zoomLog, std::int32_t step) const {
    double sum = 0.0;
    for (const Weighed* item = begin(step); item != end(step); ++item) {
        const double seen = sight(frame, *item);
        sum += item->weight * (1.0 - seen + seen * unread(item->needed - zoomLog));
    }
    return sum;
}

double LossTable::loss(const RealRect& frame, std::int32_t from, std::int32_t to) const {
    const double zoomLog = binaryLog(outputWidth_ / width(frame));
    double sum = 0.0;
    for (std::int32_t step = from; step < to; ++step) {
        sum += loss(frame, zoomLog, step) * step_;
    }
    return sum;
}

} // namespace OrvantaNS::camera
