// Times each stage of the value engine on generated sessions and on recordings.
//
// ORVANTA_BENCH_RECORDINGS names a folder of recordings to time as well; without it the project's own are timed.

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "GeneratedRecording.h"
#include "OrvantaWorker.h"
#include "frame/DataStore.h"
#include "parser/DataParser.h"
#include "reading/Recording.h"
#include "valuespace/ValueSpace.h"

namespace {

using namespace OrvantaNS;

// A computation stopped just ahead of one stage.
struct Stopped {
    OV_DATA_STORE store;
    DataParser parser;
};

void begin(const Params& params, Stopped& run) {
    DataParser::StoreTimeScale = params.timeScale();
    run.store.fadeSeconds = DataParser::convertTime(params.fadeDuration());
    run.store.clipStart = DataParser::convertTime(params.clipStart());
    run.store.clipStop = DataParser::convertTime(params.clipStop());
    run.store.targetWidth = params.targetWidth();
    run.store.targetHeight = params.targetHeight();
    OrvantaWorker().parseLiveZones(params, run.store);
}

void timeParse(benchmark::State& state, const Params& params) {
    for (auto _ : state) {
        state.PauseTiming();
        auto run = std::make_unique<Stopped>();
        begin(params, *run);
        state.ResumeTiming();
        OrvantaWorker().parseObjectData(params, run->store, run->parser);
        benchmark::DoNotOptimize(run->store.valueObjects.data());
        state.PauseTiming();
        state.counters["objects"] = static_cast<double>(run->store.valueObjects.size());
        run.reset();
        state.ResumeTiming();
    }
}

void timeSlice(benchmark::State& state, const Params& params) {
    Stopped parsed;
    begin(params, parsed);
    OrvantaWorker().parseObjectData(params, parsed.store, parsed.parser);
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<OV_DATA_STORE>(parsed.store);
        state.ResumeTiming();
        OrvantaWorker().sliceTime(*store);
        benchmark::DoNotOptimize(store->slices.data());
        state.PauseTiming();
        state.counters["slices"] = static_cast<double>(store->slices.size());
        store.reset();
        state.ResumeTiming();
    }
}

void timeMerge(benchmark::State& state, const Params& params) {
    Stopped sliced;
    begin(params, sliced);
    OrvantaWorker().parseObjectData(params, sliced.store, sliced.parser);
    OrvantaWorker().sliceTime(sliced.store);
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<OV_DATA_STORE>(sliced.store);
        state.ResumeTiming();
        OrvantaWorker().mergeSlices(params, *store, 0.0);
        benchmark::DoNotOptimize(store->slices.data());
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
}

void timeKeyframes(benchmark::State& state, const Params& params) {
    Stopped merged;
    begin(params, merged);
    OrvantaWorker().parseObjectData(params, merged.store, merged.parser);
    OrvantaWorker().sliceTime(merged.store);
    OrvantaWorker().mergeSlices(params, merged.store, 0.0);
    for (auto _ : state) {
        state.PauseTiming();
        auto store = std::make_unique<OV_DATA_STORE>(merged.store);
        state.ResumeTiming();
        OrvantaWorker().createKeyframeLoop(params, *store, merged.parser, 0.0);
        benchmark::DoNotOptimize(store->keyframes.data());
        state.PauseTiming();
        state.counters["keyframes"] = static_cast<double>(store->keyframes.size());
        store.reset();
        state.ResumeTiming();
    }
}

void timeWhole(benchmark::State& state, const Params& params) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvantaWorker().calcOrvantaKeyframes(params, nullptr));
    }
}

void timeAtTime(benchmark::State& state, const Params& params) {
    const long long middle = params.clipStop() / 2;
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrvantaWorker().calcOrvantaKeyframeAtTime(params, middle));
    }
}

void registerRequest(const std::string& name, const std::shared_ptr<Params>& params) {
    const std::vector<std::pair<const char*, void (*)(benchmark::State&, const Params&)>> stages{
        {"parse", timeParse},         {"slice", timeSlice}, {"merge", timeMerge},
        {"keyframes", timeKeyframes}, {"whole", timeWhole}, {"at_time", timeAtTime}};
    for (const auto& [stage, time] : stages) {
        benchmark::RegisterBenchmark((name + "/" + stage).c_str(), [params, time = time](benchmark::State& state) {
            time(state, *params);
        })->Unit(benchmark::kMillisecond);
    }
}

void registerRecordings(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".jsonl") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        benchmark::RegisterBenchmark((file.stem().string() + "/read").c_str(), [file](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(command::readRecordingFile(file.string()));
            }
        })->Unit(benchmark::kMillisecond);
        command::Recording recording = command::readRecordingFile(file.string());
        auto params = std::make_shared<Params>(std::move(recording.params));
        const long long second = static_cast<long long>(params->timeScale());
        params->setTargetWidth(640).setTargetHeight(400).setFadeDuration(second);
        params->setClipInterval(0, recording.stop);
        registerRequest(file.stem().string(), params);
    }
}

void registerGenerated() {
    for (const int minutes : {1, 10, 60}) {
        testing::SessionPlan plan;
        plan.seconds = minutes * 60.0;
        registerRequest("generated_" + std::to_string(minutes) + "min",
                        std::make_shared<Params>(testing::generatedRecording(1, plan)));
    }
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const char* folder = std::getenv("ORVANTA_BENCH_RECORDINGS");
    registerRecordings(folder != nullptr ? folder : ORVANTA_EXAMPLE_RECORDINGS);
    registerGenerated();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
