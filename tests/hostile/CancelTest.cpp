// Stopping between two reports: on a flood the reporter is asked again and again, on what people record exactly once for
// each report.

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "GeneratedRecording.h"
#include "HostileRequests.h"
#include "OrvantaWorker.h"
#include "frame/Steps.h"
#include "parser/DataParser.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {
namespace {

// So many steps that no question comes: what is counted shows in what they have come down by.
constexpr std::int64_t kNever = std::int64_t{1} << 60;

OV_DATA_STORE countingStore() {
    OV_DATA_STORE store;
    store.stepsToQuestion = kNever;
    return store;
}

std::uint64_t counted(const OV_DATA_STORE& store) { return static_cast<std::uint64_t>(kNever - store.stepsToQuestion); }

std::optional<OVERR_CODES> run(const Params& params, ProgressReporter& reporter) {
    return codeOf([&] { OrvantaWorker().calcOrvantaKeyframes(params, &reporter); });
}

// The count stands at nothing: the next question comes when as much has been done as lies between two, and not before.
void expectAFullCount(OV_DATA_STORE& store, const CountingReporter& reporter) {
    const auto before = reporter.asked;
    countSteps(store, kStepsBetweenQuestions - 1);
    EXPECT_EQ(reporter.asked, before);
    countSteps(store, 1);
    EXPECT_EQ(reporter.asked, before + 1);
}

TEST(CancelTest, CountSteps_AsksWhenMuchHasBeenDoneSinceTheLastQuestion) {
    OV_DATA_STORE store;
    CountingReporter reporter;
    store.progress = &reporter;
    expectAFullCount(store, reporter);
    expectAFullCount(store, reporter); // each question starts the count anew
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
    // Each time the count starts anew, as one with a reporter would.
    CountingReporter reporter;
    store.progress = &reporter;
    expectAFullCount(store, reporter);
}

TEST(CancelTest, StepCounter_HandsOnMostOfWhatItCounts_BeforeTheEnd) {
    constexpr std::uint64_t kSteps = 100000;
    OV_DATA_STORE store = countingStore();
    StepCounter steps(store);
    for (std::uint64_t k = 0; k < kSteps; ++k) {
        steps.add(1);
    }
    EXPECT_GE(counted(store), kSteps / 2);
    steps.settle();
    EXPECT_EQ(counted(store), kSteps);
    steps.settle();
    EXPECT_EQ(counted(store), kSteps) << "nothing is handed on twice";
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
        store.stepsToQuestion = 0;
    }
    bool isAsked(const std::function<void()>& work) {
        store.stepsToQuestion = 0;
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
    due.store.windowObjects.assign(8, {ActiveWindow, 0.0, 1.0, {0, 9, 0, 9}, 0.0});
    Rectangle window;
    EXPECT_TRUE(due.isAsked([&] { due.worker.getConstantWindow(due.store, {5.0, 6.0}, window); }));
    due.store.windowObjects.pop_back();
    EXPECT_FALSE(due.isAsked([&] { due.worker.getConstantWindow(due.store, {5.0, 6.0}, window); }));
}

TEST(CancelTest, InsertingDissolvingAndSummingUp_AreCounted) {
    AlmostDue due;
    for (std::int32_t i = 0; i < 4; ++i) {
        due.store.valueObjects.push_back({Click, 0.0, 1.0, {i * 20, i * 20 + 100, 0, 100}, 7.0});
    }
    ValueSpace space(&due.store);
    space.insertObject(0);
    EXPECT_TRUE(due.isAsked([&] { space.insertObject(1); }));
    EXPECT_TRUE(due.isAsked([&] { space.quickSummarize(1.0); }));
    EXPECT_TRUE(due.isAsked([&] { space.summarize(1.0); }));
    EXPECT_TRUE(due.isAsked([&] { due.worker.recalcValueInterval(due.store, {0.0, 1.0}, space); }));
    EXPECT_TRUE(due.isAsked([&] { space.deleteObject(0); }));
}

std::uint64_t namesIn(const ValueSpace& space) {
    return std::accumulate(space.graph.begin(), space.graph.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const OV_INTERSECTION& slot) { return sum + slot.objects.size(); });
}

// Every two of these overlap, and hardly two overlaps are the same: the graph grows with the cube of their number.
TEST(CancelTest, AGraphThatExplodes_CountsWhatItWritesAndReads) {
    constexpr std::uint64_t kNamesPerStep = 16; // at most; a step is some nanoseconds
    OV_DATA_STORE store = countingStore();
    for (std::int32_t i = 0; i < 48; ++i) {
        store.valueObjects.push_back({Click, 0.0, 1.0, {i * 10, 900 + i * 37 % 173, 0, 500 + i * 59 % 211}, 1.0});
    }
    ValueSpace space(&store);
    const auto stepsOf = [&](const std::function<void()>& work) {
        const std::uint64_t before = counted(store);
        work();
        return counted(store) - before;
    };
    std::uint64_t names = 0;
    for (std::uint32_t i = 0; i < store.valueObjects.size(); ++i) {
        const std::uint64_t steps = stepsOf([&] { space.insertObject(i); });
        const std::uint64_t now = namesIn(space);
        ASSERT_LE(now - names, steps * kNamesPerStep) << "object " << i;
        names = now;
    }
    ASSERT_GT(names, 10000u);
    EXPECT_LE(names, stepsOf([&] { space.quickSummarize(1.0); }) * kNamesPerStep);
    EXPECT_LE(names, stepsOf([&] { space.summarize(1.0); }) * kNamesPerStep);
    for (std::uint32_t i = 0; i < store.valueObjects.size(); ++i) {
        const std::uint64_t steps = stepsOf([&] { space.deleteObject(i); });
        const std::uint64_t now = namesIn(space);
        ASSERT_LE(names - now, steps * kNamesPerStep) << "object " << i;
        names = now;
    }
    EXPECT_EQ(names, 0u);
}

TEST(CancelTest, OfferingAParent_IsCountedByThoseThatItIsComparedWith) {
    constexpr std::int32_t kParents = 100;
    std::vector<VS_CREATION_SPACE> creation(1);
    creation[0].rect = {0, 100, 0, 100};
    OV_DATA_STORE store = countingStore();
    ValueSpace space(&store);
    for (std::int32_t i = 1; i <= kParents; ++i) { // all around it, none within another
        creation.push_back({{-i, 300 - i, 0, 100}, {}, false, 0});
        store.stepsToQuestion = kNever;
        space.addCreationParent(creation, 0, {PARENT_IN_CREATION, static_cast<std::uint32_t>(i)});
    }
    EXPECT_EQ(creation[0].parents.size(), static_cast<std::size_t>(kParents));
    EXPECT_GE(counted(store), static_cast<std::uint64_t>(kParents - 1));
}

// The steps that a run without a reporter counts until its objects are known.
std::uint64_t stepsOfParsing(const Params& params) {
    OV_DATA_STORE store = countingStore();
    codeOf([&] {
        OrvantaWorker().runPipeline(params, nullptr, store, [](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) {
            if (stage == OV_PIPELINE_OBJECTS) {
                throw OrvantaException("seen enough", OVERR_USER_CANCELLED);
            }
        });
    });
    return counted(store);
}

TEST(CancelTest, ClicksOverADisorderedCursor_CountTheSamplesThatEachReads) {
    constexpr std::uint64_t kSamples = 4000;
    constexpr std::uint64_t kClicks = 500;
    Params params = busyRequest(0, 10.0, 1000.0);
    params.cursorLocations().clear();
    params.cursorActions().clear();
    for (std::uint64_t i = 0; i < kSamples; ++i) {
        params.cursorLocations().push_back({i % 2 == 0 ? 1000 : 900, 100, 100});
    }
    for (std::uint64_t i = 0; i < 2 * kClicks; ++i) {
        params.cursorActions().push_back({3000, static_cast<std::int32_t>(i % 2)});
    }
    const std::uint64_t steps = stepsOfParsing(params);
    EXPECT_GT(steps, kSamples * kClicks / 16);
    EXPECT_LT(steps, kSamples * kClicks * 16);
}

TEST(CancelTest, ManyChangedRectangles_AreCounted) {
    Params params = busyRequest(0, 10.0, 1000.0);
    const std::uint64_t few = stepsOfParsing(params);
    constexpr std::int32_t kRects = 4000;
    for (const long long time : {8000, 8100}) {
        for (std::int32_t i = 0; i < kRects; ++i) {
            params.dirtyRects().push_back({time, {i % 100 * 12, i % 100 * 12 + 8, i / 100 * 12, i / 100 * 12 + 8}});
        }
    }
    EXPECT_GT(stepsOfParsing(params), few + 2 * kRects);
}

// A stroke that every drag cuts: its rest is copied each time.
TEST(CancelTest, CuttingStrokes_IsCounted) {
    constexpr std::int32_t kPoints = 2000;
    constexpr std::int32_t kDrags = 100;
    Params params = busyRequest(0, 10.0, 1000.0);
    params.cursorLocations().clear();
    params.cursorActions().clear();
    for (std::int32_t i = 0; i < kPoints; ++i) {
        params.cursorLocations().push_back({1000 + i, 10 + i / 2, 10 + i / 3});
    }
    const std::uint64_t uncut = stepsOfParsing(params);
    for (std::int32_t i = 0; i < kDrags; ++i) {
        params.cursorActions().push_back({1003 + 20 * i, 0});
        params.cursorActions().push_back({1017 + 20 * i, 1});
    }
    // Each cut finds some points ahead of it and leaves half of the stroke on average.
    EXPECT_GT(stepsOfParsing(params), uncut + std::uint64_t{kDrags} * kPoints / 16);
}

TEST(CancelTest, ShotsAndFrames_AreCounted) {
    AlmostDue due;
    due.store.slices.resize(4);
    Params params = busyRequest(0, 10.0, 1000.0);
    DataParser parser;
    EXPECT_TRUE(due.isAsked([&] { due.worker.createKeyframeLoop(params, due.store, parser, 0.0); }));
    EXPECT_TRUE(due.isAsked([&] { due.worker.processMergeCombos(params, due.store); }));
    for (OV_FOCUS_SLICE& slice : due.store.slices) {
        slice.blank = true;
    }
    EXPECT_TRUE(due.isAsked([&] { due.worker.mergeCleanupPass(due.store); }));
}

TEST(CancelTest, ALongSort_CanBeStopped_AndSortsAsAShortOneDoes) {
    std::vector<std::uint32_t> numbers(600000); // some tenth of a second
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = static_cast<std::uint32_t>(i * 2654435761u % 1000003u);
    }
    std::vector<std::uint32_t> expected = numbers;
    std::sort(expected.begin(), expected.end());
    OV_DATA_STORE store = countingStore();
    const auto sortAll = [&](std::vector<std::uint32_t>& list) {
        stoppableSort(store, list.size(), std::less<>(), [&](auto less) { std::sort(list.begin(), list.end(), less); });
    };
    std::vector<std::uint32_t> sorted = numbers;
    sortAll(sorted);
    EXPECT_EQ(sorted, expected);
    EXPECT_GE(counted(store), numbers.size() - 1) << "one for each comparison";

    store.stepsToQuestion = kNever;
    std::vector<std::uint32_t> few{3, 1, 2};
    sortAll(few);
    EXPECT_EQ(few, (std::vector<std::uint32_t>{1, 2, 3}));
    EXPECT_EQ(counted(store), 0u);

    CountingReporter reporter(1);
    store.progress = &reporter;
    store.stepsToQuestion = 0;
    EXPECT_EQ(codeOf([&] { sortAll(numbers); }), OVERR_USER_CANCELLED);
    EXPECT_EQ(reporter.asked, 1u);
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
