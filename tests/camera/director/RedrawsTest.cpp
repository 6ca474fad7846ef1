#include "camera/director/Redraws.h"

#include <gtest/gtest.h>

#include "EmptyScene.h"

namespace OrvantaNS::testing {
namespace {

using namespace camera;

const RealRect kScreen{0, 0, 1280, 800};

void addChange(camera::Scene& scene, std::size_t step, const RealRect& rect, double attention = 1.0) {
    scene.changes.push_back({rect, attention});
    for (std::size_t i = step; i < scene.changeEnds.size(); ++i) {
        scene.changeEnds[i] = static_cast<std::uint32_t>(scene.changes.size());
    }
}

TEST(RedrawsTest, FrontWindow_IsTheScreenWhereThereIsNone) {
    camera::Scene scene = emptyScene(60.0);
    EXPECT_EQ(FrontWindow(scene).at(5.0), kScreen);
    const RealRect window{100, 100, 500, 400};
    scene.windows = {{0.0, 2.0, window}, {2.0, 3.0, {}}, {3.0, 60.0, {0, 0, 200, 200}}};
    FrontWindow front(scene);
    EXPECT_EQ(front.at(0.0), window);
    EXPECT_EQ(front.at(1.99), window);
    EXPECT_EQ(front.at(2.0), kScreen);
    EXPECT_EQ(front.at(3.0), (RealRect{0, 0, 200, 200}));
    EXPECT_EQ(front.at(59.0), (RealRect{0, 0, 200, 200}));
    EXPECT_EQ(FrontWindow(scene).at(59.0), (RealRect{0, 0, 200, 200})) << "asked for at once";
}

TEST(RedrawsTest, NewsIn_AddsUpWhatLiesInTheWindow_ClockworkApart) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 0, {0, 0, 100, 100});
    addChange(scene, 0, {0, 0, 50, 100}, 0.12);
    addChange(scene, 0, {150, 0, 250, 10});
    const RealRect front{0, 0, 200, 200};
    EXPECT_EQ(newsIn(scene, front, 0, 3), 10500.0);
    EXPECT_EQ(newsIn(scene, front, 1, 2), 0.0);
    EXPECT_EQ(newsIn(scene, front, 2, 3), 500.0);
}

TEST(RedrawsTest, Redraw_IsMoreThanHalfOfTheWindow) {
    camera::Scene scene = emptyScene(60.0);
    scene.windows = {{0.0, 60.0, {0, 0, 1000, 800}}};
    addChange(scene, 40, {0, 0, 500, 800});
    EXPECT_TRUE(redrawsOf(scene).empty());
    addChange(scene, 80, {0, 0, 501, 800});
    EXPECT_EQ(redrawsOf(scene), (std::vector<double>{20.0}));
    addChange(scene, 120, {700, 0, 1280, 800}); // next to the window
    EXPECT_EQ(redrawsOf(scene).size(), 1u);
    // Two halves of one step are the whole.
    addChange(scene, 160, {0, 0, 300, 800});
    addChange(scene, 160, {300, 0, 600, 800});
    EXPECT_EQ(redrawsOf(scene), (std::vector<double>{20.0, 40.0}));
}

TEST(RedrawsTest, RedrawsOfASecond_AreOneBurst) {
    camera::Scene scene = emptyScene(60.0);
    for (const std::size_t step : {40U, 44U, 48U, 53U}) { // 10, 11, 12 and 13.25 s
        addChange(scene, step, kScreen);
    }
    EXPECT_EQ(redrawsOf(scene), (std::vector<double>{10.0, 13.25}));
}

TEST(RedrawsTest, RedrawOfTheFirstStep_Counts) {
    camera::Scene scene = emptyScene(60.0);
    addChange(scene, 0, kScreen);
    EXPECT_EQ(redrawsOf(scene), (std::vector<double>{0.0}));
}

TEST(RedrawsTest, Rarity_FallsWithTheRedrawsWithinTenSeconds) {
    EXPECT_EQ(rarityOf({}, 10.0), 1.0);
    EXPECT_EQ(rarityOf({10.0}, 10.0), 1.0);
    EXPECT_EQ(rarityOf({10.0, 12.0}, 10.0), 1.0);
    EXPECT_EQ(rarityOf({10.0, 12.0, 14.0}, 10.0), 0.5);
    EXPECT_EQ(rarityOf({2.0, 10.0, 12.0, 14.0, 18.0}, 10.0), 0.25);
    // Ten seconds either way, and no more.
    EXPECT_EQ(rarityOf({0.0, 10.0, 20.0}, 10.0), 0.5);
    EXPECT_EQ(rarityOf({-0.25, 10.0, 20.0}, 10.0), 1.0);
    EXPECT_EQ(rarityOf({0.0, 10.0, 20.25}, 10.0), 1.0);
}

} // namespace
} // namespace OrvantaNS::testing
