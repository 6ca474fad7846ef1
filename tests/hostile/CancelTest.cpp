// Stopping between two reports: on a flood the reporter is asked again and again, on what people record exactly once for
// each report.

#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "GeneratedRecording.h"
#include "HostileRequests.h"
#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {
namespace {

std::optional<OVERR_CODES> run(const Params& params, ProgressReporter& reporter) {
    return codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); });
}

TEST(CancelTest, CountSteps_AsksWhenMuchHasBeenDoneSinceTheLastQuestion) {
    OV_DATA_STORE store;
    CountingReporter reporter;
    store.progress = &reporter;
    countSteps(store, kStepsBetweenQuestions - 1);
    EXPECT_EQ(reporter.asked, 0u);
    countSteps(store, 1);
    EXPECT_EQ(reporter.asked, 1u);
    countSteps(store, kStepsBetweenQuestions - 1);
    EXPECT_EQ(reporter.asked, 1u) << "each question starts the count anew";
    countSteps(store, 1);
    EXPECT_EQ(reporter.asked, 2u);
    EXPECT_TRUE(reporter.percentages.empty());
}

TEST(CancelTest, CountSteps_AWishToStop_EndsTheRun) {
    OV_DATA_STORE store;
    CountingReporter reporter(1);
    store.progress = &reporter;
    EXPECT_EQ(codeOf([&] { countSteps(store, kStepsBetweenQuestions); }), OVERR_USER_CANCELLED);
}

TEST(CancelTest, CountSteps_WithoutAReporter_GoesOn) {
    OV_DATA_STORE store;
    for (int i = 0; i < 3; ++i) {
        EXPECT_NO_THROW(countSteps(store, kStepsBetweenQuestions));
    }
}

TEST(CancelTest, OrdinarySessions_AreAskedExactlyOnceForEachReport) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE(seed);
        SessionPlan plan;
        plan.seconds = seed == 4 ? 3600.0 : 120.0;
        CountingReporter reporter;
        EXPECT_EQ(run(generatedRecording(seed, plan), reporter), std::nullopt);
        EXPECT_GT(reporter.asked, 20u);
        EXPECT_EQ(reporter.asked, reporter.percentages.size());
    }
}

// Clicks at one moment over very many areas, so that one meta pass takes long.
Params floodOfClicksOverAreas() {
    Params params = busyRequest(0, 10.0, 1000.0);
    params.dirtyRects().clear();
    // Seen before the clicks and after them: each click looks at each area, and nothing comes of it.
    for (const long long time : {3000, 4200}) {
        for (int i = 0; i < 1500; ++i) {
            const std::int32_t x = i % 50 * 25;
            const std::int32_t y = 100 + i / 50 * 12;
            params.dirtyRects().push_back({time, {x, x + 20, y, y + 10}});
        }
    }
    params.cursorActions().clear();
    for (int i = 0; i < 16000; ++i) {
        params.cursorActions().push_back({3500, i % 2});
    }
    return params;
}

TEST(CancelTest, AFloodWithinOnePass_IsAskedMoreThanItReports_AndStopsThere) {
    const Params params = floodOfClicksOverAreas();
    CountingReporter patient;
    OV_DATA_STORE store;
    std::uint64_t askedInParsing = 0;
    std::size_t reportsInParsing = 0;
    codeOf([&] {
        OrvantaWorker().runPipeline(params, &patient, store, [&](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) {
            if (stage == OV_PIPELINE_OBJECTS) {
                askedInParsing = patient.asked;
                reportsInParsing = patient.percentages.size();
                throw OrvantaException("seen enough", OVERR_USER_CANCELLED);
            }
        });
    });
    ASSERT_GT(askedInParsing, reportsInParsing);

    // The first question that comes without a report stops the run, and nothing more is reported.
    bool stoppedBetween = false;
    for (std::uint64_t at = 1; at <= askedInParsing && !stoppedBetween; ++at) {
        CountingReporter reporter(at);
        EXPECT_EQ(run(params, reporter), OVERR_USER_CANCELLED);
        EXPECT_EQ(reporter.asked, at);
        stoppedBetween = reporter.percentages.size() + 1 < at;
    }
    EXPECT_TRUE(stoppedBetween);
}

// A step before the question is due, so that the next piece of work brings it.
struct AlmostDue {
    AlmostDue() {
        store.progress = &reporter;
        store.stepsSinceQuestion = kStepsBetweenQuestions - 1;
    }
    bool isAsked(const std::function<void()>& work) {
        store.stepsSinceQuestion = kStepsBetweenQuestions - 1;
        reporter.asked = 0;
        work();
        return reporter.asked == 1;
    }

    OV_DATA_STORE store;
    CountingReporter reporter;
    OrvantaWorker worker;
};

TEST(CancelTest, LoadingAndRetiringObjects_AreCounted) {
    AlmostDue due;
    for (int i = 0; i < 3; ++i) {
        due.store.valueObjects.push_back({Click, 0.0, 1.0, {i * 20, i * 20 + 100, 0, 100}, 0.0});
    }
    ValueSpace space(&due.store);
    EXPECT_TRUE(due.isAsked([&] { due.worker.loadObjects(due.store, {0.0, 1.0}, space); }));
    EXPECT_TRUE(due.isAsked([&] { due.worker.advanceValueSpace(due.store, 100.0, space); }));
    EXPECT_TRUE(space.listObjects().empty());
}

TEST(CancelTest, SearchingAndFoldingSlices_AreCounted) {
    AlmostDue due;
    due.store.slices.resize(4);
    for (OV_FOCUS_SLICE& slice : due.store.slices) {
        slice.blank = true;
    }
    EXPECT_TRUE(due.isAsked([&] { due.worker.findNextTargetSlice(due.store, 0); }));
    EXPECT_TRUE(due.isAsked([&] { due.worker.findPreviousTargetSlice(due.store, 3); }));
    EXPECT_TRUE(due.isAsked([&] { due.worker.combineSlices(due.store, 0, 2); }));
    EXPECT_FALSE(due.isAsked([&] { due.worker.findNextTargetSlice(due.store, 3); })) << "nothing lies behind it";
}

TEST(CancelTest, LookingForAWindow_IsCountedByTheManyThatItPasses) {
    AlmostDue due;
    due.store.windowObjects.assign(64, {ActiveWindow, 0.0, 1.0, {0, 9, 0, 9}, 0.0});
    Rectangle window;
    EXPECT_TRUE(due.isAsked([&] { due.worker.getConstantWindow(due.store, {5.0, 6.0}, window); }));
    due.store.windowObjects.pop_back();
    EXPECT_FALSE(due.isAsked([&] { due.worker.getConstantWindow(due.store, {5.0, 6.0}, window); }));
}

TEST(CancelTest, WithAndWithoutAReporter_TheAnswersAreTheSame) {
    const Params params = floodOfClicksOverAreas();
    CountingReporter reporter;
    OV_DATA_STORE with;
    OV_DATA_STORE without;
    const auto untilObjects = [](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) {
        if (stage == OV_PIPELINE_OBJECTS) {
            throw OrvantaException("seen enough", OVERR_USER_CANCELLED);
        }
    };
    codeOf([&] { OrvantaWorker().runPipeline(params, &reporter, with, untilObjects); });
    codeOf([&] { OrvantaWorker().runPipeline(params, nullptr, without, untilObjects); });
    EXPECT_GT(reporter.asked, reporter.percentages.size());
    ASSERT_EQ(with.valueObjects.size(), without.valueObjects.size());
    EXPECT_GT(with.valueObjects.size(), 0u);
}

} // namespace
} // namespace OrvantaNS::testing
