// The library's one exception type and its codes.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "OrvantaExport.h"

namespace OrvantaNS {

/// Why a computation failed.
enum OVERR_CODES : std::int32_t {
    OVERR_BAD_TARGET_SIZE = 1,  ///< The target is narrower or lower than 64 pixels.
    OVERR_TARGET_TOO_LARGE = 2, ///< The target does not fit the recording, or has no size at all.
    OVERR_BAD_TIME_SCALE = 3,   ///< The time scale is 0.
    OVERR_BAD_REGION = 4,       ///< A recording region or foreground window is missing or too small.
    OVERR_NO_LIVE_ZONES = 5,    ///< The recording's regions change so often that no stretch is left to work on.
    OVERR_MERGE_FAILED = 6,     ///< Merging met a state that it cannot handle.
    OVERR_NO_KEYFRAMES = 7,     ///< The computation ended without a keyframe.
    OVERR_USER_CANCELLED = 8,   ///< The host's `ProgressReporter` asked to stop.
};

/// Every failure that the library itself raises, thrown by value. Failures of the standard library, such as
/// `std::bad_alloc`, pass through untouched.
class ORVANTA_EXPORT OrvantaException : public std::exception {
public:
    std::string message; ///< The fixed text of the failure.
    OVERR_CODES code;    ///< Its code.

    /// A failure with its text and its code.
    OrvantaException(const std::string& text, const OVERR_CODES& reason);
    ~OrvantaException() override;

    /// The message's characters.
    const char* what() const noexcept override;
    /// The failure's code.
    virtual OVERR_CODES errorCode() const;
};

} // namespace OrvantaNS
