#include <random>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ParserScene.h"
#include "frame/Geometry.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Rectangle kMenu{100, 300, 0, 320};
constexpr Rectangle kWindow{600, 900, 400, 700};
constexpr Rectangle kNone{};

class MenusTest : public testing::ParserTest {
protected:
    struct Window {
        double time;
        Rectangle rect;
    };
    void windows(std::initializer_list<Window> samples) {
        for (const Window& w : samples) {
            scene.window(w.time, w.rect);
        }
    }
    /// Adds the samples and reads the menu that begins with the first of them. The last window ended long before it.
    void menu(std::initializer_list<Window> samples) {
        windows(samples);
        parser.lastWindow.stop = -100.0;
        parser.processMenu(0, scene, store);
    }
    bool isMenuAt(unsigned int index) { return parser.isMenu(scene, store, index); }
};

// ---- isMenu: a window at 5 s, (100,300,24,320), over a change at 5 s from the top down to 320, cursor at (150, 10) ----

class IsMenuTest : public MenusTest {
protected:
    bool isMenu(Rectangle window, double areaStart, double areaStop, Rectangle area, std::int32_t x, std::int32_t y) {
        scene = testing::Scene();
        scene.window(5.0, window).cursor(5.0, x, y);
        parser.drObjects.clear();
        changingArea(areaStart, areaStop, area);
        return isMenuAt(0);
    }
    bool withTop(std::int32_t top) { return isMenu({100, 300, top, 320}, 5.0, 5.0, kMenu, 150, 10); }
    bool withArea(double start, double stop) { return isMenu(kMenu, start, stop, kMenu, 150, 10); }
    bool withBounds(Rectangle area) { return isMenu(kMenu, 5.0, 5.0, area, 150, 10); }
    bool withCursor(std::int32_t x, std::int32_t y) { return isMenu(kMenu, 5.0, 5.0, kMenu, x, y); }
};

TEST_F(IsMenuTest, TopOf24Passes_TopOf25DoesNot) {
    EXPECT_TRUE(withTop(-5));
    EXPECT_TRUE(withTop(0));
    EXPECT_TRUE(withTop(24));
    EXPECT_FALSE(withTop(25));
}

TEST_F(IsMenuTest, AreaMustChangeWithinAQuarterSecond) {
    EXPECT_FALSE(withArea(4.749, 4.749));
    EXPECT_TRUE(withArea(4.75, 4.75));
    EXPECT_TRUE(withArea(5.25, 5.25));
    EXPECT_FALSE(withArea(5.251, 5.251));
    // One that went on before must reach into the interval by more than its edge.
    EXPECT_FALSE(withArea(1.0, 4.75));
    EXPECT_TRUE(withArea(1.0, 4.751));
    EXPECT_FALSE(withArea(5.25, 9.0));
    EXPECT_TRUE(withArea(5.249, 9.0));
}

TEST_F(IsMenuTest, AreaMustReachTheZonesTop) {
    EXPECT_TRUE(withBounds({100, 300, -20, 320}));
    EXPECT_TRUE(withBounds({100, 300, 0, 320}));
    EXPECT_FALSE(withBounds({100, 300, 1, 320}));
}

TEST_F(IsMenuTest, CursorMustLieInTheArea) {
    EXPECT_TRUE(withCursor(150, 0));
    EXPECT_FALSE(withCursor(150, -1));
    EXPECT_TRUE(withCursor(150, 319));
    EXPECT_FALSE(withCursor(150, 320));
    EXPECT_TRUE(withCursor(100, 10));
    EXPECT_FALSE(withCursor(99, 10));
    EXPECT_TRUE(withCursor(299, 10));
    EXPECT_FALSE(withCursor(300, 10));
}

TEST_F(IsMenuTest, SecondAreaMaySettleIt) {
    scene.window(5.0, kMenu).cursor(5.0, 150, 10);
    changingArea(4.9, 5.0, {400, 500, 0, 50});
    EXPECT_FALSE(isMenuAt(0));
    changingArea(5.0, 5.0, kMenu);
    EXPECT_TRUE(isMenuAt(0));
}

TEST_F(IsMenuTest, CursorIsTheFirstSampleAtOrAfterTheWindow) {
    scene.window(5.0, kMenu).cursor(4.999, 150, 10);
    changingArea(5.0, 5.0, kMenu);
    EXPECT_FALSE(isMenuAt(0)); // No sample left: the cursor stands at (-1, -1).
    scene.cursor(9.0, 150, 10).cursor(9.5, 900, 10);
    EXPECT_TRUE(isMenuAt(0));
    parser.skipLocation = 2;
    EXPECT_FALSE(isMenuAt(0));
}

TEST_F(IsMenuTest, AreasBehindTheSkipCursorDoNotCount) {
    scene.window(5.0, kMenu).cursor(5.0, 150, 10);
    changingArea(5.0, 5.0, kMenu);
    changingArea(5.0, 5.0, kWindow);
    parser.skipDRObject = 1;
    EXPECT_FALSE(isMenuAt(0));
}

TEST_F(IsMenuTest, AreaIsTakenIntoTheZoneInWork_AndComparedWithTheCursorOnScreen) {
    // Zone 1 starts at (50, 200): the area comes out as (50,250,0,120), against which the screen's (60, 10) is tested.
    store.liveZones.push_back({{50, 800, 200, 700}, 0.0, 60.0});
    store.currentZone = 1;
    scene.window(5.0, kMenu).cursor(5.0, 60, 119);
    changingArea(5.0, 5.0, {100, 300, 150, 320});
    EXPECT_TRUE(isMenuAt(0));
    scene.params().cursorLocations()[0].y = 120;
    EXPECT_FALSE(isMenuAt(0));
    scene.params().cursorLocations()[0] = {5000, 49, 119};
    EXPECT_FALSE(isMenuAt(0));
}

TEST_F(IsMenuTest, NoRecordingRegion_IsOutOfRange) {
    scene.window(5.0, {100, 300, 30, 320});
    scene.params().recordingRegions().clear();
    EXPECT_THROW(isMenuAt(0), std::out_of_range);
}

// ---- processMenu ----

TEST_F(MenusTest, NoRecordingRegion_IsOutOfRange_BeforeAnySampleIsRead) {
    scene.params().recordingRegions().clear();
    EXPECT_THROW(parser.processMenu(0, scene, store), std::out_of_range);
}

TEST_F(MenusTest, NoSampleLeft_MakesNothing) {
    parser.processMenu(0, scene, store); // no samples at all
    EXPECT_EQ(parser.nextForeWindow, 0u);
    scene.window(1.0, kMenu).window(1.5, kMenu);
    parser.nextForeWindow = 2;
    parser.lastWindow = {ActiveWindow, 0.0, 100.0, kWindow, 0.0}; // in force: it would be given back
    parser.processMenu(0, scene, store);
    EXPECT_EQ(parser.nextForeWindow, 2u);
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(parser.lastWindow.stop, 100.0);
}

TEST_F(MenusTest, RepeatedMenu_LastsToItsLastSample) {
    menu({{1.0, kMenu}, {1.5, kMenu}, {2.0, kMenu}, {2.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..2 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, MenuClosedAtOnce_HasNoLength) {
    menu({{1.0, kMenu}, {1.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 1u);
}

TEST_F(MenusTest, RepeatsToTheStreamsEnd_CloseTheMenu) {
    menu({{1.0, kMenu}, {1.5, kMenu}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.5 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(MenusTest, MenuAtTheLastSample_IsNeverAppended) {
    menu({{1.0, kMenu}});
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(parser.nextForeWindow, 1u);
}

TEST_F(MenusTest, TopIsRaisedToTheFirstRegions) {
    zone({0, 1280, 0, 800});
    scene.params().recordingRegions()[0].rect = {0, 1280, 10, 800};
    scene.region(0.0, {0, 1280, 2, 800});
    menu({{1.0, {100, 300, 22, 320}}, {1.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,10,320)"));
}

TEST_F(MenusTest, RaisedRectangleThatComesOutInverted_IsPutInOrder) {
    scene.params().recordingRegions()[0].rect = {0, 1280, 30, 800};
    menu({{1.0, {300, 100, 0, 20}}, {1.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,20,30)"));
}

TEST_F(MenusTest, RepeatIsComparedWithTheRaisedTop) {
    // Each sample below the bar differs from the raised menu, has its width and lies in it: a change of height.
    menu({{1.0, {100, 300, 20, 320}}, {1.5, {100, 300, 20, 320}}, {2.0, {100, 300, 20, 320}}});
    EXPECT_THAT(objects(), IsEmpty()); // Taken by the change of height, so not closed at the stream's end.
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, EmptySamplesBetweenRepeats_AreSteppedOver) {
    menu({{1.0, kMenu}, {1.25, kNone}, {1.5, kMenu}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.5 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, EmptySamplesToTheStreamsEnd_CloseTheMenu) {
    menu({{1.0, kMenu}, {1.25, kNone}, {1.5, kNone}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, EmptySampleAfterRepeats_ClosesTheMenuLikeAnyOther) {
    menu({{1.0, kMenu}, {1.25, kMenu}, {1.5, kNone}, {2.0, kMenu}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.25 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(MenusTest, SampleOfNoHeightAfterRepeats_IsAChangeOfHeight) {
    menu({{1.0, kMenu}, {1.25, kMenu}, {1.5, {100, 300, 50, 50}}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.5 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, SubmenuBeside_FollowsItsParent) {
    // The parent lasts to the submenu's last repeat; the submenu's top is not raised.
    menu({{1.0, kMenu}, {1.5, {300, 450, 40, 200}}, {1.75, {300, 450, 40, 200}}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.75 (100,300,0,320)", "Menu 1.5..1.75 (300,450,40,200)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, Submenu_OverlapsByAtMostOnePixelAndTouches) {
    struct Case {
        Rectangle submenu;
        bool cascade;
    };
    for (const Case& c : {
             Case{{298, 450, 40, 200}, false}, // Overlaps by 2.
             Case{{299, 450, 40, 200}, true},  // By 1.
             Case{{300, 450, 40, 200}, true},  // Shares the edge.
             Case{{301, 450, 40, 200}, false}, // A gap of 1.
             Case{{20, 100, 40, 200}, true},   // On the left.
             Case{{20, 101, 40, 200}, true},
             Case{{20, 102, 40, 200}, false},
             Case{{20, 99, 40, 200}, false},
             Case{{300, 450, 320, 400}, true}, // Meets at the corner.
             Case{{300, 450, 321, 400}, false},
         }) {
        scene = testing::Scene();
        parser = DataParser();
        menu({{1.0, kMenu}, {1.5, c.submenu}, {2.0, kWindow}});
        EXPECT_EQ(parser.objects.size(), c.cascade ? 2u : 1u) << testing::text(c.submenu);
        EXPECT_EQ(parser.nextForeWindow, c.cascade ? 2u : 1u) << testing::text(c.submenu);
    }
}

TEST_F(MenusTest, SubmenuOfTheSameWidth_IsACascadeFirst) {
    menu({{1.0, kMenu}, {1.5, {300, 500, 0, 320}}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.5 (100,300,0,320)", "Menu 1.5..1.5 (300,500,0,320)"));
}

TEST_F(MenusTest, SubmenuThatRunsIntoTheStreamsEnd_IsNeverAppended) {
    menu({{1.0, kMenu}, {1.5, {300, 450, 40, 200}}, {1.75, {300, 450, 40, 200}}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.75 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, ChangeOfHeight_WidensTheMenu) {
    menu({{1.0, kMenu}, {1.5, {100, 300, 0, 400}}, {1.75, {100, 300, 0, 350}}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.75 (100,300,0,400)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, ChangeOfHeight_NeedsEqualWidthAndContainment) {
    for (const Rectangle& other : {Rectangle{100, 299, 0, 320}, Rectangle{100, 301, 0, 400},
                                   Rectangle{110, 310, 0, 320}, Rectangle{100, 300, 10, 330}}) {
        scene = testing::Scene();
        parser = DataParser();
        menu({{1.0, kMenu}, {1.5, other}, {2.0, kWindow}});
        EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,0,320)")) << testing::text(other);
        EXPECT_EQ(parser.nextForeWindow, 1u) << testing::text(other);
    }
}

TEST_F(MenusTest, ChangeOfHeightAtTheStreamsEnd_IsNeverAppended) {
    menu({{1.0, kMenu}, {1.5, {100, 300, 0, 400}}});
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(MenusTest, AnotherMenuOfTheBar_ReplacesThisOne) {
    changingArea(2.0, 2.0, {500, 700, 0, 220});
    scene.cursor(2.0, 550, 10);
    menu({{1.0, kMenu}, {1.5, kMenu}, {2.0, {500, 700, 22, 220}}, {2.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1.5 (100,300,0,320)", "Menu 2..2 (500,700,0,220)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

TEST_F(MenusTest, ReplacingMenu_IsRaisedAndPutInOrder) {
    scene.params().recordingRegions()[0].rect = {0, 1280, 30, 800};
    changingArea(2.0, 2.0, {500, 700, 0, 220});
    scene.cursor(2.0, 550, 10);
    menu({{1.0, {100, 300, 0, 320}}, {2.0, {500, 700, 5, 20}}, {2.5, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,30,320)", "Menu 2..2 (500,700,20,30)"));
}

TEST_F(MenusTest, ReplacingMenuAtTheStreamsEnd_IsNeverAppended) {
    changingArea(2.0, 2.0, {500, 700, 0, 220});
    scene.cursor(2.0, 550, 10);
    menu({{1.0, kMenu}, {2.0, {500, 700, 0, 220}}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1..1 (100,300,0,320)"));
    EXPECT_EQ(parser.nextForeWindow, 2u);
}

TEST_F(MenusTest, MenuOutsideTheZone_IsNotAppended) {
    zone({600, 900, 0, 800});
    menu({{1.0, kMenu}, {1.5, {300, 601, 40, 200}}, {2.0, kWindow}});
    EXPECT_THAT(objects(), ElementsAre("Menu 1.5..1.5 (0,1,40,200)"));
}

// ---- The window behind the menu ----

TEST_F(MenusTest, WindowThatEndedWithinAQuarterSecond_IsGivenBackUnderTheMenu) {
    struct Case {
        double windowStop;
        bool givenBack;
    };
    for (const Case& c : {Case{0.749, false}, Case{0.75, true}, Case{0.751, true}, Case{5.0, true}}) {
        scene = testing::Scene();
        parser = DataParser();
        windows({{1.0, kMenu}, {2.0, kMenu}, {2.5, kWindow}});
        parser.lastWindow = {ActiveWindow, 0.25, c.windowStop, kWindow, 0.0};
        parser.processMenu(0, scene, store);
        if (c.givenBack) {
            const std::string window = "ActiveWindow " + testing::text(c.windowStop) + "..2 (600,900,400,700)";
            EXPECT_THAT(objects(), ElementsAre("Menu 1..2 (100,300,0,320)", window));
            EXPECT_EQ(testing::text(parser.lastWindow), window);
        } else {
            EXPECT_THAT(objects(), ElementsAre("Menu 1..2 (100,300,0,320)"));
            EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 0.25..0.749 (600,900,400,700)");
        }
    }
}

TEST_F(MenusTest, QuarterSecond_IsCountedToTheFirstMenuOfTheRun) {
    windows({{1.0, kMenu}, {3.0, {300, 450, 40, 200}}, {3.5, kWindow}});
    parser.lastWindow = {ActiveWindow, 0.25, 0.75, kWindow, 0.0};
    parser.processMenu(0, scene, store);
    EXPECT_THAT(objects(), ElementsAre("Menu 1..3 (100,300,0,320)", "Menu 3..3 (300,450,40,200)",
                                       "ActiveWindow 0.75..3 (600,900,400,700)"));
}

TEST_F(MenusTest, MenuAtTheLastSample_StillGivesTheWindowBack) {
    windows({{1.0, kMenu}});
    parser.lastWindow = {ActiveWindow, 0.25, 1.0, kWindow, 0.0};
    parser.processMenu(0, scene, store);
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 1..1 (600,900,400,700)"));
}

TEST_F(MenusTest, WindowGivenBack_IsMovedIntoTheZoneASecondTime) {
    // Already zone-relative, it shifts by the origin once more and loses its edges.
    zone({100, 1100, 50, 750});
    windows({{1.0, {200, 400, 0, 320}}, {2.0, {200, 400, 0, 320}}});
    parser.lastWindow = {ActiveWindow, 0.25, 1.0, {0, 300, 0, 200}, 0.0};
    parser.processMenu(0, scene, store);
    EXPECT_THAT(objects(), ElementsAre("Menu 1..2 (100,300,0,270)", "ActiveWindow 1..2 (0,200,0,150)"));
}

TEST_F(MenusTest, WindowGivenBackThatClipsToNothing_IsStillRemembered) {
    zone({100, 1100, 50, 750});
    windows({{1.0, {200, 400, 0, 320}}});
    parser.lastWindow = {ActiveWindow, 0.25, 1.0, {0, 80, 0, 200}, 0.0};
    parser.processMenu(0, scene, store);
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 1..1 (0,-20,0,150)");
}

TEST_F(MenusTest, NoWindowYet_NothingIsGivenBackUnderALaterMenu) {
    windows({{0.251, kMenu}});
    parser.processMenu(0, scene, store);
    EXPECT_EQ(testing::text(parser.lastWindow), "Move 0..0 (0,0,0,0)");

    // A menu in the first quarter second takes the zero window for one that has just ended; it is empty.
    parser = DataParser();
    scene = testing::Scene();
    windows({{0.25, kMenu}});
    parser.processMenu(0, scene, store);
    EXPECT_THAT(objects(), IsEmpty());
    EXPECT_EQ(testing::text(parser.lastWindow), "ActiveWindow 0..0.25 (0,0,0,0)");
}

TEST_F(MenusTest, WindowBeforeAMenu_GoesOnThroughIt) {
    changingArea(1.0, 1.0, kMenu);
    scene.cursor(1.0, 150, 10);
    windows({{0.0, kWindow}, {1.0, kMenu}, {2.0, kMenu}, {2.25, kWindow}});
    parser.processForeWindow(0, scene, store); // The window, up to the menu.
    EXPECT_EQ(parser.nextForeWindow, 1u);
    parser.lastWindow.stop = 0.875;
    parser.processForeWindow(0, scene, store); // The menu.
    EXPECT_THAT(objects(), ElementsAre("ActiveWindow 0..0 (600,900,400,700)", "ForeOpen 0..0 (600,900,400,700)",
                                       "Menu 1..2 (100,300,0,320)", "ActiveWindow 0.875..2 (600,900,400,700)"));
    EXPECT_EQ(parser.nextForeWindow, 3u);
}

// ---- The whole stream of windows ----

// One run of menu samples read word for word.
class MenuReader {
public:
    MenuReader(DataParser& parser, const Params& params, OV_DATA_STORE& store)
        : parser_(parser), params_(params), store_(store), stream_(params.foreWindows()),
          regionTop_(params.recordingRegions().at(0).rect.top) {}

    void read() {
        unsigned int& next = parser_.nextForeWindow;
        Rectangle menu = raised(stream_[next].rect);
        long long began = stream_[next].time;
        long long ended = began;
        const double menuStart = DataParser::convertTime(began);
        ++next;
        while (next < stream_.size()) {
            while (next < stream_.size() && isEmpty(stream_[next].rect)) {
                ++next;
            }
            takeRepeats(menu, ended);
            const bool left = next < stream_.size();
            const OV_TIME_RECT s = left ? stream_[next] : OV_TIME_RECT{};
            const bool touches = left && menu.canTouchRect(s.rect);
            if (touches && std::min(menu.right, s.rect.right) - std::max(menu.left, s.rect.left) <= 1) {
                takeRepeats(s.rect, ended);
                append(Menu, menu, DataParser::convertTime(began), ended);
                menu = s.rect;
                began = s.time;
            } else if (left && width(s.rect) == width(menu) && (contains(menu, s.rect) || contains(s.rect, menu))) {
                menu = boundingUnion(menu, s.rect);
                ended = s.time;
                ++next;
            } else if (left && parser_.isMenu(params_, store_, next)) {
                append(Menu, menu, DataParser::convertTime(began), ended);
                menu = raised(s.rect);
                began = s.time;
                ended = s.time;
                ++next;
            } else {
                append(Menu, menu, DataParser::convertTime(began), ended);
                break;
            }
        }
        if (parser_.lastWindow.stop >= menuStart - 0.25) {
            parser_.lastWindow = append(ActiveWindow, parser_.lastWindow.rect, parser_.lastWindow.stop, ended);
        }
    }

private:
    Rectangle raised(Rectangle rect) const {
        rect.top = regionTop_;
        return normalized(rect);
    }
    void takeRepeats(const Rectangle& rect, long long& ended) {
        while (parser_.nextForeWindow < stream_.size() && stream_[parser_.nextForeWindow].rect == rect) {
            ended = stream_[parser_.nextForeWindow].time;
            ++parser_.nextForeWindow;
        }
    }
    OV_VALUE_OBJECT append(std::uint32_t type, Rectangle rect, double start, long long ended) {
        const bool visible = parser_.clipRectToLZ(0, store_, rect);
        const OV_VALUE_OBJECT object{type, start, DataParser::convertTime(ended), rect, 0.0};
        if (visible) {
            parser_.objects.push_back(object);
        }
        return object;
    }

    DataParser& parser_;
    const Params& params_;
    OV_DATA_STORE& store_;
    const std::vector<OV_TIME_RECT>& stream_;
    std::int32_t regionTop_;
};

TEST_F(MenusTest, GeneratedStreams_ReadLikeTheRulesWordForWord_AndEveryRunAdvances) {
    const Rectangle rects[] = {kMenu,
                               {100, 300, 0, 400},
                               {100, 300, 20, 320},
                               {300, 450, 40, 200},
                               {298, 448, 40, 200},
                               {450, 600, 60, 100},
                               {500, 700, 10, 220},
                               kWindow,
                               kNone,
                               {100, 300, 50, 50}};
    unsigned int menusSeen = 0;
    for (unsigned int seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto upTo = [&](unsigned int n) { return static_cast<unsigned int>(random() % n); };
        scene = testing::Scene();
        parser = DataParser();
        zone(upTo(2) == 0 ? Rectangle{0, 1280, 0, 800} : Rectangle{250, 1000, 10, 700});
        scene.params().recordingRegions()[0].rect.top = static_cast<std::int32_t>(upTo(3) * 10);
        double time = 0.0;
        for (unsigned int i = 0, count = 1 + upTo(16); i < count; ++i) {
            time += 0.125 * upTo(4);
            scene.window(time, rects[upTo(10)]).cursor(time, upTo(2) == 0 ? 310 : 550, 15);
            if (upTo(2) == 0) {
                changingArea(time, time, {290, 700, 0, 300});
            }
        }
        while (parser.nextForeWindow < scene.params().foreWindows().size()) {
            DataParser reference = parser;
            unsigned int& c = reference.nextForeWindow;
            const auto& stream = scene.params().foreWindows();
            while (c < stream.size() && isEmpty(stream[c].rect)) {
                ++c;
            }
            const bool menuRun = c < stream.size() && reference.isMenu(scene, store, c);
            const unsigned int before = parser.nextForeWindow;
            parser.processForeWindow(0, scene, store);
            ASSERT_GT(parser.nextForeWindow, before);
            if (menuRun) {
                ++menusSeen;
                MenuReader(reference, scene, store).read();
                ASSERT_EQ(parser.nextForeWindow, reference.nextForeWindow);
                ASSERT_EQ(objects(), testing::texts(reference.objects));
                ASSERT_EQ(testing::text(parser.lastWindow), testing::text(reference.lastWindow));
            }
        }
    }
    EXPECT_GT(menusSeen, 2000u);
}

} // namespace
} // namespace OrvantaNS
