#include "OrvantaVotingAlgorithm.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <thread>
#include <type_traits>

#include "LiteralVoting.h"
#include "VotingScene.h"

namespace OrvantaNS {
namespace {

using testing::addClick;
using testing::addWindow;
using testing::LiteralVoting;
using testing::ReportLog;
using testing::squareRecording;

const OrvantaVotingAlgorithm engine;

constexpr long long kFirstTick = std::numeric_limits<long long>::lowest();
constexpr long long kLastTick = std::numeric_limits<long long>::max();

static_assert(std::is_base_of_v<Orvanta, OrvantaVotingAlgorithm>);
static_assert(sizeof(OrvantaVotingAlgorithm) == sizeof(Orvanta), "an engine has no data");

constexpr Rectangle kWhole{0, 1024, 0, 1024};
constexpr Rectangle kTopLeft{0, 256, 0, 256};
constexpr Rectangle kBottomRight{768, 1024, 768, 1024};

std::vector<std::pair<long long, Rectangle>> keyframes(const Params& params) {
    std::vector<std::pair<long long, Rectangle>> result;
    const auto list = engine.calcOrvantaKeyframes(params, nullptr);
    for (const OV_TIME_RECT& keyframe : *list) {
        result.emplace_back(keyframe.time, keyframe.rect);
    }
    return result;
}

using Keyframes = std::vector<std::pair<long long, Rectangle>>;

Rectangle rectAt(const Params& params, long long time) {
    const auto result = engine.calcOrvantaKeyframeAtTime(params, time);
    EXPECT_EQ(result->size(), 1u);
    EXPECT_EQ(result->front().time, time);
    return result->front().rect;
}

TEST(VotingKeyframesTest, NoVotes_GiveAnEmptyArrayAndReport100) {
    ReportLog log;
    const auto result = engine.calcOrvantaKeyframes(squareRecording(), &log);
    ASSERT_NE(result, nullptr);
    EXPECT_TRUE(result->empty());
    EXPECT_EQ(log.percents, (std::vector<double>{100.0}));
}

TEST(VotingKeyframesTest, OneClick_GivesOneKeyframeAtTheStartOfItsRange) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    for (const long long fade : {-5, 0, 1, 100, 1000}) {
        EXPECT_EQ(keyframes(params.setFadeDuration(fade)), (Keyframes{{950, kTopLeft}})) << fade;
    }
    Params early = squareRecording();
    addClick(early, 10, 128, 128);
    EXPECT_EQ(keyframes(early), (Keyframes{{0, kTopLeft}}));
}

TEST(VotingKeyframesTest, TwoClicksInTwoPlaces_ThePanWaitsForTheFade) {
    // Ticks 50 to 199 vote for the top left with 32, ticks 100 to 249 for the bottom right with 32; the tie of 100 to
    // 199 goes to the lower index. All ticks are equally strong, so they are taken from the first on, a fade apart:
    // at 60 that is 50, 110, 170 and 230. At 100 it is 50 and 150, both of the top left.
    Params params = squareRecording();
    addClick(params, 100, 128, 128);
    addClick(params, 150, 896, 896);
    EXPECT_EQ(keyframes(params.setFadeDuration(60)), (Keyframes{{50, kTopLeft}, {230, kBottomRight}}));
    EXPECT_EQ(keyframes(params.setFadeDuration(100)), (Keyframes{{50, kTopLeft}}));
    EXPECT_EQ(keyframes(params.setFadeDuration(0)), (Keyframes{{50, kTopLeft}, {200, kBottomRight}}));
}

TEST(VotingKeyframesTest, StrongerMoment_PushesOutAWeakerOneBeforeIt) {
    // The click's ticks 950 to 1099 have 32 votes for the bottom right; from 1067 on the window has 80 for the top
    // left. 1067 is taken first, then every 50 from there; of 950 to 1066 only 950 to 1017 are left, from the first on.
    Params params = squareRecording();
    addClick(params, 1000, 896, 896);
    addWindow(params, 1100, {64, 192, 64, 192});
    EXPECT_EQ(keyframes(params.setFadeDuration(50)), (Keyframes{{950, kBottomRight}, {1067, kTopLeft}}));
    EXPECT_EQ(keyframes(params.setFadeDuration(117)), (Keyframes{{950, kBottomRight}, {1067, kTopLeft}}));
    EXPECT_EQ(keyframes(params.setFadeDuration(118)), (Keyframes{{1067, kTopLeft}}));
}

TEST(VotingKeyframesTest, WindowThatOnlyTheWholeHolds_ShowsTheWhole) {
    Params params = squareRecording();
    addWindow(params, 1000, {0, 1024, 0, 700});
    EXPECT_EQ(keyframes(params), (Keyframes{{967, kWhole}}));
}

TEST(VotingKeyframesTest, EqualTargetsSideBySide_TheLowestIndexWins) {
    // Of the 16 targets of 1023 by 1023 nine stand at (0, 0); the ballot names all, and only rectangles come out.
    Params params = squareRecording();
    params.setTargetWidth(1023).setTargetHeight(1023);
    addClick(params, 1000, 511, 511);
    EXPECT_EQ(keyframes(params), (Keyframes{{950, {0, 1023, 0, 1023}}}));
}

TEST(VotingKeyframesTest, Progress_GoesTo30ThenFrom50To70ThenTo100) {
    Params params = squareRecording();
    params.setTimeScale(2.0); // a click votes at 1 tick before and 2 after
    addClick(params, 100, 128, 128);
    addClick(params, 200, 128, 128);
    ReportLog log;
    engine.calcOrvantaKeyframes(params, &log);
    std::vector<double> expected{7.5, 15.0};
    for (int n = 1; n <= 6; ++n) {
        expected.push_back(50 + 20 * (n / 6.0));
    }
    expected.push_back(100.0);
    EXPECT_EQ(log.percents, expected);
    EXPECT_EQ(log.cancelQuestions, 0);
}

TEST(VotingKeyframeAtTimeTest, BetweenVotedStretches_AnswersFromTheNextOne) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    addClick(params, 900000, 896, 896);
    EXPECT_EQ(rectAt(params, kFirstTick), kTopLeft);
    EXPECT_EQ(rectAt(params, 0), kTopLeft);
    EXPECT_EQ(rectAt(params, 1099), kTopLeft);
    EXPECT_EQ(rectAt(params, 1100), kBottomRight);
    EXPECT_EQ(rectAt(params, 900099), kBottomRight);
}

TEST(VotingKeyframeAtTimeTest, AfterTheLastVote_AnswersTheWhole) {
    Params params = squareRecording();
    addClick(params, 1000, 128, 128);
    EXPECT_EQ(rectAt(params, 1100), kWhole);
    EXPECT_EQ(rectAt(params, kLastTick), kWhole);
    EXPECT_EQ(rectAt(squareRecording(), 5), kWhole);
}

TEST(VotingKeyframeAtTimeTest, SumBelowOneVote_IsEnoughToWin) {
    // Windows whose edges stand in the wrong order, far off the centre of what holds them. The first is held by the
    // whole alone and takes some 24000 votes from it. The second, its middle at (1600, 320), is held by the upper row
    // of middle targets and the whole. It is 896 of 640 off the right one of the row, 1 - 0.98, times 20 and 2; from
    // the other two it takes votes.
    Params params = squareRecording();
    addWindow(params, 1000, {100000, 1024, 0, 1024});
    addWindow(params, 1000, {3200, 0, 10, 630});
    EXPECT_EQ(rectAt(params, 1000), (Rectangle{384, 1024, 0, 640}));
    EXPECT_EQ(keyframes(params), (Keyframes{{967, {384, 1024, 0, 640}}}));
}

TEST(VotingKeyframeAtTimeTest, FadePlaysNoPart) {
    Params params = squareRecording();
    addClick(params, 1000, 896, 896);
    addWindow(params, 1100, {64, 192, 64, 192});
    params.setFadeDuration(100000);
    EXPECT_EQ(rectAt(params, 1066), kBottomRight);
    EXPECT_EQ(rectAt(params, 1067), kTopLeft);
}

TEST(VotingKeyframeAtWindowTest, AlwaysNull_EvenForABadRequest) {
    EXPECT_EQ(engine.calcKeyframeAtWindow(Params{}), nullptr);
    Params params = squareRecording();
    addWindow(params, 0, {0, 10, 0, 10});
    EXPECT_EQ(engine.calcKeyframeAtWindow(params), nullptr);
}

TEST(VotingKeyframesTest, TenMillionTicksASecond_AnswersAsAtAHundred) {
    // The same scene at both rates, with times that are whole at both.
    const auto scene = [](long long scale) {
        Params params = squareRecording();
        params.setTimeScale(static_cast<double>(scale)).setFadeDuration(scale);
        addClick(params, 10 * scale, 128, 128);
        addClick(params, 11 * scale, 896, 896);
        addClick(params, 3000 * scale, 900, 100);
        addWindow(params, 12 * scale, {500, 700, 500, 700});
        return keyframes(params);
    };
    const Keyframes coarse = scene(300);
    const Keyframes fine = scene(10000002);
    ASSERT_EQ(coarse.size(), fine.size());
    ASSERT_GE(coarse.size(), 3u);
    for (std::size_t i = 0; i < coarse.size(); ++i) {
        EXPECT_EQ(coarse[i].second, fine[i].second);
        EXPECT_NEAR(static_cast<double>(coarse[i].first) / 300.0, static_cast<double>(fine[i].first) / 10000002.0,
                    0.01);
    }
}

// ---- Generated requests ----

class Generator {
public:
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    Params request() {
        Params params;
        const int w = size();
        const int h = pick(4) == 0 ? w : size();
        const int left = pick(3) == 0 ? 0 : pick(2000) - 1000;
        const int top = pick(3) == 0 ? 0 : pick(2000) - 1000;
        params.recordingRegions().push_back({0, {left, left + w, top, top + h}});
        params.setTargetWidth(pick(5) == 0 ? w - 1 : 64 + pick(w - 64));
        params.setTargetHeight(pick(5) == 0 ? h - 1 : 64 + pick(h - 64));
        const int rate = tickRate();
        params.setTimeScale(pick(4) == 0 ? rate + pick(1000) / 1000.0 : rate);
        params.setFadeDuration(fade(rate));
        params.setClipInterval(pick(100), pick(10000));

        const long long origins[] = {0, 0, 0, 5000, kLastTick - 200, kFirstTick + 100};
        const long long origin = origins[pick(6)];
        const int spread = 1 + rate * (1 + pick(25));
        std::vector<long long> times;
        for (int i = pick(rate > 300 ? 6 : 15); i > 0; --i) {
            times.push_back(wrapAdd<long long>(origin, pick(spread) - spread / 8));
        }
        if (pick(10) != 0) {
            std::sort(times.begin(), times.end());
        }
        // Few distinct places, so that equal closeness and equal sums are common.
        const int places = 1 + pick(6);
        for (const long long time : times) {
            switch (pick(3)) {
            case 0:
                params.foreWindows().push_back({time, window(w, h)});
                break;
            case 1:
                params.cursorLocations().push_back({time, place(w, places), place(h, places)});
                break;
            default:
                params.cursorLocations().push_back({time, place(w, places), place(h, places)});
                params.cursorActions().push_back({time, pick(4)});
            }
        }
        return params;
    }

    int pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

private:
    int size() { return pick(3) == 0 ? 65 + pick(8) : 66 + pick(1500); }
    int tickRate() {
        switch (pick(10)) {
        case 0:
            return 300 + pick(701);
        case 1:
        case 2:
        case 3:
            return 60 + pick(240);
        default:
            return 1 + pick(60);
        }
    }
    long long fade(int rate) {
        switch (pick(12)) {
        case 0:
            return kLastTick - pick(3);
        case 1:
            return pick(2) == 0 ? kFirstTick + pick(3) : -1000 + pick(10);
        case 2:
        case 3:
        case 4:
            return pick(20);
        case 5:
        case 6:
        case 7:
        case 8:
            return -5 + pick(6 + rate);
        default:
            return -5 + pick(1006);
        }
    }
    int place(int length, int places) { return length * (pick(places + 2) - (pick(9) == 0 ? 1 : 0)) / (places + 1); }
    Rectangle window(int w, int h) {
        if (pick(8) == 0) {
            return {};
        }
        Rectangle r{place(w, 6), place(w, 6), place(h, 6), place(h, 6)};
        return pick(5) == 0 ? r
                            : Rectangle{std::min(r.left, r.right), std::max(r.left, r.right), std::min(r.top, r.bottom),
                                        std::max(r.top, r.bottom)};
    }

    std::mt19937_64 random_;
};

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
    });
}

// In parts, as the tick-by-tick tally is slow under sanitizers.
constexpr std::uint64_t kSeedsInAPart = 500;

class VotingEquivalence : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(VotingEquivalence, GeneratedRequests_EqualTheTickByTickTally) {
    std::size_t withKeyframes = 0;
    std::size_t withSeveral = 0;
    for (std::uint64_t seed = GetParam(); seed < GetParam() + kSeedsInAPart; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Generator generator(seed);
        const Params params = generator.request();
        ReportLog expectedLog;
        ReportLog log;
        const std::vector<OV_TIME_RECT> expected = LiteralVoting::keyframes(params, &expectedLog);
        const auto actual = engine.calcOrvantaKeyframes(params, &log);
        ASSERT_EQ(actual->size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ((*actual)[i].time, expected[i].time) << "keyframe " << i;
            ASSERT_EQ((*actual)[i].rect, expected[i].rect) << "keyframe " << i;
        }
        ASSERT_TRUE(sameBits(log.percents, expectedLog.percents));
        withKeyframes += expected.empty() ? 0 : 1;
        withSeveral += expected.size() > 2 ? 1 : 0;

        const auto silent = engine.calcOrvantaKeyframes(params, nullptr);
        ASSERT_EQ(silent->size(), expected.size());

        const LiteralVoting::Targets targets = LiteralVoting::ballot(params);
        LiteralVoting::Votes votes;
        LiteralVoting::cast(params, votes, targets, nullptr, 0, 0);
        std::vector<long long> times{kFirstTick, -1, 0, kLastTick};
        for (const OV_TIME_RECT& keyframe : expected) {
            times.insert(times.end(), {keyframe.time, wrapSub(keyframe.time, 1LL), wrapAdd(keyframe.time, 1LL)});
        }
        for (int i = 0; i < 6 && !votes.empty(); ++i) {
            times.push_back(std::next(votes.begin(), generator.pick(static_cast<int>(votes.size())))->first);
        }
        for (const long long time : times) {
            ASSERT_EQ(engine.calcOrvantaKeyframeAtTime(params, time)->front().rect,
                      LiteralVoting::keyframeAt(votes, targets, time).rect)
                << "time " << time;
        }
    }
    // The requests are no good if most of them ask for nothing.
    EXPECT_GT(withKeyframes, 300u);
    EXPECT_GT(withSeveral, 80u);
}

INSTANTIATE_TEST_SUITE_P(FromSeed, VotingEquivalence, ::testing::Values(1, 501, 1001, 1501, 2001));

TEST(VotingThreadsTest, EightThreadsAtOnce_GiveEqualResults) {
    std::vector<Params> requests;
    std::vector<std::vector<OV_TIME_RECT>> expected;
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        requests.push_back(Generator(seed).request());
        expected.push_back(*engine.calcOrvantaKeyframes(requests.back(), nullptr));
    }
    std::vector<int> differences(8, 0);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < differences.size(); ++t) {
        threads.emplace_back([&, t] {
            for (std::size_t i = 0; i < requests.size(); ++i) {
                const std::size_t request = (i + t * 5) % requests.size();
                ReportLog log;
                const auto actual = engine.calcOrvantaKeyframes(requests[request], &log);
                const auto moment = engine.calcOrvantaKeyframeAtTime(requests[request], 50);
                bool same = actual->size() == expected[request].size() && moment->size() == 1;
                for (std::size_t k = 0; same && k < actual->size(); ++k) {
                    same = (*actual)[k].time == expected[request][k].time &&
                           (*actual)[k].rect == expected[request][k].rect;
                }
                differences[t] += same ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, std::vector<int>(8, 0));
}

} // namespace
} // namespace OrvantaNS
