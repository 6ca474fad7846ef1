// Prints the plans of a file's requests, all tables and the path, to the last bit: every double as the number that its
// bits make. Packages of other languages print the same.
//
//   print_plans FILE
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "CRequest.h"
#include "RequestNumbers.h"

namespace OrvantaNS::testing {
namespace {

// Moments at which the path is asked, spread over the clip and a little beyond both ends.
constexpr int kMoments = 41;

void print(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    std::printf(" %" PRIu64, bits);
}

void print(const orvanta_rect& rect) { std::printf(" %d %d %d %d", rect.left, rect.top, rect.right, rect.bottom); }

void printSlices(const char* name, const ResultHandle& result, std::int32_t table, std::int32_t spaceTable) {
    const auto spaces = rowsOf<orvanta_space>(result, spaceTable);
    for (const orvanta_slice& row : rowsOf<orvanta_slice>(result, table)) {
        std::printf("%s %d [%s] %u", name, row.revision, orvanta_mode_name(row.mode), row.flags);
        print(row.start);
        print(row.stop);
        print(row.span);
        print(row.window_rect);
        print(row.hot_rect);
        for (std::uint32_t i = row.first_space; i < row.first_space + row.space_count; ++i) {
            std::printf(" (");
            print(spaces.at(i).rect);
            print(spaces.at(i).density);
            std::printf(")");
        }
        std::printf("\n");
    }
}

void printTables(const ResultHandle& result) {
    for (const orvanta_zone& row : rowsOf<orvanta_zone>(result, ORVANTA_TABLE_ZONES)) {
        std::printf("zone");
        print(row.start);
        print(row.stop);
        print(row.rect);
        std::printf("\n");
    }
    for (const orvanta_object& row : rowsOf<orvanta_object>(result, ORVANTA_TABLE_OBJECTS)) {
        std::printf("object %s", orvanta_object_type_name(row.type));
        print(row.start);
        print(row.stop);
        print(row.value);
        print(row.rect);
        std::printf("\n");
    }
    printSlices("slice", result, ORVANTA_TABLE_SLICES, ORVANTA_TABLE_SLICE_SPACES);
    printSlices("shot", result, ORVANTA_TABLE_SHOTS, ORVANTA_TABLE_SHOT_SPACES);
    std::size_t number = 0;
    for (const orvanta_keyframe& row : rowsOf<orvanta_keyframe>(result, ORVANTA_TABLE_KEYFRAMES)) {
        std::printf("keyframe %" PRId64, row.time);
        print(row.seconds);
        print(row.rect);
        std::printf(" [%s] [%s] %d\n", orvanta_result_reason(result.get(), number++), orvanta_mode_name(row.shot_mode),
                    row.shot);
    }
}

void printPath(const Params& params, const RequestHandle& request, const ResultHandle& result) {
    orvanta_table table{};
    orvanta_result_table(result.get(), ORVANTA_TABLE_KEYFRAMES, &table, nullptr);
    orvanta_path* made = nullptr;
    const std::int32_t code =
        orvanta_path_create(request.get(), table.rows, table.count, table.stride, nullptr, &made, nullptr);
    const PathHandle path(made);
    std::printf("path %d\n", code);
    if (path == nullptr) {
        return;
    }
    const double start = static_cast<double>(params.clipStart()) / params.timeScale();
    const double stop = static_cast<double>(params.clipStop()) / params.timeScale();
    std::vector<double> moments;
    for (int i = 0; i < kMoments; ++i) {
        moments.push_back(start + (stop - start) * (i - 1) / (kMoments - 3));
    }
    std::vector<orvanta_frame> frames(moments.size());
    orvanta_path_frames_at_seconds(path.get(), moments.data(), moments.size(), frames.data(), nullptr);
    for (const orvanta_frame& frame : frames) {
        std::printf("frame");
        print(frame.left);
        print(frame.top);
        print(frame.width);
        print(frame.height);
        std::printf("\n");
    }
}

void printPlan(const Params& params, std::int32_t engine) {
    const RequestHandle request = requestOf(params, engine);
    orvanta_run run{};
    run.struct_size = sizeof run;
    run.keep_stages = 1;
    orvanta_result* made = nullptr;
    const std::int32_t code = orvanta_plan(request.get(), &run, &made, nullptr);
    const ResultHandle result(made);
    std::printf("engine %d\n", engine);
    if (result == nullptr) {
        std::printf("failure %d\n", code);
        return;
    }
    printTables(result);
    printPath(params, request, result);
}

} // namespace
} // namespace OrvantaNS::testing

int main(int argc, char** argv) {
    using namespace OrvantaNS::testing;
    if (argc != 2) {
        std::fprintf(stderr, "usage: print_plans FILE\n");
        return 2;
    }
    std::ifstream file(argv[1]);
    int count = 0;
    for (OrvantaNS::Params params; readRequest(file, params); params = {}) {
        std::printf("request %d\n", count++);
        printPlan(params, ORVANTA_ENGINE_VALUE);
        printPlan(params, ORVANTA_ENGINE_VOTING);
        printPlan(params, ORVANTA_ENGINE_DIRECTOR);
    }
    if (!file.eof() || count == 0) {
        std::fprintf(stderr, "print_plans: %s: not a list of requests\n", argv[1]);
        return 1;
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
