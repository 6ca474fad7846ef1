// Clusters the dirty rectangles of a moment that has very many of them.
#pragma once

#include <cstdint>
#include <vector>

#include "DirtyRectObject.h"

namespace OrvantaNS {

/// Moments with more dirty rectangles than this go through `clusterFlood`. A screen's frame has some hundred at most.
inline constexpr std::uint32_t kFloodRects = 256;

/// Gives the clusters that `DataParser::addDRToFrameSet` makes of the records from `from` up to but not including `to`,
/// in the same order, without asking every cluster about every record.
std::vector<DR_OBJECT_FRAME> clusterFlood(const std::vector<OV_TIME_RECT>& dirtyRects, std::uint32_t from,
                                          std::uint32_t to);

} // namespace OrvantaNS
