// The director on dense desktop sessions of 0.75, 1.5 and 3 hours, as they are and with five times the changes.
//
// A run prints its time and, as counters, the most memory in MB that the process held beyond the request (Linux only), the
// keyframes and the time an hour, which stays the same when the time grows in proportion to the length.
#include <fstream>
#include <memory>
#include <string>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <benchmark/benchmark.h>

#include "GeneratedRecording.h"
#include "OrvantaDirector.h"

namespace {

using namespace OrvantaNS;

constexpr std::uint64_t kSeed = 1;
// Changes a second that nobody asked for.
constexpr double kChanges = 4.0;

// A figure of the process's memory in MB; 0 where the system does not tell.
double megabytes(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field + ":", 0) == 0) {
            return std::stod(line.substr(field.size() + 1)) / 1024.0;
        }
    }
    return 0.0;
}

// Arguments: quarters of an hour, and the factor of the changes.
void denseSession(benchmark::State& state) {
    testing::SessionPlan plan;
    plan.seconds = static_cast<double>(state.range(0)) * 900.0;
    plan.dirtyPerSecond = kChanges * static_cast<double>(state.range(1));
    const Params params = testing::generatedRecording(kSeed, plan);
#ifdef __GLIBC__
    malloc_trim(0); // what making the request has left free would hide what the computation takes
#endif
    const double before = megabytes("VmRSS");
    std::ofstream("/proc/self/clear_refs") << "5"; // forgets the peak
    std::size_t keyframes = 0;
    for (auto _ : state) {
        keyframes = OrvantaDirector().calcOrvantaKeyframes(params, nullptr)->size();
    }
    state.counters["MB"] = megabytes("VmHWM") - before;
    state.counters["keyframes"] = static_cast<double>(keyframes);
    state.counters["s_per_hour"] = benchmark::Counter(
        plan.seconds / 3600.0, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(denseSession)->ArgsProduct({{3, 6, 12}, {1, 5}})->Unit(benchmark::kSecond);

} // namespace
