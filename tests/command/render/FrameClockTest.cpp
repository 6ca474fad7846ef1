#include "render/FrameClock.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace OrvantaNS::render {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A clock on milliseconds that keeps what it emits.
class FrameClockTest : public ::testing::Test {
protected:
    struct Shown {
        int source; ///< Which picture: its width.
        std::int64_t stamp;
        std::int64_t duration;
        double seconds;
        bool operator==(const Shown&) const = default;
    };

    void start(const VideoClip& clip, std::optional<AVRational> rate = std::nullopt) {
        clock_.emplace(AVRational{1, 1000}, clip, rate, [this](const TimedPicture& picture) {
            shown_.push_back({picture.source->width, picture.stamp, picture.duration, picture.videoSeconds});
        });
    }
    void add(int source, std::int64_t stamp, std::int64_t duration = 100) {
        FramePointer picture = newPicture(source, 2, AV_PIX_FMT_GRAY8);
        clock_->add(std::move(picture), stamp, duration);
    }

    std::optional<FrameClock> clock_;
    std::vector<Shown> shown_;
};

TEST_F(FrameClockTest, WithoutClipAndRate_StampsStayAndDurationsReachTheNextPicture) {
    start({});
    add(1, 0);
    add(2, 40);
    add(3, 1000);
    clock_->finish();
    EXPECT_THAT(shown_, ElementsAre(Shown{1, 0, 40, 0.0}, Shown{2, 40, 960, 0.04}, Shown{3, 1000, 100, 1.0}));
    EXPECT_TRUE(clock_->done());
}

TEST_F(FrameClockTest, Clip_BeginsWithThePictureThatShowsThere) {
    start({0.5, 1.2});
    add(1, 0);
    add(2, 400);
    add(3, 900);
    EXPECT_FALSE(clock_->done());
    add(4, 1200);
    EXPECT_TRUE(clock_->done());
    EXPECT_THAT(shown_, ElementsAre(Shown{2, 0, 400, 0.5}, Shown{3, 400, 300, 0.9}));
}

TEST_F(FrameClockTest, PictureThatEndsWhereTheClipBegins_IsNotInIt) {
    start({0.4, std::nullopt});
    add(1, 0);
    add(2, 400);
    clock_->finish();
    EXPECT_THAT(shown_, ElementsAre(Shown{2, 0, 100, 0.4}));
}

TEST_F(FrameClockTest, ClipBehindTheVideo_IsEmpty) {
    start({5.0, 6.0});
    add(1, 0);
    clock_->finish();
    EXPECT_THAT(shown_, IsEmpty());
}

TEST_F(FrameClockTest, ConstantRate_RepeatsEachPictureWithMomentsOfItsOwn) {
    start({}, AVRational{10, 1});
    add(1, 0);
    add(2, 250);
    clock_->finish(); // Ends at 350.
    EXPECT_THAT(shown_,
                ElementsAre(Shown{1, 0, 1, 0.0}, Shown{1, 1, 1, 0.1}, Shown{1, 2, 1, 0.2}, Shown{2, 3, 1, 3 * 0.1}));
}

TEST_F(FrameClockTest, ConstantRate_DropsPicturesThatShowAtNoTick) {
    start({}, AVRational{2, 1});
    for (int i = 0; i < 10; ++i) {
        add(i + 1, 100 * i);
    }
    clock_->finish();
    EXPECT_THAT(shown_, ElementsAre(Shown{1, 0, 1, 0.0}, Shown{6, 1, 1, 0.5}));
}

TEST_F(FrameClockTest, ConstantRate_TakesAPictureAtItsOwnTick) {
    start({}, AVRational{30000, 1001});
    add(1, 0);
    add(2, 1001); // Exactly tick 30.
    clock_->finish();
    ASSERT_GT(shown_.size(), 30U);
    EXPECT_EQ(shown_[29].source, 1);
    EXPECT_EQ(shown_[30].source, 2);
}

TEST_F(FrameClockTest, StampsThatDoNotGoForward_AreDroppedAndCounted) {
    start({});
    add(1, 100);
    add(2, 100);
    add(3, 50);
    add(4, 200);
    clock_->finish();
    EXPECT_THAT(shown_, ElementsAre(Shown{1, 100, 100, 0.1}, Shown{4, 200, 100, 0.2}));
    EXPECT_EQ(clock_->dropped(), 2);
}

} // namespace
} // namespace OrvantaNS::render
