// How a failure travels inside the C interface, and how it becomes the caller's error record.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "orvanta_c.h"

namespace OrvantaNS::c {

/// Why a call failed, with the same meanings as the fields of `orvanta_error`. Thrown by value inside the interface.
struct Failure {
    std::int32_t code = ORVANTA_INTERNAL;
    std::int32_t parameter = ORVANTA_PARAMETER_NONE;
    double value = 0.0;
    double limit = 0.0;
    std::int64_t index = -1;
    std::string message;
};

/// The failure of an argument.
inline Failure badArgument(std::int32_t parameter, std::string message) {
    return {ORVANTA_BAD_ARGUMENT, parameter, 0.0, 0.0, -1, std::move(message)};
}

/// The failure of a number that misses a bound.
inline Failure badNumber(std::int32_t parameter, double value, double limit, std::string message) {
    return {ORVANTA_BAD_ARGUMENT, parameter, value, limit, -1, std::move(message)};
}

/// Fills the caller's record without a failure; null is passed over. Returns the code.
std::int32_t reportSuccess(orvanta_error* error) noexcept;
/// Turns the exception in flight into a report. Called from a handler only.
std::int32_t reportException(orvanta_error* error) noexcept;

/// Runs the work of a call: no exception gets out, whatever it is.
template <typename Work> std::int32_t guarded(orvanta_error* error, const Work& work) noexcept {
    try {
        work();
        return reportSuccess(error);
    } catch (...) {
        return reportException(error);
    }
}

/// Throws when a pointer that the call needs is null; `name` is the argument's.
void needPointer(const void* pointer, const char* name);

} // namespace OrvantaNS::c
