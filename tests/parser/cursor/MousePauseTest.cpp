#include "parser/DataParser.h"

#include <gtest/gtest.h>

#include <limits>

#include "Random.h"
#include "frame/WrappingArithmetic.h"
#include "parser/cursor/StrokePauses.h"

namespace OrvantaNS {
namespace {

// Ticks are milliseconds in this file: a pause is a rest of more than 200 of them.
class MousePauseTest : public ::testing::Test {
protected:
    void SetUp() override { DataParser::StoreTimeScale = 1000.0; }

    void stroke(long long first, long long last) {
        MOUSE_STROKE stroke;
        stroke.points = {{first, 0, 0}, {last, 50, 0}};
        parser_.keptStrokes.push_back(stroke);
    }

    DataParser parser_;
};

// The rule as it is told: from each stroke at the moment, a walk back to the first pause.
double walkBackFromEach(const DataParser& parser, double time) {
    const auto first = [&](std::size_t i) { return parser.keptStrokes[i].points.front().time; };
    const auto last = [&](std::size_t i) { return parser.keptStrokes[i].points.back().time; };
    long long moment = DataParser::revertTime(time);
    const long long pause = truncateToInt64(DataParser::StoreTimeScale * 0.2 + 0.5);
    for (std::size_t i = parser.pauseStroke; i < parser.keptStrokes.size(); ++i) {
        if (last(i) < moment || first(i) > wrapAdd(moment, pause)) {
            continue;
        }
        moment = first(i);
        for (std::size_t before = i; before-- > 0;) {
            if (wrapAdd(last(before), pause) < moment) {
                return DataParser::convertTime(moment);
            }
            moment = first(before);
        }
    }
    return time;
}

TEST_F(MousePauseTest, NoStrokes_GivesTheTimeItself) { EXPECT_EQ(parser_.findLastMousePause(12.5), 12.5); }

TEST_F(MousePauseTest, StrokeAtTheMomentAfterAPause_GivesItsStart) {
    stroke(1000, 2000);
    stroke(5000, 6000);
    EXPECT_EQ(parser_.findLastMousePause(5.5), 5.0);
}

TEST_F(MousePauseTest, MomentAtEitherEndOfTheStroke_CountsAsInIt) {
    stroke(1000, 2000);
    stroke(5000, 6000);
    EXPECT_EQ(parser_.findLastMousePause(6.0), 5.0);
    EXPECT_EQ(parser_.findLastMousePause(6.001), 6.001);
    EXPECT_EQ(parser_.findLastMousePause(5.0), 5.0);
}

TEST_F(MousePauseTest, StrokeThatBeginsSoonAfterTheMoment_CountsUpToTheLengthOfAPause) {
    stroke(1000, 2000);
    stroke(5000, 6000);
    EXPECT_EQ(parser_.findLastMousePause(4.801), 5.0);
    EXPECT_EQ(parser_.findLastMousePause(4.8), 5.0);
    EXPECT_EQ(parser_.findLastMousePause(4.799), 4.799);
}

TEST_F(MousePauseTest, BreakOfExactlyThePause_IsPassedOver) {
    stroke(1000, 2000);
    stroke(4000, 5000);
    stroke(5200, 6000);
    EXPECT_EQ(parser_.findLastMousePause(5.5), 4.0);
}

TEST_F(MousePauseTest, BreakOneTickLongerThanThePause_StopsTheWalk) {
    stroke(1000, 2000);
    stroke(4000, 5000);
    stroke(5201, 6000);
    EXPECT_EQ(parser_.findLastMousePause(5.5), 5.201);
}

TEST_F(MousePauseTest, SeveralShortBreaks_LeadBackToTheStartOfTheRun) {
    stroke(0, 100);
    stroke(1000, 1900);
    stroke(2000, 2900);
    stroke(3000, 3900);
    EXPECT_EQ(parser_.findLastMousePause(3.5), 1.0);
}

TEST_F(MousePauseTest, FirstStrokeOfAll_IsNoAnswer) {
    stroke(1000, 9000);
    EXPECT_EQ(parser_.findLastMousePause(5.0), 5.0);
}

TEST_F(MousePauseTest, RunThatReachesTheFirstStroke_IsNoAnswer) {
    stroke(1000, 2000);
    stroke(2100, 3000);
    EXPECT_EQ(parser_.findLastMousePause(2.5), 2.5);
}

// The run back to the first stroke moves the moment to 1.0; the stroke at 1.15 starts within 0.2 s of that, and the one
// between them ended long before it did: strokes out of order, which a recording does not have, show the rule.
TEST_F(MousePauseTest, AfterARunToTheFirstStroke_LaterStrokesAreTriedFromThere) {
    stroke(1000, 8000);
    stroke(900, 910);
    stroke(1150, 1160);
    EXPECT_EQ(parser_.findLastMousePause(5.0), 1.15);
}

// From the first stroke the moment goes back to 1.0. What comes next began later but tells of earlier times, as a clock
// that is put back makes them, and does not reach that moment: it leads nowhere, though the last one follows a pause.
TEST_F(MousePauseTest, StrokeThatStopsBeforeTheMoment_IsPassedOverThoughItBeginsSoonAfter) {
    stroke(1000, 3000);
    stroke(1010, 700);
    stroke(1015, 900);
    EXPECT_EQ(parser_.findLastMousePause(2.0), 2.0);
    EXPECT_EQ(StrokePauses(parser_).lastBefore(2.0), 2.0);
}

TEST_F(MousePauseTest, PauseStroke_IsWhereTheSearchStartsButNotWhereTheWalkBackEnds) {
    stroke(0, 100);
    stroke(1000, 2000);
    stroke(2100, 3000);
    parser_.pauseStroke = 2;
    EXPECT_EQ(parser_.findLastMousePause(2.5), 1.0);
    parser_.pauseStroke = 3;
    EXPECT_EQ(parser_.findLastMousePause(2.5), 2.5);
}

TEST_F(MousePauseTest, TicksOfATenthOfAMicrosecond_PauseIsTwoMillionOfThem) {
    DataParser::StoreTimeScale = 10000000.0;
    stroke(0, 10000000);
    stroke(30000000, 40000000);
    stroke(42000000, 50000000);
    EXPECT_EQ(parser_.findLastMousePause(4.5), 3.0);
    parser_.keptStrokes[2].points[0].time = 42000001;
    EXPECT_DOUBLE_EQ(parser_.findLastMousePause(4.5), 4.2000001);
}

TEST_F(MousePauseTest, AnyStrokesInOrderOrNot_AgreeWithTheWalkBackFromEach) {
    for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        parser_ = DataParser();
        const bool isOrdered = random.chance(0.5);
        const bool overlaps = random.chance(0.5);
        long long now = 0;
        for (int i = random.range(0, 12); i > 0; --i) {
            now = isOrdered ? now + random.range(0, 450) : random.range(0, 3000);
            const long long last = now + (overlaps ? random.range(-300, 1500) : random.range(0, 400));
            stroke(now, last);
            now = overlaps ? now : last;
        }
        parser_.pauseStroke = random.chance(0.2) ? static_cast<std::uint32_t>(random.range(0, 12)) : 0;
        const StrokePauses pauses(parser_);
        for (int i = 0; i < 10; ++i) {
            const double time = random.range(-300, 4000) / 1000.0;
            ASSERT_EQ(parser_.findLastMousePause(time), walkBackFromEach(parser_, time)) << "time " << time;
            ASSERT_EQ(pauses.lastBefore(time), walkBackFromEach(parser_, time)) << "time " << time;
        }
    }
}

TEST_F(MousePauseTest, StrokesAtTheEndsOfTheClock_Wrap) {
    constexpr long long last = std::numeric_limits<long long>::max();
    stroke(0, 100);
    stroke(last - 50, last);
    const StrokePauses pauses(parser_);
    for (const double time : {5.0, 1e300, -1e300}) {
        EXPECT_EQ(parser_.findLastMousePause(time), walkBackFromEach(parser_, time)) << time;
        EXPECT_EQ(pauses.lastBefore(time), walkBackFromEach(parser_, time)) << time;
    }
}

} // namespace
} // namespace OrvantaNS
