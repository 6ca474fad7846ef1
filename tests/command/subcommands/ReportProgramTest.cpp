// `orvanta report` as people run it.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/ReportPage.h"
#include "support/Process.h"

namespace OrvantaNS::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string kSample = ORVANTA_SAMPLE;

class ReportProgramTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!command::hasReportPage()) {
            const ProcessResult run = runOrvanta({"report", kSample, "--size", "640x400"});
            EXPECT_EQ(run.status, 2);
            EXPECT_THAT(run.out, IsEmpty());
            EXPECT_THAT(run.err, HasSubstr("install Node.js"));
            GTEST_SKIP() << "built without the page";
        }
    }

    TemporaryDirectory directory_;
};

TEST_F(ReportProgramTest, WritesOnePageWithoutAnAddress) {
    const ProcessResult run =
        runOrvanta({"report", kSample, "--size", "640x400", "-o", directory_.path("report.html")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.err, IsEmpty());
    EXPECT_THAT(directory_.files(), ElementsAre("report.html"));
    const std::string page = readFile(directory_.path("report.html"));
    EXPECT_THAT(page, HasSubstr("id=\"orvanta-recording\""));
    EXPECT_THAT(page, Not(HasSubstr(" src=\"")));
    // The icon lies in the page itself; nothing else is linked.
    const std::string link = " href=\"";
    for (std::size_t at = page.find(link); at != std::string::npos; at = page.find(link, at + 1)) {
        EXPECT_EQ(page.substr(at + link.size(), 5), "data:");
    }
    EXPECT_THAT(page, Not(HasSubstr("orvanta-video\">")));
}

TEST_F(ReportProgramTest, EmbedsTheVideoBesideTheRecording) {
    directory_.write("session.jsonl", readFile(kSample));
    directory_.write("session.webm", "no real video");
    const ProcessResult run = runOrvanta({"report", directory_.path("session.jsonl"), "--size", "640x400",
                                          "--embed-video", "-o", directory_.path("report.html")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(readFile(directory_.path("report.html")), HasSubstr(command::base64("no real video")));
}

TEST_F(ReportProgramTest, EmbedWithoutAVideo_IsRefusedBeforeAnythingIsWritten) {
    const ProcessResult run =
        runOrvanta({"report", kSample, "--size", "640x400", "--embed-video", "-o", directory_.path("report.html")});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("no video"));
    EXPECT_THAT(directory_.files(), IsEmpty());
}

TEST_F(ReportProgramTest, VideoThatIsNotThere_IsNamed) {
    const ProcessResult run = runOrvanta({"report", kSample, directory_.path("none.mp4"), "--size", "640x400"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_THAT(run.err, HasSubstr("none.mp4"));
}

TEST_F(ReportProgramTest, VotingEngine_HasAReportToo) {
    const ProcessResult run = runOrvanta({"report", kSample, "--size", "640x400", "--engine", "voting"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("id=\"orvanta-report\""));
}

TEST_F(ReportProgramTest, Director_HasAReportToo) {
    const ProcessResult run = runOrvanta({"report", kSample, "--size", "640x400", "--engine", "director"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("id=\"orvanta-report\""));
}

TEST_F(ReportProgramTest, NothingToSee_IsAReportOfTheWholeRecording) {
    const std::string quiet = directory_.write(
        "quiet.jsonl", "{\"format\": \"orvanta-recording\", \"version\": 1, \"timeScale\": 1000, \"windowsFlag\": "
                       "false, \"description\": \"d\"}\n[0,\"region\",0,0,1280,800]\n[5000,\"action\",9]\n");
    const ProcessResult run = runOrvanta({"report", quiet, "--size", "640x400", "-o", directory_.path("report.html")});
    EXPECT_EQ(run.status, 0) << run.err;
}

} // namespace
} // namespace OrvantaNS::testing
