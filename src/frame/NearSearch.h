// A binary search for what mostly lies near.
#pragma once

#include <algorithm>
#include <cstddef>

namespace OrvantaNS {

/// The first of [`begin`, `end`), random access iterators, of which `isBefore` is false; those of which it is true stand
/// ahead of all others. Takes time by the logarithm of the distance and reads nothing beyond twice as far: what a walk over
/// time asks for mostly lies near, in a list that may be larger than any cache.
template <typename Iterator, typename Before> Iterator firstNear(Iterator begin, Iterator end, Before isBefore) {
    std::ptrdiff_t stride = 1;
    while (stride < end - begin && isBefore(begin[stride - 1])) {
        begin += stride;
        stride *= 2;
    }
    return std::partition_point(begin, begin + std::min(stride, end - begin), isBefore);
}

} // namespace OrvantaNS
