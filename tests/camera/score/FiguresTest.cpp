#include "camera/score/Figures.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

const RealRect kCorner{0, 0, 800, 500};

PathFigures judge(const Scene& scene, std::vector<JudgedKeyframe> keyframes) {
    const JudgedSession session = judgedSession(scene);
    return judgePath(session, JudgedPath(std::move(keyframes), session.whole, 640, 400, 1.0), 640, 400);
}

TEST(FiguresTest, NothingToJudge_GivesNoShares) {
    const PathFigures figures = judge(recording(), {});
    EXPECT_EQ(figures.presses, 0u);
    EXPECT_FALSE(figures.inside);
    EXPECT_FALSE(figures.readableShare);
    EXPECT_EQ(figures.moves, 0u);
    EXPECT_EQ(figures.movesAMinute, 0.0);
}

TEST(FiguresTest, Presses_InsideAtRestWithRoomAndRead) {
    // Inside with room; inside, ten pixels of the recording from the right edge; outside; off the recording.
    Scene scene = recording();
    scene.cursor(5, 400, 300).click(5).cursor(6, 790, 300).click(6).cursor(7, 1000, 300).click(7);
    scene.cursor(8, -5, 300).click(8);
    const PathFigures figures = judge(scene, {{0, kCorner}});
    EXPECT_EQ(figures.presses, 3u);
    EXPECT_DOUBLE_EQ(*figures.inside, 2.0 / 3);
    EXPECT_DOUBLE_EQ(*figures.withRoom, 1.0 / 3);
    EXPECT_DOUBLE_EQ(*figures.atRest, 2.0 / 3);
    EXPECT_DOUBLE_EQ(*figures.pressesRead, 2.0 / 3); // at a zoom of 0.8
    EXPECT_DOUBLE_EQ(*figures.readableShare, 2.0 / 3);
}

TEST(FiguresTest, Presses_DuringAMove_AreNotAtRest) {
    Scene scene = recording();
    scene.cursor(0, 100, 100).click(5.5).click(7);
    const PathFigures figures = judge(scene, {{5, kCorner}});
    EXPECT_DOUBLE_EQ(*figures.inside, 1.0);
    EXPECT_DOUBLE_EQ(*figures.atRest, 0.5);
    EXPECT_DOUBLE_EQ(*figures.pressesRead, 0.5); // the move is half done
}

TEST(FiguresTest, Typing_IsReadWhereTheCaretIsWholeInAReadableFrame) {
    Scene scene = recording();
    scene.caret(3, box(100, 100, 1, 18)).caret(4, box(100, 490, 1, 18)).caret(5, box(2000, 100, 1, 18));
    EXPECT_DOUBLE_EQ(*judge(scene, {{0, kCorner}}).typingRead, 0.5);
    EXPECT_DOUBLE_EQ(*judge(scene, {}).typingRead, 0.0);
}

TEST(FiguresTest, Changes_CountByTheAreaShown_WithoutSpecksAndRepaints) {
    Scene scene = recording();
    scene.dirty(3.0, box(700, 100, 200, 100)); // half of it in the corner
    scene.dirty(5.0, box(0, 0, 19, 21));       // a speck: below 400 pixels
    scene.dirty(6.0, box(0, 0, 1280, 481));    // more than 60% of the screen
    EXPECT_DOUBLE_EQ(*judge(scene, {{0, kCorner}}).changesRead, 0.5);
}

TEST(FiguresTest, SmallWindows_CountForTheirFirstEightSeconds) {
    Scene scene = recording();
    // In front from 2 to 22; the frame holds it from the end of the move at 6 on: looks from 2.25 to 9.75 are judged.
    scene.window(2, box(100, 100, 300, 200)).window(22, box(0, 0, 1280, 800)).window(23, box(0, 0, 1280, 800));
    const PathFigures figures = judge(scene, {{5, kCorner}});
    // 31 looks; those from 5.75 on are at a zoom of 0.75 or more: eased 0.84375 of the way, 875 wide, is not yet.
    EXPECT_DOUBLE_EQ(*figures.windowsRead, 16.0 / 31);
}

TEST(FiguresTest, Moves_AreByTheMinuteOfTheClip) {
    Scene scene = recording();
    scene.params().setClipInterval(10000, 40000);
    EXPECT_DOUBLE_EQ(judge(scene, {{15, kCorner}}).movesAMinute, 2.0);
}

TEST(FiguresTest, ClipWithoutLength_HasNoMovesAMinute) {
    const PathFigures figures = judge(recording().length(0), {{0, kCorner}});
    EXPECT_EQ(figures.moves, 1u);
    EXPECT_EQ(figures.movesAMinute, 0.0);
    EXPECT_EQ(figures.travelAMinute, 0.0);
}

/// The share of presses with room when one is made at a place while a frame is on show.
double roomFor(std::int32_t x, std::int32_t y, const RealRect& frame) {
    Scene scene = recording();
    scene.cursor(0, x, y).click(5);
    return *judge(scene, {{0, frame}}).withRoom;
}

TEST(FiguresTest, Room_Is24OutputPixelsToEveryEdgeThatIsNotTheScreens) {
    // At two thirds of the size 24 output pixels are 36 of the recording.
    const RealRect frame{100, 100, 1060, 700};
    EXPECT_EQ(roomFor(140, 300, frame), 1.0);
    EXPECT_EQ(roomFor(130, 300, frame), 0.0);
    EXPECT_EQ(roomFor(1020, 300, frame), 1.0);
    EXPECT_EQ(roomFor(1030, 300, frame), 0.0);
    EXPECT_EQ(roomFor(300, 140, frame), 1.0);
    EXPECT_EQ(roomFor(300, 130, frame), 0.0);
    EXPECT_EQ(roomFor(300, 660, frame), 1.0);
    EXPECT_EQ(roomFor(300, 670, frame), 0.0);
    EXPECT_EQ(roomFor(1275, 795, {480, 300, 1280, 800}), 1.0);
    // Pixel for pixel just 24 are enough.
    EXPECT_EQ(roomFor(124, 300, {100, 100, 740, 500}), 1.0);
    EXPECT_EQ(roomFor(123, 300, {100, 100, 740, 500}), 0.0);
    // An edge within a pixel of the screen's is the screen's.
    EXPECT_EQ(roomFor(5, 300, {1, 100, 801, 600}), 1.0);
    EXPECT_EQ(roomFor(5, 300, {2, 100, 802, 600}), 0.0);
}

TEST(FiguresTest, Reading_CountsFromJustTheReadableZoom) {
    Scene scene = recording();
    scene.cursor(0, 400, 300).click(5).caret(3, box(100, 100, 1, 18)).dirty(3.0, box(100, 100, 60, 30));
    const JudgedSession session = judgedSession(scene);
    const auto at = [&session](std::int32_t wide, std::int32_t high) {
        return judgePath(session, JudgedPath({{0, kCorner}}, session.whole, wide, high, 1.0), wide, high);
    };
    const PathFigures just = at(600, 375);
    EXPECT_EQ(*just.pressesRead, 1.0);
    EXPECT_EQ(*just.typingRead, 1.0);
    EXPECT_EQ(*just.changesRead, 1.0);
    const PathFigures below = at(592, 370);
    EXPECT_EQ(*below.pressesRead, 0.0);
    EXPECT_EQ(*below.typingRead, 0.0);
    EXPECT_EQ(*below.changesRead, 0.0);
}

TEST(FiguresTest, Typing_CaretAtTheFramesEdges) {
    const auto read = [](Rectangle caret) {
        Scene scene = recording();
        scene.caret(3, caret);
        return *judge(scene, {{0, {100, 100, 900, 600}}}).typingRead;
    };
    EXPECT_EQ(read(box(100, 300, 1, 18)), 1.0);
    EXPECT_EQ(read(box(99, 300, 1, 18)), 0.0);
    EXPECT_EQ(read(box(899, 300, 1, 18)), 1.0);
    EXPECT_EQ(read(box(900, 300, 1, 18)), 0.0);
    EXPECT_EQ(read(box(300, 100, 1, 18)), 1.0);
    EXPECT_EQ(read(box(300, 582, 1, 18)), 1.0);
    EXPECT_EQ(read(box(300, 583, 1, 18)), 0.0);
}

TEST(FiguresTest, SmallWindows_NeedOnly95PercentOfThemselvesInAReadableFrame) {
    // 853 columns and 533 rows are readable: 95% of 880 and of 550 are held, of 900 and of 565 not.
    const auto isJudged = [](Rectangle window) {
        Scene scene = recording();
        scene.window(2, window).window(22, box(0, 0, 1280, 800));
        return judge(scene, {}).windowsRead.has_value();
    };
    EXPECT_TRUE(isJudged(box(100, 100, 880, 300)));
    EXPECT_FALSE(isJudged(box(100, 100, 900, 300)));
    EXPECT_TRUE(isJudged(box(100, 100, 500, 550)));
    EXPECT_FALSE(isJudged(box(100, 100, 500, 565)));
}

TEST(FiguresTest, SmallWindows_JustReadable_JustHeld_ForAsShortAsOneLook) {
    // 95 of its 100 columns lie in the frame, which 600 output pixels show at 0.75.
    const auto read = [](double to) {
        Scene scene = recording();
        scene.window(2, box(705, 100, 100, 100)).window(to, box(0, 0, 1280, 800));
        const JudgedSession session = judgedSession(scene);
        return judgePath(session, JudgedPath({{0, kCorner}}, session.whole, 600, 375, 1.0), 600, 375).windowsRead;
    };
    EXPECT_EQ(read(6.0), 1.0);
    EXPECT_EQ(read(2.5), 1.0); // one look, a quarter of a second after it has come
}

TEST(FiguresTest, SmallWindows_OfWhichAReadableFrameHoldsJust95Percent_AreJudged) {
    // 570 by 285 output pixels show 760 by 380 at 0.75.
    Scene scene = recording(2560, 1600);
    scene.window(2, box(100, 100, 800, 400)).window(6, box(0, 0, 2560, 1600));
    const JudgedSession session = judgedSession(scene);
    const JudgedPath path({}, session.whole, 570, 285, 1.0);
    EXPECT_TRUE(judgePath(session, path, 570, 285).windowsRead.has_value());
}

TEST(FiguresTest, MovesAndTravel_AreByTheMinute) {
    const PathFigures figures = judge(recording().length(30), {{5, {0, 0, 640, 400}}, {15, {640, 0, 1280, 400}}});
    EXPECT_EQ(figures.moves, 2u);
    EXPECT_DOUBLE_EQ(figures.movesAMinute, 4.0);
    // From the middle to the left top quarter is 320 by 200; then half a width.
    EXPECT_DOUBLE_EQ(figures.travelAMinute, 2.0 * (std::sqrt(320.0 * 320 + 200 * 200) / 1280 + 0.5));
}

// ---- What is judged of a recording ----

TEST(SessionTest, IsInSecondsAndInPixelsOfTheFirstRegion) {
    Scene scene = recording();
    scene.params().recordingRegions().front().rect = box(100, 50, 1000, 600);
    scene.params().setClipInterval(10000, 40000);
    scene.cursor(5, 600, 350).click(5).caret(6, box(110, 60, 1, 20)).dirty(7.3, box(200, 150, 100, 50));
    scene.window(8, box(300, 250, 200, 100)).window(10, box(100, 50, 1000, 600));
    const JudgedSession session = judgedSession(scene);
    EXPECT_EQ(session.whole, (RealRect{0, 0, 1000, 600}));
    EXPECT_EQ(session.start, 10.0);
    EXPECT_EQ(session.stop, 40.0);
    ASSERT_EQ(session.cursor.size(), 1u);
    EXPECT_EQ(session.cursor[0].seconds, 5.0);
    EXPECT_EQ(session.cursor[0].x, 500.0);
    EXPECT_EQ(session.cursor[0].y, 300.0);
    ASSERT_EQ(session.presses.size(), 1u);
    EXPECT_EQ(session.presses[0].seconds, 5.0);
    EXPECT_EQ(session.presses[0].x, 500.0);
    EXPECT_EQ(session.presses[0].y, 300.0);
    ASSERT_EQ(session.carets.size(), 1u);
    EXPECT_EQ(session.carets[0].seconds, 6.0);
    EXPECT_EQ(session.carets[0].rect, (RealRect{10, 10, 11, 30}));
    ASSERT_EQ(session.changes.size(), 1u);
    EXPECT_EQ(session.changes[0].seconds, 7.375); // the middle of the quarter from 7.25 on
    EXPECT_EQ(session.changes[0].rects, (std::vector<RealRect>{{100, 100, 200, 150}}));
    ASSERT_EQ(session.smallWindows.size(), 1u);
    EXPECT_EQ(session.smallWindows[0].from, 8.0);
    EXPECT_EQ(session.smallWindows[0].to, 10.0);
    EXPECT_EQ(session.smallWindows[0].rect, (RealRect{200, 200, 400, 300}));
}

TEST(SessionTest, Presses_AreThoseOfThreeButtons_WhereTheCursorWas) {
    const auto presses = [](double time, std::int32_t code) {
        Scene scene = recording();
        scene.cursor(5, 100, 200).cursor(7, 300, 400).action(time, code);
        return judgedSession(scene).presses;
    };
    for (const std::int32_t code : {0, 2, 4}) {
        EXPECT_EQ(presses(6, code).size(), 1u) << code;
    }
    for (const std::int32_t code : {1, 3, 5, 6, 7, -1}) {
        EXPECT_TRUE(presses(6, code).empty()) << code;
    }
    EXPECT_EQ(presses(4, 0).at(0).x, 100.0) << "its first sample, before that";
    EXPECT_EQ(presses(5, 0).at(0).x, 100.0);
    EXPECT_EQ(presses(6.999, 0).at(0).x, 100.0);
    EXPECT_EQ(presses(7, 0).at(0).x, 300.0);
    EXPECT_EQ(presses(9, 0).at(0).y, 400.0);
    // Without a sample it is taken to be in the middle.
    const JudgedSession session = judgedSession(recording().click(5));
    ASSERT_EQ(session.presses.size(), 1u);
    EXPECT_EQ(session.presses[0].x, 640.0);
    EXPECT_EQ(session.presses[0].y, 400.0);
}

TEST(SessionTest, PressesAndCarets_BesideTheRegion_AreLeftOut) {
    const auto judged = [](std::int32_t x, std::int32_t y) {
        Scene scene = recording();
        const JudgedSession session = judgedSession(scene.cursor(0, x, y).click(5).caret(6, box(x, y, 1, 18)));
        return session.presses.size() + session.carets.size();
    };
    EXPECT_EQ(judged(0, 0), 2u);
    EXPECT_EQ(judged(1279, 799), 2u);
    EXPECT_EQ(judged(-1, 0), 0u);
    EXPECT_EQ(judged(0, -1), 0u);
    EXPECT_EQ(judged(1280, 0), 0u);
    EXPECT_EQ(judged(0, 800), 0u);
}

TEST(SessionTest, Changes_AreGatheredByQuartersOfASecond) {
    Scene scene = recording();
    scene.dirty(5.25, box(0, 0, 30, 30)).dirty(5.0, box(100, 0, 30, 30)).dirty(5.249, box(200, 0, 30, 30));
    scene.dirty(6.0, box(1270, 0, 60, 60));
    const auto changes = judgedSession(scene).changes;
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].seconds, 5.125);
    EXPECT_EQ(changes[0].rects, (std::vector<RealRect>{{100, 0, 130, 30}, {200, 0, 230, 30}}));
    EXPECT_EQ(changes[1].seconds, 5.375);
    EXPECT_EQ(changes[2].rects, (std::vector<RealRect>{{1270, 0, 1280, 60}})) << "what lies in the region";
}

TEST(SessionTest, Changes_From400PixelsToSixTenthsOfTheScreen) {
    const auto count = [](const Rectangle& rect) { return judgedSession(recording().dirty(5, rect)).changes.size(); };
    EXPECT_EQ(count(box(0, 0, 20, 20)), 1u);
    EXPECT_EQ(count(box(0, 0, 21, 19)), 0u); // 399
    EXPECT_EQ(count(box(0, 0, 1280, 480)), 1u);
    EXPECT_EQ(count(box(0, 0, 1280, 481)), 0u);
    EXPECT_EQ(count(box(1280, 0, 100, 100)), 0u);
}

TEST(SessionTest, SmallWindows_AreUnderThreeTenthsOfTheScreen_ForHalfASecond) {
    const auto windows = [](const Rectangle& rect, double to) {
        Scene scene = recording();
        scene.window(2, box(0, 0, 1280, 800)).window(4, rect).window(to, box(0, 0, 1280, 800));
        return judgedSession(scene).smallWindows.size();
    };
    EXPECT_EQ(windows(box(0, 0, 640, 479), 6), 1u);
    EXPECT_EQ(windows(box(0, 0, 640, 480), 6), 0u); // just that
    EXPECT_EQ(windows(box(100, 100, 300, 200), 4.5), 1u);
    EXPECT_EQ(windows(box(100, 100, 300, 200), 4.499), 0u);
    EXPECT_EQ(windows(box(1300, 100, 300, 200), 6), 0u);
}

TEST(SessionTest, SmallWindows_InOnePlace_AreOne_AndLastUntilTheNext) {
    Scene scene = recording();
    const Rectangle menu = box(100, 100, 300, 200);
    scene.window(2, menu).window(3, menu).window(3.4, menu).window(5, box(110, 100, 300, 200)).window(6, menu);
    const auto windows = judgedSession(scene).smallWindows;
    ASSERT_EQ(windows.size(), 2u) << "nothing tells how long the last one stays";
    EXPECT_EQ(windows[0].from, 2.0);
    EXPECT_EQ(windows[0].to, 5.0);
    EXPECT_EQ(windows[1].from, 5.0);
    EXPECT_EQ(windows[1].to, 6.0);
}

} // namespace
} // namespace OrvantaNS::testing
