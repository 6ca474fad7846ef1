#include "report/ReportPage.h"

#include <array>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// The slow obvious way back: a letter at a time.
std::string fromBase64(const std::string& text) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char letter : text) {
        if (letter == '=') {
            break;
        }
        bits = bits << 6 | static_cast<unsigned>(letters.find(letter));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 255U);
        }
    }
    return bytes;
}

std::string unzipped(const std::string& packed) {
    z_stream stream{};
    EXPECT_EQ(inflateInit2(&stream, 15 + 16), Z_OK); // gzip alone
    std::vector<Bytef> input(packed.begin(), packed.end());
    stream.next_in = input.data();
    stream.avail_in = static_cast<uInt>(input.size());
    std::string text;
    int status = Z_OK;
    while (status == Z_OK) {
        std::array<Bytef, 4096> buffer;
        stream.next_out = buffer.data();
        stream.avail_out = static_cast<uInt>(buffer.size());
        status = inflate(&stream, Z_NO_FLUSH);
        text.append(reinterpret_cast<const char*>(buffer.data()), buffer.size() - stream.avail_out);
    }
    EXPECT_EQ(status, Z_STREAM_END);
    inflateEnd(&stream);
    return text;
}

TEST(ReportPageTest, Base64_EveryLengthOfTheLastGroup) {
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(base64(std::string("\xff\xfe\xfd\x00", 4)), "//79AA==");
}

TEST(ReportPageTest, PackedForPage_ComesBackWhateverTheBytes) {
    constexpr unsigned kSeed = 7;
    std::mt19937 random(kSeed);
    for (const std::size_t size : {0UL, 1UL, 65535UL, 65536UL, 300000UL}) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", " + std::to_string(size) + " bytes");
        std::string content(size, '\0');
        for (char& letter : content) {
            letter = static_cast<char>(random() & 255U); // Noise does not shrink: every buffer is filled.
        }
        EXPECT_EQ(unzipped(fromBase64(packedForPage(content))), content);
    }
}

TEST(ReportPageTest, RecordingLines_ReadBackToTheSameRequest) {
    const std::string text =
        "{\"format\": \"orvanta-recording\", \"version\": 1, \"timeScale\": 1000, \"windowsFlag\": true, "
        "\"description\": \"a \\\"b\\\"\", \"videoOffset\": 250}\n"
        "[0,\"region\",0,0,1280,800]\n[0,\"window\",1,2,3,4]\n[5,\"dirty\",1,2,3,5]\n"
        "[5,\"caret\",9,8,10,20]\n[5,\"cursor\",-4,7]\n[5,\"action\",0]\n[9,\"action\",1]\n";
    const Recording recording = testing::readText(text);
    const std::string lines = recordingLines(recording);
    const Recording again = testing::readText(lines);
    EXPECT_EQ(again.description, "a \"b\"");
    EXPECT_EQ(again.videoOffset, 250);
    EXPECT_TRUE(again.params.isWindows());
    EXPECT_EQ(again.streamOrderBreaks, 0);
    EXPECT_EQ(again.stop, 9);
    EXPECT_EQ(lines.substr(lines.find('\n')), text.substr(text.find('\n')));
}

TEST(ReportPageTest, ReportPage_HasItsDataOnceAndStaysOnePage) {
    if (!hasReportPage()) {
        GTEST_SKIP() << "built without the page";
    }
    const Recording recording = testing::readText(testing::kHeader + "[0,\"region\",0,0,1280,800]\n");
    Report report{recording, Json{{"engine", "value"}}, ReportVideo{"a b.mp4", "video/mp4", true, "bytes"}};
    const std::string page = reportPage(report);
    EXPECT_THAT(page, StartsWith("<!doctype html>"));
    EXPECT_THAT(page, EndsWith("</html>\n"));
    EXPECT_EQ(page.find("<!-- orvanta-data -->"), std::string::npos);

    const std::string before = "<script type=\"application/octet-stream\" id=\"orvanta-report\">";
    const std::size_t start = page.find(before) + before.size();
    const std::string data = unzipped(fromBase64(page.substr(start, page.find('<', start) - start)));
    EXPECT_THAT(data, HasSubstr("\"source\": \"f\""));
    EXPECT_THAT(data, HasSubstr("\"a b.mp4\""));
    EXPECT_THAT(page, HasSubstr("id=\"orvanta-video\">Ynl0ZXM=<"));
}

TEST(ReportPageTest, VideoType_ByEnding) {
    EXPECT_EQ(videoType("a.MP4"), "video/mp4");
    EXPECT_EQ(videoType("a.b.webm"), "video/webm");
    EXPECT_EQ(videoType("a.mov"), "video/quicktime");
    EXPECT_EQ(videoType("a.mkv"), "video/x-matroska");
    EXPECT_EQ(videoType("a"), "video/mp4");
}

} // namespace
} // namespace OrvantaNS::command
