#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "SharedFolder.h"

namespace OrvantaNS {
namespace {

using testing::SharedFile;

constexpr const char* kName = "cursordatadump.txt";

void dump(const Params& p) {
    OrvantaWorker().printStuff(p.targetWidth(), p.targetHeight(), p.foreWindows(), p.cursorActions(),
                               p.cursorLocations(), p.dirtyRects(), p.caretRects(), p.recordingRegions(),
                               p.timeScale());
}

TEST(PrintStuffTest, EmptyRequest_WritesSizesAndSixZeros) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    dump(Params{});
    EXPECT_EQ(file.text(), "0 0 100\n0\n0\n0\n0\n0\n0\n");
}

TEST(PrintStuffTest, FullRequest_WritesEveryRecordInItsOrder) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    Params p;
    p.setTargetWidth(640).setTargetHeight(-400).setTimeScale(10000000.0);
    p.foreWindows() = {{11, {1, 2, 3, 4}}, {12, {-1, -2, -3, -4}}};
    p.cursorActions() = {{21, 0}, {22, 1}, {23, 6}};
    p.cursorLocations() = {{31, 100, 200}, {-32, -5, 0}};
    p.dirtyRects() = {{41, {5, 6, 7, 8}}};
    p.caretRects() = {{51, {9, 10, 11, 12}}};
    p.recordingRegions() = {{61, {0, 1280, 0, 800}}, {9007199254740993, {13, 14, 15, 16}}};
    dump(p);
    EXPECT_EQ(file.text(), "640 -400 1e+07\n"
                           "2\n"
                           "1 2 3 4 11\n"
                           "-1 -2 -3 -4 12\n"
                           "3\n"
                           "0 21\n"
                           "1 22\n"
                           "6 23\n"
                           "2\n"
                           "31 100 200\n"
                           "-32 -5 0\n"
                           "1\n"
                           "5 6 7 8 41\n"
                           "1\n"
                           "9 10 11 12 51\n"
                           "2\n"
                           "0 1280 0 800 61\n"
                           "13 14 15 16 9007199254740993\n");
}

TEST(PrintStuffTest, ReplacesWhatWasThere) {
    const SharedFile file(kName);
    if (!file.usable()) {
        GTEST_SKIP() << "no folder to write to, or a dump stands there";
    }
    file.write("a much longer text than the one that is to come\n\n\n\n\n\n\n\n\n\n");
    dump(Params{}.setTimeScale(29.97));
    EXPECT_EQ(file.text(), "0 0 29.97\n0\n0\n0\n0\n0\n0\n");
}

TEST(PrintStuffTest, WithoutTheFolder_NothingHappens) {
    if (std::filesystem::exists("/Users/Shared")) {
        GTEST_SKIP() << "the folder stands";
    }
    ::testing::internal::CaptureStdout();
    EXPECT_NO_THROW(dump(Params{}));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(std::filesystem::exists("/Users/Shared"));
}

} // namespace
} // namespace OrvantaNS
