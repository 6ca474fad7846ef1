#include "writing/Info.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simdjson.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::kHeader;
using testing::readText;

const std::string kRegion = "[0,\"region\",0,0,100,50]\n";

std::vector<std::string> oddities(const std::string& events) { return findOddities(readText(kHeader + events)); }

TEST(InfoTest, CleanRecording_HasNoOddities) {
    EXPECT_THAT(oddities(kRegion + "[0,\"window\",0,0,0,0]\n[0,\"dirty\",0,0,1,1]\n[0,\"caret\",0,0,1,1]\n"
                                   "[0,\"cursor\",0,0]\n[0,\"action\",0]\n[1,\"cursor\",99,49]\n[1,\"action\",1]\n"
                                   "[2,\"action\",6]\n[2,\"action\",7]\n"),
                IsEmpty());
}

TEST(InfoTest, Regions_MissingLateAndEmpty) {
    EXPECT_THAT(oddities("[0,\"action\",6]\n"),
                ElementsAre("there is no recording region, and no engine works without one"));
    EXPECT_THAT(oddities("[1500,\"region\",0,0,5,5]\n"),
                ElementsAre("the first recording region comes only at 0:01.500"));
    EXPECT_THAT(oddities("[0,\"region\",5,0,5,5]\n"), ElementsAre("1 recording region is empty or inverted"));
}

TEST(InfoTest, Rectangles_EmptyAndInverted) {
    EXPECT_THAT(oddities(kRegion + "[0,\"window\",5,5,4,9]\n[0,\"window\",5,5,5,5]\n[0,\"dirty\",1,1,1,2]\n"
                                   "[0,\"caret\",1,2,2,2]\n[0,\"caret\",2,2,1,3]\n"),
                ElementsAre("2 windows are empty or inverted without being all zero",
                            "1 dirty rectangle is empty or inverted", "2 carets are empty or inverted"));
}

TEST(InfoTest, CursorOutside_IsMeasuredAgainstTheRegionOfItsTime) {
    EXPECT_THAT(oddities(kRegion + "[1,\"cursor\",100,0]\n[1,\"cursor\",0,50]\n[1,\"cursor\",-1,0]\n"
                                   "[2,\"region\",100,0,200,50]\n[2,\"cursor\",100,0]\n[3,\"cursor\",99,0]\n"),
                ElementsAre("4 cursor positions lie outside the recorded region"));
}

TEST(InfoTest, Actions_UnknownCodesAndUnmatchedButtons) {
    EXPECT_THAT(oddities(kRegion + "[1,\"action\",8]\n[1,\"action\",-1]\n[1,\"action\",8]\n"),
                ElementsAre("3 actions have a code outside 0 to 7, which the engines pass over (-1, 8)"));
    // Left pressed twice and released once; right released alone; middle still held at the end.
    EXPECT_THAT(oddities(kRegion + "[1,\"action\",0]\n[2,\"action\",0]\n[3,\"action\",1]\n[4,\"action\",3]\n"
                                   "[5,\"action\",4]\n"),
                ElementsAre("2 button presses have no release", "1 button release has no press"));
}

TEST(InfoTest, TimesAndOrder) {
    EXPECT_THAT(oddities("[-5,\"region\",0,0,100,50]\n[-5,\"cursor\",1,1]\n[0,\"action\",6]\n[0,\"cursor\",1,1]\n"),
                ElementsAre("2 events lie before the time 0",
                            "1 line stands behind a line of a later stream with the same time"));
}

TEST(InfoTest, Text_NamesLengthRegionsAndEventsPerStream) {
    const std::string text = infoText(readText(kHeader + kRegion + "[61500,\"cursor\",1,1]\n[61500,\"action\",9]\n"));
    EXPECT_EQ(text, "file         f\n"
                    "form         recording\n"
                    "description  d\n"
                    "length       1:01.500  (from 0:00.000 to 1:01.500)\n"
                    "clock        1000 ticks a second\n"
                    "menus        reported as windows\n"
                    "regions      1\n"
                    "  from 0:00.000  100x50 at 0, 0\n"
                    "events       3\n"
                    "  region     1\n"
                    "  window     0\n"
                    "  dirty      0\n"
                    "  caret      0\n"
                    "  cursor     1\n"
                    "  action     1\n"
                    "missing      these streams:\n"
                    "  no window: no shot is framed by a window, and what opens is not seen\n"
                    "  no dirty rectangle: what clicks and hovers changed is not seen\n"
                    "odd          these things:\n"
                    "  1 action has a code outside 0 to 7, which the engines pass over (9)\n");
}

TEST(InfoTest, Text_CapturedRequest_HasATarget) {
    const std::string text = infoText(readText("640 400 100\n0\n1\n6 250\n0\n0\n0\n1\n0 100 0 50 50\n"));
    EXPECT_THAT(text, HasSubstr("form         captured request\n"));
    EXPECT_THAT(text, HasSubstr("target       640x400\n"));
    EXPECT_THAT(text, HasSubstr("length       0:02.000  (from 0:00.500 to 0:02.500)\n"));
    EXPECT_THAT(text, HasSubstr("odd          nothing\n"));
}

TEST(InfoTest, Text_ExtremeNumbers_ArePrinted) {
    const std::string text =
        infoText(readText(kHeader + "[-9223372036854775808,\"region\",2147483647,0,-2147483648,1]\n"
                                    "[9223372036854775807,\"cursor\",-2147483648,2147483647]\n"));
    EXPECT_THAT(text, HasSubstr("from 0:00.000 to 9223372036854776 s"));
}

TEST(InfoTest, MissingStreams_OfEachKind_AndCaretsAreNotMissed) {
    EXPECT_THAT(findMissingStreams(readText(kHeader + kRegion)),
                ElementsAre(::testing::StartsWith("no window: "), ::testing::StartsWith("no dirty rectangle: "),
                            ::testing::StartsWith("no cursor: "), ::testing::StartsWith("no action: ")));
    EXPECT_THAT(findMissingStreams(readText(kHeader + kRegion +
                                            "[0,\"window\",0,0,0,0]\n[0,\"dirty\",0,0,1,1]\n"
                                            "[0,\"cursor\",0,0]\n[0,\"action\",0]\n")),
                IsEmpty());
}

TEST(InfoTest, LengthAndCut_AreOdd) {
    EXPECT_THAT(oddities(kRegion + "[604800001,\"cursor\",1,1]\n[604800001,\"act"),
                ElementsAre("the recording is 7.0 days long by its clock of 1000 ticks a second; is the time scale "
                            "right?",
                            "the file is cut off at its end"));
}

TEST(InfoTest, Json_SaysTheSameAsTheText) {
    const std::string text = infoJson(readText(kHeader + kRegion + "[61500,\"cursor\",1,1]\n[61500,\"action\",9]\n"));
    simdjson::dom::parser parser;
    const simdjson::dom::element json = parser.parse(text);
    EXPECT_EQ(json["recording"].get_string().value(), "f");
    EXPECT_EQ(json["form"].get_string().value(), "recording");
    EXPECT_TRUE(json["compression"].is_null());
    EXPECT_EQ(json["description"].get_string().value(), "d");
    EXPECT_EQ(json["start"].get_double().value(), 0.0);
    EXPECT_EQ(json["stop"].get_double().value(), 61.5);
    EXPECT_EQ(json["stopTick"].get_int64().value(), 61500);
    EXPECT_EQ(json["events"].get_int64().value(), 3);
    EXPECT_EQ(json["streams"]["region"].get_int64().value(), 1);
    EXPECT_EQ(json["streams"]["window"].get_int64().value(), 0);
    EXPECT_EQ(json["regions"].at(0)["rect"]["right"].get_int64().value(), 100);
    EXPECT_EQ(json["missing"].get_array().size(), 2U);
    EXPECT_EQ(json["odd"].get_array().size(), 1U);
    EXPECT_TRUE(json["videoOffset"].is_null());
}

} // namespace
} // namespace OrvantaNS::command
