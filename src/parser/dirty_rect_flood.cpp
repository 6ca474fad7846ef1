#include "DirtyRectFlood.h"

#include "Geometry.h"
#include <algorithm>
#include <unordered_map>

namespace OrvantaNS {

namespace {

// Side of a grid cell, as a power of two, pixels: thin parts of windows and lines of text cover few of them.
constexpr int kCellBits = 6;
// A cluster that covers more cells than this is kept beside the grid and asked about every record.
constexpr std::int64_t kMostCells = 64;
// Beyond this distance from the origin, growing by a pixel could wrap around, and nothing can be told from bounds.
constexpr std::int32_t kFarPixels = std::int32_t{1} << 30;

bool isOrdinary(const Rectangle& rect) {
    return rect.left <= rect.right && rect.top <= rect.bottom && rect.left > -kFarPixels && rect.right < kFarPixels &&
           rect.top > -kFarPixels && rect.bottom < kFarPixels;
}

// Clusters in the order of their making, found by where their members lie.
class Clusters {
public:
    explicit Clusters(const std::vector<OV_TIME_RECT>& dirtyRects) : dirtyRects_(dirtyRects) {}

    void add(std::uint32_t index) {
        const Rectangle fresh = dirtyRects_[index].rect;
        const std::vector<std::uint32_t> hits = clustersHit(fresh);
        if (hits.empty()) {
            const auto made = static_cast<std::uint32_t>(clusters_.size());
            clusters_.emplace_back();
            clusters_.back().frame = {{index}, fresh, false};
            clusters_.back().reach = fresh;
            place(made, isOrdinary(fresh));
            return;
        }
        Cluster& target = clusters_[hits.front()];
        bool isFindable = isOrdinary(fresh);
        for (std::size_t i = 1; i < hits.size(); ++i) {
            Cluster& joined = clusters_[hits[i]];
            target.frame.dirtyRects.insert(target.frame.dirtyRects.end(), joined.frame.dirtyRects.begin(),
                                           joined.frame.dirtyRects.end());
            target.reach = boundingUnion(target.reach, joined.reach);
            isFindable = isFindable && !joined.isWide;
            joined.frame.dirtyRects.clear();
        }
        target.frame.dirtyRects.push_back(index);
        // What a joined cluster covered stays out of the frame's rectangle, as for every cluster, but not out of reach.
        target.frame.rect = boundingUnion(target.frame.rect, fresh);
        target.reach = boundingUnion(target.reach, fresh);
        place(hits.front(), isFindable);
    }

    std::vector<DR_OBJECT_FRAME> take() {
        std::vector<DR_OBJECT_FRAME> frames;
        for (Cluster& cluster : clusters_) {
            if (!cluster.frame.dirtyRects.empty()) {
                frames.push_back(std::move(cluster.frame));
            }
        }
        return frames;
    }

private:
    struct Cluster {
        DR_OBJECT_FRAME frame;
        Rectangle reach;       // Bounds of all members, those of joined clusters included.
        Rectangle placed;      // What the grid knows of it.
        bool isPlaced = false; // The grid knows of it.
        bool isWide = false;   // It stands beside the grid.
        bool isAsked = false;  // It is a candidate of the search that is under way.
    };

    template <typename Visit> static void forEachCell(const Rectangle& cells, const Visit& visit) {
        for (std::int32_t x = cells.left; x <= cells.right; ++x) {
            for (std::int32_t y = cells.top; y <= cells.bottom; ++y) {
                visit(x, y);
            }
        }
    }

    // The cells that an ordinary rectangle reaches into, its far edges included.
    static Rectangle cellsOf(const Rectangle& rect) {
        return {rect.left >> kCellBits, rect.right >> kCellBits, rect.top >> kCellBits, rect.bottom >> kCellBits};
    }

    static bool hasFewCells(const Rectangle& rect) {
        const Rectangle cells = cellsOf(rect);
        return (std::int64_t{width(cells)} + 1) * (std::int64_t{height(cells)} + 1) <= kMostCells;
    }

    static std::uint64_t keyOf(std::int32_t x, std::int32_t y) {
        return std::uint64_t{static_cast<std::uint32_t>(x)} << 32 | static_cast<std::uint32_t>(y);
    }

    // Makes a cluster findable in all cells of its reach.
    void place(std::uint32_t index, bool isFindable) {
        Cluster& cluster = clusters_[index];
        if (cluster.isWide) {
            return;
        }
        if (!isFindable || !hasFewCells(cluster.reach)) {
            cluster.isWide = true;
            wide_.push_back(index);
            return;
        }
        const Rectangle cells = cellsOf(cluster.reach);
        if (cluster.isPlaced && cells == cluster.placed) {
            return;
        }
        forEachCell(cells, [&](std::int32_t x, std::int32_t y) {
            if (!cluster.isPlaced || !contains(cluster.placed, {x, x, y, y})) {
                cells_[keyOf(x, y)].push_back(index);
            }
        });
        cluster.placed = cells;
        cluster.isPlaced = true;
    }

    bool isHit(const Cluster& cluster, const Rectangle& fresh) const {
        return std::any_of(cluster.frame.dirtyRects.begin(), cluster.frame.dirtyRects.end(),
                           [&](std::uint32_t member) { return fresh.canTouchRect(dirtyRects_[member].rect); });
    }

    // The clusters with a member that `fresh` can touch, in order.
    std::vector<std::uint32_t> clustersHit(const Rectangle& fresh) {
        std::vector<std::uint32_t> candidates;
        const auto ask = [&](std::uint32_t cluster) {
            if (!clusters_[cluster].isAsked && !clusters_[cluster].frame.dirtyRects.empty()) {
                clusters_[cluster].isAsked = true;
                candidates.push_back(cluster);
            }
        };
        const Rectangle reach = grown(fresh, 1);
        if (isOrdinary(fresh) && hasFewCells(reach)) {
            std::erase_if(wide_, [&](std::uint32_t cluster) { return clusters_[cluster].frame.dirtyRects.empty(); });
            std::for_each(wide_.begin(), wide_.end(), ask);
            forEachCell(cellsOf(reach), [&](std::int32_t x, std::int32_t y) {
                const auto found = cells_.find(keyOf(x, y));
                if (found != cells_.end()) {
                    std::for_each(found->second.begin(), found->second.end(), ask);
                }
            });
        } else {
            for (std::uint32_t cluster = 0; cluster < clusters_.size(); ++cluster) {
                ask(cluster);
            }
        }
        for (const std::uint32_t cluster : candidates) {
            clusters_[cluster].isAsked = false;
        }
        std::erase_if(candidates, [&](std::uint32_t cluster) { return !isHit(clusters_[cluster], fresh); });
        std::sort(candidates.begin(), candidates.end());
        return candidates;
    }

    const std::vector<OV_TIME_RECT>& dirtyRects_;
    std::vector<Cluster> clusters_; // A cluster that has been joined to another has no members left.
    std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> cells_;
    std::vector<std::uint32_t> wide_;
};

} // namespace

std::vector<DR_OBJECT_FRAME> clusterFlood(const std::vector<OV_TIME_RECT>& dirtyRects, std::uint32_t from,
                                          std::uint32_t to) {
    Clusters clusters(dirtyRects);
    for (std::uint32_t i = from; i < to; ++i) {
        clusters.add(i);
    }
    return clusters.take();
}

} // namespace OrvantaNS
