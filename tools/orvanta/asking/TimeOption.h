// Times as people write and read them: seconds, or minutes and seconds.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "asking/OptionError.h"
#include "reading/Recording.h"

namespace OrvantaNS::command {

/// A number without sign, exponent or anything else but digits and one point; nothing when `text` is not one.
std::optional<double> parseDecimal(std::string_view text);

/// Seconds of "90", "90.5", "1:30", "1:30.500" or "1:02:03.5" (two digits of minutes and of seconds, below 60), and of
/// numbers with their unit, "1.5s" and "500ms"; nothing when `text` is no time.
std::optional<double> parseTime(std::string_view text);

/// A stretch of a recording as asked for; an end that was left out is empty. Seconds.
struct ClipOption {
    std::optional<double> start;
    std::optional<double> stop;
};

/// Parses START:STOP, where either end is a time or left out. Where there are several ways to read it, the one that gives
/// both ends as many colons is meant. Throws `OptionError`, also when there is none such, as for "0:30:45".
ClipOption parseClip(std::string_view text);

/// A stretch of a recording, ticks.
struct Clip {
    long long start = 0;
    long long stop = 0;
    bool isCut = false; ///< More was asked for than the recording has.
};

/// The clip in ticks; an end that was left out is the recording's own, and one that lies beyond the recording's end is cut
/// to it. Throws `OptionError` when the clip is empty or begins where the recording has ended.
Clip resolveClip(const ClipOption& clip, const Recording& recording);

/// A length of time in ticks. Throws `OptionError`, naming `option`, when it does not fit 64 bits.
long long resolveDuration(double seconds, const Recording& recording, std::string_view option);

/// A moment in ticks. Throws `OptionError` when it lies outside the recording, by more than the
/// millisecond that printed times are rounded to.
long long resolveMoment(double seconds, const Recording& recording);

} // namespace OrvantaNS::command
