#include "inspect.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>

#include <fmt/format.h>

#include "frame/Geometry.h"
#include "json_writer.h"
#include "keyframe_output.h"
#include "text_format.h"

namespace OrvantaNS::command {

namespace {

constexpr std::array<std::string_view, g_ValueMatrix.size()> kTypeNames{"Move",
                                                                        "MouseIdle",
                                                                        "Click",
                                                                        "Drag",
                                                                        "DoubleClick",
                                                                        "Caret",
                                                                        "TextFocus",
                                                                        "FollowText",
                                                                        "ForeOpen",
                                                                        "ForeAnimate",
                                                                        "ActiveWindow",
                                                                        "Hover",
                                                                        "IdleDirty",
                                                                        "Menu",
                                                                        "Pane",
                                                                        "MenuResult",
                                                                        "Reserved16",
                                                                        "OffScreen",
                                                                        "Scroll",
                                                                        "Dead",
                                                                        "Reserved20",
                                                                        "Reserved21",
                                                                        "Reserved22",
                                                                        "FullScreenDirty",
                                                                        "MoveOutOfWindow",
                                                                        "MoveIntoWindow",
                                                                        "HoverPopup",
                                                                        "ClickDirty",
                                                                        "ClickWindow"};

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

void writeRect(JsonWriter& json, std::string_view name, const Rectangle& rect) {
    json.key(name);
    json.openRow();
    json.field("left", rect.left);
    json.field("top", rect.top);
    json.field("right", rect.right);
    json.field("bottom", rect.bottom);
    json.closeObject();
}

void writeSpan(JsonWriter& json, double start, double stop) {
    json.field("start", start);
    json.field("stop", stop);
}

void writeSpaces(JsonWriter& json, const VS_VALUE_MAP& map) {
    json.key("spaces");
    json.openArray();
    for (const auto& [rect, density] : map.spaces) {
        json.openRow();
        writeRect(json, "rect", rect);
        json.field("density", density);
        json.closeObject();
    }
    json.closeArray();
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

std::string objectTypeName(std::uint32_t type) {
    return type < kTypeNames.size() ? std::string(kTypeNames[type]) : fmt::format("type {}", type);
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
    if (inspection.stages > OV_PIPELINE_KEYFRAMES) {
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

std::string inspectionJson(const Inspection& inspection, const Recording& recording) {
    JsonWriter json;
    json.openObject();
    writeRequest(json, recording, EngineChoice::Value);
    json.key("failure");
    if (inspection.failure.empty()) {
        json.null();
    } else {
        json.value(inspection.failure);
    }

    json.key("liveZones");
    json.openArray();
    for (const OV_LIVE_ZONE& zone : inspection.zones) {
        json.openRow();
        writeSpan(json, zone.start, zone.stop);
        writeRect(json, "rect", zone.rect);
        json.closeObject();
    }
    json.closeArray();

    json.key("objectCounts");
    json.openObject();
    for (const auto& [type, count] : countsByType(inspection.objects)) {
        json.field(objectTypeName(type), count);
    }
    json.closeObject();
    json.key("valueObjects");
    json.openArray();
    for (const OV_VALUE_OBJECT& object : inspection.objects) {
        json.openRow();
        json.field("type", objectTypeName(object.type));
        writeSpan(json, object.start, object.stop);
        writeRect(json, "rect", object.rect);
        json.closeObject();
    }
    json.closeArray();

    json.key("slices");
    json.openArray();
    for (const OV_FOCUS_SLICE& slice : inspection.slices) {
        json.openRow();
        writeSpan(json, slice.start, slice.stop);
        json.field("blank", slice.blank);
        writeSpaces(json, slice.map);
        json.closeObject();
    }
    json.closeArray();

    json.key("shots");
    json.openArray();
    for (std::size_t i = 0; i < inspection.shots.size(); ++i) {
        const OV_FOCUS_SLICE& shot = inspection.shots[i];
        if (shot.mergeId == kDead) {
            continue;
        }
        json.openRow();
        json.field("slice", i);
        writeSpan(json, shot.start, shot.stop);
        json.field("blank", shot.blank);
        json.key("mode");
        if (reasonName(shot.mergeType).empty()) {
            json.null();
        } else {
            json.value(reasonName(shot.mergeType));
        }
        json.field("keyframe", shot.keyframe);
        json.field("tight", shot.breakdown.tight);
        json.field("inWindow", shot.breakdown.inWindow);
        json.field("window", shot.breakdown.window);
        json.field("noWindow", shot.breakdown.noWindow);
        writeRect(json, "windowRect", shot.breakdown.windowRect);
        writeRect(json, "hotRect", shot.breakdown.tier4Rect);
        json.closeObject();
    }
    json.closeArray();

    json.key("keyframes");
    json.openArray();
    for (const ReasonedKeyframe& keyframe : inspection.keyframes) {
        writeKeyframe(json, keyframe, recording, true);
    }
    json.closeArray();
    json.closeObject();
    return json.text();
}

} // namespace OrvantaNS::command
