#include "asking/TimeOption.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/Reading.h"
#include "terminal/TextFormat.h"

namespace OrvantaNS::command {
namespace {

using testing::kHeader;
using testing::readText;

template <typename Call> std::string optionError(const Call& call) {
    try {
        call();
    } catch (const OptionError& error) {
        return error.what();
    }
    return {};
}

TEST(TimeOptionTest, ParseDecimal_DigitsAndOnePoint_AndNothingElse) {
    EXPECT_EQ(parseDecimal("0"), 0.0);
    EXPECT_EQ(parseDecimal("12.5"), 12.5);
    EXPECT_EQ(parseDecimal(".5"), 0.5);
    EXPECT_EQ(parseDecimal("5."), 5.0);
    for (const char* text : {"", ".", "-1", "+1", "1e3", "0x1", "nan", "inf", " 1", "1 ", "1.2.3", "1,5",
                             "111111111111111111111111111111111"}) {
        EXPECT_EQ(parseDecimal(text), std::nullopt) << text;
    }
}

TEST(TimeOptionTest, ParseTime_SecondsOrMinutesAndSeconds) {
    EXPECT_EQ(parseTime("90"), 90.0);
    EXPECT_EQ(parseTime("90.25"), 90.25);
    EXPECT_EQ(parseTime("1:30"), 90.0);
    EXPECT_EQ(parseTime("1:30.250"), 90.25);
    EXPECT_EQ(parseTime("206:02"), 12362.0);
    EXPECT_EQ(parseTime("0:59.999"), 59.999);
    for (const char* text : {"1:60", "1:5", "1:05.", "1:005", ":30", "1:", "1.5:30", "-1:30", "1:-30", "x"}) {
        EXPECT_EQ(parseTime(text), std::nullopt) << text;
    }
}

TEST(TimeOptionTest, ParseTime_HoursMinutesAndSeconds) {
    EXPECT_EQ(parseTime("1:30:00"), 5400.0);
    EXPECT_EQ(parseTime("0:00:00.5"), 0.5);
    EXPECT_EQ(parseTime("100:59:59.999"), 363599.999);
    for (const char* text :
         {"1:60:00", "1:5:00", "1:05:0", "1:05.5:00", "1:2:3:4", "1:00:00:00", ":00:00", "1:00:", "1.5:00:00"}) {
        EXPECT_EQ(parseTime(text), std::nullopt) << text;
    }
}

TEST(TimeOptionTest, ParseTime_NumbersWithTheirUnit) {
    EXPECT_EQ(parseTime("500ms"), 0.5);
    EXPECT_EQ(parseTime("1.5s"), 1.5);
    EXPECT_EQ(parseTime("0.25ms"), 0.00025);
    for (const char* text : {"ms", "s", "1 s", "1m", "1sms", "-5ms", "1:30s", "1:30ms", "5sec"}) {
        EXPECT_EQ(parseTime(text), std::nullopt) << text;
    }
}

TEST(TimeOptionTest, FormatTime_RoundsToTheMillisecond) {
    EXPECT_EQ(formatTime(0.0), "0:00.000");
    EXPECT_EQ(formatTime(0.0004), "0:00.000");
    EXPECT_EQ(formatTime(0.0006), "0:00.001");
    EXPECT_EQ(formatTime(59.9996), "1:00.000");
    EXPECT_EQ(formatTime(3725.5), "62:05.500");
    EXPECT_EQ(formatTime(-1.5), "-0:01.500");
    EXPECT_EQ(formatTime(-0.0001), "0:00.000");
}

TEST(TimeOptionTest, FormatTime_HugeOrNotANumber_IsPlain) {
    EXPECT_EQ(formatTime(1e300), "1e+300 s");
    EXPECT_EQ(formatTime(-1e300), "-1e+300 s");
    EXPECT_EQ(formatTime(std::numeric_limits<double>::infinity()), "inf s");
    EXPECT_EQ(formatTime(std::numeric_limits<double>::quiet_NaN()), "nan s");
    EXPECT_EQ(formatTime(999999999999.0), "16666666666:39.000");
    EXPECT_EQ(formatTime(1e12), "1000000000000 s");
}

TEST(TimeOptionTest, ParseClip_EitherEndInEitherForm) {
    const struct {
        std::string_view text;
        std::optional<double> start;
        std::optional<double> stop;
    } cases[] = {
        {"10:20", 10.0, 20.0},
        {"10:", 10.0, std::nullopt},
        {":20", std::nullopt, 20.0},
        {":", std::nullopt, std::nullopt},
        {"1:30", 1.0, 30.0},
        {"1:30:", 90.0, std::nullopt},
        {":1:30", std::nullopt, 90.0},
        {"0:30:2:00.5", 30.0, 120.5},
        {"5:1:30", 5.0, 90.0},
        {"1:30:95.5", 90.0, 95.5},
        {"0.5:1:30", 0.5, 90.0},
        {"500ms:1.5s", 0.5, 1.5},
        {"1:30:00:", 5400.0, std::nullopt},
        {":1:30:00", std::nullopt, 5400.0},
        // Both ends with as many colons, whatever else it could be (0 to 30 hours, or to 30 seconds).
        {"0:30:01:30", 30.0, 90.0},
        {"0:00:30:0:01:30.5", 30.0, 90.5},
    };
    for (const auto& [text, start, stop] : cases) {
        const ClipOption clip = parseClip(text);
        EXPECT_EQ(clip.start, start) << text;
        EXPECT_EQ(clip.stop, stop) << text;
    }
}

TEST(TimeOptionTest, ParseClip_NotAClip_IsRefused) {
    for (const char* text : {"", "90", "a:b", "1:2:3:4", "1:30:2:00:5", "1m:2m", "-5:10", "1::2", "1:2:3"}) {
        EXPECT_EQ(optionError([&] { parseClip(text); }),
                  std::string("--clip ") + text +
                      ": expected START:STOP, each in seconds, as 500ms, m:ss.mmm or h:mm:ss, or left out");
    }
    // 30 s to 45 s, or 0 s to 30:45.
    EXPECT_EQ(optionError([] { parseClip("0:30:45"); }),
              "--clip 0:30:45: can be read in two ways; write both ends as m:ss, or both in seconds");
}

/// Ends at 60.0005 s of a clock of 10,000 ticks a second, printed as 1:00.001 (or 1:00.000).
Recording minuteAndAHalfMillisecond() {
    std::string header = kHeader;
    header.replace(header.find("1000"), 4, "10000");
    return readText(header + "[0,\"action\",0]\n[600005,\"action\",1]\n");
}

TEST(TimeOptionTest, ResolveClip_LeftOutEnds_AreTheRecordings) {
    const Recording recording = minuteAndAHalfMillisecond();
    const Clip all = resolveClip({}, recording);
    EXPECT_EQ(all.start, 0);
    EXPECT_EQ(all.stop, 600005);
    const Clip some = resolveClip({1.5, 2.0}, recording);
    EXPECT_EQ(some.start, 15000);
    EXPECT_EQ(some.stop, 20000);
}

TEST(TimeOptionTest, ResolveClip_BeyondTheEnd_IsCut) {
    const Recording recording = minuteAndAHalfMillisecond();
    EXPECT_EQ(resolveClip({std::nullopt, 60.0}, recording).stop, 600000);
    // What printing rounds is no cut.
    EXPECT_EQ(resolveClip({std::nullopt, 60.001}, recording).stop, 600005);
    EXPECT_FALSE(resolveClip({std::nullopt, 60.001}, recording).isCut);
    EXPECT_EQ(resolveClip({std::nullopt, 60.002}, recording).stop, 600005);
    EXPECT_TRUE(resolveClip({std::nullopt, 60.002}, recording).isCut);
    EXPECT_EQ(resolveClip({5.0, 1e300}, recording).stop, 600005);
}

TEST(TimeOptionTest, ResolveClip_ThatBeginsAtTheEnd_IsRefused) {
    const Recording recording = minuteAndAHalfMillisecond();
    EXPECT_EQ(optionError([&] {
                  resolveClip({61.0, std::nullopt}, recording);
              }),
              "f: the clip begins at 1:01.000, when the recording has ended (1:00.001)");
    EXPECT_EQ(optionError([&] {
                  resolveClip({1e300, 2e300}, recording);
              }),
              "f: the clip begins at 1e+300 s, when the recording has ended (1:00.001)");
    EXPECT_EQ(optionError([&] {
                  resolveClip({60.0005, std::nullopt}, recording);
              }),
              "f: the clip begins at 1:00.001, when the recording has ended (1:00.001)");
}

TEST(TimeOptionTest, ResolveClip_Empty_IsRefused) {
    const Recording recording = minuteAndAHalfMillisecond();
    EXPECT_EQ(optionError([&] { resolveClip({5.0, 5.0}, recording); }), "f: the clip 0:05.000 to 0:05.000 is empty");
    EXPECT_EQ(optionError([&] { resolveClip({6.0, 5.0}, recording); }), "f: the clip 0:06.000 to 0:05.000 is empty");
    EXPECT_EQ(resolveClip({5.0, 5.0001}, recording).stop, 50001);
}

TEST(TimeOptionTest, ResolveDuration_ThatDoesNotFit_IsRefused) {
    const Recording recording = minuteAndAHalfMillisecond();
    EXPECT_EQ(resolveDuration(1.0, recording, "--fade"), 10000);
    EXPECT_EQ(optionError([&] { resolveDuration(1e15, recording, "--fade"); }),
              "f: --fade is too long for the recording's clock of 10000 ticks a second");
}

TEST(TimeOptionTest, ResolveMoment_OutsideTheRecording_IsRefused) {
    const Recording recording = minuteAndAHalfMillisecond();
    EXPECT_EQ(resolveMoment(0.0, recording), 0);
    EXPECT_EQ(resolveMoment(30.0, recording), 300000);
    EXPECT_EQ(resolveMoment(60.001, recording), 600005);
    EXPECT_EQ(optionError([&] { resolveMoment(61.0, recording); }),
              "f: the moment 1:01.000 lies outside the recording, which goes from 0:00.000 to 1:00.001");
    const Recording late = readText("640 400 1000\n0\n2\n0 5000\n1 6000\n0\n0\n0\n0\n");
    EXPECT_EQ(optionError([&] { resolveMoment(4.0, late); }),
              "f: the moment 0:04.000 lies outside the recording, which goes from 0:05.000 to 0:06.000");
}

} // namespace
} // namespace OrvantaNS::command
