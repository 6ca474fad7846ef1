#include "writing/KeyframeOutput.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <simdjson.h>

#include "support/Reading.h"
#include "writing/KeyframeFormat.h"

namespace OrvantaNS::command {
namespace {

/// One minute at 1000 ticks a second, target 640 by 400.
Recording recordingWithTarget() {
    Recording recording = testing::readText(testing::kHeader + "[0,\"region\",0,0,1280,800]\n[60000,\"action\",0]\n");
    recording.params.setTargetWidth(640).setTargetHeight(400).setFadeDuration(1000).setClipInterval(0, 60000);
    return recording;
}

std::vector<ReasonedKeyframe> twoKeyframes() {
    return {{{1500, {0, 1280, 0, 800}}, OV_MERGE_FULL_SCREEN, 0U}, {{61234, {100, 740, -8, 392}}, OV_MERGE_TIGHT, 3U}};
}

TEST(KeyframeOutputTest, ReasonName_EveryCameraMode_AndNothingElse) {
    EXPECT_EQ(reasonName(OV_MERGE_NONE), "");
    EXPECT_EQ(reasonName(OV_MERGE_TIGHT), "tight");
    EXPECT_EQ(reasonName(OV_MERGE_WIDE), "wide");
    EXPECT_EQ(reasonName(OV_MERGE_LOOSE), "loose");
    EXPECT_EQ(reasonName(OV_MERGE_FORCED), "forced");
    EXPECT_EQ(reasonName(OV_MERGE_OFF_WINDOW), "off-window");
    EXPECT_EQ(reasonName(OV_MERGE_FULL_SCREEN), "full screen");
    EXPECT_EQ(reasonName(OV_MERGE_TIGHT_PAN_TIGHT), "");
    EXPECT_EQ(reasonName(kNothingCloser), "nothing closer");
    EXPECT_EQ(reasonName(-2), "");
}

TEST(KeyframeOutputTest, Table_HasARowForEachKeyframe) {
    const Recording recording = recordingWithTarget();
    // 640 of 1280 pixels: half size. 640 of 640: pixel for pixel.
    EXPECT_EQ(keyframeTable({recording, EngineChoice::Value, twoKeyframes(), true}),
              "      time      position         size   zoom  reason\n"
              "  0:01.500          0, 0     1280x800   0.50  full screen\n"
              "  1:01.234       100, -8      640x400   1.00  tight\n");
    EXPECT_EQ(keyframeTable({recording, EngineChoice::Voting, twoKeyframes(), false}),
              "      time      position         size   zoom\n"
              "  0:01.500          0, 0     1280x800   0.50\n"
              "  1:01.234       100, -8      640x400   1.00\n");
}

TEST(KeyframeOutputTest, Csv_HasExactTicksAndSeconds) {
    const Recording recording = recordingWithTarget();
    EXPECT_EQ(keyframeCsv({recording, EngineChoice::Value, twoKeyframes(), true}),
              "tick,seconds,left,top,width,height,zoom,reason,videoSeconds\n"
              "1500,1.5,0,0,1280,800,0.5,full screen,1.5\n"
              "61234,61.234,100,-8,640,400,1,tight,61.234\n");
    EXPECT_EQ(keyframeCsv({recording, EngineChoice::Voting, twoKeyframes(), false}),
              "tick,seconds,left,top,width,height,zoom,reason,videoSeconds\n"
              "1500,1.5,0,0,1280,800,0.5,,1.5\n"
              "61234,61.234,100,-8,640,400,1,,61.234\n");
}

TEST(KeyframeOutputTest, Json_NamesTheRequestAndHoldsTheKeyframes) {
    const Recording recording = recordingWithTarget();
    simdjson::dom::parser parser;
    const std::string text = keyframeJson({recording, EngineChoice::Value, twoKeyframes(), true});
    const simdjson::dom::element json = parser.parse(text);
    EXPECT_EQ(json["recording"].get_string().value(), "f");
    EXPECT_EQ(json["engine"].get_string().value(), "value");
    EXPECT_EQ(json["ticksPerSecond"].get_double().value(), 1000.0);
    EXPECT_EQ(json["target"]["width"].get_int64().value(), 640);
    EXPECT_EQ(json["target"]["height"].get_int64().value(), 400);
    EXPECT_EQ(json["fadeTicks"].get_int64().value(), 1000);
    EXPECT_EQ(json["clip"]["startTick"].get_int64().value(), 0);
    EXPECT_EQ(json["clip"]["stopTick"].get_int64().value(), 60000);
    ASSERT_EQ(json["keyframes"].get_array().size(), 2U);
    const simdjson::dom::element second = json["keyframes"].at(1);
    EXPECT_EQ(second["tick"].get_int64().value(), 61234);
    EXPECT_EQ(second["seconds"].get_double().value(), 61.234);
    EXPECT_EQ(second["left"].get_int64().value(), 100);
    EXPECT_EQ(second["top"].get_int64().value(), -8);
    EXPECT_EQ(second["width"].get_int64().value(), 640);
    EXPECT_EQ(second["height"].get_int64().value(), 400);
    EXPECT_EQ(second["zoom"].get_double().value(), 1.0);
    EXPECT_EQ(second["reason"].get_string().value(), "tight");
}

TEST(KeyframeOutputTest, Json_WithoutReasons_HasNull) {
    const Recording recording = recordingWithTarget();
    simdjson::dom::parser parser;
    const std::string text = keyframeJson({recording, EngineChoice::Voting, twoKeyframes(), false});
    const simdjson::dom::element json = parser.parse(text);
    EXPECT_EQ(json["engine"].get_string().value(), "voting");
    EXPECT_TRUE(json["keyframes"].at(0)["reason"].is_null());
}

TEST(KeyframeOutputTest, ExtremeNumbers_ArePrinted) {
    const Recording recording = recordingWithTarget();
    constexpr std::int32_t low = std::numeric_limits<std::int32_t>::lowest();
    constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
    const std::vector<ReasonedKeyframe> keyframes{
        {{std::numeric_limits<long long>::lowest(), {low, high, low, high}}, 99, std::nullopt},
        {{std::numeric_limits<long long>::max(), {5, 5, 5, 5}}, -5, std::nullopt}};
    for (const KeyframeFormat& format : keyframeFormats()) {
        const std::string text = format.text({recording, EngineChoice::Value, keyframes, true});
        EXPECT_NE(text.find("-2147483648"), std::string::npos);
    }
    EXPECT_EQ(zoomOf(keyframes[1].frame, recording.params), 0.0);
}

TEST(KeyframeOutputTest, ReasonedKeyframes_TakeTheModeOfTheShotThatMadeThem) {
    OV_DATA_STORE store;
    store.slices.resize(3);
    store.slices[0].mergeType = OV_MERGE_WIDE;
    store.slices[2].mergeType = OV_MERGE_LOOSE;
    store.keyframes = {{10, {}}, {20, {}}};
    store.keyframeSlices = {0, 2};
    const std::vector<ReasonedKeyframe> keyframes = reasonedKeyframes(store);
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_EQ(keyframes[0].mode, OV_MERGE_WIDE);
    EXPECT_EQ(keyframes[0].slice, 0U);
    EXPECT_EQ(keyframes[1].mode, OV_MERGE_LOOSE);
    EXPECT_EQ(keyframes[1].slice, 2U);
    EXPECT_EQ(keyframes[1].frame.time, 20);
}

} // namespace
} // namespace OrvantaNS::command
