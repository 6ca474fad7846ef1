#include "OrvantaException.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace OrvantaNS {
namespace {

TEST(OrvantaExceptionTest, CarriesItsTextAndCode) {
    const OrvantaException failure("No keyframes were created!", OVERR_NO_KEYFRAMES);
    EXPECT_EQ(failure.message, "No keyframes were created!");
    EXPECT_EQ(failure.code, OVERR_NO_KEYFRAMES);
    EXPECT_STREQ(failure.what(), "No keyframes were created!");
    EXPECT_EQ(failure.errorCode(), OVERR_NO_KEYFRAMES);
}

TEST(OrvantaExceptionTest, ThrownByValue_IsCaughtAsTheStandardException) {
    try {
        throw OrvantaException("Need String! User Cancelled", OVERR_USER_CANCELLED);
    } catch (const std::exception& failure) {
        EXPECT_STREQ(failure.what(), "Need String! User Cancelled");
        const auto* own = dynamic_cast<const OrvantaException*>(&failure);
        ASSERT_NE(own, nullptr);
        EXPECT_EQ(own->errorCode(), OVERR_USER_CANCELLED);
    }
}

TEST(OrvantaExceptionTest, Copy_KeepsTextAndCode) {
    const OrvantaException failure(std::string(100, 'x'), OVERR_BAD_REGION);
    const OrvantaException copy(failure);
    EXPECT_EQ(copy.what(), std::string(100, 'x'));
    EXPECT_EQ(copy.errorCode(), OVERR_BAD_REGION);
}

TEST(OrvantaExceptionTest, Codes_AreOneToEight) {
    EXPECT_EQ(OVERR_BAD_TARGET_SIZE, 1);
    EXPECT_EQ(OVERR_TARGET_TOO_LARGE, 2);
    EXPECT_EQ(OVERR_BAD_TIME_SCALE, 3);
    EXPECT_EQ(OVERR_BAD_REGION, 4);
    EXPECT_EQ(OVERR_NO_LIVE_ZONES, 5);
    EXPECT_EQ(OVERR_MERGE_FAILED, 6);
    EXPECT_EQ(OVERR_NO_KEYFRAMES, 7);
    EXPECT_EQ(OVERR_USER_CANCELLED, 8);
    static_assert(std::is_same_v<std::underlying_type_t<OVERR_CODES>, std::int32_t>);
}

} // namespace
} // namespace OrvantaNS
