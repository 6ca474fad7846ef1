#include <algorithm>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "OrvantaWorker.h"
#include "worker/merging/MergeEntry.h"

namespace OrvantaNS {
namespace {

const OrvantaWorker worker;

MERGE_ENTRY named(char name, std::int32_t priority) {
    MERGE_ENTRY entry;
    entry.priority = priority;
    entry.firstSlice = static_cast<std::uint32_t>(name);
    return entry;
}

// Works off a script such as "A5 B7 - C5": a letter with a digit pushes an entry of that name and priority, a dash pops
// one. What is left at the end is popped as well. Gives the names in the order in which they left the queue.
std::string run(const std::string& script) {
    OrvantaWorker::MergeQueue queue;
    std::string order;
    const auto pop = [&] { order += static_cast<char>(worker.popMergeEntry(queue).firstSlice); };
    for (std::size_t i = 0; i < script.size(); ++i) {
        if (script[i] == '-') {
            pop();
        } else if (script[i] != ' ') {
            worker.pushMergeEntry(queue, named(script[i], script[i + 1] - '0'));
            ++i;
        }
    }
    while (!queue.empty()) {
        pop();
    }
    return order;
}

TEST(MergeQueueTest, FreshEntry_HasNoPriorityAndNoStrategy) {
    const MERGE_ENTRY entry;
    EXPECT_EQ(entry.priority, -1);
    EXPECT_EQ(entry.firstSlice, 0u);
    EXPECT_EQ(entry.nextSlice, 0u);
    EXPECT_EQ(entry.strategy, OV_MERGE_NONE);
    EXPECT_EQ(entry.firstMergeId, 0);
    EXPECT_EQ(entry.nextMergeId, 0);
}

TEST(MergeQueueTest, Pop_DifferentPriorities_HighestFirst) {
    EXPECT_EQ(run("A1 B3 C2"), "BCA");
    EXPECT_EQ(run("A3 B2 C1"), "ABC");
    EXPECT_EQ(run("A1 B2 C3 D4 E5 F6 G7"), "GFEDCBA");
}

// The heap is written as its array. A pop puts the last entry on top and lets the left one of equal children rise past
// it.
TEST(MergeQueueTest, Pop_EqualPriorities_FollowTheHeapMoves) {
    EXPECT_EQ(run("A5 B5"), "AB");
    // ABC; A leaves, C on top of B, B rises: BC.
    EXPECT_EQ(run("A5 B5 C5"), "ABC");
    // ABCD; A leaves, D on top, B rises: BDC; B leaves, C on top, D rises: DC.
    EXPECT_EQ(run("A5 B5 C5 D5"), "ABDC");
    // ABCDE; A leaves, E on top, B and D rise: BDCE; B leaves, E on top, D rises: DEC; D leaves, C on top, E rises: EC.
    EXPECT_EQ(run("A5 B5 C5 D5 E5"), "ABDEC");
    // ABCDEFG -> BDCGEF -> DGCFE -> GFCE -> FEC -> EC -> C.
    EXPECT_EQ(run("A5 B5 C5 D5 E5 F5 G5"), "ABDGFEC");
}

TEST(MergeQueueTest, Push_EqualToItsParent_StopsBelowIt) {
    // A3; B above A: BA; C below B: BAC. B leaves, C stands on top and A, smaller, stays below.
    EXPECT_EQ(run("A3 B7 C7"), "BCA");
    // A B C at 5 and D at 7: D rises past B and A: DACB. D leaves, B on top, A rises: ABC.
    EXPECT_EQ(run("A5 B5 C5 D7"), "DABC");
}

TEST(MergeQueueTest, Pop_RightChildHigher_RightChildRises) {
    EXPECT_EQ(run("A9 B5 C6 D1"), "ACBD");
    // BACD; B leaves, D on top, C (7) rises above A (5): CAD; C leaves, D on top, A rises: AD.
    EXPECT_EQ(run("A5 B7 C7 D5"), "BCAD");
}

TEST(MergeQueueTest, PushBetweenPops_TiesFollowTheHeapMoves) {
    // AB; A leaves: B; C: BC; D (4) rises: DCB. D leaves, B on top, C rises: CB.
    EXPECT_EQ(run("A3 B3 - C3 D4"), "ADCB");
    // ABCD; A leaves: BDC; E: BDCE; B leaves, E on top, D rises: DEC; D leaves, C on top, E rises: EC.
    EXPECT_EQ(run("A5 B5 C5 D5 - E5"), "ABDEC");
    // ABC; A, B leave: C; D: CD; E: CDE; C leaves, E on top, D rises: DE.
    EXPECT_EQ(run("A5 B5 C5 - - D5 E5"), "ABCDE");
}

TEST(MergeQueueTest, Pop_OnlyEntry_LeavesAnEmptyQueue) {
    OrvantaWorker::MergeQueue queue;
    worker.pushMergeEntry(queue, named('A', 4));
    EXPECT_EQ(worker.popMergeEntry(queue).priority, 4);
    EXPECT_TRUE(queue.empty());
}

TEST(MergeQueueTest, Push_KeepsEveryFieldOfTheEntry) {
    OrvantaWorker::MergeQueue queue;
    MERGE_ENTRY entry;
    entry.priority = 300;
    entry.firstSlice = 4;
    entry.nextSlice = 9;
    entry.strategy = 7;
    entry.firstMergeId = 2;
    entry.nextMergeId = 5;
    worker.pushMergeEntry(queue, named('A', 900));
    worker.pushMergeEntry(queue, entry);
    worker.popMergeEntry(queue);
    const MERGE_ENTRY popped = worker.popMergeEntry(queue);
    EXPECT_EQ(popped.priority, 300);
    EXPECT_EQ(popped.firstSlice, 4u);
    EXPECT_EQ(popped.nextSlice, 9u);
    EXPECT_EQ(popped.strategy, 7);
    EXPECT_EQ(popped.firstMergeId, 2);
    EXPECT_EQ(popped.nextMergeId, 5);
}

TEST(MergeQueueTest, Push_EntryOfTheQueueItself_SurvivesTheGrowth) {
    OrvantaWorker::MergeQueue queue;
    for (int i = 0; i < 64; ++i) {
        worker.pushMergeEntry(queue, i == 0 ? named('A', 7) : queue[0]);
        ASSERT_EQ(queue.back().firstSlice, static_cast<std::uint32_t>('A'));
        ASSERT_EQ(queue.back().priority, 7);
    }
}

// Laws under any sequence of pushes and pops: a parent is never below its child, what leaves is what entered, each entry
// once, and nothing in the queue goes before what leaves.
TEST(MergeQueueTest, RandomPushesAndPops_KeepTheHeapAndEveryEntry) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const int range = 1 + static_cast<int>(random() % 6);
        OrvantaWorker::MergeQueue queue;
        std::map<std::uint32_t, std::int32_t> inside;
        std::uint32_t name = 0;
        for (int step = 0; step < 300; ++step) {
            if (inside.empty() || random() % 5 < 3) {
                MERGE_ENTRY entry;
                entry.firstSlice = name++;
                entry.priority = static_cast<std::int32_t>(random() % static_cast<unsigned>(range)) - 1;
                inside[entry.firstSlice] = entry.priority;
                worker.pushMergeEntry(queue, entry);
            } else {
                const auto highest = std::max_element(inside.begin(), inside.end(), [](const auto& a, const auto& b) {
                                         return a.second < b.second;
                                     })->second;
                const MERGE_ENTRY entry = worker.popMergeEntry(queue);
                ASSERT_EQ(inside.count(entry.firstSlice), 1u);
                ASSERT_EQ(inside[entry.firstSlice], entry.priority);
                ASSERT_EQ(entry.priority, highest);
                inside.erase(entry.firstSlice);
            }
            ASSERT_EQ(queue.size(), inside.size());
            for (std::size_t i = 1; i < queue.size(); ++i) {
                ASSERT_GE(queue[(i - 1) / 2].priority, queue[i].priority);
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
