// Crowds at a few places, of which some leave together and come back, while areas over all of them come and go: most that
// leave are stood in for by others, and must be missed by nobody. The plain graph does the same one by one.
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "PlainValueSpace.h"
#include "Random.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::PlainValueSpace;
using testing::Random;
using testing::sameGraph;

class CrowdedGraphsTest : public ::testing::Test {
protected:
    // Edges on multiples of 20 pixels, so that two places are equal or too different to share a space.
    static Rectangle anyRect(Random& random, std::int32_t columns, std::int32_t rows) {
        const std::int32_t left = random.range(0, columns - 1);
        const std::int32_t top = random.range(0, rows - 1);
        return {left * 20, random.range(left + 1, columns) * 20, top * 20, random.range(top + 1, rows) * 20};
    }

    // `together` is the chance that several leave at once; objects come back unless they are `fresh` each time.
    static void live(std::uint64_t seed, std::int32_t columns, int places, int steps, double together, bool fresh) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        Random random(seed);
        OV_DATA_STORE store;
        const auto add = [&](const Rectangle& rect) { store.valueObjects.push_back({Click, 0.0, 1.0, rect, 1.0}); };
        std::vector<Rectangle> rects;
        rects.reserve(static_cast<std::size_t>(places));
        for (int k = 0; k < places; ++k) {
            rects.push_back(anyRect(random, columns, 6));
        }
        const auto anyPlace = [&] { return rects[static_cast<std::size_t>(random.range(0, places - 1))]; };
        for (int k = 0; k < 45; ++k) {
            add(anyPlace());
        }
        ValueSpace space(&store);
        PlainValueSpace plain(store.valueObjects);
        for (int step = 0; step < steps; ++step) {
            std::vector<std::uint32_t> present = space.listObjects();
            if (present.size() < 26 || random.chance(0.5)) {
                if (fresh) {
                    add(random.chance(0.8) ? anyPlace() : anyRect(random, columns, 6));
                }
                const auto object = static_cast<std::uint32_t>(
                    fresh ? store.valueObjects.size() - 1
                          : static_cast<std::size_t>(random.range(0, static_cast<int>(store.valueObjects.size()) - 1)));
                space.insertObject(object);
                plain.insertObject(object);
            } else {
                std::vector<std::uint32_t> leaving;
                const double share = random.chance(together) ? 0.3 : 0.0;
                const auto one = static_cast<std::size_t>(random.range(0, static_cast<int>(present.size()) - 1));
                for (std::size_t k = 0; k < present.size(); ++k) {
                    if (k == one || random.chance(share)) {
                        leaving.push_back(present[k]);
                    }
                }
                space.deleteObjects(leaving);
                for (const std::uint32_t object : leaving) {
                    plain.deleteObject(object);
                }
            }
            ASSERT_TRUE(sameGraph(space, plain)) << "step " << step;
        }
    }
};

TEST_F(CrowdedGraphsTest, ThoseThatLeaveAndComeBack_EqualThePlainGraph) {
    for (std::uint64_t seed = 1; seed <= 60 && !HasFatalFailure(); ++seed) {
        live(seed, 4 + static_cast<std::int32_t>(seed % 5), 4 + static_cast<int>(seed % 7), 120, 0.3, false);
    }
}

TEST_F(CrowdedGraphsTest, ThoseThatComeAnewEachTime_EqualThePlainGraph) {
    // In the run of the last seed a parent turns out to hold what another one holds, at a place where others stand in.
    std::vector<std::uint64_t> seeds(100);
    std::iota(seeds.begin(), seeds.end(), std::uint64_t{1});
    seeds.push_back(3165);
    for (const std::uint64_t seed : seeds) {
        live(seed, 4 + static_cast<std::int32_t>(seed % 5), 2 + static_cast<int>(seed % 9), 120, 0.3, true);
        if (HasFatalFailure()) {
            return;
        }
    }
}

} // namespace
} // namespace OrvantaNS
