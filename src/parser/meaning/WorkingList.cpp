#include "parser/meaning/WorkingList.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <initializer_list>
#include <tuple>

#include "frame/Steps.h"

namespace OrvantaNS {

namespace {

// Up to this many objects the list is simply read: that costs less than an index.
constexpr std::size_t kShortList = 128;
// Positions that share a leaf of the tree, which saves most of its memory.
constexpr std::size_t kBlock = 16;

bool isOdd(const OV_VALUE_OBJECT& object) { return std::isnan(object.start) || std::isnan(object.stop); }

// A set of types.
constexpr std::uint32_t bits(std::initializer_list<OV_OBJECT_TYPE> types) {
    std::uint32_t set = 0;
    for (const OV_OBJECT_TYPE type : types) {
        set |= std::uint32_t{1} << type;
    }
    return set;
}

auto placeOf(const OV_VALUE_OBJECT& object) {
    return std::tie(object.rect.left, object.rect.right, object.rect.top, object.rect.bottom);
}

} // namespace

bool WorkingList::isOf(Kind kind, std::uint32_t type) {
    constexpr std::array<std::uint32_t, kKinds> kTypes{
        bits({}), // every type there is, and those that are none
        bits({ActiveWindow}),
        bits({ForeOpen}),
        bits({ActiveWindow, ForeAnimate}),
        bits({ActiveWindow, ForeAnimate, Menu}),
        bits({Menu}),
        bits({Hover}),
        bits({Click, DoubleClick}),
        bits({ClickDirty, ClickWindow}),
        bits({MoveOutOfWindow}),
    };
    return kind == Anything || (type <= ClickWindow && (kTypes[kind] >> type & 1) != 0);
}

// A window may turn out to be a menu. No other object takes on a type that rules ask for.
bool WorkingList::mayBecome(Kind kind, std::uint32_t type) {
    return isOf(kind, type) || (kind == Menus && type == ActiveWindow);
}

bool WorkingList::isLong() const { return objects_.size() > kShortList; }

WorkingList::Bounds WorkingList::around(const Bounds& a, const Bounds& b) {
    return {std::min(a.earliestStart, b.earliestStart),
            std::max(a.latestStart, b.latestStart),
            std::min(a.earliestStop, b.earliestStop),
            std::max(a.latestStop, b.latestStop),
            a.isEmpty && b.isEmpty,
            a.isOdd || b.isOdd};
}

WorkingList::Bounds WorkingList::boundsOf(Kind kind, const Index& index, std::size_t block) const {
    Bounds bounds;
    const std::size_t end = std::min((block + 1) * kBlock, index.positions.size());
    for (std::size_t place = block * kBlock; place < end; ++place) {
        const OV_VALUE_OBJECT& object = objects_[index.positions[place]];
        if (isOf(kind, object.type)) {
            bounds =
                around(bounds, {object.start, object.start, object.stop, object.stop, false, OrvantaNS::isOdd(object)});
        }
    }
    return bounds;
}

const WorkingList::Index& WorkingList::indexOf(Kind kind) {
    Index& index = indices_[kind];
    if (isMade_[kind]) {
        return index;
    }
    isMade_[kind] = true;
    countSteps(store_, objects_.size());
    index.positions.clear();
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (mayBecome(kind, objects_[i].type)) {
            index.positions.push_back(i);
        }
    }
    const std::size_t blocks = (index.positions.size() + kBlock - 1) / kBlock;
    index.leafCount = std::bit_ceil(blocks);
    index.bounds.assign(2 * index.leafCount, Bounds{});
    for (std::size_t block = 0; block < blocks; ++block) {
        index.bounds[index.leafCount + block] = boundsOf(kind, index, block);
    }
    for (std::size_t node = index.leafCount - 1; node > 0; --node) {
        index.bounds[node] = around(index.bounds[2 * node], index.bounds[2 * node + 1]);
    }
    return index;
}

// The first answer among the `blocks` blocks below `node`, not before place `fromPlace` of the positions.
template <typename MayHold, typename Matches>
std::size_t WorkingList::firstBelow(Kind kind, const Index& index, std::size_t node, std::size_t blocks,
                                    std::size_t fromPlace, MayHold mayHold, Matches matches) {
    const std::size_t firstBlock = node * blocks - index.leafCount;
    const Bounds& bounds = index.bounds[node];
    if ((firstBlock + blocks) * kBlock <= fromPlace || bounds.isEmpty || !(bounds.isOdd || mayHold(bounds))) {
        return kNone;
    }
    if (blocks > 1) {
        const std::size_t found = firstBelow(kind, index, 2 * node, blocks / 2, fromPlace, mayHold, matches);
        return found != kNone ? found : firstBelow(kind, index, 2 * node + 1, blocks / 2, fromPlace, mayHold, matches);
    }
    countSteps(store_, kBlock);
    const std::size_t end = std::min((firstBlock + 1) * kBlock, index.positions.size());
    for (std::size_t place = std::max(fromPlace, firstBlock * kBlock); place < end; ++place) {
        const OV_VALUE_OBJECT& object = objects_[index.positions[place]];
        if (isOf(kind, object.type) && matches(object)) {
            return index.positions[place];
        }
    }
    return kNone;
}

// `mayHold` is false for the bounds of objects none of which matches.
template <typename MayHold, typename Matches>
std::size_t WorkingList::first(Kind kind, std::size_t from, MayHold mayHold, Matches matches) {
    if (isLong()) {
        const Index& index = indexOf(kind);
        const auto place = std::lower_bound(index.positions.begin(), index.positions.end(), from);
        return firstBelow(kind, index, 1, index.leafCount, static_cast<std::size_t>(place - index.positions.begin()),
                          mayHold, matches);
    }
    std::size_t& begin = begins_[kind];
    while (begin < objects_.size() && !mayBecome(kind, objects_[begin].type)) {
        ++begin;
    }
    for (std::size_t i = std::max(from, begin); i < objects_.size(); ++i) {
        if (isOf(kind, objects_[i].type) && matches(objects_[i])) {
            return i;
        }
    }
    return kNone;
}

std::size_t WorkingList::lastBefore(Kind kind, std::size_t before) {
    const Index& index = indexOf(kind);
    const auto end = std::lower_bound(index.positions.begin(), index.positions.end(), before);
    auto place = static_cast<std::size_t>(end - index.positions.begin());
    countSteps(store_, kBlock);
    while (place > 0) {
        if (place % kBlock == 0) {
            // Over all that is empty: up and to the left, then down to the last block that is not.
            std::size_t node = index.leafCount + place / kBlock - 1;
            while (index.bounds[node].isEmpty) {
                while (node % 2 == 0) {
                    node /= 2;
                }
                if (node == 1) {
                    return kNone; // the root has no branch to its left
                }
                --node;
            }
            while (node < index.leafCount) {
                node = index.bounds[2 * node + 1].isEmpty ? 2 * node : 2 * node + 1;
            }
            place = std::min((node - index.leafCount + 1) * kBlock, place);
        }
        --place;
        if (isOf(kind, objects_[index.positions[place]].type)) {
            return index.positions[place];
        }
    }
    return kNone;
}

std::size_t WorkingList::windowInForceAt(double time) {
    return first(
        Windows, 0, [=](const Bounds& b) { return b.earliestStart <= time && time <= b.latestStop; },
        [=](const OV_VALUE_OBJECT& o) { return o.start <= time && time <= o.stop; });
}

std::size_t WorkingList::windowFollowing(double start, double stop) {
    const auto mayHold = [=](const Bounds& b) {
        return b.latestStart >= start && (b.earliestStop <= stop || b.earliestStart < stop);
    };
    const auto matches = [=](const OV_VALUE_OBJECT& o) {
        return o.start >= start && (o.stop <= stop || std::max(start, o.start) < std::min(stop, o.stop));
    };
    return first(Shown, 0, mayHold, matches);
}

std::size_t WorkingList::windowBefore(std::size_t index) {
    if (isLong()) {
        return lastBefore(InFront, index);
    }
    for (std::size_t i = index; i-- > 0;) {
        if (isOf(InFront, objects_[i].type)) {
            return i;
        }
    }
    return kNone;
}

void WorkingList::atSamePlace(const Rectangle& rect, double start, const std::function<bool(std::size_t)>& visit) {
    const auto isWindow = [&](std::size_t i) {
        return isOf(Windows, objects_[i].type) || isOf(Openings, objects_[i].type);
    };
    const auto begins = [&](std::size_t i) { return objects_[i].start >= start; };
    if (!isLong()) {
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            if (isWindow(i) && objects_[i].rect == rect && begins(i) && !visit(i)) {
                return;
            }
        }
        return;
    }
    if (!isByPlaceMade_) {
        isByPlaceMade_ = true;
        countSteps(store_, objects_.size());
        byPlace_.clear();
        for (std::size_t i = 0; i < objects_.size(); ++i) {
            if (isWindow(i)) {
                byPlace_.push_back(i);
            }
        }
        // In order of position now, and within one place for good.
        isByPlaceInTime_ = std::none_of(byPlace_.begin(), byPlace_.end(),
                                        [&](std::size_t i) { return std::isnan(objects_[i].start); }) &&
                           std::is_sorted(byPlace_.begin(), byPlace_.end(), [&](std::size_t a, std::size_t b) {
                               return objects_[a].start < objects_[b].start;
                           });
        stoppableSort(
            store_, byPlace_.size(),
            [&](std::size_t a, std::size_t b) { return placeOf(objects_[a]) < placeOf(objects_[b]); },
            [&](auto less) { std::stable_sort(byPlace_.begin(), byPlace_.end(), less); });
    }
    OV_VALUE_OBJECT wanted;
    wanted.rect = rect;
    auto place = std::partition_point(byPlace_.begin(), byPlace_.end(),
                                      [&](std::size_t i) { return placeOf(objects_[i]) < placeOf(wanted); });
    const auto end = std::partition_point(place, byPlace_.end(),
                                          [&](std::size_t i) { return !(placeOf(wanted) < placeOf(objects_[i])); });
    if (isByPlaceInTime_) {
        place = std::partition_point(place, end, [&](std::size_t i) { return objects_[i].start < start; });
    }
    for (; place != end; ++place) {
        countSteps(store_, 1);
        if (isWindow(*place) && begins(*place) && !visit(*place)) {
            return;
        }
    }
}

std::size_t WorkingList::menuDuring(double start, double stop) {
    return first(
        Menus, 0,
        [=](const Bounds& b) {
            // A time that is not a number drops out of the comparisons below, and bounds tell nothing about it.
            return (b.earliestStart <= start && b.latestStop >= stop) ||
                   (b.earliestStart < stop && b.latestStop > start) || std::isnan(start) || std::isnan(stop);
        },
        [=](const OV_VALUE_OBJECT& o) {
            return (o.start <= start && o.stop >= stop) || std::min(o.stop, stop) - std::max(o.start, start) > 0.0;
        });
}

std::size_t WorkingList::within(Kind kind, std::size_t from, double start, double stop) {
    return first(
        kind, from, [=](const Bounds& b) { return b.latestStart >= start && b.earliestStop <= stop; },
        [=](const OV_VALUE_OBJECT& o) { return o.start >= start && o.stop <= stop; });
}

std::size_t WorkingList::beginning(Kind kind, std::size_t from, double earliest, double latest) {
    return first(
        kind, from, [=](const Bounds& b) { return b.latestStart >= earliest && b.earliestStart <= latest; },
        [=](const OV_VALUE_OBJECT& o) { return o.start >= earliest && o.start <= latest; });
}

std::size_t WorkingList::beginningBetween(Kind kind, std::size_t from, double after, double latest) {
    return first(
        kind, from, [=](const Bounds& b) { return b.latestStart > after && b.earliestStart <= latest; },
        [=](const OV_VALUE_OBJECT& o) { return o.start > after && o.start <= latest; });
}

std::size_t WorkingList::beginningAfter(Kind kind, std::size_t from, double time) {
    return first(
        kind, from, [=](const Bounds& b) { return b.latestStart > time; },
        [=](const OV_VALUE_OBJECT& o) { return o.start > time; });
}

std::size_t WorkingList::notBeginningAfter(Kind kind, std::size_t from, double time) {
    return first(
        kind, from, [=](const Bounds& b) { return !(b.earliestStart > time); },
        [=](const OV_VALUE_OBJECT& o) { return !(o.start > time); });
}

void WorkingList::refresh(std::size_t position) {
    for (std::size_t k = 0; k < kKinds; ++k) {
        Index& index = indices_[k];
        if (!isMade_[k]) {
            continue;
        }
        const auto found = std::lower_bound(index.positions.begin(), index.positions.end(), position);
        if (found == index.positions.end() || *found != position) {
            continue;
        }
        const auto kind = static_cast<Kind>(k);
        const std::size_t block = static_cast<std::size_t>(found - index.positions.begin()) / kBlock;
        std::size_t node = index.leafCount + block;
        index.bounds[node] = boundsOf(kind, index, block);
        for (node /= 2; node > 0; node /= 2) {
            index.bounds[node] = around(index.bounds[2 * node], index.bounds[2 * node + 1]);
        }
    }
}

void WorkingList::retype(std::size_t index, OV_OBJECT_TYPE type) {
    objects_[index].type = type;
    refresh(index);
}

void WorkingList::setStop(std::size_t index, double stop) {
    objects_[index].stop = stop;
    refresh(index);
}

void WorkingList::insertBehind(std::size_t index, const OV_VALUE_OBJECT& object) {
    countSteps(store_, objects_.size() - index);
    objects_.insert(objects_.begin() + static_cast<std::ptrdiff_t>(index) + 1, object);
    isMade_ = {};
    isByPlaceMade_ = false;
    begins_ = {};
}

} // namespace OrvantaNS
