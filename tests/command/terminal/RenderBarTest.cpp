#include "terminal/RenderBar.h"

#include <array>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(RenderTextTest, TellsSpeedPositionAndTimeLeft) {
    EXPECT_EQ(renderText({300, 30.0, 120.0, 1, 1}, 10.0), "0:30 of 2:00  30 fps  0:30 left");
    EXPECT_EQ(renderShare({300, 30.0, 120.0, 1, 1}), 0.25);
}

TEST(RenderTextTest, LengthUnknown_TellsWhatIsDone) {
    EXPECT_EQ(renderText({300, 3725.0, 0.0, 1, 1}, 10.0), "1:02:05  30 fps");
    EXPECT_EQ(renderShare({300, 3725.0, 0.0, 1, 1}), 0.0);
}

TEST(RenderTextTest, TwoPasses_ShareTheWholeBetweenThem) {
    EXPECT_EQ(renderShare({10, 60.0, 120.0, 1, 2}), 0.25);
    EXPECT_EQ(renderShare({10, 60.0, 120.0, 2, 2}), 0.75);
    EXPECT_THAT(renderText({10, 60.0, 120.0, 2, 2}, 10.0), HasSubstr("pass 2 of 2"));
}

TEST(RenderTextTest, BeyondTheEnd_StaysAtTheWhole) {
    EXPECT_EQ(renderShare({300, 130.0, 120.0, 1, 1}), 1.0);
    EXPECT_THAT(renderText({300, 130.0, 120.0, 1, 1}, 10.0), HasSubstr("0:00 left"));
}

/// What a bar draws in all on a screen of 60 columns whose clock is `now`.
std::string drawn(const RenderPosition& position, double& now) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    {
        RenderBar bar({file.get(), [] { return 60; }, [&now] { return now; }});
        bar.show(position);
        now += 10.0;
        bar.show(position);
    }
    std::rewind(file.get());
    std::array<char, 1000> text{};
    return {text.data(), std::fread(text.data(), 1, text.size(), file.get())};
}

TEST(RenderBarTest, DrawsItsLine) {
    double now = 100.0;
    EXPECT_EQ(drawn({300, 30.0, 120.0, 1, 1}, now),
              "\r\033[K[####               ]  25%  0:30 of 2:00  30 fps  0:30 left\r\033[K");
    EXPECT_EQ(drawn({300, 30.0, 0.0, 1, 1}, now), "\r\033[K0:30  30 fps\r\033[K");
}

} // namespace
} // namespace OrvantaNS::command
