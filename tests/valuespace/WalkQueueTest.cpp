#include "valuespace/WalkQueue.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS {
namespace {

using ::testing::ElementsAre;
using List = std::vector<std::uint32_t>;

// What a walk visits; `meet` says what it meets at each visit.
template <typename Meet> List visits(InsertionQueue& queue, Meet meet) {
    List order;
    for (; !queue.isDone(); queue.advance()) {
        order.push_back(queue.slotInWork());
        for (const std::uint32_t slot : meet(order.size() - 1)) {
            queue.offer(slot);
        }
    }
    return order;
}

template <typename Meet> List visits(DeletionQueue& queue, Meet meet) {
    List order;
    for (; queue.skipToNext(); queue.advance()) {
        order.push_back(queue.slotInWork());
        for (const std::uint32_t slot : meet(order.size() - 1)) {
            if (slot != order.back()) { // no space is its own child
                queue.moveToEnd(slot);
            }
        }
    }
    return order;
}

// The first queue as a plain list, its front in work: what stands in it is not taken in.
template <typename Meet> List plainInsertion(const List& start, Meet meet) {
    std::deque<std::uint32_t> queue(start.begin(), start.end());
    List order;
    for (; !queue.empty(); queue.pop_front()) {
        order.push_back(queue.front());
        for (const std::uint32_t slot : meet(order.size() - 1)) {
            if (std::find(queue.begin(), queue.end(), slot) == queue.end()) {
                queue.push_back(slot);
            }
        }
    }
    return order;
}

// The second one: the first copy that waits leaves, unless it stands last.
template <typename Meet> List plainDeletion(std::uint32_t start, Meet meet) {
    std::deque<std::uint32_t> queue{start};
    List order;
    while (!queue.empty()) {
        order.push_back(queue.front());
        queue.pop_front();
        for (const std::uint32_t slot : meet(order.size() - 1)) {
            if (slot == order.back()) {
                continue;
            }
            const auto found = std::find(queue.begin(), queue.end(), slot);
            if (found != queue.end() && found + 1 != queue.end()) {
                queue.erase(found);
            }
            queue.push_back(slot);
        }
    }
    return order;
}

TEST(WalkQueueTest, Insertion_ASlotThatWaitsOrIsInWork_IsNotTakenInAgain_OneThatHasLeftIs) {
    InsertionQueue queue;
    queue.start({4, 1}, 6);
    const std::vector<List> met{{1, 4, 2}, {4}, {1, 2}, {}, {}};
    EXPECT_THAT(visits(queue, [&](std::size_t visit) { return met[visit]; }), ElementsAre(4, 1, 2, 4, 1));
    EXPECT_TRUE(queue.isDone());
    queue.start({}, 6);
    EXPECT_TRUE(queue.isDone());
}

TEST(WalkQueueTest, Deletion_ASlotMovesBehindAllOthers_OneThatStandsLastGetsASecondPlace) {
    DeletionQueue queue;
    queue.start(0, 6);
    const std::vector<List> met{{1, 2, 3, 1, 3}, {3}, {}, {}, {}};
    // After the first visit: 2, 3, 1, 3. The first 3 leaves at the second visit, and 3 stands at the end twice.
    EXPECT_THAT(visits(queue, [&](std::size_t visit) { return met[visit]; }), ElementsAre(0, 2, 1, 3, 3));
    EXPECT_FALSE(queue.skipToNext());
}

TEST(WalkQueueTest, AnyWalk_VisitsInTheOrderOfAPlainQueue) {
    InsertionQueue insertion;
    DeletionQueue deletion;
    std::size_t slots = 1;
    for (std::uint64_t seed = 1; seed <= 600; ++seed) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        testing::Random random(seed);
        // The graph grows, and shrinks at times when it starts anew.
        slots = random.chance(0.02) ? 1 : slots + static_cast<std::size_t>(random.range(0, 2));
        // Short walks of a large graph, and long ones that meet few slots again and again.
        const auto reach = static_cast<std::int32_t>(random.chance(0.3) ? slots : std::min<std::size_t>(slots, 5));
        const auto anySlot = [&] { return static_cast<std::uint32_t>(random.range(0, reach - 1)); };
        std::vector<List> met(random.chance(0.5) ? 3 : 60);
        for (List& one : met) {
            for (int k = random.range(0, 4); k > 0; --k) {
                one.push_back(anySlot());
            }
        }
        const auto meet = [&](std::size_t visit) { return visit < met.size() ? met[visit] : List(); };
        List tops;
        for (int k = random.range(0, 4); k > 0; --k) {
            const std::uint32_t top = anySlot();
            if (std::find(tops.begin(), tops.end(), top) == tops.end()) {
                tops.push_back(top);
            }
        }
        insertion.start(tops, slots);
        ASSERT_EQ(visits(insertion, meet), plainInsertion(tops, meet));
        const std::uint32_t first = anySlot();
        deletion.start(first, slots);
        ASSERT_EQ(visits(deletion, meet), plainDeletion(first, meet));
    }
}

} // namespace
} // namespace OrvantaNS
