#include "effect/raster/ConvexFiller.h"

#include <gtest/gtest.h>

#include <limits>

#include "effect/raster/DrawDot.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::AllPixels;
using test::box;
using test::opaqueRed;
using test::Points;
using test::TestCanvas;

template <class Pixel>
class ConvexFillerAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(ConvexFillerAtDepth, AllPixels);

TYPED_TEST(ConvexFillerAtDepth, aSquareOnWholePixelsCoversAll64SamplesOfEach) {
  TestCanvas<TypeParam> canvas(6, 6);
  canvas.fill(box(0, 0, 4, 4), opaqueRed<TypeParam>());
  EXPECT_TRUE(canvas.rasterizer.suitsConvexFiller());
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 6; ++x) EXPECT_EQ(canvas.count(x, y), x < 4 && y < 4 ? 64 : 0) << x << ' ' << y;
  }
}

TYPED_TEST(ConvexFillerAtDepth, halfTheSubRowsAreHalfTheSamples) {
  TestCanvas<TypeParam> canvas(3, 3);
  canvas.fill(box(0, 1, 3, 1.5), opaqueRed<TypeParam>());
  for (int32_t x = 0; x < 3; ++x) {
    EXPECT_EQ(canvas.count(x, 0), 0) << x;
    EXPECT_EQ(canvas.count(x, 1), 32) << x;
    EXPECT_EQ(canvas.count(x, 2), 0) << x;
  }
}

TYPED_TEST(ConvexFillerAtDepth, nothingIsWrittenBesideTheCanvasAndTheRimCountsItsOwnSamples) {
  TestCanvas<TypeParam> canvas(4, 3);
  canvas.fill(box(-5.5, -3.25, 0.5, 0.75), opaqueRed<TypeParam>());
  canvas.fill(box(3.25, 2.5, 9.0, 11.0), opaqueRed<TypeParam>());
  EXPECT_TRUE(canvas.guardsAreWhole());
  EXPECT_EQ(canvas.count(0, 0), 4 * 6);
  EXPECT_EQ(canvas.count(1, 0), 0);
  EXPECT_EQ(canvas.count(3, 2), 6 * 4);
  EXPECT_EQ(canvas.count(2, 2), 0);
  EXPECT_EQ(canvas.paintedPixels(), 2);
}

TYPED_TEST(ConvexFillerAtDepth, bothWindingsGiveTheSamePixels) {
  const Points outline{{3.2, 0.4}, {6.7, 2.9}, {5.1, 6.6}, {1.3, 5.0}};
  TestCanvas<TypeParam> forward(8, 8), backward(8, 8);
  forward.fill(outline, opaqueRed<TypeParam>());
  backward.fill(Points(outline.rbegin(), outline.rend()), opaqueRed<TypeParam>());
  EXPECT_GT(forward.paintedPixels(), 10);
  EXPECT_EQ(forward.differenceFrom(backward), "");
}

TYPED_TEST(ConvexFillerAtDepth, aCanvasOfOnePixelIsFilled) {
  TestCanvas<TypeParam> canvas(1, 1);
  canvas.fill(box(-1, -1, 2, 2), opaqueRed<TypeParam>());
  EXPECT_EQ(canvas.at(0, 0), opaqueRed<TypeParam>());
  EXPECT_TRUE(canvas.guardsAreWhole());
}

TYPED_TEST(ConvexFillerAtDepth, aCanvasWithoutPixelsIsNoError) {
  Pixel8 none{};
  PolygonRasterizer<Pixel8> rasterizer;
  DrawContext<Pixel8> context{.canvas = {&none, 0, 0, 0}, .rasterizer = &rasterizer};
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    EXPECT_EQ(drawDot(context, {-1.0, 0.0, 0.0, opaqueRed<Pixel8>(), 9.0, 9.0, 0.1, shape}), 0);
  }
  EXPECT_EQ(none, Pixel8{});
}

TEST(ConvexFiller, subRowsAboveTheTopOfTheOutlineCountNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 0.625, 4, 3), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(1, 0), 3 * 8);
  EXPECT_EQ(canvas.count(1, 1), 64);
}

TEST(ConvexFiller, anOutlineWhoseLastSubRowIs21FlushesItsPixelRow) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 0, 4, 22.0 / 8.0), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(2, 1), 64);
  EXPECT_EQ(canvas.count(2, 2), 6 * 8);  // sub-rows 16 to 21; 22 and 23 are empty
  EXPECT_EQ(canvas.count(2, 3), 0);
}

TEST(ConvexFiller, theSubRowOfTheBottomVertexIsNotPainted) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 0, 4, 21.0 / 8.0), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(2, 2), 5 * 8);
}

TEST(ConvexFiller, xIsExactAtTheCentreOfTheSubRow) {
  TestCanvas<Pixel8> canvas(2, 2);
  // The right side runs from (0, 0) to (1, 1): at the centre of sub-row y it stands at y + 0.5 sub-columns, and the
  // span ends at trunc(y + 0.5 - 0.5) = y, from 0 on: 1 + 2 + ... + 8 samples.
  canvas.fill({{0, 0}, {1, 1}, {0, 1}}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(0, 0), 36);
}

TEST(ConvexFiller, aFlatTopIsFilledWhicheverOfItsCornersComesFirst) {
  const Points corners = box(0, 1, 3, 3);
  for (std::size_t first = 0; first < 4; ++first) {
    TestCanvas<Pixel8> canvas(4, 4);
    canvas.fill({corners[first], corners[(first + 1) % 4], corners[(first + 2) % 4], corners[(first + 3) % 4]},
                opaqueRed<Pixel8>());
    EXPECT_EQ(canvas.count(0, 1), 64) << first;
    EXPECT_EQ(canvas.count(2, 2), 64) << first;
    EXPECT_EQ(canvas.paintedPixels(), 6) << first;
  }
}

// Truncation goes toward zero, so x from -0.5 to 0.5 sub-columns all round to sub-column 0: a sliver there covers one.
TEST(ConvexFiller, aSliverLeftOfTheFirstColumnStillCoversIt) {
  TestCanvas<Pixel8> canvas(2, 1);
  canvas.fill(box(-0.03, 0, 0.03, 1), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(0, 0), 8);
}

TEST(ConvexFiller, anOutlineAboveTheCanvasPaintsNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, -9, 4, -0.25), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_TRUE(canvas.guardsAreWhole());
}

// One side upright, the other moving by a sub-column per sub-row, from eight pixels above the canvas.
TEST(ConvexFiller, aSlantedSideBesideAnUprightOneIsSteppedAboveTheCanvas) {
  for (const Points& outline : {Points{{0, -8}, {0, 8}, {16, 8}}, Points{{0, -8}, {16, 8}, {0, 8}}}) {
    TestCanvas<Pixel8> canvas(10, 8);
    canvas.fill(outline, opaqueRed<Pixel8>());
    EXPECT_EQ(canvas.count(7, 0), 64);
    EXPECT_EQ(canvas.count(8, 0), 36);
    EXPECT_EQ(canvas.count(9, 0), 0);
    EXPECT_EQ(canvas.count(9, 1), 36);
  }
}

TEST(ConvexFiller, anOutlineBelowTheCanvasPaintsNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 4, 4, 300), opaqueRed<Pixel8>());
  canvas.fill(box(0, 2.0e9, 4, 2.1e9), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_TRUE(canvas.guardsAreWhole());
}

// The first outline ends on sub-row 11, in the middle of pixel row 1, and the second begins on sub-row 12.
TEST(ConvexFiller, aGroupLeavesNothingForTheNextOutline) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 0, 4, 1.5), Pixel8{0, 0, 0, 0});  // paints nothing
  canvas.fill(box(1, 1.5, 2, 1.75), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 1);
  EXPECT_EQ(canvas.count(1, 1), 16);
}

TEST(ConvexFiller, spansRightOfColumn4096ArePainted) {
  TestCanvas<Pixel8> canvas(5001, 2);
  canvas.fill(box(4990, 0, 4998.5, 1.5), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(4989, 0), 0);
  EXPECT_EQ(canvas.count(4990, 0), 64);
  EXPECT_EQ(canvas.count(4998, 0), 32);
  EXPECT_EQ(canvas.count(4998, 1), 16);
  EXPECT_EQ(canvas.count(4999, 0), 0);
}

// 8 * 268435455.5 is 2147483644: the span ends there, and eight more columns wrap around to the far left.
TEST(ConvexFiller, aSpanThatEndsAtTheLastColumnsOf32BitsPaintsNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(0, 0, 268435455.5, 2), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
  canvas.fill(box(0, 0, 268435450.0, 2), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 8);
}

TEST(ConvexFiller, aSpanBeyond32BitsPaintsNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill(box(-1e300, 0, 1e300, 2), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

// A side at sub-column -0.25 ends its span at -0.75, which is cut to 0; rounding down would give -1, off the canvas.
TEST(ConvexFiller, columnsLeftOfTheCanvasAreCutTowardZero) {
  TestCanvas<Pixel8> canvas(2, 1);
  canvas.fill(box(-3.0, 0, -0.25 / 8.0, 1), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(0, 0), 8);
  TestCanvas<Pixel8> further(2, 1);
  further.fill(box(-3.0, 0, -0.5 / 8.0, 1), opaqueRed<Pixel8>());  // -0.5 - 0.5 is -1
  EXPECT_EQ(further.count(0, 0), 0);
}

// Sub-rows pass 32,767 there, the end of 16 bits.
TEST(ConvexFiller, rowsBelow4096ArePainted) {
  TestCanvas<Pixel8> canvas(2, 5001);
  canvas.fill(box(0, 4090, 2, 4998.5), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(0, 4089), 0);
  EXPECT_EQ(canvas.count(0, 4090), 64);
  EXPECT_EQ(canvas.count(1, 4096), 64);
  EXPECT_EQ(canvas.count(1, 4998), 32);
  EXPECT_EQ(canvas.count(1, 4999), 0);
  EXPECT_EQ(canvas.paintedPixels(), 2 * 909);
}

}  // namespace
}  // namespace vindrel
