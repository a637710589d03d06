// The lattice of cells on which dots may stand, and the walk over it.
//
// A plain rectangular lattice, centred on the centre position and turned as a whole about a chosen centre. It is walked
// outward in square rings: ring 0 is the centre cell, ring r the 8r cells on the border of a square of 2r + 1 cells a
// side, row by row from the top and from left to right. The order matters as much as the places, because it says which
// draws of the generator belong to which cell: a cell's draws depend on its ring, row and column alone.
//
// Places come out of repeated addition, cell after cell, and not out of a product: the last bits of a place decide on
// the edges of the frame and on the order of drawing. All rows of a ring have the same columns.
//
// What the walk costs: only the border cells of a ring are touched, never the square inside. Of those, the ones that
// certainly lie outside the frame are left out in whole runs, since neither the generator (Random.h) nor the repeated
// addition (RepeatedAddition.h) needs to go through them one by one; so are whole rings on the way to a frame far from
// the centre. Certainly means by a margin far above all rounding: whether a cell near an edge makes a dot is always
// decided by its exact place. The walk needs no memory. All lengths are in canvas pixels, y grows downwards.
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>

#include "effect/dots/Random.h"
#include "effect/pixel/RepeatedAddition.h"

namespace vindrel {

/// What makes a lattice.
struct LatticeSettings {
  double centerX{}, centerY{};                  ///< the place of ring 0 before the lattice is turned
  double rotationCenterX{}, rotationCenterY{};  ///< the point about which the lattice turns
  double rotation{};                            ///< turn of the lattice, radians
  double pitchX{}, pitchY{};                    ///< from a cell to its neighbour; less than 1.0 is as 1.0
  double jitterX{}, jitterY{};                  ///< how far a dot may be shaken out of its place, in pitches
};

struct DotGrid {
  double gridCenterX, gridCenterY;          ///< the place of ring 0 before the lattice is turned
  double rotationCenterX, rotationCenterY;  ///< the point about which the lattice turns
  double pitchX, pitchY;                    ///< from a cell to its neighbour, never below 1.0
  double rotation;                          ///< turn of the lattice, radians
  double rotationCos, rotationSin;
  /// Where a cell's turned place must lie for it to make a dot; left and top belong to it, right and bottom do not.
  double boundLeft, boundTop, boundRight, boundBottom;
};

/// The lattice on a canvas of `width` by `height` pixels.
DotGrid makeDotGrid(const LatticeSettings& settings, int32_t width, int32_t height);

/// Rings first to end - 1; a ring outside of them makes no dot for certain. One inside need not make one either.
struct RingSpan {
  int32_t first = 0;
  int32_t end = 0;
};

/// The rings that may touch the acceptance rectangle: all others certainly miss it. Empty when a pitch or a bound is
/// not a finite number, or when the lattice is so lopsided that counting its rings would take for ever; no control's
/// range allows either.
RingSpan ringsThatMayReach(const DotGrid& grid);

/// Cells first to end - 1 of a run of cells; the ones outside of them make no dot for certain.
struct CellSpan {
  int32_t first = 0;
  int32_t end = 0;
};

/// The cells of a straight run that may lie in the acceptance rectangle.
/// @param x, y          place of the run's first cell before the lattice is turned
/// @param stepX, stepY  from a cell to the next before the turn
CellSpan cellsThatMayReach(const DotGrid& grid, double x, double y, double stepX, double stepY, int32_t cells);

namespace gridWalk {

// One cell that stands dx, dy from the rotation centre before the turn.
template <class MakeDot>
inline bool visitCell(const DotGrid& grid, double dx, double dy, MakeDot& makeDot) {
  const double x = (dx * grid.rotationCos - dy * grid.rotationSin) + grid.rotationCenterX;
  const double y = (dx * grid.rotationSin + dy * grid.rotationCos) + grid.rotationCenterY;
  if (grid.boundLeft <= x && x < grid.boundRight && grid.boundTop <= y && y < grid.boundBottom) {
    makeDot(x, y);
    return true;
  }
  skipCellDraws();
  return false;
}

// A ring's top or bottom row.
template <class MakeDot>
bool visitWholeRow(const DotGrid& grid, int32_t cells, double left, double y, MakeDot& makeDot) {
  const CellSpan span = cellsThatMayReach(grid, left, y, grid.pitchX, 0.0, cells);
  const double dy = y - grid.rotationCenterY;
  double x = addRepeatedly(left, grid.pitchX, span.first);
  bool madeDot = false;
  skipDrawsOfCells(span.first);
  for (int32_t cell = span.first; cell < span.end; ++cell) {
    madeDot |= visitCell(grid, x - grid.rotationCenterX, dy, makeDot);
    x += grid.pitchX;
  }
  skipDrawsOfCells(cells - span.end);
  return madeDot;
}

// The two ends of each row between a ring's top row, at y, and its bottom row, at which y is left.
template <class MakeDot>
bool visitRowEnds(const DotGrid& grid, int32_t ring, double left, double& y, MakeDot& makeDot) {
  const int32_t bottomRow = 2 * ring;
  const double right = addRepeatedly(left, grid.pitchX, bottomRow);
  const double leftDx = left - grid.rotationCenterX;
  const double rightDx = right - grid.rotationCenterX;
  CellSpan upper = cellsThatMayReach(grid, left, y, 0.0, grid.pitchY, bottomRow);
  CellSpan lower = cellsThatMayReach(grid, right, y, 0.0, grid.pitchY, bottomRow);
  if (lower.first < upper.first) std::swap(upper, lower);

  bool madeDot = false;
  int32_t row = 0;  // the one that y belongs to; its cells are done
  for (const CellSpan& span : {upper, lower}) {
    const int32_t first = std::max(span.first, row + 1);
    if (first >= span.end) continue;
    skipDrawsOfCells(2 * (first - row - 1));
    y = addRepeatedly(y, grid.pitchY, first - row - 1);
    for (row = first; row < span.end; ++row) {
      y += grid.pitchY;
      const double dy = y - grid.rotationCenterY;
      madeDot |= visitCell(grid, leftDx, dy, makeDot);
      madeDot |= visitCell(grid, rightDx, dy, makeDot);
    }
    --row;
  }
  skipDrawsOfCells(2 * (bottomRow - row - 1));
  y = addRepeatedly(y, grid.pitchY, bottomRow - row);
  return madeDot;
}

// All cells of a ring, row by row; returns whether any made a dot.
template <class MakeDot>
bool visitRing(const DotGrid& grid, int32_t ring, MakeDot& makeDot) {
  const double left = grid.gridCenterX - ring * grid.pitchX;
  double y = grid.gridCenterY - ring * grid.pitchY;
  bool madeDot = visitWholeRow(grid, 2 * ring + 1, left, y, makeDot);
  if (ring == 0) return madeDot;
  madeDot |= visitRowEnds(grid, ring, left, y, makeDot);
  madeDot |= visitWholeRow(grid, 2 * ring + 1, left, y, makeDot);
  return madeDot;
}

}  // namespace gridWalk

/// Walks the lattice outward and calls makeDot(x, y) with the turned place of each cell inside the acceptance
/// rectangle. makeDot takes exactly nine draws of the generator; the draws of all other cells are left out here.
///
/// Ends with the first ring without a dot after a ring with one. Kept as is: a ring that slips through the rectangle
/// between two lattice points ends the walk even if a later one would touch it again, and old projects look like that
/// (aRingThatSlipsThroughTheFrameEndsTheWalkForGood).
/// As long as there is no dot at all the rings go on, up to where none can touch the rectangle any more: a lattice that
/// misses a small frame altogether gives no dots, and not an endless walk.
template <class MakeDot>
void walkGrid(const DotGrid& grid, MakeDot&& makeDot) {
  const RingSpan rings = ringsThatMayReach(grid);
  if (rings.first > 0) {
    const int64_t side = 2 * int64_t{rings.first} - 1;
    skipDrawsOfCells(side * side);
  }
  bool anyDot = false;
  for (int32_t ring = rings.first; ring < rings.end; ++ring) {
    const bool ringMadeDot = gridWalk::visitRing(grid, ring, makeDot);
    if (anyDot && !ringMadeDot) return;
    anyDot |= ringMadeDot;
  }
}

}  // namespace vindrel
