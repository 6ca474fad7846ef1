// What the walk over one zone knows ahead, so that its steps need not search for it each time.
#pragma once

#include <vector>

#include "parser/damage/AreaTimes.h"
#include "parser/walk/StreamIndex.h"

namespace OrvantaNS {

/// Stands beside a `DataParser` for as long as it walks one zone, and is gone with the walk: neither the request nor the
/// zone's areas change meanwhile. An operation that is called outside a walk works from its arguments alone.
struct ZoneWalk {
    const StreamIndex& streams;
    AreaTimes areas; ///< When the zone's areas live.
};

/// Sets a pointer for one scope: whichever way the scope ends, it leaves nothing behind that has gone.
template <typename Pointer> class InForce {
public:
    InForce(Pointer& place, Pointer value) : place_(place), before_(place) { place = value; }
    ~InForce() { place_ = before_; }
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;

private:
    Pointer& place_;
    Pointer before_;
};

} // namespace OrvantaNS
