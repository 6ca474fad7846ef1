#include "asking/Planning.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>

#include "asking/OptionError.h"
#include "asking/TimeOption.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {

namespace {

/// A decimal with an optional sign; nothing when `text` is none.
std::optional<double> parseSigned(std::string_view text) {
    const bool negative = text.starts_with('-');
    const auto number = parseDecimal(negative ? text.substr(1) : text);
    return number ? std::optional(negative ? -*number : *number) : std::nullopt;
}

/// Takes a whole number from the front of `text`.
std::optional<std::int32_t> takeInteger(std::string_view& text) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

bool take(std::string_view& text, char sign) {
    const bool there = text.starts_with(sign);
    text.remove_prefix(there ? 1 : 0);
    return there;
}

/// "WIDTHxHEIGHT+LEFT+TOP", LEFT and TOP with their signs.
std::optional<Rectangle> parseGeometry(std::string_view text) {
    const auto width = takeInteger(text);
    const bool by = take(text, 'x');
    const auto height = takeInteger(text);
    const bool right = take(text, '+') || text.starts_with('-');
    const auto left = takeInteger(text);
    const bool down = take(text, '+') || text.starts_with('-');
    const auto top = takeInteger(text);
    if (!width || !by || !height || !right || !left || !down || !top || !text.empty() || *width <= 0 || *height <= 0) {
        return std::nullopt;
    }
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (static_cast<std::int64_t>(*left) + *width > kMost || static_cast<std::int64_t>(*top) + *height > kMost) {
        return std::nullopt;
    }
    return Rectangle{*left, *left + *width, *top, *top + *height};
}

} // namespace

CameraPlan planOf(const Recording& recording, EngineChoice engine, const std::vector<ReasonedKeyframe>& keyframes,
                  const CameraEasing& easing) {
    CameraPlan plan;
    plan.recording = recording.name;
    plan.engine = engineName(engine);
    plan.videoOffset = recording.videoOffset;
    plan.setup = CameraSetup::of(recording.params, easing);
    for (const ReasonedKeyframe& keyframe : keyframes) {
        plan.keyframes.push_back({keyframe.frame, std::string(reasonOf(keyframe))});
    }
    return plan;
}

void layWishes(CameraPlan& plan, const CameraWishes& wishes) {
    std::vector<PlannedKeyframe> wished;
    try {
        for (const CameraWishedKeyframe& keyframe : applyWishes(plan.frames(), plan.setup, wishes)) {
            std::string reason(kWholeReason);
            if (keyframe.origin == CameraOrigin::Keyframe) {
                reason = plan.keyframes.at(keyframe.index).reason;
            } else if (keyframe.origin == CameraOrigin::Pin) {
                reason = kPinnedReason;
            }
            wished.push_back({keyframe.frame, std::move(reason)});
        }
    } catch (const std::invalid_argument& error) {
        throw OptionError(error.what());
    }
    plan.keyframes = std::move(wished);
}

CameraEasing parseEasing(std::string_view text) {
    if (const auto preset = CameraEasing::named(text)) {
        return *preset;
    }
    std::array<double, 4> points{};
    std::string_view rest = text;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::size_t comma = rest.find(',');
        const auto number = parseSigned(rest.substr(0, comma));
        if (!number || (comma == std::string_view::npos) != (i + 1 == points.size())) {
            throw OptionError(fmt::format("--easing {}: expected {} or four numbers X1,Y1,X2,Y2", printable(text),
                                          fmt::join(CameraEasing::names(), ", ")));
        }
        points[i] = *number;
        rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
    }
    try {
        return {points[0], points[1], points[2], points[3]};
    } catch (const std::invalid_argument& error) {
        throw OptionError(fmt::format("--easing {}: {}", printable(text), error.what()));
    }
}

CameraPin parsePin(std::string_view text, const CameraSetup& setup) {
    const std::size_t at = text.find('@');
    const auto rect = at == std::string_view::npos ? std::nullopt : parseGeometry(text.substr(at + 1));
    if (!rect) {
        throw OptionError(fmt::format("--pin {}: expected START:STOP@WIDTHxHEIGHT+LEFT+TOP, such as "
                                      "0:10:0:20@640x400+100+50",
                                      printable(text)));
    }
    return {parseStretch(text.substr(0, at), "--pin", setup), *rect};
}

CameraStretch parseStretch(std::string_view text, std::string_view option, const CameraSetup& setup) {
    constexpr double kBeyond = 9.2e18; // Ticks: a little below the 64-bit end.
    ClipOption ends;
    try {
        ends = parseClip(text);
    } catch (const OptionError& error) {
        // The same words, for the option that was used.
        const std::string message = error.what();
        throw OptionError(message.starts_with("--clip") ? std::string(option) + message.substr(6) : message);
    }
    const auto ticksOf = [&](const std::optional<double>& seconds, long long otherwise) {
        if (!seconds) {
            return otherwise;
        }
        const double ticks = *seconds * setup.timeScale;
        if (!(ticks < kBeyond)) {
            throw OptionError(fmt::format("{} {}: lies beyond what can be counted in ticks", option, printable(text)));
        }
        return std::llround(ticks);
    };
    const CameraStretch stretch{ticksOf(ends.start, setup.clipStart), ticksOf(ends.stop, setup.clipStop)};
    if (stretch.stop <= stretch.start) {
        throw OptionError(fmt::format("{} {}: must end after it begins", option, printable(text)));
    }
    return stretch;
}

} // namespace OrvantaNS::command
