#include "effect/raster/RunVectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/raster/SpanModel.h"

namespace vindrel {
namespace {

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
    if (kind == 1) run.start = pick(random, vectors::leastColumn == least ? least + 1 : vectors::leastColumn, 300);
    run.end = run.start + pick(random, 0, kind == 2 ? 400 : 30);
    if (kind == 1 && pick(random, 0, 3) == 0) run.end = greatest - 8 - pick(random, 0, 100);
    if (pick(random, 0, 9) == 0) run = {0, -1};
  }
  return runs;
}

// Pixel 2 has the sub-columns 16 to 23.
TEST(RunVectors, aRunCountsTheColumnsThatItHasOfAPixel) {
  const SpanTable::Layer layer = {{16, 23}, {0, 16}, {23, 90}, {18, 19}, {0, 15}, {24, 30}, {0, -1}, {-50, 500}};
  int16_t counts[8] = {};
  vectors::addCounts(layer, 2, counts);
  EXPECT_EQ(counts[0], 8 + 1 + 1 + 2 + 0 + 0 + 0 + 8);
  EXPECT_EQ(counts[1], 0 + 0 + 8 + 0 + 0 + 7 + 0 + 8);
  EXPECT_EQ(counts[7], 0 + 0 + 8 + 0 + 0 + 0 + 0 + 8);
}

TEST(RunVectors, countsAreAddedToWhatIsThere) {
  const SpanTable::Layer layer = {{0, 7}, {0, 7}, {0, 7}, {0, 7}, {0, 7}, {0, 7}, {0, 7}, {0, 7}};
  int16_t counts[8] = {5, 6, 7, 8, 9, 10, 11, 12};
  vectors::addCounts(layer, 0, counts);
  EXPECT_EQ(counts[0], 69);
  EXPECT_EQ(counts[1], 6);
  EXPECT_EQ(counts[7], 12);
}

TEST(RunVectors, countAsThePlainFormDoes) {
  constexpr unsigned seed = 41;
  std::mt19937 random(seed);
  for (int round = 0; round < 50000; ++round) {
    const Runs runs = randomRuns(random);
    const int32_t firstPixel = pick(random, 0, 40);
    int16_t counts[8] = {}, expected[8] = {};
    vectors::addCounts(runs.layer, firstPixel, counts);
    plain_vectors::addCounts(runs.layer, firstPixel, expected);
    for (int p = 0; p < 8; ++p) {
      ASSERT_EQ(counts[p], expected[p]) << "seed " << seed << ", round " << round << ", pixel " << firstPixel + p
                                        << ": " << text(runs.layer);
    }
  }
}

TEST(RunVectors, thePlainFormCountsRunsAtTheEndsOfTheRange) {
  const SpanTable::Layer layer = {{least, least}, {least, 3},  {least, greatest - 8}, {greatest - 9, greatest - 8},
                                  {0, -1},        {least, -1}, {7, greatest - 8},     {0, -1}};
  int16_t counts[8] = {};
  plain_vectors::addCounts(layer, 0, counts);
  EXPECT_EQ(counts[0], 0 + 4 + 8 + 0 + 0 + 0 + 1 + 0);
  EXPECT_EQ(counts[1], 0 + 0 + 8 + 0 + 0 + 0 + 8 + 0);
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
