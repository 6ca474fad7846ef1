#include "render/OrderedWorkers.h"

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::render {
namespace {

using Workers = OrderedWorkers<int, int>;

Workers::Work twice() {
    return [](int in) { return 2 * in; };
}

TEST(OrderedWorkersTest, Results_ComeInTheOrderOfTheirInputs) {
    for (const std::size_t threads : {1U, 2U, 5U}) {
        std::vector<int> taken;
        Workers workers(threads, twice, [&taken](int out) { taken.push_back(out); });
        for (int i = 0; i < 500; ++i) {
            workers.push(i);
        }
        workers.finish();
        ASSERT_EQ(taken.size(), 500U);
        for (int i = 0; i < 500; ++i) {
            ASSERT_EQ(taken[static_cast<std::size_t>(i)], 2 * i);
        }
    }
}

TEST(OrderedWorkersTest, NothingToDo_Ends) {
    Workers workers(3, twice, [](int) {});
    workers.finish();
}

TEST(OrderedWorkersTest, UnderWay_IsNoMoreThanTheCapacity) {
    std::atomic<int> pushed = 0;
    std::atomic<int> taken = 0;
    std::atomic<int> most = 0;
    Workers workers(2, twice, [&](int) {
        most = std::max(most.load(), pushed.load() - taken.load());
        ++taken;
    });
    for (int i = 0; i < 1000; ++i) {
        workers.push(i);
        ++pushed;
    }
    workers.finish();
    EXPECT_EQ(taken, 1000);
    EXPECT_LE(most, 6); // Five waiting or worked on, one being taken.
}

TEST(OrderedWorkersTest, FailureOfAWorker_ReachesTheCaller) {
    Workers workers(
        2,
        [] {
            return [](int in) -> int {
                if (in == 7) {
                    throw std::runtime_error("seven");
                }
                return in;
            };
        },
        [](int) {});
    EXPECT_THROW(
        {
            for (int i = 0; i < 100000; ++i) {
                workers.push(i);
            }
            workers.finish();
        },
        std::runtime_error);
}

TEST(OrderedWorkersTest, FailureOfTheTaker_ReachesTheCaller) {
    Workers workers(2, twice, [](int out) {
        if (out == 20) {
            throw std::runtime_error("full");
        }
    });
    EXPECT_THROW(
        {
            for (int i = 0; i < 100000; ++i) {
                workers.push(i);
            }
            workers.finish();
        },
        std::runtime_error);
}

TEST(OrderedWorkersTest, Abandoned_EndsWithoutFinishing) {
    std::vector<int> taken;
    {
        Workers workers(2, twice, [&taken](int out) { taken.push_back(out); });
        for (int i = 0; i < 20; ++i) {
            workers.push(i);
        }
    }
    EXPECT_LE(taken.size(), 20U);
}

} // namespace
} // namespace OrvantaNS::render
