#include "parser/meaning/WorkingList.h"

#include <cmath>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "GeneratedRecording.h"
#include "HostileRequests.h"
#include "MetaPassWalk.h"
#include "ParserScene.h"
#include "frame/Steps.h"

namespace OrvantaNS {
namespace {

using testing::box;
using testing::CountingReporter;
using testing::expectEqualPasses;
using Kind = WorkingList::Kind;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kNone = WorkingList::kNone;

// Many objects: what is asked here goes through the index. With `odd`, some times are not numbers or stand in no order.
std::vector<OV_VALUE_OBJECT> manyObjects(std::mt19937& random, std::size_t count, bool odd) {
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit + 1)); };
    std::vector<OV_VALUE_OBJECT> objects;
    for (std::size_t i = 0; i < count; ++i) {
        OV_VALUE_OBJECT object;
        object.type = static_cast<std::uint32_t>(upTo(28));
        object.start = upTo(40) * 0.25;
        object.stop = object.start + upTo(6) * 0.5;
        object.rect = box(upTo(2) * 10, 0, 10 + upTo(1) * 10, 10);
        if (odd && upTo(15) == 0) {
            (upTo(1) == 0 ? object.start : object.stop) = kNaN;
        }
        objects.push_back(object);
    }
    if (!odd) {
        std::stable_sort(objects.begin(), objects.end(), CompareValueObjects2);
    }
    return objects;
}

const std::vector<std::pair<Kind, std::vector<std::uint32_t>>> kKinds{
    {WorkingList::Windows, {ActiveWindow}},
    {WorkingList::Openings, {ForeOpen}},
    {WorkingList::InFront, {ActiveWindow, ForeAnimate}},
    {WorkingList::Shown, {ActiveWindow, ForeAnimate, Menu}},
    {WorkingList::Menus, {Menu}},
    {WorkingList::Hovers, {Hover}},
    {WorkingList::Clicks, {Click, DoubleClick}},
    {WorkingList::ClickResults, {ClickDirty, ClickWindow}},
    {WorkingList::Departures, {MoveOutOfWindow}},
};

bool isOneOf(const std::vector<std::uint32_t>& types, std::uint32_t type) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

std::size_t scan(const std::vector<OV_VALUE_OBJECT>& objects, std::size_t from,
                 const std::function<bool(const OV_VALUE_OBJECT&)>& matches) {
    for (std::size_t i = from; i < objects.size(); ++i) {
        if (matches(objects[i])) {
            return i;
        }
    }
    return kNone;
}

// Every question against a scan of the list as it stands.
void expectAnswersOfAScan(const std::vector<OV_VALUE_OBJECT>& objects, WorkingList& list, std::size_t from, double a,
                          double b) {
    ASSERT_EQ(list.windowInForceAt(a),
              scan(objects, 0, [&](const auto& o) { return o.type == ActiveWindow && o.start <= a && a <= o.stop; }));
    ASSERT_EQ(list.windowFollowing(a, b), scan(objects, 0, [&](const auto& o) {
                  return isOneOf({ForeAnimate, ActiveWindow, Menu}, o.type) && o.start >= a &&
                         (o.stop <= b || std::max(a, o.start) < std::min(b, o.stop));
              }));
    ASSERT_EQ(list.menuDuring(a, b), scan(objects, 0, [&](const auto& o) {
                  return o.type == Menu &&
                         ((o.start <= a && o.stop >= b) || std::min(o.stop, b) - std::max(o.start, a) > 0.0);
              }));
    std::size_t before = kNone;
    for (std::size_t i = 0; i < std::min(from, objects.size()); ++i) {
        before = isOneOf({ActiveWindow, ForeAnimate}, objects[i].type) ? i : before;
    }
    ASSERT_EQ(list.windowBefore(std::min(from, objects.size())), before);
    for (const auto& [kind, types] : kKinds) {
        const auto isKind = [&, &types = types](const OV_VALUE_OBJECT& o) { return isOneOf(types, o.type); };
        ASSERT_EQ(list.within(kind, from, a, b),
                  scan(objects, from, [&](const auto& o) { return isKind(o) && o.start >= a && o.stop <= b; }));
        ASSERT_EQ(list.beginning(kind, from, a, b),
                  scan(objects, from, [&](const auto& o) { return isKind(o) && o.start >= a && o.start <= b; }));
        ASSERT_EQ(list.beginningBetween(kind, from, a, b),
                  scan(objects, from, [&](const auto& o) { return isKind(o) && o.start > a && o.start <= b; }));
        ASSERT_EQ(list.beginningAfter(kind, from, a),
                  scan(objects, from, [&](const auto& o) { return isKind(o) && o.start > a; }));
        ASSERT_EQ(list.notBeginningAfter(kind, from, a),
                  scan(objects, from, [&](const auto& o) { return isKind(o) && !(o.start > a); }));
    }
    ASSERT_EQ(list.beginningAfter(WorkingList::Anything, from, a),
              scan(objects, from, [&](const auto& o) { return o.start > a; }));
    for (const std::size_t stopAfter : {1u, 3u, 1000000u}) {
        std::vector<std::size_t> expected;
        const Rectangle place = box(10, 0, 10, 10);
        for (std::size_t i = 0; i < objects.size() && expected.size() < stopAfter; ++i) {
            if (isOneOf({ActiveWindow, ForeOpen}, objects[i].type) && objects[i].rect == place &&
                objects[i].start >= a) {
                expected.push_back(i);
            }
        }
        std::vector<std::size_t> actual;
        list.atSamePlace(place, a, [&](std::size_t i) {
            actual.push_back(i);
            return actual.size() < stopAfter;
        });
        ASSERT_EQ(actual, expected);
    }
}

TEST(WorkingListTest, AnyList_AnswersAsAScanDoes_ThroughAllChanges) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](std::size_t limit) { return random() % (limit + 1); };
    for (int round = 0; round < 40; ++round) {
        // Below, on and above the length from which there is an index, and trees of one block to many.
        const std::size_t sizes[] = {0, 1, 127, 128, 129, 300, 700};
        OV_DATA_STORE store;
        std::vector<OV_VALUE_OBJECT> objects = manyObjects(random, sizes[round % 7], round % 3 == 0);
        WorkingList list(objects, store);
        for (int step = 0; step < 60; ++step) {
            const double a = static_cast<double>(upTo(48)) * 0.25 - 1.0;
            const double b = a + static_cast<double>(upTo(8)) * 0.5 - 0.5;
            ASSERT_NO_FATAL_FAILURE(expectAnswersOfAScan(objects, list, upTo(objects.size() + 1), a, b));
            if (objects.empty()) {
                continue;
            }
            const std::size_t i = upTo(objects.size() - 1);
            switch (upTo(3)) {
            case 0:
                list.retype(i, Dead);
                EXPECT_EQ(objects[i].type, Dead);
                break;
            case 1:
                list.setStop(i, objects[i].stop + 5.0);
                break;
            case 2:
                if (objects[i].type == ActiveWindow) {
                    list.retype(i, Menu);
                }
                break;
            default:
                const std::size_t size = objects.size();
                list.insertBehind(i, {Menu, a, b, box(0, 0, 1, 1), 0.0});
                ASSERT_EQ(objects.size(), size + 1);
                EXPECT_EQ(objects[i + 1].start, a);
            }
        }
        ASSERT_NO_FATAL_FAILURE(expectAnswersOfAScan(objects, list, 0, kNaN, 3.0));
        ASSERT_NO_FATAL_FAILURE(expectAnswersOfAScan(objects, list, 0, 3.0, kNaN));
    }
}

// A list long enough for an index of several levels, asked before the change and after it.
TEST(WorkingListTest, StopThatMoves_IsFoundWhereverItStands) {
    for (const std::size_t moved : {std::size_t{0}, std::size_t{17}, std::size_t{150}, std::size_t{199}}) {
        OV_DATA_STORE store;
        std::vector<OV_VALUE_OBJECT> objects(200, {ActiveWindow, 1.0, 4.0, box(0, 0, 9, 9), 0.0});
        WorkingList list(objects, store);
        ASSERT_EQ(list.windowInForceAt(5.0), kNone);
        list.setStop(moved, 9.0);
        EXPECT_EQ(list.windowInForceAt(5.0), moved);
        ASSERT_EQ(list.within(WorkingList::Anything, 0, 0.0, 3.0), kNone);
        list.setStop(moved, 2.0);
        EXPECT_EQ(list.within(WorkingList::Anything, 0, 0.0, 3.0), moved);
    }
}

TEST(WorkingListTest, AtSamePlace_FindsTheFirstAndTheLastOfALongList) {
    OV_DATA_STORE store;
    std::vector<OV_VALUE_OBJECT> objects(200, {ActiveWindow, 1.0, 2.0, box(0, 0, 9, 9), 0.0});
    objects.front().rect = objects.back().rect = box(50, 60, 9, 9);
    WorkingList list(objects, store);
    std::vector<std::size_t> found;
    list.atSamePlace(box(50, 60, 9, 9), 0.0, [&](std::size_t i) {
        found.push_back(i);
        return true;
    });
    EXPECT_EQ(found, (std::vector<std::size_t>{0, 199}));
}

TEST(WorkingListTest, ObjectsAppendedOfOtherKinds_ChangeNoAnswer) {
    OV_DATA_STORE store;
    std::vector<OV_VALUE_OBJECT> objects(200, {ActiveWindow, 1.0, 2.0, box(0, 0, 9, 9), 0.0});
    WorkingList list(objects, store);
    EXPECT_EQ(list.windowInForceAt(1.5), 0u);
    objects.insert(objects.end(), 500, {ClickDirty, 1.5, 1.5, box(0, 0, 9, 9), 0.0});
    EXPECT_EQ(list.windowInForceAt(1.5), 0u);
    EXPECT_EQ(list.windowFollowing(1.0, 3.0), 0u);
}

// Many windows in a row that are windows no more leave whole stretches of the index empty, to its beginning at last.
TEST(WorkingListTest, WindowBefore_LooksBehindStretchesThatHoldNoWindowAnyMore) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 4; ++round) {
        OV_DATA_STORE store;
        std::vector<OV_VALUE_OBJECT> objects(600, {ActiveWindow, 1.0, 2.0, box(0, 0, 9, 9), 0.0});
        WorkingList list(objects, store);
        ASSERT_EQ(list.windowBefore(600), 599u);
        for (std::size_t alive = objects.size(); alive > 0;) {
            const std::size_t begin = random() % objects.size();
            const std::size_t end = std::min(objects.size(), begin + random() % 120);
            for (std::size_t i = begin; i < end; ++i) {
                list.retype(i, Dead);
            }
            alive = 0;
            std::size_t before = kNone;
            for (std::size_t i = 0; i < objects.size(); ++i) {
                ASSERT_EQ(list.windowBefore(i), before) << i;
                before = objects[i].type == ActiveWindow ? i : before;
                alive += objects[i].type == ActiveWindow ? 1 : 0;
            }
            ASSERT_EQ(list.windowBefore(objects.size()), before);
        }
    }
}

TEST(WorkingListTest, GeneratedPasses_EqualThePlainPass) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto upTo = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit + 1)); };
    DataParser::StoreTimeScale = 1000.0;
    for (int round = 0; round < 120; ++round) {
        Params params = testing::recording();
        for (int i = 0; i < 40; ++i) {
            params.cursorLocations().push_back({i * 250LL, upTo(20) * 8, upTo(20) * 4});
        }
        OV_DATA_STORE store;
        store.clipStop = 60.0;
        store.liveZones.push_back({{0, 1280, 0, 800}, 0.0, 60.0});
        DataParser parser;
        long long time = 0;
        for (int area = upTo(12); area > 0; --area) {
            time += upTo(1500);
            const Rectangle rect = box(upTo(8) * 20, upTo(3) * 12, 20 + upTo(20) * 3, 10 + upTo(20));
            parser.drObjects.push_back({{{time, rect}}, time, time + upTo(2) * 400, rect, true});
        }
        for (int stroke = upTo(8); stroke > 0; --stroke) {
            MOUSE_STROKE moves;
            const long long start = upTo(40) * 250LL;
            for (int point = 0; point < 4; ++point) {
                moves.points.push_back({start + point * 100, upTo(20) * 8, upTo(20) * 4});
            }
            parser.strokes.push_back(moves);
        }
        parser.objects = manyObjects(random, static_cast<std::size_t>(20 + upTo(400)), round % 4 == 0);
        for (OV_VALUE_OBJECT& object : parser.objects) {
            object.rect = box(upTo(8) * 20, upTo(3) * 12, 10 + upTo(3) * 20, 5 + upTo(3) * 12);
        }
        ASSERT_NO_FATAL_FAILURE(expectEqualPasses(parser, params, store, {upTo(1) * 5000LL, 10000}));
    }
}

TEST(WorkingListTest, PassesOfAGeneratedSession_EqualThePlainPass) {
    testing::SessionPlan plan;
    plan.seconds = 120.0;
    const Params params = testing::generatedRecording(7, plan);
    OV_DATA_STORE store;
    ASSERT_NO_FATAL_FAILURE(testing::expectPassesOfAWalkEqualPlainOnes(params, store));
    EXPECT_GT(store.valueObjects.size(), 50u);
}

TEST(WorkingListTest, Work_IsCounted_SoThatAReporterCanStopIt) {
    OV_DATA_STORE store;
    CountingReporter reporter(1);
    store.progress = &reporter;
    std::vector<OV_VALUE_OBJECT> objects(5000, {Hover, 0.0, 9.0, box(0, 0, 9, 9), 0.0});
    WorkingList list(objects, store);
    EXPECT_EQ(list.within(WorkingList::Hovers, 0, 0.0, 9.0), 0u);
    EXPECT_EQ(reporter.asked, 0u);
    store.stepsToQuestion = 0;
    EXPECT_EQ(testing::codeOf([&] { list.within(WorkingList::Hovers, 0, 0.0, 9.0); }), OVERR_USER_CANCELLED);
    EXPECT_TRUE(reporter.percentages.empty());
}

} // namespace
} // namespace OrvantaNS
