#include "effect/raster/DrawDot.h"
#include "tests/support/TestCanvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vindrel {
namespace {

using test::AllPixels;
using test::opaqueRed;
using test::TestCanvas;

constexpr double pi = 3.141592653589793;

template <class Pixel>
DotRecord<Pixel> dot(int32_t shape, double x, double y, double width, double height, double angle = 0.0) {
  return {-1.0, x, y, opaqueRed<Pixel>(), width, height, angle, shape};
}

template <class Pixel>
class DrawDotAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(DrawDotAtDepth, AllPixels);

TYPED_TEST(DrawDotAtDepth, aDotWithoutWidthOrHeightDrawsNothingAndTouchesNothing) {
  TestCanvas<TypeParam> canvas(8, 8);
  const TypeParam before{1, 0, 1, 0};
  canvas.context.color = before;
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    EXPECT_EQ(drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, 0.0, 5.0)), 0);
    EXPECT_EQ(drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, 5.0, 0.0)), 0);
    EXPECT_EQ(drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, -0.0, 5.0)), 0);
  }
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_EQ(canvas.context.matrix, PathMatrix{});
  EXPECT_EQ(canvas.context.color, before);
}

TYPED_TEST(DrawDotAtDepth, everyShapePaintsItsMiddleAndNotItsSurroundings) {
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    TestCanvas<TypeParam> canvas(30, 30);
    EXPECT_EQ(drawDot(canvas.context, dot<TypeParam>(shape, 15, 15, 20, 20, 0.2)), 0);
    EXPECT_EQ(canvas.at(14, 14), opaqueRed<TypeParam>()) << shape;
    EXPECT_EQ(canvas.at(0, 0), TypeParam{}) << shape;
    EXPECT_EQ(canvas.context.matrix, PathMatrix{}) << shape;
    EXPECT_EQ(canvas.context.color, opaqueRed<TypeParam>()) << shape;
    EXPECT_TRUE(canvas.guardsAreWhole()) << shape;
  }
}

TYPED_TEST(DrawDotAtDepth, aSquareOfNegativeWidthIsTheSameSquare) {
  TestCanvas<TypeParam> canvas(16, 16), mirrored(16, 16);
  drawDot(canvas.context, dot<TypeParam>(squareShape, 8, 8, 10, 6));
  drawDot(mirrored.context, dot<TypeParam>(squareShape, 8, 8, -10, 6));
  EXPECT_EQ(canvas.paintedPixels(), 60);
  EXPECT_EQ(mirrored.differenceFrom(canvas), "");
}

TYPED_TEST(DrawDotAtDepth, aStarOfNegativeHeightStandsOnItsTip) {
  TestCanvas<TypeParam> canvas(41, 41);
  drawDot(canvas.context, dot<TypeParam>(starShape, 20.5, 20.5, 40, -40));
  EXPECT_NE(canvas.at(20, 38).alpha, 0);
  EXPECT_EQ(canvas.at(20, 5).alpha, 0);
  EXPECT_NE(canvas.at(9, 5).alpha, 0);
}

TYPED_TEST(DrawDotAtDepth, everyShapeOfNegativeSizeIsDrawn) {
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    for (const auto& [width, height] : {std::pair{-20.0, 20.0}, {20.0, -20.0}, {-20.0, -20.0}}) {
      TestCanvas<TypeParam> canvas(30, 30);
      drawDot(canvas.context, dot<TypeParam>(shape, 15, 15, width, height, 0.2));
      EXPECT_EQ(canvas.at(14, 14), opaqueRed<TypeParam>()) << shape;
    }
  }
}

TYPED_TEST(DrawDotAtDepth, aDotOffTheCanvasPaintsNothing) {
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    TestCanvas<TypeParam> canvas(8, 8);
    for (const auto& [x, y] : {std::pair{-20.0, 4.0}, {30.0, 4.0}, {4.0, -20.0}, {4.0, 30.0}, {-90.0, -90.0}}) {
      drawDot(canvas.context, dot<TypeParam>(shape, x, y, 14, 14, 0.4));
    }
    EXPECT_EQ(canvas.paintedPixels(), 0) << shape;
    EXPECT_TRUE(canvas.guardsAreWhole()) << shape;
  }
}

TYPED_TEST(DrawDotAtDepth, theSameDotTwiceIsLaidOverItself) {
  TestCanvas<TypeParam> canvas(8, 8);
  DotRecord<TypeParam> half = dot<TypeParam>(squareShape, 4, 4, 4, 4);
  half.color.alpha = static_cast<decltype(half.color.alpha)>(half.color.alpha / 2);  // 127, 16384, 0.5
  drawDot(canvas.context, half);
  EXPECT_EQ(canvas.at(4, 4).alpha, half.color.alpha);
  drawDot(canvas.context, half);
  // 127 + ((128 * 127) >> 8) = 190; 16384 + 8192; 0.5 + 0.25
  const double expected = sizeof(TypeParam) == 4 ? 190.0 : sizeof(TypeParam) == 8 ? 24576.0 : 0.75;
  EXPECT_EQ(static_cast<double>(canvas.at(4, 4).alpha), expected);
}

TYPED_TEST(DrawDotAtDepth, anUnknownShapeDrawsNothing) {
  for (const int32_t shape : {7, 0, -1, INT32_MAX, INT32_MIN}) {
    TestCanvas<TypeParam> canvas(8, 8);
    EXPECT_EQ(drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, 6, 6, 0.7)), 0);
    EXPECT_EQ(canvas.paintedPixels(), 0) << shape;
    EXPECT_EQ(canvas.context.matrix, PathMatrix{}) << shape;
    EXPECT_EQ(canvas.context.color, opaqueRed<TypeParam>()) << shape;
  }
}

TYPED_TEST(DrawDotAtDepth, aPositiveAngleTurnsClockwiseOnTheScreen) {
  TestCanvas<TypeParam> canvas(31, 31);
  drawDot(canvas.context, dot<TypeParam>(squareShape, 15.5, 15.5, 24, 3, pi / 6.0));
  // 10 pixels to the right along the bar: (15.5 + 8.66, 15.5 + 5).
  EXPECT_EQ(canvas.at(24, 20), opaqueRed<TypeParam>());
  EXPECT_EQ(canvas.at(24, 10), TypeParam{});
  EXPECT_EQ(canvas.at(6, 10), opaqueRed<TypeParam>());
}

// Nothing that a dot's record may hold may hang the scan, write beside the canvas or be undefined.
TYPED_TEST(DrawDotAtDepth, aDotOfNumbersWithoutMeaningPaintsNothing) {
  constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinite = std::numeric_limits<double>::infinity();
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    for (const double odd : {notANumber, infinite, -infinite}) {
      TestCanvas<TypeParam> canvas(8, 8);
      drawDot(canvas.context, dot<TypeParam>(shape, odd, 4, 6, 6, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, 4, odd, 6, 6, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, odd, odd, 6, 6, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, odd, 6, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, 6, odd, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, 4, 4, 6, 6, odd));
      EXPECT_EQ(canvas.paintedPixels(), 0) << "shape " << shape << ", " << odd;
      EXPECT_TRUE(canvas.guardsAreWhole()) << "shape " << shape << ", " << odd;
    }
  }
}

TYPED_TEST(DrawDotAtDepth, aDotFarBeyond32BitsPaintsNothing) {
  for (int32_t shape = circleShape; shape <= diamondShape; ++shape) {
    TestCanvas<TypeParam> canvas(8, 8);
    for (const double far : {1e9, -1e9, 1e20, -1e20, 1e300}) {
      drawDot(canvas.context, dot<TypeParam>(shape, far, 4, 6, 6, 0.3));
      drawDot(canvas.context, dot<TypeParam>(shape, 4, far, 6, 6, 0.3));
    }
    EXPECT_EQ(canvas.paintedPixels(), 0) << "shape " << shape;
    EXPECT_TRUE(canvas.guardsAreWhole()) << "shape " << shape;
  }
}

// A float opacity that is infinite or not a number spoils every pixel that is visited, with a count of 0 too. On the
// rows that the dot fills those are the pixels from its own first column to one behind its last; on the row in which it
// ends, all from column 0 on; and on an outline that ends with its row, the row below.
TEST(DrawDot, anOpacityThatIsNotFiniteSpoilsThePixelsThatAreVisited) {
  for (const float odd : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    TestCanvas<Pixel32> canvas(16, 8);
    DotRecord<Pixel32> spoilt = dot<Pixel32>(squareShape, 12, 3, 2, 3);  // x from 11 to 13, y from 1.5 to 4.5
    spoilt.color.alpha = odd;
    drawDot(canvas.context, spoilt);
    for (int32_t y = 0; y < 8; ++y) {
      for (int32_t x = 0; x < 16; ++x) {
        const bool visited = y == 4 ? x <= 13 : y >= 1 && y <= 3 && x >= 11 && x <= 13;
        EXPECT_EQ(canvas.at(x, y) != Pixel32{}, visited) << x << ' ' << y << ' ' << odd;
      }
    }
  }
}

}  // namespace
}  // namespace vindrel
