// The proposals of the merge queue.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/FocusSlice.h"

namespace OrvantaNS {

/// One proposal to treat a slice and its next target together. It remembers the revisions that it was computed from:
/// when either has moved on, the proposal is stale.
struct MERGE_ENTRY {
    std::int32_t priority = -1;            ///< Higher goes first; -1 until a strategy has been chosen.
    std::uint32_t firstSlice = 0;          ///< The earlier slice.
    std::uint32_t nextSlice = 0;           ///< Its next target at the moment of creation.
    std::int32_t strategy = OV_MERGE_NONE; ///< `OV_MERGE_STRATEGY`: what to do.
    std::int32_t firstMergeId = 0;         ///< `mergeId` of `firstSlice` at creation.
    std::int32_t nextMergeId = 0;          ///< `mergeId` of `nextSlice` at creation.
};

/// The order of the queue: by priority alone.
struct CompareMerges {
    bool operator()(const MERGE_ENTRY& a, const MERGE_ENTRY& b) const { return a.priority < b.priority; }
};

} // namespace OrvantaNS
