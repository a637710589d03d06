#include "effect/raster/ConvexFiller.h"

#include <algorithm>
#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/pixel/Truncate.h"
#include "effect/pixel/Wrap.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/PolygonRasterizer.h"

namespace vindrel {
namespace {

constexpr int32_t noStart = 32767;  // above any start of an ordinary canvas
constexpr int32_t noEnd = -1;

template <class Pixel>
void resetRanges(ConvexFiller<Pixel>& filler) {
  filler.minStart = noStart;
  filler.maxStart = noEnd;
  filler.minEnd = noStart;
  filler.maxEnd = noEnd;
}

/// Begins the side from `from` to `to` on sub-row y: x at the sub-row's centre. A horizontal side gets a slope without
/// meaning, which the next side replaces at once.
void setSide(SideTracker& side, const PathVertex& from, const PathVertex& to, int32_t y) {
  side.yEnd = to.ty;
  double dy = to.ty - from.ty;
  if (dy == 0.0) dy = 1.0;
  side.slope = (to.tx - from.tx) / dy;
  side.x = ((y + 0.5) - from.ty) * side.slope + from.tx;
}

/// Whether a step to the next sub-row leaves x as it is.
bool isAtRest(const SideTracker& side) {
  return side.x + side.slope == side.x || std::isnan(side.x);
}

/// How many samples of the pixel with the sub-columns c0 to c1 the eight spans cover.
inline int32_t coveredSamples(const SubRowSpan (&rows)[8], int32_t c0, int32_t c1) {
  int32_t count = 0;
  for (const SubRowSpan& row : rows) {
    if (row.start <= c1 && c0 <= row.end) count += std::min(row.end, c1) - std::max(row.start, c0) + 1;
  }
  return count;
}

/// Paints pixel columns [start, end] of pixel row `row` from the filler's eight spans.
template <class Pixel>
void paintRow(ConvexFiller<Pixel>& filler, int32_t start, int32_t end, int32_t row) {
  if (start >= filler.width || end < 0 || row < 0 || row >= filler.height) return;
  start = std::max(start, 0);
  end = std::min(end, filler.width - 1);
  // All eight spans hold the sub-columns from solidStart to solidEnd: 64 samples without counting. The spans lie
  // between coveredStart and coveredEnd: pixels beyond would count 0 and stay as they are, so they aren't visited. The
  // row that closes an outline asks for all pixels from column 0 on, and would cost most of a small dot's time.
  int32_t solidStart = filler.rows[0].start, solidEnd = filler.rows[0].end;
  int32_t coveredStart = solidStart, coveredEnd = solidEnd;
  bool anyRow = false;
  for (const SubRowSpan& span : filler.rows) {
    solidStart = std::max(solidStart, span.start);
    solidEnd = std::min(solidEnd, span.end);
    if (span.end < 0) continue;
    coveredStart = anyRow ? std::min(coveredStart, span.start) : span.start;
    coveredEnd = anyRow ? std::max(coveredEnd, span.end) : span.end;
    anyRow = true;
  }
  if (emptyCountPaintsNothing(filler.colour)) {
    if (!anyRow) return;
    start = std::max(start, coveredStart >> 3);
    end = std::min(end, coveredEnd >> 3);
  }
  Pixel* const pixels = canvasRow(filler.pixels, filler.rowBytes, row);
  for (int32_t p = start; p <= end; ++p) {
    const int32_t c0 = p * 8;
    const int32_t c1 = c0 + 7;
    // The row group's own short cut: lastRow is a slot and never 8, so it is never taken. Kept as is, it changes
    // nothing; the test by the solid columns finds the same pixels.
    const bool shortCut = c0 > filler.maxStart && c1 < filler.minEnd && filler.firstRow == 0 && filler.lastRow == 8;
    const bool solid = shortCut || (c0 >= solidStart && c1 <= solidEnd);
    paintPixel(pixels[p], filler.colour, solid ? 64 : coveredSamples(filler.rows, c0, c1));
  }
}

/// One span without anti-aliasing: all its pixels are wholly covered.
template <class Pixel>
void paintHardSpan(ConvexFiller<Pixel>& filler, int32_t start, int32_t end, int32_t row) {
  if (start >= filler.width || end < 0 || row < 0 || row >= filler.height) return;
  Pixel* const pixels = canvasRow(filler.pixels, filler.rowBytes, row);
  for (int32_t p = std::max(start, 0); p <= std::min(end, filler.width - 1); ++p) {
    paintPixel(pixels[p], filler.colour, 64);
  }
}

}  // namespace

template <class Pixel>
void emitRow(ConvexFiller<Pixel>& filler, double x0, double x1, int32_t y) {
  const int32_t start = truncateToInt32(x0 + 0.5);
  const int32_t end = truncateToInt32(x1 - 0.5);
  if (!filler.supersample) {
    paintHardSpan(filler, start, end, y);
    return;
  }
  const int32_t slot = y & 7;
  if (filler.firstRow == -1) filler.firstRow = slot;
  filler.lastRow = slot;
  filler.rows[slot] = {start, end};
  filler.minStart = std::min(filler.minStart, start);
  filler.maxStart = std::max(filler.maxStart, start);
  filler.minEnd = std::min(filler.minEnd, end);
  filler.maxEnd = std::max(filler.maxEnd, end);
  if (slot != 7) return;

  paintRow(filler, filler.minStart >> 3, wrapAdd(filler.maxEnd, 8) >> 3, y >> 3);
  resetRanges(filler);
  filler.firstRow = -1;
}

template <class Pixel>
void fillConvex(ConvexFiller<Pixel>& filler, PolygonRasterizer<Pixel>& outline, const Pixel& colour) {
  const int32_t scannedRows = filler.supersample ? wrapMultiply(filler.height, 8) : filler.height;
  filler.colour = colour;
  if (filler.supersample) {
    for (PathVertex& v : outline.vertices) {
      v.tx *= 8.0;
      v.ty *= 8.0;
    }
    filler.firstRow = -1;
  }
  for (PathVertex& v : outline.vertices) v.iy = truncateToInt32(v.ty + 0.5);

  filler.firstVertex = &outline.vertices.front();
  filler.lastVertex = &outline.vertices.back();
  const PathVertex* top = filler.firstVertex;
  for (const PathVertex& v : outline.vertices) {
    if (top->ty > v.ty) top = &v;
  }
  if (filler.supersample) {
    std::fill(std::begin(filler.rows), std::end(filler.rows), SubRowSpan{});
    resetRanges(filler);
  }

  filler.leftCur = filler.leftNext = filler.rightCur = filler.rightNext = top;
  // Below the canvas nothing more is painted, so the walk ends there. Above it, every sub-row counts: x comes from
  // repeated addition.
  int32_t y = top->iy;
  for (; y < scannedRows; ++y) {
    while (y == filler.leftNext->iy) {
      filler.leftCur = filler.leftNext;
      filler.leftNext = filler.leftNext == filler.lastVertex ? filler.firstVertex : filler.leftNext + 1;
      setSide(filler.left, *filler.leftCur, *filler.leftNext, y);
      if (filler.leftNext == filler.rightCur) break;
    }
    if (y == filler.rightNext->iy) {
      do {
        filler.rightCur = filler.rightNext;
        filler.rightNext = filler.rightNext == filler.firstVertex ? filler.lastVertex : filler.rightNext - 1;
        setSide(filler.right, *filler.rightCur, *filler.rightNext, y);
      } while (filler.rightNext != filler.leftCur && y == filler.rightNext->iy);
    }
    if (filler.leftNext->iy < y || filler.rightNext->iy < y) break;
    if (y >= 0) {
      const double a = filler.left.x;
      const double b = filler.right.x;
      if (b > a) {
        emitRow(filler, a, b, y);
      } else {
        emitRow(filler, b, a, y);
      }
    }
    // A side may be at rest, upright or of endless coordinates. While both are, nothing happens above the canvas until
    // one of them ends.
    if (y < 0 && isAtRest(filler.left) && isAtRest(filler.right)) {
      const int32_t next = std::min({filler.leftNext->iy, filler.rightNext->iy, 0});
      if (next > y) y = next - 1;
    }
    filler.left.x += filler.left.slope;
    filler.right.x += filler.right.slope;
  }
  if (!filler.supersample) return;

  // The last pixel row is painted even if the outline didn't reach its eighth sub-row: the rest is empty.
  for (; (y & 7) < 7; ++y) filler.rows[y & 7] = SubRowSpan{};
  emitRow(filler, -1.0, -1.0, y);
}

template void emitRow(ConvexFiller<Pixel8>&, double, double, int32_t);
template void emitRow(ConvexFiller<Pixel16>&, double, double, int32_t);
template void emitRow(ConvexFiller<Pixel32>&, double, double, int32_t);
template void fillConvex(ConvexFiller<Pixel8>&, PolygonRasterizer<Pixel8>&, const Pixel8&);
template void fillConvex(ConvexFiller<Pixel16>&, PolygonRasterizer<Pixel16>&, const Pixel16&);
template void fillConvex(ConvexFiller<Pixel32>&, PolygonRasterizer<Pixel32>&, const Pixel32&);

}  // namespace vindrel
