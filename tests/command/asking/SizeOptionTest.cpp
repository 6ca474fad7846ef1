#include "asking/SizeOption.h"

#include <string>

#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

constexpr Rectangle kWide{0, 1280, 0, 800};

FrameSize resolve(std::string_view text, const Rectangle& region = kWide, EngineChoice engine = EngineChoice::Value) {
    return resolveSize(parseSize(text), region, engine);
}

std::string sizeError(std::string_view text, const Rectangle& region = kWide) {
    try {
        resolve(text, region);
    } catch (const OptionError& error) {
        return error.what();
    }
    return {};
}

TEST(SizeOptionTest, Pixels_AreTakenAsTheyStand) {
    EXPECT_EQ(resolve("640x400"), (FrameSize{640, 400}));
    EXPECT_EQ(resolve("641X1"), (FrameSize{641, 1}));
    EXPECT_EQ(resolve("0x2147483647"), (FrameSize{0, 2147483647}));
    // Even without a region: the engine has its own words for that.
    EXPECT_EQ(resolve("640x400", Rectangle{}), (FrameSize{640, 400}));
}

TEST(SizeOptionTest, Scale_IsAShareOfTheRegionRoundedDownToEven) {
    EXPECT_EQ(resolve("0.5"), (FrameSize{640, 400}));
    // 0.3 x 1366 = 409.8 and 0.3 x 768 = 230.4.
    EXPECT_EQ(resolve("0.3", Rectangle{0, 1366, 0, 768}), (FrameSize{408, 230}));
    // However near 1, the frame stays smaller than the region: 1279.99 and 799.99.
    EXPECT_EQ(resolve("0.99999"), (FrameSize{1278, 798}));
    // A region that does not begin at the origin.
    EXPECT_EQ(resolve("0.5", Rectangle{100, 500, 50, 250}), (FrameSize{200, 100}));
}

TEST(SizeOptionTest, Aspect_IsTheLargestThatFits) {
    EXPECT_EQ(resolve("9:16"), (FrameSize{450, 800}));                               // 800 x 9 / 16 = 450
    EXPECT_EQ(resolve("1:1"), (FrameSize{800, 800}));                                // 62.5 % of the region
    EXPECT_EQ(resolve("9:16", Rectangle{0, 1920, 0, 1080}), (FrameSize{606, 1080})); // 607.5
    EXPECT_EQ(resolve("9:16", Rectangle{0, 1366, 0, 768}), (FrameSize{432, 768}));
    EXPECT_EQ(resolve("2.4:1", Rectangle{0, 800, 0, 1280}), (FrameSize{800, 332})); // 333.3
    // Exactly three quarters of 1920x1080.
    EXPECT_EQ(resolve("4:3", Rectangle{0, 1920, 0, 1080}), (FrameSize{1440, 1080}));
}

TEST(SizeOptionTest, Aspect_NearTheRegionsOwn_IsHalved) {
    EXPECT_EQ(resolve("16:10"), (FrameSize{640, 400}));
    EXPECT_EQ(resolve("16:9"), (FrameSize{640, 360}));                             // 1280x720 covers 90 %
    EXPECT_EQ(resolve("16:9", Rectangle{0, 1366, 0, 768}), (FrameSize{682, 384})); // 1365.3x768 / 2
}

TEST(SizeOptionTest, Aspect_ForTheVotingEngine_StaysBelowTheRegionInBothDimensions) {
    // 799 x 9 / 16 = 449.4.
    EXPECT_EQ(resolve("9:16", kWide, EngineChoice::Voting), (FrameSize{448, 798}));
    EXPECT_EQ(resolve("1:1", kWide, EngineChoice::Voting), (FrameSize{798, 798}));
}

TEST(SizeOptionTest, NotASize_IsRefused) {
    for (const char* text : {"x", "640x", "x400", "640.5x400", "-640x400", "640x2147483648", "640x400x2"}) {
        EXPECT_EQ(sizeError(text), std::string("--size ") + text + ": expected WIDTHxHEIGHT in whole pixels");
    }
    for (const char* text : {":", "9:", ":16", "0:1", "1:0", "-9:16", "9:16:1"}) {
        EXPECT_EQ(sizeError(text), std::string("--size ") + text + ": expected an aspect such as 9:16");
    }
    for (const char* text : {"", "half", "-0.5", "50%"}) {
        EXPECT_EQ(sizeError(text), std::string("--size ") + text +
                                       ": expected WIDTHxHEIGHT, a scale such as 0.5 or an aspect such as 9:16");
    }
    for (const char* text : {"0", "1", "1.5", "640"}) {
        EXPECT_EQ(sizeError(text), std::string("--size ") + text + ": a scale must be above 0 and below 1");
    }
}

TEST(SizeOptionTest, ShareOfAnEmptyRegion_IsRefused) {
    for (const Rectangle& region : {Rectangle{}, Rectangle{10, 0, 0, 10}, Rectangle{0, 10, 5, 5}}) {
        for (const char* text : {"0.5", "9:16"}) {
            EXPECT_EQ(sizeError(text, region),
                      "--size: the recording's first region is empty, so only WIDTHxHEIGHT has a meaning");
        }
    }
}

TEST(SizeOptionTest, ExtremeAspects_GiveWhatTheEngineCanRefuse) {
    EXPECT_EQ(resolve("0.00000001:1"), (FrameSize{0, 800}));
    EXPECT_EQ(resolve("99999999999999999999999999999999:1"), (FrameSize{1280, 0}));
}

TEST(SizeOptionTest, PixelsWithAColon_AreAskedAbout) {
    EXPECT_EQ(sizeError("640:400"), "--size 640:400: did you mean 640x400? The shape alone is written 8:5");
    EXPECT_EQ(sizeError("1920:1080"), "--size 1920:1080: did you mean 1920x1080? The shape alone is written 16:9");
    // A shape that small whole numbers do not tell.
    EXPECT_EQ(sizeError("239:100"), "--size 239:100: did you mean 239x100? The shape alone is written 2.39:1");
    EXPECT_EQ(sizeError("64:64"), "--size 64:64: did you mean 64x64? The shape alone is written 1:1");
    // No frame is that narrow, so these are shapes.
    EXPECT_EQ(sizeError("64:27"), "");
    EXPECT_EQ(sizeError("63:64"), "");
    EXPECT_EQ(sizeError("2.39:1"), "");
}

std::string checkError(const FrameSize& size, EngineChoice engine, Question question = Question::Timeline) {
    try {
        checkSize(size, kWide, engine, question, "f");
    } catch (const OptionError& error) {
        return error.what();
    }
    return {};
}

TEST(SizeOptionTest, CheckSize_AtTheLimitsOfEachEngine) {
    for (const EngineChoice engine : {EngineChoice::Value, EngineChoice::Voting}) {
        EXPECT_EQ(checkError({64, 64}, engine), "");
        EXPECT_NE(checkError({63, 64}, engine), "");
        EXPECT_NE(checkError({64, 63}, engine), "");
        EXPECT_NE(checkError({-640, 400}, engine), "");
        EXPECT_EQ(checkError({1279, 799}, engine), "");
        EXPECT_NE(checkError({1280, 800}, engine), "");
    }
    // Too large in one dimension only.
    EXPECT_EQ(checkError({1280, 799}, EngineChoice::Value), "");
    EXPECT_EQ(checkError({100, 5000}, EngineChoice::Value), "");
    EXPECT_NE(checkError({1280, 799}, EngineChoice::Voting), "");
    EXPECT_NE(checkError({1279, 800}, EngineChoice::Voting), "");
    // A window's frame.
    EXPECT_EQ(checkError({1, 1}, EngineChoice::Value, Question::Window), "");
    EXPECT_NE(checkError({0, 1}, EngineChoice::Value, Question::Window), "");
    EXPECT_EQ(checkError({1280, 801}, EngineChoice::Value, Question::Window), "");
    EXPECT_NE(checkError({1281, 801}, EngineChoice::Value, Question::Window), "");
}

} // namespace
} // namespace OrvantaNS::command
