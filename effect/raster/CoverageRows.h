// Eight sub-rows of covered runs, as lists: what the general filler knows about a pixel row that is too rich for its
// table, or not orderly (SpanTable).
//
// Sub-row y has slot y & 7. From the eight lists come two lists of whole pixels: those that every sub-row covers from
// side to side, which need no counting, and those that any sub-row touches, which are the ones to visit.
#pragma once

#include <cstdint>

#include "effect/raster/SpanList.h"

namespace vindrel {

/// One per rasteriser. The slots belong to one pixel row at a time; between two outlines all eight are empty.
struct CoverageRows {
  int32_t lastSubRow = -1;  ///< last sub-row of the present outline; -1 when idle, and after the first flush
  int32_t firstRow = -1;    ///< first slot in use; -1 if none
  int32_t lastRow = -1;     ///< last slot in use; -1 if none
  bool ready = false;       ///< the pixel row may be painted
  SpanList rows[8];         ///< sub-columns
  SpanList solid;           ///< pixels; only the last thing that addSpan made of it is of use
  SpanList any;             ///< pixels

  CoverageRows() = default;
  CoverageRows(const CoverageRows&) = delete;
  CoverageRows& operator=(const CoverageRows&) = delete;
  ~CoverageRows();
};

/// Adds the run of sub-columns [start, end] to sub-row y. On the last sub-row of a pixel row, or of the outline, makes
/// the list of solid pixels anew, for each run that is added there, and marks the rows ready.
void addSpan(CoverageRows& coverage, int32_t start, int32_t end, int32_t y);

/// Makes anew, and returns, the list of pixels that any sub-row touches. A run that ends on the last sub-column of a
/// pixel reaches into the next pixel, which then counts 0.
const SpanList& anyCoverage(CoverageRows& coverage);

/// Empties the sub-rows and forgets the outline. The lists of pixels stay until they are made anew.
void resetRows(CoverageRows& coverage);

}  // namespace vindrel
