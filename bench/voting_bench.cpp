// The voting engine: time against ticks per second, which must be flat, and against samples.
//
// `peak_MB` is the peak of the whole process so far: it belongs to a benchmark only when that runs alone, as with
// --benchmark_filter=OneHour.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <random>

#include "OrvantaVotingAlgorithm.h"
#include "frame/WrappingArithmetic.h"

namespace OrvantaNS {
namespace {

// Full high definition, shown in a frame of a quarter of its width and height.
constexpr std::int32_t kWidth = 1920;
constexpr std::int32_t kHeight = 1080;

Params recording(double seconds, double ticksPerSecond, int clicks, int windowChanges) {
    Params params;
    params.setTargetWidth(kWidth / 4).setTargetHeight(kHeight / 4).setTimeScale(ticksPerSecond);
    params.setFadeDuration(truncateToInt64(ticksPerSecond));
    params.setClipInterval(0, truncateToInt64(seconds * ticksPerSecond));
    params.recordingRegions().push_back({0, {0, kWidth, 0, kHeight}});
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    const auto upTo = [&](double limit) { return share(random) * limit; };
    const auto times = [&](int count) {
        std::vector<long long> result;
        for (int i = 0; i < count; ++i) {
            result.push_back(truncateToInt64(upTo(seconds) * ticksPerSecond));
        }
        std::sort(result.begin(), result.end());
        return result;
    };
    for (const long long time : times(clicks)) {
        params.cursorLocations().push_back({time, truncateToInt32(upTo(kWidth)), truncateToInt32(upTo(kHeight))});
        params.cursorActions().push_back({time, 0});
    }
    for (const long long time : times(windowChanges)) {
        const std::int32_t w = 100 + truncateToInt32(upTo(kWidth - 100));
        const std::int32_t h = 100 + truncateToInt32(upTo(kHeight - 100));
        const std::int32_t x = truncateToInt32(upTo(kWidth - w));
        const std::int32_t y = truncateToInt32(upTo(kHeight - h));
        params.foreWindows().push_back({time, {x, x + w, y, y + h}});
    }
    return params;
}

void compute(benchmark::State& state, const Params& params) {
    const OrvantaVotingAlgorithm engine;
    std::size_t keyframes = 0;
    for (auto _ : state) {
        keyframes = engine.calcOrvantaKeyframes(params, nullptr)->size();
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["keyframes"] = static_cast<double>(keyframes);
    state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void OneHour(benchmark::State& state) { compute(state, recording(3600.0, 10000000.0, 5000, 2000)); }
BENCHMARK(OneHour)->Unit(benchmark::kMillisecond);

void OneHourAtTicksPerSecond(benchmark::State& state) {
    compute(state, recording(3600.0, static_cast<double>(state.range(0)), 5000, 2000));
}
BENCHMARK(OneHourAtTicksPerSecond)->RangeMultiplier(10)->Range(100, 10000000)->Unit(benchmark::kMillisecond);

// A fade of one tick makes every voted tick an event of its own.
void OneHourWithFadeOfOneTick(benchmark::State& state) {
    compute(state, recording(3600.0, 10000000.0, 5000, 2000).setFadeDuration(1));
}
BENCHMARK(OneHourWithFadeOfOneTick)->Unit(benchmark::kMillisecond);

// As many samples a second as in a lively recording: the longer, the more.
void SamplesAtOneRate(benchmark::State& state) {
    const auto samples = static_cast<int>(state.range(0));
    compute(state, recording(samples * 0.5, 10000000.0, samples - samples / 4, samples / 4));
    state.SetComplexityN(samples);
}
BENCHMARK(SamplesAtOneRate)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// More and more samples in the same hour, so that more and more of them overlap.
void SamplesInOneHour(benchmark::State& state) {
    const auto samples = static_cast<int>(state.range(0));
    compute(state, recording(3600.0, 10000000.0, samples - samples / 4, samples / 4));
    state.SetComplexityN(samples);
}
BENCHMARK(SamplesInOneHour)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

// The worst crowd: all samples within one second, so that at its end all of them vote at once.
void SamplesInOneSecond(benchmark::State& state) {
    const auto samples = static_cast<int>(state.range(0));
    compute(state, recording(1.0, 10000000.0, samples - samples / 4, samples / 4));
    state.SetComplexityN(samples);
}
BENCHMARK(SamplesInOneSecond)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond)->Complexity();

} // namespace
} // namespace OrvantaNS
