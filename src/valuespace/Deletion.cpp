// Deletion: an object leaves the graph, and the spaces that it alone justified are dissolved.
//
// Object lists decide, not rectangles. A space is worth keeping when no single parent holds all of its objects: then
// objects overlap there in a way that none of its parents expresses.
#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

#include "frame/Steps.h"
#include "valuespace/ShortLists.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {

namespace {

// With fewer objects the graph is small, and the walk of a deletion costs less than reading all lists.
constexpr std::size_t kWorthSortingOut = 24;
// Two lists that make no more pairs than this are compared name by name: sets of bits would take longer to make.
constexpr std::size_t kFewPairs = 64;
// So many comparisons of longer lists in one walk are made without sets, which pay when they are used again and again.
constexpr int kFewComparisons = 8;
// Times that two lists may be in another order until they are compared as sets.
constexpr int kFewTurns = 4;
// Nodes of the map that are kept for the objects to come: more seldom leave before others enter.
constexpr std::size_t kSpareNodes = 32;
// So few objects are moved up in the list of their places where one has left; of more the list is made anew.
constexpr std::size_t kFewPlaced = 64;
// Slots of a set of bits that are gone through in the time of one step.
constexpr std::size_t kSlotsPerStep = 512;

// Whether one list holds all names of another, by walking both: new names are put at the end of lists, so that two lists
// mostly name what they share in one order. Nothing where that is not so.
std::optional<bool> holdsInOrder(const std::vector<std::uint32_t>& held, const std::vector<std::uint32_t>& asked) {
    auto from = held.begin();
    int turns = 0;
    for (const std::uint32_t name : asked) {
        if (from != held.end() && *from == name) {
            ++from;
            continue; // mostly, where much is shared
        }
        auto found = std::find(from, held.end(), name);
        if (found == held.end()) {
            found = std::find(held.begin(), from, name);
            if (found == from) {
                return false;
            }
            if (++turns > kFewTurns) {
                return std::nullopt;
            }
        }
        from = found + 1;
    }
    return true;
}

} // namespace

void ValueSpace::deleteObject(unsigned object) { deleteObjects({object}); }

void ValueSpace::deleteObjects(const std::vector<std::uint32_t>& leaving) {
    // An object leaves unnoticed when another one that stays stands in the same lists: what tells two lists apart with the
    // one does so with the other. It may then stand in the lists until the graph is to change, so that many objects at one
    // place leave its lists in one pass, not by a move of memory each.
    countStandIns(leaving);
    std::vector<std::pair<std::uint32_t, std::uint32_t>> unnoticed; // location, object
    for (const std::uint32_t object : leaving) {
        countSteps(*store, 1);
        const auto location = objectMap.find(object);
        if (location == objectMap.end()) {
            continue;
        }
        const std::uint32_t space = location->second;
        ++departures_;
        forgetPresence(object);
        if (spareNodes_.size() < kSpareNodes) {
            spareNodes_.push_back(objectMap.extract(location));
        } else {
            objectMap.erase(location);
        }
        if (leavesUnnoticed(object, space)) {
            unnoticed.emplace_back(space, object);
        } else {
            eraseFromLists(unnoticed);
            dissolveFrom(space, object);
        }
    }
    eraseFromLists(unnoticed);
}

void ValueSpace::forgetPresence(std::uint32_t object) {
    if (object < present_.room()) { // not so when the map was written by hand
        present_.remove(object);
    }
    if (!isPlaced_ || placed_.size() > kFewPlaced) {
        isPlaced_ = false;
        return;
    }
    const auto isIt = [&](const std::pair<std::uint32_t, std::uint32_t>& placed) { return placed.first == object; };
    const auto found = std::find_if(placed_.begin(), placed_.end(), isIt);
    if (found != placed_.end()) {
        placed_.erase(found);
    }
}

void ValueSpace::countStandIns(const std::vector<std::uint32_t>& leaving) {
    staying_.clear();
    if (isHandMade_ || leaving.empty() || objectMap.size() < kWorthSortingOut) {
        return;
    }
    countSteps(*store, graph.size() / kReadPerStep + objectMap.size() + leaving.size());
    // Worth the reading of all lists only where an object that leaves shares its place.
    residents_.assign(graph.size(), 0);
    for (const auto& entry : objectMap) {
        ++residents_[entry.second];
    }
    const bool isShared = std::any_of(leaving.begin(), leaving.end(), [&](std::uint32_t object) {
        const auto location = objectMap.find(object);
        return location != objectMap.end() && residents_[location->second] > 1;
    });
    if (!isShared) {
        return;
    }
    StepCounter steps(*store);
    classes_.sortOut(graph, [&](std::size_t names) { steps.add(1 + names / kReadPerStep); });
    steps.settle();
    staying_.assign(classes_.count(), 0);
    for (const auto& entry : objectMap) {
        if (classes_.classOf(entry.first) != ObjectClasses::kNone) {
            ++staying_[classes_.classOf(entry.first)];
        }
    }
}

bool ValueSpace::leavesUnnoticed(std::uint32_t object, std::uint32_t location) {
    if (staying_.empty() || classes_.classOf(object) == ObjectClasses::kNone) {
        return false;
    }
    return --staying_[classes_.classOf(object)] > 0 && isSettledBelow(location);
}

void ValueSpace::eraseFromLists(std::vector<std::pair<std::uint32_t, std::uint32_t>>& objects) {
    if (objects.empty()) {
        return;
    }
    stoppableSort(*store, objects.size(), std::less<>(),
                  [&](auto less) { std::sort(objects.begin(), objects.end(), less); });
    StepCounter steps(*store);
    const auto eraseMarked = [&](std::uint32_t s) {
        std::vector<std::uint32_t>& list = graph[s].objects;
        steps.add(1 + list.size() / kReadPerStep);
        const auto isMarked = [&](std::uint32_t object) { return marks_.holds(object); };
        std::erase_if(list, isMarked);
        standing_.eraseIf(s, isMarked);
    };
    marks_.start();
    SlotSet& below = reached_;
    below.start(graph.size());
    for (std::size_t k = 0; k < objects.size(); ++k) {
        const auto [location, object] = objects[k];
        marks_.add(object);
        steps.add(1);
        if (k + 1 < objects.size() && objects[k + 1].first == location) {
            continue;
        }
        if (hasLostLinks_) {
            // A list that is not below the location may name the object as well, and goes on naming it.
            atAndBelow(location).forEach(eraseMarked);
            marks_.start();
        } else {
            steps.add(graph.size() / kSlotsPerStep);
            below.addAll(atAndBelow(location)); // a list below several locations is gone through once
        }
    }
    below.forEach(eraseMarked);
    steps.settle();
    objects.clear();
}

// Inline: most questions take less than a call.
inline bool ValueSpace::holdsAll(std::uint32_t container, std::uint32_t contained) {
    // A longer list is never held by a shorter one, unless it names an object twice. Most questions end here: a space
    // names more objects than its parents do.
    const std::size_t held = graph[container].objects.size();
    const std::size_t asked = graph[contained].objects.size();
    if (!isHandMade_ && asked > held) {
        return false;
    }
    return asked * held <= kFewPairs ? containsAllObjects(container, contained) : holdsAllOfMany(container, contained);
}

void ValueSpace::dissolveFrom(std::uint32_t location, std::uint32_t object) {
    StepCounter steps(*store);
    steps.add(graph.size() / kReadPerStep);
    objectSets_.start(graph.size(), objectMap.size() + 1);
    deletionQueue_.start(location, graph.size());
    comparisons_ = 0;
    std::vector<std::uint32_t>& snapshot = work_;
    for (; deletionQueue_.skipToNext(); deletionQueue_.advance()) {
        const std::uint32_t s = deletionQueue_.slotInWork();
        OV_INTERSECTION& space = graph[s];
        if (!space.valid) {
            continue; // Dissolved while a second copy waited.
        }
        steps.add(judgingSteps(s));
        if (eraseFirst(space.objects, object)) {
            standing_.erase(s, object);
            objectSets_.forget(s);
        }
        settled_.remove(s);

        const bool redundant =
            space.objects.empty() || std::any_of(space.parents.begin(), space.parents.end(),
                                                 [&](std::uint32_t parent) { return holdsAll(parent, s); });

        // A parent goes when another parent says all that it says; of two with the same objects the later one goes.
        // This comes after the decision above, which has to see all parents.
        for (std::size_t k = space.parents.size(); k-- > 0;) {
            const std::uint32_t parent = space.parents[k];
            for (std::size_t other = 0; other < space.parents.size(); ++other) {
                if (other != k && holdsAll(space.parents[other], parent)) {
                    unlink(parent, s);
                    break;
                }
            }
        }

        snapshot = space.children;

        if (redundant) {
            if (space.parents.empty()) {
                eraseFirst(topSpaces, s);
            }
            // Only the far ends of its links are taken away one by one: its own lists are about to be emptied.
            for (const std::uint32_t child : snapshot) {
                steps.add(kStepsPerVisit + graph[child].parents.size() / kReadPerStep);
                eraseFirst(graph[child].parents, s);
            }
            for (std::size_t k = space.parents.size(); k-- > 0;) {
                const std::uint32_t parent = space.parents[k];
                eraseFirst(graph[parent].children, s);
                for (const std::uint32_t child : snapshot) {
                    steps.add(kStepsPerVisit + graph[parent].children.size() / kReadPerStep);
                    link(parent, child);
                }
            }
            freeSpace(s); // nothing asks for its set again: no link leads to it, and this walk makes no spaces
        } else if (space.parents.empty()) {
            exclusiveAppend(topSpaces, s); // It may have lost its only parent when that was dissolved.
        }

        // Each child moves behind every parent of it that still waits, so that the parents have been dealt with before
        // the child is judged against them. A child that stands last gets a second place, and the order of visits
        // depends on it.
        for (const std::uint32_t child : snapshot) {
            deletionQueue_.moveToEnd(child);
        }
    }
    steps.settle();
}

bool ValueSpace::holdsAllOfMany(std::uint32_t container, std::uint32_t contained) {
    const std::vector<std::uint32_t>& held = graph[container].objects;
    const std::vector<std::uint32_t>& asked = graph[contained].objects;
    countSteps(*store, (asked.size() + held.size()) / kReadPerStep);
    if (comparisons_ < kFewComparisons) {
        ++comparisons_;
        if (const auto answer = holdsInOrder(held, asked)) {
            return *answer;
        }
    }
    return objectSets_.holdsAll(graph, container, contained);
}

std::uint64_t ValueSpace::judgingSteps(std::uint32_t space) const {
    // Its list is gone through, and its parents are compared with it and with one another.
    const OV_INTERSECTION& judged = graph[space];
    const std::size_t parents = judged.parents.size();
    return kStepsPerVisit + judged.children.size() + judged.objects.size() / kReadPerStep + parents * parents;
}

bool ValueSpace::isSettledBelow(std::uint32_t space) {
    const SlotSet& below = atAndBelow(space);
    StepCounter steps(*store);
    steps.add(graph.size() / kSlotsPerStep);
    bool areSettled = true;
    bool isFirst = true;
    below.forEachMissingIn(settled_, [&](std::uint32_t s) {
        if (!areSettled) {
            return;
        }
        if (isFirst) {
            objectSets_.start(graph.size(), objectMap.size() + 1);
            comparisons_ = 0;
            isFirst = false;
        }
        steps.add(judgingSteps(s));
        areSettled = isSettled(s);
        if (areSettled) {
            settled_.add(s);
        }
    });
    steps.settle();
    return areSettled;
}

bool ValueSpace::isSettled(std::uint32_t s) {
    const std::vector<std::uint32_t>& parents = graph[s].parents;
    if (graph[s].objects.empty()) {
        return false;
    }
    for (const std::uint32_t parent : parents) {
        if (holdsAll(parent, s)) {
            return false;
        }
        for (const std::uint32_t other : parents) {
            if (other != parent && holdsAll(other, parent)) {
                return false;
            }
        }
    }
    return true;
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
