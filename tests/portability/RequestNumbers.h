// A request as a list of numbers, for programs that cannot link the readers of the command.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <istream>
#include <ostream>
#include <vector>

#include "Params.h"

namespace OrvantaNS::testing {

inline void writeRects(std::ostream& out, const std::vector<OV_TIME_RECT>& rects) {
    out << rects.size() << '\n';
    for (const OV_TIME_RECT& entry : rects) {
        out << entry.time << ' ' << entry.rect.left << ' ' << entry.rect.right << ' ' << entry.rect.top << ' '
            << entry.rect.bottom << '\n';
    }
}

inline void writeRequest(std::ostream& out, const Params& params) {
    // 17 digits hold every bit of the time scale.
    out << std::setprecision(17) << params.targetWidth() << ' ' << params.targetHeight() << ' ' << params.timeScale()
        << ' ' << params.fadeDuration() << ' ' << params.clipStart() << ' ' << params.clipStop() << ' '
        << (params.isWindows() ? 1 : 0) << '\n';
    writeRects(out, params.foreWindows());
    writeRects(out, params.dirtyRects());
    writeRects(out, params.caretRects());
    writeRects(out, params.recordingRegions());
    out << params.cursorActions().size() << '\n';
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        out << action.time << ' ' << action.action << '\n';
    }
    out << params.cursorLocations().size() << '\n';
    for (const OV_MOUSE_LOCATION& location : params.cursorLocations()) {
        out << location.time << ' ' << location.x << ' ' << location.y << '\n';
    }
}

inline void readRects(std::istream& in, std::vector<OV_TIME_RECT>& rects) {
    std::size_t count = 0;
    in >> count;
    for (OV_TIME_RECT entry; in && rects.size() < count; rects.push_back(entry)) {
        in >> entry.time >> entry.rect.left >> entry.rect.right >> entry.rect.top >> entry.rect.bottom;
    }
}

/// Fills a fresh request with the next one of the list; false at the end of the list and where it is broken.
inline bool readRequest(std::istream& in, Params& params) {
    std::int32_t targetWidth = 0;
    std::int32_t targetHeight = 0;
    double timeScale = 0.0;
    long long fade = 0;
    long long start = 0;
    long long stop = 0;
    int windows = 0;
    in >> targetWidth >> targetHeight >> timeScale >> fade >> start >> stop >> windows;
    params.setTargetWidth(targetWidth)
        .setTargetHeight(targetHeight)
        .setTimeScale(timeScale)
        .setFadeDuration(fade)
        .setClipInterval(start, stop)
        .setWindowsFlag(windows != 0);
    readRects(in, params.foreWindows());
    readRects(in, params.dirtyRects());
    readRects(in, params.caretRects());
    readRects(in, params.recordingRegions());
    std::size_t count = 0;
    in >> count;
    for (OV_MOUSE_ACTION action; in && params.cursorActions().size() < count;
         params.cursorActions().push_back(action)) {
        in >> action.time >> action.action;
    }
    count = 0;
    in >> count;
    for (OV_MOUSE_LOCATION at; in && params.cursorLocations().size() < count; params.cursorLocations().push_back(at)) {
        in >> at.time >> at.x >> at.y;
    }
    return static_cast<bool>(in);
}

} // namespace OrvantaNS::testing
