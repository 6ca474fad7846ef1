#include "camera/score/Session.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace OrvantaNS::camera {

namespace {

// What was drawn is gathered by quarters of a second: what changes within one is seen as one.
constexpr double kStepSeconds = 0.25;
// Square pixels: a blinking caret draws less, a letter in its line more.
constexpr double kSpeckArea = 400.0;
// Share of the screen: a repaint of more shows nothing in particular.
constexpr double kRepaintShare = 0.6;
// Share of the screen under which a window counts as small.
constexpr double kSmallWindowShare = 0.3;
// Seconds that a window must stay in one place to be looked at.
constexpr double kWindowStay = 0.5;

bool isPress(std::int32_t action) { return action == 0 || action == 2 || action == 4; }

/// The cursor at a moment: its last sample, or its first one before that.
JudgedCursor cursorAt(const JudgedSession& session, double seconds) {
    if (session.cursor.empty()) {
        return {seconds, width(session.whole) / 2.0, height(session.whole) / 2.0};
    }
    auto after = std::upper_bound(session.cursor.begin(), session.cursor.end(), seconds,
                                  [](double time, const JudgedCursor& c) { return time < c.seconds; });
    return after == session.cursor.begin() ? *after : *std::prev(after);
}

void readChanges(const Params& params, const Rectangle& region, JudgedSession& session) {
    const double repaint = kRepaintShare * area(session.whole);
    std::map<double, std::vector<RealRect>> steps;
    for (const OV_TIME_RECT& dirty : params.dirtyRects()) {
        const RealRect rect = intersection(toLocal(dirty.rect, region), session.whole);
        if (isEmpty(rect) || area(rect) < kSpeckArea || area(rect) > repaint) {
            continue;
        }
        const double seconds = static_cast<double>(dirty.time) / params.timeScale();
        steps[std::trunc(seconds / kStepSeconds)].push_back(rect);
    }
    for (auto& [step, rects] : steps) {
        session.changes.push_back({step * kStepSeconds + kStepSeconds / 2.0, std::move(rects)});
    }
}

void readSmallWindows(const Params& params, const Rectangle& region, JudgedSession& session) {
    std::vector<JudgedWindow> runs;
    for (const OV_TIME_RECT& window : params.foreWindows()) {
        const RealRect rect = intersection(toLocal(window.rect, region), session.whole);
        const double seconds = static_cast<double>(window.time) / params.timeScale();
        if (!runs.empty()) {
            runs.back().to = seconds;
        }
        if (runs.empty() || runs.back().rect != rect) {
            runs.push_back({seconds, seconds, rect});
        }
    }
    for (const JudgedWindow& run : runs) {
        if (run.to - run.from >= kWindowStay && !isEmpty(run.rect) &&
            area(run.rect) < kSmallWindowShare * area(session.whole)) {
            session.smallWindows.push_back(run);
        }
    }
}

} // namespace

JudgedSession judgedSession(const Params& params) {
    JudgedSession session;
    const double scale = params.timeScale();
    const Rectangle region = params.recordingRegions().at(0).rect;
    session.whole = {0.0, 0.0, toLocal(region.right, region.left), toLocal(region.bottom, region.top)};
    session.start = static_cast<double>(params.clipStart()) / scale;
    session.stop = static_cast<double>(params.clipStop()) / scale;
    for (const OV_MOUSE_LOCATION& sample : params.cursorLocations()) {
        session.cursor.push_back(
            {static_cast<double>(sample.time) / scale, toLocal(sample.x, region.left), toLocal(sample.y, region.top)});
    }
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        if (!isPress(action.action)) {
            continue;
        }
        const double seconds = static_cast<double>(action.time) / scale;
        const JudgedCursor place = cursorAt(session, seconds);
        if (containsPoint(session.whole, place.x, place.y)) {
            session.presses.push_back({seconds, place.x, place.y});
        }
    }
    for (const OV_TIME_RECT& caret : params.caretRects()) {
        const RealRect rect = toLocal(caret.rect, region);
        if (containsPoint(session.whole, rect.left, rect.top)) {
            session.carets.push_back({static_cast<double>(caret.time) / scale, rect});
        }
    }
    readChanges(params, region, session);
    readSmallWindows(params, region, session);
    return session;
}

} // namespace OrvantaNS::camera
