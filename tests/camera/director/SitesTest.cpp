#include "camera/director/Sites.h"

#include <gtest/gtest.h>

#include "EmptyScene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

// A readable frame is 853.33 by 533.33 pixels. With a line of 20 pixels a press is 160 by 100, typing 360 by 70.
const FrameShape kShape(640, 400, 1280, 800, 0.75, false);

void addChange(camera::Scene& scene, std::size_t step, const RealRect& rect, double attention = 1.0) {
    scene.changes.push_back({rect, attention});
    for (std::size_t i = step; i < scene.changeEnds.size(); ++i) {
        scene.changeEnds[i] = static_cast<std::uint32_t>(scene.changes.size());
    }
}

void addPress(camera::Scene& scene, double seconds, double x, double y) {
    scene.presses.push_back({seconds, seconds, x, y, {x, y, x, y}});
}

void expect(const Site& site, double from, double to, const RealRect& rect) {
    EXPECT_EQ(site.from, from);
    EXPECT_EQ(site.to, to);
    EXPECT_EQ(site.rect, rect);
}

TEST(SitesTest, NothingHappens_NoSite) { EXPECT_TRUE(findSites(emptyScene(60.0), kShape).empty()); }

TEST(SitesTest, PressesTypingAndChangesOfOnePlace_AreOneSite) {
    camera::Scene scene = emptyScene(60.0);
    addPress(scene, 10.0, 400, 300);                            // 320 to 480 by 250 to 350
    scene.carets.push_back({12.0, 30.0, {400, 290, 402, 310}}); // 221 to 581 by 265 to 335
    addChange(scene, 56, {300, 340, 420, 380});                 // 14 to 14.25 s
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 1u);
    expect(sites[0], 10.0, 14.25, {221, 250, 581, 380});
}

TEST(SitesTest, Drag_TakesItsPathAlong) {
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back({10.0, 12.0, 400, 300, {400, 300, 600, 400}});
    ASSERT_EQ(findSites(scene, kShape).size(), 1u);
    expect(findSites(scene, kShape)[0], 10.0, 12.0, {320, 250, 600, 400});
    scene.presses[0].release = 10.25; // no longer than a press
    expect(findSites(scene, kShape)[0], 10.0, 10.25, {320, 250, 480, 350});
    scene.presses[0].seconds = 0.0;
    scene.presses[0].release = 0.3; // just as long
    expect(findSites(scene, kShape)[0], 0.0, 0.3, {320, 250, 480, 350});
}

TEST(SitesTest, PressOutOfTheFrame_BeginsTheNextSite) {
    const auto count = [](double x) {
        camera::Scene scene = emptyScene(60.0);
        addPress(scene, 10.0, 100, 300); // from 20
        addPress(scene, 11.0, x, 300);
        return findSites(scene, kShape).size();
    };
    EXPECT_EQ(count(793), 1u); // to 873, which is 853 columns
    EXPECT_EQ(count(794), 2u);
    camera::Scene scene = emptyScene(60.0);
    scene.presses.push_back({10.0, 14.0, 100, 300, {100, 300, 100, 300}});
    scene.carets.push_back({12.0, 30.0, {1000, 290, 1002, 310}});
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 2u);
    expect(sites[0], 10.0, 12.0, {20, 250, 180, 350}); // the sites do not overlap
    expect(sites[1], 12.0, 12.0, {821, 265, 1181, 335});
}

TEST(SitesTest, ChangeOutOfTheFrame_IsPassedOver) {
    camera::Scene scene = emptyScene(60.0);
    addPress(scene, 10.0, 100, 300);
    addChange(scene, 44, {1000, 600, 1100, 640});
    addPress(scene, 13.0, 120, 300);
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 1u);
    expect(sites[0], 10.0, 13.0, {20, 250, 200, 350});
}

TEST(SitesTest, ChangesAlone_MakeASiteToo) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 40, {100, 100, 200, 140});
    addChange(scene, 48, {100, 140, 200, 180});
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 1u);
    expect(sites[0], 10.0, 12.25, {100, 100, 200, 180});
}

TEST(SitesTest, SpecksClockworkAndPages_AreNoActs) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 40, {100, 100, 110, 111}); // 110 square pixels of 120
    addChange(scene, 44, {100, 100, 200, 140}, 0.12);
    addChange(scene, 48, {0, 0, 1280, 401});
    EXPECT_TRUE(findSites(scene, kShape).empty());
    addChange(scene, 52, {100, 100, 110, 112});
    EXPECT_EQ(findSites(scene, kShape).size(), 1u);
}

TEST(SitesTest, WideChange_CountsWithItsLeftEnd) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 40, {100, 300, 954, 320}); // 854 columns are more than a readable frame has
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 1u);
    EXPECT_NEAR(sites[0].rect.right, 100 + 0.6 * 640 / 0.75, 1e-9);
}

TEST(SitesTest, FiveSecondsWithoutAnAct_EndIt) {
    const auto count = [](double seconds) {
        camera::Scene scene = emptyScene(60.0);
        addPress(scene, 10.0, 400, 300);
        addPress(scene, seconds, 400, 300);
        return findSites(scene, kShape).size();
    };
    EXPECT_EQ(count(15.0), 1u);
    EXPECT_EQ(count(15.1), 2u);
}

TEST(SitesTest, AnotherWindowAndTheWheel_EndIt) {
    const auto sitesWith = [](const std::vector<SceneWindow>& windows, const std::vector<double>& wheels) {
        camera::Scene scene = emptyScene(60.0);
        scene.windows = windows;
        scene.wheels = wheels;
        addPress(scene, 10.0, 400, 300);
        addPress(scene, 12.0, 400, 300);
        return findSites(scene, kShape).size();
    };
    const RealRect all{0, 0, 1280, 800};
    EXPECT_EQ(sitesWith({{0.0, 60.0, all}}, {}), 1u);
    EXPECT_EQ(sitesWith({{0.0, 11.0, all}, {11.0, 60.0, {0, 0, 600, 600}}}, {}), 2u);
    EXPECT_EQ(sitesWith({{0.0, 11.0, all}, {11.0, 11.1, {}}, {11.1, 60.0, all}}, {}), 1u) << "the same again";
    EXPECT_EQ(sitesWith({}, {11.0}), 2u);
    EXPECT_EQ(sitesWith({}, {10.0}), 1u) << "before anything was done after it";
    EXPECT_EQ(sitesWith({}, {12.0}), 2u);
    EXPECT_EQ(sitesWith({}, {12.1}), 1u);
}

TEST(SitesTest, ActThatNoReadableFrameHolds_IsNoSiteAndEndsOne) {
    camera::Scene scene = emptyScene(60.0);
    addPress(scene, 10.0, 400, 300);
    scene.presses.push_back({11.0, 12.0, 100, 300, {100, 300, 1100, 300}});
    addPress(scene, 13.0, 400, 300);
    const auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 2u);
    expect(sites[0], 10.0, 10.0, {320, 250, 480, 350});
    expect(sites[1], 13.0, 13.0, {320, 250, 480, 350});
}

TEST(SitesTest, Acts_CountInTheOrderOfTime_AndAtOnceThePressComesFirst) {
    camera::Scene scene = emptyScene(60.0);
    addPress(scene, 12.0, 400, 300);
    scene.carets.push_back({10.0, 30.0, {400, 290, 402, 310}});
    addChange(scene, 36, {300, 340, 420, 380}); // 9 s
    auto sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 1u);
    expect(sites[0], 9.0, 12.0, {221, 250, 581, 380});
    scene = emptyScene(60.0);
    addPress(scene, 10.0, 100, 300);
    scene.carets.push_back({10.0, 30.0, {1000, 290, 1002, 310}});
    sites = findSites(scene, kShape);
    ASSERT_EQ(sites.size(), 2u);
    EXPECT_EQ(sites[0].rect, (RealRect{20, 250, 180, 350}));
    EXPECT_EQ(sites[1].rect, (RealRect{821, 265, 1181, 335}));
}

TEST(SitesTest, ChangeOfTheFirstStep_BeginsASite) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 0, {100, 100, 200, 140});
    ASSERT_EQ(findSites(scene, kShape).size(), 1u);
    expect(findSites(scene, kShape)[0], 0.0, 0.25, {100, 100, 200, 140});
}

TEST(SitesTest, ChangeOfJustHalfTheWindow_IsNoPage) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 40, {0, 0, 1280, 400});
    ASSERT_EQ(findSites(scene, kShape).size(), 1u);
    EXPECT_NEAR(width(findSites(scene, kShape)[0].rect), 0.6 * 640 / 0.75, 1e-9);
}

TEST(SitesTest, WindowThatComes_EndsASite_WhateverTheWheelDoesLater) {
    camera::Scene scene = emptyScene(60.0);
    scene.wheels = {50.0, 51.0, 52.0};
    scene.windows = {{0.0, 11.0, {0, 0, 1280, 800}}, {11.0, 60.0, {0, 0, 600, 600}}};
    addPress(scene, 10.0, 400, 300);
    addPress(scene, 12.0, 400, 300);
    EXPECT_EQ(findSites(scene, kShape).size(), 2u);
}

TEST(SitesTest, WhatAReadableFrameJustHolds_IsASite) {
    const FrameShape half(640, 400, 1280, 800, 0.5, false);
    camera::Scene scene = emptyScene(60.0);
    addPress(scene, 10.0, 80, 300);   // from 0
    addPress(scene, 11.0, 1200, 300); // to 1280
    EXPECT_EQ(findSites(scene, half).size(), 1u);
    scene = emptyScene(60.0);
    scene.presses.push_back({10.0, 12.0, 640, 400, {0, 0, 1280, 800}});
    EXPECT_EQ(findSites(scene, half).size(), 1u);
    scene = emptyScene(60.0);
    addChange(scene, 40, {0, 300, 1280, 320});
    EXPECT_EQ(findSites(scene, half).at(0).rect, (RealRect{0, 300, 1280, 320})) << "and not its left end alone";
}

} // namespace
} // namespace OrvantaNS::testing
