#include "camera/director/Candidates.h"

#include <ostream>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EmptyScene.h"

namespace OrvantaNS::camera {

bool operator==(const Candidate& a, const Candidate& b) { return a.rect == b.rect && a.from == b.from && a.to == b.to; }

std::ostream& operator<<(std::ostream& out, const Candidate& one) {
    return out << '{' << one.rect.left << ", " << one.rect.top << ", " << one.rect.right << ", " << one.rect.bottom
               << "} " << one.from << ".." << one.to;
}

} // namespace OrvantaNS::camera

namespace OrvantaNS::testing {
namespace {

using namespace camera;
using ::testing::ElementsAre;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

// Frames are multiples of 8 by 5 pixels, 640 by 400 at least. A readable frame is 853.33 pixels wide: 856 by 535.
const FrameShape kShape(640, 400, 1280, 800, 0.75, false);
// Presses within 3.5 s are to be held together.
constexpr double kReach = 3.5;

const Candidate kWhole{{0, 0, 1280, 800}, 0, 481};

ScenePress press(double seconds, double x, double y) { return {seconds, seconds, x, y, {x, y, x, y}}; }

/// A press as evidence, 160 by 100 around a point, for two seconds from a step on.
Evidence pressed(std::int32_t step, double x, double y) {
    return {EvidenceKind::Press, step, step + 8, {x - 80, y - 50, x + 80, y + 50}, 1.0};
}

std::vector<Candidate> find(const camera::Scene& scene, const std::vector<Evidence>& evidence = {},
                            double reach = kReach) {
    return findCandidates(scene, kShape, evidence, reach);
}

std::vector<Candidate> forPresses(const std::vector<ScenePress>& presses, double reach = kReach) {
    camera::Scene scene = emptyScene(120.0);
    scene.presses = presses;
    return find(scene, {}, reach);
}

std::vector<Candidate> forWindows(const std::vector<SceneWindow>& windows) {
    camera::Scene scene = emptyScene(120.0);
    scene.windows = windows;
    return find(scene);
}

// ---- The largest frames ----

TEST(CandidatesTest, NothingHappens_OnlyTheWholeIsLeft) { EXPECT_THAT(find(emptyScene(120.0)), ElementsAre(kWhole)); }

TEST(CandidatesTest, Portrait_FiveOfTheLargestFramesStandSideBySide_TheMiddleOneFirst) {
    // Multiples of 9 by 16 pixels; 450 by 800 is the largest inside. Their centres stand at quarters of the region.
    const FrameShape portrait(360, 640, 1280, 800, 0.75, false);
    EXPECT_THAT(findCandidates(emptyScene(120.0), portrait, {}, kReach),
                ElementsAre(Candidate{{415, 0, 865, 800}, 0, 481}, Candidate{{0, 0, 450, 800}, 0, 481},
                            Candidate{{95, 0, 545, 800}, 0, 481}, Candidate{{735, 0, 1185, 800}, 0, 481},
                            Candidate{{830, 0, 1280, 800}, 0, 481}));
}

TEST(CandidatesTest, Banner_TheLargestFramesStandAboveEachOther) {
    // Multiples of 16 by 1 pixels: 1280 by 80 is the largest inside.
    const FrameShape banner(640, 40, 1280, 800, 0.75, false);
    EXPECT_THAT(findCandidates(emptyScene(120.0), banner, {}, kReach),
                ElementsAre(Candidate{{0, 360, 1280, 440}, 0, 481}, Candidate{{0, 0, 1280, 80}, 0, 481},
                            Candidate{{0, 160, 1280, 240}, 0, 481}, Candidate{{0, 560, 1280, 640}, 0, 481},
                            Candidate{{0, 720, 1280, 800}, 0, 481}));
}

// ---- Presses ----

TEST(CandidatesTest, Press_HasTheTightestFrameAroundIt_ForItsReachAndASecondMore) {
    // From 25.5 s, step 102, to 34.5 s, step 138.
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5)}), ElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 102, 139}));
}

TEST(CandidatesTest, Press_HasTwoLinesAroundIt_AndNoMore) {
    // Of 100 pixels they are 400 by 400, which the tightest frame just holds.
    camera::Scene scene = emptyScene(120.0);
    scene.lineHeight = 100.0;
    scene.presses = {press(30.0, 640.5, 400.5)};
    EXPECT_THAT(find(scene), ElementsAre(kWhole, Candidate{{321, 201, 961, 601}, 102, 139}));
}

TEST(CandidatesTest, Presses_WithinTheirReach_HaveAFrameThatHoldsBothWithTwoLinesAround) {
    const ScenePress first = press(30.0, 400.5, 300.5);
    const Candidate alone{{81, 101, 721, 501}, 102, 139};
    // They are 800 apart; with 40 on either side 880. 33.5 s is the last that is within reach.
    EXPECT_THAT(forPresses({first, press(33.5, 1200.5, 300.5)}),
                UnorderedElementsAre(kWhole, alone, Candidate{{640, 101, 1280, 501}, 116, 153},
                                     Candidate{{361, 26, 1241, 576}, 102, 153}));
    EXPECT_THAT(forPresses({first, press(33.75, 1200.5, 300.5)}),
                UnorderedElementsAre(kWhole, alone, Candidate{{640, 101, 1280, 501}, 117, 154}));
}

TEST(CandidatesTest, Presses_OneBelowTheOther_HaveAFrameAsHighAsBoth) {
    // 500 apart, 580 with the lines around; frames 928 wide are so high.
    EXPECT_THAT(forPresses({press(30.0, 600.5, 100.5), press(32.0, 600.5, 600.5)}),
                UnorderedElementsAre(kWhole, Candidate{{281, 0, 921, 400}, 102, 139},
                                     Candidate{{281, 400, 921, 800}, 110, 147},
                                     Candidate{{137, 61, 1065, 641}, 102, 147}));
}

TEST(CandidatesTest, Presses_AtOnePlace_AreOneCandidate) {
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5), press(32.0, 400.5, 300.5)}),
                ElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 102, 147}));
}

TEST(CandidatesTest, Presses_APixelApart_HaveFramesOfTheirOwn) {
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5), press(30.0, 401.5, 300.5)}),
                UnorderedElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 102, 139},
                                     Candidate{{82, 101, 722, 501}, 102, 139}));
}

TEST(CandidatesTest, Presses_63After_AreJoinedAtMost) {
    // The first press joins with the 63 after it, from 25.5 s on; the second one begins a second later.
    const auto beginsAt = [](std::size_t index) {
        std::vector<ScenePress> presses{press(30.0, 400.5, 300.5)};
        presses.resize(70, press(31.0, 400.5, 300.5));
        for (std::size_t i = index; i < presses.size(); ++i) {
            presses[i] = press(31.0, 1200.5, 300.5);
        }
        for (const Candidate& one : forPresses(presses)) {
            if (one.rect == RealRect{361, 26, 1241, 576}) {
                return one.from;
            }
        }
        return -1;
    };
    EXPECT_EQ(beginsAt(63), 102);
    EXPECT_EQ(beginsAt(64), 106);
}

TEST(CandidatesTest, PressBetweenTwoOthers_AddsNothingToTheirFrame) {
    // The frame of both lives to a second after the reach of the second one, which is 35.5 s.
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5), press(31.0, 1200.5, 300.5), press(33.0, 800.5, 300.5)}),
                ::testing::Contains(Candidate{{361, 26, 1241, 576}, 102, 143}));
}

TEST(CandidatesTest, Frames_ForLessThanThreeSeconds_AreNotWorthTheirWhile) {
    // A reach of a quarter of a second makes two and a half, one of a half three.
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5)}, 0.25), ElementsAre(kWhole));
    EXPECT_THAT(forPresses({press(30.0, 400.5, 300.5)}, 0.5),
                ElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 114, 127}));
    // But at the clip's ends they may be short.
    EXPECT_THAT(forPresses({press(1.25, 400.5, 300.5)}, 0.25),
                ElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 0, 11}));
    EXPECT_THAT(forPresses({press(1.5, 400.5, 300.5)}, 0.25), ElementsAre(kWhole));
    EXPECT_THAT(forPresses({press(118.75, 400.5, 300.5)}, 0.25),
                ElementsAre(kWhole, Candidate{{81, 101, 721, 501}, 470, 481}));
    EXPECT_THAT(forPresses({press(118.5, 400.5, 300.5)}, 0.25), ElementsAre(kWhole));
}

// ---- Windows ----

TEST(CandidatesTest, Window_HasTheFrameThatHoldsItWithALittleRoom_BeforeAndAfter) {
    // 760 by 400 with a fiftieth more is 775.2 wide. From four seconds before it to twelve after it.
    EXPECT_THAT(forWindows({{30.0, 40.0, {100, 100, 860, 500}}}),
                ElementsAre(kWhole, Candidate{{92, 58, 868, 543}, 104, 209}));
}

TEST(CandidatesTest, Windows_FourPixelsApart_HaveFramesOfTheirOwn) {
    EXPECT_THAT(
        forWindows({{30.0, 40.0, {100, 100, 860, 500}}, {40.0, 50.0, {104, 100, 864, 500}}}),
        UnorderedElementsAre(kWhole, Candidate{{92, 58, 868, 543}, 104, 209}, Candidate{{96, 58, 872, 543}, 144, 249}));
}

TEST(CandidatesTest, Window_OfAMoment_OrNone_HasNoFrame) {
    EXPECT_THAT(forWindows({{30.0, 30.5, {100, 100, 860, 500}}}), ElementsAre(kWhole));
    EXPECT_THAT(forWindows({{30.0, 30.75, {100, 100, 860, 500}}}), SizeIs(2));
    EXPECT_THAT(forWindows({{30.0, 40.0, {}}}), ElementsAre(kWhole));
}

TEST(CandidatesTest, SameFrame_WithinFiveSecondsOfItsEnd_IsOneCandidate) {
    const SceneWindow first{20.0, 22.0, {100, 100, 860, 500}};
    // The first lives to step 136, one past which and five seconds on is step 157: 39.25 s, four before 43.25 s.
    EXPECT_THAT(forWindows({first, {22.0, 43.25, {}}, {43.25, 45.0, first.rect}}),
                ElementsAre(kWhole, Candidate{{92, 58, 868, 543}, 64, 229}));
    EXPECT_THAT(forWindows({first, {22.0, 43.5, {}}, {43.5, 45.0, first.rect}}),
                ElementsAre(kWhole, Candidate{{92, 58, 868, 543}, 64, 137}, Candidate{{92, 58, 868, 543}, 158, 229}));
}

TEST(CandidatesTest, SameFrame_WithinALongerOne_LeavesItAsLong) {
    camera::Scene scene = emptyScene(120.0);
    // A long window with a dialog in it that ends first: the frame of both lives as long as the longer one.
    scene.windows = {{20.0, 60.0, {100, 100, 860, 500}}, {30.0, 32.0, {100, 100, 860, 500}}};
    EXPECT_THAT(find(scene), ElementsAre(kWhole, Candidate{{92, 58, 868, 543}, 64, 289}));
}

// ---- Evidence ----

TEST(CandidatesTest, StrongEvidence_HasItsFrameAndAReadableOne) {
    // From four seconds before 30 s to 14 after the 24 and the 6 s over which evidence is joined.
    EXPECT_THAT(
        find(emptyScene(120.0), {pressed(120, 400, 300)}),
        UnorderedElementsAre(kWhole, Candidate{{80, 100, 720, 500}, 104, 273}, Candidate{{0, 33, 856, 568}, 104, 201}));
}

TEST(CandidatesTest, Evidence_OnlyStrongKindsHaveFrames) {
    const auto isStrong = [](EvidenceKind kind, double weight, const RealRect& rect) {
        return find(emptyScene(120.0), {{kind, 120, 128, rect, weight}}).size() > 1;
    };
    const RealRect rect{300, 300, 400, 400};
    for (const EvidenceKind kind : {EvidenceKind::Press, EvidenceKind::Drag, EvidenceKind::Typing,
                                    EvidenceKind::SmallWindow, EvidenceKind::WindowOpens}) {
        EXPECT_TRUE(isStrong(kind, 0.01, rect)) << nameOf(kind);
    }
    for (const EvidenceKind kind :
         {EvidenceKind::Page, EvidenceKind::Linger, EvidenceKind::Context, EvidenceKind::Cursor, EvidenceKind::Whole}) {
        EXPECT_FALSE(isStrong(kind, 5.0, rect)) << nameOf(kind);
    }
    EXPECT_FALSE(isStrong(EvidenceKind::Change, 0.15, rect));
    EXPECT_TRUE(isStrong(EvidenceKind::Change, 0.16, rect));
    // A square of a line's height is no more than a letter.
    EXPECT_FALSE(isStrong(EvidenceKind::Change, 5.0, {300, 300, 320, 320}));
    EXPECT_TRUE(isStrong(EvidenceKind::Change, 5.0, {300, 300, 320, 321}));
}

TEST(CandidatesTest, TwoPlaces_HaveFramesEach_OneThatHoldsBoth_AndAReadableOneBetweenThem) {
    // At 30 s and 35 s.
    const std::vector<Evidence> evidence{pressed(120, 400, 300), pressed(140, 900, 500)};
    const std::vector<Candidate> found = find(emptyScene(120.0), evidence);
    EXPECT_THAT(found, UnorderedElementsAre(
                           kWhole,
                           // The first alone, over 0 and 3 s ahead; readable, over 0 s.
                           Candidate{{80, 100, 720, 500}, 104, 189}, Candidate{{0, 33, 856, 568}, 104, 177},
                           // Both, 660 by 300 and a twentieth more, over 6 to 24 s; readable, 6 s.
                           Candidate{{302, 183, 998, 618}, 104, 273}, Candidate{{222, 133, 1078, 668}, 104, 201},
                           // The second alone, from 35 s on.
                           Candidate{{580, 300, 1220, 700}, 124, 293}, Candidate{{424, 233, 1280, 768}, 124, 221}));
    // By time, whatever the order of the list.
    EXPECT_EQ(find(emptyScene(120.0), {evidence[1], evidence[0]}), found);
}

TEST(CandidatesTest, Places_AreJoinedUpToEachHorizon) {
    // Three seconds ahead at the most the two are joined by the second horizon, later by the third.
    const auto lifeOfBoth = [](std::int32_t second) {
        for (const Candidate& one : find(emptyScene(120.0), {pressed(120, 400, 300), pressed(second, 900, 500)})) {
            if (one.rect == RealRect{302, 183, 998, 618}) {
                return one.to;
            }
        }
        return 0;
    };
    // The last horizon makes the life; what the horizons do not reach is not joined.
    EXPECT_EQ(lifeOfBoth(132), 273);
    EXPECT_EQ(lifeOfBoth(216), 273);
    EXPECT_EQ(lifeOfBoth(217), 0);
}

TEST(CandidatesTest, SecondOfOnePlaceWithinTheSameSecond_AddsNothing) {
    const auto life = [](std::int32_t second, double x) {
        std::int32_t to = 0;
        for (const Candidate& one : find(emptyScene(120.0), {pressed(120, 400, 300), pressed(second, x, 300)})) {
            if (one.rect == RealRect{80, 100, 720, 500}) {
                to = one.to;
            }
        }
        return to;
    };
    EXPECT_EQ(life(123, 400), 273);
    // From the next second on it lives as much longer as it comes later.
    EXPECT_EQ(life(124, 400), 277);
}

TEST(CandidatesTest, Evidence_HasTheTightestFrameInItsMiddleToo) {
    // A window of 800 by 400 has its own frame, of 840, a readable one, and one pixel for pixel from 4 s before it to 14
    // after it.
    EXPECT_THAT(find(emptyScene(120.0), {{EvidenceKind::SmallWindow, 120, 140, {240, 200, 1040, 600}, 1.0}}),
                ::testing::Contains(Candidate{{320, 200, 960, 600}, 104, 177}));
}

TEST(CandidatesTest, EvidenceOfOneStep_HasItsFrameAlone) {
    EXPECT_THAT(find(emptyScene(120.0), {pressed(120, 400, 300), pressed(120, 900, 500)}),
                ::testing::IsSupersetOf(
                    {Candidate{{80, 100, 720, 500}, 104, 177}, Candidate{{580, 300, 1220, 700}, 104, 273}}));
}

TEST(CandidatesTest, EvidenceOfTheFirstSecond_IsKnownAgainToo) {
    const std::vector<Candidate> found = find(emptyScene(120.0), {pressed(0, 400, 300), pressed(3, 400, 300)});
    // 24 and 14 s after the first one; the second one, 0.75 s later, adds nothing.
    EXPECT_THAT(found, ::testing::Contains(Candidate{{80, 100, 720, 500}, 0, 153}));
}

TEST(CandidatesTest, FramesOfWindows_AreNeverTakenForThoseOfEvidence) {
    // A window's frame of 64 columns, and one of 1624 for evidence, of whose logarithm six times are 64, too. Both stand in
    // the corner.
    const FrameShape small(64, 40, 2048, 1280, 0.75, false);
    camera::Scene scene = emptyScene(120.0);
    scene.width = 2048;
    scene.height = 1280;
    scene.windows = {{30.0, 40.0, {0, 0, 60, 30}}};
    const auto found = findCandidates(scene, small, {{EvidenceKind::Press, 120, 128, {0, 0, 1540, 100}, 1.0}}, kReach);
    EXPECT_THAT(found, ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{0, 0, 1624, 1015})));
    EXPECT_THAT(found, ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{0, 0, 64, 40})));
}

TEST(CandidatesTest, ReadableFrameOfTwo_StandsAroundTheMeanOfTheirCentres) {
    // (650, 400.5), less half of 856 by 535.
    EXPECT_THAT(find(emptyScene(120.0), {pressed(120, 400, 300), pressed(140, 900, 501)}),
                ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{222, 133, 1078, 668})));
    // Twice in one place it stands closer to that: around (733.3, 433.3).
    EXPECT_THAT(find(emptyScene(120.0), {pressed(120, 400, 300), pressed(128, 900, 500), pressed(140, 900, 500)}),
                ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{305, 166, 1161, 701})));
}

TEST(CandidatesTest, PlacesAreJoined_TwelveSecondsAhead_WhereMoreFollows) {
    // At 30 s, some later, and 54 s, which is joined by the last horizon only.
    const auto lifeOfBoth = [](std::int32_t second) {
        const std::vector<Evidence> evidence{pressed(120, 400, 300), pressed(second, 900, 500), pressed(216, 100, 700)};
        for (const Candidate& one : find(emptyScene(120.0), evidence)) {
            if (one.rect == RealRect{302, 183, 998, 618}) {
                return one.to;
            }
        }
        return 0;
    };
    EXPECT_EQ(lifeOfBoth(168), 225); // 14 s after 42 s
    EXPECT_EQ(lifeOfBoth(169), 0);
}

/// The end of life of a frame of 640 columns at a place, for two presses; 0 when there is none.
std::int32_t lifeAt(double left, const Evidence& first, const Evidence& second, double top = 100.0) {
    for (const Candidate& one : find(emptyScene(120.0), {first, second})) {
        if (one.rect == RealRect{left, top, left + 640, top + 400}) {
            return one.to;
        }
    }
    return 0;
}

TEST(CandidatesTest, EvidenceOfOneSecond_IsOneWithinATwelfthOfAReadableFrame) {
    // Twelfths are 71.1 pixels wide: 390 and 400 stand in the same one, 420 and 430 do not.
    EXPECT_EQ(lifeAt(70, pressed(120, 390, 300), pressed(123, 400, 300)), 273);
    EXPECT_GT(lifeAt(110, pressed(120, 420, 300), pressed(123, 430, 300)), 0);
    EXPECT_EQ(lifeAt(80, pressed(120, 400, 300), pressed(123, 400, 303)), 273);
}

TEST(CandidatesTest, FramesAreOne_WithinATwelfthOfTheirWidth) {
    // Twelfths are 53.3 pixels wide: left edges of 95 and 102 lie in the same one, those of 104 and 110 do not.
    EXPECT_EQ(lifeAt(95, pressed(120, 415, 300), pressed(124, 422, 300)), 277);
    EXPECT_EQ(lifeAt(102, pressed(120, 415, 300), pressed(124, 422, 300)), 0);
    EXPECT_GT(lifeAt(104, pressed(120, 424, 300), pressed(124, 430, 300)), 0);
    EXPECT_GT(lifeAt(107, pressed(120, 424, 300), pressed(124, 430, 300)), 0); // of both, for the second one too
    // And 33.3 high: top edges of 60 and 64 lie in the same one, those of 60 and 70 do not.
    EXPECT_EQ(lifeAt(80, pressed(120, 400, 260), pressed(124, 400, 264), 60), 277);
    EXPECT_EQ(lifeAt(80, pressed(120, 400, 260), pressed(124, 400, 264), 64), 0);
    EXPECT_GT(lifeAt(80, pressed(120, 400, 260), pressed(124, 400, 270), 60), 0);
    EXPECT_GT(lifeAt(80, pressed(120, 400, 260), pressed(124, 400, 270), 70), 0);
}

TEST(CandidatesTest, FramesAreOne_WithinASixthOfAnOctave) {
    // 616 and 628 columns with a twentieth more need frames of 648 and 664, and six times their logarithms are 56.04 and
    // 56.25. Both frames begin at 100, 100.
    const std::vector<Candidate> found =
        find(emptyScene(120.0), {{EvidenceKind::Press, 120, 128, {116, 250, 732, 355}, 1.0},
                                 {EvidenceKind::Press, 124, 132, {118, 255, 746, 360}, 1.0}});
    EXPECT_THAT(found, ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{100, 100, 748, 505})));
    for (const Candidate& one : found) {
        EXPECT_NE(width(one.rect), 664.0);
    }
}

TEST(CandidatesTest, FramesOfOnePlaceAndTime_TheFirstStandsForAll) {
    // They are told apart as evidence, at either side of 497.8 pixels, and as frames stand in one twelfth of their width.
    const std::vector<Candidate> found = find(emptyScene(120.0), {pressed(120, 496, 300), pressed(120, 499, 300)});
    EXPECT_THAT(found, ::testing::Contains(Candidate{{176, 100, 816, 500}, 104, 273}));
    EXPECT_THAT(found,
                ::testing::Not(::testing::Contains(::testing::Field(&Candidate::rect, RealRect{179, 100, 819, 500}))));
}

TEST(CandidatesTest, ReadableZoomAboveOne_IsTakenForOne) {
    // No frame is tighter than 640 pixels, and as such it is pushed into the window.
    camera::Scene scene = emptyScene(120.0);
    scene.windows = {{29.75, 30.25, {300, 200, 1280, 800}}};
    const FrameShape fine(640, 400, 1280, 800, 1.5, false);
    EXPECT_THAT(findCandidates(scene, fine, {pressed(120, 400, 300)}, kReach),
                ::testing::Contains(::testing::Field(&Candidate::rect, RealRect{300, 200, 940, 600})));
}

TEST(CandidatesTest, ReadableFrame_IsPushedIntoTheWindowInFront) {
    camera::Scene scene = emptyScene(120.0);
    // Windows of less than half a second have no frames of their own. The readable frame around (400, 300) stands against
    // the window's top and left edge, but for the pixels of its measure.
    scene.windows = {{29.75, 30.25, {300, 200, 1280, 800}}};
    EXPECT_THAT(find(scene, {pressed(120, 400, 300)}),
                UnorderedElementsAre(kWhole, Candidate{{80, 100, 720, 500}, 104, 273},
                                     Candidate{{0, 33, 856, 568}, 104, 201},
                                     Candidate{{299, 199, 1155, 734}, 104, 201}));
    // Around (1200, 760) the other ones.
    scene.windows = {{29.75, 30.25, {0, 0, 1000, 700}}};
    EXPECT_THAT(find(scene, {pressed(120, 1200, 750)}),
                ::testing::Contains(Candidate{{145, 166, 1001, 701}, 104, 201}));
}

TEST(CandidatesTest, ReadableFrame_StandsInTheMiddleOfASmallerWindow) {
    camera::Scene scene = emptyScene(120.0);
    scene.windows = {{29.75, 30.25, {500, 300, 800, 500}}};
    EXPECT_THAT(find(scene, {pressed(120, 400, 300)}), ::testing::Contains(Candidate{{222, 133, 1078, 668}, 104, 201}));
}

TEST(CandidatesTest, WindowInFront_IsTheLastThatCame_NotWhereThereIsNone) {
    camera::Scene scene = emptyScene(120.0);
    const Candidate pushed{{299, 199, 1155, 734}, 104, 201};
    const RealRect window{300, 200, 1280, 800};
    // The one that comes at the moment is in front; before an empty one it is the one before.
    scene.windows = {{0.0, 0.25, {500, 300, 800, 500}}, {30.0, 30.25, window}, {30.25, 30.5, {500, 300, 800, 500}}};
    EXPECT_THAT(find(scene, {pressed(120, 400, 300)}), ::testing::Contains(pushed));
    scene.windows = {{29.0, 29.25, window}, {29.5, 60.0, {}}};
    EXPECT_THAT(find(scene, {pressed(120, 400, 300)}), ::testing::Contains(pushed));
    // One that comes later is not in front yet.
    scene.windows = {{30.25, 30.5, window}};
    EXPECT_THAT(find(scene, {pressed(120, 400, 300)}), SizeIs(3));
}

TEST(CandidatesTest, FramesNearEachOther_AreOne_TheFirstStandsForAll) {
    // Their left edges lie in one twelfth of 640 pixels, from 53.3 to 106.7; those of the readable frames, too.
    EXPECT_THAT(
        find(emptyScene(120.0), {pressed(120, 400, 300), pressed(124, 405, 300)}),
        UnorderedElementsAre(kWhole, Candidate{{80, 100, 720, 500}, 104, 277}, Candidate{{0, 33, 856, 568}, 104, 205}));
}

TEST(CandidatesTest, ManyFrames_AreJoinedAsFewAre) {
    // Twenty thousand windows in turns at two places: one candidate for each place.
    camera::Scene scene = emptyScene(120.0);
    scene.step = 1.0;
    scene.length = 20000.0;
    scene.steps = 20001;
    for (int i = 0; i < 20000; ++i) {
        scene.windows.push_back(
            {i * 1.0, i + 1.0, i % 2 == 0 ? RealRect{100, 100, 860, 500} : RealRect{0, 0, 700, 400}});
    }
    // 714 by 408 with its room is 720 by 450 around (350, 200).
    EXPECT_THAT(find(scene),
                UnorderedElementsAre(Candidate{{0, 0, 1280, 800}, 0, 20001}, Candidate{{92, 58, 868, 543}, 0, 20001},
                                     Candidate{{0, 0, 720, 450}, 0, 20001}));
}

} // namespace
} // namespace OrvantaNS::testing
