// Runs a program as a shell would, and tells what came out.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvantaNS::testing {

struct ProcessResult {
    int status = -1; ///< Exit status; 128 and the signal's number for a process that a signal ended.
    std::string out;
    std::string err;
};

struct ProcessOptions {
    std::string input; ///< What the standard input holds.
    /// Gives the process a terminal for the standard output and error together; everything comes back in `out`.
    bool terminal = false;
    /// A file or device that the standard output goes to instead of `out`.
    std::string output;
    /// Keeps the standard input open after `input`, and sends Ctrl-C's signal once all of it has been taken.
    bool interruptAfterInput = false;
};

/// Runs the built `orvanta` to its end.
ProcessResult runOrvanta(const std::vector<std::string>& arguments, const ProcessOptions& options = {});

/// A directory of its own for one test, gone with it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(std::string_view name) const { return (directory_ / name).string(); }
    /// Writes a file and returns its path.
    std::string write(std::string_view name, std::string_view text) const;
    /// Names of the files in it, sorted.
    std::vector<std::string> files() const;

private:
    std::filesystem::path directory_;
};

std::string readFile(const std::string& path);

std::vector<std::string> linesOf(const std::string& text);

} // namespace OrvantaNS::testing
