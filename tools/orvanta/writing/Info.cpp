#include "writing/Info.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "terminal/TextFormat.h"
#include "writing/Json.h"

namespace OrvantaNS::command {

namespace {

/// Lists in the text end after this many entries.
constexpr std::size_t kMaxListed = 20;

std::string count(std::size_t number, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", number, number == 1 ? one : many);
}

std::size_t emptyOnes(const std::vector<OV_TIME_RECT>& samples) {
    return static_cast<std::size_t>(
        std::count_if(samples.begin(), samples.end(), [](const auto& sample) { return isEmpty(sample.rect); }));
}

/// All zeros say that there is no window; any other rectangle without area is odd.
std::size_t brokenWindows(const std::vector<OV_TIME_RECT>& samples) {
    return static_cast<std::size_t>(std::count_if(samples.begin(), samples.end(), [](const auto& sample) {
        return isEmpty(sample.rect) && sample.rect != Rectangle{};
    }));
}

template <typename Sample> std::size_t before(const std::vector<Sample>& samples, long long time) {
    return static_cast<std::size_t>(
        std::count_if(samples.begin(), samples.end(), [time](const auto& sample) { return sample.time < time; }));
}

/// Cursor positions outside the region that is recorded at their time.
std::size_t cursorsOutside(const Params& params) {
    const auto& regions = params.recordingRegions();
    std::size_t region = 0;
    std::size_t outside = 0;
    for (const OV_MOUSE_LOCATION& location : params.cursorLocations()) {
        while (region + 1 < regions.size() && regions[region + 1].time <= location.time) {
            ++region;
        }
        if (region < regions.size() && !containsPoint(regions[region].rect, location.x, location.y)) {
            ++outside;
        }
    }
    return outside;
}

void findBadActions(const std::vector<OV_MOUSE_ACTION>& actions, std::vector<std::string>& oddities) {
    constexpr std::int32_t kLastCode = 7;
    constexpr std::int32_t kButtonCodes = 6; // 0 to 5: three buttons, each a press and a release.
    std::set<std::int32_t> codes;
    std::size_t unknown = 0;
    std::array<bool, kButtonCodes / 2> pressed{};
    std::size_t releasesAlone = 0;
    std::size_t pressesAlone = 0;
    for (const OV_MOUSE_ACTION& action : actions) {
        if (action.action < 0 || action.action > kLastCode) {
            ++unknown;
            if (codes.size() < kMaxListed) {
                codes.insert(action.action);
            }
        } else if (action.action < kButtonCodes) {
            bool& held = pressed[static_cast<std::size_t>(action.action / 2)];
            const bool press = action.action % 2 == 0;
            pressesAlone += press && held ? 1 : 0;
            releasesAlone += !press && !held ? 1 : 0;
            held = press;
        }
    }
    pressesAlone += static_cast<std::size_t>(std::count(pressed.begin(), pressed.end(), true));
    if (unknown > 0) {
        oddities.push_back(fmt::format("{} a code outside 0 to 7, which the engines pass over ({}{})",
                                       count(unknown, "action has", "actions have"), fmt::join(codes, ", "),
                                       codes.size() == kMaxListed ? ", ..." : ""));
    }
    if (pressesAlone > 0) {
        oddities.push_back(
            fmt::format("{} no release", count(pressesAlone, "button press has", "button presses have")));
    }
    if (releasesAlone > 0) {
        oddities.push_back(
            fmt::format("{} no press", count(releasesAlone, "button release has", "button releases have")));
    }
}

std::array<std::size_t, kStreamCount> eventCounts(const Params& params) {
    return {params.recordingRegions().size(), params.foreWindows().size(),     params.dirtyRects().size(),
            params.caretRects().size(),       params.cursorLocations().size(), params.cursorActions().size()};
}

} // namespace

std::vector<std::string> findOddities(const Recording& recording) {
    const Params& params = recording.params;
    std::vector<std::string> oddities;
    const auto note = [&](std::size_t number, std::string_view one, std::string_view many, std::string_view rest) {
        if (number > 0) {
            oddities.push_back(fmt::format("{} {}", count(number, one, many), rest));
        }
    };
    const auto& regions = params.recordingRegions();
    if (regions.empty()) {
        oddities.emplace_back("there is no recording region, and no engine works without one");
    } else if (regions.front().time > recording.start) {
        oddities.push_back(fmt::format("the first recording region comes only at {}",
                                       formatTime(recording.toSeconds(regions.front().time))));
    }
    note(emptyOnes(regions), "recording region is", "recording regions are", "empty or inverted");
    note(brokenWindows(params.foreWindows()), "window is", "windows are", "empty or inverted without being all zero");
    note(emptyOnes(params.dirtyRects()), "dirty rectangle is", "dirty rectangles are", "empty or inverted");
    note(emptyOnes(params.caretRects()), "caret is", "carets are", "empty or inverted");
    note(cursorsOutside(params), "cursor position lies", "cursor positions lie", "outside the recorded region");
    findBadActions(params.cursorActions(), oddities);
    note(before(regions, 0) + before(params.foreWindows(), 0) + before(params.dirtyRects(), 0) +
             before(params.caretRects(), 0) + before(params.cursorLocations(), 0) + before(params.cursorActions(), 0),
         "event lies", "events lie", "before the time 0");
    note(static_cast<std::size_t>(recording.streamOrderBreaks), "line stands", "lines stand",
         "behind a line of a later stream with the same time");
    if (const std::string remark = recording.lengthRemark(); !remark.empty()) {
        oddities.push_back(remark);
    }
    if (recording.cutLine > 0 || recording.archiveIsCut) {
        oddities.emplace_back("the file is cut off at its end");
    }
    if (!recording.unknownFields.empty()) {
        oddities.push_back(fmt::format("unknown header fields: {}", recording.unknownFields.names()));
    }
    if (!recording.unknownStreams.empty()) {
        oddities.push_back(fmt::format("lines of unknown streams: {}", recording.unknownStreams.text()));
    }
    return oddities;
}

std::vector<std::string> findMissingStreams(const Recording& recording) {
    const Params& params = recording.params;
    std::vector<std::string> missing;
    if (params.foreWindows().empty()) {
        missing.emplace_back("no window: no shot is framed by a window, and what opens is not seen");
    }
    if (params.dirtyRects().empty()) {
        missing.emplace_back("no dirty rectangle: what clicks and hovers changed is not seen");
    }
    if (params.cursorLocations().empty()) {
        missing.emplace_back("no cursor: nobody knows where clicks happen, and moves do not begin with the hand");
    }
    if (params.cursorActions().empty()) {
        missing.emplace_back("no action: clicks, drags and scrolling, the strongest reasons to move, are not seen");
    }
    return missing;
}

std::string infoText(const Recording& recording) {
    const Params& params = recording.params;
    const double length = recording.stopSeconds() - recording.startSeconds();
    const bool dump = recording.form == RecordingForm::Dump;
    std::string text = fmt::format("file         {}\n", printableName(recording.name));
    text += fmt::format("form         {}\n", dump ? "captured request" : "recording");
    if (!recording.description.empty()) {
        text += fmt::format("description  {}\n", printable(recording.description, std::string::npos));
    }
    text += fmt::format("length       {}  (from {} to {})\n", formatTime(length), formatTime(recording.startSeconds()),
                        formatTime(recording.stopSeconds()));
    text += fmt::format("clock        {} ticks a second\n", params.timeScale());
    if (dump) {
        text += fmt::format("target       {}x{}\n", params.targetWidth(), params.targetHeight());
    } else {
        text +=
            fmt::format("menus        {}\n", params.isWindows() ? "not reported as windows" : "reported as windows");
    }
    if (recording.videoOffset) {
        text += fmt::format("video        begins at {}\n", formatTime(recording.toSeconds(*recording.videoOffset)));
    }

    text += fmt::format("regions      {}\n", params.recordingRegions().size());
    for (std::size_t i = 0; i < params.recordingRegions().size(); ++i) {
        if (i == kMaxListed) {
            text += fmt::format("  ... and {} more\n", params.recordingRegions().size() - kMaxListed);
            break;
        }
        const OV_TIME_RECT& region = params.recordingRegions()[i];
        text += fmt::format("  from {}  {}\n", formatTime(recording.toSeconds(region.time)), rectText(region.rect));
    }

    text += fmt::format("events       {}\n", recording.events);
    const auto counts = eventCounts(params);
    for (std::size_t i = 0; i < kStreamCount; ++i) {
        text += fmt::format("  {:<9}  {}\n", kStreamNames[i], counts[i]);
    }

    const std::vector<std::string> missing = findMissingStreams(recording);
    if (!missing.empty()) {
        text += "missing      these streams:\n";
    }
    for (const std::string& stream : missing) {
        text += fmt::format("  {}\n", stream);
    }
    const std::vector<std::string> oddities = findOddities(recording);
    text += fmt::format("odd          {}\n", oddities.empty() ? "nothing" : "these things:");
    for (const std::string& oddity : oddities) {
        text += fmt::format("  {}\n", oddity);
    }
    return text;
}

std::string infoJson(const Recording& recording) {
    const Params& params = recording.params;
    const bool dump = recording.form == RecordingForm::Dump;
    Json document = {{"recording", recording.name},
                     {"form", dump ? "captured request" : "recording"},
                     {"compression", textOrNull(recording.compression)},
                     {"description", recording.description},
                     {"start", recording.startSeconds()},
                     {"stop", recording.stopSeconds()},
                     {"ticksPerSecond", params.timeScale()},
                     {"startTick", recording.start},
                     {"stopTick", recording.stop},
                     {"windowsFlag", params.isWindows()},
                     {"videoOffset", recording.videoOffset ? Json(*recording.videoOffset) : Json()}};
    if (dump) {
        document["target"] = {{"width", params.targetWidth()}, {"height", params.targetHeight()}};
    }
    document["events"] = recording.events;
    const auto counts = eventCounts(params);
    Json streams = Json::object();
    for (std::size_t i = 0; i < kStreamCount; ++i) {
        streams[std::string(kStreamNames[i])] = counts[i];
    }
    document["streams"] = streams;
    Json regions = Json::array();
    for (const OV_TIME_RECT& region : params.recordingRegions()) {
        regions.push_back({{"tick", region.time}, {"rect", edgesOf(region.rect)}});
    }
    document["regions"] = regions;
    document["missing"] = findMissingStreams(recording);
    document["odd"] = findOddities(recording);
    return jsonText(document);
}

} // namespace OrvantaNS::command
