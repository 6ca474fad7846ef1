// The bridges between ticks and seconds, and the one voice of progress.

#include "parser/DataParser.h"

#include "frame/Steps.h"
#include "frame/TimeModel.h"
#include "parser/walk/ComputationClock.h"

namespace OrvantaNS {

std::atomic<double> DataParser::StoreTimeScale{0.0};

double DataParser::convertTime(long long ticks) { return ticksToSeconds(ticks, ComputationClock::ticksPerSecond()); }

long long DataParser::revertTime(double seconds) { return secondsToTicks(seconds, ComputationClock::ticksPerSecond()); }

Interval_Type<double> DataParser::convertInterval(Interval_Type<long long> interval) {
    return {convertTime(interval.start), convertTime(interval.stop)};
}

void DataParser::setProgress(OV_DATA_STORE& store, double time, OV_PROGRESS_STAGE stage) {
    if (store.progress == nullptr) {
        return;
    }
    askWhetherToStop(store);
    const double fraction = (time - store.clipStart) / (store.clipStop - store.clipStart);
    double percent = 0.0;
    switch (stage) {
    case OV_STAGE_PARSE:
        percent = fraction * 20.0;
        break;
    case OV_STAGE_SLICE:
        percent = fraction * 60.0 + 20.0;
        break;
    default:
        percent = fraction * 20.0 + 80.0;
        break;
    }
    store.progress->reportProgress(percent);
}

} // namespace OrvantaNS
