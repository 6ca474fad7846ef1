#include "DirtyRectFlood.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "DataParser.h"
#include "Params.h"

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
