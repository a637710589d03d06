#include "effect/raster/SpanLists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/raster/SpanModel.h"

namespace vindrel {
namespace {

using model::Columns;
using model::Run;
using model::Runs;

class List {
 public:
  List() = default;
  explicit List(const Runs& runs) {
    for (const Run& r : runs) spanAppend(list, r.start, r.end);
  }
  List(const List&) = delete;
  List& operator=(const List&) = delete;
  ~List() { spanClear(list); }

  Runs runs() const {
    Runs result;
    for (const Span* s = list.head; s != nullptr; s = s->next) result.push_back({s->start, s->end});
    return result;
  }

  SpanList list;
};

Runs intersection(const Runs& a, const Runs& b) {
  List left(a), right(b);
  spanIntersect(left.list, right.list);
  EXPECT_EQ(right.runs(), List(b).runs()) << "the second list has changed";
  return left.runs();
}

Runs unionOf(const Runs& a, const Runs& b) {
  List left(a), right(b);
  spanUnion(left.list, right.list);
  EXPECT_EQ(right.runs(), List(b).runs()) << "the second list has changed";
  return left.runs();
}

TEST(SpanAppend, aRunThatTouchesTheLastOneIsMerged) {
  EXPECT_EQ(List({{10, 20}, {21, 30}}).runs(), (Runs{{10, 30}}));
}

TEST(SpanAppend, aRunBehindAFreeColumnStandsByItself) {
  EXPECT_EQ(List({{10, 20}, {22, 30}}).runs(), (Runs{{10, 20}, {22, 30}}));
}

TEST(SpanAppend, aRunInsideTheLastOneChangesNothing) {
  EXPECT_EQ(List({{10, 20}, {12, 15}}).runs(), (Runs{{10, 20}}));
}

TEST(SpanAppend, aRunThatBeginsLeftOfTheLastOneIsDropped) {
  EXPECT_EQ(List({{10, 20}, {5, 25}}).runs(), (Runs{{10, 20}}));
}

TEST(SpanAppend, aRunFromTheSameStartMakesTheLastOneLonger) {
  EXPECT_EQ(List({{10, 20}, {10, 25}}).runs(), (Runs{{10, 25}}));
}

TEST(SpanAppend, theTailIsTheLastRun) {
  List a({{1, 2}, {5, 6}});
  EXPECT_EQ(a.list.tail, a.list.head->next);
  EXPECT_EQ(a.list.tail->next, nullptr);
}

TEST(SpanAppend, aRunAtTheEndOfTheColumnsWrapsAround) {
  EXPECT_EQ(List({{10, INT32_MAX}, {20, 30}}).runs(), (Runs{{10, INT32_MAX}, {20, 30}}));
}

TEST(SpanClear, leavesAnEmptyListThatCanBeUsedAgain) {
  List a({{1, 2}, {5, 6}});
  spanClear(a.list);
  EXPECT_EQ(a.list.head, nullptr);
  EXPECT_EQ(a.list.tail, nullptr);
  spanAppend(a.list, 7, 8);
  EXPECT_EQ(a.runs(), (Runs{{7, 8}}));
}

TEST(SpanAssign, aListAssignedToItselfStays) {
  List a({{1, 2}, {5, 6}});
  const Span* const head = a.list.head;
  spanAssign(a.list, a.list);
  EXPECT_EQ(a.runs(), (Runs{{1, 2}, {5, 6}}));
  EXPECT_EQ(a.list.head, head);
}

TEST(SpanAssign, runsAreCopiedAndNotShared) {
  List a({{1, 2}, {5, 6}}), b({{9, 9}});
  spanAssign(b.list, a.list);
  EXPECT_EQ(b.runs(), (Runs{{1, 2}, {5, 6}}));
  a.list.head->end = 3;
  EXPECT_EQ(b.runs(), (Runs{{1, 2}, {5, 6}}));
}

TEST(SpanIntersect, eachLaterPieceStartsAtTheEndOfTheNextRun) {
  EXPECT_EQ(intersection({{0, 100}}, {{10, 20}, {40, 50}, {60, 70}}), (Runs{{10, 20}, {50, 50}, {70, 70}}));
}

TEST(SpanIntersect, aPieceThatEndsBeforeTheNextRunsEndIsReversed) {
  EXPECT_EQ(intersection({{0, 45}}, {{10, 20}, {40, 50}}), (Runs{{10, 20}, {50, 45}}));
}

TEST(SpanIntersect, aPieceOfARunThatBeginsInsideStartsAtTheEndOfTheNextRunToo) {
  EXPECT_EQ(intersection({{15, 100}}, {{10, 20}, {40, 50}}), (Runs{{15, 20}, {50, 50}}));
}

TEST(SpanIntersect, aRunFarFromTheOtherListStays) {
  EXPECT_EQ(intersection({{10, 20}}, {{1, 5}}), (Runs{{10, 20}}));
}

TEST(SpanIntersect, anEmptyListLeavesAnIntersectionAsItWas) {
  EXPECT_EQ(intersection({{10, 20}, {30, 40}}, {}), (Runs{{10, 20}, {30, 40}}));
}

TEST(SpanIntersect, anEmptyListStaysEmpty) {
  EXPECT_EQ(intersection({}, {{1, 5}}), (Runs{}));
}

TEST(SpanIntersect, aRunLeftOfTheOtherListIsRemoved) {
  EXPECT_EQ(intersection({{1, 5}}, {{10, 20}}), (Runs{}));
}

TEST(SpanIntersect, whatLiesBehindTheOtherListIsRemovedOnceARunHasStayed) {
  EXPECT_EQ(intersection({{0, 5}, {10, 15}, {20, 25}}, {{3, 4}}), (Runs{{3, 4}}));
}

TEST(SpanIntersect, aRunInsideARunStays) {
  EXPECT_EQ(intersection({{12, 14}}, {{10, 20}}), (Runs{{12, 14}}));
}

TEST(SpanIntersect, aRunIsCutAtBothSides) {
  EXPECT_EQ(intersection({{5, 12}}, {{10, 20}}), (Runs{{10, 12}}));
  EXPECT_EQ(intersection({{15, 30}}, {{10, 20}}), (Runs{{15, 20}}));
  EXPECT_EQ(intersection({{5, 30}}, {{10, 20}}), (Runs{{10, 20}}));
}

TEST(SpanUnion, neighboursMerge) {
  EXPECT_EQ(unionOf({{0, 5}}, {{6, 9}}), (Runs{{0, 9}}));
}

TEST(SpanUnion, runsFromBothListsInterleave) {
  EXPECT_EQ(unionOf({{0, 1}, {10, 11}}, {{5, 6}, {20, 21}}), (Runs{{0, 1}, {5, 6}, {10, 11}, {20, 21}}));
}

TEST(SpanUnion, ofEqualStartsTheLongerRunStands) {
  EXPECT_EQ(unionOf({{3, 9}}, {{3, 5}}), (Runs{{3, 9}}));
  EXPECT_EQ(unionOf({{3, 5}}, {{3, 9}}), (Runs{{3, 9}}));
}

TEST(SpanUnion, withAnEmptyListIsTheOther) {
  EXPECT_EQ(unionOf({}, {{1, 2}}), (Runs{{1, 2}}));
  EXPECT_EQ(unionOf({{1, 2}}, {}), (Runs{{1, 2}}));
  EXPECT_EQ(unionOf({}, {}), (Runs{}));
}

TEST(SpanUnion, theResultCanBeAppendedTo) {
  List a({{0, 5}}), b({{10, 12}});
  spanUnion(a.list, b.list);
  spanAppend(a.list, 13, 14);
  EXPECT_EQ(a.runs(), (Runs{{0, 5}, {10, 14}}));
}

// Appending against sets of columns: what the tail lets in and what it drops.
TEST(SpanListModel, appendedRunsCoverTheColumnsOfTheModel) {
  constexpr unsigned seed = 20240501;
  std::mt19937 random(seed);
  for (int round = 0; round < 10000; ++round) {
    Runs fed;
    List list;
    Columns columns;
    model::Run last{0, -2};
    const int count = model::pick(random, 0, 12);
    for (int n = 0; n < count; ++n) {
      const int32_t start = model::pick(random, std::max(0, last.start - 6), last.start + 12);
      const model::Run run{start, start + model::pick(random, 0, 9)};
      fed.push_back(run);
      spanAppend(list.list, run.start, run.end);
      if (columns.empty() || run.start > last.end + 1) {
        model::cover(columns, run);
        last = run;
      } else if (run.start >= last.start && run.end > last.end) {
        model::cover(columns, {last.end + 1, run.end});
        last.end = run.end;
      }
    }
    ASSERT_EQ(list.runs(), model::maximalRuns(columns))
        << "seed " << seed << ", round " << round << ", fed " << model::text(fed);
  }
}

TEST(SpanListModel, unionsAreTheUnionsOfTheColumns) {
  constexpr unsigned seed = 20240502;
  std::mt19937 random(seed);
  for (int round = 0; round < 15000; ++round) {
    const Columns a = model::randomColumns(random), b = model::randomColumns(random);
    Columns both = a;
    both.insert(b.begin(), b.end());
    ASSERT_EQ(unionOf(model::maximalRuns(a), model::maximalRuns(b)), model::maximalRuns(both))
        << "seed " << seed << ", round " << round << ", a " << model::text(model::maximalRuns(a)) << ", b "
        << model::text(model::maximalRuns(b));
  }
}

TEST(SpanListModel, intersectionsAreThoseOfTheColumnsWithTheirDeviations) {
  constexpr unsigned seed = 20240503;
  std::mt19937 random(seed);
  for (int round = 0; round < 15000; ++round) {
    const Columns a = model::randomColumns(random), b = model::randomColumns(random);
    ASSERT_EQ(intersection(model::maximalRuns(a), model::maximalRuns(b)), model::intersection(a, b).runs)
        << "seed " << seed << ", round " << round << ", a " << model::text(model::maximalRuns(a)) << ", b "
        << model::text(model::maximalRuns(b));
  }
}

}  // namespace
}  // namespace vindrel
