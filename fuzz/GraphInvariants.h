// The rules that the graph of a value space keeps between calls.
#pragma once

#include <cstdint>
#include <vector>

#include "valuespace/ValueSpace.h"

namespace OrvantaNS::fuzz {

/// Watches one value space from its making on. Sizes and areas are 32-bit, so the rules about rectangles and objects
/// hold for those of screens; once a rectangle has come in whose area could wrap around, only the links are checked.
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

    /// True while all rules hold: no space has lost a parent to an insertion, and no rectangle was extraordinary.
    bool isWhole() const { return isWhole_ && isOrdinary_; }

private:
    /// For each slot, a bit for each slot above it.
    using Above = std::vector<std::vector<bool>>;
    Above ancestors() const;
    void checkLinks() const;
    void checkObjects() const;
    void check() const;

    ValueSpace& space_;
    bool isWhole_ = true;
    bool isOrdinary_ = true; // No rectangle has come in whose area could wrap around.
};

} // namespace OrvantaNS::fuzz
