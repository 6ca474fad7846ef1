// `orvanta render` end to end: what a user gets for a video, and what for a broken one.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "render/MediaTools.h"
#include "support/Process.h"

namespace OrvantaNS {
namespace {

using namespace OrvantaNS::testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// A session of four seconds on a small screen, whose video began half a second into it.
constexpr const char* kSession =
    R"({"format":"orvanta-recording","version":1,"timeScale":1000,"windowsFlag":true,"description":"","videoOffset":500}
[0,"region",0,0,320,200]
[0,"cursor",160,100]
[4500,"cursor",170,100]
)";

class RenderProgramTest : public ::testing::Test {
protected:
    /// The session with a video of 4 s beside it, made by the `ffmpeg` program.
    std::string session(const std::string& ending = "mp4",
                        const std::string& options = "-c:v libx264 -preset ultrafast",
                        const std::string& sound = "sine=frequency=440:duration=4") {
        const std::string path = directory_.write("session.jsonl", kSession);
        video_ = directory_.path("session." + ending);
        ffmpeg("-f lavfi -i testsrc2=size=320x200:rate=20:duration=4 " +
               (sound.empty() ? "" : "-f lavfi -i " + sound + " -c:a aac ") + options + " '" + video_ + "'");
        return path;
    }

    /// Renders and expects it to go well.
    std::string render(const std::string& recording, const std::string& name, std::vector<std::string> options = {}) {
        const std::string out = directory_.path(name);
        std::vector<std::string> arguments{"render", recording, "-o", out, "--preset", "ultrafast"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        message_ = result.err;
        return out;
    }

    TemporaryDirectory directory_;
    std::string video_;
    std::string message_;
};

TEST_F(RenderProgramTest, EachEnding_MakesItsContainerWithItsCodecs) {
    const std::string recording = session();
    struct Case {
        const char* name;
        const char* format;
        const char* video;
        const char* sound;
    };
    for (const Case& each : {Case{"out.mp4", "mov", "h264", "aac"}, Case{"out.MOV", "mov", "h264", "aac"},
                             Case{"out.mkv", "matroska", "h264", "aac"}, Case{"out.webm", "matroska", "vp9", "opus"},
                             Case{"out.gif", "gif", "gif", ""}}) {
        const std::string out = render(recording, each.name, {"--size", "160x100"});
        EXPECT_EQ(probe(out, "v", "format=format_name"), each.format) << each.name;
        EXPECT_EQ(probe(out, "v", "stream=codec_name"), each.video) << each.name;
        EXPECT_EQ(probe(out, "a", "stream=codec_name"), each.sound) << each.name;
        EXPECT_EQ(probe(out, "v", "stream=width"), "160") << each.name;
        EXPECT_EQ(probe(out, "v", "stream=height"), "100") << each.name;
        EXPECT_EQ(stamps(out).size(), 80U) << each.name;
        EXPECT_NEAR(std::stod(probe(out, "v", "format=duration")), 4.0, 0.06) << each.name;
        // Matroska counts from the first sample of sound that the decoder needs ahead of the video.
        EXPECT_NEAR(stamps(out).back() - stamps(out).front(), 3.95, 0.011) << each.name;
    }
}

TEST_F(RenderProgramTest, Mp4_HasItsIndexInFront) {
    const std::string bytes = readFile(render(session(), "out.mp4"));
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
}

TEST_F(RenderProgramTest, SoundThatFits_IsCopied) {
    const std::string out = render(session(), "out.mkv");
    const auto sums = [](const std::string& path) { return ffmpeg("-i '" + path + "' -map 0:a -c copy -f md5 -"); };
    EXPECT_EQ(sums(out), sums(video_));
}

TEST_F(RenderProgramTest, SoundThatDoesNotFit_IsEncodedAnewAndKeepsItsPlace) {
    // A second of silence, a second of a tone, silence again.
    const std::string recording =
        session("mkv", "-c:v libx264 -preset ultrafast -af \"volume=0:enable='not(between(t,1,2))'\" -c:a pcm_s16le");
    const std::string out = render(recording, "out.mp4");
    EXPECT_EQ(probe(out, "a", "stream=codec_name"), "aac");
    EXPECT_THAT(message_, HasSubstr("encoded anew"));
    const std::string samples = ffmpeg("-i '" + out + "' -map 0:a -ac 1 -ar 8000 -f u8 -");
    const auto loud = [&samples](double from, double to) {
        int most = 0;
        for (auto i = static_cast<std::size_t>(from * 8000); i < static_cast<std::size_t>(to * 8000); ++i) {
            most = std::max(most, std::abs(static_cast<unsigned char>(samples.at(i)) - 128));
        }
        return most > 5;
    };
    EXPECT_FALSE(loud(0.1, 0.95));
    EXPECT_TRUE(loud(1.02, 1.08));
    EXPECT_TRUE(loud(1.92, 1.98));
    EXPECT_FALSE(loud(2.05, 3.9));
}

TEST_F(RenderProgramTest, UnevenTimeStamps_AreKept) {
    // Pictures 0, 1, 4, 9, ... of the even ones.
    const std::string recording =
        session("mkv", "-vf \"select='eq(mod(sqrt(n),1),0)'\" -fps_mode vfr -c:v libx264 -preset ultrafast", "");
    const std::vector<double> before = stamps(video_);
    ASSERT_EQ(before.size(), 9U);
    ASSERT_NEAR(before[3], 0.45, 1e-3);
    for (const char* name : {"out.mkv", "out.mp4", "out.webm"}) {
        const std::vector<double> after = stamps(render(recording, name));
        ASSERT_EQ(after.size(), before.size()) << name;
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_NEAR(after[i], before[i], 1e-3) << name << " " << i;
        }
    }
}

TEST_F(RenderProgramTest, ConstantRate_RepeatsAndDropsPictures) {
    const std::string recording =
        session("mkv", "-vf \"select='eq(mod(sqrt(n),1),0)'\" -fps_mode vfr -c:v libx264 -preset ultrafast", "");
    const std::vector<double> even = stamps(render(recording, "out.mkv", {"--fps", "25"}));
    // The last picture, the 64th, begins at 3.2 s; how long it lasts is up to the container.
    ASSERT_GE(even.size(), 80U);
    for (std::size_t i = 0; i < even.size(); ++i) {
        ASSERT_NEAR(even[i], static_cast<double>(i) / 25.0, 1e-3);
    }
}

TEST_F(RenderProgramTest, ColourTags_AreKept) {
    const std::string recording =
        session("mp4",
                "-vf scale=out_range=full,setparams=range=pc:colorspace=smpte170m:color_primaries=smpte170m:"
                "color_trc=iec61966-2-1 -pix_fmt yuv420p -c:v libx264 -preset ultrafast -color_range pc "
                "-colorspace smpte170m -color_primaries smpte170m -color_trc iec61966-2-1",
                "");
    for (const char* name : {"out.mp4", "out.mkv", "out.mov", "out.webm"}) {
        const std::string out = render(recording, name);
        for (const char* field : {"color_range", "color_space", "color_primaries", "color_transfer"}) {
            EXPECT_EQ(probe(out, "v", std::string("stream=") + field),
                      probe(video_, "v", std::string("stream=") + field))
                << name << " " << field;
        }
    }
}

TEST_F(RenderProgramTest, DepthAndChroma_AreKept) {
    for (const char* format : {"yuv420p", "yuv422p", "yuv444p", "yuv420p10le", "yuv444p10le"}) {
        const std::string recording =
            session("mkv", std::string("-t 0.5 -c:v libx264 -preset ultrafast -pix_fmt ") + format, "");
        EXPECT_EQ(probe(render(recording, "out.mkv"), "v", "stream=pix_fmt"), format);
    }
}

TEST_F(RenderProgramTest, RgbVideo_BecomesWhatEveryPlayerShows) {
    // A flat colour survives the way there and back.
    const std::string recording = directory_.write("session.jsonl", kSession);
    ffmpeg("-f lavfi -i color=0xC04020:size=320x200:rate=10:duration=0.5 -c:v libx264rgb -pix_fmt rgb24 -qp 0 '" +
           directory_.path("session.mkv") + "'");
    const std::string out = render(recording, "out.mp4", {"--crf", "1"});
    EXPECT_EQ(probe(out, "v", "stream=pix_fmt"), "yuv420p");
    EXPECT_EQ(probe(out, "v", "stream=color_space"), "bt709");
    const auto pixels = rawVideo(out, "rgb24", "");
    ASSERT_GE(pixels.size(), 3U);
    EXPECT_NEAR(pixels[0], 0xC0, 3);
    EXPECT_NEAR(pixels[1], 0x40, 3);
    EXPECT_NEAR(pixels[2], 0x20, 3);
}

TEST_F(RenderProgramTest, Clip_CoversExactlyTheStretch) {
    // Recording times 1.5 to 3.5 are video times 1 to 3.
    const std::string out = render(session(), "out.mkv", {"--clip", "1.5:3.5"});
    const std::vector<double> times = stamps(out);
    ASSERT_EQ(times.size(), 40U);
    EXPECT_NEAR(times.front(), 0.0, 0.03);
    EXPECT_NEAR(times.back() - times.front(), 1.95, 1e-3);
    const std::vector<double> sound = stamps(out, "a");
    EXPECT_NEAR(sound.front(), 0.0, 0.03);
    EXPECT_NEAR(sound.back(), 2.0, 0.05);
    // The first picture is the source's 20th.
    const std::string shown = ffmpeg("-i '" + out + "' -frames:v 1 -pix_fmt gray -f rawvideo -");
    const std::string source = ffmpeg("-ss 1 -i '" + video_ + "' -frames:v 1 -pix_fmt gray -f rawvideo -");
    double difference = 0.0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        difference += std::abs(static_cast<unsigned char>(shown[i]) - static_cast<unsigned char>(source.at(i)));
    }
    EXPECT_LT(difference / static_cast<double>(shown.size()), 3.0);
}

TEST_F(RenderProgramTest, ClipBetweenTwoPictures_BeginsWithWhatShows) {
    const std::string recording = session("mkv", "-r 2 -c:v libx264 -preset ultrafast", "");
    const std::vector<double> times = stamps(render(recording, "out.mkv", {"--clip", "1.7:3.2"}));
    // Video time 1.2 to 2.7: the picture of 1.0 shows at first, then those of 1.5, 2.0 and 2.5.
    ASSERT_EQ(times.size(), 4U);
    EXPECT_NEAR(times[0], 0.0, 1e-3);
    EXPECT_NEAR(times[1], 0.3, 1e-3);
    EXPECT_NEAR(times[3], 1.3, 1e-3);
}

TEST_F(RenderProgramTest, VideoBesideTheRecording_IsFoundAndElseNamed) {
    const std::string recording = session("webm", "-c:v libvpx-vp9 -cpu-used 8 -deadline realtime", "");
    render(recording, "out.mp4");
    const std::string other = directory_.write("other.jsonl", kSession);
    const ProcessResult none = runOrvanta({"render", other, "-o", directory_.path("none.mp4")});
    EXPECT_EQ(none.status, 2);
    EXPECT_THAT(none.err, HasSubstr("no video lies beside it"));
    const ProcessResult given = runOrvanta({"render", other, video_, "-o", directory_.path("given.mp4")});
    EXPECT_EQ(given.status, 0) << given.err;
    std::string header = kSession;
    header.replace(header.find("\"description\""), 0, "\"video\":\"session.webm\",");
    const std::string named = directory_.write("named.jsonl", header);
    EXPECT_EQ(runOrvanta({"render", named, "-o", directory_.path("named.mp4")}).status, 0);
}

TEST_F(RenderProgramTest, VideoCutShort_IsRenderedAsFarAsItGoesAndTold) {
    for (const char* ending : {"mp4", "mkv"}) {
        const std::string recording = session(ending, "-movflags +faststart -g 10 -c:v libx264 -preset ultrafast");
        const std::string whole = readFile(video_);
        std::ofstream(video_, std::ios::binary | std::ios::trunc) << whole.substr(0, whole.size() * 6 / 10);
        const std::string out = directory_.path("out.mkv");
        const ProcessResult result = runOrvanta({"render", recording, "-o", out, "--preset", "ultrafast"});
        EXPECT_EQ(result.status, 1) << ending;
        EXPECT_THAT(result.err, HasSubstr("session.")) << ending;
        EXPECT_THAT(result.err, HasSubstr("as far as it goes")) << ending;
        const std::vector<double> times = stamps(out);
        EXPECT_GT(times.size(), 20U) << ending;
        EXPECT_LT(times.size(), 75U) << ending;
        std::remove(video_.c_str());
    }
}

TEST_F(RenderProgramTest, NoVideoAtAll_IsRefusedAndLeavesNothing) {
    const std::string recording = directory_.write("session.jsonl", kSession);
    const std::string text = directory_.write("session.mp4", "This is no video.");
    const std::string sound = directory_.path("sound.m4a");
    ffmpeg("-f lavfi -i sine=duration=1 -c:a aac '" + sound + "'");
    for (const std::string& video : {text, sound, directory_.path("missing.mp4")}) {
        const ProcessResult result = runOrvanta({"render", recording, video, "-o", directory_.path("out.mp4")});
        EXPECT_EQ(result.status, 2) << video;
        EXPECT_THAT(result.err, HasSubstr(video));
    }
    EXPECT_THAT(directory_.files(), ElementsAre("session.jsonl", "session.mp4", "sound.m4a"));
}

TEST_F(RenderProgramTest, WhatCannotBeMeant_IsRefusedWithTheOptionsName) {
    const std::string recording = session("mp4", "-t 0.2 -c:v libx264 -preset ultrafast", "");
    struct Case {
        std::vector<std::string> options;
        const char* message;
    };
    const Case cases[] = {
        {{"-o", directory_.path("out.avi")}, ".mp4, .mov, .webm, .mkv, .gif"},
        {{"-o", directory_.path("out")}, "ending"},
        {{"-o", directory_.path("o.mp4"), "--size", "161x100"}, "160x100"},
        {{"-o", directory_.path("o.mp4"), "--size", "4x4"}, "4x4"},
        {{"-o", directory_.path("o.mp4"), "--fill", "plaid"}, "--fill plaid"},
        {{"-o", directory_.path("o.mp4"), "--easing", "bouncy"}, "--easing"},
        {{"-o", directory_.path("o.mp4"), "--crf", "70"}, "--crf 70"},
        {{"-o", directory_.path("o.mp4"), "--bitrate", "fast"}, "--bitrate fast"},
        {{"-o", directory_.path("o.mp4"), "--preset", "warp"}, "--preset warp"},
        {{"-o", directory_.path("o.mp4"), "--fps", "0"}, "--fps 0"},
        {{"-o", directory_.path("o.mp4"), "--max-zoom", "0"}, "--max-zoom 0"},
        {{"-o", directory_.path("o.mp4"), "--frames-at", "1,x"}, "--frames-at x"},
    };
    for (const Case& each : cases) {
        std::vector<std::string> arguments{"render", recording};
        arguments.insert(arguments.end(), each.options.begin(), each.options.end());
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 2) << each.message;
        EXPECT_THAT(result.err, HasSubstr(each.message));
    }
    EXPECT_THAT(directory_.files(), ElementsAre("session.jsonl", "session.mp4"));
}

TEST_F(RenderProgramTest, OutputThatCannotBeWritten_FailsAndKeepsWhatWasThere) {
    const std::string recording = session();
    const std::string nowhere = directory_.path("no/such/folder/out.mp4");
    const ProcessResult result = runOrvanta({"render", recording, "-o", nowhere});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr(nowhere));
    const std::string before = readFile(video_);
    const ProcessResult own = runOrvanta({"render", recording, video_, "-o", video_});
    EXPECT_EQ(own.status, 1);
    EXPECT_EQ(readFile(video_), before);
}

TEST_F(RenderProgramTest, FullDisk_FailsAndLeavesNothing) {
    const std::string recording = session("mp4", "-c:v libx264 -preset ultrafast", "");
    const std::string old = directory_.write("out.mkv", "old");
    // A limit on the size of files stands for a disk that is full.
    const std::string script = "ulimit -f 8; trap '' XFSZ; '" ORVANTA_PROGRAM "' render '" + recording + "' -o '" +
                               old + "' 2>'" + directory_.path("message") + "'; echo $?";
    EXPECT_EQ(shell(script), "1\n");
    EXPECT_THAT(readFile(directory_.path("message")), HasSubstr("File too large"));
    EXPECT_EQ(readFile(old), "old");
    EXPECT_THAT(directory_.files(), ElementsAre("message", "out.mkv", "session.jsonl", "session.mp4"));
}

TEST_F(RenderProgramTest, CtrlC_LeavesNothingBehind) {
    const std::string recording = session();
    // Slow enough to be under way for minutes, were it not for the signal.
    const std::string script = "'" ORVANTA_PROGRAM "' render '" + recording + "' --size 1920x1200 --fps 500 --preset " +
                               "veryslow -o '" + directory_.path("out.mp4") +
                               "' 2>/dev/null & pid=$!; sleep 1; kill -INT $pid; wait $pid; echo $?";
    EXPECT_EQ(shell("bash -c \"set -m; $(cat <<'EOF'\n" + script + "\nEOF\n)\""), "130\n");
    EXPECT_THAT(directory_.files(), ElementsAre("session.jsonl", "session.mp4"));
}

TEST_F(RenderProgramTest, Stills_AreNamedAfterTheirMoments) {
    const std::string recording = session();
    const ProcessResult result =
        runOrvanta({"render", recording, "--frames-at", "1,0:02.5", "-o", directory_.path("stills")});
    EXPECT_EQ(result.status, 0) << result.err;
    const std::string still = directory_.path("stills/session-0001.000s.png");
    EXPECT_EQ(probe(still, "v", "stream=width"), "320");
    EXPECT_EQ(probe(directory_.path("stills/session-0002.500s.png"), "v", "stream=height"), "200");
    // Recording time 1 is video time 0.5: its tenth picture.
    const std::string shown = ffmpeg("-i '" + still + "' -pix_fmt gray -f rawvideo -");
    const std::string source = ffmpeg("-ss 0.5 -i '" + video_ + "' -frames:v 1 -pix_fmt gray -f rawvideo -");
    ASSERT_EQ(shown.size(), source.size());
    double difference = 0.0;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        difference += std::abs(static_cast<unsigned char>(shown[i]) - static_cast<unsigned char>(source[i]));
    }
    // Colours went to RGB and back; the next picture differs by ten times as much.
    EXPECT_LT(difference / static_cast<double>(shown.size()), 2.0);
}

TEST_F(RenderProgramTest, Batch_EachRecordingHasItsVideo_AndFailuresAreListed) {
    const std::string good = session("mp4", "-t 1 -c:v libx264 -preset ultrafast");
    const std::string cut = directory_.write("cut.jsonl", kSession);
    const std::string whole = readFile(video_);
    directory_.write("cut.mp4", whole.substr(0, whole.size() * 9 / 10)); // Without its index: no video at all.
    const std::string alone = directory_.write("alone.jsonl", kSession);
    const std::string out = directory_.path("videos");
    const ProcessResult result = runOrvanta({"render", good, cut, alone, "--out-dir", out, "--jobs", "2", "--preset",
                                             "ultrafast", "--container", "mkv", "--size", "160x100"});
    EXPECT_EQ(result.status, 2);
    std::vector<std::string> lines = linesOf(result.out);
    std::sort(lines.begin(), lines.end());
    EXPECT_THAT(lines, ElementsAre(alone + ": failed", cut + ": failed",
                                   good + ": 160x100, 1.0 s -> " + directory_.path("videos/session.mkv")));
    EXPECT_THAT(result.err, HasSubstr("orvanta: 2 of 3 recordings failed:\n  " + cut + ": "));
    EXPECT_THAT(result.err, HasSubstr("\n  " + alone + ": no video lies beside it"));
    EXPECT_EQ(stamps(directory_.path("videos/session.mkv")).size(), 20U);
    EXPECT_EQ(shell("ls '" + out + "'"), "session.mkv\n");
}

TEST_F(RenderProgramTest, Batch_VideoCutShort_IsKeptAndAFailure) {
    const std::string recording = session("mkv", "-g 10 -c:v libx264 -preset ultrafast");
    const std::string whole = readFile(video_);
    std::ofstream(video_, std::ios::binary | std::ios::trunc) << whole.substr(0, whole.size() * 6 / 10);
    const std::string out = directory_.path("videos");
    const ProcessResult result = runOrvanta({"render", recording, "--out-dir", out, "--preset", "ultrafast"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("as far as it goes"));
    EXPECT_GT(stamps(directory_.path("videos/session.mp4")).size(), 20U);
}

TEST_F(RenderProgramTest, Batch_Stills_HaveAFolderForEachRecording) {
    const std::string recording = session();
    const ProcessResult result =
        runOrvanta({"render", recording, "--out-dir", directory_.path("stills"), "--frames-at", "1,2"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(shell("ls '" + directory_.path("stills/session") + "'"),
              "session-0001.000s.png\nsession-0002.000s.png\n");
}

TEST_F(RenderProgramTest, Batch_WhatCannotWork_IsRefusedBeforeTheWork) {
    const std::string recording = session("mp4", "-t 0.2 -c:v libx264 -preset ultrafast", "");
    const std::string other = directory_.write("other.jsonl", kSession);
    const std::string folder = directory_.path("videos");
    struct Case {
        std::vector<std::string> arguments;
        const char* message;
    };
    const Case cases[] = {
        {{recording, video_, other, "-o", "x.mp4"}, "--out-dir DIR"},
        {{recording}, "-o FILE is missing"},
        {{recording, "-o", "x.mp4", "--out-dir", folder}, "--out-dir"},
        {{recording, "-o", "x.mp4", "--container", "mkv"}, "--container"},
        {{recording, other, "--out-dir", folder, "--path", "x.json"}, "--path"},
        {{recording, other, "--out-dir", folder, "--fill", "plaid"}, "--fill plaid"},
        {{recording, "--out-dir", folder, "--container", "avi"}, "--container"},
    };
    for (const Case& each : cases) {
        std::vector<std::string> arguments{"render"};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 2) << each.message;
        EXPECT_THAT(result.err, HasSubstr(each.message));
        EXPECT_EQ(result.out, "");
    }
    // The videos would take the place of those that they are made of.
    const std::string before = readFile(video_);
    const ProcessResult own = runOrvanta({"render", recording, "--out-dir", directory_.path(".")});
    EXPECT_EQ(own.status, 1);
    EXPECT_THAT(own.err, HasSubstr("is the video itself"));
    EXPECT_EQ(readFile(video_), before);
}

TEST_F(RenderProgramTest, Messages_AreObjectsWhenAskedFor) {
    const std::string recording = session("mp4", "-t 0.2 -c:v libx264 -preset ultrafast", "");
    const auto errorOf = [](const std::vector<std::string>& arguments) {
        return nlohmann::json::parse(runOrvanta(arguments).err).at("error");
    };
    const std::string out = directory_.path("out.mp4");
    EXPECT_EQ(errorOf({"render", recording, "-o", out, "--fill", "plaid", "--messages", "json"}).at("exitStatus"), 2);
    EXPECT_EQ(errorOf({"render", recording, "-o", out, "--messages=json", "--nonsense"}).at("exitStatus"), 2);
    const std::string missing = directory_.path("none.jsonl");
    EXPECT_EQ(errorOf({"render", missing, "-o", out, "--messages", "json"}).at("file"), missing);
    EXPECT_EQ(errorOf({"report", missing, "--size", "0.5", "-o", out, "--messages", "json"}).at("exitStatus"), 2);
    EXPECT_EQ(errorOf({"score", missing, "--size", "0.5", "--format", "json"}).at("file"), missing);
    // Text though the result is JSON.
    const ProcessResult text =
        runOrvanta({"score", missing, "--size", "0.5", "--format", "json", "--messages", "text"});
    EXPECT_THAT(text.err, ::testing::StartsWith("orvanta: "));
}

TEST_F(RenderProgramTest, Output_IsLookedAtBeforeTheWork) {
    const std::string missing = directory_.path("none.jsonl"); // Would be told first if it were read first.
    const std::string nowhere = directory_.path("no/out");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"render", missing, "-o", nowhere + ".mp4"},
          std::vector<std::string>{"score", missing, "--size", "0.5", "-o", nowhere + ".txt"}}) {
        const ProcessResult result = runOrvanta(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "orvanta: " + arguments.back() + ": cannot be written: No such file or directory\n");
    }
    const std::string folder = directory_.path(".");
    EXPECT_THAT(runOrvanta({"score", missing, "--size", "0.5", "-o", folder}).err, HasSubstr("is a directory"));
    const std::string path = directory_.write("path.csv", "seconds,left,top,width,height\n");
    const std::string recording = directory_.write("session.jsonl", kSession);
    EXPECT_THAT(runOrvanta({"score", recording, path, "--size", "0.5", "-o", path}).err,
                HasSubstr("is the path itself"));
    EXPECT_EQ(readFile(path), "seconds,left,top,width,height\n");
}

TEST_F(RenderProgramTest, Preview_HasAQuarterOfTheSize) {
    const std::string out = render(session(), "out.mp4", {"--preview"});
    EXPECT_EQ(probe(out, "v", "stream=width"), "80");
    EXPECT_EQ(probe(out, "v", "stream=height"), "50");
}

TEST_F(RenderProgramTest, Portrait_StandsOnItsFill) {
    // The whole recording shows, 100 wide and 62.5 high in the middle of 100x200.
    const std::string recording = directory_.write("session.jsonl", kSession);
    ffmpeg("-f lavfi -i color=white:size=320x200:rate=10:duration=0.5 -pix_fmt yuv420p '" +
           directory_.path("session.mp4") + "'");
    struct Case {
        const char* fill;
        int top;
    };
    for (const Case& each : {Case{"black", 0}, Case{"#808080", 128}, Case{"blur", 255}}) {
        const std::string out = render(recording, "out.mkv", {"--size", "100x200", "--crf", "1", "--fill", each.fill});
        const auto pixels = rawVideo(out, "gray", "");
        ASSERT_GE(pixels.size(), 100U * 200U);
        const auto at = [&pixels](int x, int y) { return pixels[static_cast<std::size_t>(y * 100 + x)]; };
        EXPECT_NEAR(at(50, 30), each.top, 4) << each.fill;
        EXPECT_NEAR(at(50, 170), each.top, 4) << each.fill;
        EXPECT_NEAR(at(50, 100), 255, 4) << each.fill;
        EXPECT_NEAR(at(2, 72), 255, 4) << each.fill;
        EXPECT_NEAR(at(50, 66), each.top, 4) << each.fill;
    }
}

TEST_F(RenderProgramTest, EditedPath_IsWhatIsRendered) {
    const std::string recording = directory_.write("session.jsonl", kSession);
    // White to the left of column 160, black to its right.
    ffmpeg("-f lavfi -i \"color=black:size=320x200:rate=10:duration=4,drawbox=w=160:h=200:c=white:t=fill\" -pix_fmt "
           "yuv420p '" +
           directory_.path("session.mp4") + "'");
    const std::string path = directory_.path("path.json");
    ASSERT_EQ(runOrvanta({"keyframes", recording, "--size", "160x100", "-o", path}).status, 0);
    nlohmann::json document = nlohmann::json::parse(readFile(path));
    ASSERT_EQ(document.at("keyframes").size(), 1U);
    nlohmann::json& keyframe = document["keyframes"][0];
    for (const auto& [name, value] : {std::pair("left", 0), {"top", 0}, {"width", 160}, {"height", 100}}) {
        (keyframe.contains("rectangle") ? keyframe["rectangle"] : keyframe)[name] = value;
    }
    std::ofstream(path) << document;
    const std::string out = render(recording, "out.mkv", {"--path", path, "--crf", "1"});
    const auto pixels = rawVideo(out, "gray", "");
    constexpr std::size_t kSize = std::size_t{320} * 200; // The video's size, of the path's shape.
    ASSERT_EQ(pixels.size(), kSize * 40);
    // Half a second into the session, and of the move of one second, a part of the black shows; at its end none.
    EXPECT_LT(pixels[100 * 320 + 310], 100);
    EXPECT_GT(pixels[kSize * 30 + 100 * 320 + 310], 230);
    // What would decide otherwise is refused beside it.
    const ProcessResult both = runOrvanta({"render", recording, "--path", path, "--engine", "voting", "-o", out});
    EXPECT_EQ(both.status, 2);
}

TEST_F(RenderProgramTest, Wishes_AreLaidOverTheEnginesAnswer) {
    const std::string recording = directory_.write("session.jsonl", kSession);
    ffmpeg("-f lavfi -i \"color=black:size=320x200:rate=10:duration=4,drawbox=w=160:h=200:c=white:t=fill\" -pix_fmt "
           "yuv420p '" +
           directory_.path("session.mp4") + "'");
    const std::string out = render(recording, "out.mkv", {"--pin", "1:4@160x100+0+0", "--crf", "1"});
    const auto pixels = rawVideo(out, "gray", "");
    constexpr std::size_t kSize = std::size_t{320} * 200;
    ASSERT_EQ(pixels.size(), kSize * 40);
    EXPECT_LT(pixels[100 * 320 + 310], 100);
    EXPECT_GT(pixels[kSize * 30 + 100 * 320 + 310], 230);
}

TEST_F(RenderProgramTest, SameCall_SameBytes) {
    const std::string recording = session();
    const std::string first = readFile(render(recording, "first.mp4", {"--size", "160x100"}));
    EXPECT_EQ(readFile(render(recording, "second.mp4", {"--size", "160x100"})), first);
}

} // namespace
} // namespace OrvantaNS
