#include "asking/Planning.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "asking/OptionError.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;

CameraSetup setup() {
    CameraSetup setup;
    setup.region = {0, 1280, 0, 800};
    setup.targetWidth = 640;
    setup.targetHeight = 400;
    setup.timeScale = 1000;
    setup.fadeDuration = 1000;
    setup.clipStart = 5000;
    setup.clipStop = 65000;
    return setup;
}

template <typename Call> std::string refusal(Call call) {
    try {
        call();
    } catch (const OptionError& error) {
        return error.what();
    }
    return "no OptionError";
}

TEST(PlanningTest, Easing_ByNameOrFourNumbers) {
    EXPECT_EQ(parseEasing("ease-out"), CameraEasing::easeOut());
    EXPECT_EQ(parseEasing("0.25,-0.5,1,1.5"), CameraEasing(0.25, -0.5, 1, 1.5));
    for (const char* const wrong :
         {"", "fast", "1,2,3", "0,0,1,1,1", "0,0,1,", "0,0,,1", "0;0;1;1", "nan,0,1,1", "--1,0,1,1"}) {
        EXPECT_THAT(refusal([&] { parseEasing(wrong); }), HasSubstr("four numbers")) << wrong;
    }
    EXPECT_THAT(refusal([] { parseEasing("2,0,1,1"); }), HasSubstr("must lie in 0 to 1"));
}

TEST(PlanningTest, Pin_StretchAndRectangle) {
    EXPECT_EQ(parsePin("10:20@640x400+100+50", setup()), (CameraPin{{10000, 20000}, {100, 740, 50, 450}}));
    EXPECT_EQ(parsePin("0:10:0:20@640x400-100+0", setup()), (CameraPin{{10000, 20000}, {-100, 540, 0, 400}}));
    EXPECT_EQ(parsePin(":@1x1+0+0", setup()), (CameraPin{{5000, 65000}, {0, 1, 0, 1}}));
    for (const char* const wrong :
         {"10:20", "10:20@640x400", "10:20@640x400+1", "10:20@0x400+1+1", "10:20@640x400+1+1x", "10:20@640*400+1+1",
          "10:20@2147483647x1+1+0", "10:20@99999999999x1+1+0", "@640x400+1+1"}) {
        EXPECT_NE(refusal([&] { parsePin(wrong, setup()); }), "no OptionError") << wrong;
    }
    EXPECT_THAT(refusal([] { parsePin("20:10@640x400+1+1", setup()); }), HasSubstr("must end after it begins"));
}

TEST(PlanningTest, Stretch_NamesItsOption) {
    EXPECT_EQ(parseStretch("1.5:", "--whole", setup()).start, 1500);
    EXPECT_EQ(parseStretch("1.5:", "--whole", setup()).stop, 65000);
    EXPECT_THAT(refusal([] { parseStretch("x", "--whole", setup()); }), HasSubstr("--whole x: "));
    EXPECT_THAT(refusal([] { parseStretch("70:", "--keep-out", setup()); }), HasSubstr("--keep-out 70:: must end"));
}

TEST(PlanningTest, Wishes_GiveTheirReasons) {
    CameraPlan plan;
    plan.setup = setup();
    plan.keyframes = {{{10000, {0, 640, 0, 400}}, "tight"}};
    CameraWishes wishes;
    wishes.pins = {{{20000, 30000}, {100, 740, 0, 400}}};
    wishes.whole = {{6000, 7000}};
    layWishes(plan, wishes);
    const std::vector<PlannedKeyframe> expected{{{6000, {0, 1280, 0, 800}}, "whole"},
                                                {{10000, {0, 640, 0, 400}}, "tight"},
                                                {{20000, {100, 740, 0, 400}}, "pinned"},
                                                {{30000, {0, 640, 0, 400}}, "tight"}};
    EXPECT_EQ(plan.keyframes, expected);
    wishes.leastZoom = -1;
    EXPECT_THAT(refusal([&] { layWishes(plan, wishes); }), HasSubstr("least zoom"));
}

TEST(PlanningTest, Plan_OfAnAnswer_KnowsWhereItCameFrom) {
    Recording recording;
    recording.name = "r.jsonl";
    recording.videoOffset = 12;
    recording.params.recordingRegions().push_back({0, {10, 1290, 20, 820}});
    recording.params.setTargetWidth(640).setTargetHeight(400).setTimeScale(1000).setFadeDuration(700).setClipInterval(
        1, 2);
    const CameraPlan plan =
        planOf(recording, EngineChoice::Value, {{{5, {0, 10, 0, 10}}, OV_MERGE_WIDE, 0U}}, CameraEasing::linear());
    EXPECT_EQ(plan.recording, "r.jsonl");
    EXPECT_EQ(plan.engine, "value");
    EXPECT_EQ(plan.videoOffset, 12);
    EXPECT_EQ(plan.setup.fadeDuration, 700);
    EXPECT_EQ(plan.setup.easing, CameraEasing::linear());
    ASSERT_EQ(plan.keyframes.size(), 1U);
    EXPECT_EQ(plan.keyframes[0].reason, "wide");
}

} // namespace
} // namespace OrvantaNS::command
