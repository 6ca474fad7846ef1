#include "camera/director/Scene.h"

#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Scene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The region stands at (100, 50) of the screen and is 640 by 400; the stretch goes from 10 s to 20 s.
const Rectangle kRegion = box(100, 50, 640, 400);

camera::Scene read(const Params& params) { return readScene(params, kRegion, 10000, 20000); }

TEST(SceneTest, StepAt_IsTheStepThatHoldsTheMoment_CutToTheStretch) {
    camera::Scene scene;
    scene.steps = 5;
    const std::vector<std::pair<double, std::int32_t>> cases{{-1e30, 0}, {-0.01, 0}, {0.0, 0},  {0.2, 0},  {0.25, 1},
                                                             {0.49, 1},  {0.5, 2},   {0.75, 3}, {0.99, 3}, {1.0, 4},
                                                             {1.24, 4},  {1.25, 4},  {2.0, 4},  {1e30, 4}};
    for (const auto& [seconds, step] : cases) {
        EXPECT_EQ(scene.stepAt(seconds), step) << seconds;
    }
    scene.steps = 1;
    EXPECT_EQ(scene.stepAt(0.0), 0);
    EXPECT_EQ(scene.stepAt(7.0), 0);
}

TEST(SceneTest, ReadScene_HasTheRegionsSizeAndTheStretchsLength_AndAStepForItsEnd) {
    const Params params = recording();
    const camera::Scene scene = readScene(params, kRegion, 10000, 12100);
    EXPECT_EQ(scene.width, 640.0);
    EXPECT_EQ(scene.height, 400.0);
    EXPECT_EQ(scene.length, 2.1);
    EXPECT_EQ(scene.step, 0.25);
    // 2.1 s are eight quarters and a part of the ninth; 2.0 s end where the ninth begins.
    EXPECT_EQ(scene.steps, 10);
    EXPECT_EQ(readScene(params, kRegion, 10000, 12000).steps, 9);
}

TEST(SceneTest, ReadScene_WithoutAnyStream_IsEmpty) {
    const camera::Scene scene = read(recording());
    EXPECT_THAT(scene.presses, IsEmpty());
    EXPECT_THAT(scene.wheels, IsEmpty());
    EXPECT_THAT(scene.windows, IsEmpty());
    EXPECT_THAT(scene.carets, IsEmpty());
    EXPECT_THAT(scene.cursor, IsEmpty());
    EXPECT_THAT(scene.changes, IsEmpty());
    EXPECT_EQ(scene.changeEnds, std::vector<std::uint32_t>(41, 0u));
}

TEST(SceneTest, ReadScene_RegionAcrossAllCoordinates_KeepsItsSize) {
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::lowest();
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    const camera::Scene scene = readScene(recording(), {kLowest, kHighest, kLowest, kHighest}, 0, 1000);
    EXPECT_EQ(scene.width, 4294967295.0);
    EXPECT_EQ(scene.height, 4294967295.0);
}

TEST(SceneTest, ReadScene_OfDays_HasLongerStepsInsteadOfMore) {
    Params params = recording();
    params.setTimeScale(4.0);
    const camera::Scene full = readScene(params, kRegion, 0, 1048576);
    EXPECT_EQ(full.step, 0.25);
    EXPECT_EQ(full.steps, 1048577);
    const camera::Scene longer = readScene(params, kRegion, 0, 1048577);
    EXPECT_EQ(longer.step, 0.5);
    EXPECT_EQ(longer.steps, 524290);
}

TEST(SceneTest, ReadScene_OfAClockThatHardlyTicks_EndsAtATrillionSeconds) {
    Params params = recording();
    params.setTimeScale(1e-300);
    const camera::Scene scene = readScene(params, kRegion, 0, 9000000000000000000);
    EXPECT_EQ(scene.length, 1e12);
    // A quarter of a second doubled 22 times; 953674.3 of them are a trillion seconds.
    EXPECT_EQ(scene.step, 1048576.0);
    EXPECT_EQ(scene.steps, 953676);
}

// ---- The cursor ----

/// Letters for the steps from the first: n for new, a dot for not.
std::string news(const camera::Scene& scene, std::size_t count) {
    std::string letters;
    for (std::size_t i = 0; i < count; ++i) {
        letters += scene.cursor[i].isNew ? 'n' : '.';
    }
    return letters;
}

TEST(SceneTest, Cursor_IsTheLastSampleBeforeTheStepsEnd_AtThePixelsMiddle) {
    Scene request = recording();
    request.cursor(9.0, 110, 60).cursor(10.3, 200, 70).cursor(10.4, 300, 80).cursor(10.75, 400, 90);
    const camera::Scene scene = read(request);
    ASSERT_EQ(scene.cursor.size(), 41u);
    EXPECT_EQ(scene.cursor[0].x, 10.5);
    EXPECT_EQ(scene.cursor[0].y, 10.5);
    EXPECT_EQ(scene.cursor[1].x, 200.5);
    EXPECT_EQ(scene.cursor[1].y, 30.5);
    // The sample at 0.75 s is of the step that begins there.
    EXPECT_EQ(scene.cursor[2].x, 200.5);
    EXPECT_EQ(scene.cursor[3].x, 300.5);
    EXPECT_EQ(scene.cursor[40].x, 300.5);
}

TEST(SceneTest, Cursor_BeforeItsFirstSample_IsWhereThatIs) {
    const camera::Scene scene = read(recording().cursor(15.0, 110, 60));
    EXPECT_EQ(scene.cursor[0].x, 10.5);
    EXPECT_TRUE(scene.cursor[0].isInside);
    EXPECT_EQ(news(scene, 41), std::string(41, '.'));
}

TEST(SceneTest, Cursor_IsInsideUpToTheRegionsLastPixel) {
    const auto isInside = [](std::int32_t x, std::int32_t y) {
        return read(recording().cursor(10.0, x, y)).cursor[0].isInside;
    };
    EXPECT_TRUE(isInside(100, 50));
    EXPECT_FALSE(isInside(99, 50));
    EXPECT_FALSE(isInside(100, 49));
    EXPECT_TRUE(isInside(739, 449));
    EXPECT_FALSE(isInside(740, 449));
    EXPECT_FALSE(isInside(739, 450));
}

TEST(SceneTest, Cursor_IsNewWhereItWentFurtherThanAHandTrembles) {
    const auto stepTo = [](std::int32_t x, std::int32_t y) {
        return news(read(recording().cursor(10.0, 300, 300).cursor(10.5, x, y)), 5);
    };
    EXPECT_EQ(stepTo(303, 300), ".....");
    EXPECT_EQ(stepTo(304, 300), "..n..");
    EXPECT_EQ(stepTo(296, 300), "..n..");
    EXPECT_EQ(stepTo(300, 297), ".....");
    EXPECT_EQ(stepTo(300, 304), "..n..");
    EXPECT_EQ(stepTo(302, 302), "....."); // 2.8 pixels
    EXPECT_EQ(stepTo(303, 301), "..n.."); // 3.2 pixels
}

TEST(SceneTest, Cursor_ThatCreeps_IsNewOnceItIsFarFromWhereItRested) {
    Scene request = recording();
    request.cursor(10.0, 300, 300).cursor(10.25, 302, 300).cursor(10.5, 304, 300).cursor(10.75, 306, 300);
    // Four pixels from the first place at 0.5 s, which is the place to go from then on.
    EXPECT_EQ(news(read(request), 5), "..n..");
}

// ---- Presses and the wheel ----

/// A request whose cursor stands at (200, 150), local (100.5, 100.5).
Scene atRest() { return recording().cursor(0.0, 200, 150); }

std::vector<double> pressTimes(const Params& params) {
    std::vector<double> times;
    for (const ScenePress& press : read(params).presses) {
        times.push_back(press.seconds);
    }
    return times;
}

TEST(SceneTest, Press_HasItsSecondsReleaseAndPlace) {
    const camera::Scene scene = read(atRest().action(12.0, 0).action(12.5, 1));
    ASSERT_EQ(scene.presses.size(), 1u);
    EXPECT_EQ(scene.presses[0].seconds, 2.0);
    EXPECT_EQ(scene.presses[0].release, 2.5);
    EXPECT_EQ(scene.presses[0].x, 100.5);
    EXPECT_EQ(scene.presses[0].y, 100.5);
    EXPECT_EQ(scene.presses[0].path, (RealRect{100.5, 100.5, 100.5, 100.5}));
}

TEST(SceneTest, Press_CountsFromTheStretchsFirstTickToBeforeItsLast) {
    EXPECT_THAT(pressTimes(atRest().action(9.999, 0).action(10.0, 0).action(19.999, 0).action(20.0, 0)),
                ElementsAre(0.0, 9.999));
}

TEST(SceneTest, Actions_CodesThatAreNone_AreIgnored) {
    const camera::Scene scene = read(atRest().action(11.0, -1).action(11.0, -2).action(11.0, 8).action(11.0, 9));
    EXPECT_THAT(scene.presses, IsEmpty());
    EXPECT_THAT(scene.wheels, IsEmpty());
}

TEST(SceneTest, Press_OfAnyButtonEndsWithItsOwnRelease) {
    Scene request = atRest();
    request.action(11.0, 0).action(11.5, 2).action(12.0, 4).action(13.0, 3).action(14.0, 5).action(15.0, 1);
    const camera::Scene scene = read(request);
    ASSERT_EQ(scene.presses.size(), 3u);
    EXPECT_EQ(scene.presses[0].release, 5.0);
    EXPECT_EQ(scene.presses[1].release, 3.0);
    EXPECT_EQ(scene.presses[2].release, 4.0);
}

TEST(SceneTest, Press_WithoutARelease_EndsAtOnce) {
    // The release belongs to the press that is nearest before it, also when that one is outside and left out.
    const camera::Scene twice = read(atRest().action(11.0, 0).action(12.0, 0).action(13.0, 1).action(14.0, 1));
    ASSERT_EQ(twice.presses.size(), 2u);
    EXPECT_EQ(twice.presses[0].release, 1.0);
    EXPECT_EQ(twice.presses[1].release, 3.0);
    const camera::Scene outside =
        read(atRest().cursor(11.5, 5, 5).action(11.0, 0).action(12.0, 0).action(13.0, 1).action(14.0, 1));
    ASSERT_EQ(outside.presses.size(), 1u);
    EXPECT_EQ(outside.presses[0].release, 1.0);
    EXPECT_EQ(outside.presses[0].path, (RealRect{100.5, 100.5, 100.5, 100.5}));
}

TEST(SceneTest, Press_HeldForMoreThanAMinute_LostItsRelease) {
    const Params kept = atRest().action(11.0, 0).action(71.0, 1);
    EXPECT_EQ(readScene(kept, kRegion, 10000, 90000).presses[0].release, 61.0);
    const Params lost = atRest().cursor(20.0, 300, 300).action(11.0, 0).action(71.001, 1);
    const ScenePress press = readScene(lost, kRegion, 10000, 90000).presses[0];
    EXPECT_EQ(press.release, 1.0);
    EXPECT_EQ(press.path, (RealRect{100.5, 100.5, 100.5, 100.5}));
}

TEST(SceneTest, Press_OutsideTheRegion_IsLeftOut) {
    const auto count = [](std::int32_t x, std::int32_t y) {
        return pressTimes(recording().cursor(10.0, x, y).click(11.0)).size();
    };
    EXPECT_EQ(count(100, 50), 1u);
    EXPECT_EQ(count(99, 50), 0u);
    EXPECT_EQ(count(100, 49), 0u);
    EXPECT_EQ(count(739, 449), 1u);
    EXPECT_EQ(count(740, 449), 0u);
    EXPECT_EQ(count(739, 450), 0u);
}

TEST(SceneTest, Press_OutOfOrder_IsPassedOver_AtTheSameTickItIsNot) {
    EXPECT_THAT(pressTimes(atRest().action(12.0, 0).action(11.0, 2).action(12.0, 4)), ElementsAre(2.0, 2.0));
}

TEST(SceneTest, Release_OutOfOrder_IsNone) {
    const camera::Scene scene = read(atRest().cursor(10.5, 300, 300).action(12.0, 0).action(11.0, 1).action(13.0, 1));
    ASSERT_EQ(scene.presses.size(), 1u);
    EXPECT_EQ(scene.presses[0].release, 2.0);
}

TEST(SceneTest, Press_IsWhereTheCursorIsAtThatTick) {
    Scene request = recording();
    request.cursor(11.0, 200, 150).cursor(12.0, 300, 250).cursor(13.0, 400, 350);
    request.click(10.5).click(11.9).click(12.0).click(12.5).click(14.0);
    std::vector<double> places;
    for (const ScenePress& press : read(request).presses) {
        places.push_back(press.x);
        EXPECT_EQ(press.x, press.y);
    }
    // Before the first sample the cursor is where that is.
    EXPECT_THAT(places, ElementsAre(100.5, 100.5, 200.5, 200.5, 300.5));
}

TEST(SceneTest, Path_IsTheBoxOfTheCursorFromPressToRelease) {
    Scene request = recording();
    request.cursor(10.0, 700, 400).cursor(11.0, 200, 150).cursor(11.5, 350, 140).cursor(12.0, 300, 360);
    request.cursor(12.1, 600, 60).action(11.2, 0).action(12.0, 1);
    const camera::Scene scene = read(request);
    ASSERT_EQ(scene.presses.size(), 1u);
    EXPECT_EQ(scene.presses[0].path, (RealRect{100.5, 90.5, 250.5, 310.5}));
}

TEST(SceneTest, Actions_WithoutAnySampleOfTheCursor_AreTheWheelsAlone) {
    const camera::Scene scene = read(recording().click(11.0).action(12.0, 6));
    EXPECT_THAT(scene.presses, IsEmpty());
    EXPECT_THAT(scene.wheels, ElementsAre(2.0));
}

TEST(SceneTest, Wheels_AreThoseOfTheStretchInOrderOfTime) {
    Scene request = recording();
    request.action(9.999, 6).action(14.0, 7).action(10.0, 6).action(12.0, 7).action(20.0, 7);
    EXPECT_THAT(read(request).wheels, ElementsAre(0.0, 2.0, 4.0));
}

// ---- Windows and carets ----

struct Span {
    double from;
    double to;
    RealRect rect;

    friend bool operator==(const Span&, const Span&) = default;
};

template <typename List> std::vector<Span> runsOf(const List& list) {
    std::vector<Span> runs;
    runs.reserve(list.size());
    for (const auto& one : list) {
        runs.push_back({one.from, one.to, one.rect});
    }
    return runs;
}

std::vector<Span> windows(const Params& params) { return runsOf(read(params).windows); }
std::vector<Span> carets(const Params& params) { return runsOf(read(params).carets); }

TEST(SceneTest, Windows_LastUntilTheNextPlace_TheLastUntilTheEnd) {
    Scene request = recording();
    request.window(12.0, box(110, 60, 200, 100)).window(13.0, box(110, 60, 200, 100)).window(15.0, {});
    request.window(16.0, box(120, 60, 200, 100)).window(20.0, box(300, 60, 50, 50));
    EXPECT_THAT(windows(request), ElementsAre(Span{2.0, 5.0, {10, 10, 210, 110}}, Span{5.0, 6.0, {}},
                                              Span{6.0, 10.0, {20, 10, 220, 110}}));
}

TEST(SceneTest, Windows_FromBeforeTheStretch_TheLastOneStandsAtItsBeginning) {
    Scene request = recording();
    request.window(2.0, box(110, 60, 200, 100)).window(5.0, box(130, 60, 200, 100)).window(12.0, box(140, 60, 9, 9));
    EXPECT_THAT(windows(request), ElementsAre(Span{0.0, 2.0, {30, 10, 230, 110}}, Span{2.0, 10.0, {40, 10, 49, 19}}));
}

TEST(SceneTest, Windows_AreCutToTheRegion_AndNoneWhereNothingIsLeft) {
    Scene request = recording();
    request.window(11.0, box(0, 0, 1280, 800)).window(12.0, box(-50, -50, 2000, 2000));
    request.window(13.0, box(740, 50, 100, 100)).window(14.0, box(739, 449, 100, 100));
    // The second shows the same of the region as the first; the third begins where the region ends.
    EXPECT_THAT(windows(request), ElementsAre(Span{1.0, 3.0, {0, 0, 640, 400}}, Span{3.0, 4.0, {}},
                                              Span{4.0, 10.0, {639, 399, 640, 400}}));
}

TEST(SceneTest, Windows_OutOfOrder_ArePassedOver) {
    Scene request = recording();
    request.window(12.0, box(110, 60, 200, 100)).window(11.0, box(300, 60, 50, 50)).window(14.0, box(120, 60, 50, 50));
    EXPECT_THAT(windows(request), ElementsAre(Span{2.0, 4.0, {10, 10, 210, 110}}, Span{4.0, 10.0, {20, 10, 70, 60}}));
}

TEST(SceneTest, Windows_FromBehindTheStretch_ChangeNothing) {
    Scene request = recording();
    request.window(12.0, box(110, 60, 200, 100)).window(25.0, box(300, 60, 50, 50));
    EXPECT_THAT(windows(request), ElementsAre(Span{2.0, 10.0, {10, 10, 210, 110}}));
}

TEST(SceneTest, Windows_AtTheSameTick_TheLastOneStands) {
    Scene request = recording();
    request.window(12.0, box(110, 60, 200, 100)).window(12.0, box(300, 60, 50, 50));
    EXPECT_THAT(windows(request), ElementsAre(Span{2.0, 10.0, {200, 10, 250, 60}}));
}

TEST(SceneTest, Carets_LastUntilTheNext_AndCountFromTheStretchsFirstTickToBeforeItsLast) {
    Scene request = recording();
    request.caret(9.999, box(105, 60, 1, 20)).caret(10.0, box(110, 60, 1, 20)).caret(12.0, box(120, 60, 2, 20));
    request.caret(20.0, box(130, 60, 1, 20));
    EXPECT_THAT(carets(request), ElementsAre(Span{0.0, 2.0, {10, 10, 11, 30}}, Span{2.0, 10.0, {20, 10, 22, 30}}));
}

TEST(SceneTest, Carets_WithoutWidth_AreAPixelWide_WithoutHeight_AreNone) {
    Scene request = recording();
    request.caret(11.0, box(110, 60, 0, 20)).caret(12.0, box(120, 60, 1, 0)).caret(13.0, box(130, 60, -5, 20));
    EXPECT_THAT(carets(request), ElementsAre(Span{1.0, 2.0, {10, 10, 11, 30}}, Span{3.0, 10.0, {30, 10, 31, 30}}));
}

TEST(SceneTest, Carets_OutsideTheRegion_EndTheOneBefore) {
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    Scene request = recording();
    request.caret(11.0, box(739, 60, 0, 20)).caret(12.0, box(740, 60, 0, 20));
    request.caret(13.0, {kHighest, kHighest, 60, 80});
    EXPECT_THAT(carets(request), ElementsAre(Span{1.0, 2.0, {639, 10, 640, 30}}));
}

TEST(SceneTest, Carets_AtTheHighestCoordinate_AreRead) {
    constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
    Scene request = recording();
    request.caret(11.0, {kHighest - 1, kHighest - 1, 60, 80});
    const camera::Scene scene = readScene(request, {kHighest - 100, kHighest, 50, 450}, 10000, 20000);
    EXPECT_THAT(runsOf(scene.carets), ElementsAre(Span{1.0, 10.0, {99, 10, 100, 30}}));
}

TEST(SceneTest, Carets_AtTheSameTick_TheLastOneStands) {
    const std::vector<Span> runs =
        carets(recording().caret(12.0, box(110, 60, 1, 20)).caret(12.0, box(120, 60, 1, 20)));
    ASSERT_FALSE(runs.empty());
    EXPECT_EQ(runs.back(), (Span{2.0, 10.0, {20, 10, 21, 30}}));
    EXPECT_EQ(runs.front().to, 2.0);
}

TEST(SceneTest, Carets_OutOfOrder_ArePassedOver) {
    Scene request = recording();
    request.caret(12.0, box(110, 60, 1, 20)).caret(11.0, box(300, 60, 1, 20)).caret(14.0, box(120, 60, 1, 20));
    EXPECT_THAT(carets(request), ElementsAre(Span{2.0, 4.0, {10, 10, 11, 30}}, Span{4.0, 10.0, {20, 10, 21, 30}}));
}

} // namespace
} // namespace OrvantaNS::testing
