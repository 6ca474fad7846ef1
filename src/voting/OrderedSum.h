// A sum of doubles in a fixed order, equal to the last bit, while addends come and go.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace OrvantaNS {

/// Numbered addends of which some are in force. `addedTo` gives what adding them one after another, in ascending
/// number, gives in doubles; that depends on the order, so the usual trees of partial sums would be off in the last
/// bits. Adding them up from the start at every change is exact too, but with thousands of overlapping votes the cost
/// is quadratic.
///
/// Instead, the tree keeps what a stretch of addends does to a running sum. Between two powers of two the doubles are
/// evenly spaced, so an addition rounds to a number of whole steps that does not depend on where between the two the
/// sum stands, only, when the rounding is a tie, on whether it stands on an even or an odd step. A stretch therefore
/// shifts every even sum by one number of steps and every odd sum by another, as long as the result stays below the
/// upper power of two: positive addends only climb, so then all results in between stay below it as well. Where a
/// stretch would cross the power it is opened, down to single additions.
class OrderedSum {
public:
    /// Addends 0 to `count` - 1, none in force.
    explicit OrderedSum(std::size_t count)
        : leaves_(std::bit_ceil((count + kBlock - 1) / kBlock)), addends_(leaves_ * kBlock, 0.0), nodes_(2 * leaves_) {}

    /// Puts an addend in force, or changes it; 0.0 takes it out. Any value is allowed, positive ones are fast.
    void set(std::size_t number, double value) {
        addends_[number] = value;
        std::size_t node = leaves_ + number / kBlock;
        nodes_[node] = Node{};
        const double* block = blockOf(node);
        for (std::size_t i = 0; i < kBlock; ++i) {
            nodes_[node].total += block[i];
            nodes_[node].odd = nodes_[node].odd || !(block[i] >= 0.0 && block[i] <= kLargest);
        }
        for (node /= 2; node >= 1; node /= 2) {
            const Node& left = nodes_[2 * node];
            const Node& right = nodes_[2 * node + 1];
            nodes_[node] = Node{left.total + right.total, left.odd || right.odd};
        }
    }

    /// (...((`start` + first) + second) + ...) over the addends in force.
    double addedTo(double start) {
        double sum = start;
        add(1, sum);
        return sum;
    }

private:
    // Addends under one leaf. Blocks this short are as quickly added up as a tree of their own is walked.
    static constexpr std::size_t kBlock = 32;
    static constexpr double kLargest = std::numeric_limits<double>::max();
    // The layout of a double: 52 bits of steps below the exponent. For positive doubles of one exponent, one step up is
    // one up in the bits read as an integer.
    static constexpr int kStepBits = 52;
    static constexpr std::uint64_t kInfiniteExponent = 2047;
    // More steps than lie between two powers of two.
    static constexpr std::uint64_t kTooFar = std::uint64_t{1} << (kStepBits + 1);

    struct Node {
        double total = 0.0;         // about the sum of its addends; 0.0 exactly when none is in force
        bool odd = false;           // holds an addend that is negative, infinite or not a number
        std::uint64_t exponent = 0; // for which `steps` holds; 0 for none
        std::uint64_t steps[2]{};   // steps by which a sum that stands on an even, or odd, step is shifted
    };

    const double* blockOf(std::size_t leaf) const { return &addends_[(leaf - leaves_) * kBlock]; }

    void add(std::size_t node, double& sum) {
        if (!nodes_[node].odd && (nodes_[node].total == 0.0 || shift(node, sum))) {
            return;
        }
        if (node >= leaves_) {
            const double* block = blockOf(node);
            for (std::size_t i = 0; i < kBlock; ++i) {
                sum += block[i];
            }
            return;
        }
        add(2 * node, sum);
        add(2 * node + 1, sum);
    }

    // Adds a whole node at once; false, and `sum` untouched, when the sum would not stay below the next power of two.
    bool shift(std::size_t node, double& sum) {
        const std::uint64_t bits = std::bit_cast<std::uint64_t>(sum);
        const std::uint64_t exponent = bits >> kStepBits; // the sign is on top: a negative sum is beyond the range
        if (exponent == 0 || exponent >= kInfiniteExponent) {
            return false;
        }
        // A rough look first, so that no steps are worked out that will hardly be used. It decides on the cost alone.
        if (sum + nodes_[node].total >= std::bit_cast<double>((exponent + 1) << kStepBits)) {
            return false;
        }
        workOutSteps(node, exponent);
        const std::uint64_t shifted = bits + nodes_[node].steps[bits & 1];
        if (shifted >> kStepBits != exponent) {
            return false;
        }
        sum = std::bit_cast<double>(shifted);
        return true;
    }

    void workOutSteps(std::size_t node, std::uint64_t exponent) {
        if (nodes_[node].exponent == exponent || nodes_[node].total == 0.0) {
            return; // a node without addends keeps its 0 steps
        }
        std::uint64_t steps[2]{};
        if (node >= leaves_) {
            const double* block = blockOf(node);
            for (std::uint64_t parity = 0; parity < 2; ++parity) {
                const std::uint64_t from = exponent << kStepBits | parity;
                double sum = std::bit_cast<double>(from);
                for (std::size_t i = 0; i < kBlock; ++i) {
                    sum += block[i];
                }
                const std::uint64_t to = std::bit_cast<std::uint64_t>(sum);
                steps[parity] = to >> kStepBits == exponent ? to - from : kTooFar;
            }
        } else {
            workOutSteps(2 * node, exponent);
            workOutSteps(2 * node + 1, exponent);
            const Node& left = nodes_[2 * node];
            const Node& right = nodes_[2 * node + 1];
            for (std::uint64_t parity = 0; parity < 2; ++parity) {
                const std::uint64_t onLeft = left.steps[parity];
                const std::uint64_t both = onLeft + right.steps[(parity + onLeft) & 1];
                steps[parity] = both < kTooFar ? both : kTooFar;
            }
        }
        nodes_[node].exponent = exponent;
        nodes_[node].steps[0] = steps[0];
        nodes_[node].steps[1] = steps[1];
    }

    std::size_t leaves_;          // a power of two; node i has the children 2 i and 2 i + 1, node 1 is the root
    std::vector<double> addends_; // 0.0 when not in force
    std::vector<Node> nodes_;
};

} // namespace OrvantaNS
