#include "reading/InputFile.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "reading/InputError.h"
#include "terminal/FileName.h"
#include "terminal/Interrupt.h"

#if defined(__unix__) || defined(__APPLE__)
#include <csignal>
#include <sys/select.h>
#include <unistd.h>
#define ORVANTA_HAS_PSELECT
#endif

namespace OrvantaNS::command {

namespace {

struct CloseInput {
    void operator()(std::FILE* file) const {
        if (file != stdin) {
            std::fclose(file);
        }
    }
};
using InputHandle = std::unique_ptr<std::FILE, CloseInput>;

#if defined(ORVANTA_HAS_PSELECT)

/// Waits until there is something to read, or Ctrl-C. A plain blocking read would miss a Ctrl-C that comes between the
/// look at the flag and the read; here the signal is held back until the wait itself lets it in.
void waitForInput(int descriptor) {
    if (descriptor >= FD_SETSIZE) {
        return;
    }
    sigset_t interrupt;
    sigset_t before;
    sigemptyset(&interrupt);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&interrupt, signal);
    }
    sigprocmask(SIG_BLOCK, &interrupt, &before);
    if (!interrupted()) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(descriptor, &readable);
        pselect(descriptor + 1, &readable, nullptr, nullptr, nullptr, &before);
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

/// Number of bytes read, 0 at the end, below 0 on failure.
std::ptrdiff_t readSome(std::FILE* file, char* to, std::size_t size) {
    const int descriptor = fileno(file);
    for (;;) {
        waitForInput(descriptor);
        throwIfInterrupted();
        const std::ptrdiff_t count = read(descriptor, to, size);
        if (count >= 0 || errno != EINTR) {
            return count;
        }
    }
}

#else

std::ptrdiff_t readSome(std::FILE* file, char* to, std::size_t size) {
    throwIfInterrupted();
    const std::size_t count = std::fread(to, 1, size, file);
    throwIfInterrupted(); // Ctrl-C ends what is typed.
    return count == 0 && std::ferror(file) != 0 ? -1 : static_cast<std::ptrdiff_t>(count);
}

#endif

} // namespace

ByteSource openInput(const std::string& path, const std::string& name) {
    InputHandle opened(path == "-" ? stdin : std::fopen(path.c_str(), "rb"));
    if (opened == nullptr) {
        const int reason = errno;
        // Windows does not open folders; elsewhere they turn out to be ones when they are read.
        std::error_code none;
        const bool isFolder = std::filesystem::is_directory(pathOf(path), none);
        throw InputError({name, 0, 0, {}, 0}, fmt::format("cannot be {}: {}", isFolder ? "read" : "opened",
                                                          std::strerror(isFolder ? EISDIR : reason)));
    }
    // A source can be copied, so it shares the file.
    return [file = std::shared_ptr<std::FILE>(std::move(opened)), name](char* to, std::size_t size) {
        const std::ptrdiff_t count = readSome(file.get(), to, size);
        if (count < 0) {
            throw InputError({name, 0, 0, {}, 0}, fmt::format("cannot be read: {}", std::strerror(errno)));
        }
        return static_cast<std::size_t>(count);
    };
}

} // namespace OrvantaNS::command
