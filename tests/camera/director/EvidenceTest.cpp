#include "camera/director/Evidence.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "EmptyScene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

// A readable frame is 853.33 by 533.33 pixels. With a line of 20 pixels a press is 160 by 100, typing 360 by 70.
const FrameShape kShape(640, 400, 1280, 800, 0.75, false);
const RealRect kScreen{0, 0, 1280, 800};
// Half of the screen has 512,000 pixels, a readable frame 455,111: as a page the screen counts for 8/9.
constexpr double kWholeScreen = 8.0 / 9.0;
// The same for a window of 1180 by 800 pixels.
constexpr double kWideWindow = kWholeScreen * 1280.0 / 1180.0;

/// Adds changes of one step; steps in order.
void addChanges(camera::Scene& scene, std::size_t step, const std::vector<SceneChange>& changes) {
    scene.changes.insert(scene.changes.end(), changes.begin(), changes.end());
    for (std::size_t i = step; i < scene.changeEnds.size(); ++i) {
        scene.changeEnds[i] = static_cast<std::uint32_t>(scene.changes.size());
    }
}

DirectorWeights distinctWeights() {
    DirectorWeights w;
    w.press = 3.0;
    w.drag = 5.0;
    w.typing = 7.0;
    w.change = 2.0;
    w.smallWindow = 11.0;
    w.windowOpens = 13.0;
    w.parent = 17.0;
    w.returns = 19.0;
    w.page = 23.0;
    w.leftPart = 0.5;
    w.pressPart = 0.25;
    w.linger = 8.0;
    w.context = 31.0;
    w.cursor = 100.0;
    w.whole = 0.5;
    w.unreadBrief = 0.25;
    return w;
}

std::vector<Evidence> of(const camera::Scene& scene, EvidenceKind kind) {
    std::vector<Evidence> list = gatherEvidence(scene, kShape, distinctWeights());
    std::erase_if(list, [kind](const Evidence& one) { return one.kind != kind; });
    return list;
}

void expect(const Evidence& one, std::int32_t from, std::int32_t to, const RealRect& rect, double weight) {
    EXPECT_EQ(one.from, from);
    EXPECT_EQ(one.to, to);
    EXPECT_NEAR(one.rect.left, rect.left, 1e-9);
    EXPECT_NEAR(one.rect.top, rect.top, 1e-9);
    EXPECT_NEAR(one.rect.right, rect.right, 1e-9);
    EXPECT_NEAR(one.rect.bottom, rect.bottom, 1e-9);
    EXPECT_NEAR(one.weight, weight, 1e-9);
}

ScenePress press(double seconds, double release, double x, double y) { return {seconds, release, x, y, {x, y, x, y}}; }

TEST(EvidenceTest, NothingHappens_OnlyTheWholeScreenIsLeft) {
    const auto list = gatherEvidence(emptyScene(60.0), kShape, distinctWeights());
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].kind, EvidenceKind::Whole);
    expect(list[0], 0, 240, kScreen, 0.5);
}

TEST(EvidenceTest, Press_FromHalfASecondBeforeToASecondAfterItsRelease) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.2, 400, 300));
    const auto list = of(scene, EvidenceKind::Press);
    ASSERT_EQ(list.size(), 1u);
    // 9.5 s is step 38, 11.2 s lies in step 44.
    expect(list[0], 38, 45, {320, 250, 480, 350}, 3.0);
    EXPECT_TRUE(of(scene, EvidenceKind::Drag).empty());
}

TEST(EvidenceTest, Press_InACorner_IsCutToTheScreen) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.0, 10, 790));
    scene.presses.push_back(press(20.0, 20.0, 1270, 10));
    const auto list = of(scene, EvidenceKind::Press);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 38, 44, {0, 740, 90, 800}, 3.0);
    expect(list[1], 78, 84, {1190, 0, 1280, 60}, 3.0);
}

TEST(EvidenceTest, Press_AtTheClipsEdges_IsCutToTheClip) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(0.0, 0.1, 400, 300));
    scene.presses.push_back(press(59.9, 59.9, 400, 300));
    const auto list = of(scene, EvidenceKind::Press);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].from, 0);
    EXPECT_EQ(list[0].to, 5);
    EXPECT_EQ(list[1].to, 241);
}

TEST(EvidenceTest, Drag_IsTheBoxOfItsPathWithRoomAround) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back({10.0, 12.0, 400, 300, {400, 300, 600, 400}});
    const auto list = of(scene, EvidenceKind::Drag);
    ASSERT_EQ(list.size(), 1u);
    // A line and a half to the sides, one above and below; a quarter of a second before, a half after.
    expect(list[0], 39, 50, {370, 280, 630, 420}, 5.0);
    scene.presses.front().seconds = 10.2; // a quarter of a second before is still step 39
    EXPECT_EQ(of(scene, EvidenceKind::Drag).at(0).from, 39);
}

TEST(EvidenceTest, Drag_NotLongerThanAPressOrNotLargerThanATremor_IsNone) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back({10.0, 10.25, 400, 300, {400, 300, 600, 400}});
    // 100 by 80 pixels are the twenty square lines that a drag must exceed.
    scene.presses.push_back({20.0, 22.0, 400, 300, {400, 300, 440, 340}});
    // Just as long as a press may be.
    scene.presses.push_back({0.0, 0.3, 400, 300, {400, 300, 600, 400}});
    EXPECT_TRUE(of(scene, EvidenceKind::Drag).empty());
    scene.presses.push_back({30.0, 30.5, 400, 300, {400, 300, 441, 340}});
    EXPECT_EQ(of(scene, EvidenceKind::Drag).size(), 1u);
}

TEST(EvidenceTest, Typing_ForAGoodSecondOrUntilTheCaretGoes) {
    camera::Scene scene = emptyScene(60.0);
    scene.carets.push_back({5.0, 30.0, {400, 200, 402, 220}});
    scene.carets.push_back({30.0, 30.5, {100, 200, 102, 220}});
    const auto list = of(scene, EvidenceKind::Typing);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 19, 25, {221, 175, 581, 245}, 7.0);
    expect(list[1], 119, 122, {0, 175, 281, 245}, 7.0);
}

TEST(EvidenceTest, Typing_CaretThatGoesAtOnce_IsNone) {
    camera::Scene scene = emptyScene(60.0);
    scene.carets.push_back({0.0, 0.0, {400, 200, 402, 220}});
    EXPECT_TRUE(of(scene, EvidenceKind::Typing).empty());
}

TEST(EvidenceTest, LargeWindow_OpensAndIsThePageAndThenTheContext) {
    camera::Scene scene = emptyScene(60.0);
    const RealRect window{100, 0, 1280, 800};
    scene.windows.push_back({10.0, 40.0, window});
    auto list = of(scene, EvidenceKind::WindowOpens);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 50, window, 13.0);
    list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 50, window, 19.0 * kWideWindow);
    list = of(scene, EvidenceKind::Context);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 160, window, 31.0);
    EXPECT_TRUE(of(scene, EvidenceKind::SmallWindow).empty());
}

TEST(EvidenceTest, SmallWindow_IsOfInterestWhileItStands_WithItsParent) {
    camera::Scene scene = emptyScene(60.0);
    const RealRect window{100, 0, 1280, 800};
    const RealRect dialog{300, 200, 700, 450};
    scene.windows.push_back({10.0, 20.0, window});
    scene.windows.push_back({20.0, 30.0, dialog});
    auto list = of(scene, EvidenceKind::SmallWindow);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 80, 120, dialog, 11.0);
    list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 2u);
    expect(list[1], 80, 120, window, 17.0 * kWideWindow);
    EXPECT_EQ(of(scene, EvidenceKind::Context).size(), 1u);
}

TEST(EvidenceTest, WindowBetweenSmallAndLarge_IsBothInPart) {
    // 640 / 0.75 / 1000 = 0.8533 of the readable zoom: (0.8533 - 0.7) / 0.3 = 0.5111 small; at 1010 columns 0.4829.
    camera::Scene scene = emptyScene(60.0);
    const RealRect smaller{0, 0, 1000, 100};
    const RealRect larger{0, 0, 1010, 100};
    const double half = (640.0 / 0.75 / 1000.0 - 0.7) / 0.3;
    const double less = (640.0 / 0.75 / 1010.0 - 0.7) / 0.3;
    scene.windows.push_back({10.0, 20.0, smaller});
    scene.windows.push_back({20.0, 30.0, larger});
    auto list = of(scene, EvidenceKind::SmallWindow);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 40, 80, smaller, 11.0 * half);
    expect(list[1], 80, 120, larger, 11.0 * less);
    // More small than large: no parent of others, and no page of its own.
    list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 80, 90, larger, 19.0 * (1.0 - less));
    list = of(scene, EvidenceKind::Context);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 40, 80, smaller, 31.0 * (1.0 - half));
}

TEST(EvidenceTest, WindowBetweenSmallAndLarge_ShowsItsParentInPart) {
    camera::Scene scene = emptyScene(60.0);
    const RealRect window{100, 0, 1280, 800};
    scene.windows.push_back({10.0, 20.0, window});
    scene.windows.push_back({20.0, 30.0, {0, 0, 1000, 100}});
    const auto list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 2u);
    expect(list[1], 80, 120, window, 17.0 * kWideWindow * (640.0 / 0.75 / 1000.0 - 0.7) / 0.3);
}

TEST(EvidenceTest, WindowJustBetweenSmallAndLarge_IsNoPage) {
    // 0.85 of the readable zoom shows 1000 columns: half way between 0.7 and 1.
    const FrameShape shape(850, 500, 1280, 800, 1.0, false);
    camera::Scene scene = emptyScene(60.0);
    scene.windows.push_back({10.0, 20.0, {0, 0, 1000, 100}});
    for (const Evidence& one : gatherEvidence(scene, shape, distinctWeights())) {
        EXPECT_NE(one.kind, EvidenceKind::Page);
    }
}

TEST(EvidenceTest, MovingWindow_OpensByHalfAndIsNothingElse) {
    camera::Scene scene = emptyScene(60.0);
    scene.windows.push_back({10.0, 10.25, {0, 0, 400, 300}});
    const auto list = gatherEvidence(scene, kShape, distinctWeights());
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].kind, EvidenceKind::WindowOpens);
    expect(list[0], 40, 41, {0, 0, 400, 300}, 6.5);
}

TEST(EvidenceTest, WindowThatStaysForMoreThanAMoment_OpensInFull) {
    camera::Scene scene = emptyScene(60.0);
    scene.windows.push_back({10.0, 10.3, {0, 0, 400, 300}});
    const auto list = of(scene, EvidenceKind::WindowOpens);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 42, {0, 0, 400, 300}, 13.0);
    scene.windows.front() = {0.0, 0.3, {0, 0, 400, 300}}; // just as long
    expect(of(scene, EvidenceKind::WindowOpens).at(0), 0, 2, {0, 0, 400, 300}, 13.0);
}

TEST(EvidenceTest, WindowOfTheLastThree_DoesNotOpenAgain) {
    const RealRect a{0, 0, 400, 300};
    const RealRect b{100, 0, 500, 300};
    const RealRect c{200, 0, 600, 300};
    const RealRect d{300, 0, 700, 300};
    const auto opened = [](const std::vector<RealRect>& order) {
        camera::Scene scene = emptyScene(60.0);
        for (std::size_t i = 0; i < order.size(); ++i) {
            const double from = 5.0 * static_cast<double>(i);
            scene.windows.push_back({from, from + 5.0, order[i]});
        }
        return of(scene, EvidenceKind::WindowOpens).size();
    };
    EXPECT_EQ(opened({a, b, a}), 2u);
    EXPECT_EQ(opened({a, b, c, a}), 3u);
    EXPECT_EQ(opened({a, b, c, d, a}), 5u);
    EXPECT_EQ(opened({a, {}, b, c, a}), 3u); // no window at all is none of them
}

TEST(EvidenceTest, ChangesOfAStep_ShareOneWeightByTheirAttention) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{{100, 100, 200, 140}, 1.0}, {{500, 500, 600, 540}, 0.12}});
    const auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 40, 43, {100, 100, 200, 140}, 2.0 / 1.12);
    expect(list[1], 40, 43, {500, 500, 600, 540}, 0.24 / 1.12);
}

TEST(EvidenceTest, ChangeOfTheFirstStep_CountsFromThereOn) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 0, {{{100, 100, 200, 140}, 1.0}});
    const auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 0, 3, {100, 100, 200, 140}, 2.0);
}

TEST(EvidenceTest, ClockworkAlone_KeepsItsLittleAttention) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{{100, 100, 200, 140}, 0.12}});
    const auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 43, {100, 100, 200, 140}, 0.24);
    // And is nothing that the viewer goes on looking at.
    EXPECT_TRUE(of(scene, EvidenceKind::Linger).empty());
}

TEST(EvidenceTest, Speck_CountsLessAndDoesNotLinger) {
    // 0.3 square lines are 120 pixels.
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{{100, 100, 111, 110}, 1.0}});
    auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_NEAR(list[0].weight, 0.3 * 2.0, 1e-9);
    EXPECT_TRUE(of(scene, EvidenceKind::Linger).empty());
    scene = emptyScene(60.0);
    addChanges(scene, 40, {{{100, 100, 112, 110}, 1.0}});
    EXPECT_NEAR(of(scene, EvidenceKind::Change)[0].weight, 2.0, 1e-9);
    EXPECT_FALSE(of(scene, EvidenceKind::Linger).empty());
}

TEST(EvidenceTest, ChangeLargerThanAReadableFrame_CountsLess) {
    // A readable frame has 455,111 pixels; 512,000 would be half of the screen, and a page.
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{{0, 0, 650, 700}, 1.0}});
    addChanges(scene, 80, {{{0, 0, 700, 700}, 1.0}});
    const auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_NEAR(list[0].weight, 2.0, 1e-9);
    EXPECT_NEAR(list[1].weight, 0.4 * 2.0, 1e-9);
}

TEST(EvidenceTest, ChangeJustAsLargeAsAReadableFrame_CountsInFull) {
    // 1280 by 800 with 0.5 for readable.
    const FrameShape shape(640, 400, 2560, 1600, 0.5, false);
    camera::Scene scene = emptyScene(60.0);
    scene.width = 2560;
    scene.height = 1600;
    addChanges(scene, 40, {{{0, 0, 1280, 800}, 1.0}});
    addChanges(scene, 80, {{{0, 300, 1280, 320}, 1.0}});
    std::vector<double> weights;
    for (const Evidence& one : gatherEvidence(scene, shape, distinctWeights())) {
        if (one.kind == EvidenceKind::Change) {
            weights.push_back(one.weight);
        }
    }
    EXPECT_EQ(weights, (std::vector<double>{2.0, 2.0})) << "nor is it parted for its width";
}

TEST(EvidenceTest, WideChange_CountsMostAtItsLeftEnd) {
    camera::Scene scene = emptyScene(60.0);
    const RealRect row{100, 300, 1100, 320};
    addChanges(scene, 40, {{row, 1.0}});
    auto list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 2u);
    // 0.95 of a readable frame's 853.33 columns.
    expect(list[0], 40, 43, {100, 300, 100 + 0.95 * 640 / 0.75, 320}, 0.5 * 2.0);
    expect(list[1], 40, 43, row, 0.5 * 2.0);
    // What beats like a clock is taken as it is.
    scene = emptyScene(60.0);
    addChanges(scene, 40, {{row, 0.12}});
    list = of(scene, EvidenceKind::Change);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 40, 43, row, 0.24);
}

TEST(EvidenceTest, RowALittleWiderThanAReadableFrame_IsMissedByAFrameThatCutsIt) {
    // In portrait the readable frame is 480 pixels wide, and the largest is 603.
    const FrameShape portrait(360, 640, 1920, 1080, 0.75, false);
    camera::Scene scene = emptyScene(60.0);
    scene.width = 1920;
    scene.height = 1080;
    addChanges(scene, 40, {{{100, 300, 1100, 320}, 1.0}});
    const auto list = gatherEvidence(scene, portrait, distinctWeights());
    const auto row =
        std::find_if(list.begin(), list.end(), [](const Evidence& one) { return one.kind == EvidenceKind::Change; });
    ASSERT_NE(row, list.end());
    EXPECT_NEAR(width(row->rect), 0.95 * 603, 1e-9);
}

TEST(EvidenceTest, WideChange_CountsWhereTheLastPressWas_For20Seconds) {
    const RealRect row{100, 300, 1100, 320};
    const auto parts = [&row](double seconds, double y) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(1.0, 1.0, 500, 310));
        scene.presses.push_back(press(seconds, seconds, 800, y));
        addChanges(scene, 160, {{row, 1.0}}); // at 40 s
        return of(scene, EvidenceKind::Change);
    };
    const auto pointed = parts(20.25, 310.0);
    ASSERT_EQ(pointed.size(), 3u);
    expect(pointed[1], 160, 163, {620, 275, 980, 345}, 0.25 * 2.0);
    expect(pointed[2], 160, 163, row, 0.25 * 2.0);
    EXPECT_EQ(parts(40.0, 310.0).size(), 3u); // pressed at that very moment
    EXPECT_EQ(parts(20.0, 310.0).size(), 2u); // too long ago
    EXPECT_EQ(parts(30.0, 350.0).size(), 2u); // elsewhere, though the press before was in it
    EXPECT_EQ(parts(40.1, 310.0).size(), 2u); // not pressed yet; the one before is too old
}

TEST(EvidenceTest, HalfOfTheFrontWindowChanges_ItIsAPage) {
    camera::Scene scene = emptyScene(60.0);
    const RealRect window{0, 0, 1000, 800};
    scene.windows.push_back({0.0, 60.0, window});
    addChanges(scene, 40, {{{0, 0, 500, 800}, 1.0}}); // just half
    EXPECT_EQ(of(scene, EvidenceKind::Page).size(), 1u) << "that of the window which opens";
    addChanges(scene, 80, {{{0, 0, 501, 800}, 1.0}});
    auto list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 2u);
    // From the step before for two and a half seconds.
    expect(list[1], 79, 90, window, 23.0);
    // What changes next to the window does not count.
    addChanges(scene, 120, {{{700, 0, 1280, 800}, 1.0}});
    EXPECT_EQ(of(scene, EvidenceKind::Page).size(), 2u);
}

TEST(EvidenceTest, PageLargerThanTwoReadableFrames_CountsInProportion) {
    const auto weights = [](const FrameShape& shape, const RealRect& page) {
        camera::Scene scene = emptyScene(60.0);
        scene.width = shape.regionWidth();
        scene.height = shape.regionHeight();
        scene.windows.push_back({0.0, 30.0, page});
        scene.windows.push_back({30.0, 60.0, {0, 0, 200, 100}}); // a menu
        addChanges(scene, 80, {{page, 1.0}});
        std::vector<double> found;
        for (const Evidence& one : gatherEvidence(scene, shape, distinctWeights())) {
            if (one.kind == EvidenceKind::Page) {
                found.push_back(one.weight);
            }
        }
        return found;
    };
    const auto expectPart = [](const std::vector<double>& found, double part) {
        ASSERT_EQ(found.size(), 3u);
        EXPECT_NEAR(found[0], 19.0 * part, 1e-9) << "the window comes to the front";
        EXPECT_NEAR(found[1], 17.0 * part, 1e-9) << "a menu stands over it";
        EXPECT_NEAR(found[2], 23.0 * part, 1e-9) << "it is drawn anew";
    };
    // A readable frame has 1280 * 800 * 4 / 9 pixels. 1280 by 711 is just less than two of them, 1280 by 712 just more.
    const FrameShape large(640, 400, 2560, 1600, 0.75, false);
    expectPart(weights(large, {0, 0, 1280, 711}), 1.0);
    expectPart(weights(large, {0, 0, 1280, 712}), 8.0 / 9.0 * 800.0 / 712.0);
    expectPart(weights(large, {0, 0, 2560, 1600}), 2.0 / 9.0);
    // With half the zoom for readable a readable frame is four times as large.
    expectPart(weights(FrameShape(640, 400, 2560, 1600, 0.375, false), {0, 0, 2560, 1600}), 8.0 / 9.0);
    // In portrait no frame shows more than 500 by 800 pixels of it, less than two readable frames.
    expectPart(weights(FrameShape(400, 640, 1280, 800, 0.75, false), kScreen), 1.0);
    // Of a screen that is higher than wide, no frame in landscape shows more than 2000 by 1250.
    expectPart(weights(FrameShape(640, 400, 2000, 4000, 0.75, false), {0, 0, 2000, 4000}),
               kWholeScreen * 1280.0 / 2000.0 * 800.0 / 1250.0);
    // One that may overhang shows all of it, in landscape too.
    expectPart(weights(FrameShape(400, 640, 1280, 800, 0.75, true), kScreen), kWholeScreen);
}

/// A scene that is drawn as a whole at 6, 8, 10 and 12 s: four times within ten seconds of each, which is a third of a
/// page's weight.
camera::Scene restless() {
    camera::Scene scene = emptyScene(60.0);
    for (const std::size_t step : {24U, 32U, 40U, 48U}) {
        addChanges(scene, step, {{kScreen, 1.0}});
    }
    return scene;
}

TEST(EvidenceTest, PageThatIsDrawnAgainAndAgain_CountsLessAndDoesNotLinger) {
    const auto pages = of(restless(), EvidenceKind::Page);
    ASSERT_EQ(pages.size(), 4u);
    expect(pages[0], 23, 34, kScreen, 23.0 * kWholeScreen / 3.0);
    expect(pages[1], 34, 42, kScreen, 23.0 * kWholeScreen / 3.0);
    expect(pages[2], 42, 50, kScreen, 23.0 * kWholeScreen / 3.0);
    expect(pages[3], 50, 58, kScreen, 23.0 * kWholeScreen / 3.0);
    EXPECT_TRUE(of(restless(), EvidenceKind::Linger).empty());

    camera::Scene thrice = emptyScene(60.0);
    for (const std::size_t step : {24U, 32U, 40U}) {
        addChanges(thrice, step, {{kScreen, 1.0}});
    }
    EXPECT_NEAR(of(thrice, EvidenceKind::Page).at(0).weight, 23.0 * kWholeScreen / 2.0, 1e-9);
    EXPECT_EQ(of(thrice, EvidenceKind::Linger).size(), 3u); // half of a page is still what one looks at
}

TEST(EvidenceTest, PageWithinASecondOfAPress_AnswersTheHand) {
    const auto pages = [](double release) {
        camera::Scene scene = restless();
        scene.presses.push_back(press(release, release, 400, 300));
        return of(scene, EvidenceKind::Page);
    };
    // It stands beside what the redraws before it left.
    ASSERT_EQ(pages(9.01).size(), 4u);
    expect(pages(9.01)[1], 34, 42, kScreen, 23.0 * kWholeScreen / 3.0);
    expect(pages(9.01)[2], 39, 50, kScreen, 23.0); // in full, however large
    expect(pages(9.01)[3], 50, 58, kScreen, 23.0 * kWholeScreen / 3.0);
    expect(pages(9.0)[2], 42, 50, kScreen, 23.0 * kWholeScreen / 3.0);
    // A press within the step itself is answered, the next step's is not yet.
    expect(pages(10.2)[2], 39, 50, kScreen, 23.0);
    expect(pages(10.25)[2], 42, 50, kScreen, 23.0 * kWholeScreen / 3.0);
}

TEST(EvidenceTest, PageAfterASecondOfWorkInOnePlace_AnswersNoHand) {
    const auto weight = [](double first, double x) {
        camera::Scene scene = restless();
        scene.presses.push_back(press(first, first, x, 300));
        scene.presses.push_back(press(9.5, 9.5, 400, 300));
        const auto list = of(scene, EvidenceKind::Page);
        return std::max_element(list.begin(), list.end(),
                                [](const Evidence& a, const Evidence& b) { return a.weight < b.weight; })
            ->weight;
    };
    EXPECT_NEAR(weight(8.5, 420), 23.0 * kWholeScreen / 3.0, 1e-9) << "the third redraw, after a second and a half";
    EXPECT_EQ(weight(9.0, 420), 23.0) << "after one second";
    EXPECT_EQ(weight(8.5, 1200), 23.0) << "the first press lies elsewhere";
}

TEST(EvidenceTest, PageThatGoesOnChanging_IsOneStretch) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{kScreen, 1.0}});
    addChanges(scene, 44, {{kScreen, 1.0}});
    const auto list = of(scene, EvidenceKind::Page);
    ASSERT_EQ(list.size(), 2u);
    expect(list[0], 39, 50, kScreen, 23.0 * kWholeScreen);
    expect(list[1], 50, 54, kScreen, 23.0 * kWholeScreen);
}

TEST(EvidenceTest, Scrolling_ATenthOfTheWindowWithinHalfASecondOfTheWheel) {
    const auto pages = [](double wheel, double wide) {
        camera::Scene scene = emptyScene(60.0);
        scene.wheels.push_back(wheel);
        addChanges(scene, 40, {{{0, 0, wide, 256}, 1.0}});
        return of(scene, EvidenceKind::Page);
    };
    const auto list = pages(9.6, 401);
    ASSERT_EQ(list.size(), 1u);
    expect(list[0], 39, 50, kScreen, 23.0 * kWholeScreen);
    EXPECT_EQ(pages(10.2, 401).size(), 1u); // within the step
    EXPECT_TRUE(pages(9.5, 401).empty());
    EXPECT_TRUE(pages(10.25, 401).empty());
    EXPECT_TRUE(pages(9.6, 400).empty()); // a tenth, not more
}

TEST(EvidenceTest, Linger_WhatWasSeenLastFadesInThreeSteps) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.2, 400, 300));
    const auto list = of(scene, EvidenceKind::Linger);
    ASSERT_EQ(list.size(), 3u);
    // The press is of interest up to step 45, which is 11.25 s; then for 4 seconds, up to 10 seconds, and on.
    expect(list[0], 45, 61, {320, 250, 480, 350}, 8.0);
    expect(list[1], 61, 85, {320, 250, 480, 350}, 4.0);
    expect(list[2], 85, 241, {320, 250, 480, 350}, 2.0);
}

TEST(EvidenceTest, Linger_FromTheFirstStepOn) {
    camera::Scene scene = emptyScene(60.0);
    scene.carets.push_back({0.0, 0.2, {400, 200, 402, 220}});
    const auto list = of(scene, EvidenceKind::Linger);
    ASSERT_EQ(list.size(), 3u);
    expect(list[0], 1, 17, {221, 175, 581, 245}, 8.0);
}

TEST(EvidenceTest, Linger_OfWhatWasWorthThreeTenthsOrMore) {
    const auto lingers = [](double worth) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(10.0, 10.2, 400, 300));
        DirectorWeights weights = distinctWeights();
        weights.press = worth;
        const auto list = gatherEvidence(scene, kShape, weights);
        return std::any_of(list.begin(), list.end(),
                           [](const Evidence& one) { return one.kind == EvidenceKind::Linger; });
    };
    EXPECT_TRUE(lingers(0.3));
    EXPECT_FALSE(lingers(0.29));
}

TEST(EvidenceTest, Linger_HoldsAllThatWasOfInterestInTheLastStep) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 40, {{{100, 100, 200, 140}, 1.0}, {{500, 500, 600, 540}, 1.0}});
    const auto list = of(scene, EvidenceKind::Linger);
    ASSERT_EQ(list.size(), 3u);
    expect(list[0], 43, 59, {100, 100, 600, 540}, 8.0);
}

TEST(EvidenceTest, Linger_EndsWithTheNextThingOfInterest) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.2, 400, 300));
    scene.presses.push_back(press(13.0, 13.2, 400, 300));
    const auto list = of(scene, EvidenceKind::Linger);
    ASSERT_EQ(list.size(), 4u);
    expect(list[0], 45, 50, {320, 250, 480, 350}, 8.0);
}

TEST(EvidenceTest, Linger_OfJustFourOrTenSeconds_HasNoFurtherPart) {
    const auto parts = [](double second) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(10.0, 10.0, 400, 300)); // of interest to 11 s
        scene.presses.push_back(press(second, second, 400, 300));
        return of(scene, EvidenceKind::Linger).size();
    };
    // Three more come after the second press, half a second before which it is of interest.
    EXPECT_EQ(parts(15.5), 1u + 3u);
    EXPECT_EQ(parts(15.75), 2u + 3u);
    EXPECT_EQ(parts(21.5), 2u + 3u);
    EXPECT_EQ(parts(21.75), 3u + 3u);
}

TEST(EvidenceTest, Linger_HoldsWhatWasSeenInTheSecondsBefore_IfAReadableFrameHoldsIt) {
    const auto lasting = [](double seconds, double x) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(seconds, seconds, x, 300));
        scene.presses.push_back(press(20.0, 20.0, 400, 300));
        return of(scene, EvidenceKind::Linger).back().rect;
    };
    // The second press ends with step 83; the first must have ended less than 4 seconds before.
    EXPECT_EQ(lasting(16.5, 900), (RealRect{320, 250, 980, 350}));
    EXPECT_EQ(lasting(16.25, 900), (RealRect{320, 250, 980, 350})); // up to step 68
    EXPECT_EQ(lasting(16.0, 900), (RealRect{320, 250, 480, 350}));
    EXPECT_EQ(lasting(15.0, 900), (RealRect{320, 250, 480, 350}));
    // 854 columns are more than a readable frame has.
    EXPECT_EQ(lasting(16.5, 1093), (RealRect{320, 250, 1173, 350}));
    EXPECT_EQ(lasting(16.5, 1094), (RealRect{320, 250, 480, 350}));
}

TEST(EvidenceTest, Linger_HoldsWhatWasSeenInTheFirstStep) {
    camera::Scene scene = emptyScene(60.0);
    scene.carets.push_back({0.0, 0.2, {400, 200, 402, 220}}); // 221 to 581 by 175 to 245
    scene.presses.push_back(press(2.0, 2.0, 600, 300));       // 520 to 680 by 250 to 350
    EXPECT_EQ(of(scene, EvidenceKind::Linger).back().rect, (RealRect{221, 175, 680, 350}));
}

TEST(EvidenceTest, Linger_HoldsWhatWasOfLittleInterestToo) {
    camera::Scene scene = emptyScene(60.0);
    addChanges(scene, 70, {{{600, 300, 700, 340}, 1.0}});
    scene.presses.push_back(press(20.0, 20.0, 400, 300));
    DirectorWeights weights = distinctWeights();
    weights.change = 0.125;
    for (const Evidence& one : gatherEvidence(scene, kShape, weights)) {
        if (one.kind == EvidenceKind::Linger) {
            EXPECT_EQ(one.rect, (RealRect{320, 250, 700, 350}));
        }
    }
}

TEST(EvidenceTest, Linger_HoldsWhatAReadableFrameJustHolds) {
    const FrameShape shape(640, 400, 1280, 800, 0.5, false);
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.0, 80, 300));
    scene.presses.push_back(press(12.0, 12.0, 1200, 300));
    RealRect last;
    for (const Evidence& one : gatherEvidence(scene, shape, distinctWeights())) {
        if (one.kind == EvidenceKind::Linger) {
            last = one.rect;
        }
    }
    EXPECT_EQ(last, (RealRect{0, 250, 1280, 350}));
}

TEST(EvidenceTest, Cursor_CountsWhileItMovesAndLessWhileItRests) {
    camera::Scene scene = emptyScene(60.0);
    scene.cursor.assign(241, {true, false, 400, 300});
    scene.cursor[100].isNew = true;
    const auto list = of(scene, EvidenceKind::Cursor);
    ASSERT_EQ(list.size(), 240u); // the last step begins where the clip ends
    const RealRect around{367, 267, 433, 333};
    expect(list[0], 0, 1, around, 8.0);
    expect(list[99], 99, 100, around, 8.0);
    expect(list[100], 100, 101, around, 100.0);
    expect(list[103], 103, 104, around, 100.0); // 0.75 s
    expect(list[104], 104, 105, around, 40.0);  // 1 s
    expect(list[123], 123, 124, around, 40.0);  // 5.75 s
    expect(list[124], 124, 125, around, 8.0);   // 6 s
    for (SceneCursor& cursor : scene.cursor) {
        cursor.isInside = false;
    }
    EXPECT_TRUE(of(scene, EvidenceKind::Cursor).empty());
}

TEST(EvidenceTest, Reading_CountsInFullWhereOneStaysForThreeSeconds) {
    const auto reading = [](double second, double x) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(10.0, 10.0, 400, 300));
        scene.presses.push_back(press(second, second, x, 300));
        return of(scene, EvidenceKind::Press).at(0).reading;
    };
    EXPECT_EQ(reading(14.0, 420), 1.0);
    EXPECT_EQ(reading(13.0, 420), 1.0);
    EXPECT_NEAR(reading(12.0, 420), 2.0 / 3.0, 1e-12);
    EXPECT_EQ(reading(10.5, 420), 0.25); // a sixth is less than the least
    EXPECT_EQ(reading(13.0, 1200), 0.25) << "elsewhere";
}

TEST(EvidenceTest, Reading_GoesByTheSiteThatHoldsMostOfIt) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.0, 400, 300));
    scene.presses.push_back(press(13.0, 13.0, 420, 300));
    // In the box around the presses, which is 320 to 500 by 250 to 350; half out of it; and out of it.
    addChanges(scene, 44, {{{320, 260, 400, 300}, 1.0}});
    const auto changed = [&scene](const RealRect& rect) {
        camera::Scene other = scene;
        other.changes.front().rect = rect;
        other.changes.front().attention = 0.5; // no news, and so no part of the site
        return of(other, EvidenceKind::Change).at(0).reading;
    };
    EXPECT_EQ(changed({321, 260, 401, 300}), 1.0);
    EXPECT_EQ(changed({280, 260, 361, 300}), 1.0);
    EXPECT_EQ(changed({280, 260, 360, 300}), 0.25);
    EXPECT_EQ(changed({900, 260, 960, 300}), 0.25);
    EXPECT_EQ(of(scene, EvidenceKind::Change).at(0).reading, 1.0);
}

TEST(EvidenceTest, Reading_OfWhatComesWithinASecondAfterTheSite) {
    const auto reading = [](std::size_t step) {
        camera::Scene scene = emptyScene(60.0);
        scene.presses.push_back(press(10.0, 10.0, 400, 300));
        scene.presses.push_back(press(13.1, 13.1, 420, 300));
        addChanges(scene, step, {{{340, 280, 400, 310}, 0.5}});
        return of(scene, EvidenceKind::Change).at(0).reading;
    };
    EXPECT_EQ(reading(56), 1.0);  // 14 s
    EXPECT_EQ(reading(57), 0.25); // 14.25 s
    EXPECT_EQ(reading(37), 0.25); // 9.25 s: over when the site begins
    EXPECT_EQ(reading(38), 1.0);  // 9.5 s: not over then
}

TEST(EvidenceTest, Reading_OfWhatComesJustASecondAfterTheSite_DoesNotGoByIt) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.0, 400, 300));
    scene.presses.push_back(press(13.0, 13.0, 420, 300));
    addChanges(scene, 56, {{{340, 280, 400, 310}, 0.5}}); // at 14 s
    EXPECT_EQ(of(scene, EvidenceKind::Change).at(0).reading, 0.25);
}

TEST(EvidenceTest, Reading_NeverCountsMoreThanInFull) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back(press(10.0, 10.0, 400, 300));
    DirectorWeights weights = distinctWeights();
    weights.unreadBrief = 1.5;
    for (const Evidence& one : gatherEvidence(scene, kShape, weights)) {
        EXPECT_EQ(one.reading, 1.0);
    }
}

TEST(EvidenceTest, Reading_LooksAt256SitesAtMost) {
    const auto reading = [](int others) {
        camera::Scene scene = emptyScene(60.0);
        // Held while the caret jumps to and fro, each time to another site, and then stays for four seconds.
        scene.presses.push_back(press(5.0, 58.0, 400, 300));
        for (int i = 0; i < others; ++i) {
            const double x = i % 2 == 0 ? 1200.0 : 100.0;
            scene.carets.push_back({6.0 + 0.1 * i, 6.1 + 0.1 * i, {x, 290, x + 2.0, 310}});
        }
        scene.carets.push_back({34.0, 38.0, {400, 290, 402, 310}});
        scene.carets.push_back({38.0, 60.0, {420, 290, 422, 310}});
        return of(scene, EvidenceKind::Press).at(0).reading;
    };
    // The site of the press itself, which lasts a second, and 255 others leave none for the last one.
    EXPECT_EQ(reading(254), 1.0);
    EXPECT_NEAR(reading(256), 1.0 / 3.0, 1e-9);
}

TEST(EvidenceTest, Reading_OfWindowsDoesNotGoByTime) {
    camera::Scene scene = emptyScene(60.0);
    scene.windows.push_back({0.0, 20.0, kScreen});
    scene.windows.push_back({20.0, 21.0, {100, 100, 300, 300}});
    scene.windows.push_back({21.0, 60.0, kScreen});
    for (const EvidenceKind kind : {EvidenceKind::WindowOpens, EvidenceKind::Page, EvidenceKind::SmallWindow}) {
        ASSERT_FALSE(of(scene, kind).empty());
        for (const Evidence& one : of(scene, kind)) {
            EXPECT_EQ(one.reading, 1.0);
        }
    }
}

TEST(EvidenceTest, NameOf_TellsEveryKind) {
    EXPECT_EQ(nameOf(EvidenceKind::Press), "press");
    EXPECT_EQ(nameOf(EvidenceKind::SmallWindow), "small window");
    EXPECT_EQ(nameOf(EvidenceKind::Whole), "whole");
}

} // namespace
} // namespace OrvantaNS::testing
