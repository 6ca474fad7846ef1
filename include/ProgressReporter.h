// The host's ear on a running computation.
#pragma once

#include "OrvantaExport.h"

namespace OrvantaNS {

/// Implemented by the host, called by the library on the caller's thread from inside the call, never owned by it.
class ORVANTA_EXPORT ProgressReporter {
public:
    virtual ~ProgressReporter() = default;

    /// How far the computation is, in percent. Not clamped: odd clip intervals can give values outside 0 to 100,
    /// infinite ones, or one that is not a number.
    virtual void reportProgress(double percent) = 0;

    /// Asked before every report of the value engine, and between two reports after much work: a recording of people
    /// does not come to that. True ends the run with `OVERR_USER_CANCELLED`.
    virtual bool isCancelled() = 0;
};

} // namespace OrvantaNS
