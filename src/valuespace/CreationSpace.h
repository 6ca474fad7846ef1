// A space that is about to exist.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "Rectangle.h"

namespace OrvantaNS {

/// Where a parent of a space in creation is to be looked up.
enum VS_PARENT_KIND : std::uint32_t {
    PARENT_IN_CREATION = 1, ///< The index is into the creation list.
    PARENT_IN_GRAPH = 2,    ///< The index is into `graph`.
};

/// A space that is about to exist; the list of them is local to one insertion.
struct VS_CREATION_SPACE {
    Rectangle rect;                                               ///< The rectangle wanted.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> parents; ///< Tightest known containers: kind and index.
    bool reuse = false;                                           ///< A space already has exactly this rectangle.
    std::uint32_t space = 0;                                      ///< Index in `graph`; 0 until known.
};

} // namespace OrvantaNS
