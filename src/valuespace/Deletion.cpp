// Deletion: an object leaves the graph, and the spaces that it alone justified are dissolved.
//
// Object lists decide, not rectangles. A space is worth keeping when no single parent holds all of its objects: then
// objects overlap there in a way that none of its parents expresses.
#include <algorithm>
#include <cstddef>

#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

void ValueSpace::deleteObject(unsigned object) {
    const auto location = objectMap.find(object);
    if (location == objectMap.end()) {
        return;
    }
    // A queue that is read at `next`; what lies before it has left the queue.
    std::vector<std::uint32_t> work{location->second};
    objectMap.erase(location);

    std::vector<std::uint32_t> snapshot;
    for (std::size_t next = 0; next < work.size(); ++next) {
        const std::uint32_t s = work[next];
        OV_INTERSECTION& space = graph[s];
        if (!space.valid) {
            continue; // Dissolved while a second copy waited.
        }
        const auto listed = std::find(space.objects.begin(), space.objects.end(), object);
        if (listed != space.objects.end()) {
            space.objects.erase(listed);
        }

        const bool redundant =
            space.objects.empty() || std::any_of(space.parents.begin(), space.parents.end(),
                                                 [&](std::uint32_t parent) { return containsAllObjects(parent, s); });

        // A parent goes when another parent says all that it says; of two with the same objects the later one goes.
        // This comes after the decision above, which has to see all parents.
        for (std::size_t k = space.parents.size(); k-- > 0;) {
            const std::uint32_t parent = space.parents[k];
            for (std::size_t other = 0; other < space.parents.size(); ++other) {
                if (other != k && containsAllObjects(space.parents[other], parent)) {
                    removeLink(parent, s);
                    break;
                }
            }
        }

        snapshot = space.children;

        if (redundant) {
            if (space.parents.empty()) {
                const auto top = std::find(topSpaces.begin(), topSpaces.end(), s);
                if (top != topSpaces.end()) {
                    topSpaces.erase(top);
                }
            }
            for (const std::uint32_t child : snapshot) {
                removeLink(s, child);
            }
            for (std::size_t k = space.parents.size(); k-- > 0;) {
                const std::uint32_t parent = space.parents[k];
                removeLink(parent, s);
                for (const std::uint32_t child : snapshot) {
                    createLink(parent, child);
                }
            }
            clearSpace(s);
        } else if (space.parents.empty()) {
            exclusiveAppend(topSpaces, s); // It may have lost its only parent when that was dissolved.
        }

        // Each child moves behind every parent of it that still waits, so that the parents have been dealt with before
        // the child is judged against them. The last entry is outside the search: a child that stands there gets a
        // second copy, and the order of visits depends on it.
        for (const std::uint32_t child : snapshot) {
            if (work.size() - next > 1) {
                const auto last = work.end() - 1;
                const auto waiting = std::find(work.begin() + static_cast<std::ptrdiff_t>(next), last, child);
                if (waiting != last) {
                    work.erase(waiting);
                }
            }
            work.push_back(child);
        }
    }
}

bool ValueSpace::containsAllObjects(unsigned container, unsigned contained) {
    const std::vector<std::uint32_t>& held = graph[container].objects;
    for (const std::uint32_t object : graph[contained].objects) {
        if (std::find(held.begin(), held.end(), object) == held.end()) {
            return false;
        }
    }
    return true;
}

} // namespace OrvantaNS
