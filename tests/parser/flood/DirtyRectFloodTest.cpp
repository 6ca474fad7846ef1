#include "parser/flood/DirtyRectFlood.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "Params.h"
#include "frame/WrappingArithmetic.h"
#include "parser/DataParser.h"
#include "parser/damage/AreaMatch.h"

namespace OrvantaNS::testing {
namespace {

std::vector<DR_OBJECT_FRAME> oneByOne(const Params& params, std::uint32_t from, std::uint32_t to) {
    DataParser parser;
    std::vector<DR_OBJECT_FRAME> frames;
    for (std::uint32_t i = from; i < to; ++i) {
        parser.addDRToFrameSet(i, params, frames);
    }
    return frames;
}

void expectEqual(const Params& params) {
    const auto count = static_cast<std::uint32_t>(params.dirtyRects().size());
    const std::vector<DR_OBJECT_FRAME> expected = oneByOne(params, 0, count);
    const std::vector<DR_OBJECT_FRAME> actual = clusterFlood(params.dirtyRects(), 0, count);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i].dirtyRects, expected[i].dirtyRects);
        EXPECT_EQ(actual[i].rect, expected[i].rect);
        EXPECT_FALSE(actual[i].matched);
    }
}

TEST(DirtyRectFlood, ClusterFlood_RandomRects_GivesWhatOneByOneGives) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        // From a sparse screen of specks to a crowded one of panes.
        const std::int32_t screen = 100 << seed % 6;
        const std::int32_t size = 1 << seed % 11;
        Params params;
        for (int i = 0; i < 300; ++i) {
            const auto pick = [&](std::int32_t range) {
                return static_cast<std::int32_t>(random() % static_cast<unsigned>(range));
            };
            const std::int32_t x = pick(screen) - screen / 2;
            const std::int32_t y = pick(screen) - screen / 2;
            params.dirtyRects().push_back({0, {x, x + pick(size), y, y + pick(size)}});
        }
        expectEqual(params);
    }
}

TEST(DirtyRectFlood, ClusterFlood_OddRectsInBetween_GivesWhatOneByOneGives) {
    constexpr std::int32_t kEdges[] = {std::numeric_limits<std::int32_t>::lowest(),
                                       std::numeric_limits<std::int32_t>::lowest() + 1,
                                       -(1 << 30),
                                       -64,
                                       -1,
                                       0,
                                       1,
                                       63,
                                       64,
                                       65,
                                       128,
                                       5000,
                                       1 << 30,
                                       std::numeric_limits<std::int32_t>::max() - 1,
                                       std::numeric_limits<std::int32_t>::max()};
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Params params;
        for (int i = 0; i < 300; ++i) {
            const auto edge = [&] { return kEdges[random() % std::size(kEdges)]; };
            const auto speck = static_cast<std::int32_t>(random() % 300);
            params.dirtyRects().push_back({0, random() % 8 == 0
                                                  ? Rectangle{edge(), edge(), edge(), edge()}
                                                  : Rectangle{speck, speck + 3, speck % 17 * 9, speck % 17 * 9 + 2}});
        }
        expectEqual(params);
    }
}

TEST(DirtyRectFlood, ClusterFlood_RecordThatJoinsTwo_KeepsTheFirstsRectangle) {
    // Two specks 20 pixels apart, then one that touches both: the first takes the second in, without its rectangle.
    Params params;
    params.dirtyRects() = {{0, {0, 10, 0, 10}}, {0, {30, 40, 0, 10}}, {0, {10, 30, 0, 10}}};
    const std::vector<DR_OBJECT_FRAME> frames = clusterFlood(params.dirtyRects(), 0, 3);
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].rect, (Rectangle{0, 30, 0, 10}));
    EXPECT_EQ(frames[0].dirtyRects, (std::vector<std::uint32_t>{0, 1, 2}));
}

TEST(DirtyRectFlood, ClusterFlood_NoRecords_GivesNoCluster) {
    Params params;
    params.dirtyRects() = {{0, {0, 10, 0, 10}}, {0, {30, 40, 0, 10}}};
    for (const std::uint32_t at : {0U, 1U, 2U}) {
        EXPECT_TRUE(clusterFlood(params.dirtyRects(), at, at).empty()) << at;
    }
}

// Layouts that are dear to a search by place: one cluster that lies in between all others, many that one record joins,
// long thin ones, and clusters that only meet late.
TEST(DirtyRectFlood, ClusterFlood_EntangledLayouts_GiveWhatOneByOneGives) {
    const auto box = [](std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
        return Rectangle{x, x + w, y, y + h};
    };
    std::vector<Params> layouts(6);
    for (std::int32_t i = 0; i < 900; ++i) {
        layouts[0].dirtyRects().push_back({0, i % 2 == 0 ? box(i % 30 * 4, i / 30 * 50, 1, 49) : box(i, -9, 2, 8)});
        layouts[1].dirtyRects().push_back({0, i < 700 ? box(i % 30 * 5, i / 30 * 5, 3, 3) : box(0, 0, 150, 150)});
        layouts[2].dirtyRects().push_back({0, i % 2 == 0 ? box(0, i * 3, 2000, 2) : box(i * 7 % 2000, i * 3, 2, 2)});
        layouts[3].dirtyRects().push_back({0, box((i * 7 % 900) * 2, 0, 2, 2)});
        layouts[4].dirtyRects().push_back({0, box((i * 7 % 900) * 3, (i * 7 % 900) * 3, 2 + i % 2, 2 + i % 3)});
        layouts[5].dirtyRects().push_back({0, box(i / 3 * 9, 0, i % 3 == 2 ? 9 : 4, i % 3 * 4)});
    }
    for (std::size_t layout = 0; layout < layouts.size(); ++layout) {
        SCOPED_TRACE(layout);
        expectEqual(layouts[layout]);
    }
}

TEST(DirtyRectFlood, SimilarFrameFinder_AnyFrames_FindsTheFirstThatIsNotTaken) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto edge = [&](std::int32_t range) {
            constexpr std::int32_t kFar[] = {
                std::numeric_limits<std::int32_t>::lowest(), -(1 << 29) - 1, -(1 << 29), 1 << 29, (1 << 29) + 1,
                std::numeric_limits<std::int32_t>::max()};
            return random() % 50 == 0 ? kFar[random() % std::size(kFar)]
                                      : static_cast<std::int32_t>(random() % static_cast<unsigned>(range));
        };
        const std::int32_t screen = 50 << seed % 5;
        const auto rect = [&] {
            const std::int32_t left = edge(screen);
            const std::int32_t top = edge(screen);
            return Rectangle{left, wrapAdd(left, edge(40)), top, wrapAdd(top, edge(40))};
        };
        std::vector<DR_OBJECT_FRAME> frames(seed % 7 == 0 ? seed % 3 : 150);
        for (DR_OBJECT_FRAME& frame : frames) {
            frame.rect = rect();
            frame.matched = random() % 10 == 0;
        }
        SimilarFrameFinder finder(frames);
        for (int search = 0; search < 200; ++search) {
            const Rectangle seen = rect();
            std::size_t expected = 0;
            while (expected < frames.size() && (frames[expected].matched || !isSimilar(seen, frames[expected].rect))) {
                ++expected;
            }
            ASSERT_EQ(finder.find(seen), expected);
            if (expected < frames.size()) {
                frames[expected].matched = true;
                finder.take(expected);
            }
        }
    }
}

// A hundred thousand records of one moment, twice: no test could wait for the square of that.
TEST(DirtyRectFlood, PreProcessDR_FloodThatComesBack_FollowsEveryRectangle) {
    constexpr std::uint32_t count = 100000;
    const auto speck = [](std::uint32_t i, std::int32_t side) {
        const auto x = static_cast<std::int32_t>(i % 300 * 5);
        const auto y = static_cast<std::int32_t>(i / 300 * 5);
        return Rectangle{x, x + side, y, y + side};
    };
    Params params;
    for (std::uint32_t i = 0; i < count; ++i) {
        params.dirtyRects().push_back({5, speck(i, 3)});
    }
    params.dirtyRects().push_back({6, speck(0, 3)}); // stepped over
    for (std::uint32_t i = count; i > 0; --i) {
        params.dirtyRects().push_back({6, speck(i - 1, 4)});
    }
    DataParser::StoreTimeScale = 1000.0;
    OV_DATA_STORE store;
    store.liveZones.push_back({{0, 10000, 0, 10000}, 0.0, 1.0});
    DataParser parser;
    parser.preProcessDR(0, params, store);
    ASSERT_EQ(parser.drObjects.size(), count);
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(parser.drObjects[i].frames.size(), 2U);
        ASSERT_EQ(parser.drObjects[i].bounds, speck(i, 4));
    }
}

TEST(DirtyRectFlood, PreProcessDR_MomentsOnBothSidesOfTheLimit_GiveOneObjectEach) {
    // Disjoint specks, first as many as are clustered one by one, then one more.
    for (const std::uint32_t count : {kFloodRects, kFloodRects + 1}) {
        Params params;
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto x = static_cast<std::int32_t>(i * 10);
            params.dirtyRects().push_back({5, {x, x + 5, 0, 5}});
        }
        DataParser::StoreTimeScale = 1000.0;
        OV_DATA_STORE store;
        store.liveZones.push_back({{0, 10000, 0, 100}, 0.0, 1.0});
        DataParser parser;
        parser.preProcessDR(0, params, store);
        ASSERT_EQ(parser.drObjects.size(), count);
        EXPECT_EQ(parser.drObjects.back().bounds.left, static_cast<std::int32_t>(count - 1) * 10);
    }
}

} // namespace
} // namespace OrvantaNS::testing
