// Reads the samples of the window in front in runs, and tells windows that stand from windows in motion.

#include "parser/DataParser.h"

#include <algorithm>

#include "frame/Geometry.h"

namespace OrvantaNS {

namespace {

// A second change within this time of the first makes an animation; without one the first was a window switch, seconds.
constexpr double kAnimationGapSeconds = 0.25;
// A window that stood this long is final: its first change ends it at once, seconds.
constexpr double kSettledSeconds = 2.0;

} // namespace

void DataParser::processForeWindow(unsigned int zone, const Params& params, OV_DATA_STORE& store) {
    static_cast<void>(params.recordingRegions().at(0)); // a request without a region fails here rather than later
    const std::vector<OV_TIME_RECT>& windows = params.foreWindows();
    while (nextForeWindow < windows.size() && isEmpty(windows[nextForeWindow].rect)) {
        ++nextForeWindow;
    }
    if (nextForeWindow >= windows.size()) {
        return;
    }
    if (!params.isWindows() && isMenu(params, store, nextForeWindow)) {
        processMenu(zone, params, store);
        return;
    }

    const std::uint32_t opening = nextForeWindow;
    const auto size = static_cast<std::uint32_t>(windows.size());
    const long long first = windows[opening].time;
    OV_VALUE_OBJECT object;
    object.type = ActiveWindow;
    object.rect = windows[opening].rect;

    // `end` closes the run if no further change follows, and `resume` is where the next run then opens. `last` is the
    // last sample known to belong to the run.
    bool pending = false; // one change seen, and not yet known whether it is a switch or an animation
    long long end = first;
    long long last = first;
    std::uint32_t resume = opening + 1;

    // Where the run ends when the stream does: the last sample, if it is not this one, opens one further run by itself.
    std::uint32_t next = std::max(opening + 1, size - 1);
    bool ended = false;
    long long objectEnd = first;

    for (std::uint32_t j = opening + 1; j < size && !ended; ++j) {
        const OV_TIME_RECT& sample = windows[j];
        if (isEmpty(sample.rect)) {
            next = j;
            objectEnd = last;
            ended = true;
        } else if (sample.rect == windows[j - 1].rect) {
            const bool changed = pending || object.type == ForeAnimate;
            if (changed && convertTime(wrapSub(sample.time, end)) >= kAnimationGapSeconds) {
                next = resume;
                objectEnd = end;
                ended = true;
            } else {
                last = sample.time;
            }
        } else if (!pending && object.type == ActiveWindow) {
            if (convertTime(wrapSub(last, first)) >= kSettledSeconds) {
                next = j;
                objectEnd = last;
                ended = true;
            } else {
                // The rectangle of the first change stays out of the union: it may be another window's.
                pending = true;
                end = last;
                resume = j;
            }
        } else if (pending) {
            object.type = ForeAnimate;
            object.rect = boundingUnion(object.rect, sample.rect);
            pending = false;
            end = last;
            resume = j;
        } else {
            object.rect = boundingUnion(object.rect, sample.rect);
            end = last;
            last = sample.time;
            resume = j;
        }
    }
    nextForeWindow = next;
    object.start = convertTime(first);
    object.stop = convertTime(ended ? objectEnd : last);

    if (!clipRectToLZ(zone, store, object.rect)) {
        return;
    }
    objects.push_back(object);
    if (object.type == ActiveWindow) {
        lastWindow = object;
        OV_VALUE_OBJECT arrival = object;
        arrival.type = ForeOpen;
        arrival.stop = arrival.start;
        objects.push_back(arrival);
    }
}

} // namespace OrvantaNS
