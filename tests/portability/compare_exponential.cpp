// Compares the engines' exponential function with the C library's, bit by bit, over as many numbers as it is told, and the
// two forms of fused multiplication. For machines whose C library is known to give the same bits: glibc from 2.28 on, on
// processors with fused multiplication. Elsewhere it says so and passes.
//
//   compare_exponential [MILLIONS]

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "Random.h"
#include "frame/Exponential.h"
#include "frame/FusedArithmetic.h"

int main(int argc, char** argv) {
    using namespace OrvantaNS;
#if defined(__GLIBC__) && (defined(__aarch64__) || defined(__x86_64__))
#ifdef __x86_64__
    if (!__builtin_cpu_supports("fma") || !__builtin_cpu_supports("avx2")) {
        std::printf("exponential: this processor has no fused multiplication, nothing compared\n");
        return 0;
    }
#endif
    const long long millions = argc > 1 ? std::atoll(argv[1]) : 100;
    testing::Random random(1);
    long long differing = 0;
    const auto compare = [&](double x) {
        if (exponential(x) != std::exp(x) && ++differing < 10) {
            std::printf("exponential: of %a it is %a, the library's %a\n", x, exponential(x), std::exp(x));
        }
    };
    for (long long i = 0; i < millions * 1000000; ++i) {
        // What the engines ask for, three times out of four; then more, and close to nothing.
        switch (i % 8) {
        case 0:
            compare(random.real(-512.0, 512.0));
            break;
        case 1:
            compare(std::ldexp(random.real(-8.0, 8.0), -random.range(0, 60)));
            break;
        case 2: // A recording's milliseconds.
            compare(-0.001 * random.range(0, 4000));
            break;
        default:
            compare(random.real(-4.0, 0.0));
            break;
        }
        const double a = random.real(-8.0, 8.0);
        const double b = std::ldexp(random.real(-8.0, 8.0), -random.range(0, 40));
        const double c = i % 4 == 0 ? -a * b * (1.0 + random.range(-2, 2) * 0x1p-52)
                                    : std::ldexp(random.real(-8.0, 8.0), -random.range(0, 80));
        if (std::fma(a, b, c) != plainFusedMultiplyAdd(a, b, c) && ++differing < 10) {
            std::printf("fused: of %a, %a and %a it is %a\n", a, b, c, plainFusedMultiplyAdd(a, b, c));
        }
    }
    std::printf("exponential: %lld million numbers compared, %lld differ\n", millions, differing);
    return differing == 0 ? 0 : 1;
#else
    (void)argc;
    (void)argv;
    std::printf("exponential: no known library here, nothing compared\n");
    return 0;
#endif
}
