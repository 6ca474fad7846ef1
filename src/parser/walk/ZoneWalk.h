// What the walk over one zone knows ahead, so that its steps need not search for it each time.
#pragma once

#include "parser/damage/AreaTimes.h"
#include "parser/walk/StreamIndex.h"

namespace OrvantaNS {

/// Stands beside a `DataParser` for as long as it walks one zone, and is gone with the walk: neither the request nor the
/// zone's areas change meanwhile. An operation that is called outside a walk works from its arguments alone.
struct ZoneWalk {
    const StreamIndex& streams;
    AreaTimes areas; ///< When the zone's areas live.
};

} // namespace OrvantaNS
