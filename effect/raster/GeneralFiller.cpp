#include "effect/raster/GeneralFiller.h"

#include <algorithm>
#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/pixel/Truncate.h"
#include "effect/pixel/Wrap.h"
#include "effect/raster/Crossings.h"
#include "effect/raster/EdgeTable.h"
#include "effect/raster/FetchAhead.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/RunStore.h"
#include "effect/raster/RunVectors.h"

namespace vindrel {
namespace {

/// Whether all coordinates lie within ordinaryReach. The order of equal edges doesn't matter then: a run that ends and
/// the next one that begins on the same column merge, whichever edges meet there.
bool isOrdinary(const std::vector<PathVertex>& vertices) {
  return std::all_of(vertices.begin(), vertices.end(), [](const PathVertex& v) {
    return std::abs(v.tx) <= ordinaryReach && std::abs(v.ty) <= ordinaryReach;
  });
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
  return {nearestSub(yMin * 8.0), nearestSub(yMax * 8.0)};
}

template <class Pixel>
void flushRow(CoverageRows& coverage, const CanvasView<Pixel>& canvas, const Pixel& color, int32_t y) {
  const int32_t row = y >> 3;
  if (row >= 0 && row < canvas.height) {
    Pixel* const pixels = canvas.row(row);
    for (const Span* s = anyCoverage(coverage).head; s != nullptr; s = s->next) {
      if (s->start >= canvas.width || s->end < 0) continue;
      const int32_t end = std::min(s->end, canvas.width - 1);
      for (int32_t p = std::max(s->start, 0); p <= end; ++p) {
        paintPixel(pixels[p], color, coveredSamples(coverage, p));
      }
    }
  }
  resetRows(coverage);
}

template <class Pixel>
void fillGeneral(std::vector<ScanEdge>& storage, CoverageRows& coverage, const std::vector<PathVertex>& outline,
                 const CanvasView<Pixel>& canvas, const Pixel& color) {
  const SubRowRange range = scannedSubRows(outline);
  const bool ordinary = isOrdinary(outline);
  const auto [left, right] = std::minmax_element(outline.begin(), outline.end(),
                                                 [](const PathVertex& a, const PathVertex& b) { return a.tx < b.tx; });
  fetchPixelsAhead(canvas, left->tx, right->tx, range.first >> 3, range.last >> 3);
  EdgeTable edges(storage, outline, ordinary);
  RunStore<Pixel> store(coverage, canvas, color, range.last, ordinary);
  const auto flushIfDone = [&](int32_t next) {
    if (store.ready() || next - 1 == range.last) store.flush(next - 1);
  };
  // Above the canvas nothing is painted. Below it neither, and nobody looks at the edges again.
  const int32_t behind = std::min(range.last, wrapMultiply(canvas.height, 8) - 1) + 1;
  edges.pass(range.first, std::min(behind, 0));
  for (int32_t y = std::max(range.first, 0); y < behind;) {
    edges.enter(y);
    const int32_t change = edges.nextChange(y, behind);
    while (y < change) {
      if (ordinary && edges.activeCount() <= Crossings::most && store.table() != nullptr) {
        Crossings crossings(edges);
        do {
          y = crossings.scan(*store.table(), y, std::min(change, (y | 7) + 1));
          flushIfDone(y);
        } while (y < change && crossings.inOrder());
        crossings.giveBack(edges);
      } else {
        forEachRun(edges, [&](int32_t open, int32_t close) {
          store.add({nearestSub(edges.active(open).x), nearestSub(edges.active(close).x)}, y);
        });
        edges.step();
        flushIfDone(++y);
      }
      if (y < change) edges.sortActive();
    }
  }
  store.reset();
}

template void flushRow(CoverageRows&, const CanvasView<Pixel8>&, const Pixel8&, int32_t);
template void flushRow(CoverageRows&, const CanvasView<Pixel16>&, const Pixel16&, int32_t);
template void flushRow(CoverageRows&, const CanvasView<Pixel32>&, const Pixel32&, int32_t);
template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel8>&, const Pixel8&);
template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel16>&, const Pixel16&);
template void fillGeneral(std::vector<ScanEdge>&, CoverageRows&, const std::vector<PathVertex>&,
                          const CanvasView<Pixel32>&, const Pixel32&);

}  // namespace vindrel
