// The rules that the graph of a value space keeps between calls.
#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "ValueSpace.h"

namespace OrvantaNS::fuzz {

/// Watches one value space from its making on.
///
/// One situation is part of the design and breaks some of the rules: an insertion lifts a space that it reuses out of
/// its old place, and an old parent that lies inside the new rectangle, behind another reused space, was not visited
/// and so is not linked again. The space keeps that parent's objects without being its descendant. From then on object
/// lists may hold more, or less, than the links say, and the rules about them are no longer checked.
class GraphWatcher {
public:
    explicit GraphWatcher(ValueSpace& space) : space_(space) {}

    void insert(unsigned object);
    void remove(unsigned object);
    void reset();

    /// True while no space has lost a parent to an insertion.
    bool isWhole() const { return isWhole_; }

private:
    std::vector<std::set<std::uint32_t>> ancestors() const;
    void checkLinks() const;
    void checkObjects() const;
    void check() const;

    ValueSpace& space_;
    bool isWhole_ = true;
};

} // namespace OrvantaNS::fuzz
