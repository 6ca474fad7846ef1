// Prints the answers of both engines to the last bit, and frames of the camera's path through them, so that builds can be
// compared: those to the requests of a file written by write_requests, if one is named, and to generated sessions.
//
//   print_answers COUNT [FILE]
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "CameraPath.h"
#include "GeneratedRequest.h"
#include "OrvantaException.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "RequestNumbers.h"
#include "frame/DataStore.h"

namespace OrvantaNS::testing {
namespace {

void print(const OV_TIME_RECT& frame) {
    std::printf("%lld: %d %d %d %d\n", frame.time, frame.rect.left, frame.rect.top, frame.rect.right,
                frame.rect.bottom);
}

// A hexadecimal number holds every bit.
void print(double value) { std::printf(" %a", value); }

class PrintingReporter : public ProgressReporter {
public:
    void reportProgress(double percent) override { print(percent); }
    bool isCancelled() override { return false; }
};

void printObjects(const OV_DATA_STORE& store) {
    for (const OV_VALUE_OBJECT& object : store.valueObjects) {
        std::printf("object %d %d %d %d %d", object.type, object.rect.left, object.rect.top, object.rect.right,
                    object.rect.bottom);
        print(object.start);
        print(object.stop);
        print(object.value);
        std::printf("\n");
    }
}

void printSlices(const OV_DATA_STORE& store) {
    for (const OV_FOCUS_SLICE& slice : store.slices) {
        std::printf("slice %d %d", slice.mergeId, slice.mergeType);
        print(slice.start);
        print(slice.stop);
        for (const auto& [rect, density] : slice.map.spaces) {
            std::printf(" [%d %d %d %d", rect.left, rect.top, rect.right, rect.bottom);
            print(density);
            std::printf("]");
        }
        std::printf("\n");
    }
}

void print(const CameraFrame& frame) {
    print(frame.left);
    print(frame.top);
    print(frame.width);
    print(frame.height);
    std::printf(" %d\n", frame.overhangs ? 1 : 0);
}

constexpr std::size_t kPrintedMoves = 4; // Of each path: more would make files of gigabytes.

// Frames of the path through the keyframes: a move's start, shares of it in ticks and in seconds, and its end, for each
// preset and for a curve of its own.
void printPath(const Params& params, const std::vector<OV_TIME_RECT>& keyframes) {
    std::vector<CameraEasing> easings{CameraEasing(0.9, -0.3, 0.2, 1.4)};
    for (const std::string_view name : CameraEasing::names()) {
        easings.push_back(*CameraEasing::named(name));
    }
    for (const CameraEasing& easing : easings) {
        std::printf("path %s\n", std::string(easing.name()).c_str());
        try {
            const CameraPath path(keyframes, CameraSetup::of(params, easing));
            print(path.wholeFrame());
            for (std::size_t i = 0; i < path.moves().size() && i < kPrintedMoves; ++i) {
                const CameraMove& move = path.moves()[i];
                const long long length = move.stop - move.start;
                for (int eighth = 0; eighth <= 8; eighth += 2) {
                    print(path.frameAt(move.start + length / 8 * eighth));
                }
                const double start = static_cast<double>(move.start) / params.timeScale();
                print(path.frameAtSeconds(start + static_cast<double>(length) / params.timeScale() / 3.0));
                print(move.to);
            }
        } catch (const std::invalid_argument& failure) {
            std::printf("%s\n", failure.what());
        }
    }
}

// Prints what the question answers, or how it fails.
template <typename Question> void printAnswer(const char* question, const Question& ask) {
    std::printf("%s\n", question);
    try {
        const std::shared_ptr<std::vector<OV_TIME_RECT>> answer = ask();
        for (const OV_TIME_RECT& frame : *answer) {
            print(frame);
        }
    } catch (const OrvantaException& failure) {
        std::printf("failure %d\n", failure.errorCode());
    }
}

void printAnswers(const Params& params) {
    const OrvantaWorker value;
    printAnswer("value engine, keyframes", [&] {
        PrintingReporter reporter;
        OV_DATA_STORE store;
        value.runPipeline(params, &reporter, store, [](OV_PIPELINE_STAGE stage, const OV_DATA_STORE& now) {
            std::printf("\nstage %d\n", stage);
            if (stage == OV_PIPELINE_OBJECTS) {
                printObjects(now);
            } else if (stage == OV_PIPELINE_SLICES || stage == OV_PIPELINE_SHOTS) {
                printSlices(now);
            }
        });
        printPath(params, store.keyframes);
        return std::make_shared<std::vector<OV_TIME_RECT>>(store.keyframes);
    });
    printAnswer("value engine, plain", [&] { return value.calcOrvantaKeyframes(params, nullptr); });
    const OrvantaVotingAlgorithm voting;
    // Without a reporter: it would hear of every tick.
    printAnswer("voting engine, keyframes", [&] {
        const auto keyframes = voting.calcOrvantaKeyframes(params, nullptr);
        printPath(params, *keyframes);
        return keyframes;
    });
    for (int eighth = 0; eighth <= 8; ++eighth) {
        const long long time = params.clipStart() + (params.clipStop() - params.clipStart()) / 8 * eighth;
        printAnswer("value engine, moment", [&] { return value.calcOrvantaKeyframeAtTime(params, time); });
        printAnswer("voting engine, moment", [&] { return voting.calcOrvantaKeyframeAtTime(params, time); });
    }
    printAnswer("window", [&] { return value.calcKeyframeAtWindow(params); });
}

void printGenerated(std::uint64_t seed) {
    const SessionPlan plan = planOfSeed(seed);
    std::printf("generated session %llu\n", static_cast<unsigned long long>(seed));
    const Params params = generatedRequest(seed);
    printAnswers(params);
    if (plan.timeScale <= 1000.0) {
        std::printf("voting engine, reports\n");
        PrintingReporter reporter;
        printAnswer("voting engine, keyframes once more",
                    [&] { return OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, &reporter); });
    }
}

} // namespace
} // namespace OrvantaNS::testing

int main(int argc, char** argv) {
    using namespace OrvantaNS::testing;
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: print_answers COUNT [FILE]\n");
        return 2;
    }
    try {
        if (argc == 3) {
            std::ifstream file(argv[2]);
            for (OrvantaNS::Params params; readRequest(file, params); params = {}) {
                std::printf("recorded session\n");
                printAnswers(params);
            }
            if (!file.eof()) {
                std::fprintf(stderr, "print_answers: %s: not a list of requests\n", argv[2]);
                return 1;
            }
        }
        const std::uint64_t count = std::strtoull(argv[1], nullptr, 10);
        for (std::uint64_t seed = 1; seed <= count; ++seed) {
            printGenerated(seed);
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "print_answers: %s\n", failure.what());
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
