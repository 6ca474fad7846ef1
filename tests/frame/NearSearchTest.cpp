// The search for what mostly lies near, held against reading one by one.
#include "frame/NearSearch.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS {
namespace {

TEST(NearSearchTest, FindsTheFirstThatIsNotBefore) {
    for (int length = 0; length <= 70; ++length) {
        std::vector<int> numbers(static_cast<std::size_t>(length));
        std::iota(numbers.begin(), numbers.end(), 0);
        for (int from = 0; from <= length; ++from) {
            for (int wanted = 0; wanted <= length + 1; ++wanted) {
                const auto found =
                    firstNear(numbers.cbegin() + from, numbers.cend(), [&](int number) { return number < wanted; });
                EXPECT_EQ(found - numbers.cbegin(), std::clamp(wanted, from, length)) << length << ' ' << from;
            }
        }
    }
}

// Of a long list no more is read than twice the way to the answer, and few of those.
TEST(NearSearchTest, ReadsNothingFarBehindTheAnswer) {
    std::vector<int> numbers(1 << 20);
    std::iota(numbers.begin(), numbers.end(), 0);
    for (const int wanted : {0, 1, 2, 3, 10, 100, 1000, 100000}) {
        int reads = 0;
        int farthest = 0;
        const auto found = firstNear(numbers.cbegin(), numbers.cend(), [&](int number) {
            ++reads;
            farthest = std::max(farthest, number);
            return number < wanted;
        });
        EXPECT_EQ(*found, wanted);
        EXPECT_LE(farthest, 2 * wanted + 1);
        EXPECT_LE(reads, wanted < 16 ? 10 : 40);
    }
}

} // namespace
} // namespace OrvantaNS
