#include "reading/ScoreInput.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "reading/CsvTable.h"
#include "reading/InputError.h"

namespace OrvantaNS::command {
namespace {

const Rectangle kRegion{100, 1380, 50, 850};

std::string complaint(const std::function<void()>& read) {
    try {
        read();
    } catch (const InputError& error) {
        return error.what();
    }
    return "none";
}

std::string momentsComplaint(std::string_view text) {
    return complaint([text] { parseMoments(text, "m.csv", kRegion); });
}

std::string pathComplaint(std::string_view text) {
    return complaint([text] { parsePath(text, "p"); });
}

TEST(CsvTableTest, Rows_QuotedFields_HoldCommasQuotesAndLineEnds) {
    const CsvTable table("\xEF\xBB\xBF"
                         "a,b\r\n1,\"x, \"\"y\"\"\nz\"\r\n2,w\n",
                         "t");
    ASSERT_EQ(table.rows().size(), 2u);
    EXPECT_EQ(table.rows()[0].fields[1], "x, \"y\"\nz");
    EXPECT_EQ(table.rows()[1].fields[1], "w");
    EXPECT_EQ(table.rows()[1].line, 4);
    EXPECT_EQ(table.column("b"), 1u);
    EXPECT_FALSE(table.find("c"));
}

TEST(CsvTableTest, Faults_AreToldWithTheirLine) {
    EXPECT_NE(complaint([] { CsvTable("", "t"); }).find("t: is empty"), std::string::npos);
    EXPECT_NE(complaint([] { CsvTable("a,b\n1\n", "t"); }).find("t:2: has 1 fields; the first line names 2"),
              std::string::npos);
    EXPECT_NE(complaint([] { CsvTable("a\n\"x\n", "t"); }).find("no CSV"), std::string::npos);
    EXPECT_NE(complaint([] { CsvTable("a\nx\"y\n", "t"); }).find("no CSV"), std::string::npos);
}

TEST(ScoreInputTest, Moments_AreRelativeToTheRegion) {
    const auto moments = parseMoments("from,to,left,top,right,bottom,view,what\n"
                                      "1.5,3,100,50,300,150,close,\"typed, quickly\"\n"
                                      "4,5,0,0,1280,800,wide,all\n",
                                      "m.csv", kRegion);
    ASSERT_EQ(moments.size(), 2u);
    EXPECT_EQ(moments[0].from, 1.5);
    EXPECT_EQ(moments[0].rect, (camera::RealRect{0, 0, 200, 100}));
    EXPECT_EQ(moments[0].view, camera::MomentView::Close);
    EXPECT_EQ(moments[0].what, "typed, quickly");
    EXPECT_EQ(moments[1].view, camera::MomentView::Wide);
}

TEST(ScoreInputTest, Moments_FaultyOnes_AreRefused) {
    const std::string head = "from,to,left,top,right,bottom,view\n";
    EXPECT_NE(momentsComplaint("from,to\n").find("m.csv:1: has no column \"left\""), std::string::npos);
    EXPECT_NE(momentsComplaint(head + "1,x,0,0,1,1,close\n").find("m.csv:2: to: expected a number"), std::string::npos);
    EXPECT_NE(momentsComplaint(head + "1,inf,0,0,1,1,close\n").find("to: expected a number"), std::string::npos);
    EXPECT_NE(momentsComplaint(head + "1,2,0,0,1,1,near\n").find("view: expected close, window or wide"),
              std::string::npos);
    EXPECT_NE(momentsComplaint(head + "2,2,0,0,1,1,close\n").find("ends before it begins"), std::string::npos);
    EXPECT_NE(momentsComplaint(head + "1,2,5,0,5,1,close\n").find("covers nothing"), std::string::npos);
    EXPECT_EQ(momentsComplaint(head + "1,2,4,0,5,1,close\n"), "none");
}

TEST(ScoreInputTest, Path_CsvAndJsonOfOneAnswer_AreTheSame) {
    const auto csv = parsePath("tick,seconds,left,top,width,height,zoom,reason\n"
                               "9000,9,640,400,640,400,1,tight\n2500,2.5,0,10,800,500,0.8,\n",
                               "p");
    const auto json = parsePath(R"( {"keyframes": [{"seconds": 9, "left": 640, "top": 400, "width": 640, "height": 400},
                                    {"seconds": 2.5, "left": 0, "top": 10, "width": 800, "height": 500}]})",
                                "p");
    ASSERT_EQ(csv.size(), 2u);
    ASSERT_EQ(json.size(), 2u);
    // By time, whatever the order in the file.
    EXPECT_EQ(csv[0].seconds, 2.5);
    EXPECT_EQ(csv[0].frame, (camera::RealRect{0, 10, 800, 510}));
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(csv[i].seconds, json[i].seconds);
        EXPECT_EQ(csv[i].frame, json[i].frame);
    }
}

TEST(ScoreInputTest, Path_FaultyOnes_AreRefused) {
    EXPECT_NE(pathComplaint("seconds,left,top,width\n").find("has no column \"height\""), std::string::npos);
    EXPECT_NE(pathComplaint("seconds,left,top,width,height\n1,0,0,0,5\n").find("p:2: the frame covers nothing"),
              std::string::npos);
    EXPECT_NE(pathComplaint("{").find("no valid JSON"), std::string::npos);
    EXPECT_NE(pathComplaint("{}").find("no list \"keyframes\""), std::string::npos);
    EXPECT_NE(pathComplaint(R"({"keyframes": [1]})").find("keyframe 1 has no number \"seconds\""), std::string::npos);
    EXPECT_NE(pathComplaint(R"({"keyframes": [{"seconds": "1"}]})").find("no number \"seconds\""), std::string::npos);
}

} // namespace
} // namespace OrvantaNS::command
