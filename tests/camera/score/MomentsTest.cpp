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

} // namespace
} // namespace OrvantaNS::testing
