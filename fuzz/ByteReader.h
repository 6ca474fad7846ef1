// Turns the bytes of a fuzz input into numbers that lie at boundaries more often than chance would have it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace OrvantaNS::fuzz {

/// Reads little-endian from front to back, and zeros once the bytes are used up.
class ByteReader {
public:
    ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return position_ == size_; }
    std::size_t remaining() const { return size_ - position_; }

    std::uint8_t u8() { return raw<std::uint8_t>(); }
    std::uint16_t u16() { return raw<std::uint16_t>(); }
    std::int16_t i16() { return raw<std::int16_t>(); }
    std::int32_t i32() { return raw<std::int32_t>(); }
    std::int64_t i64() { return raw<std::int64_t>(); }
    double f64() { return raw<double>(); }

    /// A pixel edge or position: mostly such as recordings have, now and then at the limits of rules or of the type.
    std::int32_t coordinate() {
        constexpr std::array<std::int32_t, 24> kEdges{0,
                                                      1,
                                                      -1,
                                                      4,
                                                      5,
                                                      16,
                                                      17,
                                                      25,
                                                      63,
                                                      64,
                                                      65,
                                                      128,
                                                      480,
                                                      481,
                                                      800,
                                                      1280,
                                                      46340,
                                                      46341,
                                                      65535,
                                                      65536,
                                                      1 << 30,
                                                      -(1 << 30),
                                                      std::numeric_limits<std::int32_t>::lowest(),
                                                      std::numeric_limits<std::int32_t>::max()};
        const std::uint8_t choice = u8();
        if (choice < 208) {
            return u16() % 2048 - (choice < 16 ? 1024 : 0);
        }
        if (choice < 248) {
            return kEdges[u8() % kEdges.size()];
        }
        return i32();
    }

    /// A time scale, ticks per second: the usual ones, and everything that a broken host could pass.
    double timeScale() {
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        constexpr std::array<double, 24> kScales{1000.0,
                                                 100.0,
                                                 1000000.0,
                                                 10000000.0,
                                                 1.0,
                                                 600.0,
                                                 60.0,
                                                 0.01,
                                                 0.04,
                                                 0.149,
                                                 1e-300,
                                                 1e300,
                                                 1e9,
                                                 1e18,
                                                 -1000.0,
                                                 -0.15,
                                                 -10000000.0,
                                                 9999999.999,
                                                 0.0,
                                                 std::numeric_limits<double>::quiet_NaN(),
                                                 kInfinity,
                                                 -kInfinity,
                                                 std::numeric_limits<double>::denorm_min(),
                                                 std::numeric_limits<double>::max()};
        const std::uint8_t choice = u8();
        if (choice < 128) {
            return kScales[choice % 7];
        }
        if (choice < 240) {
            return kScales[choice % kScales.size()];
        }
        return f64();
    }

    /// A tick anywhere in the 64-bit range, the ends above all.
    std::int64_t extremeTick() {
        constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::lowest();
        constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
        constexpr std::array<std::int64_t, 12> kTicks{
            0,         -1,           1,
            -2,        kLowest,      kLowest + 1,
            kHighest,  kHighest - 1, kHighest - 600000,
            1LL << 53, -(1LL << 53), std::numeric_limits<std::int32_t>::max()};
        const std::uint8_t choice = u8();
        return choice < 192 ? kTicks[choice % kTicks.size()] : i64();
    }

private:
    template <typename T> T raw() {
        T value{};
        const std::size_t count = remaining() < sizeof(T) ? remaining() : sizeof(T);
        // An empty input may come without an address.
        if (count > 0) {
            std::memcpy(&value, data_ + position_, count);
            position_ += count;
        }
        return value;
    }

    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t position_ = 0;
};

} // namespace OrvantaNS::fuzz
