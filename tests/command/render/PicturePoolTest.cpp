#include "render/PicturePool.h"

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace OrvantaNS::render {
namespace {

TEST(PicturePoolTest, PicturesThatAreGone_GiveTheirMemoryToTheNext) {
    PicturePool pool(320, 200, AV_PIX_FMT_YUV420P);
    std::set<const std::uint8_t*> places;
    for (int i = 0; i < 50; ++i) {
        const FramePointer one = pool.picture();
        const FramePointer other = pool.picture();
        EXPECT_NE(one->data[0], other->data[0]); // Both are in use.
        places.insert({one->data[0], other->data[0]});
    }
    EXPECT_EQ(places.size(), 2U);
}

TEST(PicturePoolTest, SharedPicture_KeepsItsMemory) {
    PicturePool pool(64, 64, AV_PIX_FMT_GRAY8);
    FramePointer first = pool.picture();
    first->data[0][0] = 7;
    const FramePointer shared = sharePicture(*first);
    first.reset();
    const FramePointer next = pool.picture();
    next->data[0][0] = 9;
    EXPECT_EQ(shared->data[0][0], 7);
}

TEST(PicturePoolTest, Pictures_OutliveThePool) {
    FramePointer picture;
    {
        PicturePool pool(64, 64, AV_PIX_FMT_YUV444P10);
        picture = pool.picture();
    }
    picture->data[2][static_cast<std::ptrdiff_t>(picture->linesize[2]) * 63 + 127] = 1;
    EXPECT_NE(av_frame_get_plane_buffer(picture.get(), 2), nullptr);
}

TEST(PicturePoolTest, Rows_AreAligned_AtOddSizesToo) {
    for (const auto& [width, height] : {std::pair{1, 1}, {321, 201}, {1919, 1079}}) {
        PicturePool pool(width, height, AV_PIX_FMT_YUV420P);
        const FramePointer picture = pool.picture();
        for (int plane = 0; plane < 3; ++plane) {
            EXPECT_EQ(picture->linesize[plane] % kRowAlignment, 0);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(picture->data[plane]) % 32, 0U); // What zimg demands.
        }
        EXPECT_GE(picture->linesize[0], width);
    }
}

} // namespace
} // namespace OrvantaNS::render
