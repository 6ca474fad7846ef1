#include "camera/director/Loss.h"

#include <algorithm>

#include "camera/director/ExactMath.h"

namespace OrvantaNS::camera {

namespace {

// Octaves below the readable zoom within which the step of the loss is climbed, so that a pixel more or less of a frame
// decides nothing.
constexpr double kStepOctaves = 0.08;
// Of the largest zoom that holds a thing: it wants a little room around it.
constexpr double kOfFittingZoom = 0.97;

// Octaves below the readable zoom from which a whole is too large to be read with its parts.
constexpr double kLargeOctaves = 0.3;

double cropOf(EvidenceKind kind, const DirectorWeights& weights) {
    switch (kind) {
    case EvidenceKind::SmallWindow:
    case EvidenceKind::WindowOpens:
    case EvidenceKind::Page:
        return weights.cropWindow;
    case EvidenceKind::Press:
    case EvidenceKind::Drag:
        return weights.cropSmall;
    default:
        return weights.cropLarge;
    }
}

Weighed weighed(const Evidence& one, const FrameShape& shape, const DirectorWeights& weights) {
    Weighed item;
    item.rect = one.rect;
    item.weight = one.weight;
    item.reading = one.reading;
    // A change says that something is to be seen in it, rarely all of it: a readable frame full of it will do.
    const double most = one.kind == EvidenceKind::Change ? shape.readingWidth() : shape.widest();
    const double held = std::min(width(one.rect), most) * std::min(height(one.rect), most / shape.ratio());
    item.perPixel = 1.0 / held;
    const double fitting = kOfFittingZoom * shape.fittingZoom(one.rect);
    const double largest =
        one.kind == EvidenceKind::Change ? std::max(fitting, shape.outputWidth() / shape.readingWidth()) : fitting;
    const double zoom = std::max(shape.outputWidth() / shape.widest(), std::min(shape.readable(), largest));
    item.needed = binaryLog(zoom);
    item.crop = cropOf(one.kind, weights);
    item.isWhole = one.kind == EvidenceKind::Page || one.kind == EvidenceKind::WindowOpens;
    return item;
}

} // namespace

LossTable::LossTable(const Scene& scene, const FrameShape& shape, const DirectorWeights& weights,
                     const std::vector<Evidence>& evidence)
    : step_(scene.step), outputWidth_(shape.outputWidth()), unread_(weights.unread), unreadStep_(weights.unreadStep),
      unreadOctaves_(weights.unreadOctaves), unreadWhole_(weights.unreadWhole) {
    const auto steps = static_cast<std::size_t>(scene.steps);
    ends_.assign(steps + 1, 0);
    pieces_.reserve(evidence.size());
    for (const Evidence& one : evidence) {
        pieces_.push_back(weighed(one, shape, weights));
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
        for (std::int32_t step = evidence[i].from; step < evidence[i].to; ++step) {
            items_[next[static_cast<std::size_t>(step)]++] = static_cast<std::uint32_t>(i);
        }
    }
    scales_.resize(steps);
    sums_.resize(steps);
    parts_.resize(steps);
    for (std::size_t step = 0; step < steps; ++step) {
        double sum = 0.0;
        for (std::size_t i = ends_[step]; i < ends_[step + 1]; ++i) {
            sum += pieces_[items_[i]].weight;
        }
        scales_[step] = sum > 1.0 ? 1.0 / sum : 1.0;
        sums_[step] = sum * scales_[step];
        parts_[step] = partsReading(step, weights.wholeAsks, binaryLog(shape.readable()));
    }
}

/// While a whole is the subject, a window that opens or a page that changes, its parts need not be read: being so near as
/// to read them would cut the whole.
double LossTable::partsReading(std::size_t step, double wholeAsks, double readable) const {
    double whole = 0.0;
    for (std::size_t i = ends_[step]; i < ends_[step + 1]; ++i) {
        const Weighed& item = pieces_[items_[i]];
        if (item.isWhole) {
            const double large = std::min(1.0, (readable - item.needed) / kLargeOctaves);
            whole = std::max(whole, wholeAsks * item.weight * scales_[step] * large);
        }
    }
    return std::max(0.0, 1.0 - whole);
}

double LossTable::unread(double octaves) const {
    if (octaves <= 0.0) {
        return 0.0;
    }
    const double step = std::min(1.0, octaves / kStepOctaves);
    const double slope = std::min(1.0, octaves / unreadOctaves_);
    const double part = unreadStep_ * step + (1.0 - unreadStep_) * slope;
    // `unread` multiplies the odds, so that what is too small is never worse than what is not there.
    return unread_ * part / (1.0 + (unread_ - 1.0) * part);
}

double LossTable::loss(const RealRect& frame, double zoomLog, std::int32_t step) const {
    const double parts = parts_[static_cast<std::size_t>(step)];
    double sum = 0.0;
    for (const std::uint32_t* i = begin(step); i != end(step); ++i) {
        const Weighed& item = pieces_[*i];
        const double seen = sight(frame, item);
        const double reading = item.isWhole ? unreadWhole_ : parts * item.reading;
        sum += item.weight * (1.0 - seen + seen * reading * unread(item.needed - zoomLog));
    }
    return sum * scale(step);
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
