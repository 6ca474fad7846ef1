// Which of many spans is the first that lasts until a given time?
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>
#include <vector>

namespace OrvantaNS {

/// Stands for a list of stops as it was when it was made. None of them is NaN.
template <typename Time> class LatestStops {
public:
    explicit LatestStops(const std::vector<Time>& stops)
        : size_(stops.size()), leafCount_(std::bit_ceil(stops.size())) {
        latest_.assign(2 * leafCount_, std::numeric_limits<Time>::lowest());
        std::copy(stops.begin(), stops.end(), latest_.begin() + static_cast<std::ptrdiff_t>(leafCount_));
        for (std::size_t node = leafCount_ - 1; node > 0; --node) {
            latest_[node] = std::max(latest_[2 * node], latest_[2 * node + 1]);
        }
    }

    /// Position of the first stop from `from` on that is at or after `time`, or the number of stops.
    std::size_t firstFrom(std::size_t from, Time time) const {
        if (from >= size_) {
            return size_;
        }
        std::size_t node = leafCount_ + from;
        // Up and to the right until a branch has a stop that is late enough, ...
        while (latest_[node] < time) {
            while (node % 2 == 1) {
                node /= 2;
            }
            if (node == 0) {
                return size_; // the root has no branch to its right
            }
            ++node;
        }
        // ... then down to the first one in it.
        while (node < leafCount_) {
            node = latest_[2 * node] >= time ? 2 * node : 2 * node + 1;
        }
        return std::min(node - leafCount_, size_);
    }

private:
    std::size_t size_;
    std::size_t leafCount_;
    std::vector<Time> latest_; // a binary tree, the root at 1: the latest stop below each node
};

} // namespace OrvantaNS
