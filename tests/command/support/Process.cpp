#include "support/Process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace OrvantaNS::testing {

namespace {

constexpr int kPollMilliseconds = 60000; // No answer for this long: the program hangs.

void require(bool done, const char* what) {
    if (!done) {
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
    }
}

struct Pipe {
    int read = -1;
    int write = -1;
    Pipe() {
        std::array<int, 2> ends{};
        require(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe");
        read = ends[0];
        write = ends[1];
    }
};

void closeEnd(int& end) {
    if (end >= 0) {
        close(end);
        end = -1;
    }
}

/// Opens a terminal: the side that a screen would show, and the side that the program gets.
Pipe openTerminal() {
    Pipe terminal;
    closeEnd(terminal.read);
    closeEnd(terminal.write);
    terminal.read = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    require(terminal.read >= 0 && grantpt(terminal.read) == 0 && unlockpt(terminal.read) == 0, "terminal");
    terminal.write = open(ptsname(terminal.read), O_RDWR | O_NOCTTY | O_CLOEXEC);
    require(terminal.write >= 0, "terminal");
    return terminal;
}

/// Reads what is there; false at the end.
bool drain(int from, std::string& to) {
    std::array<char, 4096> chunk{};
    const ssize_t count = read(from, chunk.data(), chunk.size());
    if (count > 0) {
        to.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return count > 0; // A terminal whose program is gone gives an error instead of an end.
}

/// Bytes that the program has not yet taken from its input do not show in any call, so the text is made longer than the
/// pipe holds, whatever its size here: when the last byte is in, the program has begun to read, and it catches Ctrl-C
/// before it reads.
std::string longerThanPipe(std::string text, int pipeEnd) {
    std::size_t size = std::size_t{1} << 20; // More than systems give that do not tell.
#if defined(F_GETPIPE_SZ)
    const int told = fcntl(pipeEnd, F_GETPIPE_SZ);
    require(told > 0, "pipe size");
    size = static_cast<std::size_t>(told);
#else
    static_cast<void>(pipeEnd);
#endif
    text.append(size + 1, ' ');
    return text;
}

} // namespace

ProcessResult runOrvanta(const std::vector<std::string>& arguments, const ProcessOptions& options) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe input;
    Pipe output = options.terminal ? openTerminal() : Pipe();
    Pipe error;

    std::vector<std::string> words{ORVANTA_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    const pid_t child = fork();
    require(child >= 0, "fork");
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        dup2(input.read, STDIN_FILENO);
        dup2(output.write, STDOUT_FILENO);
        if (!options.output.empty()) {
            dup2(open(options.output.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC), STDOUT_FILENO);
        }
        dup2(options.terminal ? output.write : error.write, STDERR_FILENO);
        execv(argv[0], argv.data());
        _exit(127);
    }
    closeEnd(input.read);
    closeEnd(output.write);
    closeEnd(error.write);
    require(fcntl(input.write, F_SETFL, O_NONBLOCK) == 0, "fcntl");

    ProcessResult result;
    const std::string text = options.interruptAfterInput ? longerThanPipe(options.input, input.write) : options.input;
    std::string_view rest = text;
    bool signalled = false;
    while (output.read >= 0 || error.read >= 0) {
        if (rest.empty() && options.interruptAfterInput && !signalled) {
            kill(child, SIGINT);
            signalled = true;
        }
        if (rest.empty() && !options.interruptAfterInput) {
            closeEnd(input.write);
        }
        std::array<pollfd, 3> waits{
            {{output.read, POLLIN, 0}, {error.read, POLLIN, 0}, {rest.empty() ? -1 : input.write, POLLOUT, 0}}};
        if (poll(waits.data(), waits.size(), kPollMilliseconds) <= 0) {
            kill(child, SIGKILL);
            break;
        }
        if (waits[2].revents != 0) {
            const ssize_t count = write(input.write, rest.data(), rest.size());
            if (count >= 0) {
                rest.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno != EAGAIN && errno != EINTR) {
                rest = {}; // A program that stops reading is no failure of the test.
            }
        }
        if (waits[0].revents != 0 && !drain(output.read, result.out)) {
            closeEnd(output.read);
        }
        if (waits[1].revents != 0 && !drain(error.read, result.err)) {
            closeEnd(error.read);
        }
    }
    closeEnd(input.write);
    closeEnd(output.read);
    closeEnd(error.read);
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "orvanta-test-XXXXXX").string();
    require(mkdtemp(name.data()) != nullptr, "mkdtemp");
    directory_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::vector<std::string> TemporaryDirectory::files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace OrvantaNS::testing
