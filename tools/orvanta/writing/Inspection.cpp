#include "writing/Inspection.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "frame/ObjectTypeNames.h"
#include "terminal/TextFormat.h"
#include "writing/KeyframeOutput.h"

namespace OrvantaNS::command {

namespace {

constexpr std::int32_t kDead = -1; // `mergeId` of a slice that was merged away.

std::map<std::uint32_t, std::size_t> countsByType(const std::vector<OV_VALUE_OBJECT>& objects) {
    std::map<std::uint32_t, std::size_t> counts;
    for (const OV_VALUE_OBJECT& object : objects) {
        ++counts[object.type];
    }
    return counts;
}

std::size_t liveCount(const std::vector<OV_FOCUS_SLICE>& shots) {
    return static_cast<std::size_t>(
        std::count_if(shots.begin(), shots.end(), [](const auto& shot) { return shot.mergeId != kDead; }));
}

std::string span(double start, double stop) {
    return fmt::format("{:>9} - {:>9}", formatTime(start), formatTime(stop));
}

Json spacesOf(const VS_VALUE_MAP& map) {
    Json spaces = Json::array();
    for (const auto& [rect, density] : map.spaces) {
        spaces.push_back({{"rect", edgesOf(rect)}, {"density", density}});
    }
    return spaces;
}

Json objectCounts(const std::vector<OV_VALUE_OBJECT>& objects) {
    Json counts = Json::object();
    for (const auto& [type, count] : countsByType(objects)) {
        counts[objectTypeName(type)] = count;
    }
    return counts;
}

Json shotEntry(const OV_FOCUS_SLICE& shot, std::size_t slice) {
    return {{"slice", slice},
            {"start", shot.start},
            {"stop", shot.stop},
            {"blank", shot.blank},
            {"mode", textOrNull(reasonName(shot.mergeType))},
            {"keyframe", shot.keyframe},
            {"tight", shot.breakdown.tight},
            {"inWindow", shot.breakdown.inWindow},
            {"window", shot.breakdown.window},
            {"noWindow", shot.breakdown.noWindow},
            {"windowRect", edgesOf(shot.breakdown.windowRect)},
            {"hotRect", edgesOf(shot.breakdown.tier4Rect)}};
}

std::string objectsText(const std::vector<OV_VALUE_OBJECT>& objects) {
    std::string text = fmt::format("\nValue objects: {}\n", objects.size());
    for (const auto& [type, count] : countsByType(objects)) {
        text += fmt::format("  {:<16} {:>5}\n", objectTypeName(type), count);
    }
    for (std::size_t i = 0; i < objects.size(); ++i) {
        text += fmt::format("  {:>5}  {}  {:<16} {}\n", i, span(objects[i].start, objects[i].stop),
                            objectTypeName(objects[i].type), rectText(objects[i].rect));
    }
    return text;
}

std::string slicesText(const std::vector<OV_FOCUS_SLICE>& slices) {
    std::string text = fmt::format("\nSlices: {}\n", slices.size());
    for (std::size_t i = 0; i < slices.size(); ++i) {
        const OV_FOCUS_SLICE& slice = slices[i];
        text += fmt::format("  {:>5}  {}  ", i, span(slice.start, slice.stop));
        text += slice.map.spaces.empty() ? "blank\n"
                                         : fmt::format("{}, first of {}\n", rectText(slice.map.spaces.front().first),
                                                       slice.map.spaces.size());
    }
    return text;
}

std::string shotsText(const std::vector<OV_FOCUS_SLICE>& shots) {
    std::string text = fmt::format("\nShots: {}\n", liveCount(shots));
    for (std::size_t i = 0; i < shots.size(); ++i) {
        const OV_FOCUS_SLICE& shot = shots[i];
        if (shot.mergeId == kDead) {
            continue;
        }
        const bool hot = !isEmpty(shot.breakdown.tier4Rect);
        text += fmt::format("  {:>5}  {}  {}{}{}\n", i, span(shot.start, shot.stop),
                            shot.blank ? "blank" : reasonName(shot.mergeType),
                            hot ? "  hot " + rectText(shot.breakdown.tier4Rect) : "",
                            shot.breakdown.window ? "  window " + rectText(shot.breakdown.windowRect) : "");
    }
    return text;
}

} // namespace

void keepStage(Inspection& inspection, OV_PIPELINE_STAGE stage, const OV_DATA_STORE& store) {
    inspection.stages = static_cast<int>(stage) + 1;
    switch (stage) {
    case OV_PIPELINE_ZONES:
        inspection.zones = store.liveZones;
        break;
    case OV_PIPELINE_OBJECTS:
        inspection.objects = store.valueObjects;
        break;
    case OV_PIPELINE_SLICES:
        inspection.slices = store.slices;
        break;
    case OV_PIPELINE_SHOTS:
        inspection.shots = store.slices;
        break;
    case OV_PIPELINE_KEYFRAMES:
        inspection.keyframes = reasonedKeyframes(store);
        break;
    }
}

std::string inspectionText(const Inspection& inspection, const Recording& recording) {
    std::string text;
    if (inspection.stages > OV_PIPELINE_ZONES) {
        text += fmt::format("Live zones: {}\n", inspection.zones.size());
        for (std::size_t i = 0; i < inspection.zones.size(); ++i) {
            const OV_LIVE_ZONE& zone = inspection.zones[i];
            text += fmt::format("  {:>5}  {}  {}\n", i, span(zone.start, zone.stop), rectText(zone.rect));
        }
    }
    if (inspection.stages > OV_PIPELINE_OBJECTS) {
        text += objectsText(inspection.objects);
    }
    if (inspection.stages > OV_PIPELINE_SLICES) {
        text += slicesText(inspection.slices);
    }
    if (inspection.stages > OV_PIPELINE_SHOTS) {
        text += shotsText(inspection.shots);
    }
    if (inspection.stages > OV_PIPELINE_KEYFRAMES || !inspection.keyframes.empty()) {
        text += fmt::format("\nKeyframes: {}\n", inspection.keyframes.size());
        for (const ReasonedKeyframe& keyframe : inspection.keyframes) {
            text += fmt::format("  {:>5}  {:>9}  {:<11}  {}\n",
                                keyframe.slice ? fmt::format("{}", *keyframe.slice) : std::string("-"),
                                formatTime(recording.toSeconds(keyframe.frame.time)), reasonName(keyframe.mode),
                                rectText(keyframe.frame.rect));
        }
    }
    return text;
}

Json inspectionDocument(const Inspection& inspection, const Recording& recording) {
    Json document = requestDocument(recording, EngineChoice::Value);
    document["failure"] = textOrNull(inspection.failure);

    Json& zones = document["liveZones"] = Json::array();
    for (const OV_LIVE_ZONE& zone : inspection.zones) {
        zones.push_back({{"start", zone.start}, {"stop", zone.stop}, {"rect", edgesOf(zone.rect)}});
    }

    document["objectCounts"] = objectCounts(inspection.objects);
    Json& objects = document["valueObjects"] = Json::array();
    for (const OV_VALUE_OBJECT& object : inspection.objects) {
        objects.push_back({{"type", objectTypeName(object.type)},
                           {"start", object.start},
                           {"stop", object.stop},
                           {"rect", edgesOf(object.rect)}});
    }

    Json& slices = document["slices"] = Json::array();
    for (const OV_FOCUS_SLICE& slice : inspection.slices) {
        slices.push_back(
            {{"start", slice.start}, {"stop", slice.stop}, {"blank", slice.blank}, {"spaces", spacesOf(slice.map)}});
    }

    Json& shots = document["shots"] = Json::array();
    for (std::size_t i = 0; i < inspection.shots.size(); ++i) {
        if (inspection.shots[i].mergeId != kDead) {
            shots.push_back(shotEntry(inspection.shots[i], i));
        }
    }

    Json& keyframes = document["keyframes"] = Json::array();
    for (const ReasonedKeyframe& keyframe : inspection.keyframes) {
        keyframes.push_back(keyframeEntry(keyframe, recording, true));
    }
    return document;
}

std::string inspectionJson(const Inspection& inspection, const Recording& recording) {
    return jsonText(inspectionDocument(inspection, recording));
}

} // namespace OrvantaNS::command
