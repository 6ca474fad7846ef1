// What holds for every plan, over generated sessions.

#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "GeneratedRecording.h"
#include "OrvantaDirector.h"
#include "frame/Geometry.h"

namespace OrvantaNS::testing {
namespace {

constexpr std::uint64_t kSessions = 18;

using Keyframes = std::vector<OV_TIME_RECT>;

SessionPlan planOf(std::uint64_t seed) {
    SessionPlan plan;
    plan.seconds = 40.0;
    if (seed % 3 == 1) {
        plan.targetWidth = 360;
        plan.targetHeight = 640;
    } else if (seed % 3 == 2) {
        plan.width = 1920;
        plan.height = 1080;
    }
    return plan;
}

Keyframes keyframes(const Params& params, const DirectorControls& controls = {}) {
    return *OrvantaDirector(controls).calcOrvantaKeyframes(params, nullptr);
}

bool operator==(const OV_TIME_RECT& a, const OV_TIME_RECT& b) { return a.time == b.time && a.rect == b.rect; }

void expectSame(const Keyframes& a, const Keyframes& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_TRUE(a[i] == b[i]) << i;
    }
}

/// A press as the law sees it.
struct Press {
    double seconds;
    double x;
    double y;
};

std::vector<Press> pressesOf(const Params& params) {
    std::vector<Press> presses;
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        if ((action.action != 0 && action.action != 2 && action.action != 4) || action.time >= params.clipStop()) {
            continue;
        }
        const OV_MOUSE_LOCATION* place = nullptr;
        for (const OV_MOUSE_LOCATION& sample : params.cursorLocations()) {
            if (place == nullptr || sample.time <= action.time) {
                place = &sample;
            }
        }
        const Rectangle& region = params.recordingRegions().front().rect;
        if (place != nullptr && containsPoint(region, place->x, place->y)) {
            presses.push_back({static_cast<double>(action.time) / params.timeScale(),
                               static_cast<double>(place->x - region.left),
                               static_cast<double>(place->y - region.top)});
        }
    }
    return presses;
}

/// The frames at both ends of the move under way, or the one frame of a rest, twice.
std::pair<Rectangle, Rectangle> framesAt(const Params& params, const Keyframes& list, double seconds) {
    std::pair<Rectangle, Rectangle> frames{localRegion(params.recordingRegions().front().rect), {}};
    frames.second = frames.first;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const double start = static_cast<double>(list[i].time) / params.timeScale();
        if (start > seconds) {
            break;
        }
        const double fade = static_cast<double>(params.fadeDuration()) / params.timeScale();
        frames.second = list[i].rect;
        frames.first = seconds < start + fade && i > 0 ? list[i - 1].rect : list[i].rect;
    }
    return frames;
}

TEST(DirectorLawsTest, Presses_LieInThePictureUnlessNoFrameHoldsThemAndTheirNeighbours) {
    int judged = 0;
    for (std::uint64_t seed = 1; seed <= kSessions; ++seed) {
        const Params params = generatedRecording(seed, planOf(seed));
        const Keyframes list = keyframes(params);
        const Rectangle whole = localRegion(params.recordingRegions().front().rect);
        const double shape = static_cast<double>(params.targetWidth()) / params.targetHeight();
        const double widest = std::min<double>(width(whole), height(whole) * shape);
        const std::vector<Press> presses = pressesOf(params);
        for (const Press& press : presses) {
            // A hand's breadth less than the largest frame: frames come in whole measures of the output's shape.
            const bool isExcused =
                press.seconds < 1.5 || std::any_of(presses.begin(), presses.end(), [&](const Press& other) {
                    return std::abs(other.seconds - press.seconds) <= 3.5 &&
                           (std::abs(other.x - press.x) > widest - 48 ||
                            std::abs(other.y - press.y) > widest / shape - 48);
                });
            if (isExcused) {
                continue;
            }
            ++judged;
            const auto [from, to] = framesAt(params, list, press.seconds);
            const auto x = static_cast<std::int32_t>(press.x);
            const auto y = static_cast<std::int32_t>(press.y);
            EXPECT_TRUE(containsPoint(from, x, y) && containsPoint(to, x, y))
                << "seed " << seed << ", press at " << press.seconds << " s, " << press.x << ", " << press.y;
        }
    }
    EXPECT_GT(judged, 100);
}

TEST(DirectorLawsTest, Frames_AreInsideAndExact_AndRestsAreLongEnough) {
    for (std::uint64_t seed = 1; seed <= kSessions; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Params params = generatedRecording(seed, planOf(seed));
        const Keyframes list = keyframes(params);
        const Rectangle whole = localRegion(params.recordingRegions().front().rect);
        ASSERT_FALSE(list.empty());
        for (std::size_t i = 0; i < list.size(); ++i) {
            EXPECT_TRUE(contains(whole, list[i].rect));
            EXPECT_EQ(width(list[i].rect) * params.targetHeight(), height(list[i].rect) * params.targetWidth());
            EXPECT_GE(width(list[i].rect), params.targetWidth());
            EXPECT_GE(list[i].time, params.clipStart());
            EXPECT_LT(list[i].time, params.clipStop());
            if (i > 0) {
                // A rest of 1.5 s and the move before it; the clip's start needs no move.
                EXPECT_GE(list[i].time - list[i - 1].time, i == 1 && list[0].time == 0 ? 0 : 2500);
            }
        }
    }
}

TEST(DirectorLawsTest, ShiftOfTime_MovesTheKeyframesAlong) {
    constexpr long long kShift = 86400123;
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Params params = generatedRecording(seed, planOf(seed));
        Keyframes list = keyframes(params);
        for (OV_TIME_RECT& keyframe : list) {
            keyframe.time += kShift;
        }
        for (auto* stream : {&params.foreWindows(), &params.dirtyRects(), &params.caretRects()}) {
            for (OV_TIME_RECT& sample : *stream) {
                sample.time += kShift;
            }
        }
        for (OV_MOUSE_ACTION& action : params.cursorActions()) {
            action.time += kShift;
        }
        for (OV_MOUSE_LOCATION& sample : params.cursorLocations()) {
            sample.time += kShift;
        }
        params.setClipInterval(params.clipStart() + kShift, params.clipStop() + kShift);
        expectSame(keyframes(params), list);
    }
}

TEST(DirectorLawsTest, ShiftOfPlace_ChangesNothing) {
    constexpr std::int32_t kRight = -3000;
    constexpr std::int32_t kDown = 777;
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Params params = generatedRecording(seed, planOf(seed));
        const Keyframes list = keyframes(params);
        for (auto* stream :
             {&params.foreWindows(), &params.dirtyRects(), &params.caretRects(), &params.recordingRegions()}) {
            for (OV_TIME_RECT& sample : *stream) {
                if (!isEmpty(sample.rect)) {
                    sample.rect = relativeTo(sample.rect, -kRight, -kDown);
                }
            }
        }
        for (OV_MOUSE_LOCATION& sample : params.cursorLocations()) {
            sample.x += kRight;
            sample.y += kDown;
        }
        expectSame(keyframes(params), list);
    }
}

TEST(DirectorLawsTest, Streams_EveryOneMayBeMissing) {
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        for (int missing = 0; missing < 5; ++missing) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", missing " + std::to_string(missing));
            Params params = generatedRecording(seed, planOf(seed));
            switch (missing) {
            case 0:
                params.foreWindows().clear();
                break;
            case 1:
                params.dirtyRects().clear();
                break;
            case 2:
                params.caretRects().clear();
                break;
            case 3:
                params.cursorLocations().clear();
                break;
            default:
                params.cursorActions().clear();
                break;
            }
            EXPECT_FALSE(keyframes(params).empty());
        }
    }
}

TEST(DirectorLawsTest, SameRequest_SameAnswer) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        const Params params = generatedRecording(seed, planOf(seed));
        expectSame(keyframes(params), keyframes(params));
    }
}

TEST(DirectorLawsTest, CheapPresses_NeverCostMoreMoves) {
    // What need not be held asks for no move: over many sessions the soft rule is the calmer one.
    std::size_t hard = 0;
    std::size_t soft = 0;
    for (std::uint64_t seed = 1; seed <= kSessions; ++seed) {
        const Params params = generatedRecording(seed, planOf(seed));
        DirectorControls controls;
        hard += keyframes(params, controls).size();
        controls.presses = DirectorPresses::Cheap;
        soft += keyframes(params, controls).size();
    }
    EXPECT_LE(soft, hard);
}

} // namespace
} // namespace OrvantaNS::testing
