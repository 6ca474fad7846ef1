#include "parser/flood/DirtyRectFlood.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "parser/damage/AreaMatch.h"

namespace OrvantaNS {

namespace {

using Node = RectangleTree::Node;

// Work on one rectangle when trees over all are made, steps.
constexpr std::uint64_t kStepsPerRect = 8;

void count(OV_DATA_STORE* counting, std::uint64_t steps) {
    if (counting != nullptr) {
        countSteps(*counting, steps);
    }
}

// The clusters of one moment. A cluster goes by its founder, the number of its first record: a joined cluster goes into
// the one with the earlier founder, so that founders stand in the order of the clusters.
//
// The search goes down a tree of the records. It leaves out every branch whose records all belong to one cluster that
// is hit already, which is what keeps it short: a search that goes deep either finds a cluster that it joins, which can
// happen only once to each, or passes close by one.
class Clusters {
public:
    explicit Clusters(std::vector<Rectangle> rects)
        : rects_(std::move(rects)), tree_(rects_), founders_(rects_.size()), next_(rects_.size(), kNone),
          last_(rects_.size()), extents_(rects_), hitBy_(rects_.size(), kNone), owners_(tree_.nodeCount(), kNone) {}

    // Records must be added in order. Gives the number of nodes and records that it looked at.
    std::uint64_t add(std::uint32_t record) {
        visited_ = 1;
        const std::vector<std::uint32_t> hits = clustersHit(record);
        founders_[record] = hits.empty() ? record : hits.front();
        last_[record] = record;
        if (!hits.empty()) {
            const std::uint32_t target = hits.front();
            for (std::size_t i = 1; i < hits.size(); ++i) {
                // The joined cluster's own extent is dropped on purpose, as when clusters are made one by one.
                founders_[hits[i]] = target;
                append(target, hits[i]);
            }
            append(target, record);
            extents_[target] = boundingUnion(extents_[target], rects_[record]);
        }
        include(record);
        return visited_;
    }

    // The members' numbers begin at `from`.
    std::vector<DR_OBJECT_FRAME> take(std::uint32_t from) {
        std::vector<DR_OBJECT_FRAME> frames;
        for (std::uint32_t founder = 0; founder < rects_.size(); ++founder) {
            if (founders_[founder] != founder) {
                continue;
            }
            frames.push_back({{}, extents_[founder], false});
            for (std::uint32_t member = founder; member != kNone; member = next_[member]) {
                frames.back().dirtyRects.push_back(from + member);
            }
        }
        return frames;
    }

private:
    static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
    // Owner of a branch whose records belong, or did so when last looked at, to more than one cluster.
    static constexpr std::uint32_t kSeveral = kNone - 1;

    // Members stand in a chain from the founder on.
    void append(std::uint32_t target, std::uint32_t chain) {
        next_[last_[target]] = chain;
        last_[target] = last_[chain];
    }

    std::uint32_t founderOf(std::uint32_t record) {
        while (founders_[record] != record) {
            founders_[record] = founders_[founders_[record]];
            record = founders_[record];
        }
        return record;
    }

    void include(std::uint32_t record) {
        const Rectangle& rect = rects_[record];
        if (RectangleTree::isFar(rect)) {
            far_.push_back(record);
            return;
        }
        if (!RectangleTree::isFindable(rect)) {
            return;
        }
        tree_.include(record, rect);
        for (Node node = tree_.leafOf(record); node >= RectangleTree::kRoot; node = RectangleTree::parent(node)) {
            std::uint32_t& owner = owners_[node];
            if (owner == kNone) {
                owner = record;
            } else if (owner != kSeveral && founderOf(owner) != founderOf(record)) {
                owner = kSeveral;
            }
        }
    }

    // Founders of the clusters with a member that `record` can touch, in order.
    std::vector<std::uint32_t> clustersHit(std::uint32_t record) {
        std::vector<std::uint32_t> hits;
        const Rectangle& fresh = rects_[record];
        if (RectangleTree::isFar(fresh)) {
            for (std::uint32_t earlier = 0; earlier < record; ++earlier) {
                test(earlier, record, hits);
            }
        } else {
            for (const std::uint32_t earlier : far_) {
                test(earlier, record, hits);
            }
            search(RectangleTree::kRoot, grown(fresh, 1), record, hits);
        }
        std::sort(hits.begin(), hits.end());
        return hits;
    }

    void test(std::uint32_t earlier, std::uint32_t record, std::vector<std::uint32_t>& hits) {
        ++visited_;
        const std::uint32_t founder = founderOf(earlier);
        if (hitBy_[founder] != record && rects_[record].canTouchRect(rects_[earlier])) {
            hitBy_[founder] = record;
            hits.push_back(founder);
        }
    }

    void search(Node node, const Rectangle& reach, std::uint32_t record, std::vector<std::uint32_t>& hits) {
        ++visited_;
        std::uint32_t& owner = owners_[node];
        if (owner == kNone || !tree_.canMeet(node, reach)) {
            return;
        }
        if (tree_.isLeaf(node)) {
            test(owner, record, hits);
            return;
        }
        if (owner != kSeveral && hitBy_[founderOf(owner)] == record) {
            return;
        }
        search(RectangleTree::firstChild(node), reach, record, hits);
        search(RectangleTree::secondChild(node), reach, record, hits);
        if (owner == kSeveral) {
            owner = commonOwner(owners_[RectangleTree::firstChild(node)], owners_[RectangleTree::secondChild(node)]);
        }
    }

    // Both branches have records when their parent has several owners, or one of them has several itself.
    std::uint32_t commonOwner(std::uint32_t a, std::uint32_t b) {
        if (a == kNone || b == kNone) {
            return a == kNone ? b : a;
        }
        return a != kSeveral && b != kSeveral && founderOf(a) == founderOf(b) ? a : kSeveral;
    }

    std::vector<Rectangle> rects_;
    RectangleTree tree_;
    std::vector<std::uint32_t> founders_; // By record: its cluster's founder, or one on the way to it.
    std::vector<std::uint32_t> next_;     // By record: the next member of its cluster.
    std::vector<std::uint32_t> last_;     // By founder: the last member.
    std::vector<Rectangle> extents_;      // By founder: the cluster's rectangle.
    std::vector<std::uint32_t> hitBy_;    // By founder: the last record that hit the cluster.
    std::vector<std::uint32_t> owners_;   // By node: a record of the cluster that all records below it belong to.
    std::uint64_t visited_ = 0;           // Nodes and records that the search in work has looked at.
    std::vector<std::uint32_t> far_;      // Records that the tree cannot hold and that may still be touched.
};

std::vector<Rectangle> rectsOf(const std::vector<DR_OBJECT_FRAME>& frames) {
    std::vector<Rectangle> rects;
    rects.reserve(frames.size());
    for (const DR_OBJECT_FRAME& frame : frames) {
        rects.push_back(frame.rect);
    }
    return rects;
}

} // namespace

std::vector<DR_OBJECT_FRAME> clusterFlood(const std::vector<OV_TIME_RECT>& dirtyRects, std::uint32_t from,
                                          std::uint32_t to, OV_DATA_STORE* counting) {
    count(counting, kStepsPerRect * (to - from));
    std::vector<Rectangle> rects;
    rects.reserve(to - from);
    for (std::uint32_t i = from; i < to; ++i) {
        rects.push_back(dirtyRects[i].rect);
    }
    Clusters clusters(std::move(rects));
    for (std::uint32_t i = 0; i < to - from; ++i) {
        count(counting, clusters.add(i));
    }
    return clusters.take(from);
}

SimilarFrameFinder::SimilarFrameFinder(const std::vector<DR_OBJECT_FRAME>& frames, OV_DATA_STORE* counting)
    : counting_(counting), frames_(frames), tree_(rectsOf(frames)), first_(tree_.nodeCount(), frames.size()) {
    count(counting, kStepsPerRect * frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const DR_OBJECT_FRAME& frame = frames[i];
        if (frame.matched) {
            continue;
        }
        if (RectangleTree::isFar(frame.rect)) {
            far_.push_back(i);
        } else if (RectangleTree::isFindable(frame.rect)) {
            tree_.include(i, frame.rect);
            for (Node node = tree_.leafOf(i); node >= RectangleTree::kRoot; node = RectangleTree::parent(node)) {
                first_[node] = std::min(first_[node], i);
            }
        }
    }
}

std::size_t SimilarFrameFinder::find(const Rectangle& seen) const {
    const auto isMatch = [&](std::size_t i) { return isSimilar(seen, frames_[i].rect); };
    const auto far = std::find_if(far_.begin(), far_.end(), isMatch);
    std::size_t best = far == far_.end() ? frames_.size() : *far;
    std::uint64_t visited = 1 + far_.size();
    if (!RectangleTree::isFar(seen)) {
        findBelow(RectangleTree::kRoot, seen, best, visited);
        count(counting_, visited);
        return best;
    }
    count(counting_, visited + best);
    for (std::size_t i = 0; i < best; ++i) {
        if (!frames_[i].matched && isMatch(i)) {
            return i;
        }
    }
    return best;
}

void SimilarFrameFinder::findBelow(Node node, const Rectangle& seen, std::size_t& best, std::uint64_t& visited) const {
    ++visited;
    if (first_[node] >= best || !tree_.canMeet(node, seen)) {
        return;
    }
    if (tree_.isLeaf(node)) {
        if (isSimilar(seen, frames_[first_[node]].rect)) {
            best = first_[node];
        }
        return;
    }
    // The branch with the earlier frame first: a match there can spare the other one.
    Node sooner = RectangleTree::firstChild(node);
    Node later = RectangleTree::secondChild(node);
    if (first_[later] < first_[sooner]) {
        std::swap(sooner, later);
    }
    findBelow(sooner, seen, best, visited);
    findBelow(later, seen, best, visited);
}

void SimilarFrameFinder::take(std::size_t position) {
    if (RectangleTree::isFar(frames_[position].rect)) {
        far_.erase(std::find(far_.begin(), far_.end(), position));
        return;
    }
    Node node = tree_.leafOf(position);
    first_[node] = frames_.size();
    for (node = RectangleTree::parent(node); node >= RectangleTree::kRoot; node = RectangleTree::parent(node)) {
        first_[node] = std::min(first_[RectangleTree::firstChild(node)], first_[RectangleTree::secondChild(node)]);
    }
}

} // namespace OrvantaNS
