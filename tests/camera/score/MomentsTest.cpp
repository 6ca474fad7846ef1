#include "camera/score/Moments.h"

#include <gtest/gtest.h>

namespace OrvantaNS::testing {
namespace {

using namespace camera;

const RealRect kWhole{0, 0, 1280, 800};

JudgedPath path(std::vector<JudgedKeyframe> keyframes) {
    return JudgedPath(std::move(keyframes), kWhole, 640, 400, 1.0);
}

MomentScore judge(const JudgedPath& judged, const Moment& moment) {
    return judgeMoments(judged, {moment}, kWhole, 640, 400).front();
}

TEST(JudgedPathTest, At_EasesFromTheWholeRecordingAndFromWhereTheCameraIs) {
    const JudgedPath judged = path({{10, {0, 0, 640, 400}}, {10.5, {640, 400, 1280, 800}}});
    EXPECT_EQ(judged.at(9.99), kWhole);
    EXPECT_EQ(judged.at(10.0), kWhole);
    // A quarter of the move is 3/16 - 2/64 = 5/32 of the way.
    EXPECT_EQ(judged.at(10.25), (RealRect{0, 0, 1280 - 640 * 5.0 / 32, 800 - 400 * 5.0 / 32}));
    // Half way, the second keyframe takes over.
    EXPECT_EQ(judged.departure(1), (RealRect{0, 0, 960, 600}));
    EXPECT_EQ(judged.at(10.5), (RealRect{0, 0, 960, 600}));
    EXPECT_EQ(judged.at(11.5), (RealRect{640, 400, 1280, 800}));
    EXPECT_FALSE(judged.isMoving(10.0));
    EXPECT_TRUE(judged.isMoving(10.1));
    EXPECT_FALSE(judged.isMoving(11.5));
    EXPECT_EQ(judged.zoom({0, 0, 640, 800}), 0.5);
}

TEST(JudgedPathTest, Zoom_IsThatOfTheSideThatHasFewerPixels_AndNoneOfAnEmptyFrame) {
    EXPECT_EQ(path({}).zoom({0, 0, 1280, 400}), 0.5);
    EXPECT_EQ(path({}).zoom({100, 100, 420, 300}), 2.0);
    EXPECT_EQ(path({}).zoom({100, 100, 100, 300}), 0.0);
}

TEST(JudgedPathTest, WithoutAKeyframeBefore_ItRestsOnTheWholeRecording) {
    EXPECT_EQ(path({}).at(5.0), kWhole);
    EXPECT_FALSE(path({}).isMoving(5.0));
    EXPECT_FALSE(path({{10, {0, 0, 640, 400}}}).isMoving(9.5));
    EXPECT_EQ(path({{10, {0, 0, 640, 400}}}).departure(0), kWhole);
}

TEST(JudgedPathTest, WithoutAFade_ItIsThereAtOnce) {
    const JudgedPath judged({{10, {0, 0, 640, 400}}, {12, {640, 400, 1280, 800}}}, kWhole, 640, 400, 0.0);
    EXPECT_EQ(judged.at(9.99), kWhole);
    EXPECT_EQ(judged.at(10.0), (RealRect{0, 0, 640, 400}));
    EXPECT_EQ(judged.departure(1), (RealRect{0, 0, 640, 400}));
    EXPECT_EQ(judged.at(12.0), (RealRect{640, 400, 1280, 800}));
    EXPECT_FALSE(judged.isMoving(10.0));
}

TEST(JudgedPathTest, MoveThatIsDone_StandsOnItsFrameToTheLastBit) {
    // 1280 less the difference of 1280 and 0.1 is not 0.1, as it is rounded.
    const RealRect frame{0.1, 0.1, 640.1, 400.1};
    const JudgedPath judged({{10, {1280, 800, 1920, 1200}}, {20, frame}}, kWhole, 640, 400, 1.0);
    EXPECT_EQ(judged.at(21.0), frame);
}

TEST(JudgedPathTest, FadeOfHalfASecond_IsDoneByThen) {
    const JudgedPath judged({{10, {0, 0, 640, 400}}}, kWhole, 640, 400, 0.5);
    EXPECT_EQ(judged.at(10.25), (RealRect{0, 0, 960, 600}));
    EXPECT_TRUE(judged.isMoving(10.25));
    EXPECT_EQ(judged.at(10.5), (RealRect{0, 0, 640, 400}));
    EXPECT_FALSE(judged.isMoving(10.5));
}

TEST(MomentsTest, ReadingZoom_IsThreeQuartersOrWhatTheRectangleAllows) {
    EXPECT_EQ(readingZoom({0, 0, 100, 100}, 640, 400), 0.75);
    EXPECT_DOUBLE_EQ(readingZoom({0, 0, 1000, 100}, 640, 400), 0.95 * 0.64);
    EXPECT_DOUBLE_EQ(readingZoom({0, 0, 100, 800}, 640, 400), 0.95 * 0.5);
}

TEST(MomentsTest, Seen_NeedsNinetyFivePercentOfTheRectangle) {
    const JudgedPath judged = path({{0, {0, 0, 640, 400}}});
    EXPECT_EQ(judge(judged, {5, 10, {545, 0, 645, 100}, MomentView::Close, ""}).seen, 1.0);
    EXPECT_EQ(judge(judged, {5, 10, {546, 0, 646, 100}, MomentView::Close, ""}).seen, 0.0);
}

TEST(MomentsTest, Read_NeedsTheZoomToo) {
    const Moment moment{5, 10, {100, 100, 300, 200}, MomentView::Close, ""};
    EXPECT_EQ(judge(path({}), moment).seen, 1.0);
    EXPECT_EQ(judge(path({}), moment).read, 0.0);
    EXPECT_EQ(judge(path({{0, {0, 0, 848, 530}}}), moment).read, 1.0);
    EXPECT_EQ(judge(path({{0, {0, 0, 864, 540}}}), moment).read, 0.0);
}

TEST(MomentsTest, Shares_AreOfTheMomentsTime) {
    // The move to the far corner begins at 6; the rectangle is lost from then on but for the first hundredths.
    const JudgedPath judged = path({{0, {0, 0, 640, 400}}, {6, {640, 400, 1280, 800}}});
    const MomentScore score = judge(judged, {5, 10, {0, 0, 50, 50}, MomentView::Close, ""});
    EXPECT_NEAR(score.seen, 0.2, 0.03);
}

TEST(MomentsTest, Holdable_WhenAFrameOfTheShapeHoldsMostOfIt) {
    const auto holdable = [](const RealRect& rect, double wide, double high) {
        return judgeMoments(JudgedPath({}, kWhole, wide, high, 1.0), {{0, 1, rect, MomentView::Window, ""}}, kWhole,
                            wide, high)
            .front()
            .isHoldable;
    };
    // The largest portrait frame is 450 wide.
    EXPECT_TRUE(holdable({0, 0, 450, 800}, 360, 640));
    EXPECT_TRUE(holdable({0, 0, 473, 100}, 360, 640));
    EXPECT_FALSE(holdable({0, 0, 474, 100}, 360, 640));
    EXPECT_TRUE(holdable(kWhole, 640, 400));
}

/// What is seen of a moment when the camera is on its rectangle up to a second, and far from it from there on.
double seenUntil(double second, double from, double to) {
    const JudgedPath judged({{0, {0, 0, 640, 400}}, {second, {640, 400, 1280, 800}}}, kWhole, 640, 400, 0.0);
    return judge(judged, {from, to, {0, 0, 50, 50}, MomentView::Close, ""}).seen;
}

TEST(MomentsTest, Looks_StandInTheMiddleOfEachTenthOfASecond) {
    // At 5.05, 5.15 and so on up to 5.95.
    EXPECT_EQ(seenUntil(5.04, 5.0, 6.0), 0.0);
    EXPECT_EQ(seenUntil(5.06, 5.0, 6.0), 0.1);
    EXPECT_EQ(seenUntil(5.5, 5.0, 6.0), 0.5);
    EXPECT_EQ(seenUntil(5.94, 5.0, 6.0), 0.9);
    EXPECT_EQ(seenUntil(5.96, 5.0, 6.0), 1.0);
    // A quarter of a second has two of an eighth each, and what is shorter than a look has one.
    EXPECT_EQ(seenUntil(5.0625 + 0.001, 5.0, 5.25), 0.5);
    EXPECT_EQ(seenUntil(5.0625 - 0.001, 5.0, 5.25), 0.0);
    EXPECT_EQ(seenUntil(5.011, 5.0, 5.02), 1.0);
    EXPECT_EQ(seenUntil(5.009, 5.0, 5.02), 0.0);
}

TEST(MomentsTest, Read_FromJustTheReadableZoom) {
    const JudgedPath judged({{0, {0, 0, 800, 500}}}, kWhole, 600, 375, 0.0);
    const Moment moment{5, 6, {100, 100, 300, 200}, MomentView::Close, ""};
    EXPECT_EQ(judgeMoments(judged, {moment}, kWhole, 600, 375).at(0).read, 1.0);
}

TEST(MomentsTest, Read_IsOfTheMomentsTimeToo) {
    const JudgedPath judged({{0, {0, 0, 640, 400}}, {5.7, kWhole}}, kWhole, 640, 400, 0.0);
    const MomentScore score = judge(judged, {5, 6, {100, 100, 300, 200}, MomentView::Close, ""});
    EXPECT_EQ(score.seen, 1.0);
    EXPECT_EQ(score.read, 0.7); // 5.65 is the seventh look
}

TEST(MomentsTest, Scores_StandInTheOrderOfTheMoments) {
    const JudgedPath judged({{0, {0, 0, 640, 400}}}, kWhole, 640, 400, 0.0);
    const Moment in{5, 6, {100, 100, 300, 200}, MomentView::Close, ""};
    const Moment out{5, 6, {700, 500, 900, 600}, MomentView::Close, ""};
    const auto scores = judgeMoments(judged, {in, out}, kWhole, 640, 400);
    ASSERT_EQ(scores.size(), 2u);
    EXPECT_EQ(scores[0].seen, 1.0);
    EXPECT_EQ(scores[1].seen, 0.0);
}

TEST(MomentsTest, Holdable_GoesByTheLargestFrameOfTheRecording) {
    const auto holdable = [](const RealRect& whole, const RealRect& rect) {
        return judgeMoments(JudgedPath({}, whole, 640, 400, 1.0), {{0, 1, rect, MomentView::Window, ""}}, whole, 640,
                            400)
            .front()
            .isHoldable;
    };
    // 95% of 1280 by 760 is 1216 by 760, and of 800 by 1600 the largest frame is 800 by 500.
    EXPECT_TRUE(holdable({0, 0, 1216, 760}, {0, 0, 1280, 760}));
    EXPECT_FALSE(holdable({0, 0, 1216, 760}, {0, 0, 1281, 760}));
    EXPECT_TRUE(holdable({0, 0, 800, 1600}, {0, 0, 100, 526}));
    EXPECT_FALSE(holdable({0, 0, 800, 1600}, {0, 0, 100, 527}));
}

} // namespace
} // namespace OrvantaNS::testing
