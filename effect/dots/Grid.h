// The lattice of cells on which dots may stand, and the walk over it.
//
// A plain rectangular lattice, centred on the centre position and turned as a whole about a chosen centre. It is walked
// outward in square rings: ring 0 is the centre cell, ring r the 8r cells on the border of a square of 2r + 1 cells a
// side, row by row from the top and from left to right. The order matters as much as the places, because it says which
// draws of the generator belong to which cell: a cell's draws depend on its ring, row and column alone.
//
// Only the border cells of a ring are touched, so the walk costs time in proportion to the cells that it visits, and it
// needs no memory. Places come out of repeated addition, cell after cell, and not out of a product: the last bits of a
// place decide on the edges of the frame and on the order of drawing. One run of additions along a row, and one down
// the left column, serve the whole ring, since all rows of a ring have the same columns.
//
// Rings that certainly lie outside the frame are left out altogether on the way to a frame far from the centre; the
// generator leaps over their draws. All lengths are in canvas pixels, y grows downwards.
#pragma once

#include <cstdint>

#include "effect/dots/Random.h"
#include "effect/params/RenderParams.h"

namespace vindrel {

struct DotGrid {
  double gridCenterX, gridCenterY;          ///< the place of ring 0 before the lattice is turned
  double rotationCenterX, rotationCenterY;  ///< the point about which the lattice turns
  double pitchX, pitchY;                    ///< from a cell to its neighbour, never below 1.0
  double rotation;                          ///< turn of the lattice, radians
  double rotationCos, rotationSin;
  /// Where a cell's turned place must lie for it to make a dot; left and top belong to it, right and bottom do not.
  double boundLeft, boundTop, boundRight, boundBottom;
};

/// The lattice of a frame.
/// @param params  size-like fields scaled to the down-sampling.
/// @param width, height  of the canvas, pixels.
DotGrid makeDotGrid(const RenderParams& params, int32_t width, int32_t height);

/// Rings first to end - 1; a ring outside of them makes no dot for certain. One inside need not make one either.
struct RingSpan {
  int32_t first = 0;
  int32_t end = 0;
};

/// The rings that may touch the acceptance rectangle: all others certainly miss it. Empty when a pitch or a bound is
/// not a finite number, or when the lattice is so lopsided that counting its rings would take for ever; no control's
/// range allows either.
RingSpan ringsThatMayReach(const DotGrid& grid);

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

// All cells of the row at y, from `left` on. Returns whether any made a dot; right becomes the last cell's x.
template <class MakeDot>
bool visitRow(const DotGrid& grid, int32_t cells, double left, double y, double& right, MakeDot& makeDot) {
  const double dy = y - grid.rotationCenterY;
  bool madeDot = false;
  right = left;
  for (int32_t cell = 0;;) {
    madeDot |= visitCell(grid, right - grid.rotationCenterX, dy, makeDot);
    if (++cell == cells) return madeDot;
    right += grid.pitchX;
  }
}

// The whole ring; returns whether it made a dot.
template <class MakeDot>
bool visitRing(const DotGrid& grid, int32_t ring, MakeDot& makeDot) {
  const double left = grid.gridCenterX - ring * grid.pitchX;
  double y = grid.gridCenterY - ring * grid.pitchY;
  double right = left;
  bool madeDot = visitRow(grid, 2 * ring + 1, left, y, right, makeDot);
  if (ring == 0) return madeDot;

  const double leftDx = left - grid.rotationCenterX;
  const double rightDx = right - grid.rotationCenterX;
  for (int32_t row = 1; row < 2 * ring; ++row) {
    y += grid.pitchY;
    const double dy = y - grid.rotationCenterY;
    madeDot |= visitCell(grid, leftDx, dy, makeDot);
    madeDot |= visitCell(grid, rightDx, dy, makeDot);
  }
  y += grid.pitchY;
  madeDot |= visitRow(grid, 2 * ring + 1, left, y, right, makeDot);
  return madeDot;
}

}  // namespace gridWalk

/// Walks the lattice outward and calls makeDot(x, y) with the turned place of each cell inside the acceptance
/// rectangle. makeDot takes exactly nine draws of the generator; the draws of all other cells are left out here.
///
/// Ends with the first ring without a dot after a ring with one. Kept as is: a ring that slips through the rectangle
/// between two lattice points ends the walk even if a later one would touch it again, and old projects look like that.
/// As long as there is no dot at all the rings go on, up to where none can touch the rectangle any more: a lattice that
/// misses a small frame altogether gives no dots, and not an endless walk.
template <class MakeDot>
void walkGrid(const DotGrid& grid, MakeDot&& makeDot) {
  const RingSpan rings = ringsThatMayReach(grid);
  if (rings.first > 0) {
    const uint64_t side = 2U * static_cast<uint64_t>(rings.first) - 1U;
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
