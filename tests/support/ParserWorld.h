// A parser with its request, its store and a clock, to be driven one operation at a time.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "Scene.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {

/// Sets the process-wide clock for one scope.
class ScopedTimeScale {
public:
    explicit ScopedTimeScale(double ticksPerSecond) : saved_(DataParser::StoreTimeScale.load()) {
        DataParser::StoreTimeScale = ticksPerSecond;
    }
    ~ScopedTimeScale() { DataParser::StoreTimeScale = saved_; }
    ScopedTimeScale(const ScopedTimeScale&) = delete;
    ScopedTimeScale& operator=(const ScopedTimeScale&) = delete;

private:
    double saved_;
};

/// One live zone of the whole recording, 0 to 60 seconds, at 1000 ticks a second: the clock of `Scene`.
struct ParserWorld {
    explicit ParserWorld(Rectangle zone = {0, 1280, 0, 800}, double start = 0.0, double stop = 60.0) {
        store.liveZones.push_back({zone, start, stop});
    }

    void processCursorLocation() { parser.processCursorLocation(0, scene, store); }
    void processCursorAction() { parser.processCursorAction(0, scene, store); }
    void detectScroll() { parser.detectScroll(0, scene, store); }
    void processLiveZone(unsigned int zone = 0) {
        store.currentZone = zone;
        parser.processLiveZone(zone, scene, store);
    }

    ScopedTimeScale clock{1000.0};
    Scene scene;
    OV_DATA_STORE store;
    DataParser parser;
};

/// Calls back at each report and each question whether to stop.
class ListeningReporter : public ProgressReporter {
public:
    std::function<void(double)> onReport = [](double) {};
    std::function<bool()> onQuestion = [] { return false; };

    void reportProgress(double percent) override { onReport(percent); }
    bool isCancelled() override { return onQuestion(); }
};

} // namespace OrvantaNS::testing
