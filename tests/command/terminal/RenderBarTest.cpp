#include "terminal/RenderBar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(RenderLineTest, TellsShareSpeedPositionAndTimeLeft) {
    const std::string line = renderLine({300, 30.0, 120.0, 1, 1}, 10.0, 80);
    EXPECT_THAT(line, HasSubstr("25%"));
    EXPECT_THAT(line, HasSubstr("0:30 of 2:00"));
    EXPECT_THAT(line, HasSubstr("30 fps"));
    EXPECT_THAT(line, HasSubstr("0:30 left"));
    EXPECT_THAT(line, HasSubstr("[#######"));
}

TEST(RenderLineTest, LengthUnknown_TellsWhatIsDone) {
    const std::string line = renderLine({300, 3725.0, 0.0, 1, 1}, 10.0, 80);
    EXPECT_THAT(line, HasSubstr("1:02:05"));
    EXPECT_THAT(line, Not(HasSubstr("left")));
    EXPECT_THAT(line, Not(HasSubstr("%")));
}

TEST(RenderLineTest, TwoPasses_ShareTheWholeBetweenThem) {
    EXPECT_THAT(renderLine({10, 60.0, 120.0, 1, 2}, 10.0, 80), HasSubstr("25%"));
    EXPECT_THAT(renderLine({10, 60.0, 120.0, 2, 2}, 10.0, 80), HasSubstr("75%"));
}

TEST(RenderLineTest, FitsTheTerminal) {
    for (int columns = 0; columns < 120; ++columns) {
        EXPECT_LE(static_cast<int>(renderLine({300, 30.0, 120.0, 1, 1}, 10.0, columns).size()),
                  std::max(columns - 1, 0));
    }
}

TEST(RenderLineTest, BeyondTheEnd_StaysAtTheWhole) {
    EXPECT_THAT(renderLine({300, 130.0, 120.0, 1, 1}, 10.0, 80), HasSubstr("100%"));
}

} // namespace
} // namespace OrvantaNS::command
