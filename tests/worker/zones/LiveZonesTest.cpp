#include "OrvantaWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "EngineErrors.h"
#include "Scene.h"
#include "frame/DataStore.h"
#include "parser/DataParser.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::expectError;
using testing::recording;
using testing::Scene;

struct Span {
    double start;
    double stop;
    friend bool operator==(const Span&, const Span&) = default;
};

// The zones of a scene. Unless a test says otherwise the fade is 1 s, which makes the margin 2 s.
class LiveZonesTest : public ::testing::Test {
protected:
    void SetUp() override { DataParser::StoreTimeScale = 1000.0; }

    OV_DATA_STORE& parse(const Scene& scene, double clipStart, double clipStop) {
        store_ = {};
        store_.fadeSeconds = fade_;
        store_.clipStart = clipStart;
        store_.clipStop = clipStop;
        worker_.parseLiveZones(scene.params(), store_);
        return store_;
    }
    std::vector<Span> zones(const Scene& scene, double clipStart, double clipStop) {
        std::vector<Span> spans;
        for (const OV_LIVE_ZONE& zone : parse(scene, clipStart, clipStop).liveZones) {
            spans.push_back({zone.start, zone.stop});
        }
        return spans;
    }
    void expectNoZones(const Scene& scene, double clipStart, double clipStop) {
        expectError([&] { parse(scene, clipStart, clipStop); }, OVERR_NO_LIVE_ZONES,
                    "Need String! No Live Zones detected!");
    }

    OrvantaWorker worker_;
    OV_DATA_STORE store_;
    double fade_ = 1.0;
};

const Rectangle kOther = box(100, 50, 800, 600);

TEST_F(LiveZonesTest, OneRegion_IsTheWholeClip) {
    EXPECT_EQ(zones(recording(), 3.0, 60.0), (std::vector<Span>{{3.0, 60.0}}));
    EXPECT_EQ(store_.liveZones[0].rect, box(0, 0, 1280, 800));
}

TEST_F(LiveZonesTest, OneRegionThatStartsAfterTheClip_StartsTheZone) {
    Scene scene = recording();
    scene.params().recordingRegions()[0].time = 5000;
    EXPECT_EQ(zones(scene, 3.0, 60.0), (std::vector<Span>{{5.0, 60.0}}));
}

TEST_F(LiveZonesTest, OneRegion_IsKeptWithoutAnyLength) {
    EXPECT_EQ(zones(recording(), 0.0, 0.0), (std::vector<Span>{{0.0, 0.0}}));
    EXPECT_EQ(zones(recording(), 9.0, 4.0), (std::vector<Span>{{9.0, 4.0}}));
}

TEST_F(LiveZonesTest, TwoRegions_KeepAMarginOnEitherSideOfTheChange) {
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 60.0), (std::vector<Span>{{0.0, 8.0}, {12.0, 60.0}}));
    EXPECT_EQ(store_.liveZones[0].rect, box(0, 0, 1280, 800));
    EXPECT_EQ(store_.liveZones[1].rect, kOther);
}

TEST_F(LiveZonesTest, FirstZone_IsKeptWhenItLastsMoreThanOneMargin) {
    EXPECT_EQ(zones(recording().region(3.999, kOther), 0.0, 60.0).size(), 1u);
    EXPECT_EQ(zones(recording().region(4.0, kOther), 0.0, 60.0), (std::vector<Span>{{6.0, 60.0}}));
    EXPECT_EQ(zones(recording().region(4.001, kOther), 0.0, 60.0).size(), 2u);
}

TEST_F(LiveZonesTest, ZoneBetweenTwoChanges_IsDroppedUpToThreeMargins) {
    EXPECT_EQ(zones(recording().region(10.0, kOther).region(13.0, kOther), 0.0, 60.0),
              (std::vector<Span>{{0.0, 8.0}, {15.0, 60.0}}));
    EXPECT_EQ(zones(recording().region(10.0, kOther).region(16.0, kOther), 0.0, 60.0),
              (std::vector<Span>{{0.0, 8.0}, {18.0, 60.0}}));
    EXPECT_EQ(zones(recording().region(10.0, kOther).region(16.5, kOther), 0.0, 60.0),
              (std::vector<Span>{{0.0, 8.0}, {12.0, 14.5}, {18.5, 60.0}}));
}

TEST_F(LiveZonesTest, LastZone_IsKeptWhenItLastsMoreThanOneMargin) {
    const Scene scene = recording().region(10.0, kOther);
    EXPECT_EQ(zones(scene, 0.0, 13.999), (std::vector<Span>{{0.0, 8.0}}));
    EXPECT_EQ(zones(scene, 0.0, 14.0), (std::vector<Span>{{0.0, 8.0}}));
    EXPECT_EQ(zones(scene, 0.0, 14.001), (std::vector<Span>{{0.0, 8.0}, {12.0, 14.001}}));
}

// The margin is the fade and one second, not two fades and not two seconds.
TEST_F(LiveZonesTest, OtherFades_MoveTheMargin) {
    fade_ = 0.5; // margin 1.5 s
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 60.0), (std::vector<Span>{{0.0, 8.5}, {11.5, 60.0}}));
    EXPECT_EQ(zones(recording().region(3.0, kOther), 0.0, 60.0), (std::vector<Span>{{4.5, 60.0}}));
    EXPECT_EQ(zones(recording().region(3.001, kOther), 0.0, 60.0).size(), 2u);
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 13.0), (std::vector<Span>{{0.0, 8.5}}));
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 13.001), (std::vector<Span>{{0.0, 8.5}, {11.5, 13.001}}));
    fade_ = 3.0; // margin 4 s
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 60.0), (std::vector<Span>{{0.0, 6.0}, {14.0, 60.0}}));
    EXPECT_EQ(zones(recording().region(8.0, kOther), 0.0, 60.0), (std::vector<Span>{{12.0, 60.0}}));
    fade_ = 0.0; // margin 1 s
    EXPECT_EQ(zones(recording().region(10.0, kOther), 0.0, 60.0), (std::vector<Span>{{0.0, 9.0}, {11.0, 60.0}}));
}

TEST_F(LiveZonesTest, Clip_BoundsOnlyTheFirstStartAndTheLastStop) {
    // The first zone starts at 20 and would stop at 8; the second is not cut to the clip's start.
    EXPECT_EQ(zones(recording().region(10.0, kOther), 20.0, 60.0), (std::vector<Span>{{12.0, 60.0}}));
    // The middle zone is not cut to the clip's stop; the last one would stop before it starts.
    EXPECT_EQ(zones(recording().region(10.0, kOther).region(50.0, kOther), 0.0, 20.0),
              (std::vector<Span>{{0.0, 8.0}, {12.0, 48.0}}));
}

TEST_F(LiveZonesTest, NoZoneLeft_Fails) {
    expectNoZones(recording().region(3.0, kOther), 0.0, 6.0);
    expectNoZones(recording().region(3.0, kOther).region(6.0, kOther), 0.0, 9.0);
}

TEST_F(LiveZonesTest, NoRegionAtAll_IsTheStandardLibrarysOutOfRange) {
    Scene scene = recording();
    scene.params().recordingRegions().clear();
    EXPECT_THROW(parse(scene, 0.0, 60.0), std::out_of_range);
}

TEST_F(LiveZonesTest, FilterWindows_CopiesTheThreeKindsInOrderWithoutValue) {
    for (std::uint32_t type = Move; type <= ClickWindow; ++type) {
        store_.valueObjects.push_back({type, 1.0 * type, 2.0 * type, box(1, 2, 3, 4), 5.0});
    }
    worker_.filterWindows(store_);
    ASSERT_EQ(store_.windowObjects.size(), 3u);
    const std::uint32_t types[] = {ForeAnimate, ActiveWindow, FullScreenDirty};
    for (std::size_t i = 0; i < 3; ++i) {
        const OV_VALUE_OBJECT& window = store_.windowObjects[i];
        EXPECT_EQ(window.type, types[i]);
        EXPECT_EQ(window.start, 1.0 * types[i]);
        EXPECT_EQ(window.stop, 2.0 * types[i]);
        EXPECT_EQ(window.rect, box(1, 2, 3, 4));
        EXPECT_EQ(window.value, 0.0);
    }
    EXPECT_EQ(store_.valueObjects.size(), 29u);
    EXPECT_EQ(store_.valueObjects[ActiveWindow].value, 5.0);
}

TEST_F(LiveZonesTest, ParseObjectData_SortsByStartAndKeepsTheOrderOfTies) {
    const Scene scene = recording().length(5.0);
    parse(scene, 0.0, 5.0);
    store_.valueObjects = {{Click, 3.0, 3.0, box(0, 0, 1, 1), 0.0},
                           {ActiveWindow, 1.0, 4.0, box(0, 0, 2, 2), 0.0},
                           {Drag, 3.0, 3.5, box(0, 0, 3, 3), 0.0},
                           {Menu, 1.0, 2.0, box(0, 0, 4, 4), 0.0},
                           {ForeAnimate, 0.5, 2.0, box(0, 0, 5, 5), 0.0}};
    DataParser parser;
    worker_.parseObjectData(scene.params(), store_, parser);
    std::vector<std::uint32_t> types;
    for (const OV_VALUE_OBJECT& object : store_.valueObjects) {
        types.push_back(object.type);
    }
    EXPECT_THAT(types, ::testing::ElementsAre(ForeAnimate, ActiveWindow, Menu, Click, Drag));
    ASSERT_EQ(store_.windowObjects.size(), 2u);
    EXPECT_EQ(store_.windowObjects[0].type, ForeAnimate);
    EXPECT_EQ(store_.windowObjects[1].type, ActiveWindow);
}

TEST_F(LiveZonesTest, ParseObjectData_WithoutObjects_LeavesNoWindows) {
    const Scene scene = recording().length(5.0);
    parse(scene, 0.0, 5.0);
    DataParser parser;
    worker_.parseObjectData(scene.params(), store_, parser);
    EXPECT_TRUE(store_.valueObjects.empty());
    EXPECT_TRUE(store_.windowObjects.empty());
}

// The list stands as long as the parser does, which is to the end of the computation.
TEST_F(LiveZonesTest, ParseObjectData_GivesBackTheMemoryOfTheWorkingList) {
    const Scene scene = recording().cursor(0.0, 400, 300).click(5.0);
    parse(scene, 0.0, 60.0);
    DataParser parser;
    parser.objects.reserve(1000);
    worker_.parseObjectData(scene.params(), store_, parser);
    EXPECT_EQ(store_.valueObjects.size(), 1u);
    EXPECT_EQ(parser.objects.capacity(), parser.objects.size());
}

// Areas are asked for while their zone is walked; what comes after the walk needs the memory more.
TEST_F(LiveZonesTest, ParseObjectData_GivesBackTheMemoryOfTheChangedAreas) {
    const Scene scene =
        recording().cursor(0.0, 400, 300).dirty(1.0, {100, 100, 300, 200}).dirty(5.0, {500, 400, 50, 50});
    parse(scene, 0.0, 60.0);
    DataParser parser;
    parser.drObjects.reserve(1000);
    worker_.parseObjectData(scene.params(), store_, parser);
    EXPECT_EQ(parser.drObjects.capacity(), 0u);
}

TEST_F(LiveZonesTest, ParseObjectData_RunsOverEveryZone) {
    // One click in each zone of the same place on the screen: local pixels differ by the second zone's origin.
    const Scene scene =
        recording().region(30.0, kOther).cursor(0.0, 400, 300).click(5.0).cursor(40.0, 400, 300).click(45.0);
    parse(scene, 0.0, 60.0);
    DataParser parser;
    worker_.parseObjectData(scene.params(), store_, parser);
    EXPECT_EQ(store_.currentZone, 1u);
    ASSERT_EQ(store_.valueObjects.size(), 2u);
    EXPECT_EQ(store_.valueObjects[0].type, Click);
    EXPECT_EQ(store_.valueObjects[0].start, 5.0);
    EXPECT_EQ(store_.valueObjects[1].type, Click);
    EXPECT_EQ(store_.valueObjects[1].start, 45.0);
}

} // namespace
} // namespace OrvantaNS
