// The arithmetic of an even zoom: how far a frame is when the logarithm of its size has come a given way.
//
// The standard library's log and exp differ between implementations by a last bit, and frames must not. What stands here
// uses additions, multiplications and divisions alone, which every machine rounds in the same way.
#pragma once

#include <cmath>

namespace OrvantaNS {

namespace even_step {

/// ln 2.
constexpr double kLn2 = 0.693147180559945309417;
/// The series of atanh is taken to this power; the next term is below 2^-56 of the sum for arguments up to 1/3.
constexpr int kLastAtanhPower = 33;
/// The series of e^x - 1 is taken to this power; the next term is below 2^-56 of the sum for arguments up to 1/4.
constexpr int kLastGrowthPower = 13;
constexpr double kGrowthSeriesReach = 0.25;

/// ln(to / from), both above 0 and finite.
inline double logRatio(double from, double to) {
    double doublings = 0.0;
    while (to > 2.0 * from) {
        to /= 2.0;
        doublings += 1.0;
    }
    while (from > 2.0 * to) {
        from /= 2.0;
        doublings -= 1.0;
    }
    // ln(to / from) = 2 atanh((to - from) / (to + from)): the difference is exact where it is small.
    const double z = (to - from) / (to + from);
    double sum = 0.0;
    for (int power = kLastAtanhPower; power >= 1; power -= 2) {
        sum = sum * z * z + 1.0 / power;
    }
    return doublings * kLn2 + 2.0 * z * sum;
}

/// e^x - 1, exact to a few last bits near 0 too, where e^x itself would lose them.
inline double growth(double x) {
    int doublings = 0;
    while (std::fabs(x) > kGrowthSeriesReach) {
        x /= 2.0;
        ++doublings;
    }
    double sum = 1.0;
    for (int power = kLastGrowthPower; power >= 2; --power) {
        sum = 1.0 + sum * x / power;
    }
    double result = sum * x;
    for (; doublings > 0; --doublings) {
        result *= result + 2.0; // (1 + g)^2 - 1
    }
    return result;
}

} // namespace even_step

/// How far a frame is on its way when the logarithm of its size has come the share `progress` of the way from one size to
/// another, r = to / from.
struct EvenStep {
    double scale = 1.0; ///< The frame's size by the first size: r^progress. Above 0.
    /// The share of the way that the edges have come: (r^progress - 1) / (r - 1), and `progress` itself where r is 1.
    /// Exactly 0 at 0 and exactly 1 at 1.
    double share = 0.0;
};

/// Sizes above 0 and finite; `progress` finite, and beyond 0 to 1 where an easing overshoots.
inline EvenStep evenStep(double from, double to, double progress) {
    const double way = even_step::logRatio(from, to);
    if (way == 0.0) {
        return {1.0, progress};
    }
    const double done = progress * way;
    // Near -1 the growth has no digits left for what remains of the size.
    const double scale = done < 0.0 ? 1.0 / (1.0 + even_step::growth(-done)) : 1.0 + even_step::growth(done);
    return {scale, even_step::growth(done) / even_step::growth(way)};
}

} // namespace OrvantaNS
