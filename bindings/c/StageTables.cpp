#include "bindings/c/StageTables.h"

#include <cstdint>

#include "bindings/c/Records.h"
#include "frame/TimeModel.h"

namespace OrvantaNS::c {

namespace {

constexpr std::int32_t kNoShot = -1;

orvanta_keyframe keyframeRow(const OV_TIME_RECT& keyframe, double timeScale, std::int32_t mode, std::int32_t shot) {
    orvanta_keyframe row{};
    row.time = keyframe.time;
    row.rect = toRect(keyframe.rect);
    row.seconds = ticksToSeconds(keyframe.time, timeScale);
    row.reason = mode;
    row.shot_mode = mode;
    row.shot = shot;
    return row;
}

std::uint32_t flagsOf(const OV_FOCUS_SLICE& slice) {
    std::uint32_t flags = 0;
    const auto raise = [&flags](bool condition, std::uint32_t flag) { flags |= condition ? flag : 0; };
    raise(slice.blank, ORVANTA_SLICE_BLANK);
    raise(slice.keyframe, ORVANTA_SLICE_KEYFRAME);
    raise(slice.blocked, ORVANTA_SLICE_BLOCKED);
    raise(slice.breakdown.identified, ORVANTA_SLICE_IDENTIFIED);
    raise(slice.breakdown.tight, ORVANTA_SLICE_TIGHT);
    raise(slice.breakdown.inWindow, ORVANTA_SLICE_IN_WINDOW);
    raise(slice.breakdown.window, ORVANTA_SLICE_WINDOW);
    raise(slice.breakdown.noWindow, ORVANTA_SLICE_NO_WINDOW);
    return flags;
}

} // namespace

void keepKeyframes(orvanta_result& result, const OV_DATA_STORE& store, double timeScale) {
    for (std::size_t i = 0; i < store.keyframes.size(); ++i) {
        const std::uint32_t shot = store.keyframeSlices[i];
        result.keyframes.push_back(
            keyframeRow(store.keyframes[i], timeScale, store.slices[shot].mergeType, static_cast<std::int32_t>(shot)));
    }
}

void keepKeyframes(orvanta_result& result, const std::vector<OV_TIME_RECT>& keyframes, double timeScale) {
    for (const OV_TIME_RECT& keyframe : keyframes) {
        result.keyframes.push_back(keyframeRow(keyframe, timeScale, ORVANTA_MODE_NONE, kNoShot));
    }
}

void keepZones(orvanta_result& result, const OV_DATA_STORE& store) {
    for (const OV_LIVE_ZONE& zone : store.liveZones) {
        result.zones.push_back({zone.start, zone.stop, toRect(zone.rect)});
    }
}

void keepObjects(orvanta_result& result, const OV_DATA_STORE& store) {
    for (const OV_VALUE_OBJECT& object : store.valueObjects) {
        result.objects.push_back(
            {object.start, object.stop, object.value, toRect(object.rect), static_cast<std::int32_t>(object.type), 0});
    }
}

void keepSlices(std::vector<orvanta_slice>& slices, std::vector<orvanta_space>& spaces, const OV_DATA_STORE& store) {
    for (const OV_FOCUS_SLICE& slice : store.slices) {
        orvanta_slice row{};
        row.start = slice.start;
        row.stop = slice.stop;
        row.span = slice.map.span;
        row.window_rect = toRect(slice.breakdown.windowRect);
        row.hot_rect = toRect(slice.breakdown.tier4Rect);
        row.first_space = static_cast<std::uint32_t>(spaces.size());
        row.space_count = static_cast<std::uint32_t>(slice.map.spaces.size());
        row.revision = slice.mergeId;
        row.mode = slice.mergeType;
        row.flags = flagsOf(slice);
        slices.push_back(row);
        for (const auto& [rect, density] : slice.map.spaces) {
            spaces.push_back({toRect(rect), density});
        }
    }
}

} // namespace OrvantaNS::c
