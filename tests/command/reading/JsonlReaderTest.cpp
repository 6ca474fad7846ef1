#include "reading/JsonlReader.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::ElementsAre;
using testing::kHeader;
using testing::readingError;
using testing::readingFailure;
using testing::readText;

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST(JsonlReaderTest, EveryStream_FillsItsListInTheRecordsOrderOfEdges) {
    const Recording recording = readText(kHeader + R"([0,"region",1,2,3,4])"
                                                   "\n"
                                                   R"([10,"window",5,6,7,8])"
                                                   "\n"
                                                   R"([20,"dirty",9,10,11,12])"
                                                   "\n"
                                                   R"([30,"caret",13,14,15,16])"
                                                   "\n"
                                                   R"([40,"cursor",-17,18])"
                                                   "\n"
                                                   R"([50,"action",6])"
                                                   "\n");
    const Params& params = recording.params;
    // The file has left, top, right, bottom; the record left, right, top, bottom.
    ASSERT_EQ(params.recordingRegions().size(), 1U);
    EXPECT_EQ(params.recordingRegions()[0].rect, (Rectangle{1, 3, 2, 4}));
    EXPECT_EQ(params.recordingRegions()[0].time, 0);
    ASSERT_EQ(params.foreWindows().size(), 1U);
    EXPECT_EQ(params.foreWindows()[0].rect, (Rectangle{5, 7, 6, 8}));
    EXPECT_EQ(params.foreWindows()[0].time, 10);
    ASSERT_EQ(params.dirtyRects().size(), 1U);
    EXPECT_EQ(params.dirtyRects()[0].rect, (Rectangle{9, 11, 10, 12}));
    EXPECT_EQ(params.dirtyRects()[0].time, 20);
    ASSERT_EQ(params.caretRects().size(), 1U);
    EXPECT_EQ(params.caretRects()[0].rect, (Rectangle{13, 15, 14, 16}));
    EXPECT_EQ(params.caretRects()[0].time, 30);
    ASSERT_EQ(params.cursorLocations().size(), 1U);
    EXPECT_EQ(params.cursorLocations()[0].x, -17);
    EXPECT_EQ(params.cursorLocations()[0].y, 18);
    EXPECT_EQ(params.cursorLocations()[0].time, 40);
    ASSERT_EQ(params.cursorActions().size(), 1U);
    EXPECT_EQ(params.cursorActions()[0].action, 6);
    EXPECT_EQ(params.cursorActions()[0].time, 50);

    EXPECT_EQ(recording.form, RecordingForm::JsonLines);
    EXPECT_EQ(recording.start, 0);
    EXPECT_EQ(recording.stop, 50);
    EXPECT_EQ(recording.events, 6);
    EXPECT_TRUE(recording.warnings().empty());
}

TEST(JsonlReaderTest, Header_EveryField_IsKept) {
    const Recording recording = readText(
        R"({"description":"what happens","windowsFlag":true,"timeScale":0.5,"videoOffset":-7,"version":1,"format":"orvanta-recording"})"
        "\n[3,\"action\",0]");
    EXPECT_EQ(recording.description, "what happens");
    EXPECT_TRUE(recording.params.isWindows());
    EXPECT_EQ(recording.params.timeScale(), 0.5);
    EXPECT_EQ(recording.videoOffset, -7);
    EXPECT_EQ(recording.stopSeconds(), 6.0);
}

TEST(JsonlReaderTest, Times_EqualOnes_AreInOrder) {
    const Recording recording = readText(kHeader + "[5,\"action\",0]\n[5,\"action\",1]\n");
    EXPECT_EQ(recording.events, 2);
    EXPECT_EQ(recording.streamOrderBreaks, 0);
}

TEST(JsonlReaderTest, StreamOrder_OneTime_CountsLinesBehindALaterStream) {
    // At 5 the window stands behind an action; at 6 everything is in order; at 7 two lines stand behind the action.
    const Recording recording = readText(kHeader + "[5,\"action\",0]\n[5,\"window\",0,0,1,1]\n"
                                                   "[6,\"dirty\",0,0,1,1]\n[6,\"cursor\",0,0]\n"
                                                   "[7,\"action\",0]\n[7,\"cursor\",0,0]\n[7,\"cursor\",0,0]\n");
    EXPECT_EQ(recording.streamOrderBreaks, 3);
}

TEST(JsonlReaderTest, Numbers_AtTheEndsOfTheirTypes_AreRead) {
    const Recording recording = readText(kHeader + "[-9223372036854775808,\"cursor\",-2147483648,2147483647]\n"
                                                   "[9223372036854775807,\"action\",-2147483648]\r\n");
    EXPECT_EQ(recording.params.cursorLocations()[0].time, std::numeric_limits<long long>::lowest());
    EXPECT_EQ(recording.params.cursorLocations()[0].x, std::numeric_limits<std::int32_t>::lowest());
    EXPECT_EQ(recording.params.cursorLocations()[0].y, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(recording.params.cursorActions()[0].time, std::numeric_limits<long long>::max());
}

TEST(JsonlReaderTest, UnknownFieldsAndStreams_ArePassedOverCountedAndNamed) {
    const Recording recording =
        readText(replaced(kHeader, "{", R"({"colour": [1, {"a": 2}], "depth": null, )") +
                 "[0,\"touch\",1.5,{\"x\":[]}]\n[1,\"keys\"]\n[2,\"touch\",null]\n[3,\"cursor\",1,2]\n[4,\"touch\"]\n");
    EXPECT_THAT(recording.warnings(),
                ElementsAre("f: passed over 2 unknown header fields (colour, depth) and 4 lines of "
                            "unknown streams (touch: 3, keys: 1)"));
    EXPECT_EQ(recording.params.cursorLocations().size(), 1U);
    // The recording ends with its last line, whatever that is.
    EXPECT_EQ(recording.stop, 4);
    EXPECT_EQ(recording.events, 5);
}

TEST(JsonlReaderTest, Warning_OneThing_IsSingular) {
    EXPECT_THAT(readText(replaced(kHeader, "{", R"({"x": 0, )") + "[0,\"action\",0]").warnings(),
                ElementsAre("f: passed over 1 unknown header field (x)"));
    EXPECT_THAT(readText(kHeader + "[0,\"y\"]").warnings(),
                ElementsAre("f: passed over 1 line of unknown streams (y: 1)"));
}

TEST(JsonlReaderTest, Warning_ManyAndHostileNames_StaysShortAndPrintable) {
    std::string text = kHeader + "[0,\"\\u001b[31m" + std::string(100, 'x') + "\"]\n";
    for (int i = 0; i < 40; ++i) {
        text += "[0,\"stream" + std::to_string(i) + "\"]\n";
    }
    const std::string warning = readText(text).warnings().front();
    EXPECT_NE(warning.find("\\x1b[31mxxx"), std::string::npos);
    EXPECT_NE(warning.find("xxx...: 1, stream0: 1"), std::string::npos);
    // 16 names are kept: the first and streams 0 to 14. The other 25 are counted together.
    EXPECT_NE(warning.find("stream14: 1, others: 25)"), std::string::npos);
    EXPECT_EQ(warning.find('\x1b'), std::string::npos);
}

TEST(JsonlReaderTest, BadHeader_IsNamedWithItsReason) {
    const struct {
        std::string from;
        std::string to;
        std::string message;
    } cases[] = {
        {"orvanta-recording", "other", R"(f:1: the format is "other", not "orvanta-recording")"},
        {R"("version": 1)", R"("version": 2)", "f:1: the format's version is 2; only version 1 can be read"},
        {R"("version": 1)", R"("version": 0)", "f:1: the format's version is 0; only version 1 can be read"},
        {R"("version": 1)", R"("version": 1.0)", R"(f:1: header field "version" must be a whole number)"},
        {R"("version": 1)", R"("version": "1")", R"(f:1: header field "version" must be a whole number)"},
        {R"("format": "orvanta-recording", )", "", R"(f:1: header field "format" is missing)"},
        {R"("version": 1, )", "", R"(f:1: header field "version" is missing)"},
        {R"("timeScale": 1000, )", "", R"(f:1: header field "timeScale" is missing)"},
        {R"("orvanta-recording")", "7", R"(f:1: header field "format" must be a string)"},
        {"1000", "\"1000\"", R"(f:1: header field "timeScale" must be a number)"},
        {"1000", "0", R"(f:1: header field "timeScale" is out of range: it must be above 0)"},
        {"1000", "-1", R"(f:1: header field "timeScale" is out of range: it must be above 0)"},
        {"1000", "1e400", "f:1: not JSON: a number is malformed, or too large for 64 bits"},
        {"1000", "NaN", "f:1: not JSON"},
        {"false", "0", R"(f:1: header field "windowsFlag" must be true or false)"},
        {"\"d\"", "[]", R"(f:1: header field "description" must be a string)"},
        {"{", R"({"videoOffset": 0.5, )", R"(f:1: header field "videoOffset" must be a whole number)"},
        {"{", R"({"videoOffset": 18446744073709551615, )",
         R"(f:1: header field "videoOffset" is out of range: it must fit 64 bits)"},
        {"{", R"({"version": 1, )", R"(f:1: header field "version" stands twice)"},
        {"}", "", "f:1: not JSON"},
        {"}", "} x", "f:1: not JSON"},
    };
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(readingError(replaced(kHeader, from, to) + "[0,\"action\",0]\n"), message) << to;
    }
    EXPECT_EQ(readingError("7\n"), "f:1: the header must be a JSON object");
    EXPECT_EQ(readingError("hello\n"), "f:1: not JSON");
}

TEST(JsonlReaderTest, BadEvent_IsNamedWithItsLineAndReason) {
    const struct {
        std::string line;
        std::string message;
    } cases[] = {
        {R"({"t":0})", "f:3: an event must be a JSON array"},
        {"7", "f:3: an event must be a JSON array"},
        {"[6,\"cursor\",1", "f:3: not JSON"},
        {"[6,\"cursor\",1,2] [", "f:3: not JSON"},
        {"[6,\"cur\xff\",1,2]", "f:3: not JSON: the text is not UTF-8"},
        {"[]", "f:3: the time is missing"},
        {"[\"6\",\"cursor\",1,2]", "f:3: the time must be a whole number"},
        {"[6.0,\"cursor\",1,2]", "f:3: the time must be a whole number"},
        {"[9223372036854775808,\"cursor\",1,2]", "f:3: the time is out of range: it must fit 64 bits"},
        {"[99999999999999999999,\"cursor\",1,2]", "f:3: not JSON: a number is malformed, or too large for 64 bits"},
        {"[6]", "f:3: the stream's name is missing"},
        {"[6,5]", "f:3: the stream's name must be a string"},
        {"[4,\"cursor\",1,2]", "f:3: the time 4 lies before 5, the time of the line before"},
        {"[4,\"touch\"]", "f:3: the time 4 lies before 5, the time of the line before"},
        {"[6,\"cursor\",1]", "f:3: y is missing"},
        {"[6,\"cursor\",1,2,3]", "f:3: too many fields for stream \"cursor\""},
        {"[6,\"cursor\",2147483648,2]", "f:3: x is out of range: it must fit 32 bits"},
        {"[6,\"cursor\",1,-2147483649]", "f:3: y is out of range: it must fit 32 bits"},
        {"[6,\"cursor\",1,18446744073709551615]", "f:3: y is out of range: it must fit 32 bits"},
        {"[6,\"cursor\",1,2.5]", "f:3: y must be a whole number"},
        {"[6,\"cursor\",1,null]", "f:3: y must be a whole number"},
        {"[6,\"cursor\",true,2]", "f:3: x must be a whole number"},
        {"[6,\"region\"]", "f:3: left is missing"},
        {"[6,\"window\",1]", "f:3: top is missing"},
        {"[6,\"dirty\",1,2]", "f:3: right is missing"},
        {"[6,\"caret\",1,2,3]", "f:3: bottom is missing"},
        {"[6,\"dirty\",1,2,3,4,5]", "f:3: too many fields for stream \"dirty\""},
        {"[6,\"action\"]", "f:3: the action code is missing"},
        {"[6,\"action\",4294967296]", "f:3: the action code is out of range: it must fit 32 bits"},
        {"[6,\"action\",0,0]", "f:3: too many fields for stream \"action\""},
    };
    for (const auto& [line, message] : cases) {
        EXPECT_EQ(readingError(kHeader + "[5,\"action\",0]\n" + line + "\n[7,\"action\",1]\n"), message) << line;
    }
    EXPECT_EQ(readingError(kHeader + "[5,\"touch\"]\n[4,\"action\",0]\n"),
              "f:3: the time 4 lies before 5, the time of the line before");
}

TEST(JsonlReaderTest, Failure_TellsTheColumnAndShowsTheTextAroundIt) {
    const struct {
        std::string line;
        long long column;
    } cases[] = {
        {R"([6,"cursor",1,"2"])", 15},           // The value at fault.
        {R"([6,"cursor",1])", 14},               // The bracket where one more is wanted.
        {R"([6,"cursor",1,2,3])", 17},           // The first field too many.
        {R"([6, "cursor", 2147483648, 2])", 15}, // With spaces.
        {R"([4,"cursor",1,2])", 2},              // The time.
        {R"([])", 2},                            // The time that is missing.
        {R"([6,5])", 4},                         // The stream's name.
        {R"({"t":0})", 1},                       // The whole line.
        {R"([6,"cursor",1,2] x)", 18},           // What stands behind.
        {R"([6,"cur,[sor",1,2,x])", 19},         // Commas and brackets in strings do not count.
        {R"([6,"a\"b,",99999999999999999999])", 12},
        {"[6,\"\xc3\xbc\xc3\xbc\",x]", 9}, // Columns are characters, not bytes.
    };
    for (const auto& [line, column] : cases) {
        const testing::ReadingFailure failure =
            readingFailure(kHeader + "[5,\"action\",0]\n" + line + "\n[7,\"action\",1]\n");
        EXPECT_EQ(failure.place.line, 3) << line;
        EXPECT_EQ(failure.place.column, column) << line;
        EXPECT_EQ(failure.place.excerpt, line);
        EXPECT_EQ(failure.place.caret, static_cast<std::size_t>(column - 1)) << line;
        EXPECT_TRUE(failure.message.starts_with("f:3:" + std::to_string(column) + ": ")) << failure.message;
    }
    // In the header the value of the field, of the second one where it stands twice.
    EXPECT_EQ(readingFailure(R"({"version": 2})").place.column, 13);
    EXPECT_EQ(readingFailure(R"({"a": {"version": 1}, "version": 2})").place.column, 34);
    EXPECT_EQ(readingFailure(R"({"version": 1, "version": 1})").place.column, 27);
}

TEST(JsonlReaderTest, WhatMayBeLeftOut_IsLeftOut) {
    const std::string header = R"({"format": "orvanta-recording", "version": 1, "timeScale": 1000})"
                               "\n";
    for (const Reading reading : {Reading::Tolerant, Reading::Strict}) {
        const Recording recording = readText(header + "[5,\"action\",0]\n", reading);
        EXPECT_EQ(recording.description, "");
        EXPECT_FALSE(recording.params.isWindows());
        EXPECT_FALSE(recording.videoOffset.has_value());
    }
}

TEST(JsonlReaderTest, CutLastLine_IsLeftOutWithAWarning_AndRefusedStrictly) {
    for (const std::string cut : {"[", "[6", "[6,\"cur", "[6,\"cursor\",1,", "[6,\"cursor\",1,2", "[6,\"\xc3"}) {
        const std::string text = kHeader + "[5,\"action\",0]\n" + cut;
        const Recording recording = readText(text);
        EXPECT_EQ(recording.events, 1) << cut;
        EXPECT_EQ(recording.stop, 5);
        EXPECT_EQ(recording.cutLine, 3);
        EXPECT_THAT(recording.warnings(),
                    ElementsAre("f:3: the last line is cut off and was left out; the recording ends at 0:00.005"));
        EXPECT_THAT(readingError(text, Reading::Strict), ::testing::StartsWith("f:3: not JSON"));
        // With a line end nobody was stopped within the line.
        EXPECT_THAT(readingError(text + "\n"), ::testing::StartsWith("f:3: not JSON"));
    }
    // A last line that is whole but for its line end is an ordinary line.
    EXPECT_EQ(readText(kHeader + "[5,\"action\",0]\n[6,\"action\",1]", Reading::Strict).events, 2);
    // Nothing is left when the first event is cut.
    EXPECT_EQ(readingError(kHeader + "[5,\"act"), "f:2: not JSON");
}

TEST(JsonlReaderTest, BlankLines_ArePassedOver_AndRefusedStrictly) {
    const std::string text = "\n \t\n" + kHeader + "\n[5,\"action\",0]\n\r\n[6,\"action\",1]\n\n";
    EXPECT_EQ(readText(text).events, 2);
    EXPECT_TRUE(readText(text).warnings().empty());
    EXPECT_EQ(readingError(text, Reading::Strict), "f:1: the line is empty");
    EXPECT_EQ(readingError(kHeader + "\n[5,\"action\",0]\n", Reading::Strict), "f:2: the line is empty");
    EXPECT_EQ(readingError("\n\n"), "f:1: the file is empty");
}

TEST(JsonlReaderTest, CarriageReturns_ArePassedOver_AndRefusedStrictly) {
    const std::string head = kHeader.substr(0, kHeader.size() - 1);
    const std::string text = head + "\r\n[5,\"action\",0]\r\n";
    EXPECT_EQ(readText(text).events, 1);
    EXPECT_EQ(readingError(text, Reading::Strict), "f:1: the line ends with CR LF; strict reading wants LF alone");
    EXPECT_EQ(readingError(kHeader + "[5,\"action\",0]\r\n", Reading::Strict),
              "f:2: the line ends with CR LF; strict reading wants LF alone");
}

TEST(JsonlReaderTest, ByteOrderMark_IsPassedOver_AndRefusedStrictly) {
    const std::string text = "\xef\xbb\xbf" + kHeader + "[5,\"action\",0]\n";
    EXPECT_EQ(readText(text).events, 1);
    EXPECT_EQ(readText("\xef\xbb\xbf"
                       "640 400 100\n0\n1\n6 250\n0\n0\n0\n0\n")
                  .form,
              RecordingForm::Dump);
    EXPECT_EQ(readingError(text, Reading::Strict),
              "f:1: the file begins with a byte order mark; strict reading wants none");
    // Only at the start.
    EXPECT_EQ(readingError(kHeader + "\xef\xbb\xbf[5,\"action\",0]\n[6,\"action\",0]\n"), "f:2: not JSON");
}

TEST(JsonlReaderTest, ActionCode_OutsideTheKnownOnes_IsData) {
    EXPECT_EQ(readText(kHeader + "[0,\"action\",8]\n").params.cursorActions()[0].action, 8);
}

TEST(JsonlReaderTest, NothingToWorkOn_IsNamed) {
    EXPECT_EQ(readingError(""), "f:1: the file is empty");
    EXPECT_EQ(readingError("\n"), "f:1: the file is empty");
    EXPECT_EQ(readingError(kHeader), "f:1: the recording ends with its header: there is no event");
    EXPECT_EQ(readingError(kHeader + "[-1,\"action\",0]\n"), "f:2: the recording ends before its time 0");
}

TEST(JsonlReaderTest, DeepNesting_IsRefusedNotFollowed) {
    EXPECT_EQ(readingError(kHeader + "[0,\"x\"," + std::string(5000, '[') + std::string(5000, ']') + "]\n"),
              "f:2: not JSON that can be read: too many levels");
}

} // namespace
} // namespace OrvantaNS::command
