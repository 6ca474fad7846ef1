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
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return parseDecimal(text);
    }
    const std::string_view minutes = text.substr(0, colon);
    const std::string_view seconds = text.substr(colon + 1);
    const bool twoDigits = seconds.size() >= 2 && isDigit(seconds[0]) && isDigit(seconds[1]) &&
                           (seconds.size() == 2 || (seconds[2] == '.' && seconds.size() > 3));
    const auto wholeMinutes = minutes.find('.') == std::string_view::npos ? parseDecimal(minutes) : std::nullopt;
    const auto rest = twoDigits ? parseDecimal(seconds) : std::nullopt;
    if (!wholeMinutes || !rest || *rest >= 60.0) {
        return std::nullopt;
    }
    return *wholeMinutes * 60.0 + *rest;
}

ClipOption parseClip(std::string_view text) {
    const std::vector<std::string_view> pieces = splitAtColons(text);
    const auto fail = [&](std::string_view reason) {
        return OptionError(fmt::format("--clip {}: {}", printable(text), reason));
    };
    // Every colon may be the one between the two ends; the others then belong to minutes and seconds.
    std::vector<ClipOption> readings;
    for (std::size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1)) {
        const std::string_view start = text.substr(0, at);
        const std::string_view stop = text.substr(at + 1);
        const ClipOption reading{parseTime(start), parseTime(stop)};
        if ((reading.start || start.empty()) && (reading.stop || stop.empty())) {
            readings.push_back(reading);
        }
    }
    if (readings.empty()) {
        throw fail("expected START:STOP, each in seconds or as m:ss.mmm, or left out");
    }
    if (readings.size() > 1) {
        throw fail("can be read in two ways; write both ends as m:ss, or both in seconds");
    }
    return readings.front();
}

Clip resolveClip(const ClipOption& clip, const Recording& recording) {
    const double start = clip.start.value_or(recording.startSeconds());
    const double stop = clip.stop.value_or(recording.stopSeconds());
    const auto startTicks = clip.start ? ticksWithin(*clip.start, recording) : recording.start;
    const auto stopTicks = clip.stop ? ticksWithin(*clip.stop, recording) : recording.stop;
    if (!startTicks || !stopTicks) {
        throw OptionError(fmt::format("{}: the clip {} to {} reaches beyond the recording, which ends at {}",
                                      recording.name, formatTime(start), formatTime(stop),
                                      formatTime(recording.stopSeconds())));
    }
    if ((clip.start || clip.stop) && *startTicks >= *stopTicks) {
        throw OptionError(
            fmt::format("{}: the clip {} to {} is empty", recording.name, formatTime(start), formatTime(stop)));
    }
    return {*startTicks, *stopTicks};
}

long long resolveDuration(double seconds, const Recording& recording, std::string_view option) {
    constexpr double kLimit = 9.2e18; // Ticks: a little below the 64-bit end.
    if (!(seconds * recording.params.timeScale() < kLimit)) {
        throw OptionError(fmt::format("{}: {} is too long for the recording's clock of {} ticks a second",
                                      recording.name, option, recording.params.timeScale()));
    }
    return secondsToTicks(seconds, recording.params.timeScale());
}

long long resolveMoment(double seconds, const Recording& recording) {
    const auto ticks = ticksWithin(seconds, recording);
    if (!ticks || *ticks < recording.start) {
        throw OptionError(fmt::format("{}: the moment {} lies outside the recording, which goes from {} to {}",
                                      recording.name, formatTime(seconds), formatTime(recording.startSeconds()),
                                      formatTime(recording.stopSeconds())));
    }
    return *ticks;
}

} // namespace OrvantaNS::command
