// The graph itself: its slots, its free list and its links. Nothing here knows about rectangles or values.
#include <algorithm>
#include <cstddef>

#include "frame/Steps.h"
#include "valuespace/ShortLists.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// Slots made room for at once: more spaces than an ordinary recording has alive at one moment, so that together with
// the free list the array stays where it is.
constexpr std::size_t kReservedSpaces = 500;

// Links that a list has room for from the first one on: allocators give no less than that.
constexpr std::size_t kFirstLinks = 6;

void append(std::vector<std::uint32_t>& list, std::uint32_t value) {
    if (list.capacity() == 0) {
        list.reserve(kFirstLinks);
    }
    list.push_back(value);
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
    spareNodes_.clear();
    inUse_.start(0);
    present_.start(0);
    isPlaced_ = false;
    freed_.clear();
    ++linkChanges_;
    isHandMade_ = false;
    hasLostLinks_ = false;
    standing_.reset();
    departures_ = 0;
    highest_ = 0;
}

void ValueSpace::clearSpace(unsigned index) {
    if (index >= graph.size()) {
        return;
    }
    isHandMade_ = true;
    freeSpace(index);
}

void ValueSpace::freeSpace(std::uint32_t space) {
    ++linkChanges_;
    freeSpaces.push_back(space);
    freed_.push_back(space);
    inUse_.remove(space);
    OV_INTERSECTION& slot = graph[space];
    slot.valid = false;
    // The lists keep their memory for the slot's next life.
    slot.parents.clear();
    slot.children.clear();
    slot.objects.clear();
    standing_.forget(space);
}

unsigned ValueSpace::createSpace(Rectangle rect) {
    isHandMade_ = true;
    return makeSpace(rect);
}

std::uint32_t ValueSpace::makeSpace(const Rectangle& rect) {
    ++linkChanges_;
    std::uint32_t index = 0;
    if (freeSpaces.empty()) {
        index = static_cast<std::uint32_t>(graph.size());
        graph.emplace_back();
        settled_.grow(graph.size());
        inUse_.grow(graph.size());
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
    settled_.remove(index);
    inUse_.add(index);
    return index;
}

void ValueSpace::createLink(unsigned parent, unsigned child) {
    isHandMade_ = true;
    exclusiveAppend(graph[parent].children, child);
    exclusiveAppend(graph[child].parents, parent);
    ++linkChanges_;
}

void ValueSpace::link(std::uint32_t parent, std::uint32_t child) {
    ++linkChanges_;
    const bool isNewBelow = exclusiveAppend(graph[parent].children, child);
    bool isNewAbove = isNewBelow; // a link that is not there at one end is not there at the other
    if (isHandMade_) {
        isNewAbove = exclusiveAppend(graph[child].parents, parent);
    } else if (isNewBelow) {
        append(graph[child].parents, parent);
    }
    if (isNewAbove) {
        settled_.remove(child);
    }
}

void ValueSpace::removeLink(unsigned parent, unsigned child) {
    isHandMade_ = true;
    unlink(parent, child);
}

void ValueSpace::unlink(std::uint32_t parent, std::uint32_t child) {
    ++linkChanges_;
    eraseFirst(graph[parent].children, child);
    eraseFirst(graph[child].parents, parent);
}

bool ValueSpace::exclusiveAppend(std::vector<std::uint32_t>& list, unsigned value) {
    if (std::find(list.begin(), list.end(), value) != list.end()) {
        return false;
    }
    append(list, value);
    return true;
}

const SlotSet& ValueSpace::atAndBelow(std::uint32_t space) {
    if (belowOf_.size() < graph.size()) {
        belowOf_.resize(graph.size(), 0);
    }
    if (belowOf_[space] == 0) {
        below_.emplace_back();
        belowOf_[space] = static_cast<std::uint32_t>(below_.size());
    }
    Below& known = below_[belowOf_[space] - 1];
    if (known.linkChanges != linkChanges_) {
        StepCounter steps(*store);
        known.spaces.start(graph.size());
        known.spaces.add(space);
        work_.assign(1, space);
        while (!work_.empty()) {
            const std::uint32_t s = work_.back();
            work_.pop_back();
            steps.add(kStepsPerVisit);
            for (const std::uint32_t child : graph[s].children) {
                if (known.spaces.add(child)) {
                    work_.push_back(child);
                }
            }
        }
        steps.settle();
        known.linkChanges = linkChanges_;
    }
    return known.spaces;
}

std::vector<std::uint32_t> ValueSpace::listObjects() {
    std::vector<std::uint32_t> objects;
    objects.reserve(objectMap.size());
    for (const auto& entry : objectMap) {
        objects.push_back(entry.first);
    }
    return objects;
}

const std::vector<std::pair<std::uint32_t, std::uint32_t>>& ValueSpace::placedObjects() {
    if (isHandMade_ || !isPlaced_) { // a map that was written by hand tells nobody
        placed_.assign(objectMap.begin(), objectMap.end());
        isPlaced_ = true;
    }
    return placed_;
}

std::pair<std::uint32_t, std::uint32_t> ValueSpace::countSpaces() {
    return {static_cast<std::uint32_t>(graph.size()), static_cast<std::uint32_t>(freeSpaces.size())};
}

OV_INTERSECTION ValueSpace::getSpace(unsigned index) { return graph[index]; }

} // namespace OrvantaNS
