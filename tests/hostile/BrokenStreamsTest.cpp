// Streams that no recorder should send: unsorted, ending in invalid windows, full of unknown codes.

#include <algorithm>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "HostileRequests.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "Scene.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {
namespace {

void askEverything(const Params& params) {
    const OrvantaWorker worker;
    const OrvantaVotingAlgorithm voting;
    CountingReporter reporter;
    codeOf([&] { worker.calcOrvantaKeyframes(params, &reporter); });
    EXPECT_LT(reporter.asked, 10000U);
    codeOf([&] { worker.calcOrvantaKeyframes(params, nullptr); });
    codeOf([&] { voting.calcOrvantaKeyframes(params, nullptr); });
    for (const long long time : {0LL, 10000LL, -5LL, std::numeric_limits<long long>::max()}) {
        codeOf([&] { worker.calcOrvantaKeyframeAtTime(params, time); });
        codeOf([&] { voting.calcOrvantaKeyframeAtTime(params, time); });
    }
}

TEST(BrokenStreams, WindowStream_EndsInInvalidWindows_RunEnds) {
    for (const int count : {1, 2, 1000}) {
        for (const Rectangle& invalid : {Rectangle{}, Rectangle{9, 3, 8, 2}, Rectangle{5, 5, 0, 100}}) {
            for (const bool isWindows : {false, true}) {
                Params params = busyRequest(0, 20.0, 1000.0);
                params.setWindowsFlag(isWindows);
                for (int i = 0; i < count; ++i) {
                    params.foreWindows().push_back({16000 + i * 7, invalid});
                }
                askEverything(params);
            }
        }
    }
}

TEST(BrokenStreams, WindowStream_OnlyInvalidWindows_RunEnds) {
    Params params = busyRequest(0, 20.0, 1000.0);
    for (OV_TIME_RECT& window : params.foreWindows()) {
        window.rect = {};
    }
    askEverything(params);
}

TEST(BrokenStreams, MenuStream_EndsInInvalidWindows_RunEnds) {
    // A menu pulled down from the top, and nothing valid after it.
    Scene scene = recording().length(20.0).cursor(4.9, 60, 10).cursor(5.0, 60, 12).click(5.0);
    for (int i = 0; i < 4; ++i) {
        scene.dirty(5.0 + i * 0.1, box(40, 0, 200, 300)).dirty(5.0 + i * 0.1, box(40, 0, 200, 300));
    }
    scene.window(5.05, box(40, 20, 200, 280));
    for (int i = 0; i < 50; ++i) {
        scene.window(5.1 + i * 0.1, {});
    }
    askEverything(scene);
}

TEST(BrokenStreams, AnyStream_Backwards_RunEnds) {
    Params params = busyRequest(0, 30.0, 1000.0);
    std::reverse(params.foreWindows().begin(), params.foreWindows().end());
    askEverything(params);
    std::reverse(params.dirtyRects().begin(), params.dirtyRects().end());
    askEverything(params);
    std::reverse(params.cursorLocations().begin(), params.cursorLocations().end());
    askEverything(params);
    std::reverse(params.cursorActions().begin(), params.cursorActions().end());
    askEverything(params);
}

TEST(BrokenStreams, AllStreams_Shuffled_RunEnds) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Params params = busyRequest(0, 30.0, 1000.0);
        params.recordingRegions().push_back({15000, {0, 1280, 0, 800}});
        params.recordingRegions().push_back({5000, {100, 900, 100, 700}});
        std::shuffle(params.foreWindows().begin(), params.foreWindows().end(), random);
        std::shuffle(params.dirtyRects().begin(), params.dirtyRects().end(), random);
        std::shuffle(params.cursorLocations().begin(), params.cursorLocations().end(), random);
        std::shuffle(params.cursorActions().begin(), params.cursorActions().end(), random);
        askEverything(params);
    }
}

TEST(BrokenStreams, AllStreams_TimesAtTheEndsOfTheRange_RunEnds) {
    constexpr long long kTimes[] = {
        std::numeric_limits<long long>::lowest(), -2, -1, 0, std::numeric_limits<long long>::max() - 1,
        std::numeric_limits<long long>::max()};
    for (const long long time : kTimes) {
        for (const bool atFront : {false, true}) {
            SCOPED_TRACE(time);
            Params params = busyRequest(0, 20.0, 1000.0);
            const auto put = [&](auto& stream, auto sample) {
                sample.time = time;
                stream.insert(atFront ? stream.begin() : stream.end(), sample);
            };
            put(params.foreWindows(), params.foreWindows().back());
            put(params.dirtyRects(), params.dirtyRects().back());
            put(params.cursorLocations(), params.cursorLocations().back());
            put(params.cursorActions(), params.cursorActions().back());
            put(params.caretRects(), OV_TIME_RECT{0, {10, 11, 10, 30}});
            askEverything(params);
        }
    }
}

TEST(BrokenStreams, Actions_CodesOutsideTheTable_AreAsIfAbsent) {
    const Params clean = busyRequest(0, 30.0, 1000.0);
    Params noisy;
    noisy = clean;
    noisy.cursorActions().clear();
    for (const OV_MOUSE_ACTION& action : clean.cursorActions()) {
        for (const std::int32_t code :
             {8, 100, -1, -2, std::numeric_limits<std::int32_t>::lowest(), std::numeric_limits<std::int32_t>::max()}) {
            noisy.cursorActions().push_back({action.time, code});
        }
        noisy.cursorActions().push_back(action);
    }
    const auto expected = OrvantaWorker().calcOrvantaKeyframes(clean, nullptr);
    const auto actual = OrvantaWorker().calcOrvantaKeyframes(noisy, nullptr);
    ASSERT_EQ(actual->size(), expected->size());
    for (std::size_t i = 0; i < expected->size(); ++i) {
        EXPECT_EQ((*actual)[i].time, (*expected)[i].time);
        EXPECT_EQ((*actual)[i].rect, (*expected)[i].rect);
    }
}

} // namespace
} // namespace OrvantaNS::testing
