// Whether the cursor's samples stand in order of time, so that lookups by time need not read them one by one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "OrvantaRecords.h"

namespace OrvantaNS {

/// Remembers the answer for the array that it was last asked about.
class LocationOrder {
public:
    bool isSorted(const std::vector<OV_MOUSE_LOCATION>& locations) {
        if (data_ != locations.data() || size_ != locations.size()) {
            data_ = locations.data();
            size_ = locations.size();
            sorted_ =
                std::is_sorted(locations.begin(), locations.end(),
                               [](const OV_MOUSE_LOCATION& a, const OV_MOUSE_LOCATION& b) { return a.time < b.time; });
        }
        return sorted_;
    }

private:
    const OV_MOUSE_LOCATION* data_ = nullptr;
    std::size_t size_ = 0;
    bool sorted_ = true;
};

} // namespace OrvantaNS
