#include "effect/raster/SpanLists.h"

#include <gtest/gtest.h>

#include "tests/raster/SpanModel.h"

namespace vindrel {
namespace {

using model::Runs;

Runs runs(const SpanList& list) {
  Runs result;
  for (const Span* s = list.head; s != nullptr; s = s->next) result.push_back({s->start, s->end});
  return result;
}

TEST(CoverageRows, areIdleAndEmptyAtFirst) {
  CoverageRows coverage;
  EXPECT_EQ(coverage.lastSubRow, -1);
  EXPECT_EQ(coverage.firstRow, -1);
  EXPECT_EQ(coverage.lastRow, -1);
  EXPECT_TRUE(runs(anyCoverage(coverage)).empty());
}

TEST(CoverageRows, aSpanGoesIntoTheSlotOfItsSubRow) {
  CoverageRows coverage;
  addSpan(coverage, 3, 9, 8 + 2);
  addSpan(coverage, 4, 8, 8 + 3);
  EXPECT_EQ(coverage.firstRow, 2);
  EXPECT_EQ(coverage.lastRow, 3);
  EXPECT_EQ(runs(coverage.rows[2]), (Runs{{3, 9}}));
  EXPECT_EQ(runs(coverage.rows[3]), (Runs{{4, 8}}));
}

TEST(CoverageRows, theEighthSubRowMakesTheSolidPixels) {
  CoverageRows coverage;
  for (int32_t y = 0; y < 7; ++y) addSpan(coverage, 0, 31, y);
  EXPECT_TRUE(runs(coverage.solid).empty());
  addSpan(coverage, 0, 31, 7);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 2}}));
}

TEST(CoverageRows, theOutlinesLastSubRowMakesTheSolidPixelsToo) {
  CoverageRows coverage;
  coverage.lastSubRow = 2;
  addSpan(coverage, 0, 31, 1);
  EXPECT_TRUE(runs(coverage.solid).empty());
  addSpan(coverage, 0, 31, 2);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 2}}));
}

// Sub-columns 4 to 43 begin inside pixel 0 and end inside pixel 5: whole are pixels 1 to 4.
TEST(CoverageRows, solidPixelsAreThoseThatAllSubRowsCoverFromSideToSide) {
  CoverageRows coverage;
  for (int32_t y = 0; y < 8; ++y) addSpan(coverage, y == 3 ? 4 : 0, y == 5 ? 43 : 50, y);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 4}}));
}

// A run that begins on a pixel's first sub-column and ends on another's last still loses both pixels.
TEST(CoverageRows, thePixelsOfARunsEndsAreNeverSolid) {
  CoverageRows coverage;
  for (int32_t y = 0; y < 8; ++y) addSpan(coverage, 8, 47, y);
  EXPECT_EQ(runs(coverage.solid), (Runs{{2, 4}}));
}

TEST(CoverageRows, eachRunOnTheEighthSubRowMakesTheSolidPixelsAnew) {
  CoverageRows coverage;
  for (int32_t y = 0; y < 7; ++y) {
    addSpan(coverage, 0, 31, y);
    addSpan(coverage, 64, 95, y);
  }
  addSpan(coverage, 0, 31, 7);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 2}}));
  addSpan(coverage, 64, 95, 7);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 2}, {9, 10}}));
}

TEST(CoverageRows, solidPixelsOfNegativeColumnsRoundDown) {
  CoverageRows coverage;
  for (int32_t y = 0; y < 8; ++y) addSpan(coverage, -20, 20, y);
  EXPECT_EQ(runs(coverage.solid), (Runs{{-2, 1}}));  // -20 >> 3 is -3, 20 >> 3 is 2
}

TEST(CoverageRows, touchedPixelsAreTheUnionOfTheSubRows) {
  CoverageRows coverage;
  addSpan(coverage, 10, 17, 0);
  addSpan(coverage, 60, 65, 0);
  addSpan(coverage, 18, 20, 1);
  // 10 to 20: pixels 1 to (20 + 7) >> 3 = 3. 60 to 65: pixels 7 to 9.
  EXPECT_EQ(runs(anyCoverage(coverage)), (Runs{{1, 3}, {7, 9}}));
}

TEST(CoverageRows, aRunThatEndsOnAPixelsLastSubColumnReachesIntoTheNext) {
  CoverageRows coverage;
  addSpan(coverage, 0, 15, 0);
  EXPECT_EQ(runs(anyCoverage(coverage)), (Runs{{0, 2}}));
}

TEST(CoverageRows, aRunThatEndsOnAPixelsFirstSubColumnStaysInIt) {
  CoverageRows coverage;
  addSpan(coverage, 0, 16, 0);
  EXPECT_EQ(runs(anyCoverage(coverage)), (Runs{{0, 2}}));
}

TEST(CoverageRows, runsApartOnTheSubPixelGridMayShareAPixel) {
  CoverageRows coverage;
  addSpan(coverage, 0, 2, 0);
  addSpan(coverage, 4, 6, 0);
  EXPECT_EQ(runs(anyCoverage(coverage)), (Runs{{0, 1}, {0, 1}}));
}

TEST(CoverageRows, resettingEmptiesTheSubRowsAndKeepsThePixelLists) {
  CoverageRows coverage;
  coverage.lastSubRow = 7;
  for (int32_t y = 0; y < 8; ++y) addSpan(coverage, 0, 31, y);
  anyCoverage(coverage);
  resetRows(coverage);
  for (const SpanList& row : coverage.rows) EXPECT_TRUE(runs(row).empty());
  EXPECT_EQ(coverage.lastSubRow, -1);
  EXPECT_EQ(coverage.firstRow, -1);
  EXPECT_EQ(coverage.lastRow, -1);
  EXPECT_EQ(runs(coverage.solid), (Runs{{1, 2}}));
  EXPECT_EQ(runs(coverage.any), (Runs{{0, 4}}));
}

}  // namespace
}  // namespace vindrel
