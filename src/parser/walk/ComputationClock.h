// The scale that one computation converts with, whatever other threads compute meanwhile.
#pragma once

#include "OrvantaExport.h"

namespace OrvantaNS {

/// Stands on the stack for as long as a computation runs. From its making on, the conversions of its thread use its
/// scale, and a later value of `DataParser::StoreTimeScale` reaches them only when it has gone. Clocks may nest: a host
/// that asks another question from inside a progress report finds the scale of the first one again behind it.
class ORVANTA_EXPORT ComputationClock {
public:
    /// Writes `ticksPerSecond` to `DataParser::StoreTimeScale` as well.
    explicit ComputationClock(double ticksPerSecond);
    ~ComputationClock();
    ComputationClock(const ComputationClock&) = delete;
    ComputationClock& operator=(const ComputationClock&) = delete;

    /// Ticks per second of the conversions of this thread: those of its innermost clock, of `StoreTimeScale` when
    /// nothing is computed on it.
    static double ticksPerSecond();

private:
    double ticksPerSecond_;
    const ComputationClock* outer_;
};

} // namespace OrvantaNS
