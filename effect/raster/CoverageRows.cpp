#include "effect/raster/CoverageRows.h"

#include "effect/pixel/Wrap.h"

namespace vindrel {

CoverageRows::~CoverageRows() {
  for (SpanList& row : rows) spanClear(row);
  spanClear(solid);
  spanClear(any);
}

void addSpan(CoverageRows& coverage, int32_t start, int32_t end, int32_t y) {
  const int32_t slot = y & 7;
  spanAppend(coverage.rows[slot], start, end);
  if (coverage.firstRow == -1) coverage.firstRow = slot;
  coverage.lastRow = slot;
  if (slot != 7 && y != coverage.lastSubRow) return;

  spanAssign(coverage.solid, coverage.rows[coverage.firstRow]);
  for (int32_t r = coverage.firstRow + 1; r <= coverage.lastRow; ++r) {
    spanIntersect(coverage.solid, coverage.rows[r]);
  }
  for (Span* s = coverage.solid.head; s != nullptr; s = s->next) {
    s->start = (s->start >> 3) + 1;
    s->end = (s->end >> 3) - 1;
  }
  coverage.ready = true;
}

const SpanList& anyCoverage(CoverageRows& coverage) {
  if (coverage.firstRow == -1) {
    spanAssign(coverage.any, SpanList{});
  } else {
    spanAssign(coverage.any, coverage.rows[coverage.firstRow]);
    for (int32_t r = coverage.firstRow + 1; r <= coverage.lastRow; ++r) {
      spanUnion(coverage.any, coverage.rows[r]);
    }
  }
  for (Span* s = coverage.any.head; s != nullptr; s = s->next) {
    s->start = s->start >> 3;
    s->end = wrapAdd(s->end, 7) >> 3;
  }
  return coverage.any;
}

void resetRows(CoverageRows& coverage) {
  for (int32_t slot = 7; slot >= 0; --slot) spanClear(coverage.rows[slot]);
  coverage.lastSubRow = -1;
  coverage.firstRow = -1;
  coverage.lastRow = -1;
  coverage.ready = false;
}

}  // namespace vindrel
