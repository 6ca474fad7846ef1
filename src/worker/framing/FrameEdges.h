// Writing single edges of a frame in work.
#pragma once

#include "frame/Geometry.h"

namespace OrvantaNS {

/// Sets one edge and puts inverted edges in order at once: an edge pushed past its opposite becomes the opposite, so
/// that a frame shrunk beyond its own size turns over instead of turning inside out.
constexpr void setEdge(Rectangle& rect, std::int32_t Rectangle::*edge, std::int32_t value) {
    rect.*edge = value;
    rect = normalized(rect);
}

/// Moves one edge by `pixels`, right or down when positive, as `setEdge` does.
constexpr void moveEdge(Rectangle& rect, std::int32_t Rectangle::*edge, std::int32_t pixels) {
    setEdge(rect, edge, wrapAdd(rect.*edge, pixels));
}

} // namespace OrvantaNS
