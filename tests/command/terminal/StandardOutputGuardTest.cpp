#include "terminal/StandardOutputGuard.h"

#include <iostream>
#include <sstream>

#include <gtest/gtest.h>

namespace OrvantaNS::command {
namespace {

TEST(StandardOutputGuardTest, SendsTheLibrarysLinesToTheStandardError) {
    std::ostringstream out;
    std::ostringstream err;
    std::streambuf* const savedOut = std::cout.rdbuf(out.rdbuf());
    std::streambuf* const savedErr = std::cerr.rdbuf(err.rdbuf());
    {
        const StandardOutputGuard guard;
        std::cout << "line";
    }
    std::cout << "result";
    std::cout.rdbuf(savedOut);
    std::cerr.rdbuf(savedErr);
    EXPECT_EQ(out.str(), "result");
    EXPECT_EQ(err.str(), "line");
}

} // namespace
} // namespace OrvantaNS::command
