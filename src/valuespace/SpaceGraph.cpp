// The graph itself: its slots, its free list and its links. Nothing here knows about rectangles or values.
#include <algorithm>
#include <cstddef>

#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// Slots made room for at once: more spaces than an ordinary recording has alive at one moment, so that together with
// the free list the array stays where it is.
constexpr std::size_t kReservedSpaces = 500;

void eraseFirst(std::vector<std::uint32_t>& list, std::uint32_t value) {
    const auto found = std::find(list.begin(), list.end(), value);
    if (found != list.end()) {
        list.erase(found);
    }
}

} // namespace

ValueSpace::ValueSpace(OV_DATA_STORE* source) : store(source) { graph.reserve(kReservedSpaces); }

ValueSpace::~ValueSpace() { reset(); }

void ValueSpace::reset() {
    // Without a walk that clears each slot and puts it on the free list, which is emptied too: the destructor comes
    // here, and must not allocate.
    graph.clear();
    topSpaces.clear();
    freeSpaces.clear();
    objectMap.clear();
}

void ValueSpace::clearSpace(unsigned index) {
    if (index >= graph.size()) {
        return;
    }
    freeSpaces.push_back(index);
    OV_INTERSECTION& slot = graph[index];
    slot.valid = false;
    // The lists keep their memory for the slot's next life.
    slot.parents.clear();
    slot.children.clear();
    slot.objects.clear();
}

unsigned ValueSpace::createSpace(Rectangle rect) {
    unsigned index = 0;
    if (freeSpaces.empty()) {
        index = static_cast<unsigned>(graph.size());
        graph.emplace_back();
    } else {
        index = freeSpaces.back();
        freeSpaces.pop_back();
    }
    OV_INTERSECTION& slot = graph[index];
    slot.rect = rect;
    slot.value = 0.0;
    slot.valid = true;
    slot.parents.clear();
    slot.children.clear();
    slot.objects.clear();
    return index;
}

void ValueSpace::createLink(unsigned parent, unsigned child) {
    exclusiveAppend(graph[parent].children, child);
    exclusiveAppend(graph[child].parents, parent);
}

void ValueSpace::removeLink(unsigned parent, unsigned child) {
    eraseFirst(graph[parent].children, child);
    eraseFirst(graph[child].parents, parent);
}

bool ValueSpace::exclusiveAppend(std::vector<std::uint32_t>& list, unsigned value) {
    if (std::find(list.begin(), list.end(), value) != list.end()) {
        return false;
    }
    list.push_back(value);
    return true;
}

std::vector<std::uint32_t> ValueSpace::listObjects() {
    std::vector<std::uint32_t> objects;
    objects.reserve(objectMap.size());
    for (const auto& entry : objectMap) {
        objects.push_back(entry.first);
    }
    return objects;
}

std::pair<std::uint32_t, std::uint32_t> ValueSpace::countSpaces() {
    return {static_cast<std::uint32_t>(graph.size()), static_cast<std::uint32_t>(freeSpaces.size())};
}

OV_INTERSECTION ValueSpace::getSpace(unsigned index) { return graph[index]; }

} // namespace OrvantaNS
