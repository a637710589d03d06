// Runs of covered columns as lists, kept sorted and apart, with the small set algebra on them that coverage needs; and
// eight sub-rows of such runs, which is what the general filler knows about a pixel row that is too rich for its table,
// or not orderly (SpanTable).
//
// Plain singly linked lists on purpose: a list is only ever built at its right end, and every node is a block of its
// own from the global allocator. Columns are sub-columns while a list is built, whole pixels once it has been counted.
#pragma once

#include <cstdint>

namespace vindrel {

/// One run of columns, both ends inclusive.
struct Span {
  int32_t start;
  int32_t end;
  Span* next;
};

/// A list owns its nodes; spanClear must give them back. An empty list has no head; its tail is not looked at.
struct SpanList {
  Span* head = nullptr;
  Span* tail = nullptr;
};

/// Adds the run [start, end] at the right end. A run that touches or overlaps the last one is merged into it. A run
/// that begins left of the last run's start is dropped when it touches or overlaps: callers feed ascending starts.
/// Throws std::bad_alloc when there is no memory, the list being unchanged. Where the allocator answers null instead,
/// the run is lost, and so are the runs behind it until the list is cleared.
void spanAppend(SpanList& list, int32_t start, int32_t end);

/// Gives all nodes back and leaves the list empty.
void spanClear(SpanList& list);

/// Makes target a copy of source; the nodes are not shared. A list assigned to itself stays as it is.
void spanAssign(SpanList& target, const SpanList& source);

/// a becomes the intersection of a and b, with three peculiarities that saved projects' looks rest on:
/// - A run of a that reaches several runs of b is cut to the first of them; each further piece begins at the last
///   column of the next run of b, not at its first, so only that column of it stays. Where the run of a ends before
///   that column, a reversed piece (start above end) stands there, which covers nothing.
/// - If no run of a overlaps any run of b, the runs of a that lie right of the last run of b stay; all of a stays when
///   b is empty.
/// - A run of a that falls out behind one that stayed is unlinked but not released.
/// The tail of a is no longer kept: the next thing done to a must be spanAssign or spanClear. b is not changed.
void spanIntersect(SpanList& a, const SpanList& b);

/// a becomes the union of a and b; neighbours without a free column between them merge. b is not changed.
/// When memory runs out (std::bad_alloc), a holds what was joined so far.
void spanUnion(SpanList& a, const SpanList& b);

/// The eight sub-rows of a pixel row: sub-row y has slot y & 7. From the eight lists come two lists of whole pixels:
/// those that every sub-row covers from side to side, which need no counting, and those that any sub-row touches, which
/// are the ones to visit.
///
/// One per rasteriser. The slots belong to one pixel row at a time; between two outlines all eight are empty.
struct CoverageRows {
  int32_t lastSubRow = -1;  ///< last sub-row of the present outline; -1 when idle, and after the first flush
  int32_t firstRow = -1;    ///< first slot in use; -1 if none
  int32_t lastRow = -1;     ///< last slot in use; -1 if none
  SpanList rows[8];         ///< sub-columns
  SpanList solid;           ///< pixels; only the last thing that addSpan made of it is of use
  SpanList any;             ///< pixels

  CoverageRows() = default;
  CoverageRows(const CoverageRows&) = delete;
  CoverageRows& operator=(const CoverageRows&) = delete;
  ~CoverageRows();
};

/// Adds the run of sub-columns [start, end] to sub-row y. On the last sub-row of a pixel row, or of the outline, makes
/// the list of solid pixels anew, for each run that is added there.
void addSpan(CoverageRows& coverage, int32_t start, int32_t end, int32_t y);

/// Makes anew, and returns, the list of pixels that any sub-row touches. A run that ends on the last sub-column of a
/// pixel reaches into the next pixel, which then counts 0.
const SpanList& anyCoverage(CoverageRows& coverage);

/// Empties the sub-rows and forgets the outline. The lists of pixels stay until they are made anew.
void resetRows(CoverageRows& coverage);

}  // namespace vindrel
