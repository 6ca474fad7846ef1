// Emscripten's standard library lacks std::bit_cast, its compiler does not. Included ahead of every source of that build.
#pragma once

#include <bit>

#ifndef __cpp_lib_bit_cast
namespace std {
template <class To, class From> constexpr To bit_cast(const From& from) noexcept {
    return __builtin_bit_cast(To, from);
}
} // namespace std
#endif
