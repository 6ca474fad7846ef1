// Coordinates at the ends of 32 bits.

#include <array>
#include <limits>

#include <gtest/gtest.h>

#include "HostileRequests.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::lowest();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

// Whole planes, slivers, points and inverted shapes at every end.
std::vector<Rectangle> extremeRects() {
    constexpr std::array<std::int32_t, 6> kEdges{kLow, kLow + 1, -1, 0, kHigh - 1, kHigh};
    std::vector<Rectangle> rects;
    for (const std::int32_t left : kEdges) {
        for (const std::int32_t right : kEdges) {
            rects.push_back({left, right, 0, 800});
            rects.push_back({0, 1280, left, right});
            rects.push_back({left, right, left, right});
        }
    }
    return rects;
}

Params withEvents(const Rectangle& rect) {
    Params params = busyRequest(0, 20.0, 1000.0);
    for (std::size_t i = 0; i < params.foreWindows().size(); i += 3) {
        params.foreWindows()[i].rect = rect;
    }
    for (std::size_t i = 0; i < params.dirtyRects().size(); i += 3) {
        params.dirtyRects()[i].rect = rect;
    }
    for (std::size_t i = 0; i < params.cursorLocations().size(); i += 5) {
        params.cursorLocations()[i].x = rect.left;
        params.cursorLocations()[i].y = rect.bottom;
    }
    return params;
}

void askEverything(const Params& params) {
    const OrvantaWorker worker;
    const OrvantaVotingAlgorithm voting;
    for (const Orvanta* engine : {static_cast<const Orvanta*>(&worker), static_cast<const Orvanta*>(&voting)}) {
        CountingReporter reporter;
        codeOf([&] { engine->calcOrvantaKeyframes(params, engine == &worker ? &reporter : nullptr); });
        EXPECT_LT(reporter.asked, 10000U);
        codeOf([&] { engine->calcOrvantaKeyframeAtTime(params, 5000); });
        codeOf([&] { engine->calcKeyframeAtWindow(params); });
    }
}

TEST(Coordinates, AllQuestions_EventsAtTheEnds_Answered) {
    for (const Rectangle& rect : extremeRects()) {
        askEverything(withEvents(rect));
    }
}

TEST(Coordinates, AllQuestions_RegionAtTheEnds_Answered) {
    for (const Rectangle& rect : extremeRects()) {
        Params params = busyRequest(0, 20.0, 1000.0);
        params.recordingRegions().front().rect = rect;
        askEverything(params);
        params.recordingRegions().insert(params.recordingRegions().begin(), {0, {0, 1280, 0, 800}});
        params.recordingRegions().back().time = 10000;
        askEverything(params);
    }
}

TEST(Coordinates, AllQuestions_TargetAtTheEnds_Answered) {
    for (const std::int32_t width : {kLow, -1, 0, 1, 63, 64, 1279, kHigh}) {
        for (const std::int32_t height : {kLow, -1, 0, 1, 63, 64, 799, kHigh}) {
            Params params = busyRequest(0, 20.0, 1000.0);
            params.setTargetWidth(width).setTargetHeight(height);
            askEverything(params);
        }
    }
}

TEST(Coordinates, WindowKeyframe_WindowOverAllPixels_ShowsTheRecording) {
    // Cut to the recording, the window is the recording: 1280 by 800 has the target's aspect already.
    Scene scene = recording().window(0.0, {kLow, kHigh, kLow, kHigh});
    const auto keyframes = OrvantaWorker().calcKeyframeAtWindow(scene);
    EXPECT_EQ(keyframes->front().rect, (Rectangle{0, 1280, 0, 800}));
}

} // namespace
} // namespace OrvantaNS::testing
