// Keeps the library's own lines out of the results.
#pragma once

#include <streambuf>

namespace OrvantaNS::command {

/// While it lives, what the library prints to the standard output goes to the standard error: results keep the standard
/// output for themselves, and the lines ahead of a failure stand beside its message.
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
