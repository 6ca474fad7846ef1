// Insertion: an object enters the graph with all its overlaps.
//
// The walk from the top collects the spaces that the object calls for in a creation list, without touching the graph,
// since on its way it may still meet a space that can stand for the object as it is. Only then are they made and linked.
#include <algorithm>
#include <cstddef>

#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

void ValueSpace::insertObject(unsigned object) {
    if (objectMap.find(object) != objectMap.end()) {
        return;
    }
    const Rectangle rect = store->valueObjects[object].rect;

    std::vector<VS_CREATION_SPACE> creation;
    creation.push_back({rect, {}, false, 0}); // Record 0 is the object's own space, whatever it overlaps.

    // A queue that is read at `next`; what lies before it has left the queue and may enter it again.
    std::vector<std::uint32_t> toCheck = topSpaces;
    for (std::size_t next = 0; next < toCheck.size(); ++next) {
        const std::uint32_t s = toCheck[next];
        const OV_INTERSECTION& space = graph[s];
        if (space.rect.nearSameSize(rect)) {
            insertQuick(s, object);
            return;
        }
        const Rectangle common = intersection(rect, space.rect);
        if (area(common) <= 0) {
            continue; // The children lie inside this space and overlap as little.
        }
        const unsigned record = getCreationLocation(creation, common);
        if (common == space.rect) {
            // The space lies inside the object and serves as it is; its children stay below it.
            creation[record].reuse = true;
            creation[record].space = s;
            continue;
        }
        addCreationParent(creation, record, {PARENT_IN_GRAPH, s});
        for (const std::uint32_t child : space.children) {
            // The search begins at the entry in work, so a space that was visited already is queued and visited again.
            // A second visit can move a parent to the end of its record's list, and list orders decide ties.
            if (std::find(toCheck.begin() + static_cast<std::ptrdiff_t>(next), toCheck.end(), child) == toCheck.end()) {
                toCheck.push_back(child);
            }
        }
    }

    for (VS_CREATION_SPACE& record : creation) {
        if (!record.reuse) {
            record.space = createSpace(record.rect);
        }
    }

    for (const VS_CREATION_SPACE& record : creation) {
        OV_INTERSECTION& space = graph[record.space];
        if (record.reuse) {
            // The record's parents become the whole new place of a reused space. An old parent that the walk did not
            // reach loses it for good: a link that is not to be repaired, since results rest on the graph as it is.
            for (std::size_t k = space.parents.size(); k-- > 0;) {
                removeLink(space.parents[k], record.space);
            }
        }
        for (const auto& [kind, index] : record.parents) {
            const std::uint32_t parent = kind == PARENT_IN_CREATION ? creation[index].space : index;
            createLink(parent, record.space);
            if (!record.reuse) {
                // A parent that is itself new may not have all its objects yet; they are taken as they stand now.
                for (const std::uint32_t inherited : graph[parent].objects) {
                    exclusiveAppend(space.objects, inherited);
                }
            }
        }
    }

    const std::uint32_t own = creation[0].space;
    insertQuick(own, object);

    topSpaces.erase(
        std::remove_if(topSpaces.begin(), topSpaces.end(), [this](auto top) { return !graph[top].parents.empty(); }),
        topSpaces.end());
    // All other records lie inside record 0 and have parents.
    if (graph[own].parents.empty()) {
        exclusiveAppend(topSpaces, own);
    }
}

void ValueSpace::insertQuick(unsigned space, unsigned object) {
    std::vector<std::uint32_t> work{space};
    for (std::size_t next = 0; next < work.size(); ++next) {
        OV_INTERSECTION& reached = graph[work[next]];
        for (const std::uint32_t child : reached.children) {
            exclusiveAppend(work, child);
        }
        reached.objects.push_back(object);
    }
    objectMap.emplace(object, space);
}

unsigned ValueSpace::getCreationLocation(std::vector<VS_CREATION_SPACE>& creation, Rectangle rect) {
    for (std::size_t j = 0; j < creation.size(); ++j) {
        if (creation[j].rect == rect) {
            return static_cast<unsigned>(j);
        }
    }
    const auto added = static_cast<unsigned>(creation.size());
    creation.push_back({rect, {}, false, 0});
    // The records form their own order of containment at all times. No other record has this rectangle.
    for (unsigned j = added; j-- > 0;) {
        if (contains(creation[j].rect, rect)) {
            addCreationParent(creation, added, {PARENT_IN_CREATION, j});
        } else if (contains(rect, creation[j].rect)) {
            addCreationParent(creation, j, {PARENT_IN_CREATION, added});
        }
    }
    return added;
}

void ValueSpace::addCreationParent(std::vector<VS_CREATION_SPACE>& creation, unsigned index,
                                   std::pair<std::uint32_t, std::uint32_t> parent) {
    const auto rectOf = [&](const std::pair<std::uint32_t, std::uint32_t>& named) -> const Rectangle& {
        return named.first == PARENT_IN_CREATION ? creation[named.second].rect : graph[named.second].rect;
    };
    const Rectangle offered = rectOf(parent);
    VS_CREATION_SPACE& record = creation[index];
    if (!contains(offered, record.rect)) {
        return;
    }
    for (std::size_t k = 0; k < record.parents.size();) {
        const Rectangle& held = rectOf(record.parents[k]);
        if (contains(held, offered)) {
            // The offer is tighter, or the same rectangle by a newer name.
            record.parents.erase(record.parents.begin() + static_cast<std::ptrdiff_t>(k));
        } else if (contains(offered, held)) {
            return; // The record has something tighter already.
        } else {
            ++k;
        }
    }
    record.parents.push_back(parent);
}

} // namespace OrvantaNS
