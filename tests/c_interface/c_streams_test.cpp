// What a host hands over: records that start with their size, streams with a stride.
#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "CRequest.h"

namespace OrvantaNS::testing {
namespace {

class CStreamsTest : public ::testing::Test {
protected:
    CStreamsTest() {
        orvanta_options options;
        orvanta_options_init(&options, sizeof options);
        options.target_width = 640;
        options.target_height = 400;
        orvanta_request* made = nullptr;
        orvanta_request_create(&options, &made, nullptr);
        request.reset(made);
    }

    // The frame of the first window: it shows which samples arrived.
    orvanta_rect frame() {
        orvanta_rect rect{-1, -1, -1, -1};
        code = orvanta_frame_at_window(request.get(), &rect, nullptr);
        return rect;
    }

    RequestHandle request;
    orvanta_error error = emptyError();
    std::int32_t code = -1;
};

constexpr orvanta_timed_rect kScreen{0, {0, 0, 1280, 800}};
// A window that fills the middle of the screen and has the target's shape: its frame is itself.
constexpr orvanta_timed_rect kWindow{0, {320, 200, 960, 600}};

TEST_F(CStreamsTest, AnyStrideAndAlignment_IsRead) {
    for (const std::size_t stride : {sizeof(orvanta_timed_rect), sizeof(orvanta_timed_rect) + 1, std::size_t{100}}) {
        for (const std::size_t offset : {0u, 1u, 3u}) {
            std::vector<unsigned char> bytes(offset + 2 * stride, 0xee);
            std::memcpy(bytes.data() + offset, &kWindow, sizeof kWindow);
            const orvanta_timed_rect later{5, {0, 0, 100, 100}};
            std::memcpy(bytes.data() + offset + stride, &later, sizeof later);
            ASSERT_EQ(orvanta_request_set_regions(request.get(), &kScreen, 1, 0, &error), ORVANTA_OK);
            ASSERT_EQ(orvanta_request_set_windows(request.get(), bytes.data() + offset, 2, stride, &error), ORVANTA_OK);
            const orvanta_rect rect = frame();
            EXPECT_EQ(code, ORVANTA_OK);
            EXPECT_EQ(rect.left, 320);
            EXPECT_EQ(rect.top, 200);
            EXPECT_EQ(rect.right, 960);
            EXPECT_EQ(rect.bottom, 600);
        }
    }
}

TEST_F(CStreamsTest, SamplesThatGoBack_AreRefusedAndTheStreamStays) {
    orvanta_request_set_regions(request.get(), &kScreen, 1, 0, nullptr);
    ASSERT_EQ(orvanta_request_set_windows(request.get(), &kWindow, 1, 0, &error), ORVANTA_OK);
    const orvanta_timed_rect back[] = {{5, {0, 0, 9, 9}}, {5, {0, 0, 9, 9}}, {4, {0, 0, 9, 9}}};
    EXPECT_EQ(orvanta_request_set_windows(request.get(), back, 3, 0, &error), ORVANTA_NOT_SORTED);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_WINDOWS);
    EXPECT_EQ(error.index, 2);
    EXPECT_EQ(error.value, 4.0);
    EXPECT_EQ(error.limit, 5.0);
    EXPECT_EQ(frame().left, 320);
    // Equal times are in order.
    EXPECT_EQ(orvanta_request_set_windows(request.get(), back, 2, 0, &error), ORVANTA_OK);
}

TEST_F(CStreamsTest, StreamsThatCannotBe_AreRefused) {
    EXPECT_EQ(orvanta_request_set_cursor(request.get(), nullptr, 1, 0, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_CURSOR);
    EXPECT_EQ(orvanta_request_set_actions(request.get(), &kScreen, 1, sizeof(orvanta_action_sample) - 1, &error),
              ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_STRIDE);
    EXPECT_EQ(error.limit, sizeof(orvanta_action_sample));
    EXPECT_EQ(orvanta_request_set_carets(request.get(), &kScreen, std::numeric_limits<std::size_t>::max(), 0, &error),
              ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_CARETS);
    // No samples need no pointer.
    EXPECT_EQ(orvanta_request_set_dirty_rects(request.get(), nullptr, 0, 0, &error), ORVANTA_OK);
}

// Two compilers tell of the address sanitizer in two ways.
#if defined(__SANITIZE_ADDRESS__)
#define ORVANTA_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVANTA_ADDRESS_SANITIZER
#endif
#endif

TEST_F(CStreamsTest, MoreSamplesThanThereIsMemory_AreRefused) {
#if defined(ORVANTA_ADDRESS_SANITIZER)
    GTEST_SKIP() << "the address sanitizer ends the program where memory runs out";
#else
    EXPECT_EQ(orvanta_request_set_dirty_rects(request.get(), &kScreen, std::numeric_limits<std::size_t>::max() / 64, 0,
                                              &error),
              ORVANTA_NO_MEMORY);
#endif
}

// A host that was built with a later header hands over longer records.
struct LaterOptions {
    orvanta_options known;
    std::uint64_t unknown;
};

TEST(COptionsTest, LaterRecord_IsTakenWhileItsNewFieldsAreZero) {
    LaterOptions later;
    std::memset(&later, 0x77, sizeof later);
    ASSERT_EQ(orvanta_options_init(&later.known, sizeof later), ORVANTA_OK);
    EXPECT_EQ(later.known.struct_size, sizeof later);
    EXPECT_EQ(later.unknown, 0u);
    EXPECT_EQ(later.known.time_scale, 1000000.0);
    EXPECT_EQ(later.known.fade_duration, 1000000);
    orvanta_error error = emptyError();
    orvanta_request* request = nullptr;
    EXPECT_EQ(orvanta_request_create(&later.known, &request, &error), ORVANTA_OK);
    orvanta_request_free(request);
    later.unknown = 1;
    EXPECT_EQ(orvanta_request_create(&later.known, &request, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_STRUCT_SIZE);
    EXPECT_EQ(request, nullptr);
}

TEST(COptionsTest, ShortRecord_IsRefused) {
    orvanta_options options{};
    EXPECT_EQ(orvanta_options_init(&options, sizeof options - 1), ORVANTA_BAD_ARGUMENT);
    orvanta_error error = emptyError();
    orvanta_request* request = nullptr;
    EXPECT_EQ(orvanta_request_create(&options, &request, &error), ORVANTA_BAD_ARGUMENT);
    EXPECT_EQ(error.parameter, ORVANTA_PARAMETER_STRUCT_SIZE);
    EXPECT_EQ(error.value, 0.0);
    EXPECT_EQ(error.limit, sizeof options);
}

TEST(CLayoutTest, Records_HaveNoHiddenPadding) {
    // What other languages build from the header by hand.
    EXPECT_EQ(sizeof(orvanta_rect), 16u);
    EXPECT_EQ(sizeof(orvanta_timed_rect), 24u);
    EXPECT_EQ(sizeof(orvanta_cursor_sample), 16u);
    EXPECT_EQ(sizeof(orvanta_action_sample), 16u);
    EXPECT_EQ(sizeof(orvanta_options), 80u);
    EXPECT_EQ(sizeof(orvanta_keyframe), 48u);
    EXPECT_EQ(sizeof(orvanta_zone), 32u);
    EXPECT_EQ(sizeof(orvanta_object), 48u);
    EXPECT_EQ(sizeof(orvanta_slice), 80u);
    EXPECT_EQ(sizeof(orvanta_space), 24u);
    EXPECT_EQ(sizeof(orvanta_frame), 40u);
    EXPECT_EQ(sizeof(orvanta_error), 296u);
}

} // namespace
} // namespace OrvantaNS::testing
