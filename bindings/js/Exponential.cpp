// The exponential function to the last bit that native builds give.
//
// The engines ask the C library for it. On present processors that evaluates its polynomial with fused multiplications and
// additions; WebAssembly has none, so the same method gives another last bit about once in ten thousand. Here each step is
// fused by hand (`fma` is exact in software as well). The linker puts this in the place of `exp`.
#include <cmath>
#include <cstdint>
#include <cstring>

extern "C" {

/// The C library's own table of 2^(i/128): for each i the part of it that a double cannot hold, then its bits less i << 45.
extern const struct OrvantaExpData {
    double inverse;       ///< 128 / ln 2.
    double shift;         ///< Added to a number and taken off again, leaves it whole.
    double minusStepHigh; ///< -(ln 2) / 128 in two parts.
    double minusStepLow;
    double polynomial[4]; ///< Of e^r - 1 - r, from r^2 on.
    double others[6];     ///< For powers of 2, not used here.
    std::uint64_t table[256];
} __exp_data; // NOLINT: the name is the C library's

double __real_exp(double x); // NOLINT: the linker's name for what it replaces
double __wrap_exp(double x); // NOLINT

double __wrap_exp(double x) { // NOLINT
    // Beyond these the result is 1 but for rounding, or near the ends of what a double holds: no engine asks.
    constexpr double kSmallest = 0x1p-54;
    constexpr double kLargest = 512.0;
    if (!(std::fabs(x) >= kSmallest && std::fabs(x) < kLargest)) {
        return __real_exp(x);
    }
    const OrvantaExpData& data = __exp_data;
    // x = k (ln 2) / 128 + r
    const double shifted = std::fma(data.inverse, x, data.shift);
    std::uint64_t k = 0;
    std::memcpy(&k, &shifted, sizeof k);
    const double steps = shifted - data.shift;
    const double r = std::fma(steps, data.minusStepLow, std::fma(steps, data.minusStepHigh, x));
    // e^x = 2^(k/128) e^r
    const std::uint64_t entry = 2 * (k % 128);
    double tail = 0.0;
    std::memcpy(&tail, &data.table[entry], sizeof tail);
    const std::uint64_t scaleBits = data.table[entry + 1] + (k << 45);
    double scale = 0.0;
    std::memcpy(&scale, &scaleBits, sizeof scale);
    const double square = r * r;
    const double low = std::fma(r, data.polynomial[1], data.polynomial[0]);
    const double high = std::fma(r, data.polynomial[3], data.polynomial[2]);
    const double rest = std::fma(square * square, high, std::fma(square, low, tail + r));
    return std::fma(scale, rest, scale);
}

} // extern "C"
