// The built program, from its command line to its exit status.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <simdjson.h>

#include "support/Process.h"
#include "support/Reading.h"

namespace OrvantaNS::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using Names = std::vector<std::string>;

const std::string kSample = ORVANTA_SAMPLE;
const std::string kCsvHead = "tick,seconds,left,top,width,height,zoom,reason,videoSeconds";

/// A recording that the reader takes; it has nothing for the value engine to see.
const std::string kQuiet = kHeader + "[0,\"region\",0,0,1280,800]\n[5000,\"action\",9]\n";

std::vector<std::string> cells(const std::string& row) {
    std::vector<std::string> found;
    std::istringstream stream(row);
    for (std::string cell; std::getline(stream, cell, ',');) {
        found.push_back(cell);
    }
    return found;
}

/// The columns of a CSV row by name.
struct Row {
    long long tick;
    double seconds;
    int left, top, width, height;
    double zoom;
    std::string reason;
};

std::vector<Row> rowsOf(const std::string& csv) {
    std::vector<Row> rows;
    const std::vector<std::string> lines = linesOf(csv);
    EXPECT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), kCsvHead);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::vector<std::string> row = cells(lines[i]);
        row.resize(9);
        rows.push_back({std::stoll(row[0]), std::stod(row[1]), std::stoi(row[2]), std::stoi(row[3]), std::stoi(row[4]),
                        std::stoi(row[5]), std::stod(row[6]), row[7]});
    }
    return rows;
}

/// Every keyframe list is ordered by time, lies within the clip and the region, and has the target's shape.
void expectGoodKeyframes(const std::vector<Row>& rows, int width, int height, double length) {
    ASSERT_FALSE(rows.empty());
    double last = -1.0;
    for (const Row& row : rows) {
        EXPECT_GT(row.seconds, last);
        last = row.seconds;
        EXPECT_LE(row.seconds, length);
        EXPECT_EQ(static_cast<double>(row.tick), std::round(row.seconds * 1e6));
        EXPECT_GE(row.left, 0);
        EXPECT_GE(row.top, 0);
        EXPECT_LE(row.left + row.width, 1280);
        EXPECT_LE(row.top + row.height, 800);
        // One edge is rounded to a whole pixel.
        const double heightAtShape = static_cast<double>(row.width) * height / width;
        const double widthAtShape = static_cast<double>(row.height) * width / height;
        EXPECT_TRUE(std::abs(heightAtShape - row.height) <= 1.0 || std::abs(widthAtShape - row.width) <= 1.0)
            << row.width << "x" << row.height;
        EXPECT_NEAR(row.zoom, static_cast<double>(width) / row.width, 1e-5);
    }
}

void expectRefused(const ProcessResult& result, const std::string& message) {
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "orvanta: " + message + "\n");
}

/// The same for a message about a place in a file, whose column and excerpt other tests look at.
void expectRefusedSomewhere(const ProcessResult& result, const std::string& message) {
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, IsEmpty());
    const std::string first = linesOf(result.err).front();
    EXPECT_EQ(std::regex_replace(first, std::regex(":([0-9]+):[0-9]+: "), ":$1: "), "orvanta: " + message);
}

// ---- Good input ----

TEST(ProgramTest, Keyframes_Sample_GivesGoodCsv) {
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, IsEmpty());
    const std::vector<Row> rows = rowsOf(result.out);
    expectGoodKeyframes(rows, 640, 400, 132.5);
    const std::vector<std::string> reasons{"tight", "wide", "loose", "forced", "off-window", "full screen"};
    for (const Row& row : rows) {
        EXPECT_THAT(reasons, ::testing::Contains(row.reason));
    }
}

TEST(ProgramTest, Keyframes_SizesAsScaleAndAspect) {
    const ProcessResult pixels = runOrvanta({"keyframes", kSample, "--size", "640x400"});
    const ProcessResult scale = runOrvanta({"keyframes", kSample, "--size", "0.5"});
    EXPECT_EQ(scale.out, pixels.out);
    const ProcessResult portrait = runOrvanta({"keyframes", kSample, "--size", "9:16"});
    EXPECT_EQ(portrait.status, 0);
    expectGoodKeyframes(rowsOf(portrait.out), 450, 800, 132.5);
}

TEST(ProgramTest, Keyframes_Json_SaysTheSameAsCsv) {
    const std::vector<Row> rows = rowsOf(runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "--format", "json"});
    EXPECT_EQ(result.status, 0);
    simdjson::dom::parser parser;
    const simdjson::dom::element json = parser.parse(result.out);
    ASSERT_EQ(json["keyframes"].get_array().size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const simdjson::dom::element keyframe = json["keyframes"].at(i);
        EXPECT_EQ(keyframe["tick"].get_int64().value(), rows[i].tick);
        EXPECT_EQ(keyframe["left"].get_int64().value(), rows[i].left);
        EXPECT_EQ(keyframe["top"].get_int64().value(), rows[i].top);
        EXPECT_EQ(keyframe["width"].get_int64().value(), rows[i].width);
        EXPECT_EQ(keyframe["height"].get_int64().value(), rows[i].height);
        EXPECT_EQ(keyframe["reason"].get_string().value(), rows[i].reason);
    }
}

TEST(ProgramTest, Keyframes_Table_HasARowForEachKeyframe) {
    const std::vector<Row> rows = rowsOf(runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "--format", "table"});
    const std::vector<std::string> lines = linesOf(result.out);
    EXPECT_EQ(lines.size(), rows.size() + 1);
    EXPECT_EQ(lines.front(), "      time      position         size   zoom  reason");
}

TEST(ProgramTest, Keyframes_Terminal_GetsATable) {
    ProcessOptions options;
    options.terminal = true;
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "--no-progress"}, options);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("      time      position"));
}

TEST(ProgramTest, Keyframes_StandardInput_GivesTheSame) {
    ProcessOptions options;
    options.input = readFile(kSample);
    const ProcessResult piped = runOrvanta({"keyframes", "-", "--size", "640x400"}, options);
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.out, runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
}

TEST(ProgramTest, Keyframes_OutputFile_HoldsWhatWouldBePrinted) {
    const TemporaryDirectory directory;
    const ProcessResult result =
        runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", directory.path("keyframes.csv")});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(readFile(directory.path("keyframes.csv")), runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
    EXPECT_EQ(directory.files(), Names{"keyframes.csv"});
}

TEST(ProgramTest, Keyframes_ClipAndFade_ReachTheRequest) {
    const ProcessResult result = runOrvanta(
        {"keyframes", kSample, "--size", "640x400", "--clip", "0:10.5:1:00", "--fade", "0.25", "--format", "json"});
    EXPECT_EQ(result.status, 0);
    simdjson::dom::parser parser;
    const simdjson::dom::element json = parser.parse(result.out);
    EXPECT_EQ(json["clip"]["startTick"].get_int64().value(), 10500000);
    EXPECT_EQ(json["clip"]["stopTick"].get_int64().value(), 60000000);
    EXPECT_EQ(json["fadeTicks"].get_int64().value(), 250000);
}

TEST(ProgramTest, Keyframes_VotingEngine_HasNoReasons) {
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "--engine", "voting"});
    EXPECT_EQ(result.status, 0);
    const std::vector<Row> rows = rowsOf(result.out);
    ASSERT_FALSE(rows.empty());
    for (const Row& row : rows) {
        EXPECT_THAT(row.reason, IsEmpty());
    }
    // An aspect leaves the last row and column out, which this engine wants.
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "9:16", "--engine", "voting"}).status, 0);
}

TEST(ProgramTest, Frame_AtAMoment_GivesOneKeyframeOfThatTime) {
    for (const char* engine : {"value", "voting"}) {
        const ProcessResult result =
            runOrvanta({"frame", kSample, "--at", "1:05.5", "--size", "640x400", "--engine", engine});
        EXPECT_EQ(result.status, 0);
        const std::vector<Row> rows = rowsOf(result.out);
        ASSERT_EQ(rows.size(), 1U);
        EXPECT_EQ(rows[0].tick, 65500000);
        expectGoodKeyframes(rows, 640, 400, 132.5);
    }
}

TEST(ProgramTest, Frame_OfTheWindow_IsTheWindowsAloneAtTimeZero) {
    const TemporaryDirectory directory;
    // A window of exactly the target's size is its own frame, wherever it stands.
    const std::string path = directory.write(
        "r.jsonl", kHeader + "[0,\"region\",0,0,1280,800]\n[700,\"window\",100,50,740,450]\n[900,\"action\",6]\n");
    const ProcessResult result = runOrvanta({"frame", path, "--window", "--size", "640x400"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, kCsvHead + "\n0,0,100,50,640,400,1,,0\n");
}

TEST(ProgramTest, Frame_OfTheWindow_VotingEngineHasNoAnswer) {
    const ProcessResult result = runOrvanta({"frame", kSample, "--window", "--size", "640x400", "--engine", "voting"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "orvanta: the voting engine has no answer to --window; ask the value engine\n");
}

TEST(ProgramTest, Info_Sample_NamesWhatItHolds) {
    const ProcessResult result = runOrvanta({"info", kSample});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(result.out, HasSubstr("length       2:12.453"));
    EXPECT_THAT(result.out, HasSubstr("1280x800 at 0, 0"));
    EXPECT_THAT(result.out, HasSubstr("  window     1256\n  dirty      1428\n  caret      0\n"
                                      "  cursor     1269\n  action     98\n"));
    EXPECT_THAT(result.out, HasSubstr("odd          nothing"));
}

TEST(ProgramTest, Inspect_Sample_ShowsEveryStage) {
    const ProcessResult result = runOrvanta({"inspect", kSample, "--size", "640x400"});
    EXPECT_EQ(result.status, 0);
    for (const char* stage : {"Live zones: 1\n", "\nValue objects: ", "\nSlices: ", "\nShots: ", "\nKeyframes: "}) {
        EXPECT_THAT(result.out, HasSubstr(stage));
    }
}

TEST(ProgramTest, Inspect_Json_EndsInTheKeyframesOfTheSameRun) {
    const std::vector<Row> rows = rowsOf(runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
    const ProcessResult result = runOrvanta({"inspect", kSample, "--size", "640x400", "--format", "json"});
    EXPECT_EQ(result.status, 0);
    simdjson::dom::parser parser;
    const simdjson::dom::element json = parser.parse(result.out);
    EXPECT_TRUE(json["failure"].is_null());
    EXPECT_EQ(json["liveZones"].get_array().size(), 1U);
    EXPECT_GT(json["valueObjects"].get_array().size(), 0U);
    EXPECT_GE(json["slices"].get_array().size(), json["shots"].get_array().size());
    ASSERT_EQ(json["keyframes"].get_array().size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(json["keyframes"].at(i)["tick"].get_int64().value(), rows[i].tick);
        EXPECT_EQ(json["keyframes"].at(i)["reason"].get_string().value(), rows[i].reason);
    }
}

TEST(ProgramTest, CapturedRequest_IsReplayedAtItsOwnSize) {
    const TemporaryDirectory directory;
    const std::string path =
        directory.write("dump.txt", "640 400 1000\n1\n100 740 50 450 0\n1\n6 900\n0\n0\n0\n1\n0 1280 0 800 0\n");
    EXPECT_EQ(runOrvanta({"frame", path, "--window"}).out, kCsvHead + "\n0,0,100,50,640,400,1,,0\n");
    // A window of twice that size, and the same shape.
    EXPECT_EQ(runOrvanta({"frame", path, "--window", "--size", "320x200"}).out,
              kCsvHead + "\n0,0,100,50,640,400,0.5,,0\n");
}

/// A recording's request in the form of a dump, written here as a developer's capture would have it.
std::string dumpOf(const command::Recording& recording, int width, int height) {
    const Params& params = recording.params;
    std::ostringstream out;
    out << width << " " << height << " " << params.timeScale() << "\n";
    const auto rects = [&out](const std::vector<OV_TIME_RECT>& samples) {
        out << samples.size() << "\n";
        for (const OV_TIME_RECT& sample : samples) {
            out << sample.rect.left << " " << sample.rect.right << " " << sample.rect.top << " " << sample.rect.bottom
                << " " << sample.time << "\n";
        }
    };
    rects(params.foreWindows());
    out << params.cursorActions().size() << "\n";
    for (const OV_MOUSE_ACTION& action : params.cursorActions()) {
        out << action.action << " " << action.time << "\n";
    }
    out << params.cursorLocations().size() << "\n";
    for (const OV_MOUSE_LOCATION& location : params.cursorLocations()) {
        out << location.time << " " << location.x << " " << location.y << "\n";
    }
    rects(params.dirtyRects());
    rects(params.caretRects());
    rects(params.recordingRegions());
    return out.str();
}

TEST(ProgramTest, CapturedRequest_OfTheSample_GivesTheSamplesKeyframes) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("dump.txt", dumpOf(command::readRecordingFile(kSample), 640, 400));
    const ProcessResult replayed = runOrvanta({"keyframes", path});
    EXPECT_EQ(replayed.status, 0);
    EXPECT_EQ(replayed.out, runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
}

TEST(ProgramTest, UnknownFieldsAndStreams_GiveOneWarning) {
    const TemporaryDirectory directory;
    std::string header = kHeader;
    header.replace(0, 1, R"({"colour": 1, )");
    const std::string path = directory.write(
        "r.jsonl",
        header + "[0,\"region\",0,0,1280,800]\n[0,\"window\",0,0,640,400]\n[1,\"touch\",1]\n[2,\"touch\"]\n");
    const ProcessResult result = runOrvanta({"frame", path, "--window", "--size", "640x400"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "orvanta: warning: " + path +
                  ": passed over 1 unknown header field (colour) and 2 lines of unknown streams (touch: 2)\n");
    EXPECT_EQ(result.out, kCsvHead + "\n0,0,0,0,640,400,1,,0\n");
}

TEST(ProgramTest, Help_HasExamplesForEveryCommand) {
    const ProcessResult help = runOrvanta({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.err, IsEmpty());
    EXPECT_THAT(help.out, HasSubstr("Examples:\n  orvanta keyframes session.jsonl --size 640x400\n"));
    for (const char* subcommand : {"keyframes", "frame", "info", "inspect"}) {
        EXPECT_THAT(help.out, HasSubstr(std::string("orvanta ") + subcommand + " "));
        const ProcessResult own = runOrvanta({subcommand, "--help"});
        EXPECT_EQ(own.status, 0);
        EXPECT_THAT(own.out, HasSubstr(std::string("  orvanta ") + subcommand));
    }
}

TEST(ProgramTest, Version_IsTheProjects) {
    const ProcessResult result = runOrvanta({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "orvanta " ORVANTA_VERSION "\n");
}

TEST(ProgramTest, HelpAndVersion_HaveMoreThanOneName) {
    const std::string help = runOrvanta({"--help"}).out;
    EXPECT_EQ(runOrvanta({"-h"}).out, help);
    EXPECT_EQ(runOrvanta({"help"}).out, help);
    EXPECT_EQ(runOrvanta({"help", "frame"}).out, runOrvanta({"frame", "--help"}).out);
    for (const char* name : {"-V", "version"}) {
        const ProcessResult result = runOrvanta({name});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, "orvanta " ORVANTA_VERSION "\n");
    }
}

TEST(ProgramTest, HelpAndVersion_ThatCannotBeWritten_AreAFailure) {
    ProcessOptions options;
    options.output = "/dev/full";
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"keyframes", "--help"}, {"help"}, {"help", "info"}, {"--version"}, {"version"}}) {
        const ProcessResult result = runOrvanta(arguments, options);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "orvanta: <stdout>: cannot be written: No space left on device\n");
    }
}

TEST(ProgramTest, Help_FitsEightyColumns) {
    for (const char* topic : {"help", "keyframes", "frame", "info", "inspect"}) {
        for (const std::string& line : linesOf(runOrvanta({"help", topic}).out)) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

TEST(ProgramTest, Failure_InJson_IsOneObject) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("r", kQuiet + "[5001,\"cursor\",1,\"2\"]\n");
    const ProcessResult result = runOrvanta({"keyframes", path, "--size", "640x400", "--format", "json"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, IsEmpty());
    simdjson::dom::parser parser;
    const simdjson::dom::element error = parser.parse(result.err)["error"];
    EXPECT_EQ(error["message"].get_string().value(), path + ":4:18: y must be a whole number");
    EXPECT_EQ(error["exitStatus"].get_int64().value(), 2);
    EXPECT_EQ(error["file"].get_string().value(), path);
    EXPECT_EQ(error["line"].get_int64().value(), 4);
    EXPECT_EQ(error["column"].get_int64().value(), 18);
    EXPECT_EQ(error["excerpt"].get_string().value(), "[5001,\"cursor\",1,\"2\"]");

    // What cannot be understood is told in the same form.
    const ProcessResult usage = runOrvanta({"keyframes", "--format=json", "--bogus"});
    EXPECT_EQ(usage.status, 2);
    EXPECT_EQ(linesOf(usage.err).size(), 1U);
    EXPECT_EQ(parser.parse(usage.err)["error"]["try"].get_string().value(), "orvanta keyframes --help");
}

TEST(ProgramTest, Failure_ShowsThePlace) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("r", kQuiet + "[5001,\"cursor\",1,\"2\"]\n");
    EXPECT_EQ(runOrvanta({"info", path}).err, "orvanta: " + path +
                                                  ":4:18: y must be a whole number\n"
                                                  "  [5001,\"cursor\",1,\"2\"]\n"
                                                  "                   ^\n");
}

TEST(ProgramTest, FileNames_ArePrintedSafely) {
    const TemporaryDirectory directory;
    const std::string path = directory.path("a\x1b]0;title\x07\n\xc2\x9b\xe2\x80\xae\xff\xc3\xbc");
    expectRefused(runOrvanta({"info", path}),
                  directory.path("a\\x1b]0;title\\x07\\x0a\\u{009b}\\u{202e}\\xff\xc3\xbc") +
                      ": cannot be opened: No such file or directory");
}

TEST(ProgramTest, Quiet_LeavesWarningsAway) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("r", kHeader + "[0,\"region\",0,0,1280,800]\n[1,\"touch\"]\n[2,\"act");
    EXPECT_EQ(runOrvanta({"info", path}).err, "orvanta: warning: " + path +
                                                  ": passed over 1 line of unknown streams (touch: 1)\n"
                                                  "orvanta: warning: " +
                                                  path +
                                                  ":4: the last line is cut off and was left out; the recording ends "
                                                  "at 0:00.001\n");
    EXPECT_THAT(runOrvanta({"info", path, "--quiet"}).err, IsEmpty());
    EXPECT_THAT(runOrvanta({"info", path, "-q", "--strict"}).err, HasSubstr(":4:8: not JSON"));
}

TEST(ReadmeTest, HostExample_IsTheProgramThatIsBuiltAndRun) {
    EXPECT_THAT(readFile(ORVANTA_README), HasSubstr("```cpp\n" + readFile(ORVANTA_HOST_EXAMPLE) + "```\n"));
}

// ---- Bad input: one message, status 2, no output ----

TEST(ProgramTest, BadFile_IsNamedWithLineAndReason_AndLeavesNoOutput) {
    const struct {
        std::string text;
        std::string message;
    } cases[] = {
        {"", ":1: the file is empty"},
        {"hello\n", ":1: not JSON"},
        {R"({"format":"other","version":1,"timeScale":1,"windowsFlag":false,"description":""})",
         R"(:1: the format is "other", not "orvanta-recording")"},
        {R"({"format":"orvanta-recording","version":2,"timeScale":1,"windowsFlag":false,"description":""})",
         ":1: the format's version is 2; only version 1 can be read"},
        {R"({"format":"orvanta-recording","version":1,"windowsFlag":false,"description":""})",
         R"(:1: header field "timeScale" is missing)"},
        {R"({"format":"orvanta-recording","version":1,"timeScale":0,"windowsFlag":false,"description":""})",
         R"(:1: header field "timeScale" is out of range: it must be above 0)"},
        {kHeader, ":1: the recording ends with its header: there is no event"},
        {kQuiet + "[5001,\"cursor\",1]\n", ":4: y is missing"},
        {kQuiet + "[5001,\"cursor\",1,\"2\"]\n", ":4: y must be a whole number"},
        {kQuiet + "[5001,\"cursor\",1,2147483648]\n", ":4: y is out of range: it must fit 32 bits"},
        {kQuiet + "[9223372036854775808,\"cursor\",1,2]\n", ":4: the time is out of range: it must fit 64 bits"},
        {kQuiet + "[4999,\"cursor\",1,2]\n", ":4: the time 4999 lies before 5000, the time of the line before"},
        {kQuiet + "[5001,\"cursor\",1,\n", ":4: not JSON"},
        {"640 400 0\n", ":1: the time scale is out of range: it must be above 0"},
        {"640 400 1000\n1\n", ":3: the file ends within the \"window\" samples"},
    };
    for (const auto& [text, message] : cases) {
        const TemporaryDirectory directory;
        const std::string path = directory.write("r", text);
        for (const char* subcommand : {"keyframes", "inspect"}) {
            expectRefusedSomewhere(runOrvanta({subcommand, path, "--size", "640x400", "-o", directory.path("out")}),
                                   path + message);
        }
        expectRefusedSomewhere(
            runOrvanta({"frame", path, "--window", "--size", "640x400", "-o", directory.path("out")}), path + message);
        expectRefusedSomewhere(runOrvanta({"info", path}), path + message);
        EXPECT_EQ(directory.files(), Names{"r"});
    }
}

TEST(ProgramTest, BadFile_LeavesAnExistingOutputAsItWas) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("r", "hello\n");
    const std::string output = directory.write("out", "from before");
    EXPECT_EQ(runOrvanta({"keyframes", path, "--size", "640x400", "-o", output}).status, 2);
    EXPECT_EQ(readFile(output), "from before");
}

TEST(ProgramTest, MissingFile_IsNamed) {
    const TemporaryDirectory directory;
    const std::string path = directory.path("none");
    expectRefused(runOrvanta({"keyframes", path, "--size", "640x400"}),
                  path + ": cannot be opened: No such file or directory");
    expectRefused(runOrvanta({"info", directory.path("")}), directory.path("") + ": cannot be read: Is a directory");
}

TEST(ProgramTest, BadStandardInput_IsNamedAsSuch) {
    ProcessOptions options;
    options.input = kQuiet + "[1]";
    expectRefusedSomewhere(runOrvanta({"info", "-"}, options), "<stdin>:4: the stream's name is missing");
    expectRefused(runOrvanta({"info", "-"}), "<stdin>:1: the file is empty");
}

TEST(ProgramTest, BadOptions_AreRefused) {
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } cases[] = {
        {{"keyframes", kSample}, "--size is required: WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16"},
        {{"keyframes", kSample, "--size", "big"},
         "--size big: expected WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16"},
        {{"keyframes", kSample, "--size", "640x400", "--fade", "-1"},
         "--fade -1: expected a number of seconds, or of milliseconds such as 500ms"},
        {{"keyframes", kSample, "--size", "640x400", "--fade", "1:00"},
         "--fade 1:00: expected a number of seconds, or of milliseconds such as 500ms"},
        {{"keyframes", kSample, "--size", "640:400"},
         "--size 640:400: did you mean 640x400? The shape alone is written 8:5"},
        {{"keyframes", kSample, "--size", "640x400", "--clip", "x"},
         "--clip x: expected START:STOP, each in seconds, as 500ms, m:ss.mmm or h:mm:ss, or left out"},
        {{"keyframes", kSample, "--size", "640x400", "--clip", "500:"},
         kSample + ": the clip begins at 8:20.000, when the recording has ended (2:12.453)"},
        {{"frame", kSample, "--size", "640x400"}, "frame needs either --at TIME or --window"},
        {{"frame", kSample, "--size", "640x400", "--at", "1", "--window"}, "frame needs either --at TIME or --window"},
        {{"frame", kSample, "--size", "640x400", "--at", "soon"},
         "--at soon: expected seconds, 500ms, m:ss.mmm or h:mm:ss"},
        {{"frame", kSample, "--size", "640x400", "--at", "500"},
         kSample + ": the moment 8:20.000 lies outside the recording, which goes from 0:00.000 to 2:12.453"},
    };
    for (const auto& [arguments, message] : cases) {
        expectRefused(runOrvanta(arguments), message);
    }
}

TEST(ProgramTest, BadUsage_SaysWhatWasMeant) {
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } cases[] = {
        {{}, "a subcommand is missing\nTry: orvanta --help\n"},
        {{"keyframe", "x"}, "there is no subcommand keyframe; did you mean keyframes?\nTry: orvanta --help\n"},
        {{"inof"}, "there is no subcommand inof; did you mean info?\nTry: orvanta --help\n"},
        {{"nothing"}, "there is no subcommand nothing\nTry: orvanta --help\n"},
        {{"a\x1b[31m"}, "there is no subcommand a\\x1b[31m\nTry: orvanta --help\n"},
        {{kSample}, kSample + " is a file; a subcommand comes first\nTry: orvanta info " + kSample + "\n"},
        {{"help", "fram"}, "there is no subcommand fram; did you mean frame?\nTry: orvanta --help\n"},
        {{"info", "a", "b", "-x", "c"}, "not expected: b -x c\nTry: orvanta info --help\n"},
        {{"info", kSample, "--sise"}, "there is no option --sise\nTry: orvanta info --help\n"},
        {{"frame", kSample, "--sise=640x400"},
         "there is no option --sise=640x400; did you mean --size?\nTry: orvanta frame --help\n"},
        {{"info"}, "RECORDING is required\nTry: orvanta info --help\n"},
    };
    for (const auto& [arguments, message] : cases) {
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_EQ(result.err, "orvanta: " + message);
    }
}

TEST(ProgramTest, BadUsage_PointsToTheHelp) {
    const std::vector<std::vector<std::string>> cases = {
        {},
        {"nothing"},
        {"keyframes"},
        {"keyframes", kSample, "--size"},
        {"keyframes", kSample, "--size", "640x400", "--format", "xml"},
        {"keyframes", kSample, "--size", "640x400", "--engine", "best"},
        {"keyframes", kSample, "--size", "640x400", "--surprise"},
        {"inspect", kSample, "--size", "640x400", "--format", "csv"},
    };
    for (const auto& arguments : cases) {
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, StartsWith("orvanta: "));
        EXPECT_THAT(result.err, HasSubstr("\nTry: orvanta "));
        EXPECT_THAT(result.err, ::testing::EndsWith("--help\n"));
    }
}

// ---- What the engines would refuse ----

TEST(ProgramTest, SizesThatTheEnginesRefuse_AreOptionErrors) {
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } cases[] = {
        {{"--size", "63x400"},
         "--size 63x400: the engines want at least 64 pixels in each dimension; ask for a larger size"},
        {{"--size", "0.01", "--engine", "voting"},
         "--size 12x8: the engines want at least 64 pixels in each dimension; ask for a larger size"},
        {{"--size", "1280x800"},
         "--size 1280x800: that shows all of the recording's 1280x800 at once, which leaves "
         "nothing to decide; ask for less in at least one dimension, such as --size 0.5"},
        {{"--size", "1280x400", "--engine", "voting"},
         "--size 1280x400: the voting engine wants less than the recording's 1280x800 in both dimensions; ask for a "
         "smaller size, such as 0.5, or for --engine value"},
    };
    for (const auto& [options, message] : cases) {
        for (const std::vector<std::string>& start :
             {std::vector<std::string>{"keyframes", kSample}, {"frame", kSample, "--at", "5"}}) {
            std::vector<std::string> words = start;
            words.insert(words.end(), options.begin(), options.end());
            expectRefused(runOrvanta(words), kSample + ": " + message);
        }
    }
    // One dimension is enough for the value engine, and a window's frame may be small.
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "1280x798"}).status, 0);
    EXPECT_EQ(runOrvanta({"frame", kSample, "--window", "--size", "20x20"}).status, 0);
    expectRefused(runOrvanta({"frame", kSample, "--window", "--size", "1281x801"}),
                  kSample + ": --size 1281x801: a window's frame must fit the recording of 1280x800; ask for a smaller "
                            "size");
}

TEST(ProgramTest, SizeBeyondTheRecordingInOneDimension_IsNoted) {
    EXPECT_EQ(runOrvanta({"frame", kSample, "--at", "5", "--size", "100x2000"}).err,
              "orvanta: " + kSample +
                  ": the size 100x2000 is larger than the recording's 1280x800 in one dimension; pixels are enlarged, "
                  "and frames may reach beyond the recording\n");
}

TEST(ProgramTest, RecordingsWithoutWhatIsAskedFor_AreRefused) {
    const TemporaryDirectory directory;
    const std::string noRegion = directory.write("region", kHeader + "[0,\"action\",6]\n[5000,\"action\",6]\n");
    const std::string quiet = directory.write("quiet", kQuiet);
    const std::string tiny = directory.write("tiny", kHeader + "[0,\"region\",0,0,63,65]\n[5000,\"action\",6]\n");
    expectRefused(runOrvanta({"keyframes", noRegion, "--size", "640x400"}),
                  noRegion + ": there is no recording region, and no engine works without one");
    expectRefused(runOrvanta({"keyframes", tiny, "--size", "64x64"}),
                  tiny + ": the first recording region is 63x65, too small to work on");
    expectRefused(runOrvanta({"frame", quiet, "--window", "--size", "640x400"}),
                  quiet + ": there is no window in it to frame");
}

TEST(ProgramTest, NoKeyframes_TheWholeRecordingStaysOnShow) {
    const TemporaryDirectory directory;
    const std::string quiet = directory.write("quiet", kQuiet);
    const std::string row = kCsvHead + "\n0,0,0,0,1280,800,0.5,nothing closer,0\n";
    // Five seconds; with fades of a second no clip below ten has a keyframe.
    const ProcessResult result = runOrvanta({"keyframes", quiet, "--size", "640x400"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, row);
    EXPECT_EQ(result.err, "orvanta: " + quiet +
                              ": the clip of 0:05.000 is shorter than two fades and 8 s (0:10.000), so the whole "
                              "recording stays on show\n");
    // Long enough, but nothing happens.
    const std::string still = directory.write("still", kHeader + "[0,\"region\",0,0,1280,800]\n[10000,\"action\",9]\n");
    const ProcessResult nothing = runOrvanta({"keyframes", still, "--size", "640x400"});
    EXPECT_EQ(nothing.status, 0);
    EXPECT_EQ(nothing.out, row);
    EXPECT_EQ(nothing.err,
              "orvanta: " + still +
                  ": nothing in the clip asks for a closer look at the size 640x400, so the whole recording "
                  "stays on show\n");
    // At the clip's start, on a real recording.
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "--clip", "20:25"}).out,
              kCsvHead + "\n20000000,20,0,0,1280,800,0.5,nothing closer,20\n");

    const ProcessResult strict =
        runOrvanta({"keyframes", quiet, "--size", "640x400", "--strict", "-o", directory.path("out")});
    EXPECT_EQ(strict.status, 1);
    EXPECT_THAT(strict.out, IsEmpty());
    EXPECT_THAT(strict.err, HasSubstr("so the whole recording stays on show"));
    EXPECT_EQ(directory.files(), (Names{"quiet", "still"}));
    EXPECT_THAT(runOrvanta({"keyframes", quiet, "--size", "640x400", "--quiet"}).err, IsEmpty());
}

TEST(ProgramTest, Keyframes_VotingEngine_IsCutToTheClip) {
    const std::vector<Row> all =
        rowsOf(runOrvanta({"keyframes", kSample, "--size", "640x400", "--engine", "voting"}).out);
    const std::vector<Row> clip =
        rowsOf(runOrvanta({"keyframes", kSample, "--size", "640x400", "--engine", "voting", "--clip", "30:60"}).out);
    std::vector<Row> expected;
    for (Row row : all) {
        if (row.tick <= 30000000) {
            row.tick = 30000000;
            expected = {row};
        } else if (row.tick < 60000000) {
            expected.push_back(row);
        }
    }
    ASSERT_GT(expected.size(), 1U);
    ASSERT_EQ(clip.size(), expected.size());
    for (std::size_t i = 0; i < clip.size(); ++i) {
        EXPECT_EQ(clip[i].tick, expected[i].tick);
        EXPECT_EQ(clip[i].left, expected[i].left);
        EXPECT_EQ(clip[i].top, expected[i].top);
        EXPECT_EQ(clip[i].width, expected[i].width);
    }
}

TEST(ProgramTest, Clip_BeyondTheEnd_IsCutWithANotice) {
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "--clip", "0:500"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "orvanta: " + kSample + ": the clip is cut to the recording's end at 2:12.453\n");
    EXPECT_EQ(result.out, runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
}

TEST(ProgramTest, Output_TheEndingChoosesTheFormat) {
    const TemporaryDirectory directory;
    const auto written = [&](const char* subcommand, const std::string& name) {
        EXPECT_EQ(runOrvanta({subcommand, kSample, "--size", "640x400", "-o", directory.path(name)}).status, 0);
        return readFile(directory.path(name));
    };
    const auto printed = [&](const char* subcommand, const char* format) {
        return runOrvanta({subcommand, kSample, "--size", "640x400", "--format", format}).out;
    };
    EXPECT_EQ(written("keyframes", "a.csv"), printed("keyframes", "csv"));
    EXPECT_EQ(written("keyframes", "a.JSON"), printed("keyframes", "json"));
    EXPECT_EQ(written("keyframes", "a.txt"), printed("keyframes", "table"));
    EXPECT_EQ(written("keyframes", "a"), printed("keyframes", "csv"));
    EXPECT_EQ(written("inspect", "b.json"), printed("inspect", "json"));
    EXPECT_EQ(written("inspect", "b.txt"), printed("inspect", "text"));
    expectRefused(runOrvanta({"inspect", kSample, "--size", "640x400", "-o", "c.csv"}),
                  "-o c.csv: no format has the ending .csv; name one with --format: text or json");
    const ProcessResult unknown = runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "c.xyz"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_THAT(unknown.err, StartsWith("orvanta: -o c.xyz: no format has the ending .xyz; name one with --format: "));
    // What is asked for goes before the ending.
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "--format", "csv", "-o", directory.path("c.xyz")})
                  .status,
              0);
    EXPECT_EQ(readFile(directory.path("c.xyz")), printed("keyframes", "csv"));
}

TEST(ProgramTest, Output_Dash_IsTheStandardOutput) {
    const std::string plain = runOrvanta({"keyframes", kSample, "--size", "640x400"}).out;
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "-"}).out, plain);
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "/dev/stdout"}).out, plain);
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "/dev/fd/1"}).out, plain);
    // A file that the standard output was sent to is written on, not replaced.
    const TemporaryDirectory directory;
    ProcessOptions options;
    options.output = directory.write("log", "before\n");
    EXPECT_EQ(runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "/dev/stdout"}, options).status, 0);
    EXPECT_EQ(readFile(options.output), "before\n" + plain);
}

TEST(ProgramTest, Batch_EachRecordingHasItsResult_AndFailuresAreListed) {
    const TemporaryDirectory directory;
    const std::string good = directory.write("good.jsonl", readFile(kSample));
    const std::string bad = directory.write("bad.jsonl", "hello\n");
    const std::string quiet = directory.write("quiet.jsonl", kQuiet);
    const std::string none = directory.path("none.jsonl");
    const std::string out = directory.path("new/folder");
    const ProcessResult result =
        runOrvanta({"keyframes", good, bad, none, quiet, "--size", "640x400", "--out-dir", out, "--jobs", "2"});
    EXPECT_EQ(result.status, 2);
    std::vector<std::string> lines = linesOf(result.out);
    std::sort(lines.begin(), lines.end());
    EXPECT_THAT(lines, ::testing::ElementsAre(bad + ": failed", good + ": 5 keyframes -> " + out + "/good.csv",
                                              none + ": failed", quiet + ": 1 keyframe -> " + out + "/quiet.csv"));
    EXPECT_THAT(result.err, ::testing::EndsWith("orvanta: 2 of 4 recordings failed:\n  " + bad + ":1:1: not JSON\n  " +
                                                none + ": cannot be opened: No such file or directory\n"));
    EXPECT_EQ(readFile(out + "/good.csv"), runOrvanta({"keyframes", kSample, "--size", "640x400"}).out);
    EXPECT_EQ(linesOf(readFile(out + "/quiet.csv")).size(), 2U);
    EXPECT_FALSE(std::filesystem::exists(out + "/bad.csv"));
}

TEST(ProgramTest, Batch_Json_IsAnObjectALine) {
    const TemporaryDirectory directory;
    const std::string good = directory.write("good.jsonl", readFile(kSample));
    const std::string bad = directory.write("bad.jsonl", "hello\n");
    const ProcessResult result = runOrvanta(
        {"keyframes", good, bad, "--size", "0.5", "--format", "json", "--out-dir", directory.path("out"), "-j", "1"});
    EXPECT_EQ(result.status, 2);
    simdjson::dom::parser parser;
    const std::vector<std::string> lines = linesOf(result.out);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(parser.parse(lines[0])["output"].get_string().value(), directory.path("out/good.json"));
    EXPECT_EQ(parser.parse(lines[1])["exitStatus"].get_int64().value(), 2);
    EXPECT_EQ(parser.parse(result.err)["error"]["file"].get_string().value(), bad);
    EXPECT_TRUE(std::filesystem::exists(directory.path("out/good.json")));
}

TEST(ProgramTest, Batch_WhatCannotWork_IsRefusedBeforeTheWork) {
    const TemporaryDirectory directory;
    const std::string a = directory.write("x.jsonl", kQuiet);
    const std::string b = directory.write("x.jsonl.gz", kQuiet);
    const std::string out = directory.path("out");
    expectRefused(runOrvanta({"keyframes", a, b, "--size", "0.5"}),
                  "2 recordings: their results need a folder, --out-dir DIR");
    expectRefused(runOrvanta({"keyframes", a, b, "--size", "0.5", "--out-dir", out}),
                  "--out-dir: the results of " + a + " and " + b + " would both be " + out + "/x.csv");
    expectRefused(runOrvanta({"keyframes", a, "--size", "0.5", "--out-dir", out, "-o", "y.csv"}),
                  "-o and --out-dir: one or the other");
    expectRefused(runOrvanta({"keyframes", "-", "--size", "0.5", "--out-dir", out}),
                  "--out-dir: the standard input has no name for its result; use -o");
    const ProcessResult noFolder = runOrvanta({"keyframes", a, "--size", "0.5", "--out-dir", a});
    EXPECT_EQ(noFolder.status, 1);
    EXPECT_THAT(noFolder.err, StartsWith("orvanta: " + a + ": is no folder"));
    EXPECT_EQ(directory.files(), (Names{"x.jsonl", "x.jsonl.gz"}));
}

TEST(ProgramTest, Info_Json_IsADocument) {
    const ProcessResult result = runOrvanta({"info", kSample, "--format", "json"});
    EXPECT_EQ(result.status, 0);
    simdjson::dom::parser parser;
    EXPECT_EQ(parser.parse(result.out)["streams"]["window"].get_int64().value(), 1256);
}

TEST(ProgramTest, Inspect_WithoutKeyframes_ShowsTheStagesBefore) {
    const TemporaryDirectory directory;
    const std::string quiet = directory.write("quiet", kQuiet);
    const ProcessResult text = runOrvanta({"inspect", quiet, "--size", "640x400"});
    EXPECT_EQ(text.status, 0);
    EXPECT_THAT(text.out, StartsWith("Live zones: 1\n"));
    EXPECT_THAT(text.out, Not(HasSubstr("Slices")));
    EXPECT_THAT(text.out, ::testing::EndsWith("Keyframes: 1\n      -   0:00.000  nothing closer  1280x800 at 0, 0\n"));
    EXPECT_THAT(text.err, HasSubstr("so the whole recording stays on show"));

    const ProcessResult json = runOrvanta({"inspect", quiet, "--size", "640x400", "--format", "json", "-q"});
    EXPECT_EQ(json.status, 0);
    simdjson::dom::parser parser;
    const simdjson::dom::element document = parser.parse(json.out);
    EXPECT_EQ(document["failure"].get_string().value(), "No keyframes were created!");
    EXPECT_EQ(document["keyframes"].at(0)["reason"].get_string().value(), "nothing closer");

    const ProcessResult strict = runOrvanta({"inspect", quiet, "--size", "640x400", "--strict"});
    EXPECT_EQ(strict.status, 1);
    EXPECT_THAT(strict.out, StartsWith("Live zones: 1\n"));
    EXPECT_EQ(strict.err, "orvanta: there is no keyframe: the whole recording stays on show (code 7)\n");
    EXPECT_EQ(runOrvanta({"inspect", quiet, "--size", "640x400", "--strict", "-o", directory.path("out")}).status, 1);
    EXPECT_EQ(directory.files(), Names{"quiet"});
}

TEST(ProgramTest, OutputThatCannotBeWritten_IsAFailure) {
    const ProcessResult result = runOrvanta({"keyframes", kSample, "--size", "640x400", "-o", "/dev/full"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "orvanta: /dev/full: cannot be written: No space left on device\n");
    const TemporaryDirectory directory;
    const std::string recording = directory.write("r", kQuiet);
    EXPECT_EQ(runOrvanta({"keyframes", recording, "--size", "640x400", "-o", recording}).status, 1);
    EXPECT_EQ(readFile(recording), kQuiet);
}

TEST(ProgramTest, Interrupt_EndsTheRunWithoutOutput) {
    const TemporaryDirectory directory;
    const std::string output = directory.write("out", "from before");
    ProcessOptions options;
    options.input = kQuiet;
    options.interruptAfterInput = true;
    const ProcessResult result = runOrvanta({"keyframes", "-", "--size", "640x400", "-o", output}, options);
    EXPECT_EQ(result.status, 130);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_EQ(result.err, "orvanta: cancelled\n");
    EXPECT_EQ(readFile(output), "from before");
    EXPECT_EQ(directory.files(), Names{"out"});
}

} // namespace
} // namespace OrvantaNS::testing
