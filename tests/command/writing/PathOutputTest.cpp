#include "writing/PathOutput.h"

#include <cmath>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "../../support/Random.h"
#include "asking/OptionError.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;

/// A minute at 1000 ticks a second, video from 0.25 s on.
CameraPlan plainPlan() {
    CameraPlan plan;
    plan.recording = "session.jsonl";
    plan.engine = "value";
    plan.videoOffset = 250;
    plan.setup.region = {0, 1280, 0, 800};
    plan.setup.targetWidth = 640;
    plan.setup.targetHeight = 400;
    plan.setup.timeScale = 1000;
    plan.setup.fadeDuration = 1000;
    plan.setup.clipStop = 4000;
    plan.setup.easing = CameraEasing::linear();
    plan.keyframes = {{{1250, {320, 960, 200, 600}}, "tight"}, {{61234, {100, 741, 0, 400}}, ""}};
    return plan;
}

/// What a document breaks of a schema; empty when it is in order.
std::string complaintOf(const std::string& schemaName, const nlohmann::json& document) {
    const auto schemaDocument = nlohmann::json::parse(std::ifstream(ORVANTA_SCHEMAS "/" + schemaName));
    valijson::Schema schema;
    valijson::SchemaParser(valijson::SchemaParser::kDraft7)
        .populateSchema(valijson::adapters::NlohmannJsonAdapter(schemaDocument), schema);
    valijson::ValidationResults results;
    if (valijson::Validator().validate(schema, valijson::adapters::NlohmannJsonAdapter(document), &results)) {
        return {};
    }
    valijson::ValidationResults::Error error;
    return results.popError(error) ? error.description : "not valid";
}

TEST(PathOutputTest, Table_HasAColumnOfReasonsWhereThereAreAny) {
    CameraPlan plan = plainPlan();
    EXPECT_EQ(pathTable(plan), "      time      position         size   zoom  reason\n"
                               "  0:01.250      320, 200      640x400   1.00  tight\n"
                               "  1:01.234        100, 0      641x400   1.00  \n");
    plan.keyframes[0].reason = "";
    EXPECT_EQ(pathTable(plan), "      time      position         size   zoom\n"
                               "  0:01.250      320, 200      640x400   1.00\n"
                               "  1:01.234        100, 0      641x400   1.00\n");
}

TEST(PathOutputTest, Csv_HasVideoTime) {
    EXPECT_EQ(pathCsv(plainPlan()), "tick,seconds,left,top,width,height,zoom,reason,videoSeconds\n"
                                    "1250,1.25,320,200,640,400,1,tight,1\n"
                                    "61234,61.234,100,0,641,400,0.99844,,60.984\n");
}

TEST(PathOutputTest, Csv_ReasonInWords_IsQuoted) {
    CameraPlan plan = plainPlan();
    plan.keyframes[0].reason = "typing, and \"two\" presses";
    EXPECT_THAT(pathCsv(plan), HasSubstr(",1,\"typing, and \"\"two\"\" presses\",1\n"));
}

TEST(PathOutputTest, Csv_Even_HasTheExactShape) {
    // 641x400 is 641x400.625 in the exact shape; 640x400 is the nearest even one, its middle at 420.5 and 200.3.
    EXPECT_THAT(pathCsv(plainPlan(), true), HasSubstr("61234,61.234,100,0,640,400,1,,60.984\n"));
}

TEST(PathOutputTest, Samples_LieOnTheVideosClock) {
    const auto samples = samplesOf(plainPlan(), {2, 1});
    // From the video's start at 0.25 s to the clip's stop at 4 s: 0, 0.5 ... 3.5 s of the video.
    ASSERT_EQ(samples.size(), 8U);
    EXPECT_EQ(samples.front().videoSeconds, 0.0);
    EXPECT_EQ(samples.front().seconds, 0.25);
    EXPECT_EQ(samples.back().videoSeconds, 3.5);
    const CameraPath path = plainPlan().path();
    for (const PathSample& sample : samples) {
        EXPECT_EQ(sample.frame, path.frameAtSeconds(sample.seconds));
    }
    // 1.5 s of the video is half a fade behind the keyframe: between 1280 and 640 pixels the geometric mean.
    EXPECT_NEAR(samples[3].frame.width, 1280 / std::sqrt(2.0), 1e-9);
}

TEST(PathOutputTest, Samples_WithoutVideo_LieOnTheRecordingsClock) {
    CameraPlan plan = plainPlan();
    plan.videoOffset.reset();
    plan.setup.clipStart = 100;
    const auto samples = samplesOf(plan, {30000, 1001});
    EXPECT_NEAR(samples.front().seconds, 3 * 1001.0 / 30000, 1e-12);
    EXPECT_EQ(samples.front().seconds, samples.front().videoSeconds);
    EXPECT_NEAR(samples.back().seconds, 119 * 1001.0 / 30000, 1e-12);
    EXPECT_EQ(samples.size(), 117U);
}

TEST(PathOutputTest, Samples_OnBothEndsOfTheClip_AreIncluded) {
    CameraPlan plan = plainPlan();
    plan.videoOffset = 0;
    plan.setup.timeScale = 30;
    plan.setup.clipStart = 7;
    plan.setup.clipStop = 22;
    EXPECT_EQ(samplesOf(plan, {30, 1}).size(), 16U);
}

TEST(PathOutputTest, Samples_TooMany_AreRefused) {
    CameraPlan plan = plainPlan();
    plan.setup.clipStop = 4000LL * 1000 * 1000;
    EXPECT_THROW(samplesOf(plan, {60, 1}), OptionError);
}

TEST(PathOutputTest, SamplesCsv_HasFractionsOrEvenPixels) {
    CameraPlan plan = plainPlan();
    EXPECT_THAT(samplesCsv(plan, {2, 1}),
                HasSubstr("seconds,left,top,width,height,zoom,videoSeconds\n0.25,0,0,1280,800,0.5,0\n"));
    // At the geometric mean, 905.1x565.7, the nearest size in steps of 16x10 is 912x570.
    EXPECT_THAT(samplesCsv(plan, {2, 1}, true), HasSubstr("\n1.75,184,116,912,570,0.701754,1.5\n"));
}

TEST(PathOutputTest, EvenFrame_IsEvenOfTheExactShapeAndInside) {
    const std::uint64_t seed = 41;
    testing::Random random(seed);
    for (int round = 0; round < 5000; ++round) {
        CameraSetup setup;
        setup.targetWidth = 16 * random.range(4, 120);
        setup.targetHeight = 16 * random.range(4, 120);
        const int width = random.range(4000, 8000);
        const int height = random.range(4000, 8000);
        setup.region = {0, width, 0, height};
        const CameraPath path({}, setup);
        const int frameWidth = random.range(500, 9000);
        const int left = random.range(-100, width);
        const CameraFrame frame = path.frameOf({left, left + frameWidth, 10, 10 + random.range(500, 9000)});
        const Rectangle even = evenFrame(frame, setup);
        SCOPED_TRACE("seed " + std::to_string(seed) + " round " + std::to_string(round));
        const long long evenWidth = even.right - even.left;
        const long long evenHeight = even.bottom - even.top;
        for (const int edge : {even.left, even.top, even.right, even.bottom}) {
            EXPECT_EQ(edge % 2, 0);
        }
        EXPECT_EQ(evenWidth * setup.targetHeight, evenHeight * setup.targetWidth);
        if (!frame.overhangs) {
            EXPECT_GE(even.left, 0);
            EXPECT_GE(even.top, 0);
            EXPECT_LE(even.right, width);
            EXPECT_LE(even.bottom, height);
        }
    }
}

TEST(PathOutputTest, EvenFrame_OfAnOverhang_StandsOutEvenly) {
    CameraSetup setup;
    setup.targetWidth = 90;
    setup.targetHeight = 160;
    setup.region = {0, 1280, 0, 800};
    // 1280x2275.6 in steps of 18x32: 1278x2272, which stands out 736 above and below.
    EXPECT_EQ(evenFrame(CameraPath({}, setup).wholeFrame(), setup), (Rectangle{0, 1278, -736, 1536}));
}

TEST(PathOutputTest, Json_IsInOrderByItsSchema) {
    CameraPlan plan = plainPlan();
    EXPECT_EQ(complaintOf("orvanta-path-1.json", nlohmann::json::parse(pathJson(plan))), "");
    EXPECT_EQ(complaintOf("orvanta-frames-1.json", nlohmann::json::parse(samplesJson(plan, {30, 1}))), "");
    plan.recording.clear();
    plan.engine.clear();
    plan.videoOffset.reset();
    plan.keyframes.clear();
    EXPECT_EQ(complaintOf("orvanta-path-1.json", nlohmann::json::parse(pathJson(plan))), "");
    EXPECT_EQ(complaintOf("orvanta-frames-1.json", nlohmann::json::parse(samplesJson(plan, {30, 1}))), "");
}

TEST(PathOutputTest, Json_SaysEverythingOfAKeyframe) {
    const auto document = nlohmann::json::parse(pathJson(plainPlan()));
    const nlohmann::json expected{{"tick", 1250},  {"seconds", 1.25}, {"videoSeconds", 1.0},
                                  {"left", 320},   {"top", 200},      {"width", 640},
                                  {"height", 400}, {"zoom", 1.0},     {"reason", "tight"}};
    EXPECT_EQ(document["keyframes"][0], expected);
    EXPECT_EQ(document["keyframes"][1]["reason"], nullptr);
    EXPECT_THAT(document["tool"].get<std::string>(), HasSubstr("orvanta "));
    EXPECT_EQ(document["videoOffsetTicks"], 250);
    EXPECT_EQ(document["easing"]["name"], "linear");
}

TEST(PathOutputTest, Schemas_RefuseWhatTheReadersRefuse) {
    const auto good = nlohmann::json::parse(pathJson(plainPlan()));
    for (const char* const field :
         {"format", "version", "ticksPerSecond", "region", "target", "fadeTicks", "clip", "keyframes"}) {
        nlohmann::json bad = good;
        bad.erase(field);
        EXPECT_NE(complaintOf("orvanta-path-1.json", bad), "") << field;
    }
    nlohmann::json bad = good;
    bad["keyframes"][0]["width"] = 0;
    EXPECT_NE(complaintOf("orvanta-path-1.json", bad), "");
    bad = good;
    bad["easing"] = "fast";
    EXPECT_NE(complaintOf("orvanta-path-1.json", bad), "");
    bad = good;
    bad["keyframes"][0].erase("tick");
    EXPECT_EQ(complaintOf("orvanta-path-1.json", bad), "");
    bad["keyframes"][0].erase("seconds");
    EXPECT_NE(complaintOf("orvanta-path-1.json", bad), "");

    const auto wishes = nlohmann::json::parse(R"({"format": "orvanta-wishes", "version": 1,
        "pins": [{"from": 12.5, "to": 20, "left": 100, "top": 50, "width": 640, "height": 400}],
        "whole": [{"from": 30}], "keepOut": [{}], "leastZoom": 0.4, "greatestZoom": 1, "leastRest": 4})");
    EXPECT_EQ(complaintOf("orvanta-wishes-1.json", wishes), "");
    nlohmann::json other = wishes;
    other["pin"] = nlohmann::json::array();
    EXPECT_NE(complaintOf("orvanta-wishes-1.json", other), "");
    other = wishes;
    other["leastZoom"] = 0;
    EXPECT_NE(complaintOf("orvanta-wishes-1.json", other), "");
}

} // namespace
} // namespace OrvantaNS::command
