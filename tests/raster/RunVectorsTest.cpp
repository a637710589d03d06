#include "effect/raster/RunVectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "effect/pixel/Truncate.h"
#include "tests/raster/SpanModel.h"

namespace vindrel {
namespace {

namespace plain_vectors {

LayerExtent extentOf(const SpanTable::Layer& layer) {
  LayerExtent extent{layer[0].start, layer[0].start, layer[0].end, layer[0].end};
  for (const ColumnRun& run : layer) {
    extent.leastStart = std::min(extent.leastStart, run.start);
    extent.greatestStart = std::max(extent.greatestStart, run.start);
    extent.leastEnd = std::min(extent.leastEnd, run.end);
    extent.greatestEnd = std::max(extent.greatestEnd, run.end);
  }
  return extent;
}

/// Two sides that are stepped together.
class TwoSides {
 public:
  TwoSides(const double* x, const double* slope) : x_{x[0], x[1]}, slope_{slope[0], slope[1]} {}
  void step() {
    x_[0] += slope_[0];
    x_[1] += slope_[1];
  }
  /// The sub-columns nearest to the two.
  ColumnRun columns() const { return {truncateToInt32(x_[0] + 0.5), truncateToInt32(x_[1] + 0.5)}; }
  bool inOrder() const { return !(x_[0] > x_[1]); }
  /// Whether the sides of both stand in order, this one's to the left.
  bool inOrderBefore(const TwoSides& next) const { return inOrder() && !(x_[1] > next.x_[0]) && next.inOrder(); }
  void storeTo(double* x) const {
    x[0] = x_[0];
    x[1] = x_[1];
  }

 private:
  double x_[2];
  double slope_[2];
};

}  // namespace plain_vectors

using model::pick;

constexpr int32_t least = std::numeric_limits<int32_t>::min();
constexpr int32_t greatest = std::numeric_limits<int32_t>::max();

struct Runs {
  SpanTable::Layer layer;
};

std::string text(const SpanTable::Layer& layer) {
  std::ostringstream out;
  for (const ColumnRun& run : layer) out << '(' << run.start << ' ' << run.end << ')';
  return out.str();
}

/// Near the canvas or far off it on either side, some of them empty.
Runs randomRuns(std::mt19937& random) {
  Runs runs;
  const int kind = pick(random, 0, 3);
  for (ColumnRun& run : runs.layer) {
    run.start = pick(random, -100, 300);
    if (kind == 1) run.start = pick(random, least + 1, 300);
    run.end = run.start + pick(random, 0, kind == 2 ? 400 : 30);
    if (kind == 1 && pick(random, 0, 3) == 0) run.end = greatest - 8 - pick(random, 0, 100);
    if (pick(random, 0, 9) == 0) run = {0, -1};
  }
  return runs;
}

TEST(RunVectors, extentsAreThoseOfThePlainForm) {
  constexpr unsigned seed = 42;
  std::mt19937 random(seed);
  for (int round = 0; round < 20000; ++round) {
    Runs runs = randomRuns(random);
    if (pick(random, 0, 5) == 0) runs.layer[pick(random, 0, 7)] = {least, greatest};
    if (pick(random, 0, 5) == 0) runs.layer[pick(random, 0, 7)] = {greatest, least};
    ASSERT_EQ(vectors::extentOf(runs.layer), plain_vectors::extentOf(runs.layer))
        << "seed " << seed << ", round " << round << ": " << text(runs.layer);
  }
}

TEST(RunVectors, anExtentTellsBetweenWhichColumnsTheEndsLie) {
  const SpanTable::Layer layer = {{4, 9}, {3, 9}, {4, 12}, {4, 9}, {4, 9}, {7, 9}, {4, 8}, {4, 9}};
  EXPECT_EQ(vectors::extentOf(layer), (LayerExtent{3, 7, 8, 12}));
}

TEST(RunVectors, twoSidesStepAndTruncateAsThePlainFormDoes) {
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
    vectors::TwoSides sides(x, slope);
    plain_vectors::TwoSides plain(x, slope);
    const vectors::TwoSides next(nextX, slope);
    const plain_vectors::TwoSides plainNext(nextX, slope);
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
