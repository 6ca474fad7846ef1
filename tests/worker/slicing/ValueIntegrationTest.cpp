#include "OrvantaWorker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "GeneratedRecording.h"
#include "HostileRequests.h"
#include "PlainSummary.h"
#include "Random.h"
#include "Scene.h"
#include "frame/DataStore.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS {
namespace {

using testing::box;
using ::testing::ElementsAre;

OV_VALUE_OBJECT object(std::uint32_t type, double start, double stop, Rectangle rect = box(0, 0, 100, 100)) {
    return {type, start, stop, rect, 0.0};
}

double integral(std::uint32_t type, double start, double stop, Interval_Type<double> interval) {
    OV_DATA_STORE store;
    store.valueObjects.push_back(object(type, start, stop));
    return OrvantaWorker().getIntegrationValue(0, interval, store);
}

// A click is worth 7 a second and fades over 4 seconds; one from 0 to 1 lives until 5.
TEST(IntegrationValueTest, Body_IsValueTimesTheSharedTime) {
    EXPECT_EQ(integral(Click, 0.0, 1.0, {0.0, 1.0}), 7.0);
    EXPECT_EQ(integral(Click, 0.0, 1.0, {0.25, 0.75}), 3.5);
    EXPECT_EQ(integral(Click, 0.0, 1.0, {-2.0, 0.5}), 3.5);
}

TEST(IntegrationValueTest, Tail_FadesByTheExponentialOfTheDecay) {
    // 7 x (F(4) - F(0)) with F(4) = 4 - e^0 = 3 and F(0) = -e^-4 = -0.018315638888734.
    EXPECT_NEAR(integral(Click, 0.0, 1.0, {1.0, 5.0}), 7.0 * 3.018315638888734, 1e-12);
    EXPECT_NEAR(integral(Click, 0.0, 1.0, {1.0, 9.0}), 7.0 * 3.018315638888734, 1e-12);
    EXPECT_NEAR(integral(Click, 0.0, 1.0, {0.0, 5.0}), 7.0 + 7.0 * 3.018315638888734, 1e-12);
    // The third second after the stop: F(3) - F(2) = 1 - e^-1 + e^-2 = 1 - 0.367879441171442 + 0.135335283236613.
    EXPECT_NEAR(integral(Click, 0.0, 1.0, {3.0, 4.0}), 7.0 * 0.767455842065171, 1e-12);
}

TEST(IntegrationValueTest, ShortDecay_AddsLittle) {
    // An active window, 2 a second, decay 0.1: 2 x ((0.1 - 1) + e^-0.1) = 2 x 0.004837418035960.
    EXPECT_NEAR(integral(ActiveWindow, 0.0, 10.0, {9.0, 11.0}), 2.0 + 2.0 * 0.004837418035960, 1e-12);
}

TEST(IntegrationValueTest, ObjectWithoutLength_IsAllTail) {
    EXPECT_NEAR(integral(Click, 2.0, 2.0, {0.0, 9.0}), 7.0 * 3.018315638888734, 1e-12);
}

TEST(IntegrationValueTest, OutsideTheLife_IsNothing) {
    EXPECT_EQ(integral(Click, 2.0, 3.0, {0.0, 1.999}), 0.0);
    EXPECT_EQ(integral(Click, 2.0, 3.0, {0.0, 2.0}), 0.0);
    EXPECT_GT(integral(Click, 2.0, 3.0, {0.0, 2.001}), 0.0);
    EXPECT_GT(integral(Click, 2.0, 3.0, {6.999, 9.0}), 0.0);
    EXPECT_EQ(integral(Click, 2.0, 3.0, {7.0, 9.0}), 0.0);
}

// An object that stops before it starts has no body, and its tail counts from its stop on, but only once the interval
// reaches its start. A drag is worth 10 a second and fades over 2 seconds.
TEST(IntegrationValueTest, InvertedObject_IsTailFromItsStopOnceTheIntervalReachesItsStart) {
    EXPECT_EQ(integral(Drag, 10.0, 9.0, {9.2, 9.8}), 0.0);
    // F(1) - F(0.5) = (1 - e^-1) - (0.5 - e^-1.5) = 0.632120558828558 - 0.276869839851570.
    EXPECT_NEAR(integral(Drag, 10.0, 9.0, {9.5, 10.0}), 10.0 * 0.355250718976988, 1e-12);
}

TEST(IntegrationValueTest, InvertedInterval_IsNothing) {
    EXPECT_EQ(integral(Drag, 8.0, 9.0, {10.5, 10.0}), 0.0); // within the tail
    EXPECT_EQ(integral(Drag, 8.0, 9.0, {8.75, 8.25}), 0.0); // within the body
}

TEST(IntegrationValueTest, ValuelessType_IsNothing) { EXPECT_EQ(integral(Dead, 0.0, 5.0, {0.0, 5.0}), 0.0); }

// What an object is worth per second, x seconds after its stop (negative: before it).
double worthAt(const OV_VALUE_ROW& row, double x) {
    return x <= 0.0 ? row.value : x < row.decay ? row.value * (1.0 - std::exp(x - row.decay)) : 0.0;
}

TEST(IntegrationValueTest, AnyObjectAndInterval_MatchesNumericIntegration) {
    for (std::uint64_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto type = static_cast<std::uint32_t>(random.range(0, 28));
        const double start = random.real(0.0, 10.0);
        const double stop = start + random.real(0.0, 5.0);
        const double a = random.real(-2.0, 18.0);
        const double b = a + random.real(0.0, 8.0);
        constexpr int steps = 20000;
        const double step = (b - a) / steps;
        double sum = 0.0;
        for (int i = 0; i < steps; ++i) {
            const double t = a + (i + 0.5) * step;
            sum += t < start ? 0.0 : worthAt(g_ValueMatrix[type], t - stop) * step;
        }
        // A step across one of the two jumps is off by at most its own length times the worth.
        EXPECT_NEAR(integral(type, start, stop, {a, b}), sum, 3.0 * step * g_ValueMatrix[type].value + 1e-6);
    }
}

TEST(IntegrationValueTest, SplitInterval_AddsUp) {
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        const auto type = static_cast<std::uint32_t>(random.range(0, 28));
        const double start = random.real(0.0, 10.0);
        const double stop = start + random.real(0.0, 5.0);
        const double a = random.real(-2.0, 18.0);
        const double b = a + random.real(0.0, 4.0);
        const double c = b + random.real(0.0, 4.0);
        EXPECT_NEAR(integral(type, start, stop, {a, b}) + integral(type, start, stop, {b, c}),
                    integral(type, start, stop, {a, c}), 1e-10);
    }
}

class ValueSpaceWalkTest : public ::testing::Test {
protected:
    void load(double start, double stop) { worker_.loadObjects(store_, {start, stop}, space_); }

    OrvantaWorker worker_;
    OV_DATA_STORE store_;
    ValueSpace space_{&store_};
};

TEST_F(ValueSpaceWalkTest, Load_TakesWhatOverlapsAndRemembersTheLastOne) {
    store_.valueObjects = {object(Click, 0.0, 0.1), object(Click, 1.0, 1.1), object(Click, 2.0, 2.1),
                           object(Click, 9.0, 9.1)};
    load(0.0, 1.5);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u, 1u));
    EXPECT_EQ(store_.nextObject, 1u);
    load(1.5, 2.5);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u, 1u, 2u));
    EXPECT_EQ(store_.nextObject, 2u);
    load(2.5, 3.0);
    EXPECT_EQ(store_.nextObject, 2u);
}

TEST_F(ValueSpaceWalkTest, Load_PassesOverWhatIsOverAndNeverComesBackToIt) {
    // A hover lives 0.5 s longer than it lasts: the first is over at 0.6, just when the interval starts.
    store_.valueObjects = {object(Hover, 0.0, 0.1), object(Hover, 0.2, 0.3), object(Hover, 0.7, 0.8)};
    load(0.6, 0.7);
    EXPECT_THAT(space_.listObjects(), ElementsAre(1u));
    EXPECT_EQ(store_.nextObject, 1u);
    load(0.0, 0.1);
    EXPECT_THAT(space_.listObjects(), ElementsAre(1u));
}

TEST_F(ValueSpaceWalkTest, Load_ObjectThatStartsAtTheStopIsLookedAtButDoesNotOverlap) {
    store_.valueObjects = {object(Click, 0.0, 0.1), object(Click, 1.0, 1.1)};
    load(0.0, 1.0);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u));
    load(0.0, 1.001);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u, 1u));
}

TEST_F(ValueSpaceWalkTest, Load_StopsAtTheFirstObjectBeyondTheInterval) {
    store_.valueObjects = {object(Click, 0.0, 0.1), object(Click, 5.0, 5.1), object(Click, 0.5, 0.6)};
    load(0.0, 1.0);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u));
}

TEST_F(ValueSpaceWalkTest, Recalc_WritesOnlyObjectsInTheSpace) {
    store_.valueObjects = {object(Click, 0.0, 1.0), object(Click, 0.0, 1.0), object(Click, 5.0, 6.0)};
    for (OV_VALUE_OBJECT& o : store_.valueObjects) {
        o.value = 99.0;
    }
    space_.insertObject(0);
    space_.insertObject(2);
    worker_.recalcValueInterval(store_, {0.0, 1.0}, space_);
    EXPECT_EQ(store_.valueObjects[0].value, 7.0);
    EXPECT_EQ(store_.valueObjects[1].value, 99.0);
    EXPECT_EQ(store_.valueObjects[2].value, 0.0) << "in the space, outside the interval";
}

TEST_F(ValueSpaceWalkTest, Advance_TakesOutWhatEndedBeforeTheTime) {
    // Hovers, whose life ends half a second after their stop: at 1.5, 2.0 and 2.5.
    store_.valueObjects = {object(Hover, 0.5, 1.0), object(Hover, 0.5, 1.5), object(Hover, 0.5, 2.0)};
    load(0.5, 1.0);
    worker_.recalcValueInterval(store_, {0.5, 1.0}, space_);
    worker_.advanceValueSpace(store_, 2.0, space_);
    EXPECT_THAT(space_.listObjects(), ElementsAre(1u, 2u)) << "an object that ends at the time stays";
    EXPECT_EQ(store_.valueObjects[0].value, 0.0);
    EXPECT_EQ(store_.valueObjects[1].value, 3.0);
    EXPECT_EQ(store_.firstActiveObject, 1u);
    EXPECT_EQ(store_.nextObject, 2u);
}

TEST_F(ValueSpaceWalkTest, Advance_LongLivedObjectHoldsTheFirstIndex) {
    store_.valueObjects = {object(ActiveWindow, 0.0, 100.0), object(Hover, 0.0, 0.5), object(Hover, 0.0, 9.0)};
    load(0.0, 1.0);
    worker_.advanceValueSpace(store_, 5.0, space_);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u, 2u));
    EXPECT_EQ(store_.firstActiveObject, 0u);
}

TEST_F(ValueSpaceWalkTest, Advance_NothingStays_FirstBecomesNext) {
    store_.valueObjects = {object(Hover, 0.0, 0.1), object(Hover, 0.2, 0.3), object(Hover, 50.0, 51.0)};
    load(0.0, 0.4);
    worker_.advanceValueSpace(store_, 10.0, space_);
    EXPECT_TRUE(space_.listObjects().empty());
    EXPECT_EQ(store_.firstActiveObject, 1u);
    EXPECT_EQ(store_.nextObject, 1u);
}

TEST_F(ValueSpaceWalkTest, Advance_NothingToVisit_StillSetsFirstToNext) {
    store_.valueObjects = {object(Hover, 0.0, 0.1), object(Hover, 0.0, 0.1)};
    load(0.0, 0.1);
    store_.firstActiveObject = 1;
    store_.nextObject = 0; // the first lies beyond the next
    worker_.advanceValueSpace(store_, 10.0, space_);
    EXPECT_EQ(space_.listObjects().size(), 2u);
    EXPECT_EQ(store_.firstActiveObject, 0u);

    store_.firstActiveObject = 0;
    store_.nextObject = 2; // the next lies past the end
    worker_.advanceValueSpace(store_, 10.0, space_);
    EXPECT_EQ(space_.listObjects().size(), 2u);
    EXPECT_EQ(store_.firstActiveObject, 2u);
}

TEST_F(ValueSpaceWalkTest, Advance_LeavesObjectsOutsideTheActiveRunInTheSpace) {
    store_.valueObjects = {object(Hover, 0.0, 0.1), object(Hover, 0.0, 0.1), object(Hover, 0.0, 0.1)};
    for (unsigned int i = 0; i < 3; ++i) {
        space_.insertObject(i);
    }
    store_.firstActiveObject = 1;
    store_.nextObject = 1;
    worker_.advanceValueSpace(store_, 10.0, space_);
    EXPECT_THAT(space_.listObjects(), ElementsAre(0u, 2u));
}

// The rule as it is told: one walk over the whole run of active objects.
void advanceOneByOne(OV_DATA_STORE& store, double time, ValueSpace& space) {
    std::uint32_t lowest = store.nextObject;
    if (store.nextObject < store.valueObjects.size()) {
        for (std::uint32_t i = store.firstActiveObject; i <= store.nextObject; ++i) {
            if (lifeEnd(store.valueObjects[i]) < time) {
                space.deleteObject(i);
                store.valueObjects[i].value = 0.0;
            } else {
                lowest = std::min(lowest, i);
            }
        }
    }
    store.firstActiveObject = lowest;
}

TEST(ValueSpaceWalk, AnyRecording_AdvancesLikeTheWalkOverAllObjects) {
    const OrvantaWorker worker;
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        OV_DATA_STORE fast;
        double start = 0.0;
        for (int i = random.range(1, 60); i > 0; --i) {
            start += random.chance(0.3) ? 0.0 : random.real(0.0, 1.0);
            const double length = random.chance(0.1) ? random.real(0.0, 60.0) : random.real(0.0, 2.0);
            fast.valueObjects.push_back(object(
                static_cast<std::uint32_t>(random.range(0, 28)), start, start + length,
                box({random.range(0, 300), random.range(0, 300), random.range(20, 200), random.range(20, 200)})));
        }
        OV_DATA_STORE plain = fast;
        ValueSpace fastSpace(&fast);
        ValueSpace plainSpace(&plain);
        for (double time = 0.0; time < start + 5.0;) {
            const double stop = time + random.real(0.1, 3.0);
            for (const double from : {time, stop}) { // now and then a look ahead
                worker.loadObjects(fast, {from, stop + 0.5}, fastSpace);
                worker.loadObjects(plain, {from, stop + 0.5}, plainSpace);
                worker.recalcValueInterval(fast, {from, stop}, fastSpace);
                worker.recalcValueInterval(plain, {from, stop}, plainSpace);
            }
            time = stop;
            worker.advanceValueSpace(fast, time, fastSpace);
            advanceOneByOne(plain, time, plainSpace);
            ASSERT_EQ(fast.firstActiveObject, plain.firstActiveObject);
            ASSERT_EQ(fast.nextObject, plain.nextObject);
            ASSERT_EQ(fastSpace.listObjects(), plainSpace.listObjects());
            for (std::size_t i = 0; i < fast.valueObjects.size(); ++i) {
                ASSERT_EQ(fast.valueObjects[i].value, plain.valueObjects[i].value);
            }
        }
    }
}

// Windows, menus and clicks of a busy session: spaces lose their links, and go on naming what has left.
TEST(ValueSpaceWalk, WhatHasLeftIsWorthNothing_SoThatSummariesNeedNotReadItsName) {
    const OrvantaWorker worker;
    for (std::uint64_t seed = 1; seed <= 2; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::SessionPlan plan;
        plan.seconds = 1800.0;
        OV_DATA_STORE store;
        const auto isOver = testing::codeOf([&] {
            worker.runPipeline(testing::generatedRecording(seed, plan), nullptr, store,
                               [](OV_PIPELINE_STAGE stage, const OV_DATA_STORE&) {
                                   if (stage == OV_PIPELINE_OBJECTS) {
                                       throw OrvantaException("seen enough", OVERR_USER_CANCELLED);
                                   }
                               });
        });
        ASSERT_EQ(isOver, OVERR_USER_CANCELLED);
        std::size_t differing = 0;
        ValueSpace space(&store);
        std::vector<std::uint32_t> left;
        for (double time = 0.0; time < plan.seconds; time += 1.5) {
            const Interval_Type<double> interval{time, time + 1.5};
            worker.loadObjects(store, interval, space);
            worker.recalcValueInterval(store, interval, space);
            const VS_VALUE_MAP expected = testing::plainSummary(space, 1.5);
            ASSERT_TRUE(testing::sameMap(space.summarize(1.5, VS_LEFT_OBJECTS::WORTH_NOTHING), expected)) << time;
            ASSERT_TRUE(testing::sameMap(space.summarize(1.5), expected)) << time;
            ASSERT_TRUE(testing::sameMap(space.quickSummarize(1.5, VS_LEFT_OBJECTS::WORTH_NOTHING),
                                         testing::plainQuickSummary(space, 1.5)))
                << time;
            // Who does not state that what has left is worth nothing gets the sums of all names.
            for (const std::uint32_t object : left) {
                store.valueObjects[object].value = 3.0;
            }
            const VS_VALUE_MAP withThem = testing::plainSummary(space, 1.5);
            differing += testing::sameMap(withThem, expected) ? 0 : 1;
            ASSERT_TRUE(testing::sameMap(space.summarize(1.5), withThem)) << time;
            ASSERT_TRUE(testing::sameMap(space.quickSummarize(1.5), testing::plainQuickSummary(space, 1.5))) << time;
            for (const std::uint32_t object : left) {
                store.valueObjects[object].value = 0.0;
            }
            const std::vector<std::uint32_t> before = space.listObjects();
            worker.advanceValueSpace(store, time + 1.5, space);
            for (const std::uint32_t object : before) {
                if (space.objectMap.count(object) == 0) {
                    ASSERT_EQ(store.valueObjects[object].value, 0.0);
                    left.push_back(object);
                }
            }
        }
        EXPECT_GT(differing, 100u) << "no list named what had left";
    }
}

} // namespace
} // namespace OrvantaNS
