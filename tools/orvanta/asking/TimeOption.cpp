#include "asking/TimeOption.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <fmt/format.h>

#include "frame/TimeModel.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

/// Longest number that is looked at: more digits than any time or size has.
constexpr std::size_t kMaxDigits = 32;

/// Times are printed to the millisecond; a printed end may stand this much past the true one.
constexpr double kPrintedPrecision = 0.001;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::vector<std::string_view> splitAtColons(std::string_view text) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t colon = text.find(':');
        pieces.push_back(text.substr(0, colon));
        if (colon == std::string_view::npos) {
            return pieces;
        }
        text.remove_prefix(colon + 1);
    }
}

/// "90", "90.5", "1.5s", "500ms".
std::optional<double> parseWithUnit(std::string_view text) {
    if (text.ends_with("ms")) {
        const auto milliseconds = parseDecimal(text.substr(0, text.size() - 2));
        return milliseconds ? std::optional(*milliseconds / 1000.0) : std::nullopt;
    }
    if (text.ends_with('s')) {
        text.remove_suffix(1);
    }
    return parseDecimal(text);
}

/// The part of a time behind a colon: two digits, below 60, with decimals where they are `allowed`.
std::optional<double> parseSixtieth(std::string_view text, bool allowed) {
    const bool twoDigits = text.size() >= 2 && isDigit(text[0]) && isDigit(text[1]);
    if (!twoDigits || (text.size() > 2 && (!allowed || text[2] != '.' || text.size() == 3))) {
        return std::nullopt;
    }
    const auto number = parseDecimal(text);
    return number && *number < 60.0 ? number : std::nullopt;
}

/// Ticks of a moment, moved back to the recording's end when it lies past it by less than what printing rounds.
std::optional<long long> ticksWithin(double seconds, const Recording& recording) {
    const double end = recording.stopSeconds();
    if (seconds >= end) {
        return seconds - end < kPrintedPrecision ? std::optional(recording.stop) : std::nullopt;
    }
    return std::min(secondsToTicks(seconds, recording.params.timeScale()), recording.stop);
}

} // namespace

std::optional<double> parseDecimal(std::string_view text) {
    const auto points = std::count(text.begin(), text.end(), '.');
    const auto digits = std::count_if(text.begin(), text.end(), isDigit);
    if (points > 1 || digits == 0 || text.size() > kMaxDigits ||
        points + digits != static_cast<std::ptrdiff_t>(text.size())) {
        return std::nullopt;
    }
    return std::strtod(std::string(text).c_str(), nullptr);
}

std::optional<double> parseTime(std::string_view text) {
    const std::vector<std::string_view> pieces = splitAtColons(text);
    if (pieces.size() == 1) {
        return parseWithUnit(text);
    }
    // Hours and minutes, or minutes alone; then the seconds.
    double seconds = 0.0;
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        const auto number = i > 0                                           ? parseSixtieth(pieces[i], false)
                            : pieces[i].find('.') == std::string_view::npos ? parseDecimal(pieces[i])
                                                                            : std::nullopt;
        if (!number || pieces.size() > 3) {
            return std::nullopt;
        }
        seconds = seconds * 60.0 + *number;
    }
    const auto rest = parseSixtieth(pieces.back(), true);
    return rest ? std::optional(seconds * 60.0 + *rest) : std::nullopt;
}

ClipOption parseClip(std::string_view text) {
    const auto fail = [&](std::string_view reason) {
        return OptionError(fmt::format("--clip {}: {}", printable(text), reason));
    };
    // Every colon may be the one between the two ends; the others then belong to the ends.
    std::vector<ClipOption> readings;
    std::vector<ClipOption> evenReadings;
    for (std::size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1)) {
        const std::string_view start = text.substr(0, at);
        const std::string_view stop = text.substr(at + 1);
        const ClipOption reading{parseTime(start), parseTime(stop)};
        if ((reading.start || start.empty()) && (reading.stop || stop.empty())) {
            readings.push_back(reading);
            if (std::count(start.begin(), start.end(), ':') == std::count(stop.begin(), stop.end(), ':')) {
                evenReadings.push_back(reading);
            }
        }
    }
    if (readings.empty()) {
        throw fail("expected START:STOP, each in seconds, as 500ms, m:ss.mmm or h:mm:ss, or left out");
    }
    if (readings.size() > 1 && evenReadings.size() != 1) {
        throw fail("can be read in two ways; write both ends as m:ss, or both in seconds");
    }
    return readings.size() == 1 ? readings.front() : evenReadings.front();
}

Clip resolveClip(const ClipOption& clip, const Recording& recording) {
    const std::string name = printableName(recording.name);
    const double start = clip.start.value_or(recording.startSeconds());
    const double stop = clip.stop.value_or(recording.stopSeconds());
    const auto startTicks = clip.start ? ticksWithin(*clip.start, recording) : recording.start;
    const auto stopTicks = clip.stop ? ticksWithin(*clip.stop, recording) : recording.stop;
    if (!startTicks || (clip.start && *startTicks >= recording.stop)) {
        throw OptionError(fmt::format("{}: the clip begins at {}, when the recording has ended ({})", name,
                                      formatTime(start), formatTime(recording.stopSeconds())));
    }
    const Clip resolved{*startTicks, stopTicks.value_or(recording.stop), !stopTicks.has_value()};
    if ((clip.start || clip.stop) && resolved.start >= resolved.stop) {
        throw OptionError(fmt::format("{}: the clip {} to {} is empty", name, formatTime(start), formatTime(stop)));
    }
    return resolved;
}

long long resolveDuration(double seconds, const Recording& recording, std::string_view option) {
    constexpr double kLimit = 9.2e18; // Ticks: a little below the 64-bit end.
    if (!(seconds * recording.params.timeScale() < kLimit)) {
        throw OptionError(fmt::format("{}: {} is too long for the recording's clock of {} ticks a second",
                                      printableName(recording.name), option, recording.params.timeScale()));
    }
    return secondsToTicks(seconds, recording.params.timeScale());
}

long long resolveMoment(double seconds, const Recording& recording) {
    const auto ticks = ticksWithin(seconds, recording);
    if (!ticks || *ticks < recording.start) {
        throw OptionError(fmt::format("{}: the moment {} lies outside the recording, which goes from {} to {}",
                                      printableName(recording.name), formatTime(seconds),
                                      formatTime(recording.startSeconds()), formatTime(recording.stopSeconds())));
    }
    return *ticks;
}

} // namespace OrvantaNS::command
