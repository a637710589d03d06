// Fills a turned outline in its place: the road of most dots.
//
// The same spans as ConvexFiller's, in another order of work. There, both sides are walked down together, and each
// vertex interrupts the walk. Here each side between two vertices is stepped by itself, into a table of the x on every
// sub-row; that is possible since a side's x starts anew at its upper vertex, so no side waits for another one. Then
// the table is read a pixel row at a time, two sub-rows in a register.
//
// A side writes its steps in fours and may so write behind its end; what stands there belongs to the next side of the
// chain, which comes later and writes it again.
#pragma once

#include "effect/raster/CanvasView.h"
#include "effect/raster/RowPainter.h"
#include "effect/raster/TurnedOutline.h"

namespace vindrel {

/// Room for one outline in its place. One per rasteriser; holds nothing between two fills.
struct SideTable {
  static constexpr int32_t mostSubRows = 2048;
  static constexpr int32_t mostVertices = 2 * TurnedOutline::mostVertices;

  // The vertices of both chains, and the sides below them: what ConvexFiller's SideTracker holds of each.
  double x[mostVertices + 4];  ///< sub-columns, of the vertices; then of the sides, at the centre of the first sub-row
  double y[mostVertices + 4];  ///< sub-rows
  double slope[mostVertices + 4];  ///< sub-columns per sub-row
  int32_t row[mostVertices + 4];   ///< sub-rows on which the vertices lie

  // x at the centre of each sub-row of the outline's pixel rows; the same on both where it isn't on a sub-row.
  double forward[mostSubRows + 16];
  double backward[mostSubRows + 16];
};

/// Fills the outline at the place (x, y), canvas pixels, where it must hold. False, with nothing painted, when it is
/// too high for the table or within one sub-row, or the canvas too narrow for four pixels at a time.
/// @param color  one whose empty counts paint nothing
template <class Pixel>
bool fillTurned(SideTable& table, const TurnedOutline& outline, double x, double y, const CanvasView<Pixel>& canvas,
                const Pixel& color);

}  // namespace vindrel
