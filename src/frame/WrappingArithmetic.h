// Arithmetic that is defined on every input: edges and ticks wrap, conversions from double are range-checked. Hostile
// input may thus give nonsense, never undefined behaviour.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

namespace OrvantaNS {

template <typename T> constexpr T wrapAdd(T a, T b) {
    using U = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<U>(a) + static_cast<U>(b));
}

template <typename T> constexpr T wrapSub(T a, T b) {
    using U = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<U>(a) - static_cast<U>(b));
}

template <typename T> constexpr T wrapMul(T a, T b) {
    using U = std::make_unsigned_t<T>;
    return static_cast<T>(static_cast<U>(a) * static_cast<U>(b));
}

/// Truncates toward zero; a value that is not a number or does not fit gives the lowest 32-bit integer.
constexpr std::int32_t truncateToInt32(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                         : std::numeric_limits<std::int32_t>::lowest();
}

/// Truncates toward zero; a value that is not a number or does not fit gives the lowest 64-bit integer.
constexpr long long truncateToInt64(double value) {
    return value >= -9223372036854775808.0 && value < 9223372036854775808.0 ? static_cast<long long>(value)
                                                                            : std::numeric_limits<long long>::lowest();
}

} // namespace OrvantaNS
