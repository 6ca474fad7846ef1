#include "camera/director/Candidates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

#include "camera/director/ExactMath.h"

namespace OrvantaNS::camera {

namespace {

// Seconds that a frame may be taken before what it is made for, and kept after it.
constexpr double kBefore = 4.0;
constexpr double kAfter = 14.0;
constexpr double kBeforeWindow = 4.0;
constexpr double kAfterWindow = 12.0;
// Seconds ahead over which evidence is joined.
constexpr std::array<double, 5> kHorizons{0.0, 3.0, 6.0, 12.0, 24.0};
// Room around what a frame is made for, as a factor.
constexpr double kRoomAround = 1.05;
constexpr double kWindowRoom = 1.02;
// Weight from which a change is what a frame is made for.
constexpr double kStrongChange = 0.15;
// One frame of a kind is enough for a second and for this part of a readable frame.
constexpr double kAnchorParts = 12.0;
// Frames are held for the same when they are closer than this: parts of their width, parts of an octave.
constexpr double kPlaceParts = 12.0;
constexpr double kZoomParts = 6.0;
// Frames of one place that are taken within this many seconds are one candidate throughout.
constexpr double kJoinSeconds = 5.0;
// The least time for which a frame is worth the search's while, seconds.
constexpr double kLeastLife = 3.0;
// Offers of frames from which joining them is worth the while.
constexpr std::size_t kJoinOffers = 16384;
// Where the largest frames do not hold the region: how many of them stand side by side.
constexpr int kLargestFrames = 5;

// Presses that are joined to one at most: nobody means more of them within a few seconds.
constexpr std::size_t kMostPresses = 64;

class Finder {
public:
    Finder(const Scene& scene, const FrameShape& shape, const std::vector<Evidence>& evidence, double reachSeconds)
        : scene_(scene), shape_(shape), reach_(reachSeconds) {
        for (const Evidence& one : evidence) {
            if (isStrong(one)) {
                strong_.push_back(one);
            }
        }
        std::stable_sort(strong_.begin(), strong_.end(),
                         [](const Evidence& a, const Evidence& b) { return a.from < b.from; });
    }

    std::vector<Candidate> find() {
        anchors();
        windows();
        presses();
        return joined();
    }

private:
    struct Offer {
        std::array<std::int64_t, 4> place; ///< Frames of one place are held for the same.
        Candidate candidate;
    };

    bool isStrong(const Evidence& one) const {
        switch (one.kind) {
        case EvidenceKind::Press:
        case EvidenceKind::Drag:
        case EvidenceKind::Typing:
        case EvidenceKind::SmallWindow:
        case EvidenceKind::WindowOpens:
            return true;
        case EvidenceKind::Change:
            return one.weight > kStrongChange && area(one.rect) > scene_.lineHeight * scene_.lineHeight;
        default:
            return false;
        }
    }

    /// With `isExact` only the very same frame is held for the same.
    void put(const RealRect& rect, double from, double to, bool isExact = false) {
        const std::int32_t first = scene_.stepAt(from);
        const std::int32_t last = scene_.stepAt(to);
        if ((last - first) * scene_.step < kLeastLife && first > 0 && last < scene_.steps - 1) {
            return;
        }
        if (isExact) {
            offer({1, static_cast<std::int64_t>(width(rect)), static_cast<std::int64_t>(rect.left),
                   static_cast<std::int64_t>(rect.top)},
                  {rect, first, last + 1});
            return;
        }
        const double part = width(rect) / kPlaceParts;
        const double zoom = std::floor(binaryLog(width(rect)) * kZoomParts + 0.5);
        offer({0, static_cast<std::int64_t>(zoom), static_cast<std::int64_t>(std::floor(rect.left / part)),
               static_cast<std::int64_t>(std::floor(rect.top / part * shape_.ratio()))},
              {rect, first, last + 1});
    }

    void fit(const RealRect& rect, double room, double from, double to, bool isExact = false) {
        put(shape_.frame(centreX(rect), centreY(rect), shape_.fittingWidth(rect, room)), from, to, isExact);
    }

    void around(double x, double y, double zoom, double from, double to) {
        put(shape_.frame(x, y, shape_.outputWidth() / zoom), from, to);
    }

    const RealRect* frontAt(double seconds) const {
        auto after = std::upper_bound(scene_.windows.begin(), scene_.windows.end(), seconds,
                                      [](double time, const SceneWindow& w) { return time < w.from; });
        while (after != scene_.windows.begin()) {
            --after;
            if (!isEmpty(after->rect)) {
                return &after->rect;
            }
        }
        return nullptr;
    }

    /// A readable frame around a point, pushed into the window in front so that it shows the window and not beside it.
    void aroundInWindow(double x, double y, double zoom, const RealRect& window, double from, double to) {
        const double w = shape_.outputWidth() / zoom;
        const double h = w / shape_.ratio();
        const auto pushed = [](double centre, double size, double low, double high) {
            return size >= high - low ? (low + high) / 2.0 : std::clamp(centre, low + size / 2.0, high - size / 2.0);
        };
        put(shape_.frame(pushed(x, w, window.left, window.right), pushed(y, h, window.top, window.bottom), w), from,
            to);
    }

    void anchors() {
        const double part = shape_.outputWidth() / shape_.readable() / kAnchorParts;
        std::vector<std::array<std::int64_t, 3>> taken;
        for (std::size_t i = 0; i < strong_.size(); ++i) {
            const Evidence& one = strong_[i];
            const double start = one.from * scene_.step;
            const std::array<std::int64_t, 3> place{static_cast<std::int64_t>(start),
                                                    static_cast<std::int64_t>(centreX(one.rect) / part),
                                                    static_cast<std::int64_t>(centreY(one.rect) / part)};
            std::erase_if(taken, [&](const auto& other) { return other[0] < place[0]; });
            if (std::find(taken.begin(), taken.end(), place) != taken.end()) {
                continue;
            }
            taken.push_back(place);
            anchor(i, start);
        }
    }

    void anchor(std::size_t index, double start) {
        const RealRect* window = frontAt(start);
        RealRect all = strong_[index].rect;
        std::size_t next = index;
        double sumX = 0.0;
        double sumY = 0.0;
        std::size_t count = 0;
        for (const double horizon : kHorizons) {
            if (horizon > 0.0) {
                for (; next < strong_.size() && strong_[next].from * scene_.step <= start + horizon; ++next) {
                    all = boundingUnion(all, strong_[next].rect);
                    sumX += centreX(strong_[next].rect);
                    sumY += centreY(strong_[next].rect);
                    ++count;
                }
            }
            const double from = start - kBefore;
            const double to = start + horizon + kAfter;
            fit(all, kRoomAround, from, to);
            if (horizon != 0.0 && horizon != 6.0) {
                continue;
            }
            const double x = count > 0 ? sumX / static_cast<double>(count) : centreX(all);
            const double y = count > 0 ? sumY / static_cast<double>(count) : centreY(all);
            const double readable = std::min(1.0, shape_.readable());
            around(x, y, readable, from, to);
            if (horizon == 0.0) {
                around(x, y, 1.0, from, to);
            }
            if (window != nullptr) {
                aroundInWindow(x, y, readable, *window, from, to);
            }
        }
    }

    void windows() {
        for (const SceneWindow& run : scene_.windows) {
            if (!isEmpty(run.rect) && run.to - run.from > 0.5) {
                fit(run.rect, kWindowRoom, run.from - kBeforeWindow, run.to + kAfterWindow, true);
            }
        }
    }

    /// Frames for the presses that one rest and the moves around it must hold.
    void presses() {
        for (std::size_t i = 0; i < scene_.presses.size(); ++i) {
            const ScenePress& first = scene_.presses[i];
            RealRect all{first.x, first.y, first.x, first.y};
            const RealRect alone = grownAround(all);
            fit(alone, 1.0, first.seconds - reach_ - 1.0, first.seconds + reach_ + 1.0, true);
            for (std::size_t j = i + 1; j < std::min(scene_.presses.size(), i + kMostPresses); ++j) {
                const ScenePress& other = scene_.presses[j];
                if (other.seconds - first.seconds > reach_) {
                    break;
                }
                const RealRect before = all;
                all = boundingUnion(all, {other.x, other.y, other.x, other.y});
                if (all == before) {
                    continue;
                }
                fit(grownAround(all), 1.0, first.seconds - reach_ - 1.0, other.seconds + reach_ + 1.0, true);
            }
        }
    }

    RealRect grownAround(const RealRect& rect) const {
        const double room = 2.0 * scene_.lineHeight;
        return {rect.left - room, rect.top - room, rect.right + room, rect.bottom + room};
    }

    /// Joins the offers of one place that are taken close together in time; the first one's frame stands for all. Joining
    /// some of them first changes nothing, so it is done whenever they have doubled: there may be a million.
    void join() {
        std::stable_sort(offers_.begin(), offers_.end(), [](const Offer& a, const Offer& b) {
            return a.place != b.place ? a.place < b.place : a.candidate.from < b.candidate.from;
        });
        const auto gap = static_cast<std::int32_t>(kJoinSeconds / scene_.step);
        std::size_t count = 0;
        for (const Offer& offer : offers_) {
            if (count > 0 && offers_[count - 1].place == offer.place &&
                offer.candidate.from <= offers_[count - 1].candidate.to + gap) {
                Candidate& last = offers_[count - 1].candidate;
                last.to = std::max(last.to, offer.candidate.to);
            } else {
                offers_[count++] = offer;
            }
        }
        offers_.erase(offers_.begin() + static_cast<std::ptrdiff_t>(count), offers_.end());
        joinAt_ = std::max(kJoinOffers, 2 * count);
    }

    std::vector<Candidate> joined() {
        join();
        std::vector<Candidate> candidates;
        const double largest = shape_.widest();
        const double centre = scene_.width / 2.0;
        const double middle = scene_.height / 2.0;
        candidates.push_back({shape_.frame(centre, middle, largest), 0, scene_.steps});
        if (!shape_.holdsRegion()) {
            for (int i = 0; i < kLargestFrames; ++i) {
                const double part = static_cast<double>(i) / (kLargestFrames - 1);
                const RealRect frame = shape_.frame(part * scene_.width, part * scene_.height, largest);
                if (frame != candidates.front().rect) {
                    candidates.push_back({frame, 0, scene_.steps});
                }
            }
        }
        for (const Offer& offer : offers_) {
            candidates.push_back(offer.candidate);
        }
        return candidates;
    }

    void offer(const std::array<std::int64_t, 4>& place, const Candidate& candidate) {
        if (offers_.size() >= joinAt_) {
            join();
        }
        offers_.push_back({place, candidate});
    }

    const Scene& scene_;
    const FrameShape& shape_;
    const double reach_;
    std::vector<Evidence> strong_;
    std::vector<Offer> offers_;
    std::size_t joinAt_ = kJoinOffers; ///< Offers at which they are joined.
};

} // namespace

std::vector<Candidate> findCandidates(const Scene& scene, const FrameShape& shape,
                                      const std::vector<Evidence>& evidence, double reachSeconds) {
    return Finder(scene, shape, evidence, reachSeconds).find();
}

} // namespace OrvantaNS::camera
