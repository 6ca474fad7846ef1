#include "reading/Recording.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Reading.h"

namespace OrvantaNS::command {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::readText;

std::string headerWithScale(const std::string& scale) {
    return R"({"format": "orvanta-recording", "version": 1, "timeScale": )" + scale + "}\n";
}

/// Wheel steps at times 0 to `last`, evenly apart.
std::string events(int count, long long last) {
    std::string text;
    for (long long i = 0; i < count; ++i) {
        text += "[" + std::to_string(last * i / (count - 1)) + ",\"action\",6]\n";
    }
    return text;
}

TEST(RecordingTest, LengthRemark_LongerThanAWeek) {
    // A week has 604,800 seconds.
    EXPECT_THAT(readText(headerWithScale("1") + events(2, 604800)).warnings(), IsEmpty());
    EXPECT_THAT(readText(headerWithScale("1") + events(2, 604801)).warnings(),
                ElementsAre("f: the recording is 7.0 days long by its clock of 1 ticks a second; is the time scale "
                            "right?"));
    // Microseconds with the scale of milliseconds: 2000 s become 2,000,000 s.
    EXPECT_THAT(readText(headerWithScale("1000") + events(2, 2000000000)).lengthRemark(),
                ::testing::StartsWith("the recording is 23.1 days long"));
}

TEST(RecordingTest, LengthRemark_ShorterThanASecondAndFullOfEvents) {
    EXPECT_THAT(readText(headerWithScale("1000") + events(20, 1000)).warnings(), IsEmpty());
    EXPECT_THAT(readText(headerWithScale("1000") + events(19, 999)).warnings(), IsEmpty());
    EXPECT_THAT(readText(headerWithScale("1000") + events(20, 999)).warnings(),
                ElementsAre("f: the recording is 0:00.999 long by its clock of 1000 ticks a second; is the time scale "
                            "right?"));
}

TEST(RecordingTest, LengthRemark_MoreEventsThanAnyRecorderSees) {
    // 10,000 a second are taken, one more in two seconds is not.
    EXPECT_THAT(readText(headerWithScale("1000") + events(20000, 2000)).warnings(), IsEmpty());
    EXPECT_EQ(readText(headerWithScale("1000") + events(20001, 2000)).warnings().size(), 1U);
}

} // namespace
} // namespace OrvantaNS::command
