#include "effect/raster/SpanTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "effect/raster/SpanLists.h"
#include "tests/raster/SpanModel.h"

namespace vindrel {

void PrintTo(const ColumnRun& run, std::ostream* out) {
  *out << '(' << run.start << ' ' << run.end << ')';
}

namespace {

using Runs = std::vector<ColumnRun>;
using model::pick;

constexpr int32_t least = std::numeric_limits<int32_t>::min();
constexpr int32_t greatest = std::numeric_limits<int32_t>::max();

Runs runs(const SpanList& list) {
  Runs result;
  for (const Span* s = list.head; s != nullptr; s = s->next) result.push_back({s->start, s->end});
  return result;
}

Runs runs(const SpanTable& table, int32_t slot) {
  Runs result;
  for (int32_t k = 0; k < table.count(slot); ++k) result.push_back(table.layer(k)[slot]);
  return result;
}

Runs runs(const SpanTable::Runs& found) {
  return {found.run, found.run + found.count};
}

Runs joined(const SpanTable& table) {
  SpanTable::Runs found;
  table.joinInto(table.shape(), found);
  return runs(found);
}

Runs solidPixels(const SpanTable& table) {
  SpanTable::Runs found;
  table.solidPixelsInto(table.shape(), found);
  return runs(found);
}

/// The same runs in a table and in lists.
struct Twins {
  SpanTable table;
  CoverageRows lists;

  void add(int32_t slot, ColumnRun run) {
    ASSERT_TRUE(table.append(slot, run));
    addSpan(lists, run.start, run.end, slot);
  }

  std::string text() const {
    std::ostringstream out;
    for (int32_t r = 0; r < 8; ++r) {
      out << "\n  slot " << r << ": ";
      for (const ColumnRun& run : runs(table, r)) out << '(' << run.start << ' ' << run.end << ')';
    }
    return out.str();
  }
};

/// A pixel row as outlines make it: runs that drift from sub-row to sub-row, wide or narrow, near or far apart.
void fillRandomly(Twins& twins, std::mt19937& random, int32_t firstSlot, int32_t lastSlot) {
  const int legs = pick(random, 1, 4);
  int32_t left[4], width[4], drift[4], growth[4];
  for (int k = 0; k < legs; ++k) {
    left[k] = pick(random, -40, 300);
    width[k] = pick(random, 0, 2) == 0 ? pick(random, 0, 300) : pick(random, 0, 30);
    drift[k] = pick(random, 0, 3) == 0 ? pick(random, -90, 90) : pick(random, -6, 6);
    growth[k] = pick(random, -4, 4);
  }
  for (int32_t r = firstSlot; r <= lastSlot; ++r) {
    Runs row;
    for (int k = 0; k < legs; ++k) {
      if (k > 0 && pick(random, 0, 20) == 0) continue;
      const int32_t start = left[k] + drift[k] * r;
      row.push_back({start, start + std::max(0, width[k] + growth[k] * r)});
    }
    std::sort(row.begin(), row.end(), [](const ColumnRun& a, const ColumnRun& b) { return a.start < b.start; });
    for (const ColumnRun& run : row) twins.add(r, run);
  }
}

TEST(SpanTable, isEmptyAtFirstAndAfterAReset) {
  SpanTable table;
  EXPECT_EQ(table.first(), -1);
  EXPECT_EQ(table.last(), -1);
  EXPECT_EQ(table.layerCount(), 0);
  table.append(3, {1, 5});
  table.append(3, {9, 12});
  table.reset();
  EXPECT_EQ(table.first(), -1);
  EXPECT_EQ(table.last(), -1);
  EXPECT_EQ(table.layerCount(), 0);
  EXPECT_EQ(table.count(3), 0);
  EXPECT_TRUE(joined(table).empty());
}

TEST(SpanTable, whatASlotDoesNotHaveIsEmpty) {
  SpanTable table;
  table.append(3, {1, 5});
  table.append(3, {9, 12});
  table.append(4, {1, 5});
  EXPECT_EQ(table.layerCount(), 2);
  EXPECT_EQ(table.layer(1)[3], (ColumnRun{9, 12}));
  EXPECT_EQ(table.layer(1)[4], (ColumnRun{0, -1}));
  table.reset();
  table.append(3, {2, 2});
  EXPECT_EQ(table.layer(1)[3], (ColumnRun{0, -1}));
}

TEST(SpanTable, keepsTheFirstSlotAndTheOneThatWasAddedToLast) {
  SpanTable table;
  table.append(5, {1, 5});
  table.append(6, {1, 5});
  table.append(2, {1, 5});
  EXPECT_EQ(table.first(), 5);
  EXPECT_EQ(table.last(), 2);
}

TEST(SpanTable, appendsMergesAndDropsAsTheListsDo) {
  constexpr unsigned seed = 31;
  std::mt19937 random(seed);
  for (int round = 0; round < 20000; ++round) {
    SpanTable table;
    SpanList list;
    for (int n = pick(random, 1, 8); n > 0; --n) {
      int32_t start = pick(random, -30, 60);
      int32_t end = start + pick(random, -4, 12);
      if (pick(random, 0, 12) == 0) start = pick(random, 0, 1) == 0 ? least : greatest;
      if (pick(random, 0, 12) == 0) end = pick(random, 0, 1) == 0 ? least : greatest;
      ASSERT_TRUE(table.append(3, {start, end}));
      spanAppend(list, start, end);
    }
    ASSERT_EQ(runs(table, 3), runs(list)) << "seed " << seed << ", round " << round;
    spanClear(list);
  }
}

TEST(SpanTable, refusesARunThatFindsNoPlaceAndStaysAsItWas) {
  SpanTable table;
  for (int32_t k = 0; k < SpanTable::runsPerSlot; ++k) ASSERT_TRUE(table.append(2, {10 * k, 10 * k + 3}));
  const Runs before = runs(table, 2);
  EXPECT_FALSE(table.append(2, {1000, 1001}));
  EXPECT_EQ(runs(table, 2), before);
  EXPECT_EQ(table.last(), 2);
  EXPECT_TRUE(table.append(2, {74, 80})) << "merging needs no place";
  EXPECT_EQ(runs(table, 2).back(), (ColumnRun{70, 80}));
  EXPECT_TRUE(table.append(4, {1000, 1001})) << "the other slots have theirs";
}

TEST(SpanTable, settingASlotsRunsIsAppendingThem) {
  constexpr unsigned seed = 35;
  std::mt19937 random(seed);
  for (int round = 0; round < 5000; ++round) {
    SpanTable set, appended;
    for (int32_t slot = 0; slot < 8; ++slot) {
      const int32_t start = pick(random, -20, 20);
      const ColumnRun first{start, start + pick(random, 0, 9)};
      if (pick(random, 0, 2) == 0) {
        set.set(slot, first);
        appended.append(slot, first);
      } else {
        const int32_t next = pick(random, start, first.end + 4);
        const ColumnRun second{next, next + pick(random, 0, 9)};
        set.set(slot, first, second);
        appended.append(slot, first);
        appended.append(slot, second);
      }
      ASSERT_EQ(runs(set, slot), runs(appended, slot)) << "seed " << seed << ", round " << round;
    }
    ASSERT_EQ(set.layerCount(), appended.layerCount());
    ASSERT_EQ(set.last(), appended.last());
  }
}

TEST(SpanTable, theShapeOfALayerLeavesOutSlotsThatHaveNoRun) {
  SpanTable table;
  table.append(2, {10, 20});
  table.append(3, {12, 30});
  table.append(3, {40, 41});
  const SpanTable::Shape shape = table.shape();
  ASSERT_EQ(shape.layers, 2);
  EXPECT_EQ(shape.extent[0], (LayerExtent{10, 12, 20, 30}));
  EXPECT_EQ(shape.extent[1], (LayerExtent{40, 40, 41, 41}));
}

TEST(SpanTable, neighbouringRunsJoin) {
  SpanTable table;
  table.append(0, {10, 17});
  table.append(0, {60, 65});
  table.append(1, {18, 20});
  EXPECT_EQ(joined(table), (Runs{{10, 20}, {60, 65}}));
}

TEST(SpanTable, runsApartByOneColumnStayApart) {
  SpanTable table;
  table.append(0, {0, 2});
  table.append(1, {4, 6});
  EXPECT_EQ(joined(table), (Runs{{0, 2}, {4, 6}}));
  table.append(2, {3, 3});
  EXPECT_EQ(joined(table), (Runs{{0, 6}}));
}

TEST(SpanTable, aRunMayJoinSeveral) {
  SpanTable table;
  for (int32_t k = 0; k < 5; ++k) table.append(0, {10 * k, 10 * k + 3});
  table.append(1, {12, 31});
  EXPECT_EQ(joined(table), (Runs{{0, 3}, {10, 33}, {40, 43}}));
}

TEST(SpanTable, theFullestRowJoinsWithoutLoss) {
  SpanTable table;
  Runs expected;
  for (int32_t k = 0; k < SpanTable::runsPerSlot; ++k) {
    for (int32_t r = 0; r < 8; ++r) {
      expected.push_back({100 * k + 10 * r, 100 * k + 10 * r + 3});
      table.append(r, expected.back());
    }
  }
  EXPECT_EQ(joined(table), expected);
}

TEST(SpanTable, joinsAsTheListsDo) {
  constexpr unsigned seed = 32;
  std::mt19937 random(seed);
  for (int round = 0; round < 20000; ++round) {
    Twins twins;
    const int32_t first = pick(random, 0, 2) == 0 ? pick(random, 0, 7) : 0;
    fillRandomly(twins, random, first, pick(random, 0, 2) == 0 ? pick(random, first, 7) : 7);
    SpanList any;
    for (int32_t r = 0; r < 8; ++r) spanUnion(any, twins.lists.rows[r]);
    ASSERT_EQ(joined(twins.table), runs(any)) << "seed " << seed << ", round " << round << twins.text();
    spanClear(any);
  }
}

TEST(SpanTable, intersectsAsTheListsDo) {
  constexpr unsigned seed = 33;
  std::mt19937 random(seed);
  int rounds = 0;
  for (int round = 0; round < 20000; ++round) {
    Twins twins;
    fillRandomly(twins, random, 0, 7);
    if (twins.table.count(7) == 0) continue;
    SpanTable::Runs solid;
    twins.table.intersectInto(solid);
    ASSERT_EQ(runs(solid), runs(twins.lists.solid)) << "seed " << seed << ", round " << round << twins.text();
    ++rounds;
  }
  EXPECT_GT(rounds, 10000);
}

TEST(SpanTable, anEmptySlotDoesNotHinderSolidPixels) {
  SpanTable table;
  for (const int32_t slot : {0, 1, 2, 4, 5, 6, 7}) table.append(slot, {0, 31});
  EXPECT_EQ(solidPixels(table), (Runs{{1, 2}}));
}

// The other slots lie left of what the first one holds. The lists keep all of that, so pixels count 64 that only the
// first sub-row covers.
TEST(SpanTable, runsThatOverlapNothingStaySolid) {
  SpanTable table;
  table.append(0, {200, 299});
  for (int32_t slot = 1; slot < 8; ++slot) table.append(slot, {0, 99});
  EXPECT_EQ(solidPixels(table), (Runs{{26, 36}}));
}

TEST(SpanTable, noPixelIsSolidInARowThatBeginsOrEndsInTheMiddle) {
  SpanTable table;
  for (int32_t slot = 1; slot < 8; ++slot) table.append(slot, {0, 99});
  EXPECT_TRUE(solidPixels(table).empty());
  table.reset();
  for (int32_t slot = 0; slot < 7; ++slot) table.append(slot, {0, 99});
  EXPECT_TRUE(solidPixels(table).empty());
}

/// Samples of the pixel that the runs cover.
int32_t counted(const SpanTable& table, int32_t pixel) {
  int32_t count = 0;
  for (int32_t r = 0; r < 8; ++r) {
    for (const ColumnRun& run : runs(table, r)) {
      count += std::max(0, std::min(run.end, pixel * 8 + 7) - std::max(run.start, pixel * 8) + 1);
    }
  }
  return count;
}

/// By the rule of the lists: the first run that ends at or right of the pixel decides.
bool isSolid(const Runs& solid, int32_t pixel) {
  for (const ColumnRun& run : solid) {
    if (run.end >= pixel) return run.start <= pixel;
  }
  return false;
}

// What is left out of the intersection must be what counting finds.
TEST(SpanTable, solidPixelsAndCountingTogetherGiveWhatTheWholeIntersectionGives) {
  constexpr unsigned seed = 34;
  std::mt19937 random(seed);
  int leftOut = 0, beyondCounting = 0;
  for (int round = 0; round < 6000; ++round) {
    Twins twins;
    fillRandomly(twins, random, 0, 7);
    if (twins.table.last() != 7) continue;
    const Runs shipped = solidPixels(twins.table);
    const Runs whole = runs(twins.lists.solid);
    if (shipped != whole) ++leftOut;
    for (int32_t pixel = -60; pixel < 200; ++pixel) {
      const int32_t count = counted(twins.table, pixel);
      const int32_t expected = isSolid(whole, pixel) ? 64 : count;
      if (expected != count) ++beyondCounting;
      ASSERT_EQ(isSolid(shipped, pixel) ? 64 : count, expected)
          << "seed " << seed << ", round " << round << ", pixel " << pixel << twins.text();
    }
  }
  EXPECT_GT(leftOut, 1000);
  EXPECT_GT(beyondCounting, 500);
}

TEST(SpanTable, isDisorderlyWithARunThatStandsTheWrongWayRound) {
  SpanTable table;
  table.append(0, {0, 5});
  EXPECT_TRUE(table.isOrderly());
  table.append(1, {5, least});
  EXPECT_FALSE(table.isOrderly());
}

TEST(SpanTable, isDisorderlyWithARunAtTheEndOfTheRange) {
  SpanTable table;
  table.append(0, {least, greatest - 8});
  EXPECT_TRUE(table.isOrderly());
  table.append(1, {0, greatest - 7});
  EXPECT_FALSE(table.isOrderly());
}

TEST(SpanTable, isDisorderlyWithARunOutsideOfTheSlotsFromTheFirstToTheLast) {
  SpanTable table;
  table.append(3, {0, 5});
  table.append(5, {0, 5});
  EXPECT_TRUE(table.isOrderly());
  table.append(4, {10, 15});
  EXPECT_FALSE(table.isOrderly());
  table.reset();
  table.append(3, {0, 5});
  table.append(2, {0, 5});
  EXPECT_FALSE(table.isOrderly());
}

}  // namespace
}  // namespace vindrel
