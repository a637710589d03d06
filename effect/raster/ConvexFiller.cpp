#include "effect/raster/ConvexFiller.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "effect/pixel/Int32.h"
#include "effect/pixel/Pixel.h"
#include "effect/pixel/RepeatedAddition.h"
#include "effect/raster/FetchAhead.h"
#include "effect/raster/PaintPixel.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/RunLanes.h"

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

/// x after `count` steps to the next sub-row, each of them rounded.
double stepped(double x, double slope, int64_t count) {
  while (count > 0) {
    const auto part = static_cast<int32_t>(std::min<int64_t>(count, 1 << 30));
    if (!(std::abs(slope) > 0.0) || !std::isfinite(slope)) {
      // One step by 0, or two to where nothing changes any more.
      for (int32_t n = std::min(part, 3); n > 0; --n) x += slope;
    } else {
      // Rounding knows no sign, so a sum that falls is the mirror of one that grows.
      x = slope > 0.0 ? addRepeatedly(x, slope, part) : -addRepeatedly(-x, -slope, part);
    }
    count -= part;
  }
  return x;
}

/// Paints a pixel row for a colour whose opacity isn't finite: that also paints pixels with a count of 0, so all pixels
/// between the least start and the greatest end of the rows that were emitted are visited, and one more.
template <class Pixel>
void paintVisited(ConvexFiller<Pixel>& filler, Pixel* pixels) {
  const int32_t first = std::max(filler.minStart >> 3, 0);
  const int32_t last = std::min(wrapAdd(filler.maxEnd, 8) >> 3, filler.canvas.width - 1);
  for (int32_t p = first; p <= last; ++p) {
    const int32_t c0 = p * 8;
    const int32_t c1 = c0 + 7;
    int32_t count = 0;
    for (int32_t r = 0; r < 8; ++r) {
      const int32_t start = filler.rows[2 * r];
      const int32_t end = filler.rows[2 * r + 1];
      if (start <= c1 && c0 <= end) count += std::min(end, c1) - std::max(start, c0) + 1;
    }
    paintPixel(pixels[p], filler.color, count);
  }
}

// A function of its own, so that the walk from sub-row to sub-row stays small and keeps the sides in registers.
template <class Pixel>
[[gnu::noinline]] void paintRow(ConvexFiller<Pixel>& filler, RowPainter<Pixel>& painter, int32_t row) {
  if (row < 0 || row >= filler.canvas.height) return;
  // The column behind the greatest end wraps around to the far left, and nothing of the row is painted. Kept as is
  // (aSpanThatEndsAtTheLastColumnsOf32BitsPaintsNothing).
  if (lanes::anyEndsBeyond(filler.rows, INT32_MAX - 8)) return;
  if (filler.paintsEmptyCounts) {
    paintVisited(filler, filler.canvas.row(row));
  } else {
    paintRuns(painter, lanes::loadRuns(filler.rows), filler.canvas.row(row), filler.canvas.width);
  }
}

}  // namespace

template <class Pixel>
[[gnu::always_inline]] inline void emitRow(ConvexFiller<Pixel>& filler, RowPainter<Pixel>& painter,
                                           lanes::SidePair& sides, int32_t y, int32_t end) {
  for (int32_t at = y; at < end; ++at) {
    sides.storeSpan(filler.rows + 2 * (at & 7));
    sides.step();
  }
  if (filler.paintsEmptyCounts) {
    for (int32_t at = y; at < end; ++at) {
      filler.minStart = std::min(filler.minStart, filler.rows[2 * (at & 7)]);
      filler.maxEnd = std::max(filler.maxEnd, filler.rows[2 * (at & 7) + 1]);
    }
  }
  if ((end & 7) != 0) return;

  paintRow(filler, painter, (end - 1) >> 3);
  resetRange(filler);
}

template <class Pixel>
void fillConvex(ConvexFiller<Pixel>& filler, std::vector<PathVertex>& outline, const CanvasView<Pixel>& canvas,
                const Pixel& color) {
  filler.canvas = canvas;
  filler.color = color;
  filler.paintsEmptyCounts = !emptyCountPaintsNothing(color);
  std::fill(std::begin(filler.rows), std::end(filler.rows), -1);
  resetRange(filler);
  RowPainter<Pixel> painter(color);
  const PathVertex* const first = &outline.front();
  const PathVertex* const last = &outline.back();
  PathVertex* top = &outline.front();
  double left = top->tx, right = top->tx;
  int32_t bottom = std::numeric_limits<int32_t>::min();
  for (PathVertex& v : outline) {
    left = std::min(left, v.tx);
    right = std::max(right, v.tx);
    v.tx *= 8.0;
    v.ty *= 8.0;
    v.iy = lanes::truncated(v.ty + 0.5);
    bottom = std::max(bottom, v.iy);
    if (top->ty > v.ty) top = &v;
  }
  RowsAhead<Pixel> ahead(canvas, left, right, top->iy >> 3, bottom >> 3);
  ahead.ask(RowsAhead<Pixel>::distance);

  SideTracker forward, backward;
  forward.cur = forward.next = backward.cur = backward.next = top;
  const int32_t scannedRows = wrapMultiply(canvas.height, 8);
  // Below the canvas nothing more is painted, so the walk ends there. Above it, every sub-row counts, for x comes from
  // repeated addition; but all of them up to the next vertex are leapt at once.
  int32_t y = top->iy;
  while (y < scannedRows) {
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
    // Until there, neither side meets a vertex.
    const int32_t change = std::max(std::min({forward.next->iy, backward.next->iy, scannedRows}), y + 1);
    if (y < 0) {
      const int32_t to = std::min(change, 0);
      const int64_t count = static_cast<int64_t>(to) - y;
      forward.x = stepped(forward.x, forward.slope, count);
      backward.x = stepped(backward.x, backward.slope, count);
      y = to;
    }
    lanes::SidePair sides(forward.x, backward.x, forward.slope, backward.slope);
    while (y < change) {
      const int32_t end = std::min(change, (y | 7) + 1);
      if ((end & 7) == 0) ahead.ask(1);
      emitRow(filler, painter, sides, y, end);
      y = end;
    }
    forward.x = sides.first();
    backward.x = sides.second();
  }

  // The last pixel row is painted even if the outline didn't reach its eighth sub-row: the rest is empty.
  for (; (y & 7) < 7; ++y) filler.rows[2 * (y & 7)] = filler.rows[2 * (y & 7) + 1] = -1;
  lanes::SidePair empty(-1.0, -1.0, 0.0, 0.0);
  emitRow(filler, painter, empty, y, y + 1);
}

template void fillConvex(ConvexFiller<Pixel8>&, std::vector<PathVertex>&, const CanvasView<Pixel8>&, const Pixel8&);
template void fillConvex(ConvexFiller<Pixel16>&, std::vector<PathVertex>&, const CanvasView<Pixel16>&, const Pixel16&);
template void fillConvex(ConvexFiller<Pixel32>&, std::vector<PathVertex>&, const CanvasView<Pixel32>&, const Pixel32&);

}  // namespace vindrel
