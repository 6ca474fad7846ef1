#include "bindings/c/Failure.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>
#include <string_view>

#include "OrvantaException.h"

namespace OrvantaNS::c {

namespace {

std::int32_t write(orvanta_error* error, std::int32_t code, std::int32_t parameter, double value, double limit,
                   std::int64_t index, std::string_view message) noexcept {
    // A record of no known size is left alone.
    if (error == nullptr || error->struct_size < sizeof(orvanta_error)) {
        return code;
    }
    error->code = code;
    error->parameter = parameter;
    error->reserved = 0;
    error->value = value;
    error->limit = limit;
    error->index = index;
    std::memset(error->message, 0, sizeof error->message);
    std::memcpy(error->message, message.data(), std::min(message.size(), sizeof error->message - 1));
    return code;
}

std::int32_t writePlain(orvanta_error* error, std::int32_t code, std::string_view message) noexcept {
    return write(error, code, ORVANTA_PARAMETER_NONE, 0.0, 0.0, -1, message);
}

// The library's own texts are fixed and tell a host's user little.
std::string_view meaningOf(OVERR_CODES code) {
    switch (code) {
    case OVERR_BAD_TARGET_SIZE:
        return "the output frame is narrower or lower than 64 pixels";
    case OVERR_TARGET_TOO_LARGE:
        return "the output frame does not fit the recording";
    case OVERR_BAD_TIME_SCALE:
        return "the time scale is 0";
    case OVERR_BAD_REGION:
        return "a recording region or foreground window is missing or too small";
    case OVERR_NO_LIVE_ZONES:
        return "the recording regions change so often that no stretch is left to work on";
    case OVERR_MERGE_FAILED:
        return "merging met a state that it cannot handle";
    case OVERR_NO_KEYFRAMES:
        return "nothing is worth a move: the whole recording stays on show";
    case OVERR_USER_CANCELLED:
        return "cancelled";
    }
    return "the engine failed";
}

} // namespace

std::int32_t reportSuccess(orvanta_error* error) noexcept { return writePlain(error, ORVANTA_OK, ""); }

std::int32_t reportException(orvanta_error* error) noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        return write(error, failure.code, failure.parameter, failure.value, failure.limit, failure.index,
                     failure.message);
    } catch (const OrvantaException& failure) {
        return writePlain(error, failure.code, meaningOf(failure.code));
    } catch (const std::bad_alloc&) {
        return writePlain(error, ORVANTA_NO_MEMORY, "memory ran out");
    } catch (const std::length_error&) {
        return writePlain(error, ORVANTA_NO_MEMORY, "more memory was needed than there can be");
    } catch (const std::exception& failure) {
        return writePlain(error, ORVANTA_INTERNAL, failure.what());
    } catch (...) {
        return writePlain(error, ORVANTA_INTERNAL, "an exception that is none of the library's came out of a callback");
    }
}

void needPointer(const void* pointer, const char* name) {
    if (pointer == nullptr) {
        throw badArgument(ORVANTA_PARAMETER_POINTER, std::string(name) + " is NULL");
    }
}

} // namespace OrvantaNS::c
