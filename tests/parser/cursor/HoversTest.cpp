#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// An area from 1 to 3 s.
constexpr Rectangle kArea{200, 300, 200, 300};

class HoversTest : public testing::ParserTest {
protected:
    /// The hover of a stroke over these samples and the area `object`.
    std::string hoverOver(std::initializer_list<Sample> samples, unsigned int object = 0) {
        MOUSE_STROKE stroke = strokeOver(samples);
        return testing::text(parser.findHoverPrimitive(object, stroke));
    }
};

const char* const kNothing = "Dead 0..0 (0,0,0,0)";

TEST_F(HoversTest, NearTheMouse_Is63Pixels_Not64) {
    struct Case {
        Rectangle frame;
        bool near;
    };
    for (const Case& c :
         {Case{{164, 200, 90, 110}, false}, Case{{163, 200, 90, 110}, true}, Case{{0, 36, 90, 110}, false},
          Case{{0, 37, 90, 110}, true}, Case{{90, 110, 164, 200}, false}, Case{{90, 110, 163, 200}, true},
          Case{{90, 110, 0, 36}, false}, Case{{90, 110, 0, 37}, true}, Case{{95, 105, 95, 105}, true},
          Case{{0, 900, 0, 900}, true}, Case{{100, 100, 90, 110}, false}, Case{{110, 90, 90, 110}, false}}) {
        EXPECT_EQ(parser.isFrameNearMouse({0, 100, 100}, c.frame), c.near) << testing::text(c.frame);
    }
}

TEST_F(HoversTest, EnteringTheArea_StartsTheHoverAtThatPoint_NotAtTheFirstNearOne) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.1, 150, 250}, {1.2, 190, 250}, {1.3, 250, 250}, {1.4, 260, 250}}),
              "Hover 1.3..1.4 (200,300,200,300)");
}

TEST_F(HoversTest, HoverLastsWhileNear_AndEndsForGood) {
    changingArea(1.0, 3.0, kArea);
    // 63 pixels beyond the right edge is near, 64 is not; coming back starts nothing.
    EXPECT_EQ(hoverOver({{1.5, 250, 250}, {1.6, 362, 250}, {1.7, 363, 250}, {1.8, 364, 250}, {1.9, 250, 250}}),
              "Hover 1.5..1.7 (200,300,200,300)");
}

TEST_F(HoversTest, NearAndNeverInside_IsNothing) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.1, 150, 250}, {1.2, 160, 250}, {1.3, 199, 250}, {1.4, 300, 250}}), kNothing);
}

TEST_F(HoversTest, FarPointsBeforeTheHover_ArePassedOver) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.1, 900, 700}, {1.2, 150, 250}, {1.3, 900, 700}, {1.4, 250, 250}}),
              "Hover 1.4..1.4 (200,300,200,300)");
}

TEST_F(HoversTest, LeftAndTopEdgesAreInside_RightAndBottomOutside) {
    changingArea(1.0, 3.0, kArea);
    for (const auto& [x, y, inside] :
         {std::tuple(200, 200, true), std::tuple(199, 250, false), std::tuple(250, 199, false),
          std::tuple(299, 299, true), std::tuple(300, 250, false), std::tuple(250, 300, false)}) {
        EXPECT_EQ(hoverOver({{1.5, x, y}}) != kNothing, inside) << x << ' ' << y;
    }
}

TEST_F(HoversTest, PointsOutsideTheAreasTime_DoNotCount) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{0.5, 250, 250}, {0.999, 250, 250}, {1.5, 250, 250}, {3.0, 250, 250}, {3.001, 250, 250}}),
              "Hover 1.5..3 (200,300,200,300)");
    EXPECT_EQ(hoverOver({{0.5, 250, 250}, {0.999, 250, 250}, {3.001, 250, 250}}), kNothing);
}

TEST_F(HoversTest, AreaThatBeginsUnderThePoint_IsAHover) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.0, 250, 250}, {1.5, 260, 250}}), "Hover 1..1.5 (200,300,200,300)");
}

TEST_F(HoversTest, AreaThatBeginsBesideThePoint_IsAPopup_OneTickLaterItIsNothing) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.0, 150, 250}}), "HoverPopup 1..1 (200,300,200,300)");
    EXPECT_EQ(hoverOver({{1.001, 150, 250}}), kNothing);
    EXPECT_EQ(hoverOver({{0.999, 150, 250}}), kNothing);
}

TEST_F(HoversTest, Popup_LastsWhileNear_AndStaysAPopupWhenEntered) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.0, 150, 250}, {1.5, 250, 250}, {2.0, 140, 250}, {2.5, 136, 250}, {2.75, 150, 250}}),
              "HoverPopup 1..2 (200,300,200,300)");
}

TEST_F(HoversTest, Popup_DoesNotGrow_AndEndsWhenThePointLeavesItsFirstFrame) {
    // From 2 s on the area is seen shifted right: the point at (350, 250) is near the new frame, 51 pixels from the
    // old; the one at (390, 250) near the new frame alone.
    changingArea(1.0, 3.0, {200, 400, 200, 300}, {{1500, kArea}, {2000, {300, 400, 200, 300}}});
    EXPECT_EQ(hoverOver({{1.0, 150, 250}, {2.0, 350, 250}}), "HoverPopup 1..2 (200,300,200,300)");
    EXPECT_EQ(hoverOver({{1.0, 150, 250}, {2.0, 390, 250}, {2.5, 350, 250}}), "HoverPopup 1..1 (200,300,200,300)");
}

TEST_F(HoversTest, Hover_GrowsByTheFramesItMeets) {
    // A frame's time is when it was last seen, so a frame counts from that moment on.
    changingArea(1.0, 3.0, {200, 400, 200, 350},
                 {{1500, kArea}, {2000, {220, 320, 210, 310}}, {2500, {300, 400, 250, 350}}});
    EXPECT_EQ(hoverOver({{1.6, 250, 250}, {1.999, 250, 250}}), "Hover 1.6..1.999 (200,300,200,300)");
    EXPECT_EQ(hoverOver({{1.6, 250, 250}, {2.0, 250, 250}}), "Hover 1.6..2 (200,320,200,310)");
    EXPECT_EQ(hoverOver({{1.6, 250, 250}, {2.5, 290, 260}}), "Hover 1.6..2.5 (200,400,200,350)");
}

TEST_F(HoversTest, Hover_GoesOnNearTheFrameOfTheMoment_HoweverFarTheEarlierOnesLie) {
    // From 2 s on the area is seen 300 pixels to the right: the second point is 250 from where it was.
    changingArea(1.0, 3.0, {200, 600, 200, 300}, {{1500, kArea}, {2000, {500, 600, 200, 300}}});
    EXPECT_EQ(hoverOver({{1.6, 250, 250}, {2.0, 550, 250}}), "Hover 1.6..2 (200,600,200,300)");
}

TEST_F(HoversTest, LatePointBesideTheArea_DoesNotKeepALaterOneFromEntering) {
    changingArea(1.0, 3.0, kArea);
    EXPECT_EQ(hoverOver({{1.001, 150, 250}, {1.5, 250, 250}}), "Hover 1.5..1.5 (200,300,200,300)");
}

TEST_F(HoversTest, HoversOfAStroke_AreTakenFromTheAreasOfItsTime_IntoTheZoneInWork) {
    store.liveZones.push_back({{250, 1000, 100, 700}, 0.0, 60.0});
    store.currentZone = 1;
    changingArea(0.0, 0.5, kArea);                // Before the stroke.
    changingArea(1.0, 3.0, kArea);                //
    changingArea(1.2, 3.0, {900, 950, 0, 50});    // Far away.
    changingArea(1.3, 3.0, {150, 240, 200, 300}); // Left of the zone.
    changingArea(1.4, 3.0, {220, 320, 220, 320});
    changingArea(2.5, 3.0, kArea); // After it.
    MOUSE_STROKE stroke = strokeOver({{1.5, 225, 250}, {2.0, 235, 260}});
    parser.findMouseHoverDR(store, stroke);
    EXPECT_THAT(objects(), ElementsAre("Hover 1.5..2 (0,50,100,200)", "Hover 1.5..2 (0,70,120,220)"));
}

TEST_F(HoversTest, AreasBehindTheSkipCursor_GiveNoHover) {
    changingArea(1.0, 3.0, kArea);
    parser.skipDRObject = 1;
    MOUSE_STROKE stroke = strokeOver({{1.5, 225, 250}, {2.0, 235, 260}});
    parser.findMouseHoverDR(store, stroke);
    EXPECT_THAT(objects(), IsEmpty());
}

// Such an area is read frame by frame, up to the first frame that is too late: a search would get to those behind it.
TEST_F(HoversTest, FramesBehindALaterOne_OfAnAreaThatIsNotInOrder_AreNotMet) {
    const Rectangle away{900, 910, 700, 710};
    changingArea(
        1.0, 3.0, kArea,
        {{ticks(1.5), away}, {ticks(1.2), away}, {ticks(3.0), away}, {ticks(1.8), kArea}, {ticks(1.9), kArea}});
    EXPECT_EQ(hoverOver({{2.5, 250, 250}}), kNothing);
}

// The frames of an area whose sightings are in order are searched; those of the others are read.
TEST_F(HoversTest, AreasInOrder_AreHoveredOverLikeThoseThatAreReadFrameByFrame) {
    std::mt19937_64 random(64063);
    const auto upTo = [&](std::int32_t most) {
        return static_cast<std::int32_t>(random() % static_cast<std::uint64_t>(most + 1));
    };
    int hovers = 0;
    for (int round = 0; round < 3000; ++round) {
        std::vector<OV_TIME_RECT> frames;
        long long time = 1000;
        for (std::int32_t k = upTo(40); k >= 0; --k) {
            time += upTo(60);
            const std::int32_t left = upTo(400);
            const std::int32_t top = upTo(400);
            frames.push_back({time, {left, left + 1 + upTo(250), top, top + 1 + upTo(250)}});
        }
        const unsigned int area = changingArea(1.0, static_cast<double>(time) / 1000.0, {0, 500, 0, 500}, frames);
        MOUSE_STROKE stroke;
        time = 950 + upTo(400);
        for (std::int32_t k = upTo(15); k >= 0; --k) {
            stroke.points.push_back({time, upTo(500), upTo(500)});
            time += upTo(9) == 0 ? -upTo(300) : upTo(80); // cursors of broken recordings go back in time
        }
        const std::string read = testing::text(parser.findHoverPrimitive(area, stroke));
        parser.drObjects[area].isInOrder = true;
        EXPECT_EQ(testing::text(parser.findHoverPrimitive(area, stroke)), read) << "round " << round;
        hovers += read == kNothing ? 0 : 1;
    }
    EXPECT_GT(hovers, 300);
}

} // namespace
} // namespace OrvantaNS
