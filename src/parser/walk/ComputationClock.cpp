#include "parser/walk/ComputationClock.h"

#include "parser/DataParser.h"

namespace OrvantaNS {

namespace {

thread_local const ComputationClock* innermostClock = nullptr;

} // namespace

// Relaxed: the stored scale stands alone, nothing is read on the strength of it.
ComputationClock::ComputationClock(double ticksPerSecond) : ticksPerSecond_(ticksPerSecond), outer_(innermostClock) {
    DataParser::StoreTimeScale.store(ticksPerSecond, std::memory_order_relaxed);
    innermostClock = this;
}

ComputationClock::~ComputationClock() { innermostClock = outer_; }

double ComputationClock::ticksPerSecond() {
    return innermostClock != nullptr ? innermostClock->ticksPerSecond_
                                     : DataParser::StoreTimeScale.load(std::memory_order_relaxed);
}

} // namespace OrvantaNS
