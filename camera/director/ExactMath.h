// Functions whose answers decide where the camera goes, made of operations that every machine rounds alike.
//
// Logarithms and powers of standard libraries differ in the last bit, and one bit can tip a search between two paths.
// Additions, multiplications, divisions and square roots are rounded exactly everywhere.
#pragma once

#include <cmath>

namespace OrvantaNS::camera {

/// The binary logarithm of a finite number above 0, good to a relative error of about 1e-9.
inline double binaryLog(double value) {
    int exponent = 0;
    double part = std::frexp(value, &exponent); // exact: value = part * 2^exponent, part in [0.5, 1)
    constexpr double kRootOfHalf = 0.70710678118654752440;
    if (part < kRootOfHalf) {
        part *= 2.0;
        --exponent;
    }
    // log(part) = 2 artanh(s), and |s| < 0.172, so that s^13 is below 1e-10.
    const double s = (part - 1.0) / (part + 1.0);
    const double q = s * s;
    const double series =
        s * (1.0 + q * (1.0 / 3.0 + q * (1.0 / 5.0 + q * (1.0 / 7.0 + q * (1.0 / 9.0 + q * (1.0 / 11.0))))));
    constexpr double kTwoByLogOfTwo = 2.88539008177792681472;
    return exponent + kTwoByLogOfTwo * series;
}

} // namespace OrvantaNS::camera
