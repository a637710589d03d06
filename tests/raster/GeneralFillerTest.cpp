#include "effect/raster/GeneralFiller.h"

#include <gtest/gtest.h>

#include "effect/raster/DrawDot.h"
#include "effect/raster/PaintLists.h"
#include "effect/raster/PaintPixel.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::AllPixels;
using test::box;
using test::opaqueRed;
using test::Points;
using test::TestCanvas;

/// Sends any outline through the general filler.
template <class Pixel>
void fill(TestCanvas<Pixel>& canvas, const Points& points, const Pixel& color) {
  canvas.setOutline(points);
  fillGeneral(canvas.rasterizer.edges, *canvas.rasterizer.coverage, canvas.rasterizer.vertices, canvas.context.canvas,
              color);
}

template <class Pixel>
void drawCross(TestCanvas<Pixel>& canvas, double x, double y, double size) {
  drawDot(canvas.context, DotRecord<Pixel>{-1.0, x, y, opaqueRed<Pixel>(), size, size, 0.0, crossShape});
}

template <class Pixel>
class GeneralFillerAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(GeneralFillerAtDepth, AllPixels);

TYPED_TEST(GeneralFillerAtDepth, anOutlineAboveTheCanvasPaintsNothing) {
  TestCanvas<TypeParam> canvas(8, 8);
  drawCross(canvas, 4.0, -200.0, 12.0);
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_TRUE(canvas.guardsAreWhole());
}

TYPED_TEST(GeneralFillerAtDepth, anOutlineBelowTheCanvasPaintsNothing) {
  TestCanvas<TypeParam> canvas(8, 8);
  drawCross(canvas, 4.0, 15.0, 13.0);
  drawCross(canvas, 4.0, 2.0e8, 13.0);
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_TRUE(canvas.guardsAreWhole());
}

// The cross spans x from 7 to 17 and y from 7 to 17, its horizontal arm y from 10.5 to 13.5.
TYPED_TEST(GeneralFillerAtDepth, aCrossThatEndsOnAPixelsEdgeReachesOneSubColumnFurther) {
  TestCanvas<TypeParam> canvas(24, 24);
  drawCross(canvas, 12.0, 12.0, 10.0);
  for (const int32_t row : {11, 12}) {
    EXPECT_EQ(canvas.count(6, row), 0);
    EXPECT_EQ(canvas.count(7, row), 64);
    EXPECT_EQ(canvas.count(12, row), 64);
    EXPECT_EQ(canvas.count(16, row), 64);
    EXPECT_EQ(canvas.count(17, row), 8);
    EXPECT_EQ(canvas.count(18, row), 0);
  }
  EXPECT_EQ(canvas.count(7, 10), 32);
  EXPECT_EQ(canvas.count(12, 7), 64);
  EXPECT_EQ(canvas.count(12, 16), 64);
  EXPECT_EQ(canvas.count(12, 17), 0);
}

TYPED_TEST(GeneralFillerAtDepth, theMiddleOfAPentagramIsFilled) {
  TestCanvas<TypeParam> canvas(40, 40);
  drawDot(canvas.context, DotRecord<TypeParam>{-1.0, 20.0, 20.0, opaqueRed<TypeParam>(), 36.0, 36.0, 0.0, starShape});
  EXPECT_EQ(canvas.at(20, 20), opaqueRed<TypeParam>());
}

TYPED_TEST(GeneralFillerAtDepth, aPixelWhereTwoRunsMeetIsPaintedTwice) {
  using Channel = typename PixelTraits<TypeParam>::Channel;
  TestCanvas<TypeParam> canvas(4, 4);
  TypeParam half = opaqueRed<TypeParam>();
  half.alpha = static_cast<Channel>(half.alpha * 128 / 255);  // 128, 16448, 0.50196...
  // Two bars of a U, sub-columns 0 to 2 and 4 to 6 of pixel 0: 48 samples.
  canvas.fill({{0, 0}, {0.25, 0}, {0.25, 1.25}, {0.5, 1.25}, {0.5, 0}, {0.75, 0}, {0.75, 2}, {0, 2}}, half);
  TypeParam expected{};
  paintPixel(expected, half, 48);
  paintPixel(expected, half, 48);
  EXPECT_EQ(canvas.at(0, 0), expected);
  EXPECT_EQ(canvas.at(1, 0), TypeParam{});
}

// The same by hand at 8 bits: a = 128 * 48 / 64 = 96; then i = (159 * 96) >> 8 = 59, t = 96 + 59.
TEST(GeneralFiller, thePixelPaintedTwiceHasAnAlphaOf155) {
  TestCanvas<Pixel8> canvas(4, 4);
  canvas.fill({{0, 0}, {0.25, 0}, {0.25, 1.25}, {0.5, 1.25}, {0.5, 0}, {0.75, 0}, {0.75, 2}, {0, 2}},
              Pixel8{128, 255, 0, 0});
  EXPECT_EQ(canvas.at(0, 0), (Pixel8{155, 255, 0, 0}));
}

TEST(GeneralFiller, anOutlineAboveTheCanvasIsScannedDownToSubRowZero) {
  TestCanvas<Pixel8> canvas(8, 8);
  canvas.setOutline(box(1, -10, 5, -2));
  const SubRowRange range = scannedSubRows(canvas.rasterizer.vertices);
  EXPECT_EQ(range.first, -79);  // truncation goes toward zero: -80 + 0.5
  EXPECT_EQ(range.last, 0);
}

// A star 1e-17 pixels wide has sides that stand still, so sub-rows above the canvas may be passed over; but not those
// on which sides end and none starts, or they run on into the canvas.
TEST(GeneralFiller, sidesAtRestEndAboveTheCanvas) {
  TestCanvas<Pixel8> canvas(8, 8);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 4.0, -12.0, opaqueRed<Pixel8>(), 1e-17, 20.0, 0.0, starShape});
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(GeneralFiller, anOutlineBelowTheCanvasIsScannedToItsOwnEnd) {
  TestCanvas<Pixel8> canvas(8, 8);
  canvas.setOutline(box(1, 10, 5, 12.5));
  const SubRowRange range = scannedSubRows(canvas.rasterizer.vertices);
  EXPECT_EQ(range.first, 80);
  EXPECT_EQ(range.last, 100);
}

TEST(GeneralFiller, aRowThatBeginsInTheMiddleOfAPixelHasHalfItsSamples) {
  TestCanvas<Pixel8> canvas(16, 16);
  // The vertical arm spans x from 5.5 to 8.5, so pixels 6 and 7 are covered from side to side from y = 2.5 on.
  drawCross(canvas, 7.0, 7.5, 10.0);
  EXPECT_EQ(canvas.count(6, 2), 32);
  EXPECT_EQ(canvas.count(7, 2), 32);
  EXPECT_EQ(canvas.count(6, 3), 64);
}

TEST(GeneralFiller, runsAreOneSubColumnWiderThanTheConvexFillers) {
  TestCanvas<Pixel8> canvas(8, 8);
  fill(canvas, box(2, 2, 6, 6), opaqueRed<Pixel8>());
  for (int32_t y = 0; y < 8; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      const bool row = y >= 2 && y < 6;
      EXPECT_EQ(canvas.count(x, y), row && x >= 2 && x < 6 ? 64 : row && x == 6 ? 8 : 0) << x << ' ' << y;
    }
  }
}

// Without a correction to the sub-row's centre: on sub-row y the side stands at y, and the run is 0 to y.
TEST(GeneralFiller, xStandsForTheUpperEndOfASide) {
  TestCanvas<Pixel8> canvas(4, 4);
  fill(canvas, {{0, 0}, {1, 1}, {0, 1}}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.count(0, 0), 36);
  TestCanvas<Pixel8> shifted(4, 4);
  fill(shifted, {{0, 0.05}, {1, 1.05}, {0, 1.05}}, opaqueRed<Pixel8>());
  EXPECT_EQ(shifted.count(0, 0), 36);  // 0.4 of a sub-row lower rounds to the same rows and leaves x where it was
}

TEST(GeneralFiller, anEdgeThatRoundsToOneSubRowDoesNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  fill(canvas, box(0, 1.01, 4, 1.04), opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(GeneralFiller, bothWindingsGiveTheSamePixels) {
  const Points arrow{{1, 1}, {9, 5}, {1, 9}, {4, 5}};
  TestCanvas<Pixel8> forward(12, 12), backward(12, 12);
  forward.fill(arrow, opaqueRed<Pixel8>());
  backward.fill(Points(arrow.rbegin(), arrow.rend()), opaqueRed<Pixel8>());
  EXPECT_GT(forward.paintedPixels(), 20);
  EXPECT_EQ(forward.differenceFrom(backward), "");
}

TEST(GeneralFiller, nothingIsWrittenBesideTheCanvas) {
  TestCanvas<Pixel8> canvas(5, 5);
  drawCross(canvas, 0.0, 0.0, 40.0);
  drawCross(canvas, 5.0, 5.0, 40.0);
  EXPECT_TRUE(canvas.guardsAreWhole());
  EXPECT_EQ(canvas.paintedPixels(), 25);
}

TEST(GeneralFiller, theCoverageIsEmptyAfterEachFill) {
  for (const double y : {-30.0, 4.0, 7.9, 30.0}) {
    TestCanvas<Pixel8> canvas(8, 8);
    drawCross(canvas, 4.0, y, 9.0);
    EXPECT_EQ(canvas.rasterizer.coverage->firstRow, -1) << y;
    EXPECT_EQ(canvas.rasterizer.coverage->rows[0].head, nullptr) << y;
  }
}

TEST(GeneralFiller, flushingARowOffTheCanvasOnlyEmptiesIt) {
  for (const int32_t y : {-1, 32, 1000}) {
    TestCanvas<Pixel8> canvas(4, 4);
    addSpan(*canvas.rasterizer.coverage, 0, 31, 7);
    flushRow(*canvas.rasterizer.coverage, canvas.context.canvas, opaqueRed<Pixel8>(), y);
    EXPECT_EQ(canvas.paintedPixels(), 0) << y;
    EXPECT_EQ(canvas.rasterizer.coverage->rows[7].head, nullptr) << y;
    EXPECT_TRUE(canvas.guardsAreWhole()) << y;
  }
}

TEST(GeneralFiller, flushingWithoutCoveragePaintsNothing) {
  TestCanvas<Pixel8> canvas(4, 4);
  flushRow(*canvas.rasterizer.coverage, canvas.context.canvas, opaqueRed<Pixel8>(), 0);
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

// An empty sub-row leaves the solid list as it was. The other seven hold sub-columns 0 to 31, so pixels 1 and 2 count
// as solid although the fourth sub-row covers none of them.
TEST(GeneralFiller, anEmptySubRowDoesNotHinderSolidPixels) {
  TestCanvas<Pixel8> canvas(6, 1);
  for (const int32_t y : {0, 1, 2, 4, 5, 6, 7}) addSpan(*canvas.rasterizer.coverage, 0, 31, y);
  flushRow(*canvas.rasterizer.coverage, canvas.context.canvas, opaqueRed<Pixel8>(), 7);
  const int32_t expected[6] = {56, 64, 64, 56, 0, 0};
  for (int32_t x = 0; x < 6; ++x) EXPECT_EQ(canvas.count(x, 0), expected[x]) << x;
}

}  // namespace
}  // namespace vindrel
