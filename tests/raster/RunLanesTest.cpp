// The runs of a pixel row in vector registers, against the plain form of each.

#include "effect/raster/RunLanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "effect/raster/SideLanes.h"
#include "tests/raster/SpanModel.h"

namespace vindrel {
namespace {

TEST(RunLanes, onlyEndsAreAskedWhetherTheyLieBeyondALimit) {
  int32_t runs[16] = {INT32_MAX, 5, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, -1, -1, -1};
  EXPECT_FALSE(lanes::anyEndsBeyond(runs, 9));
  for (int slot = 0; slot < 8; ++slot) {
    int32_t with[16];
    std::copy(runs, runs + 16, with);
    with[2 * slot + 1] = 10;
    EXPECT_TRUE(lanes::anyEndsBeyond(with, 9)) << slot;
  }
}

int32_t plainCount(const int32_t* runs, int32_t pixel) {
  int32_t count = 0;
  for (int32_t column = pixel * 8; column < pixel * 8 + 8; ++column) {
    for (int slot = 0; slot < 8; ++slot) count += runs[2 * slot] <= column && column <= runs[2 * slot + 1];
  }
  return count;
}

// Windows at the left edge and far to the right, runs of every kind, and ends of the 32-bit range.
TEST(RunLanes, countsAndReachAreThoseOfTheColumnsOneByOne) {
  constexpr unsigned seed = 20250301;
  std::mt19937 random(seed);
  const auto pick = [&random](int32_t from, int32_t to) {
    return from + static_cast<int32_t>(random() % static_cast<uint32_t>(to - from + 1));
  };
  for (int round = 0; round < 20000; ++round) {
    const int32_t left = pick(0, 2) == 0 ? 4080 * pick(1, 60000) : 0;
    const int32_t width = pick(0, 3) == 0 ? 4080 : pick(1, 60);
    const int32_t first = left * 8;
    const int32_t wide = pick(0, 1) == 0 ? 200 : width * 8;
    int32_t runs[16];
    for (int slot = 0; slot < 8; ++slot) {
      int32_t& start = runs[2 * slot];
      int32_t& end = runs[2 * slot + 1];
      start = first + pick(-20, wide);
      end = start - 1 + pick(0, wide);
      const int32_t odd = pick(0, 30);
      if (odd == 0) start = end = -1;
      if (odd == 1) start = INT32_MIN;
      if (odd == 2) end = INT32_MIN;
      if (odd == 3) end = INT32_MAX - 8;
      if (odd == 4) start = INT32_MAX - 8, end = INT32_MAX - 9;
    }
    const lanes::Slots slots(lanes::loadRuns(runs), left, width);
    const lanes::SlotReach reach = lanes::reachOf(slots);
    const int32_t from = pick(0, width - 1);
    const lanes::Strip strip(slots, from);
    int32_t counts[16];
    for (int32_t four = 0; four < 4; ++four) strip.counts(four).storeTo(counts + 4 * four);
    for (int32_t i = 0; i < 16 && from + i < width; ++i) {
      const int32_t expected = plainCount(runs, left + from + i);
      ASSERT_EQ(counts[i], expected) << "seed " << seed << ", round " << round << ", pixel " << i;
      const int32_t column = (from + i) * 8;
      if (expected > 0) {
        ASSERT_LT(reach.leastStart, column + 8) << round;
        ASSERT_GT(reach.greatestEnd, column) << round;
      }
      ASSERT_EQ(column >= reach.greatestStart && column + 8 <= reach.leastEnd, expected == 64) << round;
    }
  }
}

/// All runs as (start, end), sorted, since their order is the lanes' own.
std::vector<std::pair<int32_t, int32_t>> sorted(const lanes::EightRuns& runs) {
  int32_t start[8], end[8];
  std::memcpy(start, runs.start, sizeof start);
  std::memcpy(end, runs.end, sizeof end);
  std::vector<std::pair<int32_t, int32_t>> result;
  result.reserve(8);
  for (int i = 0; i < 8; ++i) result.emplace_back(start[i], end[i]);
  std::sort(result.begin(), result.end());
  return result;
}

TEST(RunLanes, theRunsBetweenTwoSidesAreTheSpansOfThePair) {
  std::mt19937_64 random(20250305);
  for (int round = 0; round < 5000; ++round) {
    double first[8], second[8];
    int32_t spans[16];
    for (int i = 0; i < 8; ++i) {
      first[i] = (static_cast<double>(random() % 4000) - 500.0) / 8.0;
      second[i] = random() % 6 == 0 ? first[i] : (static_cast<double>(random() % 4000) - 500.0) / 8.0;
      if (random() % 50 == 0) second[i] = 3e10;
      lanes::SidePair(first[i], second[i], 0.0, 0.0).storeSpan(spans + 2 * i);
    }
    ASSERT_EQ(sorted(lanes::runsBetween(first, second)), sorted(lanes::loadRuns(spans))) << round;
  }
}

TEST(RunLanes, countsOfAStripAreThoseOfTheColumnsOneByOne) {
  std::mt19937 random(20250306);
  const auto pick = [&random](int32_t from, int32_t to) {
    return from + static_cast<int32_t>(random() % static_cast<uint32_t>(to - from + 1));
  };
  for (int round = 0; round < 20000; ++round) {
    const int32_t firstPixel = pick(0, 5000);
    int32_t runs[16];
    for (int slot = 0; slot < 8; ++slot) {
      int32_t& start = runs[2 * slot];
      int32_t& end = runs[2 * slot + 1];
      start = firstPixel * 8 + pick(-20, 140);
      end = start + pick(-3, 140);
      const int32_t odd = pick(0, 20);
      if (odd == 0) start = 0, end = -1;
      if (odd == 1) start -= 40000;
      if (odd == 2) end += 40000;
      if (odd == 3) start += 40000, end += 40000;
    }
    const lanes::Strip strip(lanes::loadRuns(runs), firstPixel * 8);
    for (int32_t four = 0; four < 4; ++four) {
      int32_t counts[4];
      strip.counts(four).storeTo(counts);
      for (int32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(counts[i], plainCount(runs, firstPixel + 4 * four + i)) << "round " << round << ", pixel " << i;
      }
    }
  }
}

LayerExtent plainExtentOf(const SpanTable::Layer& layer) {
  LayerExtent extent{layer[0].start, layer[0].start, layer[0].end, layer[0].end};
  for (const ColumnRun& run : layer) {
    extent.leastStart = std::min(extent.leastStart, run.start);
    extent.greatestStart = std::max(extent.greatestStart, run.start);
    extent.leastEnd = std::min(extent.leastEnd, run.end);
    extent.greatestEnd = std::max(extent.greatestEnd, run.end);
  }
  return extent;
}

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

TEST(RunLanes, extentsAreThoseOfThePlainForm) {
  constexpr unsigned seed = 42;
  std::mt19937 random(seed);
  for (int round = 0; round < 20000; ++round) {
    Runs runs = randomRuns(random);
    if (pick(random, 0, 5) == 0) runs.layer[pick(random, 0, 7)] = {least, greatest};
    if (pick(random, 0, 5) == 0) runs.layer[pick(random, 0, 7)] = {greatest, least};
    ASSERT_EQ(lanes::extentOf(runs.layer), plainExtentOf(runs.layer))
        << "seed " << seed << ", round " << round << ": " << text(runs.layer);
  }
}

TEST(RunLanes, anExtentTellsBetweenWhichColumnsTheEndsLie) {
  const SpanTable::Layer layer = {{4, 9}, {3, 9}, {4, 12}, {4, 9}, {4, 9}, {7, 9}, {4, 8}, {4, 9}};
  EXPECT_EQ(lanes::extentOf(layer), (LayerExtent{3, 7, 8, 12}));
}

}  // namespace
}  // namespace vindrel
