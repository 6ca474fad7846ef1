#include "terminal/StandardOutputGuard.h"

#include <iostream>
#include <sstream>

#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

TEST(StandardOutputGuardTest, DropsTheLibrarysLines_AndGivesTheStreamBack) {
    std::ostringstream out;
    std::streambuf* const saved = std::cout.rdbuf(out.rdbuf());
    {
        const StandardOutputGuard guard;
        std::cout << "line" << std::endl;
    }
    std::cout << "result";
    std::cout.rdbuf(saved);
    EXPECT_EQ(out.str(), "result");
    EXPECT_TRUE(std::cout.good());
}

} // namespace
} // namespace OrvantaNS::command
