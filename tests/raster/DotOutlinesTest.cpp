#include "effect/raster/DotOutlines.h"

#include <gtest/gtest.h>

#include <cmath>

#include "effect/raster/DrawDot.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::opaqueRed;
using test::TestCanvas;

using Canvas = TestCanvas<Pixel8>;

const PathVertex& vertex(const Canvas& canvas, std::size_t i) {
  return canvas.rasterizer.vertices.at(i);
}

std::size_t circleVertices(double diagonal) {
  Canvas canvas(4, 4);
  addCircle(canvas.context, 0.0, 0.0, diagonal * 0.6, diagonal * 0.8);
  return canvas.rasterizer.vertices.size();
}

TEST(DotOutlines, aCircleWithASmallDiagonalIsAnOctagon) {
  EXPECT_EQ(circleVertices(0.01), 8U);
  EXPECT_EQ(circleVertices(10.0), 8U);
  EXPECT_EQ(circleVertices(11.45), 8U);
}

TEST(DotOutlines, aCircleWithADiagonalOf11Point5HasNineVertices) {
  EXPECT_EQ(circleVertices(11.5), 9U);
}

// 100 * 2 pi / 8 = 78.5...
TEST(DotOutlines, aLargerCircleHasMoreVertices) {
  EXPECT_EQ(circleVertices(100.0), 78U);
}

TEST(DotOutlines, aCircleWithoutHeightIsNeverBuilt) {
  Canvas canvas(4, 4);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 2.0, 2.0, opaqueRed<Pixel8>(), 10.0, 0.0, 0.0, circleShape});
  EXPECT_TRUE(canvas.rasterizer.vertices.empty());
}

TEST(DotOutlines, aSliverOfACircleHasEightVertices) {
  Canvas canvas(4, 4);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 2.0, 2.0, opaqueRed<Pixel8>(), 10.0, 0.5, 0.0, circleShape});
  EXPECT_EQ(canvas.rasterizer.vertices.size(), 8U);
}

TEST(DotOutlines, aCircleStartsAtItsRightmostPointAndRunsClockwiseOnTheScreen) {
  Canvas canvas(4, 4);
  addCircle(canvas.context, 1.0, 2.0, 6.0, 4.0);  // an octagon: every 45 degrees
  const double half = std::sqrt(0.5);
  const double expected[8][2] = {
      {4.0, 2.0},  {1.0 + 3.0 * half, 2.0 + 2.0 * half}, {1.0, 4.0}, {1.0 - 3.0 * half, 2.0 + 2.0 * half},
      {-2.0, 2.0}, {1.0 - 3.0 * half, 2.0 - 2.0 * half}, {1.0, 0.0}, {1.0 + 3.0 * half, 2.0 - 2.0 * half}};
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 8U);
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_NEAR(vertex(canvas, i).x, expected[i][0], 1e-14) << i;
    EXPECT_NEAR(vertex(canvas, i).y, expected[i][1], 1e-14) << i;
  }
  EXPECT_EQ(vertex(canvas, 2).x, 1.0);  // cos 90 degrees is exactly 0
}

// 14 vertices stand 720 / 14 = 51.43 half degrees apart: the fifth at 4 * 51.43 = 205.71 of them is cut to 205, which
// is 102.5 degrees.
TEST(DotOutlines, aCirclesCornersFallOnTheHalfDegreeGrid) {
  Canvas canvas(4, 4);
  addCircle(canvas.context, 0.0, 0.0, 18.0, 0.5);  // 18.007 * 2 pi / 8 = 14.14
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 14U);
  EXPECT_NEAR(vertex(canvas, 4).x, 9.0 * std::cos(102.5 / 180.0 * 3.141592653589793), 1e-13);
}

TEST(DotOutlines, aCircleScaledUpByTheMatrixHasMoreVertices) {
  Canvas canvas(4, 4);
  canvas.context.matrix.a = 10.0;
  canvas.context.matrix.e = 10.0;
  addCircle(canvas.context, 0.0, 0.0, 6.0, 8.0);
  EXPECT_EQ(canvas.rasterizer.vertices.size(), 78U);
}

TEST(DotOutlines, aSquareBeginsAtItsCorner) {
  Canvas canvas(4, 4);
  addSquare(canvas.context, 1.0, 2.0, 6.0, 4.0);
  const double expected[4][2] = {{1.0, 2.0}, {7.0, 2.0}, {7.0, 6.0}, {1.0, 6.0}};
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(vertex(canvas, i).x, expected[i][0]) << i;
    EXPECT_EQ(vertex(canvas, i).y, expected[i][1]) << i;
  }
}

TEST(DotOutlines, everyArcOfARoundSquareHasTenVerticesWhateverItsSize) {
  for (const double size : {0.01, 1.0, 7.3, 100.0, 12345.0}) {
    Canvas canvas(4, 4);
    addRoundSquare(canvas.context, 0.0, 0.0, size, size * 0.7);
    ASSERT_EQ(canvas.rasterizer.vertices.size(), 48U) << size;
    const double right = size * 0.5, bottom = size * 0.35;
    // What stands behind each arc: the right, bottom and left straight sides.
    EXPECT_NEAR(vertex(canvas, 12).x, right, size * 1e-14) << size;
    EXPECT_NEAR(vertex(canvas, 24).y, bottom, size * 1e-14) << size;
    EXPECT_NEAR(vertex(canvas, 36).x, -right, size * 1e-14) << size;
    // Each arc's first vertex lies on the straight one before it, its last one 9 degrees before the end.
    for (const std::size_t first : {std::size_t{2}, std::size_t{14}, std::size_t{26}, std::size_t{38}}) {
      EXPECT_NEAR(vertex(canvas, first).x, vertex(canvas, first - 1).x, size * 1e-14) << size << ' ' << first;
      EXPECT_NEAR(vertex(canvas, first).y, vertex(canvas, first - 1).y, size * 1e-14) << size << ' ' << first;
    }
    EXPECT_NEAR(vertex(canvas, 11).x, size * (0.3 + 0.2 * std::sin(81.0 / 180.0 * 3.141592653589793)), size * 1e-14);
  }
}

TEST(DotOutlines, aRoundSquaresStraightPartIsThreeFifthsOfTheSide) {
  Canvas canvas(4, 4);
  addRoundSquare(canvas.context, 50.0, 50.0, 10.0, 20.0);
  EXPECT_NEAR(vertex(canvas, 0).x, 47.0, 1e-13);
  EXPECT_EQ(vertex(canvas, 0).y, 40.0);
  EXPECT_NEAR(vertex(canvas, 1).x, 53.0, 1e-13);
  EXPECT_NEAR(vertex(canvas, 12).y, 44.0, 1e-13);
  EXPECT_NEAR(vertex(canvas, 13).y, 56.0, 1e-13);
}

TEST(DotOutlines, aCrossHasArmsThreeTenthsWideThatTouchTheBox) {
  Canvas canvas(4, 4);
  addCross(canvas.context, 0.0, 0.0, 20.0, 20.0);
  const double expected[12][2] = {{-3, -10}, {3, -10}, {3, -3}, {10, -3}, {10, 3},   {3, 3},
                                  {3, 10},   {-3, 10}, {-3, 3}, {-10, 3}, {-10, -3}, {-3, -3}};
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 12U);
  for (std::size_t i = 0; i < 12; ++i) {
    EXPECT_NEAR(vertex(canvas, i).x, expected[i][0], 1e-14) << i;
    EXPECT_NEAR(vertex(canvas, i).y, expected[i][1], 1e-14) << i;
  }
  EXPECT_EQ(vertex(canvas, 3).x, 10.0);
  EXPECT_EQ(vertex(canvas, 6).y, 10.0);
  // The far side of an arm is the stored constant just below 0.65, so it stands below 3 by a last place or two.
  EXPECT_LT(vertex(canvas, 1).x, 3.0);
  EXPECT_LT(vertex(canvas, 4).y, 3.0);
}

TEST(DotOutlines, aStarIsFiveTipsInThePentagramsOrder) {
  Canvas canvas(4, 4);
  addStar(canvas.context, 1.0, 2.0, 20.0, 10.0);
  const double degree = 3.141592653589793 / 180.0;
  const double tips[5] = {-90.0, 126.0, -18.0, 198.0, 54.0};  // clockwise on the screen from the right
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_NEAR(vertex(canvas, i).x, 1.0 + 10.0 * std::cos(tips[i] * degree), 1e-13) << i;
    EXPECT_NEAR(vertex(canvas, i).y, 2.0 + 5.0 * std::sin(tips[i] * degree), 1e-13) << i;
  }
}

TEST(DotOutlines, aStarPointsUpOnTheScreen) {
  Canvas canvas(41, 41);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 20.5, 20.5, opaqueRed<Pixel8>(), 40.0, 40.0, 0.0, starShape});
  // Row 2 is just below the tip: only columns around the middle one. Two tips stand at the foot, none in its middle.
  for (int32_t x = 0; x < 41; ++x) EXPECT_EQ(canvas.at(x, 2).alpha != 0, x >= 19 && x <= 21) << x;
  EXPECT_EQ(canvas.at(20, 35).alpha, 0);
  EXPECT_NE(canvas.at(9, 35).alpha, 0);
  EXPECT_NE(canvas.at(31, 35).alpha, 0);
}

TEST(DotOutlines, aDiamondStandsOnTheOriginWhateverCentreItIsGiven) {
  Canvas canvas(4, 4);
  addDiamond(canvas.context, 100.0, 200.0, 6.0, 4.0);
  const double expected[4][2] = {{0.0, -2.0}, {3.0, 0.0}, {0.0, 2.0}, {-3.0, 0.0}};
  ASSERT_EQ(canvas.rasterizer.vertices.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(vertex(canvas, i).x, expected[i][0]) << i;
    EXPECT_EQ(vertex(canvas, i).y, expected[i][1]) << i;
  }
}

TEST(DotOutlines, anArcNeverReachesItsEnd) {
  Canvas canvas(4, 4);
  addArc(canvas.context, 0.0, 0.0, 1.0, 1.0, 0.0, 0.15707963267948966);
  EXPECT_EQ(canvas.rasterizer.vertices.size(), 1U);
  addArc(canvas.context, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0);
  EXPECT_EQ(canvas.rasterizer.vertices.size(), 1U);
}

TEST(DotOutlines, aBuilderForgetsTheOutlineBefore) {
  Canvas canvas(4, 4);
  addCircle(canvas.context, 0.0, 0.0, 60.0, 80.0);
  addSquare(canvas.context, 0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(canvas.rasterizer.vertices.size(), 4U);
}

}  // namespace
}  // namespace vindrel
