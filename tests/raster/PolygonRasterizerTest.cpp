#include "effect/raster/PolygonRasterizer.h"

#include <gtest/gtest.h>

#include "effect/raster/DrawDot.h"
#include "tests/raster/TestCanvas.h"

namespace vindrel {
namespace {

using Canvas = TestCanvas<Pixel8>;
using Points = std::vector<std::pair<double, double>>;

/// The convex filler leaves the vertices multiplied by eight, the general one leaves them alone.
bool tookConvexFiller(const Canvas& canvas, double tyOfVertex1) {
  return canvas.rasterizer->vertices.at(1).ty == 8.0 * tyOfVertex1;
}

template <class Pixel>
class PolygonRasterizerAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(PolygonRasterizerAtDepth, AllPixels);

TYPED_TEST(PolygonRasterizerAtDepth, isSetUpFromItsContext) {
  TestCanvas<TypeParam> canvas(7, 5);
  const PolygonRasterizer<TypeParam>& r = *canvas.rasterizer;
  EXPECT_TRUE(r.vertices.empty());
  EXPECT_TRUE(r.edges.empty());
  EXPECT_GE(r.vertices.capacity(), 100U);
  EXPECT_GE(r.edges.capacity(), 200U);
  EXPECT_EQ(r.sentinel.yTop, -2147483648.0);
  EXPECT_EQ(r.sentinel.yBottom, 1.0);
  EXPECT_EQ(r.sentinel.x, 2147483647.0);
  EXPECT_EQ(r.sentinel.dxdy, 1.0);
  EXPECT_EQ(r.sentinel.winding, -1);
  EXPECT_TRUE(r.nonZeroWinding);
  EXPECT_EQ(r.context, &canvas.context);
  EXPECT_EQ(r.pixels, canvas.context.pixels);
  EXPECT_EQ(r.width, 7);
  EXPECT_EQ(r.height, 5);
  EXPECT_EQ(r.rowBytes, canvas.context.rowBytes);
  EXPECT_EQ(r.matrix, &canvas.context.matrix);
  EXPECT_EQ(r.colour, &canvas.context.colour);
  EXPECT_EQ(r.subWidth, 56);
  EXPECT_EQ(r.subHeight, 40);
  EXPECT_EQ(r.convexFiller->coverageScale, 1.0 / 64.0);
  EXPECT_EQ(r.convexFiller->context, &canvas.context);
  EXPECT_EQ(r.convexFiller->pixels, canvas.context.pixels);
  EXPECT_EQ(r.convexFiller->width, 7);
  EXPECT_EQ(r.convexFiller->height, 5);
  EXPECT_EQ(r.convexFiller->rowBytes, canvas.context.rowBytes);
  EXPECT_TRUE(r.convexFiller->supersample);
  EXPECT_EQ(r.coverage->lastSubRow, -1);
  EXPECT_EQ(r.coverage->firstRow, -1);
  EXPECT_EQ(r.coverage->lastRow, -1);
  EXPECT_FALSE(r.coverage->ready);
}

TEST(PolygonRasterizer, resettingThePathKeepsTheStorage) {
  Canvas canvas(4, 4);
  canvas.setOutline(Points(500, {1.0, 2.0}));
  const std::size_t room = canvas.rasterizer->vertices.capacity();
  canvas.rasterizer->resetPath();
  EXPECT_TRUE(canvas.rasterizer->vertices.empty());
  EXPECT_EQ(canvas.rasterizer->vertices.capacity(), room);
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
  EXPECT_TRUE(canvas.rasterizer->isConvex());
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 2);
  canvas.fill({{0, 0}, {4, 4}, {8, 8}}, opaqueRed<Pixel8>());
  EXPECT_TRUE(tookConvexFiller(canvas, 4.0));
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, aHorizontalLineHasOneTurnAndPaintsNothing) {
  Canvas canvas(8, 8);
  canvas.fill({{1, 3}, {4, 3}, {7, 3}}, opaqueRed<Pixel8>());
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 1);
  EXPECT_FALSE(tookConvexFiller(canvas, 3.0));
  EXPECT_EQ(canvas.paintedPixels(), 0);
}

TEST(PolygonRasterizer, aConvexOutlineWithAHorizontalTopHasTwoTurns) {
  Canvas canvas(8, 8);
  canvas.setOutline({{2, 1}, {6, 1}, {4, 7}});
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 2);
}

TEST(PolygonRasterizer, aSquareThatIsNotTurnedHasTwoTurns) {
  Canvas canvas(8, 8);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 4.0, 4.0, opaqueRed<Pixel8>(), 4.0, 4.0, 0.0, squareShape});
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 2);
  EXPECT_TRUE(tookConvexFiller(canvas, 2.0));
}

TEST(PolygonRasterizer, aHorizontalStepBetweenTwoDescentsIsNoTurn) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 0}, {2, 2}, {5, 2}, {7, 6}, {0, 6}});
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 2);
}

TEST(PolygonRasterizer, anOutlineWithTwoPeaksHasFourTurns) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 6}, {2, 0}, {4, 4}, {6, 0}, {7, 6}});
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 4);
}

TEST(PolygonRasterizer, turnsAreCountedFromAnyStartingVertex) {
  const Points zigzag{{0, 6}, {0, 6}, {2, 0}, {4, 4}, {5, 4}, {6, 0}, {7, 6}};
  for (std::size_t shift = 0; shift < zigzag.size(); ++shift) {
    Points turned;
    for (std::size_t i = 0; i < zigzag.size(); ++i) turned.push_back(zigzag[(i + shift) % zigzag.size()]);
    Canvas canvas(8, 8);
    canvas.setOutline(turned);
    EXPECT_EQ(canvas.rasterizer->countYTurns(), 4) << shift;
  }
}

TEST(PolygonRasterizer, anOutlineOfTwoVerticesIsNotConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{0, 0}, {4, 4}});
  EXPECT_FALSE(canvas.rasterizer->isConvex());
}

TEST(PolygonRasterizer, bothWindingsOfASquareAreConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {5, 1}, {5, 5}, {1, 5}});
  EXPECT_TRUE(canvas.rasterizer->isConvex());
  canvas.setOutline({{1, 5}, {5, 5}, {5, 1}, {1, 1}});
  EXPECT_TRUE(canvas.rasterizer->isConvex());
}

TEST(PolygonRasterizer, repeatedPointsAndStraightRunsAreNoDents) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {3, 1}, {5, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 3}});
  EXPECT_TRUE(canvas.rasterizer->isConvex());
}

TEST(PolygonRasterizer, theSmallestDentIsNotConvex) {
  Canvas canvas(8, 8);
  canvas.setOutline({{1, 1}, {3, 1.0000000000000002}, {5, 1}, {5, 5}, {1, 5}});
  EXPECT_FALSE(canvas.rasterizer->isConvex());
}

TEST(PolygonRasterizer, aStarTurnsOneWayButHasFourVerticalTurns) {
  Canvas canvas(40, 40);
  drawDot(canvas.context, DotRecord<Pixel8>{-1.0, 20.0, 20.0, opaqueRed<Pixel8>(), 30.0, 30.0, 0.0, starShape});
  EXPECT_TRUE(canvas.rasterizer->isConvex());
  EXPECT_EQ(canvas.rasterizer->countYTurns(), 4);
  EXPECT_GT(canvas.rasterizer->vertices.at(1).ty, 30.0);
  EXPECT_LT(canvas.rasterizer->vertices.at(1).ty, 35.0);  // not multiplied by eight: the general filler
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
    // Vertices lie between 5 and 35 pixels; multiplied by eight they lie at 40 or more.
    EXPECT_EQ(canvas.rasterizer->vertices.at(1).ty >= 40.0, row.convex) << "shape " << row.shape;
  }
}

TEST(PolygonRasterizer, theMatrixIsAppliedToEveryVertex) {
  Canvas canvas(8, 8);
  canvas.context.matrix = PathMatrix{2.0, 3.0, 5.0, 7.0, 11.0, 13.0};
  canvas.rasterizer->resetPath();
  // A dent, so that the general filler leaves the result as it is.
  for (const auto& [x, y] : Points{{0, 0}, {4, 0}, {1, 1}, {0, 4}}) {
    PathVertex v;
    v.x = x;
    v.y = y;
    canvas.rasterizer->addVertex(v);
  }
  canvas.rasterizer->finishPath();
  const double expected[4][2] = {{5, 13}, {13, 41}, {10, 31}, {17, 57}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(canvas.rasterizer->vertices[i].tx, expected[i][0]) << i;
    EXPECT_EQ(canvas.rasterizer->vertices[i].ty, expected[i][1]) << i;
  }
}

}  // namespace
}  // namespace vindrel
