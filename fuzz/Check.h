// What a fuzz target does when a property does not hold.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace OrvantaNS::fuzz {

/// Prints what was expected and where, and aborts: the fuzzer keeps the input that led here.
[[noreturn]] inline void fail(const char* property, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, property);
    std::abort();
}

} // namespace OrvantaNS::fuzz

/// A property that holds on every input. Stands in every build type, unlike an assert.
#define FUZZ_CHECK(property)                                                                                           \
    do {                                                                                                               \
        if (!(property)) {                                                                                             \
            ::OrvantaNS::fuzz::fail(#property, __FILE__, __LINE__);                                                    \
        }                                                                                                              \
    } while (false)
