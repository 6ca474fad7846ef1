// The exponential function of the engines: the same bits with every C library and on every processor.

#ifndef ORVANTA_FRAME_EXPONENTIAL_H
#define ORVANTA_FRAME_EXPONENTIAL_H

namespace OrvantaNS {

/// e to the power of `x`, 0.511 units in the last place off at most. Where the result leaves the range of normal doubles
/// (`x` below -708 or above 709; the engines ask for -8 to 8) it is 0 or infinity; of what is not a number, neither is the result.
///
/// Not std::exp: C libraries differ in its last bit, and one and the same library differs between processors with fused
/// multiplication and those without.
double exponential(double x);

} // namespace OrvantaNS

#endif // ORVANTA_FRAME_EXPONENTIAL_H
