#include "camera/score/Figures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace OrvantaNS::camera {

namespace {

// Room that a press should have to an edge, output pixels: about the size of a cursor.
constexpr double kPressRoom = 24.0;
// Pixels within which an edge of the frame is that of the screen.
constexpr double kScreenEdge = 1.0;
// A small window is judged for its first seconds only: later the viewer knows it.
constexpr double kWindowSeconds = 8.0;
// Distance between two looks at a window, seconds.
constexpr double kWindowLookSeconds = 0.25;
// Share of a window that must be inside.
constexpr double kHeldShare = 0.95;

double ratio(double part, std::size_t of) { return part / static_cast<double>(of); }

bool hasRoom(const JudgedPress& press, const RealRect& frame, const RealRect& whole, double zoom) {
    const auto roomy = [zoom](double distance, double edge, double screenEdge) {
        return distance * zoom >= kPressRoom || std::abs(edge - screenEdge) <= kScreenEdge;
    };
    return roomy(press.x - frame.left, frame.left, whole.left) && roomy(press.y - frame.top, frame.top, whole.top) &&
           roomy(frame.right - press.x, frame.right, whole.right) &&
           roomy(frame.bottom - press.y, frame.bottom, whole.bottom);
}

void judgePresses(const JudgedSession& session, const JudgedPath& path, PathFigures& figures) {
    std::size_t inside = 0;
    std::size_t room = 0;
    std::size_t rest = 0;
    std::size_t read = 0;
    for (const JudgedPress& press : session.presses) {
        const RealRect frame = path.at(press.seconds);
        if (!containsPoint(frame, press.x, press.y)) {
            continue;
        }
        const double zoom = path.zoom(frame);
        ++inside;
        room += hasRoom(press, frame, session.whole, zoom) ? 1 : 0;
        rest += path.isMoving(press.seconds) ? 0 : 1;
        read += zoom >= kReadingZoom ? 1 : 0;
    }
    figures.presses = session.presses.size();
    if (figures.presses > 0) {
        figures.inside = ratio(static_cast<double>(inside), figures.presses);
        figures.withRoom = ratio(static_cast<double>(room), figures.presses);
        figures.atRest = ratio(static_cast<double>(rest), figures.presses);
        figures.pressesRead = ratio(static_cast<double>(read), figures.presses);
    }
}

void judgeTyping(const JudgedSession& session, const JudgedPath& path, PathFigures& figures) {
    std::size_t read = 0;
    for (const JudgedCaret& caret : session.carets) {
        const RealRect frame = path.at(caret.seconds);
        const bool inside = frame.left <= caret.rect.left && caret.rect.left < frame.right &&
                            frame.top <= caret.rect.top && caret.rect.bottom <= frame.bottom;
        read += inside && path.zoom(frame) >= kReadingZoom ? 1 : 0;
    }
    if (!session.carets.empty()) {
        figures.typingRead = ratio(static_cast<double>(read), session.carets.size());
    }
}

void judgeChanges(const JudgedSession& session, const JudgedPath& path, PathFigures& figures) {
    double read = 0.0;
    for (const JudgedChange& change : session.changes) {
        const RealRect frame = path.at(change.seconds);
        if (path.zoom(frame) < kReadingZoom) {
            continue;
        }
        double shown = 0.0;
        double drawn = 0.0;
        for (const RealRect& rect : change.rects) {
            shown += area(intersection(frame, rect));
            drawn += area(rect);
        }
        read += shown / drawn;
    }
    if (!session.changes.empty()) {
        figures.changesRead = ratio(read, session.changes.size());
    }
}

void judgeWindows(const JudgedSession& session, const JudgedPath& path, double outputWidth, double outputHeight,
                  PathFigures& figures) {
    std::size_t looks = 0;
    std::size_t read = 0;
    for (const JudgedWindow& window : session.smallWindows) {
        if (width(window.rect) * kHeldShare > outputWidth / kReadingZoom ||
            height(window.rect) * kHeldShare > outputHeight / kReadingZoom) {
            continue; // no readable frame holds it
        }
        const double stop = std::min(window.to, window.from + kWindowSeconds);
        double time = window.from + kWindowLookSeconds;
        while (time < stop) {
            const RealRect frame = path.at(time);
            ++looks;
            read += shareInside(frame, window.rect) >= kHeldShare && path.zoom(frame) >= kReadingZoom ? 1 : 0;
            time += kWindowLookSeconds;
        }
    }
    if (looks > 0) {
        figures.windowsRead = ratio(static_cast<double>(read), looks);
    }
}

} // namespace

PathFigures judgePath(const JudgedSession& session, const JudgedPath& path, double outputWidth, double outputHeight) {
    PathFigures figures;
    judgePresses(session, path, figures);
    judgeTyping(session, path, figures);
    judgeChanges(session, path, figures);
    judgeWindows(session, path, outputWidth, outputHeight, figures);
    double sum = 0.0;
    std::size_t count = 0;
    for (const auto& part : {figures.pressesRead, figures.typingRead, figures.changesRead, figures.windowsRead}) {
        if (part) {
            sum += *part;
            ++count;
        }
    }
    if (count > 0) {
        figures.readableShare = ratio(sum, count);
    }
    figures.moves = path.keyframes().size();
    const double minutes = (session.stop - session.start) / 60.0;
    if (minutes > 0.0) {
        double travel = 0.0;
        for (std::size_t i = 0; i < path.keyframes().size(); ++i) {
            const RealRect& from = path.departure(i);
            const RealRect& to = path.keyframes()[i].frame;
            travel += std::hypot(centreX(from) - centreX(to), centreY(from) - centreY(to)) / width(session.whole);
        }
        figures.movesAMinute = static_cast<double>(figures.moves) / minutes;
        figures.travelAMinute = travel / minutes;
    }
    return figures;
}

} // namespace OrvantaNS::camera
