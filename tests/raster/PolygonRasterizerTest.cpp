#include "effect/raster/PolygonRasterizer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "effect/raster/DrawDot.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::box;
using test::opaqueRed;
using test::Points;
using test::TestCanvas;

using Canvas = TestCanvas<Pixel8>;

TEST(PolygonRasterizer, resettingThePathKeepsTheStorage) {
  Canvas canvas(4, 4);
  canvas.setOutline(Points(500, {1.0, 2.0}));
  const std::size_t room = canvas.rasterizer.vertices.capacity();
  canvas.rasterizer.resetPath();
  EXPECT_TRUE(canvas.rasterizer.vertices.empty());
  EXPECT_EQ(canvas.rasterizer.vertices.capacity(), room);
}

TEST(PolygonRasterizer, anOutlineOfTwoVerticesDrawsNothing) {
  Canvas canvas(8, 8);
  canvas.fill({{0, 0}, {8, 8}}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, anEmptyOutlineDrawsNothing) {
  Canvas canvas(8, 8);
  canvas.fill({}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, threePointsOnALineCountAsConvexAndPaintNothing) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 0}, {4, 4}, {8, 8}});
  EXPECT_TRUE(canvas.rasterizer.isConvex());
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 2);
  canvas.fill({{0, 0}, {4, 4}, {8, 8}}, opaqueRed<Pixel8>());
  EXPECT_TRUE(canvas.rasterizer.suitsConvexFiller());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, aHorizontalLineHasOneTurnAndPaintsNothing) {
  Canvas canvas(8, 8);
  canvas.fill({{1, 3}, {4, 3}, {7, 3}}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 1);
  EXPECT_FALSE(canvas.rasterizer.suitsConvexFiller());
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, aConvexOutlineWithAHorizontalTopHasTwoTurns) {
  Canvas canvas(8, 8);
  canvas.setOutline({{2, 1}, {6, 1}, {4, 7}});
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 2);
}

TEST(PolygonRasterizer, aSquareThatIsNotTurnedHasTwoTurns) {
  Canvas canvas(8, 8);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 4.0, 4.0, opaqueRed<Pixel8>(), 4.0, 4.0, 0.0, squareShape});
  canvas.rasterizer.placeOutline({.c = 4.0, .f = 4.0});
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 2);
  EXPECT_TRUE(canvas.rasterizer.suitsConvexFiller());
}

TEST(PolygonRasterizer, aHorizontalStepBetweenTwoDescentsIsNoTurn) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 0}, {2, 2}, {5, 2}, {7, 6}, {0, 6}});
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 2);
}

TEST(PolygonRasterizer, anOutlineWithTwoPeaksHasFourTurns) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 6}, {2, 0}, {4, 4}, {6, 0}, {7, 6}});
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 4);
}

TEST(PolygonRasterizer, turnsAreCountedFromAnyStartingVertex) {
  const Points zigzag{{0, 6}, {0, 6}, {2, 0}, {4, 4}, {5, 4}, {6, 0}, {7, 6}};
  for (std::size_t shift = 0; shift < zigzag.size(); ++shift) {
    Points turned;
    for (std::size_t i = 0; i < zigzag.size(); ++i) turned.push_back(zigzag[(i + shift) % zigzag.size()]);
    Canvas canvas(8, 8);
    canvas.setOutline(turned);
    EXPECT_EQ(canvas.rasterizer.countYTurns(), 4) << shift;
  }
}

TEST(PolygonRasterizer, anOutlineOfTwoVerticesIsNotConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 0}, {4, 4}});
  EXPECT_FALSE(canvas.rasterizer.isConvex());
}

TEST(PolygonRasterizer, bothWindingsOfASquareAreConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {5, 1}, {5, 5}, {1, 5}});
  EXPECT_TRUE(canvas.rasterizer.isConvex());
  canvas.setOutline({{1, 5}, {5, 5}, {5, 1}, {1, 1}});
  EXPECT_TRUE(canvas.rasterizer.isConvex());
}

TEST(PolygonRasterizer, repeatedPointsAndStraightRunsAreNoDents) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {3, 1}, {5, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 3}});
  EXPECT_TRUE(canvas.rasterizer.isConvex());
}

TEST(PolygonRasterizer, theSmallestDentIsNotConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {3, 1.0000000000000002}, {5, 1}, {5, 5}, {1, 5}});
  EXPECT_FALSE(canvas.rasterizer.isConvex());
}

TEST(PolygonRasterizer, aStarTurnsOneWayButHasFourVerticalTurns) {
  Canvas canvas(40, 40);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 20.0, 20.0, opaqueRed<Pixel8>(), 30.0, 30.0, 0.0, starShape});
  EXPECT_TRUE(canvas.rasterizer.isConvex());
  EXPECT_EQ(canvas.rasterizer.countYTurns(), 4);
  EXPECT_FALSE(canvas.rasterizer.suitsConvexFiller());
}

TEST(PolygonRasterizer, eachShapeTakesItsFiller) {
  struct Row {
    int32_t shape;
    bool convex;
  };
  for (const Row row : {Row{circleShape, true}, Row{squareShape, true}, Row{crossShape, false}, Row{starShape, false},
                        Row{diamondShape, true}}) {
    Canvas canvas(40, 40);
    drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 20.0, 20.0, opaqueRed<Pixel8>(), 20.0, 16.0, 0.3, row.shape});
    const double s = std::sin(0.3), k = std::cos(0.3);
    canvas.rasterizer.placeOutline({k, -s, 20.0, s, k, 20.0});
    EXPECT_EQ(canvas.rasterizer.suitsConvexFiller(), row.convex) << "shape " << row.shape;
  }
}

// The general filler's runs are a sub-column wider on the right: a square from 2 to 6 shows which one has filled it.
TEST(PolygonRasterizer, anOutlineIsFilledByTheFillerThatItSuits) {
  Canvas convex(8, 8), dented(8, 8);
  convex.fill(box(2, 2, 6, 6), opaqueRed<Pixel8>());
  EXPECT_EQ(convex.count(6, 3), 0);
  dented.fill({{2, 2}, {4, 2.0000000000000004}, {6, 2}, {6, 6}, {2, 6}}, opaqueRed<Pixel8>());
  EXPECT_EQ(dented.count(6, 3), 8);
}

TEST(PolygonRasterizer, theMatrixIsAppliedToEveryVertex) {
  Canvas canvas(8, 8);
  canvas.context.matrix = PathMatrix{2.0, 3.0, 5.0, 7.0, 11.0, 13.0};
  canvas.rasterizer.resetPath();
  // A dent, so that the general filler leaves the result as it is.
  for (const auto& [x, y] : Points{{0, 0}, {4, 0}, {1, 1}, {0, 4}}) {
    PathVertex v;
    v.x = x;
    v.y = y;
    canvas.rasterizer.addVertex(v);
  }
  canvas.rasterizer.finishPath(canvas.context.canvas, canvas.context.matrix, opaqueRed<Pixel8>());
  const double expected[4][2] = {{5, 13}, {13, 41}, {10, 31}, {17, 57}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(canvas.rasterizer.vertices[i].tx, expected[i][0]) << i;
    EXPECT_EQ(canvas.rasterizer.vertices[i].ty, expected[i][1]) << i;
  }
}

}  // namespace
}  // namespace vindrel
