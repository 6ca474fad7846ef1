#include "frame/Exponential.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/ExponentialTable.h"
#include "frame/FusedArithmetic.h"

namespace OrvantaNS {

namespace {

constexpr double kSmallest = -708.0; // e^x is a normal double from here ...
constexpr double kLargest = 709.0;   // ... to here.
constexpr double kTiny =
    0x1p-54; // Of less, the steps below would leave the range of numbers that are multiplied exactly.

constexpr int kSteps = 128; // Of the table, for a factor of 2.
static_assert(kPowersOfTwo.size() == kSteps);
constexpr double kStepsPerUnit = 0x1.71547652b82fep0 * kSteps; // 128 / ln 2
// -(ln 2) / 128 in two parts. The first has so few digits that a whole number of steps times it is exact.
constexpr double kMinusStepHigh = -0x1.62e42fefa0000p-8;
constexpr double kMinusStepLow = -0x1.cf79abc9e3b39p-47;

// Added to a number and taken off again, leaves the nearest whole number.
constexpr double kRounder = 0x1.8p52;

// e^r - 1 - r for |r| < (ln 2) / 256, beginning with r^2: the minimax polynomial published with Arm's Optimized Routines.
// Most C libraries use it by now, so that moving to this function changed no answer.
constexpr double kSquare = 0x1.ffffffffffdbdp-2;
constexpr double kCube = 0x1.555555555543cp-3;
constexpr double kFourth = 0x1.55555cf172b91p-5;
constexpr double kFifth = 0x1.1111167a4d017p-7;

constexpr int kExponentBias = 1023;
constexpr int kDigitBits = 52;

// Processors that have an instruction for the fused step get it without a call of the C library for each.
#if defined(__GNUC__) && defined(__x86_64__) && !defined(_WIN32)
#define ORVANTA_FUSED_CLONE
#define ORVANTA_INTO_CLONES __attribute__((always_inline)) inline
#else
#define ORVANTA_INTO_CLONES inline
#endif

ORVANTA_INTO_CLONES double powerOfE(double x) {
    const double size = std::fabs(x);
    if (!(size >= kTiny && size <= -kSmallest)) { // hardly ever, and not when x is a little above the second
        if (std::isnan(x)) {
            return x;
        }
        if (x < kSmallest || x > kLargest) {
            return x < 0.0 ? 0.0 : std::numeric_limits<double>::infinity();
        }
        if (size < kTiny) {
            return 1.0;
        }
    }
    // x = steps (ln 2) / 128 + r
    const double steps = fusedMultiplyAdd(kStepsPerUnit, x, kRounder) - kRounder;
    const double r = fusedMultiplyAdd(steps, kMinusStepLow, fusedMultiplyAdd(steps, kMinusStepHigh, x));
    // e^x = 2^(steps / 128) e^r, and the first factor is a whole power of 2 times one of the table.
    const auto whole = static_cast<std::int64_t>(steps);
    const PowerOfTwo& power = kPowersOfTwo[static_cast<std::uint64_t>(whole) % kSteps];
    const double square = r * r;
    const double low = fusedMultiplyAdd(r, kCube, kSquare);
    const double high = fusedMultiplyAdd(r, kFifth, kFourth);
    const double rest = fusedMultiplyAdd(square * square, high, fusedMultiplyAdd(square, low, power.tail + r));
    const double significand = fusedMultiplyAdd(power.value, rest, power.value);
    // Dividing by 128 towards smaller numbers, which a shift to the right does.
    const std::int64_t exponent = kExponentBias + (whole >> 7);
    return significand * std::bit_cast<double>(static_cast<std::uint64_t>(exponent) << kDigitBits);
}

#ifdef ORVANTA_FUSED_CLONE
__attribute__((target("fma"))) double powerOfEByInstruction(double x) { return powerOfE(x); }
#endif

} // namespace

double exponential(double x) {
#ifdef ORVANTA_FUSED_CLONE
    if (__builtin_cpu_supports("fma")) {
        return powerOfEByInstruction(x);
    }
#endif
    return powerOfE(x);
}

} // namespace OrvantaNS
