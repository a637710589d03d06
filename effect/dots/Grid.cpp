#include "effect/dots/Grid.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "effect/pixel/Int32.h"

namespace vindrel {
namespace {

// Lengths of the lattice's own axes that a rectangle covers, from the grid centre, in canvas pixels.
struct LatticeBox {
  double left, right, top, bottom;
};

// The acceptance rectangle turned back into the lattice, in a box along the lattice's axes. (centerX, centerY) is where
// the turn takes the grid centre to.
LatticeBox boundsInLattice(const DotGrid& grid, double centerX, double centerY) {
  constexpr double endless = std::numeric_limits<double>::infinity();
  LatticeBox box{endless, -endless, endless, -endless};
  for (const double x : {grid.boundLeft - centerX, grid.boundRight - centerX}) {
    for (const double y : {grid.boundTop - centerY, grid.boundBottom - centerY}) {
      const double along = x * grid.rotationCos + y * grid.rotationSin;
      const double across = y * grid.rotationCos - x * grid.rotationSin;
      box = {std::min(box.left, along), std::max(box.right, along), std::min(box.top, across),
             std::max(box.bottom, across)};
    }
  }
  return box;
}

bool isFinite(const DotGrid& grid) {
  for (const double value :
       {grid.pitchX, grid.pitchY, grid.boundLeft, grid.boundTop, grid.boundRight, grid.boundBottom}) {
    if (!std::isfinite(value)) return false;
  }
  return true;
}

// With every control at the end of its range that stretches the lattice most, a million rings are enough.
constexpr double mostRings = 2097152.0;

// Places of cells carry the rounding of some million additions, a share of 1e-9 at the most; this is far beyond it.
constexpr double roundingShare = 1e-6;

// Cuts off the ends of a run that lie outside low to high along one axis of the canvas. What is not a number cuts
// nothing off.
struct RunClip {
  double first, end;

  void clip(double start, double step, double low, double high) {
    if (step == 0.0) {
      if (start < low || start > high) end = first;
      return;
    }
    const double atLow = (low - start) / step;
    const double atHigh = (high - start) / step;
    const double enters = step > 0.0 ? atLow : atHigh;
    const double leaves = step > 0.0 ? atHigh : atLow;
    if (enters > first) first = enters;
    if (leaves + 1.0 < end) end = leaves + 1.0;
  }
};

}  // namespace

DotGrid makeDotGrid(const LatticeSettings& settings, int32_t width, int32_t height) {
  DotGrid grid{};
  grid.gridCenterX = settings.centerX;
  grid.gridCenterY = settings.centerY;
  grid.rotationCenterX = settings.rotationCenterX;
  grid.rotationCenterY = settings.rotationCenterY;
  // The least pitch holds for the margin too, and not for the number of cells alone.
  grid.pitchX = settings.pitchX < 1.0 ? 1.0 : settings.pitchX;
  grid.pitchY = settings.pitchY < 1.0 ? 1.0 : settings.pitchY;
  grid.rotation = settings.rotation;
  grid.rotationCos = std::cos(grid.rotation);
  grid.rotationSin = std::sin(grid.rotation);

  // The frame, grown by one pitch and by the largest jitter. Kept as is: the size of a dot plays no part, so a dot
  // larger than the margin whose centre lies beyond it is missing from the edge of the picture
  // (aDotBeyondTheMarginIsNotMadeHoweverLarge).
  const double marginX = grid.pitchX * settings.jitterX + grid.pitchX;
  const double marginY = grid.pitchY * settings.jitterY + grid.pitchY;
  grid.boundLeft = 0.0 - marginX;
  grid.boundRight = marginX + static_cast<double>(width);
  grid.boundTop = 0.0 - marginY;
  grid.boundBottom = marginY + static_cast<double>(height);
  return grid;
}

// Ring r lies on the border of a box of half sides r * pitchX and r * pitchY about the grid centre, along the lattice's
// axes. It misses the acceptance rectangle for certain as long as one of the four axes (two of the lattice, two of the
// canvas) parts the two, and again once the whole rectangle is inside the box. Both bounds grow with r, so the rings
// between form one span.
RingSpan ringsThatMayReach(const DotGrid& grid) {
  if (!isFinite(grid)) return {};
  const double dx = grid.gridCenterX - grid.rotationCenterX;
  const double dy = grid.gridCenterY - grid.rotationCenterY;
  const double centerX = (dx * grid.rotationCos - dy * grid.rotationSin) + grid.rotationCenterX;
  const double centerY = (dx * grid.rotationSin + dy * grid.rotationCos) + grid.rotationCenterY;
  const LatticeBox box = boundsInLattice(grid, centerX, centerY);

  const double lastReached =
      std::max(std::max(-box.left, box.right) / grid.pitchX, std::max(-box.top, box.bottom) / grid.pitchY);
  const double end = lastReached * (1.0 + roundingShare) + 2.0;
  if (!(end < mostRings)) return {};

  const double cos = std::abs(grid.rotationCos);
  const double sin = std::abs(grid.rotationSin);
  const double partedAlong = std::max(box.left, -box.right) / grid.pitchX;
  const double partedAcross = std::max(box.top, -box.bottom) / grid.pitchY;
  const double partedX =
      std::max(grid.boundLeft - centerX, centerX - grid.boundRight) / (grid.pitchX * cos + grid.pitchY * sin);
  const double partedY =
      std::max(grid.boundTop - centerY, centerY - grid.boundBottom) / (grid.pitchX * sin + grid.pitchY * cos);
  const double parted = std::max(std::max(partedAlong, partedAcross), std::max(partedX, partedY));
  const double first = parted * (1.0 - roundingShare) - 1.0;
  return {first > 0.0 ? truncateToInt32(first) : 0, truncateToInt32(end)};
}

CellSpan cellsThatMayReach(const DotGrid& grid, double x, double y, double stepX, double stepY, int32_t cells) {
  const double dx = x - grid.rotationCenterX;
  const double dy = y - grid.rotationCenterY;
  const double startX = (dx * grid.rotationCos - dy * grid.rotationSin) + grid.rotationCenterX;
  const double startY = (dx * grid.rotationSin + dy * grid.rotationCos) + grid.rotationCenterY;
  const double turnedStepX = stepX * grid.rotationCos - stepY * grid.rotationSin;
  const double turnedStepY = stepX * grid.rotationSin + stepY * grid.rotationCos;
  // Widening the rectangle by a share of all lengths that take part makes up for every rounding here and in the walk.
  const double slack = roundingShare * (1.0 + std::abs(dx) + std::abs(dy) + std::abs(grid.rotationCenterX) +
                                        std::abs(grid.rotationCenterY) + static_cast<double>(cells) * (stepX + stepY));
  RunClip run{0.0, static_cast<double>(cells)};
  run.clip(startX, turnedStepX, grid.boundLeft - slack, grid.boundRight + slack);
  run.clip(startY, turnedStepY, grid.boundTop - slack, grid.boundBottom + slack);
  if (!(run.first < run.end)) return {};
  return {truncateToInt32(run.first), std::min(truncateToInt32(run.end) + 1, cells)};
}

}  // namespace vindrel
