// Rebuilds from scattered dirty rectangles the areas that went on changing, and answers questions about them.

#include "parser/DataParser.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "frame/Geometry.h"
#include "frame/InForce.h"
#include "frame/Steps.h"
#include "parser/damage/AreaMatch.h"
#include "parser/flood/DirtyRectFlood.h"
#include "parser/walk/ZoneWalk.h"

namespace OrvantaNS {

namespace {

// An area keeps its identity over a gap between sightings of up to this long, seconds.
constexpr double kSightingGapSeconds = 1.5;

// Pairs of rectangles that are compared in the time of one step.
constexpr std::uint64_t kPairsPerStep = 16;
// Work on one moment, and on one cluster of it, steps.
constexpr std::uint64_t kStepsPerMoment = 2;
constexpr std::uint64_t kStepsPerArea = 2;

// Records that a cluster has room for from the first one on: allocators give no less than that.
constexpr std::size_t kFirstRects = 6;

// Position of the first frame that is not matched yet and similar to `seen`; the number of frames when there is none.
std::size_t firstSimilar(const std::vector<DR_OBJECT_FRAME>& frames, const Rectangle& seen) {
    const auto match = std::find_if(frames.begin(), frames.end(), [&](const DR_OBJECT_FRAME& frame) {
        return !frame.matched && isSimilar(seen, frame.rect);
    });
    return static_cast<std::size_t>(match - frames.begin());
}

} // namespace

void DataParser::preProcessDR(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    findAreas(zone, params, store);
}

DataParser::ReadSamples DataParser::findAreas(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    const std::vector<OV_TIME_RECT>& dirtyRects = params.dirtyRects();
    const long long zoneStop = revertTime(store.liveZones[zone].stop);
    const InForce<OV_DATA_STORE*> counting(counting_, &store);
    std::vector<std::uint32_t> active;
    std::vector<DR_OBJECT_FRAME> frames;
    std::uint32_t i = skipDirtyRect;
    long long latest = std::numeric_limits<long long>::lowest();
    while (i < dirtyRects.size()) {
        const long long time = dirtyRects[i].time;
        if (time > zoneStop) {
            break;
        }
        frames.clear();
        std::uint32_t end = i;
        while (end < dirtyRects.size() && dirtyRects[end].time == time) {
            ++end;
        }
        latest = std::max(latest, end < dirtyRects.size() ? std::max(time, dirtyRects[end].time) : time);
        if (end - i > kFloodRects) {
            frames = clusterFlood(dirtyRects, i, end, counting_);
        } else {
            count(std::uint64_t{end - i} * (end - i) / kPairsPerStep);
            for (std::uint32_t record = i; record < end; ++record) {
                addDRToFrameSet(record, params, frames);
            }
        }
        i = end;
        mergeFramesToActiveSet(frames, active, time);
        // The record that ended the group is stepped over unread, so the first record of each later group takes no
        // part: a stream with one record a moment yields every second one.
        ++i;
    }
    // One behind the end where the stream has ended with a group.
    return {std::min(i, static_cast<std::uint32_t>(dirtyRects.size())), latest};
}

void DataParser::addDRToFrameSet(unsigned int index, const Params& params, std::vector<DR_OBJECT_FRAME>& frames) {
    const std::vector<OV_TIME_RECT>& dirtyRects = params.dirtyRects();
    const Rectangle fresh = dirtyRects[index].rect;
    const Rectangle reach = grown(fresh, 1); // as `canTouchRect` reaches
    const auto isHit = [&](const DR_OBJECT_FRAME& frame) {
        return std::any_of(frame.dirtyRects.begin(), frame.dirtyRects.end(),
                           [&](std::uint32_t member) { return overlaps(reach, dirtyRects[member].rect); });
    };

    const auto target = std::find_if(frames.begin(), frames.end(), isHit);
    if (target == frames.end()) {
        DR_OBJECT_FRAME& frame = frames.emplace_back();
        frame.dirtyRects.reserve(kFirstRects);
        frame.dirtyRects.push_back(index);
        frame.rect = fresh;
        return;
    }
    for (auto frame = target + 1; frame != frames.end();) {
        if (isHit(*frame)) {
            // The joined frame's own rectangle is dropped on purpose: the target covers what touched it first.
            target->dirtyRects.insert(target->dirtyRects.end(), frame->dirtyRects.begin(), frame->dirtyRects.end());
            frame = frames.erase(frame);
        } else {
            ++frame;
        }
    }
    target->dirtyRects.push_back(index);
    target->rect = boundingUnion(target->rect, fresh);
}

void DataParser::mergeFramesToActiveSet(std::vector<DR_OBJECT_FRAME>& frames, std::vector<std::uint32_t>& active,
                                        long long time) {
    const long long maximumGap = revertTime(kSightingGapSeconds);
    std::optional<SimilarFrameFinder> finder;
    if (frames.size() > kFloodFrames && active.size() > kFloodFrames) {
        finder.emplace(frames, counting_);
    } else {
        count(std::uint64_t{active.size()} * frames.size() / kPairsPerStep);
    }
    count(kStepsPerMoment + active.size() + kStepsPerArea * frames.size());
    // The objects that stay alive move up in order; erasing one by one would cost the square of a flood.
    auto alive = active.begin();
    for (const std::uint32_t index : active) {
        DR_OBJECT& object = drObjects[index];
        const Rectangle seen = object.frames.back().rect;
        const std::size_t match = finder ? finder->find(seen) : firstSimilar(frames, seen);
        if (match < frames.size()) {
            DR_OBJECT_FRAME& frame = frames[match];
            object.isInOrder = object.isInOrder && time >= object.stop;
            object.stop = time;
            frame.matched = true;
            if (finder) {
                finder->take(match);
            }
            if (frame.rect == seen) {
                object.frames.back().time = time;
            } else {
                object.frames.push_back({time, frame.rect});
                object.bounds = boundingUnion(object.bounds, frame.rect);
            }
        }
        // Age is tested after the match: an area seen again at this moment is young, however long it was away.
        if (!(wrapSub(time, object.stop) > maximumGap)) {
            *alive = index;
            ++alive;
        }
    }
    active.erase(alive, active.end());
    for (const DR_OBJECT_FRAME& frame : frames) {
        if (!frame.matched) {
            active.push_back(static_cast<std::uint32_t>(drObjects.size()));
            drObjects.push_back({{{time, frame.rect}}, time, time, frame.rect, true});
        }
    }
}

std::vector<std::uint32_t> DataParser::getDRObjectsInTime(Interval_Type<long long> interval) {
    const AreaTimes* times = walk_ != nullptr ? &walk_->areas : nullptr;
    if (times == nullptr || !times->isInOrder()) {
        count(drObjects.size() / kPassedPerStep); // at most
    }
    std::vector<std::uint32_t> selected = areasInTime(drObjects, skipDRObject, interval, times);
    count(1 + selected.size() / kPassedPerStep);
    return selected;
}

Rectangle DataParser::getDOFrameAtTime(unsigned int object, long long time) {
    const std::vector<OV_TIME_RECT>& frames = drObjects[object].frames;
    if (drObjects[object].isInOrder) {
        // The first frame holds whatever its time is. An area that never rests has a frame for every sighting, and is
        // asked for every point of every stroke.
        const auto later =
            std::upper_bound(frames.begin() + 1, frames.end(), time,
                             [](long long moment, const OV_TIME_RECT& frame) { return moment < frame.time; });
        return (later - 1)->rect;
    }
    count(frames.size() / kPassedPerStep); // at most
    Rectangle rect = frames.front().rect;
    for (std::size_t i = 1; i < frames.size() && frames[i].time <= time; ++i) {
        rect = frames[i].rect;
    }
    return rect;
}

Interval_Type<long long> DataParser::getDRFrameSpan(unsigned int object, unsigned int frame) {
    const DR_OBJECT& area = drObjects[object];
    return {frame == 0 ? area.start : area.frames[frame - 1].time, area.frames[frame].time};
}

std::vector<std::pair<std::uint32_t, std::uint32_t>>
DataParser::getDRObjectsInSpaceTime(Interval_Type<long long> interval, Rectangle rect) {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> selected;
    for (const std::uint32_t index : getDRObjectsInTime(interval)) {
        const DR_OBJECT& object = drObjects[index];
        for (std::uint32_t frame = 0; frame < object.frames.size(); ++frame) {
            // Every frame but the first is tested at the object's last moment alone.
            const Interval_Type<long long> span{frame == 0 ? object.start : object.stop, object.stop};
            if (overlaps(object.frames[frame].rect, rect) && livesIn(span, interval)) {
                selected.emplace_back(index, frame);
            }
        }
    }
    return selected;
}

} // namespace OrvantaNS
