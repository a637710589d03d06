#include "effect/raster/GeneralFiller.h"

#include <algorithm>
#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/pixel/Truncate.h"
#include "effect/pixel/Wrap.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {
namespace {

int32_t nearestSubRow(double y) {
  return truncateToInt32(y + 0.5);
}
int32_t nearestSubColumn(double x) {
  return truncateToInt32(x + 0.5);
}

/// The side between two neighbouring vertices, upper end first. A horizontal one divides by zero; it ends on the
/// sub-row on which it would begin, before its x is used.
ScanEdge edgeBetween(const PathVertex& vertex, const PathVertex& previous) {
  const double y0 = vertex.ty * 8.0;
  const double y1 = previous.ty * 8.0;
  const double x0 = vertex.tx * 8.0;
  const double x1 = previous.tx * 8.0;
  if (y0 > y1) return {y1, y0, x1, (x0 - x1) / (y0 - y1), -1};
  return {y0, y1, x0, (x1 - x0) / (y1 - y0), 1};
}

/// The sides of one outline while it is scanned. One array serves twice: edges 0 to pendingEnd wait for their first
/// sub-row, the next to start last; edges pendingEnd + 1 to activeEnd are crossed by the present sub-row. Behind them
/// stand sentinels. Starting an edge moves one border and copies nothing.
struct EdgeTable {
  std::vector<ScanEdge>& edges;
  const ScanEdge& sentinel;
  int32_t pendingEnd;
  int32_t activeEnd;

  /// By yTop, the lowest on the screen first. The sentinel is above all; the bound is for outlines beyond even that.
  void sortPending() {
    const int32_t last = pendingEnd;
    for (int32_t i = last - 1; i >= 0; --i) {
      const ScanEdge edge = at(i);
      int32_t j = i;
      for (; j < last && at(j + 1).yTop > edge.yTop; ++j) at(j) = at(j + 1);
      at(j) = edge;
    }
  }

  /// Only edges of just this sub-row join: whoever has missed it never does.
  void start(int32_t y) {
    while (pendingEnd >= 0 && nearestSubRow(at(pendingEnd).yTop) == y) --pendingEnd;
  }

  /// An edge ends before its last sub-row is used, so one that rounds to a single sub-row does nothing at all.
  void end(int32_t y) {
    for (int32_t j = pendingEnd + 1; j <= activeEnd;) {
      if (nearestSubRow(at(j).yBottom) == y) {
        at(j) = at(activeEnd);
        at(activeEnd) = sentinel;
        --activeEnd;
      } else {
        ++j;
      }
    }
  }

  /// By x, leftmost first. Nearly sorted from the sub-row before, so insertion costs little. Returns whether any edge
  /// has changed its place.
  bool sortActive() {
    bool moved = false;
    for (int32_t i = activeEnd - 1; i > pendingEnd; --i) {
      const ScanEdge edge = at(i);
      int32_t j = i;
      for (; j < activeEnd && edge.x > at(j + 1).x; ++j) at(j) = at(j + 1);
      at(j) = edge;
      moved = moved || j != i;
    }
    return moved;
  }

  /// On to the next sub-row. Returns whether any x has changed.
  bool step() {
    bool changed = false;
    for (int32_t j = pendingEnd + 1; j <= activeEnd; ++j) {
      const double x = at(j).x;
      at(j).x += at(j).dxdy;
      changed = changed || (at(j).x != x && !std::isnan(x));
    }
    return changed;
  }

  /// The first sub-row behind y on which an edge starts or ends, or sub-row 0. y must be negative.
  int32_t nextChange(int32_t y) {
    int32_t next = 0;
    const auto consider = [&next, y](int32_t subRow) {
      if (subRow > y) next = std::min(next, subRow);
    };
    if (pendingEnd >= 0) consider(nearestSubRow(at(pendingEnd).yTop));
    for (int32_t j = pendingEnd + 1; j <= activeEnd; ++j) consider(nearestSubRow(at(j).yBottom));
    return next;
  }

  ScanEdge& at(int32_t i) { return edges[static_cast<std::size_t>(i)]; }
};

void addNonZeroSpans(CoverageRows& coverage, EdgeTable& table, int32_t y) {
  int32_t winding = 0;
  const ScanEdge* open = nullptr;
  for (int32_t j = table.pendingEnd + 1; j <= table.activeEnd; ++j) {
    const ScanEdge& edge = table.at(j);
    winding += edge.winding;
    if (open == nullptr) {
      open = &edge;
    } else if (winding == 0) {
      addSpan(coverage, nearestSubColumn(open->x), nearestSubColumn(edge.x), y);
      open = nullptr;
    }
  }
}

void addEvenOddSpans(CoverageRows& coverage, EdgeTable& table, int32_t y) {
  for (int32_t k = table.pendingEnd + 1; k < table.activeEnd; k += 2) {
    addSpan(coverage, nearestSubColumn(table.at(k).x), nearestSubColumn(table.at(k + 1).x), y);
  }
}

/// The first run of the list that doesn't end left of the column.
const Span* firstReaching(const SpanList& list, int32_t column) {
  const Span* s = list.head;
  while (s != nullptr && s->end < column) s = s->next;
  return s;
}

/// How many of the pixel's samples the sub-rows cover.
int32_t coveredSamples(const CoverageRows& coverage, int32_t pixel) {
  if (coverage.firstRow == 0 && coverage.lastRow == 7) {
    const Span* const solid = firstReaching(coverage.solid, pixel);
    if (solid != nullptr && solid->start <= pixel) return 64;
  }
  const int32_t c0 = pixel * 8;
  const int32_t c1 = c0 + 7;
  int32_t count = 0;
  for (int32_t r = coverage.firstRow; r <= coverage.lastRow; ++r) {
    for (const Span* s = firstReaching(coverage.rows[r], c0); s != nullptr && s->start <= c1; s = s->next) {
      const int32_t columns = wrapAdd(wrapSubtract(std::min(s->end, c1), std::max(s->start, c0)), 1);
      count = wrapAdd(count, columns);
    }
  }
  return count;
}

}  // namespace

SubRowRange scannedSubRows(const std::vector<PathVertex>& vertices) {
  double yMin = 1.7976931348623157e+308;
  // The smallest positive double, not the most negative one, so an outline above the canvas is scanned on to sub-row 0.
  // Kept as is (anOutlineAboveTheCanvasIsScannedDownToSubRowZero).
  double yMax = 2.2250738585072014e-308;
  for (const PathVertex& v : vertices) {
    if (v.ty < yMin) yMin = v.ty;
    if (v.ty > yMax) yMax = v.ty;
  }
  return {nearestSubRow(yMin * 8.0), nearestSubRow(yMax * 8.0)};
}

template <class Pixel>
void flushRow(PolygonRasterizer<Pixel>& rasterizer, int32_t y) {
  CoverageRows& coverage = *rasterizer.coverage;
  const int32_t row = y >> 3;
  if (row >= 0 && row < rasterizer.height) {
    Pixel* const pixels = canvasRow(rasterizer.pixels, rasterizer.rowBytes, row);
    for (const Span* s = anyCoverage(coverage).head; s != nullptr; s = s->next) {
      if (s->start >= rasterizer.width || s->end < 0) continue;
      const int32_t end = std::min(s->end, rasterizer.width - 1);
      for (int32_t p = std::max(s->start, 0); p <= end; ++p) {
        paintPixel(pixels[p], *rasterizer.colour, coveredSamples(coverage, p));
      }
    }
  }
  resetRows(coverage);
}

template <class Pixel>
void fillGeneral(PolygonRasterizer<Pixel>& rasterizer) {
  const std::vector<PathVertex>& vertices = rasterizer.vertices;
  const SubRowRange range = scannedSubRows(vertices);

  rasterizer.edges.clear();
  const PathVertex* previous = &vertices.back();
  for (const PathVertex& v : vertices) {
    rasterizer.edges.push_back(edgeBetween(v, *previous));
    previous = &v;
  }
  const auto last = static_cast<int32_t>(rasterizer.edges.size()) - 1;
  rasterizer.edges.push_back(rasterizer.sentinel);
  EdgeTable table{rasterizer.edges, rasterizer.sentinel, last, last};
  table.sortPending();

  CoverageRows& coverage = *rasterizer.coverage;
  resetRows(coverage);
  coverage.lastSubRow = range.last;
  for (int32_t y = range.first; y <= range.last; ++y) {
    if (y >= rasterizer.subHeight) {
      // Below the canvas nothing more is painted, and nobody looks at the edges again.
      resetRows(coverage);
      return;
    }
    table.start(y);
    table.end(y);
    const bool sorted = table.sortActive();
    if (y >= 0) {
      if (rasterizer.nonZeroWinding) {
        addNonZeroSpans(coverage, table, y);
      } else {
        addEvenOddSpans(coverage, table, y);
      }
    }
    if (coverage.ready || y == range.last) flushRow(rasterizer, y);
    const bool stepped = table.step();
    // Above the canvas nothing is painted. Where neither the order nor any x changes from one sub-row to the next,
    // nothing happens at all until an edge starts or ends: an outline of endless coordinates has two thousand million
    // of these.
    if (y < 0 && !sorted && !stepped) {
      const int32_t next = std::min(table.nextChange(y), range.last);
      if (next > y) y = next - 1;
    }
  }
}

template void flushRow(PolygonRasterizer<Pixel8>&, int32_t);
template void flushRow(PolygonRasterizer<Pixel16>&, int32_t);
template void flushRow(PolygonRasterizer<Pixel32>&, int32_t);
template void fillGeneral(PolygonRasterizer<Pixel8>&);
template void fillGeneral(PolygonRasterizer<Pixel16>&);
template void fillGeneral(PolygonRasterizer<Pixel32>&);

}  // namespace vindrel
