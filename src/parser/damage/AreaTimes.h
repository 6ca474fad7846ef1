// When the changing areas of a zone live, so that a lookup by time does not read all that lie between an area that never
// rests and the moment in question.
#pragma once

#include <cstddef>
#include <vector>

#include "parser/damage/DirtyRectObject.h"

namespace OrvantaNS {

/// Stands for one array of areas as it was when it was built.
class AreaTimes {
public:
    /// Areas must stay as they are from here on.
    void build(const std::vector<DR_OBJECT>& areas);
    /// True when the array was built for is this one, in order of start, and no area stops before it starts.
    bool standsFor(const std::vector<DR_OBJECT>& areas) const {
        return isInOrder_ && data_ == areas.data() && size_ == areas.size();
    }
    /// Position of the first area from `from` on that stops at or after `time`, or the number of areas.
    std::size_t firstAlive(std::size_t from, long long time) const;

private:
    const DR_OBJECT* data_ = nullptr;
    std::size_t size_ = 0;
    bool isInOrder_ = false;
    std::size_t leafCount_ = 1;
    std::vector<long long> latestStops_; // A binary tree, the root at 1: the latest stop of the areas below each node.
};

} // namespace OrvantaNS
