#include "effect/raster/ConvexFiller.h"

#include <algorithm>
#include <cmath>

#include "effect/pixel/Pixel.h"
#include "effect/pixel/Truncate.h"
#include "effect/pixel/Wrap.h"
#include "effect/raster/PaintPixel.h"

namespace vindrel {
namespace {

constexpr int32_t noStart = 32767;  // above any start of an ordinary canvas
constexpr int32_t noEnd = -1;

template <class Pixel>
void resetRange(ConvexFiller<Pixel>& filler) {
  filler.minStart = noStart;
  filler.maxEnd = noEnd;
}

/// Sends the side on to `next`, on sub-row y: x at the sub-row's centre. A horizontal side gets a slope without
/// meaning, which the next side replaces at once.
void turnTo(SideTracker& side, const PathVertex& next, int32_t y) {
  side.cur = side.next;
  side.next = &next;
  double dy = next.ty - side.cur->ty;
  if (dy == 0.0) dy = 1.0;
  side.slope = (next.tx - side.cur->tx) / dy;
  side.x = ((y + 0.5) - side.cur->ty) * side.slope + side.cur->tx;
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
  if (start >= filler.canvas.width || end < 0 || row < 0 || row >= filler.canvas.height) return;
  start = std::max(start, 0);
  end = std::min(end, filler.canvas.width - 1);
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
  Pixel* const pixels = filler.canvas.row(row);
  for (int32_t p = start; p <= end; ++p) {
    const int32_t c0 = p * 8;
    const int32_t c1 = c0 + 7;
    const bool solid = c0 >= solidStart && c1 <= solidEnd;
    paintPixel(pixels[p], filler.colour, solid ? 64 : coveredSamples(filler.rows, c0, c1));
  }
}

}  // namespace

template <class Pixel>
void emitRow(ConvexFiller<Pixel>& filler, double x0, double x1, int32_t y) {
  const int32_t start = truncateToInt32(x0 + 0.5);
  const int32_t end = truncateToInt32(x1 - 0.5);
  const int32_t slot = y & 7;
  filler.rows[slot] = {start, end};
  filler.minStart = std::min(filler.minStart, start);
  filler.maxEnd = std::max(filler.maxEnd, end);
  if (slot != 7) return;

  paintRow(filler, filler.minStart >> 3, wrapAdd(filler.maxEnd, 8) >> 3, y >> 3);
  resetRange(filler);
}

template <class Pixel>
void fillConvex(ConvexFiller<Pixel>& filler, std::vector<PathVertex>& outline, const CanvasView<Pixel>& canvas,
                const Pixel& colour) {
  filler.canvas = canvas;
  filler.colour = colour;
  std::fill(std::begin(filler.rows), std::end(filler.rows), SubRowSpan{});
  resetRange(filler);
  for (PathVertex& v : outline) {
    v.tx *= 8.0;
    v.ty *= 8.0;
    v.iy = truncateToInt32(v.ty + 0.5);
  }
  const PathVertex* const first = &outline.front();
  const PathVertex* const last = &outline.back();
  const PathVertex* top = first;
  for (const PathVertex& v : outline) {
    if (top->ty > v.ty) top = &v;
  }

  SideTracker forward, backward;
  forward.cur = forward.next = backward.cur = backward.next = top;
  const int32_t scannedRows = wrapMultiply(canvas.height, 8);
  // Below the canvas nothing more is painted, so the walk ends there. Above it, every sub-row counts: x comes from
  // repeated addition.
  int32_t y = top->iy;
  for (; y < scannedRows; ++y) {
    while (y == forward.next->iy) {
      turnTo(forward, forward.next == last ? *first : forward.next[1], y);
      if (forward.next == backward.cur) break;
    }
    if (y == backward.next->iy) {
      do {
        turnTo(backward, backward.next == first ? *last : backward.next[-1], y);
      } while (backward.next != forward.cur && y == backward.next->iy);
    }
    if (forward.next->iy < y || backward.next->iy < y) break;
    if (y >= 0) {
      const double a = forward.x;
      const double b = backward.x;
      if (b > a) {
        emitRow(filler, a, b, y);
      } else {
        emitRow(filler, b, a, y);
      }
    }
    // A side may be at rest, upright or of endless coordinates. While both are, nothing happens above the canvas until
    // one of them ends.
    if (y < 0 && isAtRest(forward) && isAtRest(backward)) {
      const int32_t next = std::min({forward.next->iy, backward.next->iy, 0});
      if (next > y) y = next - 1;
    }
    forward.x += forward.slope;
    backward.x += backward.slope;
  }

  // The last pixel row is painted even if the outline didn't reach its eighth sub-row: the rest is empty.
  for (; (y & 7) < 7; ++y) filler.rows[y & 7] = SubRowSpan{};
  emitRow(filler, -1.0, -1.0, y);
}

template void emitRow(ConvexFiller<Pixel8>&, double, double, int32_t);
template void emitRow(ConvexFiller<Pixel16>&, double, double, int32_t);
template void emitRow(ConvexFiller<Pixel32>&, double, double, int32_t);
template void fillConvex(ConvexFiller<Pixel8>&, std::vector<PathVertex>&, const CanvasView<Pixel8>&, const Pixel8&);
template void fillConvex(ConvexFiller<Pixel16>&, std::vector<PathVertex>&, const CanvasView<Pixel16>&, const Pixel16&);
template void fillConvex(ConvexFiller<Pixel32>&, std::vector<PathVertex>&, const CanvasView<Pixel32>&, const Pixel32&);

}  // namespace vindrel
