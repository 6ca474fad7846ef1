#include <cmath>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvantaException.h"
#include "ParserWorld.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using testing::ListeningReporter;

/// Reports `time` on each stage and returns the percentages.
std::vector<double> percentages(double clipStart, double clipStop, double time) {
    std::vector<double> reported;
    ListeningReporter reporter;
    reporter.onReport = [&reported](double percent) { reported.push_back(percent); };
    OV_DATA_STORE store;
    store.progress = &reporter;
    store.clipStart = clipStart;
    store.clipStop = clipStop;
    for (const OV_PROGRESS_STAGE stage : {OV_STAGE_PARSE, OV_STAGE_SLICE, OV_STAGE_MERGE}) {
        DataParser::setProgress(store, time, stage);
    }
    return reported;
}

TEST(ProgressTest, SetProgress_EachStage_TakesItsBandOfTheHundred) {
    EXPECT_THAT(percentages(0.0, 40.0, 0.0), ElementsAre(0.0, 20.0, 80.0));
    EXPECT_THAT(percentages(0.0, 40.0, 10.0), ElementsAre(5.0, 35.0, 85.0));
    EXPECT_THAT(percentages(0.0, 40.0, 40.0), ElementsAre(20.0, 80.0, 100.0));
}

TEST(ProgressTest, SetProgress_ClipThatStartsLate_IsMeasuredFromItsStart) {
    EXPECT_THAT(percentages(20.0, 60.0, 30.0), ElementsAre(5.0, 35.0, 85.0));
}

TEST(ProgressTest, SetProgress_TimeOutsideTheClip_IsNotClamped) {
    EXPECT_THAT(percentages(10.0, 20.0, 5.0), ElementsAre(-10.0, -10.0, 70.0));
    EXPECT_THAT(percentages(10.0, 20.0, 30.0), ElementsAre(40.0, 140.0, 120.0));
}

TEST(ProgressTest, SetProgress_UnknownStage_ReportsAsMerging) {
    std::vector<double> reported;
    ListeningReporter reporter;
    reporter.onReport = [&reported](double percent) { reported.push_back(percent); };
    OV_DATA_STORE store;
    store.progress = &reporter;
    store.clipStop = 10.0;
    DataParser::setProgress(store, 5.0, static_cast<OV_PROGRESS_STAGE>(3));
    DataParser::setProgress(store, 5.0, static_cast<OV_PROGRESS_STAGE>(-1));
    EXPECT_THAT(reported, ElementsAre(90.0, 90.0));
}

TEST(ProgressTest, SetProgress_ClipOfNoLength_ReportsWhatIsNotFinite) {
    for (const double percent : percentages(5.0, 5.0, 5.0)) {
        EXPECT_TRUE(std::isnan(percent));
    }
    for (const double percent : percentages(5.0, 5.0, 6.0)) {
        EXPECT_EQ(percent, std::numeric_limits<double>::infinity());
    }
    for (const double percent : percentages(5.0, 5.0, 4.0)) {
        EXPECT_EQ(percent, -std::numeric_limits<double>::infinity());
    }
}

TEST(ProgressTest, SetProgress_NoReporter_DoesNothing) {
    OV_DATA_STORE store;
    EXPECT_NO_THROW(DataParser::setProgress(store, 1.0, OV_STAGE_PARSE));
}

TEST(ProgressTest, SetProgress_Always_AsksBeforeItReports) {
    std::vector<char> calls;
    ListeningReporter reporter;
    reporter.onQuestion = [&calls] {
        calls.push_back('?');
        return false;
    };
    reporter.onReport = [&calls](double) { calls.push_back('!'); };
    OV_DATA_STORE store;
    store.progress = &reporter;
    store.clipStop = 10.0;
    DataParser::setProgress(store, 1.0, OV_STAGE_PARSE);
    DataParser::setProgress(store, 2.0, OV_STAGE_MERGE);
    EXPECT_THAT(calls, ElementsAre('?', '!', '?', '!'));
}

TEST(ProgressTest, SetProgress_Cancelled_ThrowsAndReportsNothing) {
    int reports = 0;
    ListeningReporter reporter;
    reporter.onQuestion = [] { return true; };
    reporter.onReport = [&reports](double) { ++reports; };
    OV_DATA_STORE store;
    store.progress = &reporter;
    store.clipStop = 10.0;
    try {
        DataParser::setProgress(store, 1.0, OV_STAGE_SLICE);
        FAIL() << "nothing was thrown";
    } catch (const OrvantaException& error) {
        EXPECT_EQ(error.errorCode(), OVERR_USER_CANCELLED);
        EXPECT_EQ(static_cast<int>(error.errorCode()), 8);
        EXPECT_STREQ(error.what(), "Need String! User Cancelled");
    }
    EXPECT_EQ(reports, 0);
}

} // namespace
} // namespace OrvantaNS
