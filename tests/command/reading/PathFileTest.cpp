#include "reading/PathFile.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../../support/Random.h"
#include "reading/InputError.h"
#include "reading/JsonFields.h"
#include "writing/PathOutput.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;

CameraPlan readText(const std::string& text) { return pathOf(readJson(sourceOf(text), "f"), "f"); }

std::string refusal(const std::string& text) {
    try {
        readText(text);
    } catch (const InputError& error) {
        return error.what();
    }
    return "read without complaint";
}

const std::string kHead = R"({"format": "orvanta-path", "version": 1, "ticksPerSecond": 1000,
 "region": {"width": 1280, "height": 800}, "target": {"width": 640, "height": 400}, "fadeTicks": 500,
 "clip": {"startTick": 0, "stopTick": 60000})";

std::string withKeyframe(const std::string& fields) { return kHead + R"(, "keyframes": [{)" + fields + "}]}"; }

CameraPlan plainPlan() {
    CameraPlan plan;
    plan.recording = "session.jsonl";
    plan.engine = "value";
    plan.videoOffset = -250;
    plan.setup.region = {0, 1280, 0, 800};
    plan.setup.targetWidth = 640;
    plan.setup.targetHeight = 400;
    plan.setup.timeScale = 1000;
    plan.setup.fadeDuration = 1000;
    plan.setup.clipStop = 60000;
    plan.keyframes = {{{1500, {0, 640, 0, 400}}, "tight"}, {{30000, {-8, 1272, 0, 800}}, ""}};
    return plan;
}

TEST(PathFileTest, WhatWasWritten_ComesBack) { EXPECT_EQ(readText(pathJson(plainPlan())), plainPlan()); }

TEST(PathFileTest, AnyPlan_ComesBackToTheLastBit) {
    const std::uint64_t seed = 31;
    testing::Random random(seed);
    for (int round = 0; round < 500; ++round) {
        CameraPlan plan = plainPlan();
        plan.recording = random.chance(0.3) ? "" : "a \"b\" \\ \n \xC3\xA9";
        plan.engine = random.chance(0.3) ? "" : "voting";
        plan.videoOffset.reset();
        if (random.chance(0.5)) {
            plan.videoOffset = static_cast<long long>(random.next());
        }
        plan.setup.timeScale = random.chance(0.3) ? 1e7 : random.real(0.001, 1e9);
        plan.setup.fadeDuration = static_cast<long long>(random.next() >> 1);
        plan.setup.clipStart = static_cast<long long>(random.next());
        plan.setup.clipStop = std::numeric_limits<long long>::max();
        plan.setup.easing = CameraEasing(random.unit(), random.real(-10, 10), random.unit(), random.real(-10, 10));
        plan.keyframes.clear();
        for (int i = random.range(0, 5); i > 0; --i) {
            const long long tick = random.chance(0.3) ? static_cast<long long>(random.next()) : random.range(0, 100000);
            const int left = random.range(-1000, 1000);
            const int top = random.range(-1000, 1000);
            plan.keyframes.push_back({{tick, {left, left + random.range(1, 5000), top, top + random.range(1, 5000)}},
                                      random.chance(0.5) ? "" : "wide"});
        }
        EXPECT_EQ(readText(pathJson(plan)), plan) << "seed " << seed << " round " << round;
    }
}

TEST(PathFileTest, WhatMayBeLeftOut_HasItsDefault) {
    const CameraPlan plan = readText(kHead + R"(, "keyframes": []})");
    EXPECT_EQ(plan.recording, "");
    EXPECT_EQ(plan.engine, "");
    EXPECT_FALSE(plan.videoOffset);
    EXPECT_EQ(plan.setup.easing, CameraEasing());
    EXPECT_TRUE(plan.keyframes.empty());
}

TEST(PathFileTest, Easing_ByNameOrPoints) {
    EXPECT_EQ(readText(kHead + R"(, "easing": "smooth", "keyframes": []})").setup.easing, CameraEasing::smooth());
    EXPECT_EQ(readText(kHead + R"(, "easing": {"x1": 0.1, "y1": 2, "x2": 1, "y2": 0}, "keyframes": []})").setup.easing,
              CameraEasing(0.1, 2, 1, 0));
    EXPECT_THAT(refusal(kHead + R"(, "easing": "fast", "keyframes": []})"),
                HasSubstr("f: easing: no easing has the name"));
    EXPECT_THAT(refusal(kHead + R"(, "easing": {"x1": 2, "y1": 0, "x2": 1, "y2": 0}, "keyframes": []})"),
                HasSubstr("f: easing: easing: the x of both control points must lie in 0 to 1"));
}

TEST(PathFileTest, Time_InTicksOrSeconds) {
    EXPECT_EQ(
        readText(withKeyframe(R"("tick": 1500, "left": 0, "top": 0, "width": 1, "height": 1)")).keyframes[0].frame.time,
        1500);
    EXPECT_EQ(readText(withKeyframe(R"("seconds": 1.5, "left": 0, "top": 0, "width": 1, "height": 1)"))
                  .keyframes[0]
                  .frame.time,
              1500);
    EXPECT_EQ(
        readText(withKeyframe(R"("tick": 1.5e3, "seconds": 1.4996, "left": 0, "top": 0, "width": 1, "height": 1)"))
            .keyframes[0]
            .frame.time,
        1500);
    EXPECT_EQ(refusal(withKeyframe(R"("tick": 1500, "seconds": 2.5, "left": 0, "top": 0, "width": 1, "height": 1)")),
              "f: keyframes[0]: tick 1500 is 1.5 s, not 2.5 s; change both, or leave one out");
    EXPECT_EQ(refusal(withKeyframe(R"("left": 0, "top": 0, "width": 1, "height": 1)")),
              "f: keyframes[0]: the field \"tick\" is missing");
    EXPECT_THAT(refusal(withKeyframe(R"("seconds": 1e300, "left": 0, "top": 0, "width": 1, "height": 1)")),
                HasSubstr("keyframes[0].seconds: the time lies beyond"));
}

TEST(PathFileTest, Faults_AreToldWithTheirPlace) {
    EXPECT_EQ(refusal("{\n  \"format\": orvanta }"), "f:2:13: this is not JSON");
    EXPECT_EQ(refusal("[1]"), "f: expected an object, found a list");
    EXPECT_EQ(refusal(""), "f: expected an object, found null");
    EXPECT_THAT(refusal(R"({"format": "orvanta-recording", "version": 1})"),
                HasSubstr("f: format: this is no camera path"));
    EXPECT_THAT(refusal(R"({"format": "orvanta-path", "version": 2})"),
                HasSubstr("f: version: version 2 is not known"));
    EXPECT_EQ(refusal(R"({"format": "orvanta-path", "version": 1})"), "f: the field \"ticksPerSecond\" is missing");
    EXPECT_EQ(refusal(kHead + "}"), "f: the field \"keyframes\" is missing");
    EXPECT_EQ(refusal(kHead + R"(, "keyframes": 5})"), "f: keyframes: expected a list, found a number");
    EXPECT_EQ(refusal(kHead + R"(, "keyframes": [7]})"), "f: keyframes[0]: expected an object, found a number");
    EXPECT_EQ(refusal(withKeyframe(R"("tick": 1.5, "left": 0, "top": 0, "width": 1, "height": 1)")),
              "f: keyframes[0].tick: expected a whole number, found 1.5");
    EXPECT_EQ(refusal(withKeyframe(R"("tick": "1", "left": 0, "top": 0, "width": 1, "height": 1)")),
              "f: keyframes[0].tick: expected a whole number, found text");
    EXPECT_THAT(refusal(withKeyframe(R"("tick": 18446744073709551615, "left": 0, "top": 0, "width": 1, "height": 1)")),
                HasSubstr("keyframes[0].tick: 18446744073709551615 is not between"));
    EXPECT_EQ(refusal(withKeyframe(R"("tick": 1, "left": 0, "top": 0, "width": 0, "height": 1)")),
              "f: keyframes[0].width: 0 is not between 1 and 2147483647");
    EXPECT_EQ(refusal(withKeyframe(R"("tick": 1, "left": 9, "top": 0, "width": 2147483647, "height": 1)")),
              "f: keyframes[0]: the rectangle reaches beyond what can be counted");
    EXPECT_EQ(refusal(withKeyframe(R"("tick": 1, "left": 0, "top": 0, "width": 1, "height": 1, "reason": 3)")),
              "f: keyframes[0].reason: expected text, found a number");
}

TEST(PathFileTest, NumbersOutOfRange_AreRefused) {
    const auto changed = [](const std::string& from, const std::string& to) {
        std::string text = kHead + R"(, "keyframes": []})";
        text.replace(text.find(from), from.size(), to);
        return refusal(text);
    };
    EXPECT_THAT(changed("\"ticksPerSecond\": 1000", "\"ticksPerSecond\": 0"),
                HasSubstr("ticksPerSecond: must be above 0"));
    EXPECT_THAT(changed("\"ticksPerSecond\": 1000", "\"ticksPerSecond\": 1e999"),
                HasSubstr("number that is too large"));
    EXPECT_THAT(changed("1280", "0"), HasSubstr("region.width: 0 is not between 1"));
    EXPECT_THAT(changed("400", "-4"), HasSubstr("target.height: -4 is not between 1"));
    EXPECT_THAT(changed("500", "-1"), HasSubstr("fadeTicks: -1 is not between 0"));
    EXPECT_THAT(changed("60000", "-60000"), HasSubstr("clip: stops before it starts"));
}

TEST(PathFileTest, ByteOrderMarkAndUnknownFields_ArePassedOver) {
    EXPECT_EQ(refusal("\xEF\xBB\xBF" + kHead + R"(, "keyframes": [], "note": {"mine": 1}})"), "read without complaint");
}

} // namespace
} // namespace OrvantaNS::command
