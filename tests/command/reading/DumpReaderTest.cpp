#include "reading/DumpReader.h"

#include <string>

#include <gtest/gtest.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using testing::readingError;
using testing::readText;

/// One sample of each stream, times 10 to 60.
const std::string kDump = "640 400 1000\n"
                          "1\n1 2 3 4 20\n"
                          "1\n7 60\n"
                          "1\n50 -5 6\n"
                          "1\n5 6 7 8 30\n"
                          "1\n9 10 11 12 40\n"
                          "1\n0 1280 0 800 10\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST(DumpReaderTest, IsDumpHead_ThreeNumbers_AndNothingElse) {
    for (const char* line : {"640 400 1000", "640 400 1e+06", "0 0 0", "-1 2147483648 nan", "640 400 100.5\r"}) {
        EXPECT_TRUE(isDumpHead(line)) << line;
    }
    for (const char* line :
         {"", "640 400", "640 400 1000 1", "640 400 x", "{\"format\": 1, 2}", "640x400 1 2", "0x10 1 2"}) {
        EXPECT_FALSE(isDumpHead(line)) << line;
    }
}

TEST(DumpReaderTest, EveryStream_FillsItsList) {
    const Recording recording = readText(kDump);
    const Params& params = recording.params;
    EXPECT_EQ(recording.form, RecordingForm::Dump);
    EXPECT_EQ(params.targetWidth(), 640);
    EXPECT_EQ(params.targetHeight(), 400);
    EXPECT_EQ(params.timeScale(), 1000.0);
    EXPECT_FALSE(params.isWindows());
    // Rectangles stand as left, right, top, bottom, then the time.
    ASSERT_EQ(params.foreWindows().size(), 1U);
    EXPECT_EQ(params.foreWindows()[0].rect, (Rectangle{1, 2, 3, 4}));
    EXPECT_EQ(params.foreWindows()[0].time, 20);
    ASSERT_EQ(params.cursorActions().size(), 1U);
    EXPECT_EQ(params.cursorActions()[0].action, 7);
    EXPECT_EQ(params.cursorActions()[0].time, 60);
    ASSERT_EQ(params.cursorLocations().size(), 1U);
    EXPECT_EQ(params.cursorLocations()[0].time, 50);
    EXPECT_EQ(params.cursorLocations()[0].x, -5);
    EXPECT_EQ(params.cursorLocations()[0].y, 6);
    ASSERT_EQ(params.dirtyRects().size(), 1U);
    EXPECT_EQ(params.dirtyRects()[0].rect, (Rectangle{5, 6, 7, 8}));
    EXPECT_EQ(params.dirtyRects()[0].time, 30);
    ASSERT_EQ(params.caretRects().size(), 1U);
    EXPECT_EQ(params.caretRects()[0].rect, (Rectangle{9, 10, 11, 12}));
    EXPECT_EQ(params.caretRects()[0].time, 40);
    ASSERT_EQ(params.recordingRegions().size(), 1U);
    EXPECT_EQ(params.recordingRegions()[0].rect, (Rectangle{0, 1280, 0, 800}));
    EXPECT_EQ(params.recordingRegions()[0].time, 10);
    // From the first sample to the last one.
    EXPECT_EQ(recording.start, 10);
    EXPECT_EQ(recording.stop, 60);
    EXPECT_EQ(recording.events, 6);
}

TEST(DumpReaderTest, TimeScale_InTheStreamsShortForm_IsRead) {
    EXPECT_EQ(readText(replaced(kDump, "1000\n", "1e+07\n")).params.timeScale(), 10000000.0);
}

TEST(DumpReaderTest, LastLineWithoutEnd_IsRead) { EXPECT_EQ(readText(kDump.substr(0, kDump.size() - 1)).events, 6); }

TEST(DumpReaderTest, BadDump_IsNamedWithItsLineAndReason) {
    const struct {
        std::string from;
        std::string to;
        std::string message;
    } cases[] = {
        {"640 400", "640.5 400", "f:1: the target's width must be a whole number"},
        {"640 400", "640 4e9", "f:1: the target's height must be a whole number"},
        {"640 400", "640 2147483648", "f:1: the target's height is out of range: it must fit 32 bits"},
        {"1000\n", "0\n", "f:1: the time scale is out of range: it must be above 0"},
        {"1000\n", "-5\n", "f:1: the time scale is out of range: it must be above 0"},
        {"1000\n", "nan\n", "f:1: the time scale is out of range: it must be above 0"},
        {"1000\n", "inf\n", "f:1: the time scale is out of range: it must be above 0"},
        {"1\n1 2", "1 1\n1 2", "f:2: the number of \"window\" samples must stand alone on its line"},
        {"1\n1 2", "\n1 2", "f:2: the number of \"window\" samples must stand alone on its line"},
        {"1\n1 2", "-1\n1 2", "f:2: the number of \"window\" samples must not be negative"},
        {"1\n1 2", "one\n1 2", "f:2: the number of \"window\" samples must be a whole number"},
        {"1\n1 2", "99999999999999999999\n1 2",
         "f:2: the number of \"window\" samples is out of range: it must fit 64 bits"},
        {"1\n1 2", "2\n1 2", "f:4: each \"window\" sample must have 5 numbers"},
        {"1 2 3 4 20", "1 2 3 4", "f:3: each \"window\" sample must have 5 numbers"},
        {"1 2 3 4 20", "1 2 3 4 20 6", "f:3: each \"window\" sample must have 5 numbers"},
        {"1 2 3 4 20", "1 2 3 4 5 6 7 8 9", "f:3: each \"window\" sample must have 5 numbers"},
        {"1 2 3 4 20", "1 2 3 4 2.5", "f:3: the time must be a whole number"},
        {"1 2 3 4 20", "1 2 3 4 9223372036854775808", "f:3: the time is out of range: it must fit 64 bits"},
        {"1 2 3 4 20", "1 2 3 2147483648 20", "f:3: bottom is out of range: it must fit 32 bits"},
        {"7 60", "7 60 1", "f:5: each \"action\" sample must have 2 numbers"},
        {"7 60", "seven 60", "f:5: the action code must be a whole number"},
        {"50 -5 6", "50 -5", "f:7: each \"cursor\" sample must have 3 numbers"},
        {"1\n50 -5 6", "2\n50 -5 6\n49 0 0",
         "f:8: the time 49 lies before 50, the time of the \"cursor\" sample before"},
        {"800 10\n", "800 10\n\n7\n", "f:15: the file goes on after the last \"region\" sample"},
        {"1\n0 1280 0 800 10\n", "", "f:12: the file ends within the \"region\" samples"},
        {"1\n0 1280 0 800 10\n", "9000000000000000000\n0 1280 0 800 10\n",
         "f:14: the file ends within the \"region\" samples"},
    };
    for (const auto& [from, to, message] : cases) {
        EXPECT_EQ(readingError(replaced(kDump, from, to)), message) << to;
    }
}

TEST(DumpReaderTest, BlankLinesAtTheEnd_ArePassedOver) {
    EXPECT_EQ(readText(replaced(kDump, "800 10\n", "800 10\r\n\n  \n")).events, 6);
}

TEST(DumpReaderTest, Failure_TellsTheColumnOfTheNumber) {
    const testing::ReadingFailure failure = testing::readingFailure(replaced(kDump, "1 2 3 4 20", "1 2 3 x 20"));
    EXPECT_EQ(failure.message, "f:3:7: bottom must be a whole number");
    EXPECT_EQ(failure.place.excerpt, "1 2 3 x 20");
}

TEST(DumpReaderTest, NoSamples_HasNothingToReplay) {
    EXPECT_EQ(readingError("640 400 1000\n0\n0\n0\n0\n0\n0\n"), "f:7: the captured request has no sample");
}

} // namespace
} // namespace OrvantaNS::command
