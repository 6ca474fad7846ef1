#include "camera/score/Baselines.h"

#include <algorithm>
#include <cmath>

namespace OrvantaNS::camera {

namespace {

// ---- Clicks, seconds ----
constexpr double kBeforeClick = 0.3;
constexpr double kAfterClick = 2.5;
constexpr double kBetweenClicks = 2.5;
constexpr double kMove = 1.0;

// ---- Stays of the cursor ----
// Share of the screen within a step of the cursor is no step.
constexpr double kStill = 0.02;
constexpr double kShortestStay = 0.45;
constexpr double kLongestStay = 2.6;
constexpr double kStayShown = 2.0;
constexpr double kBetweenStays = 2.0;

/// The frame pixel for pixel around a point, or the largest that the recording allows.
RealRect frameAt(const JudgedSession& session, double x, double y, double frameWidth, double frameHeight) {
    const double regionWidth = width(session.whole);
    const double regionHeight = height(session.whole);
    if (frameWidth > regionWidth || frameHeight > regionHeight) {
        const double shrink = std::min(regionWidth / frameWidth, regionHeight / frameHeight);
        frameWidth *= shrink;
        frameHeight *= shrink;
    }
    const double left = std::clamp(x - frameWidth / 2.0, 0.0, regionWidth - frameWidth);
    const double top = std::clamp(y - frameHeight / 2.0, 0.0, regionHeight - frameHeight);
    return {left, top, left + frameWidth, top + frameHeight};
}

RealRect largestFrame(const JudgedSession& session, double outputWidth, double outputHeight) {
    constexpr double kFarTooLarge = 1000.0;
    return frameAt(session, width(session.whole) / 2.0, height(session.whole) / 2.0, outputWidth * kFarTooLarge,
                   outputHeight * kFarTooLarge);
}

} // namespace

std::vector<JudgedKeyframe> clickZoom(const JudgedSession& session, double outputWidth, double outputHeight) {
    std::vector<JudgedKeyframe> keyframes;
    const RealRect whole = largestFrame(session, outputWidth, outputHeight);
    double until = 0.0;
    for (std::size_t i = 0; i < session.presses.size(); ++i) {
        const JudgedPress& press = session.presses[i];
        const double from = std::max(0.0, press.seconds - kBeforeClick);
        const bool isFirst = i == 0 || from > until + kBetweenClicks;
        if (isFirst && i > 0) {
            keyframes.push_back({until, whole});
        }
        if (isFirst || press.seconds - kBeforeClick > keyframes.back().seconds + kMove) {
            keyframes.push_back({isFirst ? from : press.seconds - kBeforeClick,
                                 frameAt(session, press.x, press.y, outputWidth, outputHeight)});
        }
        until = isFirst ? press.seconds + kAfterClick : std::max(until, press.seconds + kAfterClick);
    }
    if (!session.presses.empty()) {
        keyframes.push_back({until, whole});
    }
    return keyframes;
}

std::vector<JudgedKeyframe> dwellZoom(const JudgedSession& session, double outputWidth, double outputHeight) {
    struct Stay {
        double length;
        double middle;
        double x;
        double y;
    };
    std::vector<Stay> stays;
    const std::vector<JudgedCursor>& cursor = session.cursor;
    const auto keep = [&](std::size_t from, std::size_t to) {
        if (from == to) {
            return; // there is no cursor
        }
        const double length = cursor[to - 1].seconds - cursor[from].seconds;
        if (length < kShortestStay || length > kLongestStay) {
            return;
        }
        Stay stay{length, (cursor[from].seconds + cursor[to - 1].seconds) / 2.0, 0.0, 0.0};
        for (std::size_t i = from; i < to; ++i) {
            stay.x += cursor[i].x / static_cast<double>(to - from);
            stay.y += cursor[i].y / static_cast<double>(to - from);
        }
        stays.push_back(stay);
    };
    std::size_t start = 0;
    for (std::size_t i = 1; i < cursor.size(); ++i) {
        const double dx = (cursor[i].x - cursor[i - 1].x) / width(session.whole);
        const double dy = (cursor[i].y - cursor[i - 1].y) / height(session.whole);
        if (std::sqrt(dx * dx + dy * dy) > kStill) {
            keep(start, i);
            start = i;
        }
    }
    keep(start, cursor.size());
    std::stable_sort(stays.begin(), stays.end(), [](const Stay& a, const Stay& b) { return a.length > b.length; });
    std::vector<Stay> taken;
    for (const Stay& stay : stays) {
        const auto after = std::lower_bound(taken.begin(), taken.end(), stay,
                                            [](const Stay& a, const Stay& b) { return a.middle < b.middle; });
        const bool isFree =
            (after == taken.end() || std::abs(after->middle - stay.middle) >= kBetweenStays) &&
            (after == taken.begin() || std::abs(std::prev(after)->middle - stay.middle) >= kBetweenStays);
        if (isFree) {
            taken.insert(after, stay);
        }
    }
    std::vector<JudgedKeyframe> keyframes;
    const RealRect whole = largestFrame(session, outputWidth, outputHeight);
    for (const Stay& stay : taken) {
        const double from = stay.middle - kStayShown / 2.0;
        keyframes.push_back({std::max(0.0, from), frameAt(session, stay.x, stay.y, outputWidth, outputHeight)});
        keyframes.push_back({stay.middle + kStayShown / 2.0, whole});
    }
    return keyframes;
}

} // namespace OrvantaNS::camera
