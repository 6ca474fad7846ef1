// The merge queue's heap. The moves are spelled out rather than left to the standard heap: proposals of equal priority
// have no further key, so their order, and with it the shots, is whatever the moves produce.
#include <cstddef>
#include <utility>

#include "OrvantaWorker.h"
#include "frame/Prefetch.h"
#include "worker/merging/MergeEntry.h"

namespace OrvantaNS {

namespace {

// Moves the root of the heap over the first `count` entries down to its place.
void siftDown(std::vector<MERGE_ENTRY>& queue, std::size_t count) {
    const CompareMerges below;
    const MERGE_ENTRY moving = queue[0];
    std::size_t hole = 0;
    for (std::size_t child = 1; child < count; child = 2 * hole + 1) {
        // The children of both are read next: a day of proposals is more than the nearest caches hold.
        const std::size_t grandchild = 2 * child + 1;
        if (grandchild + 3 < count) {
            prefetch(&queue[grandchild]);
            prefetch(&queue[grandchild + 3]);
        }
        const std::size_t right = child + 1;
        // Added, not chosen: which child is worth more is a toss-up, and a jump there would be foretold wrong half the time.
        child += static_cast<std::size_t>(right < count && below(queue[child], queue[right]));
        // A child of equal priority rises: the entry that came from the end of the queue goes behind its equals.
        if (below(queue[child], moving)) {
            break;
        }
        queue[hole] = queue[child];
        hole = child;
    }
    queue[hole] = moving;
}

} // namespace

void OrvantaWorker::pushMergeEntry(MergeQueue& queue, const MERGE_ENTRY& entry) const {
    const CompareMerges below;
    const MERGE_ENTRY moving = entry;
    std::size_t hole = queue.size();
    queue.push_back(moving);
    while (hole > 0) {
        const std::size_t parent = (hole - 1) / 2;
        if (!below(queue[parent], moving)) {
            break;
        }
        queue[hole] = queue[parent];
        hole = parent;
    }
    queue[hole] = moving;
}

MERGE_ENTRY OrvantaWorker::popMergeEntry(MergeQueue& queue) const {
    const MERGE_ENTRY top = queue.front();
    if (queue.size() > 1) {
        std::swap(queue.front(), queue.back());
        siftDown(queue, queue.size() - 1);
    }
    queue.pop_back();
    return top;
}

} // namespace OrvantaNS
