// Every allocation of every question fails once: `std::bad_alloc` comes out, nothing leaks, and the engine answers the
// next question as if nothing had happened.

#include <functional>
#include <new>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "CountingNew.h"
#include "HostileRequests.h"
#include "OrvantaVotingAlgorithm.h"
#include "OrvantaWorker.h"

namespace OrvantaNS::testing {
namespace {

using Keyframes = std::shared_ptr<std::vector<OV_TIME_RECT>>;
using Question = std::function<Keyframes()>;

// What came out of one attempt. Everything that the attempt allocated is gone again when this returns, but the result.
struct Attempt {
    bool hasFailed = false; // an allocation was refused
    bool threwBadAlloc = false;
    std::optional<OVERR_CODES> code;
    std::uint64_t asked = 0;
    std::int64_t leaked = 0;
    // The answer in short; kept without allocating under the watch.
    std::size_t count = 0;
    OV_TIME_RECT last;
};

Attempt attempt(const Question& question, std::uint64_t failAt) {
    Attempt result;
    const AllocationWatch watch(failAt);
    try {
        const Keyframes keyframes = question();
        if (keyframes != nullptr) {
            result.count = keyframes->size();
            result.last = keyframes->empty() ? OV_TIME_RECT{} : keyframes->back();
        }
    } catch (const std::bad_alloc&) {
        result.threwBadAlloc = true;
    } catch (const OrvantaException& error) {
        result.code = error.errorCode();
    }
    result.hasFailed = watch.hasFailed();
    result.asked = watch.asked();
    result.leaked = watch.outstanding();
    return result;
}

bool isSameAnswer(const Attempt& a, const Attempt& b) {
    return a.code == b.code && a.count == b.count && a.last.time == b.last.time && a.last.rect == b.last.rect;
}

void failEveryAllocation(const Question& question) {
    const Attempt clean = attempt(question, 0);
    ASSERT_FALSE(clean.threwBadAlloc);
    ASSERT_EQ(clean.leaked, 0);
    ASSERT_GT(clean.asked, 0U);
    for (std::uint64_t n = 1; n <= clean.asked; ++n) {
        const Attempt failed = attempt(question, n);
        ASSERT_TRUE(failed.hasFailed) << n;
        ASSERT_EQ(failed.leaked, 0) << n;
        // A sort asks for scratch memory without insisting, and does without when refused: then the answer is whole.
        ASSERT_TRUE(failed.threwBadAlloc || isSameAnswer(failed, clean)) << n;
        const Attempt after = attempt(question, 0);
        ASSERT_EQ(after.asked, clean.asked) << n;
        ASSERT_EQ(after.leaked, 0) << n;
        ASSERT_TRUE(isSameAnswer(after, clean)) << n;
    }
    const Attempt beyond = attempt(question, clean.asked + 1);
    EXPECT_FALSE(beyond.hasFailed);
    EXPECT_TRUE(isSameAnswer(beyond, clean));
}

// Short, yet with windows that move and open menus, strokes, clicks with results, a drag, a wheel run and two regions.
Params smallRequest() {
    Params params = busyRequest(0, 14.0, 100.0);
    params.setClipInterval(0, 1700);
    const auto action = [&](long long time, std::int32_t code) { params.cursorActions().push_back({time, code}); };
    action(1200, 6);
    action(1220, 6);
    action(1300, 0);
    for (int i = 0; i < 10; ++i) {
        params.cursorLocations().push_back({1300 + i * 5, 300 + i * 20, 300});
    }
    action(1350, 1);
    for (int i = 0; i < 6; ++i) {
        params.foreWindows().push_back({1400 + i * 8, {100 + i * 10, 500 + i * 10, 100, 500}});
    }
    return params;
}

class FailingAllocation : public ::testing::Test {
protected:
    const Params params_ = smallRequest();
    const OrvantaWorker worker_;
    const OrvantaVotingAlgorithm voting_;
};

TEST_F(FailingAllocation, ValueEngine_Clip_PassesThroughAndLeavesNothing) {
    failEveryAllocation([&] { return worker_.calcOrvantaKeyframes(params_, nullptr); });
}

TEST_F(FailingAllocation, ValueEngine_Moment_PassesThroughAndLeavesNothing) {
    for (const long long time : {250LL, 800LL}) {
        failEveryAllocation([&] { return worker_.calcOrvantaKeyframeAtTime(params_, time); });
    }
}

TEST_F(FailingAllocation, ValueEngine_Window_PassesThroughAndLeavesNothing) {
    failEveryAllocation([&] { return worker_.calcKeyframeAtWindow(params_); });
}

TEST_F(FailingAllocation, VotingEngine_Clip_PassesThroughAndLeavesNothing) {
    failEveryAllocation([&] { return voting_.calcOrvantaKeyframes(params_, nullptr); });
}

TEST_F(FailingAllocation, VotingEngine_Moment_PassesThroughAndLeavesNothing) {
    failEveryAllocation([&] { return voting_.calcOrvantaKeyframeAtTime(params_, 500); });
}

TEST_F(FailingAllocation, BothEngines_RefusedRequests_PassThroughAndLeaveNothing) {
    // The exception's text is allocated too.
    Params refused = params_;
    refused.setTimeScale(0.0);
    failEveryAllocation([&] { return worker_.calcOrvantaKeyframes(refused, nullptr); });
    failEveryAllocation([&] { return voting_.calcOrvantaKeyframes(refused, nullptr); });
    refused.recordingRegions().clear();
    failEveryAllocation([&] { return worker_.calcKeyframeAtWindow(refused); });
}

TEST_F(FailingAllocation, ValueEngine_CancelledRun_LeavesNothing) {
    for (std::uint64_t n = 1;; ++n) {
        std::optional<OVERR_CODES> code;
        std::int64_t leaked = 0;
        {
            const AllocationWatch watch(0);
            {
                CountingReporter reporter(n);
                code = codeOf([&] { worker_.calcOrvantaKeyframes(params_, &reporter); });
            }
            leaked = watch.outstanding();
        }
        ASSERT_EQ(leaked, 0) << n;
        if (code != OVERR_USER_CANCELLED) {
            ASSERT_GT(n, 10U);
            break;
        }
    }
}

// The watch itself: a test of these tests.
TEST(AllocationWatch, Leak_IsCounted) {
    void* kept = nullptr;
    {
        const AllocationWatch watch(0);
        kept = ::operator new(10);
        EXPECT_EQ(watch.outstanding(), 1);
        EXPECT_EQ(watch.asked(), 1U);
    }
    ::operator delete(kept);
    const AllocationWatch watch(2);
    std::vector<int> first(10);
    EXPECT_THROW(std::vector<int>(10), std::bad_alloc);
    EXPECT_TRUE(watch.hasFailed());
}

} // namespace
} // namespace OrvantaNS::testing
