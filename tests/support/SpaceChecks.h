// What must be true of a value space's graph between any two calls, checked the slow and obvious way.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "frame/Geometry.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {

/// Whether every rule of the graph is to hold. An insertion can cut a space off from an old parent that its walk did not
/// reach; from then on objects and parents may be incomplete, and two spaces may share a rectangle. All other rules
/// hold even then.
enum class GraphState { Whole, LinksLost };

/// The spaces from which `space` can be reached downward, itself left out.
inline std::set<std::uint32_t> ancestorsOf(const ValueSpace& space, std::uint32_t index) {
    std::set<std::uint32_t> found;
    std::vector<std::uint32_t> work{index};
    while (!work.empty()) {
        const std::uint32_t at = work.back();
        work.pop_back();
        for (const std::uint32_t parent : space.graph[at].parents) {
            if (found.insert(parent).second) {
                work.push_back(parent);
            }
        }
    }
    return found;
}

/// The space and all that can be reached from it downward.
inline std::set<std::uint32_t> withDescendants(const ValueSpace& space, std::uint32_t index) {
    std::set<std::uint32_t> found{index};
    std::vector<std::uint32_t> work{index};
    while (!work.empty()) {
        const std::uint32_t at = work.back();
        work.pop_back();
        for (const std::uint32_t child : space.graph[at].children) {
            if (found.insert(child).second) {
                work.push_back(child);
            }
        }
    }
    return found;
}

/// All links, as pairs of parent and child.
inline std::vector<std::pair<std::uint32_t, std::uint32_t>> linksOf(const ValueSpace& space) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> links;
    for (std::uint32_t s = 0; s < space.graph.size(); ++s) {
        for (const std::uint32_t child : space.graph[s].children) {
            links.emplace_back(s, child);
        }
    }
    return links;
}

/// True when an insertion has cut a child off from a parent for good: `before` are the links as they stood.
inline bool hasLostLinks(const ValueSpace& space, const std::vector<std::pair<std::uint32_t, std::uint32_t>>& before) {
    return std::any_of(before.begin(), before.end(),
                       [&](const auto& link) { return ancestorsOf(space, link.second).count(link.first) == 0; });
}

/// One line for every rule of the graph that is broken; empty for a sound graph.
inline std::vector<std::string> graphBreaches(const ValueSpace& space, GraphState state) {
    std::vector<std::string> breaches;
    const auto breach = [&](const std::string& text, std::size_t a, std::size_t b) {
        breaches.push_back(text + ": " + std::to_string(a) + ", " + std::to_string(b));
    };
    const auto count = [](const std::vector<std::uint32_t>& list, std::uint32_t value) {
        return std::count(list.begin(), list.end(), value);
    };
    const std::vector<OV_INTERSECTION>& graph = space.graph;
    const std::vector<OV_VALUE_OBJECT>& objects = space.store->valueObjects;

    for (std::uint32_t s = 0; s < graph.size(); ++s) {
        const OV_INTERSECTION& node = graph[s];
        if (!node.valid) {
            if (!node.parents.empty() || !node.children.empty() || !node.objects.empty()) {
                breach("free slot has lists", s, 0);
            }
            if (count(space.freeSpaces, s) != 1) {
                breach("free slot is not free once", s, 0);
            }
            if (count(space.topSpaces, s) != 0) {
                breach("free slot is a top space", s, 0);
            }
            continue;
        }
        if (count(space.freeSpaces, s) != 0) {
            breach("valid space is on the free list", s, 0);
        }
        if (count(space.topSpaces, s) != (node.parents.empty() ? 1 : 0)) {
            breach("top spaces list a space wrongly", s, 0);
        }
        for (const std::uint32_t parent : node.parents) {
            if (parent >= graph.size() || !graph[parent].valid) {
                breach("parent is not valid", s, parent);
                continue;
            }
            if (!contains(graph[parent].rect, node.rect) || graph[parent].rect == node.rect) {
                breach("parent does not strictly contain its child", s, parent);
            }
            if (count(node.parents, parent) != 1 || count(graph[parent].children, s) != 1) {
                breach("link to a parent is not two-way, once", s, parent);
            }
        }
        for (const std::uint32_t child : node.children) {
            if (child >= graph.size() || !graph[child].valid) {
                breach("child is not valid", s, child);
                continue;
            }
            if (count(node.children, child) != 1 || count(graph[child].parents, s) != 1) {
                breach("link to a child is not two-way, once", s, child);
            }
        }
    }
    for (const std::uint32_t top : space.topSpaces) {
        if (top >= graph.size()) {
            breach("top space past the end", top, 0);
        }
    }
    for (const std::uint32_t slot : space.freeSpaces) {
        if (slot >= graph.size()) {
            breach("free slot past the end", slot, 0);
        }
    }
    for (const auto& [object, location] : space.objectMap) {
        if (!graph[location].rect.nearSameSize(objects[object].rect)) {
            breach("object stands at a space of another size", object, location);
        }
    }
    if (state == GraphState::LinksLost || !breaches.empty()) {
        return breaches;
    }

    std::map<std::uint32_t, std::set<std::uint32_t>> expected; // For each space, the objects at or above it.
    for (const auto& [object, location] : space.objectMap) {
        for (const std::uint32_t reached : withDescendants(space, location)) {
            expected[reached].insert(object);
        }
    }
    for (std::uint32_t s = 0; s < graph.size(); ++s) {
        const OV_INTERSECTION& node = graph[s];
        if (!node.valid) {
            continue;
        }
        for (const std::uint32_t object : node.objects) {
            if (space.objectMap.count(object) == 0) {
                breach("space lists an unknown object", s, object);
            }
        }
        const std::set<std::uint32_t> listed(node.objects.begin(), node.objects.end());
        if (listed != expected[s] || listed.size() != node.objects.size()) {
            breach("space lists other objects than stand at or above it", s, node.objects.size());
        }
        for (const std::uint32_t parent : node.parents) {
            for (const std::uint32_t object : graph[parent].objects) {
                if (listed.count(object) == 0) {
                    breach("child lacks an object of its parent", s, object);
                }
            }
            for (const std::uint32_t other : node.parents) {
                if (other != parent && contains(graph[other].rect, graph[parent].rect)) {
                    breach("one parent contains another", parent, other);
                }
            }
        }
    }
    return breaches;
}

/// A space as a yardstick sees it.
struct PlainSpace {
    std::set<std::uint32_t> objects;              ///< All objects that cover the whole of it.
    std::vector<std::vector<std::int32_t>> above; ///< The tightest spaces around it, ascending.

    friend bool operator==(const PlainSpace&, const PlainSpace&) = default;
};

/// Spaces by edges.
using PlainGraph = std::map<std::vector<std::int32_t>, PlainSpace>;

inline std::vector<std::int32_t> edgesOf(const Rectangle& r) { return {r.left, r.right, r.top, r.bottom}; }

inline Rectangle rectOf(const std::vector<std::int32_t>& edges) { return {edges[0], edges[1], edges[2], edges[3]}; }

/// The yardstick: the rectangles of the objects, closed under intersection of positive area, each with the objects that
/// cover it. It knows nothing of rectangles of nearly the same size.
inline PlainGraph closureOf(const std::vector<OV_VALUE_OBJECT>& objects, const std::set<std::uint32_t>& present) {
    std::set<std::vector<std::int32_t>> closed;
    for (const std::uint32_t object : present) {
        std::set<std::vector<std::int32_t>> added{edgesOf(objects[object].rect)};
        for (const std::vector<std::int32_t>& edges : closed) {
            const Rectangle common = intersection(rectOf(edges), objects[object].rect);
            if (area(common) > 0) {
                added.insert(edgesOf(common));
            }
        }
        closed.insert(added.begin(), added.end());
    }
    PlainGraph plain;
    for (const std::vector<std::int32_t>& edges : closed) {
        PlainSpace& space = plain[edges];
        for (const std::uint32_t object : present) {
            if (contains(objects[object].rect, rectOf(edges))) {
                space.objects.insert(object);
            }
        }
        for (const std::vector<std::int32_t>& outer : closed) {
            const auto liesBetween = [&](const std::vector<std::int32_t>& middle) {
                return middle != outer && middle != edges && contains(rectOf(outer), rectOf(middle)) &&
                       contains(rectOf(middle), rectOf(edges));
            };
            if (outer != edges && contains(rectOf(outer), rectOf(edges)) &&
                std::none_of(closed.begin(), closed.end(), liesBetween)) {
                space.above.push_back(outer);
            }
        }
    }
    return plain;
}

/// The graph in the yardstick's form. Two spaces with one rectangle would show as one.
inline PlainGraph plainGraphOf(const ValueSpace& space) {
    PlainGraph plain;
    for (const OV_INTERSECTION& node : space.graph) {
        if (!node.valid) {
            continue;
        }
        PlainSpace& entry = plain[edgesOf(node.rect)];
        entry.objects.insert(node.objects.begin(), node.objects.end());
        for (const std::uint32_t parent : node.parents) {
            entry.above.push_back(edgesOf(space.graph[parent].rect));
        }
        std::sort(entry.above.begin(), entry.above.end());
    }
    return plain;
}

} // namespace OrvantaNS::testing
