#include "terminal/ProgressBar.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/Interrupt.h"

namespace OrvantaNS::command {
namespace {

/// What a bar draws for the given reports, its removal included.
std::string drawn(const std::vector<double>& reports) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const screen = open_memstream(&text, &size);
    {
        ProgressBar bar(screen);
        for (const double percent : reports) {
            bar.reportProgress(percent);
        }
    }
    std::fclose(screen);
    const std::string result(text, size);
    std::free(text);
    return result;
}

const std::string kClear = "\r\033[K";

std::string bar(int filled, const std::string& percent) {
    return "\r[" + std::string(static_cast<std::size_t>(filled), '#') +
           std::string(static_cast<std::size_t>(40 - filled), ' ') + "] " + percent + "%";
}

TEST(ProgressBarTest, Reports_AreDrawnOncePerPercent_AndCleared) {
    EXPECT_EQ(drawn({0.0, 0.4, 50.0, 50.9, 100.0}), bar(0, "  0") + bar(20, " 50") + bar(40, "100") + kClear);
}

TEST(ProgressBarTest, NoReport_DrawsNothing) { EXPECT_EQ(drawn({}), ""); }

TEST(ProgressBarTest, OddReports_KeepToTheBar) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(drawn({std::numeric_limits<double>::quiet_NaN(), -infinity, -1.0}), "");
    EXPECT_EQ(drawn({infinity, 1e300}), bar(40, "100") + kClear);
    // It never goes back.
    EXPECT_EQ(drawn({80.0, 75.0}), bar(32, " 80") + kClear);
}

TEST(ProgressBarTest, NoTerminal_IsSilent) {
    ProgressBar bar(nullptr);
    bar.reportProgress(50.0);
    EXPECT_FALSE(bar.isCancelled());
}

TEST(ProgressBarDeathTest, Interrupt_IsPassedOnToTheEngine) {
    // In a process of its own: the flag stays up.
    EXPECT_EXIT(
        {
            catchInterrupts();
            ProgressBar bar(nullptr);
            const bool before = bar.isCancelled();
            std::raise(SIGINT);
            std::exit(!before && bar.isCancelled() ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(ProgressBarDeathTest, SecondInterrupt_EndsTheProcess) {
    EXPECT_EXIT(
        {
            catchInterrupts();
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        ::testing::KilledBySignal(SIGINT), "");
}

} // namespace
} // namespace OrvantaNS::command
