#include "writing/Output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>

#include <fmt/format.h>

#include "terminal/Interrupt.h"

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

OutputError failure(std::string_view name, int error) {
    return OutputError(fmt::format("{}: cannot be written: {}", name, std::strerror(error)));
}

void writeAll(std::FILE* file, std::string_view text, std::string_view name) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size() || std::fflush(file) != 0) {
        throw failure(name, errno);
    }
}

/// A file of its own in the directory of `path`, under a name that nothing has yet.
File createBeside(const fs::path& path, fs::path& created) {
    constexpr int kAttempts = 16;
    std::random_device random;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        created = path;
        created += fmt::format(".{:08x}.tmp", random());
        // "x": fails when the name is taken.
        if (File file(std::fopen(created.string().c_str(), "wbx")); file != nullptr) {
            return file;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    throw failure(path.string(), errno);
}

void replaceFile(const fs::path& path, std::string_view text) {
    fs::path temporary;
    File file = createBeside(path, temporary);
    try {
        writeAll(file.get(), text, path.string());
        if (std::fclose(file.release()) != 0) {
            throw failure(path.string(), errno);
        }
        std::error_code error;
        if (const fs::file_status old = fs::status(path, error); fs::exists(old)) {
            fs::permissions(temporary, old.permissions(), error);
        }
        throwIfInterrupted();
        fs::rename(temporary, path, error);
        if (error) {
            throw failure(path.string(), error.value());
        }
    } catch (...) {
        file.reset();
        std::error_code ignored;
        fs::remove(temporary, ignored);
        throw;
    }
}

} // namespace

void writeOutput(const std::string& path, std::string_view text) {
    throwIfInterrupted();
    if (path.empty()) {
        writeAll(stdout, text, "<stdout>");
        return;
    }
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        replaceFile(path, text);
    } else if (fs::is_regular_file(status)) {
        // A link keeps its place; the file that it names is replaced.
        const fs::path real = fs::canonical(path, error);
        replaceFile(error ? fs::path(path) : real, text);
    } else {
        // A device or a pipe takes text as it comes and must not be moved away.
        const File file(std::fopen(path.c_str(), "wb"));
        if (file == nullptr) {
            throw failure(path, errno);
        }
        writeAll(file.get(), text, path);
    }
}

void refuseOverwriting(const std::string& path, const std::string& recordingPath) {
    std::error_code error;
    if (!path.empty() && recordingPath != "-" && fs::is_regular_file(path, error) &&
        fs::equivalent(path, recordingPath, error)) {
        throw OutputError(fmt::format("{}: is the recording itself and would be overwritten", path));
    }
}

} // namespace OrvantaNS::command
