// Reading what a host hands over: records that start with their size, and streams with a stride. And the tables that a host
// gets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "OrvantaRecords.h"
#include "bindings/c/Failure.h"
#include "orvanta_c.h"

namespace OrvantaNS::c {

inline Rectangle toRectangle(const orvanta_rect& rect) { return {rect.left, rect.right, rect.top, rect.bottom}; }
inline orvanta_rect toRect(const Rectangle& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

/// Copies a host's record: as many bytes as both sides know. Throws when the size is below that of the record's first
/// version, or when a field is set that this library does not know.
template <typename Record> Record readRecord(const Record& given) {
    const std::size_t size = given.struct_size;
    if (size < sizeof(Record)) {
        Failure failure = badArgument(ORVANTA_PARAMETER_STRUCT_SIZE,
                                      "a record's struct_size is too small: fill the record as its comment says");
        failure.value = static_cast<double>(size);
        failure.limit = static_cast<double>(sizeof(Record));
        throw failure;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(&given);
    for (std::size_t i = sizeof(Record); i < size; ++i) {
        if (bytes[i] != 0) {
            throw badArgument(ORVANTA_PARAMETER_STRUCT_SIZE,
                              "a record has a field set that this version of the library does not know");
        }
    }
    return given;
}

/// The rows as a host sees them; they stay where they are.
template <typename Row> orvanta_table tableOf(const std::vector<Row>& rows) {
    return {rows.empty() ? nullptr : rows.data(), rows.size(), sizeof(Row)};
}

/// Samples of a host, each `stride` bytes behind the one before it, at any alignment.
template <typename Sample> class StridedSamples {
public:
    /// Throws when the stride is smaller than a sample, or when the samples cannot be where they are said to be.
    StridedSamples(const void* samples, std::size_t count, std::size_t stride, std::int32_t parameter)
        : bytes_(static_cast<const unsigned char*>(samples)), count_(count),
          stride_(stride == 0 ? sizeof(Sample) : stride) {
        if (stride_ < sizeof(Sample)) {
            Failure failure = badArgument(ORVANTA_PARAMETER_STRIDE, "the stride is smaller than a sample");
            failure.value = static_cast<double>(stride);
            failure.limit = static_cast<double>(sizeof(Sample));
            throw failure;
        }
        if (count > 0 && samples == nullptr) {
            throw badArgument(parameter, "there are samples to read, but their pointer is NULL");
        }
        if (count > std::numeric_limits<std::size_t>::max() / 2 / stride_) {
            throw badArgument(parameter, "there are more samples than memory can hold");
        }
    }

    std::size_t size() const { return count_; }

    Sample operator[](std::size_t i) const {
        Sample sample;
        std::memcpy(&sample, bytes_ + i * stride_, sizeof sample);
        return sample;
    }

private:
    const unsigned char* bytes_;
    std::size_t count_;
    std::size_t stride_;
};

} // namespace OrvantaNS::c
