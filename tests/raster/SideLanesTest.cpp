// The sides of outlines in vector registers, against the plain form of each.

#include "effect/raster/SideLanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "effect/pixel/Int32.h"

namespace vindrel {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

TEST(SideLanes, aSpanIsTheLesserAndTheGreaterSideCutTowardZero) {
  const double numbers[] = {0.0,      -0.0,      0.5,  -0.5,         0.49999999999999994, 1.5,  -1.5,
                            7.25,     1e9,       -1e9, 2147483647.0, -2147483648.5,       3e10, -3e10,
                            infinite, -infinite, 4.0,  notANumber};
  for (const double a : numbers) {
    for (const double b : numbers) {
      int32_t span[2];
      lanes::SidePair(a, b, 0.0, 0.0).storeSpan(span);
      const bool inOrder = b > a;
      EXPECT_EQ(span[0], truncateToInt32((inOrder ? a : b) + 0.5)) << a << ' ' << b;
      EXPECT_EQ(span[1], truncateToInt32((inOrder ? b : a) - 0.5)) << a << ' ' << b;
    }
    EXPECT_EQ(lanes::truncated(a), truncateToInt32(a)) << a;
  }
}

TEST(SideLanes, aStepAddsEachSlopeOnce) {
  lanes::SidePair sides(0.1, -7.3, 0.2, -1e-3);
  double a = 0.1, b = -7.3;
  for (int n = 0; n < 1000; ++n) {
    sides.step();
    a += 0.2;
    b += -1e-3;
  }
  EXPECT_EQ(sides.first(), a);
  EXPECT_EQ(sides.second(), b);
}

// An odd and an even number of vertices, level sides among them.
TEST(SideLanes, placingVerticesAndBeginningTheirSidesIsWhatEachWouldGetByItself) {
  std::mt19937_64 random(20250304);
  const auto number = [&random](double from, double to) {
    return from + (to - from) * static_cast<double>(random() >> 11U) * 0x1p-53;
  };
  for (int round = 0; round < 2000; ++round) {
    const auto count = static_cast<int32_t>(2 + random() % 12);
    double x[20] = {}, y[20] = {}, placedX[20] = {}, placedY[20] = {}, slope[20] = {};
    int32_t row[20] = {};
    for (int32_t k = 0; k < count; ++k) {
      x[k] = number(-50.0, 50.0);
      y[k] = k > 0 && random() % 5 == 0 ? y[k - 1] : number(-50.0, 50.0);
    }
    const double toX = number(-3000.0, 3000.0), toY = number(-3000.0, 3000.0);
    lanes::placeVertices(x, y, count, toX, toY, placedX, placedY, row);
    double sideX[20];
    std::copy(placedX, placedX + 20, sideX);
    lanes::startSides(count, sideX, placedY, row, slope);
    for (int32_t k = 0; k < count; ++k) {
      ASSERT_EQ(placedX[k], (x[k] + toX) * 8.0);
      ASSERT_EQ(placedY[k], (y[k] + toY) * 8.0);
      ASSERT_EQ(row[k], truncateToInt32(placedY[k] + 0.5));
    }
    for (int32_t k = 0; k + 1 < count; ++k) {
      const double dy = placedY[k + 1] - placedY[k];
      if (dy == 0.0) continue;
      const double expected = (placedX[k + 1] - placedX[k]) / dy;
      ASSERT_EQ(slope[k], expected);
      ASSERT_EQ(sideX[k], ((row[k] + 0.5) - placedY[k]) * expected + placedX[k]);
    }
  }
}

/// Two sides that are stepped together.
class PlainTwoSides {
 public:
  PlainTwoSides(const double* x, const double* slope) : x_{x[0], x[1]}, slope_{slope[0], slope[1]} {}
  void step() {
    x_[0] += slope_[0];
    x_[1] += slope_[1];
  }
  /// The sub-columns nearest to the two.
  ColumnRun columns() const { return {truncateToInt32(x_[0] + 0.5), truncateToInt32(x_[1] + 0.5)}; }
  bool inOrder() const { return !(x_[0] > x_[1]); }
  /// Whether the sides of both stand in order, this one's to the left.
  bool inOrderBefore(const PlainTwoSides& next) const { return inOrder() && !(x_[1] > next.x_[0]) && next.inOrder(); }
  void storeTo(double* x) const {
    x[0] = x_[0];
    x[1] = x_[1];
  }

 private:
  double x_[2];
  double slope_[2];
};

TEST(SideLanes, twoSidesStepAndTruncateAsThePlainFormDoes) {
  const double strange[] = {0.0,          -0.5,         -0.4999999999999999, 0.5,           2147483646.5,
                            2147483647.4, 2147483647.5, -2147483648.5,       -2147483649.6, 1.0e300,
                            HUGE_VAL,     -HUGE_VAL,    std::nan("")};
  constexpr unsigned seed = 43;
  std::mt19937_64 random(seed);
  const auto number = [&](double reach) {
    if (random() % 8 == 0) return strange[random() % (sizeof(strange) / sizeof(strange[0]))];
    return reach * (static_cast<double>(random() >> 11) * 0x1p-52 - 1.0);
  };
  for (int round = 0; round < 20000; ++round) {
    const double x[2] = {number(300.0), number(300.0)}, slope[2] = {number(2.0), number(2.0)};
    const double nextX[2] = {number(300.0), number(300.0)};
    lanes::TwoSides sides(x, slope);
    PlainTwoSides plain(x, slope);
    const lanes::TwoSides next(nextX, slope);
    const PlainTwoSides plainNext(nextX, slope);
    for (int step = 0; step < 5; ++step) {
      ASSERT_EQ(sides.columns(), plain.columns()) << "seed " << seed << ", round " << round;
      ASSERT_EQ(sides.inOrder(), plain.inOrder()) << "seed " << seed << ", round " << round;
      ASSERT_EQ(sides.inOrderBefore(next), plain.inOrderBefore(plainNext)) << "seed " << seed << ", round " << round;
      sides.step();
      plain.step();
    }
    double kept[2], expected[2];
    sides.storeTo(kept);
    plain.storeTo(expected);
    for (int i = 0; i < 2; ++i) {
      ASSERT_TRUE(kept[i] == expected[i] || (std::isnan(kept[i]) && std::isnan(expected[i])))
          << "seed " << seed << ", round " << round;
    }
  }
}

}  // namespace
}  // namespace vindrel
