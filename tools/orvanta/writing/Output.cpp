#include "writing/Output.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <system_error>

#include <fmt/format.h>

#include "terminal/FileName.h"
#include "terminal/Interrupt.h"
#include "terminal/TextFormat.h"

#if defined(__unix__) || defined(__APPLE__)
#include <fcntl.h>
#include <unistd.h>
#define ORVANTA_HAS_DESCRIPTORS
#elif defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#endif

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

OutputError failure(const std::string& name, const std::string& reason) {
    return OutputError(fmt::format("{}: cannot be written: {}", printableName(name), reason));
}

OutputError failure(const std::string& name, int error) { return failure(name, std::string(std::strerror(error))); }

void writeAll(std::FILE* file, std::string_view text, const std::string& name) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size() || std::fflush(file) != 0) {
        const int error = errno;
        throwIfInterrupted(); // Ctrl-C ends a wait for a reader.
        throw failure(name, error);
    }
}

void closeWritten(File file, const std::string& name) {
    if (std::fclose(file.release()) != 0) {
        throw failure(name, errno);
    }
}

/// The open file that a name such as /dev/fd/3 stands for, links to such names included.
std::optional<int> descriptorOf(const std::string& output) {
    fs::path path = pathOf(output);
    constexpr int kMostLinks = 40; // As many as systems follow.
    for (int i = 0; i < kMostLinks; ++i) {
        const std::string name = nameOf(path.lexically_normal().generic_u8string());
        constexpr std::string_view kStreams[] = {"/dev/stdin", "/dev/stdout", "/dev/stderr"};
        if (const auto* const found = std::find(std::begin(kStreams), std::end(kStreams), name);
            found != std::end(kStreams)) {
            return static_cast<int>(found - std::begin(kStreams));
        }
        for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
            int number = 0;
            const char* const end = name.data() + name.size();
            if (name.starts_with(folder) && std::from_chars(name.data() + folder.size(), end, number).ptr == end) {
                return number;
            }
        }
        std::error_code error;
        if (!fs::is_symlink(path, error)) {
            return std::nullopt;
        }
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return std::nullopt;
}

void writeDescriptor(int number, std::string_view text, const std::string& name) {
    if (number == 1) {
        writeAll(stdout, text, name);
        return;
    }
#if defined(ORVANTA_HAS_DESCRIPTORS)
    // A copy of the descriptor shares its position, where opening the name again would begin at the start.
    const int copy = dup(number);
    File file(copy < 0 ? nullptr : fdopen(copy, "wb"));
    if (file == nullptr) {
        throw failure(name, errno);
    }
    writeAll(file.get(), text, name);
    closeWritten(std::move(file), name);
#else
    throw failure(name, EBADF);
#endif
}

std::string temporaryName(const fs::path& path) {
    static std::random_device random;
    return fmt::format("{}.{:08x}.tmp", nameOf(path), random());
}

/// Opens a file that is not there yet; null with EEXIST when the name is taken.
std::FILE* openNew(const std::string& name) {
#if defined(_WIN32)
    // The C library there knows no mode "x".
    const int descriptor = _open(name.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
#else
    return std::fopen(name.c_str(), "wbx");
#endif
}

constexpr int kAttempts = 16; // At a name that nothing has yet.

/// A file beside `path`, under a name that nothing has yet.
File createBeside(const fs::path& path, std::string& created) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        created = temporaryName(path);
        if (File file(openNew(created)); file != nullptr) {
            return file;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    throw failure(nameOf(path), errno);
}

/// Gives the file under `temporary` its name.
void moveInPlace(const std::string& temporary, const fs::path& path) {
    std::error_code error;
    fs::rename(pathOf(temporary), path, error);
    if (error) {
        std::error_code ignored;
        fs::remove(pathOf(temporary), ignored);
        throw failure(nameOf(path), error.message());
    }
}

void copyPermissions(const fs::path& from, const fs::path& to) {
    std::error_code error;
    if (const fs::file_status old = fs::status(from, error); fs::exists(old)) {
        fs::permissions(to, old.permissions(), error);
    }
}

void replaceByNamedFile(const fs::path& path, std::string_view text) {
    std::string temporary;
    File file = createBeside(path, temporary);
    try {
        writeAll(file.get(), text, nameOf(path));
        closeWritten(std::move(file), nameOf(path));
        copyPermissions(path, pathOf(temporary));
        throwIfInterrupted();
    } catch (...) {
        file.reset();
        std::error_code ignored;
        fs::remove(pathOf(temporary), ignored);
        throw;
    }
    moveInPlace(temporary, path);
}

#if defined(ORVANTA_HAS_DESCRIPTORS) && defined(O_TMPFILE)

/// Writes the file without a name first, so that nothing stays behind whatever ends the process. False where the file
/// system has no such files.
bool replaceByNamelessFile(const fs::path& path, std::string_view text) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    constexpr mode_t kMode = 0666; // What the user's mask leaves of it.
    const int descriptor = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kMode);
    if (descriptor < 0) {
        return false;
    }
    File file(fdopen(descriptor, "wb"));
    if (file == nullptr) {
        close(descriptor);
        return false;
    }
    writeAll(file.get(), text, nameOf(path));
    const std::string nameless = fmt::format("/proc/self/fd/{}", descriptor);
    copyPermissions(path, nameless);
    throwIfInterrupted();
    const auto nameIt = [&](const std::string& name) {
        return linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    };
    if (nameIt(nameOf(path))) {
        return true;
    }
    // A name that is taken can only be taken over from another name.
    for (int attempt = 0; errno == EEXIST && attempt < kAttempts; ++attempt) {
        const std::string temporary = temporaryName(path);
        if (nameIt(temporary)) {
            moveInPlace(temporary, path);
            return true;
        }
    }
    return false;
}

#else

bool replaceByNamelessFile(const fs::path&, std::string_view) { return false; }

#endif

bool isReadOnly(const fs::path& path, const fs::file_status& status) {
    constexpr fs::perms kWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    // Asked for everyone: to a privileged user every file is writable, and the mark is meant all the same.
    if ((status.permissions() & kWrite) == fs::perms::none) {
        return true;
    }
#if defined(ORVANTA_HAS_DESCRIPTORS)
    return access(path.c_str(), W_OK) != 0;
#else
    static_cast<void>(path);
    return false;
#endif
}

} // namespace

bool isStandardOutput(const std::string& path) { return path.empty() || path == "-"; }

void checkOutput(const std::string& path) {
    if (isStandardOutput(path) || descriptorOf(path)) {
        return;
    }
    const fs::path file = pathOf(path);
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status) && fs::is_symlink(file, error)) {
        throw OutputError(fmt::format("{}: is a link to {}, which does not exist; name the file itself",
                                      printableName(path), printableName(nameOf(fs::read_symlink(file, error)))));
    }
    if (fs::is_directory(status)) {
        throw OutputError(fmt::format("{}: is a directory; name a file in it", printableName(path)));
    }
    if (fs::is_regular_file(status) && isReadOnly(file, status)) {
        throw OutputError(fmt::format("{}: is read-only, and stays as it is", printableName(path)));
    }
    const fs::path folder = file.parent_path();
    if (!fs::exists(status) && !folder.empty() && !fs::is_directory(folder, error)) {
        throw failure(path, ENOENT);
    }
#if defined(ORVANTA_HAS_DESCRIPTORS)
    if (!fs::exists(status) && access(folder.empty() ? "." : folder.c_str(), W_OK) != 0) {
        throw failure(path, errno);
    }
#endif
}

void writeOutput(const std::string& path, std::string_view text) {
    throwIfInterrupted();
    checkOutput(path);
    if (isStandardOutput(path)) {
        writeAll(stdout, text, "<stdout>");
        return;
    }
    if (const auto descriptor = descriptorOf(path)) {
        writeDescriptor(*descriptor, text, path);
        return;
    }
    const fs::path named = pathOf(path);
    std::error_code error;
    const fs::file_status status = fs::status(named, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        // A device or a pipe takes text as it comes and must not be moved away.
        File file(std::fopen(path.c_str(), "wb"));
        if (file == nullptr) {
            const int reason = errno;
            throwIfInterrupted();
            throw failure(path, reason);
        }
        writeAll(file.get(), text, path);
        closeWritten(std::move(file), path);
        return;
    }
    const fs::path real = fs::exists(status) ? fs::canonical(named, error) : named;
    const fs::path place = error ? named : real;
    if (!replaceByNamelessFile(place, text)) {
        replaceByNamedFile(place, text);
    }
}

void refuseOverwriting(const std::string& path, const std::string& inputPath, std::string_view input) {
    std::error_code error;
    if (!isStandardOutput(path) && !isStandardOutput(inputPath) && fs::is_regular_file(pathOf(path), error) &&
        fs::equivalent(pathOf(path), pathOf(inputPath), error)) {
        throw OutputError(fmt::format("{}: is the {} itself and would be overwritten", printableName(path), input));
    }
}

} // namespace OrvantaNS::command
