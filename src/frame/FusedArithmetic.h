// Multiplication and addition with one rounding, on every machine alike.

#ifndef ORVANTA_FRAME_FUSEDARITHMETIC_H
#define ORVANTA_FRAME_FUSEDARITHMETIC_H

#include <bit>
#include <cmath>
#include <cstdint>

namespace OrvantaNS {

/// A sum or product and what rounding took off it; together they are exact.
struct ExactDouble {
    double value;
    double error;
};

/// `a + b`, for any doubles whose sum is in range (Knuth's).
inline ExactDouble exactSum(double a, double b) {
    const double sum = a + b;
    const double fromB = sum - a;
    return {sum, (a - (sum - fromB)) + (b - fromB)};
}

/// `a * b`, for doubles whose halves' products are in range (Dekker's).
inline ExactDouble exactProduct(double a, double b) {
    constexpr double kSplitter = 0x1p27 + 1.0; // Takes a double's 53 binary digits apart into 26 and 26 with a sign.
    const double aHigh = kSplitter * a - (kSplitter * a - a);
    const double bHigh = kSplitter * b - (kSplitter * b - b);
    const double aLow = a - aHigh;
    const double bLow = b - bHigh;
    const double product = a * b;
    return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

/// `a * b + c`, rounded once, with nothing but additions and multiplications. Requires |a|, |b| and |c| to be 0 or
/// within 2^-250 to 2^250. The method is Boldo's and Melquiond's: what does not fit the result is itself rounded to an odd last digit,
/// so that no tie arises that was none.
inline double plainFusedMultiplyAdd(double a, double b, double c) {
    const ExactDouble product = exactProduct(a, b);
    const ExactDouble low = exactSum(c, product.error);
    const ExactDouble high = exactSum(product.value, low.value);
    const ExactDouble rest = exactSum(low.error, high.error);
    auto digits = std::bit_cast<std::uint64_t>(rest.value);
    if (rest.error != 0.0 && digits % 2 == 0) {
        digits += (rest.error > 0.0) == (rest.value > 0.0) ? 1u : ~std::uint64_t{0};
    }
    return high.value + std::bit_cast<double>(digits);
}

/// `a * b + c`, rounded once; the same as the plain form, in its range.
inline double fusedMultiplyAdd(double a, double b, double c) {
#ifdef _WIN32
    // Of the C libraries there, one at least rounds twice.
    return plainFusedMultiplyAdd(a, b, c);
#else
    return std::fma(a, b, c);
#endif
}

} // namespace OrvantaNS

#endif // ORVANTA_FRAME_FUSEDARITHMETIC_H
