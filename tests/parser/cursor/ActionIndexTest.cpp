#include "parser/cursor/ActionIndex.h"

#include <random>

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

std::vector<OV_MOUSE_ACTION> actionsOf(std::initializer_list<std::int32_t> codes) {
    std::vector<OV_MOUSE_ACTION> actions;
    for (const std::int32_t code : codes) {
        actions.push_back({0, code});
    }
    return actions;
}

TEST(ActionIndexTest, FirstFrom_IncludesItsStart_LastBeforeExcludesItsEnd) {
    const std::vector<OV_MOUSE_ACTION> actions = actionsOf({0, 1, 0, 1, 2});
    const ActionIndex index(actions);
    EXPECT_EQ(index.firstFrom(1, 1), 1u);
    EXPECT_EQ(index.firstFrom(2, 1), 3u);
    EXPECT_EQ(index.firstFrom(4, 1), ActionIndex::kNone);
    EXPECT_EQ(index.firstFrom(0, 5), ActionIndex::kNone);
    EXPECT_EQ(index.lastBefore(2, 0), 0u);
    EXPECT_EQ(index.lastBefore(3, 0), 2u);
    EXPECT_EQ(index.lastBefore(0, 0), ActionIndex::kNone);
    EXPECT_EQ(index.lastBefore(5, 2), 4u);
}

TEST(ActionIndexTest, NoActions_FindsNothing) {
    const std::vector<OV_MOUSE_ACTION> none;
    const ActionIndex index(none);
    EXPECT_EQ(index.firstFrom(0, 0), ActionIndex::kNone);
    EXPECT_EQ(index.lastBefore(100, 0), ActionIndex::kNone);
}

TEST(ActionIndexTest, CodesOutsideTheButtons_AreLeftOut) {
    const std::vector<OV_MOUSE_ACTION> actions = actionsOf({6, 7, -1, 8, 2147483647, -2147483647 - 1, 4});
    const ActionIndex index(actions);
    EXPECT_EQ(index.firstFrom(0, 4), 6u);
}

TEST(ActionIndexTest, Searches_AgreeWithAScanOfTheArray) {
    constexpr std::uint32_t seed = 21;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int round = 0; round < 200; ++round) {
        std::vector<OV_MOUSE_ACTION> actions(random() % 40);
        for (OV_MOUSE_ACTION& action : actions) {
            action.action = static_cast<std::int32_t>(random() % 12) - 2;
        }
        const ActionIndex index(actions);
        for (std::size_t at = 0; at <= actions.size() + 2; ++at) {
            for (std::int32_t code = 0; code < 6; ++code) {
                std::size_t first = ActionIndex::kNone;
                std::size_t last = ActionIndex::kNone;
                for (std::size_t i = 0; i < actions.size(); ++i) {
                    if (actions[i].action == code && i >= at && first == ActionIndex::kNone) {
                        first = i;
                    }
                    if (actions[i].action == code && i < at) {
                        last = i;
                    }
                }
                ASSERT_EQ(index.firstFrom(at, code), first) << round;
                ASSERT_EQ(index.lastBefore(at, code), last) << round;
            }
        }
    }
}

} // namespace
} // namespace OrvantaNS
