// Runs scenes through the whole value engine and tells what each costs:
//
//   scenes [--requests FILE] [--list] [PATTERN]
//   scenes --requests FILE --first [--times N]
//
// A line for each scene whose name the regular expression PATTERN finds, with a tab between: the name, the user CPU
// seconds of one computation (the mean of several, when one is short), the most memory in KiB that the process held
// beyond the request, and a number that two runs share only if their keyframes agree. A FILE of requests as
// write_requests prints them adds the scenes recorded/1, recorded/2 and so on; with --first, its first request is printed
// again, N times one after the other in one, and nothing run.
//
// Needs nothing of the library but the host's headers, so that it builds against the library of another revision as
// well: scripts/bench-compare has both answer in turns.

#include <sys/resource.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "OrvantaException.h"
#include "OrvantaWorker.h"
#include "RequestNumbers.h"
#include "Scenes.h"

namespace {

using namespace OrvantaNS;

// A computation shorter than this is repeated until so much time has gone by, seconds.
constexpr double kEnoughSeconds = 0.4;

double userSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) * 1e-6;
}

// A figure of the process's memory in KiB; 0 where the system does not tell.
long memoryKiB(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field + ":", 0) == 0) {
            return std::stol(line.substr(field.size() + 1));
        }
    }
    return 0;
}

void forgetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

std::uint64_t mixed(std::uint64_t hash, long long value) {
    constexpr std::uint64_t kPrime = 0x100000001B3;
    return (hash ^ static_cast<std::uint64_t>(value)) * kPrime;
}

// What stands for an answer: its keyframes, or the code of its failure.
std::uint64_t ask(const Params& params) {
    std::uint64_t hash = 0xCBF29CE484222325;
    try {
        const auto keyframes = OrvantaWorker().calcOrvantaKeyframes(params, nullptr);
        for (const OV_TIME_RECT& frame : *keyframes) {
            for (const long long value :
                 {frame.time, static_cast<long long>(frame.rect.left), static_cast<long long>(frame.rect.right),
                  static_cast<long long>(frame.rect.top), static_cast<long long>(frame.rect.bottom)}) {
                hash = mixed(hash, value);
            }
        }
    } catch (const OrvantaException& failure) {
        hash = mixed(hash, failure.errorCode());
    }
    return hash;
}

void run(const bench::Scene& scene) {
    const Params params = scene.make();
#ifdef __GLIBC__
    malloc_trim(0); // what making the request has left free would hide what the computation takes
#endif
    const long before = memoryKiB("VmRSS");
    forgetPeak();
    const double begin = userSeconds();
    const std::uint64_t answer = ask(params);
    const long peak = memoryKiB("VmHWM") - before;
    int runs = 1;
    while (userSeconds() - begin < kEnoughSeconds) {
        ask(params);
        ++runs;
    }
    std::printf("%s\t%.6f\t%ld\t%016llx\n", scene.name.c_str(), (userSeconds() - begin) / runs, peak,
                static_cast<unsigned long long>(answer));
    std::fflush(stdout);
}

std::vector<bench::Scene> recordedScenes(const std::string& path) {
    std::ifstream file(path);
    std::vector<bench::Scene> scenes;
    for (Params params; testing::readRequest(file, params); params = {}) {
        scenes.push_back({"recorded/" + std::to_string(scenes.size() + 1), [params] { return params; }});
    }
    if (scenes.empty()) {
        throw std::runtime_error(path + ": not a list of requests");
    }
    return scenes;
}

} // namespace

int main(int argc, char** argv) {
    try {
        std::vector<bench::Scene> scenes = bench::allScenes();
        std::vector<bench::Scene> recorded;
        bool list = false;
        bool first = false;
        int times = 1;
        std::regex pattern(".");
        for (int i = 1; i < argc; ++i) {
            const std::string argument = argv[i];
            if (argument == "--first") {
                first = true;
            } else if (argument == "--times" && i + 1 < argc) {
                times = std::stoi(argv[++i]);
            } else if (argument == "--list") {
                list = true;
            } else if (argument == "--requests" && i + 1 < argc) {
                recorded = recordedScenes(argv[++i]);
            } else {
                pattern = argument;
            }
        }
        if (first) {
            testing::writeRequest(std::cout, bench::repeated(recorded.at(0).make(), times));
            return 0;
        }
        scenes.insert(scenes.end(), recorded.begin(), recorded.end());
        for (const bench::Scene& scene : scenes) {
            if (!std::regex_search(scene.name, pattern)) {
                continue;
            }
            if (list) {
                std::cout << scene.name << std::endl;
            } else {
                run(scene);
            }
        }
    } catch (const std::exception& failure) {
        std::cerr << "scenes: " << failure.what() << std::endl;
        return 1;
    }
    return 0;
}
