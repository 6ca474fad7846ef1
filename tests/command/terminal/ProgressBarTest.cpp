#include "terminal/ProgressBar.h"

#include <algorithm>
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

/// What stands on the screen in the end, line by line as it was drawn, for reports that come a second apart.
std::vector<std::string> drawn(const std::vector<double>& reports) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const out = open_memstream(&text, &size);
    {
        double now = 0.0;
        ProgressBar bar({out, [] { return 20; }, [&now] { return now; }});
        for (const double percent : reports) {
            now += 1.0;
            bar.reportProgress(percent);
        }
    }
    std::fclose(out);
    const std::string all(text, size);
    std::free(text);
    std::vector<std::string> lines;
    const std::string erase = "\r\033[K";
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t next = std::min(all.find(erase, at + 1), all.size());
        lines.push_back(all.substr(at + erase.size(), next - at - erase.size()));
        at = next;
    }
    return lines;
}

using Lines = std::vector<std::string>;

TEST(ProgressBarTest, Reports_AreDrawnAndClearedAtTheEnd) {
    // 19 columns: two brackets, a space, four columns of number, and 12 of bar.
    EXPECT_EQ(drawn({0.0, 50.9, 100.0}),
              (Lines{"[            ]   0%", "[######      ]  50%", "[############] 100%", ""}));
}

TEST(ProgressBarTest, NoReport_DrawsNothing) { EXPECT_EQ(drawn({}), Lines{}); }

TEST(ProgressBarTest, OddReports_KeepToTheBar) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(drawn({std::numeric_limits<double>::quiet_NaN(), -infinity, -1.0}), Lines{});
    EXPECT_EQ(drawn({infinity, 1e300}), (Lines{"[############] 100%", ""}));
    // It never goes back.
    EXPECT_EQ(drawn({80.0, 75.0}), (Lines{"[#########   ]  80%", ""}));
}

TEST(ProgressBarTest, NoTerminal_IsSilent) {
    ProgressBar bar({});
    bar.reportProgress(50.0);
    EXPECT_FALSE(bar.isCancelled());
}

TEST(ProgressBarDeathTest, Interrupt_IsPassedOnToTheEngine) {
    // In a process of its own: the flag stays up.
    EXPECT_EXIT(
        {
            catchInterrupts();
            ProgressBar bar({});
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
