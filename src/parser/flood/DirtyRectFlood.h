// What the clustering and following of dirty rectangles does at a moment that has very many of them, at a cost far below
// that of asking each about each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "frame/DataStore.h"
#include "parser/damage/DirtyRectObject.h"
#include "parser/flood/RectangleTree.h"

namespace OrvantaNS {

/// Moments with more dirty rectangles than this go through `clusterFlood`. A screen's frame has some hundred at most.
inline constexpr std::uint32_t kFloodRects = 256;

/// Moments with more clusters than this, and more active objects, go through a `SimilarFrameFinder`.
inline constexpr std::size_t kFloodFrames = 64;

/// Gives the clusters that `DataParser::addDRToFrameSet` makes of the records from `from` up to but not including `to`,
/// in the same order, without asking every cluster about every record. The work is counted in `counting` (`countSteps`),
/// unless that is null.
std::vector<DR_OBJECT_FRAME> clusterFlood(const std::vector<OV_TIME_RECT>& dirtyRects, std::uint32_t from,
                                          std::uint32_t to, OV_DATA_STORE* counting = nullptr);

/// Finds the cluster that an active object takes, without asking every cluster of the moment.
class SimilarFrameFinder {
public:
    /// Looks among the frames that are not matched yet. Their rectangles must stay as they are. The work is counted in
    /// `counting` (`countSteps`), unless that is null.
    explicit SimilarFrameFinder(const std::vector<DR_OBJECT_FRAME>& frames, OV_DATA_STORE* counting = nullptr);

    /// Position of the first frame not taken that is similar to `seen`, or the number of frames when there is none.
    std::size_t find(const Rectangle& seen) const;
    /// Leaves the frame at `position`, as `find` gave it, out of later searches.
    void take(std::size_t position);

private:
    void findBelow(RectangleTree::Node node, const Rectangle& seen, std::size_t& best, std::uint64_t& visited) const;

    OV_DATA_STORE* counting_;
    const std::vector<DR_OBJECT_FRAME>& frames_;
    RectangleTree tree_;
    std::vector<std::size_t> first_; // By node: the first frame below it that is not taken.
    std::vector<std::size_t> far_;   // Frames, in order, that the tree cannot hold and that may still be similar.
};

} // namespace OrvantaNS
