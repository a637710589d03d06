// Fills any outline, crossing itself or not, by the non-zero winding rule.
//
// A scan from sub-row to sub-row over the sides of the outline (EdgeTable), kept sorted by their x. The runs between
// them are kept until the last sub-row of a pixel row is known, and that row is painted: from a small table
// on the stack (SpanTable), or from lists (CoverageRows) when a row doesn't suit that. x stands for the upper
// end of a side and steps from its first sub-row, without a correction to the sub-row's centre, and a run keeps the
// sub-column on which it ends: so runs are one sub-column wider on the right than the convex filler's. Kept as is:
// crosses and stars of saved projects have this width
// (runsAreOneSubColumnWiderThanTheConvexFillers).
#pragma once

#include <cstdint>
#include <vector>

#include "effect/raster/CanvasView.h"
#include "effect/raster/EdgeTable.h"
#include "effect/raster/Path.h"
#include "effect/raster/SpanLists.h"

namespace vindrel {

/// Sub-rows, both ends inclusive.
struct SubRowRange {
  int32_t first;
  int32_t last;
};

/// The sub-rows that the general filler scans for an outline, read from ty. The last one is never above sub-row 0,
/// however far above the canvas the outline lies.
SubRowRange scannedSubRows(const std::vector<PathVertex>& vertices);

/// Fills the closed outline, read from tx and ty in canvas pixels. At least one vertex.
/// @param edges     room for the sides; what it holds doesn't matter, before or after
/// @param coverage  room for lists, empty before and afterwards
/// An ordinary cross or star takes no memory; std::bad_alloc when lists or the edges of a larger outline find none.
template <class Pixel>
void fillGeneral(std::vector<ScanEdge>& edges, CoverageRows& coverage, const std::vector<PathVertex>& outline,
                 const CanvasView<Pixel>& canvas, const Pixel& color);

}  // namespace vindrel
