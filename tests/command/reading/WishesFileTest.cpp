#include "reading/WishesFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "reading/InputError.h"
#include "reading/JsonFields.h"

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;

/// A minute at 1000 ticks a second, from 5 s on.
CameraSetup setup() {
    CameraSetup setup;
    setup.region = {0, 1280, 0, 800};
    setup.targetWidth = 640;
    setup.targetHeight = 400;
    setup.timeScale = 1000;
    setup.clipStart = 5000;
    setup.clipStop = 65000;
    return setup;
}

CameraWishes readText(const std::string& text) { return wishesOf(readJson(sourceOf(text), "f"), "f", setup()); }

std::string refusal(const std::string& fields) {
    try {
        readText(R"({"format": "orvanta-wishes", "version": 1, )" + fields + "}");
    } catch (const InputError& error) {
        return error.what();
    }
    return "read without complaint";
}

TEST(WishesFileTest, NothingButWhiteSpace_IsNoWish) {
    EXPECT_TRUE(readText("").empty());
    EXPECT_TRUE(readText(" \n").empty());
    EXPECT_TRUE(readText(R"({"format": "orvanta-wishes", "version": 1})").empty());
}

TEST(WishesFileTest, EveryField_IsRead) {
    const CameraWishes wishes = readText(R"({"format": "orvanta-wishes", "version": 1,
        "pins": [{"from": 12.5, "to": 20, "left": -5, "top": 50, "width": 640, "height": 400}, {"left": 0, "top": 0, "width": 1, "height": 2}],
        "whole": [{"from": 30, "to": 34.0004}], "keepOut": [{"to": 6}, {"from": 60}],
        "leastZoom": 0.4, "greatestZoom": 1, "leastRest": 4})");
    ASSERT_EQ(wishes.pins.size(), 2U);
    EXPECT_EQ(wishes.pins[0], (CameraPin{{12500, 20000}, {-5, 635, 50, 450}}));
    EXPECT_EQ(wishes.pins[1], (CameraPin{{5000, 65000}, {0, 1, 0, 2}}));
    ASSERT_EQ(wishes.whole.size(), 1U);
    EXPECT_EQ(wishes.whole[0].start, 30000);
    EXPECT_EQ(wishes.whole[0].stop, 34000);
    ASSERT_EQ(wishes.keepOut.size(), 2U);
    EXPECT_EQ(wishes.keepOut[0].start, 5000);
    EXPECT_EQ(wishes.keepOut[1].stop, 65000);
    EXPECT_EQ(wishes.leastZoom, 0.4);
    EXPECT_EQ(wishes.greatestZoom, 1.0);
    EXPECT_EQ(wishes.leastRest, 4000);
}

TEST(WishesFileTest, Faults_AreToldWithTheirPlace) {
    EXPECT_THAT(refusal(R"("pin": [])"), HasSubstr("f: has no field \"pin\"; there are format, version, pins"));
    EXPECT_THAT(refusal(R"("whole": [{"from": 1, "too": 2}])"), HasSubstr("f: whole[0]: has no field \"too\""));
    EXPECT_EQ(refusal(R"("whole": [{"from": 2, "to": 2}])"), "f: whole[0]: must end after it begins");
    EXPECT_EQ(refusal(R"("keepOut": [{"from": 66}])"), "f: keepOut[0]: must end after it begins");
    EXPECT_EQ(refusal(R"("pins": [{"left": 0, "top": 0, "width": 0, "height": 1}])"),
              "f: pins[0].width: 0 is not between 1 and 2147483647");
    EXPECT_EQ(refusal(R"("pins": [{"left": 0, "top": 0, "width": 1}])"), "f: pins[0]: the field \"height\" is missing");
    EXPECT_EQ(refusal(R"("leastZoom": 0)"), "f: leastZoom: must be above 0");
    EXPECT_EQ(refusal(R"("leastZoom": 1, "greatestZoom": 0.5)"), "f: leastZoom: must not be above greatestZoom");
    EXPECT_EQ(refusal(R"("leastRest": -1)"), "f: leastRest: must be 0 or more");
    EXPECT_EQ(refusal(R"("leastRest": "4")"), "f: leastRest: expected a number, found text");
    EXPECT_THAT(refusal(R"("whole": [{"from": 1e300}])"), HasSubstr("f: whole[0].from: the time lies beyond"));
}

TEST(WishesFileTest, OtherDocuments_AreRefused) {
    EXPECT_THROW(readText("{}"), InputError);
    EXPECT_THROW(readText(R"({"format": "orvanta-path", "version": 1})"), InputError);
    EXPECT_THROW(readText(R"({"format": "orvanta-wishes", "version": 3})"), InputError);
    EXPECT_THROW(readText("[]"), InputError);
}

} // namespace
} // namespace OrvantaNS::command
