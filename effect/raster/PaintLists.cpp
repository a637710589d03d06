#include "effect/raster/PaintLists.h"

#include <algorithm>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"
#include "effect/raster/PaintPixel.h"

namespace vindrel {
namespace {

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

template void flushRow(CoverageRows&, const CanvasView<Pixel8>&, const Pixel8&, int32_t);
template void flushRow(CoverageRows&, const CanvasView<Pixel16>&, const Pixel16&, int32_t);
template void flushRow(CoverageRows&, const CanvasView<Pixel32>&, const Pixel32&, int32_t);

}  // namespace vindrel
