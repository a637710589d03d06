// What the rasteriser asks of the global allocator, and what it gives back.

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <random>
#include <utility>
#include <vector>

#include "effect/pixel/Pixel.h"
#include "effect/raster/DrawDot.h"
#include "effect/raster/PolygonRasterizer.h"
#include "effect/raster/SpanLists.h"
#include "effect/raster/SpanTable.h"
#include "tests/raster/Blocks.h"
#include "tests/raster/SpanModel.h"
#include "tests/support/AllPixels.h"

namespace vindrel {
namespace {

using blocks::Limit;
using blocks::Refusal;

SpanList listOf(const model::Runs& runs) {
  SpanList list;
  for (const model::Run& r : runs) spanAppend(list, r.start, r.end);
  return list;
}

int64_t nodes(const SpanList& list) {
  int64_t count = 0;
  for (const Span* s = list.head; s != nullptr; s = s->next) ++count;
  return count;
}

/// A canvas without a container's blocks.
template <class Pixel>
struct Target {
  static constexpr int32_t side = 24;
  Pixel pixels[side * side] = {};
  DrawContext<Pixel> context{.canvas = {pixels, side, side, side* static_cast<int32_t>(sizeof(Pixel))}};
};

TEST(RasterMemory, everyRunIsABlockOfItsOwn) {
  const int64_t before = blocks::live();
  SpanList list;
  spanAppend(list, 0, 1);
  spanAppend(list, 2, 3);  // merges
  spanAppend(list, 10, 11);
  EXPECT_EQ(blocks::live(), before + 2);
  spanClear(list);
  EXPECT_EQ(blocks::live(), before);
}

TEST(RasterMemory, aRunThatFallsOutBehindOneThatStayedIsNotReleased) {
  const int64_t before = blocks::live();
  SpanList a = listOf({{0, 5}, {10, 12}, {20, 25}});
  SpanList b = listOf({{0, 5}, {20, 30}});
  spanIntersect(a, b);
  EXPECT_EQ(nodes(a), 2);
  spanClear(a);
  spanClear(b);
  EXPECT_EQ(blocks::live(), before + 1);
}

TEST(RasterMemory, aRunThatFallsOutBeforeAnyStayedIsReleased) {
  const int64_t before = blocks::live();
  SpanList a = listOf({{0, 5}, {10, 12}});
  SpanList b = listOf({{8, 30}});
  spanIntersect(a, b);
  spanClear(a);
  spanClear(b);
  EXPECT_EQ(blocks::live(), before);
}

TEST(RasterMemory, intersectionsLeaveAsManyUnreachableRunsAsTheModel) {
  constexpr unsigned seed = 20240511;
  std::mt19937 random(seed);
  for (int round = 0; round < 10000; ++round) {
    const model::Columns columnsA = model::randomColumns(random), columnsB = model::randomColumns(random);
    const model::Runs runsA = model::maximalRuns(columnsA), runsB = model::maximalRuns(columnsB);
    const int expected = model::intersection(columnsA, columnsB).unreachable;
    const int64_t before = blocks::live();
    SpanList a = listOf(runsA), b = listOf(runsB);
    spanIntersect(a, b);
    spanClear(a);
    spanClear(b);
    const int64_t unreachable = blocks::live() - before;
    ASSERT_EQ(unreachable, expected) << "seed " << seed << ", round " << round << ", a " << model::text(runsA) << ", b "
                                     << model::text(runsB);
  }
}

TEST(RasterMemory, assigningAndJoiningGiveEveryBlockBack) {
  constexpr unsigned seed = 20240512;
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    const model::Runs runsA = model::maximalRuns(model::randomColumns(random));
    const model::Runs runsB = model::maximalRuns(model::randomColumns(random));
    const int64_t before = blocks::live();
    SpanList a = listOf(runsA), b = listOf(runsB), c = listOf(runsB);
    spanUnion(a, b);
    spanAssign(c, a);
    ASSERT_EQ(blocks::live() - before, nodes(a) + nodes(b) + nodes(c)) << "seed " << seed << ", round " << round;
    spanClear(a);
    spanClear(b);
    spanClear(c);
    ASSERT_EQ(blocks::live(), before) << "seed " << seed << ", round " << round;
  }
}

TEST(RasterMemory, exhaustionWhileAppendingLeavesTheListAsItWas) {
  SpanList list = listOf({{0, 1}});
  {
    const Limit none(0);
    EXPECT_THROW(spanAppend(list, 10, 11), std::bad_alloc);
  }
  EXPECT_EQ(nodes(list), 1);
  spanAppend(list, 20, 21);
  EXPECT_EQ(nodes(list), 2);
  spanClear(list);
}

TEST(RasterMemory, exhaustionWhileJoiningLosesNoBlock) {
  const int64_t before = blocks::live();
  SpanList a = listOf({{0, 1}, {10, 11}, {20, 21}}), b = listOf({{5, 6}});
  {
    const Limit two(2);
    EXPECT_THROW(spanUnion(a, b), std::bad_alloc);
  }
  spanClear(a);
  spanClear(b);
  EXPECT_EQ(blocks::live(), before);
}

TEST(RasterMemory, aNullForTheFirstRunLeavesTheListEmpty) {
  SpanList list;
  {
    const Limit none(0, Refusal::answersNull);
    spanAppend(list, 10, 11);
  }
  EXPECT_EQ(list.head, nullptr);
  EXPECT_EQ(list.tail, nullptr);
}

TEST(RasterMemory, aNullForALaterRunEndsTheList) {
  SpanList list = listOf({{0, 1}});
  {
    const Limit none(0, Refusal::answersNull);
    spanAppend(list, 10, 11);
  }
  EXPECT_EQ(list.head->next, nullptr);
  EXPECT_EQ(list.tail, nullptr);
  spanAppend(list, 20, 21);  // nothing to measure against: lost, but no harm done
  EXPECT_EQ(nodes(list), 1);
  spanClear(list);
}

TEST(RasterMemory, aNullForAPieceLeavesTheFirstPiece) {
  SpanList a = listOf({{0, 100}, {200, 300}}), b = listOf({{10, 20}, {40, 50}, {250, 260}});
  {
    const Limit none(0, Refusal::answersNull);
    spanIntersect(a, b);
  }
  ASSERT_EQ(nodes(a), 2);
  EXPECT_EQ(a.head->start, 10);
  EXPECT_EQ(a.head->end, 20);
  EXPECT_EQ(a.head->next->start, 250);
  EXPECT_EQ(a.head->next->end, 260);
  spanClear(a);
  spanClear(b);
}

template <class Pixel>
class RasterMemoryAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(RasterMemoryAtDepth, test::AllPixels);

// The object, its two vectors, its convex filler and its coverage rows.
TYPED_TEST(RasterMemoryAtDepth, aRasteriserIsFiveBlocksAndGivesThemBack) {
  const int64_t before = blocks::live();
  auto rasterizer = std::make_unique<PolygonRasterizer<TypeParam>>();
  EXPECT_EQ(blocks::live(), before + 5);
  rasterizer.reset();
  EXPECT_EQ(blocks::live(), before);
}

TYPED_TEST(RasterMemoryAtDepth, aConstructionThatFailsGivesEverythingBack) {
  const int64_t before = blocks::live();
  for (int64_t given = 0; given < 5; ++given) {
    {
      const Limit limit(given);
      EXPECT_THROW(std::make_unique<PolygonRasterizer<TypeParam>>(), std::bad_alloc) << given;
    }
    EXPECT_EQ(blocks::live(), before) << given;
  }
}

TYPED_TEST(RasterMemoryAtDepth, aConvexDotAllocatesNothing) {
  Target<TypeParam> target;
  PolygonRasterizer<TypeParam> rasterizer;
  target.context.rasterizer = &rasterizer;
  const int64_t before = blocks::made();
  for (const int32_t shape : {circleShape, squareShape, diamondShape}) {
    drawDot(target.context, {-1.0, 12.0, 12.0, {1, 1, 1, 1}, 20.0, 14.0, 0.3, shape});
  }
  EXPECT_EQ(blocks::made(), before);
}

TYPED_TEST(RasterMemoryAtDepth, theSecondDotAllocatesNoVertexStorage) {
  Target<TypeParam> target;
  PolygonRasterizer<TypeParam> rasterizer;
  target.context.rasterizer = &rasterizer;
  const DotRecord<TypeParam> large{-1.0, 12.0, 12.0, {1, 1, 1, 1}, 200.0, 200.0, 0.3, circleShape};
  const int64_t atFirst = blocks::made();
  drawDot(target.context, large);  // 222 vertices, more than there is room for
  const int64_t afterFirst = blocks::made();
  EXPECT_GT(afterFirst, atFirst);
  drawDot(target.context, large);
  EXPECT_EQ(blocks::made(), afterFirst);
}

TYPED_TEST(RasterMemoryAtDepth, anOrdinaryCrossOrStarAllocatesNothing) {
  Target<TypeParam> target;
  PolygonRasterizer<TypeParam> rasterizer;
  target.context.rasterizer = &rasterizer;
  const int64_t before = blocks::made();
  for (const int32_t shape : {crossShape, starShape, roundSquareShape}) {
    for (const double size : {0.3, 4.0, 20.0, 900.0, 2.0e6}) {
      for (int32_t turn = 0; turn < 40; ++turn) {
        drawDot(target.context, {-1.0, 12.3, 11.0, {1, 1, 1, 1}, size, 0.7 * size, 0.1 * turn, shape});
      }
    }
  }
  EXPECT_EQ(blocks::made(), before);
}

/// Teeth that stand side by side from the top row on, more of them than a sub-row of the table has places: 20 pixels
/// wide.
template <class Pixel>
void fillComb(PolygonRasterizer<Pixel>& rasterizer, const CanvasView<Pixel>& canvas, int32_t teeth) {
  rasterizer.resetPath();
  const double pitch = 20.0 / teeth;
  for (int32_t n = 0; n < teeth; ++n) {
    for (const auto& [x, y] :
         {std::pair{n * pitch, 9.0}, {n * pitch, 1.0}, {(n + 0.5) * pitch, 1.0}, {(n + 0.5) * pitch, 9.0}}) {
      PathVertex vertex;
      vertex.x = x;
      vertex.y = y;
      rasterizer.addVertex(vertex);
    }
  }
  rasterizer.finishPath(canvas, PathMatrix{}, Pixel{});
}

// The teeth reach over eight pixel rows. Eight of them find room on the table; of nine each is a block of its own on
// each of the 64 sub-rows.
TYPED_TEST(RasterMemoryAtDepth, runsBeyondTheTableAreBlocks) {
  Target<TypeParam> target;
  PolygonRasterizer<TypeParam> rasterizer;
  const int64_t before = blocks::made();
  fillComb(rasterizer, target.context.canvas, SpanTable::runsPerSlot);
  EXPECT_EQ(blocks::made(), before);
  fillComb(rasterizer, target.context.canvas, SpanTable::runsPerSlot + 1);
  EXPECT_GE(blocks::made(), before + 64 * (SpanTable::runsPerSlot + 1));
}

TYPED_TEST(RasterMemoryAtDepth, anOutlineOnListsGivesAllItsSpansBackWithTheRasteriser) {
  Target<TypeParam> target;
  const int64_t before = blocks::live();
  {
    PolygonRasterizer<TypeParam> rasterizer;
    // Upright teeth: nothing can fall out of an intersection behind another.
    fillComb(rasterizer, target.context.canvas, 12);
    EXPECT_GT(blocks::live(), before + 4);  // the lists of pixels stay until they are made anew
  }
  EXPECT_EQ(blocks::live(), before);
}

TYPED_TEST(RasterMemoryAtDepth, exhaustionInTheGeneralFillerTravelsUpAndLosesNoBlock) {
  Target<TypeParam> target;
  const int64_t before = blocks::live();
  bool completed = false;
  int64_t given = 0;
  for (; !completed; ++given) {
    PolygonRasterizer<TypeParam> rasterizer;
    const Limit limit(given);
    try {
      fillComb(rasterizer, target.context.canvas, 12);
      completed = true;
    } catch (const std::bad_alloc&) {
    }
  }
  EXPECT_EQ(blocks::live(), before);
  EXPECT_GT(given, 700);  // twelve runs on each of 64 sub-rows
}

}  // namespace
}  // namespace vindrel
