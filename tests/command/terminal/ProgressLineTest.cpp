#include "terminal/ProgressLine.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

/// A screen with a clock that the test turns.
class Screen {
public:
    explicit Screen(int columns) : columns_(columns), out_(open_memstream(&text_, &size_)) {}
    ~Screen() {
        std::fclose(out_);
        std::free(text_);
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    ProgressScreen get() {
        return {out_, [this] { return columns_; }, [this] { return now; }};
    }
    /// What was written since the last call, the marks that clear the line as <.
    std::string take() {
        std::fflush(out_);
        std::string text(text_ + taken_, size_ - taken_);
        taken_ = size_;
        const std::string erase = "\r\033[K";
        for (std::size_t at = text.find(erase); at != std::string::npos; at = text.find(erase)) {
            text.replace(at, erase.size(), "<");
        }
        return text;
    }

    double now = 100.0;

private:
    int columns_;
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::size_t taken_ = 0;
    std::FILE* out_;
};

TEST(ProgressLineTest, Show_FirstAfterHalfASecond_ThenTenTimesASecond) {
    Screen screen(80);
    ProgressLine line(screen.get());
    line.show(0.1);
    screen.now = 100.4999;
    line.show(0.2);
    EXPECT_EQ(screen.take(), "");
    screen.now = 100.5;
    line.show(0.25);
    EXPECT_EQ(screen.take(), "<[##########                              ]  25%");
    screen.now = 100.55;
    EXPECT_FALSE(line.isDue());
    line.show(0.3);
    EXPECT_EQ(screen.take(), "");
    screen.now = 100.65;
    EXPECT_TRUE(line.isDue());
    line.show(0.5);
    EXPECT_EQ(screen.take(), "<[####################                    ]  50%");
}

TEST(ProgressLineTest, Show_SameLine_IsNotDrawnAgain) {
    Screen screen(80);
    ProgressLine line(screen.get());
    screen.now = 101.0;
    line.show(0.5);
    EXPECT_NE(screen.take(), "");
    screen.now = 102.0;
    line.show(0.5001);
    EXPECT_EQ(screen.take(), "");
}

TEST(ProgressLineTest, Show_Text_TakesTheBarsPlace_AndIsCutToTheWidth) {
    const struct {
        int columns;
        const char* line;
    } cases[] = {
        {80, "<[####################                    ]  50%  9 frames/s"},
        // 16 columns of number and text, 3 around the bar, one free at the end: the bar has what is left, from 5 on.
        {25, "<[##   ]  50%  9 frames/s"},
        {24, "< 50%  9 frames/s"},
        {10, "< 50%  9 f"},
        {1, ""},
    };
    for (const auto& [columns, expected] : cases) {
        Screen screen(columns);
        ProgressLine line(screen.get());
        screen.now = 101.0;
        line.show(0.5, "9 frames/s");
        const std::string drawn = screen.take();
        EXPECT_EQ(drawn, expected) << columns;
    }
}

TEST(ProgressLineTest, End_TakesTheLineOffTheScreen_IfOneStandsThere) {
    Screen screen(80);
    { const ProgressLine line(screen.get()); }
    EXPECT_EQ(screen.take(), "");
    {
        ProgressLine line(screen.get());
        screen.now = 101.0;
        line.show(1.0);
        screen.take();
    }
    EXPECT_EQ(screen.take(), "<");
}

TEST(ProgressLineTest, Show_WhatIsNoShare_IsPassedOver) {
    Screen screen(80);
    ProgressLine line(screen.get());
    screen.now = 101.0;
    line.show(std::numeric_limits<double>::quiet_NaN());
    line.show(-0.1);
    EXPECT_EQ(screen.take(), "");
    line.show(7.0);
    EXPECT_EQ(screen.take(), "<[########################################] 100%");
}

} // namespace
} // namespace OrvantaNS::command
