// Fills an outline that has one top, one bottom and no dent, of any size and in any place: the road of
// those that TurnedFiller doesn't take.
//
// The two sides are walked down from the top vertex, one forward through the vertices, one backward, each by a running
// x and a slope, and every sub-row gives exactly one span; which side is the left one is seen on each sub-row. Eight of
// them are kept; when the eighth is known, the pixel row is painted. No sorting, no allocation. x is exact at the
// centre of a side's first sub-row and steps by repeated addition from there.
#pragma once

#include <cstdint>
#include <vector>

#include "effect/raster/CanvasView.h"
#include "effect/raster/Path.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/SideLanes.h"

namespace vindrel {

/// One side of the outline on its way down: the running x, and the vertices between which it runs.
struct SideTracker {
  double x = 0.0;      ///< at the centre of the present sub-row, in sub-columns
  double slope = 0.0;  ///< change of x per sub-row
  const PathVertex* cur = nullptr;
  const PathVertex* next = nullptr;
};

/// What a fill keeps of the pixel row in hand. One per rasteriser.
template <class Pixel>
struct ConvexFiller {
  CanvasView<Pixel> canvas;  ///< of the fill in hand
  Pixel color{};             ///< of the fill in hand
  int32_t rows[16];          ///< (start, end) of each sub-row of the present pixel row, sub-columns, both inclusive
  bool paintsEmptyCounts = false;    ///< see emptyCountPaintsNothing
  int32_t minStart = 0, maxEnd = 0;  ///< over the present pixel row's spans; only kept with paintsEmptyCounts
};

/// Fills the outline, read from tx and ty in canvas pixels. Multiplies them by eight in place. The outline must hold at
/// least three vertices.
template <class Pixel>
void fillConvex(ConvexFiller<Pixel>& filler, std::vector<PathVertex>& outline, const CanvasView<Pixel>& canvas,
                const Pixel& color);

/// Takes the spans between two sides on the sub-rows from y to the one before `end`, which lie on one pixel row, and
/// steps the sides on. Paints the pixel row once its eighth sub-row has come; a row off the canvas is passed over.
template <class Pixel>
void emitRow(ConvexFiller<Pixel>& filler, RowPainter<Pixel>& painter, lanes::SidePair& sides, int32_t y, int32_t end);

}  // namespace vindrel
