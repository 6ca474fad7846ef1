// Random numbers that are the same with every compiler and standard library, for generated input.
#pragma once

#include <cstdint>

namespace OrvantaNS::testing {

/// SplitMix64: small, and good enough to make input from. The standard library's distributions differ between
/// implementations, so the ranges are made here.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    /// A whole number from `low` to `high`, both included.
    std::int32_t range(std::int32_t low, std::int32_t high) {
        const auto count = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
        return static_cast<std::int32_t>(low + static_cast<std::int64_t>(next() % count));
    }
    /// A number from 0 up to but not including 1.
    double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
    /// A number from `low` up to but not including `high`.
    double real(double low, double high) { return low + (high - low) * unit(); }
    /// True with the given probability.
    bool chance(double probability) { return unit() < probability; }

private:
    std::uint64_t state_;
};

} // namespace OrvantaNS::testing
