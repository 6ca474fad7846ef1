#include "GraphInvariants.h"

#include <algorithm>

#include "Check.h"
#include "frame/Geometry.h"

namespace OrvantaNS::fuzz {

namespace {

using Indices = std::vector<std::uint32_t>;

bool holds(const Indices& list, std::uint32_t value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

bool isWithoutRepeats(Indices list) {
    std::sort(list.begin(), list.end());
    return std::adjacent_find(list.begin(), list.end()) == list.end();
}

bool isWithin(const Rectangle& rect) {
    constexpr std::int32_t kMost = 1 << 14;
    const auto isNear = [](std::int32_t edge) { return edge >= -kMost && edge <= kMost; };
    return isNear(rect.left) && isNear(rect.right) && isNear(rect.top) && isNear(rect.bottom);
}

} // namespace

GraphWatcher::Above GraphWatcher::ancestors() const {
    const std::size_t count = space_.graph.size();
    Above above(count, std::vector<bool>(count));
    std::vector<std::uint32_t> todo;
    for (std::size_t s = 0; s < count; ++s) {
        todo = space_.graph[s].parents;
        while (!todo.empty()) {
            const std::uint32_t parent = todo.back();
            todo.pop_back();
            if (!above[s][parent]) {
                above[s][parent] = true;
                const Indices& further = space_.graph[parent].parents;
                todo.insert(todo.end(), further.begin(), further.end());
            }
        }
    }
    return above;
}

void GraphWatcher::insert(unsigned object) {
    const bool isNew = space_.objectMap.count(object) == 0;
    const Above before = ancestors();
    const Rectangle rect = space_.store->valueObjects[object].rect;
    isOrdinary_ = isOrdinary_ && isWithin(rect);
    space_.insertObject(object);
    const Above after = ancestors();
    for (std::size_t s = 0; s < before.size(); ++s) {
        for (std::size_t lost = 0; lost < before.size(); ++lost) {
            if (isOrdinary_ && before[s][lost] && !after[s][lost]) {
                // Only what lies inside the new rectangle can have been left unvisited.
                FUZZ_CHECK(isNew && contains(rect, space_.graph[lost].rect));
                FUZZ_CHECK(contains(rect, space_.graph[s].rect));
                isWhole_ = false;
            }
        }
    }
    FUZZ_CHECK(space_.objectMap.count(object) == 1);
    check();
}

void GraphWatcher::remove(unsigned object) {
    space_.deleteObject(object);
    FUZZ_CHECK(space_.objectMap.count(object) == 0);
    check();
}

void GraphWatcher::reset() {
    space_.reset();
    FUZZ_CHECK(space_.graph.empty() && space_.topSpaces.empty() && space_.freeSpaces.empty() &&
               space_.objectMap.empty());
    isWhole_ = true;
    isOrdinary_ = true;
}

void GraphWatcher::checkLinks() const {
    const auto& graph = space_.graph;
    std::size_t tops = 0;
    std::size_t freeSlots = 0;
    for (std::uint32_t s = 0; s < graph.size(); ++s) {
        const OV_INTERSECTION& node = graph[s];
        if (!node.valid) {
            // A free slot has empty lists and stands once on the free list.
            FUZZ_CHECK(node.parents.empty() && node.children.empty() && node.objects.empty());
            FUZZ_CHECK(holds(space_.freeSpaces, s));
            ++freeSlots;
            continue;
        }
        FUZZ_CHECK(isWithoutRepeats(node.parents) && isWithoutRepeats(node.children));
        for (const std::uint32_t parent : node.parents) {
            // Links join living spaces, in both directions, and go down in size.
            FUZZ_CHECK(parent < graph.size() && graph[parent].valid);
            FUZZ_CHECK(holds(graph[parent].children, s));
            FUZZ_CHECK(!isOrdinary_ || (contains(graph[parent].rect, node.rect) && !(graph[parent].rect == node.rect)));
        }
        for (const std::uint32_t child : node.children) {
            FUZZ_CHECK(child < graph.size() && graph[child].valid);
            FUZZ_CHECK(holds(graph[child].parents, s));
        }
        if (node.parents.empty()) {
            FUZZ_CHECK(holds(space_.topSpaces, s));
            ++tops;
        }
    }
    FUZZ_CHECK(space_.topSpaces.size() == tops && isWithoutRepeats(space_.topSpaces));
    FUZZ_CHECK(space_.freeSpaces.size() == freeSlots && isWithoutRepeats(space_.freeSpaces));
}

void GraphWatcher::checkObjects() const {
    const auto& graph = space_.graph;
    const Above above = ancestors();
    for (std::uint32_t s = 0; s < graph.size(); ++s) {
        const OV_INTERSECTION& node = graph[s];
        if (!node.valid) {
            continue;
        }
        FUZZ_CHECK(isWithoutRepeats(node.objects));
        for (const std::uint32_t object : node.objects) {
            FUZZ_CHECK(space_.objectMap.count(object) == 1);
        }
        // An object stands at its own space and all spaces below, and nowhere else.
        for (const auto& [object, home] : space_.objectMap) {
            FUZZ_CHECK(holds(node.objects, object) == (home == s || above[s][home]));
        }
        for (const std::uint32_t parent : node.parents) {
            for (const std::uint32_t object : graph[parent].objects) {
                FUZZ_CHECK(holds(node.objects, object));
            }
            for (const std::uint32_t other : node.parents) {
                FUZZ_CHECK(parent == other || !contains(graph[parent].rect, graph[other].rect));
            }
        }
    }
}

void GraphWatcher::check() const {
    checkLinks();
    for (const auto& [object, home] : space_.objectMap) {
        FUZZ_CHECK(home < space_.graph.size());
        if (isOrdinary_ && isWhole_) {
            const Rectangle rect = space_.store->valueObjects[object].rect;
            FUZZ_CHECK(space_.graph[home].valid);
            FUZZ_CHECK(space_.graph[home].rect == rect || space_.graph[home].rect.nearSameSize(rect));
        }
    }
    if (isOrdinary_ && isWhole_) {
        checkObjects();
    }
}

} // namespace OrvantaNS::fuzz
