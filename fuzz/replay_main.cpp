// Gives files, or all files of folders, to a fuzz target: for builds without a fuzzer, and for a debugger.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

// All files of the argument, in an order that does not depend on the file system.
std::vector<fs::path> filesOf(const fs::path& argument) {
    if (!fs::is_directory(argument)) {
        return {argument};
    }
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(argument)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE-OR-FOLDER...\n", argv[0]);
        return 2;
    }
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& file : filesOf(argv[i])) {
            std::ifstream in(file, std::ios::binary);
            const std::vector<char> text{std::istreambuf_iterator<char>(in), {}};
            if (!in) {
                std::fprintf(stderr, "%s cannot be read\n", file.c_str());
                return 2;
            }
            // Named before it runs: after a crash, the last line tells which it was. A copy of the exact size lets the
            // address sanitizer see a read past the end.
            std::fprintf(stderr, "%s\n", file.c_str());
            const std::vector<std::uint8_t> bytes(text.begin(), text.end());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    }
    if (count == 0) {
        std::fprintf(stderr, "no input found\n");
        return 2;
    }
    std::fprintf(stderr, "%zu inputs passed\n", count);
    return 0;
}
