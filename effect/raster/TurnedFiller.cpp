#include "effect/raster/TurnedFiller.h"

#include <algorithm>

#include "effect/pixel/Pixel.h"
#include "effect/raster/FetchAhead.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/RunLanes.h"
#include "effect/raster/SideLanes.h"

namespace vindrel {
namespace {

constexpr int32_t mostFours = 4;  // of pixels that are painted row by row without looking how far the row reaches
constexpr double columnMargin = 1.0 / 64.0;

/// Steps one chain's sides down the table.
/// @param column  the table from sub-row `base` on
void stepChain(const SideTable& sides, int32_t first, int32_t last, double* column, int32_t base) {
  for (int32_t k = first; k < last; ++k) {
    double* at = column + (sides.row[k] - base);
    double* const end = column + (sides.row[k + 1] - base);
    double x = sides.x[k];
    const double slope = sides.slope[k];
    do {
      at[0] = x;
      x += slope;
      at[1] = x;
      x += slope;
      at[2] = x;
      x += slope;
      at[3] = x;
      x += slope;
      at += 4;
    } while (at < end);
  }
}

template <class Pixel, int fours>
void paintNarrow(const RowPainter<Pixel>& painter, const double* forward, const double* backward, Pixel* pixels,
                 int32_t rowBytes, int32_t rows, int32_t firstColumn) {
  for (; rows > 0; --rows) {
    const lanes::Strip strip(lanes::runsBetween(forward, backward), firstColumn);
    for (int32_t i = 0; i < fours; ++i) painter.paintFour(pixels + 4 * i, strip.counts(i));
    forward += 8;
    backward += 8;
    pixels = reinterpret_cast<Pixel*>(reinterpret_cast<std::byte*>(pixels) + rowBytes);
  }
}

}  // namespace

template <class Pixel>
bool fillTurned(SideTable& table, const TurnedOutline& outline, double x, double y, const CanvasView<Pixel>& canvas,
                const Pixel& color) {
  if (canvas.width < 4) return false;
  const int32_t count = outline.count();
  const int32_t forwardEnd = outline.forwardCount();
  // Both are read from the vertices themselves, as each is.
  const int32_t topRow = lanes::truncated((outline.y()[0] + y) * 8.0 + 0.5);
  const int32_t bottomRow = lanes::truncated((outline.y()[forwardEnd - 1] + y) * 8.0 + 0.5);
  const int32_t base = topRow & ~7;
  // Around an outline within one sub-row both sides turn without an end, and the one that each is left on is painted.
  if (topRow == bottomRow || bottomRow - base > SideTable::mostSubRows) return false;
  const int32_t firstRow = std::max(base >> 3, 0);
  const int32_t behindRow = std::min((bottomRow + 7) >> 3, canvas.height);
  // Between its vertices a side stays between their x, but for what its steps round.
  const int32_t firstPixel = std::max(lanes::truncated((outline.left() + x) * 8.0 + 0.5 - columnMargin) >> 3, 0);
  const int32_t lastPixel =
      std::min(lanes::truncated((outline.right() + x) * 8.0 - 0.5 + columnMargin) >> 3, canvas.width - 1);
  if (firstRow >= behindRow || firstPixel > lastPixel) return true;

  const int32_t rows = behindRow - firstRow;
  const int32_t fours = (lastPixel - firstPixel) / 4 + 1;
  const bool narrow = fours <= mostFours && fours * 4 <= canvas.width;
  RowsAhead<Pixel> ahead(canvas, firstPixel, lastPixel, firstRow, behindRow - 1);
  ahead.ask(narrow ? rows : RowsAhead<Pixel>::distance);
  lanes::placeVertices(outline.x(), outline.y(), count, x, y, table.x, table.y, table.row);
  lanes::startSides(count, table.x, table.y, table.row, table.slope);
  std::fill(table.forward, table.forward + 8, -1.0);
  std::fill(table.backward, table.backward + 8, -1.0);
  stepChain(table, 0, forwardEnd - 1, table.forward, base);
  stepChain(table, forwardEnd, count - 1, table.backward, base);
  const int32_t behind = bottomRow - base;
  std::fill(table.forward + behind, table.forward + behind + 8, -1.0);
  std::fill(table.backward + behind, table.backward + behind + 8, -1.0);

  RowPainter<Pixel> painter(color);
  const double* const f = table.forward + (firstRow * 8 - base);
  const double* const b = table.backward + (firstRow * 8 - base);
  if (narrow) {
    const int32_t first = std::min(firstPixel, canvas.width - fours * 4);
    Pixel* const pixels = canvas.row(firstRow) + first;
    switch (fours) {
      case 1:
        paintNarrow<Pixel, 1>(painter, f, b, pixels, canvas.rowBytes, rows, first * 8);
        break;
      case 2:
        paintNarrow<Pixel, 2>(painter, f, b, pixels, canvas.rowBytes, rows, first * 8);
        break;
      case 3:
        paintNarrow<Pixel, 3>(painter, f, b, pixels, canvas.rowBytes, rows, first * 8);
        break;
      default:
        paintNarrow<Pixel, 4>(painter, f, b, pixels, canvas.rowBytes, rows, first * 8);
        break;
    }
    return true;
  }
  for (int32_t r = 0; r < rows; ++r) {
    ahead.ask(1);
    paintRuns(painter, lanes::runsBetween(f + 8 * r, b + 8 * r), canvas.row(firstRow + r), canvas.width);
  }
  return true;
}

template bool fillTurned(SideTable&, const TurnedOutline&, double, double, const CanvasView<Pixel8>&, const Pixel8&);
template bool fillTurned(SideTable&, const TurnedOutline&, double, double, const CanvasView<Pixel16>&, const Pixel16&);
template bool fillTurned(SideTable&, const TurnedOutline&, double, double, const CanvasView<Pixel32>&, const Pixel32&);

}  // namespace vindrel
