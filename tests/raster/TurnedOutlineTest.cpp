// The margins that prove an outline's form in every place, against the test of the form in single places.

#include "effect/raster/TurnedOutline.h"
#include "tests/support/TestCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace vindrel {
namespace {

using test::box;
using test::Points;
using test::verticesOf;

TurnedOutline turned(const Points& points, const PathMatrix& matrix = {}) {
  TurnedOutline outline;
  outline.take(verticesOf(points), matrix);
  return outline;
}

TEST(TurnedOutline, hasItsChainsFromTheTopToTheBottomBothWays) {
  const TurnedOutline outline = turned({{-3, 1}, {0, -4}, {5, -1}, {2, 6}, {-2, 4}});
  ASSERT_TRUE(outline.holdsAt(0.0, 0.0));
  ASSERT_EQ(outline.forwardCount(), 3);
  ASSERT_EQ(outline.count(), 7);
  const double expected[7][2] = {{0, -4}, {5, -1}, {2, 6}, {0, -4}, {-3, 1}, {-2, 4}, {2, 6}};
  for (int32_t i = 0; i < 7; ++i) {
    EXPECT_EQ(outline.x()[i], expected[i][0]) << i;
    EXPECT_EQ(outline.y()[i], expected[i][1]) << i;
  }
  EXPECT_EQ(outline.left(), -3.0);
  EXPECT_EQ(outline.right(), 5.0);
}

TEST(TurnedOutline, ofALevelTopBeginsAtTheCornerThatComesFirst) {
  for (int first = 0; first < 4; ++first) {
    Points corners = box(-2, -2, 2, 2);
    std::rotate(corners.begin(), corners.begin() + first, corners.end());
    const TurnedOutline outline = turned(corners);
    ASSERT_TRUE(outline.holdsAt(0.0, 0.0));
    const auto top = std::find_if(corners.begin(), corners.end(), [](const auto& p) { return p.second == -2.0; });
    EXPECT_EQ(outline.x()[0], top->first) << first;
    EXPECT_EQ(outline.x()[outline.forwardCount()], top->first) << first;
  }
}

TEST(TurnedOutline, isTurnedAsThePlaceOfEachVertexIsBegun) {
  const PathMatrix matrix{0.3, -0.7, 11.0, 0.9, 0.1, -5.0};
  const TurnedOutline outline = turned(box(-2, -2, 2, 2), matrix);
  ASSERT_TRUE(outline.holdsAt(matrix.c, matrix.f));
  PolygonRasterizer<Pixel8> rasterizer;
  rasterizer.vertices = verticesOf(box(-2, -2, 2, 2));
  rasterizer.placeOutline(matrix);
  const auto top = std::min_element(rasterizer.vertices.begin(), rasterizer.vertices.end(),
                                    [](const PathVertex& a, const PathVertex& b) { return a.ty < b.ty; });
  EXPECT_EQ(outline.x()[0] + matrix.c, top->tx);
  EXPECT_EQ(outline.y()[0] + matrix.f, top->ty);
}

TEST(TurnedOutline, holdsOnlyWithinReachAndOnlyIfItsFormIsBeyondDoubt) {
  const Points square = box(-2, -2, 2, 2);
  EXPECT_TRUE(turned(square).holdsAt(TurnedOutline::placeReach, -TurnedOutline::placeReach));
  EXPECT_FALSE(turned(square).holdsAt(TurnedOutline::placeReach + 1.0, 0.0));
  EXPECT_FALSE(turned(square).holdsAt(0.0, -TurnedOutline::placeReach - 1.0));
  EXPECT_FALSE(turned(square).holdsAt(std::nan(""), 0.0));
  EXPECT_FALSE(turned(square).holdsAt(0.0, HUGE_VAL));
  EXPECT_FALSE(turned({{0, 0}, {4, 4}}).holdsAt(0.0, 0.0)) << "two corners";
  EXPECT_FALSE(turned(box(-2, -2, 2, 2049)).holdsAt(0.0, 0.0)) << "too large";
  EXPECT_FALSE(turned(box(-2, -2, 2, std::nan(""))).holdsAt(0.0, 0.0)) << "not a number";
  EXPECT_FALSE(turned({{0, 0}, {4, 4}, {0, 8}, {1, 4}}).holdsAt(0.0, 0.0)) << "a dent";
  EXPECT_FALSE(turned({{0, 0}, {4, 4}, {4, 4}, {0, 8}}).holdsAt(0.0, 0.0)) << "a corner without an angle";
  EXPECT_FALSE(turned({{-2, 0}, {2, 0x1p-13}, {2, 4}, {-2, 4}}).holdsAt(0.0, 0.0)) << "nearly level";
  EXPECT_TRUE(turned({{-2, 0}, {2, 0x1p-12}, {2, 4}, {-2, 4}}).holdsAt(0.0, 0.0));
  Points star;
  for (const double degrees : {-90.0, 126.0, -18.0, 198.0, 54.0}) {
    star.emplace_back(std::cos(degrees * 0.0174533) * 9.0, std::sin(degrees * 0.0174533) * 9.0);
  }
  EXPECT_FALSE(turned(star).holdsAt(0.0, 0.0)) << "winds around twice";
  Points round;
  for (int i = 0; i <= TurnedOutline::mostVertices; ++i) {
    round.emplace_back(200.0 * std::cos(i * 6.283 / 257.0), 200.0 * std::sin(i * 6.283 / 257.0));
  }
  EXPECT_FALSE(turned(round).holdsAt(0.0, 0.0)) << "too many corners";
  round.pop_back();
  EXPECT_TRUE(turned(round).holdsAt(0.0, 0.0));
}

TEST(TurnedOutline, isTakenAnewOnceItsTurnHasChangedOrItWasForgotten) {
  TurnedOutline outline;
  outline.take(verticesOf(box(-1, -1, 1, 1)), {});
  outline.take(verticesOf(box(-2, -2, 2, 2)), {.c = 5.0, .f = 6.0});  // but for the place the same matrix
  EXPECT_EQ(outline.right(), 1.0);
  outline.take(verticesOf(box(-2, -2, 2, 2)), {.a = 0.5, .c = 5.0});
  EXPECT_EQ(outline.right(), 1.0);
  EXPECT_EQ(outline.y()[0], -2.0);
  outline.forget();
  outline.take(verticesOf(box(-3, -3, 3, 3)), {.a = 0.5, .c = 5.0});
  EXPECT_EQ(outline.y()[0], -3.0);
}

// Outlines of all sizes, some with a corner that is moved until its angle is as good as straight.
TEST(TurnedOutline, thatHoldsSuitsTheConvexFillerInAnyPlace) {
  constexpr unsigned seed = 20250401;
  std::mt19937_64 random(seed);
  const auto number = [&random](double from, double to) {
    return from + (to - from) * static_cast<double>(random() >> 11U) * 0x1p-53;
  };
  int32_t held = 0, doubtful = 0;
  PolygonRasterizer<Pixel8> rasterizer;
  for (int round = 0; round < 20000; ++round) {
    const double size = std::pow(2.0, number(-9.0, 11.0));
    const auto corners = static_cast<int>(number(3.0, 14.0));
    const double flat = random() % 3 == 0 ? std::pow(2.0, number(-30.0, 0.0)) : 1.0;
    Points points;
    for (int i = 0; i < corners; ++i) {
      const double angle = (i + number(0.1, 0.9)) * 6.283185307179586 / corners;
      points.emplace_back(size * std::cos(angle), flat * size * std::sin(angle));
    }
    if (random() % 3 == 0) {
      const auto& a = points.front();
      const auto& b = points.back();
      const double out = std::pow(2.0, number(-50.0, -5.0)) * (random() % 2 == 0 ? 1.0 : -1.0);
      points.emplace_back(0.5 * (a.first + b.first) + out, 0.5 * (a.second + b.second) + out);
    }
    const double turn = number(0.0, 6.3);
    const double s = std::sin(turn), k = std::cos(turn);
    PathMatrix matrix{k, -s, 0.0, s, k, 0.0};
    const TurnedOutline outline = turned(points, matrix);
    if (!outline.holdsAt(0.0, 0.0)) {
      ++doubtful;
      continue;
    }
    ++held;
    rasterizer.vertices = verticesOf(points);
    for (int place = 0; place < 4; ++place) {
      const double far = place == 0 ? TurnedOutline::placeReach : 5000.0;
      matrix.c = number(-far, far);
      matrix.f = number(-far, far);
      rasterizer.placeOutline(matrix);
      ASSERT_TRUE(rasterizer.suitsConvexFiller()) << "seed " << seed << ", round " << round;
    }
  }
  EXPECT_GT(held, 4000);
  EXPECT_GT(doubtful, 4000);
}

}  // namespace
}  // namespace vindrel
