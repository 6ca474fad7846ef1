// The rectangle of a gesture over sorted samples is looked up; over unsorted ones it is found by reading them all. Both
// ways must agree wherever both can be taken.

#include <random>

#include <gtest/gtest.h>

#include "Params.h"
#include "parser/DataParser.h"

namespace OrvantaNS::testing {
namespace {

// Reads the samples one by one.
Rectangle literalClickRect(const Params& params, long long downTime, long long upTime, unsigned int& location) {
    OV_MOUSE_LOCATION press;
    OV_MOUSE_LOCATION release;
    bool reachedPress = false;
    for (unsigned int i = location; i < params.cursorLocations().size(); ++i) {
        const OV_MOUSE_LOCATION& sample = params.cursorLocations()[i];
        if (sample.time == downTime || (sample.time < downTime && !reachedPress)) {
            press = sample;
        }
        if (sample.time >= downTime) {
            reachedPress = true;
        }
        if (sample.time > upTime) {
            break;
        }
        release = sample;
        location = i;
    }
    return {std::min(press.x, release.x), std::max(press.x, release.x), std::min(press.y, release.y),
            std::max(press.y, release.y)};
}

TEST(ClickRect, GetClickRect_AnyStream_IsWhatReadingOneByOneGives) {
    for (unsigned seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        Params params;
        long long time = 3;
        for (unsigned i = 0; i < seed % 20; ++i) {
            time += random() % 3; // equal times are frequent
            if (seed % 4 == 0) {
                time = random() % 20;
            }
            params.cursorLocations().push_back(
                {time, static_cast<std::int32_t>(random() % 100), static_cast<std::int32_t>(random() % 100)});
        }
        params.cursorActions().push_back({0, 0});
        params.cursorActions().push_back({0, 1});
        DataParser parser;
        for (long long down = 0; down < 24; ++down) {
            for (long long up = 0; up < 24; ++up) {
                params.cursorActions()[0].time = down;
                params.cursorActions()[1].time = up;
                for (unsigned from = 0; from <= params.cursorLocations().size(); ++from) {
                    unsigned expectedLocation = from;
                    const Rectangle expected = literalClickRect(params, down, up, expectedLocation);
                    unsigned location = from;
                    ASSERT_EQ(parser.getClickRect(params, 0, 1, location), expected);
                    ASSERT_EQ(location, expectedLocation);
                }
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS::testing
