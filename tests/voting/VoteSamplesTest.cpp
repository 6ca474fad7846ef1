#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "LiteralVoting.h"
#include "VotingScene.h"

namespace OrvantaNS {

namespace {

using testing::LiteralVoting;
using Samples = std::vector<std::pair<long long, Rectangle>>;

const OrvantaVotingAlgorithm engine;

// Samples that can be compared.
Samples plain(const OrvantaVotingAlgorithm::Samples& samples) {
    Samples result;
    for (const OV_TIME_RECT& sample : samples) {
        result.emplace_back(sample.time, sample.rect);
    }
    return result;
}

Rectangle point(int x, int y) { return {x, x, y, y}; }

TEST(CursorSamplesTest, Codes_OnlyTheFirstTwoPressesCount) {
    Params params;
    params.cursorLocations() = {{0, 7, 9}};
    for (int code = -1; code <= 9; ++code) {
        params.cursorActions().push_back({100 + code, code});
    }
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)), (Samples{{100, point(7, 9)}, {102, point(7, 9)}}));
}

TEST(CursorSamplesTest, Location_AtTheActionsTickCounts_OneTickLaterDoesNot) {
    Params params;
    params.cursorLocations() = {{10, 1, 1}, {20, 2, 2}, {30, 3, 3}};
    params.cursorActions() = {{19, 0}, {20, 0}, {29, 2}, {30, 2}, {99, 0}};
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)),
              (Samples{{19, point(1, 1)}, {20, point(2, 2)}, {29, point(2, 2)}, {30, point(3, 3)}, {99, point(3, 3)}}));
}

TEST(CursorSamplesTest, Locations_AtTheSameTick_TheLastOneCounts) {
    Params params;
    params.cursorLocations() = {{10, 1, 1}, {10, 2, 2}, {10, 3, 3}, {11, 4, 4}};
    params.cursorActions() = {{10, 0}};
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)), (Samples{{10, point(3, 3)}}));
}

TEST(CursorSamplesTest, NoEarlierLocation_TakesThePointOfTheKeptActionBefore_AtFirstTheOrigin) {
    Params params;
    params.cursorLocations() = {{10, 5, 6}};
    // The third action is out of order, so that a point is there to fall back on.
    params.cursorActions() = {{9, 0}, {10, 0}, {3, 2}};
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)),
              (Samples{{9, point(0, 0)}, {10, point(5, 6)}, {3, point(5, 6)}}));
    params.cursorLocations().clear();
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)),
              (Samples{{9, point(0, 0)}, {10, point(0, 0)}, {3, point(0, 0)}}));
}

TEST(CursorSamplesTest, SkippedAction_LeavesNoPointBehind) {
    Params params;
    params.cursorLocations() = {{10, 5, 6}};
    params.cursorActions() = {{10, 1}, {3, 0}};
    EXPECT_EQ(plain(engine.actionVectorForCursorData(params)), (Samples{{3, point(0, 0)}}));
}

TEST(CursorSamplesTest, AnyLocations_SortedOrNot_EqualAScanOfTheWholeList) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937_64 random(seed);
        const auto tick = [&] { return static_cast<long long>(random() % 40) - 5; };
        Params params;
        for (std::size_t i = random() % 30; i > 0; --i) {
            params.cursorLocations().push_back({tick(), static_cast<int>(i), 0});
        }
        if (seed % 2 == 0) {
            std::stable_sort(params.cursorLocations().begin(), params.cursorLocations().end(),
                             [](const auto& a, const auto& b) { return a.time < b.time; });
        }
        for (std::size_t i = random() % 30; i > 0; --i) {
            params.cursorActions().push_back({tick(), static_cast<int>(random() % 3)});
        }
        EXPECT_EQ(plain(engine.actionVectorForCursorData(params)), plain(LiteralVoting::clicks(params)));
    }
}

TEST(WindowSamplesTest, RepeatedRectangle_CountsOnce) {
    Params params;
    const Rectangle a{10, 20, 10, 20};
    params.foreWindows() = {{1, a}, {2, a}, {3, a}};
    EXPECT_EQ(plain(engine.actionVectorForFrontmostWindowData(params)), (Samples{{1, a}}));
}

TEST(WindowSamplesTest, WindowThatMovesAwayAndBack_CountsThreeTimes) {
    Params params;
    const Rectangle a{10, 20, 10, 20};
    const Rectangle b{10, 20, 10, 21};
    params.foreWindows() = {{1, a}, {2, a}, {3, b}, {4, a}};
    EXPECT_EQ(plain(engine.actionVectorForFrontmostWindowData(params)), (Samples{{1, a}, {3, b}, {4, a}}));
}

TEST(WindowSamplesTest, AllZeroRectangle_IsDroppedAtFirstAndCountsAfterAWindow) {
    Params params;
    const Rectangle a{10, 20, 10, 20};
    params.foreWindows() = {{1, {}}, {2, {}}, {3, a}, {4, {}}};
    EXPECT_EQ(plain(engine.actionVectorForFrontmostWindowData(params)), (Samples{{3, a}, {4, {}}}));
}

} // namespace
} // namespace OrvantaNS
