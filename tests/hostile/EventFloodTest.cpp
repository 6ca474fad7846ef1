// Floods: very many events at one moment, or presses that are never released.
//
// Each of these is a list that some rule could search for every one of its entries. With a quadratic search they take
// minutes; the tests' time limit is what fails then. A million of what the rules read in passing, fewer of what they
// make objects of, since these tests run under the sanitizers too.

#include <gtest/gtest.h>

#include "HostileRequests.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"
#include "Scene.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {
namespace {

constexpr int kFlood = 100000;
constexpr int kMillion = 1000000;
constexpr long long kMoment = 5000;

// Ten quiet seconds with something to see, so that a run gets as far as keyframes: from 1.5 seconds on, as a blank
// stretch shorter than a shot at the head of the clip would swallow all that follows.
Params calmRequest() {
    Params params = busyRequest(0, 10.0, 1000.0);
    params.setClipInterval(1500, 20000);
    return params;
}

template <typename Sample> void sortByTime(std::vector<Sample>& samples) {
    std::stable_sort(samples.begin(), samples.end(), [](const Sample& a, const Sample& b) { return a.time < b.time; });
}

void askValueEngine(const Params& params) {
    codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, nullptr); });
    EXPECT_NO_THROW(OrvantaWorker().calcOrvantaKeyframeAtTime(params, kMoment));
}

void askBothEngines(Params& params) {
    sortByTime(params.foreWindows());
    sortByTime(params.cursorActions());
    sortByTime(params.cursorLocations());
    sortByTime(params.dirtyRects());
    sortByTime(params.caretRects());
    askValueEngine(params);
    EXPECT_NO_THROW(OrvantaVotingAlgorithm().calcOrvantaKeyframes(params, nullptr));
    EXPECT_NO_THROW(OrvantaVotingAlgorithm().calcOrvantaKeyframeAtTime(params, kMoment));
}

TEST(EventFlood, TheRequestWithoutAFlood_HasKeyframes) {
    EXPECT_FALSE(OrvantaWorker().calcOrvantaKeyframes(calmRequest(), nullptr)->empty());
}

TEST(EventFlood, CursorSamples_AtOneMoment_Handled) {
    // A thousand sweeps to and fro. All strokes have one rectangle: very many different ones that overlap, all at one
    // moment, are another matter, since each overlap is a place of its own.
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        const std::int32_t step = i % 200 < 100 ? i % 100 : 100 - i % 100;
        params.cursorLocations().push_back({kMoment, 100 + 10 * step, 100 + 5 * step});
    }
    askBothEngines(params);
}

TEST(EventFlood, OverlappingStrokes_AtOneMoment_Handled) {
    Params params = calmRequest();
    for (int i = 0; i < 30; ++i) {
        params.cursorLocations().push_back({kMoment, i * 370 % 1280, i * 910 % 800});
    }
    askBothEngines(params);
}

TEST(EventFlood, Clicks_AtOneMoment_Handled) {
    Params params = calmRequest();
    for (int i = 0; i < kFlood; ++i) {
        params.cursorActions().push_back({kMoment, i % 2});
    }
    askBothEngines(params);
}

TEST(EventFlood, PressesWithoutRelease_AtOneMoment_Handled) {
    Params params = calmRequest();
    params.cursorActions().clear();
    for (int i = 0; i < kFlood; ++i) {
        params.cursorActions().push_back({kMoment, 0});
    }
    askBothEngines(params);
}

TEST(EventFlood, WheelSteps_AtOneMoment_Handled) {
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        params.cursorActions().push_back({kMoment, 6 + i % 2});
    }
    askBothEngines(params);
}

TEST(EventFlood, UnknownActions_AtOneMoment_SteppedOver) {
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        params.cursorActions().push_back({kMoment, i % 2 == 0 ? 8 + i : -i});
    }
    askBothEngines(params);
}

TEST(EventFlood, Windows_AtOneMoment_Handled) {
    Params params = calmRequest();
    for (int i = 0; i < kFlood; ++i) {
        params.foreWindows().push_back({kMoment, {i % 100, 400 + i % 100, 100, 500}});
    }
    askBothEngines(params);
}

TEST(EventFlood, EqualDirtyRects_AtOneMoment_AreOneArea) {
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        params.dirtyRects().push_back({kMoment, {100, 400, 100, 500}});
    }
    askBothEngines(params);
}

TEST(EventFlood, ScatteredDirtyRects_AtOneMoment_Handled) {
    Params params = calmRequest();
    for (int i = 0; i < kFlood; ++i) {
        const std::int32_t x = i % 400 * 3;
        const std::int32_t y = i / 400 * 3;
        params.dirtyRects().push_back({kMoment, {x, x + 1, y, y + 1}});
    }
    askBothEngines(params);
}

TEST(EventFlood, Carets_AtOneMoment_SteppedOver) {
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        params.caretRects().push_back({kMoment, {i % 1000, i % 1000 + 1, 100, 120}});
    }
    askBothEngines(params);
}

TEST(EventFlood, Regions_AtOneMoment_LeaveNoZoneBetween) {
    Params params = calmRequest();
    for (int i = 0; i < kMillion; ++i) {
        params.recordingRegions().push_back({kMoment, {0, 1280 - i % 10, 0, 800}});
    }
    askBothEngines(params);
}

TEST(EventFlood, PressWithoutRelease_AmongAMillionActions_Handled) {
    // Every third code is a press of the second button, and its release never comes: a search for it that starts anew
    // for each press reads the rest of the stream every time.
    Params params = calmRequest();
    params.cursorActions().clear();
    for (int i = 0; i < kMillion; ++i) {
        constexpr std::int32_t kCodes[] = {0, 1, 2};
        params.cursorActions().push_back({i / 50, kCodes[i % 3]});
    }
    params.setClipInterval(0, 100); // the search is the same for the first presses as for all
    askValueEngine(params);
}

TEST(EventFlood, OnePress_AmongAMillionWheelSteps_Handled) {
    Params params = calmRequest();
    params.cursorActions().clear();
    params.cursorActions().push_back({0, 0});
    for (int i = 0; i < kMillion; ++i) {
        params.cursorActions().push_back({i / 50, 6 + i % 2});
    }
    askBothEngines(params);
}

} // namespace
} // namespace OrvantaNS::testing
