#include "camera/director/FrameShape.h"

#include <cmath>

#include <gtest/gtest.h>

#include "Random.h"

namespace OrvantaNS::testing {
namespace {

using camera::FrameShape;
using camera::RealRect;

TEST(FrameShapeTest, Widest_ShapeOfTheRegion_IsTheRegion) {
    const FrameShape shape(640, 400, 1280, 800, 0.75, false);
    EXPECT_EQ(shape.widest(), 1280.0);
    EXPECT_TRUE(shape.holdsRegion());
    EXPECT_EQ(shape.frame(0, 0, 5000), (RealRect{0, 0, 1280, 800}));
}

TEST(FrameShapeTest, Widest_Portrait_IsAsHighAsTheRegionInWholeMeasures) {
    // 360 by 640 is 9 by 16; 800 rows hold 50 of the 16, so 450 columns.
    const FrameShape shape(360, 640, 1280, 800, 0.75, false);
    EXPECT_EQ(shape.widest(), 450.0);
    EXPECT_EQ(shape.heightOf(450.0), 800.0);
    EXPECT_FALSE(shape.holdsRegion());
}

TEST(FrameShapeTest, Widest_MayOverhang_HoldsTheRegion) {
    // 1280 columns need 143 times 9, which is 1287 by 2288; the frame stands out evenly, to the whole pixel below.
    const FrameShape shape(360, 640, 1280, 800, 0.75, true);
    EXPECT_EQ(shape.widest(), 1287.0);
    EXPECT_EQ(shape.frame(640, 400, 1287), (RealRect{-4, -744, 1283, 1544}));
}

TEST(FrameShapeTest, Frame_AtTheRegionsCorner_IsMovedInside) {
    const FrameShape shape(640, 400, 1280, 800, 0.75, false);
    EXPECT_EQ(shape.frame(1280, 800, 640), (RealRect{640, 400, 1280, 800}));
    EXPECT_EQ(shape.frame(0, 0, 640), (RealRect{0, 0, 640, 400}));
}

TEST(FrameShapeTest, Frame_TighterThanTheOutput_IsTheOutputs) {
    const FrameShape shape(640, 400, 1280, 800, 0.75, false);
    EXPECT_EQ(shape.frame(400, 300, 100), (RealRect{80, 100, 720, 500}));
}

TEST(FrameShapeTest, FittingWidth_HoldsTheRectangleAndNotAMeasureMore) {
    const FrameShape shape(640, 400, 1280, 800, 0.75, false);
    // 700 columns need 88 times 8; 500 rows need 800 columns.
    EXPECT_EQ(shape.fittingWidth({0, 0, 700, 10}, 1.0), 704.0);
    EXPECT_EQ(shape.fittingWidth({0, 0, 10, 500}, 1.0), 800.0);
    EXPECT_EQ(shape.fittingWidth({0, 0, 3000, 10}, 1.0), 1280.0);
}

TEST(FrameShapeTest, Frame_SliverOfAnOutput_StaysInside) {
    // No frame a hundred thousand times as high as wide fits in whole pixels; one column of the region does.
    const FrameShape shape(64, 6400000, 1280, 800, 0.75, false);
    const RealRect frame = shape.frame(640, 400, 64);
    EXPECT_EQ(frame, (RealRect{640, 0, 641, 800}));
}

TEST(FrameShapeTest, Frame_MeasureUpTo40_IsExact_AndACoarserOneIsRounded) {
    const FrameShape exact(1000, 975, 3000, 3000, 0.75, false); // 40 by 39
    EXPECT_EQ(exact.frame(1500, 1500, 1030), (RealRect{980, 993, 2020, 2007}));
    const FrameShape rounded(1025, 1000, 3000, 3000, 0.75, false); // 41 by 40
    EXPECT_EQ(width(rounded.frame(1500, 1500, 1030)), 1030.0);
    EXPECT_EQ(height(rounded.frame(1500, 1500, 1030)), 1004.0);
}

TEST(FrameShapeTest, Frame_SliverOfARegion_StaysInside) {
    // Four rows hold no frame of 8 by 5 pixels; 6 columns and 3 rows are the largest of about its shape.
    const FrameShape shape(640, 400, 1000, 4, 0.75, false);
    EXPECT_EQ(shape.widest(), 6.0);
    EXPECT_EQ(shape.heightOf(6.0), 3.0);
}

TEST(FrameShapeTest, HeightOf_IsAPixelAtLeast) {
    const FrameShape shape(6400000, 64, 1280, 800, 0.75, false);
    EXPECT_EQ(shape.heightOf(1280.0), 1.0);
}

TEST(FrameShapeTest, ReadingWidth_IsTheReadableFrames_ButNoNarrowerThanASquareOfItsArea) {
    EXPECT_DOUBLE_EQ(FrameShape(640, 400, 1280, 800, 0.75, false).readingWidth(), 640.0 / 0.75);
    // The root of 360 times 640 is 480.
    EXPECT_DOUBLE_EQ(FrameShape(360, 640, 3000, 3000, 0.75, false).readingWidth(), 640.0);
    EXPECT_EQ(FrameShape(360, 640, 1280, 800, 0.75, false).readingWidth(), 450.0);
}

TEST(FrameShapeTest, Frame_AnyShape_IsInsideInWholePixelsAndAtTheOutputsShape) {
    Random random(11);
    for (int i = 0; i < 2000; ++i) {
        const std::int32_t wide = random.range(64, 800);
        const std::int32_t high = random.range(64, 800);
        const double regionWidth = random.range(wide + 1, 3000);
        const double regionHeight = random.range(high + 1, 3000);
        const FrameShape shape(wide, high, regionWidth, regionHeight, 0.75, false);
        const RealRect frame = shape.frame(random.real(-100, 3000), random.real(-100, 3000), random.real(0, 4000));
        SCOPED_TRACE(::testing::Message() << wide << "x" << high << " of " << regionWidth << "x" << regionHeight);
        EXPECT_GE(frame.left, 0.0);
        EXPECT_GE(frame.top, 0.0);
        EXPECT_LE(frame.right, regionWidth);
        EXPECT_LE(frame.bottom, regionHeight);
        EXPECT_EQ(frame.left, static_cast<int>(frame.left));
        EXPECT_EQ(frame.bottom, static_cast<int>(frame.bottom));
        // At most a pixel off the shape, and at no zoom above 1.
        EXPECT_LE(std::abs(height(frame) - width(frame) * high / wide), 1.0);
        EXPECT_GE(width(frame), wide);
    }
}

} // namespace
} // namespace OrvantaNS::testing
