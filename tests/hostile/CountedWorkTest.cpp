// What a graph of spaces counts of its work, piece by piece. Each case makes one of the loops that can get long long, and
// all others short.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "CountedSteps.h"
#include "Scene.h"
#include "valuespace/ValueSpace.h"

namespace OrvantaNS::testing {
namespace {

class CountedWorkTest : public ::testing::Test {
protected:
    OV_DATA_STORE store;
    ValueSpace space{&store};

    std::uint32_t addObject(const Rectangle& rect, double value = 1.0) {
        store.valueObjects.push_back({Click, 0.0, 1.0, rect, value});
        return static_cast<std::uint32_t>(store.valueObjects.size() - 1);
    }
    std::uint32_t insert(const Rectangle& rect, double value = 1.0) {
        const std::uint32_t object = addObject(rect, value);
        space.insertObject(object);
        return object;
    }
    void insertMany(std::size_t count, const Rectangle& rect, double value = 1.0) {
        for (std::size_t k = 0; k < count; ++k) {
            insert(rect, value);
        }
    }
    // Apart from one another, a hundred in a row, each 4 by 4.
    static Rectangle cell(std::int32_t k) { return box(k % 100 * 5, k / 100 * 5, 4, 4); }

    void expectCounted(std::uint64_t entries, const std::function<void()>& work) {
        testing::expectCounted(store, entries, work);
    }
};

// ---- Sums: no space reaches the tier that is asked for ----

constexpr double kTooLong = 1e9; // an interval in which nothing is worth a tier

TEST_F(CountedWorkTest, Sums_ByTheNamesThatAreAddedUp) {
    insertMany(8000, box(0, 0, 100, 100));
    expectCounted(8000, [&] { space.quickFocus(kTooLong); });
    expectCounted(8000, [&] { space.summarize(kTooLong); });
    for (std::int32_t k = 0; k < 2000; ++k) {
        space.createSpace(box(500, 0, 10, 10)); // by hand, so that each slot is looked at
    }
    expectCounted(8000 + 2000, [&] { space.quickFocus(kTooLong); });
}

TEST_F(CountedWorkTest, Sums_ByTheSlotsThatWereFreed) {
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    for (std::uint32_t object = 0; object < 2000; ++object) {
        space.deleteObject(object);
    }
    expectCounted(2000, [&] { space.quickFocus(kTooLong); });
    expectCounted(32, [&] { space.quickFocus(kTooLong); }); // all slots are known to be worth nothing
}

// A crowd, and three areas of which the last cuts its place off from what it has in common with the second.
TEST_F(CountedWorkTest, SumsOfSiftedLists_ByTheNamesThatAreLeft_AndTheSiftingByAll) {
    constexpr std::uint32_t kCrowd = 40000;
    insertMany(kCrowd, {60, 140, 60, 80});
    for (const Rectangle& area :
         {Rectangle{20, 80, 60, 100}, Rectangle{60, 140, 40, 80}, Rectangle{60, 160, 40, 120}}) {
        insert(area);
    }
    const auto namesOf = [&] {
        return std::accumulate(
            space.graph.begin(), space.graph.end(), std::uint64_t{0},
            [](std::uint64_t sum, const OV_INTERSECTION& slot) { return sum + slot.objects.size(); });
    };
    std::vector<std::uint32_t> leaving(kCrowd - 50);
    std::iota(leaving.begin(), leaving.end(), 0u);
    space.deleteObjects(leaving);
    for (const std::uint32_t object : leaving) {
        store.valueObjects[object].value = 0.0;
    }
    const std::uint64_t names = namesOf();
    const auto sum = [&] { space.quickFocus(kTooLong, VS_LEFT_OBJECTS::WORTH_NOTHING); };
    expectCounted(names, sum); // sifts
    const std::uint64_t left = names - leaving.size();
    ASSERT_GE(left, 50u);
    ASSERT_LT(left, 500u);
    expectCounted(left, sum);

    // A space that is made below the one that was cut off is given all its names, and read without those that left.
    insert({70, 90, 62, 78});
    const std::uint64_t handedDown = namesOf() - names;
    ASSERT_GT(handedDown, leaving.size());
    expectCounted(left + handedDown - leaving.size(), sum);
}

// ---- Offers ----

TEST_F(CountedWorkTest, Offers_AreCountedByTheSpacesThatAreHotEnough) {
    // All but one are swallowed by the one around them.
    insert(box(0, 0, 600, 600), 50.0);
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k), 0.0);
    }
    for (const bool isQuick : {true, false}) {
        const std::uint64_t steps = stepsOf(store, [&] {
            isQuick ? static_cast<void>(space.quickFocus(1.0)) : static_cast<void>(space.summarize(1.0));
        });
        // To sum 4,001 names and to score one space takes less than this; a look at each space that is offered does not.
        EXPECT_GE(steps, 3 * 2001u + 4001 / 4);
    }
}

TEST_F(CountedWorkTest, Offers_ByTheParentsThatMaySwallow) {
    constexpr std::int32_t kParents = 2000;
    constexpr std::int32_t kChildren = 40;
    // Cold ones above and hot ones below, none of which lies in another.
    for (std::int32_t k = 0; k < kParents + kChildren; ++k) {
        space.createSpace(cell(k));
    }
    addObject(box(0, 0, 1, 1), 9.0);
    for (std::int32_t child = kParents; child < kParents + kChildren; ++child) {
        auto& slot = space.graph[static_cast<std::size_t>(child)];
        slot.objects = {0};
        slot.parents.resize(kParents);
        std::iota(slot.parents.begin(), slot.parents.end(), 0u);
    }
    expectCounted(std::uint64_t{kParents} * kChildren, [&] { space.quickFocus(1.0); });
}

TEST_F(CountedWorkTest, AnOfferToATier_ByTheLengthOfItsList) {
    for (std::int32_t k = 0; k <= 3000; ++k) {
        space.createSpace(cell(k));
    }
    std::vector<std::uint32_t> list(3000);
    std::iota(list.begin(), list.end(), 0u);
    expectCounted(3000, [&] { space.summarizeGraph(list, 3000); });
    EXPECT_EQ(list.size(), 3001u);
}

TEST_F(CountedWorkTest, Scores_ByTheObjectsThatEachSpaceIsHeldAgainst) {
    constexpr std::uint32_t kSpaces = 60;
    for (const std::uint32_t crowd : {2000u, 6000u}) { // laid out before the first score, or after it
        space.reset();
        store.valueObjects.clear();
        insertMany(crowd, box(0, 600, 100, 100));
        std::vector<std::uint32_t> list;
        list.reserve(kSpaces);
        for (std::int32_t k = 0; k < static_cast<std::int32_t>(kSpaces); ++k) {
            list.push_back(space.objectMap.at(insert(cell(k), 50.0)));
        }
        VS_VALUE_MAP map;
        expectCounted(std::uint64_t{kSpaces} * crowd, [&] { space.summarizeTier(list, map); });
        // Of one space alone, with the walk over the map or the laying out of it.
        list.resize(1);
        expectCounted(2ULL * std::uint64_t{crowd}, [&] { space.summarizeTier(list, map); });
    }
}

TEST_F(CountedWorkTest, Scores_ByTheObjectsThatAreWorthNothingToo) {
    insertMany(4000, box(0, 0, 100, 100), 0.0);
    std::vector<std::uint32_t> list{0};
    VS_VALUE_MAP map;
    expectCounted(4000, [&] { space.summarizeTier(list, map); });
}

// ---- Insertion ----

TEST_F(CountedWorkTest, Insertion_ByTheSpacesThatItLooksAt) {
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    // Apart from all, so that each is looked at and none is met; it is looked for first, and then made.
    expectCounted(3ULL * 2000, [&] { insert(box(0, 900, 10, 10)); });
    // At a place that is there: found on the way.
    expectCounted(2000, [&] { insert(box(0, 900, 10, 10)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheChildrenOfTheSpacesOnItsWay) {
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    expectCounted(3ULL * 2000, [&] { insert(box(500, 500, 20, 20)); });
    expectCounted(2000, [&] { insert(box(500, 500, 20, 20)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheListsThatItEnters) {
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    // The list of each, and the memory that it lies in; the second time the lists have room, and are known.
    expectCounted(2ULL * 2000, [&] { insert(box(0, 0, 600, 600)); });
    expectCounted(2000, [&] { insert(box(0, 0, 600, 600)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheNamesThatANewSpaceInherits) {
    insertMany(8000, box(0, 0, 400, 400));
    expectCounted(8000, [&] { insert(box(100, 100, 50, 50)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheSpacesThatItMakes_WithTheirMemory) {
    for (std::int32_t k = 0; k < 3000; ++k) {
        insert(box(k * 10, 0, 4, 100));
    }
    // What it has in common with each of them: compared with those made before, made, linked twice and named.
    expectCounted(3000ULL * 2999 / 2, [&] { insert(box(0, 50, 30000, 20)); });
}

TEST_F(CountedWorkTest, Insertion_ByThePairsOfSpacesThatItMakes) {
    // One in the other, so that each has one parent and one child; by hand, so that no list is long.
    for (std::int32_t k = 0; k < 3000; ++k) {
        space.createSpace(box(0, 0, 60000 - 17 * k, 60000 - 17 * k));
        if (k > 0) {
            space.createLink(static_cast<unsigned>(k) - 1, static_cast<unsigned>(k));
        }
    }
    space.topSpaces = {0};
    expectCounted(3000ULL * 2999 / 2, [&] { insert(box(0, 0, 1, 70000)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheSpacesThatItTakesOver) {
    for (std::int32_t k = 0; k < 800; ++k) {
        insert(cell(k));
    }
    expectCounted(800ULL * 799 / 2, [&] { insert(box(0, 0, 600, 600)); });
}

TEST_F(CountedWorkTest, ManyInsertions_ByTheListsThatEachEnters) {
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 100; ++k) {
        insert(cell(k));
    }
    expectCounted(500ULL * 101, [&] { insertMany(500, box(0, 0, 600, 600)); });
    // One that finds no room in the lists of the cells.
    while (space.graph[1].objects.size() < space.graph[1].objects.capacity()) {
        insert(box(0, 0, 600, 600));
    }
    const std::size_t names = space.graph[1].objects.size();
    expectCounted(100ULL * names, [&] { insert(box(0, 0, 600, 600)); });
}

TEST_F(CountedWorkTest, Insertion_ByTheChildrenOfWhatItOverlaps) {
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    // Half outside, and apart from all children: each of them is looked at, and the new link compared with each.
    expectCounted(3ULL * 2000, [&] { insert(box(550, 550, 100, 100)); });
}

TEST_F(CountedWorkTest, ManyInsertions_ByTheSpacesThatEachLooksAt_InAGraphMadeByHand) {
    for (std::int32_t k = 0; k < 500; ++k) {
        insert(cell(k));
    }
    space.createSpace(box(900, 900, 5, 5));
    expectCounted(20ULL * 500, [&] { insertMany(20, cell(499)); });
}

// By hand, so that the children have many parents. None of them reaches as far as the object.
TEST_F(CountedWorkTest, Insertion_ByTheChildrenOfEachSpaceThatItOverlaps) {
    constexpr std::uint32_t kChildren = 400;
    for (const std::uint32_t parents : {10u, 100u}) {
        space.reset();
        for (std::uint32_t child = 0; child < kChildren; ++child) {
            space.createSpace(cell(static_cast<std::int32_t>(child)));
        }
        std::vector<std::uint32_t> children(kChildren);
        std::iota(children.begin(), children.end(), 0u);
        for (std::uint32_t parent = kChildren; parent < kChildren + parents; ++parent) {
            // The narrowest first: what the object has in common with it is the same for all.
            space.createSpace(box(600, 600, 100 + static_cast<std::int32_t>(parent), 100));
            space.graph[parent].children = children;
            space.topSpaces.push_back(parent);
        }
        expectCounted(std::uint64_t{parents} * kChildren, [&] { insert(box(550, 550, 100, 100)); });
    }
}

// By hand, so that what reaches further comes later without being below anything.
TEST_F(CountedWorkTest, Insertion_ByTheRecordsThatALargerOneIsAround) {
    constexpr std::int32_t kSmall = 200;
    constexpr std::int32_t kLarge = 200;
    for (std::int32_t k = 0; k < kSmall + kLarge; ++k) {
        const std::int32_t further = k - kSmall;
        space.createSpace(k < kSmall ? box(10 * k, 0, 4, 10) : box(-further - 1, 0, 2002 + 2 * further, 10));
        space.topSpaces.push_back(static_cast<std::uint32_t>(k));
    }
    expectCounted(std::uint64_t{kLarge} * (kSmall + kLarge), [&] { insert(box(-500, 0, 3000, 10)); });
}

// By hand, since a graph of so many takes long to grow. Those that move stand at the end of their parent's list.
TEST_F(CountedWorkTest, Insertion_ByTheListsThatTheSpacesItTakesOverStandIn) {
    constexpr std::uint32_t kAll = 8000;
    constexpr std::uint32_t kMoving = 300;
    space.createSpace(box(0, 0, 600, 20000));
    space.topSpaces = {0};
    for (std::uint32_t child = 1; child <= kAll; ++child) {
        const auto k = static_cast<std::int32_t>(child);
        space.createSpace(child > kAll - kMoving ? box(0, 1000 + k, 10, 1) : cell(k));
        space.graph[0].children.push_back(child);
        space.graph[child].parents = {0};
    }
    expectCounted(std::uint64_t{kMoving} * kAll, [&] { insert(box(-10, 5000, 30, 5000)); });
    EXPECT_EQ(space.graph[0].children.size(), kAll - kMoving + 1); // and what it has in common with the object
}

// ---- Deletion ----

TEST_F(CountedWorkTest, Deletion_ByTheObjectsThatAreAskedFor) {
    std::vector<std::uint32_t> unknown(8000);
    std::iota(unknown.begin(), unknown.end(), 0u);
    expectCounted(8000, [&] { space.deleteObjects(unknown); });
    insertMany(30, box(0, 0, 100, 100));
    expectCounted(2ULL * 8000, [&] {
        std::iota(unknown.begin(), unknown.end(), 30u);
        space.deleteObjects(unknown);
    });
}

TEST_F(CountedWorkTest, Deletion_ByTheListsThatTellWhoStandsIn_AndThoseThatAreLeft) {
    insertMany(16000, box(0, 0, 400, 400));
    // The map and the list are read for those who stand in, and the list once more.
    expectCounted(3ULL * 16000, [&] { space.deleteObject(7); });
    insert(box(100, 100, 50, 50));
    std::vector<std::uint32_t> leaving(8000);
    std::iota(leaving.begin(), leaving.end(), 0u);
    expectCounted(4ULL * 16000, [&] { space.deleteObjects(leaving); });
}

TEST_F(CountedWorkTest, Deletion_ByTheSpacesBelow_AndWhatTheyAreJudgedBy) {
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    // Each child is judged, taken off its parent, and found at the top of all.
    expectCounted(2ULL * 2000, [&] { space.deleteObject(0); });
}

TEST_F(CountedWorkTest, Deletion_ByTheLinksThatAreHandedUp) {
    insert(box(0, 0, 700, 700));
    insert(box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 800; ++k) {
        insert(cell(k));
    }
    // Each child is looked for among those that its new parent has already.
    expectCounted(800ULL * 799 / 2, [&] { space.deleteObject(1); });
}

TEST_F(CountedWorkTest, Deletion_ByTheObjectsElsewhere_AmongWhichItLooksForOneThatStandsIn) {
    insertMany(16000, box(0, 0, 400, 400));
    const std::uint32_t alone = insert(box(500, 0, 10, 10));
    expectCounted(16000, [&] { space.deleteObject(alone); });
}

TEST_F(CountedWorkTest, Deletion_ByTheListsElsewhere_ThatTellWhoStandsIn) {
    insertMany(500, box(0, 0, 600, 600));
    for (std::int32_t k = 0; k < 120; ++k) {
        insert(cell(k));
    }
    const std::uint32_t one = insert(box(700, 0, 10, 10));
    insert(box(700, 0, 10, 10));
    expectCounted(500ULL * 120, [&] { space.deleteObject(one); });
}

TEST_F(CountedWorkTest, Deletion_OfOneThatIsStoodInFor_ByTheGraph) {
    for (std::int32_t k = 0; k < 2000; ++k) {
        insert(cell(k));
    }
    const std::uint32_t one = insert(box(0, 900, 10, 10));
    insert(box(0, 900, 10, 10));
    expectCounted(2ULL * 2000, [&] { space.deleteObject(one); });
}

// Where links were lost, each place from which one leaves is gone through with all that is below it.
TEST_F(CountedWorkTest, Deletion_ByTheListsBelowEachPlace) {
    for (const Rectangle& area : {Rectangle{60, 140, 60, 80}, Rectangle{20, 80, 60, 100}, Rectangle{60, 140, 40, 80},
                                  Rectangle{60, 160, 40, 120}}) {
        insert({area.left + 9000, area.right + 9000, area.top, area.bottom});
    }
    constexpr std::int32_t kPlaces = 30;
    std::vector<std::uint32_t> leaving;
    for (std::int32_t k = 0; k < kPlaces; ++k) { // one in the other
        const Rectangle place = box(-40 * (kPlaces - k), -40 * (kPlaces - k), 600 + 80 * (kPlaces - k), 3000);
        leaving.push_back(insert(place));
        insert(place);
    }
    for (std::int32_t k = 0; k < 300; ++k) {
        insert(cell(k));
    }
    expectCounted(std::uint64_t{kPlaces} * 300 * 2 * kPlaces, [&] { space.deleteObjects(leaving); });
}

// What is below each place is known from the time before, and all of it stands as it should.
TEST_F(CountedWorkTest, Deletion_ByTheListsBelowEachPlace_OnceMore) {
    for (const Rectangle& area : {Rectangle{60, 140, 60, 80}, Rectangle{20, 80, 60, 100}, Rectangle{60, 140, 40, 80},
                                  Rectangle{60, 160, 40, 120}}) {
        insert({area.left + 9000, area.right + 9000, area.top, area.bottom});
    }
    constexpr std::uint32_t kPlaces = 10;
    constexpr std::uint32_t kCells = 100;
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> next;
    for (std::uint32_t k = kPlaces; k > 0; --k) { // one in the other
        const auto margin = static_cast<std::int32_t>(40 * k);
        const Rectangle place = box(-margin, -margin, 600 + 2 * margin, 3000);
        insertMany(2, place);
        first.push_back(insert(place));
        next.push_back(insert(place));
    }
    for (std::uint32_t k = 0; k < kCells; ++k) {
        insert(cell(static_cast<std::int32_t>(k)));
    }
    space.deleteObjects(first);
    expectCounted(std::uint64_t{kPlaces} * kCells * 3 * kPlaces, [&] { space.deleteObjects(next); });
}

// By hand, so that nobody stands in.
TEST_F(CountedWorkTest, Deletion_ByTheNamesOfTheSpaceThatIsJudged) {
    insertMany(16000, box(0, 0, 400, 400));
    space.createSpace(box(500, 0, 10, 10));
    expectCounted(16000, [&] { space.deleteObject(7); });
}

TEST_F(CountedWorkTest, Deletion_ByTheSlotsOfTheGraph) {
    insert(box(0, 0, 400, 400));
    for (std::int32_t k = 0; k < 20000; ++k) {
        space.createSpace(box(500, 0, 10, 10));
    }
    expectCounted(20000, [&] { space.deleteObject(0); });
}

TEST_F(CountedWorkTest, Deletion_ByThePairsOfParents) {
    constexpr std::uint32_t kParents = 300;
    for (std::int32_t k = 0; k <= static_cast<std::int32_t>(kParents); ++k) {
        const std::uint32_t object = addObject(cell(k));
        space.graph[space.createSpace(cell(k))].objects = {object};
    }
    OV_INTERSECTION& judged = space.graph[kParents];
    judged.objects.push_back(addObject(cell(0)));
    for (std::uint32_t parent = 0; parent < kParents; ++parent) {
        judged.parents.push_back(parent);
        space.graph[parent].children = {kParents};
    }
    space.objectMap = {{kParents, kParents}};
    expectCounted(std::uint64_t{kParents} * kParents, [&] { space.deleteObject(kParents); });
    EXPECT_EQ(judged.parents.size(), std::size_t{kParents});
}

TEST_F(CountedWorkTest, Deletion_ByTheListsThatAreCompared) {
    constexpr std::uint32_t kParents = 20;
    constexpr std::uint32_t kNames = 1000;
    for (std::uint32_t slot = 0; slot <= kParents; ++slot) {
        space.createSpace(cell(static_cast<std::int32_t>(slot)));
        for (std::uint32_t k = 0; k < kNames; ++k) {
            space.graph[slot].objects.push_back(addObject(cell(0))); // in no other list
        }
    }
    OV_INTERSECTION& judged = space.graph[kParents];
    for (std::uint32_t parent = 0; parent < kParents; ++parent) {
        judged.parents.push_back(parent);
        space.graph[parent].children = {kParents};
    }
    space.objectMap = {{judged.objects[0], kParents}};
    expectCounted(std::uint64_t{kParents} * kParents * 2 * kNames, [&] { space.deleteObject(judged.objects[0]); });
    EXPECT_EQ(judged.parents.size(), std::size_t{kParents});
}

} // namespace
} // namespace OrvantaNS::testing
