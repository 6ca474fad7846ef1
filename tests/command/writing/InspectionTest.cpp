#include "writing/Inspection.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simdjson.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A store as it might stand after all stages: two slices, the second merged away, one keyframe.
OV_DATA_STORE finishedStore() {
    OV_DATA_STORE store;
    store.liveZones = {{{0, 100, 0, 50}, 0.0, 60.0}};
    store.valueObjects = {{Click, 1.0, 1.1, {1, 2, 3, 4}, 0.0},
                          {Hover, 2.0, 3.0, {1, 2, 3, 4}, 0.0},
                          {Click, 4.0, 4.1, {1, 2, 3, 4}, 0.0}};
    OV_FOCUS_SLICE slice;
    slice.start = 0.0;
    slice.stop = 30.0;
    slice.map.spaces = {{{10, 30, 10, 20}, 0.5}, {{0, 50, 0, 50}, 0.1}};
    slice.mergeType = OV_MERGE_OFF_WINDOW;
    store.slices = {slice, slice};
    store.slices[1].mergeId = -1;
    store.keyframes = {{1000, {0, 64, 0, 64}}};
    store.keyframeSlices = {0};
    return store;
}

Recording recordingOfAMinute() {
    return testing::readText(testing::kHeader + "[0,\"region\",0,0,100,50]\n[60000,\"action\",0]\n");
}

Inspection afterStages(int stages) {
    Inspection inspection;
    const OV_DATA_STORE store = finishedStore();
    for (int stage = 0; stage < stages; ++stage) {
        keepStage(inspection, static_cast<OV_PIPELINE_STAGE>(stage), store);
    }
    return inspection;
}

TEST(InspectionTest, Text_ShowsEveryStage) {
    const std::string text = inspectionText(afterStages(5), recordingOfAMinute());
    EXPECT_EQ(text, "Live zones: 1\n"
                    "      0   0:00.000 -  1:00.000  100x50 at 0, 0\n"
                    "\nValue objects: 3\n"
                    "  Click                2\n"
                    "  Hover                1\n"
                    "      0   0:01.000 -  0:01.100  Click            1x1 at 1, 3\n"
                    "      1   0:02.000 -  0:03.000  Hover            1x1 at 1, 3\n"
                    "      2   0:04.000 -  0:04.100  Click            1x1 at 1, 3\n"
                    "\nSlices: 2\n"
                    "      0   0:00.000 -  0:30.000  20x10 at 10, 10, first of 2\n"
                    "      1   0:00.000 -  0:30.000  20x10 at 10, 10, first of 2\n"
                    "\nShots: 1\n"
                    "      0   0:00.000 -  0:30.000  off-window\n"
                    "\nKeyframes: 1\n"
                    "      0   0:01.000  off-window   64x64 at 0, 0\n");
}

TEST(InspectionTest, Text_EarlyEnd_ShowsTheStagesBefore) {
    const std::string text = inspectionText(afterStages(2), recordingOfAMinute());
    EXPECT_THAT(text, HasSubstr("Value objects: 3\n"));
    EXPECT_THAT(text, Not(HasSubstr("Slices")));
}

TEST(InspectionTest, Json_HoldsEveryStage) {
    simdjson::dom::parser parser;
    const std::string text = inspectionJson(afterStages(5), recordingOfAMinute());
    const simdjson::dom::element json = parser.parse(text);
    EXPECT_TRUE(json["failure"].is_null());
    EXPECT_EQ(json["liveZones"].at(0)["rect"]["right"].get_int64().value(), 100);
    EXPECT_EQ(json["objectCounts"]["Click"].get_int64().value(), 2);
    EXPECT_EQ(json["objectCounts"]["Hover"].get_int64().value(), 1);
    EXPECT_EQ(json["valueObjects"].get_array().size(), 3U);
    EXPECT_EQ(json["valueObjects"].at(1)["type"].get_string().value(), "Hover");
    EXPECT_EQ(json["slices"].get_array().size(), 2U);
    EXPECT_EQ(json["slices"].at(0)["spaces"].at(1)["density"].get_double().value(), 0.1);
    EXPECT_EQ(json["shots"].get_array().size(), 1U);
    EXPECT_EQ(json["shots"].at(0)["mode"].get_string().value(), "off-window");
    EXPECT_EQ(json["keyframes"].at(0)["reason"].get_string().value(), "off-window");
    EXPECT_EQ(json["keyframes"].at(0)["seconds"].get_double().value(), 1.0);
}

TEST(InspectionTest, Json_EarlyEnd_NamesTheFailure) {
    Inspection inspection = afterStages(2);
    inspection.failure = "No keyframes were created!";
    simdjson::dom::parser parser;
    const std::string text = inspectionJson(inspection, recordingOfAMinute());
    const simdjson::dom::element json = parser.parse(text);
    EXPECT_EQ(json["failure"].get_string().value(), "No keyframes were created!");
    EXPECT_EQ(json["valueObjects"].get_array().size(), 3U);
    EXPECT_EQ(json["shots"].get_array().size(), 0U);
}

} // namespace
} // namespace OrvantaNS::command
