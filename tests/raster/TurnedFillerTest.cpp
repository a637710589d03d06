// The filler of turned outlines against the one that walks both sides down together, and the switch between the two.

#include "effect/raster/TurnedFiller.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "effect/raster/ConvexFiller.h"
#include "tests/support/TestCanvas.h"

namespace vindrel {
namespace {

using test::AllPixels;
using test::box;
using test::opaqueRed;
using test::Points;
using test::TestCanvas;

template <class Pixel>
class TurnedFillerAtDepth : public ::testing::Test {};
TYPED_TEST_SUITE(TurnedFillerAtDepth, AllPixels);

/// Takes the points into the rasteriser, and fills them at the place by this filler alone.
template <class Pixel>
bool fillTurnedAt(TestCanvas<Pixel>& canvas, const Points& points, double x, double y, const Pixel& color) {
  canvas.setOutline(points);
  canvas.rasterizer.turned.take(canvas.rasterizer.vertices, {});
  return canvas.rasterizer.turned.holdsAt(x, y) &&
         fillTurned(canvas.rasterizer.sideTable, canvas.rasterizer.turned, x, y, canvas.context.canvas, color);
}

template <class Pixel>
void fillConvexAt(TestCanvas<Pixel>& canvas, const Points& points, double x, double y, const Pixel& color) {
  canvas.setOutline(points);
  canvas.rasterizer.placeOutline({.c = x, .f = y});
  fillConvex(*canvas.rasterizer.convexFiller, canvas.rasterizer.vertices, canvas.context.canvas, color);
}

template <class Pixel, class Random>
Pixel someColor(Random& random, bool opaque) {
  using Channel = typename PixelTraits<Pixel>::Channel;
  const auto channel = [&random] {
    const double share = static_cast<double>(random() >> 11U) * 0x1p-53;
    return static_cast<Channel>(share * static_cast<double>(PixelTraits<Pixel>::fullScale));
  };
  return {opaque ? PixelTraits<Pixel>::fullScale : channel(), channel(), channel(), channel()};
}

// Narrow and wide, partly off each side of the canvas, over pixels of all kinds, on rows with padding.
TYPED_TEST(TurnedFillerAtDepth, paintsWhatTheConvexFillerPaints) {
  constexpr unsigned seed = 20250402;
  std::mt19937_64 random(seed);
  const auto number = [&random](double from, double to) {
    return from + (to - from) * static_cast<double>(random() >> 11U) * 0x1p-53;
  };
  int32_t filled = 0, narrow = 0, wide = 0;
  for (int round = 0; round < 4000; ++round) {
    const auto width = static_cast<int32_t>(4 + random() % 60), height = static_cast<int32_t>(1 + random() % 40);
    TestCanvas<TypeParam> shipped(width, height), expected(width, height);
    if (random() % 2 == 0) {
      for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
          shipped.at(x, y) = expected.at(x, y) = someColor<TypeParam>(random, random() % 3 == 0);
        }
      }
    }
    for (int dot = 0; dot < 4; ++dot) {
      const double size = std::pow(2.0, number(-3.0, 7.0)), flat = number(0.05, 1.0);
      const auto corners = static_cast<int>(number(3.0, 20.0));
      const double turn = random() % 4 == 0 ? 0.0 : number(0.0, 6.3);
      Points points;
      for (int i = 0; i < corners; ++i) {
        const double angle = i * 6.283185307179586 / corners;
        const double x = size * std::cos(angle), y = flat * size * std::sin(angle);
        points.emplace_back(x * std::cos(turn) - y * std::sin(turn), x * std::sin(turn) + y * std::cos(turn));
      }
      const double x = number(-0.5, 1.5) * width, y = number(-0.5, 1.5) * height;
      const auto color = someColor<TypeParam>(random, random() % 2 == 0);
      if (!fillTurnedAt(shipped, points, x, y, color)) continue;
      ++filled;
      ++(size <= 6.0 ? narrow : wide);
      fillConvexAt(expected, points, x, y, color);
    }
    ASSERT_EQ(shipped.differenceFrom(expected), "") << "seed " << seed << ", round " << round;
    ASSERT_TRUE(shipped.guardsAreWhole()) << "seed " << seed << ", round " << round;
  }
  EXPECT_GT(filled, 10000);
  EXPECT_GT(narrow, 3000);
  EXPECT_GT(wide, 3000);
}

// The border between two ways of painting, and that between the tables' room and more.
TYPED_TEST(TurnedFillerAtDepth, paintsOutlinesOfAnyWidthAndHeightThatItTakes) {
  const TypeParam color = opaqueRed<TypeParam>();
  for (double width = 0.25; width < 22.0; width += 0.375) {
    for (const double x : {0.0, 0.3, 2.9, 21.0, 29.5}) {
      TestCanvas<TypeParam> shipped(33, 5), expected(33, 5);
      ASSERT_TRUE(fillTurnedAt(shipped, box(0, 0, width, 3.3), x, 0.6, color));
      fillConvexAt(expected, box(0, 0, width, 3.3), x, 0.6, color);
      ASSERT_EQ(shipped.differenceFrom(expected), "") << width << " at " << x;
    }
  }
  for (const double height : {255.0, 256.0, 256.125, 300.0}) {
    TestCanvas<TypeParam> shipped(9, 310), expected(9, 310);
    ASSERT_EQ(fillTurnedAt(shipped, box(0, 0, 5, height), 2.0, 3.0, color), height <= 256.0) << height;
    shipped.rasterizer.finishPath(shipped.context.canvas, {.c = 2.0, .f = 3.0}, color);
    fillConvexAt(expected, box(0, 0, 5, height), 2.0, 3.0, color);
    ASSERT_EQ(shipped.differenceFrom(expected), "") << height;
  }
}

TYPED_TEST(TurnedFillerAtDepth, leavesAnOutlineWithinOneSubRowAndACanvasOfThreePixelsToOthers) {
  const TypeParam color = opaqueRed<TypeParam>();
  TestCanvas<TypeParam> canvas(9, 5), three(3, 5);
  EXPECT_FALSE(fillTurnedAt(canvas, box(0, 0, 5, 0.05), 2.0, 3.0, color));
  EXPECT_FALSE(fillTurnedAt(three, box(0, 0, 5, 2), 0.0, 3.0, color));
  EXPECT_EQ(canvas.paintedPixels() + three.paintedPixels(), 0);
}

TYPED_TEST(TurnedFillerAtDepth, paintsNothingOfAnOutlineBesideTheCanvas) {
  const TypeParam color = opaqueRed<TypeParam>();
  TestCanvas<TypeParam> canvas(9, 5);
  for (const auto& [x, y] : Points{{-7, 1}, {20, 1}, {1, -7}, {1, 20}, {-90, -90}, {9, 1}, {1, 5}}) {
    EXPECT_TRUE(fillTurnedAt(canvas, box(0, 0, 5, 5), x, y, color)) << x << ' ' << y;
  }
  EXPECT_EQ(canvas.paintedPixels(), 0);
  EXPECT_TRUE(canvas.guardsAreWhole());
}

}  // namespace
}  // namespace vindrel
