#include "subcommands/Batch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <system_error>
#include <thread>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "subcommands/Failures.h"
#include "terminal/FileName.h"
#include "terminal/Interrupt.h"
#include "terminal/Messages.h"
#include "terminal/TextFormat.h"
#include "writing/Json.h"
#include "writing/Output.h"

#if defined(__unix__) || defined(__APPLE__)
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif
#define ORVANTA_HAS_FORK
#endif

namespace OrvantaNS::command {

namespace {

namespace fs = std::filesystem;

/// The recording's name without folder and ending; packed files have two endings.
std::string stemOf(const std::string& recording) {
    fs::path name = pathOf(recording).filename();
    if (name.extension() == ".gz" || name.extension() == ".zst") {
        name = name.stem();
    }
    return nameOf(name.stem());
}

void sayLine(const BatchItem& item, ExitStatus status, const std::string& text) {
    if (messageStyle().quiet) {
        return;
    }
    if (messageStyle().json) {
        const Json line = {{"recording", item.recording},
                           {"output", status == kDone ? Json(item.output) : Json()},
                           {"exitStatus", static_cast<int>(status)},
                           {"result", status == kDone ? Json(text) : Json()}};
        writeOutput({}, line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
    } else if (status == kDone) {
        writeOutput({}, fmt::format("{}: {} -> {}\n", printableName(item.recording), text, printableName(item.output)));
    } else {
        writeOutput({}, fmt::format("{}: failed\n", printableName(item.recording)));
    }
}

/// "orvanta: 1 of 3 recordings failed:" and a line for each.
void tellFailures(const std::vector<Failure>& failures, std::size_t count) {
    if (messageStyle().json) {
        for (const Failure& failure : failures) {
            if (failure.status != kDone && !failure.message.empty()) {
                tellFailure(failure);
            }
        }
        return;
    }
    std::string text = fmt::format("{} of {} recordings failed:", count, failures.size());
    for (const Failure& failure : failures) {
        if (failure.message.empty()) {
            continue;
        }
        const std::string name = printableName(failure.file);
        const std::string message =
            failure.message.starts_with(name) ? failure.message : fmt::format("{}: {}", name, failure.message);
        text += fmt::format("\n  {}", message);
    }
    tellFailure({text, kFailed});
}

} // namespace

void BatchArguments::addTo(CLI::App& app) {
    app.add_option("--out-dir", folder, "Folder for the results of several recordings, each under its recording's name")
        ->type_name("DIR");
    constexpr int kMostJobs = 1024;
    app.add_option("-j,--jobs", jobs, "Recordings worked on side by side (default: as many as processors)")
        ->type_name("N")
        ->check(CLI::Range(1, kMostJobs));
}

std::vector<BatchItem> BatchArguments::items(const std::vector<std::string>& recordings,
                                             const std::string& ending) const {
    std::vector<BatchItem> items;
    std::map<std::string, std::string> taken;
    for (const std::string& recording : recordings) {
        if (recording == "-") {
            throw OptionError("--out-dir: the standard input has no name for its result; use -o");
        }
        const std::string output = nameOf(pathOf(folder) / pathOf(stemOf(recording) + ending));
        const auto [other, isNew] = taken.emplace(output, recording);
        if (!isNew) {
            throw OptionError(fmt::format("--out-dir: the results of {} and {} would both be {}",
                                          printableName(other->second), printableName(recording),
                                          printableName(output)));
        }
        items.push_back({recording, output});
    }
    std::error_code error;
    fs::create_directories(pathOf(folder), error);
    if (!fs::is_directory(pathOf(folder))) {
        throw OutputError(fmt::format("{}: is no folder, and cannot be made one{}", printableName(folder),
                                      error ? ": " + error.message() : ""));
    }
    return items;
}

namespace {

#if defined(ORVANTA_HAS_FORK)

/// The work on one item.
struct Job {
    std::size_t item = 0;
    pid_t process = -1;
    int report = -1; ///< Where the process says how it went.
    std::string text;
};

constexpr int kPollMilliseconds = 200; // Between looks at Ctrl-C.

/// What the process of a job does.
[[noreturn]] void work(const BatchItem& item, int report, const std::function<std::string(const BatchItem&)>& task) {
    setpgid(0, 0); // Ctrl-C reaches the first process alone, which passes it on once.
#if defined(__linux__)
    prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
    messageStyle().progress = false;
    ExitStatus status = kDone;
    std::string text;
    try {
        text = task(item);
    } catch (...) {
        const Failure failure = currentFailure();
        text = failure.message;
        status = failure.status;
    }
    for (std::string_view rest = text; !rest.empty();) {
        const ssize_t count = write(report, rest.data(), rest.size());
        if (count < 0 && errno != EINTR) {
            break;
        }
        rest.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    std::fflush(nullptr);
    _exit(status);
}

Job start(std::size_t index, const BatchItem& item, const std::function<std::string(const BatchItem&)>& task) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "a process cannot be started");
    }
    std::fflush(nullptr); // What waits to be written must not be written twice.
    const pid_t process = fork();
    if (process < 0) {
        throw std::system_error(errno, std::generic_category(), "a process cannot be started");
    }
    if (process == 0) {
        close(ends[0]);
        work(item, ends[1], task);
    }
    close(ends[1]);
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    return {index, process, ends[0], {}};
}

/// Takes what the process says; false once it has ended.
bool listen(Job& job) {
    std::array<char, 4096> chunk{};
    const ssize_t count = read(job.report, chunk.data(), chunk.size());
    if (count > 0) {
        job.text.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

ExitStatus end(Job& job) {
    close(job.report);
    int status = 0;
    while (waitpid(job.process, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) {
        return static_cast<ExitStatus>(WEXITSTATUS(status));
    }
    job.text = fmt::format("its process was ended by signal {} ({})", WTERMSIG(status), strsignal(WTERMSIG(status)));
    return kFailed;
}

/// The processes that run, and how those that have ended did.
class Batch {
public:
    Batch(const std::vector<BatchItem>& items, const std::function<std::string(const BatchItem&)>& task)
        : items_(items), task_(task), failures_(items.size()) {}
    ~Batch() {
        // Left early: nobody listens any more.
        stopAll();
        for (Job& job : running_) {
            end(job);
        }
    }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    void run(std::size_t jobs) {
        std::size_t next = 0;
        while (next < items_.size() || !running_.empty()) {
            while (next < items_.size() && running_.size() < jobs && !interrupted()) {
                running_.push_back(start(next, items_[next], task_));
                ++next;
            }
            if (interrupted()) {
                stopAll();
                next = items_.size();
            }
            waitForNews();
        }
        throwIfInterrupted();
    }

    const std::vector<Failure>& failures() const { return failures_; }

private:
    void stopAll() {
        if (!stopped_) {
            for (const Job& job : running_) {
                kill(job.process, SIGINT);
            }
        }
        stopped_ = true;
    }

    void waitForNews() {
        std::vector<pollfd> waits;
        for (const Job& job : running_) {
            waits.push_back({job.report, POLLIN, 0});
        }
        if (poll(waits.data(), waits.size(), kPollMilliseconds) <= 0) {
            return;
        }
        for (std::size_t i = waits.size(); i-- > 0;) {
            if (waits[i].revents != 0 && !listen(running_[i])) {
                Job job = running_[i];
                running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(i));
                finish(job);
            }
        }
    }

    void finish(Job& job) {
        const ExitStatus status = end(job);
        if (status != kDone) {
            failures_[job.item].message = job.text;
            failures_[job.item].status = status;
            failures_[job.item].file = items_[job.item].recording;
        }
        if (!stopped_) {
            sayLine(items_[job.item], status, job.text);
        }
    }

    const std::vector<BatchItem>& items_;
    const std::function<std::string(const BatchItem&)>& task_;
    std::vector<Failure> failures_; // One for each item; without a message where nothing failed.
    std::vector<Job> running_;
    bool stopped_ = false;
};

/// The failures, as a run of all items leaves them: one for each, without a message where nothing failed.
std::vector<Failure> runAll(const std::vector<BatchItem>& items, int jobs,
                            const std::function<std::string(const BatchItem&)>& work) {
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    Batch batch(items, work);
    batch.run(jobs > 0 ? static_cast<std::size_t>(jobs) : processors);
    return batch.failures();
}

#else

// Without processes to fork: one after the other.
std::vector<Failure> runAll(const std::vector<BatchItem>& items, int,
                            const std::function<std::string(const BatchItem&)>& work) {
    messageStyle().progress = false;
    std::vector<Failure> failures(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        ExitStatus status = kDone;
        std::string text;
        try {
            text = work(items[i]);
        } catch (...) {
            const Failure failure = currentFailure();
            status = failure.status;
            failures[i].message = failure.message;
            failures[i].status = status;
            failures[i].file = items[i].recording;
        }
        throwIfInterrupted();
        sayLine(items[i], status, text);
    }
    return failures;
}

#endif

} // namespace

ExitStatus runBatch(const std::vector<BatchItem>& items, int jobs,
                    const std::function<std::string(const BatchItem&)>& work) {
    const std::vector<Failure> failures = runAll(items, jobs, work);
    const auto isFailure = [](const Failure& failure) { return !failure.message.empty(); };
    const auto first = std::find_if(failures.begin(), failures.end(), isFailure);
    if (first == failures.end()) {
        return kDone;
    }
    tellFailures(failures, static_cast<std::size_t>(std::count_if(failures.begin(), failures.end(), isFailure)));
    return first->status;
}

} // namespace OrvantaNS::command
