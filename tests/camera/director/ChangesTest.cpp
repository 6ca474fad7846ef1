#include "camera/director/Changes.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

using camera::clustered;
using camera::RealRect;

camera::Scene sceneOf(const Params& params) {
    return camera::readScene(params, params.recordingRegions().front().rect, params.clipStart(), params.clipStop());
}

TEST(ChangesTest, Clustered_GapAtTheLimit_Joins) {
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {20, 0, 30, 10}}, 10.0), (std::vector<RealRect>{{0, 0, 30, 10}}));
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {21, 0, 30, 10}}, 10.0).size(), 2u);
}

TEST(ChangesTest, Clustered_ChainsJoinThroughTheirMiddle) {
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {40, 0, 50, 10}, {15, 0, 35, 10}}, 5.0),
              (std::vector<RealRect>{{0, 0, 50, 10}}));
}

TEST(ChangesTest, Clustered_MoreThanSixty_AreOneArea) {
    std::vector<RealRect> rects;
    for (int i = 0; i < 61; ++i) {
        rects.push_back({i * 100.0, 0, i * 100.0 + 1, 1});
    }
    EXPECT_EQ(clustered(rects, 1.0), (std::vector<RealRect>{{0, 0, 6001, 1}}));
    rects.pop_back();
    EXPECT_EQ(clustered(rects, 1.0).size(), 60u);
}

TEST(ChangesTest, ReadChanges_BeatingLikeAClock_GetsLittleAttentionOnceItIsKnown) {
    Scene scene = recording();
    for (int i = 0; i < 30; ++i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30));
    }
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 30u);
    EXPECT_EQ(read.changes.front().attention, 1.0);
    EXPECT_LT(read.changes[10].attention, 0.2);
    EXPECT_LT(read.changes[29].attention, 0.2);
}

TEST(ChangesTest, ReadChanges_IrregularRepeats_KeepTheirAttention) {
    Scene scene = recording();
    const double gaps[] = {0.3, 1.1, 0.5, 2.0, 0.2, 0.9};
    double time = 5.0;
    for (int i = 0; i < 24; ++i) {
        scene.dirty(time, box(100, 100, 60, 30));
        time += gaps[i % 6];
    }
    for (const camera::SceneChange& change : sceneOf(scene).changes) {
        EXPECT_EQ(change.attention, 1.0);
    }
}

TEST(ChangesTest, ReadChanges_AnsweringTheWheel_IsNoClockwork) {
    Scene scene = recording();
    for (int i = 0; i < 30; ++i) {
        scene.action(5.0 + 0.5 * i, 7).dirty(5.1 + 0.5 * i, box(100, 100, 600, 300));
    }
    for (const camera::SceneChange& change : sceneOf(scene).changes) {
        EXPECT_EQ(change.attention, 1.0);
    }
}

/// A letter for each change in time: n for news, c for clockwork.
std::string attentions(const Params& params) {
    std::string letters;
    for (const camera::SceneChange& change : sceneOf(params).changes) {
        letters += change.attention == 1.0 ? 'n' : 'c';
    }
    return letters;
}

/// One place that is drawn after each of the gaps, from 5 s on.
std::string attentionsOf(const std::vector<double>& gaps) {
    Scene scene = recording();
    double time = 5.0;
    scene.dirty(time, box(100, 100, 60, 30));
    for (const double gap : gaps) {
        scene.dirty(time += gap, box(100, 100, 60, 30));
    }
    return attentions(scene);
}

TEST(ChangesTest, Clockwork_SixRepeatsOfWhichTheFirstIsTwoSecondsOld) {
    EXPECT_EQ(attentionsOf(std::vector<double>(5, 0.5)), "nnnncc");
    EXPECT_EQ(attentionsOf(std::vector<double>(4, 0.5)), "nnnnn");
}

TEST(ChangesTest, Clockwork_CountsSixSecondsToEitherSide) {
    // At two seconds a repeat has three before and three after it; those near the ends have fewer than six in all.
    EXPECT_EQ(attentionsOf(std::vector<double>(7, 2.0)), "nnccccnn");
    // At two and a quarter there are two and two.
    EXPECT_EQ(attentionsOf(std::vector<double>(20, 2.25)), std::string(21, 'n'));
}

TEST(ChangesTest, Clockwork_FasterThanTheRepeatsThatAreLookedAt) {
    // 25 pictures a second: the 48 repeats before one do not reach back for two seconds, and it beats all the same. Changes
    // of one step are one: the first eight steps are news, and the ninth begins two seconds after the first.
    EXPECT_EQ(attentionsOf(std::vector<double>(99, 0.04)), "nnnnnnnncccccccc");
}

TEST(ChangesTest, Clockwork_ThatPausedForLessThanSixSeconds_IsNoNews) {
    // At 1.5 s after a pause of 4.5 s the repeat before the pause is just six seconds old, and none lies between it and two
    // seconds ago.
    std::vector<double> gaps(13, 0.5);
    gaps.front() = 4.5;
    EXPECT_EQ(attentionsOf(gaps), "nccccccccccccc");
    gaps.front() = 4.75;
    // After 4.75 s it is older at the fourth one, and the fifth has the first one after the pause two seconds ago.
    EXPECT_EQ(attentionsOf(gaps), "ncccnccccccccc");
}

TEST(ChangesTest, Clockwork_LooksAt48RepeatsToEitherSide) {
    // Around 20 s gaps of a tenth of a second, and of half of that: 34 and 14 before it, 38 and 10 after it, which makes just
    // three of four alike. One more short gap on either side, or the gaps before it alone, would be too many short ones.
    const auto repeats = [](int even, int odd, int further) {
        std::vector<double> offsets;
        int milliseconds = 0;
        for (int i = 0; i < even + odd + further; ++i) {
            milliseconds += i < odd || i >= even + odd ? 50 : 100;
            offsets.push_back(milliseconds / 1000.0);
        }
        return offsets;
    };
    const auto letterAt20 = [&](int furtherBefore, int furtherAfter) {
        Scene scene = recording();
        const std::vector<double> before = repeats(34, 14, furtherBefore);
        for (auto back = before.rbegin(); back != before.rend(); ++back) {
            scene.dirty(20.0 - *back, box(100, 100, 60, 30));
        }
        scene.dirty(20.0, box(100, 100, 60, 30));
        for (const double ahead : repeats(38, 10, furtherAfter)) {
            scene.dirty(20.0 + ahead, box(100, 100, 60, 30));
        }
        const auto first = static_cast<std::size_t>((20.0 - before.back()) / 0.25);
        return attentions(scene).at(80 - first);
    };
    EXPECT_EQ(letterAt20(0, 0), 'c');
    EXPECT_EQ(letterAt20(1, 0), 'c');
    EXPECT_EQ(letterAt20(0, 1), 'c');
}

TEST(ChangesTest, Clockwork_ThreeOfFourGapsMustBeLikeTheirMedian) {
    EXPECT_EQ(attentionsOf({0.5, 0.5, 0.5, 1.25, 0.5, 0.5, 0.5, 1.25}), "nnnnccccc");
    EXPECT_EQ(attentionsOf({0.5, 0.5, 0.5, 1.25, 0.5, 0.5, 1.25}), "nnnnnnnn");
    // The median is the middle of the gaps by size, not of their order.
    EXPECT_EQ(attentionsOf({0.5, 0.5, 0.5, 0.5, 1.25, 0.5, 0.5, 0.5}), "nnnnccccc");
}

TEST(ChangesTest, Clockwork_GapsAreAlikeWithinThreeTenthsOfTheirMedian) {
    // The median of the first is half a second, from which none is further than a tenth.
    EXPECT_EQ(attentionsOf({0.4, 0.6, 0.5, 0.4, 0.6}), "nnnnnc");
    // Three tenths of 1.25 s are 0.375 s.
    EXPECT_EQ(attentionsOf({1.25, 1.25, 1.25, 0.876, 0.876}), "nncccc");
    EXPECT_EQ(attentionsOf({1.25, 1.25, 1.25, 0.875, 0.875}), "nnnnnn");
}

TEST(ChangesTest, Clockwork_DrawnTwiceAtOnce_IsOneRepeat) {
    Scene scene = recording();
    for (int i = 0; i < 8; ++i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30)).dirty(5.01 + 0.5 * i, box(100, 100, 60, 30));
    }
    EXPECT_EQ(attentions(scene), "nnnncccc");
}

TEST(ChangesTest, Clockwork_DrawnAgainAfterJustTwoHundredths_IsOneRepeat) {
    Scene scene = recording();
    for (const double time : {0.0, 0.02, 0.5, 1.0, 1.5, 2.0}) {
        scene.dirty(time, box(100, 100, 60, 30));
    }
    EXPECT_EQ(attentions(scene), "nnnnn"); // five are no habit
}

TEST(ChangesTest, Clockwork_DrawingsOfOneStep_AreWhatTheFirstIs) {
    // Ten a second from 15 s on, and a press at 20.06 s. In the step at 20 s two follow it, but one came before.
    Scene scene = recording();
    for (int i = 0; i < 100; ++i) {
        scene.dirty(15.0 + 0.1 * i, box(100, 100, 60, 30));
    }
    scene.cursor(0, 400, 300).action(20.06, 0);
    EXPECT_EQ(attentions(scene), std::string(8, 'n') + std::string(13, 'c') + "nnn" + std::string(16, 'c'));
}

TEST(ChangesTest, Clockwork_IsKnownInAnyOrder) {
    Scene scene = recording();
    for (int i = 11; i >= 0; --i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30));
    }
    EXPECT_EQ(attentions(scene), "nnnncccccccc");
}

/// Twenty-four drawings of two places in the order aabb, each of which alone is irregular.
std::string inTurns(const Rectangle& a, const Rectangle& b) {
    Scene scene = recording();
    for (int i = 0; i < 24; ++i) {
        scene.dirty(5.0 + 0.5 * i, i % 4 < 2 ? a : b);
    }
    return attentions(scene);
}

TEST(ChangesTest, Clockwork_PlacesOfOneGridOf16_AreTheSame) {
    EXPECT_EQ(inTurns(box(96, 96, 64, 32), box(110, 110, 64, 32)), "nnnn" + std::string(20, 'c'));
    // Only one edge lies in another field.
    const std::string news(24, 'n');
    EXPECT_EQ(inTurns(box(96, 96, 64, 32), box(112, 96, 48, 32)), news);
    EXPECT_EQ(inTurns(box(96, 96, 64, 32), box(96, 112, 64, 16)), news);
    EXPECT_EQ(inTurns(box(96, 96, 64, 32), box(96, 96, 80, 32)), news);
    EXPECT_EQ(inTurns(box(96, 96, 64, 32), box(96, 96, 64, 48)), news);
}

TEST(ChangesTest, Clockwork_AnswersPressReleaseAndWheelForThreeQuartersOfASecond) {
    Scene scene = recording();
    for (int i = 0; i < 60; ++i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30));
    }
    scene.cursor(0, 400, 300).action(20.0, 0).action(20.3, 1).action(30.25, 7);
    std::string expected(60, 'c');
    expected.replace(0, 4, "nnnn");
    expected[30] = 'n'; // 20.0: the press
    expected[31] = 'n'; // 20.5
    expected[32] = 'n'; // 21.0: 0.7 s after the release
    expected[51] = 'n'; // 30.5: the wheel; 31.0 is three quarters of a second later
    EXPECT_EQ(attentions(scene), expected);
}

TEST(ChangesTest, ReadChanges_StandByStepWhateverTheirOrder) {
    Scene scene = recording();
    scene.dirty(5.0, box(500, 500, 60, 30)).dirty(0.0, box(0, 0, 10, 10)).dirty(3.0, box(100, 100, 60, 30));
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 3u);
    EXPECT_EQ(read.changes[0].rect, (RealRect{0, 0, 10, 10}));
    EXPECT_EQ(read.changes[1].rect, (RealRect{100, 100, 160, 130}));
    EXPECT_EQ(read.changeEnds[0], 1u);
    EXPECT_EQ(read.changeEnds[11], 1u);
    EXPECT_EQ(read.changeEnds[12], 2u);
    EXPECT_EQ(read.changeEnds[20], 3u);
}

TEST(ChangesTest, ReadChanges_OutsideTheClipOrTheRegion_AreLeftOut) {
    Scene scene = recording();
    scene.dirty(-0.001, box(100, 100, 60, 30)).dirty(60.0, box(100, 100, 60, 30)).dirty(30.0, box(1280, 0, 60, 30));
    EXPECT_TRUE(sceneOf(scene).changes.empty());
    scene.dirty(59.999, box(1200, 780, 100, 100));
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 1u);
    EXPECT_EQ(read.changes[0].rect, (RealRect{1200, 780, 1280, 800}));
}

TEST(ChangesTest, ReadChanges_OfOneStepWithinSevenTenthsOfALine_AreOne) {
    // Of the usual line of 18 pixels that is 12.6.
    Scene scene = recording();
    scene.dirty(5.0, box(100, 100, 60, 30)).dirty(5.1, box(172, 100, 60, 30));
    scene.dirty(6.0, box(100, 100, 60, 30)).dirty(6.1, box(173, 100, 60, 30));
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 3u);
    EXPECT_EQ(read.changes[0].rect, (RealRect{100, 100, 232, 130}));
}

TEST(ChangesTest, ReadChanges_ClockworkIsJoinedToo_ButNotWithNews) {
    Scene scene = recording();
    for (int i = 0; i < 12; ++i) {
        scene.dirty(5.0 + 0.5 * i, box(100, 100, 60, 30)).dirty(5.1 + 0.5 * i, box(172, 100, 60, 30));
    }
    scene.dirty(10.5, box(100, 131, 60, 30));
    const camera::Scene read = sceneOf(scene);
    ASSERT_EQ(read.changes.size(), 13u);
    EXPECT_EQ(read.changes[11].rect, (RealRect{100, 131, 160, 161}));
    EXPECT_EQ(read.changes[11].attention, 1.0);
    EXPECT_EQ(read.changes[12].rect, (RealRect{100, 100, 232, 130}));
    EXPECT_EQ(read.changes[12].attention, 0.12);
}

TEST(ChangesTest, Clustered_AboveEachOther_JoinsAtTheLimit) {
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {0, 20, 10, 30}}, 10.0).size(), 1u);
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {0, 21, 10, 30}}, 10.0).size(), 2u);
    EXPECT_EQ(clustered({{0, 0, 5, 5}, {0, 8, 5, 13}}, 10.0).size(), 1u); // narrower than the gap
    EXPECT_EQ(clustered({{0, 20, 10, 30}, {5, 0, 15, 10}}, 10.0).size(), 1u);
    EXPECT_EQ(clustered({{0, 21, 10, 30}, {5, 0, 15, 10}}, 10.0).size(), 2u);
}

TEST(ChangesTest, Clustered_StandInTheOrderOfTheirEdges) {
    const std::vector<RealRect> ordered{{0, 0, 1, 1}, {0, 50, 1, 51}, {50, 0, 51, 1}, {50, 50, 51, 51}};
    EXPECT_EQ(clustered({ordered[3], ordered[1], ordered[2], ordered[0]}, 1.0), ordered);
}

TEST(ChangesTest, Clustered_UnionThatReachesAnother_JoinsItToo) {
    // The third stands closest to the first, with which it grows down to the second.
    EXPECT_EQ(clustered({{0, 0, 10, 10}, {3, 30, 20, 40}, {8, 12, 12, 28}}, 5.0),
              (std::vector<RealRect>{{0, 0, 20, 40}}));
}

TEST(ChangesTest, Clustered_TheSameAgain_CountsOnce) {
    std::vector<RealRect> rects;
    rects.reserve(61);
    for (int i = 0; i < 60; ++i) {
        rects.push_back({i * 100.0, 0, i * 100.0 + 1, 1});
    }
    rects.push_back(rects.front());
    EXPECT_EQ(clustered(rects, 1.0).size(), 60u);
    EXPECT_EQ(clustered(std::vector<RealRect>(100, {0, 0, 10, 10}), 1.0), (std::vector<RealRect>{{0, 0, 10, 10}}));
}

TEST(ChangesTest, LineHeight_CaretsTell) {
    EXPECT_EQ(sceneOf(recording()).lineHeight, 18.0);
    Scene scene = recording();
    for (int i = 0; i < 9; ++i) {
        scene.caret(1.0 + i, box(100 + i, 100, 1, 22));
    }
    EXPECT_EQ(sceneOf(scene).lineHeight, 22.0);
}

TEST(ChangesTest, LineHeight_StripsTell_EachPlaceOnce) {
    Scene scene = recording();
    double time = 1.0;
    // Eight lines of text in eight places, and one button that is drawn a hundred times.
    for (int i = 0; i < 8; ++i) {
        scene.dirty(time += 0.37, box(100, 40 * i, 200, 14));
    }
    for (int i = 0; i < 100; ++i) {
        scene.dirty(time += 0.07 + 0.11 * (i % 5), box(700, 500, 90, 40));
    }
    EXPECT_EQ(sceneOf(scene).lineHeight, 14.0);
}

/// The height of a line when each strip of text is drawn once, in a place of its own.
double lineOf(const std::vector<int>& heights, int width) {
    Scene scene = recording();
    double time = 1.0;
    int x = 0;
    for (const int high : heights) {
        scene.dirty(time += 1.0, box(x += 64, 100, width, high));
    }
    return sceneOf(scene).lineHeight;
}

TEST(ChangesTest, LineHeight_IsTheLowerQuarterOfEightStrips) {
    EXPECT_EQ(lineOf({24, 23, 22, 21, 20, 15, 14, 13}, 60), 15.0);
    EXPECT_EQ(lineOf({24, 23, 22, 21, 20, 15, 14}, 60), 18.0); // too few to be believed
}

TEST(ChangesTest, LineHeight_StripsAreTwelveToFortyEightHigh_AndNotHigherThanWide) {
    const auto eight = [](int high, int width) { return lineOf(std::vector<int>(8, high), width); };
    EXPECT_EQ(eight(12, 60), 12.0);
    EXPECT_EQ(eight(11, 60), 18.0);
    EXPECT_EQ(eight(48, 60), 48.0);
    EXPECT_EQ(eight(49, 60), 18.0);
    EXPECT_EQ(eight(40, 40), 40.0);
    EXPECT_EQ(eight(40, 39), 18.0);
}

TEST(ChangesTest, LineHeight_IsTheMedianOfCarets_WithinReason) {
    const auto line = [](const std::vector<int>& heights) {
        Scene scene = recording();
        double time = 1.0;
        for (const int high : heights) {
            scene.caret(time += 1.0, box(100, 100, 1, high));
        }
        return sceneOf(scene).lineHeight;
    };
    EXPECT_EQ(line({24, 23, 22, 21, 20, 19, 18, 17, 16}), 20.0);
    EXPECT_EQ(line(std::vector<int>(8, 100)), 48.0);
    EXPECT_EQ(line(std::vector<int>(8, 5)), 12.0);
    EXPECT_EQ(line(std::vector<int>(7, 30)), 18.0);
}

} // namespace
} // namespace OrvantaNS::testing
