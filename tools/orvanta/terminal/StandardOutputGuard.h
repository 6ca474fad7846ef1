// Keeps the library's own lines away from the results.
#pragma once

#include <streambuf>

namespace OrvantaNS::command {

/// While it lives, what the library prints to the standard output (sizes and states ahead of some failures, for developers of
/// hosts) is dropped: results keep the standard output for themselves, and the command has words of its own for failures.
class StandardOutputGuard {
public:
    StandardOutputGuard();
    ~StandardOutputGuard();
    StandardOutputGuard(const StandardOutputGuard&) = delete;
    StandardOutputGuard& operator=(const StandardOutputGuard&) = delete;

private:
    std::streambuf* saved_;
};

} // namespace OrvantaNS::command
