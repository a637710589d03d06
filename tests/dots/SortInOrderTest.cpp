#include "effect/dots/SortInOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace {

/// Dots with the same key are told apart by where they came from.
struct Record {
  int32_t key = 0;
  int32_t origin = 0;
  bool operator==(const Record&) const = default;
};

bool byKey(const Record& a, const Record& b) {
  return a.key < b.key;
}

/// What GNU's std::sort makes of the keys, against introsort. Elsewhere only that it sorts.
void expectTheSameOrder(const std::vector<int32_t>& keys) {
  std::vector<Record> sorted;
  for (const int32_t key : keys) sorted.push_back({key, static_cast<int32_t>(sorted.size())});
  std::vector<Record> mine = sorted;
  std::sort(sorted.begin(), sorted.end(), byKey);
  vindrel::introsort(mine.begin(), mine.end(), byKey);
  EXPECT_TRUE(std::is_sorted(mine.begin(), mine.end(), byKey));
#ifdef __GLIBCXX__
  EXPECT_EQ(mine, sorted) << keys.size() << " keys";
#endif
}

TEST(SortInOrderTest, equalKeysComeOutAsGnusSortLeavesThem) {
  std::mt19937 random(20240117);
  for (const int32_t different : {1, 2, 3, 7, 40, 1000}) {
    for (int32_t length = 0; length < 200; ++length) {
      std::vector<int32_t> keys(static_cast<std::size_t>(length));
      for (int32_t& key : keys) key = static_cast<int32_t>(random() % static_cast<uint32_t>(different));
      expectTheSameOrder(keys);
    }
  }
  std::vector<int32_t> many(100000);
  for (int32_t& key : many) key = static_cast<int32_t>(random() % 500);
  expectTheSameOrder(many);
}

TEST(SortInOrderTest, ascendingDescendingAndWavingKeysAreNoExceptions) {
  std::vector<int32_t> keys;
  for (int32_t i = 0; i < 5000; ++i) keys.push_back(i / 3);
  expectTheSameOrder(keys);
  std::reverse(keys.begin(), keys.end());
  expectTheSameOrder(keys);
  for (int32_t i = 0; i < 5000; ++i) keys[static_cast<std::size_t>(i)] = i % 100 < 50 ? i % 100 : 100 - i % 100;
  expectTheSameOrder(keys);
}

/// Keys that are split as badly as can be, so that the depth is used up and the heap sort takes over: each median of
/// three is among the least that are left.
TEST(SortInOrderTest, keysThatSplitBadlyGoThroughTheHeap) {
  constexpr int32_t half = 2000;
  std::vector<int32_t> keys(2 * half);
  for (int32_t i = 0; i < half; ++i) {
    keys[static_cast<std::size_t>(i)] = i % 2 == 0 ? i + 1 : half + i + (half % 2);
    keys[static_cast<std::size_t>(half + i)] = 2 * (i + 1);
  }
  expectTheSameOrder(keys);
  std::vector<Record> records;
  for (const int32_t key : keys) records.push_back({key / 4, static_cast<int32_t>(records.size())});
  std::vector<Record> again = records;
  vindrel::introsort_steps::heapSort(records.begin(), records.end(), byKey);
  std::make_heap(again.begin(), again.end(), byKey);
  std::sort_heap(again.begin(), again.end(), byKey);
  EXPECT_TRUE(std::is_sorted(records.begin(), records.end(), byKey));
#ifdef __GLIBCXX__
  EXPECT_EQ(records, again);
#endif
}

}  // namespace
