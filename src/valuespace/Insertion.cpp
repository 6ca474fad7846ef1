// Insertion: an object enters the graph with all its overlaps.
//
// The walk from the top collects the spaces that the object calls for in a creation list, without touching the graph,
// since on its way it may still meet a space that can stand for the object as it is. Only then are they made and linked.
#include <algorithm>
#include <cstddef>

#include "frame/Geometry.h"
#include "frame/Steps.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// Names that a list has room for from the first one on: allocators give no less than that.
constexpr std::size_t kFirstNames = 6;
// The same of a record's parents.
constexpr std::size_t kFirstParents = 3;

using NamedParent = std::pair<std::uint32_t, std::uint32_t>; // kind and index

const Rectangle& rectOf(const std::vector<OV_INTERSECTION>& graph, const std::vector<VS_CREATION_SPACE>& creation,
                        const NamedParent& named) {
    return named.first == PARENT_IN_CREATION ? creation[named.second].rect : graph[named.second].rect;
}

std::uint64_t stepsOfOffer(const VS_CREATION_SPACE& record) { return 8 + 2 * record.parents.size(); }

// `addCreationParent` for a parent whose rectangle, `offered`, is known to contain that of the record.
void offerContainer(const std::vector<OV_INTERSECTION>& graph, std::vector<VS_CREATION_SPACE>& creation,
                    std::uint32_t index, const NamedParent& parent, const Rectangle& offered) {
    std::vector<NamedParent>& parents = creation[index].parents;
    for (std::size_t k = 0; k < parents.size();) {
        const Rectangle& held = rectOf(graph, creation, parents[k]);
        if (contains(held, offered)) {
            // The offer is tighter, or the same rectangle by a newer name.
            parents.erase(parents.begin() + static_cast<std::ptrdiff_t>(k));
        } else if (contains(offered, held)) {
            return; // The record has something tighter already.
        } else {
            ++k;
        }
    }
    if (parents.capacity() == 0) {
        parents.reserve(kFirstParents);
    }
    parents.push_back(parent);
}

} // namespace

void ValueSpace::insertObject(unsigned object) {
    // Most objects are newer than all in the graph, or the newest itself: no search is needed for them.
    if (!objectMap.empty() && object <= objectMap.rbegin()->first &&
        (object == objectMap.rbegin()->first || objectMap.find(object) != objectMap.end())) {
        return;
    }
    isHandMade_ = isHandMade_ || (hasLostLinks_ && object <= highest_);
    highest_ = std::max(highest_, object);
    const Rectangle rect = store->valueObjects[object].rect;
    std::uint32_t serving = 0;
    // What serves is looked for first, since most objects find it and need no creation list. Links made by hand may join
    // any rectangles, and then only the whole walk finds it.
    if ((!isHandMade_ && findServingSpace(rect, serving)) || collectCreation(rect, serving)) {
        addAtAndBelow(serving, object);
        return;
    }
    makeCreation();

    countSteps(*store, topSpaces.size() / kReadPerStep);
    const std::uint32_t own = creation_[0].space;
    addAtAndBelow(own, object);

    topSpaces.erase(
        std::remove_if(topSpaces.begin(), topSpaces.end(), [this](auto top) { return !graph[top].parents.empty(); }),
        topSpaces.end());
    // All other records lie inside record 0 and have parents.
    if (graph[own].parents.empty()) {
        exclusiveAppend(topSpaces, own);
    }
}

bool ValueSpace::findServingSpace(const Rectangle& rect, std::uint32_t& serving) {
    // The whole walk, cut down to the spaces that contain the rectangle: all parents of such a one contain it too, so they
    // come in the same order.
    work_ = topSpaces;
    StepCounter steps(*store);
    steps.add(topSpaces.size());
    bool isMarked = false; // marks are made only where the walk goes down
    for (std::size_t next = 0; next < work_.size(); ++next) {
        const OV_INTERSECTION& space = graph[work_[next]];
        if (!contains(space.rect, rect)) {
            continue;
        }
        if (space.rect.nearSameSize(rect)) {
            steps.settle();
            serving = work_[next];
            return true;
        }
        if (isEmpty(rect)) {
            continue; // It overlaps nothing, and the walk does not go below this space.
        }
        steps.add(kStepsPerVisit + space.children.size());
        if (!isMarked) {
            reached_.start(graph.size());
            isMarked = true;
        }
        for (const std::uint32_t child : space.children) {
            if (reached_.add(child)) {
                work_.push_back(child);
            }
        }
    }
    steps.settle();
    return false;
}

bool ValueSpace::collectCreation(const Rectangle& rect, std::uint32_t& serving) {
    creation_.start(rect); // Record 0 is the object's own space, whatever it overlaps.
    insertionQueue_.start(topSpaces, graph.size());
    reached_.start(graph.size());
    StepCounter steps(*store);
    for (; !insertionQueue_.isDone(); insertionQueue_.advance()) {
        const std::uint32_t s = insertionQueue_.slotInWork();
        const OV_INTERSECTION& space = graph[s];
        steps.add(2 * kStepsPerVisit + space.children.size());
        if (isHandMade_ && space.rect.nearSameSize(rect)) {
            steps.settle();
            serving = s;
            return true;
        }
        const Rectangle common = intersection(rect, space.rect);
        if (area(common) <= 0) {
            continue; // The children lie inside this space and overlap as little.
        }
        reached_.add(s);
        const auto [record, isNew] = creation_.place(common);
        if (isNew) {
            // The records form their own order of containment at all times.
            const std::uint32_t added = record;
            std::vector<VS_CREATION_SPACE>& records = creation_.records();
            std::uint64_t related = kStepsPerVisit + creation_.size() / kReadPerStep;
            creation_.relateLast(
                [&](std::uint32_t outer) {
                    related += stepsOfOffer(records[added]);
                    offerContainer(graph, records, added, {PARENT_IN_CREATION, outer}, records[outer].rect);
                },
                [&](std::uint32_t inner) {
                    related += stepsOfOffer(records[inner]);
                    offerContainer(graph, records, inner, {PARENT_IN_CREATION, added}, common);
                });
            steps.add(related);
        }
        if (common == space.rect) {
            // The space lies inside the object and serves as it is; its children stay below it.
            creation_[record].reuse = true;
            creation_[record].space = s;
            continue;
        }
        steps.add(stepsOfOffer(creation_[record]));
        offerContainer(graph, creation_.records(), record, {PARENT_IN_GRAPH, s}, space.rect);
        for (const std::uint32_t child : space.children) {
            // A space that was visited already is queued and visited again. A second visit can move a parent to the end
            // of its record's list, and list orders decide ties.
            insertionQueue_.offer(child);
        }
    }
    steps.settle();
    return false;
}

void ValueSpace::makeCreation() {
    StepCounter steps(*store);
    for (std::size_t r = 0; r < creation_.size(); ++r) {
        if (!creation_[r].reuse) {
            creation_[r].space = makeSpace(creation_[r].rect);
        }
    }

    for (std::size_t r = 0; r < creation_.size(); ++r) {
        const VS_CREATION_SPACE& record = creation_[r];
        OV_INTERSECTION& space = graph[record.space];
        steps.add(4 * kStepsPerVisit); // with the memory of its lists
        if (record.reuse) {
            // The record's parents become the whole new place of a reused space. An old parent that the walk did not
            // reach loses it for good: a link that is not to be repaired, since results rest on the graph as it is.
            for (std::size_t k = space.parents.size(); k-- > 0;) {
                const std::uint32_t parent = space.parents[k];
                hasLostLinks_ = hasLostLinks_ || !reached_.holds(parent);
                steps.add(kStepsPerVisit + graph[parent].children.size() / kReadPerStep);
                unlink(parent, record.space);
            }
        }
        marks_.start();
        work_.clear(); // the objects of a new space, so that its list is made in its size
        for (const auto& [kind, index] : record.parents) {
            const std::uint32_t parent = kind == PARENT_IN_CREATION ? creation_[index].space : index;
            steps.add(2 * kStepsPerVisit + graph[parent].children.size() / kReadPerStep +
                      graph[parent].objects.size() / 2); // these are marked as well
            link(parent, record.space);
            if (record.reuse) {
                continue;
            }
            // A parent that is itself new may not have all its objects yet; they are taken as they stand now.
            for (const std::uint32_t inherited : graph[parent].objects) {
                if (marks_.add(inherited)) {
                    work_.push_back(inherited);
                }
            }
        }
        if (!work_.empty()) {
            space.objects.reserve(std::max(kFirstNames, work_.size() + 1)); // with the object that is to enter
            space.objects.assign(work_.begin(), work_.end());
            if (hasLostLinks_ && !isHandMade_) {
                siftNamesOf(record.space); // it may have been given many names of objects that have left
            }
        }
    }
    steps.settle();
}

void ValueSpace::insertQuick(unsigned space, unsigned object) {
    isHandMade_ = true; // The object may stand in the graph already.
    addAtAndBelow(space, object);
}

void ValueSpace::addAtAndBelow(std::uint32_t space, std::uint32_t object) {
    StepCounter steps(*store);
    atAndBelow(space).forEach([&](std::uint32_t s) {
        steps.add(kStepsPerVisit);
        std::vector<std::uint32_t>& objects = graph[s].objects;
        if (objects.size() == objects.capacity()) {
            // By a quarter, not by half or all of it: on a dense screen these lists are most of the memory.
            steps.add(objects.size() / kReadPerStep);
            objects.reserve(std::max(kFirstNames, objects.size() + objects.size() / 4 + 2));
        }
        objects.push_back(object);
    });
    steps.settle();
    if (object >= present_.room()) {
        present_.grow(std::size_t{object} + 1);
    }
    present_.add(object);
    if (isPlaced_ && (placed_.empty() || placed_.back().first < object)) {
        placed_.emplace_back(object, space);
    } else {
        isPlaced_ = false;
    }
    // Most objects are newer than all others in the graph.
    if (spareNodes_.empty()) {
        objectMap.emplace_hint(objectMap.end(), object, space);
        return;
    }
    auto node = std::move(spareNodes_.back());
    spareNodes_.pop_back();
    node.key() = object;
    node.mapped() = space;
    objectMap.insert(objectMap.end(), std::move(node));
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
    const Rectangle offered = rectOf(graph, creation, parent);
    countSteps(*store, stepsOfOffer(creation[index]));
    if (contains(offered, creation[index].rect)) {
        offerContainer(graph, creation, index, parent, offered);
    }
}

} // namespace OrvantaNS
